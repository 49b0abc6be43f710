// The record that holds all knowledge of one family of instruments, and the fixed table of two
// such rows. An empty operation is a null pointer; see core/dispatch.h for what that means.
#pragma once

#include "common/geometry.h"
#include "core/item_fonts.h"
#include "core/midi_ports.h"
#include "core/voice_list.h"
#include "core/voice_object.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>

class QPainter;
class QWidget;

namespace tonewright {

// Capability word.
constexpr std::uint32_t DriverFlagAutodetect = 0x01; // ports may be detected automatically
constexpr std::uint32_t DriverFlagUpload = 0x02;
constexpr std::uint32_t DriverFlagUnused = 0x04; // set in the reface DX row; nothing reads it
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

struct DatabaseHandle; // database/
struct DatabaseRecord;

// Selectors of DatabaseInfo.
constexpr int DatabaseInfoVoicesPerBank = 0;
constexpr int DatabaseInfoBankExtension = 1;
constexpr int DatabaseInfoExtension = 2;
constexpr int DatabaseInfoBackupExtension = 3;

// Result of DatabaseInfo: a number, or a text for the selectors 1 to 3; number -1 for any other.
struct DatabaseInfoResult {
    int number = -1;
    const char *text = nullptr;
};

struct SynthDriver {
    DriverId id;
    const char *name;          // display name
    const char *bankExtension; // without the dot
    const char *voiceExtension;
    const char *extraExtension;
    const char *bankFilter; // pairs "text\0*.pattern\0", closed by a further zero byte
    const char *voiceFilter;
    const char *extraFilter;
    const char *defaultDocumentName;
    std::uint32_t flags;           // DriverFlag...
    std::uint32_t documentPicture; // picture number in the File menu history

    // Looks for the instrument, by the names of its ports or, with `autodetect`, by rules of its
    // own. What is found is written into `found`, the rest of which is left as it was; its driver
    // becomes the row's id when the instrument is there. The result is the row's own notion of
    // success: judge by `found`.
    int (*FindSynth)(QWidget *window, FoundSynth &found, const PortNames &names, bool autodetect);
    // Replaces the list's contents by the bank file at `path`; *time receives the file's
    // modification time in seconds since 1970, or the present time. 1 on success.
    int (*OpenBank)(QWidget *window, VoiceList &list, const char *path, std::int64_t *time);
    int (*SaveBank)(QWidget *window, VoiceList &list, const char *path);
    int (*DrawVoiceItem)(const DrawItem &item, const ItemFonts &fonts, const VoiceObject &voice,
                         int rowIndex);
    int (*MakeItemFonts)(ItemFonts &fonts);
    // Transfers, by device index. 1 when the conversation took place, 0 when it could not begin: a
    // port does not open, or the instrument does not answer where an answer is needed. What the
    // instrument made of the bytes that were sent is not known. A download replaces the contents of
    // the list, in which a voice that did not arrive stays as far as it came; when it could not
    // begin, the list is as it was.
    int (*UploadBank)(QWidget *window, VoiceList &list, MidiPorts ports);
    int (*DownloadBank)(QWidget *window, VoiceList &list, MidiPorts ports);
    // Sends `voice`, or the item at `index` when it is null; the result is as above, also where
    // there is no voice. Bit 0 of `flags` asks for the driver's prompts around the transfer.
    int (*UploadVoice)(QWidget *window, VoiceList &list, const VoiceObject *voice, MidiPorts ports,
                       int index, std::uint8_t flags);
    int (*reserved)();
    // Reads a single-voice file into *out when given, else into the item at `index`.
    int (*ImportVoice)(QWidget *window, VoiceList &list, int index, const char *path,
                       VoiceObject *out);
    // Writes `voice`, or the item at `index` when it is null.
    int (*ExportVoice)(QWidget *window, VoiceList &list, const VoiceObject *voice, const char *path,
                       int index, std::uint32_t firmware);
    int (*EditVoice)(QWidget *window, VoiceObject &voice, MidiPorts ports, int index);
    // Writes the name, in the instrument's bytes and without trailing blanks, and returns its
    // length in bytes.
    int (*VoiceName)(std::string &name, const VoiceObject &voice);
    int (*PrintVoice)(QPainter &painter, const VoiceObject &voice, const PrintCell &cell);
    int (*ConfigureSynth)(QWidget *window, MidiPorts ports);
    int (*AutoConfigure)(QWidget *window, int midiOut);
    // Builds the block of an undo level from the list; empty on failure.
    std::vector<std::uint8_t> (*MakeUndoLevel)(QWidget *window, const VoiceList &list);
    int (*DatabaseAddVoice)(QWidget *window, const VoiceObject &voice, const char *name,
                            const char *sourceDocument, int index);
    std::shared_ptr<DatabaseHandle> (*DatabaseOpen)(const char *path, std::uint32_t mode);
    int (*DatabaseClose)(std::shared_ptr<DatabaseHandle> database);
    int (*DatabaseReadRecord)(DatabaseHandle &database, std::uint32_t index,
                              DatabaseRecord &record);
    int (*DatabaseWriteRecord)(DatabaseHandle &database, std::uint32_t index,
                               const DatabaseRecord &record);
    const char *(*DatabasePath)();
    DatabaseInfoResult (*DatabaseInfo)(int selector);
};

constexpr int SynthDriverCount = 2;

// The two rows: 0 serves the DX7, TX7 and Volca FM, 1 the reface DX. Constant data; defined in
// drivers/synth_driver_table.cpp.
extern const std::array<const SynthDriver *, SynthDriverCount> SynthDrivers;

} // namespace tonewright
