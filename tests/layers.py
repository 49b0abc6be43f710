#!/usr/bin/env python3
"""Checks that the source keeps to its layers.

usage: layers.py SOURCE_DIR BUILD_DIR

Fails when a Qt header is included outside view/ folders, src/cli/ and src/main.cpp, when a lower
layer includes a higher one, when neighbours include what they are not to know of each other, when
units of a folder use each other in a circle, when a platform #ifdef stands outside the platform
files, when a library's header is included by other files than the one that stands for the library, or
when a source file is compiled by no target of the build. A theme includes neither the program nor
another theme, and the program nothing of themes but their interface.

A unit is a header with its sources: history.h with history.cpp, file_time.h with
file_time_posix.cpp.
"""
import json
import pathlib
import re
import sys

# Layer of each folder below src/; a file includes only its own layer and lower ones.
LAYERS = {"common": 0, "core": 1, "synth": 1, "midi": 2, "database": 3, "drivers": 4, "extras": 5,
          "shell": 6, "cli": 7}
SUFFIXES = (".cpp", ".h", ".inc")
# What files of a folder do not include, though its layer would allow it: each pair is a folder (or
# a file) and the folder or header that it is to know nothing of. The families, each a folder below
# drivers/, are to know nothing of each other either.
STRANGERS = [
    ("drivers", "midi/instruments"),
    ("midi/instruments", "midi/sysex.h"),
    # The sound of voices, which only the instruments that play them know.
    ("synth", "core"),
    ("core", "synth"),
    ("database", "synth"),
    ("drivers", "synth"),
]
# Ends of the names of files that are compiled for Windows only, or where a library is missing.
ELSEWHERE = ("_windows.cpp", "_none.cpp")
PLATFORM_FILE = re.compile(r"_(posix|windows|alsa|processor)\.(cpp|h)$")
PLATFORM_MACRO = re.compile(r"#\s*(if|ifdef|ifndef|elif).*\b(_WIN32|WIN32|_MSC_VER|__linux__|__APPLE__"
                            r"|__unix__|__CYGWIN__|__MINGW\w*)")
# The interface of themes, and what loads them, the only place of the program that knows it.
THEME_INTERFACE = "tonewright_theme.h"
THEME_LOADER = re.compile(r"common/view/theme(_library|_picture)?\.h$")
# Headers of libraries that one file alone knows, which stands between them and the program.
LIBRARY_ROOMS = {
    "portaudio.h": "common/audio_output_portaudio.cpp",
    "portmidi.h": "midi/portmidi_api.cpp",
    "porttime.h": "midi/portmidi_api.cpp",
    "sqlite3.h": "extras/sqlite_database.cpp",
}
# What the build makes for every theme.
EMBEDDED_PICTURES = "embedded_pictures.inc"
INCLUDE = re.compile(r'\s*#\s*include\s*([<"])([^>"]+)[>"]')


def layer_of(path):
    return LAYERS.get(path.parts[0])


def may_use_qt(path):
    return "view" in path.parts or path.parts[0] == "cli" or str(path) == "main.cpp"


def family_of(path):
    """The folder of the family that a file belongs to; None for what all families share."""
    if len(path.parts) > 2 and path.parts[0] == "drivers" and path.parts[1] != "view":
        return "/".join(path.parts[:2])
    return None


def strangers_of(path, included):
    """Pairs of a folder with `path` and one with `included` of which it is to know nothing."""
    pairs = [(here, stranger) for here, stranger in STRANGERS
             if path.is_relative_to(here) and included.is_relative_to(stranger)]
    own, other = family_of(path), family_of(included)
    if own and other and own != other:
        pairs.append((own, other))
    return pairs


def check_file(source, path, problems):
    text = (source / path).read_text(encoding="utf-8")
    is_view = "view" in path.parts
    for number, line in enumerate(text.splitlines(), 1):
        where = f"src/{path}:{number}"
        if PLATFORM_MACRO.search(line) and not PLATFORM_FILE.search(path.name):
            problems.append(f"{where}: platform macro outside the platform files")
        match = INCLUDE.match(line)
        if not match:
            continue
        header = match.group(2)
        if re.match(r"(Qt|Q[A-Z])", header) and not may_use_qt(path):
            problems.append(f"{where}: Qt header {header} in the engine")
        if header in LIBRARY_ROOMS and str(path) != LIBRARY_ROOMS[header]:
            problems.append(f"{where}: only {LIBRARY_ROOMS[header]} is to know {header}")
        if match.group(1) == "<" or path.name == "main.cpp":
            continue
        included = pathlib.PurePosixPath(header)
        if included.name == THEME_INTERFACE and not THEME_LOADER.match(str(path)):
            problems.append(f"{where}: only what loads themes knows {header}")
        if included.parts[0] in ("shared", "base", "slate", "themes"):
            problems.append(f"{where}: the program is to know nothing of {header}")
        upper, own = layer_of(included), layer_of(path)
        if upper is not None and own is not None and upper > own:
            problems.append(f"{where}: {path.parts[0]} includes {header} of a higher layer")
        for here, stranger in strangers_of(path, included):
            problems.append(f"{where}: {here} is to know nothing of {stranger}")
        joins_views = path.parts[0] in ("drivers", "cli") and not is_view
        if "view" in included.parts and not is_view and not may_use_qt(path):
            if not (joins_views and path.name in ("driver.cpp", "synth_driver_table.cpp")):
                problems.append(f"{where}: engine code includes the view {header}")


def check_theme_file(themes, path, problems):
    """A file of a theme, its folder the first part of `path`."""
    text = (themes / path).read_text(encoding="utf-8")
    for number, line in enumerate(text.splitlines(), 1):
        where = f"themes/{path}:{number}"
        if PLATFORM_MACRO.search(line) and path.name != THEME_INTERFACE:
            problems.append(f"{where}: platform macro outside the platform files")
        match = INCLUDE.match(line)
        if not match or match.group(1) == "<" or match.group(2) == EMBEDDED_PICTURES:
            continue
        included = pathlib.PurePosixPath(match.group(2))
        folders = ("shared", path.parts[0])
        if included.parts[0] not in folders and str(included) != THEME_INTERFACE:
            problems.append(f"{where}: a theme is to know nothing of {included}")


def unit_of(path):
    """The unit of a file: its path without what follows the name."""
    return path.with_name(PLATFORM_FILE.sub("", path.name)).with_suffix("")


def uses_within(folder, source):
    """For each unit of one folder the others of it that it includes."""
    uses = {}
    for file in sorted(folder.iterdir()):
        if file.suffix not in SUFFIXES:
            continue
        path = pathlib.PurePosixPath(file.relative_to(source))
        used = uses.setdefault(unit_of(path), set())
        for line in file.read_text(encoding="utf-8").splitlines():
            match = INCLUDE.match(line)
            if not match or match.group(1) == "<":
                continue
            included = pathlib.PurePosixPath(match.group(2))
            if not (source / included).is_file():
                included = path.parent / included  # named from beside it
            if included.parent == path.parent and unit_of(included) != unit_of(path):
                used.add(unit_of(included))
    return uses


def shortest_way(uses, start, end):
    """The units from `start` to `end`, each using the next; None when there is no way."""
    ways, seen = [[start]], {start}
    for way in ways:
        for unit in sorted(uses.get(way[-1], ())):
            if unit == end:
                return way + [unit]
            if unit not in seen:
                seen.add(unit)
                ways.append(way + [unit])
    return None


def circles(source):
    """Every circle of units within a folder that is the shortest through one of its units."""
    found = {}
    for folder in sorted(path for path in [source, *source.rglob("*")] if path.is_dir()):
        uses = uses_within(folder, source)
        for unit in uses:
            way = shortest_way(uses, unit, unit)
            if way:
                found.setdefault(frozenset(way), way)
    return [" uses ".join(str(unit) for unit in way) for way in found.values()]


def check_source(source):
    problems = []
    for file in sorted(source.rglob("*")):
        if file.suffix in SUFFIXES:
            check_file(source, pathlib.PurePosixPath(file.relative_to(source)), problems)
    return problems + [f"a circle: {circle}" for circle in circles(source)]


def check_themes(themes):
    problems = []
    for file in sorted(themes.rglob("*")):
        if file.suffix in SUFFIXES:
            check_theme_file(themes, pathlib.PurePosixPath(file.relative_to(themes)), problems)
    return problems + [f"a circle: {circle}" for circle in circles(themes)]


def main():
    root, build = map(pathlib.Path, sys.argv[1:3])
    source = root / "src"
    themes = root / "themes"
    problems = check_source(source) + check_themes(themes)
    compiled = {
        pathlib.Path(entry["directory"], entry["file"]).resolve()
        for entry in json.loads((build / "compile_commands.json").read_text())
    }
    for file in sorted([*source.rglob("*.cpp"), *themes.rglob("*.cpp")]):
        if not file.name.endswith(ELSEWHERE) and file.resolve() not in compiled:
            problems.append(f"{file.relative_to(root)}: compiled by no target")
    if not compiled:
        problems.append("compile_commands.json is empty")
    print("\n".join(problems) or "layers ok")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
