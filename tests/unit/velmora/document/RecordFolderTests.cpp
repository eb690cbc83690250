// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/document/RecordFolder.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "testing/main/Shown.h"
#include "testing/standins/TestServices.h"
#include "velmora/document/PatientLookUp.h"
#include "velmora/document/VelmoraApplicationDelegate.h"
#include "velmora/resources/SettingsKeys.h"

using namespace velmora;

namespace {

class Folder : public testing::Test {
 protected:
  Folder() {
    desktop.defaults.setObject(temporary.path(), settings::SaveDirectory);
    desktop.defaults.setObject(true, settings::AutoSave);
    folder.setExtension("rec");
  }
  QString at(const QString& name) const { return temporary.path() + '/' + name; }

  QTemporaryDir temporary;
  testkit::TestServices desktop{{}};
  RecordFolder folder{desktop.defaults, desktop.fileManager};
};

TEST_F(Folder, NamesARecordsFileByItsIdentifier) {
  EXPECT_EQ(folder.automaticPath("12-345"), at("12-345.rec"));
  EXPECT_EQ(folder.dataFilePath("12-345"), at("12-345.rec"));
}

TEST_F(Folder, SavesNothingWithoutAnIdentifier) { EXPECT_FALSE(folder.automaticPath("")); }

TEST_F(Folder, SavesNothingWhereItIsNotThere) {
  desktop.defaults.setObject(at("gone"), settings::SaveDirectory);
  EXPECT_TRUE(folder.savesAutomatically("12-345")) << "the question before closing does not look at the disk";
  EXPECT_FALSE(folder.automaticPath("12-345"));
}

TEST_F(Folder, SavesNothingWhenRecordsAreSavedByPanel) {
  desktop.defaults.setObject(false, settings::AutoSave);
  EXPECT_FALSE(folder.automaticPath("12-345"));
}

TEST_F(Folder, HasNoDotBeforeNoExtension) {
  folder.setExtension({});
  EXPECT_EQ(folder.dataFilePath("12-345"), at("12-345"));
}

/// Knows every name, and counts how often it is asked.
class KnowsAll : public VelmoraApplicationDelegate {
 public:
  bool fileIsInCachedDatabaseFiles(const QString&) const override { return ++asked > 0; }
  void addToCachedDatabaseFiles(const QString&) override {}
  mutable int asked = 0;
};

class LookingUp : public Folder {
 protected:
  KnowsAll known;
  PatientLookUp lookUp{folder, known, desktop.fileManager, desktop.alerts};
};

TEST_F(LookingUp, FindsNothingThatIsNotOnTheDisk) {
  EXPECT_FALSE(lookUp.find("AB1", true));
  EXPECT_EQ(known.asked, 1);
}

TEST_F(LookingUp, AsksNobodyWhenRecordsAreSavedByPanel) {
  desktop.defaults.setObject(false, settings::AutoSave);
  EXPECT_FALSE(lookUp.find("AB1", true));
  EXPECT_EQ(known.asked, 0);
}

TEST_F(LookingUp, TakesOnlyAClearYes) {
  ASSERT_TRUE(desktop.fileManager.writeDurably(at("ab1.rec"), "{}").ok());
  EXPECT_EQ(lookUp.find("ab1", false), at("ab1.rec"));
  const platform::Alert question{
      "Patient Data Found", "Open", "Cancel", "",
      "A previously saved data file is available for patient 'AB1'.  Would you like to open it?"};
  desktop.alerts.expect(question, platform::AlertStopped);
  EXPECT_FALSE(lookUp.find("ab1", true));
  desktop.alerts.expect(question, platform::AlertDefaultReturn);
  EXPECT_EQ(lookUp.find("ab1", true), at("ab1.rec"));
}

}  // namespace
