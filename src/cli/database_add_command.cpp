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
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "core/document_file.h"
#include "database/add_voice.h"
#include "database/database_file.h"
#include "database/database_names.h"

#include <cerrno>
#include <map>

namespace tonewright {
namespace {

enum class Outcome {
    Done,
    Failed,    // told; the next file may do better
    GivenUp,   // told; no file can do better
    WrongCall, // told
};

std::string BackupOf(const ChosenDatabase &chosen) {
    return DatabaseBackupPathOf(chosen.path,
                                chosen.family->DatabaseInfo(DatabaseInfoBackupExtension).text);
}

// What a catalogue is asked about before the first voice is added; empty for nothing.
std::string QuestionBefore(const ChosenDatabase &chosen, DatabaseHandle *database) {
    const char *name = FileNameOfPath(chosen.path.c_str());
    if (!database) {
        return FormatText(
            "The file %s is no catalogue of the %s, and adding a voice deletes it.\n\n"
            "Do you wish to add to a new one in its place?",
            name, chosen.family->name);
    }
    // An add that was broken off leaves one record more, which the next one writes over.
    const std::uint64_t counted = DatabaseCount(*database), begun = RecordsThatBegin(*database);
    if (begun == counted || begun == counted + 1) {
        return "";
    }
    return FormatText("The catalogue %s counts %llu records and holds %llu. Adding a voice writes "
                      "behind those that it counts, and the file as it is replaces its backup.\n\n"
                      "Do you wish to add to it anyway?",
                      name, static_cast<unsigned long long>(counted),
                      static_cast<unsigned long long>(begun));
}

Outcome TellNothingAdded(const ChosenDatabase &chosen, const std::string &reason) {
    TellError(chosen.path, reason);
    return Outcome::Failed;
}

// Before the first voice: asks where something would be lost, and keeps a backup.
Outcome PrepareCatalogue(const ChosenDatabase &chosen) {
    const char *path = chosen.path.c_str();
    errno = 0;
    const auto database = chosen.family->DatabaseOpen(path, DatabaseRead);
    const int error = errno;
    if (!database && error == ENOENT) {
        return Outcome::Done;
    }
    if (!database && error != EINVAL) {
        return TellNothingAdded(chosen, ReasonNotOpened(chosen, error));
    }
    const std::string question = QuestionBefore(chosen, database.get());
    if (!question.empty() && AskYesNo(nullptr, question) != ResultYes) {
        return TellNothingAdded(chosen, "nothing added, as answered");
    }
    if (database) {
        return MakeBackupAs(nullptr, path, BackupOf(chosen).c_str())
                   ? Outcome::Done
                   : TellNothingAdded(chosen, "nothing added, as answered");
    }
    // What is no catalogue is no backup of one either.
    auto made = chosen.family->DatabaseOpen(path, DatabaseReplace);
    if (!made || !chosen.family->DatabaseClose(std::move(made))) {
        return TellNothingAdded(chosen, WithSystemReason("could not be written", errno));
    }
    return Outcome::Done;
}

// The number of records by the header of the file; 0 without one.
std::uint32_t CountOnDisk(const ChosenDatabase &chosen) {
    std::vector<std::uint8_t> header;
    return ReadStartOfFile(chosen.path.c_str(), DatabaseHeaderSize, header) &&
                   HeaderFaultOf(chosen.family->id, header) == DatabaseHeaderFault::None
               ? HeaderCount(header)
               : 0;
}

// After an add in vain, whose reason is in errno.
Outcome TellAddFailed(const ChosenDatabase &chosen, const char *file, int place) {
    std::string reason = WithSystemReason(
        FormatText("place %d of %s could not be added", place, FieldText(file).c_str()), errno);
    if (!FileExists(chosen.path.c_str())) {
        const std::string backup = BackupOf(chosen);
        reason += "; the catalogue has been deleted";
        if (FileExists(backup.c_str())) {
            reason += ", its backup is " + FieldText(backup);
        }
    }
    TellError(chosen.path, reason);
    return Outcome::GivenUp;
}

// Adds the voices of MainList, which come from `file`, and prints what became of them.
Outcome AddVoices(const ChosenDatabase &chosen, const char *file) {
    std::uint32_t added = 0, skipped = 0;
    Outcome outcome = Outcome::Done;
    std::uint32_t count = CountOnDisk(chosen);
    for (int row = 0; row < ListCount(MainList); ++row) {
        const VoiceObject *voice = ListVoice(MainList, row);
        if (!voice || !FitsDatabase(*chosen.family->database, *voice)) {
            TellError(file, FormatText("not added: place %d holds no whole voice", row + 1));
            outcome = Outcome::Failed;
            continue;
        }
        if (!AddRowToDatabase(nullptr, MainList, row)) {
            return TellAddFailed(chosen, file, row + 1);
        }
        const std::uint32_t now = CountOnDisk(chosen);
        ++(now == count ? skipped : added);
        count = now;
    }
    Put(StandardOutput, FieldText(file));
    Put(StandardOutput, '\t');
    PutNumber(StandardOutput, added);
    Put(StandardOutput, '\t');
    PutNumber(StandardOutput, skipped);
    Put(StandardOutput, '\n');
    return outcome;
}

// The catalogues that have had a voice offered, and what came of preparing them.
using Catalogues = std::map<const SynthDriver *, Outcome>;

Outcome AddFile(const CliCall &call, const char *file, Catalogues &catalogues) {
    const VoiceFileFormat *format = FormatOfPath(file);
    const SynthDriver *family = format ? DriverOfId(format->driver) : nullptr;
    if (!family || !family->database || !HasCatalogues(*family)) {
        TellError(file, format ? "there are no catalogues of this instrument"
                               : UnknownFormatReason(file));
        return Outcome::Failed;
    }
    const auto chosen = ChooseDatabaseOf(call, *family);
    if (!chosen) {
        return Outcome::WrongCall;
    }
    if (chosen->family != family) {
        TellError(file,
                  FormatText("not added: it is for the %s, and %s is a catalogue of the %s",
                             family->name, FieldText(chosen->path).c_str(), chosen->family->name));
        return Outcome::Failed;
    }
    if (!OpenVoices(file, *format)) {
        return Outcome::Failed;
    }
    if (call[CliOption::Database]) {
        DatabasePathOfThisRun = chosen->path;
    }
    const auto [known, isFirst] = catalogues.emplace(family, Outcome::Done);
    if (isFirst) {
        known->second = PrepareCatalogue(*chosen);
    }
    return known->second == Outcome::Done ? AddVoices(*chosen, file) : Outcome::Failed;
}

} // namespace

int CliDbAdd(const CliCall &call) {
    ReadSettingsOfAdding();
    MakeProgramFolders();
    UseTerminalDesktop(call);
    Catalogues catalogues;
    int status = ExitDone;
    for (const char *file : call.words) {
        switch (AddFile(call, file, catalogues)) {
        case Outcome::Done:
            break;
        case Outcome::Failed:
            status = ExitFailed;
            break;
        case Outcome::GivenUp:
            return ExitFailed;
        case Outcome::WrongCall:
            return ExitWrongCall;
        }
    }
    return status;
}

} // namespace tonewright
