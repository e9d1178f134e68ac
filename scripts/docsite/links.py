"""The links of the site: each leads to a file of the site and, with an anchor, to a place in it."""

import re
from html.parser import HTMLParser
from urllib.parse import unquote

# In the scripts for navigation, links are strings.
IN_SCRIPT = re.compile(r'"([\w-]+\.html(?:#[\w-]+)?)"')
ELSEWHERE = re.compile(r"(https?:|mailto:|javascript:|data:)")
TARGETS = ("href", "src")


class Page(HTMLParser):
    """The links of a page with their lines, and the anchors in it."""

    def __init__(self, text):
        super().__init__()
        self.links, self.anchors = [], {""}
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        """Notes the links and anchors of a tag."""
        for name, value in attrs:
            if name in TARGETS and value is not None:
                self.links.append((self.getpos()[0], value))
            elif name == "id" or (name == "name" and tag == "a"):
                self.anchors.add(value)


def broken_links(site):
    """Lines that name each broken link of a site, and how many links were checked."""
    pages = {file: Page(file.read_text(encoding="utf-8")) for file in sorted(site.rglob("*.html"))}
    links = [(file, line, link) for file, page in pages.items() for line, link in page.links]
    for file in sorted(site.rglob("*.js")):
        text = file.read_text(encoding="utf-8")
        links += [(file, text.count("\n", 0, found.start()) + 1, found[1])
                  for found in IN_SCRIPT.finditer(text)]
    links = [one for one in links if not ELSEWHERE.match(one[2])]
    faults = [f"{file.relative_to(site)}:{line}: the link to {link}: {fault}"
              for file, line, link in links if (fault := fault_of(file, link, pages))]
    return faults, len(links)


def fault_of(file, link, pages):
    """What is wrong with a link in a file; "" if nothing is."""
    name, _, anchor = link.partition("#")
    target = (file.parent / unquote(name)).resolve() if name else file
    if not target.is_file():
        return "expected a file of the site"
    if target in pages and unquote(anchor) not in pages[target].anchors:
        return f"{target.name} has no such place"
    return ""
