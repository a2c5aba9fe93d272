"""Finds the headings of Markdown pages, with their anchors, and the links.

Code is ignored: text between backticks or in a fenced block is neither a heading nor a link.
"""

import pathlib
import re

FENCE = re.compile(r"^```.*?^```$", re.M | re.S)
HEADING = re.compile(r"^(?P<marks>#+) (?P<title>.+)$", re.M)
LINK = re.compile(r"(?P<image>!?)\[(?P<text>[^\]]*)\]\((?P<target>[^)\s]+)\)")
IS_ADDRESS = re.compile(r"[a-z]+:")


def blank(match):
    """A text of the same length without meaning; line ends are kept."""
    return re.sub(r"[^\n]", " ", match[0])


def without_blocks(text):
    """The text with blocks of code replaced by blanks, so that all other text keeps its place."""
    return FENCE.sub(blank, text)


def headings(text):
    """Each heading's match and its anchor, which is the one that the usual hosts of repositories make."""
    seen = {}
    for match in HEADING.finditer(without_blocks(text)):
        anchor = re.sub(r"[^\w\- ]", "", match["title"].lower()).strip().replace(" ", "-")
        count = seen[anchor] = seen.get(anchor, -1) + 1
        yield match, f"{anchor}-{count}" if count else anchor


def links(text):
    """The match of each link and image. The text of a link may be code; a link inside code does not count."""
    prose = without_blocks(text)
    code = [match.span() for match in re.finditer(r"`[^`\n]+`", prose)]
    for match in LINK.finditer(prose):
        if not any(start < match.start() and match.end() < end for start, end in code):
            yield match


def pages(folder):
    """The pages of a repository, or of an installation, which has them at the same places."""
    return sorted([*folder.glob("*.md"), *(folder / "docs").rglob("*.md")])


def target_of(page, target):
    """The file that a page's link leads to, and the anchor there."""
    path, _, anchor = target.partition("#")
    return (pathlib.Path(page.parent, path).resolve() if path else page.resolve()), anchor
