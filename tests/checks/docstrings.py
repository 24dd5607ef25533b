#!/usr/bin/env python3
"""docstrings.py ROOT HEADER...: checks that every public declaration of the headers, each given
relative to ROOT, has a docstring: a line of "///" directly above it, or above an earlier one of its
group. A group ends at an empty line, at an access label and where a type begins or ends.

The headers are formatted, so indentation tells the scope of a line: one that is indented further
than the members of the innermost open type continues a declaration or belongs to a body."""

import pathlib
import re
import sys

ACCESS = re.compile(r"(public|private|protected):$")
TYPE = re.compile(r"(template <.*> )?(class|struct|union)\b.*{$")
# What needs no words of its own: the language gives it, or another declaration documents it.
SILENT = re.compile(
    r"namespace\b|extern template\b|template <> |.*\b(friend|override)\b|(virtual )?~|"
    r".* = (default|delete);|(template <.*> )?(class|struct|enum class) [\w:]+;|"
    r"@(class|end)\b|NS_ASSUME_NONNULL|.*(\bNS_UNAVAILABLE;|\(Unavailable\)$)")


def undocumented(lines):
    """The (number, text) of each public declaration without a docstring."""
    scopes = []  # For each open type: whether its members are public at this place.
    documented = False
    start, head = 0, ""  # The declaration that is being read.
    for number, line in enumerate(lines, 1):
        text = re.sub(r"(?<=\S)  // .*", "", line.strip())
        indent = len(line) - len(line.lstrip())
        if text.startswith("///"):
            documented = True
        elif not text:
            documented = False
        elif ACCESS.match(text):
            scopes[-1] = text == "public:"
            documented = False
        elif text.startswith(("//", "#")):
            continue
        elif indent < 2 * len(scopes):  # The end of a type.
            scopes.pop()
            documented = False
        elif head or (indent == 2 * len(scopes) and not text.startswith("}")):
            start = start if head else number
            head = f"{head} {text}".strip()
            if text[-1] not in ";{}" and not head.startswith(("@", "NS_")):
                continue
            if head.startswith("template") and text.startswith("requires") and text[-1] == "}":
                continue
            silent = SILENT.match(head)
            if all(scopes) and not documented and not silent:
                yield start, head
            if TYPE.match(head):
                scopes.append(not silent and not re.match(r"(template <.*> )?class\b", head))
                documented = False
            elif head.startswith("@interface"):
                documented = False
            head = ""


def main(root, *headers):
    lost = [f"{header}:{number}: no docstring: {text}"
            for header in headers
            for number, text in undocumented(
                pathlib.Path(root, header).read_text(encoding="utf-8").splitlines())]
    print("\n".join(lost) if lost else f"{len(headers)} headers, no complaint")
    return 1 if lost or not headers else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
