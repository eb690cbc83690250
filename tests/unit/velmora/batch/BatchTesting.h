// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "testing/application/RecordApplication.h"
#include "testing/files/Files.h"
#include "velmora/batch/BatchExportController.h"
#include "velmora/resources/Notifications.h"
#include "velmora/resources/SettingsKeys.h"

namespace batch_testing {

constexpr qint64 Day = 86400;

using velmora::testkit::setModified;

/// An application whose batch-export window the user opens and uses. The records that a test writes into the
/// save folder say when they were saved, by the clock of the application.
class BatchExport : public testing::Test {
 protected:
  BatchExport() {
    application.desktop.notificationCenter.addObserver(
        &observer_, velmora::notifications::BatchOpen,
        [this](const velmora::platform::Notification& request) {
          posted.append(request.object.toString());
          if (whenPosted) whenPosted();
        });
  }

  /// Puts a record, named by its path below the save folder, there, as if saved so many seconds ago.
  QString write(const QString& name, qint64 age) {
    application.writeRecord(name);
    return saved(application.pathOfRecord(name), age);
  }
  QString saved(const QString& path, qint64 age) {
    setModified(path, application.desktop.runLoop.now().addSecs(-age));
    return path;
  }

  // The window.

  void open() {
    application.controller.doBatchExport(nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
  }
  BatchExportController& batch() { return *application.controller.batchExportController(); }
  QWidget* window() { return batch().window(); }
  QLineEdit* days() { return batch().outlet<QLineEdit>(QStringLiteral("howManyDaysField")); }
  QCheckBox* erase() { return batch().outlet<QCheckBox>(QStringLiteral("eraseOldFilesCheckBox")); }
  QString destination() {
    QString text = batch().outlet<QLabel>(QStringLiteral("destinationField"))->text();
    return text.remove(QChar(0x200b));
  }
  QPushButton* button(QDialogButtonBox::StandardButton which) {
    return batch().outlet<QDialogButtonBox>(QStringLiteral("buttonBox"))->button(which);
  }
  QPushButton* ok() { return button(QDialogButtonBox::Ok); }
  QPushButton* cancel() { return button(QDialogButtonBox::Cancel); }
  /// The user exports what was saved in the last days.
  void exportDays(const QString& number) {
    open();
    velmora::testkit::user::type(days(), number);
    velmora::testkit::user::click(ok());
  }

  // The progress window.

  QWidget* progress() { return batch().progress().window(); }
  bool progressShown() { return batch().progress().isWindowLoaded() && progress()->isVisible(); }
  QString progressText(const char* label) {
    return batch().progress().outlet<QLabel>(QString::fromLatin1(label))->text();
  }
  QPushButton* stopButton() { return batch().progress().outlet<QPushButton>(QStringLiteral("stopButton")); }
  /// What the user does each time the windows have their turn between two files.
  void betweenFiles(std::function<void()> act) {
    application.desktop.runLoop.whileProcessingEvents = std::move(act);
  }

  QStringList charts() const { return velmora::testkit::fileNames(application.exportFolder()); }
  QVariantMap stored() const { return application.desktop.defaults.stored(); }
  void store(const QString& key, const QVariant& value) {
    application.desktop.defaults.setObject(value, key);
  }

 private:
  QObject observer_;

 protected:
  velmora::testkit::RecordApplication application;
  /// The paths for which the opening of a file was asked, in order.
  QStringList posted;
  std::function<void()> whenPosted;
};

/// In an order that does not depend on the folder's.
inline QStringList sorted(QStringList list) {
  list.sort();
  return list;
}

}  // namespace batch_testing
