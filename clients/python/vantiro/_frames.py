"""The frames of Java references, and the threads that hold them.

Each string that goes in or comes out is a Java reference of the calling thread. Java keeps it until
the thread detaches, or until the frame in which it was made is popped. To push and pop a frame for
each call would cost more than the call, so a frame takes many calls: a thousand on average.

The functions for it stand in tables of pointers that the Java machine and the thread's environment
begin with. The Java Native Interface fixes the positions in them for all versions.
"""
import contextlib
import ctypes
import itertools
import random
import threading
from typing import Any, Iterator, Optional

_Pointer = ctypes.c_void_p
_Out = ctypes.POINTER(_Pointer)

# Of the machine: position and type.
_ATTACH_CURRENT_THREAD = 4, ctypes.CFUNCTYPE(ctypes.c_int, _Pointer, _Out, _Pointer)
_DETACH_CURRENT_THREAD = 5, ctypes.CFUNCTYPE(ctypes.c_int, _Pointer)
_GET_ENV = 6, ctypes.CFUNCTYPE(ctypes.c_int, _Pointer, _Out, ctypes.c_int)
# Of an environment.
_PUSH_LOCAL_FRAME = 19, ctypes.CFUNCTYPE(ctypes.c_int, _Pointer, ctypes.c_int)
_POP_LOCAL_FRAME = 20, ctypes.CFUNCTYPE(_Pointer, _Pointer, _Pointer)

_JNI_VERSION_1_6 = 0x00010006

_CALLS_OF_A_FRAME = 1000
STRINGS_OF_A_CALL = 16
_REFERENCES_OF_A_FRAME = _CALLS_OF_A_FRAME * 2 * STRINGS_OF_A_CALL

LONG = 1024
"""A string of so many bytes counts as a call of its own, and as another for each as many more."""


def _call(target: int, function: Any, *arguments: Any) -> Any:
    position, prototype = function
    table = _Pointer.from_address(target).value or 0
    address = _Pointer.from_address(table + position * ctypes.sizeof(_Pointer)).value
    return prototype(address)(target, *arguments)


class _Thread(threading.local):
    env: Optional[int] = None  # that the present thread's frame was pushed in


class Frames:
    """What the threads have in the Java machine.

    ``room`` gives an item for each call until :meth:`renew` is due. All threads share it, because
    to look up what belongs to a thread would cost as much as all else here; how much it gives is
    drawn anew each time, so that no thread's calls are always passed over.
    """

    def __init__(self, library: ctypes.CDLL) -> None:
        self._library = library
        self._thread = _Thread()
        self._draw = random.Random().randrange
        self.room: Iterator[None] = iter(())

    def take(self, calls: int) -> None:
        """Counts in what a call makes beyond the usual."""
        if self._draw(_CALLS_OF_A_FRAME) < calls:
            self.renew()

    def renew(self) -> None:
        """Forgets what the present thread made in its frame, and begins another."""
        self._pop()
        self._push()
        calls = self._draw(2 * _CALLS_OF_A_FRAME) if self._thread.env else 0
        self.room = itertools.repeat(None, calls)

    @contextlib.contextmanager
    def scope(self) -> Iterator[None]:
        """A frame within the present one."""
        outer = self._thread.env
        self._thread.env = None
        self._push()
        try:
            yield
        finally:
            self._pop()
            self._thread.env = outer

    @contextlib.contextmanager
    def attachment(self) -> Iterator[None]:
        """At its end the thread is detached, unless it was attached at the beginning."""
        was_attached = self._present_env() is not None
        try:
            yield
        finally:
            machine = self._machine()
            if machine and not was_attached:
                self._pop()
                _call(machine, _DETACH_CURRENT_THREAD)

    def _machine(self) -> Optional[int]:
        """None while the machine is not started."""
        started = self._library.vantiro_getJNIEnv()
        return self._library.vantiro_getJavaVM() if started else None

    def _present_env(self) -> Optional[int]:
        """None while the thread is not attached."""
        machine = self._machine()
        env = _Pointer()
        if machine:
            _call(machine, _GET_ENV, ctypes.byref(env), _JNI_VERSION_1_6)
        return env.value

    def _push(self) -> None:
        machine = self._machine()
        env = _Pointer()
        if machine:
            _call(machine, _ATTACH_CURRENT_THREAD, ctypes.byref(env), None)
        if env.value and _call(env.value, _PUSH_LOCAL_FRAME, _REFERENCES_OF_A_FRAME) == 0:
            self._thread.env = env.value

    def _pop(self) -> None:
        if self._thread.env is not None and self._thread.env == self._present_env():
            _call(self._thread.env, _POP_LOCAL_FRAME, None)
        self._thread.env = None
