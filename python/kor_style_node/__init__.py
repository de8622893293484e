"""The style-node editor as a Python object.

    from kor_style_node import Busyness_Rules, AutomationError

    with Busyness_Rules() as editor:
        if not editor.Shown(Config_ID=1, Partition_ID=1, Node_Number=12):
            print(editor.ErrLocation, editor.ErrCode, editor.ErrDescription)

An object belongs to the thread that creates it: a call from another one raises AutomationError with the
status 0x8001010E. It is released by `Release()`, at the end of its `with` block, or with its last name.
"""

from ._errors import AutomationError
from ._objects import Busyness_Rules, Create, Late_Bound
from ._variants import MISSING, ByRef

__all__ = ["AutomationError", "Busyness_Rules", "ByRef", "Create", "Late_Bound", "MISSING"]
