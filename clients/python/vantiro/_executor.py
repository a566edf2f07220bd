"""An executor of the standard library's kind, whose calls are jobs."""
import collections
import concurrent.futures
import itertools
import pathlib
import shutil
import subprocess
import sys
import threading
import weakref
from types import TracebackType
from typing import (Any, Callable, Deque, Dict, Iterable, Iterator, List, Mapping, Optional, Tuple,
                    Type, TypeVar)

from . import _job
from ._calls import Call, Calls
from ._commands import SCRIPT, SCRIPT_NAME, Arguments, Command
from ._future import Future, Work
from ._grid import create_project, start, streamed
from ._library import Library

_STOPPED = 4  # of getProjectStatus
_MILLISECONDS = 50  # for which a change that comes when nobody waits is not seen

_T = TypeVar("_T")


class _Chunk:
    """A function that :meth:`Executor.submit` is to call for all arguments of a list."""

    def __init__(self, function: Callable[..., Any]) -> None:
        self.function = function


class Executor(concurrent.futures.Executor):
    """Makes calls as jobs of the grid: a ``ProcessPoolExecutor`` for as many machines as there are.

        with vantiro.Executor() as pool:
            for root in pool.map(math.sqrt, range(1000), chunksize=100):
                print(root)

    Functions, arguments and results are pickled, so a function is one that can be imported, also
    from the main module if that is protected by ``if __name__ == "__main__"``. ``run`` of this
    package is no such function but a command, a job without Python:
    ``pool.submit(vantiro.run, ["sort", "names"], capture_output=True)``.

    What a call raises is raised by ``result()``, with the far traceback as its cause. A job that
    ended without an answer (killed, out of memory, its machine lost) raises ``BrokenExecutor``
    with the grid's words; the others go on. What calls print appears when they end. Ctrl-C in a
    ``with`` ends the jobs.

    ``max_workers`` is the most jobs that the grid is given at once, by default all; it has its own
    number of places. ``initializer(*initargs)`` is called before each job. ``parameters`` are those
    of the project, which a launcher may heed. ``python`` runs functions; where a job runs, it has to
    be of the same version. ``grid`` is a started library, by default that of :func:`vantiro.start`.
    """

    def __init__(
        self,
        max_workers: Optional[int] = None,
        *,
        initializer: Optional[Callable[..., object]] = None,
        initargs: Tuple[Any, ...] = (),
        name: str = "python",
        priority: int = 0,
        parameters: Mapping[str, object] = {},
        python: str = sys.executable,
        grid: Optional[Library] = None,
    ) -> None:
        if max_workers is not None and max_workers <= 0:
            raise ValueError("max_workers must be greater than 0")
        if initializer is not None and not callable(initializer):
            raise TypeError("initializer must be a callable")
        self._most = sys.maxsize if max_workers is None else max_workers
        self._initializer = initializer and (initializer, initargs)
        self._grid = grid or start()
        with self._grid.attachment():
            self._project = create_project(self._grid, name, priority, parameters)
            results = self._grid.text(self._grid.getResultDirectory, self._project)
        # Its jobs find it under the same path.
        self._directory = pathlib.Path(results).absolute() / "calls"
        self._remove = weakref.finalize(self, _remove, self._grid, self._project, self._directory)
        self._python = [python, str(self._directory / "job.py")]
        self._directory.mkdir(parents=True)
        shutil.copy(_job.__file__, self._python[1])
        (self._directory / SCRIPT_NAME).write_text(SCRIPT)

        self._numbers = itertools.count(1)
        self._lock = threading.RLock()
        self._waiting: Deque[Future] = collections.deque()
        self._jobs: Dict[int, Future] = {}  # of the grid, by their numbers
        self._collector: Optional[threading.Thread] = None
        self._streamed = 0  # results that were seen
        self._failed = 0  # jobs that were seen to have failed
        self._is_shut_down = False

    def submit(
        self, fn: Callable[..., _T], /, *args: Any, **kwargs: Any
    ) -> "concurrent.futures.Future[_T]":
        """Has ``fn(*args, **kwargs)`` called by a job."""
        if fn is run:
            return self._submit(Command(*args, **kwargs))
        if isinstance(fn, _Chunk):
            return self._submit(Calls(self._python, self._initializer, fn.function, *args, {}))
        return self._submit(Call(self._python, self._initializer, fn, [args], kwargs))

    def map(
        self,
        fn: Callable[..., _T],
        *iterables: Iterable[Any],
        timeout: Optional[float] = None,
        chunksize: int = 1,
    ) -> Iterator[_T]:
        """As the ``map`` of a ``ProcessPoolExecutor``; one job makes ``chunksize`` calls.

        A job starts a Python of its own, in some 20 ms: let it have more to do than that.
        """
        if chunksize < 1:
            raise ValueError("chunksize must be >= 1.")
        if fn is run or chunksize == 1:
            return super().map(fn, *iterables, timeout=timeout)
        arguments = zip(*iterables)
        chunks = iter(lambda: list(itertools.islice(arguments, chunksize)), [])
        lists: Iterator[List[_T]] = super().map(_Chunk(fn), chunks, timeout=timeout)  # type: ignore[arg-type]
        return itertools.chain.from_iterable(lists)

    def shutdown(self, wait: bool = True, *, cancel_futures: bool = False) -> None:
        """Takes no more calls; with ``wait`` it returns when all have ended."""
        with self._lock:
            self._is_shut_down = True
            collector = self._collector
            futures = [*self._waiting, *self._jobs.values()] if cancel_futures else []
        for future in futures:
            future.cancel()
        if collector is None:
            self._remove()
        elif wait:
            try:
                collector.join()
            except BaseException:
                self.kill()
                raise

    def kill(self) -> None:
        """Ends all jobs, and takes no more calls."""
        with self._lock:
            self._is_shut_down = True
            if not self._remove.alive:
                return
        with self._grid.attachment():
            self._grid.check(self._grid.stopProject(self._project))

    def __exit__(
        self,
        exc_type: Optional[Type[BaseException]],
        exc_val: Optional[BaseException],
        exc_tb: Optional[TracebackType],
    ) -> Optional[bool]:
        if exc_type is not None and not issubclass(exc_type, Exception):
            self.kill()
        return super().__exit__(exc_type, exc_val, exc_tb)

    def _submit(self, work: Work) -> Future:
        with self._lock, self._grid.attachment():
            if self._is_shut_down or not self._remove.alive:
                raise RuntimeError("cannot schedule new futures after shutdown")
            future = Future(work, self._directory / str(next(self._numbers)))
            future.call.mkdir()
            try:
                future.command = work.write(future.call)
            except Exception as error:  # what cannot be pickled
                future.set_exception(error)
                return future
            self._waiting.append(future)
            self._hand_over()
            if self._collector is None:
                self._collector = threading.Thread(target=self._collect, name="vantiro-results")
                self._collector.start()
            return future

    def _hand_over(self) -> None:
        """Gives the grid what it may have, under the lock."""
        while self._waiting and len(self._jobs) < self._most:
            future = self._waiting.popleft()
            if not future.done():
                try:
                    number = self._grid.check(self._grid.createJob(self._project, future.command))
                    self._jobs[number] = future
                except Exception as error:
                    future.collect(str(error))

    def _collect(self) -> None:
        """A thread for as long as there are calls that have not ended."""
        with self._grid.attachment():
            while self._is_busy():
                try:
                    if _program_was_interrupted():
                        self.kill()
                    if not self._take_ended():
                        self._grid.actionWait(_MILLISECONDS)
                except Exception as error:  # the project is gone, or the grid
                    self._give_up(str(error))

    def _is_busy(self) -> bool:
        with self._lock:
            futures = itertools.chain(self._waiting, self._jobs.values())
            if not all(future.done() for future in futures):
                return True
            self._collector = None
            if self._is_shut_down:
                self._remove()
            return False

    def _give_up(self, failure: str) -> None:
        with self._lock:
            futures = [*self._waiting, *self._jobs.values()]
            self._waiting.clear()
            self._jobs.clear()
        for future in futures:
            future.collect(failure)

    def _take_ended(self) -> bool:
        """Takes in the jobs that have ended since the last time; whether there were any."""
        grid, project = self._grid, self._project
        ended = [number for number, _ in streamed(grid, project, self._streamed)]
        self._streamed += len(ended)
        failed = int(grid.text(grid.getProjectStatistic, project, "failed"))
        if failed > self._failed or grid.getProjectStatus(project) == _STOPPED:
            # There may be some that could not even begin, and have left nothing.
            self._failed = failed
            with self._lock:
                numbers = list(self._jobs)
            ended += [number for number in numbers
                      if number not in ended and grid.isJobCompleted(project, number) == 1]
        for number in ended:
            self._take(number)
        with self._lock:
            self._hand_over()
        return bool(ended)

    def _take(self, number: int) -> None:
        with self._lock:
            future = self._jobs.pop(number, None)
        if future is not None:
            future.collect(self._why_ended(number) if future.is_without_result() else "")

    def _why_ended(self, number: int) -> str:
        """What the grid says of a job that left no answer."""
        grid = self._grid
        while grid.isJobCompleted(self._project, number) == 0:
            grid.actionWait(_MILLISECONDS)
        message = grid.text(grid.getLastErrorMessage)
        if f"job {number} of " in message:
            return message
        # Only the last failure is known.
        return f"job {number} ended without an answer; the last failure of the grid: {message}"


def _remove(grid: Library, project: int, directory: pathlib.Path) -> None:
    with grid.attachment():
        grid.removeProject(project)
    shutil.rmtree(directory, ignore_errors=True)


def _program_was_interrupted() -> bool:
    """Whether the main thread is gone by Ctrl-C, so that nobody waits for results."""
    return (not threading.main_thread().is_alive()
            and getattr(sys, "last_type", None) is KeyboardInterrupt)


def run(
    args: Arguments,
    *,
    timeout: Optional[float] = None,
    grid: Optional[Library] = None,
    **options: Any,
) -> "subprocess.CompletedProcess[Any]":
    """Runs a command as a job of the grid, and waits for it: ``subprocess.run`` elsewhere.

    ``options`` are those of ``subprocess.run``: ``input``, ``capture_output``, ``stdout``,
    ``stderr``, ``shell``, ``cwd``, ``check``, ``env``, ``text``, ``encoding`` and ``errors``; so are
    the result and the exceptions. Differently from there, output that is not captured appears when
    the job has ended, standard input is empty without ``input``, the time of ``timeout`` begins at
    the call, and a program that cannot be found is the shell's status 127.

    ``grid`` is a started library, by default that of :func:`start`.
    """
    with Executor(name="run", grid=grid) as pool:
        command = Command(args, **options)
        future = pool._submit(command)
        try:
            return future.result(timeout)  # type: ignore[no-any-return]
        except concurrent.futures.TimeoutError:
            output, error = command.outputs(future.call)
            pool.kill()
            assert timeout is not None
            raise subprocess.TimeoutExpired(args, timeout, output, error) from None
