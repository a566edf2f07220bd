"""Adds to pyproject.toml what follows from the headers. A source archive has it already."""
import pathlib
import runpy

import setuptools

HERE = pathlib.Path(__file__).resolve().parent
if (HERE.parent / "functions.py").exists():
    runpy.run_path(str(HERE / "operations.py"), run_name="__main__")
setuptools.setup()
