"""Parallel-each runs: one program, many jobs, and the files that they leave."""
import pathlib
from types import TracebackType
from typing import Iterable, Iterator, Mapping, Optional, Type

from ._grid import Path, start
from ._library import Library
from ._operations import Receiver


class Run:
    """A parallel-each run, which ends with its ``with``.

        with vantiro.Run("./worker", program_files=["worker"], jobs=16, outputs=["pi.txt"],
                         receiver=print) as run:
            for path in run:
                print(path.read_text())

    ``executable`` is a line for the shell; ``program_files`` and ``files`` are put beside it;
    ``parameters`` are in its environment, as ``VANTIRO_PARAM_<name>``; ``outputs`` are the names
    and patterns of the files to keep; ``receiver`` gets each line of the jobs' standard output as
    ``"<job>:<line>"``, in the thread that executes the run.

    ``run.handle`` is for those functions ``peach_...`` of ``run.grid`` that have no argument here.
    """

    def __init__(
        self,
        executable: str,
        *,
        name: str = "",
        jobs: int = 1,
        program_files: Iterable[Path] = (),
        files: Iterable[Path] = (),
        parameters: Mapping[str, object] = {},
        outputs: Iterable[str] = (),
        state_directory: Optional[Path] = None,
        receiver: Receiver = None,
        grid: Optional[Library] = None,
    ) -> None:
        self.grid = grid or start()
        self._is_executed = False
        self.handle = run = self.grid.check(self.grid.peach_handle())
        statuses = [
            self.grid.peach_setExecutable(run, executable),
            self.grid.peach_setName(run, name),
            self.grid.peach_setJobs(run, jobs),
            *(self.grid.peach_addExeFile(run, file, None, None, None) for file in program_files),
            *(self.grid.peach_addParamFile(run, file) for file in files),
            *(self.grid.peach_putProjectParam(run, key, str(parameters[key])) for key in parameters),
            *(self.grid.peach_addOutputFile(run, output) for output in outputs),
        ]
        if state_directory is None:
            statuses.append(self.grid.peach_setRemove(run, True))
        else:
            statuses.append(self.grid.peach_setStateDir(run, state_directory))
        if receiver is not None:
            statuses.append(self.grid.peach_setIntermediateResultHandler(run, receiver))
        for status in statuses:
            self.grid.check(status)

    def execute(self) -> None:
        """Runs all jobs, unless they have been run already."""
        if not self._is_executed:
            self._is_executed = True
            self.grid.check(self.grid.peach_execute(self.handle))

    def __iter__(self) -> Iterator[pathlib.Path]:
        """The files that the jobs left, after the run was executed."""
        self.execute()
        while True:
            path = self.grid.text(self.grid.peach_nextFile, self.handle)
            if not path:
                return
            yield pathlib.Path(path)

    def __enter__(self) -> "Run":
        return self

    def __exit__(
        self,
        exc_type: Optional[Type[BaseException]],
        exc_val: Optional[BaseException],
        exc_tb: Optional[TracebackType],
    ) -> None:
        self.grid.check(self.grid.peach_done(self.handle))

