// Walks through folders.
#include "cli/folder_files.h"

#include "common/utf8_path.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

bool WalkFolder(const fs::path &folder, const FolderCalls &calls) {
    std::vector<fs::path> files, folders;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::error_code ignored;
        const fs::file_status status = entry->symlink_status(ignored);
        if (fs::is_directory(status)) {
            folders.push_back(entry->path());
        } else if (fs::is_regular_file(status) ||
                   (fs::is_symlink(status) && fs::is_regular_file(entry->status(ignored)))) {
            files.push_back(entry->path());
        }
    }
    if (error) {
        calls.failed(Utf8OfPath(folder), error.message());
    }
    std::ranges::sort(files);
    std::ranges::sort(folders);
    for (const fs::path &file : files) {
        if (!calls.file(Utf8OfPath(file))) {
            return false;
        }
    }
    for (const fs::path &inner : folders) {
        const bool isLeftOut = calls.isLeftOut && calls.isLeftOut(Utf8OfPath(inner));
        if (!isLeftOut && !WalkFolder(inner, calls)) {
            return false;
        }
    }
    return true;
}

} // namespace

bool ForEachFile(const std::string &word, const FolderCalls &calls) {
    std::error_code ignored;
    const fs::path path = PathOfUtf8(word);
    return fs::is_directory(path, ignored) ? WalkFolder(path, calls) : calls.file(word);
}

} // namespace tonewright
