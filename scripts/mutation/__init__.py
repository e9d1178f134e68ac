"""Mutation testing of the C++ sources: one-line changes that a test must detect."""
