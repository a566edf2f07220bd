"""A client of ``libvantiro``: grid computing through a Java library, from Python.

    import vantiro

    grid = vantiro.Library()
    grid.check(grid.init())
    print(grid.text(grid.getUserLogin))

Every function ``vantiro_<operation>`` of the C headers is the method ``<operation>`` of a
:class:`Library`; the headers say what each means. Integers pass as they are (32 bits), ``str``,
``bytes`` and paths as strings, ``None`` as null, and a sequence of strings where a C function wants
a count and an array (``createJob``, ``peach``, ``setProjectParams``, ...). Functions return their
status or Java's integer, which :meth:`Library.check` turns into an exception when it is negative.
"""
from ._library import Error, Library
from ._loading import LoadError

__all__ = ["Error", "Library", "LoadError"]
