"""The JSON Schemas of Documentation/Schemas."""

import functools
import json
from pathlib import Path

FOLDER = Path(__file__).resolve().parents[2] / "Documentation" / "Schemas"


def schema(name):
    return json.loads((FOLDER / f"{name}.schema.json").read_text(encoding="utf-8"))


@functools.cache
def validator(name):
    # Not before it is needed: it takes as long as the rest of a short test.
    from jsonschema import Draft202012Validator

    Draft202012Validator.check_schema(schema(name))
    return Draft202012Validator(schema(name))


def error(name, value):
    """The first thing that the schema of that name has against a value, or None."""
    found = next(validator(name).iter_errors(value), None)
    return found and f"{name}: {found.json_path}: {found.message:.300}"
