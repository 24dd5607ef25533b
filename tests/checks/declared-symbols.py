#!/usr/bin/env python3
"""declared-symbols.py ROOT LIBRARY COMPILER HEADER...: checks that every symbol that the library
exports is declared in one of the installed headers, as the compiler sees them."""

import json
import re
import subprocess
import sys

# Weak symbols come and go with the compiler; tables stand behind their classes; what extends the
# standard library lies outside of the part of the tree that is looked at.
STRONG = re.compile(r"^[0-9a-f]+ [BDRT] (?!_ZT[VISC]|_ZNKSt)(\S+)$", re.MULTILINE)


def one_name(symbol):
    """Constructors and destructors have several symbols each."""
    return re.sub(r"([CD])[012]E", r"\1E", symbol)


def declared(root, compiler, headers):
    source = "".join(f'#include "{header}"\n' for header in headers)
    names = set()
    for part in ("ovinta::", "OvintaSDK"):
        command = [compiler, "-std=c++20", "-I.", "-fsyntax-only", "-x", "c++", "-", "-Xclang",
                   "-ast-dump=json", "-Xclang", f"-ast-dump-filter={part}"]
        tree = subprocess.run(command, cwd=root, input=source, capture_output=True, text=True,
                              check=True).stdout
        names.update(json.loads(f'"{name}"') for name in re.findall(r'"mangledName": "(.*)"', tree))
    return {one_name(name) for name in names}


def main(root, library, compiler, *headers):
    table = subprocess.run(["nm", "-D", "--defined-only", library], capture_output=True, text=True,
                           check=True).stdout
    exported = STRONG.findall(table)
    known = declared(root, compiler, headers)
    lost = [symbol for symbol in exported if one_name(symbol) not in known]
    if lost:
        print("Exported, but declared in no installed header:", flush=True)
        subprocess.run(["c++filt"], input="\n".join(lost) + "\n", text=True, check=True)
    else:
        print(f"{len(exported)} symbols, no complaint")
    return 1 if lost or not exported else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
