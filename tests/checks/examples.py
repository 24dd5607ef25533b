#!/usr/bin/env python3
"""examples.py ROOT COMPILER PAGE...: the C++ examples of the pages compile, as they stand there:
one that includes headers by itself, the others of a page together, each as the body of a function
that has the library at hand. A comment directly above an example says what it takes besides:

    <!-- cpp: given void show(const ovinta::Order& order); -->
    <!-- cpp: not compiled, for it takes GTK -->

Or the page says in a line of its own which folder has them, where something else compiles them:

    <!-- examples: examples/app-tests -->

Every piece of C++ and CMake then stands in one of its files. Three dots on a line of their own leave
lines out."""

import concurrent.futures
import os
import pathlib
import re
import subprocess
import sys

BLOCK = re.compile(r"(?:^<!-- cpp: ((?:(?!-->).)*?)\s*-->\n)?^```cpp\n(.*?)^```$", re.M | re.S)
FOLDER = re.compile(r"^<!-- examples: (\S+) -->$", re.M)
AT_HAND = """
#include <OvintaSDK/OvintaSDK.h>
#include <platform/linux/Diagnosis.h>
#include <platform/linux/Linux.h>
#include <platform/portable/Portable.h>
#include <platform/simulation/Simulation.h>
#include <platform/simulation/trip/TripPlayer.h>
#include <iostream>
using namespace ovinta;
"""


def units(page, text):
    """The sources that the page's examples make."""
    together = AT_HAND
    bodies = 0
    for number, found in enumerate(BLOCK.finditer(text)):
        mark, example = found[1] or "", found[2]
        given = mark.removeprefix("given") if mark.startswith("given") else ""
        if mark.startswith("not compiled, "):
            continue
        if mark and not given:
            raise ValueError(f'{page}: "{mark}" says neither "given ..." nor "not compiled, ..."')
        place = f'#line {text.count(chr(10), 0, found.start(2)) + 1} "{page}"\n'
        if "#include" in example:
            yield f"{given}\n{place}{example}"
        else:
            bodies += 1
            together += f"{given}\nvoid example{number}() {{\n{place}{example}}}\n"
    if bodies:
        yield together


def complaint(root, compiler, source):
    """What the compiler says of the source; nothing when it takes it."""
    command = [compiler, "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", "-Werror",
               "-Wno-unused-variable", f"-I{root}", "-x", "c++", "-"]
    done = subprocess.run(command, input=source, capture_output=True, text=True, check=False)
    return done.stderr if done.returncode else ""


def stripped(text):
    return [line.strip() for line in text.splitlines() if line.strip()]


def holds(lines, piece):
    """Whether the lines hold all parts of the piece, each in one go, one after the other."""
    start = 0
    for part in re.split(r"^\s*(?:// |# )?\.\.\.$", piece, flags=re.M):
        wanted = stripped(part)
        for start in range(start, len(lines) - len(wanted) + 1):
            if lines[start:start + len(wanted)] == wanted:
                start += len(wanted)
                break
        else:
            return False
    return True


def lost(root, page, text, folder):
    """What is said of each piece of the page that stands in no file of the folder."""
    files = [stripped(file.read_text(encoding="utf-8"))
             for file in pathlib.Path(root, folder).iterdir() if file.is_file()]
    pieces = re.findall(r"^```(?:cpp|cmake)\n(.*?)^```", text, re.M | re.S)
    return [f"{page}: this stands in no file of {folder}:\n{piece}" for piece in pieces
            if not any(holds(lines, piece) for lines in files)]


def main(root, compiler, *pages):
    sources, complaints = [], []
    for page in pages:
        text = pathlib.Path(root, page).read_text(encoding="utf-8")
        if folder := FOLDER.search(text):
            complaints += lost(root, page, text, folder[1])
        else:
            sources += units(page, text)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        complaints += pool.map(lambda source: complaint(root, compiler, source), sources)
    print("\n".join(filter(None, complaints)) or f"{len(sources)} sources, no complaint")
    return 1 if any(complaints) or not sources else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
