"""The Python package on the real modules, in a process without a screen."""

import concurrent.futures
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

FOLDER = pathlib.Path(tempfile.mkdtemp(prefix="style-node-python-"))
CLASSES = FOLDER / "machine"
MODULES = [pathlib.Path(os.environ[name]) for name in ("STYLE_NODE_COMPONENT", "STYLE_NODE_STAND_INS")]
for _name in ("XDG_DATA_HOME", "XDG_CONFIG_HOME"):
    os.environ[_name] = str(FOLDER / _name)
os.environ["STYLE_NODE_MACHINE_CLASSES"] = str(CLASSES)

from kor_style_node._library import Variant  # noqa: E402
from kor_style_node._variants import fill, taken  # noqa: E402
from kor_style_node import MISSING, AutomationError, Busyness_Rules, ByRef, Create  # noqa: E402

EDITOR = "KOR_STYLE_Node.Busyness_Rules"
NO_DISPLAY = ("[KOR_STYLE_Node][Busyness_Rules]Shown", -2147467259, "There is no display to show the dialog on")
OVERFLOW = ("[KOR_STYLE_Node][Busyness_Rules]Shown", 6, "Overflow")


def setUpModule():
    command = [os.environ["STYLE_EDITOR"], "register", "--machine", *MODULES]
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL)


def tearDownModule():
    shutil.rmtree(FOLDER)


def errors_of(editor):
    return editor.ErrLocation, editor.ErrCode, editor.ErrDescription


def in_threads(*works):
    """What each one answers, all running at once."""
    with concurrent.futures.ThreadPoolExecutor(len(works)) as pool:
        return [future.result() for future in [pool.submit(work) for work in works]]


class Editor(unittest.TestCase):
    def test_shows_nothing_without_a_display_and_says_so(self):
        with Busyness_Rules() as editor:
            self.assertEqual(errors_of(editor), ("", 0, ""))
            self.assertIs(editor.Shown(1, 1, 0), False)
            self.assertEqual(errors_of(editor), NO_DISPLAY)
            self.assertIs(editor.Editing_Default_Node, True)
            self.assertIs(editor.Shown(Node_Number=1, Partition_ID=1, Config_ID=1, Silent_Error=True), False)
            self.assertEqual(errors_of(editor), NO_DISPLAY)
            self.assertIs(editor.Editing_Default_Node, False)
            self.assertIs(editor.Shown(1, 1, 1, Language_ID=557), False)
            self.assertEqual(errors_of(editor), OVERFLOW)

    def test_is_called_by_name_in_any_case(self):
        editor = Create("kor_style_NODE.busyness_rules")
        overflow = {"node_number": 1, "LANGUAGE_ID": 557}
        for values, named, errors in ((1, 1), overflow, OVERFLOW), ((1, 1, 1, MISSING, True), {}, NO_DISPLAY):
            with self.subTest(values=values, named=named):
                self.assertIs(editor.shown(*values, **named), False)
                self.assertEqual((editor.errlocation, editor.ERRCODE, editor.ErrDescription), errors)

    def test_writes_its_property(self):
        for editor in (Busyness_Rules(), Create(EDITOR)):
            for value, stored in (True, True), (False, False), (5, True), ("False", False), ("1", True), (0.0, False):
                editor.SupervisedType_Blind = value
                self.assertIs(editor.SupervisedType_Blind, stored, value)
            for given in (ByRef(True), ByRef(False), ByRef(7), ByRef(0, bits=16), ByRef(1.5)):
                before = given.value
                editor.SupervisedType_Blind = given
                self.assertIs(editor.SupervisedType_Blind, bool(before))
                self.assertEqual(given.value, before)

    def test_refuses_wrong_calls_as_python_would(self):
        editor = Create(EDITOR)
        cases = (
            (lambda: editor.Nonsense, AttributeError, 438, None),
            (lambda: setattr(editor, "Nonsense", 1), AttributeError, 438, None),
            (lambda: setattr(editor, "ErrCode", 1), AttributeError, 438, None),
            (lambda: editor.Shown(1, "one", 1), TypeError, 13, 1),
            (lambda: setattr(editor, "SupervisedType_Blind", b"\1"), TypeError, 13, 0),
            (lambda: editor.Shown(32768, 1, 1), OverflowError, 6, 0),
            (lambda: editor.Shown(1, 1, 1 << 40), OverflowError, 6, 2),
            (lambda: editor.Shown(1, 1, None), AutomationError, 94, 2),
            (lambda: editor.Shown(1, 1, 1, Colour=1), TypeError, 448, None),
            (lambda: editor.Shown(1, Node_Number=1), TypeError, 449, 2),
            (lambda: editor.Shown(1, 1, MISSING), TypeError, 449, 3),
            (lambda: editor.Shown(1, 1, 1, 1, True, 6), TypeError, 450, 5),
            (lambda: editor.Shown(1, 1, 1, Config_ID=2), TypeError, 450, 3),
        )
        for number, (call, kind, code, argument) in enumerate(cases):
            with self.subTest(case=number), self.assertRaises(AutomationError) as caught:
                call()
            error = caught.exception
            self.assertIsInstance(error, kind)
            self.assertEqual((error.number, error.source), (code, "KOR_STYLE_Node"), number)
            self.assertEqual(error.argument, argument, number)
            self.assertEqual(str(error), f"KOR_STYLE_Node: {error.description} ({code})")
        self.assertFalse(hasattr(editor, "Nonsense"))
        for value, kind in ((object(), TypeError), (1 << 63, OverflowError), (ByRef(1 << 31), OverflowError)):
            with self.assertRaises(kind):
                editor.Shown(1, 1, value)
        self.assertEqual(editor.ErrCode, 0, "a call that was refused has run")


class Values(unittest.TestCase):
    def test_travel_unchanged(self):
        texts = "", "a\0b", "\u20ac \U0001f600", "\ud83d half"
        for value in (None, True, False, -(1 << 31), 1 << 40, -(1 << 63), 0.1, b"", b"\0\xff", *texts):
            variant = Variant()
            fill(variant, value)
            back = taken(variant)
            self.assertEqual((type(back), back, variant.Type), (type(value), value, 0))


class Threads(unittest.TestCase):
    def test_belong_to_their_objects(self):
        editor = Busyness_Rules()

        def status_of(call):
            with self.assertRaises(AutomationError) as caught:
                call()
            return caught.exception.status

        put = lambda: setattr(editor, "SupervisedType_Blind", True)  # noqa: E731
        for call in (lambda: editor.Shown(1, 1, 1), lambda: editor.ErrCode, put):
            self.assertEqual(in_threads(lambda: status_of(call)), [0x8001010E])
        self.assertEqual(errors_of(editor), ("", 0, ""))
        self.assertIs(editor.SupervisedType_Blind, False)

    def test_work_on_their_own_objects(self):
        def jobs(language, errors):
            editor = Busyness_Rules()
            return all(not editor.Shown(1, 1, 1, language) and errors_of(editor) == errors for _ in range(20))

        works = lambda: jobs(1, NO_DISPLAY), lambda: jobs(600, OVERFLOW)
        self.assertEqual(in_threads(*works), [True, True])

    def test_give_their_objects_back(self):
        """Also those that are let go on another thread, or that still live when the interpreter ends."""
        out = subprocess.run([sys.executable, "-c", COUNTING], capture_output=True, text=True)
        self.assertEqual((out.returncode, out.stdout, out.stderr), (0, "2 1 1\n", ""))


COUNTING = """
import threading, time
from kor_style_node import Busyness_Rules, Create
from kor_style_node._library import library
def loaded():  # answers how many stay when the idle ones go: the store's own one does
    library.Automation_Free_Unused_Modules()
    time.sleep(1.1)
    return library.Automation_Free_Unused_Modules()
with Busyness_Rules() as editor:
    before = loaded()
after_block = loaded()
kept = [Busyness_Rules(), Create("KOR_STYLE_Node.Busyness_Rules")]
thread = threading.Thread(target=kept.clear)
thread.start()
thread.join()
Busyness_Rules().ErrCode
print(before, after_block, loaded())
at_exit = Busyness_Rules()
"""


class Library(unittest.TestCase):
    def test_is_never_looked_for_in_the_current_folder(self):
        folder = os.path.dirname(os.environ["KOR_STYLE_NODE_LIBRARY"])
        soname = "libstyle_platform.so.0"
        for chosen, path, reason in (soname, "", "absolute"), ("/nowhere/it.so", "", "/nowhere"), ("", "/x:", "empty"):
            environment = os.environ | {"KOR_STYLE_NODE_LIBRARY": chosen, "LD_LIBRARY_PATH": path or "/nowhere"}
            command = [sys.executable, "-c", "import kor_style_node"]
            out = subprocess.run(command, env=environment, cwd=folder, capture_output=True, text=True)
            self.assertEqual(out.returncode, 1, chosen)
            self.assertRegex(out.stderr, f"ImportError: .*{reason}")


class Creation(unittest.TestCase):
    """Fails with a reason that names what is at fault."""

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(dir=FOLDER))
        self.manifest = self.folder / "editor.classes"
        self.module = self.folder / "Editor.so"
        shutil.copy(MODULES[0], self.module)
        self.module.chmod(0o755)
        registered = next(CLASSES.glob("*KOR_STYLE_Node.classes")).read_text()
        self.manifest.write_text(registered.replace(str(MODULES[0].resolve()), str(self.module)))
        os.environ["STYLE_NODE_MACHINE_CLASSES"] = str(self.folder)
        self.addCleanup(os.environ.__setitem__, "STYLE_NODE_MACHINE_CLASSES", str(CLASSES))

    def test_explains_its_failure(self):
        cases = (
            ("missing module", lambda: self.module.unlink(), "module"),
            ("module that others may write", lambda: self.module.chmod(0o757), "module"),
            ("folder that others may write", lambda: self.folder.chmod(0o777), "folder"),
            ("no library", lambda: self.module.write_bytes(b"text"), "module"),
            ("broken manifest", lambda: self.manifest.write_text("Module = no path\n"), "manifest"),
            ("manifest that others may write", lambda: self.manifest.chmod(0o666), "manifest"),
            ("not registered", lambda: self.manifest.unlink(), None),
        )
        for name, spoil, culprit in cases:
            with self.subTest(name):
                self.setUp()
                spoil()
                with self.assertRaises(AutomationError) as caught:
                    Busyness_Rules()
                error = caught.exception
                self.assertEqual(error.number, 429)
                self.assertIn(str(getattr(self, culprit)) if culprit else EDITOR, error.reason)
                self.assertIn(error.reason, str(error))
        self.setUp()
        Busyness_Rules().Release()


if __name__ == "__main__":
    unittest.main()
