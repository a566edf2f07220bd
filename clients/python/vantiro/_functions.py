"""What becomes of an exported function: a callable that takes Python's values."""
import atexit
import ctypes
import operator
import types
from typing import Any, Callable, Dict, List, Optional

from . import _waiting
from ._frames import LONG, STRINGS_OF_A_CALL, THREADS, Frames
from ._operations import Operations, Receiver
from ._strings import Text, decode, encode

Function = Callable[..., int]

_Callback = ctypes.CFUNCTYPE(None, ctypes.c_char_p)
_CALLBACK_SLOT = "vantiro_peach_intermediate_callback_fun"

_MOST_ARGUMENTS = 1000  # of a variadic function, for ctypes


# ctypes converts arguments by `from_param`. Its own types do the same as these, at four times the cost.
class _Integer:
    # Where a long has 32 bits, ctypes cuts off the higher ones of its own type alone.
    from_param = operator.index if ctypes.sizeof(ctypes.c_long) > 4 else ctypes.c_int.from_param


class _Reference:
    from_param = ctypes.byref


# What Java may call lives as long as the process.
_callbacks: List[Any] = []


def functions(library: ctypes.CDLL, frames: Frames) -> Dict[str, Function]:
    """The callables for all functions that the library has."""
    makers = _Makers(library, frames)
    return {name: makers.make(name, list(method.__annotations__.values())[:-1])
            for name, method in vars(Operations).items()
            if callable(method) and hasattr(library, f"vantiro_{name}")}


class _Makers:
    def __init__(self, library: ctypes.CDLL, frames: Frames) -> None:
        self._library = library
        self._frames = frames
        self._types = {
            "int": _Integer,
            "bool": _Integer,
            "Text": self._string(),
            "Strings": _Integer,  # the count of the list
            "Receiver": _Callback,
            "ctypes.Array[ctypes.c_char]": _Reference,
            "ctypes.c_uint": _Reference,
            "ctypes.c_int": _Reference,
        }

    def make(self, name: str, parameters: List[str]) -> Function:
        """The callable for ``vantiro_<name>``, by the annotations of its parameters."""
        lists = parameters.count("Strings")
        function: Any = self._library[f"vantiro_{name}"]
        function.argtypes = [self._types[parameter] for parameter in parameters]
        if lists:
            array_form = self._library[f"vantiro_{name}3"]
            array_form.argtypes = function.argtypes + [ctypes.POINTER(ctypes.c_char_p)]
            return self._with_lists(function, array_form, lists)
        if "Receiver" in parameters:
            return self._with_receiver(function)
        return function  # type: ignore[no-any-return]

    def _string(self) -> Any:
        frames = self._frames
        threads = THREADS
        encode_any = self._encode

        # Hot: each line of it was measured.
        def from_param(text: Any) -> Optional[bytes]:
            thread = threads.present
            thread.calls_left -= 1
            if thread.calls_left < 0:
                frames.renew()
            try:
                if text.isascii() and len(text) < LONG and "\0" not in text:
                    return text.encode()  # type: ignore[no-any-return]
            except (AttributeError, TypeError):  # no str
                pass
            return encode_any(text)

        return types.SimpleNamespace(from_param=from_param)

    def _encode(self, text: Text) -> Optional[bytes]:
        data = encode(text)
        if data is not None and len(data) >= LONG:
            self._frames.take(len(data) // LONG)
        return data

    def _encode_list(self, sequence: Any) -> List[Optional[bytes]]:
        if type(sequence) is not list:
            if isinstance(sequence, (str, bytes)):
                raise TypeError("a list of strings is wanted, not one string")
            sequence = list(sequence)
        try:
            whole = "\0".join(sequence)
            if whole.isascii() and len(whole) < LONG:
                texts: List[Any] = whole.encode().split(b"\0")
                if len(texts) == len(sequence):
                    return texts
        except TypeError:  # there is more than str among them
            pass
        return [self._encode(text) for text in sequence]

    def _with_lists(self, function: Function, array_form: Function, lists: int) -> Function:
        """The function with sequences in the place of the counts and the strings."""
        frames = self._frames
        threads = THREADS
        encode_list = self._encode_list

        def call(*arguments: Any) -> int:
            thread = threads.present
            thread.calls_left -= 1
            if thread.calls_left < 0:
                frames.renew()
            strings = encode_list(arguments[-1])
            counts = [len(strings)]
            if lists == 2:
                first = encode_list(arguments[-2])
                counts = [len(first), len(strings)]
                strings = first + strings
            if len(strings) > STRINGS_OF_A_CALL:
                frames.take(len(strings) // STRINGS_OF_A_CALL)
                if len(strings) > _MOST_ARGUMENTS:
                    array = (ctypes.c_char_p * len(strings))(*strings)
                    return array_form(*arguments[:-lists], *counts, array)
            # To make an array takes ctypes four times as long as to pass the strings one by one.
            return function(*arguments[:-lists], *counts, *strings)

        return call

    def _with_receiver(self, function: Function) -> Function:
        """The function with any callable, or None, in the place of the C function."""
        frames = self._frames
        receiver: Receiver = None

        def deliver(data: Optional[bytes]) -> None:
            if receiver is not None and data is not None:
                with frames.scope():
                    _waiting.deliver(receiver, decode(data))

        # One for all receivers: a Java thread may be in it while the receiver is replaced.
        callback = _Callback(deliver)
        _callbacks.append(callback)
        slot = ctypes.c_void_p.in_dll(self._library, _CALLBACK_SLOT)
        atexit.register(setattr, slot, "value", None)

        def call(handle: int, new_receiver: Receiver) -> int:
            nonlocal receiver
            status = function(handle, callback if new_receiver else _Callback(0))
            if status == 0:
                receiver = new_receiver
            return status

        return call
