// Banks and single voices as the command line opens and writes them: the way of the window's
// commands, with its questions and backups, and failures explained on standard error.
#pragma once

#include "cli/command_line.h"
#include "core/voice_file_reader.h"

#include <string>

namespace tonewright {

// Opens a bank into MainList and makes its family the current one. False after telling why it could
// not be opened.
bool OpenBankDocument(const char *path);

// The same for a bank or a single voice, which becomes a list of one.
bool OpenVoices(const char *path, const VoiceFileFormat &format);

// Opens the bank `in` on the terminal of the call, of which a file of that kind is to be written to
// `out`. ExitDone, or the exit status after telling why it is not open, or that `out` has not the
// extension that the files of the bank's family have.
int OpenBankFor(const CliCall &call, const char *in, const char *out, VoiceFileKind kind);

// True when `out` has the extension that files of the family have; else the call is wrong for
// `reason`.
bool ExtensionFits(DriverId family, const char *out, VoiceFileKind kind, std::string &reason);

// Writes MainList as a bank of the current family. The exit status; a failure has been told, and a
// place that holds no whole voice leaves the file as it was.
int SaveBankDocument(const char *path);

// The same for a row (from 0) that holds a voice, as a single-voice file.
int ExportVoiceDocument(int row, const char *path);

// In careful mode a file or an instrument of a family takes no voices of another one, of which
// nobody could read or hear them again: true after telling what is not done with `path`.
bool CarefulRefusesVoice(int row, const char *path, const char *notDone);

// Whether the rows `first` to `last` can be sent; else tells why not. A message with bytes that
// none can carry would be broken off there and arrive nowhere.
bool CanBeSent(const char *path, const VoiceFileFormat &format, int first, int last);

// Opens the file and looks for the voice at `place` (from 1) in it, which can be sent; nullptr
// after telling why not.
const VoiceObject *OpenVoiceAt(const char *path, const VoiceFileFormat &format, int place);

// Whether MainList has the place (from 1) and a bank of the current family is written with it, so
// that a voice put there gets into the file; else tells of `path`, the bank, why not.
bool HasWrittenPlace(const char *path, int place);

// That a place (from 1) is not among the voices of MainList, in words.
std::string NoSuchPlace(int place);
constexpr const char *NotAPlace = "not a place: a number from 1 is";
constexpr const char *NotANote = "not a note: 0 to 127, or C-2 to G8, is (C3 is 60)";

} // namespace tonewright
