// Asking of thousands of paths whether there is such a file, most of which there is not.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace tonewright {

// What has been learnt about folders so far. A folder in which many files were missed is listed
// once, so that the paths after that cost no call to the system.
struct ExistingFiles {
    // Names that differ in the case of letters are one.
    struct HashName {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const;
    };
    struct EqualName {
        using is_transparent = void;
        bool operator()(std::string_view a, std::string_view b) const;
    };
    struct Folder {
        int missed = 0;
        bool listed = false;
        std::unordered_set<std::string, HashName, EqualName> names;
    };
    std::unordered_map<std::string, Folder> folders; // by path, with its separator
    std::string lastFolder;                          // asked about
    Folder *last = nullptr;
    std::string missed; // the path that was missed last
};

// As FileExists, as long as nobody makes files meanwhile.
bool FileExists(ExistingFiles &files, std::string_view path);

} // namespace tonewright
