// What the archive window shows and does: it asks the archive in memory as one types, has it loaded
// and brought up to date by threads of their own, and reads the voices that are taken out of it.
// The window (extras/view/archive_window) shows this and hands on what the user does.
#pragma once

#include "extras/archive_index.h"
#include "extras/archive_update.h"
#include "extras/worker.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tonewright {

// Hits that stay as they are, whoever shows them; never null.
using ArchiveHits = std::shared_ptr<const std::vector<ArchiveHit>>;

// Whom it tells, in the thread of the window.
struct ArchiveWindowCalls {
    // Has work run in the window's thread, later, and not at all when the window is gone; the only
    // one that is called in other threads.
    Worker::Deliver deliver;
    std::function<void()> rowsChanged = {};  // other hits, or of another archive
    std::function<void()> voiceChanged = {}; // what is shown of the voice that is looked at
    std::function<void()> stateChanged = {}; // texts, progress, folders
};

struct ArchiveWindow {
    explicit ArchiveWindow(ArchiveWindowCalls calls);
    ~ArchiveWindow(); // cancels what runs, and waits for it

    // ---- read by the window

    std::shared_ptr<const ArchiveIndex> index; // null: none is loaded, or there is none
    std::vector<ArchiveFolder> folders;        // each in front of those below it
    ArchiveQuery query;
    ArchiveHits hits;
    bool loading = true;
    bool updating = false;
    UpdateProgress progress; // while it is updating
    std::string error;       // why the archive could not be loaded; empty
    std::string report;      // of the last update, in a line: what it did, or why it failed
    std::vector<std::string> failures; // of the last update, a line each

    std::optional<ArchiveHit> voice; // that is looked at
    ArchiveHits places;              // where it stands, at most MostPlacesShown
    ArchiveHits similar;             // the nearest first
    std::string similarText;         // why there are none; empty

    // ---- its own

    ArchiveWindowCalls calls;
    const std::string path;    // of the archive
    std::int64_t version = -1; // of the archive that `index` was made of
    bool lookingForChanges = false;
    bool findingSimilar = false;
    bool unfindable = false; // the text has letters that no name has
    std::chrono::steady_clock::time_point loaded = {};
    std::chrono::steady_clock::duration loadTime = {};
    Worker reader, indexer;
};

constexpr std::size_t MostPlacesShown = 1000;
constexpr std::size_t SimilarShown = 40;

// ---- loading

// Loads the archive. Called once, when the window opens.
void BeginArchive(ArchiveWindow &window);
// Looks whether this or another program has changed the archive, and loads it anew then; not at
// once after the last time where loading takes long. Called every second or two.
void FollowArchive(ArchiveWindow &window);

// ---- finding, at once

// `text`: UTF-8.
void SetArchiveText(ArchiveWindow &window, const std::string &text);
// The rest of the query; its text stays.
void SetArchiveQuery(ArchiveWindow &window, const ArchiveQuery &query);
// Sorts by a column; a second time: the other way round.
void SortArchive(ArchiveWindow &window, ArchiveColumn column);

// Shows where else a voice stands, and asks for what is similar, which comes later.
void LookAtArchiveVoice(ArchiveWindow &window, std::optional<ArchiveHit> hit);

// ---- bringing up to date; nothing happens while that goes on already

void AddArchiveFolder(ArchiveWindow &window, const std::string &path);
void UpdateArchiveFolders(ArchiveWindow &window);
void ForgetArchiveFolder(ArchiveWindow &window, const std::string &path);
void CancelArchiveUpdate(ArchiveWindow &window);

// ---- in words, UTF-8

std::string ArchiveInstrumentText(std::uint8_t family);
// A folder that the user has added; the archive calls the root of all by no letter.
std::string ArchiveRootText(const std::string &path);
std::string ArchiveCellText(const ArchiveIndex &index, ArchiveHit hit, ArchiveColumn column);
// The folders to choose from: those that the user has added, and below each the folders with files;
// where that were more than MostFoldersShown, only the upper ones, as many steps down as there is
// room for.
constexpr std::size_t MostFoldersShown = 1000;
struct ArchiveFolderChoice {
    std::string path;
    std::string text; // below the folder that was added, from there on and indented
};
std::vector<ArchiveFolderChoice> ArchiveFolderChoices(const std::vector<ArchiveFolder> &folders);
// The folder of a file, from the one on that the user has added: "Voices/Brass".
std::string ArchiveFolderText(const ArchiveWindow &window, const std::string &path);
// Instead of rows, where there are none: what is going on, or what to do. Empty: there are rows.
std::string ArchiveEmptyText(const ArchiveWindow &window);
// How many voices there are and are shown.
std::string ArchiveCountText(const ArchiveWindow &window);
// What an update is doing, or what the last one has done.
std::string ArchiveUpdateText(const ArchiveWindow &window);
// What came of putting `wanted` voices into the list, of which `put` were taken.
std::string ArchivePutText(std::size_t put, std::size_t wanted);
// 0 to 1000; -1 while that is not known.
int ArchiveUpdatePerMille(const ArchiveWindow &window);

// ---- taking voices out

struct ArchiveVoices {
    std::vector<KeptVoice> voices; // none, or one for each hit
    std::string error;             // for the user, why there are none
};
// Reads voices from their files. A voice that is not there any more is taken from another place
// where it was found. They are of one family, and at most as many as a bank holds; else, and where
// one of them is nowhere any more, there is an error.
ArchiveVoices ReadArchiveVoices(const ArchiveIndex &index, std::span<const ArchiveHit> hits);
// Where voices come from: the file of one, or of all; else ArchiveSource.
constexpr const char *ArchiveSource = "Archive";
std::string ArchiveSourceText(const ArchiveIndex &index, std::span<const ArchiveHit> hits);

} // namespace tonewright
