"""Runs the programs of libFuzzer in fuzz/, which try inputs until something breaks.

Each target has seeds in fuzz/corpus, which are kept, and a corpus in the build folder, which grows
with each run. An input that breaks a target is a finding, and is kept in the build folder.
"""
