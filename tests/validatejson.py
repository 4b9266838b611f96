#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Says of JSON documents whether schemas take them.

usage: validatejson.py FOLDER < LINES

Each line holds the name of a schema of the folder, a tab and a JSON document. For each one line is
printed: nothing on it if the schema takes the document, or else why not.
"""
import json
import sys
from pathlib import Path

from jsonschema import Draft202012Validator


def strict(name):
    raise ValueError(f"{name} is no JSON")


def validators(folder):
    result = {}
    for path in sorted(Path(folder).glob("*.schema.json")):
        schema = json.loads(path.read_text(encoding="utf-8"))
        Draft202012Validator.check_schema(schema)
        result[path.name.removesuffix(".schema.json")] = Draft202012Validator(schema)
    return result


def fault(validator, text):
    try:
        error = next(validator.iter_errors(json.loads(text, parse_constant=strict)), None)
    except ValueError as no_json:
        return str(no_json)
    return f"{error.json_path}: {error.message}" if error else ""


def main():
    known = validators(sys.argv[1])
    for line in sys.stdin:
        name, text = line.rstrip("\n").split("\t", 1)
        print(fault(known[name], text).replace("\n", " "))


if __name__ == "__main__":
    main()
