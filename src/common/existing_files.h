// Asking of thousands of paths whether there is such a file, most of which there is not.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tonewright {

// What has been learnt about folders so far. A folder in which many files were missed is listed
// once, so that the paths after that cost no call to the system.
struct ExistingFiles {
    struct Folder {
        int missed = 0;
        bool listed = false;
        std::vector<std::string> names; // in small letters, sorted
    };
    std::unordered_map<std::string, Folder> folders; // by path, with its separator
    std::string lastFolder;                          // asked about
    Folder *last = nullptr;
    std::string missed; // the path that was missed last
    std::string small;  // the name that was looked up last, in small letters
};

// As FileExists, as long as nobody makes files meanwhile.
bool FileExists(ExistingFiles &files, const std::string &path);

} // namespace tonewright
