#!/usr/bin/env python3
"""includes.py ROOT: checks the arrows between the source directories, and where third-party headers
and conditional compilation stand."""

import pathlib
import re
import sys

PLATFORM = r"platform/\w+\.h"
SIMULATION = r"platform/(standard|simulation)/"
STANDARD = r"[a-z0-9_]+"
ANY = r".*"

# Files; what they may include in quotes; what in angle brackets. A file's first match counts.
RULES = [
    (r"OvintaSDK/", rf"OvintaSDK/|{PLATFORM}", STANDARD),
    (r"platform/Services\.cpp", rf"{PLATFORM}|platform/linux/Linux\.h", STANDARD),
    (r"platform/\w+\.(h|cpp)", PLATFORM, STANDARD),
    (r"platform/standard/", rf"{PLATFORM}|platform/standard/", STANDARD),
    (r"platform/linux/Linux\.h", PLATFORM, STANDARD),
    (r"platform/linux/", rf"{PLATFORM}|platform/(standard|linux)/", ANY),
    (r"platform/simulation/", rf"{PLATFORM}|{SIMULATION}", rf"{STANDARD}|pugixml\.hpp"),
    (r"bindings/objc/include/", r"(?!)", r"(Foundation|OvintaObjC)/.*"),
    (r"bindings/", rf"bindings/|OvintaSDK/|{PLATFORM}|platform/linux/Linux\.h", ANY),
    (r"replay/", r"replay/|platform/\w+\.h|platform/simulation/", ANY),
    (r"sandbox/", r"sandbox/|platform/|OvintaSDK/", ANY),
    (r"cli/", ANY, ANY),
    (r"examples/", r"(?!)", ANY),
    (r"(tests|fuzz)/", ANY, ANY),
]
UNCONDITIONAL = re.compile(r"OvintaSDK/|platform/(\w+\.(h|cpp)|standard/|simulation/)")
# The JSON coder alone knows the JSON library.
JSON_LIBRARY = re.compile(r"(simdjson|nlohmann/|rapidjson/|boost/json)")
JSON_CODER = re.compile(r"platform/.*JSON")

DIRECTIVE = re.compile(r'^\s*#\s*(?:(?:include|import)\s*(?:"([^"]+)"|<([^>]+)>)|(if|ifdef|ifndef)\b)')


def complaints(path, text):
    _, project, system = next(rule for rule in RULES if re.match(rule[0], path))
    for number, line in enumerate(text.splitlines(), 1):
        found = DIRECTIVE.match(line)
        if not found:
            continue
        quoted, angled, conditional = found.groups()
        if quoted and not re.match(project, quoted):
            yield f'{path}:{number}: "{quoted}" points the wrong way'
        if angled and JSON_LIBRARY.match(angled) and not JSON_CODER.match(path):
            yield f"{path}:{number}: <{angled}> belongs to the JSON coder alone"
        elif angled and not re.fullmatch(system, angled):
            yield f"{path}:{number}: <{angled}> is not the standard library's"
        if conditional and UNCONDITIONAL.match(path):
            yield f"{path}:{number}: #{conditional} belongs to a platform implementation"


def main(root):
    found = []
    files = 0
    for top in ("OvintaSDK", "platform", "bindings", "sandbox", "replay", "cli", "examples", "tests", "fuzz"):
        for file in sorted((root / top).rglob("*")):
            if file.suffix in (".h", ".cpp", ".m", ".mm"):
                files += 1
                path = file.relative_to(root).as_posix()
                found += complaints(path, file.read_text())
    print("\n".join(found) or f"{files} files, no complaint")
    return 1 if found or not files else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
