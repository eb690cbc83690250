// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <unistd.h>

#include <QDirIterator>
#include <QFile>
#include <cstdlib>
#include <stdexcept>

namespace testing_support {

/// While one lives this process is an ordinary user, whom permissions stop. `folder` and what is in it are
/// his.
class OrdinaryUser {
 public:
  explicit OrdinaryUser(const QString& folder) : wasSuperuser_(::geteuid() == 0) {
    if (!wasSuperuser_) return;
    give(folder);
    QDirIterator entries(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) give(entries.next());
    if (::setresuid(Nobody, Nobody, 0) != 0) throw std::runtime_error("setresuid");
  }
  ~OrdinaryUser() {
    if (wasSuperuser_ && ::setresuid(0, 0, 0) != 0) std::abort();
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
  static constexpr uid_t Nobody = 65534;
  static void give(const QString& path) {
    if (::lchown(QFile::encodeName(path).constData(), Nobody, Nobody) != 0)
      throw std::runtime_error("lchown");
  }

  bool wasSuperuser_;
};

}  // namespace testing_support
