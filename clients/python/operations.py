#!/usr/bin/env python3
"""Writes vantiro/_operations.py, which the package and its types need: the functions of the headers
as methods. The build and the installation run it.
"""
import keyword
import os
import pathlib
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent))
import functions  # noqa: E402

HEAD = '''"""The functions of the headers. Made by clients/python/operations.py: do not edit."""
from __future__ import annotations

import ctypes
from typing import Callable, Iterable, Optional

from ._strings import Text

Strings = Iterable[Text]
Receiver = Optional[Callable[[str], None]]


class Operations:
    """Each is what its annotations say; the callables that a library is given take their places."""
'''

METHOD = '''
    def {name}({parameters}) -> int:
        """{brief}"""
        raise NotImplementedError("this libvantiro has no vantiro_{name}")
'''

# What the annotation of each kind of parameter is; vantiro/_functions.py passes arguments by it.
ANNOTATIONS = {
    "integer": "int",
    "flag": "bool",
    "string": "Text",
    "list": "Strings",
    "receiver": "Receiver",
    "buffer": "ctypes.Array[ctypes.c_char]",
    "size": "ctypes.c_uint",
    "index": "ctypes.c_int",
}


def method(function: functions.Function) -> str:
    parameters = ["self"]
    for parameter in function.parameters:
        name = parameter.name + "_" * keyword.iskeyword(parameter.name)
        parameters.append(f"{name}: {ANNOTATIONS[parameter.kind]}")
    return METHOD.format(name=function.name, parameters=", ".join(parameters),
                         brief=function.brief)


def main() -> None:
    text = HEAD + "".join(map(method, functions.read()))
    target = HERE / "vantiro" / "_operations.py"
    # Two builds may be at it at once.
    part = target.with_name(f"{target.name}.{os.getpid()}")
    part.write_text(text, encoding="utf-8")
    part.replace(target)


if __name__ == "__main__":
    main()
