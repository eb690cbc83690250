#!/bin/bash
# SPDX-License-Identifier: LGPL-3.0-or-later
#
# demo-test.sh DEMO PROGRAM PICTURES: the demonstration fails when an application is not as expected, says what it saw,
# and leaves nothing behind, not when it is interrupted either. PROGRAM is some other program with a window. PICTURES,
# which takes those of the user guide, fails likewise, and then leaves the earlier ones alone.
set -euo pipefail
demo=$1
program=$2
pictures=$3
world=$(mktemp -d)
trap 'rm -rf "$world"' EXIT
mkdir "$world/tmp"
export TMPDIR=$world/tmp
failures=0

wrong() {
  echo "$1"
  failures=$((failures + 1))
}

# left_behind: what of the run is still there; its processes are known by the folder in their arguments.
left_behind() {
  grep -lsF "$world/tmp" /proc/[0-9]*/cmdline 2>/dev/null || true
  find "$world/tmp" -mindepth 1 -maxdepth 1
}

run() { "$demo" --virtual "$@" >"$world/output" 2>&1; }

status=0
run --out "$world/ends" --application /bin/true || status=$?
[[ $status -eq 1 ]] || wrong "an application that ends at once: exit status $status"
grep -q 'step 1: .*DIFFERS' "$world/output" || wrong "an application that ends at once: $(cat "$world/output")"
[[ -s $world/ends/trace.txt ]] || wrong "no trace was kept"
[[ -z $(left_behind) ]] || wrong "left behind: $(left_behind)"

status=0
run --pacs --out "$world/archive" --application /bin/true || status=$?
[[ $status -eq 1 ]] || wrong "with an archive, an application that ends at once: exit status $status"
grep -q 'step 3: .*DIFFERS' "$world/output" || wrong "with an archive: $(cat "$world/output")"
[[ -s $world/archive/study.dcm && ! -e $world/archive/capture.dcm ]] || wrong "other objects were kept than there are"
[[ -z $(left_behind) ]] || wrong "left behind with an archive: $(left_behind)"

status=0
run --out "$world/missing" --application /nowhere/program || status=$?
[[ $status -eq 1 ]] || wrong "an application that is not there: exit status $status"
[[ -z $(left_behind) ]] || wrong "left behind: $(left_behind)"

mkdir "$world/full" && echo mine >"$world/full/mine"
status=0
run --out "$world/full" || status=$?
[[ $status -eq 1 && $(ls "$world/full") == mine ]] || wrong "a folder with other files in it was used"

# Interrupted while it waits for a first question that never comes.
mkfifo "$world/lines"
"$demo" --virtual --out "$world/interrupted" --application "$program" >"$world/lines" 2>&1 &
pid=$!
exec 3<"$world/lines"
IFS= read -r line <&3
[[ $line == *"virtual screen"* ]] || wrong "first line: $line"
kill -INT "$pid"
status=0
wait "$pid" || status=$?
[[ $status -eq 130 ]] || wrong "interrupted: exit status $status"
[[ -z $(left_behind) ]] || wrong "left behind after an interrupt: $(left_behind)"

mkdir -p "$world/guide/en/images" && echo earlier >"$world/guide/en/images/about.png"
status=0
"$pictures" --guide "$world/guide" --application /bin/true >"$world/output" 2>&1 || status=$?
[[ $status -eq 1 ]] || wrong "pictures of an application that ends at once: exit status $status"
grep -q 'guide: en: expected ' "$world/output" || wrong "pictures of an application that ends at once: $(cat "$world/output")"
[[ $(cat "$world/guide/en/images/about.png") == earlier ]] || wrong "an earlier picture was lost"
rm -rf "$world"/tmp/velmora-guide-* # the trace, which is kept on purpose
[[ -z $(left_behind) ]] || wrong "left behind by the pictures: $(left_behind)"

((failures == 0)) && echo "the demonstration fails and cleans up as it should"
exit "$((failures > 0))"
