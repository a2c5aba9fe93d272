#!/usr/bin/env python3
"""Corrects the menu of Doxygen's pages: doc_menu.py HTML

Below a header the menu lists the header's declarations, and always links to the header's page. But a declaration in a
namespace is on the page of the namespace.
"""

import pathlib
import re
import sys

ENTRY = re.compile(r'"([\w-]+\.html)#(\w+)"')


def main():
    folder = pathlib.Path(sys.argv[1])
    places = {page.name: set(re.findall(r'\bid="(\w+)"', page.read_text())) for page in folder.glob("*.html")}
    homes = {place: name for name, ids in places.items() if name.startswith("namespace") for place in ids}

    def mended(entry):
        page, place = entry.groups()
        return entry[0] if place in places.get(page, ()) else f'"{homes.get(place, page)}#{place}"'

    for script in folder.glob("*.js"):
        script.write_text(ENTRY.sub(mended, script.read_text()))


if __name__ == "__main__":
    main()
