// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include "apps/growth/tools/ReferenceConverter.h"
#include "testing/files/Files.h"
#include "tests/unit/growth/reference/ReferenceFiles.h"

namespace {

struct Outcome {
  int exitCode;
  QString complaint;
};

Outcome runConverter(const QStringList& arguments) {
  QProcess process;
  process.start(QStringLiteral(GROWTH_CONVERT_REFERENCE), arguments);
  EXPECT_TRUE(process.waitForFinished()) << qPrintable(process.errorString());
  return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
          QString::fromUtf8(process.readAllStandardError())};
}

QString inReferenceFolder(const QString& path) { return QStringLiteral(GROWTH_REFERENCE_FOLDER "/") + path; }

// The complaint about a published table with these bytes, under a good heading.
std::string complaintAbout(const QByteArray& table) {
  const auto tables = [&](const QString&) { return std::optional(table); };
  const QByteArray heading = referenceFolderFile(QStringLiteral("headings/head.heading"));
  const auto reference = growth::convertReference(heading, tables);
  EXPECT_FALSE(reference.ok());
  return reference.error().toStdString();
}

}  // namespace

TEST(ReferenceConverter, MakesTheReferencesShippedByteForByte) {
  QTemporaryDir folder;
  for (const char* text : shippedReferences) {
    const QString name = QString::fromLatin1(text);
    const QString path = folder.filePath(name + QStringLiteral(".reference"));
    const Outcome run = runConverter({inReferenceFolder(QStringLiteral("headings/%1.heading").arg(name)),
                                      inReferenceFolder(QStringLiteral("cdc2000")), path});
    EXPECT_EQ(run.exitCode, 0) << qPrintable(run.complaint);
    EXPECT_TRUE(velmora::testkit::readFile(path) == referenceFolderFile(name + QStringLiteral(".reference")))
        << text;
  }
}

TEST(ReferenceConverter, KeepsEveryPublishedDigit) {
  const QByteArray reference = referenceFolderFile(QStringLiteral("height.reference"));
  EXPECT_TRUE(reference.contains("\n1.5 -0.45224446 56.62842855 0.04411683\n"));
  int rows = 0;
  for (const QByteArray& line : referenceFolderFile(QStringLiteral("cdc2000/statage.csv")).split('\n')) {
    const QList<QByteArray> fields = line.split(',');
    if (fields.size() < 5 || fields[0] == "Sex") continue;
    EXPECT_TRUE(reference.contains('\n' + fields.sliced(1, 4).join(' ') + '\n')) << line.constData();
    ++rows;
  }
  EXPECT_EQ(rows, 436);
}

TEST(ReferenceConverter, RefusesWhatIsNoPublishedTable) {
  EXPECT_EQ(complaintAbout(""), "hcageinf.csv: line 1 does not begin with the columns Sex, x, L, M, S.");
  EXPECT_EQ(complaintAbout("Sex,Agemos,M,L,S\n"),
            "hcageinf.csv: line 1 does not begin with the columns Sex, x, L, M, S.");
  EXPECT_EQ(complaintAbout("Sex,Agemos,L,M,S\n3,0,1,1,1\n"),
            "hcageinf.csv: line 2 is no row of a boy or a girl.");
  EXPECT_EQ(complaintAbout("Sex,Agemos,L,M,S\n1,0,1\n"),
            "hcageinf.csv: line 2 is no row of a boy or a girl.");
  // What cannot be read back is not written.
  EXPECT_NE(
      complaintAbout("Sex,Agemos,L,M,S\n1,0,1,35,0.1\n1,36,1,48,none\n").find("\"none\" is not a number."),
      std::string::npos);
}

TEST(ReferenceConverter, LeavesTheOldFileWhenSomethingIsMissing) {
  QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("head.reference"));
  velmora::testkit::writeFile(path, "old");

  const QString heading = inReferenceFolder(QStringLiteral("headings/head.heading"));
  const Outcome withoutTable = runConverter({heading, folder.path(), path});
  EXPECT_EQ(withoutTable.exitCode, 1);
  EXPECT_TRUE(withoutTable.complaint.contains(QStringLiteral("There is no \"hcageinf.csv\".")));
  EXPECT_EQ(runConverter({folder.filePath(QStringLiteral("none")), folder.path(), path}).exitCode, 1);
  EXPECT_EQ(runConverter({heading}).exitCode, 2);

  EXPECT_EQ(velmora::testkit::readFile(path), "old");
}
