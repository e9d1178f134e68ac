"""What stops the site from being built."""


class Fault(Exception):
    """One or more lines that say where something is wrong, and what was expected."""
