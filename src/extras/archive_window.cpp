// The archive window without its window: what it loads, finds and says, and when. Its threads are
// given what they need: what writes numbers and computes places is for the window's thread alone.
#include "extras/archive_window.h"

#include "common/text.h"
#include "core/dispatch.h"
#include "extras/archive_voice.h"

#include <algorithm>
#include <set>
#include <utility>

namespace tonewright {
namespace {

using Clock = std::chrono::steady_clock;

// How long a thread waits for another program that writes, which is how long the end may take.
constexpr int WaitMilliseconds = 3000;
// The archive is loaded anew no more often, and not for more of the time than a part of it.
constexpr auto LeastTimeBetweenLoads = std::chrono::seconds(2);
constexpr int LoadTimesBetweenLoads = 5;

void Tell(const std::function<void()> &call) {
    if (call) {
        call();
    }
}

std::string Counted(std::uint64_t count, const char *one, const char *several) {
    const std::uint64_t shown = std::min<std::uint64_t>(count, UINT32_MAX);
    return std::string(FormatThousands(static_cast<std::uint32_t>(shown))) + " " +
           (count == 1 ? one : several);
}

std::string Voices(std::uint64_t count) {
    return Counted(count, "voice", "voices");
}

// ---- finding

ArchiveHits HitsOf(std::vector<ArchiveHit> hits) {
    return std::make_shared<const std::vector<ArchiveHit>>(std::move(hits));
}

void Find(ArchiveWindow &window) {
    window.hits =
        HitsOf(window.index && !window.unfindable ? FindInArchive(*window.index, window.query)
                                                  : std::vector<ArchiveHit>());
    Tell(window.calls.rowsChanged);
}

// The same place in another archive; the first one of the voice where it is not there.
std::optional<ArchiveHit> HitIn(const ArchiveIndex &index, const ArchiveIndex &former,
                                ArchiveHit hit) {
    const auto voice = VoiceOfIdentity(index, VoiceInfo(former, hit.voice).identity);
    if (!voice) {
        return std::nullopt;
    }
    const ArchivePlaceInfo place = PlaceInfo(former, hit.place);
    const auto places =
        PlacesOf(index, *voice).first(std::min(PlacesOf(index, *voice).size(), MostPlacesShown));
    for (const ArchivePlaceNumber number : places) {
        const ArchivePlaceInfo info = PlaceInfo(index, number);
        if (info.place == place.place && info.path == place.path) {
            return ArchiveHit{.voice = *voice, .place = number};
        }
    }
    if (places.empty()) {
        return std::nullopt;
    }
    return ArchiveHit{.voice = *voice, .place = places.front()};
}

// ---- loading

// A separator goes before all else.
int OrderOf(char character) {
    return character == '/' ? -1 : static_cast<unsigned char>(character);
}

struct LoadedArchive {
    std::shared_ptr<const ArchiveIndex> index;
    std::vector<ArchiveFolder> folders;
    std::int64_t version = -1;
    ArchiveError error;
    Clock::duration time = {};
};

// In the order of their paths, step by step: "a/b" in front of "a b".
bool StandsBefore(const std::string &one, const std::string &other) {
    return std::ranges::lexicographical_compare(one, other, {}, OrderOf, OrderOf);
}

LoadedArchive LoadArchive(const std::string &path, const Worker::Cancelled &cancelled) {
    const auto begin = Clock::now();
    LoadedArchive loaded;
    const ArchiveStorePointer store =
        OpenArchive(path, ArchiveUse::Read, loaded.error, WaitMilliseconds);
    if (store) {
        // First, so that what is written meanwhile is seen as a change afterwards.
        loaded.version = ArchiveVersion(*store, loaded.error);
        if (!loaded.error) {
            loaded.folders = ArchiveFolders(*store, loaded.error);
        }
        if (!loaded.error) {
            loaded.index = LoadArchiveIndex(*store, loaded.error, cancelled);
        }
    }
    std::ranges::sort(loaded.folders, StandsBefore, &ArchiveFolder::path);
    loaded.time = Clock::now() - begin;
    return loaded;
}

void TakeLoaded(ArchiveWindow &window, LoadedArchive loaded) {
    window.loading = false;
    window.loaded = Clock::now();
    window.loadTime = loaded.time;
    window.version = loaded.version;
    window.error = loaded.error.text;
    if (loaded.error && window.index) {
        Tell(window.calls.stateChanged); // what is shown stays
        return;
    }
    const auto former = std::exchange(window.index, std::move(loaded.index));
    window.folders = std::move(loaded.folders);
    const std::optional<ArchiveHit> looked = std::exchange(window.voice, std::nullopt);
    Tell(window.calls.stateChanged);
    Find(window);
    LookAtArchiveVoice(window, looked && former && window.index
                                   ? HitIn(*window.index, *former, *looked)
                                   : std::nullopt);
}

void Load(ArchiveWindow &window) {
    const bool began = window.reader.Begin([&window](const Worker::Cancelled &cancelled) {
        return
            [&window, loaded = LoadArchive(window.path, cancelled)] { TakeLoaded(window, loaded); };
    });
    window.loading = began;
    if (!began) {
        window.error = "The archive could not be loaded: the system has no thread to give.";
    }
}

// ---- what is similar

struct SimilarVoices {
    std::vector<ArchiveHit> hits;
    std::string text; // why there are none
};

SimilarVoices SimilarTo(const std::string &path, const ArchiveIndex &index, ArchiveHit hit) {
    const ArchiveVoices read = ReadArchiveVoices(index, {&hit, 1});
    if (read.voices.empty()) {
        return {.hits = {}, .text = read.error};
    }
    ArchiveError error;
    const ArchiveStorePointer store = OpenArchive(path, ArchiveUse::Read, error, WaitMilliseconds);
    SimilarVoices similar;
    if (store && !error) {
        const DumpVoice voice = read.voices.front().Voice();
        for (const SimilarVoice &one : FindSimilar(index, *store, voice, SimilarShown, error)) {
            const auto places = PlacesOf(index, one.voice);
            if (!places.empty()) {
                similar.hits.push_back({.voice = one.voice, .place = places.front()});
            }
        }
    }
    similar.text = error                  ? error.text
                   : similar.hits.empty() ? "No other voice of the instrument is in the archive."
                                          : "";
    return similar;
}

bool IsLookedAt(const ArchiveWindow &window, const ArchiveIndex &index, ArchiveHit hit) {
    return window.index.get() == &index && window.voice && window.voice->voice == hit.voice;
}

// One search at a time: what is looked at when it ends is what is searched for next.
void FindSimilarVoices(ArchiveWindow &window) {
    if (!window.voice || !window.index || window.findingSimilar) {
        return;
    }
    const auto index = window.index;
    const ArchiveHit hit = *window.voice;
    window.findingSimilar = window.reader.Begin([&window, index, hit](const Worker::Cancelled &) {
        return [&window, index, hit, similar = SimilarTo(window.path, *index, hit)] {
            window.findingSimilar = false;
            if (IsLookedAt(window, *index, hit)) {
                window.similar = HitsOf(similar.hits);
                window.similarText = similar.text;
                Tell(window.calls.voiceChanged);
            } else {
                FindSimilarVoices(window);
            }
        };
    });
}

// ---- bringing up to date

struct Updated {
    UpdateReport report;
    std::vector<std::string> failures;
    ArchiveError error;
};
using Update = std::function<void(ArchiveStore &, const UpdateCalls &, Updated &)>;

std::string ReportText(const Updated &updated) {
    const UpdateReport &report = updated.report;
    std::string text = report.cancelled ? "Cancelled; what was looked at stays. " : "";
    text += Counted(report.files, "file", "files") + " with " + Voices(report.voices);
    const std::pair<std::uint64_t, const char *> parts[] = {{report.added, "new"},
                                                            {report.changed, "changed"},
                                                            {report.moved, "moved"},
                                                            {report.gone, "gone"}};
    const char *separator = ": ";
    for (const auto &[count, word] : parts) {
        if (count > 0) {
            text += separator + std::to_string(count) + " " + word;
            separator = ", ";
        }
    }
    return text + ".";
}

void TakeUpdated(ArchiveWindow &window, const Updated &updated, const std::string &report) {
    window.updating = false;
    window.progress = {};
    window.report = updated.error ? updated.error.text : report;
    window.failures = updated.failures;
    if (!window.loading) {
        Load(window);
    }
    Tell(window.calls.stateChanged);
}

// `report` says what was done, where the update does not.
void BeginUpdate(ArchiveWindow &window, Update update, std::string report = "") {
    if (window.updating) {
        return;
    }
    window.progress = {};
    window.report.clear();
    window.failures.clear();
    window.updating =
        window.indexer.Begin([&window, update = std::move(update),
                              report = std::move(report)](const Worker::Cancelled &cancelled) {
            Updated updated;
            const UpdateCalls calls = {.progress =
                                           [&](const UpdateProgress &progress) {
                                               window.calls.deliver([&window, progress] {
                                                   window.progress = progress;
                                                   Tell(window.calls.stateChanged);
                                               });
                                               return !cancelled();
                                           },
                                       .tell =
                                           [&](const std::string &path, const std::string &reason) {
                                               updated.failures.push_back(path + ": " + reason);
                                           }};
            const ArchiveStorePointer store =
                OpenArchive(window.path, ArchiveUse::Write, updated.error, WaitMilliseconds);
            if (store && !updated.error) {
                update(*store, calls, updated);
            }
            return [&window, updated, report] {
                TakeUpdated(window, updated, report.empty() ? ReportText(updated) : report);
            };
        });
    if (!window.updating) {
        window.report = "The archive could not be updated: the system has no thread to give.";
    }
    Tell(window.calls.stateChanged);
}

// ---- folders

constexpr int MostStepsShown = 8;

// The part of a path that ends so many steps behind its first `root` bytes.
std::string UpperFolder(const std::string &path, std::size_t root, int steps) {
    std::size_t end = root;
    for (int step = 0; step < steps && end != std::string::npos; ++step) {
        end = path.find('/', end + 1);
    }
    return path.substr(0, end);
}

// ---- taking voices out

std::string NameOfHit(const ArchiveIndex &index, ArchiveHit hit) {
    return Latin1ToUtf8(PlaceInfo(index, hit.place).name);
}

std::string FamiliesText(const std::set<std::uint8_t> &families) {
    std::string text;
    for (const std::uint8_t family : families) {
        text += (text.empty() ? "" : " and ") + ArchiveInstrumentText(family);
    }
    return text;
}

// Why the voices cannot stand in one bank; empty.
std::string RefusalOf(const ArchiveIndex &index, std::span<const ArchiveHit> hits) {
    if (hits.empty()) {
        return "No voice is selected.";
    }
    const SynthDriver *family =
        DriverOfId(DriverOfArchiveFamily(VoiceInfo(index, hits.front().voice).family));
    const auto most = static_cast<std::size_t>(family ? family->bankRows : UsualBankRows);
    if (hits.size() > most) {
        return FormatText("A bank holds %zu voices, and %s are selected. Select fewer of them.",
                          most, FormatThousands(static_cast<std::uint32_t>(hits.size())));
    }
    std::set<std::uint8_t> families;
    for (const ArchiveHit &hit : hits) {
        families.insert(VoiceInfo(index, hit.voice).family);
    }
    if (families.size() > 1) {
        return "A bank holds voices of one instrument, and voices of " + FamiliesText(families) +
               " are selected.";
    }
    return "";
}

} // namespace

ArchiveWindow::ArchiveWindow(ArchiveWindowCalls tellings)
    : hits(HitsOf({})), places(HitsOf({})), similar(HitsOf({})), calls(std::move(tellings)),
      path(ArchivePath()), reader(calls.deliver), indexer(calls.deliver) {}

ArchiveWindow::~ArchiveWindow() {
    reader.Cancel(); // both at once
    indexer.Cancel();
    reader.End();
    indexer.End();
}

void BeginArchive(ArchiveWindow &window) {
    Load(window);
    Tell(window.calls.stateChanged);
}

void FollowArchive(ArchiveWindow &window) {
    const auto pause =
        std::max<Clock::duration>(LeastTimeBetweenLoads, LoadTimesBetweenLoads * window.loadTime);
    if (window.loading || window.lookingForChanges || Clock::now() - window.loaded < pause) {
        return;
    }
    window.lookingForChanges = window.reader.Begin([&window](const Worker::Cancelled &) {
        ArchiveError error;
        std::int64_t version = -1;
        const auto store = OpenArchive(window.path, ArchiveUse::Read, error, WaitMilliseconds);
        if (store) {
            version = ArchiveVersion(*store, error);
        }
        return [&window, version, error] {
            window.lookingForChanges = false;
            const bool differs = !error && version != window.version;
            if (!window.loading && (differs || error.text != window.error)) {
                Load(window);
            }
        };
    });
}

void SetArchiveText(ArchiveWindow &window, const std::string &text) {
    window.query.text = Utf8ToLatin1(text);
    window.unfindable = Latin1ToUtf8(window.query.text) != text;
    Find(window);
}

void SetArchiveQuery(ArchiveWindow &window, const ArchiveQuery &query) {
    window.query = query;
    Find(window);
}

void SortArchive(ArchiveWindow &window, ArchiveColumn column) {
    window.query.descending = window.query.sort == column && !window.query.descending;
    window.query.sort = column;
    Find(window);
}

void LookAtArchiveVoice(ArchiveWindow &window, std::optional<ArchiveHit> hit) {
    const bool isSameVoice = hit && window.voice && hit->voice == window.voice->voice;
    window.voice = hit;
    std::vector<ArchiveHit> places;
    if (hit && window.index) {
        const auto numbers = PlacesOf(*window.index, hit->voice);
        for (const ArchivePlaceNumber number :
             numbers.first(std::min(numbers.size(), MostPlacesShown))) {
            places.push_back({.voice = hit->voice, .place = number});
        }
    }
    window.places = HitsOf(std::move(places));
    if (!isSameVoice) {
        window.similar = HitsOf({});
        window.similarText = hit ? "Looking for similar voices..." : "";
        FindSimilarVoices(window);
    }
    Tell(window.calls.voiceChanged);
}

void AddArchiveFolder(ArchiveWindow &window, const std::string &path) {
    BeginUpdate(window, [path](ArchiveStore &store, const UpdateCalls &calls, Updated &updated) {
        updated.report = AddToArchive(store, std::span(&path, 1), calls, updated.error);
    });
}

void UpdateArchiveFolders(ArchiveWindow &window) {
    BeginUpdate(window, [](ArchiveStore &store, const UpdateCalls &calls, Updated &updated) {
        updated.report = UpdateArchive(store, calls, updated.error);
    });
}

void ForgetArchiveFolder(ArchiveWindow &window, const std::string &path) {
    BeginUpdate(
        window,
        [path](ArchiveStore &store, const UpdateCalls &calls, Updated &updated) {
            bool goesOn = true;
            const auto goOn = [&] { return goesOn = calls.progress({}); };
            if (!ForgetFolder(store, path, updated.error, goOn) && !updated.error) {
                updated.error.text = goesOn ? "The folder is not in the archive any more."
                                            : "Cancelled; the archive still holds the folder.";
            }
        },
        "The archive has forgotten " + ArchiveRootText(path) + "; its files are where they were.");
}

void CancelArchiveUpdate(ArchiveWindow &window) {
    window.indexer.Cancel();
}

std::string ArchiveInstrumentText(std::uint8_t family) {
    switch (family) {
    case ArchiveFamilyDx7:
        return "DX7";
    case ArchiveFamilyReface:
        return "reface DX";
    default:
        return "";
    }
}

std::string ArchiveCellText(const ArchiveIndex &index, ArchiveHit hit, ArchiveColumn column) {
    const ArchiveVoiceInfo voice = VoiceInfo(index, hit.voice);
    switch (column) {
    case ArchiveColumn::Name:
        return NameOfHit(index, hit);
    case ArchiveColumn::Instrument:
        return ArchiveInstrumentText(voice.family);
    case ArchiveColumn::Algorithm:
        return std::to_string(voice.algorithm);
    case ArchiveColumn::Times:
        return FormatThousands(voice.places);
    case ArchiveColumn::File:
        return PlaceInfo(index, hit.place).path;
    case ArchiveColumn::Place:
        return std::to_string(PlaceInfo(index, hit.place).place + 1);
    }
    return "";
}

std::string ArchiveRootText(const std::string &path) {
    return path.empty() ? "/" : path;
}

std::vector<ArchiveFolderChoice> ArchiveFolderChoices(const std::vector<ArchiveFolder> &folders) {
    for (int steps = MostStepsShown;; --steps) {
        std::vector<ArchiveFolderChoice> choices;
        struct Root {
            std::string path, last; // the last choice below it
        };
        std::vector<Root> around; // folders that were added, in which the present one stands
        for (const ArchiveFolder &one : folders) {
            while (!around.empty() && !IsInArchiveFolder(one.path, around.back().path)) {
                around.pop_back();
            }
            if (one.root) {
                around.push_back({one.path, ""});
                choices.push_back({.path = one.path, .text = ArchiveRootText(one.path)});
            } else if (steps > 0 && !around.empty()) {
                Root &root = around.back();
                const std::string path = UpperFolder(one.path, root.path.size(), steps);
                if (root.last != path) {
                    root.last = path;
                    choices.push_back(
                        {.path = path, .text = "    " + path.substr(root.path.size() + 1)});
                }
            }
        }
        if (choices.size() <= MostFoldersShown || steps == 0) {
            return choices;
        }
    }
}

std::string ArchiveFolderText(const ArchiveWindow &window, const std::string &path) {
    const std::string folder = ArchiveFolderPath(FolderOfPath(path));
    for (const ArchiveFolder &one : window.folders) {
        if (one.root && IsInArchiveFolder(folder, one.path)) {
            return folder.substr(FolderOfPath(one.path).size());
        }
    }
    return folder;
}

std::string ArchiveEmptyText(const ArchiveWindow &window) {
    if (!window.hits->empty()) {
        return "";
    }
    if (!window.index && window.loading) {
        return "Loading the archive...";
    }
    if (!window.index && !window.error.empty()) {
        return window.error;
    }
    const bool hasFolder = std::ranges::any_of(window.folders, &ArchiveFolder::root);
    if (!hasFolder) {
        return window.updating ? "Looking through the folder..."
                               : "No folder yet.\n\nAdd a folder with your files: all voices in it "
                                 "and below are found here by their names. The files stay where "
                                 "they are and as they are.";
    }
    if (!window.index || VoiceCount(*window.index) == 0) {
        return window.updating ? "Looking through the folders..."
                               : "No file in the folders holds a voice.";
    }
    return "No voice is called so. Take away letters, or a filter.";
}

std::string ArchiveCountText(const ArchiveWindow &window) {
    if (!window.index) {
        return window.loading ? "Loading..." : "";
    }
    const std::size_t all = VoiceCount(*window.index);
    const std::string found =
        window.hits->size() == all
            ? ""
            : std::string(FormatThousands(static_cast<std::uint32_t>(window.hits->size()))) +
                  " of ";
    return found + Voices(all) + ", found at " +
           Counted(PlaceCount(*window.index), "place", "places");
}

std::string ArchiveUpdateText(const ArchiveWindow &window) {
    if (!window.updating) {
        return window.error.empty() ? window.report : window.error;
    }
    const UpdateProgress &progress = window.progress;
    if (progress.looked == 0) {
        return "Looking for files: " + Counted(progress.found, "file", "files") + " so far";
    }
    std::string text = FormatThousands(static_cast<std::uint32_t>(progress.looked));
    return text + " of " + Counted(progress.found, "file", "files") + ", now in " + progress.folder;
}

std::string ArchivePutText(std::size_t put, std::size_t wanted) {
    return put == wanted ? Voices(put) + " put into the list."
                         : std::to_string(put) + " of " + Voices(wanted) +
                               " put into the list: it has no more rows below the selected one.";
}

int ArchiveUpdatePerMille(const ArchiveWindow &window) {
    const UpdateProgress &progress = window.progress;
    return progress.looked == 0 || progress.found == 0
               ? -1
               : static_cast<int>(
                     std::min<std::uint64_t>(1000, progress.looked * 1000 / progress.found));
}

ArchiveVoices ReadArchiveVoices(const ArchiveIndex &index, std::span<const ArchiveHit> hits) {
    ArchiveVoices read = {.voices = {}, .error = RefusalOf(index, hits)};
    if (!read.error.empty()) {
        return read;
    }
    for (const ArchiveHit &hit : hits) {
        std::optional<KeptVoice> voice = ReadArchiveVoice(index, hit);
        if (!voice) {
            return {.voices = {},
                    .error = "The voice \"" + NameOfHit(index, hit) +
                             "\" is not any more where it was found:\n\n" +
                             PlaceInfo(index, hit.place).path +
                             "\n\nUpdate the archive, and look for it again."};
        }
        read.voices.push_back(std::move(*voice));
    }
    return read;
}

std::string ArchiveSourceText(const ArchiveIndex &index, std::span<const ArchiveHit> hits) {
    std::set<std::string> paths;
    for (const ArchiveHit &hit : hits) {
        paths.insert(PlaceInfo(index, hit.place).path);
    }
    return paths.size() == 1 ? *paths.begin() : ArchiveSource;
}

} // namespace tonewright
