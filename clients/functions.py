"""The functions of the library, as its headers declare them.

The clients are made from this, so that a declaration is all that a new function needs.
"""
import pathlib
import re
from typing import Dict, List, NamedTuple

HEADERS = pathlib.Path(__file__).resolve().parent.parent / "include" / "vantiro"

# What the declaration of a parameter looks like, by its kind.
_KINDS = {
    "buffer": r"char \*(\w+)",
    "size": r"unsigned int \*(\w+)",
    "index": r"int \*(\w+)",
    "receiver": r"void \(\*(\w+)\)\(const char \*text\)",
    "string": r"const char \*(\w+)",
    "flag": r"unsigned char (\w+)",
    "integer": r"int (\w+)",
}


class Parameter(NamedTuple):
    name: str
    kind: str


class Function(NamedTuple):
    name: str
    """Without the ``vantiro_`` before it."""
    parameters: List[Parameter]
    """A list, which is a count and strings, is one of the kind ``list``; it comes last."""
    brief: str
    """What the function does, in a sentence."""


def _declarations(text: str) -> Dict[str, "tuple[str, str]"]:
    """By name: the parameters and the first sentence of the comment."""
    found = re.findall(
        r"/\*\*((?:(?!\*/).)*)\*/\s*VANTIRO_API int vantiro_(\w+)\(([^;]*)\);", text, re.S)
    declarations = {}
    for comment, name, parameters in found:
        comment = " ".join(re.sub(r"^ *\*", "", comment, flags=re.M).split())
        brief = re.match(r"@brief (.*?)(?:: the (?:static )?Java method|\.? @|\.(?: |$))", comment + " @")
        if not brief:
            raise SyntaxError(f"the comment of vantiro_{name} does not begin with @brief")
        declarations[name] = " ".join(parameters.split()), brief[1].rstrip(".") + "."
    return declarations


def _parameter(function: str, declaration: str) -> Parameter:
    for kind, pattern in _KINDS.items():
        match = re.fullmatch(pattern, declaration)
        if match:
            return Parameter(match[1], kind)
    raise SyntaxError(f"vantiro_{function} has a parameter of a new kind, '{declaration}', "
                      f"that {__file__} and the clients do not know yet")


def _list_name(count: str) -> str:
    """Of the list that is so long: ``count1`` is the length of ``list1``, ``file_count`` of ``files``."""
    word = re.sub("_?count", "", count, flags=re.I)
    return word + "s" if word.isalpha() else "list" + word


def read(headers: pathlib.Path = HEADERS) -> List[Function]:
    """All functions that pass on a call, in the order of the headers.

    The forms of a function that take an array are left out, and so is what C alone can use.
    """
    declarations: Dict[str, "tuple[str, str]"] = {}
    for path in sorted(headers.glob("*.h")):
        declarations.update(_declarations(path.read_text(encoding="utf-8")))
    functions = []
    for name, (parameters, brief) in declarations.items():
        is_form = name[-1] in "23" and declarations.get(name[:-1], ("",))[0].endswith("...")
        if is_form or "vantiro_j" in parameters or name == "findJavaInPath":
            continue
        parts = [] if parameters == "void" else re.split(r", (?![^(]*\))", parameters)
        takes_lists = parts[-1:] == ["..."]
        read_parts = [_parameter(name, part) for part in parts[:-1 if takes_lists else None]]
        if takes_lists:
            counts = [part for part in read_parts if "count" in part.name.lower()]
            if not counts or read_parts[-len(counts):] != counts:
                raise SyntaxError(f"vantiro_{name} takes strings without a count before them")
            read_parts[-len(counts):] = [Parameter(_list_name(part.name), "list")
                                         for part in counts]
        functions.append(Function(name, read_parts, brief))
    return functions
