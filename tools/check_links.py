#!/usr/bin/env python3
"""Finds links that lead nowhere. Addresses on the network are not checked.

  check_links.py markdown FOLDER
      each link of the Markdown pages, of a repository or of an installation, leads to a file or a folder there, and to
      a heading where it names one
  check_links.py html FOLDER
      each link and image of the HTML pages, and each entry of their menus, leads to a file there, and to an element
      where it names one

Prints a line for each fault and exits 1 if there is one.
"""

import functools
import pathlib
import re
import urllib.parse
from html import unescape

import checks
import markdown_pages

# The scripts of Doxygen's pages contain addresses of pages as texts.
SCRIPT_LINK = re.compile(r"""["']((?:\.\./)?[\w.~-]+\.html(?:#[\w.~-]*)?)["']""")


@functools.cache
def anchors(page):
    text = page.read_text(errors="replace")
    if page.suffix == ".md":
        return {anchor for _, anchor in markdown_pages.headings(text)}
    return set(re.findall(r"\b(?:id|name)=[\"']([^\"']+)[\"']", text))


def fault(where, target, file, anchor, folder):
    if not file.is_relative_to(folder):
        return f"{where}: {target} leads out of the folder"
    if not file.exists():
        return f"{where}: {target} leads to nothing"
    if anchor and anchor not in anchors(file):
        return f"{where}: {target}: the page has no such place"
    return None


def judged(found, folder):
    """The faults of links (page, target, file, anchor), each once; it is a fault if there are no links."""
    found = list(found)
    faults = [fault(page.relative_to(folder), target, file, anchor, folder) for page, target, file, anchor in found]
    return list(dict.fromkeys(filter(None, faults))) + ([] if found else [f"{folder}: no link"])


def markdown_links(folder):
    for page in markdown_pages.pages(folder):
        for match in markdown_pages.links(page.read_text()):
            if not markdown_pages.IS_ADDRESS.match(match["target"]):
                yield page, match["target"], *markdown_pages.target_of(page, match["target"])


def html_links(folder):
    for page in sorted([*folder.rglob("*.html"), *folder.rglob("*.js")]):
        if page.name.startswith("navtreeindex"): # each page's place in the menu; it also names pages that are not made
            continue
        text = page.read_text(errors="replace")
        is_page = page.suffix == ".html"
        found = re.findall(r"\b(?:href|src|data)=\"([^\"]+)\"", text) if is_page else SCRIPT_LINK.findall(text)
        for target in dict.fromkeys(map(unescape, found)):
            if not markdown_pages.IS_ADDRESS.match(target):
                yield page, target, *markdown_pages.target_of(page, urllib.parse.unquote(target))


def markdown(folder):
    folder = pathlib.Path(folder).resolve()
    return judged(markdown_links(folder), folder)


def html(folder):
    folder = pathlib.Path(folder).resolve()
    return judged(html_links(folder), folder)


if __name__ == "__main__":
    checks.main(__doc__, markdown, html)
