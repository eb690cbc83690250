// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QStringList>

class QWidget;

namespace languages {

/// The texts of a shown window that do not have the room that they need, each with its widget.
QStringList cutTexts(const QWidget& window);

/// The letters that stand for more than one thing in a shown window, with the texts that claim them.
QStringList sharedMnemonics(const QWidget& window);

}  // namespace languages
