// Thin functions that find a driver row and call one of its operations. Where the row's operation
// is empty, or the DriverId stands in no row, they return 0 without a message; the message, if any,
// is the caller's. Paths are UTF-8. A path of more than 260 bytes is refused: nothing is written to
// it, nor imported from it into the list.
#pragma once

#include "core/synth_driver.h"

#include <cstdint>
#include <string>

namespace tonewright {

// The row of an id, or nullptr. Compares the whole 32-bit value, row 0 first.
const SynthDriver *DriverOfId(DriverId id);
// The row of CurrentDriverId, or nullptr.
const SynthDriver *CurrentDriver();

// By row index; "????" and false for an index outside the table.
DriverId DriverIdAt(int index);
bool DriverCanConfigure(int index);
bool DriverCanUpload(int index);
bool DriverCanDownload(int index);
bool DriverCanFind(int index);

// Row index, or -1. The name is compared whole and without regard to case.
int DriverIndexOfId(DriverId id);
int DriverIndexOfName(const char *name);

// Clears the record and has the driver's row fill it.
int SelectItemFonts(ItemFonts &fonts, DriverId id);
// Gives a list the look of a driver's voices: MainItemFonts and the list's item height.
void SelectListFonts(VoiceList &list, DriverId id);

// Paints a voice through the row of its own driverId. Returns 0 always.
int DrawVoiceObject(const DrawItem &item, const VoiceObject &voice, const ItemFonts &fonts);
// Paints a voice into its cell of a page through the row of CurrentDriverId.
int PrintVoiceObject(QPainter &painter, const VoiceObject &voice, const PrintCell &cell);

// The name of a voice (the instrument's bytes, shown as Latin-1) through the row of its own
// driverId. A block that is none yields the name of the last good voice; before there was one,
// UnknownVoiceName. The text is valid until the next call.
const char *VoiceObjectName(const VoiceObject &voice);
// What is said of a voice, or of a row without one, to those who hear the list: its place, counted
// from 1, its name with single blanks between the words, and its algorithm, "Voice 3, BRASS 1,
// algorithm 22", each as far as there is one. UTF-8. The name of the last good voice stays.
std::string VoiceInWords(const VoiceObject *voice, int row);
// Forgets the last good voice, as at start.
void ForgetVoiceName();

// Opens a bank document. The driver is chosen by the path's extension, compared without case with
// each row's bankExtension; *driver receives its id before the file is read. 0 when no row matches,
// the list then untouched.
int OpenDocument(QWidget *window, VoiceList &list, const char *path, DriverId *driver,
                 std::int64_t *time);
// Where a file could not be written, errno tells why.
int SaveDocument(QWidget *window, VoiceList &list, const char *path);

int DownloadCurrent(QWidget *window, VoiceList &list);
int UploadCurrent(QWidget *window, VoiceList &list);
int UploadOneVoice(QWidget *window, VoiceList &list, const VoiceObject *voice, DriverId driver,
                   MidiPorts ports, int index, std::uint8_t flags);

// Imports a single-voice file with the current driver; see SynthDriver::ImportVoice for `out`.
int ImportVoiceFrom(QWidget *window, VoiceList &list, int index, const char *path,
                    VoiceObject *out);
// The same. With a null path the import dialog asks for it, starting in OpenExportPath, which then
// receives the chosen folder, and `chosenPath` (may be null) the chosen path; cancelling is a
// success that changes nothing.
int ImportOneVoice(QWidget *window, VoiceList &list, int index, const char *path, VoiceObject *out,
                   std::string *chosenPath = nullptr);

// Writes the item to a single-voice file with the current driver. An existing file is first copied
// to "Backup of ..." if CreateBackups.
int ExportVoiceTo(QWidget *window, VoiceList &list, int index, const char *path);
// The same to a file that it asks for, proposing the voice's name in OpenExportPath, which then
// receives the chosen folder, and `chosenPath` (may be null) the chosen path. Cancelling is a
// success. Where the file could not be written, errno tells why.
int ExportOneVoice(QWidget *window, VoiceList &list, int index, std::string *chosenPath = nullptr);

int EditOneVoice(QWidget *window, VoiceObject &voice, int index);
int ConfigureCurrent(QWidget *window);
int AutoConfigureCurrent(QWidget *window);

// Searches the current driver's instrument, by the names of its ports or, with `autodetect`, by
// rules of its own, and makes what it finds current: CurrentDriverId, MidiInPort and MidiOutPort.
// They are "????" and -1 as long as the search lasts, and afterwards where it does not find them;
// SynthFirmware stays where the instrument tells none. Returns what the row's FindSynth returns, 0
// without one; callers judge by CurrentDriverId and the ports instead.
int FindCurrentSynth(QWidget *window, const PortNames &names, bool autodetect);
// The same as the user's settings have it. In careful mode a list with voices keeps its family
// current when nothing is found.
int FindCurrentSynth(QWidget *window);

// Display name and firmware, "NAME version 01.23", or the bare name for version 0. Static text.
const char *SynthTitle(DriverId id, std::uint32_t version);

// The row's field, or "Twl".
const char *BankExtension(DriverId id);
const char *VoiceExtension(DriverId id);
const char *ExtraExtension(DriverId id);
// The current row's default document name, or "Untitled.Twl".
const char *DefaultDocumentName();

// The path with a dot and `extension` behind it, unless its name ends in an extension of the files
// of some driver (case does not count) and so belongs to a file that a dialog shows.
std::string WithProgramExtension(const std::string &path, const std::string &extension);

// OpenPath into `folder`, at most 260 bytes. Returns 1.
int GetOpenFolder(std::string &folder);
// Keeps drive and folder of `path` in OpenPath, with a trailing separator unless empty. Returns 1.
int SetOpenFolder(const char *path);
// The same of a path that the user has chosen, in OpenExportPath. False, the reason in errno, for
// one that is too long, of which the folder is not kept.
bool SetExportFolder(const std::string &path);

} // namespace tonewright
