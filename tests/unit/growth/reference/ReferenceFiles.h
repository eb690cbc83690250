// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include "apps/growth/reference/GrowthReference.h"

/// The names of the references shipped, without extension.
inline const char* const shippedReferences[] = {
    "weight", "height", "head", "bmi", "weight-for-length", "weight-for-stature"};

/// The bytes of a file under apps/growth/reference. A missing file fails the test.
QByteArray referenceFolderFile(const QString& path);
/// A reference shipped, by its name. A file that cannot be read fails the test.
growth::GrowthReference shippedReference(const QString& name);

/// `text` with the digest line that makes it a reference file.
QByteArray sealed(const QByteArray& text);
/// A small good reference file, without its digest line.
QByteArray smallReference();
