"""What a library promises: entries for its symbols, and for the types that come with them.

An entry has a name and a value, and for a type its parts, which have names and values too.
"""

from dataclasses import dataclass, field

from checks.tree import InputError

from .dump import RECORDS, Dump, read_symbols, sources_of
from .spelling import inner, name_of, parameters, result

BITS = 8  # in a byte
TYPES = (*RECORDS, "enum-decl")


@dataclass
class Entry:
    """A symbol or a type; `line` is where the kept text has it."""

    value: str = ""
    parts: dict = field(default_factory=dict)
    line: int = 0


def promise_of(library, run=map):
    """The entries of a library by name; `run` calls a function for each of its sources. Raises
    InputError if a promised function or a marked type is not in the debug information."""
    symbols, types, functions = read_symbols(library), {}, {}
    for found in run(lambda file: describe(Dump(file, library.headers), symbols),
                     sources_of(library, symbols)):
        merge(types, found[0], library)
        merge(functions, found[1], library)
    check_complete(library, symbols, types, functions)
    others = {f"symbol {name}": Entry(f"{size} bytes" if name.startswith("vtable") else "")
              for name, size in symbols.items() if size is not None}
    return {name: entry for found in (types, functions, others) for name, entry in sorted(found.items())}


def merge(known, found, library):
    """Adds entries of a source to those of others. Raises InputError if two differ."""
    for name, entry in found.items():
        other = known.setdefault(name, entry)
        if other != entry:
            parts = [part for part in {**entry.parts, **other.parts}
                     if entry.parts.get(part) != other.parts.get(part)]
            raise InputError(
                f"{library.path}: {name} is not the same in all sources: {entry.value} or "
                f"{other.value}; {', '.join(parts) or 'no part'} differs; expected one definition, "
                "and a build of all sources")


def check_complete(library, symbols, types, functions):
    """Raises InputError if something that is promised was not found."""
    described = {name.removeprefix("function ") for name in functions}
    described |= {name.split("(")[0] for name in described}  # C's symbols lack the parameters
    lost = [name for name, size in symbols.items()
            if size is None and name not in described and " thunk to " not in name]
    known = {part for name in types for part in name.split(" ", 1)[1].split("<")[0].split("::")}
    lost += (library.promised.types if library.promised else set()) - known
    if lost or not symbols:
        raise InputError(f"{library.path}: {', '.join(sorted(lost)) or 'all'} is not in the debug "
                         "information, expected a build with the preset dev")


def describe(dump, symbols):
    """The entries of a source: of its types, and of its functions."""
    promised = {written: element for written, element in dump.functions.items() if written in symbols}
    return ({name: entry for element in reached(dump, symbols, promised.values())
             for name, entry in [described_type(dump, element)]},
            {name: entry for symbol in promised.items()
             for name, entry in [described_function(dump, *symbol)]})


def reached(dump, symbols, functions):
    """The types of headers that hosts meet when they use functions."""
    seen, found, waiting = set(), [], list(functions)
    waiting += [dump.parents[member] for function in functions
                if (member := dump.parents[function]).tag == "member-function"]
    while waiting:
        element = waiting.pop()
        if element in seen:
            continue
        seen.add(element)
        if element.tag in TYPES and dump.is_described(element):
            found.append(element)
        elif element.tag in TYPES and dump.source(element):
            continue  # private: named, not described
        waiting += [dump.types[type_id] for type_id in used(dump, element, symbols)]
    return found


def used(dump, element, symbols):
    """The ids of the types that belong to one: of its bases, members and virtual functions."""
    if element.tag not in RECORDS:
        return {part.get("type-id") for part in element.iter() if part.get("type-id")}
    found = {part.get("type-id") for part in element.iterfind("base-class")}
    found |= {member[0].get("type-id") for member in element.iterfind("data-member")
              if member.get("static") is None}
    for member in element.iterfind("member-function"):
        if member.get("vtable-offset") or dump.written[member[0]] in symbols:
            found |= used(dump, member[0], symbols)
    return found


def described_function(dump, written, element):
    """The name and the entry of a function."""
    if written == element.get("mangled-name"):  # of C, where the symbol does not say it
        written += parameters(dump, element)
    member = dump.parents[element]
    is_made = member.get("constructor") or member.get("destructor")
    return f"function {written}", Entry("" if is_made else result(dump, element))


def described_type(dump, element):
    """The name and the entry of a type."""
    if element.tag == "enum-decl":
        size = dump.types[element.find("underlying-type").get("type-id")].get("size-in-bits")
        return f"enum {name_of(dump, element)}", Entry(in_bytes(size), {
            item.get("name"): item.get("value") for item in element.iterfind("enumerator")})
    entry = Entry(in_bytes(element.get("size-in-bits")))
    for base in element.iterfind("base-class"):
        entry.parts[f"base {inner(dump, base)}"] = place(base)
    for number, function in sorted(slots(element)):
        entry.parts[f"slot {number}"] = f"{result(dump, function)} {dump.written[function]}"
    for member in element.iterfind("data-member"):
        if member.get("static") is None:
            name = member[0].get("name") or f"unnamed {place(member)}"
            entry.parts[f"member {name}"] = f"{inner(dump, member[0])}, {place(member)}"
    return f"{element.tag.removesuffix('-decl')} {name_of(dump, element)}", entry


def in_bytes(bits):
    """A size as text."""
    return f"{int(bits) // BITS} bytes"


def place(element):
    """Where a base or member is in its class."""
    byte, bit = divmod(int(element.get("layout-offset-in-bits")), BITS)
    return f"at {byte}, bit {bit}" if bit else f"at {byte}"


def slots(record):
    """The numbers and the functions of the slots that a class fills, its destructor left out, whose
    number the debug information lacks."""
    for member in record.iterfind("member-function"):
        number = int(member.get("vtable-offset", "-1"))
        if number >= 0:
            yield number, member[0]
