"""The binary interface of the libraries as text, and what a change of it breaks.

abidw of libabigail reads the debug information of a library, all of it; kept is what the headers of
the faces promise, one line for each slot, member, enumerator and symbol. Types of others, such as
Qt's, are named and not described.
"""
