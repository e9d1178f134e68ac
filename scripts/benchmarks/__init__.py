"""Runs the programs of bench, and prints what they measured as one table.

Each program measures ours and a reference in turns, and writes the JSON of Google Benchmark with
the medians as counters and a label "ours|reference|unit". Growth is measured by a program of its
own, whose numbers become plots.
"""
