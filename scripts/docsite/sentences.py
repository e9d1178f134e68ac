"""No page of the API is without a sentence: what Doxygen has read, as XML, is searched for them."""

from xml.etree import ElementTree

KINDS = ("class", "dir", "file", "interface", "namespace", "struct", "union")


def pages_without_sentence(folder):
    """Lines that name each page without a sentence, and how many pages there are."""
    faults, pages = [], 0
    for entry in ElementTree.parse(folder / "index.xml").getroot():
        if entry.get("kind") not in KINDS:
            continue
        page = ElementTree.parse(folder / f"{entry.get('refid')}.xml").find("compounddef")
        place = page.find("location")
        if place is None or is_guide(place.get("file")):
            continue
        pages += 1
        if not "".join(page.find("briefdescription").itertext()).strip():
            faults.append(f"{place.get('file')}:{place.get('line') or 1}: {entry.get('kind')} "
                          f"{entry.findtext('name')} has no sentence: expected one above it")
    return faults, pages


def is_guide(file):
    """True of a file that only carries text."""
    return file.endswith((".md", ".dox"))
