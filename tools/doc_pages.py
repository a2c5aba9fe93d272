#!/usr/bin/env python3
"""Copies the Markdown pages for Doxygen, and writes its layout: doc_pages.py REPOSITORY TO HTML

The pages are written for readers of the repository: links go from file to file, to headings and to files that are not
pages. In the copies, which are all in one folder,

- a page and its HTML file are named after the page's place: docs/guide/text.md becomes guide-text.html;
- a heading has the anchor that the links of the pages use, after the name of its page, because Doxygen has one list of all
  anchors;
- a file that is not a page, such as a chart, is copied into the folder HTML and linked there.

TO/layout.xml has the menu in reading order: the pages in the order of their links, beginning with README.md, level by level.
The pages that the guide's index links to are below it in the menu, and the reference follows the guide.
"""

import html
import pathlib
import shutil
import sys

import markdown_pages

REFERENCE = """\
    <tab type="usergroup" url="[none]" title="Reference">
      <tab type="filelist" title="Headers"/>
      <tab type="namespacelist" title="Namespaces"/>
      <tab type="classlist" title="Classes"/>
      <tab type="hierarchy" title="Class hierarchy"/>
      <tab type="globals" title="Functions, types and constants"/>
      <tab type="namespacemembers" title="Members of namespaces"/>
      <tab type="classmembers" title="Members of classes"/>
    </tab>
"""


class Site:
    def __init__(self, root, html_folder):
        self.root, self.html_folder = root, html_folder
        self.main = root / "README.md"
        self.guide = root / "docs/guide/index.md"
        self.order = self.reading_order()

    def links(self, page):
        for match in markdown_pages.links(page.read_text()):
            if not markdown_pages.IS_ADDRESS.match(match["target"]):
                yield match, *markdown_pages.target_of(page, match["target"])

    def reading_order(self):
        order = [self.main]
        for page in order:
            order += dict.fromkeys(file for _, file, _ in self.links(page) if file.suffix == ".md" and file not in order)
        unseen = [page for page in markdown_pages.pages(self.root) if page not in order]
        if unseen:
            sys.exit("no page links " + ", ".join(str(page.relative_to(self.root)) for page in unseen))
        return order

    def name(self, page):
        place = page.relative_to(self.root).with_suffix("").as_posix().lower()
        return "index" if page == self.main else place.removeprefix("docs/").removesuffix("/index").replace("/", "-")

    def title(self, page):
        return next(markdown_pages.headings(page.read_text()))[0]["title"].replace("`", "")

    def address(self, file, anchor):
        """Where a link leads among the HTML pages."""
        if file.suffix == ".md":
            return f"{self.name(file)}.html" + (f"#{self.name(file)}-{anchor}" if anchor else "")
        place = file.relative_to(self.root)
        copy = self.html_folder / place
        copy.parent.mkdir(parents=True, exist_ok=True)
        if file.is_dir():
            shutil.copytree(file, copy, dirs_exist_ok=True)
        else:
            shutil.copyfile(file, copy)
        return place.as_posix()

    def converted(self, page):
        text = page.read_text()
        # Not a label of Doxygen: with labels each heading of the main page would become an entry of the menu.
        changes = [(match.end("title"), match.end("title"), f' <a id="{self.name(page)}-{anchor}"></a>')
                   for match, anchor in markdown_pages.headings(text)]
        # The first heading is the page's title, and its label is the page's name.
        changes[0] = (*changes[0][:2], "" if page == self.main else f" {{#{self.name(page)}}}")
        for match, file, anchor in self.links(page):
            address = self.address(file, anchor)
            if match["image"]:
                image = f'<img src="{address}" alt="{html.escape(match["text"])}"/>'
                changes.append((*match.span(), f'<a href="{address}">{image}</a>'))
            else:
                changes.append((*match.span("target"), address))
        for start, end, new in sorted(changes, reverse=True):
            text = text[:start] + new + text[end:]
        return text

    def tab(self, page, title=None):
        title = html.escape(title or self.title(page))
        return f'<tab type="user" url="@ref {self.name(page)}" title="{title}"/>\n'

    def layout(self):
        # The menu uses the short names that the index has for its pages.
        below = {file: match["text"] for match, file, _ in self.links(self.guide) if file.parent == self.guide.parent}
        lines = ['<doxygenlayout version="1.0">\n  <navindex>\n',
                 f'    <tab type="mainpage" title="{self.title(self.main)}"/>\n']
        for page in self.order[1:]:
            if page == self.guide:
                lines.append(f'    <tab type="usergroup" url="@ref {self.name(page)}" title="{self.title(page)}">\n')
                lines += ["      " + self.tab(child, title) for child, title in below.items()]
                lines.append("    </tab>\n" + REFERENCE)
            elif page not in below:
                lines.append("    " + self.tab(page))
        return "".join([*lines, "  </navindex>\n</doxygenlayout>\n"])


def main():
    root, target, html_folder = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    html_folder.mkdir(parents=True, exist_ok=True)
    target.mkdir(parents=True, exist_ok=True)
    site = Site(root, html_folder)
    for page in site.order:
        (target / f"{site.name(page)}.md").write_text(site.converted(page))
    (target / "layout.xml").write_text(site.layout())


if __name__ == "__main__":
    main()
