#!/bin/bash
# SPDX-License-Identifier: LGPL-3.0-or-later
#
# lint.sh ROOT [--all]: form, mistakes, layers and circles, headers that stand by themselves, scripts. Silent but for a
# last line when nothing is found; exits with 1 when something is, or when something could not be checked.
#
# clang-tidy and the headers take long, so without --all they look at what is not committed and at what the newest
# commits changed, at most so many files.
set -euo pipefail
root=$1
scope=${2:-changed}
build=$root/build/lint
most_sources=40
most_headers=60
status=0

# complain WHAT: goes on, and remembers.
complain() {
  echo "lint: $*" >&2
  status=1
}

# pinned PROGRAM: whether it is there in the version whose judgement the code was brought in line with.
pinned() {
  local said version
  version=$(sed -n "s/^$1 *# *//p" packaging/packages-lint.txt)
  [[ -n $version ]] || { complain "packaging/packages-lint.txt names no version of $1" && return 1; }
  said=$("$1" --version 2>/dev/null) || { complain "$1 is missing" && return 1; }
  grep -qE "version:? $version" <<<"$said" || { complain "$1 is not of version $version: $(grep -i version <<<"$said")" && return 1; }
}

cd "$root"
mapfile -t code < <(git ls-files -co --exclude-standard -- '*.cpp' '*.h')
mapfile -t scripts < <(git ls-files -co --exclude-standard -- '*.sh' dev .ci/run)

# newest PATTERN MOST: the files of that name to look at, those changed last first.
newest() {
  {
    git status --porcelain -uall | cut -c4- | sed 's/.* -> //'
    git log --format= --name-only --diff-filter=d -n 40 --no-renames
  } | grep -E "$1" | awk '!seen[$0]++' | while read -r file; do [[ -f $file ]] && echo "$file"; done | head -n "$2" || true
}

check_form() {
  pinned clang-format-14 || return 0
  printf '%s\0' "${code[@]}" | xargs -0 clang-format-14 --style=file --dry-run --Werror || complain "./dev format brings the code into form"
}

check_scripts() {
  pinned shellcheck || return 0
  shellcheck "${scripts[@]}" || complain "shellcheck found something"
}

# What a compiler's view of a source needs: the commands, and the headers that the build makes.
configure() {
  mkdir -p "$build"
  if ! { cmake --preset lint && ninja -C "$build" velmoraprobe_autogen; } >"$build.log" 2>&1; then
    tail -n 20 "$build.log" >&2
    complain "the code cannot be configured, so it was not searched for mistakes"
    return 1
  fi
}

# tidy SOURCE: has clang-tidy look at it, unless it has found nothing since the source, any header, or how they are
# compiled changed.
# shellcheck disable=SC2317  # it is called through xargs
tidy() {
  local stamp=$build/looked-at/$1
  [[ $stamp -nt $1 && $stamp -nt $build/newest-header ]] && return 0
  # On stderr it counts what it left out, file by file.
  nice clang-tidy-14 -p "$build" --config-file="$root/.clang-tidy" --quiet \
    --extra-arg=-Wno-unknown-warning-option "$1" 2> >(grep -vE 'generated\.$' >&2) || return 1
  mkdir -p "${stamp%/*}" && touch "$stamp"
}

check_sources() {
  local sources
  pinned clang-tidy-14 || return 0
  if [[ $scope == --all ]]; then
    mapfile -t sources < <(printf '%s\n' "${code[@]}" | grep '\.cpp$')
  else
    mapfile -t sources < <(newest '\.cpp$' "$most_sources")
  fi
  # One that this build does not compile, a fuzzer's main function, clang-tidy could only guess at.
  mapfile -t sources < <(printf '%s\n' "${sources[@]}" | while read -r source; do
    grep -qF "/$source\"" "$build/compile_commands.json" && echo "$source"
  done)
  ((${#sources[@]})) || return 0
  # Written anew at every configuration, so it goes by what is in it.
  cmp -s "$build/compile_commands.json" "$build/compiled-as.json" ||
    { cp "$build/compile_commands.json" "$build/compiled-as.json" && rm -rf "$build/looked-at"; }
  touch -d "$(printf '%s\0' "${code[@]}" | grep -z '\.h$' | xargs -0 stat -c %y | sort | tail -n 1)" "$build/newest-header"
  [[ .clang-tidy -nt $build/newest-header ]] && touch -r .clang-tidy "$build/newest-header"
  export root build
  export -f tidy
  # shellcheck disable=SC2016  # the argument is the inner shell's
  printf '%s\0' "${sources[@]}" | xargs -0 -n 1 -P "$(nproc)" bash -c 'tidy "$1"' tidy || complain "clang-tidy found something"
}

check_headers() {
  local headers
  if [[ $scope == --all ]]; then
    mapfile -t headers < <(printf '%s\n' "${code[@]}" | grep '\.h$')
  else
    mapfile -t headers < <(newest '\.h$' "$most_headers")
  fi
  ((${#headers[@]})) || return 0
  python3 cmake/check-headers.py "$build" "${headers[@]}" || complain "these headers do not stand by themselves"
}

check_form
check_scripts
python3 cmake/check-layers.py "$root" || complain "the layers are broken"
if configure; then
  check_headers
  check_sources
fi
if ((status == 0)); then
  echo "lint: nothing found$([[ $scope == --all ]] || echo "; of sources and headers, only what changed last was looked at")"
fi
exit "$status"
