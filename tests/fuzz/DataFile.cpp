// SPDX-License-Identifier: LGPL-3.0-or-later
#include <memory>

#include "apps/growth/document/GrowthCharts.h"
#include "apps/growth/document/GrowthDocument.h"
#include "orv/documents/OrvChecksum.h"
#include "testing/standins/TestServices.h"
#include "tests/fuzz/FuzzTargets.h"
#include "velmora/document/VelmoraApplicationDelegate.h"

using namespace velmora;

namespace {

class NoCache : public VelmoraApplicationDelegate {
 public:
  bool fileIsInCachedDatabaseFiles(const QString&) const override { return false; }
  void addToCachedDatabaseFiles(const QString&) override {}
};

struct World {
  testkit::TestServices desktop{{{QStringLiteral("CFBundleIdentifier"), QStringLiteral("org.velmora.growth")},
                                 {QStringLiteral("CFBundleName"), QStringLiteral("Growth")},
                                 {QStringLiteral("CFBundleShortVersionString"), QStringLiteral("0.1")}}};
  NoCache cache;
  growth::GrowthReferences references{QStringLiteral(GROWTH_REFERENCE_FOLDER)};

  std::unique_ptr<GrowthDocument> document() {
    return std::make_unique<GrowthDocument>(desktop.services, cache, references);
  }
};

const QString Type = QStringLiteral("growth");

void show(const growth::GrowthRecord& record, const growth::GrowthReferences& references) {
  for (const growth::Measure measure : growth::measures) {
    const growth::ChartPoints points = growth::chartPoints(record, measure);
    fuzz::require(points.points.size() == points.examinations.size(), "every point has its examination");
    for (const growth::Examination& examination : record.examinations) {
      growth::resultText(record, examination, measure, references.reference(measure));
      growth::textOf(examination.of(measure));
    }
  }
  growth::GrowthRecord sorted = record;
  const qsizetype last = record.examinations.size() - 1;
  const qsizetype place = sorted.sortExaminations(last);
  fuzz::require(sorted.examinations.at(place) == record.examinations.at(last),
                "sorting keeps every examination");
}

void read(World& world, const QByteArray& file) {
  const auto document = world.document();
  if (!document->readFromData(file, Type).ok()) return;
  fuzz::require(!document->record().examinations.isEmpty(), "a record has an examination");
  show(document->record(), world.references);
  const auto written = document->dataOfType(Type);
  fuzz::require(written.ok(), "what was read can be written");
  const auto again = world.document();
  fuzz::require(again->readFromData(*written, Type).ok(), "what was written can be read");
  fuzz::require(again->record() == document->record(), "what was written is what was read");
}

QByteArray withItsChecksum(QByteArray file) {
  static const QByteArray key = "\"checksum\": \"";
  const qsizetype place = file.indexOf(key) + key.size();
  const qsizetype digits = orv::emptyChecksum().size();
  if (place < key.size() || place + digits > file.size()) return file;
  file.replace(place, digits, orv::emptyChecksum());
  return orv::withChecksum(file);
}

}  // namespace

void fuzz::dataFile(const QByteArray& input) {
  static World world;
  read(world, input);
  read(world, withItsChecksum(input));
  read(world, orv::withChecksum("{\n\"checksum\": \"" + orv::emptyChecksum() + "\",\n\"content\": " + input +
                                ",\n\"format\": \"org.velmora.growth\",\n\"version\": 1\n}\n"));
}
