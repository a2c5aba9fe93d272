"""What Markdown pages consist of, as far as links are concerned: headings with their anchors, and links.

Code is left alone: what stands between backticks or in a block between fences is no heading and no link.
"""

import pathlib
import re

FENCE = re.compile(r"^```.*?^```$", re.M | re.S)
HEADING = re.compile(r"^(?P<marks>#+) (?P<title>.+)$", re.M)
LINK = re.compile(r"(?P<image>!?)\[(?P<text>[^\]]*)\]\((?P<target>[^)\s]+)\)")
IS_ADDRESS = re.compile(r"[a-z]+:")


def blank(match):
    """As many characters, none of which means anything; lines stay lines."""
    return re.sub(r"[^\n]", " ", match[0])


def without_blocks(text):
    """The text with the same places, and blanks where blocks of code stand."""
    return FENCE.sub(blank, text)


def headings(text):
    """Each heading's match and its anchor, which is made as the usual hosts of repositories make it."""
    seen = {}
    for match in HEADING.finditer(without_blocks(text)):
        anchor = re.sub(r"[^\w\- ]", "", match["title"].lower()).strip().replace(" ", "-")
        count = seen[anchor] = seen.get(anchor, -1) + 1
        yield match, f"{anchor}-{count}" if count else anchor


def links(text):
    """The match of each link and image. A text may be code: only what is code as a whole holds no link."""
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
