#!/usr/bin/env python3
"""Checks that every #include under src/ follows an arrow that the folder's CMakeLists.txt names in MAY_USE.

A file may include headers of its own folder and of the folders named there. Headers of the desktop toolkit stand only
in src/host and src/paint. Prints each wrong line and exits with 1 when there is one.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent / "src"
FOLDER = re.compile(r"vldv_folder\(([\w/]+)\s+(.*?)\bSOURCES\b", re.S)
MAY_USE = re.compile(r"\bMAY_USE\b([^)]*)")
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


def faults(arrows):
    for source in sorted(ROOT.rglob("*")):
        if source.suffix not in (".h", ".cpp"):
            continue
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
            if folder is None:
                yield f"src/{own}:{number}: the folder has no vldv_folder"
            elif target is not None and target not in arrows[folder]:
                yield f"src/{own}:{number}: {folder} may not use {target}"


def main():
    found = list(faults(read_arrows()))
    print("\n".join(found), end="\n" if found else "")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
