#!/usr/bin/env python3
"""1,000 calls of a Python function through the client's Executor, beside a ProcessPoolExecutor.

    PYTHONPATH=clients/python VANTIRO_LIBRARY=build/native/libvantiro.so bench/executor.py [PAIRS]

Run it by `scripts/cluster run env VANTIRO_SETTINGS=java/slurm.properties ...` for Slurm. Each line has
the seconds of both, in turn, and the median of their ratios; then the milliseconds of processor time
for a call, which a busy machine changes less.
"""
import concurrent.futures
import os
import resource
import statistics
import sys
import time

import vantiro

CALLS = 1000
ROWS = (0, 1), (0, 100), (200000, 1), (200000, 20)  # squares, chunksize


def work(squares):
    return sum(number * number for number in range(squares))


def processor_time():
    usages = map(resource.getrusage, (resource.RUSAGE_SELF, resource.RUSAGE_CHILDREN))
    return sum(usage.ru_utime + usage.ru_stime for usage in usages)


def measure(make, squares, chunksize):
    """Seconds, and seconds of processor time."""
    begin, processor_begin = time.perf_counter(), processor_time()
    with make() as pool:
        results = list(pool.map(work, [squares] * CALLS, chunksize=chunksize))
        seconds = time.perf_counter() - begin
        project = getattr(pool, "_project", None)
        # Its jobs are not this program's children.
        of_jobs = vantiro.start().getUsedCpuTime(project) / 1000 if project else 0
    spent = processor_time() - processor_begin + of_jobs
    assert results == [work(squares)] * CALLS
    return seconds, spent


def main():
    pairs = int(sys.argv[1]) if len(sys.argv) > 1 else 3
    vantiro.start()
    print("squares chunk   pool s vantiro s  ratio   pool ms vantiro ms of processor time a call")
    for squares, chunksize in ROWS:
        runs = [(measure(lambda: concurrent.futures.ProcessPoolExecutor(os.cpu_count()), squares,
                         chunksize), measure(vantiro.Executor, squares, chunksize))
                for _ in range(pairs)]
        pool, ours = [statistics.median(times) for times in zip(*((a[0], b[0]) for a, b in runs))]
        spent = [1000 / CALLS * statistics.median(times)
                 for times in zip(*((a[1], b[1]) for a, b in runs))]
        ratio = statistics.median(b[0] / a[0] for a, b in runs)
        print(f"{squares:7} {chunksize:5} {pool:8.2f} {ours:9.2f} {ratio:6.2f} "
              f"{spent[0]:9.2f} {spent[1]:10.2f}", flush=True)


if __name__ == "__main__":
    main()
