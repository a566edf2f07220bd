"""Ctrl-C: the program keeps its handlers of signals, and calls that wait for jobs can be interrupted.

Python raises KeyboardInterrupt in the main thread, and only there, when it is not in a function of
C. So the main thread has another one make the calls that wait, and waits for that.
"""
import concurrent.futures
import contextlib
import ctypes
import functools
import queue
import signal
import sys
import threading
from typing import TYPE_CHECKING, Any, Callable, Dict, Iterator, Optional

if TYPE_CHECKING:
    from ._library import Library

_STARTS = "initJava", "init", "initFile", "initFileWithPassword", "initWithoutFile"
_TAKEN_BY_JAVA = signal.SIGINT, signal.SIGTERM, signal.SIGHUP
_SIZE_OF_SIGACTION = 256  # that of any C library is smaller

_Call = Callable[..., int]
_libc = ctypes.CDLL(None)


def improve(library: "Library") -> None:
    """Puts functions that heed signals in the place of those that start Java and of those that wait."""
    functions = vars(library)
    for name in _STARTS:
        functions[name] = _keeping_handlers(functions[name])
    stop = library.stopProject
    for name, end in (
        ("waitCompletion", stop),
        ("peach_execute", lambda run: stop(library.peach_getProjectHandle(run))),
        ("peach", None),
        ("actionWait", None),
    ):
        functions[name] = _interruptible(functions[name], library, end)


def _keeping_handlers(start: _Call) -> _Call:
    @functools.wraps(start)
    def call(*arguments: Any) -> int:
        with _handlers_kept():
            return start(*arguments)

    return call


@contextlib.contextmanager
def _handlers_kept() -> Iterator[None]:
    """The machine takes over what the program handles; what it does not, is well left to Java."""
    actions: Dict[signal.Signals, Any] = {}
    for number in _TAKEN_BY_JAVA:
        if callable(signal.getsignal(number)):
            actions[number] = ctypes.create_string_buffer(_SIZE_OF_SIGACTION)
            _libc.sigaction(number, None, actions[number])
    try:
        yield
    finally:
        for number, action in actions.items():
            _libc.sigaction(number, action, None)


class _Deliveries(threading.local):
    put: Optional[Callable[[Callable[[], None]], None]] = None


_deliveries = _Deliveries()


def deliver(receiver: Callable[[str], None], text: str) -> None:
    """Calls a receiver, in the main thread if that waits for the present one."""
    def call() -> None:
        try:
            receiver(text)
        except Exception as error:
            sys.excepthook(type(error), error, error.__traceback__)

    if _deliveries.put:
        _deliveries.put(call)
    else:
        call()


def _interruptible(wait: _Call, library: "Library", end: Optional[_Call]) -> _Call:
    """``wait``, in which the main thread handles signals; when one raises, ``end`` ends the jobs."""
    @functools.wraps(wait)
    def call(*arguments: Any) -> int:
        if threading.current_thread() is not threading.main_thread():
            return wait(*arguments)
        # What the main thread is to do: to call receivers, and at last None. It holds no more than
        # one, so that a slow receiver slows its own run.
        tasks: "queue.Queue[Optional[Callable[[], None]]]" = queue.Queue(1)
        status: "concurrent.futures.Future[int]" = concurrent.futures.Future()

        def work() -> None:
            _deliveries.put = tasks.put
            try:
                with library.attachment():
                    status.set_result(wait(*arguments))
            except Exception as error:
                status.set_exception(error)
            tasks.put(None)

        threading.Thread(target=work, name="vantiro", daemon=True).start()
        try:
            for task in iter(tasks.get, None):
                task()
        except BaseException:
            threading.Thread(target=_drain, args=[tasks], daemon=True).start()
            if end is not None:
                end(*arguments)
            raise
        return status.result()

    return call


def _drain(tasks: "queue.Queue[Optional[Callable[[], None]]]") -> None:
    """Lets go the thread that waits; nobody takes its lines any more."""
    for _ in iter(tasks.get, None):
        pass
