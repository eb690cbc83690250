// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QImage>
#include <QPoint>
#include <QString>
#include <optional>

namespace demo {

/// Reads from a picture of the chart what a person sees in it. It goes by colour: the patient's examinations
/// are dark blue, the one that is shown has an orange ring around it, the reference curves are grey-green.
class ChartPicture {
 public:
  /// A picture file, or the bytes of one, of the whole chart with what stands around it.
  static ChartPicture fromFile(const QString& path);
  static ChartPicture fromBytes(const QByteArray& bytes);

  /// The middle of the ring, in pixels; nothing when there is none.
  std::optional<QPoint> ring() const;
  /// Whether an examination's mark is drawn at that place.
  bool hasExaminationAt(const QPoint& place) const;
  /// How many reference curves a vertical line at that part of the picture's width crosses, 0 to 1.
  int referenceCurvesAt(double partOfWidth) const;

 private:
  explicit ChartPicture(const QImage& image) : image_(image.convertToFormat(QImage::Format_RGB32)) {}
  QImage image_;
};

}  // namespace demo
