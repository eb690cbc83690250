// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QByteArray>

class QTabWidget;

namespace velmora::platform {
class GraphicsContext;
}

namespace velmora {

/// Makes a picture of a document's charts, without the mark on the current examination.
class ChartRenderer {
 public:
  explicit ChartRenderer(platform::GraphicsContext& graphics) : graphics_(graphics) {}

  /// The charts as JPEG, in their size on the screen. Returns no bytes when there are none.
  QByteArray jpegOf(QTabWidget* charts);

  /// Whether the mark may be drawn now: on the screen, once it has been allowed, and never in a picture.
  bool mayShowHighlight() const;
  void allowHighlight() noexcept { highlightAllowed_ = true; }

 private:
  platform::GraphicsContext& graphics_;
  bool highlightAllowed_ = false;
};

}  // namespace velmora
