// Brings the archive up to what stands on the disk: only files whose size or time of change differ
// are read. Renamed files and moved folders are recognised by their content and keep their row.
//
// Which files are read at all stands in extras/collection_files.h. Links are followed, and each
// folder, and each file that a link leads to, counts once: by its own path where that lies in the
// archive. A link that leads back to a folder that it stands in is told and not followed.
#pragma once

#include "extras/archive_store.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace tonewright {

struct UpdateProgress {
    std::uint64_t found = 0;  // files, so far
    std::uint64_t looked = 0; // of these, done; `found` is final once this grows beyond 0
    std::string folder;       // that is looked at
};

struct UpdateReport {
    // Files of the folders that were looked through; a moved one is neither added nor gone.
    std::uint64_t added = 0, changed = 0, moved = 0, gone = 0, unchanged = 0;
    std::uint64_t skipped = 0; // files that are something else than dumps, which were not read
    std::uint64_t failed = 0;  // files and folders that could not be read; each is told by `tell`
    std::uint64_t files = 0, voices = 0; // in the archive now
    bool cancelled = false; // what was done stands, the rest is left for the next update
};

struct UpdateCalls {
    // At least every 100 ms and not much more often. False: cancel.
    std::function<bool(const UpdateProgress &)> progress;
    // A file or folder that could not be read, or that a link leads round in a circle, in words.
    std::function<void(const std::string &path, const std::string &reason)> tell;
};

// Adds folders (made absolute; one that lies in another one is that one's part, unless it is hidden
// there, or is not there now) and looks through them; UpdateArchive looks through all that are
// there. A folder that is gone (a disk that is not plugged in) keeps its files, which is told; so
// does an empty one below, if nothing was taken out of it since its files stood there. Whole files
// are committed a batch at a time: an end at any moment leaves a whole archive.
UpdateReport AddToArchive(ArchiveStore &store, std::span<const std::string> folders,
                          const UpdateCalls &calls, ArchiveError &error);
UpdateReport UpdateArchive(ArchiveStore &store, const UpdateCalls &calls, ArchiveError &error);

} // namespace tonewright
