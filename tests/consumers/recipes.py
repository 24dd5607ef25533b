#!/usr/bin/env python3
"""recipes.py DOCUMENT FOLDER: every piece of C++ and CMake in the document stands in one of the
folder's files, line by line, so that what the document shows is what is compiled there. Three dots
on a line of their own leave lines out."""

import pathlib
import re
import sys


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


def main(document, folder):
    files = [stripped(file.read_text()) for file in folder.iterdir() if file.is_file()]
    pieces = re.findall(r"^```(?:cpp|cmake)\n(.*?)^```", document.read_text(), re.M | re.S)
    lost = [piece for piece in pieces if not any(holds(lines, piece) for lines in files)]
    for piece in lost:
        print(f"{document.name}: this stands in no file of {folder.name}:\n{piece}")
    return 1 if lost or not pieces else 0


if __name__ == "__main__":
    sys.exit(main(*map(pathlib.Path, sys.argv[1:])))
