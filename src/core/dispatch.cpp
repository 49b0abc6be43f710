// Finds the driver row that an operation belongs to and calls it.
#include "core/dispatch.h"

#include "common/desktop.h"
#include "common/platform.h"
#include "common/settings.h"
#include "common/text.h"
#include "core/current.h"
#include "core/document_file.h"

#include <cerrno>
#include <string>
#include <utility>

namespace tonewright {
namespace {

constexpr const char *FallbackExtension = "Twl";
constexpr const char *FallbackDocumentName = "Untitled.Twl";
constexpr std::size_t TitleLimit = 260;

std::string LastVoiceName; // of the last good voice

int RowCount() {
    return static_cast<int>(SynthDrivers.size());
}

const SynthDriver *DriverAt(int index) {
    return index >= 0 && index < RowCount() ? SynthDrivers[static_cast<std::size_t>(index)]
                                            : nullptr;
}

bool HasFlag(int index, std::uint32_t flag) {
    const SynthDriver *driver = DriverAt(index);
    return driver && (driver->flags & flag) != 0;
}

bool IsEmpty(const char *text) {
    return !text || !*text;
}

const char *ExtensionOf(DriverId id, const char *SynthDriver::*extension) {
    const SynthDriver *driver = DriverOfId(id);
    return driver && !IsEmpty(driver->*extension) ? driver->*extension : FallbackExtension;
}

// Calls `operation` of a row; 0 when there is no such row or it leaves the operation empty.
template <typename Function, typename... Arguments>
int Call(const SynthDriver *driver, Function SynthDriver::*operation, Arguments &&...arguments) {
    if (!driver || !(driver->*operation)) {
        return 0;
    }
    return (driver->*operation)(std::forward<Arguments>(arguments)...);
}

// The words of a name, with one blank between two of them; control characters are blanks too.
std::string WithSingleBlanks(std::string_view latin1) {
    std::string words;
    bool blank = false;
    for (const char character : latin1) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte <= 0x20 || (byte >= 0x7F && byte <= 0xA0)) {
            blank = !words.empty();
            continue;
        }
        if (std::exchange(blank, false)) {
            words += ' ';
        }
        words += character;
    }
    return words;
}

// The folder of `path` as the settings keep it: with a trailing separator unless it is empty.
std::string KeptFolder(std::string_view path) {
    std::string folder = FolderOfPath(path);
    if (!folder.empty() && folder.back() != '/' && folder.back() != PathSeparator) {
        folder += PathSeparator;
    }
    return std::string(CutText(folder, SettingTextLimit));
}

// False, the reason in errno, for a path that is too long to be written to.
bool CanBeWritten(const char *path) {
    if (IsPath(path)) {
        return true;
    }
    errno = ENAMETOOLONG;
    return false;
}

// Takes what remains of the choice of a single-voice file; as SetExportFolder.
bool TakeChosenPath(const std::string &chosen, std::string *chosenPath) {
    if (chosenPath) {
        *chosenPath = chosen;
    }
    return SetExportFolder(chosen);
}

} // namespace

const SynthDriver *DriverOfId(DriverId id) {
    return DriverAt(DriverIndexOfId(id));
}

const SynthDriver *CurrentDriver() {
    return DriverOfId(CurrentDriverId);
}

DriverId DriverIdAt(int index) {
    const SynthDriver *driver = DriverAt(index);
    return driver ? driver->id : NoDriverId;
}

bool DriverCanConfigure(int index) {
    return HasFlag(index, DriverFlagConfigure);
}

bool DriverCanUpload(int index) {
    return HasFlag(index, DriverFlagUpload);
}

bool DriverCanDownload(int index) {
    return HasFlag(index, DriverFlagDownload);
}

bool DriverCanFind(int index) {
    return HasFlag(index, DriverFlagFind);
}

int DriverIndexOfId(DriverId id) {
    for (int index = 0; index < RowCount(); ++index) {
        if (DriverAt(index)->id == id) {
            return index;
        }
    }
    return -1;
}

int DriverIndexOfName(const char *name) {
    for (int index = 0; index < RowCount(); ++index) {
        if (EqualNoCase(DriverAt(index)->name, name)) {
            return index;
        }
    }
    return -1;
}

int SelectItemFonts(ItemFonts &fonts, DriverId id) {
    fonts = {};
    return Call(DriverOfId(id), &SynthDriver::MakeItemFonts, fonts);
}

void SelectListFonts(VoiceList &list, DriverId id) {
    SelectItemFonts(MainItemFonts, id);
    ListSetItemHeight(list, MainItemFonts.itemHeight);
}

int DrawVoiceObject(const DrawItem &item, const VoiceObject &voice, const ItemFonts &fonts) {
    if (PayloadOf(voice)) {
        const int index = DriverIndexOfId(HeaderOf(voice)->driverId);
        Call(DriverAt(index), &SynthDriver::DrawVoiceItem, item, fonts, voice, index);
    }
    return 0;
}

int PrintVoiceObject(QPainter &painter, const VoiceObject &voice, const PrintCell &cell) {
    return Call(CurrentDriver(), &SynthDriver::PrintVoice, painter, voice, cell);
}

const char *VoiceObjectName(const VoiceObject &voice) {
    if (PayloadOf(voice)) {
        Call(DriverOfId(HeaderOf(voice)->driverId), &SynthDriver::VoiceName, LastVoiceName, voice);
    }
    return LastVoiceName.empty() ? UnknownVoiceName : LastVoiceName.c_str();
}

std::string VoiceInWords(const VoiceObject *voice, int row) {
    std::string words = "Voice " + std::to_string(row + 1);
    if (!voice || !PayloadOf(*voice)) {
        return words + ", empty";
    }
    const SynthDriver *driver = DriverOfId(HeaderOf(*voice)->driverId);
    std::string name;
    Call(driver, &SynthDriver::VoiceName, name, *voice);
    const std::string spoken = Latin1ToUtf8(WithSingleBlanks(name));
    words += ", " + (spoken.empty() ? "no name" : spoken);
    if (const int algorithm = Call(driver, &SynthDriver::VoiceAlgorithm, *voice)) {
        words += ", algorithm " + std::to_string(algorithm);
    }
    return words;
}

void ForgetVoiceName() {
    LastVoiceName.clear();
}

int OpenDocument(QWidget *window, VoiceList &list, const char *path, DriverId *driver,
                 std::int64_t *time) {
    const std::string extension = ExtensionOfPath(path);
    for (const SynthDriver *row : SynthDrivers) {
        if (row->OpenBank && EqualNoCase(extension, row->bankExtension)) {
            *driver = row->id;
            return row->OpenBank(window, list, path, time);
        }
    }
    return 0;
}

int SaveDocument(QWidget *window, VoiceList &list, const char *path) {
    if (!CanBeWritten(path)) {
        return 0;
    }
    return Call(CurrentDriver(), &SynthDriver::SaveBank, window, list, path);
}

int DownloadCurrent(QWidget *window, VoiceList &list) {
    return Call(CurrentDriver(), &SynthDriver::DownloadBank, window, list, CurrentMidiPorts());
}

int UploadCurrent(QWidget *window, VoiceList &list) {
    return Call(CurrentDriver(), &SynthDriver::UploadBank, window, list, CurrentMidiPorts());
}

int UploadOneVoice(QWidget *window, VoiceList &list, const VoiceObject *voice, DriverId driver,
                   MidiPorts ports, int index, std::uint8_t flags) {
    return Call(DriverOfId(driver), &SynthDriver::UploadVoice, window, list, voice, ports, index,
                flags);
}

int ImportVoiceFrom(QWidget *window, VoiceList &list, int index, const char *path,
                    VoiceObject *out) {
    return Call(CurrentDriver(), &SynthDriver::ImportVoice, window, list, index, path, out);
}

int ImportOneVoice(QWidget *window, VoiceList &list, int index, const char *path, VoiceObject *out,
                   std::string *chosenPath) {
    if (path) {
        return IsPath(path) ? ImportVoiceFrom(window, list, index, path, out) : 0;
    }
    const auto chosen = ChooseImportFile(window, OpenExportPath, CurrentDriverId);
    if (!chosen) {
        return 1;
    }
    if (!TakeChosenPath(*chosen, chosenPath)) {
        return 0;
    }
    return ImportVoiceFrom(window, list, index, chosen->c_str(), out);
}

int ExportVoiceTo(QWidget *window, VoiceList &list, int index, const char *path) {
    if (!CanBeWritten(path) || !MakeBackupOf(window, path)) {
        return 0;
    }
    return Call(CurrentDriver(), &SynthDriver::ExportVoice, window, list,
                static_cast<const VoiceObject *>(nullptr), path, index, SynthFirmware);
}

int ExportOneVoice(QWidget *window, VoiceList &list, int index, std::string *chosenPath) {
    const VoiceObject *voice = ListVoice(list, index);
    const std::string name = FileNameOfVoice(VoiceObjectName(voice ? *voice : VoiceObject{}));
    std::string proposal;
    AppendBounded(proposal, OpenExportPath + name + "." + VoiceExtension(CurrentDriverId),
                  PathLimit);
    const auto chosen = ChooseExportFile(window, proposal, CurrentDriverId);
    if (!chosen) {
        return 1;
    }
    if (!TakeChosenPath(*chosen, chosenPath)) {
        return 0;
    }
    return ExportVoiceTo(window, list, index, chosen->c_str());
}

int EditOneVoice(QWidget *window, VoiceObject &voice, int index) {
    return Call(CurrentDriver(), &SynthDriver::EditVoice, window, voice, CurrentMidiPorts(), index);
}

int ConfigureCurrent(QWidget *window) {
    return Call(CurrentDriver(), &SynthDriver::ConfigureSynth, window, CurrentMidiPorts());
}

int AutoConfigureCurrent(QWidget *window) {
    return Call(CurrentDriver(), &SynthDriver::AutoConfigure, window, MidiOutPort);
}

int FindCurrentSynth(QWidget *window, const PortNames &names, bool autodetect) {
    const SynthDriver *driver = CurrentDriver();
    CurrentDriverId = NoDriverId;
    MidiInPort = MidiOutPort = NoMidiDevice;
    FoundSynth found{.driver = NoDriverId, .ports = {}, .firmware = SynthFirmware};
    const int result = Call(driver, &SynthDriver::FindSynth, window, found, names, autodetect);
    CurrentDriverId = found.driver;
    MidiInPort = found.ports.in;
    MidiOutPort = found.ports.out;
    SynthFirmware = found.firmware;
    return result;
}

int FindCurrentSynth(QWidget *window) {
    return FindCurrentSynth(window, {SelectKeyboardMidiIn.c_str(), SelectKeyboardMidiOut.c_str()},
                            SelectKeyboardAutodetect != 0);
}

const char *SynthTitle(DriverId id, std::uint32_t version) {
    static std::string title;
    const SynthDriver *driver = DriverOfId(id);
    if (!driver || IsEmpty(driver->name)) {
        title = "Unknown or unrecognized synthesizer";
    } else if (version == 0) {
        title = driver->name;
    } else {
        title = FormatText("%s version %d%d.%d%d", driver->name, static_cast<int>(version >> 24),
                           static_cast<int>(version >> 16 & 0xFF),
                           static_cast<int>(version >> 8 & 0xFF), static_cast<int>(version & 0xFF));
    }
    title = CutText(title, TitleLimit);
    return title.c_str();
}

const char *BankExtension(DriverId id) {
    return ExtensionOf(id, &SynthDriver::bankExtension);
}

const char *VoiceExtension(DriverId id) {
    return ExtensionOf(id, &SynthDriver::voiceExtension);
}

const char *ExtraExtension(DriverId id) {
    return ExtensionOf(id, &SynthDriver::extraExtension);
}

const char *DefaultDocumentName() {
    const SynthDriver *driver = CurrentDriver();
    return driver && !IsEmpty(driver->defaultDocumentName) ? driver->defaultDocumentName
                                                           : FallbackDocumentName;
}

std::string WithProgramExtension(const std::string &path, const std::string &extension) {
    const std::string present = ExtensionOfPath(path);
    const auto isPresent = [&](const char *own) {
        return !IsEmpty(own) && EqualNoCase(present, own);
    };
    for (const SynthDriver *driver : SynthDrivers) {
        if (isPresent(driver->bankExtension) || isPresent(driver->voiceExtension) ||
            isPresent(driver->extraExtension)) {
            return path;
        }
    }
    return path + (path.ends_with('.') ? "" : ".") + extension;
}

int GetOpenFolder(std::string &folder) {
    folder = CutText(OpenPath, PathLimit);
    return 1;
}

int SetOpenFolder(const char *path) {
    OpenPath = KeptFolder(path);
    return 1;
}

bool SetExportFolder(const std::string &path) {
    if (!CanBeWritten(path.c_str())) {
        return false;
    }
    OpenExportPath = KeptFolder(path);
    return true;
}

} // namespace tonewright
