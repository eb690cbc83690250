// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDate>
#include <QLocale>

#include "apps/growth/document/GrowthDocument.h"
#include "apps/growth/reference/GrowthReferences.h"
#include "apps/growth/resources/GrowthResources.h"
#include "testing/files/TemporaryHome.h"
#include "testing/standins/TestServices.h"
#include "testing/window/UserActions.h"
#include "velmora/app/VelmoraAppController.h"
#include "velmora/resources/SettingsKeys.h"

namespace growth {

/// The bundle identifier, and what the information dictionary holds.
inline const QString GrowthIdentifier = QStringLiteral("org.velmora.growth");
QVariantMap growthInformation();

/// The growth application, whole, on a test desktop and with a home folder of its own. Records are saved
/// automatically in ~/Records, charts go to ~/Charts; dates look like 31/12/2024.
template <typename Parts>
class BasicGrowthApplication {
 public:
  /// `referenceFolder`: where the reference files are; the shipped ones by default.
  explicit BasicGrowthApplication(const QString& referenceFolder = QStringLiteral(GROWTH_REFERENCE_FOLDER))
      : desktop(growthInformation()), references(referenceFolder) {
    namespace settings = velmora::settings;
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    home.makeFolder(QStringLiteral("Records"));
    home.makeFolder(QStringLiteral("Charts"));
    desktop.defaults.registerDefaults({{settings::DataFileExtension, QStringLiteral("growth")},
                                       {settings::SaveDirectory, QStringLiteral("~/Records")},
                                       {settings::ExportDirectory, QStringLiteral("~/Charts")},
                                       {settings::AutoSave, true}});
    desktop.interfaceFiles.addSearchPath(interfaceFolder());
    controller.setDocumentFactory(
        [this] { return std::make_unique<GrowthDocument>(desktop.services, controller, references); });
    controller.awakeFromNib();
  }
  ~BasicGrowthApplication() { QLocale::setDefault(localeBefore_); }
  BasicGrowthApplication(const BasicGrowthApplication&) = delete;
  BasicGrowthApplication& operator=(const BasicGrowthApplication&) = delete;

  velmora::testkit::TemporaryHome home;
  velmora::testkit::TestDesktop<Parts> desktop;
  GrowthReferences references;
  VelmoraAppController controller{desktop.services};

  QString saveFolder() const { return home.path(QStringLiteral("Records")); }
  QString exportFolder() const { return home.path(QStringLiteral("Charts")); }
  QString pathOfRecord(const QString& name) const {
    return saveFolder() + QStringLiteral("/%1.growth").arg(name);
  }

 private:
  QLocale localeBefore_;
};

/// The growth application on a desktop of stand-ins, and what a person does with it.
class GrowthApplication : public BasicGrowthApplication<velmora::testkit::StandIns> {
 public:
  using BasicGrowthApplication::BasicGrowthApplication;

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
  /// Adds an examination and types its day and weight.
  void addExamination(GrowthDocument& document, const QString& examDate, const QString& weight);
  void chooseSex(GrowthDocument& document, SexItem sex);
};

}  // namespace growth
