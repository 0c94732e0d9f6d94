#!/usr/bin/env python3
"""Checks that every #include under src/ follows an arrow that the folder's CMakeLists.txt names in MAY_USE.

A file may include headers of its own folder and of the folders named there, and each of those has to be used. Headers of
the desktop toolkit stand only in src/host and src/paint. A folder holds at most 30 units, a unit being a source with its
header. Prints each fault and exits with 1 when there is one.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent / "src"
FOLDER = re.compile(r"vldv_folder\(([\w/]+)\s+(.*?)\bSOURCES\b", re.S)
MAY_USE = re.compile(r"\bMAY_USE\b([^)]*)")
MOST_UNITS = 30
TOOLKIT = re.compile(r"(Qt\w*/|Q[A-Z]|q[a-z0-9]+\.h$)")
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


FACE = ("vldv_api.h",)  # what every folder may include of the files that stand in none; vldv.h is what entry implements


def fault_of(own, folder, header, in_quotes, arrows):
    """What is wrong with an include of `header` by the file `own`, or None."""
    target = folder_of(header, arrows)
    if not in_quotes:
        outside = TOOLKIT.match(header) and not own.startswith(("host/", "paint/"))
        return f"{header} belongs to src/host and src/paint alone" if outside else None
    if ".." in pathlib.PurePosixPath(header).parts or not (ROOT / header).is_file():
        return f"there is no src/{header}"
    if target is None and header not in FACE and folder not in ("entry", "host", "cli"):
        return f"{folder} may not use {header}"
    if target is not None and target not in arrows[folder]:
        return f"{folder} may not use {target}"
    return None


def faults(arrows):
    used = set()
    for source in sources():
        own = source.relative_to(ROOT).as_posix()
        folder = folder_of(own, arrows)
        if folder is None:
            if "/" in own:
                yield f"src/{own}: the folder has no vldv_folder"
            continue
        for number, line in enumerate(source.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            header = match.group(1) or match.group(2)
            fault = fault_of(own, folder, header, bool(match.group(1)), arrows)
            if fault:
                yield f"src/{own}:{number}: {fault}"
            elif match.group(1):
                used.add((folder, folder_of(header, arrows)))
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


def main():
    found = [*faults(read_arrows()), *crowds()]
    print("\n".join(found), end="\n" if found else "")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
