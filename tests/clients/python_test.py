"""python_test.py PROJECT LIBRARY: the Python client, with a Python of the library's word size."""
import concurrent.futures
import math
import os
import pathlib
import signal
import struct
import subprocess
import sys
import tempfile
import threading
import time
import unittest

PROJECT, LIBRARY = map(pathlib.Path, sys.argv[1:])
sys.path.insert(0, str(PROJECT / "clients/python"))
import vantiro
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
        for project in (self.project + 2**32, self.project - 2**33):
            self.assertEqual(grid.getProjectParamCount(project), 3002)

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
                attached.append(grid._frames.present_env() is not None)
            attached.append(grid._frames.present_env() is not None)

        thread = threading.Thread(target=use)
        thread.start()
        thread.join()
        self.assertEqual(attached, [True, False])

    def test_a_receiver_is_kept_runs_in_the_waiting_thread_and_may_raise(self):
        received = []
        self.addCleanup(setattr, sys, "excepthook", sys.excepthook)
        sys.excepthook = lambda *_: None
        grid.check(grid.peach_setExecutable(self.peach, "echo one; echo two"))
        grid.check(grid.peach_setIntermediateResultHandler(
            self.peach, lambda text: received.append((text, threading.current_thread())) or 1 / 0))
        grid.check(grid.peach_execute(self.peach))
        main = threading.main_thread()
        self.assertEqual(received, [("1:one", main), ("1:two", main)])


def fail(number):
    raise KeyError(number)


class Jobs(unittest.TestCase):
    """What the standard library has for one machine."""

    @classmethod
    def setUpClass(cls):
        home = tempfile.TemporaryDirectory()
        cls.addClassCleanup(home.cleanup)
        grid.check(grid.initWithoutFile(home.name, None, None, None, 2, "OFF", None, 0, 0, None,
                                        None))
        cls.addClassCleanup(grid.unload2, 1, 1)

    def test_run_is_that_of_subprocess(self):
        for args, options in (
                (["sh", "-c", "cat; pwd; echo $A >&2; exit 3"],
                 {"input": "é\r\n", "text": True, "cwd": "/", "env": {"A": "b"},
                  "capture_output": True}),
                ("echo a; echo b >&2; kill -9 $$",
                 {"shell": True, "stdout": subprocess.PIPE, "stderr": subprocess.STDOUT})):
            here, there = (run(args, **options) for run in (
                subprocess.run, lambda *a, **k: vantiro.run(*a, grid=grid, **k)))
            self.assertEqual(vars(there), vars(here))
        with self.assertRaises(subprocess.CalledProcessError):
            vantiro.run("false", check=True, grid=grid)
        with self.assertRaises(subprocess.TimeoutExpired) as caught:
            vantiro.run("echo a; sleep 60", shell=True, timeout=1, stdout=-1, grid=grid)
        self.assertEqual(caught.exception.output, b"a\n")

    def test_executor(self):
        with vantiro.Executor(grid=grid, initializer=os.chdir, initargs=("/",)) as pool:
            running = pool.submit(time.sleep, 2)
            roots = pool.map(math.sqrt, range(10), chunksize=3)
            failed, broken = pool.submit(fail, 7), pool.submit(os._exit, 3)
            commands = pool.map(vantiro.run, [["true"], ["false"]])
            done = set(concurrent.futures.as_completed([failed, broken]))
            self.assertEqual(list(roots), [math.sqrt(number) for number in range(10)])
            self.assertEqual([command.returncode for command in commands], [0, 1])
            self.assertEqual(done, {failed, broken})
            self.assertEqual(failed.exception().args, (7,))
            self.assertIn("in fail", str(failed.exception().__cause__))
            self.assertRegex(str(broken.exception()), "exit status 3")
            self.assertIsInstance(broken.exception(), concurrent.futures.BrokenExecutor)
            self.assertEqual(pool.submit(os.getcwd).result(), "/")
            self.assertFalse(running.cancel())
        with vantiro.Executor(1, grid=grid) as pool:
            first, second, third = (pool.submit(time.sleep, 0.5) for _ in range(3))
            while not first.running():
                time.sleep(0.01)
            self.assertTrue(third.cancel())
            self.assertFalse(second.running())
        self.assertEqual([first.result(), second.result()], [None, None])
        self.assertRaises(RuntimeError, pool.submit, abs, 1)

    def test_projects_and_runs(self):
        with vantiro.Project("p", parameters={"a": 5}, grid=grid) as project:
            self.assertEqual(project.add("echo $VANTIRO_PARAM_a; exit $VANTIRO_JOB"), 1)
            self.assertEqual(project.add(["echo", "b c"]), 2)
            outputs = {}
            with self.assertRaisesRegex(vantiro.Error, "job 1 .*exit status 1"):
                for result in project:
                    outputs[result.job] = result.read()
        self.assertEqual(outputs, {1: b"5\n", 2: b"b c\n"})
        with vantiro.Run("echo a > b", jobs=2, outputs=["b"], grid=grid) as run:
            self.assertEqual([path.read_text() for path in run], ["a\n", "a\n"])

    def test_ctrl_c_ends_the_jobs_at_once(self):
        def execute():
            with vantiro.Run("sleep 60", grid=grid) as run:
                run.execute()

        def iterate():
            with vantiro.Project(grid=grid) as project:
                project.add("sleep 60")
                list(project)

        def submit():
            with vantiro.Executor(grid=grid) as pool:
                pool.submit(time.sleep, 60)

        for wait in (execute, iterate, submit, lambda: vantiro.run(["sleep", "60"], grid=grid)):
            timer = threading.Timer(0.5, os.kill, [os.getpid(), signal.SIGINT])
            timer.start()
            begin = time.monotonic()
            self.assertRaises(KeyboardInterrupt, wait)
            self.assertLess(time.monotonic() - begin, 20)
            timer.join()


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
