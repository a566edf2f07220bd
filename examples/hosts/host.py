"""A run from Python, with the client of clients/python, which is ctypes alone."""
import pathlib

import vantiro

grid = vantiro.Library()
grid.check(grid.init())
run = grid.check(grid.peach_handle())
grid.check(grid.peach_setJobs(run, 5))
grid.check(grid.peach_setExecutable(run, "echo $((VANTIRO_JOB * VANTIRO_JOB)) | tee square"))
grid.check(grid.peach_addOutputFile(run, "square"))
grid.check(grid.peach_setIntermediateResultHandler(run, lambda line: print("line", line)))
grid.check(grid.peach_execute(run))
while path := grid.text(grid.peach_nextFile, run):
    print("file", pathlib.Path(path).read_text(), end="")
try:
    grid.check(grid.setLogLevel("loud"))
except vantiro.Error as error:
    print(f"failed: {error.text} ({error.status})")
grid.check(grid.peach_done(run))
grid.check(grid.unload(True))
