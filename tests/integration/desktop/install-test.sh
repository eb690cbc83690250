#!/bin/bash
# SPDX-License-Identifier: LGPL-3.0-or-later
#
# install-test.sh BUILD: what is installed for the desktop is what desktops, buses and software centres take.
set -euo pipefail
build=$1
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
id=org.velmora.growth

for program in desktop-file-validate appstreamcli; do
  command -v "$program" >/dev/null || { echo "$program is not installed" && exit 1; }
done

cmake --install "$build" --component desktop --prefix "$prefix/a place" >/dev/null
cd "$prefix/a place/share"

failures=0
# must WHAT COMMAND...: the command succeeds.
must() {
  local what=$1
  shift
  if ! "$@"; then
    echo "$what"
    failures=$((failures + 1))
  fi
}

complaints=$(desktop-file-validate applications/$id.desktop)
must "desktop-file-validate has something to say: $complaints" test -z "$complaints"
must "appstreamcli does not take the description" appstreamcli validate --no-net --no-color metainfo/$id.metainfo.xml
must "the bus starts another program" \
  grep -qxF "Exec=\"$prefix/a place/bin/growth\" --service" dbus-1/services/$id.service
must "the bus knows it by another name" grep -qxF "Name=$id" dbus-1/services/$id.service
must "the icon is not there" test -s icons/hicolor/scalable/apps/$id.svg

# One name in all of them.
type=$(sed -n 's/^MimeType=\(.*\);$/\1/p' applications/$id.desktop)
must "the entry names no type" test -n "$type"
must "the type of the files is another" grep -qF "<mime-type type=\"$type\">" mime/packages/$id.xml
must "the description names another type" grep -qF "<mediatype>$type</mediatype>" metainfo/$id.metainfo.xml
must "the files have another ending" grep -qF '<glob pattern="*.growth"/>' mime/packages/$id.xml
must "the entry is not for the bus" grep -qxF "DBusActivatable=true" applications/$id.desktop

# Every action of the entry is one that the program is started with.
IFS=';' read -ra actions < <(sed -n 's/^Actions=//p' applications/$id.desktop)
must "the entry has no actions" test "${#actions[@]}" -ge 3
for action in "${actions[@]}"; do
  must "the action $action starts nothing" grep -qxF "Exec=growth --action=$action" applications/$id.desktop
done
exit "$((failures > 0))"
