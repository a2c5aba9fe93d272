#!/usr/bin/env python3
"""Copies the public headers for Doxygen: doc_headers.py FROM TO

The headers are written for readers of the source: plain prose, no commands. In the copies, which have the same lines,

- the comment at the start of a file is that file's documentation;
- the text of a documentation comment is literal, including backslashes and angle brackets, and a table that is indented by
  two blanks keeps its layout;
- a comment applies to all declarations below it up to the next empty line, so that overloads need it once: each gets a copy,
  and keeps its place among the others;
- private members are removed, and a constant without a comment gets an empty one, so that no menu leads to something that is
  not shown.
"""

import pathlib
import re
import sys


def literal(text):
    """Prose with everything escaped that Doxygen would take for a command or a tag; text quoted as code needs no escapes."""
    pieces = text.split("`")
    pieces[::2] = [re.sub(r'[\\@<>&#%$"]', r"\\\g<0>", piece) for piece in pieces[::2]]
    return "`".join(pieces)


def set_in(texts):
    """Which lines are indented, except those that continue an item of a list."""
    result = []
    in_list = False
    for text in texts:
        in_list = bool(re.match(r" *- ", text)) or (in_list and text.startswith("   "))
        result.append(text.startswith("   ") and not in_list)
    for i in range(1, len(texts) - 1): # an empty line between two indented ones
        result[i] = result[i] or (not texts[i].strip() and result[i - 1] and texts[i + 1].startswith("   "))
    return result


def comment(marker, texts):
    """The lines of one documentation comment."""
    flags = [False, *set_in(texts), False]
    lines = []
    for i, text in enumerate(texts, 1):
        start = " <pre>" if flags[i] and not flags[i - 1] else ""
        stop = "</pre>" if flags[i] and not flags[i + 1] else ""
        lines.append(marker + start + literal(text)[bool(start):] + stop)
    return lines


def shared_by(paragraph):
    """The lines below the comment at `start` where further declarations begin that the comment applies to."""
    indentation = re.match(r"\s*", paragraph[0])[0]
    end = next((i for i, line in enumerate(paragraph) if not line.startswith(indentation)), len(paragraph))
    commented = [bool(re.match(r"\s*///(?!<)", line)) for line in paragraph[:end]]
    first = commented.index(False) if False in commented else end
    starts = [i for i in range(first, end)
              if re.match(indentation + r"[\w~]", paragraph[i]) and "= delete" not in paragraph[i]]
    if first == 0 or True in commented[first:] or not starts or \
            re.match(r"\s*(enum|class|struct|template)\b", paragraph[starts[0]]):
        return []
    return starts[1:]


def on_one_line(lines):
    """The same comment without line ends, for one more declaration."""
    texts = [line.lstrip().removeprefix("///") for line in lines]
    return "/**" + r" \nl".join(texts) + " */ "


def documented(paragraph):
    lines = []
    while paragraph:
        block = []
        while paragraph and re.match(r"\s*///(?!<)", paragraph[0]):
            block.append(paragraph.pop(0))
        if block:
            marker = re.match(r"\s*///", block[0])[0]
            lines += comment(marker, [line[len(marker):] for line in block])
        if paragraph:
            code, trailing, text = paragraph.pop(0).partition("///<")
            lines.append(code + trailing + literal(text))
    return lines


def converted(text):
    text = "\n".join(without_private(text.split("\n")))
    head, *paragraphs = [paragraph.split("\n") for paragraph in text.split("\n\n")]
    lines = comment("///", [line[2:] for line in head]) + [r"/// \file"]
    for paragraph in paragraphs:
        shared = shared_by(paragraph)
        paragraph = documented(paragraph)
        for start in shared:
            comments = [line for line in paragraph[:start] if re.match(r"\s*///(?!<)", line)]
            paragraph[start] = on_one_line(comments) + paragraph[start].lstrip()
        lines += [*paragraph, ""]
    return "\n".join(with_enumerators(lines[:-1]))


def without_private(lines):
    """The lines with private members replaced by empty lines: Doxygen would link to them, but not show them."""
    end = None
    for line in lines:
        if end and re.match(end, line):
            end = None
        if match := re.match(r"(\s*)private:", line):
            end = match[1] + r"(};|public:|protected:)"
        yield "" if end else line


def with_enumerators(lines):
    """The lines with an empty comment for each constant without one, which Doxygen's table would otherwise omit."""
    in_enum = has_comment = False
    for line in lines:
        start = re.match(r"\s*enum\b[^;{]*\{", line)
        in_enum = in_enum or bool(start)
        if in_enum and not has_comment and "///" not in line:
            body = start.end() if start else 0
            line = line[:body] + re.sub(r"(^|,)(\s*\w+(?: = [^,}]+?)?)(?=\s*(?:,|\}|$))", r"\1\2 /**< &zwj; */",
                                        line[body:])
        has_comment = bool(re.match(r"\s*///", line))
        in_enum = in_enum and "}" not in line
        yield line


def main():
    source, target = map(pathlib.Path, sys.argv[1:])
    for header in sorted(source.rglob("*.h")):
        copy = target / header.relative_to(source)
        copy.parent.mkdir(parents=True, exist_ok=True)
        copy.write_text(converted(header.read_text()))


if __name__ == "__main__":
    main()
