// The command that adds the voices of files to catalogues, each to that of its family. It goes the
// way of the window's command, which opens and closes the catalogue for each voice.
#include "cli/bank_document.h"
#include "cli/cli_commands.h"
#include "cli/database_choice.h"
#include "cli/terminal_desktop.h"
#include "cli/text_output.h"
#include "cli/user_settings.h"
#include "common/desktop.h"
#include "common/file_bytes.h"
#include "common/folders.h"
#include "common/open_file.h"
#include "common/settings.h"
#include "common/text.h"
#include "common/utf8_path.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "core/document_file.h"
#include "database/add_voice.h"
#include "database/database_file.h"
#include "database/database_names.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

// A catalogue that a file of this run is for.
struct Catalogue {
    ChosenDatabase chosen;
    bool isGivenUp = false; // nothing more is added to it
    bool isThere = false;   // on the disk: before the run, or made in it
    bool replaces = false;  // another file stands in its place, until the first voice is added
    std::string backup;     // that of this run, if one has been made
};

// A backup beside a catalogue of `family` whose name does not say that it is one. No catalogue of
// any name has this one.
std::string BackupOfOtherName(const SynthDriver &family, const std::string &path) {
    return path + '_' + (family.DatabaseInfo(DatabaseInfoBackupExtension).text + 1);
}

std::string BackupOf(const ChosenDatabase &chosen) {
    const SynthDriver &family = *chosen.family;
    return ExtensionOfPath(chosen.path) == family.DatabaseInfo(DatabaseInfoExtension).text
               ? DatabaseBackupPathOf(chosen.path,
                                      family.DatabaseInfo(DatabaseInfoBackupExtension).text)
               : BackupOfOtherName(family, chosen.path);
}

// Asked before the first voice is added to a catalogue; empty for nothing.
std::string QuestionBeforeAdding(const ChosenDatabase &chosen, DatabaseHandle &database) {
    const std::uint64_t counted = DatabaseCount(database), begun = RecordsThatBegin(database);
    const std::uint64_t records = DatabaseSize(database) - DatabaseHeaderSize;
    const std::uint64_t whole = records / DatabaseRecordSize(*database.family);
    // An add that was broken off leaves one record more, which the next one writes over.
    if (whole >= counted && begun <= counted + 1) {
        return "";
    }
    return FormatText(
        "The catalogue %s counts %llu records and holds %llu%s. Adding a voice writes behind those "
        "that it counts%s.\n\nDo you wish to add to it anyway?",
        FieldText(FileNameOfPath(chosen.path.c_str())).c_str(),
        static_cast<unsigned long long>(counted), static_cast<unsigned long long>(whole),
        whole < begun ? " and a part of one" : "",
        CreateBackups != 0 ? ", and the file as it is replaces its backup" : "");
}

// Asked before a catalogue takes the place of a file that is none of its family. `backup`: the one
// that a catalogue of another family, `other`, is copied to; empty for what is no catalogue.
std::string QuestionBeforeReplacing(const ChosenDatabase &chosen, const SynthDriver *other,
                                    const std::string &backup) {
    const std::string name = FieldText(FileNameOfPath(chosen.path.c_str()));
    std::string what = FormatText("The file %s is no catalogue of the %s, and adding a voice "
                                  "deletes it.",
                                  name.c_str(), chosen.family->name);
    if (!backup.empty()) {
        what = FormatText("The file %s is a catalogue of %s, and adding a voice of the %s deletes "
                          "it.",
                          name.c_str(), FamilyInWords(other).c_str(), chosen.family->name);
    }
    if (!backup.empty() && CreateBackups != 0) {
        what += FormatText(" It is copied to %s first.",
                           FieldText(FileNameOfPath(backup.c_str())).c_str());
    }
    return what + "\n\nDo you wish to add to a new one in its place?";
}

constexpr const char *AsAnswered = ", as answered";

// Asks whether to go on, and keeps a backup (no path: none). Why not, empty for going on.
std::string AskAndKeep(Catalogue &catalogue, const std::string &question,
                       const std::string &backup) {
    if (!question.empty() && AskYesNo(nullptr, question) != ResultYes) {
        return AsAnswered;
    }
    bool isMade = false;
    if (!backup.empty() &&
        !MakeBackupAs(nullptr, catalogue.chosen.path.c_str(), backup.c_str(), &isMade)) {
        return AsAnswered;
    }
    catalogue.backup = isMade ? backup : "";
    return "";
}

// What is no catalogue of the family is to be replaced.
std::string PrepareToReplace(Catalogue &catalogue) {
    const ChosenDatabase &chosen = catalogue.chosen;
    if (!OpenFile(chosen.path.c_str(), "r+b")) {
        return WithSystemReason(": could not be written", errno);
    }
    std::vector<std::uint8_t> header;
    const SynthDriver *other = nullptr;
    std::string backup; // of a catalogue only
    if (ReadStartOfFile(chosen.path.c_str(), DatabaseHeaderSize, header) &&
        HeaderFaultOf(chosen.family->id, header) == DatabaseHeaderFault::Family) {
        other = DriverOfId(HeaderDriver(header));
        const bool hasBackups = other && HasCatalogues(*other);
        backup = BackupOfOtherName(hasBackups ? *other : *chosen.family, chosen.path);
    }
    catalogue.replaces = true;
    return AskAndKeep(catalogue, QuestionBeforeReplacing(chosen, other, backup), backup);
}

// Before the first voice: asks where something would be lost, and keeps a backup. Empty, or what
// follows "not added to PATH".
std::string PrepareCatalogue(Catalogue &catalogue) {
    const ChosenDatabase &chosen = catalogue.chosen;
    errno = 0;
    const auto database = chosen.family->DatabaseOpen(chosen.path.c_str(), DatabaseRead);
    const int error = errno;
    if (!database) {
        return error == ENOENT   ? ""
               : error == EINVAL ? PrepareToReplace(catalogue)
                                 : ": " + ReasonNotOpened(chosen, error);
    }
    if (!HasRoomBehind(*database->family, DatabaseCount(*database))) {
        return FormatText(": it counts %u records, and there is no room behind so many",
                          DatabaseCount(*database));
    }
    catalogue.isThere = true;
    return AskAndKeep(catalogue, QuestionBeforeAdding(chosen, *database), BackupOf(chosen));
}

// The number of records by the header of the file; 0 without one.
std::uint32_t CountOnDisk(const ChosenDatabase &chosen) {
    std::vector<std::uint8_t> header;
    return ReadStartOfFile(chosen.path.c_str(), DatabaseHeaderSize, header) &&
                   HeaderFaultOf(chosen.family->id, header) == DatabaseHeaderFault::None
               ? HeaderCount(header)
               : 0;
}

// A name beside the file that nothing has.
std::string FreeNameBeside(const std::string &path) {
    namespace fs = std::filesystem;
    std::error_code error;
    std::string name = path + ".former";
    for (int number = 2; fs::exists(fs::symlink_status(PathOfUtf8(name), error)); ++number) {
        name = FormatText("%s.former%d", path.c_str(), number);
    }
    return name;
}

// Adds the first voice of a catalogue that takes the place of another file, which keeps another
// name until the voice is on the disk. False, with the reason in errno, when the other file still
// stands in its place, or else under `left`.
bool AddFirstInItsPlace(Catalogue &catalogue, int row, std::string &left) {
    std::error_code error;
    const std::string path =
        Utf8OfPath(std::filesystem::canonical(PathOfUtf8(catalogue.chosen.path), error));
    const std::string former = FreeNameBeside(path);
    if (error) {
        errno = error.value();
        return false;
    }
    if (!RenameOver(path.c_str(), former.c_str())) {
        return false;
    }
    if (AddRowToDatabase(nullptr, MainList, row)) {
        DeleteWrittenFile(former.c_str());
        return true;
    }
    const int reason = errno;
    if (!RenameOver(former.c_str(), path.c_str())) {
        left = former;
    }
    errno = reason;
    return false;
}

// Adds a voice of MainList. False after telling why it could not be added, and what that cost.
bool AddVoice(Catalogue &catalogue, const char *file, int row) {
    std::string left;
    errno = 0;
    if (catalogue.replaces ? AddFirstInItsPlace(catalogue, row, left)
                           : AddRowToDatabase(nullptr, MainList, row)) {
        catalogue.isThere = true;
        catalogue.replaces = false;
        return true;
    }
    std::string reason = WithSystemReason(
        FormatText("place %d of %s could not be added", row + 1, FieldText(file).c_str()), errno);
    if (!left.empty()) {
        reason += "; the file that stood there is now " + FieldText(left);
    } else if (catalogue.replaces) {
        reason += "; the file that stands there is as it was";
    } else if (catalogue.isThere && !FileExists(catalogue.chosen.path.c_str())) {
        reason += "; the catalogue has been deleted";
        if (!catalogue.backup.empty()) {
            reason += ", its backup is " + FieldText(catalogue.backup);
        }
    }
    TellError(catalogue.chosen.path, reason);
    return false;
}

// Adds the voices of MainList, which come from `file`, and prints how many were added and skipped.
// False after telling of those that could not be added.
bool AddVoices(Catalogue &catalogue, const char *file) {
    const DatabaseFamily &family = *catalogue.chosen.family->database;
    std::uint32_t added = 0, skipped = 0;
    bool isWhole = true;
    std::uint32_t count = CountOnDisk(catalogue.chosen);
    for (int row = 0; row < ListCount(MainList) && !catalogue.isGivenUp; ++row) {
        const VoiceObject *voice = ListVoice(MainList, row);
        if (!voice || !FitsDatabase(family, *voice)) {
            TellError(file, FormatText("not added: place %d holds no whole voice", row + 1));
            isWhole = false;
        } else if (!HasRoomBehind(family, count)) {
            TellError(catalogue.chosen.path,
                      FormatText("place %d of %s was not added: there is no room behind %u records",
                                 row + 1, FieldText(file).c_str(), count));
            catalogue.isGivenUp = true;
        } else if (!AddVoice(catalogue, file, row)) {
            catalogue.isGivenUp = true;
        } else {
            const std::uint32_t now = CountOnDisk(catalogue.chosen);
            ++(now == count ? skipped : added);
            count = now;
        }
    }
    Put(StandardOutput, FieldText(file));
    Put(StandardOutput, '\t');
    PutNumber(StandardOutput, added);
    Put(StandardOutput, '\t');
    PutNumber(StandardOutput, skipped);
    Put(StandardOutput, '\n');
    return isWhole && !catalogue.isGivenUp;
}

bool IsSameFile(const std::string &one, const std::string &other) {
    std::error_code error;
    return one == other || std::filesystem::equivalent(PathOfUtf8(one), PathOfUtf8(other), error);
}

// Those of a run; what one file began with a catalogue counts for the next ones.
using Catalogues = std::vector<Catalogue>;

// The family for which the file of this catalogue is taken already, or its own.
const SynthDriver *FamilyThatHas(const Catalogues &catalogues, const ChosenDatabase &chosen) {
    const auto taken = std::ranges::find_if(catalogues, [&](const Catalogue &other) {
        return !other.isGivenUp && IsSameFile(other.chosen.path, chosen.path);
    });
    return taken != catalogues.end() ? taken->chosen.family : chosen.family;
}

// The exit status; what failed has been told.
int AddFile(const CliCall &call, const char *file, Catalogues &catalogues) {
    const VoiceFileFormat *format = FormatOfPath(file);
    const SynthDriver *family = format ? DriverOfId(format->driver) : nullptr;
    if (!family || !family->database || !HasCatalogues(*family)) {
        return TellFailure(file, format ? "there are no catalogues of this instrument"
                                        : UnknownFormatReason(file));
    }
    auto chosen = ChooseDatabaseOf(call, *family);
    if (!chosen) {
        return ExitWrongCall;
    }
    const SynthDriver *owner =
        chosen->family == family ? FamilyThatHas(catalogues, *chosen) : chosen->family;
    if (owner != family) {
        return TellFailure(
            file, FormatText("not added: it is for the %s, and %s is a catalogue of the %s",
                             family->name, FieldText(chosen->path).c_str(), owner->name));
    }
    auto catalogue = std::ranges::find(catalogues, family,
                                       [](const Catalogue &one) { return one.chosen.family; });
    if (catalogue != catalogues.end() && catalogue->isGivenUp) {
        return TellFailure(file, "not added to " + FieldText(chosen->path) + " either");
    }
    if (!OpenVoices(file, *format)) {
        return ExitFailed;
    }
    if (call[CliOption::Database]) {
        DatabasePathOfThisRun = chosen->path;
    }
    if (catalogue == catalogues.end()) {
        catalogue = catalogues.emplace(catalogues.end());
        catalogue->chosen = std::move(*chosen);
        const std::string reason = PrepareCatalogue(*catalogue);
        if (!reason.empty()) {
            catalogue->isGivenUp = true;
            return TellFailure(file, "not added to " + FieldText(catalogue->chosen.path) + reason);
        }
    }
    return AddVoices(*catalogue, file) ? ExitDone : ExitFailed;
}

} // namespace

int CliDbAdd(const CliCall &call) {
    ReadSettingsOfAdding();
    MakeProgramFolders();
    UseTerminalDesktop(call);
    Catalogues catalogues;
    int status = ExitDone;
    for (const char *file : call.words) {
        const int now = AddFile(call, file, catalogues);
        if (now == ExitWrongCall) {
            return now;
        }
        status = now == ExitDone ? status : now;
    }
    return status;
}

} // namespace tonewright
