"""The platform's failures as exceptions."""

import ctypes

from ._library import Error, library, taken

_RUN_TIME = 0x800A0000 - (1 << 32)  # the status of a run-time failure is this plus its number
_NAMES_ARGUMENT = (6, 13, 94, 448, 449, 450)


class AutomationError(Exception):
    """A failure of an object, of a call on it, or of its creation.

    number: the run-time number (1 to 65535), or the negative status of any other failure. source: who failed,
    often empty. description: the platform's text. reason: what a person should know beyond it, such as the
    file at fault; often empty. argument: the position of the argument that a wrong call is about, or None.
    """

    def __init__(
        self,
        number: int,
        source: str = "",
        description: str = "",
        reason: str = "",
        argument: int | None = None,
    ):
        super().__init__(number, source, description, reason)
        self.number = number
        self.source = source
        self.description = description
        self.reason = reason
        self.argument = argument

    @property
    def status(self) -> int:
        """The status that the call has answered, as 32 bits without a sign."""
        return (self.number if self.number < 0 else _RUN_TIME + self.number) & 0xFFFFFFFF

    def __str__(self) -> str:
        number = str(self.number) if self.number >= 0 else f"0x{self.status:08X}"
        where = f"{self.source}: " if self.source else ""
        return f"{where}{self.description} ({number})" + (f": {self.reason}" if self.reason else "")


class NoSuchMember(AutomationError, AttributeError):
    """438: the object has no such member, or not of that kind."""


class WrongArguments(AutomationError, TypeError):
    """13, 448, 449, 450: an argument's type, name or presence, or their number."""


class OutOfRange(AutomationError, OverflowError):
    """6: a number that its type does not hold."""


_CLASSES = {6: OutOfRange, 438: NoSuchMember} | dict.fromkeys((13, 448, 449, 450), WrongArguments)


def check(status: int, argument: int | None = None) -> None:
    """Raises the failure behind a failing status, with what the thread's error object says about it."""
    if status >= 0:
        return
    error = Error()
    is_run_time = _RUN_TIME < status < _RUN_TIME + 0x10000
    number = status - _RUN_TIME if is_run_time else status
    if library.Automation_Take_Error(ctypes.byref(error)):
        number = error.Number or number
        source, description, reason = taken(error.Source), taken(error.Description), taken(error.Reason)
    else:
        source, reason = "", ""
        description = taken(library.Automation_Describe(number)) if is_run_time else "Automation error"
    position = argument if number in _NAMES_ARGUMENT else None
    raise _CLASSES.get(number, AutomationError)(number, source, description, reason, position)
