// Finds out which files exist out of the listings of their folders.
#include "common/existing_files.h"

#include "common/file_bytes.h"
#include "common/platform.h"
#include "common/text.h"
#include "common/utf8_path.h"

#include <algorithm>
#include <bit>
#include <filesystem>
#include <system_error>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

constexpr int MissesBeforeListing = 32;

// True for UTF-8 with at least one character beyond ASCII.
bool IsBeyondAscii(std::string_view name) {
    bool beyond = false;
    for (std::size_t at = 0; at < name.size(); ++at) {
        const auto lead = static_cast<unsigned char>(name[at]);
        if (lead < 0x80) {
            continue;
        }
        const int ones = std::countl_one(lead);
        if (ones == 1 || ones > 4 || name.size() - at < static_cast<std::size_t>(ones)) {
            return false;
        }
        for (int more = 1; more < ones; ++more) {
            if (std::countl_one(static_cast<unsigned char>(name[++at])) != 1) {
                return false;
            }
        }
        beyond = true;
    }
    return beyond;
}

// True for a name that can only mean the file that is listed under it, whatever the file system,
// but for the case of letters. Others may not: characters beyond ASCII have more than one spelling,
// some systems know files by a second, short name such as "BANKOF~1.SYX" and by names with a colon,
// and some drop what a name ends with.
bool IsPlainName(std::string_view name) {
    constexpr std::size_t ShortName = 12;
    if (name.empty() || name.back() == '.' || name.back() == ' ') {
        return false;
    }
    const bool mayBeShort = name.size() <= ShortName && name.find('~') != std::string_view::npos;
    const bool colon = PathSeparator != '/' && name.find(':') != std::string_view::npos;
    return !mayBeShort && !colon && !IsBeyondAscii(name);
}

// Lists a folder; one that is not there has no names. A folder that cannot be listed stays as it
// is.
void List(const std::string &path, ExistingFiles::Folder &folder) {
    std::error_code error;
    fs::directory_iterator entry(PathOfUtf8(path.empty() ? "." : path), error);
    if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory) {
        folder.listed = true;
        return;
    }
    decltype(folder.names) names;
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        names.emplace(Utf8OfPath(entry->path().filename()));
    }
    if (!error) {
        folder.listed = true;
        folder.names = std::move(names);
    }
}

// True for a folder that no other lists: where drives have letters, "C:\" and "\\machine\share\".
bool IsDrive(std::string_view folder) {
    if (PathSeparator == '/') {
        return false;
    }
    const bool isShare = folder.starts_with("\\\\") && std::ranges::count(folder, '\\') <= 4;
    return isShare || (folder.size() <= 3 && folder.find(':') == 1);
}

// A folder's path without the separator at its end; empty for one that is in no other.
std::string_view NameOfFolder(std::string_view folder) {
    return folder.empty() || IsDrive(folder) ? "" : folder.substr(0, folder.size() - 1);
}

// False when the listings say that neither a file nor a folder has this path.
bool MayExist(ExistingFiles &files, std::string_view path) {
    const std::string_view folder = FolderPartOf(path);
    if (!files.last || folder != files.lastFolder) {
        const std::string_view name = NameOfFolder(folder);
        if (!name.empty() && !MayExist(files, name)) {
            return false;
        }
        files.lastFolder = folder;
        files.last = &files.folders[files.lastFolder];
    }
    const std::string_view name = path.substr(folder.size());
    return !files.last->listed || files.last->names.contains(name) || !IsPlainName(name);
}

// A file that was missed may lack any of the folders on the way to it.
void CountMiss(ExistingFiles &files, std::string_view path) {
    const std::string folder = FolderOfPath(path);
    ExistingFiles::Folder &known = files.folders[folder];
    if (++known.missed == MissesBeforeListing) {
        List(folder, known);
    }
    if (const std::string_view name = NameOfFolder(folder); !name.empty()) {
        CountMiss(files, name);
    }
}

} // namespace

std::size_t ExistingFiles::HashName::operator()(std::string_view name) const {
    constexpr unsigned char smallLetter = 'a' - 'A'; // the bit that a capital lacks
    std::size_t hash = 0;
    for (const char character : name) {
        hash = hash * 31 + (static_cast<unsigned char>(character) | smallLetter);
    }
    return hash;
}

bool ExistingFiles::EqualName::operator()(std::string_view a, std::string_view b) const {
    return EqualNoCase(a, b);
}

bool FileExists(ExistingFiles &files, std::string_view path) {
    if (!path.empty() && path == files.missed) {
        return false;
    }
    if (!MayExist(files, path)) {
        return false;
    }
    if (FileExists(std::string(path).c_str())) {
        return true;
    }
    files.missed = path;
    CountMiss(files, path);
    return false;
}

} // namespace tonewright
