// The commands of catalogues. Those that read take one record after the other, and open the
// catalogue for reading, so that none of its bytes changes.
#include "cli/bank_document.h"
#include "cli/cli_commands.h"
#include "cli/database_choice.h"
#include "cli/terminal_desktop.h"
#include "cli/text_output.h"
#include "cli/user_settings.h"
#include "common/folders.h"
#include "common/text.h"
#include "common/utf8_path.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "database/database_check.h"
#include "database/database_names.h"
#include "database/record_reader.h"
#include "database/record_sort.h"

#include <cerrno>
#include <filesystem>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

// The line of a record: N, name, source, date and position, both numbers from 1.
void PutRecord(std::uint32_t index, std::span<const std::uint8_t> record) {
    const DatabaseFields fields = *RecordFields(record);
    PutNumber(StandardOutput, index + 1);
    Put(StandardOutput, '\t');
    PutVoiceName(StandardOutput, fields.name);
    Put(StandardOutput, '\t');
    PutVoiceName(StandardOutput, fields.source);
    Put(StandardOutput, '\t');
    PutNumber(StandardOutput, fields.date);
    Put(StandardOutput, '\t');
    PutNumber(StandardOutput, fields.position + 1);
    Put(StandardOutput, '\n');
}

int TellNotReadable(const ChosenDatabase &chosen) {
    return TellFailure(chosen.path, WithSystemReason("not readable", errno));
}

// The voice of record `place` (from 1); an empty block after telling that it holds none of the
// family.
VoiceObject VoiceOfRecord(const ChosenDatabase &chosen, int place) {
    const auto database = OpenChosenDatabase(chosen);
    if (!database) {
        return {};
    }
    const std::uint32_t count = RecordsToLoad(*database);
    const auto index = static_cast<std::uint32_t>(place - 1);
    if (index >= count) {
        TellError(chosen.path, FormatText("there is no record %d among its %u", place, count));
        return {};
    }
    DatabaseRecord record;
    if (chosen.family->DatabaseReadRecord(*database, index, record)) {
        VoiceObject voice = RecordToVoice(record);
        if (FitsDatabase(*database->family, voice)) {
            return voice;
        }
    }
    TellError(chosen.path,
              FormatText("record %d holds no whole voice of the %s", place, chosen.family->name));
    return {};
}

int ListSorted(const ChosenDatabase &chosen, DatabaseHandle &database, std::uint32_t mode) {
    std::vector<DatabaseRecord> records;
    std::vector<std::uint32_t> indices; // in the file
    const bool isRead =
        ReadLoadedRecords(database, [&](std::uint32_t index, std::span<const std::uint8_t> bytes) {
            records.push_back({{bytes.begin(), bytes.end()}});
            indices.push_back(index);
        });
    if (!isRead) {
        return TellNotReadable(chosen);
    }
    for (const std::uint32_t at : OrderOfRecords(records, mode)) {
        PutRecord(indices[at], records[at].bytes);
    }
    return ExitDone;
}

// The line of a catalogue in a list of them. The exit status; a failure has been told.
int PutCatalogue(const std::string &name, const ChosenDatabase &catalogue) {
    Put(StandardOutput, FieldText(name));
    Put(StandardOutput, '\t');
    Put(StandardOutput, catalogue.family->name);
    Put(StandardOutput, '\t');
    std::shared_ptr<DatabaseHandle> database;
    if (IsPath(catalogue.path)) {
        database = OpenChosenDatabase(catalogue);
    } else {
        TellError(catalogue.path, FormatText("not a path: it has more than %zu bytes", PathLimit));
    }
    const auto putOrNone = [](bool isKnown, unsigned long long number) {
        if (isKnown) {
            PutNumber(StandardOutput, number);
        } else {
            Put(StandardOutput, '-');
        }
        Put(StandardOutput, '\t');
    };
    putOrNone(database != nullptr, database ? RecordsToLoad(*database) : 0);
    std::error_code error;
    const auto size = std::filesystem::file_size(PathOfUtf8(catalogue.path), error);
    putOrNone(!error, size);
    Put(StandardOutput, FieldText(catalogue.path));
    Put(StandardOutput, '\n');
    return database ? ExitDone : ExitFailed;
}

struct FaultInWords {
    unsigned fault; // RecordFaultsOf
    const char *words;
};
constexpr FaultInWords FaultsInWords[] = {
    {RecordHasNoMagic, "not marked as a record"},
    {RecordHasOtherSizes, "the voice has another place or size"},
    {RecordIsOfOtherFamily, "the voice is one of another family"},
    {RecordTextHasNoEnd, "name or source has no end"},
};

void PutFaults(std::uint32_t index, unsigned faults, std::size_t size, std::size_t wholeSize) {
    PutNumber(StandardOutput, index + 1);
    Put(StandardOutput, '\t');
    if (faults & RecordIsShort) {
        Put(StandardOutput, FormatText("cut after %zu of %zu bytes", size, wholeSize));
    }
    const char *separator = "";
    for (const auto &[fault, words] : FaultsInWords) {
        if (faults & fault) {
            Put(StandardOutput, separator);
            Put(StandardOutput, words);
            separator = "; ";
        }
    }
    Put(StandardOutput, '\n');
}

// "1 record" or "3 records", and the same of other words.
std::string Counted(unsigned long long number, const char *word) {
    return FormatText("%llu %s%s", number, word, number == 1 ? "" : "s");
}

// What is wrong with a catalogue as a whole, one reason behind the other.
std::string FaultsOf(const DatabaseReport &report) {
    std::string faults;
    const auto add = [&faults](unsigned long long number, const char *word, const char *what) {
        if (number > 0) {
            faults += (faults.empty() ? "" : ", ") + Counted(number, word) + what;
        }
    };
    add(report.faulty, "bad record", "");
    add(report.counted - report.present, "counted record", " missing");
    add(report.uncounted, "whole record", " behind the count");
    add(report.rest, "further byte", "");
    return faults;
}

} // namespace

int CliDbNames(const CliCall &) {
    int status = ExitDone;
    for (const SynthDriver *family : SynthDrivers) {
        if (!HasCatalogues(*family)) {
            continue;
        }
        std::error_code failure;
        const auto names =
            DatabaseNames(family->DatabaseInfo(DatabaseInfoExtension).text, &failure);
        for (const std::string &name : names) {
            const int put = PutCatalogue(name, {family, PathOfName(*family, name)});
            status = put == ExitDone ? status : put;
        }
        // A folder that has not been made yet has no catalogues in it.
        if (failure && failure != std::errc::no_such_file_or_directory) {
            return TellFailure(DefaultDocumentsFolder(),
                               WithSystemReason("not readable", failure.value()));
        }
    }
    return status;
}

int CliDbList(const CliCall &call) {
    std::optional<std::uint32_t> mode;
    const auto chosen = ReadSortMode(call, mode) ? ChooseDatabase(call) : std::nullopt;
    if (!chosen) {
        return ExitWrongCall;
    }
    const auto database = OpenChosenDatabase(*chosen);
    if (!database) {
        return ExitFailed;
    }
    if (mode) {
        return ListSorted(*chosen, *database, *mode);
    }
    return ReadLoadedRecords(*database, PutRecord) ? ExitDone : TellNotReadable(*chosen);
}

int CliDbFind(const CliCall &call) {
    const auto chosen = ChooseDatabase(call);
    if (!chosen) {
        return ExitWrongCall;
    }
    const auto database = OpenChosenDatabase(*chosen);
    if (!database) {
        return ExitFailed;
    }
    const std::string text = Utf8ToLatin1(call.words[0]);
    const bool canBeThere = Latin1ToUtf8(text) == call.words[0];
    bool isFound = false;
    const bool isRead =
        ReadLoadedRecords(*database, [&](std::uint32_t index, std::span<const std::uint8_t> bytes) {
            if (canBeThere && FieldsHold(*RecordFields(bytes), text)) {
                PutRecord(index, bytes);
                isFound = true;
            }
        });
    if (!isRead) {
        return TellNotReadable(*chosen);
    }
    return isFound ? ExitDone
                   : TellFailure(call.words[0],
                                 "found in no name and no source of " + FieldText(chosen->path));
}

int CliDbExport(const CliCall &call) {
    const char *out = call.words[1];
    const auto place = ReadPlace(call.words[0]);
    if (!place) {
        return TellWrongCall(call.words[0], NotAPlace);
    }
    const auto chosen = ChooseDatabase(call);
    std::string reason;
    if (!chosen) {
        return ExitWrongCall;
    }
    if (!ExtensionFits(chosen->family->id, out, VoiceFileKind::SingleVoice, reason)) {
        return TellWrongCall(out, reason);
    }
    UseTerminalDesktop(call);
    VoiceObject voice = VoiceOfRecord(*chosen, *place);
    if (voice.bytes.empty()) {
        return ExitFailed;
    }
    CurrentDriverId = chosen->family->id;
    ListFill(MainList, {std::move(voice)});
    return ExportVoiceDocument(0, out);
}

int CliDbInsert(const CliCall &call) {
    const char *in = call.words[0], *out = call.words[3];
    const auto row = ReadPlace(call.words[1]);
    const auto record = ReadPlace(call.words[2]);
    if (!row || !record) {
        return TellWrongCall(call.words[row ? 2 : 1], NotAPlace);
    }
    if (const int status = OpenBankFor(call, in, out, VoiceFileKind::Bank)) {
        return status;
    }
    const SynthDriver &family = *CurrentDriver();
    ReadDatabaseSettings();
    const auto chosen = ChooseDatabaseOf(call, family);
    if (!chosen) {
        return ExitWrongCall;
    }
    if (chosen->family != &family) {
        return TellFailure(in, FormatText("a bank of the %s, and %s is a catalogue of the %s",
                                          family.name, FieldText(chosen->path).c_str(),
                                          chosen->family->name));
    }
    if (!HasWrittenPlace(in, *row)) {
        return ExitFailed;
    }
    VoiceObject voice = VoiceOfRecord(*chosen, *record);
    if (voice.bytes.empty()) {
        return ExitFailed;
    }
    ListSetVoice(MainList, *row - 1, std::move(voice));
    return SaveBankDocument(out);
}

int CliDbCheck(const CliCall &call) {
    const auto chosen = ChooseDatabase(call);
    if (!chosen) {
        return ExitWrongCall;
    }
    errno = 0;
    const auto database = chosen->family->DatabaseOpen(chosen->path.c_str(), DatabaseRead);
    if (!database) {
        const std::string reason = ReasonNotOpened(*chosen, errno);
        Put(StandardOutput, "header\t" + reason + "\n");
        return TellFailure(chosen->path, reason);
    }
    Put(StandardOutput, "header\tok\n");
    const std::size_t wholeSize = DatabaseRecordSize(*database->family);
    DatabaseReport report;
    const bool isRead = CheckDatabase(*database, report,
                                      [&](std::uint32_t index, unsigned faults, std::size_t size) {
                                          PutFaults(index, faults, size, wholeSize);
                                      });
    if (!isRead) {
        return TellNotReadable(*chosen);
    }
    Put(StandardOutput, FormatText("count\t%u", report.counted));
    if (report.present != report.counted) {
        Put(StandardOutput, FormatText("\tthe file has %u", report.present));
    }
    Put(StandardOutput, '\n');
    if (report.uncounted > 0) {
        Put(StandardOutput, FormatText("behind\t%u\n", report.uncounted));
    }
    if (report.rest > 0) {
        Put(StandardOutput, "further\t");
        PutNumber(StandardOutput, report.rest);
        Put(StandardOutput, '\n');
    }
    Put(StandardOutput, FormatText("good\t%u\n", report.present - report.faulty));
    return IsSound(report) ? ExitDone : TellFailure(chosen->path, "damaged: " + FaultsOf(report));
}

} // namespace tonewright
