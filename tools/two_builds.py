"""What the programs that hold two builds of Tonewright against each other have in common: their
arguments, the folder that they work in, and what they end with."""
import argparse
import pathlib
import shutil
import tempfile


def compare_two_builds(summary, compare):
    """Calls compare(before, after, folder) with the two build folders of the command line and a
    folder to work in, which goes afterwards unless --keep names it. It answers lines that name what
    differs, and a last line about all of it. The result is the status to exit with."""
    parser = argparse.ArgumentParser(description=summary)
    parser.add_argument("before", type=pathlib.Path)
    parser.add_argument("after", type=pathlib.Path)
    parser.add_argument("--keep", metavar="FOLDER")
    arguments = parser.parse_args()
    folder = pathlib.Path(arguments.keep or tempfile.mkdtemp()).resolve()
    try:
        found, total = compare(arguments.before.resolve(), arguments.after.resolve(), folder)
    finally:
        if not arguments.keep:
            shutil.rmtree(folder, ignore_errors=True)
    print("\n".join([*found, total]))
    return 1 if found else 0
