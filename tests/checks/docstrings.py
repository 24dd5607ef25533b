#!/usr/bin/env python3
"""docstrings.py ROOT HEADER...: checks that every public declaration of the headers, each given
relative to ROOT, has a docstring: a line of "///" directly above it, or above an earlier one of its
group. A group ends at an empty line, at an access label and where a type begins or ends.

docstrings.py --spread HEADER: prints the header as the reference is made of it: each declaration
of a group has the group's docstring, what needs none is left out, and every line keeps its number.

The headers are formatted, so indentation tells the scope of a line: one that is indented further
than the members of the innermost open type continues a declaration or belongs to a body."""

import pathlib
import re
import sys

ACCESS = re.compile(r"(public|private|protected):$")
TYPE = re.compile(r"(template <.*> )?(class|struct|union)\b.*{$")
# What needs no words of its own, and no place in the reference: the language gives it, or another
# declaration documents it.
PLUMBING = re.compile(
    r"extern template\b|template <> |.*\bfriend\b|(virtual )?~|.* = (default|delete);|"
    r".*(\bNS_UNAVAILABLE;|\(Unavailable\)$)")
# What needs no words of its own.
SILENT = re.compile(
    r"namespace\b|.*\boverride\b|(template <.*> )?(class|struct|enum class) [\w:]+;|"
    r"@(class|end)\b|NS_ASSUME_NONNULL")


class Declaration:
    """A declaration at the lines `start` to `end`, counted from 1."""

    def __init__(self, start, end, head, docstring, is_grouped):
        self.start, self.end, self.head = start, end, head
        self.docstring = docstring  # Its lines; none where there is none.
        self.is_grouped = is_grouped  # Whether it has the docstring of an earlier one.
        self.is_plumbing = bool(PLUMBING.match(head))
        self.is_silent = self.is_plumbing or bool(SILENT.match(head))


def declarations(lines):
    """Those that are public, in their order."""
    scopes = []  # For each open type: whether its members are public at this place.
    docstring, is_grouped = [], False
    start, head = 0, ""  # The declaration that is being read.
    for number, line in enumerate(lines, 1):
        text = re.sub(r"(?<=\S)  // .*", "", line.strip())
        indent = len(line) - len(line.lstrip())
        if text.startswith("///"):
            docstring = [text] if is_grouped else [*docstring, text]
            is_grouped = False
        elif not text:
            docstring = []
        elif ACCESS.match(text):
            scopes[-1] = text == "public:"
            docstring = []
        elif text.startswith(("//", "#")):
            continue
        elif indent < 2 * len(scopes):  # The end of a type.
            scopes.pop()
            docstring = []
        elif head or (indent == 2 * len(scopes) and not text.startswith("}")):
            start = start if head else number
            head = f"{head} {text}".strip()
            if text[-1] not in ";{}" and not head.startswith(("@", "NS_")):
                continue
            if head.startswith("template") and text.startswith("requires") and text[-1] == "}":
                continue
            found = Declaration(start, number, head, docstring, is_grouped)
            if all(scopes):
                yield found
            is_grouped = True
            if TYPE.match(head):
                is_class = re.match(r"(template <.*> )?class\b", head)
                scopes.append(not found.is_silent and not is_class)
                docstring = []
            elif head.startswith("@interface"):
                docstring = []
            head = ""


def undocumented(lines):
    """The (number, text) of each public declaration without a docstring."""
    for declaration in declarations(lines):
        if not declaration.docstring and not declaration.is_silent:
            yield declaration.start, declaration.head


def last_line(lines, declaration):
    """Where the declaration ends, with its body."""
    head = lines[declaration.start - 1]
    indent = head[:len(head) - len(head.lstrip())]
    ends = "@end" if head.startswith("@") else indent + "}"
    if lines[declaration.end - 1][-1] in ";}":
        return declaration.end
    return next(number for number in range(declaration.end + 1, len(lines) + 1)
                if lines[number - 1].startswith(ends))


def spread(lines):
    """The lines, each declaration with its docstring."""
    spread_lines = list(lines)
    for declaration in declarations(lines):
        place = declaration.start - 1
        if declaration.is_plumbing:
            end = last_line(lines, declaration)
            spread_lines[place:end] = [""] * (end - place)
        elif declaration.is_grouped and declaration.docstring:
            text = " ".join(line.removeprefix("///").strip() for line in declaration.docstring)
            spread_lines[place] = f"/** {text} */ {lines[place].strip()}"
    return spread_lines


def main(root, *headers):
    lost = [f"{header}:{number}: no docstring: {text}"
            for header in headers
            for number, text in undocumented(
                pathlib.Path(root, header).read_text(encoding="utf-8").splitlines())]
    print("\n".join(lost) if lost else f"{len(headers)} headers, no complaint")
    return 1 if lost or not headers else 0


if __name__ == "__main__":
    if sys.argv[1] == "--spread":
        print("\n".join(spread(pathlib.Path(sys.argv[2]).read_text(encoding="utf-8").splitlines())))
        sys.exit(0)
    sys.exit(main(*sys.argv[1:]))
