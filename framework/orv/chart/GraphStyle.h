// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QFont>
#include <QPen>

/// The look of charts. Patient (dark blue, marks), curves (grey teal, thin lines) and highlight (orange ring)
/// differ in lightness and in form, not in hue alone: they stay apart in a grey print and for eyes that do
/// not tell colours apart.
///
/// Sizes of letters are in pixels of the view, so that a chart keeps its proportions on every device.
namespace velmora::orv::graphStyle {

inline constexpr int legendHeight = 34;
inline constexpr int labelGap = 7;          ///< between the end of a curve and its label
inline constexpr double labelSpacing = 13;  ///< between the middles of two labels
inline constexpr int tickRoomAcross = 50;   ///< for a tick of the x axis with its label
inline constexpr int tickRoomUp = 40;       ///< for one of the y axis
inline constexpr double markRadius = 3.7;
inline constexpr double ringRadius = 9;

inline const QColor patientColor(11, 49, 120);
inline const QColor curveColor(112, 146, 150);
inline const QColor medianColor(38, 96, 104);
inline const QColor highlightColor(230, 97, 0);

inline QFont font() {
  QFont font;
  font.setPixelSize(12);
  return font;
}

inline QFont titleFont() {
  QFont font;
  font.setPixelSize(13);
  font.setWeight(QFont::DemiBold);
  return font;
}

inline QFont medianFont() {
  QFont bold = font();
  bold.setBold(true);
  return bold;
}

inline QPen framePen() { return QPen(QColor(60, 60, 60), 1); }
inline QPen gridPen() { return QPen(QColor(214, 219, 222), 1); }
inline QPen subGridPen() { return QPen(QColor(237, 240, 242), 1); }
inline QPen curvePen() { return QPen(curveColor, 1.2); }
inline QPen medianPen() { return QPen(medianColor, 2.2); }
inline QPen leaderPen() { return QPen(curveColor, 0.8); }
inline QPen patientPen() { return QPen(patientColor, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin); }
inline QPen ringPen() { return QPen(highlightColor, 3); }

}  // namespace velmora::orv::graphStyle
