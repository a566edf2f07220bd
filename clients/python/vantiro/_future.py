"""The future of a job."""
import concurrent.futures
import os
import pathlib
import shutil
from typing import TYPE_CHECKING, Any, List, Optional, Protocol

if TYPE_CHECKING:
    _Base = concurrent.futures.Future[Any]
else:
    _Base = concurrent.futures.Future


class Work(Protocol):
    """What a job does. Its files are in a directory of its own, in which there is a file ``call``
    until the job takes that away as the first thing it does.
    """

    def write(self, call: pathlib.Path) -> List[str]: ...

    def result(self, call: pathlib.Path) -> Any: ...


class Future(_Base):
    """A call that waits to be a job, that is one, or has been one.

    Whoever renames the file of the call, to ``taken`` or to ``cancelled``, has it.
    """

    def __init__(self, work: Work, call: pathlib.Path) -> None:
        super().__init__()
        self.work: Optional[Work] = work
        self.call = call
        self.command: List[str] = []

    def cancel(self) -> bool:
        if not self.done():
            try:
                os.rename(self.call / "call", self.call / "cancelled")
            except FileNotFoundError:
                return False
            super().cancel()
            self.set_running_or_notify_cancel()
        return self.cancelled()

    def running(self) -> bool:
        return not self.done() and not (self.call / "call").exists()

    def is_without_result(self) -> bool:
        """Of a job that has ended."""
        return not (self.call / "result").exists() and not (self.call / "cancelled").exists()

    def collect(self, failure: str) -> None:
        """Takes in what the job left; ``failure`` is what the grid had to say, if it left nothing."""
        work, self.work = self.work, None
        result, error = None, None
        try:
            if failure:
                raise concurrent.futures.BrokenExecutor(failure)
            if work is not None and not self.done():
                result = work.result(self.call)
        except BaseException as raised:
            # Where it was raised is its cause; here it holds what nobody needs.
            error = raised.with_traceback(None)
        is_cancelled = (self.call / "cancelled").exists()
        shutil.rmtree(self.call, ignore_errors=True)
        # Whoever waits may go on at once, and finds nothing of the call any more.
        if error is not None and not is_cancelled:
            self.set_exception(error)
        elif not is_cancelled:
            self.set_result(result)
