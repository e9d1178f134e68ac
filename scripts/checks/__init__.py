"""The rules of CONTRIBUTING.md that a program can check, one module per rule.

Each check has a function check(tree) that returns a Result; the first line of its module says
which rule it checks.
"""
