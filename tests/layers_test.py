#!/usr/bin/env python3
"""Tests of layers.py over small trees."""
import pathlib
import tempfile
import unittest

import layers


class Layers(unittest.TestCase):
    def problems(self, files, check=layers.check_source):
        """What is wrong with a source of these files, each with the headers that it includes."""
        with tempfile.TemporaryDirectory() as folder:
            source = pathlib.Path(folder, "src")
            for name, headers in files.items():
                file = source / name
                file.parent.mkdir(parents=True, exist_ok=True)
                lines = [f"#include {header}" if header.startswith("<") else f'#include "{header}"'
                         for header in headers]
                file.write_text("\n".join(lines) + "\n")
            return check(source)

    def assert_problem(self, files, *words, check=layers.check_source):
        problems = self.problems(files, check)
        self.assertEqual(len(problems), 1, problems)
        for word in words:
            self.assertIn(word, problems[0])

    def test_an_arrow_down_is_allowed(self):
        self.assertEqual(self.problems({"shell/undo.cpp": ["core/voice_list.h", "<vector>"],
                                        "core/voice_list.h": ["common/text.h"],
                                        "common/text.h": []}), [])

    def test_an_arrow_up_is_not(self):
        self.assert_problem({"core/dispatch.cpp": ["drivers/dx7/files.h"]},
                            "src/core/dispatch.cpp:1", "higher layer")

    def test_qt_stays_in_its_rooms(self):
        self.assert_problem({"shell/undo.cpp": ["<QWidget>"]}, "Qt header QWidget")
        self.assertEqual(self.problems({"shell/view/box.cpp": ["<QWidget>"],
                                        "cli/picture.cpp": ["<QImage>"],
                                        "main.cpp": ["<QApplication>"]}), [])

    def test_one_file_knows_a_library(self):
        self.assert_problem({"extras/archive_store.cpp": ["<sqlite3.h>"]},
                            "only extras/sqlite_database.cpp is to know sqlite3.h")
        self.assertEqual(self.problems({"extras/sqlite_database.cpp": ["<sqlite3.h>"]}), [])

    def test_the_engine_includes_no_view(self):
        self.assert_problem({"shell/undo.cpp": ["shell/view/box.h"]}, "view")
        self.assertEqual(self.problems({"drivers/dx7/driver.cpp": ["drivers/dx7/view/box.h"]}), [])

    def test_the_families_do_not_know_each_other(self):
        self.assert_problem({"drivers/dx7/files.cpp": ["drivers/reface_dx/files.h"]},
                            "drivers/dx7 is to know nothing of drivers/reface_dx")
        self.assert_problem({"drivers/reface_dx/view/list.cpp": ["drivers/dx7/files.h"]},
                            "drivers/reface_dx is to know nothing of drivers/dx7")
        self.assert_problem({"drivers/chimes/files.cpp": ["drivers/dx7/files.h"]},
                            "drivers/chimes is to know nothing of drivers/dx7")
        self.assert_problem({"drivers/dx7/view/list.h": ["drivers/chimes/view/list.h"]},
                            "drivers/dx7 is to know nothing of drivers/chimes")
        self.assertEqual(self.problems({"drivers/synth_driver_table.cpp":
                                        ["drivers/dx7/find.h", "drivers/reface_dx/find.h"]}), [])

    def test_the_sound_of_voices_is_the_business_of_the_instruments(self):
        self.assertEqual(self.problems({"midi/instruments/dx7.cpp": ["synth/synth.h"],
                                        "synth/synth.h": ["common/text.h"]}), [])
        self.assert_problem({"synth/synth.cpp": ["core/voice_object.h"]},
                            "synth is to know nothing of core")
        self.assert_problem({"synth/synth.cpp": ["midi/midi_api.h"]}, "higher layer")
        self.assert_problem({"drivers/dx7/files.cpp": ["synth/algorithms.h"]},
                            "drivers is to know nothing of synth")

    def test_a_family_knows_itself_and_what_all_share(self):
        self.assertEqual(self.problems({"drivers/chimes/view/list.cpp":
                                        ["drivers/chimes/files.h", "drivers/view/voice_cell.h",
                                         "drivers/find_by_name.h"]}), [])

    def test_lists_that_are_included_are_looked_into(self):
        self.assert_problem({"drivers/dx7/rows.inc": ["drivers/reface_dx/files.h"]},
                            "src/drivers/dx7/rows.inc:1", "drivers/dx7 is to know nothing of")
        self.assert_problem({"common/rows.inc": ["core/voice_list.h"]}, "higher layer")

    def test_instruments_and_what_speaks_to_them_do_not_know_each_other(self):
        self.assert_problem({"drivers/dx7/transfer.cpp": ["midi/instruments/dx7.h"]},
                            "drivers is to know nothing of midi/instruments")
        self.assert_problem({"midi/instruments/dx7.cpp": ["midi/sysex.h"]},
                            "midi/instruments is to know nothing of midi/sysex.h")
        self.assertEqual(self.problems({"drivers/dx7/transfer.cpp": ["midi/sysex.h"],
                                        "midi/midi_start.cpp": ["midi/instruments/dx7.h"]}), [])

    def test_only_what_loads_themes_knows_their_interface(self):
        self.assertEqual(self.problems({"common/view/theme.h": ["tonewright_theme.h"]}), [])
        self.assert_problem({"common/theme_files.cpp": ["tonewright_theme.h"]},
                            "only what loads themes")
        self.assert_problem({"common/view/theme_colour.h": ["tonewright_theme.h"]},
                            "only what loads themes")
        self.assert_problem({"shell/view/tool_bar.cpp": ["tonewright_theme.h"]},
                            "src/shell/view/tool_bar.cpp:1", "only what loads themes")
        self.assert_problem({"common/view/theme.cpp": ["shared/look.h"]},
                            "the program is to know nothing of shared/look.h")

    def test_a_theme_knows_neither_the_program_nor_another_theme(self):
        themes = layers.check_themes
        self.assertEqual(self.problems({"shared/look.h": ["tonewright_theme.h", "<QImage>"],
                                        "slate/slate.h": [],
                                        "slate/slate.cpp": ["shared/look.h", "slate/slate.h",
                                                            "embedded_pictures.inc"]}, themes), [])
        self.assert_problem({"slate/slate.cpp": ["common/view/theme.h"]},
                            "themes/slate/slate.cpp:1", "common/view/theme.h", check=themes)
        self.assert_problem({"slate/slate.cpp": ["base/colours.h"]}, "base/colours.h", check=themes)
        self.assert_problem({"shared/a.h": ["shared/b.h"], "shared/b.h": ["shared/a.h"]},
                            "a circle", check=themes)

    def test_two_units_that_use_each_other_are_a_circle(self):
        self.assert_problem({"shell/undo.h": [], "shell/undo.cpp": ["shell/commands.h"],
                             "shell/commands.h": [], "shell/commands.cpp": ["shell/undo.h"]},
                            "a circle", "shell/undo", "shell/commands")

    def test_a_circle_through_others_is_one_too(self):
        self.assert_problem({"core/a.h": ["core/b.h"], "core/b.cpp": ["core/c.h"],
                             "core/b.h": [], "core/c.h": ["a.h"], "core/d.h": ["core/a.h"]},
                            "a circle", "core/a uses core/b uses core/c uses core/a")

    def test_a_unit_may_have_several_sources_and_includes_itself(self):
        self.assertEqual(self.problems({"common/time.h": [], "common/time.cpp": ["common/time.h"],
                                        "common/time_posix.cpp": ["common/time.h"]}), [])
        self.assert_problem({"common/time.h": [], "common/time_posix.cpp": ["common/text.h"],
                             "common/text.cpp": ["common/time.h"], "common/text.h": []}, "a circle")

    def test_a_folder_and_its_view_are_two_folders(self):
        self.assertEqual(self.problems({"shell/view/box.cpp": ["shell/undo.h"],
                                        "shell/undo.h": []}), [])

    def test_a_platform_macro_stands_in_a_platform_file(self):
        self.assertEqual(layers.PLATFORM_FILE.search("file_time_posix.cpp") is not None, True)
        with tempfile.TemporaryDirectory() as folder:
            source = pathlib.Path(folder)
            (source / "common").mkdir()
            (source / "common/text.cpp").write_text("#ifdef _WIN32\n#endif\n")
            (source / "common/text_windows.cpp").write_text("#ifdef _WIN32\n#endif\n")
            problems = layers.check_source(source)
        self.assertEqual(problems, ["src/common/text.cpp:1: platform macro outside the platform "
                                    "files"])
        for macro in ("_WIN32", "_MSC_VER", "__linux__", "__CYGWIN__", "__MINGW32__",
                      "__MINGW_PRINTF_FORMAT"):
            self.assertTrue(layers.PLATFORM_MACRO.search(f"#if defined({macro})"), macro)


if __name__ == "__main__":
    unittest.main()
