// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>

#include "base/Export.h"

namespace velmora::testkit {

/// While one lives this process is an ordinary user, whom permissions stop. `folder` and what is in it are
/// his.
class VELMORA_EXPORT OrdinaryUser {
 public:
  explicit OrdinaryUser(const QString& folder);
  ~OrdinaryUser();
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
  bool wasSuperuser_;
};

}  // namespace velmora::testkit
