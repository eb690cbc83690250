// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDate>
#include <QImage>
#include <QLocale>

#include "apps/growth/document/GrowthDocument.h"
#include "testing/TestServices.h"
#include "testing/files/TemporaryHome.h"
#include "testing/window/UserActions.h"
#include "velmora/app/VelmoraAppController.h"

namespace testing_support {

/// The growth application, whole, on a desktop of stand-ins and with a home folder of its own. Records are
/// saved automatically in ~/Records; dates look like 31/12/2024.
class GrowthApplication {
 public:
  /// `referenceFolder`: where the reference files are; the shipped ones by default.
  explicit GrowthApplication(const QString& referenceFolder = QStringLiteral(GROWTH_REFERENCE_FOLDER));
  ~GrowthApplication();

  velmora::testkit::TemporaryHome home;
  velmora::testkit::TestServices desktop;
  growth::GrowthReferences references;
  VelmoraAppController controller;

  QString pathOfRecord(const QString& name) const {
    return home.path(QStringLiteral("Records/%1.growth").arg(name));
  }
  GrowthDocument& newRecord();
  /// The front document; throws when there is none.
  GrowthDocument& front() const;
  /// Saves the front document and gives the one that is opened from its file.
  GrowthDocument& saveAndReopen();
  /// Opens a file that holds these bytes; why it does not open, or an empty text.
  QString whyNotOpened(const QByteArray& file);
  /// A request as the viewer sends it, and what it sets going within a second.
  void chooseStudy(const QString& identifier, const QDate& birth, const QDate& study);

  // What a person does.

  /// The items of the sex menu below the empty first one.
  enum class SexItem { Female = 1, Male = 2 };
  /// Types a boy born on 1 January 2022 by hand, with one examination on a day and its weight.
  GrowthDocument& typeBoy(const QString& examDate, const QString& weight);
  void chooseSex(GrowthDocument& document, SexItem sex);

 private:
  QLocale localeBefore_;
};

/// How many pixels have the colour of the highlight; nothing else of a chart is orange.
int orangePixels(const QImage& picture);

}  // namespace testing_support
