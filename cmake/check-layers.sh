#!/bin/bash
# SPDX-License-Identifier: LGPL-3.0-or-later
#
# check-layers.sh [ROOT]: lists every line that breaks the order of the folders, and exits with 1 if there is one.
#
# Includes run downwards only: apps -> velmora -> orv -> platform. What belongs to the desktop is used in platform/qt
# alone. The link lists of the targets say the same; this finds what the linker does not see, such as headers.
set -euo pipefail
cd "${1:-$(dirname "${BASH_SOURCE[0]}")/..}"

found=0

# "file:line:text" of every line of code, without what is in // comments.
folders=()
for folder in platform orv velmora apps bridge demo bench tests; do [[ -d $folder ]] && folders+=("$folder"); done
code=$({ grep -rnHE --include='*.h' --include='*.cpp' 'include|Q[A-Z]|startTimer' "${folders[@]}" || true; } |
  sed -E 's@^([^:]*:[0-9]+:)(.*[[:space:]])?//.*$@\1\2@')
included=$(sed -nE 's@^([^:]*:[0-9]+:)[[:space:]]*#[[:space:]]*include[[:space:]]*[<"]([^>"]*)[>"].*@\1\2@p' <<<"$code")

# lines FOLDER: those of them that are in a file below it; FOLDER may be a pattern.
lines() { grep -E "^($1)[/:]" <<<"$code" || true; }
# includes FOLDER: "file:line:included" of every include in a file below it.
includes() { grep -E "^($1)[/:]" <<<"$included" || true; }

complain() {
  local line
  while read -r line; do
    echo "$line: $1"
    found=1
  done
}

# may_not FOLDER PATTERN: no file below FOLDER includes a header whose path matches.
may_not() { complain "$1 may not include this" < <(includes "$1" | grep -E ":[0-9]+:($2)" || true); }

# may_only FOLDER PATTERN: every header of ours that a file below FOLDER includes matches.
may_only() { complain "$1 may not include this" < <(includes "$1" | grep -E "$ours" | grep -vE ":[0-9]+:($2)" || true); }

ours=':[0-9]+:(platform|orv|velmora|apps|bridge|demo|bench|tests)/'

may_only platform 'platform/'
may_only platform/qt/wire 'platform/qt/wire/'
may_only platform/testing 'platform/(testing/|[^/]*$)'
may_not platform/qt 'platform/testing/'
complain 'only platform/qt and platform/testing know these' \
  < <(includes platform | grep -vE '^platform/(qt|testing)/' | grep -E ':[0-9]+:platform/(qt|testing)/' || true)
may_only orv '(orv/|platform/[^/]*$)'
may_only velmora '(velmora/|orv/|platform/[^/]*$)'
may_only velmora/stats 'velmora/stats/'
complain 'velmora/stats knows nothing but the standard library' < <(includes velmora/stats | grep -E ':[0-9]+:Q' || true)
may_only velmora/osirix/LinkProtocol.h '$^'
may_only apps '(apps/|velmora/|orv/|platform/[^/]*$|platform/qt/)'
may_only bridge '(bridge/|platform/qt/wire/|velmora/osirix/LinkProtocol\.h$)'
may_only demo '(demo/|bridge/dicom/Study\.h$|tests/bridge/(orthanc|page)/)'

# A path that begins in the project's folder is the only one that the rules above can judge.
complain 'give the path from the folder of the project' \
  < <(lines 'platform|orv|velmora|apps|bridge|demo|bench' |
    grep -E ':[0-9]+:[[:space:]]*#[[:space:]]*include[[:space:]]*"' |
    grep -vE "\"(platform|orv|velmora|apps|bridge|demo|bench|tests)/|\"(ui_[^/]*\.h|[^/]*\.moc)\"" || true)
complain 'a path may not climb' < <(includes 'platform|orv|velmora|apps|bridge|demo|bench' | grep -F '..' || true)

# The ready-made dialogs of Qt and of the desktop, its timers, settings, processes, printers, buses and networks. A
# QDialog as such is a window like others: the interface files make some.
dialogs='QMessageBox|Q[A-Z][A-Za-z]*Dialog|QErrorMessage|QWizard|QSystemTrayIcon|QDesktopServices'
timers='QTimer|QBasicTimer|QChronoTimer|QTimeLine|startTimer'
others='QSettings|QProcess|QProcessEnvironment|QPrinter|QPrinterInfo|QDBus[A-Za-z]*|QNetwork[A-Za-z]*'
complain 'belongs in platform/qt' \
  < <(lines 'platform|orv|velmora|apps|bench' | grep -v '^platform/qt/' |
    grep -E ":[0-9]+:.*\b($dialogs|$timers|$others)\b" || true)

exit "$found"
