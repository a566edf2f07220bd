"""Runs the benchmarks of a build, prints one table, and writes it as JSON: see scripts/bench."""
import argparse
import json
import os
import re
import resource
import statistics
import subprocess
import sys
import tempfile
import time

parser = argparse.ArgumentParser()
parser.add_argument("build")
parser.add_argument("results")
parser.add_argument("--runtime", required=True)
parser.add_argument("--quick", action="store_true")
parser.add_argument("--jobs", default="")
parser.add_argument("--only", default="calls,start,size,alternatives,grid")
options = parser.parse_args()
root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
bench = os.path.join(options.build, "bench")
rows = []


def output(*command, **environment):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True,
                          env={**os.environ, **environment}).stdout


def show(row):
    rows.append(row)
    unit = row.get("unit", "ns")
    quartiles = f"{row['low']:8.3f} {row['high']:7.3f}" if "low" in row else ""
    ratio = f"{row['ratio']:8.3f}" if "ratio" in row else ""
    theirs = f"{row['theirs']:13,.1f}" if "theirs" in row else f"{'':13}"
    print(f"{row['set']:9} {row['name']:34} {row['ours']:13,.1f} {theirs} {unit:9}{ratio}{quartiles}",
          flush=True)


def show_lines(text):
    for line in text.splitlines():
        show(json.loads(line))


def show_pairs(kind, name, pairs, unit, **more):
    ratios = [a / b for a, b in pairs]
    low, middle, high = statistics.quantiles(ratios, n=4) if len(ratios) > 1 else 3 * ratios
    show({**more, "set": kind, "name": name, "unit": unit, "ratio": middle, "low": low, "high": high,
          "pairs": len(pairs), "ours": statistics.median(a for a, _ in pairs),
          "theirs": statistics.median(b for _, b in pairs)})


def calls():
    for kind in ("null", "real"):
        show_lines(output(f"{bench}/calls", kind, "0.1" if options.quick else "1.5",
                          LD_LIBRARY_PATH=f"{bench}/{kind}"))


def start_once(*command):
    """Milliseconds as the program says, and of processor time."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    words = [float(word) for word in output(*command).split()]
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return words + [1000 * (after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime)]


def start():
    library = [f"{bench}/start", "library", f"{bench}/real/libvantiro.so.1"]
    by_hand = [f"{bench}/start", "by_hand", options.runtime, f"{bench}/real"]
    runs = [[start_once(*command) for command in (library, by_hand, by_hand)]
            for _ in range(5 if options.quick else 31)]
    # On a busy machine the processor time tells more than the clock.
    for column, name in ((1, "vantiro_init"), (2, "vantiro_init, processor time")):
        show_pairs("start", name, [(ours[column], hand[column]) for ours, hand, _ in runs], "ms")
        show_pairs("start", f"{name} (noise)",
                   [(again[column], hand[column]) for _, hand, again in runs], "ms")
    loads = [ours[0] for ours, _, _ in runs]
    show({"set": "load", "name": "dlopen to the first call", "unit": "us",
          "ours": 1000 * statistics.median(loads)})
    relocations = output("readelf", "-rW", f"{options.build}/libvantiro.so")
    show({"set": "load", "name": "relocations", "unit": "",
          "ours": len(re.findall(r"^[0-9a-f]{8}", relocations, re.M))})


def size():
    with tempfile.NamedTemporaryFile() as stripped:
        output("strip", "-o", stripped.name, f"{options.build}/libvantiro.so")
        show({"set": "size", "name": "stripped library", "unit": "bytes",
              "ours": os.path.getsize(stripped.name)})
        text = re.search(r"^\.text +(\d+)", output("size", "-A", stripped.name), re.M)
        show({"set": "size", "name": "its text section", "unit": "bytes", "ours": int(text[1])})


def alternatives():
    script = os.path.join(root, "bench", "alternatives.py")
    python = {"PYTHONPATH": os.path.join(root, "clients", "python")}
    place = f"{bench}/real"
    show_lines(output(sys.executable, script, place, options.runtime,
                      "0.2" if options.quick else "1.5", **python))

    def once(way):
        return 1000 * float(output(sys.executable, script, "start", way, place, options.runtime,
                                   **python))

    pairs = [(once("vantiro"), once("jpype")) for _ in range(5 if options.quick else 21)]
    show_pairs("jpype", "start", pairs, "ms")


def at_rest(measure):
    """On a disk at rest: for some seconds a file system does not use again what was deleted, and
    takes longer to find room for new files."""
    if not options.quick:
        time.sleep(6)
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as directory:
        return measure(directory)


def ms_a_job(jobs, command):
    def measure(directory):
        begin = time.perf_counter()
        subprocess.run(["sh", "-c", f"seq {jobs} | {command}"], check=True, cwd=directory,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return 1000 * (time.perf_counter() - begin) / jobs

    return at_rest(measure)


def by_the_grid(kind, jobs, at_once):
    """Milliseconds for a job by what was done, and the memory that the program had at most."""
    steps = at_rest(lambda home: json.loads(
        output(f"{bench}/grid", kind, str(jobs), str(at_once), home)))
    return {name: 1000 * figure / jobs for name, figure in steps.items() if name != "memory"}, \
        steps["memory"]


def grid():
    at_once = os.cpu_count()
    sizes = [int(n) for n in options.jobs.split(",") if n] or (
        [100, 500] if options.quick else [500, 2000, 10000])
    for jobs in sizes:
        pairs = {"project": [], "peach": []}
        running = {"project": [], "peach": []}
        memory = {}
        xargs = []
        for _ in range(1 if options.quick else max(1, min(5, 10000 // jobs))):
            xargs.append(ms_a_job(jobs, f"xargs -n 1 -P {at_once} echo"))
            parallel = ms_a_job(jobs, f"parallel -j {at_once} --results all echo")
            for kind in pairs:
                steps, memory[kind] = by_the_grid(kind, jobs, at_once)
                # Everything counts, from describing to downloading.
                pairs[kind].append((sum(steps.values()), parallel))
                running[kind].append(steps["running"])
        for kind in pairs:
            show_pairs(kind, f"{jobs} jobs", pairs[kind], "ms a job", jobs=jobs,
                       running=statistics.median(running[kind]), memory=memory[kind],
                       xargs=statistics.median(xargs))
            print(f"{'':10}running {1000 / statistics.median(running[kind]):.0f} jobs a second, "
                  f"peak memory {memory[kind]} MB; xargs {1000 / statistics.median(xargs):.0f} "
                  "jobs a second", flush=True)


print(f"{'set':9} {'what':34} {'ours':>13} {'theirs':>13} {'unit':9}{'ratio':>8} quartiles")
for part in options.only.split(","):
    # Debian's JPype is for the machine's own Python.
    if part != "alternatives" or options.build.endswith("/native"):
        globals()[part]()
with open(options.results, "w") as file:
    json.dump({"load average": os.getloadavg(), "processors": os.cpu_count(),
               "date": time.strftime("%Y-%m-%d"), "rows": rows}, file, indent=1)
