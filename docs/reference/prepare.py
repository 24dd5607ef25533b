#!/usr/bin/env python3
"""prepare.py ROOT OUT HEADER...: writes to OUT what the reference is made of: the public headers,
each given relative to ROOT, with the docstring of a group at each of its declarations, and the
hand-written pages, whose links lead to pages and headings in the words of Doxygen. Every line keeps
its number."""

import pathlib
import posixpath
import re
import shutil
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "tests/checks"))
import docstrings  # pylint: disable=wrong-import-position

HEADING = re.compile(r"(#{1,4}) (.*)$")
LINK = re.compile(r"(?<!!)\[([^\]]*)\]\(([^)#\s]*)(#[^)]*)?\)")
FENCE = re.compile(r"```(\S*)")
# Of the service; pages link to them as they are.
DESCRIPTIONS = ("docs/openapi.yaml", "docs/openapi-sandbox.yaml")
LANGUAGES = {"cpp": "{.cpp}", "objc": "{.mm}"}
# What Doxygen does not know of Objective-C.
FOREIGN = [(re.compile(r"^ @package$"), " @private"),
           (re.compile(r"^typedef NS_ENUM\((\w+), (\w+)\)"), r"enum \2 : \1")]


def label(path, anchor=""):
    """The name of a page, or of a heading in it."""
    return "-".join(filter(None, ("page", pathlib.PurePosixPath(path).stem.lower(), anchor)))


def slug(heading):
    """What a forge calls the heading."""
    return re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")


def plain(line):
    """The line of a header in words that Doxygen knows."""
    for pattern, replacement in FOREIGN:
        line = pattern.sub(replacement, line)
    return line


def page(path, text, pages):
    """The page with labels at its headings and links that Doxygen understands."""
    def link(found):
        words, target, anchor = found[1], found[2], (found[3] or "")[1:]
        folder = posixpath.dirname(path)
        place = posixpath.normpath(posixpath.join(folder, target)) if target else path
        if "://" in target:
            return found[0]
        if place in DESCRIPTIONS:
            return f"[{words}]({pathlib.Path(place).name})"
        if place == "README.md":
            return f"[{words}](index.html)"
        return f"[{words}](@ref {label(place, anchor)})" if place in pages else words

    inside = hidden = False
    for line in text.splitlines():
        heading = HEADING.match(line)
        hidden = hidden or line.startswith("<!--")
        if hidden:
            hidden = "-->" not in line
            yield ""
        elif line.startswith("```"):
            inside = not inside
            # A language that Doxygen knows, or none.
            yield FENCE.sub(lambda found: "```" + LANGUAGES.get(found[1], ""), line)
        elif inside or line.startswith("    "):
            yield line
        elif heading and heading[1] == "#":
            yield line if path == "README.md" else f"{line} {{#{label(path)}}}"
        elif heading:
            yield f"{line} {{#{label(path, slug(heading[2]))}}}"
        else:
            yield LINK.sub(link, line)


def main(root, out, *headers):
    root, out = pathlib.Path(root), pathlib.Path(out)
    shutil.rmtree(out, ignore_errors=True)
    files = {}
    for header in headers:
        lines = (root / header).read_text(encoding="utf-8").splitlines()
        # Only of a file that is documented itself are the functions and enumerations shown.
        files[header] = "/** @file */ " + "\n".join(map(plain, docstrings.spread(lines)))
    pages = {path.relative_to(root).as_posix(): path.read_text(encoding="utf-8")
             for path in (*root.glob("*.md"), *(root / "docs").glob("*.md"))}
    for path, text in pages.items():
        files[path] = "\n".join(page(path, text, pages))
    for path, text in files.items():
        (out / path).parent.mkdir(parents=True, exist_ok=True)
        (out / path).write_text(text + "\n", encoding="utf-8")
    shutil.copy(root / "docs/reference/namespaces.h", out)
    for pictures in ("docs/diagrams", "docs/images"):
        shutil.copytree(root / pictures, out / pictures)
    for description in DESCRIPTIONS:
        shutil.copy(root / description, out / description)


if __name__ == "__main__":
    main(*sys.argv[1:])
