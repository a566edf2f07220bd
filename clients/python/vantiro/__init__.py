"""A client of ``libvantiro``: grid computing through a Java library, from Python.

What the standard library does on one machine, on as many as the grid has:

    import vantiro

    vantiro.run(["sort", "names.txt"], capture_output=True, text=True).stdout

    with vantiro.Executor() as pool:
        print(list(pool.map(math.factorial, range(1000), chunksize=100)))

:func:`run` is ``subprocess.run``; :class:`Executor` is a ``concurrent.futures.Executor``;
:class:`Project` and :class:`Run` are the grid's own projects and parallel-each runs. They share the
grid of the process, which :func:`start` starts with settings of your own.

Below them is :class:`Library`, which has every function of the C headers.
"""
import importlib
from typing import TYPE_CHECKING, Any

if TYPE_CHECKING:
    from ._executor import Executor, run
    from ._grid import start
    from ._library import Error, Library
    from ._loading import LoadError
    from ._projects import Project, Result
    from ._runs import Run

__all__ = ["Error", "Executor", "Library", "LoadError", "Project", "Result", "Run", "run", "start"]

_PLACES = {
    "_executor": ("Executor", "run"),
    "_grid": ("start",),
    "_library": ("Error", "Library"),
    "_loading": ("LoadError",),
    "_projects": ("Project", "Result"),
    "_runs": ("Run",),
}


def __getattr__(name: str) -> Any:
    """Imports what is used. Each call that an Executor makes may import the main module anew, which
    imports this one and needs nothing of it: 1 ms instead of 30.
    """
    for place, names in _PLACES.items():
        if name in names:
            return getattr(importlib.import_module(f".{place}", __name__), name)
    raise AttributeError(f"module {__name__} has no attribute {name}")
