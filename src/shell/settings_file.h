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
//   ... one line for each row of the list, in its order
#pragma once

#include "common/setting_rows.h"

#include <string>

namespace tonewright {

struct LineReader;

// The path of a list's file; empty when there is no folder of application data.
std::string SettingsFilePath(const SettingsList &list);

// Fills the settings of all lists from their files. A file that cannot be opened leaves its
// settings as they are.
void ConfigRead();
// Fills the settings of one list from any regular file; with `takes`, only those whose rows it is
// true of. 0 when the file cannot be opened, else 1.
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
// Writes the file of one list, keeping the two versions before it as "Backup of ..." and "Backup of
// Backup of ...". They move on when the new version is on the disk, and one of them gives way to
// the next only when that one is whole. A file that may not be written, and one that can be written
// in place only, becomes its own backup first, once. Where not all is done, errno tells why.
SettingsWrite WriteSettingsFile(const SettingsList &list);
// Writes the files of the lists that are written at the end: the worst that happened to one of them. Shows nothing.
SettingsWrite ConfigWrite();

} // namespace tonewright
