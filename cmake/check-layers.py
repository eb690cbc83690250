#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-3.0-or-later
"""check-layers.py [ROOT]: lists every line that breaks the order of the folders; exits with 1 if there is one.

Each folder of the framework, the bridge and the applications lists in its velmora_folder() what it may include
(KNOWS). This holds the includes to those lists, the lists to the order of the storeys, and finds circles between
folders. What the linker finds too, it finds at once; what the linker cannot see, such as headers, it finds alone.
"""
import collections
import os
import re
import sys

ROOT = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "..")

# Who may stand in whose list, from the ground up. A name stands for the storey and every folder of it.
STOREYS = {
    "base": [],
    "link": ["base"],
    "platform": ["base"],
    "desktop": ["base", "link", "platform"],
    "orv": ["base", "platform"],
    "velmora": ["base", "link/protocol", "platform", "orv"],
    "testing": ["base", "link", "platform", "desktop", "orv", "velmora"],
    "apps": ["base", "platform", "orv", "velmora"],
    "bridge": ["base", "link"],
}
# Sources that stand in no list: the programs, and what only looks on. APP is any application, the same on both sides.
BESIDE = {
    "apps/APP/testing/": ["apps/APP/", "base/", "link/protocol/", "platform/", "testing/", "velmora/"],
    "apps/APP/": ["apps/APP/", "base/", "desktop/", "orv/", "platform/", "velmora/"],
    "bench/": ["bench/", "base/", "orv/", "platform/", "velmora/"],
    "bridge/orthanc/": ["bridge/orthanc/", "link/protocol/"],
    "bridge/testing/": ["bridge/testing/", "bridge/pacs/", "bridge/dicom/", "testing/"],
    "demo/": ["demo/", "base/process/", "bridge/dicom/", "bridge/testing/", "testing/"],
}
TREES = ["framework", "apps", "bridge", "demo", "bench", "tests"]

# Qt's ready-made dialogs, timers, settings, processes, printers, buses and networks belong to the desktop. A QDialog as
# such is a window like others: the interface files make some.
DESKTOP_ONLY = re.compile(
    r"\b(QMessageBox|Q[A-Z][A-Za-z]*Dialog|QErrorMessage|QWizard|QSystemTrayIcon|QDesktopServices"
    r"|QTimer|QBasicTimer|QChronoTimer|QTimeLine|startTimer"
    r"|QSettings|QProcess|QProcessEnvironment|QPrinter|QPrinterInfo|QDBus[A-Za-z]*|QNetwork[A-Za-z]*)\b"
)
# Below the desktop two folders have one job with some of them: the bus, and the web. The test kit has programs, buses,
# servers and browsers of a test's own.
DESKTOP_ELSEWHERE = {
    "link/": ("QDBus", "QTimer"),
    "base/http/": ("QNetwork", "QTimer"),
    "testing/bus/": ("QDBus", "QProcess"),
    "testing/person/": ("QProcess",),
    "testing/probe/": ("QFileDialog", "QMessageBox", "QTimer"),
    "testing/process/": ("QProcess",),
    "testing/waiting/": ("QTimer",),
    "testing/web/": ("QNetwork", "QProcess", "QTimer"),
    "testing/window/": ("QFileDialog", "QMessageBox", "QTimer"),
}

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]*)[>"]')
GENERATED = re.compile(r"^ui_[^/]*\.h$|^[^/]*\.moc$|^bridge/orthanc/PageScriptText\.h$")

complaints = []


def complain(path, line, what):
    complaints.append(f"{path}:{line}: {what}")


def files_below(tree, endings):
    for folder, folders, names in os.walk(os.path.join(ROOT, tree)):
        folders.sort()
        for name in sorted(names):
            if name.endswith(endings):
                yield os.path.relpath(os.path.join(folder, name), ROOT)


def read(path):
    with open(os.path.join(ROOT, path), encoding="utf-8") as file:
        return file.read()


def included_as(path):
    """The path under which a file is included: those of the framework from its folder on."""
    return path[len("framework/"):] if path.startswith("framework/") else path


def without_comment(line):
    return re.sub(r"(^|\s)//.*", "", line)


def read_lists():
    """The folders with a list: folder -> (what it knows, file, line)."""
    lists = {}
    for tree in ("framework", "apps", "bridge"):
        for path in files_below(tree, ("CMakeLists.txt",)):
            text = read(path)
            for call in re.finditer(r"^velmora_folder\(([^)]*)\)", text, re.MULTILINE):
                words = call.group(1).split()
                known = words[words.index("KNOWS") + 1:] if "KNOWS" in words else []
                line = text.count("\n", 0, call.start()) + 1
                lists[words[0]] = ([word for word in known if "::" not in word and word != "QCustomPlotQt6"], path, line)
    return lists


def covers(entry, folder):
    return folder == entry or folder.startswith(entry + "/")


def check_lists(lists):
    for folder, (known, path, line) in lists.items():
        storey = folder.split("/")[0]
        for other in known:
            if other.split("/")[0] == storey:
                if other not in lists:
                    complain(path, line, f"{folder} knows {other}, which is no folder")
                elif storey == "apps" and other.split("/")[1] != folder.split("/")[1]:
                    complain(path, line, f"{folder} knows {other}, which is another application")
            elif not any(covers(allowed, other) for allowed in STOREYS.get(storey, [])):
                complain(path, line, f"{folder} may not know {other}: {storey} stands below it or beside it")


def may_include(folder, other, lists):
    # What stands in the folder base itself, such as VELMORA_EXPORT, is for everybody but stats.
    if other in (folder, "base"):
        return True
    if folder in lists:
        storey = folder.split("/")[0]
        return any(
            other == entry or (entry.split("/")[0] != storey and covers(entry, other)) for entry in lists[folder][0]
        )
    app = "/".join(folder.split("/")[:2]) + "/" if folder.startswith("apps/") else "apps/APP/"
    for beside, allowed in BESIDE.items():
        beside, allowed = beside.replace("apps/APP/", app), [start.replace("apps/APP/", app) for start in allowed]
        if (folder + "/").startswith(beside):
            return any((other + "/").startswith(start) for start in allowed)
    return folder.startswith("tests")


def check_includes(lists):
    """Holds every include to the lists; gives who includes whom, with one place for each pair."""
    graph = collections.defaultdict(dict)
    for tree in TREES:
        for path in files_below(tree, (".h", ".cpp")):
            folder = os.path.dirname(included_as(path))
            if tree == "framework" and folder not in lists and not folder.startswith("velmora/stats"):
                complain(path, 1, f"no velmora_folder() names the folder {folder}")
            for number, line in enumerate(read(path).splitlines(), 1):
                found = INCLUDE.match(line)
                if not found:
                    continue
                quote, name = found.groups()
                if ".." in name.split("/"):
                    complain(path, number, "a path may not climb")
                    continue
                ours = name.split("/")[0] in list(STOREYS) + TREES and "/" in name
                if folder.startswith("velmora/stats") and (name[0] == "Q" or (ours and not name.startswith(folder + "/"))):
                    complain(path, number, "velmora/stats knows nothing but the standard library")
                elif ours and not GENERATED.match(name):
                    other = os.path.dirname(name)
                    graph[folder].setdefault(other, (path, number))
                    if name.startswith("framework/"):
                        complain(path, number, "headers of the framework are included from its folder on")
                    elif not may_include(folder, other, lists):
                        complain(path, number, f"{folder} may not include this: {other} is not in its list")
                elif quote == '"' and not ours and not GENERATED.match(name) and tree != "tests":
                    complain(path, number, "give the path from the folder of the project")
    return graph


def check_circles(graph):
    """Names every include, or list, that closes a circle of folders."""
    state = {}

    def walk(folder, way):
        state[folder] = "open"
        for other, (path, number) in graph.get(folder, {}).items():
            if other == folder:
                continue
            if state.get(other) == "open":
                circle = way[way.index(other):] + [other]
                complain(path, number, "closes a circle: " + " -> ".join(circle))
            elif other not in state:
                walk(other, way + [other])
        state[folder] = "done"

    for folder in sorted(graph):
        if folder not in state and not folder.startswith("tests"):
            walk(folder, [folder])


def check_desktop_classes():
    for tree in ("framework", "apps", "bench"):
        for path in files_below(tree, (".h", ".cpp")):
            name = included_as(path)
            if name.startswith("desktop/"):
                continue
            own = next((start for place, start in DESKTOP_ELSEWHERE.items() if name.startswith(place)), ())
            for number, line in enumerate(read(path).splitlines(), 1):
                for word in DESKTOP_ONLY.findall(without_comment(line)):
                    if not word.startswith(own):
                        complain(path, number, f"{word} belongs in framework/desktop")


def main():
    lists = read_lists()
    check_lists(lists)
    graph = check_includes(lists)
    for folder, (known, path, line) in lists.items():
        for other in known:
            if other in lists:
                graph[folder].setdefault(other, (path, line))
    check_circles(graph)
    check_desktop_classes()
    for line in sorted(set(complaints)):
        print(line)
    return 1 if complaints else 0


sys.exit(main())
