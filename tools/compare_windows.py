#!/usr/bin/env python3
"""Compares what two builds of the program show on a real X server.

usage: compare_windows.py BEFORE AFTER [--keep FOLDER]

BEFORE and AFTER are build folders that hold tonewright. Each build is started with the example bank
and the built-in instruments on a server of its own, driven by keys and mouse through menus, boxes
and commands, and photographed after each step. Ends with 0 when every picture is the same, else with
1 after naming those that differ; --keep leaves the pictures there to look at. Needs the packages
xvfb, xdotool, jwm and imagemagick.
"""
import os
import pathlib
import shutil
import subprocess
import sys
import time

sys.dont_write_bytecode = True
from two_builds import compare_two_builds  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parent.parent
SCREEN = "1280x1024x24"

# Name of the picture, and what xdotool does before it is taken, in steps parted by semicolons.
STEPS = (
    ("main", ""),
    ("file-menu", "key alt+f"),
    ("edit-menu", "key Escape Escape; key alt+e"),
    ("help-menu", "key Escape Escape; key alt+h"),
    ("settings-1", "key Escape Escape; key alt+f; key t"),
    ("settings-2", "key ctrl+Tab"),
    ("select-synth", "key Escape; key alt+e; key s"),
    ("midi-devices", "key Escape; key alt+e; key m"),
    ("about", "key Escape; key alt+h; key a"),
    ("selected-row", "key Escape; mousemove 300 300 click 1"),
    ("keys", "key Down; key Down; key Next"),
    ("end", "key End"),
    ("home", "key Home"),
    ("context-menu", "mousemove 300 400 click 3"),
    ("moved", "key Escape; mousemove 300 200 mousedown 1; mousemove 300 260; mousemove 300 330; mouseup 1"),
    ("undone", "key ctrl+z"),
    ("pasted", "mousemove 300 200 click 1; key ctrl+c; mousemove 300 330 click 1; key ctrl+v"),
    ("audition", "mousemove 300 200 click 2"),
    ("audition-key", "mousemove 620 600 mousedown 1"),
)


def wait_until_still(take):
    """The picture that stands when two in a row are the same."""
    last = None
    for _ in range(40):
        time.sleep(0.25)
        picture = take()
        if picture == last:
            break
        last = picture
    return picture


def photograph(build, folder):
    folder.mkdir(parents=True)
    number = os.getpid() % 1000 + 100
    home = folder.parent / "home"  # the same for both, since the window shows paths
    (home / "config/Quillbrook").mkdir(parents=True)
    (home / "config/Quillbrook/Tonewright 17.ini").write_text(
        "[Tonewright]\nSelectKeyboardName = Yamaha DX7, TX7, Korg Volca FM\n"
        "SelectKeyboardMidiIn = Built-in DX7\nSelectKeyboardMidiOut = Built-in DX7\n"
        "ShowStartupWindow = 0\nShowTipOfTheDay = 0\nShowWelcomeWizard = 0\n")
    environment = dict(os.environ, DISPLAY=f":{number}", HOME=str(home), LC_ALL="C.UTF-8",
                       XDG_CONFIG_HOME=str(home / "config"), XDG_RUNTIME_DIR=str(home),
                       TONEWRIGHT_INSTRUMENTS="1", QT_QPA_PLATFORM="xcb")
    (home / "jwmrc").write_text('<?xml version="1.0"?><JWM></JWM>')  # no clock on the screen
    bank = home / "bank.syx"
    shutil.copy(ROOT / "examples/tonewright.syx", bank)
    started = []

    def start(*words):
        started.append(subprocess.Popen(words, env=environment, cwd=home,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))

    def take():
        return subprocess.run(["import", "-window", "root", "rgb:-"], env=environment, check=True,
                              capture_output=True).stdout

    try:
        start("Xvfb", f":{number}", "-screen", "0", SCREEN)
        time.sleep(2)
        start("jwm", "-f", "jwmrc")
        time.sleep(2)
        start(str(build / "tonewright"), str(bank))
        time.sleep(4)
        pictures = {}
        for name, action in STEPS:
            for part in action.split(";") if action else ():
                subprocess.run(["xdotool", *part.split()], env=environment, check=True)
                time.sleep(0.4)
            pictures[name] = wait_until_still(take)
            subprocess.run(["import", "-window", "root", str(folder / f"{name}.png")],
                           env=environment, check=True)
        return pictures
    finally:
        for process in reversed(started):
            process.terminate()
            process.wait()
        shutil.rmtree(home, ignore_errors=True)


def compare(before, after, folder):
    old = photograph(before, folder / "before")
    new = photograph(after, folder / "after")
    found = [f"{name}: differs" for name, _ in STEPS if old[name] != new[name]]
    return found, f"{len(STEPS)} pictures, {len(found)} differ"


if __name__ == "__main__":
    sys.exit(compare_two_builds(__doc__.splitlines()[0], compare))
