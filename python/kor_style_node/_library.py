"""The platform's shared library: its records and functions, as automation/abi.h declares them.

Every function pointer here lets other Python threads run during the call; a modal dialog blocks its own
thread alone.
"""

import ctypes
import os
from ctypes import POINTER, c_double, c_float, c_int16, c_int32, c_int64, c_uint8, c_uint16, c_uint32, c_void_p

from . import _installed

SONAME = "libstyle_platform.so.0"


class Identity(ctypes.Structure):
    _fields_ = [("A", c_uint32), ("B", c_uint16), ("C", c_uint16), ("D", c_uint8 * 8)]


class Value(ctypes.Union):
    _fields_ = [
        ("As_Integer", c_int16),
        ("As_Long", c_int32),
        ("As_Long_Long", c_int64),
        ("As_Single", c_float),
        ("As_Double", c_double),
        ("As_Byte", c_uint8),
        ("As_Pointer", c_void_p),
    ]


class Variant(ctypes.Structure):
    _anonymous_ = ["Held"]
    _fields_ = [("Type", c_uint16), ("Reserved", c_uint16 * 3), ("Held", Value)]


class Error(ctypes.Structure):
    _fields_ = [("Source", c_void_p), ("Description", c_void_p), ("Reason", c_void_p), ("Number", c_int32)]


class Name(ctypes.Structure):
    _fields_ = [("Units", c_void_p), ("Length", c_uint32)]


class Arguments(ctypes.Structure):
    _fields_ = [
        ("Values", POINTER(Variant)),
        ("Named", POINTER(c_int32)),
        ("Count", c_uint32),
        ("Named_Count", c_uint32),
    ]


# The members of an object with late binding, in the order of their table: position, result and arguments.
QUERY_INTERFACE = 0, ctypes.CFUNCTYPE(c_int32, c_void_p, POINTER(Identity), POINTER(c_void_p))
ADD_REFERENCE = 1, ctypes.CFUNCTYPE(c_uint32, c_void_p)
RELEASE = 2, ctypes.CFUNCTYPE(c_uint32, c_void_p)
GET_MEMBER_IDENTITIES = 3, ctypes.CFUNCTYPE(c_int32, c_void_p, POINTER(Name), c_uint32, POINTER(c_int32))
INVOKE = 4, ctypes.CFUNCTYPE(
    c_int32, c_void_p, c_int32, c_uint16, POINTER(Arguments), POINTER(Variant), POINTER(c_uint32)
)
DISPATCH = Identity(0x4F2B7A90, 0x2C1D, 0x4E0A, (0x9B, 0x63, 0x58, 0x1E, 0xD7, 0x40, 0xA2, 0x15))

_FUNCTIONS = {
    "Automation_New_Text": (c_void_p, [c_void_p, c_uint32]),
    "Automation_New_Bytes": (c_void_p, [c_void_p, c_uint32]),
    "Automation_Free": (None, [c_void_p]),
    "Automation_Clear": (None, [POINTER(Variant)]),
    "Automation_Take_Error": (c_int32, [POINTER(Error)]),
    "Automation_Describe": (c_void_p, [c_int32]),
    "Automation_Create": (c_int32, [c_void_p, c_uint32, POINTER(Identity), POINTER(c_void_p)]),
    "Automation_Free_Unused_Modules": (c_int32, []),
}


def _path() -> str:
    chosen = os.environ.get("KOR_STYLE_NODE_LIBRARY") or _installed.LIBRARY
    if chosen and not os.path.isabs(chosen):
        raise ImportError(f"{chosen} is no absolute path; name {SONAME} by one in KOR_STYLE_NODE_LIBRARY")
    # Without a slash the system's loader looks in its cache and in the folders of the system, never in the
    # current one: only a file that the administrator has installed is found. An empty element of
    # LD_LIBRARY_PATH would add the current folder.
    if not chosen and "" in os.environ.get("LD_LIBRARY_PATH", "/").replace(";", ":").split(":"):
        raise ImportError("LD_LIBRARY_PATH has an empty element, which is the current folder; take it out")
    return chosen or SONAME


def _load() -> ctypes.CDLL:
    path = _path()
    try:
        loaded = ctypes.CDLL(path)
        for name, (result, arguments) in _FUNCTIONS.items():
            function = getattr(loaded, name)
            function.restype, function.argtypes = result, arguments
    except (OSError, AttributeError) as error:
        raise ImportError(
            f"the platform's library cannot be used: {error}; install {SONAME} or name it by an absolute path "
            "in KOR_STYLE_NODE_LIBRARY"
        ) from None
    return loaded


library = _load()


def member(pointer: int, which):
    """One of the object's members, as a function that takes the object first."""
    position, kind = which
    table = c_void_p.from_address(pointer).value
    return kind(c_void_p.from_address(table + position * ctypes.sizeof(c_void_p)).value)


def units(text: str) -> tuple[ctypes.Array, int]:
    """The text's UTF-16 and how many units it has."""
    encoded = text.encode("utf-16-le", "surrogatepass")
    return ctypes.create_string_buffer(encoded, len(encoded) + 2), len(encoded) // 2


def new_text(text: str) -> int | None:
    block = library.Automation_New_Text(*units(text))
    if not block and text:
        raise MemoryError
    return block


def text_in(block: int | None) -> str:
    if not block:
        return ""
    count = c_uint32.from_address(block).value
    return ctypes.string_at(block + 4, 2 * count).decode("utf-16-le", "surrogatepass")


def taken(block: int | None) -> str:
    """The text of a block that is freed with it."""
    text = text_in(block)
    library.Automation_Free(block)
    return text
