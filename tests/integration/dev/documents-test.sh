#!/bin/bash
# SPDX-License-Identifier: LGPL-3.0-or-later
#
# documents-test.sh CHECK: the check of the documents finds what they name and the tree does not have, and nothing else.
set -euo pipefail
check=$1
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
mkdir -p "$tree"/{docs/guide,framework/base/files,tests/unit}
echo 'class TemporaryFile { void replace(); void syncFolder(); }; // class Gone, vanishSoon()' >"$tree/framework/base/files/TemporaryFile.h"
echo 'TEST(DurableWriting, LooksOnceMore) {}' >"$tree/tests/unit/FileTests.cpp"

cat >"$tree/docs/good.md" <<'END'
`framework/base/files` and `base/files/TemporaryFile.h`, `tests/*/FileTests.cpp`, `docs/good.md`, not `/usr/bin/sh`.
`TemporaryFile`, `TemporaryFile::replace`, `syncFolder`, `replace()`, `TemporaryFile.h`, `share/NAME/x.h`, `./docs/good.md`, `QWidget`, `lowercase words`, `DurableWriting.*`, `DurableWriting.Looks…`.
    `NoClass` in a block, and `[link](framework/nowhere)` elsewhere.
```
`framework/nowhere`
```
END
output=$(python3 "$check" "$tree") || { echo "wrongly found: $output" && exit 1; }

cat >"$tree/docs/bad.md" <<'END'
`framework/nowhere`
`base/files/NoFile.h`
`NoClass`
`TemporaryFile::vanish`
`NoSuite.*`
`DurableWriting.Sleeps`
`Gone`
`vanishSoon`
`sync_folder(NAME)`
`GoneClass.h`
`frame/base/Gone.h`
`./nowhere/file.sh`
END
failures=0
output=$(python3 "$check" "$tree") && failures=1
for line in $(seq "$(wc -l <"$tree/docs/bad.md")"); do
  if [[ $'\n'$output != *$'\n'"docs/bad.md:$line: "* ]]; then
    echo "not found: $(sed -n "${line}p" "$tree/docs/bad.md")"
    failures=$((failures + 1))
  fi
done
exit "$((failures > 0))"
