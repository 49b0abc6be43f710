// The files that keep the lists of settings.
//
//   ;Tonewright configuration file
//   ;Edit this at your own risk
//   ;Tonewright 17.0a revision 1
//   ;Last updated Sun Feb 22 14:05:09 2026
//   ;
//   [Tonewright]
//   ApplicationPath = /usr/bin/
//   AuditionCurrentOctave = 5
//   ... one line for each row of the list, in its order; of a list that is written when the user
//   chooses, for each row that the user has chosen
#pragma once

#include "common/setting_rows.h"

#include <string>

namespace tonewright {

struct LineReader;

// The path of a list's file; empty when there is no folder of application data.
std::string SettingsFilePath(const SettingsList &list);

// Fills the settings of all lists, or of those that are written then, from their files: the user's
// own, and before it the system's of a list that has such ones. A file that cannot be opened leaves
// its settings as they are.
void ConfigRead();
void ConfigRead(SettingsWritten written);
// Fills the settings of one list from any regular file; with `takes`, only those whose rows it is
// true of. 0, the reason in errno, when the file cannot be opened or read to its end, else 1.
//
// A line is a name, a run of blanks and equal signs, and a value that ends at the first control
// character. A name may be shortened: the first row that begins with it is meant, so that an empty
// line (an empty name) sets AuditionCurrentOctave to 0. A line of more than 259 bytes goes on as
// the next line. Integers are taken modulo 2^32, without a range.
int ReadSettingsFile(const SettingsList &list, const char *path,
                     bool (*takes)(const ConfigKey &row) = nullptr);
// The same of the lines of a file.
void ReadSettingsLines(const SettingsList &list, LineReader &lines,
                       bool (*takes)(const ConfigKey &row) = nullptr);

enum class SettingsWrite {
    Done,
    NoBackup, // the file is written; a version before it could not be kept
    Failed,   // the file is as it was, but for what WriteFileWhole says of ENOTRECOVERABLE
};
// Writes the file of one list, with every row, keeping the two versions before it as "Backup of
// ..." and "Backup of Backup of ...". They move on when the new version is on the disk, and one of
// them gives way to the next only when that one is whole. A file that may not be written, and one
// that can be written in place only, becomes its own backup first, once. Where not all is done,
// errno tells why.
SettingsWrite WriteSettingsFile(const SettingsList &list);
// Writes the value that the user has given to one row of the list, in the same way. Of a list that
// is written when the user chooses, the other rows are those that stand in the user's file by now,
// with the values that they have there, and lines that name no row stay, behind them; when the file
// is there and cannot be read, nothing is written.
SettingsWrite WriteChosenSetting(const SettingsList &list, const ConfigKey &chosen);
// Writes the files of the lists that are written at the end: the worst that happened to one of
// them, after `tell` has heard, with the reason in errno, of each that is not Done. Shows nothing.
SettingsWrite ConfigWrite(void (*tell)(const SettingsList &list, SettingsWrite outcome) = nullptr);
// True when the files of these lists hold every row as it stands.
bool ConfigIsWritten();

// What is wrong with a file of settings after an outcome that is not Done, in words that follow its
// path.
const char *WordsOfOutcome(SettingsWrite outcome);

} // namespace tonewright
