#!/usr/bin/env python3
"""Compares what the headers declare, what the clients know, what was promised to programs and what
the library exports, and looks at how the library is bound to the system.

exports.py PROJECT LIBRARY [ELF-CLASS MACHINE]
"""
import pathlib
import re
import subprocess
import sys

# Nothing that a client passes on.
FOR_C_ALONE = {"debug", "debug2", "findJavaInPath", "getJNIEnv", "getJavaVM", "getPlugin",
               "getPluginClass", "peach_intermediate_callback",
               "peach_intermediate_callback_fun"}

project, library, kind = pathlib.Path(sys.argv[1]), sys.argv[2], sys.argv[3:]
faults = []


def run(*command):
    return subprocess.run(command, check=True, text=True, capture_output=True).stdout


def compare(what, names, others):
    for name in sorted(names ^ others):
        faults.append(f"{what}: {name} is {'missing' if name in others else 'too much'}")


def declared():
    names = set()
    for header in (project / "include").rglob("*.h"):
        text = re.sub(r"/\*.*?\*/|^#.*?$", "", header.read_text(), flags=re.S | re.M)
        for declaration in re.findall(r"VANTIRO_API([^;]*);", text):
            name = re.match(r"[\s\w*]*\(\*(\w+)\)|[\s\w*]*?(\w+)(?:\(|$)", declaration)
            names.add(name[1] or name[2])
    return names


def known_to_clients():
    sys.path.insert(0, str(project / "clients"))
    import functions

    return {function.name for function in functions.read(project / "include/vantiro")}


def for_clients(names):
    """Without ``vantiro_``, the forms for C of functions that take lists, and what is C's alone."""
    names = {name[8:] for name in names if name.startswith("vantiro_")} - FOR_C_ALONE
    return {name for name in names if not (name.endswith("3") or name[:-1] + "3" in names)}


def promised():
    """The SONAME and the symbols that programs were linked with."""
    soname, *symbols = (project / "cmake/debian/libvantiro1.symbols").read_text().splitlines()
    return soname.split()[0], {line.split("@")[0].strip() for line in symbols}


def exported():
    lines = run("nm", "-D", "--defined-only", library).splitlines()
    return {line.split()[-1] for line in lines}


header = declared()
if len(header) < 150:
    faults.append(f"only {len(header)} declarations were found in the headers")
compare("the library against the headers", exported(), header)
compare("what the clients know against the headers", known_to_clients(), for_clients(header))
soname, symbols = promised()
compare("the library against the symbols of earlier releases", exported() & symbols, symbols)

dynamic = run("readelf", "--dynamic", "--wide", library)
if f"soname: [{soname}]" not in dynamic:
    faults.append(f"the SONAME is not {soname}")
for version in re.findall(r"Name: GLIBC_2\.(\d+)", run("readelf", "--version-info", "--wide", library)):
    if int(version) > 34:
        faults.append(f"the library needs version 2.{version} of the C library")
for needed in re.findall(r"NEEDED.*\[(.*)\]", dynamic):
    if not re.match(r"(libc\.so|ld-linux|lib(a|ub|t)san\.so)", needed):
        faults.append(f"the library needs {needed}")
if re.search(r"TEXTREL|RPATH|RUNPATH", dynamic):
    faults.append("the library has text relocations or a search path of its own")

if re.search(r" getenv(@|$)", run("nm", "-D", "--undefined-only", library), re.M):
    faults.append("the library trusts the environment of a set-user-ID program")

elf = run("readelf", "--file-header", library)
for word in kind:
    if word not in elf:
        faults.append(f"the library is not of the kind {word}")

print("\n".join(faults))
sys.exit(bool(faults))
