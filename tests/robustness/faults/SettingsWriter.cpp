// SPDX-License-Identifier: LGPL-3.0-or-later
//
// settings-writer PREFIX COUNT: stores COUNT values under five keys of its own, and reads all of these back
// after each; ends with 1 when one was lost on the way.
#include <QCoreApplication>
#include <QMap>
#include <cstdio>

#include "desktop/runloop/QtRunLoop.h"
#include "desktop/settings/QtUserDefaults.h"

using namespace velmora;

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.size() != 3) return 2;
  const QString prefix = arguments.at(1);
  const int count = arguments.at(2).toInt();
  const desktop::QtRunLoop clock;
  desktop::QtUserDefaults defaults(QStringLiteral("org.velmora.growth"), clock);
  std::puts("ready");
  std::fflush(stdout);
  if (std::getchar() == EOF) return 2;  // both begin when both are there
  QMap<QString, int> own;
  for (int i = 0; i < count; ++i) {
    // Few keys and values of one length: the size of the file does not tell that it has changed.
    const QString key = prefix + QString::number(i % 5);
    own[key] = 1000 + i;
    defaults.setInteger(own[key], key);
    for (auto each = own.cbegin(); each != own.cend(); ++each) {
      const auto found = static_cast<int>(defaults.integerForKey(each.key()));
      if (found == each.value()) continue;
      std::printf("%s was %d and is %d after store %d\n", qPrintable(each.key()), each.value(), found, i);
      return 1;
    }
  }
  return 0;
}
