// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <optional>

#include "base/Result.h"

namespace growth {

/// Gives the bytes of a published table by its file name, or nothing when there is no such file.
using PublishedTables = std::function<std::optional<QByteArray>(const QString& fileName)>;

/// Makes a reference file from its heading (the file without rows and digest) and the published tables that
/// the heading names. The digits of a published table are carried over as they stand. Fails when something
/// does not fit, and says what.
velmora::base::Result<QByteArray> convertReference(const QByteArray& heading, const PublishedTables& tables);

}  // namespace growth
