#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-3.0-or-later
"""check-headers.py BUILD HEADERS...: compiles each header by itself; exits with 1 if one needs another before it.

Each is compiled as the sources of its folder are; BUILD has the compile_commands.json, of a build without precompiled
headers, which would lend a header what it lacks.
"""
import concurrent.futures
import json
import os
import shlex
import subprocess
import sys

build, headers = sys.argv[1], sys.argv[2:]
with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
    database = json.load(file)
commands = {}
for each in database:
    commands.setdefault(os.path.dirname(os.path.realpath(each["file"])), each)


def options_of(entry):
    """What the source is compiled with, without the source and what comes of it."""
    words = iter(shlex.split(entry["command"]))
    for word in words:
        if word in ("-o", "-MF", "-MT"):
            next(words)
        elif word not in ("-c", "-MD") and not word.endswith(".cpp"):
            yield word


def every_include_path():
    """For a folder in which nothing that uses its headers is compiled: whoever includes them knows one of these."""
    found = {}
    for entry in database:
        words = shlex.split(entry["command"])
        for word, following in zip(words, words[1:]):
            if word == "-isystem":
                found[following] = True
    return [word for path in found for word in ("-isystem", path)]


def command_for(header):
    entry = commands.get(os.path.dirname(os.path.realpath(header)), database[0])
    return [*options_of(entry), *every_include_path(), "-fsyntax-only", "-x", "c++", "-"], entry["directory"]


def check(header):
    words, folder = command_for(header)
    source = f'#include "{os.path.realpath(header)}"\n'
    run = subprocess.run(words, cwd=folder, input=source, capture_output=True, text=True, check=False)
    return header, run.stderr if run.returncode else ""


failed = False
with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
    for name, said in pool.map(check, headers):
        if said:
            failed = True
            print(f"{name} does not compile by itself:\n{said}")
sys.exit(1 if failed else 0)
