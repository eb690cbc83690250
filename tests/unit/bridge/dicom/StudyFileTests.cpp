// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "bridge/dicom/Inflater.h"
#include "bridge/dicom/StudyAttributes.h"
#include "bridge/dicom/StudyFile.h"
#include "bridge/dicom/StudyReader.h"
#include "testing/files/Files.h"
#include "tests/unit/bridge/dicom/DicomTesting.h"

using namespace dicom_testing;
using bridge::studyFromBytes;
using bridge::studyFromPath;

namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

bridge::Study expectedStudy() {
  bridge::Study study = dicom_testing::study();
  study.patientName = text("Müller^Jörg");
  return study;
}

QList<Element> elementsOf(const char* uid, const char* patient = "12/345/6") {
  QList<Element> elements = studyElements();
  for (Element& element : elements) {
    if (element.tag == bridge::tags::StudyInstanceUID) element.value = uid;
    if (element.tag == bridge::tags::PatientID) element.value = patient;
  }
  return elements;
}

class StudyFolder : public ::testing::Test {
 protected:
  QString put(const char* name, const QByteArray& contents) {
    const QString path = folder_.filePath(text(name));
    velmora::testkit::writeFile(path, contents);
    return path;
  }
  QString errorOf(const QString& path) { return studyFromPath(path).error(); }
  QTemporaryDir folder_;
};

const Syntax everySyntax[] = {Syntax::ImplicitLittle, Syntax::ExplicitLittle, Syntax::ExplicitBig,
                              Syntax::Deflated};

}  // namespace

TEST(StudyFile, IsReadInEveryTransferSyntax) {
  for (const Syntax syntax : everySyntax) {
    const auto result = studyFromBytes(dicomFile(studyElements(), syntax));
    ASSERT_TRUE(result.ok()) << qPrintable(result.error());
    EXPECT_EQ(*result, expectedStudy()) << static_cast<int>(syntax);
  }
}

TEST(StudyFile, IsReadAroundSequencesAndLargeValues) {
  for (const Syntax syntax : everySyntax) {
    QList<Element> elements = studyElements();
    // Sequences that name another patient: of a length, without one, empty, of unknown kind.
    const QByteArray other = dataset({{bridge::tags::PatientID, "LO", "other"}}, syntax);
    const QByteArray item = dataset({{0xfffee000, "", other}}, syntax);
    const Element ended{0xfffee00d, "", ""};
    const Element end{0xfffee0dd, "", ""};
    const QByteArray endless = dataset({{0xfffee000, "", other, true}, ended}, syntax);
    const QByteArray nested = dataset({{0x00081115, "SQ", endless, true}, end}, syntax);
    const QByteArray nestedItem = dataset({{0xfffee000, "", nested, true}, ended}, syntax);
    // What is within an element of unknown kind is in implicit VR, whatever the file is in.
    const QByteArray implicitItem =
        dataset({{0xfffee000, "", dataset({{0x00091001, "", "x"}}, Syntax::ImplicitLittle), true}, ended},
                Syntax::ImplicitLittle);
    elements.insert(6, {0x00081110, "SQ", item});
    elements.insert(7, {0x00081111, "SQ", nestedItem, true});
    elements.insert(8, end);
    elements.insert(9, {0x00081140, "SQ", ""});
    elements.insert(10, {0x00091010, "OB", QByteArray(1000000, 'x')});
    if (syntax != Syntax::ExplicitBig) {
      elements.insert(11, {0x00091011, "UN", implicitItem, true});
      elements.insert(12, end);
    }
    elements.append({0x7fe00010, "OW", QByteArray(100, 'p')});
    const auto result = studyFromBytes(dicomFile(elements, syntax));
    ASSERT_TRUE(result.ok()) << qPrintable(result.error());
    EXPECT_EQ(*result, expectedStudy()) << static_cast<int>(syntax);
  }
}

TEST(StudyFile, NeedsNoMoreThanTheStudysAttributes) {
  const QByteArray header = dicomFile(studyElements());
  const QByteArray pixels = dataset({{0x7fe00010, "OW", QByteArray(1000, 'p')}});
  EXPECT_EQ(studyFromBytes(header + pixels.left(300)).valueOr({}), expectedStudy());
  EXPECT_EQ(studyFromBytes(header + "rubbish").valueOr({}), expectedStudy());
}

TEST(StudyFile, NeverShowsHalfAPatient) {
  // Wherever the file breaks off, there is the whole patient or no study.
  const bridge::Study expected = expectedStudy();
  for (const Syntax syntax : everySyntax) {
    const QByteArray whole = dicomFile(studyElements(), syntax);
    for (qsizetype size = 0; size < whole.size(); ++size) {
      bridge::Study study = studyFromBytes(whole.left(size)).valueOr({});
      if (study == bridge::Study()) continue;
      study.studyID = expected.studyID;  // the one attribute behind the study's UID
      EXPECT_EQ(study, expected) << size;
    }
  }
}

TEST(StudyFile, SaysWhyItHoldsNoStudy) {
  EXPECT_EQ(studyFromBytes(QByteArray()).error(), text("it is not a DICOM file"));
  EXPECT_EQ(studyFromBytes(QByteArray(1000, '\0')).error(), text("it is not a DICOM file"));
  EXPECT_EQ(studyFromBytes(QByteArray(128, '\0') + "DICM").error(),
            text("it does not say how it is encoded"));
  EXPECT_EQ(studyFromBytes(dicomFile({{bridge::tags::PatientID, "LO", "1"}})).error(),
            text("it is of no study (no Study Instance UID)"));
  EXPECT_EQ(studyFromBytes(dicomFile({{bridge::tags::PatientID, "lo", "1"}})).error(),
            text("its attributes are damaged"));
}

TEST(StudyFile, IsNotKeptBusyBySequencesInSequences) {
  // 2 MB of sequences in sequences would be 60,000 calls deep for a reader that calls itself.
  QByteArray bomb;
  for (int i = 0; i < 60000; ++i) {
    bomb += dataset({{0x00081110, "SQ", "", true}, {0xfffee000, "", "", true}});
  }
  EXPECT_EQ(studyFromBytes(dicomFile({}) + bomb).error(), text("its attributes are damaged"));
}

TEST(StudyFile, IsReadAroundSequencesToAReasonableDepth) {
  const auto fileWithDepth = [](int depth) {
    QByteArray nested;
    for (int i = 0; i < depth; ++i) {
      nested =
          dataset({{0x00081110, "SQ", dataset({{0xfffee000, "", nested, true}, {0xfffee00d, "", ""}}), true},
                   {0xfffee0dd, "", ""}});
    }
    return dicomFile({}) + nested + dataset(studyElements().mid(6));
  };
  EXPECT_TRUE(studyFromBytes(fileWithDepth(32)).ok());
  EXPECT_EQ(studyFromBytes(fileWithDepth(33)).error(), text("its attributes are damaged"));
}

TEST(StudyFile, IsNotKeptBusyByEndlessElements) {
  QByteArray elements = dataset({{0x00091001, "LO", ""}}).repeated(300000);
  EXPECT_EQ(studyFromBytes(dicomFile({}) + elements + dataset(studyElements().mid(6))).error(),
            text("its attributes are damaged"));
}

TEST(StudyFile, IsNotKeptBusyByWhatIsDeflated) {
  QList<Element> elements = studyElements();
  elements.insert(6, {0x00091010, "OB", QByteArray(bridge::Inflater::MostInflated, '\0')});
  const QByteArray file = dicomFile(elements, Syntax::Deflated);
  EXPECT_LT(file.size(), 200000);
  EXPECT_EQ(studyFromBytes(file).error(), text("its attributes are damaged"));
}

TEST_F(StudyFolder, IsAFileOrAFolderOfThem) {
  const QString file = put("a/b/1.dcm", dicomFile(studyElements()));
  put("a/b/2", dicomFile(studyElements(), Syntax::Deflated));
  put("a/notes.txt", "no DICOM");
  put("a/empty", "");
  put("DICOMDIR", dicomFile({{0x00041130, "CS", "DISC"}}));
  EXPECT_EQ(studyFromPath(file).valueOr({}), expectedStudy());
  EXPECT_EQ(studyFromPath(folder_.path()).valueOr({}), expectedStudy());
}

TEST_F(StudyFolder, NamesTheStudiesWhenThereAreSeveral) {
  put("1", dicomFile(elementsOf("1.2.3", "P1")));
  put("sub/2", dicomFile(elementsOf("1.2.4", "")));
  put("sub/3", dicomFile(elementsOf("1.2.3", "P1")));
  EXPECT_EQ(errorOf(folder_.path()),
            folder_.path() + text(": it holds several studies: 1.2.3 (2024-05-02, patient P1); "
                                  "1.2.4 (2024-05-02, patient without identifier)"));
  for (int i = 10; i < 40; ++i)
    put(QByteArray::number(i), dicomFile(elementsOf("1.2." + QByteArray::number(i))));
  EXPECT_EQ(errorOf(folder_.path()).count(text("patient")), 10);
  EXPECT_TRUE(errorOf(folder_.path()).endsWith(text("; and more")));
}

TEST_F(StudyFolder, RefusesOneStudyOfTwoPatients) {
  put("1", dicomFile(elementsOf("1.2.3", "P1")));
  put("2", dicomFile(elementsOf("1.2.3", "P2")));
  EXPECT_EQ(errorOf(folder_.path()),
            folder_.path() + text(": its files name different patients for the study 1.2.3"));
}

TEST_F(StudyFolder, RefusesOneStudyOfTwoPatientsWhateverTellsThemApart) {
  const auto with = [](bridge::Tag tag, const char* vr, const char* value) {
    QList<Element> elements = elementsOf("1.2.3", "P1");
    elements.removeIf([tag](const Element& each) { return each.tag == tag; });
    elements.append({tag, vr, value});
    std::sort(elements.begin(), elements.end(), [](auto& a, auto& b) { return a.tag < b.tag; });
    return elements;
  };
  using namespace bridge::tags;
  const struct {
    bridge::Tag tag;
    const char* vr;
    const char* values[3];
    bool isOnePatient;
  } table[] = {
      {PatientID, "LO", {"P1", "", "P1"}, false},
      {PatientID, "LO", {"P1\\P2", "P1", "P1"}, false},
      {PatientBirthDate, "DA", {"", "20190314", "20190314"}, true},
      {PatientBirthDate, "DA", {"", "20190314", "20190315"}, false},
      {IssuerOfPatientID, "LO", {"A", "", "A"}, true},
      {IssuerOfPatientID, "LO", {"A", "", "B"}, false},
      {PatientSex, "CS", {"M", "O", ""}, true},
      {PatientSex, "CS", {"M", "", "F"}, false},
      {PatientName, "PN", {"Muster^Max", "MUSTER^MAXIMILIAN", "muster"}, true},
      {PatientName, "PN", {"Muster^Max", "", "Other^Ann"}, false},
  };
  for (const auto& row : table) {
    int number = 0;
    for (const char* value : row.values) {
      put(QByteArray::number(++number), dicomFile(with(row.tag, row.vr, value)));
    }
    EXPECT_EQ(errorOf(folder_.path()),
              row.isOnePatient
                  ? QString()
                  : folder_.path() + text(": its files name different patients for the study 1.2.3"))
        << row.tag << row.values[0];
  }
}

TEST_F(StudyFolder, IsNotLeftByLinksNorStoppedByPipes) {
  QTemporaryDir elsewhere;
  QFile other(elsewhere.filePath(text("other.dcm")));
  ASSERT_TRUE(other.open(QIODevice::WriteOnly));
  other.write(dicomFile(elementsOf("9.9")));
  other.close();
  put("1", dicomFile(studyElements()));
  ASSERT_TRUE(QFile::link(other.fileName(), folder_.filePath(text("file"))));
  ASSERT_TRUE(QFile::link(elsewhere.path(), folder_.filePath(text("folder"))));
  ASSERT_TRUE(QFile::link(folder_.path(), folder_.filePath(text("circle"))));
  ASSERT_TRUE(QFile::link(text("/nowhere"), folder_.filePath(text("broken"))));
  const QString pipe = folder_.filePath(text("pipe"));
  ASSERT_EQ(::mkfifo(qPrintable(pipe), 0600), 0);
  EXPECT_EQ(studyFromPath(folder_.path()).valueOr({}), expectedStudy());
  EXPECT_EQ(errorOf(pipe), pipe + text(": it is neither a file nor a folder"));
  // What the user names may be a link.
  EXPECT_EQ(studyFromPath(folder_.filePath(text("file")))->studyInstanceUID, text("9.9"));
}

TEST_F(StudyFolder, IsBoundedInDepth) {
  QString deep = folder_.path();
  for (int i = 0; i <= bridge::DeepestFolder; ++i) deep += text("/d");
  ASSERT_TRUE(QDir().mkpath(deep));
  EXPECT_EQ(errorOf(folder_.path()),
            folder_.path() + text(": there are folders in folders more than 16 deep"));
}

TEST_F(StudyFolder, SaysWhyThereIsNoStudy) {
  EXPECT_EQ(errorOf(folder_.path()), folder_.path() + text(": no file in it is a DICOM file of a study"));
  EXPECT_EQ(errorOf(text("/no/such")), text("/no/such: there is no such file or folder"));
  const QString notes = put("notes", "no DICOM");
  EXPECT_EQ(errorOf(notes), notes + text(": it is not a DICOM file"));
}
