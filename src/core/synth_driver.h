// The record that holds all knowledge of one family of instruments, and the fixed table of such
// rows. A row names only what its family has: a text that it leaves out is empty, an operation a
// null pointer; see core/dispatch.h for what that means.
#pragma once

#include "common/geometry.h"
#include "core/instrument_memory.h"
#include "core/item_fonts.h"
#include "core/midi_ports.h"
#include "core/voice_file.h"
#include "core/voice_list.h"
#include "core/voice_object.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

class QPainter;
class QWidget;

// An operation that paints or opens a window, in a row. A program without windows is built without
// them; everything else in its rows is the same.
#ifdef TONEWRIGHT_WITHOUT_VIEWS
#define VIEW_OPERATION(function) nullptr
#else
#define VIEW_OPERATION(function) function
#endif

namespace tonewright {

// Capability word.
constexpr std::uint32_t DriverFlagAutodetect = 0x01; // ports may be detected automatically
constexpr std::uint32_t DriverFlagUpload = 0x02;
constexpr std::uint32_t DriverFlagUnused = 0x04; // a row may have it; nothing reads it
constexpr std::uint32_t DriverFlagConfigure = 0x08;
constexpr std::uint32_t DriverFlagDownload = 0x10;
constexpr std::uint32_t DriverFlagFind = 0x20;

// What is needed to paint one item of the list.
struct DrawItem {
    QPainter *painter = nullptr;
    Rectangle rectangle;
    int itemIndex = 0; // from 0
    bool selected = false;
};

// Where PrintVoice paints, all in device units.
struct PrintCell {
    int index = 0; // place of the voice on the page, from 0
    int pageWidth = 0, pageHeight = 0;
    int left = 0, top = 0; // of the page's printable area
    int voicesOnPage = 0;
    int titleFontHeight = 0, labelFontHeight = 0;
};

// What a search for an instrument has found so far.
struct FoundSynth {
    DriverId driver = NoDriverId; // of the instrument, once it is known to be there
    MidiPorts ports;              // each as soon as it is found
    std::uint32_t firmware = 0;   // as SynthFirmware; a search that does not ask for it leaves it
};

struct SynthSettings;
struct VoiceParameters; // drivers/
struct DatabaseFamily;  // database/
struct DatabaseHandle;
struct DatabaseRecord;

// Selectors of DatabaseInfo.
constexpr int DatabaseInfoVoicesPerBank = 0;   // a number
constexpr int DatabaseInfoBankExtension = 1;   // a text: of bank documents, without the dot
constexpr int DatabaseInfoExtension = 2;       // a text: of catalogue files, without the dot
constexpr int DatabaseInfoBackupExtension = 3; // a text: of their backups, with the dot

// Result of DatabaseInfo: the number or the static text that the selector asks for; number -1 and
// no text for any other selector.
struct DatabaseInfoResult {
    int number = -1;
    const char *text = nullptr;
};

constexpr int UsualBankRows = 32;
constexpr std::size_t UsualNameSize = 10;

// What holds for all operations: `window`, which may be null, is the window that messages belong
// to. Lists, voices and paths are the caller's, and none is kept after the call; a voice that is
// given as a pointer may be null where that is said. Paths are UTF-8. The result is 1 for success
// and 0 for failure unless something else is said; a failure shows no message but for the questions
// that are told here.
struct SynthDriver {
    DriverId id = NoDriverId;
    const char *name = "";          // display name
    const char *bankExtension = ""; // without the dot
    const char *voiceExtension = "";
    const char *extraExtension = "";
    const char *bankFilter = ""; // pairs "text\0*.pattern\0", closed by a further zero byte
    const char *voiceFilter = "";
    const char *extraFilter = "";
    const char *defaultDocumentName = "";
    std::uint32_t flags = 0; // DriverFlag...
    std::uint32_t documentPicture =
        0; // picture number in the File menu history; 0: the general one

    int bankRows = UsualBankRows; // voices of a bank
    // Bytes of a voice's name, at most. VoiceName keeps to it, which is what the tests of all rows
    // measure it by.
    std::size_t nameSize = UsualNameSize;

    // How the family's files are judged and listed without opening them; null where there is none.
    const VoiceFileFormat *bankFormat = nullptr;
    const VoiceFileFormat *voiceFormat = nullptr;
    // How its instruments keep voices in their memory; none where that is not known.
    std::span<const InstrumentMemory> memories = {};

    // Looks for the instrument, by the names of its ports or, with `autodetect`, by rules of its
    // own. What is found is written into `found`, the rest of which is left as it was; its driver
    // becomes the row's id when the instrument is there. The result is the row's own notion of
    // success: judge by `found`. Leaves no link open.
    int (*FindSynth)(QWidget *window, FoundSynth &found, const PortNames &names,
                     bool autodetect) = nullptr;
    // Replaces the list's contents by the bank file at `path`; *time (which may be null) receives
    // the file's modification time in seconds since 1970, or the present time, in any case. Asks
    // whether to open a damaged file. What a failure leaves in the list is the family's choice; a
    // file that is none of its banks leaves the list as it was.
    int (*OpenBank)(QWidget *window, VoiceList &list, const char *path,
                    std::int64_t *time) = nullptr;
    // Writes the list as a bank file, after a backup of the former one where the settings ask for
    // it; asks whether to go on without a backup that failed. The list keeps its voices. A write
    // that fails leaves no file.
    int (*SaveBank)(QWidget *window, VoiceList &list, const char *path) = nullptr;
    // Paints the item; nothing for a block that is no whole voice of the family. `rowIndex`: of
    // this row in the table. 1 in any case.
    int (*DrawVoiceItem)(const DrawItem &item, const ItemFonts &fonts, const VoiceObject &voice,
                         int rowIndex) = nullptr;
    // Fills the record. 1 in any case.
    int (*MakeItemFonts)(ItemFonts &fonts) = nullptr;
    // Transfers. 1 when the conversation took place, 0 when it could not begin: a port does not
    // open, or the instrument does not answer where an answer is needed. What the instrument made
    // of the bytes that were sent is not known. A download replaces the contents of the list, in
    // which a voice that did not arrive stays as far as it came; when it could not begin, the list
    // is as it was. The link is closed on return.
    int (*UploadBank)(QWidget *window, VoiceList &list, MidiPorts ports) = nullptr;
    int (*DownloadBank)(QWidget *window, VoiceList &list, MidiPorts ports) = nullptr;
    // Sends `voice`, or the item at `index` when it is null; the result is as above, also where
    // there is no voice. Bit 0 of `flags` asks for the driver's prompts around the transfer.
    int (*UploadVoice)(QWidget *window, VoiceList &list, const VoiceObject *voice, MidiPorts ports,
                       int index, std::uint8_t flags) = nullptr;
    int (*reserved)() = nullptr; // nothing calls it
    // Reads a single-voice file into *out when that is not null, the list then untouched; else into
    // the item at `index`, whose voice is freed. A row without a voice cannot be filled: 0, and the
    // file is not opened. With an index outside the list the file is read all the same, its voice
    // goes nowhere, and the result is that of the reading. Asks whether to open a damaged file; a
    // failure changes neither.
    int (*ImportVoice)(QWidget *window, VoiceList &list, int index, const char *path,
                       VoiceObject *out) = nullptr;
    // Writes `voice`, or the item at `index` when it is null, as a single-voice file; no backup is
    // made. `firmware`: of the instrument, for a file that notes it. 0 also when there is no voice.
    int (*ExportVoice)(QWidget *window, VoiceList &list, const VoiceObject *voice, const char *path,
                       int index, std::uint32_t firmware) = nullptr;
    // The parameters of a voice, for the editor and the command line; null where it has none.
    const VoiceParameters *parameters = nullptr;
    // Lets the user edit `voice`. 1 when the result was accepted, which `voice` then holds; 0, and
    // `voice` as it was, when not.
    int (*EditVoice)(QWidget *window, VoiceObject &voice, MidiPorts ports, int index) = nullptr;
    // Writes the name, in the instrument's bytes and without trailing blanks, and returns its
    // length in bytes, at most nameSize. 0, and `name` as it was, for a block without a payload
    // that can hold a voice of the family. The block's driver id is not looked at: by it the caller
    // has chosen the row.
    int (*VoiceName)(std::string &name, const VoiceObject &voice) = nullptr;
    // The number of the voice's algorithm, from 1, as the voice has it. 0 for a block without a
    // payload that can hold a voice of the family; as with VoiceName, its driver id is not looked
    // at.
    int (*VoiceAlgorithm)(const VoiceObject &voice) = nullptr;
    // Paints the voice into its cell of a page; nothing for no whole voice of the family. 1 in any
    // case.
    int (*PrintVoice)(QPainter &painter, const VoiceObject &voice, const PrintCell &cell) = nullptr;
    // The instrument's own settings by name; null where they are not known.
    const SynthSettings *settings = nullptr;
    // Lets the user change the instrument's own settings.
    int (*ConfigureSynth)(QWidget *window, MidiPorts ports) = nullptr;
    // Sends the settings that were saved for the instrument, if there are any.
    int (*AutoConfigure)(QWidget *window, int midiOut) = nullptr;
    // The block of an undo level for the list, which is the caller's; empty on failure.
    std::vector<std::uint8_t> (*MakeUndoLevel)(QWidget *window, const VoiceList &list) = nullptr;
    // The catalogue: files of records of one family, each of which keeps a voice of a bank with its
    // name, the document that it comes from and its row there. Record indices count from 0.
    // What they are like; null where there are none.
    const DatabaseFamily *database = nullptr;
    // Adds the voice to the catalogue at DatabasePath, behind the last record. `name`: null for the
    // name that the voice has; `index`: its row in the document, from 0. 1 also when the settings
    // want no duplicates and the voice is there already. 0, the reason in errno, when the voice is
    // none, or the file cannot be opened as a catalogue of the family (EINVAL) or not be written;
    // that file is then deleted, but in careful mode, where it stays as it was.
    int (*DatabaseAddVoice)(QWidget *window, const VoiceObject &voice, const char *name,
                            const char *sourceDocument, int index) = nullptr;
    // `mode`, tested in this order: bits 0 and 1 open for reading and writing a file that is made
    // if there is none; bit 0 opens for reading; bit 1 makes an empty file in the place of any file
    // that may be written; bit 2 opens for reading and appending a file that is made if there is
    // none. Null when it does not open, is no catalogue of the family, or the mode has none of
    // these bits.
    std::shared_ptr<DatabaseHandle> (*DatabaseOpen)(const char *path, std::uint32_t mode) = nullptr;
    // Writes the number of records and the present time into the file's header and closes it. 0
    // when the header was not written; the handle is of no more use in any case.
    int (*DatabaseClose)(std::shared_ptr<DatabaseHandle> database) = nullptr;
    // Fills the caller's record. 0 when there is no whole record at the index; one behind the
    // number of records in the header counts if it is there.
    int (*DatabaseReadRecord)(DatabaseHandle &database, std::uint32_t index,
                              DatabaseRecord &record) = nullptr;
    // Puts the record in the place of the one at the index, or beyond the last one; the number of
    // records grows up to it, also when the result is 0: for what is no record, and when it cannot
    // be written whole. A place beyond 2 GB alone is refused without that.
    int (*DatabaseWriteRecord)(DatabaseHandle &database, std::uint32_t index,
                               const DatabaseRecord &record) = nullptr;
    // The whole path of the catalogue that the settings name; the text is valid until the next
    // call.
    const char *(*DatabasePath)() = nullptr;
    // Constant facts of the family's catalogue, by the selectors above.
    DatabaseInfoResult (*DatabaseInfo)(int selector) = nullptr;
};

// The rows, none of them null, in the order of the families in drivers/families.inc. Constant data,
// defined in drivers/synth_driver_table.cpp.
extern const std::span<const SynthDriver *const> SynthDrivers;

} // namespace tonewright
