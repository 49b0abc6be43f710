// The commands of the archive: an index of the voices in the user's own files, of which none is
// changed.
#include "cli/bank_document.h"
#include "cli/choices.h"
#include "cli/cli_commands.h"
#include "cli/interruption.h"
#include "cli/terminal_desktop.h"
#include "cli/text_output.h"
#include "common/desktop.h"
#include "common/text.h"
#include "common/utf8_path.h"
#include "common/whole_file.h"
#include "core/dispatch.h"
#include "extras/archive_index.h"
#include "extras/archive_update.h"
#include "extras/archive_voice.h"
#include "extras/document_bytes.h"
#include "extras/dump_reader.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t MostSimilar = 20;

std::string PathOfArchive(const CliCall &call) {
    const char *chosen = call[CliOption::Archive];
    return chosen && *chosen ? AbsolutePath(chosen) : ArchivePath();
}

int TellArchiveError(const CliCall &call, const ArchiveError &error) {
    return TellFailure(PathOfArchive(call), error.text);
}

// Null after telling why there is none.
ArchiveStorePointer OpenArchiveOf(const CliCall &call, ArchiveUse use) {
    ArchiveError error;
    const std::string path = PathOfArchive(call);
    std::error_code ignored;
    if (use == ArchiveUse::Write && !fs::exists(PathOfUtf8(path), ignored)) {
        use = ArchiveUse::Read; // nothing is made but by adding
    }
    ArchiveStorePointer store = OpenArchive(path, use, error);
    if (!store) {
        TellError(path,
                  error ? error.text : "there is no archive yet: archive add FOLDER makes one");
    }
    return store;
}

// Store and index of a call that looks into the archive; no index after telling why not.
struct OpenedArchive {
    ArchiveStorePointer store = nullptr;
    std::shared_ptr<const ArchiveIndex> index = nullptr;
};

OpenedArchive OpenIndexOf(const CliCall &call) {
    OpenedArchive opened{OpenArchiveOf(call, ArchiveUse::Read)};
    if (opened.store) {
        ArchiveError error;
        opened.index = LoadArchiveIndex(*opened.store, error);
        if (!opened.index) {
            TellArchiveError(call, error);
        }
    }
    return opened;
}

// ---- voices as lines

std::string_view InstrumentName(std::uint8_t family) {
    const auto *row = std::ranges::find(ArchiveInstruments, family, &Choice::value);
    return row == ArchiveInstruments.end() ? "" : row->name;
}

// "ID, name, instrument, algorithm, times found, path, place": the voice as it stands there.
void PutPlace(const ArchiveIndex &index, ArchiveVoiceNumber voice, ArchivePlaceNumber number) {
    const ArchiveVoiceInfo info = VoiceInfo(index, voice);
    const ArchivePlaceInfo place = PlaceInfo(index, number);
    Put(StandardOutput, TextOfIdentity(info.identity));
    Put(StandardOutput, '\t');
    PutVoiceName(StandardOutput, place.name);
    Put(StandardOutput, '\t');
    Put(StandardOutput, InstrumentName(info.family));
    Put(StandardOutput, '\t');
    PutNumber(StandardOutput, info.algorithm);
    Put(StandardOutput, '\t');
    PutNumber(StandardOutput, info.places);
    Put(StandardOutput, '\t');
    Put(StandardOutput, FieldText(place.path));
    Put(StandardOutput, '\t');
    PutNumber(StandardOutput, place.place + 1);
    Put(StandardOutput, '\n');
}

// Reads --algorithm, --instrument and --folder. ExitDone, or ExitWrongCall after telling.
int ReadFilters(const CliCall &call, ArchiveQuery &query) {
    if (const char *text = call[CliOption::Algorithm]) {
        constexpr int largest = 32;
        const std::string_view digits = text;
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), query.algorithm);
        if (error != std::errc() || end != digits.data() + digits.size() || query.algorithm < 1 ||
            query.algorithm > largest) {
            return TellWrongCall(text, "not an algorithm: 1 to 32 is");
        }
    }
    if (const char *text = call[CliOption::Instrument]) {
        const Choice *instrument = ChoiceOfName(ArchiveInstruments, text);
        if (!instrument) {
            return TellWrongCall(text, "not an instrument of the archive: " +
                                           InWords(ArchiveInstruments, "and") + " are");
        }
        query.family = static_cast<int>(instrument->value);
    }
    if (const char *text = call[CliOption::Folder]) {
        query.folder = ArchiveFolderPath(text);
        query.folder += query.folder.empty() ? "/" : ""; // the root; empty is any
    }
    return ExitDone;
}

// ---- bringing up

// The line on a terminal that tells how far it is, with what is told meanwhile above it.
struct ProgressLine {
    bool isShown = false;

    void Show(const UpdateProgress &progress) {
        constexpr std::size_t width = 78;
        const auto number = [](std::uint64_t files) {
            return std::to_string(files) + (files == 1 ? " file" : " files");
        };
        std::string text = progress.looked > 0
                               ? std::to_string(progress.looked) + " of " + number(progress.found)
                               : number(progress.found) + " found";
        text = CutText(text + "  " + progress.folder, width);
        if (isShown) {
            SetStatusText(nullptr, text);
        } else {
            ShowBusyBox(nullptr, text);
        }
        isShown = true;
    }
    void Hide() {
        if (isShown) {
            CloseBusyBox();
        }
        isShown = false;
    }
};

void PutCount(std::string_view name, std::uint64_t count) {
    Put(StandardOutput, name);
    Put(StandardOutput, '\t');
    PutNumber(StandardOutput, count);
    Put(StandardOutput, '\n');
}

int TellReport(const UpdateReport &report) {
    PutCount("added", report.added);
    PutCount("changed", report.changed);
    PutCount("moved", report.moved);
    PutCount("gone", report.gone);
    PutCount("unchanged", report.unchanged);
    PutCount("skipped", report.skipped);
    PutCount("failed", report.failed);
    PutCount("files", report.files);
    PutCount("voices", report.voices);
    return report.failed > 0 ? ExitFailed : ExitDone;
}

// `work` brings the archive up. An interruption ends it between two files.
template <class Work> int BringUp(const CliCall &call, ArchiveStorePointer store, Work work) {
    UseTerminalDesktop(call);
    ProgressLine line;
    const UpdateCalls calls = {.progress =
                                   [&line](const UpdateProgress &progress) {
                                       line.Show(progress);
                                       return !InterruptionWaits();
                                   },
                               .tell =
                                   [&line](const std::string &path, const std::string &reason) {
                                       line.Hide();
                                       TellError(path, reason);
                                   }};
    ArchiveError error;
    PostponeInterruption();
    const UpdateReport report = work(*store, calls, error);
    store.reset(); // which an interruption would leave open
    line.Hide();
    int status = ExitFailed;
    if (error) {
        TellArchiveError(call, error);
    } else if (report.cancelled) {
        TellError("",
                  "interrupted: what was read is in the archive, archive update reads the rest");
    } else {
        status = TellReport(report);
    }
    Flush(StandardOutput);
    Flush(StandardError);
    AllowInterruption();
    return status;
}

// ---- voices out of their files

// "16 hexadecimal digits" of a voice that is in the archive; nothing after telling, and `status`.
std::optional<ArchiveVoiceNumber> VoiceOfWord(const ArchiveIndex &index, const char *word,
                                              int &status) {
    const auto identity = ReadIdentity(word);
    const auto voice = identity ? VoiceOfIdentity(index, *identity) : std::nullopt;
    if (!identity) {
        status = TellWrongCall(word, "not the id of a voice: 16 hexadecimal digits are");
    } else if (!voice) {
        status = TellFailure(word, "no voice of the archive has this id");
    }
    return voice;
}

bool MayReplace(const char *path) {
    std::error_code ignored;
    return !fs::exists(fs::symlink_status(PathOfUtf8(path), ignored)) ||
           AskYesNo(nullptr, FormatText("The file %s exists.\n\nDo you wish to replace it?",
                                        path)) == ResultYes;
}

bool MayHaveHighBytes(std::span<const KeptVoice> voices) {
    const auto count = std::ranges::count_if(
        voices, [](const KeptVoice &voice) { return HighBytesOf(voice.Voice()) != 0; });
    return count == 0 ||
           AskYesNo(nullptr,
                    FormatText("%d of these voices %s bytes above 7F, which no instrument sends or "
                               "takes.\n\nDo you wish to write the bank all the same?",
                               static_cast<int>(count), count == 1 ? "has" : "have")) == ResultYes;
}

} // namespace

int CliArchiveAdd(const CliCall &call) {
    std::vector<std::string> folders;
    for (const char *word : call.words) {
        std::error_code error;
        if (!fs::is_directory(PathOfUtf8(word), error)) {
            return TellFailure(word, error ? error.message() : "not a folder");
        }
        folders.push_back(word);
    }
    ArchiveError error;
    ArchiveStorePointer store = OpenArchive(PathOfArchive(call), ArchiveUse::Write, error);
    if (!store) {
        return TellArchiveError(call, error);
    }
    return BringUp(
        call, std::move(store),
        [&folders](ArchiveStore &opened, const UpdateCalls &calls, ArchiveError &failure) {
            return AddToArchive(opened, folders, calls, failure);
        });
}

int CliArchiveUpdate(const CliCall &call) {
    ArchiveStorePointer store = OpenArchiveOf(call, ArchiveUse::Write);
    return store ? BringUp(call, std::move(store), UpdateArchive) : ExitFailed;
}

int CliArchiveFind(const CliCall &call) {
    ArchiveQuery query;
    if (const int status = ReadFilters(call, query)) {
        return status;
    }
    std::string text;
    for (const char *word : call.words) {
        text += (text.empty() ? "" : " ") + std::string(word);
    }
    query.text = Utf8ToLatin1(text);
    const bool canBeThere = Latin1ToUtf8(query.text) == text;
    const OpenedArchive archive = OpenIndexOf(call);
    if (!archive.index) {
        return ExitFailed;
    }
    const std::vector<ArchiveHit> hits =
        canBeThere ? FindInArchive(*archive.index, query) : std::vector<ArchiveHit>();
    for (const ArchiveHit &hit : hits) {
        PutPlace(*archive.index, hit.voice, hit.place);
    }
    return hits.empty() ? TellFailure(text, "no voice of the archive fits") : ExitDone;
}

int CliArchiveDuplicates(const CliCall &call) {
    ArchiveQuery query{.onlyRepeated = true, .sort = ArchiveColumn::Times, .descending = true};
    if (const int status = ReadFilters(call, query)) {
        return status;
    }
    const OpenedArchive archive = OpenIndexOf(call);
    if (!archive.index) {
        return ExitFailed;
    }
    for (const ArchiveHit &hit : FindInArchive(*archive.index, query)) {
        for (const ArchivePlaceNumber place : PlacesOf(*archive.index, hit.voice)) {
            PutPlace(*archive.index, hit.voice, place);
        }
    }
    return ExitDone;
}

int CliArchiveSimilar(const CliCall &call) {
    const char *path = call.words[0];
    const auto place = ReadPlace(call.words[1]);
    if (!place) {
        return TellWrongCall(call.words[1], NotAPlace);
    }
    errno = 0;
    const auto voice = ReadVoiceAt(path, static_cast<std::uint64_t>(*place - 1));
    if (!voice) {
        return TellFailure(path, errno != 0 ? std::strerror(errno)
                                            : FormatText("there is no voice at place %d", *place));
    }
    const OpenedArchive archive = OpenIndexOf(call);
    if (!archive.index) {
        return ExitFailed;
    }
    ArchiveError error;
    const auto similar =
        FindSimilar(*archive.index, *archive.store, voice->Voice(), MostSimilar, error);
    if (error) {
        return TellArchiveError(call, error);
    }
    if (similar.empty()) {
        return TellFailure(path, "the archive holds no other voice to compare it with");
    }
    for (const SimilarVoice &found : similar) {
        PutNumber(StandardOutput, static_cast<unsigned long long>(found.distance));
        Put(StandardOutput, '\t');
        PutPlace(*archive.index, found.voice, PlacesOf(*archive.index, found.voice).front());
    }
    return ExitDone;
}

int CliArchiveShow(const CliCall &call) {
    const OpenedArchive archive = OpenIndexOf(call);
    int status = ExitFailed;
    const auto voice =
        archive.index ? VoiceOfWord(*archive.index, call.words[0], status) : std::nullopt;
    if (!voice) {
        return status;
    }
    for (const ArchivePlaceNumber place : PlacesOf(*archive.index, *voice)) {
        PutPlace(*archive.index, *voice, place);
    }
    return ExitDone;
}

int CliArchiveMakeBank(const CliCall &call) {
    const char *out = call.words[0];
    const std::span<char *const> words = call.words.subspan(1);
    UseTerminalDesktop(call);
    const OpenedArchive archive = OpenIndexOf(call);
    if (!archive.index) {
        return ExitFailed;
    }
    std::vector<KeptVoice> voices;
    for (const char *word : words) {
        int status = ExitFailed;
        const auto number = VoiceOfWord(*archive.index, word, status);
        if (!number) {
            return status;
        }
        const auto places = PlacesOf(*archive.index, *number);
        const auto voice =
            places.empty()
                ? std::nullopt
                : ReadArchiveVoice(*archive.index, {.voice = *number, .place = places.front()});
        if (!voice) {
            return TellFailure(
                word, FormatText("none of its %llu place%s holds it any more: archive update looks "
                                 "where it is now",
                                 static_cast<unsigned long long>(places.size()),
                                 places.size() == 1 ? "" : "s"));
        }
        voices.push_back(*voice);
    }
    const DriverId family = FamilyOfForm(voices.front().form);
    for (std::size_t place = 0; place < voices.size(); ++place) {
        if (FamilyOfForm(voices[place].form) != family) {
            return TellFailure(words[place], "a voice of another instrument than the first one");
        }
    }
    std::string reason;
    if (!ExtensionFits(family, out, VoiceFileKind::Bank, reason)) {
        return TellWrongCall(out, reason);
    }
    if (!MayHaveHighBytes(voices) || !MayReplace(out)) {
        return TellFailure(out, "not written");
    }
    if (!WriteFileWhole(out, BankBytesOf(voices))) {
        return TellFailure(out, WithSystemReason("not written", errno));
    }
    return ExitDone;
}

int CliArchiveForget(const CliCall &call) {
    const char *folder = call.words[0];
    const ArchiveStorePointer store = OpenArchiveOf(call, ArchiveUse::Write);
    if (!store) {
        return ExitFailed;
    }
    ArchiveError error;
    if (ForgetFolder(*store, ArchiveFolderPath(folder), error)) {
        return ExitDone;
    }
    return error ? TellArchiveError(call, error)
                 : TellFailure(folder, "not a folder that was added to the archive");
}

int CliArchiveCheck(const CliCall &call) {
    const ArchiveStorePointer store = OpenArchiveOf(call, ArchiveUse::Read);
    if (!store) {
        return ExitFailed;
    }
    ArchiveError error;
    const std::vector<std::string> faults = CheckArchive(*store, error);
    if (error) {
        return TellArchiveError(call, error);
    }
    for (const std::string &fault : faults) {
        Put(StandardOutput, "damaged\t" + FieldText(fault) + '\n');
    }
    if (!faults.empty()) {
        return TellFailure(PathOfArchive(call), "damaged: " + faults.front());
    }
    Put(StandardOutput, "ok\n");
    return ExitDone;
}

} // namespace tonewright
