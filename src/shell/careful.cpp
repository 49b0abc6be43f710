// The decisions of careful mode, and their words.
#include "shell/careful.h"

#include "common/desktop.h"
#include "common/file_bytes.h"
#include "common/settings.h"
#include "common/strings.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "core/voice_fault.h"
#include "core/voice_file_reader.h"
#include "database/database_record.h"
#include "midi/transport.h"
#include "shell/command_state.h"
#include "shell/list_origin.h"
#include "shell/list_state.h"
#include "shell/shell_window.h"
#include "shell/undo.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <utility>

namespace tonewright {
namespace {

// The texts, in the string table.
enum Text : unsigned {
    NoVoices = 20001,
    FewerVoices = 20002,
    VoicesOfOtherFamily = 20003,
    IncompleteVoice = 20004,
    NothingSaved = 20005,
    NothingSent = 20006,
    SelectFamilyInstead = 20007,
    NoFamily = 20008,
    NotOneOfItsVoices = 20009,
    CouldNotBeRead = 20010,
    OtherList = 20011,
    OtherExtension = 20012,
    HoldsMore = 20013,
    WasChanged = 20014,
    ListHoldsMore = 20015,
    NotForMidi = 20016,
    SaveAsOrReplace = 20018,
    SaveAsOrCancel = 20019,
    ReplaceMemory = 20020,
    UploadError = 20021,
    OutputNotFound = 20022,
    InputNotFound = 20023,
    PortNotOpened = 20024,
    NoAnswer = 20025,
    NoBackupWanted = 20026,
    SingleVoiceFile = 20027,
    NoBankByName = 20028,
    NotFoundButKept = 20029,
    DownloadError = 20030,
    ListUnchanged = 20031,
    NotAllReceived = 20032,
    SaveOthers = 20033,
    PortsOpenNow = 20034,
    SelectionEmptiesList = 20035,
    ConfigureError = 20036,
    NotKeptByFiles = 20040,
    NoBankExtension = 20041,
    NoDatabase = 20046,
    NotAdded = 20047,
    NotForDatabase = 20048,
    DatabaseUnchanged = 20049,
};

bool IsOn() {
    return CarefulMode != 0;
}

std::string TextOf(Text number, std::initializer_list<std::string> parts = {}) {
    return LoadProgramString(number, parts);
}

std::string NoFamilyChosen() {
    return TextOf(NoFamily) + (ListCount(MainList) > 0 ? TextOf(SelectionEmptiesList) : "");
}

// ---- voices that are none of the current family

const SynthDriver *FamilyOf(const VoiceObject *voice) {
    const auto header = voice ? HeaderOf(*voice) : std::nullopt;
    return header ? DriverOfId(header->driverId) : nullptr;
}

std::string FaultOfList(const BankFault &bank, const SynthDriver &family) {
    switch (bank.fault) {
    case VoiceFault::None:
        break;
    case VoiceFault::Missing:
        return ListCount(MainList) == 0
                   ? TextOf(NoVoices)
                   : TextOf(FewerVoices, {family.name, std::to_string(family.bankRows),
                                          std::to_string(bank.row + 1)});
    case VoiceFault::OtherFamily:
        if (const SynthDriver *other = FamilyOf(ListVoice(MainList, bank.row))) {
            return TextOf(VoicesOfOtherFamily, {other->name, family.name});
        }
        return TextOf(NotOneOfItsVoices, {std::to_string(bank.row + 1), family.name});
    case VoiceFault::Incomplete:
        return TextOf(IncompleteVoice, {std::to_string(bank.row + 1)});
    case VoiceFault::NotKept:
        return TextOf(NotKeptByFiles, {std::to_string(bank.row + 1), family.name});
    }
    return "";
}

bool IsDownload(const SynthDriver &family) {
    return MainListOrigin == OriginOfDownload && family.bankFormat && family.bankFormat->cameWhole;
}

// The places of voices that did not arrive in the download that the list comes from; and whether
// that of a row is one.
std::string PlacesMissing(const SynthDriver &family) {
    return IsDownload(family) ? PlacesNotReceived(MainList, *family.bankFormat) : "";
}
bool IsMissing(const SynthDriver &family, int row) {
    return IsDownload(family) && !family.bankFormat->cameWhole(ListVoice(MainList, row));
}

// Why what is wanted of the list, or of one of its rows, cannot be had; empty when it can.
std::string FaultForCurrentFamily(int row, VoiceFault (*faultOf)(const VoiceObject *voice,
                                                                 const SynthDriver &family)) {
    const SynthDriver *family = CurrentDriver();
    if (!family) {
        return NoFamilyChosen();
    }
    const BankFault bank = row == NoRow
                               ? BankFaultOf(MainList, *family, faultOf)
                               : BankFault{faultOf(ListVoice(MainList, row), *family), row};
    const std::string fault = FaultOfList(bank, *family);
    return fault.empty() && row != NoRow && IsMissing(*family, row)
               ? TextOf(IncompleteVoice, {std::to_string(row + 1)})
               : fault;
}

// False when the user wants no bank without those voices.
bool SavesWithoutMissing(QWidget *window) {
    const std::string missing = PlacesMissing(*CurrentDriver());
    return missing.empty() || AskYesNo(window, Paragraphs(TextOf(NotAllReceived, {missing}),
                                                          TextOf(SaveOthers))) == ResultYes;
}

// The same of what is to be sent, which a message must be able to carry.
std::string FaultForUpload(int row) {
    const SynthDriver *family = CurrentDriver();
    std::string fault = FaultForCurrentFamily(row, VoiceFaultOf);
    if (!fault.empty() || !family->bankFormat || !family->bankFormat->fitsAMessage) {
        return fault;
    }
    const int last = row == NoRow ? family->bankRows - 1 : row;
    for (int sent = row == NoRow ? 0 : row; sent <= last; ++sent) {
        if (!family->bankFormat->fitsAMessage(ListVoice(MainList, sent))) {
            return TextOf(NotForMidi, {std::to_string(sent + 1)});
        }
    }
    return "";
}

// The family whose whole bank the list is; nullptr for none.
const SynthDriver *FamilyOfList() {
    const SynthDriver *family = FamilyOf(ListVoice(MainList, 0));
    return family && BankFaultOf(MainList, *family, FileFaultOf).fault == VoiceFault::None
               ? family
               : nullptr;
}

// Says why, and what has not been done. False without a fault.
bool Refuses(QWidget *window, const std::string &fault, Text nothingDone) {
    if (fault.empty()) {
        return false;
    }
    ShowMessage(window, Paragraphs(fault, TextOf(nothingDone)));
    return true;
}

// ---- files whose bank a save would replace

std::string RowsOfBank() {
    const SynthDriver *family = CurrentDriver();
    return family ? std::to_string(family->bankRows) : "";
}

// Why no Open would take the current family's voices from a file of that name; empty when it would.
std::string FaultOfName(const std::string &path) {
    const SynthDriver *family = CurrentDriver();
    const VoiceFileFormat *format = BankFormatOfPath(path);
    if (!family || (format && format->driver == family->id) ||
        !FormatOfDriver(family->id, VoiceFileKind::Bank)) {
        return "";
    }
    const std::string name = FileNameOfPath(path.c_str());
    return format ? TextOf(OtherExtension, {name, DriverOfId(format->driver)->name, family->name})
                  : TextOf(NoBankExtension, {name, family->name});
}

SaveWay AskForOtherName(QWidget *window, const std::string &text) {
    return AskWithButtons(window, Paragraphs(text, TextOf(SaveAsOrCancel)), "Save as", nullptr,
                          "Cancel") == ResultYes
               ? SaveWay::SaveAs
               : SaveWay::Stay;
}

// Whether the voices that a bank has no room for may be left out of it, or there are none.
bool MayLeaveVoicesOut(QWidget *window) {
    const SynthDriver *family = CurrentDriver();
    const int count = ListCount(MainList);
    return !family || count <= family->bankRows ||
           AskYesNo(window, TextOf(ListHoldsMore, {std::to_string(count), family->name,
                                                   RowsOfBank()})) == ResultYes;
}

// A name that no file was given, by any family.
bool WasNeverNamed(const std::string &path) {
    if (EqualNoCase(path, "Untitled.Twl")) {
        return true;
    }
    for (const SynthDriver *driver : SynthDrivers) {
        if (EqualNoCase(path, driver->defaultDocumentName)) {
            return true;
        }
    }
    return false;
}

// Why what the document's file holds would be lost; nothing when the list is what it held.
std::optional<Text> LossOfFile(const std::string &path) {
    if (TheDocumentFile.path != path) {
        return CouldNotBeRead;
    }
    if (TheDocumentFile.origin != MainListOrigin) {
        return OtherList;
    }
    if (!FileExists(path.c_str())) {
        return std::nullopt;
    }
    const DocumentFile now = LookAtDocumentFile(path);
    // A list that Undo brought back has lost the voices behind a bank; of one that has them still
    // the other question tells.
    const bool areVoicesGone = now.exceedsBank && ListCount(MainList) <= CurrentDriver()->bankRows;
    if (now.holdsMore || areVoicesGone) {
        return HoldsMore;
    }
    return now.start != TheDocumentFile.start ? std::optional(WasChanged) : std::nullopt;
}

// ---- messages

// Why the voice itself could not be added; empty when it could.
std::string FaultForDatabase(int row) {
    const SynthDriver *family = CurrentDriver();
    const VoiceObject *voice = ListVoice(MainList, row);
    if (family && VoiceFaultOf(voice, *family) == VoiceFault::OtherFamily) {
        return TextOf(NotOneOfItsVoices, {std::to_string(row + 1), family->name});
    }
    const std::string fault = FaultForCurrentFamily(row, VoiceFaultOf);
    return fault.empty() && !(family->database && FitsDatabase(*family->database, *voice))
               ? TextOf(NotForDatabase, {std::to_string(row + 1), family->name})
               : fault;
}

// So many that the message stays on the screen, however long the list.
std::string PlacesNotAdded(std::span<const FailedAdd> failed) {
    constexpr std::size_t most = UsualBankRows;
    const auto named = failed.first(std::min(failed.size(), most));
    const std::string places = PlacesOf(0, named.back().row, [named](int row) {
        return std::ranges::find(named, row, &FailedAdd::row) != named.end();
    });
    return named.size() < failed.size() ? places + " and others" : places;
}

std::string ReasonOfReading(const std::string &path, const VoiceFileFormat *format) {
    return IsPath(path) ? ReasonNotOpened(path.c_str(), format) : std::strerror(ENAMETOOLONG);
}

std::string ReasonOfOpening(const std::string &path) {
    if (const VoiceFileFormat *format = BankFormatOfPath(path)) {
        return ReasonOfReading(path, format);
    }
    return TextOf(FormatOfPath(path) ? SingleVoiceFile : NoBankByName);
}

std::string WithReason(std::string text, const std::string &path, const std::string &reason) {
    return Paragraphs(std::move(text), path + ": " + reason + ".");
}

std::string NameOfPort(int port) {
    const MidiDeviceInfo *info = TheMidi.Pm_GetDeviceInfo(port);
    return info ? info->name : "";
}

// Such an instrument answers, also before it is sent a voice; the others only listen.
bool GivesVoices(const SynthDriver &family) {
    return (family.flags & DriverFlagDownload) != 0;
}

std::string ReasonOfTransfer() {
    if (!CurrentDriver()) {
        return NoFamilyChosen();
    }
    switch (TryMidiLink(CurrentMidiPorts())) {
    case LinkFault::NoOutput:
        return TextOf(OutputNotFound);
    case LinkFault::NoInput:
        return TextOf(InputNotFound);
    case LinkFault::OutputNotOpened:
        return TextOf(PortNotOpened, {NameOfPort(MidiOutPort)});
    case LinkFault::InputNotOpened:
        return TextOf(PortNotOpened, {NameOfPort(MidiInPort)});
    case LinkFault::None:
        break;
    }
    return TextOf(GivesVoices(*CurrentDriver()) ? NoAnswer : PortsOpenNow);
}

void TellFailedDownload(QWidget *window) {
    ShowMessage(window, Paragraphs(Paragraphs(TextOf(DownloadError), ReasonOfTransfer()),
                                   TextOf(ListUnchanged)));
}

} // namespace

bool CarefulRefusesToSave(QWidget *window) {
    const std::string fault = IsOn() ? FaultForCurrentFamily(NoRow, FileFaultOf) : "";
    if (fault.empty()) {
        return IsOn() && !SavesWithoutMissing(window);
    }
    if (const SynthDriver *family = FamilyOfList()) {
        if (AskYesNo(window, Paragraphs(fault, TextOf(SelectFamilyInstead, {family->name}))) ==
            ResultYes) {
            SelectFamily(family->id);
            return !SavesWithoutMissing(window);
        }
        return true;
    }
    return Refuses(window, fault, NothingSaved);
}

bool CarefulRefusesToUpload(QWidget *window, int row) {
    return IsOn() && Refuses(window, FaultForUpload(row), NothingSent);
}

bool CarefulRefusesToExport(QWidget *window, int row) {
    return IsOn() && Refuses(window, FaultForCurrentFamily(row, FileFaultOf), NothingSaved);
}

bool CarefulRefusesToAdd(int row) {
    return IsOn() && !FaultForDatabase(row).empty();
}

SaveWay CarefulSaveWay(QWidget *window) {
    if (!IsOn()) {
        return SaveWay::Replace;
    }
    const std::string &path = CurrentDocumentPath;
    if (WasNeverNamed(path)) {
        return SaveWay::SaveAs;
    }
    if (const std::string fault = FaultOfName(path); !fault.empty()) {
        return AskForOtherName(window, fault);
    }
    const auto loss = LossOfFile(path);
    if (!loss) {
        return MayLeaveVoicesOut(window) ? SaveWay::Replace : SaveWay::Stay;
    }
    if (!FileExists(path.c_str())) {
        return SaveWay::SaveAs; // nothing is lost, but the list was never of that name
    }
    const std::string text = TextOf(*loss, {FileNameOfPath(path.c_str()), RowsOfBank()});
    switch (AskWithButtons(window, Paragraphs(text, TextOf(SaveAsOrReplace)), "Save as", "Replace",
                           "Cancel")) {
    case ResultYes:
        return SaveWay::SaveAs;
    case ResultNo:
        return MayLeaveVoicesOut(window) ? SaveWay::Replace : SaveWay::Stay;
    default:
        return SaveWay::Stay;
    }
}

SaveWay CarefulSaveAsWay(QWidget *window, const std::string &path) {
    if (!IsOn()) {
        return SaveWay::Replace;
    }
    if (const std::string fault = FaultOfName(path); !fault.empty()) {
        return AskForOtherName(window, fault);
    }
    return MayLeaveVoicesOut(window) ? SaveWay::Replace : SaveWay::Stay;
}

bool CarefulGoesOnUnsaved() {
    return !IsOn();
}

bool CarefulHasNothingToSave() {
    return IsOn() && ListCount(MainList) == 0;
}

bool CarefulMayReplaceMemory(QWidget *window) {
    return !IsOn() || AskYesNo(window, TextOf(ReplaceMemory, {RowsOfBank()})) == ResultYes;
}

void CarefulKeepInstrument(QWidget *window, DriverId former) {
    const SynthDriver *family = DriverOfId(former);
    if (!IsOn() || CurrentDriverId != NoDriverId || ListCount(MainList) == 0 || !family) {
        return;
    }
    CurrentDriverId = former;
    ShowMessage(window, TextOf(NotFoundButKept, {family->name}));
}

bool CarefulRefusesToDownload(QWidget *window) {
    if (!IsOn()) {
        return false; // before any port is opened
    }
    const bool canBegin = CurrentDriver() && (!GivesVoices(*CurrentDriver()) ||
                                              TryMidiLink(CurrentMidiPorts()) == LinkFault::None);
    if (canBegin) {
        return false;
    }
    TellFailedDownload(window);
    return true;
}

void CarefulTakeBackDownload(QWidget *window) {
    if (IsOn() && CurrentDriver() && GivesVoices(*CurrentDriver())) {
        UndoTakeBack();
        TellFailedDownload(window);
    }
}

bool CarefulRefusesToConfigure(QWidget *window) {
    if (!IsOn() || TryMidiLink(CurrentMidiPorts()) == LinkFault::None) {
        return false;
    }
    ShowMessage(window, Paragraphs(TextOf(ConfigureError), ReasonOfTransfer()));
    return true;
}

bool CarefulMissesVoices(QWidget *window) {
    if (!IsOn() || !CurrentDriver()) {
        return false;
    }
    OriginOfDownload = MainListOrigin;
    const std::string missing = PlacesMissing(*CurrentDriver());
    if (!missing.empty()) {
        ShowMessage(window, TextOf(NotAllReceived, {missing}));
    }
    return !missing.empty();
}

void CarefulForgetClickedRow() {
    if (IsOn()) {
        MainListState.clickedIndex = NoRow;
    }
}

bool CarefulMarksCancelledImport() {
    return !IsOn();
}

bool CarefulKeepsUndoUntilOpened() {
    return IsOn();
}

void CarefulForgetPath(std::string &path) {
    if (IsOn()) {
        path.clear();
    }
}

std::string CarefulReadFailure(std::string text, const std::string &path) {
    return IsOn() ? WithReason(std::move(text), path, ReasonOfOpening(path)) : text;
}

std::string CarefulImportFailure(std::string text, const std::string &path) {
    if (!IsOn()) {
        return text;
    }
    const VoiceFileFormat *format = FormatOfDriver(CurrentDriverId, VoiceFileKind::SingleVoice);
    return WithReason(std::move(text), path, ReasonOfReading(path, format));
}

std::string CarefulWriteFailure(std::string text, const std::string &path, int reason) {
    if (!IsOn()) {
        return text;
    }
    if (reason == 0) {
        return Paragraphs(std::move(text), path);
    }
    return WithReason(std::move(text), path,
                      reason == ECANCELED ? TextOf(NoBackupWanted) : std::strerror(reason));
}

std::string CarefulAddFailure(std::string text, std::span<const FailedAdd> failed, bool ofAll) {
    if (!IsOn()) {
        return text;
    }
    const int count = ListCount(MainList);
    if (ofAll) {
        text = Paragraphs(std::move(text),
                          TextOf(NotAdded, {std::to_string(failed.size()), std::to_string(count),
                                            PlacesNotAdded(failed)}));
    }
    // The first fault of a voice, and the first one of the file.
    std::string fault, fileFault;
    for (const FailedAdd &add : failed) {
        const std::string ofVoice = FaultForDatabase(add.row);
        if (fault.empty()) {
            fault = ofVoice;
        }
        if (ofVoice.empty() && fileFault.empty()) {
            const SynthDriver &family = *CurrentDriver();
            fileFault = std::string(family.DatabasePath()) + ": " +
                        (add.reason == EINVAL ? TextOf(NoDatabase, {family.name})
                                              : std::strerror(add.reason)) +
                        ".";
        }
    }
    for (const std::string &part : {fault, fileFault}) {
        if (!part.empty()) {
            text = Paragraphs(std::move(text), part);
        }
    }
    const bool isUnchanged = !ofAll || static_cast<int>(failed.size()) == count;
    return isUnchanged ? Paragraphs(std::move(text), TextOf(DatabaseUnchanged)) : text;
}

std::string CarefulUploadFailure(std::string text) {
    if (!IsOn()) {
        return text;
    }
    return Paragraphs(text.empty() ? TextOf(UploadError) : std::move(text), ReasonOfTransfer());
}

} // namespace tonewright
