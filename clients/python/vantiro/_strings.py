"""Strings in the modified UTF-8 of the Java machine.

It differs from UTF-8 in two ways: characters beyond U+FFFF are two surrogates of three bytes each,
and NUL is the bytes C0 80, so that no string contains a NUL.
"""
import os
import re
from typing import Optional, Union

Text = Union[str, bytes, "os.PathLike[str]", None]

_BEYOND = re.compile("[\U00010000-\U0010ffff]")


def _surrogates(match: "re.Match[str]") -> str:
    code = ord(match[0]) - 0x10000
    return chr(0xD800 + (code >> 10)) + chr(0xDC00 + (code & 0x3FF))


def encode(text: Text) -> Optional[bytes]:
    """The bytes of a string that goes in; ``None`` is null, ``bytes`` are taken as they are."""
    if text is None:
        return None
    if not isinstance(text, str):
        text = os.fspath(text)
    if isinstance(text, bytes):
        if b"\0" in text:
            raise ValueError("bytes that contain a NUL cannot be passed as a string")
        return text
    data = _BEYOND.sub(_surrogates, text).encode("utf-8", "surrogatepass")
    return data.replace(b"\0", b"\xc0\x80")


def decode(data: bytes) -> str:
    """The string that comes out."""
    try:
        return data.decode()
    except UnicodeDecodeError:
        text = data.replace(b"\xc0\x80", b"\0").decode("utf-8", "surrogatepass")
        return text.encode("utf-16", "surrogatepass").decode("utf-16", "surrogatepass")
