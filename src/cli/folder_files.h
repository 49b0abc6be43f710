// The files that a word of the command line stands for: the file itself, or all in a folder and in
// those below it.
#pragma once

#include <functional>
#include <string>

namespace tonewright {

struct FolderCalls {
    // A file that `word` names, or a regular file in a folder that it names. False ends the walk.
    std::function<bool(const std::string &path)> file;
    // A folder that could not be listed; the walk goes on.
    std::function<void(const std::string &path, const std::string &reason)> failed;
    // Folders that are passed over with all below them; may be empty.
    std::function<bool(const std::string &path)> isLeftOut = {};
};

// In the order of their names, those of a folder before those of the folders in it. A link to a
// folder is followed where `word` is one, and nowhere else, so that there is no way in a circle.
// False when `calls.file` ended it.
bool ForEachFile(const std::string &word, const FolderCalls &calls);

} // namespace tonewright
