#!/usr/bin/env python3
"""Checks tools/mutate.py: what it finds in a text, and what it says of a small project whose tests
see one half of it.

usage: mutate_test.py
"""
import pathlib
import subprocess
import sys
import tempfile
import time
import unittest

ROOT = pathlib.Path(__file__).parent.parent.parent
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "tools"))
import mutate  # noqa: E402

PROJECT = {
    "CMakeLists.txt": """
cmake_minimum_required(VERSION 3.25)
project(Small LANGUAGES CXX)
enable_testing()
add_executable(core_tests src/core/sum.cpp tests/core/sum_test.cpp)
target_include_directories(core_tests PRIVATE src)
add_test(NAME core_tests COMMAND core_tests)
add_test(NAME core_tests_of_another_name COMMAND false)
""",
    "CMakePresets.json": """
{"version": 6, "configurePresets": [
  {"name": "dev", "generator": "Ninja", "binaryDir": "${sourceDir}/build/dev",
   "cacheVariables": {"CMAKE_BUILD_TYPE": "Debug"}}]}
""",
    "src/core/sum.h": "int Sum(int count);\nint Unseen(int number);\n",
    "src/core/sum.cpp": """#include "core/sum.h"
int Sum(int count) {
    return count == 0 ? 0 : count + Sum(count - 1);
}
int Unseen(int number) {
    return number * 0x0F;
}
int *Nothing = 0;
""",
    "tests/core/sum_test.cpp": """#include "core/sum.h"
int main() { return Sum(4) == 10 ? 0 : 1; }
""",
}


def changes(source):
    """The mutations of a text as "old -> new"."""
    return [f"{found.old} -> {found.new}" for found in mutate.mutations_of("file", source)]


class Generator(unittest.TestCase):
    def test_one_operator_number_or_condition_at_a_time(self):
        self.assertEqual(changes("x = a < 9;"), ["< -> <=", "9 -> 10"])
        self.assertEqual(changes("x += y << z;"), ["+= -> -=", "<< -> >>"])
        self.assertEqual(changes("++i;"), ["++ -> --"])
        self.assertEqual(changes("return !x || true;"), ["! -> ", "|| -> &&", "true -> false"])
        self.assertEqual(changes("if (a(b)) {"), ["(a(b)) -> (!(a(b)))"])

    def test_a_number_stays_as_it_is_written(self):
        self.assertEqual(changes("f(0x0Fu, 9);"), ["0x0F -> 0x10", "9 -> 10"])
        self.assertEqual(changes("f(0x7f);"), ["0x7f -> 0x80"])
        self.assertEqual(changes("f(017);"), ["017 -> 020"])
        self.assertEqual(changes("f(1.5f);"), ["1.5 -> 2.5"])

    def test_types_and_what_is_no_code_are_left_alone(self):
        self.assertEqual(changes("std::vector<std::uint8_t> *x; // 1 < 2"), [])
        self.assertEqual(changes('#define A 1\nf("1 < 2", \'1\');\n/* 1\n 2 */'), [])
        self.assertEqual(changes("static_assert(A == 1,\n\"text\");"), [])

    def test_a_change_knows_its_place(self):
        found = mutate.mutations_of("file", "// one\n\n  a = 1'000 - 2; // 3\n")
        self.assertEqual([str(one) for one in found],
                         ["file:3: - -> +    a = 1'000 - 2; // 3",
                          "file:3: 2 -> 3    a = 1'000 - 2; // 3"])


class Project(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.root = pathlib.Path(self.folder.name)
        for name, text in PROJECT.items():
            (self.root / name).parent.mkdir(parents=True, exist_ok=True)
            (self.root / name).write_text(text)

    def tearDown(self):
        self.folder.cleanup()

    def command(self, *options):
        return [sys.executable, str(ROOT / "tools" / "mutate.py"), "--root", str(self.root),
                str(self.root / "src" / "core"), *options]

    def mutate(self, *options):
        return subprocess.run(self.command(*options), stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True)

    def check_sources(self, root):
        for name, text in PROJECT.items():
            self.assertEqual((root / name).read_text(), text)

    def test_what_no_test_notices_survives(self):
        done = self.mutate()
        self.assertEqual(done.stderr, "")
        self.assertEqual(done.returncode, 0)
        self.assertEqual(done.stdout.splitlines(), [
            "src/core/sum.cpp:6: * -> /    return number * 0x0F;",
            "src/core/sum.cpp:6: 0x0F -> 0x10    return number * 0x0F;",
            # Noticed: all six of Sum, the endless recursion among them; a pointer is no 1.
            "9 of 9 changes (seed 1): 6 noticed, 2 survived, 1 did not compile"])
        self.check_sources(self.root)
        self.check_sources(self.root / "build" / "mutated")

    def test_a_sample_is_the_same_again(self):
        first = self.mutate("--list", "--sample", "3", "--seed", "5").stdout.splitlines()
        self.assertEqual(len(first), 3)
        self.assertEqual(first, self.mutate("--list", "--sample", "3",
                                            "--seed", "5").stdout.splitlines())
        self.assertFalse((self.root / "build").exists())

    def test_tests_that_fail_already_are_told(self):
        (self.root / "tests/core/sum_test.cpp").write_text("int main() { return 1; }\n")
        done = self.mutate()
        self.assertEqual(done.returncode, 1)
        self.assertIn("the unchanged tree fails its tests", done.stderr)

    def test_an_interruption_puts_the_copy_back(self):
        # The tests hang from the first change on, so that one is there to be seen.
        (self.root / "tests/core/sum_test.cpp").write_text("""#include "core/sum.h"
int main() { while (Sum(4) != 10) {} return 0; }
""")
        changed = self.root / "build" / "mutated" / "src" / "core" / "sum.cpp"
        process = subprocess.Popen(self.command(), stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, text=True)
        end = time.monotonic() + 60
        while not changed.exists() or changed.read_text() in ("", PROJECT["src/core/sum.cpp"]):
            self.assertLess(time.monotonic(), end)
            self.assertIsNone(process.poll())
            time.sleep(0.01)
        process.terminate()
        process.communicate(timeout=60)
        self.assertEqual(process.returncode, 130)
        self.assertEqual(changed.read_text(), PROJECT["src/core/sum.cpp"])


if __name__ == "__main__":
    unittest.main()
