// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/documents/OrvAutoNameDocument.h"

using namespace velmora;

QString OrvAutoNameDocument::preferredFileName(bool) const { return QStringLiteral(""); }

QString OrvAutoNameDocument::displayName() const {
  const QString name = fileURL().isEmpty() ? preferredFileName(false) : QString();
  return name.isEmpty() ? OrvDocument::displayName() : name;
}

base::Result<> OrvAutoNameDocument::readFromData(const QByteArray& data, const QString& typeName) {
  const base::Result<> read = OrvDocument::readFromData(data, typeName);
  if (read.ok()) docIsBlank_ = false;
  return read;
}
