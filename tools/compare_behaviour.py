#!/usr/bin/env python3
"""Compares what two builds of the program do, over the example bank and generated files.

usage: compare_behaviour.py BEFORE AFTER [--keep FOLDER]

BEFORE and AFTER are build folders that hold tonewright-cli. Each build does the same work in a
folder of its own: it lists, checks, saves, moves, exports and imports whole and damaged files of
both families, reads settings and history (wild ones too), changes settings, talks to the built-in
instruments, and paints the main window. Compared are exit statuses, what was printed, every MIDI
message (without its time), every file that was written and every pixel that was painted. Ends with
0 when all of it is the same, else with 1 after naming what differs; --keep leaves both folders
there to look at.
"""
import os
import pathlib
import random
import re
import subprocess
import sys

sys.dont_write_bytecode = True
from two_builds import compare_two_builds  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parent.parent
EXAMPLES = ROOT / "examples"


def checksum(data):
    return -sum(data) & 0x7F


def dx7_bank(seed):
    """A bulk dump of 32 voices; the names of some hold bytes that a careless reader trips over."""
    numbers = random.Random(seed)
    voices = bytearray()
    for voice in range(32):
        packed = bytearray(numbers.randrange(128) for _ in range(128))
        packed[110] = voice  # the algorithm
        packed[118:128] = (f"S{seed} V{voice:02}    "[:10]).encode()
        if voice == 3:
            packed[118:128] = b"tab\there\x01\x02"
        if voice == 4:
            packed[118:128] = b" " * 10
        voices += packed
    return b"\xF0\x43\x00\x09\x20\x00" + bytes(voices) + bytes([checksum(voices)]) + b"\xF7"


def dx7_voice(seed):
    numbers = random.Random(seed)
    voice = bytes(numbers.randrange(100) for _ in range(145)) + b"SOLO VOICE"
    return b"\xF0\x43\x00\x00\x01\x1B" + voice + bytes([checksum(voice)]) + b"\xF7"


def damaged(content):
    """Name and content of what may become of a file."""
    yield "empty", b""
    yield "one-byte", content[:1]
    yield "cut-in-half", content[: len(content) // 2]
    yield "last-byte-missing", content[:-1]
    yield "one-byte-more", content + b"\x00"
    yield "twice", content + content
    for place in (0, 1, 3, 4, 6, len(content) // 3, len(content) - 2, len(content) - 1):
        changed = bytearray(content)
        changed[place] ^= 0x15
        yield f"byte-{place}-changed", bytes(changed)


WILD_SETTINGS = {
    "empty": b"",
    "no-section": b"MaxUndoLevel = 7\n",
    "plain": b"[Tonewright]\r\nMaxUndoLevel = 7\r\nSysexWait = -1\r\nThemeCurrent = A B \r\n",
    "twice": b"[Tonewright]\nMaxUndoLevel = 7\nMaxUndoLevel = 9\n[Tonewright]\nSysexWait = 3\n",
    "sections": b"[Other]\nSysexWait = 1\n[tonewright]\nSysexWait = 2\n[Tonewright]\nSysexWait=4\n",
    "long": b"[Tonewright]\nOpenPath = " + b"x" * 700 + b"\nSysexWait = 9\n",
    "noise": bytes(random.Random(7).randrange(256) for _ in range(20000)),
    "feeds": b"\n" * 5000 + b"[Tonewright]\nSysexWait = 12\n",
}


class Session:
    """The work of one build, in a folder of its own."""

    def __init__(self, build, folder):
        self.cli = build / "tonewright-cli"
        self.folder = folder
        self.record = []
        folder.mkdir(parents=True)
        self.environment = {
            "PATH": os.environ["PATH"],
            "LC_ALL": "C.UTF-8",
            "TZ": "UTC",
            "HOME": str(folder / "home"),
            "XDG_CONFIG_HOME": str(folder / "home/config"),
            "XDG_RUNTIME_DIR": str(folder / "home"),
            "QT_QPA_PLATFORM": "offscreen",
            "TONEWRIGHT_INSTRUMENTS": "1",
        }
        (folder / "home/config/Quillbrook").mkdir(parents=True)

    def settings_file(self):
        return self.folder / "home/config/Quillbrook/Tonewright 17.ini"

    def run(self, *words):
        done = subprocess.run(
            [self.cli, *map(str, words)], cwd=self.folder, env=self.environment,
            stdin=subprocess.DEVNULL, capture_output=True, timeout=120)
        texts = [stream.decode("utf-8", "replace").replace(str(self.folder), "FOLDER")
                 for stream in (done.stdout, done.stderr)]
        # A traced message begins with the time; settings tell the day of the build and its folder.
        texts = [re.sub(r"^ *\d+\t(out|in)\t", r"TIME\t\1\t", text, flags=re.M) for text in texts]
        texts = [re.sub(r"^((?:BuildDate|ApplicationPath)\b).*$", r"\1", text, flags=re.M)
                 for text in texts]
        self.record.append((" ".join(map(str, words)), done.returncode, *texts))

    def write(self, name, content):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
        return name


def work_on_files(session):
    whole = {"example.syx": (EXAMPLES / "tonewright.syx").read_bytes()}
    whole |= {f"bank{seed}.syx": dx7_bank(seed) for seed in range(6)}
    whole |= {f"voice{seed}.sy1": dx7_voice(seed) for seed in range(4)}
    whole |= {file.name: file.read_bytes() for file in sorted(EXAMPLES.glob("*.sy1"))}
    for name in ("reface.srx", "reface1.sr1", "reface2.sr1"):
        whole[name] = (session.folder / name).read_bytes()
    for name, content in whole.items():
        session.write(name, content)
    names = list(whole)
    for name in names:
        stem, extension = name.rsplit(".", 1)
        for what, content in damaged(whole[name]):
            session.write(f"damaged/{stem}-{what}.{extension}", content)
    broken = sorted(str(file.relative_to(session.folder))
                    for file in (session.folder / "damaged").iterdir())
    session.write("strange.txt", b"no voice at all\n")
    session.run("check", *names, "strange.txt", "missing.syx", ".")
    session.run("list", *names, "strange.txt", "missing.syx")
    session.run("check", *broken)
    session.run("list", *broken)
    for number, name in enumerate(names + broken):
        extension = name.rsplit(".", 1)[1]
        if extension in ("syx", "srx"):
            session.run("save", name, f"saved/{number}.{extension}")
            for answer in ("--yes", "--no"):
                session.run("save", answer, name, f"saved{answer}-{number}.{extension}")
            session.run("export", "--yes", name, "3", f"export-{number}.{extension[:2]}1")
    for first, second in ((1, 1), (1, 32), (32, 1), (5, 7), (0, 1), (33, 1), (7, 5)):
        session.run("move", "example.syx", first, second, f"moved-{first}-{second}.syx")
        session.run("move", "reface.srx", first, second, f"moved-{first}-{second}.srx")
    voices = [name for name in names + broken if name[-4:] in (".sy1", ".sr1")]
    for number, name in enumerate(voices):
        bank = "example.syx" if name.endswith("sy1") else "reface.srx"
        session.run("import", "--yes", bank, 3, name, f"imported-{number}{bank[-4:]}")
    session.run("import", "example.syx", 40, "voice0.sy1", "outside.syx")
    session.run("import", "example.syx", 2, "reface1.sr1", "other-family.syx")
    session.run("save", "example.syx", "example.syx")  # makes a backup
    session.run("save", "example.syx", "example.srx")
    session.run("unknown")
    session.run("--version")
    session.run("--help")
    for verb in ("list", "check", "save", "move", "export", "import", "picture", "config",
                 "settings", "history", "ports", "find", "upload", "upload-voice", "download",
                 "play", "memory"):
        session.run(verb, "--help")
        session.run(verb)


def work_on_settings(session):
    for name, content in WILD_SETTINGS.items():
        session.run("config", session.write(f"{name}.ini", content))
        session.settings_file().write_bytes(content)
        session.run("settings", "list")
        session.run("settings", "get", "SysexWait")
        session.run("settings", "set", "MaxUndoLevel", "5")
        session.run("settings", "set", "DatabaseCurrentName", "Mine and yours")
        session.run("settings", "get", "DatabaseCurrentName")
        session.write(f"kept/{name}.ini", session.settings_file().read_bytes())
    session.run("settings", "set", "NoSuchSetting", "1")
    session.run("settings", "set", "SysexWait", "many")
    session.run("settings", "set", "SysexWait", "1500")
    history = b"".join(b"/tmp/none%d.syx%s,%d\n" % (n, b"/P" if n % 3 == 0 else b"", 10 ** 9 + n)
                       for n in range(40)) + b"no comma\n,\n/P,1\n" + bytes(range(1, 256))
    session.run("history", "--file", session.write("history.txt", history))
    session.run("history")


def work_on_instruments(session):
    memory = "instruments.memory"
    session.run("ports", "--no")
    session.run("find", "--trace", "--synth", "reface")
    session.run("find", "--trace", "--synth", "DX7", "--in", "dx7", "--out", "dx7")
    session.run("upload", "example.syx", "--out", "dx7", "--trace", "--memory", memory)
    session.run("memory", memory, "dx7", "readback.syx")
    session.run("memory", memory, "volca", "readback-volca.syx")
    session.run("memory", memory, "dx7", "edit.sy1")
    session.run("memory", memory, "nothing", "edit.sy1")
    session.run("upload-voice", "bank1.syx", "7", "--out", "volca", "--trace", "--memory", memory)
    session.run("memory", memory, "volca", "edit-volca.sy1")
    session.run("upload-voice", "reface.srx", "2", "--out", "reface", "--trace",
                "--memory", memory)
    session.run("upload", "reface.srx", "--out", "reface", "--trace", "--memory", memory)
    session.run("download", "down.srx", "--trace", "--memory", memory)
    session.run("memory", memory, "reface", "readback.srx")
    session.run("play", "example.syx", "3", "C3", "--out", "dx7", "--trace", "--channel", "5")
    session.run("upload", "example.syx", "--out", "no such port")
    session.run("find", "--synth", "no such instrument")


def work_on_pictures(session):
    for number, screen in enumerate(("1920x1080", "1280x1024", "800x600", "3840x2160", "640x480")):
        for bank in ("example.syx", "bank2.syx", "reface.srx"):
            session.run("picture", bank, f"picture-{number}-{bank}.png", "--screen", screen)
    session.run("picture", "damaged/bank1-cut-in-half.syx", "refused.png")


def do_the_work(build, folder):
    session = Session(build, folder)
    # What the later steps read: the factory voices of the built-in reface DX, written at no time.
    session.run("download", "reface.srx")
    session.run("export", "reface.srx", "1", "reface1.sr1")
    session.run("export", "reface.srx", "9", "reface2.sr1")
    for name in ("reface.srx", "reface1.sr1", "reface2.sr1"):
        session.write(name, timeless((folder / name).read_bytes()))
    work_on_files(session)
    work_on_settings(session)
    work_on_instruments(session)
    work_on_pictures(session)
    return session


def timeless(content):
    """A file of the reface DX without the time of its writing."""
    return content[:20] + bytes(4) + content[24:] if content[:5] == b"TNWRD" else content


def content_of(path):
    """Bytes of a file, without the time of its writing, and the day and the place of the build."""
    content = timeless(path.read_bytes())
    if path.suffix == ".ini":
        content = re.sub(rb"(?m)^(BuildDate|ApplicationPath|;Last updated)\b.*$", rb"\1", content)
    return content


def differences(before, after):
    for old, new in zip(before.record, after.record, strict=True):
        for what, left, right in zip(("words", "status", "output", "errors"), old, new):
            if left != right:
                yield f"{what} of `{old[0][:100]}`:\n  before: {left!r:.600}\n  after:  {right!r:.600}"
    files = [{file.relative_to(side.folder): file for file in side.folder.rglob("*")
              if file.is_file()} for side in (before, after)]
    for name in sorted(files[0].keys() | files[1].keys()):
        if name not in files[0] or name not in files[1]:
            yield f"{name}: only {'before' if name in files[0] else 'after'}"
            continue
        left, right = (content_of(side[name]).replace(str(session.folder).encode(), b"FOLDER")
                       for side, session in zip(files, (before, after)))
        if left != right:
            yield f"{name}: differs"


def compare(before, after, folder):
    old = do_the_work(before, folder / "old")
    new = do_the_work(after, folder / "new")
    found = list(differences(old, new))
    succeeded = sum(1 for _, status, _, _ in new.record if status == 0)
    files = sum(1 for file in new.folder.rglob("*") if file.is_file())
    return found, (f"{len(new.record)} calls ({succeeded} successful), {files} files, "
                   f"{len(found)} differences")


if __name__ == "__main__":
    sys.exit(compare_two_builds(__doc__.splitlines()[0], compare))
