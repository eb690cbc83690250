// SPDX-License-Identifier: LGPL-3.0-or-later
//
// day-walker FIRST LAST STEP: walks over calendar days in the time zone of its environment, and looks at each
// on its way from the viewer to the window and back, and from the file to the window and back. Says how many
// days there were, and which of them the zone left out; ends with 1 at the first that became another.
#include <QCoreApplication>
#include <QLocale>
#include <cstdio>

#include "platform/text/DateFormatter.h"

using namespace velmora;

namespace {

bool holds(const platform::DateFormatter& formatter, const QDate& day) {
  const QDate today = QDate::currentDate();
  // From a data file: the zone has no say.
  if (formatter.dayFromString(formatter.stringFromDate(day), today) != day) return false;
  // As the viewer sends it; a day that the zone left out has no noon, and no viewer of this zone can send it.
  const QDateTime noon = platform::noonOf(day);
  if (!noon.isValid()) return noon.date() == day;
  const QDateTime received = QDateTime::fromMSecsSinceEpoch(noon.toMSecsSinceEpoch());
  const QString shown = formatter.stringFromDate(received);
  if (shown != formatter.stringFromDate(day)) return false;
  // As it is sent back.
  return formatter.dateFromString(shown, today).toMSecsSinceEpoch() == noon.toMSecsSinceEpoch();
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.size() != 4) return 2;
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  platform::DateFormatter formatter;
  formatter.setDateStyle(platform::DateFormatter::Style::Short);
  const QDate last = QDate::fromString(arguments.at(2), Qt::ISODate);
  int days = 0;
  QStringList leftOut;
  for (QDate day = QDate::fromString(arguments.at(1), Qt::ISODate); day <= last;
       day = day.addDays(arguments.at(3).toInt())) {
    if (!holds(formatter, day)) {
      std::printf("%s became another day\n", qPrintable(day.toString(Qt::ISODate)));
      return 1;
    }
    ++days;
    if (!platform::noonOf(day).isValid()) leftOut.append(day.toString(Qt::ISODate));
  }
  std::printf("%d %s\n", days, qPrintable(leftOut.join(QLatin1Char(' '))));
  return 0;
}
