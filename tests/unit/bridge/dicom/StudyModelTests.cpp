// SPDX-License-Identifier: LGPL-3.0-or-later
//
// The same values are the same study, whether they come as a file, as a data set over DIMSE, or as JSON.
#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

#include "bridge/dicom/CharacterSet.h"
#include "bridge/dicom/StudyAttributes.h"
#include "bridge/dicom/StudyReader.h"
#include "bridge/pacs/DicomJson.h"
#include "tests/unit/bridge/dicom/DicomTesting.h"

using bridge::Study;
using bridge::Tag;
using namespace bridge::tags;
using namespace dicom_testing;

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

QByteArray kindOf(Tag tag) {
  switch (tag) {
    case StudyDate:
    case PatientBirthDate:
      return "DA";
    case StudyTime:
      return "TM";
    case ReferringPhysicianName:
    case PatientName:
      return "PN";
    case AccessionNumber:
    case StudyID:
      return "SH";
    case StudyInstanceUID:
      return "UI";
    case SpecificCharacterSet:
    case PatientSex:
      return "CS";
    default:
      return "LO";
  }
}

/// What an archive or a file says of a study.
class Values {
 public:
  Values& with(Tag tag, const QByteArray& value) {
    values_.insert(tag, value);
    return *this;
  }

  /// The study, after it has been read over every transport as the same one.
  Study study() const {
    const Study study = overWeb();
    for (const Syntax syntax : {Syntax::ImplicitLittle, Syntax::ExplicitLittle, Syntax::ExplicitBig}) {
      if (isTooLong() && syntax != Syntax::ImplicitLittle) continue;
      EXPECT_EQ(bridge::studyFromBytes(dicomFile(elements(), syntax)).valueOr({}), study);
      const auto overDimse = bridge::studyFromDataset(dataset(elements(), syntax), transferSyntax(syntax));
      EXPECT_EQ(overDimse.valueOr({}), study);
    }
    if (!isTooLong()) {
      EXPECT_EQ(bridge::studyFromBytes(dicomFile(elements(), Syntax::Deflated)).valueOr({}), study);
    }
    return study;
  }

 private:
  /// For an explicit VR of a short length.
  bool isTooLong() const {
    return std::any_of(values_.begin(), values_.end(),
                       [](const auto& value) { return value.size() > 65534; });
  }

  QList<Element> elements() const {
    QList<Element> elements;
    for (auto each = values_.begin(); each != values_.end(); ++each) {
      elements.append({each.key(), kindOf(each.key()), each.value()});
    }
    return elements;
  }

  /// As an archive tells it that writes all that it has into its answers.
  Study overWeb() const {
    QJsonObject study;
    for (auto each = values_.begin(); each != values_.end(); ++each) {
      if (each.key() == SpecificCharacterSet) continue;
      const QString value = bridge::decodedText(each.value(), values_.value(SpecificCharacterSet));
      QJsonArray values;
      for (const QString& one : value.split(QLatin1Char('\\'))) {
        values.append(kindOf(each.key()) == "PN" ? QJsonValue(groupsOf(one)) : QJsonValue(one));
      }
      study.insert(bridge::jsonKey(each.key()), QJsonObject{{text("Value"), values}});
    }
    return bridge::studiesFromJson(QJsonDocument(QJsonArray{study}).toJson()).valueOr({}).value(0);
  }

  static QJsonObject groupsOf(const QString& name) {
    QJsonObject groups;
    const QStringList parts = name.split(QLatin1Char('='));
    const QStringList names{text("Alphabetic"), text("Ideographic"), text("Phonetic")};
    for (qsizetype i = 0; i < parts.size() && i < names.size(); ++i) groups.insert(names[i], parts[i]);
    return groups;
  }

  QMap<Tag, QByteArray> values_{{StudyInstanceUID, "1.2.3"}};
};

Study with(Tag tag, const QByteArray& value) {
  return Values().with(SpecificCharacterSet, "ISO_IR 192").with(tag, value).study();
}

}  // namespace

TEST(StudyModel, TellsAllAboutAStudy) {
  Values values;
  values.with(SpecificCharacterSet, "ISO_IR 100")
      .with(StudyDate, "20240502")
      .with(StudyTime, "101530.25")
      .with(AccessionNumber, "A-77 ")
      .with(ReferringPhysicianName, "H\xe4user^Gregor")
      .with(StudyDescription,
            "Sch\xe4"
            "del ")
      .with(PatientName, "M\xfcller^J\xf6rg")
      .with(PatientID, " 12/345/6 ")
      .with(IssuerOfPatientID, "Klinikum K\xf6ln")
      .with(PatientBirthDate, "20190314")
      .with(PatientSex, "F ")
      .with(StudyID, "S1");
  Study expected;
  expected.studyInstanceUID = text("1.2.3");
  expected.patientID = text("12/345/6");
  expected.issuerOfPatientID = text("Klinikum Köln");
  expected.patientName = text("Müller^Jörg");
  expected.birthDate = QDate(2019, 3, 14);
  expected.sex = text("F");
  expected.studyDate = QDate(2024, 5, 2);
  expected.studyTime = text("101530.25");
  expected.studyID = text("S1");
  expected.accessionNumber = text("A-77");
  expected.referringPhysician = text("Häuser^Gregor");
  expected.description = text("Schädel");
  EXPECT_EQ(values.study(), expected);
}

TEST(StudyModel, IsEmptyWhereNothingIsSaid) {
  Study bare;
  bare.studyInstanceUID = text("1.2.3");
  EXPECT_EQ(Values().study(), bare);
  EXPECT_EQ(Values().with(PatientName, "").with(StudyDate, "").with(PatientID, "  ").study(), bare);
}

TEST(StudyModel, KeepsTheGroupsOfANameThatSaySomething) {
  Values values;
  values.with(SpecificCharacterSet, "\\ISO 2022 IR 87")
      .with(PatientName,
            "Yamada^Tarou=\033$B;3ED\033(B^\033$BB@O:\033(B=\033$B$d$^$@\033(B^\033$B$?$m$&\033(B");
  EXPECT_EQ(values.study().patientName, text("Yamada^Tarou=山田^太郎=やまだ^たろう"));
  const struct {
    const char* dicom;
    const char* expected;
  } rows[] = {{"A^B=^=^", "A^B"}, {"=山田^太郎", "=山田^太郎"}, {"A^B==C", "A^B==C"}, {"A^B^^^", "A^B^^^"},
              {"^^^^=^^=", ""},   {" A^B = C ", "A^B=C"}};
  for (const auto& row : rows) {
    EXPECT_EQ(with(PatientName, row.dicom).patientName, text(row.expected)) << row.dicom;
    EXPECT_EQ(with(ReferringPhysicianName, row.dicom).referringPhysician, text(row.expected)) << row.dicom;
  }
}

TEST(StudyModel, ReadsDates) {
  const struct {
    QByteArray dicom;
    QDate expected;
  } rows[] = {{"20240229", QDate(2024, 2, 29)},
              {"2024.02.29", QDate(2024, 2, 29)},
              {" 20240229 ", QDate(2024, 2, 29)},
              {"20230229", QDate()},
              {"20241301", QDate()},
              {"2024-02-29", QDate()},
              {"2024.0229", QDate()},
              {"2024", QDate()},
              {"+2024022", QDate()},
              {"00000000", QDate()},
              {"20240229\\20240301", QDate()},
              {"2024\n0229", QDate()},
              {"２０２４０２２９", QDate()},
              {"20240101-20240131", QDate()},
              {"yesterday", QDate()},
              {"202402290", QDate()}};
  for (const auto& row : rows) {
    EXPECT_EQ(with(StudyDate, row.dicom).studyDate, row.expected) << row.dicom.constData();
    EXPECT_EQ(with(PatientBirthDate, row.dicom).birthDate, row.expected) << row.dicom.constData();
  }
}

TEST(StudyModel, KnowsThreeSexes) {
  for (const char* sex : {"M", "F", "O"}) EXPECT_EQ(with(PatientSex, sex).sex, text(sex));
  for (const char* other : {"m", "X", "MALE", "M^", "?", "M\\F", "\033M"}) {
    EXPECT_EQ(with(PatientSex, other).sex, QString()) << other;
  }
}

TEST(StudyModel, TakesAnIdentifierWholeOrNotAtAll) {
  const QByteArray longest(bridge::LongestText, '9');
  const struct {
    QByteArray dicom;
    QByteArray expected;
  } rows[] = {{" P 1 ", "P 1"},
              {QByteArray("P1\0", 3), "P1"},
              {"ÅÄÖ-7/患者*?", "ÅÄÖ-7/患者*?"},
              {longest, longest},
              {longest + '9', ""},
              {QByteArray(3000, '9'), ""},
              {"1\\2", ""},
              {"1\\", ""},
              {"1\n2", ""},
              {"1\r\n", ""},
              {"\t1", ""},
              {"1\x1b[2J", ""},
              {"1\x7f", ""},
              {"1\xc2\x85", ""},
              {QByteArray("1\0"
                          "2",
                          3),
               ""},
              {"1\xef\xbf\xbd", ""}};
  for (const auto& row : rows) {
    const QString expected = QString::fromUtf8(row.expected);
    EXPECT_EQ(with(PatientID, row.dicom).patientID, expected) << row.dicom.toPercentEncoding().constData();
    EXPECT_EQ(with(IssuerOfPatientID, row.dicom).issuerOfPatientID, expected);
    EXPECT_EQ(with(AccessionNumber, row.dicom).accessionNumber, expected);
    EXPECT_EQ(with(StudyID, row.dicom).studyID, expected);
  }
}

TEST(StudyModel, HasNoPatientWhoseIssuerCannotBeRead) {
  Values values;
  values.with(PatientID, "P1").with(IssuerOfPatientID, "City\nHospital");
  EXPECT_EQ(values.study().patientID, QString());
  EXPECT_EQ(values.with(IssuerOfPatientID, "City Hospital").study().patientID, text("P1"));
}

TEST(StudyModel, IsNoneWithoutAUid) {
  for (const char* uid : {"", "1", "abc", "1..2", "1.2\\1.3", "1.2\n", "1.2a", "１.２"}) {
    EXPECT_EQ(with(StudyInstanceUID, uid), Study()) << uid;
  }
  EXPECT_EQ(with(StudyInstanceUID, QByteArray(60, '1') + ".2345"), Study());
  EXPECT_EQ(with(StudyInstanceUID, QByteArray(" 1.2.03\0", 8)).studyInstanceUID, text("1.2.03"));
}

TEST(StudyModel, CleansWhatIsForReading) {
  const struct {
    QByteArray dicom;
    QByteArray expected;
  } rows[] = {
      {" Left hand ", "Left hand"},
      {"a\\b", "a"},
      {"\\b", ""},
      {"a\r\nb\x1b\x7f\tc", "abc"},
      {QByteArray("a\0b\0", 4), "ab"},
      {"Größe", "Größe"},
      {QByteArray(3000, 'a'), QByteArray(bridge::LongestText, 'a')},
      {QByteArray("骨").repeated(3000), QByteArray("骨").repeated(bridge::LongestText)},
      {"a" + QByteArray("𠮷").repeated(3000), "a" + QByteArray("𠮷").repeated(bridge::LongestText / 2 - 1)}};
  for (const auto& row : rows) {
    const QString expected = QString::fromUtf8(row.expected);
    EXPECT_EQ(with(StudyDescription, row.dicom).description, expected) << row.dicom.left(40).constData();
    EXPECT_EQ(with(PatientName, row.dicom).patientName, expected);
    EXPECT_EQ(with(ReferringPhysicianName, row.dicom).referringPhysician, expected);
  }
}

TEST(StudyModel, CutsWhatIsTooLong) {
  EXPECT_EQ(with(StudyDescription, QByteArray(1000000, 'a')).description,
            QString(bridge::LongestText, QLatin1Char('a')));
}

TEST(StudyModel, KeepsATimeAsItIsWritten) {
  EXPECT_EQ(with(StudyTime, "101530.25 ").studyTime, text("101530.25"));
  EXPECT_EQ(with(StudyTime, "10:15\\11").studyTime, text("10:15"));
  EXPECT_EQ(with(StudyTime, "１０１５").studyTime, QString());
}

TEST(StudyModel, ReadsAttributesOfUnknownKind) {
  const QByteArray explicitly = dataset({{PatientID, "UN", "77 "}, {StudyInstanceUID, "UI", "1.2"}});
  EXPECT_EQ(
      bridge::studyFromDataset(explicitly, transferSyntax(Syntax::ExplicitLittle)).valueOr({}).patientID,
      text("77"));
}

TEST(StudyModel, LooksNotIntoSequences) {
  const QByteArray item = dataset({{0xfffee000, "", dataset({{PatientID, "LO", "other"}})}});
  const QByteArray around = dataset({{0x00081110, "SQ", item}, {StudyInstanceUID, "UI", "1.2"}});
  const auto study = bridge::studyFromDataset(around, transferSyntax(Syntax::ExplicitLittle));
  ASSERT_TRUE(study.ok());
  EXPECT_EQ(study->patientID, QString());
}

TEST(Patient, IsContradictedByOtherNamesOnly) {
  const struct {
    const char* one;
    const char* other;
    bool contradict;
  } table[] = {
      {"Muster^Max", "MUSTER^MAX", false},
      {"Muster^Max", "Muster^Maximilian", false},
      {"Muster^Anna", "Beispiel^Anna", false},
      {"Müller^Jörg", "MULLER", false},
      {"Muster^Max", "", false},
      {"Yamada^Tarou=山田^太郎", "山田^太郎", true},
      {"Yamada^Tarou=山田^太郎", "=山田^太郎", false},
      {"Yamada^Tarou=山田^太郎", "YAMADA^T", false},
      {"Yamada^Tarou", "=山田^太郎", false},
      {"Muster^Max", "Other^Ann", true},
      {"Muster^Max=山田", "Other^Ann=山田", false},
  };
  for (const auto& row : table) {
    Study one = study();
    Study other = one;
    one.patientName = text(row.one);
    other.patientName = text(row.other);
    const auto expected = row.contradict ? std::optional(bridge::PatientAttribute::Name) : std::nullopt;
    EXPECT_EQ(bridge::contradiction(one, other), expected) << row.one << " " << row.other;
    EXPECT_EQ(bridge::contradiction(other, one), expected) << row.one << " " << row.other;
  }
}
