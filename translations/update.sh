#!/bin/bash
# SPDX-License-Identifier: LGPL-3.0-or-later
#
# update.sh ROOT LUPDATE [OUT]: brings the .ts files of the framework and of the sample application into line with the
# texts that stand in the sources. With OUT the files below that folder are changed instead of those of the tree.
set -euo pipefail
root=$1
lupdate=$2
out=${3:-$root}

# update NAME FOLDER SOURCES...: the .ts files that begin with NAME. Where a text stands is left out of them: it would
# change with every line that is added above it.
update() {
  local name=$1 folder=$2 files=() language
  shift 2
  for language in de fr es; do
    files+=("$out/$folder/${name}_$language.ts")
    # A new file does not know its language.
    if [[ ! -s ${files[-1]} ]]; then
      mkdir -p "$out/$folder"
      printf '<?xml version="1.0" encoding="utf-8"?>\n<!DOCTYPE TS>\n<TS version="2.1" language="%s" sourcelanguage="en"></TS>\n' \
        "$language" >"${files[-1]}"
    fi
  done
  (cd "$root" && "$lupdate" -silent -no-obsolete -locations none \
    -tr-function-alias translate+=localizedString "$@" -ts "${files[@]}")
}

update velmora translations framework
update growth apps/growth/translations apps/growth
