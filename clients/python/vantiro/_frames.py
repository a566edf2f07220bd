"""The frames of Java references, and the threads that hold them.

Each string that goes in or comes out is a Java reference of the calling thread. Java keeps it until
the thread detaches, or until the frame in which it was made is popped. To push and pop a frame for
each call would cost more than the call, so a frame takes the strings of a thousand calls.

The functions for it stand in tables of pointers that the Java machine and the thread's environment
begin with. The Java Native Interface fixes the positions in them for all versions.
"""
import contextlib
import ctypes
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

# A longer text is asked for twice, and an operation such as peach_nextFile answers the second time
# with what comes next. Any path fits.
CAPACITY = 16384


def _call(target: int, function: Any, *arguments: Any) -> Any:
    position, prototype = function
    table = _Pointer.from_address(target).value or 0
    address = _Pointer.from_address(table + position * ctypes.sizeof(_Pointer)).value
    return prototype(address)(target, *arguments)


class Thread:
    """What one thread has."""

    __slots__ = "calls_left", "env", "buffer", "size"

    def __init__(self) -> None:
        self.calls_left = 0
        """How many more calls the frame takes."""
        self.env: Optional[int] = None
        """That the frame was pushed in."""
        self.buffer = ctypes.create_string_buffer(CAPACITY)
        """Where strings come out."""
        self.size = ctypes.c_uint()


class _Threads(threading.local):
    def __init__(self) -> None:
        self.present = Thread()


THREADS = _Threads()
"""One for all libraries, as there is one machine."""


class Frames:
    """What the threads have in the Java machine."""

    def __init__(self, library: ctypes.CDLL) -> None:
        self._library = library

    def take(self, calls: int) -> None:
        """Counts in what a call makes beyond the usual."""
        THREADS.present.calls_left -= calls
        if THREADS.present.calls_left < 0:
            self.renew()

    def renew(self) -> None:
        """Forgets what the present thread made in its frame, and begins another."""
        self._pop()
        self._push()
        thread = THREADS.present
        thread.calls_left = 0 if thread.env is None else _CALLS_OF_A_FRAME

    @contextlib.contextmanager
    def scope(self) -> Iterator[None]:
        """A frame within the present one."""
        thread = THREADS.present
        outer, thread.env = thread.env, None
        self._push()
        try:
            yield
        finally:
            self._pop()
            thread.env = outer

    @contextlib.contextmanager
    def attachment(self) -> Iterator[None]:
        """At its end the thread is detached, unless it was attached at the beginning."""
        was_attached = self.present_env() is not None
        try:
            yield
        finally:
            machine = self._machine()
            if machine and not was_attached:
                self._pop()
                _call(machine, _DETACH_CURRENT_THREAD)

    def present_env(self) -> Optional[int]:
        """None while the thread is not attached."""
        machine = self._machine()
        env = _Pointer()
        if machine:
            _call(machine, _GET_ENV, ctypes.byref(env), _JNI_VERSION_1_6)
        return env.value

    def _machine(self) -> Optional[int]:
        """None while the machine is not started."""
        started = self._library.vantiro_getJNIEnv()
        return self._library.vantiro_getJavaVM() if started else None

    def _push(self) -> None:
        machine = self._machine()
        env = _Pointer()
        if machine:
            _call(machine, _ATTACH_CURRENT_THREAD, ctypes.byref(env), None)
        if env.value and _call(env.value, _PUSH_LOCAL_FRAME, _REFERENCES_OF_A_FRAME) == 0:
            THREADS.present.env = env.value

    def _pop(self) -> None:
        thread = THREADS.present
        if thread.env is not None and thread.env == self.present_env():
            _call(thread.env, _POP_LOCAL_FRAME, None)
        thread.env = None
