"""How many instructions the driver needs for what hosts do most.

Instructions are the same on a busy machine, where times are not. counted_work does each thing as
often as it is given; callgrind counts two runs, and the difference is what the thing itself takes,
without the start of the program.
"""
