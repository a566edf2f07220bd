#!/usr/bin/env python3
"""Estimates pi with jobs that run at the same time: a parallel-each run in Python.

    pi.py [SAMPLES]    SAMPLES is the number of random points that each of the 16 jobs draws
"""
import argparse
import pathlib
import tempfile
import threading

import vantiro

JOBS = 16

# The job. It finds its number and the run's parameters in its environment.
WORKER = """#!/bin/sh
awk -v samples="$VANTIRO_PARAM_samples" -v job="$VANTIRO_JOB" 'BEGIN {
  srand(job)
  for (i = 1; i <= samples; ++i) { x = rand(); y = rand(); inside += x * x + y * y < 1 }
  print inside, samples > "pi.txt"
  print inside, samples
}'
"""


class Progress:
    """Counts the jobs that are done; several report at the same time."""

    def __init__(self) -> None:
        self._lock = threading.Lock()
        self._done = 0

    def take(self, result: str) -> None:
        with self._lock:
            self._done += 1
            print(f"job {result.split(':')[0]} done, {self._done} of {JOBS}", flush=True)


def estimate(grid: vantiro.Library, directory: pathlib.Path, samples: int) -> None:
    check, text = grid.check, grid.text
    home = directory / "grid"
    check(grid.initWithoutFile(home, None, None, None, 0, None, None, 0, 0, None, None))

    worker = directory / "pi_worker"
    worker.write_text(WORKER)
    run = check(grid.peach_handle())
    check(grid.peach_setName(run, "pi"))
    check(grid.peach_setStateDir(run, directory / "state"))
    check(grid.peach_setJobs(run, JOBS))
    check(grid.peach_addExeFile(run, worker, "pi_worker", "", ""))
    check(grid.peach_setExecutable(run, "./pi_worker"))
    check(grid.peach_putProjectParam(run, "samples", str(samples)))
    check(grid.peach_addOutputFile(run, "pi.txt"))
    check(grid.peach_setRemove(run, True))
    check(grid.peach_setIntermediateResultHandler(run, Progress().take))
    check(grid.peach_execute(run))

    inside = drawn = 0
    while path := text(grid.peach_nextFile, run):
        counts = pathlib.Path(path).read_text().split()
        inside += int(counts[0])
        drawn += int(counts[1])
    check(grid.peach_done(run))
    bits = text(grid.getJavaSystemProperty, "sun.arch.data.model")
    version = text(grid.getJavaSystemProperty, "java.version")
    print(f"pi is about {4 * inside / drawn:.6f}, from {drawn} samples, on {bits}-bit Java {version}")


def main() -> None:
    parser = argparse.ArgumentParser(description="Estimates pi with 16 jobs on the local grid.")
    parser.add_argument("samples", nargs="?", type=int, default=1000000, help="points of each job")
    samples = parser.parse_args().samples
    if samples < 1:
        parser.error("SAMPLES must be at least 1")
    with tempfile.TemporaryDirectory(prefix="pi-") as directory:
        estimate(vantiro.Library(), pathlib.Path(directory), samples)


if __name__ == "__main__":
    main()
