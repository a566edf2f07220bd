"""python_test.py PROJECT LIBRARY: the Python client, with a Python of the library's word size."""
import pathlib
import re
import struct
import sys
import tempfile
import threading
import unittest

PROJECT, LIBRARY = map(pathlib.Path, sys.argv[1:])
sys.path.insert(0, str(PROJECT / "clients/python"))
import vantiro
from vantiro._signatures import SIGNATURES

LETTERS = {
    r"int file_count, int import_count, \.\.\.": "P", r"int count, \.\.\.": "L",
    r"int \*index, char \*buffer, unsigned int \*size": "X",
    r"char \*buffer, unsigned int \*size": "O", r"void \(\*callback\)\(const char \*text\)": "C",
    r"const char \*\w+": "S", r"unsigned char \w+": "B", r"int \w+": "I", r"void|, ": "",
}
LONG = "x" * 400000
grid = vantiro.Library(LIBRARY)


class BeforeTheStart(unittest.TestCase):
    def test_every_call_raises(self):
        with grid.attachment(), grid.frame():
            for ask in (lambda: grid.check(grid.setLogLevel("INFO")),
                        lambda: grid.text(grid.getUserLogin),
                        lambda: grid.list(grid.getResultFiles, 1)):
                self.assertRaisesRegex(vantiro.Error, r"not initialized \(status -11\)", ask)
            self.assertRaisesRegex(vantiro.Error, r"status -7\b", grid.check, -7)

    def test_signatures_are_those_of_the_headers(self):
        text = "".join(path.read_text() for path in (PROJECT / "include/vantiro").glob("*.h"))
        text = re.sub(r"\s+", " ", re.sub(r"/\*.*?\*/", "", text, flags=re.S))
        declared = {}
        for name, letters in re.findall(r"VANTIRO_API int vantiro_(\w+)\(([^;]*)\);", text):
            for parameters, letter in LETTERS.items():
                letters = re.sub(parameters, letter, letters)
            if re.fullmatch("[A-Z]*", letters):  # else another form, or for C alone
                declared[name] = letters.lower()
        self.assertEqual(SIGNATURES, declared)

    def test_what_cannot_be_loaded(self):
        with tempfile.NamedTemporaryFile() as file:
            own = 1 if struct.calcsize("P") == 4 else 2
            for start, words in ((b"\x7fELF" + bytes([3 - own]), r"32-bit .* 64-bit|64.* 32-bit"),
                                 (b"\x7fELF" + bytes([own]), "cannot load"), (b"?", "cannot load")):
                file.write(start)
                file.flush()
                self.assertRaisesRegex(vantiro.LoadError, words + ".*doctor", vantiro.Library,
                                       file.name)
                file.seek(0)


class Started(unittest.TestCase):
    def setUp(self):
        home = tempfile.TemporaryDirectory()
        self.addCleanup(home.cleanup)
        path = pathlib.Path(home.name)
        grid.check(grid.initWithoutFile(path, LONG, None, None, 0, "OFF", None, 0, 0, None, None))
        self.addCleanup(grid.unload2, 1, 1)
        self.project = grid.check(grid.createProject(grid.open(), 0, "n\0n", ["a=é€😀", b"b=2"]))
        self.peach = grid.check(grid.peach_handle())

    def test_strings_and_lists(self):
        self.assertEqual(grid.text(grid.getUserLogin), LONG)
        self.assertEqual(grid.text(grid.getProjectParamValue, self.project, "a"), "é€😀")
        self.assertIn("n\0n", grid.text(grid.getProjectDescription, self.project))
        self.assertEqual(grid.text(grid.getJavaSystemProperty, "no.such"), "")
        self.assertEqual(grid.list(grid.getProjectParamName, self.project), ["a", "b"])
        self.assertEqual(grid.list(grid.getResultFiles, self.project), [])
        many = [f"k{i}=v" for i in range(3000)]
        grid.check(grid.setProjectParams(self.project, many))
        self.assertEqual(grid.getProjectParamCount(self.project), 3002)
        self.assertRaises(TypeError, grid.setProjectParams, self.project, "k=v")
        self.assertRaises(TypeError, grid.setLogLevel)

    def test_a_loop_of_calls_keeps_nothing(self):
        """What the calls of each line make is several times the heap."""
        for _ in range(700):
            grid.check(grid.peach_setName(self.peach, LONG))
            grid.check(grid.peach_setJobFileNames(self.peach, [LONG]))
            grid.text(grid.getUserLogin)
        for _ in range(200000):
            grid.check(grid.peach_setName(self.peach, LONG[:1000]))

    def test_a_thread_leaves_when_its_attachment_ends(self):
        attached = []

        def use():
            with grid.attachment():
                with grid.attachment():
                    pass
                grid.check(grid.open())
                attached.append(grid._frames._present_env() is not None)
            attached.append(grid._frames._present_env() is not None)

        thread = threading.Thread(target=use)
        thread.start()
        thread.join()
        self.assertEqual(attached, [True, False])

    def test_a_receiver_is_kept_and_may_raise(self):
        received = []
        self.addCleanup(setattr, sys, "unraisablehook", sys.unraisablehook)
        sys.unraisablehook = lambda _: None
        grid.check(grid.peach_setExecutable(self.peach, "echo one; echo two"))
        grid.check(grid.peach_setIntermediateResultHandler(
            self.peach, lambda text: received.append(text) or 1 / 0))
        grid.check(grid.peach_execute(self.peach))
        self.assertEqual(received, ["1:one", "1:two"])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
