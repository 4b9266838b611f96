# SPDX-License-Identifier: MIT
"""Which Python function stands for which function of the library."""

FUNCTIONS = {}


def gives(*names):
    """Registers a function for functions of the library.

    It takes the inputs of a vector by their names. What it returns is the result called "result",
    unless it is a dict, which is all results.
    """
    def register(function):
        for name in names:
            assert name not in FUNCTIONS, name
            FUNCTIONS[name] = function
        return function
    return register


def constant(name, value):
    """Registers the value that a variable or a function without inputs always has."""
    gives(name)(lambda: {"value": value})
