#!/usr/bin/env python3
"""Checks that every #include under src/ follows an arrow of the house, and every arrow leads down.

The table of docs/architecture.md gives each folder its floor. A folder's CMakeLists.txt names in MAY_USE the folders whose
headers it includes: each has to lie on a lower floor, and to be used. Headers of the desktop toolkit stand only in src/host
and src/paint. The rooms of a folder, its sub-folders, do not include each other in a circle. A folder holds at most 30
units, a unit being a source with its header. Prints each fault and exits with 1 when there is one.

Usage: check_includes.py [directory that holds src/ and docs/]
"""
import pathlib
import re
import sys

FOLDER = re.compile(r"vldv_folder\(([\w/]+)\s+(.*?)\bSOURCES\b", re.S)
MAY_USE = re.compile(r"\bMAY_USE\b((?:(?!\bPCH\b)[^)])*)")
FLOOR = re.compile(r"^\| *(\d+) *\|([^|]*)\|", re.M)
MOST_UNITS = 30
TOOLKIT = re.compile(r"Q[A-Za-z]|q[a-z0-9_]+\.h$")
INCLUDE = re.compile(r"^\s*(?:#|%:)\s*(?:include|include_next|import)\b\s*(.*?)\s*$")
OPERAND = re.compile(r'"([^"]+)"$|<([^>]+)>$')
SUFFIXES = (".h", ".cpp", ".inc")
OTHER_SOURCES = (".c", ".cc", ".cxx", ".c++", ".hh", ".hpp", ".hxx", ".h++", ".ipp", ".tpp", ".cppm", ".ixx")
FACE = ("vldv_api.h",)  # what every folder may include of the files that stand in none
ENTRANCE = ("vldv.h",)  # what entry implements and programs call
HUBS = ("primitives/simd",)  # its table names every kernel, and each is called through it
# Comments, and the literals in which their signs mean nothing.
TOKENS = re.compile(r'R"([^()\\\s]{0,16})\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|\'(?:\\[^\n]{1,10}?|[^\'\\\n])\'|(?P<comment>//[^\n]*|/\*.*?\*/)',
                    re.S)


def without_comments(text):
    """The text with each comment as a blank and continued lines as one; every line keeps its number."""
    joined = re.sub(r"((?:[^\n]*\\\n)+)([^\n]*\n?)",
                    lambda lines: re.sub(r"\\\n", "", lines.group(1)) + lines.group(2) + "\n" * lines.group(1).count("\n"), text)
    return TOKENS.sub(lambda token: " " + "\n" * token.group().count("\n") if token.group("comment") else token.group(), joined)


class House:
    """The folders of a source tree: what each may use, and on which floor it lies."""

    def __init__(self, root):
        self.root = root / "src"
        paths, allowed = {}, {}
        for lists in sorted(self.root.rglob("CMakeLists.txt")):
            for name, head in FOLDER.findall(lists.read_text(encoding="utf-8")):
                folder = lists.parent.relative_to(self.root).as_posix()
                paths[name] = folder
                used = MAY_USE.search(head)
                allowed[folder] = used.group(1).split() if used else []
        self.arrows = {folder: {paths.get(name, name) for name in names} for folder, names in allowed.items()}
        plan = (root / "docs/architecture.md").read_text(encoding="utf-8")
        self.floors = {}
        for number, cell in FLOOR.findall(plan):
            for name in re.findall(r"`([^`]+)`", cell):
                self.floors.setdefault(name, []).append(int(number))

    def folder_of(self, header):
        """The longest known folder that a header's path starts with, or None."""
        found = [folder for folder in self.arrows if header.startswith(folder + "/")]
        return max(found, key=len) if found else None

    def room_of(self, path):
        """The sub-folder of its folder that a file lies in, as a path; the folder itself for what lies in none."""
        folder = self.folder_of(path)
        inside = path[len(folder) + 1:].split("/")
        return f"{folder}/{inside[0]}" if len(inside) > 1 else folder

    def files(self):
        return [path for path in sorted(self.root.rglob("*")) if path.is_file()]

    def includes(self, source):
        """(line number, header, whether in quotes) of each include; header is None where a macro names it."""
        for number, line in enumerate(without_comments(source.read_text(encoding="utf-8")).splitlines(), 1):
            match = INCLUDE.match(line)
            if match:
                operand = OPERAND.match(match.group(1))
                yield number, operand and (operand.group(1) or operand.group(2)), bool(operand and operand.group(1))


def plan_faults(house):
    """Folders without a floor, floors without a folder, and arrows that do not lead down."""
    for folder, names in sorted(house.arrows.items()):
        for name in sorted(names):
            if name in house.floors and folder in house.floors and house.floors[name][0] >= house.floors[folder][0]:
                yield (f"src/{folder}/CMakeLists.txt: MAY_USE names {name} of floor {house.floors[name][0]}, which is not below "
                       f"floor {house.floors[folder][0]}")
    for folder in sorted(house.arrows.keys() | house.floors.keys()):
        if len(house.floors.get(folder, [])) != 1:
            yield f"docs/architecture.md: {folder} needs one floor"
        if folder not in house.arrows:
            yield f"docs/architecture.md: there is no folder {folder}"


def fault_of(house, own, header, in_quotes):
    """What is wrong with an include of `header` by the file `own`, or None."""
    if header is None:
        return "an include has to name its file"
    folder, target = house.folder_of(own), house.folder_of(header)
    path = pathlib.PurePosixPath(header)
    if TOOLKIT.match(header) and not own.startswith(("host/", "paint/")):
        return f"{header} belongs to src/host and src/paint alone"
    if not in_quotes:
        return f"{header} lies under src/ and stands in quotes" if (house.root / header).is_file() else None
    if path.is_absolute() or path.as_posix() != header or ".." in path.parts or not (house.root / header).is_file():
        return f"there is no src/{header}"
    if target is None and header not in FACE and not (header in ENTRANCE and folder in ("entry", "host", "cli")):
        return f"{folder} may not use {header}"
    if target not in (None, folder) and target not in house.arrows[folder]:
        return f"{folder} may not use {target}"
    return None


def circle(arrows):
    """Rooms of which each includes the next, the first again at the end; empty when there is no circle."""
    done = set()

    def walk(room, way):
        if room in way:
            return way[way.index(room):] + [room]
        if room in done:
            return []
        found = next(filter(None, (walk(each, way + [room]) for each in sorted(arrows.get(room, {})))), [])
        done.add(room)
        return found

    return next(filter(None, (walk(room, []) for room in sorted(arrows))), [])


def include_faults(house):
    used, rooms = set(), {}
    for source in house.files():
        own = source.relative_to(house.root).as_posix()
        if source.suffix.lower() in OTHER_SOURCES:
            yield f"src/{own}: sources end in {', '.join(SUFFIXES)}"
        if source.suffix.lower() not in SUFFIXES + OTHER_SOURCES:
            continue
        folder = house.folder_of(own)
        if folder is None:
            if "/" in own:
                yield f"src/{own}: the folder has no vldv_folder"
            continue
        for number, header, in_quotes in house.includes(source):
            fault = fault_of(house, own, header, in_quotes)
            if fault:
                yield f"src/{own}:{number}: {fault}"
            elif in_quotes and house.folder_of(header):
                used.add((folder, house.folder_of(header)))
                here, there = house.room_of(own), house.room_of(header)
                if folder == house.folder_of(header) and here != there and not {here, there} & {folder, *HUBS}:
                    rooms.setdefault(folder, {}).setdefault(here, {}).setdefault(there, f"src/{own}:{number}")
    for folder, names in sorted(house.arrows.items()):
        for name in sorted(names):
            if (folder, name) not in used:
                yield f"src/{folder}/CMakeLists.txt: MAY_USE names {name}, which nothing includes"
    for folder, arrows in sorted(rooms.items()):
        way = circle(arrows)
        for here, there in zip(way, way[1:]):
            yield f"{arrows[here][there]}: {here} includes {there}, which leads back"


def crowds(house):
    units = {}
    for source in house.files():
        if source.suffix in SUFFIXES:
            units.setdefault(source.parent, set()).add(source.stem)
    for folder, names in sorted(units.items()):
        if len(names) > MOST_UNITS:
            yield f"src/{folder.relative_to(house.root).as_posix()}: {len(names)} units want rooms; at most {MOST_UNITS}"


def main():
    root = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).resolve().parent.parent
    house = House(root)
    found = [*plan_faults(house), *include_faults(house), *crowds(house)]
    print("\n".join(found), end="\n" if found else "")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
