#!/usr/bin/env python3
"""Checks that objects compiled for wide instruction sets define nothing that the linker may share with other objects.

An inline function of the standard library or of ours that such a source calls without its being inlined becomes a weak
symbol; the linker keeps one of its bodies for all, and a processor without the instructions may end up with the wide one.
Arguments: the symbol lister (nm), and the objects in one list with semicolons. Prints each fault and exits with 1 when
there is one.
"""
import subprocess
import sys

SHARED = "WVu"
HARMLESS = ("DW.ref.__gxx_personality_v0",)  # a pointer of exception tables


def shared_symbols(lister, path):
    listed = subprocess.run([lister, "-C", "--defined-only", path], capture_output=True, text=True, check=True).stdout
    for line in listed.splitlines():
        _, kind, name = line.split(maxsplit=2)
        if kind in SHARED and name not in HARMLESS:
            yield name


def main():
    lister, objects = sys.argv[1], [path for path in sys.argv[2].split(";") if path]
    faults = [f"{path}: {name}" for path in objects for name in shared_symbols(lister, path)]
    print("\n".join(faults))
    return 1 if faults or not objects else 0


if __name__ == "__main__":
    sys.exit(main())
