// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include "base/Export.h"
#include "orv/documents/OrvDocument.h"

/// A document that can name its own file, and that knows whether it is still the blank one it began as.
class VELMORA_EXPORT OrvAutoNameDocument : public OrvDocument {
 public:
  using OrvDocument::OrvDocument;

  /// Whether this is still the untouched blank document that the application opened.
  bool isBlank() const { return docIsBlank_; }
  /// The name, without folder and extension, that the document would give its file; empty when it has none.
  /// The argument is for subclasses that name a file to show differently from a file to keep; the base
  /// ignores it.
  virtual QString preferredFileName(bool forExport) const;

  QString displayName() const override;
  velmora::base::Result<> readFromData(const QByteArray& data, const QString& typeName) override;

 protected:
  bool docIsBlank_ = true;
};
