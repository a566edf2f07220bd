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
            raise ValueError(f"the comment of vantiro_{name} does not begin with @brief")
        declarations[name] = " ".join(parameters.split()), brief[1].rstrip(".") + "."
    return declarations


def _parameter(function: str, declaration: str) -> Parameter:
    for kind, pattern in _KINDS.items():
        match = re.fullmatch(pattern, declaration)
        if match:
            return Parameter(match[1], kind)
    raise ValueError(f"vantiro_{function} has a parameter of a new kind, '{declaration}': name it in "
                     "_KINDS, and say in the clients what they make of it")


def _list_name(count: str) -> str:
    """The list that ``count1`` is the length of is ``list1``, that of ``fileCount`` is ``files``."""
    word = re.sub("_?count", "", count, flags=re.I)
    return word + "s" if word.isalpha() else "list" + word


def _parameters(function: str, declaration: str) -> List[Parameter]:
    if declaration == "void":
        return []
    parts = re.split(r", (?![^(]*\))", declaration)
    if parts[-1] != "...":
        return [_parameter(function, part) for part in parts]
    parameters = [_parameter(function, part) for part in parts[:-1]]
    lists = []
    while parameters and "count" in parameters[-1].name.lower():
        lists.insert(0, Parameter(_list_name(parameters.pop().name), "list"))
    if not lists:
        raise ValueError(f"vantiro_{function} takes strings, without a count of them before")
    return parameters + lists


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
        if not is_form and "vantiro_j" not in parameters and name != "findJavaInPath":
            functions.append(Function(name, _parameters(name, parameters), brief))
    return functions
