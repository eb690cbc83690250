#!/bin/bash
# SPDX-License-Identifier: LGPL-3.0-or-later
#
# packages-test.sh ROOT BUILD: everything of Debian's that the build found, and every program that the demonstration
# starts, comes with the packages of packaging/packages.txt.
set -euo pipefail
root=$1
build=$2
list=$root/packaging/packages.txt

if ! command -v dpkg-query >/dev/null; then
  echo "not a Debian system"
  exit 77
fi

mapfile -t named < <(sed 's/#.*//; s/[[:space:]]//g; /^$/d' "$list")
((${#named[@]})) || { echo "$list names nothing" && exit 1; }
# The packages named, and all that they bring along.
brought=$(apt-cache depends --recurse --installed --no-recommends --no-suggests --no-conflicts --no-breaks \
  --no-replaces --no-enhances "${named[@]}" | grep -E '^[a-z0-9]' | sed 's/:.*//' | sort -u)

failures=0
looked_at=0
# needs PATH WHY: the package that the file belongs to is among them.
needs() {
  local package
  package=$(dpkg-query -S "$(readlink -f "$1")" 2>/dev/null | head -n 1 | cut -d: -f1) ||
    package=$(dpkg-query -S "$1" 2>/dev/null | head -n 1 | cut -d: -f1) || package=
  [[ -n $package ]] || return 0 # not Debian's
  looked_at=$((looked_at + 1))
  if ! grep -qxF "$package" <<<"$brought"; then
    echo "$package is needed ($2) but packages.txt does not bring it"
    failures=$((failures + 1))
  fi
}

# What find_package and pkg_check_modules found.
while IFS='=' read -r name path; do
  # A folder may be shared by packages; the file that CMake reads in it is not.
  for file in "$path/${name%_DIR}Config.cmake" "$path/${name%_DIR}-config.cmake"; do
    if [[ -d $path && -e $file ]]; then needs "$file" "$name"; fi
  done
  if [[ -f $path ]]; then needs "$path" "$name"; fi
done < <(sed -nE 's/^([A-Za-z0-9_.+-]+):[A-Z]+=(\/usr\/.*)$/\1=\2/p' "$build/CMakeCache.txt" |
  grep -E '^([^=]*_DIR|PKG_CONFIG_EXECUTABLE|pkgcfg_lib_[^=]*|CMAKE_(CXX_COMPILER|MAKE_PROGRAM|COMMAND))=')

# The programs that the demonstration finds by name.
while read -r program; do
  path=$(command -v "$program") || {
    echo "the demonstration starts $program, which is not installed"
    failures=$((failures + 1))
    continue
  }
  needs "$path" "the program $program"
done < <(grep -rhoE 'programNamed\("[^"]+"\)' "$root/demo" | sed -E 's/.*"(.*)".*/\1/' | sort -u)

# The parts of Qt that a window, the virtual screen and JPEG pictures need at run time.
for plugin in platforms/libqxcb.so platforms/libqoffscreen.so imageformats/libqjpeg.so; do
  for path in /usr/lib/*/qt6/plugins/"$plugin"; do needs "$path" "$plugin"; done
done

((looked_at >= 10)) || { echo "only $looked_at things looked at: the test does not see what it should" && exit 1; }
((failures == 0)) && echo "$looked_at things, all from the packages of packages.txt"
exit "$((failures > 0))"
