// Lists, places and judges the names of catalogues.
#include "database/database_names.h"

#include "common/folders.h"
#include "common/text.h"
#include "common/utf8_path.h"

#include <algorithm>
#include <filesystem>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

constexpr std::u32string_view AllowedBesideLetters = U"$%'-_@~`!(){}^#&, ";

} // namespace

std::vector<std::string> DatabaseNames(const char *extension, std::error_code *failure) {
    const std::string folder = DefaultDocumentsFolder();
    const std::string ending = std::string(".") + extension;
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(PathOfUtf8(folder.empty() ? "." : folder), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string name = Utf8OfPath(entry->path().filename());
        std::error_code unknown; // what it is
        if (name.ends_with(ending) && !name.starts_with('.') && entry->is_regular_file(unknown)) {
            names.emplace_back(name.substr(0, name.size() - ending.size()));
        }
    }
    if (failure) {
        *failure = error;
    }
    std::ranges::sort(names, NameStandsBefore);
    return names;
}

std::string DatabasePathNamed(std::string_view name, const char *extension) {
    std::string path = DefaultDocumentsFolder();
    for (const std::string_view part : {name, std::string_view("."), std::string_view(extension)}) {
        const std::size_t wanted = path.size() + part.size();
        AppendBounded(path, part, PathLimit);
        if (path.size() < wanted) {
            break; // nothing stands behind a cut
        }
    }
    return path;
}

std::string DatabaseBackupPathOf(std::string_view path, const char *backupExtension) {
    return ReplaceExtension(path, backupExtension + 1); // which puts the dot
}

bool MayStandInDatabaseName(char32_t character, bool isLetterOrDigit) {
    return isLetterOrDigit || AllowedBesideLetters.find(character) != std::u32string_view::npos;
}

bool IsNewDatabaseName(std::string_view name, const std::vector<std::string> &existing) {
    const auto isSame = [name](std::string_view other) { return EqualNoCase(name, other); };
    return !name.empty() && name.front() != ' ' && name.front() != '.' &&
           !isSame(DefaultDatabaseName) && std::ranges::none_of(existing, isSame);
}

} // namespace tonewright
