#!/usr/bin/env python3
"""skips.py RESULTS LIST: fails on a test that RESULTS, which ctest has written, tell as not run and that
LIST does not allow. A line of LIST is the test's name, with * for any part of it, two blanks, and words
of what the test says of its reason; # begins a comment."""

import fnmatch
import pathlib
import sys
import xml.etree.ElementTree as ElementTree


def allowed(text):
    for line in text.splitlines():
        entry = line.split("#")[0].strip()
        if entry:
            yield [part.strip() for part in entry.split("  ", 1)]


def main(results, skips):
    entries = list(allowed(pathlib.Path(skips).read_text()))
    complaints = []
    for test in ElementTree.parse(results).iter("testcase"):
        if test.get("status") in ("run", "fail"):
            continue
        name, said = test.get("name"), test.findtext("system-out") or ""
        if not any(fnmatch.fnmatchcase(name, of) and words in said for of, words in entries):
            complaints.append(f"{name} was not run, which {skips} does not allow:\n{said.strip()}")
    print("\n".join(complaints), file=sys.stderr, end="\n" if complaints else "")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
