"""Projects: jobs that are created one by one, and give their results as they end."""
import os
import pathlib
import zipfile
from types import TracebackType
from typing import Iterator, Mapping, NamedTuple, Optional, Sequence, Type, Union

from ._grid import create_project, start, streamed
from ._library import Library
from ._strings import Text

_MILLISECONDS = 50


class Result(NamedTuple):
    """What a job left."""

    job: int
    archive: pathlib.Path

    def read(self, name: str = "stdout") -> bytes:
        """The contents of one of its files."""
        with zipfile.ZipFile(self.archive) as archive:
            return archive.read(name)


class Project:
    """A project, which is removed at the end of its ``with``; jobs that still run are ended.

        with vantiro.Project("words", parameters={"language": "en"}) as project:
            for path in paths:
                project.add(["wc", "-w", path])
            for result in project:
                print(result.job, result.read().decode())

    ``project.handle`` is for the functions of ``project.grid`` that take a project.
    """

    def __init__(
        self,
        name: str = "",
        *,
        priority: int = 0,
        parameters: Mapping[str, object] = {},
        grid: Optional[Library] = None,
    ) -> None:
        self.grid = grid or start()
        self.handle = create_project(self.grid, name, priority, parameters)

    def add(self, command: Union[str, Sequence[Text]]) -> int:
        """Adds a job, a line for the shell or a program with its arguments, and gives its number."""
        if isinstance(command, (str, bytes, os.PathLike)):
            command = ["/bin/sh", "-c", command]
        return self.grid.check(self.grid.createJob(self.handle, command))

    def __iter__(self) -> Iterator[Result]:
        """The results as the jobs end. No more jobs can be added.

        When all have ended, and one of them has failed, :class:`Error` is raised.
        """
        grid, project = self.grid, self.handle
        grid.check(grid.markAllJobsCreated(project))
        known = 0
        is_last = False
        while not is_last:
            is_last = grid.check(grid.isCompleted(project)) == 1
            directory = pathlib.Path(grid.text(grid.getResultDirectory, project))
            ended = streamed(grid, project, known)
            known += len(ended)
            for job, name in ended:
                yield Result(job, directory / name)
            if not ended and not is_last:
                grid.actionWait(_MILLISECONDS)
        grid.check(grid.waitCompletion(project))

    def __enter__(self) -> "Project":
        return self

    def __exit__(
        self,
        exc_type: Optional[Type[BaseException]],
        exc_val: Optional[BaseException],
        exc_tb: Optional[TracebackType],
    ) -> None:
        self.grid.check(self.grid.removeProject(self.handle))
