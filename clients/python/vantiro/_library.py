"""The library as an object, and what makes its functions easy to use from Python."""
import ctypes
import os
from typing import Any, Callable, ContextManager, List, Union

from . import _waiting
from ._frames import CAPACITY, LONG, THREADS, Frames
from ._functions import functions
from ._loading import load
from ._operations import Operations
from ._strings import decode

_OK, _NOT_INITIALIZED, _UNCAUGHT_EXCEPTION = 0, -11, -13
_BUFFER_TOO_SMALL, _OUT_OF_BOUNDS = -23, -24


class Error(Exception):
    """A function of the library returned the failure ``status``, which means ``text``.

    ``message`` is what Java had to say about it, if anything.
    """

    def __init__(self, status: int, text: str, message: str = "") -> None:
        super().__init__(status, text, message)
        self.status = status
        self.text = text
        self.message = message

    def add_doctor(self) -> None:
        """Names, for a start that failed, the program that tells why."""
        if self.status <= _NOT_INITIALIZED:
            self.message += "; vantiro-doctor tells why" if self.message else "vantiro-doctor tells why"

    def __str__(self) -> str:
        return f"{self.text} (status {self.status}){': ' * bool(self.message)}{self.message}"


class Library(Operations):
    """``libvantiro``, with each ``vantiro_<operation>`` as the method ``<operation>``.

    ``path`` names the library. Without it the environment variable ``VANTIRO_LIBRARY`` does, and
    without that the loader looks for ``libvantiro.so.1``. There is one Java machine in a process:
    two objects of this class are two ways to the same one.

    Any thread may call. A thread that ends before the program makes its calls within
    :meth:`attachment`.
    """

    def __init__(self, path: "Union[str, os.PathLike[str], None]" = None) -> None:
        self.library = load(path)
        """The library itself, for what is not a method: plug-in objects, the host state."""
        self._frames = Frames(self.library)
        vars(self).update(functions(self.library, self._frames))
        _waiting.improve(self)

    def check(self, status: int) -> int:
        """Gives ``status`` back, unless it is negative: then raises :class:`Error`."""
        if status < 0:
            raise self._error(status)
        return status

    def text(self, function: Callable[..., int], *arguments: Any) -> str:
        """Calls a function that returns a string; empty when Java has none.

        ``arguments`` are those before the buffer: ``grid.text(grid.peach_nextFile, run)``.
        """
        thread = THREADS.present
        thread.calls_left -= 1
        if thread.calls_left < 0:
            self._frames.renew()
        buffer, size = thread.buffer, thread.size
        size.value = CAPACITY
        status = function(*arguments, buffer, size)
        while status == _BUFFER_TOO_SMALL:
            buffer = ctypes.create_string_buffer(size.value)
            status = function(*arguments, buffer, size)
        if status != _OK:
            raise self._error(status)
        if size.value > LONG:
            self._frames.take(size.value // LONG)
        return decode(buffer.value) if size.value else ""

    def list(self, function: Callable[..., int], *arguments: Any) -> List[str]:
        """Calls a function that returns one string of a list, for each of them.

        ``arguments`` are those before the position: ``grid.list(grid.getResultFiles, project)``.
        """
        strings: List[str] = []
        position = ctypes.c_int()  # in: of the string; out: the length of the list
        try:
            while True:
                strings.append(self.text(function, *arguments, position))
                if len(strings) >= position.value:
                    return strings
                position.value = len(strings)
        except Error as error:
            if error.status != _OUT_OF_BOUNDS:
                raise
            return strings

    def frame(self) -> ContextManager[None]:
        """A scope at whose end Java may forget the strings of the calls made in it.

        Calls are framed without it too, about a thousand strings at a time; it is for a thread
        that makes no calls for a long time afterwards.
        """
        return self._frames.scope()

    def attachment(self) -> ContextManager[None]:
        """A scope at whose end the present thread leaves the Java machine.

        It goes around all calls of a thread that ends before the program: the machine keeps for
        ever what belongs to a thread that has ended without leaving.
        """
        return self._frames.attachment()

    def _error(self, status: int) -> Error:
        if status == _UNCAUGHT_EXCEPTION:
            self._frames.renew()  # the exception is a reference too
        try:
            text = self.text(self.describeStatusCode, status)
            said = status >= _UNCAUGHT_EXCEPTION and status != _NOT_INITIALIZED
            return Error(status, text, self.text(self.getLastErrorMessage) if said else "")
        except Error as error:  # never of a status of the library's own
            return Error(status, f"unknown, for want of an answer from Java: {error}")
