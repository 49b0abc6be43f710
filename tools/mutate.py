#!/usr/bin/env python3
"""Asks which test would notice: changes one operator, number or condition at a time, builds and runs
the tests of that folder, and lists what no test has noticed.

usage: tools/mutate.py [options] FILE_OR_FOLDER...
  tools/mutate.py src/core --sample 20
  tools/mutate.py src/shell/undo.cpp --tests shell_tests
  tools/mutate.py src/drivers/dx7/files.cpp --list

All of it happens in a copy of the tree below build/, so the tree itself is never changed. The tests
of src/X are those of tests/X, or of the folder above it that has tests; --tests names others. A
change that does not compile says nothing about the tests and is left out of the count; one that
hangs the tests is noticed. Prints a line a survivor as soon as it is known,

  src/core/undo_level.cpp:18: < -> <=    for (int row = 0; row < rows; ++row) {

and ends with 0 whether or not there are survivors, with 1 when the unchanged tree does not build or
fails its tests.
"""
import argparse
import dataclasses
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import sys
import time

NOT_COPIED = {".git", ".cache", "build", "run-output"}

# What an operator between blanks becomes, and a word.
OPERATORS = {
    "==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">",
    "&&": "||", "||": "&&", "+": "-", "-": "+", "*": "/", "/": "*", "%": "/",
    "+=": "-=", "-=": "+=", "*=": "/=", "&": "|", "|": "&", "^": "|", "<<": ">>", ">>": "<<",
    "|=": "&=", "&=": "|=",
}
PREFIXES = {"++": "--", "--": "++"}
WORDS = {"true": "false", "false": "true", "break": "continue", "continue": "break"}

OPERATOR = re.compile(r"(?<=\s)(%s)(?=\s)" %
                      "|".join(re.escape(o) for o in sorted(OPERATORS, key=len, reverse=True)))
PREFIX = re.compile(r"\+\+|--")
WORD = re.compile(r"\b(%s)\b" % "|".join(WORDS))
NOT = re.compile(r"!(?=[\w(*])")
NUMBER = re.compile(r"(?<![\w.'])(0[xX][0-9a-fA-F]+|\d+)(?=[uUlL]*(?![\w.']))|"
                    r"(?<![\w.'])\d+\.\d+(?=[fF]?\b)")
CONDITION = re.compile(r"\b(if|while) \(")

# What is no code, or is judged by the compiler alone.
BLANKED = re.compile(r"""//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|(?<![0-9a-fA-F])'(?:\\.|[^'\\\n])+'"""
                     r"""|^[ \t]*\#(?:\\\n|[^\n])*|\bstatic_assert\(.*?\);""", re.DOTALL | re.MULTILINE)


@dataclasses.dataclass(frozen=True)
class Mutation:
    file: str  # below the root, with forward slashes
    start: int
    end: int
    new: str
    line: int
    old: str
    text: str  # the line that it stands in

    def __str__(self):
        return f"{self.file}:{self.line}: {self.old} -> {self.new}    {self.text}"


def other_number(number):
    """The number beside this one, written in the same way."""
    if number[:2] in ("0x", "0X"):
        return f"0x{int(number, 16) + 1:0{len(number) - 2}X}"
    if "." in number:
        return str(float(number) + 1)
    if len(number) > 1 and number[0] == "0":
        return "0" + format(int(number, 8) + 1, "o")
    return str(int(number) + 1)


def closing_parenthesis(code, start):
    """The place of the parenthesis that closes the one at `start`, or None."""
    depth = 0
    for i in range(start, len(code)):
        depth += (code[i] == "(") - (code[i] == ")")
        if depth == 0:
            return i
    return None


def mutations_of(file, source):
    """Every mutation of a file's text, from top to bottom."""
    # Blanks in place of what is left alone, so that places stay.
    code = BLANKED.sub(lambda match: re.sub(r"[^\n]", " ", match.group()), source)
    found = []

    def add(start, end, new):
        line = source.count("\n", 0, start)
        old = source[start:end]
        found.append(Mutation(file, start, end, new, line + 1, " ".join(old.split()),
                              source.split("\n")[line].strip()))

    for match in OPERATOR.finditer(code):
        add(match.start(), match.end(), OPERATORS[match.group()])
    for match in PREFIX.finditer(code):
        add(match.start(), match.end(), PREFIXES[match.group()])
    for match in WORD.finditer(code):
        add(match.start(), match.end(), WORDS[match.group()])
    for match in NOT.finditer(code):
        add(match.start(), match.end(), "")
    for match in NUMBER.finditer(code):
        add(match.start(), match.end(), other_number(match.group()))
    for match in CONDITION.finditer(code):
        start, end = match.end() - 1, closing_parenthesis(code, match.end() - 1)
        if end is not None and ";" not in code[start:end]:  # without a declaration in front
            add(start, end + 1, f"(!{' '.join(source[start:end + 1].split())})")
    return sorted(found, key=lambda mutation: (mutation.start, mutation.end))


def test_program_of(root, file):
    """The test program of a source file by the place of the folders, or None."""
    folder = pathlib.PurePosixPath(file).parent
    while folder.parts and folder.parts[0] == "src" and len(folder.parts) > 1:
        tests = pathlib.PurePosixPath("tests", *folder.parts[1:])
        if any((root / tests).glob("*.cpp")):
            return "_".join(tests.parts[1:]) + "_tests"
        folder = folder.parent
    return None


def copy_tree(source, copy):
    """Makes `copy` the same as `source`; what is the same already keeps its time, so that a second
    build has little to do."""
    seen = set()
    for folder, folders, files in os.walk(source):
        folders[:] = [name for name in folders if name not in NOT_COPIED]
        below = pathlib.Path(folder).relative_to(source)
        seen.add(below)
        (copy / below).mkdir(parents=True, exist_ok=True)
        for name in files:
            seen.add(below / name)
            here, there = pathlib.Path(folder, name), copy / below / name
            if not there.exists() or here.read_bytes() != there.read_bytes():
                shutil.copyfile(here, there)
            shutil.copymode(here, there)
    for folder, folders, files in os.walk(copy):
        folders[:] = [name for name in folders if name not in NOT_COPIED]
        below = pathlib.Path(folder).relative_to(copy)
        for name in files:
            if below / name not in seen:
                pathlib.Path(folder, name).unlink()


class Workshop:
    """The copy of the tree, and how it is built and tested."""

    def __init__(self, copy, preset, jobs):
        self.copy, self.jobs = copy, jobs
        self.build_folder = copy / "build" / preset
        self.preset = preset

    def run(self, command, limit=None):
        """Runs a command with everything that it starts; whether it ended well and in time."""
        with subprocess.Popen(command, cwd=self.copy, start_new_session=True, text=True,
                              errors="replace",
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT) as process:
            try:
                self.output, _ = process.communicate(timeout=limit)
            except BaseException as reason:
                os.killpg(process.pid, signal.SIGKILL)
                if isinstance(reason, subprocess.TimeoutExpired):
                    self.output = "out of time"
                    return False
                raise
        return process.returncode == 0

    def configure(self):
        return self.run(["cmake", "--preset", self.preset])

    def build(self, programs):
        return self.run(["ninja", "-C", str(self.build_folder), f"-j{self.jobs}", *programs])

    def test(self, programs, limit=None):
        names = "|".join(re.escape(program) for program in programs)
        return self.run(["ctest", "--test-dir", str(self.build_folder), "--stop-on-failure",
                         "--no-tests=error", "--output-on-failure", f"-j{self.jobs}",
                         "-R", rf"^({names})(\.|$)"], limit)

    def say_why_and_leave(self, what):
        print(f"{what}:\n{self.output[-4000:]}", file=sys.stderr)
        sys.exit(1)


def sources(root, paths):
    """The C++ files among `paths`, relative to `root`."""
    for name in paths:
        path = (root / name).resolve()
        if not path.exists():
            sys.exit(f"{name}: no such file or folder")
        files = [path] if path.is_file() else path.rglob("*")
        for file in sorted(files):
            if file.suffix in (".cpp", ".h"):
                yield file.relative_to(root).as_posix()


def arguments():
    summary, rest = __doc__.split("\n\n", 1)
    parser = argparse.ArgumentParser(description=summary, epilog=rest,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("paths", nargs="+", metavar="FILE_OR_FOLDER")
    parser.add_argument("--list", action="store_true", help="print the changes, make none")
    parser.add_argument("--sample", type=int, help="so many of them, chosen at random")
    parser.add_argument("--seed", type=int, default=1, help="of the choice (default 1)")
    parser.add_argument("--tests", help="test programs, separated by commas")
    parser.add_argument("--jobs", type=int, default=1, help="of ninja and ctest (default 1)")
    parser.add_argument("--preset", default="dev", help="how it is built (default dev)")
    parser.add_argument("--root", type=pathlib.Path, help="the tree (default: the one of this script)",
                        default=pathlib.Path(__file__).parent.parent)
    parser.add_argument("--copy", type=pathlib.Path, help="the copy (default: ROOT/build/mutated)")
    return parser.parse_args()


def main():
    options = arguments()
    root = options.root.resolve()
    all_of_them = []
    for file in sources(root, options.paths):
        all_of_them += mutations_of(file, (root / file).read_text(encoding="utf-8"))
    chosen = all_of_them
    if options.sample is not None and options.sample < len(chosen):
        chosen = random.Random(options.seed).sample(chosen, options.sample)
        chosen.sort(key=lambda mutation: (mutation.file, mutation.start))
    if options.list:
        print(*chosen, sep="\n")
        return

    programs_of = {}
    for mutation in chosen:
        named = options.tests.split(",") if options.tests else [test_program_of(root, mutation.file)]
        if named == [None]:
            sys.exit(f"{mutation.file}: no folder of tests, so --tests has to name them")
        programs_of[mutation.file] = named
    copy = (options.copy or root / "build" / "mutated").resolve()
    copy_tree(root, copy)
    shop = Workshop(copy, options.preset, options.jobs)
    if not shop.configure():
        shop.say_why_and_leave("the unchanged tree cannot be configured")

    limits = {}  # seconds for the tests of each set of programs, from what they take unchanged
    for programs in set(map(tuple, programs_of.values())):
        if not shop.build(programs):
            shop.say_why_and_leave("the unchanged tree does not build")
        start = time.monotonic()
        if not shop.test(programs):
            shop.say_why_and_leave("the unchanged tree fails its tests")
        limits[programs] = 10 + 4 * (time.monotonic() - start)

    noticed = survived = uncompiled = 0
    for mutation in chosen:
        programs = tuple(programs_of[mutation.file])
        file = copy / mutation.file
        original = file.read_text(encoding="utf-8")
        try:
            file.write_text(original[:mutation.start] + mutation.new + original[mutation.end:],
                            encoding="utf-8")
            if not shop.build(programs):
                uncompiled += 1
            elif not shop.test(programs, limits[programs]):
                noticed += 1
            else:
                survived += 1
                print(mutation, flush=True)
        finally:
            file.write_text(original, encoding="utf-8")
    print(f"{len(chosen)} of {len(all_of_them)} changes (seed {options.seed}): {noticed} noticed, "
          f"{survived} survived, {uncompiled} did not compile")


def interrupt(*_):
    raise KeyboardInterrupt


if __name__ == "__main__":
    signal.signal(signal.SIGINT, interrupt)
    signal.signal(signal.SIGTERM, interrupt)
    try:
        main()
    except KeyboardInterrupt:
        sys.exit(130)
