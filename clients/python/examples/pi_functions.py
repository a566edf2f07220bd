#!/usr/bin/env python3
"""Estimates pi with functions on all machines of the grid, in place of all processors of one.

    pi_functions.py [SAMPLES]
"""
import random
import sys

from vantiro import Executor  # on one machine: from concurrent.futures import ProcessPoolExecutor as Executor

JOBS = 16


def inside(job: int, samples: int) -> int:
    """How many of so many random points lie in the circle."""
    draw = random.Random(job).random
    return sum(draw() ** 2 + draw() ** 2 < 1 for _ in range(samples))


def main() -> None:
    samples = int(sys.argv[1]) if len(sys.argv) > 1 else 1000000
    with Executor() as pool:
        total = sum(pool.map(inside, range(JOBS), [samples] * JOBS))
    print(f"pi is about {4 * total / (samples * JOBS):.6f}")


if __name__ == "__main__":
    main()
