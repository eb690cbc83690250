#!/bin/bash
# SPDX-License-Identifier: LGPL-3.0-or-later
#
# install-test.sh BUILD: what is installed beside velmora-link is what systemd and man take.
set -euo pipefail
build=$1
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT

for program in systemd-analyze groff desktop-file-validate; do
  command -v "$program" >/dev/null || { echo "$program is not installed" && exit 1; }
done

# The unit names the program, and systemd looks whether it is there.
place="$prefix/a place"
mkdir -p "$place/bin" "$prefix/runtime"
printf '#!/bin/sh\n' >"$place/bin/velmora-link"
chmod 755 "$place/bin/velmora-link"
cmake --install "$build" --component link --prefix "$place" >/dev/null

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

# What systemd does not know it only mentions, so that nothing may be said at all.
unit=$place/lib/systemd/user/velmora-link.service
complaints=$(XDG_RUNTIME_DIR=$prefix/runtime systemd-analyze --user --man=no verify "$unit" 2>&1) ||
  complaints="$complaints (status $?)"
must "systemd-analyze has something to say: $complaints" test -z "$complaints"
must "the unit starts another program" grep -qxF "ExecStart=\"$place/bin/velmora-link\" serve" "$unit"
must "the unit makes files that others may read" grep -qxF "UMask=0077" "$unit"

page=$place/share/man/man1/velmora-link.1
complaints=$(groff -man -Tutf8 -ww -z "$page" 2>&1) || complaints="$complaints (status $?)"
must "groff has something to say: $complaints" test -z "$complaints"
must "there are names in the page that nobody has filled in" test -z "$(grep -E '@[A-Z_]+@' "$page")"
must "the page names an example that is elsewhere" grep -qF "$place/share/velmora-link/velmora-link.conf.example" "$page"
must "the page does not tell its version" grep -qE '"Velmora [0-9]+\.[0-9]+' "$page"

entry=$place/share/applications/velmora-link.desktop
complaints=$(desktop-file-validate "$entry" 2>&1) || complaints="$complaints (status $?)"
must "desktop-file-validate has something to say: $complaints" test -z "$complaints"
must "the entry opens links with another program" grep -qxF "Exec=\"$place/bin/velmora-link\" open %u" "$entry"
must "the entry is not asked for links" grep -qxF "MimeType=x-scheme-handler/velmora-link;" "$entry"

must "the example is not there" test -s "$place/share/velmora-link/velmora-link.conf.example"
exit "$((failures > 0))"
