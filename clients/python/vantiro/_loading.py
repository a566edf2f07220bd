"""Finding and loading the shared library."""
import ctypes
import os
import struct
from typing import Optional, Union

_BITS = struct.calcsize("P") * 8


class LoadError(ImportError):
    """The library cannot be loaded; the text names the cause and the cure."""


def _word_size_of(path: str) -> Optional[int]:
    if not os.path.isfile(path):
        return None
    try:
        with open(path, "rb") as file:
            return {b"\x7fELF\x01": 32, b"\x7fELF\x02": 64}.get(file.read(5))
    except OSError:
        return None


def load(path: "Union[str, os.PathLike[str], None]") -> ctypes.CDLL:
    """Loads the library named here, or by VANTIRO_LIBRARY, or else as the loader finds it."""
    name = os.fspath(path or os.environ.get("VANTIRO_LIBRARY") or "libvantiro.so.1")
    if os.path.exists(name):
        # What lies beside the library must be found after a change of directory too.
        name = os.path.abspath(name)
    try:
        library = ctypes.CDLL(name)
        library.vantiro_getJavaVM.restype = ctypes.c_void_p
        library.vantiro_getJNIEnv.restype = ctypes.c_void_p
        return library
    except (OSError, AttributeError) as error:
        other = _word_size_of(name)
        if other in (None, _BITS):
            cause = f"this {_BITS}-bit Python cannot load libvantiro ({error})"
            cure = f"name a {_BITS}-bit libvantiro.so"
        else:
            cause = f"{name} is a {other}-bit library, and this Python is a {_BITS}-bit program"
            cure = f"run a {other}-bit Python, or name a {_BITS}-bit libvantiro.so"
        raise LoadError(
            f"{cause}: {cure} in the environment variable VANTIRO_LIBRARY "
            "(vantiro-doctor tells what is wrong with a library)"
        ) from None
