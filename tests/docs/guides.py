"""Compiles and runs the programs of a page, and the examples in the headers.

guides.py PROJECT BUILD CC CXX FLAGS PYTHON PAGE     each program of the page prints what stands behind
                                                     it, or behind the one before
guides.py PROJECT BUILD CC CXX FLAGS PYTHON headers  the examples in the headers compile
"""
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

project, build = map(pathlib.Path, sys.argv[1:3])
cc, cxx, flags, python, what = *sys.argv[3:5], *map(shlex.split, sys.argv[5:7]), sys.argv[7]
BLOCK = re.compile(r"<!-- (file: (?P<name>[^ ;]+)(; settings: (?P<settings>\S+))?|prints) -->\n```.*\n"
                   r"(?P<text>(?s:.*?))^```$", re.M)
# What the examples take for granted; each declares the rest itself.
AROUND = """#include <limits.h>
#include <stdio.h>
#include <vantiro.h>
%s
int example(int session, int project, int run) {
  (void)session, (void)project, (void)run;
  {
%s
  }
  return 0;
}
"""
scratch = tempfile.TemporaryDirectory()
here = pathlib.Path(scratch.name)
faults = []


def run(command, **more):
    done = subprocess.run(command, cwd=here, text=True, capture_output=True, timeout=120, **more)
    if done.returncode:
        raise SystemExit(f"FAILED: {command}\n{done.stdout}{done.stderr}")
    return done.stdout


def ready(name):
    """Compiles a program when it is to be; the command that runs it, none for what is no program."""
    source, kind = here / name, pathlib.Path(name).suffix
    strict = ["-Wall", "-Wextra", "-Werror", *flags, f"-I{project}/include"]
    linked = [f"-L{build}", "-lvantiro", f"-Wl,-rpath,{build}", "-o", source.with_suffix(kind + ".out")]
    if kind == ".c":
        run([cc, "-std=gnu99", *strict, source, *linked])
    elif kind == ".cpp":
        run([cxx, "-std=c++17", *strict, f"-I{project}/clients/cpp", source, *linked])
    elif kind == ".py":
        return [*python, str(source)]
    else:
        return None
    return [str(linked[-1])]


def guide():
    # Programs that name no home of their own have the test's.
    (here / "vantiro.properties").write_text("grid.home = home\n")
    page = (project / what).read_text()
    # The first run has what the others use, too.
    for block in BLOCK.finditer((project / "docs/guides/first-run.md").read_text() + page):
        if block["name"]:
            (here / block["name"]).write_text(block["text"])
    blocks = list(BLOCK.finditer(page))
    programs, expected = 0, None
    for block, following in zip(blocks, blocks[1:] + [None]):
        command = block["name"] and ready(block["name"])
        if not command:
            continue
        if following and not following["name"]:
            expected = following["text"]
        variables = dict(os.environ, PYTHONPATH=str(project / "clients/python"),
                         VANTIRO_LIBRARY=str(build / "libvantiro.so"))
        if block["settings"]:
            variables["VANTIRO_SETTINGS"] = block["settings"]
        printed = run(command, env=variables)
        programs += 1
        if printed != expected:
            faults.append(f"{block['name']} of {what} prints\n{printed}and not\n{expected}")
    if programs < 3:
        faults.append(f"{what} has {programs} programs only")


def headers():
    found = 0
    for header in sorted((project / "include").rglob("*.h")):
        for code in re.findall(r"@code\n(.*?)@endcode", header.read_text(), re.S):
            code = re.sub(r"(?m)^ \* ?", "", code)
            outside, _, inside = ("" if code.startswith("static") else "\n\n").join(
                ("", code)).partition("\n\n")
            (here / "example.c").write_text(AROUND % (outside, inside))
            run([cc, "-std=gnu99", "-Wall", "-Werror", "-Wno-unused", *flags,
                 f"-I{project}/include", "-fsyntax-only", "example.c"])
            found += 1
    if found < 12:
        faults.append(f"only {found} examples were found")


headers() if what == "headers" else guide()
for fault in faults:
    print("FAILED:", fault)
sys.exit(bool(faults))
