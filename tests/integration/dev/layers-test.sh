#!/bin/bash
# SPDX-License-Identifier: LGPL-3.0-or-later
#
# layers-test.sh CHECK: the check of the layers finds what breaks each rule, says where, and lets the rest pass.
set -euo pipefail
check=$1
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failures=0
count=0
wanted=()

# put TREE FILE LINE: makes a file with that line as its second, of that name with a number; gives its name in $file.
put() {
  count=$((count + 1))
  file=${2%.*}$count.${2##*.}
  [[ $2 == */LinkProtocol.h ]] && file=$2
  mkdir -p "$tree/$1/$(dirname "$file")"
  printf '\n%s\n' "$3" >"$tree/$1/$file"
}

# finds FILE LINE: the check has to name this line of this file.
finds() {
  put bad "$@"
  wanted+=("$file:2:")
}

# passes FILE LINE: the check has nothing to say of this line in this file.
passes() { put good "$@"; }

passes platform/A.h '#include "platform/B.h"'
passes orv/A.cpp '#include "platform/B.h"'
passes velmora/app/A.cpp '#include "orv/B.h"'
passes velmora/app/A.cpp '#include <QWidget>'
passes apps/growth/main.cpp '#include "platform/qt/B.h"'
passes bridge/main.cpp '#include "velmora/osirix/LinkProtocol.h"'
passes bridge/main.cpp '#include "platform/qt/wire/B.h"'
passes demo/A.cpp '#include "demo/B.h"'
passes demo/A.cpp '#include "tests/bridge/orthanc/B.h"'
passes velmora/stats/A.cpp '#include <cmath>'
passes velmora/about/A.cpp '#include "ui_A.h"'
passes tests/A.cpp '#include "platform/testing/B.h"'

finds platform/A.h '#include "orv/B.h"'
finds platform/A.cpp '#include "velmora/app/B.h"'
finds platform/A.cpp '#include <apps/B.h>'
finds platform/A.cpp '  #  include "bridge/B.h"'
finds platform/A.cpp '#include "platform/qt/B.h"'
finds platform/A.cpp '#include "platform/testing/B.h"'
finds platform/qt/A.cpp '#include "velmora/app/B.h"'
finds platform/qt/A.cpp '#include "platform/testing/B.h"'
finds platform/qt/wire/A.cpp '#include "platform/Log.h"'
finds platform/testing/A.cpp '#include "platform/qt/B.h"'
finds orv/A.h '#include "velmora/app/B.h"'
finds orv/A.h '#include "apps/B.h"'
finds orv/A.h '#include "platform/qt/B.h"'
finds velmora/app/A.h '#include "apps/growth/B.h"'
finds velmora/app/A.h '#include "platform/qt/B.h"'
finds velmora/app/A.h '#include "platform/testing/B.h"'
finds velmora/app/A.h '#include "bridge/B.h"'
finds velmora/stats/A.cpp '#include "platform/B.h"'
finds velmora/stats/A.cpp '#include "velmora/app/B.h"'
finds velmora/stats/A.cpp '#include <QString>'
finds velmora/osirix/LinkProtocol.h '#include "velmora/osirix/B.h"'
finds apps/growth/A.cpp '#include "bridge/B.h"'
finds apps/growth/A.cpp '#include "platform/testing/B.h"'
finds bridge/A.cpp '#include "velmora/osirix/B.h"'
finds bridge/A.cpp '#include "platform/Log.h"'
finds demo/A.cpp '#include "velmora/app/B.h"'
finds velmora/app/A.cpp '#include "B.h"'
finds velmora/app/A.cpp '#include "../../apps/B.h"'
finds velmora/app/A.cpp '#include "velmora/../apps/B.h"'

desktop=(QMessageBox QFileDialog QColorDialog QFontDialog QInputDialog QProgressDialog QErrorMessage QWizard
  QPrintDialog QPrintPreviewDialog QPageSetupDialog QAbstractPrintDialog QDesktopServices QSystemTrayIcon
  QTimer QBasicTimer QChronoTimer QTimeLine QSettings QProcess QProcessEnvironment QPrinter QPrinterInfo
  QDBusConnection QDBusInterface QNetworkAccessManager)
for class in "${desktop[@]}"; do
  finds velmora/app/A.cpp "#include <$class>"
  finds velmora/app/A.cpp "  $class it;"
  finds platform/A.cpp "  $class it;"
  finds platform/testing/A.cpp "  $class it;"
  finds orv/A.h "class $class;"
  finds apps/growth/A.cpp "  $class it;  // just this once"
  finds velmora/batch/A.cpp "  $class::warning(nullptr, {}, {});"
  finds bench/A.cpp "  QObject::connect(&a, &$class::b, c, d);"
  passes platform/qt/A.cpp "  $class it;"
  passes demo/A.cpp "  $class it;"
  passes bridge/A.cpp "  $class it;"
  passes tests/A.cpp "  $class it;"
  passes velmora/app/A.cpp "  // not a $class"
  passes velmora/app/A.h "void My${class}Like();"
done

# Windows of our own, the clock, and what only has a part of the name.
for line in '#include <QDialog>' '  auto* dialog = dynamic_cast<QDialog*>(window());' '#include <QDialogButtonBox>' \
  '  QElapsedTimer timer;' '  QString restartTimers();'; do
  passes velmora/batch/A.cpp "$line"
done
finds velmora/app/A.cpp '  const int id = startTimer(20);'
finds platform/A.cpp '  object->startTimer(std::chrono::seconds(1), Qt::CoarseTimer);'

status=0
output=$(bash "$check" "$tree/good") || status=$?
if [[ $status -ne 0 || -n $output ]]; then
  echo "wrongly found (status $status): $output"
  failures=$((failures + 1))
fi

status=0
output=$(bash "$check" "$tree/bad") || status=$?
((status == 1)) || failures=$((failures + 1))
for line in "${wanted[@]}"; do
  if [[ $'\n'$output != *$'\n'"$line"* ]]; then
    echo "not found: $line $(sed -n 2p "$tree/bad/${line%%:*}")"
    failures=$((failures + 1))
  fi
done

((failures == 0)) && echo "the check finds the ${#wanted[@]} lines that it should, and no other"
exit "$((failures > 0))"
