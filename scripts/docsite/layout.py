"""The navigation of the site: the guides in their order, then the API."""

from xml.sax.saxutils import quoteattr

from .guides import page_name

API = (("namespaces", "Namespaces", ("namespacelist", "namespacemembers")),
       ("classes", "Classes", ("classlist", "classindex", "hierarchy", "classmembers")),
       ("files", "Headers", ("filelist", "globals")))


def layout(guides):
    """What Doxygen reads as its layout file."""
    def tab(path):
        url = f"@ref {page_name(path)}"
        return f'<tab type="user" url={quoteattr(url)} title={quoteattr(guides.title(path))}/>'
    lines = ['<doxygenlayout version="1.0">', "<navindex>",
             '<tab type="mainpage" visible="yes" title="Overview"/>',
             '<tab type="pages" visible="no" title=""/>',
             *map(tab, guides.order())]
    for kind, title, parts in API:
        lines.append(f'<tab type="{kind}" visible="yes" title="{title}">')
        lines += [f'<tab type="{part}" visible="yes" title=""/>' for part in parts]
        lines.append("</tab>")
    lines += ['<tab type="usergroup" title="Source folders">', *map(tab, guides.folders()), "</tab>",
              "</navindex>", "</doxygenlayout>"]
    return "\n".join(lines) + "\n"
