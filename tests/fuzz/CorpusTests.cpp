// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Every input of the corpora once more, without the fuzzer: the seeds, and what a fuzzer found.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "tests/fuzz/FuzzTargets.h"

namespace fuzz {
void PrintTo(const Target& target, std::ostream* out) { *out << target.name; }
}  // namespace fuzz

class FuzzCorpus : public ::testing::TestWithParam<fuzz::Target> {};

TEST_P(FuzzCorpus, IsTakenWithoutAFault) {
  const QDir folder(QStringLiteral(FUZZ_CORPUS "/") + QString::fromLatin1(GetParam().name));
  const QStringList inputs = folder.entryList(QDir::Files);
  ASSERT_FALSE(inputs.isEmpty()) << qPrintable(folder.path());
  for (const QString& input : inputs) {
    SCOPED_TRACE(qPrintable(input));
    QFile file(folder.filePath(input));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    GetParam().run(file.readAll());
  }
}

INSTANTIATE_TEST_SUITE_P(Of, FuzzCorpus, ::testing::ValuesIn(fuzz::targets), [](const auto& each) {
  QString name = QString::fromLatin1(each.param.name);
  return name.remove(QLatin1Char('-')).toStdString();
});
