#!/usr/bin/env python3
"""Checks that every #include under src/ follows an arrow that the folder's CMakeLists.txt names in MAY_USE.

A file may include headers of its own folder and of the folders named there, and each of those has to be used. Headers of
the desktop toolkit stand only in src/host and src/paint. A folder holds at most 30 units, a unit being a source with its
header. The namespaces of folders stand below vldv::. Prints each fault and exits with 1 when there is one.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent / "src"
FOLDER = re.compile(r"vldv_folder\(([\w/]+)\s+(.*?)\bSOURCES\b", re.S)
MAY_USE = re.compile(r"\bMAY_USE\b([^)]*)")
MOST_UNITS = 30
NAMESPACE = re.compile(r"^namespace (?!vldv\b)(\w+)", re.M)
INCLUDE = re.compile(r'^\s*#\s*include\s+(?:"([^"]+)"|<([^>]+)>)')


def read_arrows():
    """Maps each source folder (relative path) to the folders it may include from."""
    paths, allowed = {}, {}
    for lists in sorted(ROOT.rglob("CMakeLists.txt")):
        for name, head in FOLDER.findall(lists.read_text(encoding="utf-8")):
            folder = lists.parent.relative_to(ROOT).as_posix()
            paths[name] = folder
            used = MAY_USE.search(head)
            allowed[folder] = used.group(1).split() if used else []
    return {folder: {folder} | {paths.get(name, name) for name in names} for folder, names in allowed.items()}


def folder_of(header, arrows):
    """The longest known folder that a header's path starts with, or None."""
    found = [folder for folder in arrows if header.startswith(folder + "/")]
    return max(found, key=len) if found else None


def sources():
    return [path for path in sorted(ROOT.rglob("*")) if path.suffix in (".h", ".cpp", ".inc")]


def faults(arrows):
    used = set()
    for source in sources():
        own = source.relative_to(ROOT).as_posix()
        folder = folder_of(own, arrows)
        for number, line in enumerate(source.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            header = match.group(1) or match.group(2)
            target = folder_of(header, arrows)
            if match.group(2) and re.match(r"Q[A-Z]", header) and not own.startswith(("host/", "paint/")):
                yield f"src/{own}:{number}: {header} belongs to src/host and src/paint alone"
            if folder is None and "/" not in own:
                continue  # the face of the library
            if folder is None:
                yield f"src/{own}:{number}: the folder has no vldv_folder"
            elif target is not None and target not in arrows[folder]:
                yield f"src/{own}:{number}: {folder} may not use {target}"
            used.add((folder, target))
    for folder, names in sorted(arrows.items()):
        for name in sorted(names - {folder}):
            if (folder, name) not in used:
                yield f"src/{folder}/CMakeLists.txt: MAY_USE names {name}, which nothing includes"


def crowds():
    units = {}
    for source in sources():
        units.setdefault(source.parent, set()).add(source.stem)
    for folder, names in sorted(units.items()):
        if len(names) > MOST_UNITS:
            yield f"src/{folder.relative_to(ROOT).as_posix()}: {len(names)} units want rooms; at most {MOST_UNITS}"


def stray_namespaces():
    folders = {path.name for path in ROOT.iterdir() if path.is_dir()}
    for source in sources():
        for name in folders.intersection(NAMESPACE.findall(source.read_text(encoding="utf-8"))):
            yield f"src/{source.relative_to(ROOT).as_posix()}: namespace {name} stands beside vldv::"


def main():
    found = [*faults(read_arrows()), *crowds(), *stray_namespaces()]
    print("\n".join(found), end="\n" if found else "")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
