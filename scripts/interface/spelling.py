"""Types as C++ writes them. A name that stands for another type is replaced by that one, so that a
change of what it stands for is a change of the text."""


def name_of(dump, element):
    """The whole name of a type: with the namespaces and classes around it."""
    names = [element.get("name")]
    while (element := dump.parents.get(element)) is not None:
        if element.tag in ("namespace-decl", "class-decl", "union-decl"):
            names.insert(0, element.get("name"))
    return "::".join(names)


def spell(dump, type_id):
    """A type, given by its id."""
    element = dump.types[type_id]
    return SPELLED.get(element.tag, name_of)(dump, element)


def inner(dump, element):
    """The type that another one is made of."""
    return spell(dump, element.get("type-id"))


def pointer(dump, element, mark="*"):
    """A pointer or reference."""
    made = inner(dump, element)
    return made.replace(" ()", f" ({mark})", 1) if " ()" in made else made + mark


def reference(dump, element):
    """A reference, to a value that stays or to one that ends."""
    return pointer(dump, element, "&" if element.get("kind") == "lvalue" else "&&")


def qualified(dump, element):
    """A constant or volatile type."""
    return " ".join((inner(dump, element),
                     *(word for word in ("const", "volatile") if element.get(word))))


def array(dump, element):
    """An array with its lengths."""
    return inner(dump, element) + "".join(f"[{part.get('length')}]" for part in element)


def parameters(dump, element):
    """The parameters of a function, without the object."""
    found = [inner(dump, part) for part in element.iterfind("parameter")
             if not part.get("is-artificial")]
    return f"({', '.join(found)})"


def result(dump, element):
    """The type that a function returns."""
    return inner(dump, element.find("return"))


def function(dump, element):
    """The type of a function; the empty brackets are the place of a pointer's mark."""
    return f"{result(dump, element)} (){parameters(dump, element)}"


SPELLED = {"pointer-type-def": pointer, "reference-type-def": reference,
           "qualified-type-def": qualified, "array-type-def": array, "typedef-decl": inner,
           "function-type": function}
