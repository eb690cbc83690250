// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QLineEdit>
#include <QPushButton>
#include <QString>

#include "base/Export.h"

namespace velmora::platform {
class Document;
}

/// What a person does with the window of a document, by mouse and keyboard.
namespace velmora::testkit::user {

/// Brings the document's window to the front and waits until it has the keyboard.
VELMORA_EXPORT void bringToFront(velmora::platform::Document& document);
/// The widget of that object name in the document's window; fails the test when there is none.
VELMORA_EXPORT QWidget* widget(velmora::platform::Document& document, const char* name);
VELMORA_EXPORT QLineEdit* field(velmora::platform::Document& document, const char* name);
VELMORA_EXPORT QPushButton* button(velmora::platform::Document& document, const char* name);
/// The text of the field or label of that name.
VELMORA_EXPORT QString textOf(velmora::platform::Document& document, const char* name);

VELMORA_EXPORT void click(QWidget* widget);
/// Clicks into the field, selects what is there and types over it. The edit goes on.
VELMORA_EXPORT void type(QLineEdit* field, const QString& text);
/// Ends the edit with Return.
VELMORA_EXPORT void pressReturn(QLineEdit* field);
/// type() and pressReturn().
VELMORA_EXPORT void enter(QLineEdit* field, const QString& text);
/// Presses a key in the window, wherever the keyboard is.
VELMORA_EXPORT void pressKey(velmora::platform::Document& document, Qt::Key key);

}  // namespace velmora::testkit::user
