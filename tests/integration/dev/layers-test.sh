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

# folders TREE: a house with a room or two on each storey, as the build files describe it.
folders() {
  mkdir -p "$tree/$1/framework" "$tree/$1/apps/growth" "$tree/$1/bridge"
  cat >"$tree/$1/framework/CMakeLists.txt" <<'END'
velmora_folder(base/files SOURCES A.cpp KNOWS Qt6::Core)
velmora_folder(base/log KNOWS Qt6::Core)
velmora_folder(base/http KNOWS base/log Qt6::Network)
velmora_folder(link/protocol KNOWS Qt6::Core)
velmora_folder(link/bus KNOWS link/protocol Qt6::DBus)
velmora_folder(platform)
velmora_folder(platform/text KNOWS Qt6::Core)
velmora_folder(platform/runloop KNOWS base/log Qt6::Core)
velmora_folder(desktop/alerts KNOWS base platform Qt6::Widgets)
velmora_folder(orv/chart KNOWS base Qt6::Widgets)
velmora_folder(velmora/about KNOWS base platform Qt6::Widgets)
velmora_folder(velmora/app
  SOURCES A.cpp B.cpp
  KNOWS base link/protocol platform orv/chart velmora/about Qt6::Widgets)
velmora_folder(testing KNOWS base platform)
velmora_folder(testing/bus KNOWS Qt6::DBus)
velmora_folder(testing/web KNOWS Qt6::Network)
END
  echo 'velmora_folder(apps/growth/record KNOWS base velmora/app)' >"$tree/$1/apps/growth/CMakeLists.txt"
  printf '%s\n' 'velmora_folder(bridge/dicom KNOWS base Qt6::Core)' \
    'velmora_folder(bridge/pacs KNOWS base link/protocol bridge/dicom Qt6::Core)' >"$tree/$1/bridge/CMakeLists.txt"
}
folders good
folders bad

# put TREE FILE LINE: makes a file with that line as its second, of that name with a number; gives its name in $file.
put() {
  count=$((count + 1))
  file=${2%.*}$count.${2##*.}
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

passes framework/platform/runloop/A.h '#include "base/log/B.h"'
passes framework/platform/runloop/A.h '#include "platform/runloop/B.h"'
passes framework/velmora/app/A.cpp '#include "platform/text/B.h"'
passes framework/velmora/app/A.cpp '#include "platform/Services.h"'
passes framework/velmora/app/A.cpp '#include "orv/chart/B.h"'
passes framework/velmora/app/A.cpp '#include "velmora/about/B.h"'
passes framework/velmora/app/A.cpp '#include <QWidget>'
passes framework/velmora/about/A.cpp '#include "ui_A.h"'
passes framework/velmora/stats/A.cpp '#include <cmath>'
passes apps/growth/main.cpp '#include "desktop/alerts/B.h"'
passes apps/growth/record/A.cpp '#include "velmora/app/B.h"'
passes bridge/pacs/A.cpp '#include "link/protocol/B.h"'
passes apps/growth/testing/A.h '#include "testing/B.h"'
passes apps/kidney/testing/A.h '#include "apps/kidney/record/B.h"'
passes bridge/testing/A.cpp '#include "bridge/dicom/B.h"'
passes demo/A.cpp '#include "demo/B.h"'
passes demo/A.cpp '#include "bridge/testing/B.h"'
passes tests/unit/base/A.cpp '#include "testing/B.h"'

# Upwards, sideways, or past the list.
finds framework/platform/text/A.h '#include "orv/chart/B.h"'
finds framework/platform/text/A.cpp '#include "velmora/app/B.h"'
finds framework/platform/text/A.cpp '#include <apps/growth/B.h>'
finds framework/platform/text/A.cpp '  #  include "bridge/dicom/B.h"'
finds framework/platform/text/A.cpp '#include "desktop/alerts/B.h"'
finds framework/platform/text/A.cpp '#include "testing/B.h"'
finds framework/platform/text/A.cpp '#include "platform/runloop/B.h"'
finds framework/base/files/A.cpp '#include "base/log/B.h"'
finds framework/link/bus/A.cpp '#include "base/log/B.h"'
finds framework/desktop/alerts/A.cpp '#include "velmora/app/B.h"'
finds framework/orv/chart/A.h '#include "velmora/app/B.h"'
finds framework/orv/chart/A.h '#include "platform/text/B.h"'
finds framework/velmora/app/A.h '#include "apps/growth/B.h"'
finds framework/velmora/app/A.h '#include "desktop/alerts/B.h"'
finds framework/velmora/app/A.h '#include "link/bus/B.h"'
finds framework/velmora/app/A.h '#include "testing/B.h"'
finds framework/velmora/stats/A.cpp '#include "base/log/B.h"'
finds framework/velmora/stats/A.cpp '#include <QString>'
finds apps/growth/record/A.cpp '#include "bridge/dicom/B.h"'
finds apps/growth/record/A.cpp '#include "desktop/alerts/B.h"'
finds apps/growth/record/A.cpp '#include "testing/B.h"'
finds apps/growth/main.cpp '#include "apps/kidney/record/B.h"'
finds apps/growth/testing/A.h '#include "apps/kidney/record/B.h"'
finds bridge/dicom/A.cpp '#include "bridge/pacs/B.h"'
finds bridge/pacs/A.cpp '#include "platform/text/B.h"'
finds demo/A.cpp '#include "velmora/app/B.h"'
finds demo/A.cpp '#include "tests/unit/base/B.h"'
finds framework/velmora/app/A.cpp '#include "tests/unit/base/B.h"'
# Paths that the rules cannot judge.
finds framework/velmora/app/A.cpp '#include "B.h"'
finds framework/velmora/app/A.cpp '#include "framework/velmora/about/B.h"'
finds framework/velmora/app/A.cpp '#include "../../apps/B.h"'
finds framework/velmora/app/A.cpp '#include "velmora/../apps/B.h"'

desktop=(QMessageBox QFileDialog QColorDialog QFontDialog QInputDialog QProgressDialog QErrorMessage QWizard
  QPrintDialog QPrintPreviewDialog QPageSetupDialog QAbstractPrintDialog QDesktopServices QSystemTrayIcon
  QTimer QBasicTimer QChronoTimer QTimeLine QSettings QProcess QProcessEnvironment QPrinter QPrinterInfo
  QDBusConnection QDBusInterface QNetworkAccessManager)
for class in "${desktop[@]}"; do
  finds framework/velmora/app/A.cpp "#include <$class>"
  finds framework/velmora/app/A.cpp "  $class it;"
  finds framework/base/files/A.cpp "  $class it;"
  finds framework/orv/chart/A.h "class $class;"
  finds apps/growth/record/A.cpp "  $class it;  // just this once"
  finds framework/velmora/about/A.cpp "  $class::warning(nullptr, {}, {});"
  finds bench/A.cpp "  QObject::connect(&a, &$class::b, c, d);"
  passes framework/desktop/alerts/A.cpp "  $class it;"
  passes demo/A.cpp "  $class it;"
  passes bridge/pacs/A.cpp "  $class it;"
  passes tests/A.cpp "  $class it;"
  passes framework/velmora/app/A.cpp "  // not a $class"
  passes framework/velmora/app/A.h "void My${class}Like();"
done
passes framework/link/bus/A.cpp '  QDBusConnection it;'
finds framework/link/bus/A.cpp '  QSettings it;'
passes framework/base/http/A.cpp '  QNetworkAccessManager it;'
finds framework/base/http/A.cpp '  QDBusConnection it;'
passes framework/testing/bus/A.cpp '  QProcess it;'
finds framework/testing/bus/A.cpp '  QSettings it;'
passes framework/testing/web/A.cpp '  QNetworkAccessManager it;'
finds framework/testing/web/A.cpp '  QDBusConnection it;'
finds framework/testing/A.cpp '  QProcess it;'

# Windows of our own, the clock, and what only has a part of the name.
for line in '#include <QDialog>' '  auto* dialog = dynamic_cast<QDialog*>(window());' '#include <QDialogButtonBox>' \
  '  QElapsedTimer timer;' '  QString restartTimers();'; do
  passes framework/velmora/about/A.cpp "$line"
done
finds framework/velmora/app/A.cpp '  const int id = startTimer(20);'
finds framework/platform/text/A.cpp '  object->startTimer(std::chrono::seconds(1), Qt::CoarseTimer);'

# A folder that no list names.
mkdir -p "$tree/bad/framework/orv/nowhere"
echo >"$tree/bad/framework/orv/nowhere/A.h"
wanted+=(framework/orv/nowhere/A.h:1:)

# check TREE: its output in $output, its status in $status.
check() {
  status=0
  output=$(python3 "$check" "$tree/$1") || status=$?
}

check good
if [[ $status -ne 0 || -n $output ]]; then
  echo "wrongly found (status $status): $output"
  failures=$((failures + 1))
fi

check bad
((status == 1)) || failures=$((failures + 1))
for line in "${wanted[@]}"; do
  if [[ $'\n'$output != *$'\n'"$line"* ]]; then
    echo "not found: $line $(sed -n 2p "$tree/bad/${line%%:*}")"
    failures=$((failures + 1))
  fi
done

# Two folders that include each other, and three in a ring, though every list allows it; and lists that look upwards.
folders circle
cat >"$tree/circle/bridge/CMakeLists.txt" <<'END'
velmora_folder(bridge/config KNOWS bridge/pacs)
velmora_folder(bridge/pacs KNOWS bridge/config bridge/spool)
velmora_folder(bridge/spool KNOWS bridge/service)
velmora_folder(bridge/service KNOWS bridge/pacs)
END
mkdir -p "$tree"/circle/bridge/{config,pacs,spool,service}
echo '#include "bridge/pacs/A.h"' >"$tree/circle/bridge/config/A.h"
printf '%s\n' '#include "bridge/config/A.h"' '#include "bridge/spool/A.h"' >"$tree/circle/bridge/pacs/A.h"
echo '#include "bridge/service/A.h"' >"$tree/circle/bridge/spool/A.h"
echo '#include "bridge/pacs/A.h"' >"$tree/circle/bridge/service/A.h"
check circle
for circle in 'bridge/config -> bridge/pacs -> bridge/config' \
  'bridge/pacs -> bridge/spool -> bridge/service -> bridge/pacs'; do
  if [[ $status -ne 1 || $output != *"closes a circle: $circle"* ]]; then
    echo "circle not found: $circle"
    failures=$((failures + 1))
  fi
done

# Two lists that name each other, with one include between the folders.
folders lists
printf '%s\n' 'velmora_folder(bridge/config KNOWS bridge/spool)' 'velmora_folder(bridge/spool KNOWS bridge/config)' \
  >"$tree/lists/bridge/CMakeLists.txt"
mkdir -p "$tree"/lists/bridge/config
echo '#include "bridge/spool/A.h"' >"$tree/lists/bridge/config/A.h"
check lists
if [[ $status -ne 1 || $output != *"closes a circle: bridge/config -> bridge/spool -> bridge/config"* ]]; then
  echo "circle of two lists not found: $output"
  failures=$((failures + 1))
fi

folders list
echo 'velmora_folder(platform/documents KNOWS base platform/nowhere orv/chart)' >>"$tree/list/framework/CMakeLists.txt"
mkdir -p "$tree/list/apps/kidney"
echo 'velmora_folder(apps/kidney/record KNOWS base apps/growth/record)' >"$tree/list/apps/kidney/CMakeLists.txt"
check list
for complaint in 'platform/documents knows platform/nowhere, which is no folder' \
  'platform/documents may not know orv/chart' \
  'apps/kidney/record knows apps/growth/record, which is another application'; do
  if [[ $status -ne 1 || $output != *"$complaint"* ]]; then
    echo "not found in the lists: $complaint"
    failures=$((failures + 1))
  fi
done

((failures == 0)) && echo "the check finds the ${#wanted[@]} lines that it should, the circles, and no other"
exit "$((failures > 0))"
