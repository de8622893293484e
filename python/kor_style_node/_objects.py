"""Objects whose members are called by name."""

import collections
import ctypes
import sys
import threading
import weakref
from ctypes import byref, c_int32, c_uint32, c_void_p
from typing import Any

from . import _library
from ._errors import NoSuchMember, WrongArguments, check
from ._library import Arguments, Name, Variant, library, member, units
from ._variants import Packed, taken

_METHOD, _GET, _PUT = 1, 2, 4


class _Apartment:
    """A thread that owns objects. What is let go elsewhere is released on it, or anywhere once it has ended."""

    def __init__(self) -> None:
        self.thread = threading.current_thread()
        self.left: collections.deque[int] = collections.deque()

    def release(self, pointer: int) -> None:
        self.left.append(pointer)
        if threading.current_thread() is self.thread or not self.thread.is_alive():
            self.drain()

    def drain(self) -> None:
        while True:
            try:
                pointer = self.left.popleft()
            except IndexError:
                return
            member(pointer, _library.RELEASE)(pointer)

    def __del__(self) -> None:  # with the thread
        if not sys.is_finalizing():
            self.drain()


class _Here(threading.local):
    def __init__(self) -> None:
        self.apartment = _Apartment()


_here = _Here()


def Create(program_identity: str) -> "Late_Bound":
    """An object of the class with this programmatic identifier (its case does not matter).

    AutomationError 429 when it cannot be created, with the reason; 430 when it has no late binding.
    """
    return Late_Bound(program_identity)


class Late_Bound:
    """An object that looks its attributes up by name when they are used.

    A readable property is an attribute; anything else is a callable that takes positional and named arguments.
    """

    def __init__(self, program_identity: str):
        found = c_void_p()
        check(library.Automation_Create(*units(program_identity), byref(_library.DISPATCH), byref(found)))
        self._adopt(found.value)

    def _adopt(self, pointer: int) -> None:
        set_own = super().__setattr__
        set_own("_pointer", pointer)
        # Also runs at the interpreter's exit, while everything that it needs is still there.
        set_own("_finalizer", weakref.finalize(self, _here.apartment.release, pointer))

    def Release(self) -> None:
        """Gives the object back now; a later use of it raises ValueError. May be called again."""
        self._finalizer()

    def __enter__(self):
        return self

    def __exit__(self, *exception: object) -> None:
        self.Release()

    def _alive(self) -> int:
        if not self._finalizer.alive:
            raise ValueError("the object has been released")
        return self._pointer

    def _counted(self) -> int:
        pointer = self._alive()
        member(pointer, _library.ADD_REFERENCE)(pointer)
        return pointer

    def _identities(self, *names: str) -> list[int]:
        pointer = self._alive()
        held = [units(name) for name in names]
        asked = (Name * len(names))(*(Name(ctypes.addressof(text), length) for text, length in held))
        found = (c_int32 * len(names))()
        check(member(pointer, _library.GET_MEMBER_IDENTITIES)(pointer, asked, len(names), found))
        return list(found)

    def _invoke(self, identity: int, kind: int, values: list, named: list[int]) -> Any:
        _here.apartment.drain()
        pointer = self._alive()
        packed = Packed(values)
        result, wrong = Variant(), c_uint32()
        arguments = Arguments(packed.variants, (c_int32 * len(named))(*named), len(values), len(named))
        try:
            status = member(pointer, _library.INVOKE)(
                pointer, identity, kind, byref(arguments), byref(result), byref(wrong)
            )
            check(status, wrong.value)
            packed.take_back()
            return taken(result)
        finally:
            packed.clear()

    def _call(self, name: str, *values: Any, **named: Any) -> Any:
        member_identity, *argument_identities = self._identities(name, *named)
        return self._invoke(member_identity, _METHOD | _GET, [*values, *named.values()], argument_identities)

    def _get(self, name: str) -> Any:
        return self._invoke(self._identities(name)[0], _GET, [], [])

    def _put(self, name: str, value: Any) -> None:
        self._invoke(self._identities(name)[0], _PUT, [value], [])

    def __getattr__(self, name: str) -> Any:
        if name.startswith("_"):  # Python's own, or this class's before it is complete
            raise AttributeError(name)
        identity = self._identities(name)[0]
        try:
            return self._invoke(identity, _GET, [], [])
        except (NoSuchMember, WrongArguments) as error:
            if error.number not in (438, 449):
                raise
        return lambda *values, **named: self._call(name, *values, **named)

    def __setattr__(self, name: str, value: Any) -> None:
        self._put(name, value)


def _bound_copy(pointer: int | None) -> Late_Bound | None:
    """The object behind a pointer that the caller keeps."""
    if not pointer:
        return None
    found = c_void_p()
    status = member(pointer, _library.QUERY_INTERFACE)(pointer, byref(_library.DISPATCH), byref(found))
    check(status)
    bound = Late_Bound.__new__(Late_Bound)
    bound._adopt(found.value)
    return bound


class Busyness_Rules(Late_Bound):
    """The style-node editor."""

    def __init__(self) -> None:
        super().__init__("KOR_STYLE_Node.Busyness_Rules")

    @property
    def ErrLocation(self) -> str:
        """Where the last recorded error was: "[source][object]procedure"."""
        return self._get("ErrLocation")

    @property
    def ErrCode(self) -> int:
        """The last recorded error's number."""
        return self._get("ErrCode")

    @property
    def ErrDescription(self) -> str:
        """The last recorded error's text; empty when there has been none since Shown began."""
        return self._get("ErrDescription")

    @property
    def SupervisedType_Blind(self) -> bool:
        """Whether the node last shown is of supervised type Blind."""
        return self._get("SupervisedType_Blind")

    @SupervisedType_Blind.setter
    def SupervisedType_Blind(self, value: bool) -> None:
        self._put("SupervisedType_Blind", value)

    @property
    def Editing_Default_Node(self) -> bool:
        """Whether Shown was called for node 0, the partition's default node."""
        return self._get("Editing_Default_Node")

    def Shown(
        self,
        Config_ID: int,
        Partition_ID: int,
        Node_Number: int,
        Language_ID: int = 1,
        Silent_Error: bool = False,
    ) -> bool:
        """Runs one editing job and blocks while its dialog is up; other threads go on.

        True when no error was recorded during it. Language_ID 1 is English; Silent_Error suppresses the
        "Internal Error" box.
        """
        return self._call("Shown", Config_ID, Partition_ID, Node_Number, Language_ID, Silent_Error)
