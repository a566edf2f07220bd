"""Calls of Python functions as jobs. ``_job.py`` is their other side."""
from concurrent.futures import BrokenExecutor
import os
import pathlib
import pickle
import sys
from typing import Any, Callable, Dict, List, Optional, Sequence, Tuple

from ._commands import pass_on

Initializer = Optional[Tuple[Callable[..., object], Tuple[Any, ...]]]


class FarTraceback(Exception):
    """The traceback of an exception where it was raised: the cause of the exception here."""

    def __init__(self, text: str) -> None:
        super().__init__(text)
        self.tb = text

    def __str__(self) -> str:
        return f'\n"""\n{self.tb}"""'


def _preparation(calls: bytes) -> Dict[str, Any]:
    """What makes the process of a job like this one."""
    preparation: Dict[str, Any] = {
        "sys_path": [os.path.abspath(path) for path in sys.path],
        "sys_argv": sys.argv,
        "dir": os.getcwd(),
    }
    # The main module is imported there only when something of it is in the call.
    if b"__main__" in calls:
        main = sys.modules["__main__"]
        spec = getattr(main, "__spec__", None)
        if hasattr(main, "__file__"):
            preparation["main"] = spec and spec.name, os.path.abspath(str(main.__file__))
    return preparation


class Calls:
    """Calls of one function, one after the other in one job; the result is that of each."""

    def __init__(
        self,
        command: List[str],
        initializer: Initializer,
        function: Callable[..., Any],
        arguments: Sequence[Sequence[Any]],
        keywords: Dict[str, Any],
    ) -> None:
        self._command = command
        self._calls = initializer, function, arguments, keywords

    def write(self, call: pathlib.Path) -> List[str]:
        """Writes what the job needs into the directory of its call; the job's command."""
        calls = pickle.dumps(self._calls, pickle.HIGHEST_PROTOCOL)
        (call / "call").write_bytes(pickle.dumps((_preparation(calls), calls)))
        return [*self._command, str(call)]

    def result(self, call: pathlib.Path) -> List[Any]:
        """What came of a job that has ended."""
        for name, descriptor in (("out", 1), ("err", 2)):
            pass_on((call / name).read_bytes(), descriptor)
        try:
            how, what = pickle.loads((call / "result").read_bytes())
        except BaseException as raised:
            raise BrokenExecutor("the result of the call cannot be unpickled") from raised
        if how == "done":
            return what  # type: ignore[no-any-return]
        error, traceback = what
        if how == "broken":
            error = BrokenExecutor("the call could not begin: its cause says why")
        error.__cause__ = FarTraceback(traceback)
        raise error


class Call(Calls):
    """A single call."""

    def result(self, call: pathlib.Path) -> Any:
        return super().result(call)[0]
