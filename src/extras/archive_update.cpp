// Brings the archive up to what stands on the disk.
#include "extras/archive_update.h"

#include "common/open_file.h"
#include "common/utf8_path.h"
#include "extras/archive_walk.h"
#include "extras/collection_files.h"
#include "extras/content_sum.h"
#include "extras/dump_reader.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <map>
#include <system_error>
#include <unordered_map>
#include <utility>

namespace tonewright {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto ProgressTime = std::chrono::milliseconds(50);
// What is read in one of these is lost by a kill.
constexpr auto BatchTime = std::chrono::milliseconds(500);
constexpr std::size_t BatchVoices = 1 << 17;
// No more voices of a file than these stand in memory. One with more is not known again when it
// is moved.
constexpr std::size_t HeldVoices = 1 << 16;
static_assert(HeldVoices % ArchivePieceVoices == 0);

constexpr const char *NoFolder = "There is no such folder.";

// What a file has given so far.
struct FileReading {
    ContentSum sum;
    std::vector<ArchivePlace> places;
    std::vector<VoiceFeatures> features;
    std::uint64_t stored = 0; // voices that stand in the archive already
    ArchiveFile row;
};

struct Update {
    ArchiveStore &store;
    const UpdateCalls &calls;
    ArchiveError &error;
    ArchiveWalk walk;
    UpdateReport report;
    std::vector<ArchiveFolder> folders; // that the archive knew
    std::vector<std::string> newRoots;  // real paths of folders that are added now
    std::vector<std::uint32_t> gone;    // numbers of known files
    std::unordered_multimap<std::uint64_t, std::uint32_t> goneByContent;
    UpdateProgress progress;
    Clock::time_point lastProgress;
    bool inBatch = false;
    Clock::time_point batchStart;
    std::size_t batchVoices = 0;
    FileReading reading;
    DumpVisitor visitor;

    Update(ArchiveStore &inStore, const UpdateCalls &withCalls, ArchiveError &toError)
        : store(inStore), calls(withCalls), error(toError) {}
};

// Shows the progress when it is time to. False when the user has had enough.
bool GoOn(Update &update) {
    const Clock::time_point now = Clock::now();
    if (update.calls.progress && now - update.lastProgress >= ProgressTime) {
        update.lastProgress = now;
        update.report.cancelled =
            update.report.cancelled || !update.calls.progress(update.progress);
    }
    return !update.report.cancelled;
}

void Tell(Update &update, const std::string &path, const std::string &reason) {
    if (update.calls.tell) {
        update.calls.tell(path, reason);
    }
}

bool BeginBatch(Update &update) {
    if (!update.inBatch) {
        update.inBatch = BeginArchiveBatch(update.store, update.error);
        update.batchStart = Clock::now();
        update.batchVoices = 0;
    }
    return update.inBatch;
}

bool EndBatch(Update &update) {
    const bool was = update.inBatch;
    update.inBatch = false;
    return !update.error && (!was || EndArchiveBatch(update.store, update.error));
}

bool EndFullBatch(Update &update) {
    const bool full =
        update.batchVoices >= BatchVoices || Clock::now() - update.batchStart >= BatchTime;
    return !full || EndBatch(update);
}

// What the archive knows.
bool LoadKnown(Update &update) {
    update.folders = ArchiveFolders(update.store, update.error);
    for (const ArchiveFolder &folder : update.folders) {
        update.walk.folderIds[folder.path] = folder.id;
    }
    const auto add = [&update](ArchiveFile &file) {
        update.walk.known.Add(file);
        return true;
    };
    if (update.error || !ReadArchiveFiles(update.store, add, update.error)) {
        return false;
    }
    update.walk.known.Prepare();
    return true;
}

// Whether a folder was looked through as a part of others, rather than of one in them that was
// added by itself: the nearest one around it counts.
bool IsInScope(const std::vector<std::string> &scope, const std::vector<std::string> &otherRoots,
               const std::string &path) {
    const auto nearest = [&path](const std::vector<std::string> &folders) {
        std::size_t size = 0;
        for (const std::string &folder : folders) {
            if (IsInArchiveFolder(path, folder)) {
                size = std::max(size, folder.size() + 1);
            }
        }
        return size;
    };
    return nearest(scope) > nearest(otherRoots);
}

// Whether links lead by a path to what is reached by its own path since a folder was added.
bool IsTakenOver(const Update &update, const std::string &path, const std::string &real) {
    const auto reaches = [&real](const std::string &root) { return IsReachedFrom(root, real); };
    return real != path && std::ranges::any_of(update.newRoots, reaches) &&
           !IsKept(update.walk, real);
}

// Known files of the folders that were looked through, in which they do not stand any more, and
// those that links from other folders have led to and that were found by their own paths now.
void FindGone(Update &update, const std::vector<std::string> *scope) {
    std::vector<std::int64_t> staying;           // folders whose files stay
    std::map<std::int64_t, std::string> outside; // of these, where links may have led from
    std::vector<std::string> otherRoots;
    for (const ArchiveFolder &folder : update.folders) {
        if (scope && folder.root && std::ranges::find(*scope, folder.path) == scope->end()) {
            otherRoots.push_back(folder.path);
        }
    }
    for (const ArchiveFolder &folder : update.folders) {
        const bool isOutside = scope && !IsInScope(*scope, otherRoots, folder.path);
        const bool mayBeTakenOver = isOutside && !update.newRoots.empty();
        if (IsKept(update.walk, folder.path) ||
            (isOutside &&
             !(mayBeTakenOver && IsTakenOver(update, folder.path, RealFolder(folder.path))))) {
            staying.push_back(folder.id);
            if (mayBeTakenOver) {
                outside.emplace(folder.id, folder.path);
            }
        }
    }
    const auto wasLink = [&](const KnownFile &file) {
        const auto folder = outside.find(file.folder);
        if (folder == outside.end()) {
            return false;
        }
        const std::string path =
            PathInFolder(folder->second, std::string(update.walk.known.NameOf(file)));
        std::error_code error;
        return std::filesystem::is_symlink(PathOfUtf8(path), error) &&
               IsTakenOver(update, path, RealPath(path));
    };
    const std::vector<KnownFile> &files = update.walk.known.files;
    for (std::uint32_t number = 0; number < files.size(); ++number) {
        if (!files[number].seen && (!std::ranges::binary_search(staying, files[number].folder) ||
                                    wasLink(files[number]))) {
            update.gone.push_back(number);
            if (files[number].content != 0) {
                update.goneByContent.emplace(files[number].content, number);
            }
        }
    }
}

// A file that is gone and had the same contents, if possible under the same name; NoFile for none.
std::uint32_t TakeMoved(Update &update, const ArchiveFile &row) {
    const auto [first, last] = update.goneByContent.equal_range(row.content);
    auto best = last;
    int looked = 0; // at a few only, since there may be very many copies
    bool sameName = false;
    for (auto at = first; at != last && !sameName && looked < 100; ++at, ++looked) {
        const KnownFile &file = update.walk.known.files[at->second];
        sameName = update.walk.known.NameOf(file) == row.name;
        if (file.state.size == row.size && file.voices == row.voices &&
            (best == last || sameName)) {
            best = at;
        }
    }
    if (best == last) {
        return NoFile;
    }
    const std::uint32_t number = best->second;
    update.goneByContent.erase(best);
    return number;
}

// The row of the folder that a file stands in, which is made when it has none.
bool PutFolder(Update &update, std::uint32_t number) {
    WalkedFolder &folder = update.walk.folders[number];
    if (folder.id != 0) {
        return true;
    }
    std::int64_t &id = update.walk.folderIds[folder.path]; // also of a folder walked twice
    if (id == 0) {
        ArchiveFolder row{.path = folder.path};
        if (!PutArchiveFolder(update.store, row, update.error)) {
            return false;
        }
        id = row.id;
    }
    folder.id = id;
    return true;
}

// Brings the voices that were read so far into the archive, behind those of the file that are
// there.
bool StoreVoices(Update &update) {
    FileReading &reading = update.reading;
    if (!PutArchiveVoices(update.store, reading.row.id, reading.stored, reading.places,
                          reading.features, update.error)) {
        return false;
    }
    reading.stored += reading.places.size();
    update.batchVoices += reading.places.size();
    reading.places.clear();
    reading.features.clear();
    return true;
}

// Before the first voices of a file are stored: the file has a row, and no others.
bool ClearForVoices(Update &update, std::uint32_t folder) {
    FileReading &reading = update.reading;
    // What a known file loses now stands in a batch of its own, which may be dropped.
    const bool isKnown = reading.row.id != 0;
    if ((isKnown && !EndBatch(update)) || !BeginBatch(update) || !PutFolder(update, folder)) {
        return false;
    }
    reading.row.folder = update.walk.folders[folder].id;
    return reading.row.id != 0 ? RemoveArchiveVoices(update.store, reading.row.id, update.error)
                               : PutArchiveFile(update.store, reading.row, update.error);
}

// Whether a time is so near to that of reading that a change behind it may have the same one.
bool IsNear(std::int64_t time, std::int64_t now) {
    // Times of files may be as coarse as this; those of another day's future are none of today's.
    constexpr std::int64_t second = 1'000'000'000, tick = 2 * second, day = 86400 * second;
    return time >= now - tick && time <= now + day;
}

std::int64_t PresentTime() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

enum class Outcome {
    Read,
    Skipped,
    Vanished,
    Failed,    // errno tells why
    Cancelled, // or an error of the archive
};

// Reads a file into update.reading, the row of which has its folder, name and id.
Outcome ReadFile(Update &update, const std::string &path, std::uint32_t folder) {
    FileReading &reading = update.reading;
    const std::int64_t now = PresentTime();
    const auto before = TargetOf(path);
    if (!before || before->kind != EntryKind::File) {
        return !before && errno != ENOENT && errno != ENOTDIR ? Outcome::Failed : Outcome::Vanished;
    }
    const FileState &state = before->state;
    reading.row.size = state.size;
    reading.row.changed = state.changed;
    reading.row.status = state.status;
    FileJudgement judgement = JudgeFile(reading.row.name, state.size);
    if (judgement == FileJudgement::LookInside) {
        std::vector<std::uint8_t> start;
        if (!ReadStartOfFile(path.c_str(), FirstBytesOfFile, start)) {
            return errno == ENOENT ? Outcome::Vanished : Outcome::Failed;
        }
        judgement = JudgeFile(start, state.size);
    }
    // What changes from now on, while it is read too, is seen by its times, unless they are near.
    const bool unsure = IsNear(state.changed, now) || IsNear(state.status, now);
    reading.row.again = unsure ? ReadAgain::Unsure : ReadAgain::No;
    Outcome outcome = Outcome::Skipped;
    if (judgement == FileJudgement::Read) {
        bool stopped = false;
        update.visitor.voice = [&](const FoundVoice &found) {
            ArchivePlace &place = reading.places.emplace_back();
            place.identity = IdentityOf(found.voice);
            std::ranges::copy(NameBytesOf(found.voice), place.name.begin());
            place.family = ArchiveFamilyOfForm(found.voice.form);
            place.algorithm = static_cast<std::uint8_t>(AlgorithmOfVoice(found.voice));
            reading.features.push_back(FeaturesOf(found.voice));
            if (reading.places.size() == HeldVoices) {
                stopped = (reading.stored == 0 && !ClearForVoices(update, folder)) ||
                          !StoreVoices(update);
            }
            stopped = stopped || update.report.cancelled;
            return !stopped;
        };
        update.visitor.dump = [&](const FoundDump &) { return !update.report.cancelled; };
        update.visitor.bytes = [&](std::span<const std::uint8_t> bytes) {
            reading.sum.Add(bytes);
            GoOn(update);
        };
        const DumpRead done = ReadDumps(path.c_str(), update.visitor);
        if (done == DumpRead::Failed) {
            return errno == ENOENT ? Outcome::Vanished : Outcome::Failed;
        }
        if (done == DumpRead::Ended || update.report.cancelled) {
            return Outcome::Cancelled;
        }
        reading.row.content = std::max<std::uint64_t>(reading.sum.Value(), 1);
        reading.row.voices = reading.stored + reading.places.size();
        outcome = Outcome::Read;
    }
    return outcome;
}

bool IsAsKnown(const KnownFile &known, const ArchiveFile &row) {
    return known.again == row.again && known.content == row.content && !known.failed &&
           known.state == FileState{row.size, row.changed, row.status};
}

// Stores what was read of a file that the archive knows, or of a new one.
bool StoreFile(Update &update, const FileAhead &file, Outcome outcome) {
    FileReading &reading = update.reading;
    ArchiveFile &row = reading.row;
    std::vector<KnownFile> &files = update.walk.known.files;
    KnownFile *known = file.known != NoFile ? &files[file.known] : nullptr;
    bool keepsVoices = known && known->again != ReadAgain::Anew && reading.stored == 0 &&
                       known->content == row.content && known->voices == row.voices;
    if (keepsVoices && IsAsKnown(*known, row)) {
        ++(outcome == Outcome::Read ? update.report.unchanged : update.report.skipped);
        return true;
    }
    if (!BeginBatch(update) || !PutFolder(update, file.folder)) {
        return false;
    }
    row.folder = update.walk.folders[file.folder].id;
    std::uint64_t *count = &update.report.added;
    if (outcome == Outcome::Skipped) {
        count = &update.report.skipped;
    } else if (known) {
        count = known->content == row.content ? &update.report.unchanged : &update.report.changed;
    } else if (reading.stored == 0) {
        if (const std::uint32_t moved = TakeMoved(update, row); moved != NoFile) {
            known = &files[moved];
            known->seen = true;
            row.id = known->id;
            keepsVoices = known->again != ReadAgain::Anew;
            count = &update.report.moved;
        }
    }
    ++*count;
    update.report.voices += row.voices - (known ? known->voices : 0);
    update.report.files += outcome == Outcome::Read;
    update.report.files -= known && known->WasRead();
    if (!keepsVoices && reading.stored == 0 && known &&
        !RemoveArchiveVoices(update.store, row.id, update.error)) {
        return false;
    }
    return PutArchiveFile(update.store, row, update.error) && (keepsVoices || StoreVoices(update));
}

// Takes back what was stored of a file that was not read to its end: one that the archive knows
// stays as it was.
bool DropReading(Update &update, const FileAhead &file) {
    FileReading &reading = update.reading;
    if (update.error || reading.stored == 0) {
        return !update.error;
    }
    reading.stored = 0;
    if (file.known == NoFile) {
        return RemoveArchiveFile(update.store, std::exchange(reading.row.id, 0), update.error);
    }
    update.inBatch = false;
    return DropArchiveBatch(update.store, update.error);
}

// A file that could not be read keeps the voices that it had.
bool StoreFailure(Update &update, const FileAhead &file, const std::string &path, int reason) {
    const std::string text = std::strerror(reason);
    ++update.report.failed;
    Tell(update, path, text);
    const KnownFile *known = file.known != NoFile ? &update.walk.known.files[file.known] : nullptr;
    FileReading &reading = update.reading;
    if (!DropReading(update, file)) {
        return false;
    }
    if (known && known->failed) {
        return true;
    }
    if (!BeginBatch(update) || !PutFolder(update, file.folder)) {
        return false;
    }
    reading.row.folder = update.walk.folders[file.folder].id;
    reading.row.fault = text;
    reading.row.again = ReadAgain::Unsure;
    if (known) {
        reading.row.again = std::max(known->again, ReadAgain::Unsure);
        reading.row.content = known->content;
        reading.row.voices = known->voices;
    }
    update.report.files += !(known && known->WasRead());
    return PutArchiveFile(update.store, reading.row, update.error);
}

bool ReadNext(Update &update, const FileAhead &file) {
    const std::string &folder = update.walk.folders[file.folder].path;
    const std::string path = PathInFolder(folder, file.name);
    FileReading &reading = update.reading;
    reading.sum = ContentSum();
    reading.places.clear();
    reading.features.clear();
    reading.stored = 0;
    reading.row = {};
    reading.row.name = file.name;
    reading.row.id = file.known != NoFile ? update.walk.known.files[file.known].id : 0;
    const Outcome outcome = ReadFile(update, path, file.folder);
    switch (outcome) {
    case Outcome::Read:
    case Outcome::Skipped:
        return StoreFile(update, file, outcome);
    case Outcome::Failed:
        return StoreFailure(update, file, path, errno);
    case Outcome::Vanished:
    case Outcome::Cancelled:
        break;
    }
    return DropReading(update, file);
}

bool ReadFiles(Update &update) {
    std::uint64_t left = update.walk.toRead.size();
    std::uint32_t folder = NoFile;
    for (const FileAhead &file : update.walk.toRead) {
        update.progress.looked = update.progress.found - left--;
        if (folder != file.folder) {
            folder = file.folder;
            update.progress.folder = update.walk.folders[folder].path;
        }
        if (!GoOn(update)) {
            break;
        }
        if (!ReadNext(update, file) || !EndFullBatch(update)) {
            return false;
        }
    }
    return EndBatch(update);
}

bool RemoveGone(Update &update) {
    bool removed = update.report.moved > 0;
    for (const std::uint32_t number : update.gone) {
        const KnownFile &file = update.walk.known.files[number];
        if (file.seen) {
            continue; // under another name
        }
        if (!GoOn(update)) {
            break;
        }
        if (!BeginBatch(update) || !RemoveArchiveFile(update.store, file.id, update.error) ||
            !EndFullBatch(update)) {
            return false;
        }
        removed = true;
        update.report.gone += file.WasRead();
        update.report.files -= file.WasRead();
        update.report.voices -= file.voices;
    }
    if (removed && !(BeginBatch(update) && RemoveEmptyArchiveFolders(update.store, update.error))) {
        return false;
    }
    return EndBatch(update);
}

// Looks through folders; without a scope through all that were added.
void RunUpdate(Update &update, const std::vector<std::string> *scope) {
    std::vector<std::string> tops;
    for (const ArchiveFolder &folder : update.folders) {
        if (folder.root && !scope) {
            tops.push_back(folder.path);
        }
    }
    ArchiveWalk &walk = update.walk;
    walk.goOn = [&update](std::uint64_t found, const std::string &folder) {
        update.progress.found = found;
        if (update.progress.folder != folder) {
            update.progress.folder = folder;
        }
        return GoOn(update);
    };
    walk.tell = update.calls.tell;
    WalkFolders(walk, scope ? *scope : tops);
    UpdateReport &report = update.report;
    report.unchanged = walk.unchanged;
    report.skipped = walk.skipped;
    report.failed += walk.failed;
    for (const KnownFile &file : walk.known.files) {
        report.voices += file.voices;
        report.files += file.WasRead();
    }
    if (walk.cancelled) {
        return;
    }
    update.progress.found = walk.found;
    FindGone(update, scope);
    if (ReadFiles(update) && !report.cancelled) {
        RemoveGone(update);
    }
}

// While it lives no other program brings the archive up.
struct ArchiveLock {
    ArchiveStore &store;
    bool locked;

    explicit ArchiveLock(Update &update)
        : store(update.store),
          locked(LockArchive(
              update.store, [&update] { return GoOn(update); }, update.error)) {}
    ~ArchiveLock() {
        if (locked) {
            UnlockArchive(store);
        }
    }
    ArchiveLock(const ArchiveLock &) = delete;
    ArchiveLock &operator=(const ArchiveLock &) = delete;
};

// Whether an added folder is a part of one around it (both without links) by now: not what that one
// leaves out, and not one that is not there, or is empty, as a disk that is not plugged in.
bool IsPartOf(const std::string &folder, const std::string &around) {
    const std::string real = RealFolder(folder);
    bool hasEntries = false;
    const int reason = ListFolder(real, [&hasEntries](const FolderEntry &) {
        hasEntries = true;
        return false;
    });
    return reason == 0 && hasEntries && IsReachedFrom(around, real);
}

// Adds a folder to those that the user has added, unless it is a part of one of them; those that
// are parts of it are no folders of their own from now on. Gives the path by which it is looked
// through.
bool AddRoot(Update &update, const std::string &path, std::string &top) {
    const std::string real = RealFolder(path);
    for (const ArchiveFolder &folder : update.folders) {
        const std::string realRoot = folder.root ? RealFolder(folder.path) : std::string();
        if (folder.root && IsReachedFrom(realRoot, real)) {
            top = folder.path + real.substr(realRoot.size());
            return true;
        }
    }
    top = path;
    update.newRoots.push_back(real);
    if (!BeginBatch(update)) {
        return false;
    }
    const auto present = std::ranges::find(update.folders, path, &ArchiveFolder::path);
    if (present == update.folders.end()) {
        ArchiveFolder added{.path = path, .root = true};
        if (!PutArchiveFolder(update.store, added, update.error)) {
            return false;
        }
        update.folders.push_back(added);
        update.walk.folderIds[path] = added.id;
    }
    for (ArchiveFolder &folder : update.folders) {
        const bool isRoot = folder.path == path;
        if (isRoot != folder.root && (isRoot || IsPartOf(folder.path, real))) {
            folder.root = isRoot;
            if (!PutArchiveFolder(update.store, folder, update.error)) {
                return false;
            }
        }
    }
    return EndBatch(update);
}

} // namespace

UpdateReport AddToArchive(ArchiveStore &store, std::span<const std::string> folders,
                          const UpdateCalls &calls, ArchiveError &error) {
    Update update(store, calls, error);
    const ArchiveLock lock(update);
    if (!lock.locked || !LoadKnown(update)) {
        return update.report;
    }
    std::vector<std::string> tops;
    for (const std::string &folder : folders) {
        const std::string path = ArchiveFolderPath(folder);
        const auto target = TargetOf(path);
        if (!target || target->kind != EntryKind::Folder) {
            ++update.report.failed;
            Tell(update, folder, target ? NoFolder : std::strerror(errno));
            continue;
        }
        std::string top;
        if (!AddRoot(update, path, top)) {
            return update.report;
        }
        tops.push_back(top);
    }
    for (const ArchiveFolder &folder : update.folders) {
        if (folder.root && std::ranges::find(tops, folder.path) == tops.end()) {
            update.walk.elsewhere.push_back(RealFolder(folder.path));
        }
    }
    RunUpdate(update, &tops);
    return update.report;
}

UpdateReport UpdateArchive(ArchiveStore &store, const UpdateCalls &calls, ArchiveError &error) {
    Update update(store, calls, error);
    const ArchiveLock lock(update);
    if (lock.locked && LoadKnown(update)) {
        RunUpdate(update, nullptr);
    }
    return update.report;
}

} // namespace tonewright
