#!/bin/bash
# SPDX-License-Identifier: LGPL-3.0-or-later
#
# usage: valgrind.sh PROGRAM
#
# The tests of destruction in PROGRAM (weather_tests, built without sanitizers) under valgrind. What is read or written
# after it was given back fails; what Qt and the font library leave behind is not looked at.
set -euo pipefail
program=$1
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
start=$SECONDS
HOME=$home QT_QPA_PLATFORM=offscreen valgrind --quiet --error-exitcode=9 --leak-check=no --undef-value-errors=no \
  "$program" --gtest_filter='*Destruction*'
echo "valgrind: no error in $((SECONDS - start)) s"
