#!/usr/bin/env python3
"""layering.py ROOT: a folder includes only what its CMakeLists.txt depends on, and third-party headers stay
under platform/. The folders and their DEPENDS are read from the caddis_module lines themselves."""
import pathlib
import re
import sys

ORDER = ["platform", "text", "foundation", "markup", "media", "html", "epub", "importers", "client", "service"]
ABOVE = {"markup": {"media"}, "media": {"markup"}}  # Neighbours that do not know each other.
THIRD_PARTY_ALLOWED = {"epub": {"unzip.h", "ioapi.h"}, "foundation": {"zlib.h"}}

root = pathlib.Path(sys.argv[1])
src = root / "src"
modules, problems = {}, []

for cmake in src.rglob("CMakeLists.txt"):
    text = re.sub(r"#.*", "", cmake.read_text())
    for call in re.finditer(r"caddis_(?:shared_)?module\(([^)]*)\)", text):
        words = call.group(1).split()
        depends = []
        if "DEPENDS" in words:
            for word in words[words.index("DEPENDS") + 1:]:
                if word.isupper():
                    break
                depends.append(word)
        modules[words[0]] = (cmake.parent.relative_to(src), depends)

folder_of = {folder: name for name, (folder, _) in modules.items()}


def reach(name, seen):
    for other in modules[name][1]:
        if other in modules and other not in seen:
            seen.add(other)
            reach(other, seen)
    return seen


def rank(name):
    return ORDER.index(modules[name][0].parts[0])


for name, (folder, depends) in modules.items():
    for other in depends:
        if other not in modules:
            problems.append(f"{folder}/CMakeLists.txt: {other} is no module")
        elif rank(other) > rank(name) or folder.parts[0] in ABOVE.get(modules[other][0].parts[0], ()):
            problems.append(f"{folder}/CMakeLists.txt: {name} may not depend on {other}")



def is_third_party(header):
    return "." in header and not header.startswith(("sys/", "linux/", "arpa/", "netinet/")) and header not in POSIX


POSIX = {"cerrno", "dirent.h", "dlfcn.h", "execinfo.h", "fcntl.h", "poll.h", "pwd.h", "sched.h", "signal.h", "spawn.h",
         "stdint.h", "stdlib.h", "string.h", "unistd.h", "emmintrin.h", "immintrin.h", "malloc.h"}

for path in sorted(src.rglob("*")):
    if path.suffix not in (".h", ".cpp", ".c"):
        continue
    folder = path.parent.relative_to(src)
    name = folder_of.get(folder)
    allowed = reach(name, {name}) if name else set()
    for line in path.read_text().splitlines():
        own = re.match(r'\s*#\s*include\s+"([^"]+)"', line)
        if own and name:
            target = folder_of.get(pathlib.PurePosixPath(own.group(1)).parent)
            target = folder_of.get(pathlib.Path(own.group(1)).parent, target)
            if target is None:
                problems.append(f"{path.relative_to(root)}: {own.group(1)} is in no module")
            elif target not in allowed:
                problems.append(f"{path.relative_to(root)}: may not include {own.group(1)}")
        angle = re.match(r"\s*#\s*include\s+<([^>]+)>", line)
        if angle and folder.parts[0] != "platform" and is_third_party(angle.group(1)):
            if pathlib.Path(angle.group(1)).name not in THIRD_PARTY_ALLOWED.get(folder.parts[0], ()):
                problems.append(f"{path.relative_to(root)}: third-party header <{angle.group(1)}> outside platform/")

if not modules:
    problems.append("no module found")
print("\n".join(problems) or f"{len(modules)} modules keep their layers")
sys.exit(1 if problems else 0)
