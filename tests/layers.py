#!/usr/bin/env python3
"""Checks that the source keeps to its layers.

usage: layers.py SOURCE_DIR BUILD_DIR

Fails when a Qt header is included outside view/ folders, src/cli/ and src/main.cpp, when a lower
layer includes a higher one, when a platform #ifdef stands outside the platform files, or when a
source file is compiled by no target of the build.
"""
import json
import pathlib
import re
import sys

# Layer of each folder below src/; a file includes only its own layer and lower ones.
LAYERS = {"common": 0, "core": 1, "midi": 2, "database": 2, "drivers": 3, "shell": 4, "cli": 5}
PLATFORM_FILE = re.compile(r"_(posix|windows|alsa)\.(cpp|h)$")
PLATFORM_MACRO = re.compile(r"#\s*(if|ifdef|ifndef|elif).*\b(_WIN32|WIN32|__linux__|__APPLE__|__unix__)")


def layer_of(path):
    return LAYERS.get(path.parts[0])


def may_use_qt(path):
    return "view" in path.parts or path.parts[0] == "cli" or str(path) == "main.cpp"


def check_file(source, path, problems):
    text = (source / path).read_text(encoding="utf-8")
    is_view = "view" in path.parts
    for number, line in enumerate(text.splitlines(), 1):
        where = f"src/{path}:{number}"
        if PLATFORM_MACRO.search(line) and not PLATFORM_FILE.search(path.name):
            problems.append(f"{where}: platform macro outside the platform files")
        match = re.match(r'\s*#\s*include\s*([<"])([^>"]+)[>"]', line)
        if not match:
            continue
        header = match.group(2)
        if re.match(r"(Qt|Q[A-Z])", header) and not may_use_qt(path):
            problems.append(f"{where}: Qt header {header} in the engine")
        if match.group(1) == "<" or path.name == "main.cpp":
            continue
        included = pathlib.PurePosixPath(header)
        upper, own = layer_of(included), layer_of(path)
        if upper is not None and own is not None and upper > own:
            problems.append(f"{where}: {path.parts[0]} includes {header} of a higher layer")
        joins_views = path.parts[0] in ("drivers", "cli") and not is_view
        if "view" in included.parts and not is_view and not may_use_qt(path):
            if not (joins_views and path.name in ("driver.cpp", "synth_driver_table.cpp")):
                problems.append(f"{where}: engine code includes the view {header}")


def main():
    root, build = map(pathlib.Path, sys.argv[1:3])
    source = root / "src"
    problems = []
    for file in sorted(source.rglob("*")):
        if file.suffix in (".cpp", ".h"):
            check_file(source, pathlib.PurePosixPath(file.relative_to(source)), problems)
    compiled = {
        pathlib.Path(entry["directory"], entry["file"]).resolve()
        for entry in json.loads((build / "compile_commands.json").read_text())
    }
    for file in sorted(source.rglob("*.cpp")):
        if not file.name.endswith("_windows.cpp") and file.resolve() not in compiled:
            problems.append(f"{file.relative_to(root)}: compiled by no target")
    if not compiled:
        problems.append("compile_commands.json is empty")
    print("\n".join(problems) or "layers ok")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
