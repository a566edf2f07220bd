"""Commands as jobs, with what ``subprocess.run`` offers."""
import os
import pathlib
import subprocess
from typing import Any, Dict, List, Mapping, Optional, Sequence, Union

Arguments = Union[str, bytes, "os.PathLike[str]", Sequence[Union[str, bytes, "os.PathLike[str]"]]]

# Takes a call, so that it is not cancelled any more, and makes it; again, if the grid gives a job that
# it lost to another machine. The status of a program that a
# signal ended is 128 and the signal, as shells have it; what this shell says of that goes elsewhere.
SCRIPT = """\
call=$1 directory=$2
shift 2
mv "$call/call" "$call/taken" 2>/dev/null || [ -e "$call/taken" ] || exit 0
cd "$directory" || exit
if [ -e "$call/both" ]
then (exec "$@") <"$call/in" >"$call/out" 2>&1
else (exec "$@") <"$call/in" >"$call/out" 2>"$call/err"
fi
echo $? >"$call/result"
"""
SCRIPT_NAME = "command.sh"
_MOST_SIGNALS = 64


class Command:
    """What one job is to run, and how its results come back."""

    def __init__(
        self,
        args: Arguments,
        *,
        input: Union[str, bytes, None] = None,
        stdin: Any = None,
        stdout: Any = None,
        stderr: Any = None,
        capture_output: bool = False,
        shell: bool = False,
        cwd: Union[str, "os.PathLike[str]", None] = None,
        check: bool = False,
        env: Optional[Mapping[str, str]] = None,
        encoding: Optional[str] = None,
        errors: Optional[str] = None,
        text: Optional[bool] = None,
        universal_newlines: Optional[bool] = None,
    ) -> None:
        if capture_output:
            if stdout is not None or stderr is not None:
                raise ValueError("stdout and stderr may not be used with capture_output")
            stdout = stderr = subprocess.PIPE
        if input is not None and stdin is not None:
            raise ValueError("stdin and input may not both be used")
        if stdin not in (None, subprocess.DEVNULL):
            raise ValueError("a job reads from input or from nothing, not from a file of this program")
        if stdout == subprocess.STDOUT:
            raise ValueError("STDOUT can only be used for stderr")
        self.args = args
        words = [args] if isinstance(args, (str, bytes, os.PathLike)) else list(args)
        self._words = [os.fsdecode(word) for word in words]
        if not self._words:
            raise ValueError("a job needs a command")
        if shell:
            self._words = ["/bin/sh", "-c", *self._words]
        if env is not None:
            self._words = ["env", "-i", *(f"{name}={env[name]}" for name in env), *self._words]
        self._directory = os.path.abspath(cwd or os.curdir)
        self._input = input  # str or bytes, whichever
        self._stdout, self._stderr = stdout, stderr
        self._check = check
        self._is_text = bool(text or encoding or errors or universal_newlines)
        self._coding: Dict[str, str] = {"encoding": encoding or "utf-8", "errors": errors or "strict"}

    def write(self, call: pathlib.Path) -> List[str]:
        """Writes what the job needs into the directory of its call; the job's command."""
        data = self._input or b""
        if isinstance(data, str):
            data = data.encode(**self._coding)
        (call / "in").write_bytes(data)
        if self._stderr == subprocess.STDOUT:
            (call / "both").touch()
        (call / "call").touch()
        script = str(call.parent / SCRIPT_NAME)
        return ["/bin/sh", script, str(call), self._directory, *self._words]

    def result(self, call: pathlib.Path) -> "subprocess.CompletedProcess[Any]":
        """What came of a job that has ended."""
        status = int((call / "result").read_text())
        if 128 < status <= 128 + _MOST_SIGNALS:
            status = 128 - status
        completed = subprocess.CompletedProcess(self.args, status, *self.outputs(call))
        if self._check:
            completed.check_returncode()
        return completed

    def outputs(self, call: pathlib.Path) -> List[Union[str, bytes, None]]:
        """Standard output and error until now; None for what goes elsewhere, which it does here."""
        return [self._output(call / "out", self._stdout, 1),
                self._output(call / "err", self._stderr, 2)]

    def _output(self, path: pathlib.Path, where: Any, descriptor: int) -> Union[str, bytes, None]:
        data = path.read_bytes() if path.exists() else b""
        if where == subprocess.PIPE:
            if not self._is_text:
                return data
            return data.decode(**self._coding).replace("\r\n", "\n").replace("\r", "\n")
        if where is None:
            pass_on(data, descriptor)
        elif where not in (subprocess.DEVNULL, subprocess.STDOUT):
            pass_on(data, where if isinstance(where, int) else where.fileno())
        return None


def pass_on(data: bytes, descriptor: int) -> None:
    """Writes what a job wrote."""
    while data:
        data = data[os.write(descriptor, data):]
