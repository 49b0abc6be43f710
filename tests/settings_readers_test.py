#!/usr/bin/env python3
"""Tests of settings_readers.py over small trees."""
import pathlib
import tempfile
import unittest

import settings_readers

KEPT = "".join(f"SETTING(Integer, {name}, 0)\n"
               for name in sorted(settings_readers.WITHOUT_READER))


class SettingsReaders(unittest.TestCase):
    def problems(self, rows, code):
        """What is wrong with a source of these rows, beside those that are kept, and this code."""
        with tempfile.TemporaryDirectory() as folder:
            source = pathlib.Path(folder)
            (source / "common").mkdir()
            (source / "common" / "program_settings.inc").write_text(KEPT)
            (source / "common" / "other_settings.inc").write_text(rows)
            (source / "code.cpp").write_text(code)
            return settings_readers.check_source(source)

    def test_a_setting_that_is_read_is_well(self):
        self.assertEqual(self.problems("SETTING(Bool, One, 1)\n", "if (One != 0) {}"), [])
        self.assertEqual(self.problems("SETTING(Bool, One, 1)\n", "if (One == 0) {}"), [])

    def test_a_value_a_text_and_a_comment_are_no_readers(self):
        for code in ("", "One = 5;", 'Read("One");', "// One\n", "/* One */", "OneMore();"):
            self.assertEqual(self.problems("SETTING(Bool, One, 1)\n", code),
                             ["One: nothing reads this setting"], code)

    def test_a_setting_that_is_kept_only_gets_no_reader_in_silence(self):
        self.assertEqual(self.problems("", "Use(FileMenuRange);"),
                         ["FileMenuRange: has a reader now"])


if __name__ == "__main__":
    unittest.main()
