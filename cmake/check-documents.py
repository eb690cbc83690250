#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-3.0-or-later
"""check-documents.py [ROOT]: lists what the developers' documents name and the tree does not have; exits with 1 then.

Looked at is what stands in `code marks`, outside of indented and fenced blocks: paths, names of classes, functions and
settings written as in C++, and names of tests ("Suite.Name", where "…" and "*" stand for the rest). A name must stand in
code: one that only a comment has is gone.
"""
import os
import re
import subprocess
import sys

ROOT = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "..")
DOCUMENTS = ["README.md", "CONTRIBUTING.md", "docs"]

# Names of others: Qt's classes are known by their letter, these are not.
OTHERS = {"GoogleTest", "QObject", "JPEG", "OsiriX", "Orthanc"}

PATH = re.compile(r"^\.?[\w.-]+(/[\w.*-]+)*/?$")
NAME = re.compile(r"^([A-Z][A-Za-z0-9]*[a-z][A-Za-z0-9]*|[a-z]+[A-Z][A-Za-z0-9]*|[a-z_]+(?=\())(?:\(.*\))?$")
PLACEHOLDER = re.compile(r"(^|/)[A-Z_]{3,}(/|$)")
SOURCE = re.compile(r"[\w-]\.(h|cpp|sh|py|cmake|ui|md|js)$")
TEST = re.compile(r"^(?:\w+/)?([A-Z]\w+)\.([\w…*/]+)$")


def tracked():
    """The files of the tree: git's, or in a folder without git all of them."""
    try:
        listed = subprocess.run(["git", "-C", ROOT, "ls-files", "-co", "--exclude-standard"],
                                capture_output=True, text=True, check=True).stdout.splitlines()
    except (subprocess.CalledProcessError, FileNotFoundError):
        listed = [os.path.relpath(os.path.join(folder, name), ROOT)
                  for folder, _, names in os.walk(ROOT) for name in names]
    return [name for name in listed if os.path.exists(os.path.join(ROOT, name))]


FILES = tracked()
FOLDERS = {"/".join(name.split("/")[:depth]) for name in FILES for depth in range(1, name.count("/") + 1)}
TOPS = {name.split("/")[0] for name in FILES if "/" in name} | {
    name.split("/")[1] for name in FILES if name.startswith("framework/") and name.count("/") > 1}


def text_of(endings):
    parts = []
    for name in FILES:
        if name.endswith(endings):
            with open(os.path.join(ROOT, name), encoding="utf-8", errors="replace") as file:
                parts.append(file.read())
    return "\n".join(parts)


CODE = text_of((".h", ".cpp", ".cmake", "CMakeLists.txt", ".ui", ".js", ".in", ".example"))
WORDS = set(re.findall(r"\w+", re.sub(r"//.*|/\*.*?\*/|(?m:^\s*#\s.*$)", "", CODE)))
SUITES = {}
for suite, test in re.findall(r"\b(?:TEST|TEST_F|TEST_P)\(\s*(\w+),\s*(\w+)\)", CODE):
    SUITES.setdefault(suite, set()).add(test)
for suite, test in re.findall(r"\b(?:NAME) (\w+)\.(\w+)", CODE):
    SUITES.setdefault(suite, set()).add(test)


def path_exists(path):
    path = path.rstrip("/")
    pattern = re.compile("^" + re.escape(path).replace(r"\*", "[^/]*") + "$")
    for start in ("", "framework/"):
        if start + path in FOLDERS or start + path in FILES:
            return True
    return any(pattern.match(name) or pattern.match(name[len("framework/"):])
               for name in list(FILES) + list(FOLDERS)) if "*" in path else False


def complaint_about(mark):
    test = TEST.match(mark)
    if test and not mark.endswith((".md", ".txt", ".cpp", ".h", ".json", ".ui", ".js", ".conf")):
        suite, name = test.groups()
        if suite in WORDS and suite not in SUITES and not re.search(r"[…*]", name):
            return None  # a member of something, not a test
        if suite not in SUITES:
            return "there is no such suite of tests"
        wanted = re.compile("^" + re.escape(name.split("/")[0]).replace("…", r"\w*").replace(r"\*", r"\w*") + r"\w*$")
        return None if any(wanted.match(each) for each in SUITES[suite]) else "there is no such test"
    if "/" in mark and PATH.match(mark) and not PLACEHOLDER.search(mark) and (
            mark.startswith("./") or mark.split("/")[0] in TOPS or SOURCE.search(mark)):
        return None if path_exists(mark.removeprefix("./")) else "there is no such path"
    if SOURCE.search(mark) and PATH.match(mark) and "/" not in mark:
        return None if any(name.split("/")[-1] == mark for name in FILES) else "there is no such file"
    if re.match(r"^\w+(::\w+)+(\(\))?$", mark):
        return None if all(word in WORDS for word in re.findall(r"\w+", mark)) else "no code has this name"
    name = NAME.match(mark)
    if name and name.group(1) not in OTHERS and not re.match(r"Q[A-Z]", name.group(1)) and name.group(1) not in WORDS:
        return "no code has this name"
    return None


def main():
    found = False
    names = [name for name in FILES if name in DOCUMENTS or
             (name.startswith("docs/") and name.count("/") == 1 and name.endswith(".md"))]
    for name in sorted(names):
        fenced = False
        with open(os.path.join(ROOT, name), encoding="utf-8") as file:
            for number, line in enumerate(file, 1):
                if line.startswith("```"):
                    fenced = not fenced
                if fenced or line.startswith("    "):
                    continue
                for mark in re.findall(r"`([^`]+)`", line):
                    what = complaint_about(mark)
                    if what:
                        found = True
                        print(f"{name}:{number}: `{mark}`: {what}")
    return 1 if found else 0


sys.exit(main())
