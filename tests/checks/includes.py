#!/usr/bin/env python3
"""includes.py ROOT: checks the arrows between the source directories, the floors inside them, and where
third-party headers and conditional compilation stand."""

import pathlib
import posixpath
import re
import sys

PLATFORM = r"platform/\w+\.h"
SIMULATION = r"platform/(portable|simulation)/"
STANDARD = r"[a-z0-9_]+"
ANY = r".*"

# Files; what they may include in quotes; what in angle brackets. A file's first match counts.
RULES = [
    (r"OvintaSDK/", rf"OvintaSDK/|{PLATFORM}", STANDARD),
    (r"platform/\w+\.(h|cpp)", PLATFORM, STANDARD),
    (r"platform/portable/(JSON|ParsedJSON|ExitAwareThread)", rf"{PLATFORM}|platform/portable/", ANY),
    (r"platform/portable/", rf"{PLATFORM}|platform/portable/", STANDARD),
    (r"platform/linux/Linux\.h", PLATFORM, STANDARD),
    (r"platform/linux/", rf"{PLATFORM}|platform/(portable|linux)/", ANY),
    (r"platform/simulation/testing/", rf"{PLATFORM}|{SIMULATION}|platform/linux/Linux\.h|OvintaSDK/core/(facade/Ovinta|UserDefaultsKey)\.h",
     rf"{STANDARD}|gtest/gtest\.h"),
    (r"platform/simulation/", rf"{PLATFORM}|{SIMULATION}", rf"{STANDARD}|pugixml\.hpp"),
    (r"bindings/objc/include/", r"(?!)", r"(Foundation|OvintaObjC)/.*"),
    (r"bindings/", rf"bindings/|OvintaSDK/|{PLATFORM}|platform/linux/Linux\.h", ANY),
    (r"replay/", r"replay/|platform/\w+\.h|platform/simulation/", ANY),
    (r"sandbox/", rf"sandbox/|{PLATFORM}|platform/portable/|OvintaSDK/model/(\w+State|LocationAuthStatus)\.h", ANY),
    (r"cli/", ANY, ANY),
    (r"examples/", rf"examples/|OvintaSDK/OvintaSDK\.h|{PLATFORM}|platform/linux/Linux\.h|platform/simulation/", ANY),
    (r"(tests|fuzz)/", ANY, ANY),
]
# The areas with floors inside.
HOUSES = ("OvintaSDK", "platform", "sandbox", "cli")
UNCONDITIONAL = re.compile(r"OvintaSDK/|platform/(\w+\.(h|cpp)|portable/|simulation/)")
# The JSON coder alone knows the JSON library.
JSON_LIBRARY = re.compile(r"(simdjson|nlohmann/|rapidjson/|boost/json)")
JSON_CODER = re.compile(r"platform/.*JSON")

DIRECTIVE = re.compile(r'^\s*#\s*(?:(?:include|import)\s*(?:"([^"]+)"|<([^>]+)>)|(if|ifdef|ifndef)\b)')


def target(root, path, quoted):
    """What the include of the file means, from the root. Public headers include the platform's
    relative to themselves, so that an application's own directory of that name is not in the way."""
    beside = posixpath.normpath(posixpath.join(posixpath.dirname(path), quoted))
    return beside if (root / beside).exists() else quoted


def floors(document):
    """The height of each place that the document's lists of floors name, 0 for the lowest. An
    asterisk is what lies in the area itself and is named nowhere else."""
    heights = {}
    for block in re.findall(r"^```floors\n(.*?)^```", document, re.M | re.S):
        area, *lines = block.splitlines()
        for height, line in enumerate(reversed(lines)):
            heights.update({f"{area}/{place}": height for place in line.split()})
    return heights


def height_of(path, heights):
    """That of the longest place that the path begins with; None when there is none."""
    stem = path.rpartition(".")[0].partition("+")[0]
    places = [place for place in heights if place in (stem, path) or path.startswith(place + "/")]
    return heights[max(places, key=len)] if places else heights.get(posixpath.dirname(path) + "/*")


def climbs(root, path, text, heights):
    """Includes from a lower floor to a higher one."""
    own = height_of(path, heights)
    area = path.partition("/")[0]
    if own is None:
        if any(place.startswith(area + "/") for place in heights):
            yield f"{path}: is on no floor"
        return
    for number, line in enumerate(text.splitlines(), 1):
        found = DIRECTIVE.match(line)
        if not found or found[3]:
            continue
        included = target(root, path, found[1]) if found[1] else found[2]
        if not included.startswith(area + "/"):
            continue
        other = height_of(included, heights)
        if other is None or other > own:
            yield f"{path}:{number}: {included} is on a higher floor"


def complaints(root, path, text):
    rule = next((rule for rule in RULES if re.match(rule[0], path)), None)
    if not rule:
        yield f"{path}: has no rule of what it may include"
        return
    _, project, system = rule
    for number, line in enumerate(text.splitlines(), 1):
        found = DIRECTIVE.match(line)
        if not found:
            continue
        quoted, angled, conditional = found.groups()
        if angled and (root / angled).exists():
            quoted, angled = angled, None
        if quoted and not re.match(project, target(root, path, quoted)):
            yield f'{path}:{number}: "{quoted}" points the wrong way'
        if angled and JSON_LIBRARY.match(angled) and not JSON_CODER.match(path):
            yield f"{path}:{number}: <{angled}> belongs to the JSON coder alone"
        elif angled and not re.fullmatch(system, angled):
            yield f"{path}:{number}: <{angled}> is not the standard library's"
        if conditional and UNCONDITIONAL.match(path):
            yield f"{path}:{number}: #{conditional} belongs to a platform implementation"


def main(root):
    heights = floors((root / "docs/architecture.md").read_text())
    found = [f"docs/architecture.md lists no floors of {area}" for area in HOUSES
             if not any(place.startswith(area + "/") for place in heights)]
    found += [f"docs/architecture.md: there is no {place}" for place in heights
              if not place.endswith("*") and not [*root.glob(place + "*")]]
    files = 0
    for top in (*HOUSES, "bindings", "replay", "examples", "tests", "fuzz"):
        for file in sorted((root / top).rglob("*")):
            if file.suffix in (".h", ".cpp", ".m", ".mm"):
                files += 1
                path = file.relative_to(root).as_posix()
                text = file.read_text()
                found += [*complaints(root, path, text), *climbs(root, path, text, heights)]
    print("\n".join(found) or f"{files} files, no complaint")
    return 1 if found or not files else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
