// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/unit/growth/reference/ReferenceFiles.h"

#include <gtest/gtest.h>
#include <QCryptographicHash>
#include <QFile>

QByteArray referenceFolderFile(const QString& path) {
  QFile file(QStringLiteral(GROWTH_REFERENCE_FOLDER "/") + path);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
  return file.readAll();
}

growth::GrowthReference shippedReference(const QString& name) {
  const auto reference =
      growth::GrowthReference::fromBytes(referenceFolderFile(name + QStringLiteral(".reference")));
  EXPECT_TRUE(reference.ok()) << qPrintable(reference.error());
  return reference.valueOr(growth::GrowthReference());
}

QByteArray sealed(const QByteArray& text) {
  return text + "sha256: " + QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex() + '\n';
}

QByteArray smallReference() {
  return "velmora-reference 1\n"
         "title: Arm for age\n"
         "short-title: Tests\n"
         "measurement: arm\n"
         "unit: cm\n"
         "variable: age\n"
         "variable-unit: months\n"
         "population: Nobody\n"
         "source: Made for tests\n"
         "method: LMS\n"
         "method-source: Made for tests\n"
         "interpolation: linear\n"
         "join: Young below 10, old from 10\n"
         "[table young]\n"
         "title: Young arms\n"
         "figures: young.csv\n"
         "use: from 0 below 10\n"
         "rows boys 3\n"
         "0 1 10 0.1\n"
         "5 0 20 0.2\n"
         "10 -1 30 0.3\n"
         "rows girls 2\n"
         "0 1 10 0.1\n"
         "12 1 22 0.1\n"
         "[table old]\n"
         "title: Old arms\n"
         "figures: old.csv\n"
         "use: from 10 through 20\n"
         "rows boys 2\n"
         "10 1 40 0.1\n"
         "20 1 50 0.1\n"
         "rows girls 2\n"
         "10 1 20 0.1\n"
         "20 1 30 0.1\n";
}
