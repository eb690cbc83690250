// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QString>
#include <stdexcept>

#include "base/Export.h"

namespace velmora::base {

/// Thrown where a value that must exist does not. The message says what was found ("Value==nil"), the source
/// file names the class that insisted, by its base name ("VelmoraDocument").
class VELMORA_EXPORT AssertionFailure : public std::runtime_error {
 public:
  AssertionFailure(const QString& message, const QString& sourceFile)
      : std::runtime_error((sourceFile + QStringLiteral(": ") + message).toStdString()),
        message_(message),
        sourceFile_(sourceFile) {}

  const QString& message() const { return message_; }
  const QString& sourceFile() const { return sourceFile_; }

 private:
  QString message_;
  QString sourceFile_;
};

/// Throws "Value==nil" in the name of `sourceFile` unless `exists`.
inline void requireValue(bool exists, const char* sourceFile) {
  if (!exists) throw AssertionFailure(QStringLiteral("Value==nil"), QString::fromLatin1(sourceFile));
}

}  // namespace velmora::base
