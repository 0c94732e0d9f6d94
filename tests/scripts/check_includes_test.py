#!/usr/bin/env python3
"""Faults of a small house that scripts/check_includes.py has to see, and what it has to let pass."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "scripts/check_includes.py"
HOUSE = {
    "docs/architecture.md": "| floor | folders |\n|---|---|\n| 2 | `host` `view` |\n| 1 | `draw` |\n| 0 | `base` |\n",
    "src/base/CMakeLists.txt": "vldv_folder(base SOURCES\n  text.cpp)\n",
    "src/base/text.h": "",
    "src/draw/CMakeLists.txt": "vldv_folder(draw MAY_USE base SOURCES\n  DC.cpp)\n",
    "src/draw/DC.h": '#include "base/text.h"\n',
    "src/view/CMakeLists.txt": "vldv_folder(view MAY_USE draw SOURCES\n  Scale.cpp)\n",
    "src/view/Scale.h": '#include "draw/DC.h"\n#include <queue>\n',
    "src/host/CMakeLists.txt": "vldv_folder(host MAY_USE draw SOURCES\n  main.cpp)\n",
    "src/host/main.cpp": '#include "draw/DC.h"\n#include <QtCore>\n',
}


def faults(changes):
    """What the script says of the house with these files changed."""
    with tempfile.TemporaryDirectory() as folder:
        for name, text in {**HOUSE, **changes}.items():
            path = pathlib.Path(folder, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        run = subprocess.run([sys.executable, SCRIPT, folder], capture_output=True, text=True, check=False)
        assert run.returncode == (1 if run.stdout else 0), run.stderr
        return run.stdout.splitlines()


def rooms(*arrows):
    """Headers of rooms of the folder base, each of which includes another's."""
    texts = {}
    for here, there in arrows:
        texts[f"src/base/{here}/{here}.h"] = f'#include "base/{there}/{there}.h"\n'
        texts.setdefault(f"src/base/{there}/{there}.h", "")
    return texts


class CheckIncludes(unittest.TestCase):
    def test_what_is_right_passes(self):
        plain = '#include "base/text.h"\n'
        for text in ("", '// #include "view/Scale.h"\n', '/*\n#include "view/Scale.h"\n*/\n', 'auto a = "/*";\n' + plain + "// */\n",
                     "auto a = R\"(\n/* \")\";\n", "auto a = '\"';\n", "#include <cstdint>\n"):
            with self.subTest(text):
                self.assertEqual(faults({"src/draw/DC.cpp": text}), [])
        self.assertEqual(faults(rooms(("text", "units"), ("units", "streams"))), [])

    def test_includes_that_no_arrow_allows_are_seen_however_written(self):
        for line in ('#include "view/Scale.h"', "#include <view/Scale.h>", '/**/ #include "view/Scale.h"',
                     '# /**/ include "view/Scale.h"', '#inc\\\nlude "view/Scale.h"', '#include \\\n"view/Scale.h"',
                     '#define HEADER "view/Scale.h"\n#include HEADER', "#include <QtCore>", "#include <QString>", "#include <qglobal.h>",
                     '#include "../view/Scale.h"', '#include "./base/text.h"', '%:include "view/Scale.h"'):
            with self.subTest(line):
                self.assertEqual(len(found := faults({"src/base/text.cpp": "int x = 1'000;\n" + line + "\n"})), 1)
                self.assertRegex(found[0], r"^src/base/text\.cpp:[23]: ")
        self.assertEqual(len(faults({"src/base/text.hpp": '#include "base/text.h"\n'})), 1)
        self.assertEqual(len(faults({"src/base/text.c": '#include "view/Scale.h"\n'})), 2)

    def test_arrows_lead_down(self):
        for folder, used in (("base", "view"), ("view", "host"), ("draw", "draw")):
            with self.subTest(folder):
                found = faults({f"src/{folder}/CMakeLists.txt": f"vldv_folder({folder} MAY_USE {used} SOURCES\n  a.cpp)\n"})
                self.assertIn(f"src/{folder}/CMakeLists.txt: MAY_USE names {used} of floor", found[0])

    def test_every_folder_has_its_floor(self):
        plan = HOUSE["docs/architecture.md"]
        self.assertIn("draw needs one floor", faults({"docs/architecture.md": plan.replace("`draw`", "")})[0])
        self.assertIn("draw needs one floor", faults({"docs/architecture.md": plan.replace("`host`", "`host` `draw`")})[-1])
        self.assertIn("there is no folder attic", faults({"docs/architecture.md": plan.replace("`draw`", "`draw` `attic`")})[0])

    def test_rooms_include_each_other_one_way(self):
        found = faults(rooms(("text", "units"), ("units", "streams"), ("streams", "text")))
        self.assertEqual([each.split(": ", 1)[1] for each in found],
                         ["base/streams includes base/text, which leads back", "base/text includes base/units, which leads back",
                          "base/units includes base/streams, which leads back"])


if __name__ == "__main__":
    unittest.main()
