"""Python values as variants and back."""

import ctypes
from ctypes import c_double, c_int16, c_int32, c_int64
from decimal import Decimal
from typing import Any

from ._library import Variant, library, new_text, text_in

EMPTY, NULL, INTEGER, LONG, SINGLE, DOUBLE, CURRENCY, DATE, TEXT, OBJECT, MISSING_ARGUMENT, TRUTH = range(12)
BYTE, LONG_LONG, BYTE_ARRAY, BY_REFERENCE = 17, 20, 0x2011, 0x4000


class _Missing:
    def __repr__(self) -> str:
        return "MISSING"


MISSING = _Missing()
"""Stands for an optional argument that is left out."""


class ByRef:
    """A value that the called member may change: `value` holds what it has become.

    A bool, an int or a float. An int travels as a Long (32 bits), or as an Integer when `bits` is 16.
    """

    def __init__(self, value: bool | int | float, bits: int = 32):
        if not isinstance(value, (bool, int, float)) or bits not in (16, 32):
            raise TypeError("ByRef takes a bool, an int of 16 or 32 bits, or a float")
        self.value = value
        self.bits = bits

    def _kind(self) -> tuple[int, type, Any]:
        if isinstance(self.value, bool):
            return TRUTH, c_int16, -1 if self.value else 0
        if isinstance(self.value, float):
            return DOUBLE, c_double, self.value
        if not -(1 << (self.bits - 1)) <= self.value < 1 << (self.bits - 1):
            raise OverflowError(f"{self.value} does not fit in {self.bits} bits")
        return (INTEGER, c_int16, self.value) if self.bits == 16 else (LONG, c_int32, self.value)


class Packed:
    """An array of variants for one call. What they own is freed by `clear`, after `take_back`."""

    def __init__(self, values: list):
        self.variants = (Variant * len(values))()
        self._cells: list[tuple[ByRef, Any]] = []
        try:
            for variant, value in zip(self.variants, values):
                self._fill(variant, value)
        except BaseException:
            self.clear()
            raise

    def _fill(self, variant: Variant, value: Any) -> None:
        if isinstance(value, ByRef):
            kind, cell_type, held = value._kind()
            cell = cell_type(held)
            self._cells.append((value, cell))
            variant.As_Pointer = ctypes.addressof(cell)
            variant.Type = kind | BY_REFERENCE
        else:
            fill(variant, value)

    def take_back(self) -> None:
        for reference, cell in self._cells:
            reference.value = bool(cell.value) if isinstance(reference.value, bool) else cell.value

    def clear(self) -> None:
        for variant in self.variants:
            library.Automation_Clear(ctypes.byref(variant))


def fill(variant: Variant, value: Any) -> None:
    """Puts a value into an empty variant. None is Null."""
    from ._objects import Late_Bound

    if value is None or value is MISSING:
        variant.Type = NULL if value is None else MISSING_ARGUMENT
    elif isinstance(value, bool):
        variant.As_Integer, variant.Type = -1 if value else 0, TRUTH
    elif isinstance(value, int):
        _fill_number(variant, value)
    elif isinstance(value, float):
        variant.As_Double, variant.Type = value, DOUBLE
    elif isinstance(value, str):
        variant.As_Pointer, variant.Type = new_text(value), TEXT
    elif isinstance(value, (bytes, bytearray)):
        held = bytes(value)
        variant.As_Pointer = library.Automation_New_Bytes(held, len(held))
        variant.Type = BYTE_ARRAY
    elif isinstance(value, Late_Bound):
        variant.As_Pointer, variant.Type = value._counted(), OBJECT
    else:
        raise TypeError(f"a {type(value).__name__} is no automation value")


def _fill_number(variant: Variant, value: int) -> None:
    if -(1 << 31) <= value < 1 << 31:
        variant.As_Long, variant.Type = value, LONG
    elif -(1 << 63) <= value < 1 << 63:
        variant.As_Long_Long, variant.Type = value, LONG_LONG
    else:
        raise OverflowError(f"{value} does not fit in 64 bits")


_READERS = {
    EMPTY: lambda held: None,
    NULL: lambda held: None,
    INTEGER: lambda held: held.As_Integer,
    LONG: lambda held: held.As_Long,
    SINGLE: lambda held: held.As_Single,
    DOUBLE: lambda held: held.As_Double,
    CURRENCY: lambda held: Decimal(held.As_Long_Long) / 10000,
    DATE: lambda held: held.As_Double,  # days since 1899-12-30
    TEXT: lambda held: text_in(held.As_Pointer),
    TRUTH: lambda held: held.As_Integer != 0,
    BYTE: lambda held: held.As_Byte,
    LONG_LONG: lambda held: held.As_Long_Long,
    BYTE_ARRAY: lambda held: _bytes_in(held.As_Pointer),
}


def _bytes_in(block: int | None) -> bytes:
    return ctypes.string_at(block + 4, ctypes.c_uint32.from_address(block).value) if block else b""


def taken(variant: Variant) -> Any:
    """The value of a variant, which is cleared."""
    from ._objects import _bound_copy

    try:
        if variant.Type == OBJECT:
            return _bound_copy(variant.As_Pointer)
        if variant.Type not in _READERS:
            raise TypeError(f"Python has no value for variant type 0x{variant.Type:04X}")
        return _READERS[variant.Type](variant)
    finally:
        library.Automation_Clear(ctypes.byref(variant))
