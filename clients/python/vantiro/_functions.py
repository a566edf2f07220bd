"""What becomes of an exported function: a callable that takes Python's values."""
import atexit
import ctypes
import operator
import types
from typing import Any, Callable, Dict, Iterable, List, Optional

from ._frames import LONG, STRINGS_OF_A_CALL, Frames
from ._signatures import SIGNATURES
from ._strings import Text, decode, encode

Function = Callable[..., int]
Receiver = Callable[[str], None]

_Callback = ctypes.CFUNCTYPE(None, ctypes.c_char_p)
_CALLBACK_SLOT = "vantiro_peach_intermediate_callback_fun"

_LISTS = {"l": 1, "p": 2}
_MOST_ARGUMENTS = 1000  # of a variadic function, for ctypes


# ctypes converts arguments by `from_param`. Its own types do the same as these, at four times the cost.
class _Integer:
    from_param = operator.index


class _Reference:
    from_param = ctypes.byref


# What Java may call lives as long as the process.
_callbacks: List[Any] = []


def functions(library: ctypes.CDLL, frames: Frames) -> Dict[str, Function]:
    """The callables for all functions that the library has."""
    makers = _Makers(library, frames)
    return {name: makers.make(name) for name in SIGNATURES if hasattr(library, f"vantiro_{name}")}


class _Makers:
    def __init__(self, library: ctypes.CDLL, frames: Frames) -> None:
        self._library = library
        self._frames = frames
        self._types: Dict[str, List[Any]] = {
            "i": [_Integer],
            "b": [_Integer],
            "s": [self._string()],
            "l": [_Integer],
            "p": [_Integer, _Integer],
            "o": [_Reference, _Reference],
            "x": [_Reference, _Reference, _Reference],
            "c": [_Callback],
        }

    def make(self, name: str) -> Function:
        """The callable for ``vantiro_<name>``."""
        letters = SIGNATURES[name]
        lists = _LISTS.get(letters[-1:], 0)
        function: Any = self._library[f"vantiro_{name}"]
        function.argtypes = [type for letter in letters for type in self._types[letter]]
        if lists:
            array_form = self._library[f"vantiro_{name}3"]
            array_form.argtypes = function.argtypes + [ctypes.POINTER(ctypes.c_char_p)]
            return self._with_lists(function, array_form, lists)
        if letters.endswith("c"):
            return self._with_receiver(function)
        return function  # type: ignore[no-any-return]

    def _string(self) -> Any:
        frames = self._frames
        encode_any = self._encode

        def from_param(text: Text) -> Optional[bytes]:
            try:
                next(frames.room)
            except StopIteration:
                frames.renew()
            if type(text) is str and len(text) < LONG and text.isascii() and "\0" not in text:
                return text.encode()
            return encode_any(text)

        return types.SimpleNamespace(from_param=from_param)

    def _encode(self, text: Text) -> Optional[bytes]:
        data = encode(text)
        if data is not None:
            self._frames.take_long(len(data))
        return data

    def _encode_list(self, sequence: Iterable[Text]) -> List[Optional[bytes]]:
        if isinstance(sequence, (str, bytes)):
            raise TypeError("a list of strings is wanted, not one string")
        texts = list(sequence)
        try:
            whole = "".join(texts)  # type: ignore[arg-type]
        except TypeError:  # there is more than str among them
            whole = "\0"
        if len(whole) < LONG and whole.isascii() and "\0" not in whole:
            return [text.encode() for text in texts]  # type: ignore[union-attr]
        return [self._encode(text) for text in texts]

    def _with_lists(self, function: Function, array_form: Function, lists: int) -> Function:
        """The function with sequences in the place of the counts and the strings."""
        frames = self._frames
        encode_list = self._encode_list

        def call(*arguments: Any) -> int:
            try:
                next(frames.room)
            except StopIteration:
                frames.renew()
            strings: List[Optional[bytes]] = []
            counts = []
            for sequence in arguments[-lists:]:
                elements = encode_list(sequence)
                counts.append(len(elements))
                strings += elements
            if len(strings) > STRINGS_OF_A_CALL:
                frames.take_list(len(strings))
            if len(strings) <= _MOST_ARGUMENTS:
                return function(*arguments[:-lists], *counts, *strings)
            array = (ctypes.c_char_p * len(strings))(*strings)
            return array_form(*arguments[:-lists], *counts, array)

        return call

    def _with_receiver(self, function: Function) -> Function:
        """The function with any callable, or None, in the place of the C function."""
        frames = self._frames
        receiver: Optional[Receiver] = None

        def deliver(data: Optional[bytes]) -> None:
            if receiver is not None and data is not None:
                with frames.scope():
                    receiver(decode(data))

        # One for all receivers: a Java thread may be in it while the receiver is replaced.
        callback = _Callback(deliver)
        _callbacks.append(callback)
        slot = ctypes.c_void_p.in_dll(self._library, _CALLBACK_SLOT)
        atexit.register(setattr, slot, "value", None)

        def call(handle: int, new_receiver: Optional[Receiver]) -> int:
            nonlocal receiver
            status = function(handle, callback if new_receiver else _Callback(0))
            if status == 0:
                receiver = new_receiver
            return status

        return call
