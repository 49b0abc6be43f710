#!/usr/bin/env python3
"""Checks that every setting is read by something.

usage: settings_readers.py SOURCE_DIR

A row of a list of settings reads and writes its line by itself; what the program does with the value
stands elsewhere below src/. Fails when a setting has no reader there, when one of those that are kept
for the files of other versions only has got one, or when a list has no row of such a name.
"""
import pathlib
import re
import sys

# Kept in the file for its own sake: nothing that the program does depends on them.
WITHOUT_READER = {"DialogUpdateTime", "FileMenuRange", "ImageFileOpenIndex", "PatchLevel",
                  "RememberFileHistoryCover", "ShowDriverMessage"}
ROW = re.compile(r"^SETTING\(\w+, (\w+),", re.MULTILINE)
# Comments, and texts, which may tell the name of a setting.
WORDS = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"', re.DOTALL)
SUFFIXES = (".cpp", ".h", ".inc")


def settings_of(source):
    """The names of all settings, and the files with their rows."""
    names, lists = [], []
    for file in sorted(source.glob("common/*_settings.inc")):
        lists.append(file)
        names += ROW.findall(file.read_text(encoding="utf-8"))
    return names, lists


def readers_of(names, code):
    """Those of the names that the code does something else with than to give them a value."""
    used = re.compile(r"\b(" + "|".join(names) + r")\b(?!\s*=[^=])")
    return {match.group(1) for match in used.finditer(WORDS.sub("", code))}


def check_source(source):
    names, lists = settings_of(source)
    if not names:
        return ["no setting found"]
    read = set()
    for file in source.rglob("*"):
        if file.suffix in SUFFIXES and file not in lists:
            read |= readers_of(names, file.read_text(encoding="utf-8"))
    problems = [f"{name}: nothing reads this setting" for name in names
                if name not in read | WITHOUT_READER]
    problems += [f"{name}: has a reader now" for name in sorted(WITHOUT_READER & read)]
    problems += [f"{name}: no such setting" for name in sorted(WITHOUT_READER - set(names))]
    return problems


def main():
    problems = check_source(pathlib.Path(sys.argv[1], "src"))
    print("\n".join(problems))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
