"""The other side of Executor: a job runs a copy of this file, and makes one call of a function.

    python3 job.py CALL

CALL is a directory with the file ``call``, which is the call, pickled; what comes of it is the file
``result``. Nothing else of the client is needed where the job runs, and nothing is imported at first
that not every call needs.
"""
import os
import pickle
import sys

TYPE_CHECKING = False  # to import typing takes a while
if TYPE_CHECKING:
    from typing import Any, Dict, Optional, Tuple


def prepare(preparation: "Dict[str, Any]") -> None:
    """Makes this process like the one that submitted the call."""
    sys.path[:] = preparation["sys_path"]
    sys.argv[:] = preparation["sys_argv"]
    try:
        os.chdir(preparation["dir"])
    except OSError:
        pass  # it need not be there on this machine
    if "main" in preparation:
        import_main(*preparation["main"])


def import_main(name: "Optional[str]", path: str) -> None:
    """Imports the main module under the name that it has in a process of a ProcessPoolExecutor."""
    main: "Any" = type(sys)("__mp_main__")
    sys.modules["__main__"] = sys.modules["__mp_main__"] = main
    main.vantiro_is_importing = True
    if name is None:
        main.__file__ = path
        with open(path, "rb") as file:
            exec(compile(file.read(), path, "exec"), vars(main))
    else:
        import runpy

        vars(main).update(runpy.run_module(name, run_name="__mp_main__", alter_sys=True))
        sys.modules["__main__"] = sys.modules["__mp_main__"] = main
    del main.vantiro_is_importing


def failure(error: BaseException) -> "Tuple[BaseException, str]":
    """An exception and the text of its traceback, which cannot be pickled."""
    import traceback

    text = "".join(traceback.format_exception(type(error), error, error.__traceback__))
    try:
        pickle.loads(pickle.dumps(error))
    except Exception:
        error = RuntimeError(f"{type(error).__name__}: {error}")
    return error, text


def make(call: bytes) -> bytes:
    """Pickles how the call ended: a word, and what belongs to it."""
    try:
        preparation, rest = pickle.loads(call)
        prepare(preparation)
        initializer, function, arguments, keywords = pickle.loads(rest)
        if initializer:
            initializer[0](*initializer[1])
    except BaseException as error:
        return pickle.dumps(("broken", failure(error)))
    try:
        results = [function(*each, **keywords) for each in arguments]
        return pickle.dumps(("done", results), pickle.HIGHEST_PROTOCOL)
    except BaseException as error:
        return pickle.dumps(("failed", failure(error)))


def main() -> None:
    call = sys.argv[1]
    try:
        os.rename(call + "/call", call + "/taken")
    except FileNotFoundError:
        # The grid may have lost a job that had taken it, and run it again.
        if not os.path.exists(call + "/taken"):
            return  # cancelled
    for descriptor, name in ((1, "/out"), (2, "/err")):
        output = os.open(call + name, os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o600)
        os.dup2(output, descriptor)
        os.close(output)
    with open(call + "/taken", "rb") as file:
        result = make(file.read())
    with open(call + "/part", "wb") as part:
        part.write(result)
    os.rename(call + "/part", call + "/result")


if __name__ == "__main__":
    main()
