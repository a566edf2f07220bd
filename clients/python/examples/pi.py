#!/usr/bin/env python3
"""Estimates pi with jobs that run at the same time: a parallel-each run in Python.

    pi.py [SAMPLES]    SAMPLES is the number of random points that each of the 16 jobs draws
"""
import argparse
import pathlib
import tempfile

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
    """Counts the jobs that are done."""

    def __init__(self) -> None:
        self._done = 0

    def take(self, result: str) -> None:
        self._done += 1
        print(f"job {result.split(':')[0]} done, {self._done} of {JOBS}", flush=True)


def estimate(directory: pathlib.Path, samples: int) -> None:
    grid = vantiro.start(home=directory / "grid")
    worker = directory / "pi_worker"
    worker.write_text(WORKER)
    with vantiro.Run("./pi_worker", name="pi", jobs=JOBS, program_files=[worker],
                     parameters={"samples": samples}, outputs=["pi.txt"],
                     receiver=Progress().take) as run:
        counts = [[int(word) for word in path.read_text().split()] for path in run]
    inside, drawn = map(sum, zip(*counts))
    bits = grid.text(grid.getJavaSystemProperty, "sun.arch.data.model")
    version = grid.text(grid.getJavaSystemProperty, "java.version")
    print(f"pi is about {4 * inside / drawn:.6f}, from {drawn} samples, on {bits}-bit Java {version}")


def main() -> None:
    parser = argparse.ArgumentParser(description="Estimates pi with 16 jobs on the local grid.")
    parser.add_argument("samples", nargs="?", type=int, default=1000000, help="points of each job")
    samples = parser.parse_args().samples
    if samples < 1:
        parser.error("SAMPLES must be at least 1")
    with tempfile.TemporaryDirectory(prefix="pi-") as directory:
        estimate(pathlib.Path(directory), samples)


if __name__ == "__main__":
    main()
