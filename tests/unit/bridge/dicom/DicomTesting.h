// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include "bridge/dicom/Capture.h"
#include "bridge/dicom/Study.h"
#include "testing/main/Shown.h"

/// Made-up studies, JPEG images and DICOM files for the tests.
namespace dicom_testing {

enum class JpegKind { Full, Reduced420, Reduced422, Grey, AdobeRgb };

/// A baseline JPEG of thin coloured lines on white.
QByteArray jpeg(JpegKind kind, int width = 61, int height = 43);

/// The pixels as libjpeg-turbo decodes them: RGB, or one byte each for a grey image.
QByteArray pixelsOf(const QByteArray& jpeg);

bridge::Study study();
bridge::Chart chart(const QByteArray& jpeg);
bridge::CaptureIdentity identity();

/// One data element: its tag, its kind, its value. A kind of "SQ" or "UN" with the length `Undefined` ends
/// itself.
struct Element {
  quint32 tag;
  QByteArray vr;
  QByteArray value;
  bool undefinedLength = false;
};

enum class Syntax { ImplicitLittle, ExplicitLittle, ExplicitBig, Deflated };

/// Its UID.
QByteArray transferSyntax(Syntax syntax);

/// A DICOM file of these elements, as they stand.
QByteArray dicomFile(const QList<Element>& elements, Syntax syntax = Syntax::ExplicitLittle);
/// The data set alone.
QByteArray dataset(const QList<Element>& elements, Syntax syntax = Syntax::ExplicitLittle);

/// The elements of a usual study.
QList<Element> studyElements();

/// What dciodvfy says of the file.
QString validatorsWords(const QByteArray& file);
/// What dcmdump prints of the file; "failed: ..." when it cannot read it.
QString dumpOf(const QByteArray& file);

}  // namespace dicom_testing
