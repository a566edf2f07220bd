"""The grid of this process, started when it is first needed, and the projects in it."""
import ctypes
import os
import sys
import threading
from typing import List, Mapping, Optional, Tuple, Union

from ._library import Error, Library

Path = Union[str, "os.PathLike[str]"]

_lock = threading.Lock()
_started: Optional[Library] = None


def start(
    settings: Optional[Path] = None, *, home: Optional[Path] = None, processors: int = 0
) -> Library:
    """Starts the grid of this process, and gives its library; once it is started, that alone.

    ``settings`` is a file of settings, such as ``slurm.properties`` which sends the jobs to a
    cluster. Without it the variable ``VANTIRO_SETTINGS`` names one, or ``vantiro.properties`` in
    the current directory is one. ``home`` and ``processors``, the number of jobs at once, are taken
    before those of the file.

    :func:`run`, :class:`Executor`, :class:`Project` and :class:`Run` call it by themselves.
    """
    global _started
    if hasattr(sys.modules["__main__"], "vantiro_is_importing"):
        raise RuntimeError("a job imports the main module, which is not to use the grid by that: put "
                           "what uses it below `if __name__ == \"__main__\":`")
    with _lock:
        if _started is not None:
            if settings is not None or home is not None or processors:
                raise RuntimeError("the grid of this process is started already, with its settings")
            return _started
        grid = Library()
        if home is None and not processors:
            status = grid.init() if settings is None else grid.initFile(settings)
        else:
            local = "vantiro.properties"
            if settings is None and "VANTIRO_SETTINGS" not in os.environ and os.path.exists(local):
                settings = local
            status = grid.initWithoutFile(home, None, None, None, processors, None, None, 0, 0,
                                          None, settings)
        try:
            grid.check(status)
        except Error as error:
            error.add_doctor()
            raise
        _started = grid
        return grid


def create_project(
    grid: Library, name: str, priority: int, parameters: Mapping[str, object]
) -> int:
    """A project that has been started, and shows results as its jobs end."""
    check = grid.check
    session = check(grid.open())
    values = [f"{key}={value}" for key, value in parameters.items()]
    project = check(grid.createProject(session, priority, name, values))
    check(grid.close(session))
    check(grid.setStreamResults(project, True))
    check(grid.startProject(project))
    return project


def streamed(grid: Library, project: int, known: int) -> List[Tuple[int, str]]:
    """The jobs that have ended and left a result, beyond so many, and the names of the results."""
    count = grid.check(grid.getStreamedResultFilesCount(project))
    names = [grid.text(grid.getStreamedResultFiles, project, ctypes.c_int(position))
             for position in range(known, count)]
    return [(int("".join(filter(str.isdigit, name))), name) for name in names]
