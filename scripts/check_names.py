#!/usr/bin/env python3
"""Checks how the declarations of all headers are spelt, and what stands in the global namespace.

Only the words of scripts/fixed_names.txt may stand outside of vldv::, and only they may be spelt in another way than ours:
functions, records and namespaces lower_case, operations, fields, parameters and constants lowerCamel (handlers begin with
On or oh_), classes with a C or I in front. With arguments the given sources are checked, which takes longer.
Prints each fault and exits with 1 when there is one.
"""
import pathlib
import re
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
SRC = HERE.parent / "src"
FIXED = set(re.sub(r"#.*", "", (HERE / "fixed_names.txt").read_text(encoding="utf-8")).split())
COMMENT_OR_TEXT = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|^[ \t]*#(?:[^\n\\]|\\.|\\\n)*', re.S | re.M)
DEFINED = re.compile(r"\b(?:class|struct|enum(?: class)?|union)\s+(?:VLDV_\w+\s+)?(\w+)[^;]*$")
CALLED = re.compile(r"(\w+)\s*\(")
NAMESPACE = re.compile(r"\bnamespace\s*([\w:]*)\s*$")


def global_statements(text):
    """What stands outside of all braces: each piece up to a `{` or `;`, and which of both ends it."""
    level, open_calls, piece = 0, 0, ""
    for sign in COMMENT_OR_TEXT.sub(lambda match: '""' if match[0][0] == '"' else " ", text):
        if level == 0 and sign in "()":
            open_calls += 1 if sign == "(" else -1
        if sign in "{};" and not open_calls:
            if level == 0 and sign != "}":
                yield " ".join(piece.split()), sign
            level += {"{": 1, "}": -1, ";": 0}[sign]
            piece = ""
        elif level == 0:
            piece += sign


def global_name(piece, end):
    """The name that a statement outside of all namespaces brings in, or None."""
    if not piece or re.match(r"using namespace|using enum|static_assert|friend|extern template", piece):
        return None
    namespace = NAMESPACE.search(piece)
    if namespace and end == "{":
        outer = namespace[1].split("::")[0]
        return None if outer in ("", "vldv") else outer
    if re.match(r"(template\s*<.*>\s*)?(class|struct|enum)\b", piece):
        defined = DEFINED.search(piece)
        return defined[1] if defined and end == "{" else None
    alias = re.match(r"using (\w+) =", piece)
    called = CALLED.search(piece)
    if alias or called:
        return (alias or called)[1]
    return re.sub(r"\[.*|=.*", "", piece).split()[-1]


def strangers():
    for header in sorted(SRC.rglob("*.h")):
        for piece, end in global_statements(header.read_text(encoding="utf-8")):
            name = global_name(piece, end)
            inside = re.search(r"\b(\w+)::(?:operator|~?\w+\s*\()", piece)  # a member, defined behind its class
            if name and name not in FIXED and not (inside and inside[1] in FIXED):
                yield f"src/{header.relative_to(SRC).as_posix()}: {name} stands outside of vldv::"
    for source in sorted(SRC.rglob("*.cpp")):
        for piece, end in global_statements(source.read_text(encoding="utf-8")):
            namespace = NAMESPACE.search(piece) if end == "{" else None
            if namespace and namespace[1] and namespace[1].split("::")[0] not in ("vldv", "std"):
                yield f"src/{source.relative_to(SRC).as_posix()}: namespace {namespace[1]} stands beside vldv::"


def spelling():
    """Options of the naming check."""
    word = "[A-Za-z0-9_]*"
    lower = dict.fromkeys(("Namespace", "Class", "Struct", "Enum", "Function", "TypeAlias"), "lower_case")
    camel = dict.fromkeys(("Method", "Member", "Parameter", "GlobalConstant", "ConstexprVariable", "LocalVariable"),
                          "camelBack")
    also = {"Class": f"(C|I|Q)[A-Z]{word}", "Struct": f"C[A-Z]{word}", "Method": f"(On[A-Z]|oh_){word}",
            "Parameter": "[a-z][A-Za-z0-9]*_"}
    rows = ["Checks: '-*,readability-identifier-naming'", "CheckOptions:"]
    for kind, case in (lower | camel).items():
        rows.append(f"  readability-identifier-naming.{kind}Case: {case}")
    for kind, spelt in also.items():
        rows.append(f"  readability-identifier-naming.{kind}IgnoredRegexp: '{spelt}'")
    return "\n".join(rows) + "\n"


def run_tidy(sources, flags):
    with tempfile.TemporaryDirectory() as folder:
        config = pathlib.Path(folder) / "names.yaml"
        config.write_text(spelling(), encoding="utf-8")
        if not sources:
            whole = pathlib.Path(folder) / "all_headers.cpp"
            headers = (path.relative_to(SRC).as_posix() for path in sorted(SRC.rglob("*.h")))
            whole.write_text("".join(f'#include "{each}"\n' for each in headers), encoding="utf-8")
            sources = [whole]
        command = ["clang-tidy-19", "--quiet", f"--config-file={config}", f"--header-filter={SRC}/.*", *map(str, sources)]
        return subprocess.run([*command, "--", *flags], text=True, capture_output=True)


def toolkit_flags():
    found = subprocess.run(["pkg-config", "--cflags", "Qt6Widgets", "Qt6Svg", "Qt6PrintSupport", "pixman-1"], text=True,
                           capture_output=True)
    return found.stdout.split()


def main():
    sources = [pathlib.Path(each).resolve() for each in sys.argv[1:]]
    found = list(strangers())
    # FFT forms are compiled once for each width of the registers.
    flags = ["-std=c++20", f"-I{SRC}", "-DVLDV_VECTOR_BYTES=32", *toolkit_flags()]
    tidy = run_tidy(sources, flags)
    for line in dict.fromkeys(tidy.stdout.splitlines()):
        name = re.search(r"invalid case style for [\w ]+ '(\w+)'", line)
        if ": error: " in line or (name and name[1] not in FIXED):
            found.append(line.replace(str(HERE.parent) + "/", ""))
    print("\n".join(found), end="\n" if found else "")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
