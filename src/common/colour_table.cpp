// Reads, writes and finds tables of named colours.
#include "common/colour_table.h"

#include "common/colour.h"
#include "common/file_bytes.h"
#include "common/folders.h"
#include "common/platform.h"
#include "common/settings.h"
#include "common/text.h"
#include "common/utf8_path.h"
#include "common/whole_file.h"

#include <algorithm>
#include <cassert>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view BehindName = " \b=";
constexpr std::string_view BlanksOfNumbers = " \t\n\v\f\r";
constexpr std::string_view DecimalDigits = "0123456789";
constexpr std::string_view TableEnding = ".CCL";
constexpr std::size_t LongestName = 240; // bytes, which fit behind the name of the setting
constexpr std::size_t LargestProgramTable = 1 << 20; // bytes

bool StandsBefore(const NamedColour &one, const NamedColour &other) {
    return CompareText(one.name, other.name) < 0;
}

void RemoveFront(std::string_view &text, std::string_view characters) {
    text.remove_prefix(std::min(text.find_first_not_of(characters), text.size()));
}

// Takes a number off the beginning of `text`, of which the low 8 bits stay.
std::optional<std::uint8_t> TakePart(std::string_view &text) {
    RemoveFront(text, BlanksOfNumbers);
    const std::string_view number = text;
    if (text.starts_with('-') || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    if (text.empty() || DecimalDigits.find(text.front()) == DecimalDigits.npos) {
        return std::nullopt;
    }
    RemoveFront(text, DecimalDigits);
    return static_cast<std::uint8_t>(ReadInteger(number));
}

bool TakeCommas(std::string_view &text) {
    const bool isThere = text.starts_with(',');
    RemoveFront(text, ",");
    return isThere;
}

std::optional<NamedColour> ReadColour(std::string_view line) {
    line = line.substr(0, line.find('\0')); // a NUL ends the line
    const std::size_t nameEnd = line.find('=');
    if (nameEnd == 0 || nameEnd == line.npos) {
        return std::nullopt;
    }
    std::string_view rest = line.substr(nameEnd);
    RemoveFront(rest, BehindName);
    ColourParts parts;
    for (std::uint8_t *part : {&parts.red, &parts.green, &parts.blue}) {
        if (part != &parts.red && !TakeCommas(rest)) {
            return std::nullopt;
        }
        const auto value = TakePart(rest);
        if (!value) {
            return std::nullopt;
        }
        *part = *value;
    }
    return NamedColour{.name = std::string(line.substr(0, nameEnd)), .colour = ColourOf(parts)};
}

void Fill(ColourTable &table, std::vector<NamedColour> colours) {
    std::ranges::stable_sort(colours, StandsBefore);
    table.items = std::move(colours);
    ListBoxFill(table, static_cast<int>(table.items.size()));
}

void RemoveFile(const std::string &path) {
    std::error_code error;
    const fs::file_status status = fs::symlink_status(PathOfUtf8(path), error);
    if (fs::is_regular_file(status) || fs::is_symlink(status)) {
        fs::remove(PathOfUtf8(path), error);
    }
}

// What is put behind the name of a table.
std::string_view EndingOf(std::string_view name) {
    return name.find('.') == name.npos ? TableEnding : std::string_view();
}

// Whether a name stands for a file of the user's folder, in whose path nothing of it is cut.
bool IsPlainName(std::string_view name) {
    const auto isControl = [](char character) { return character >= 0 && character < ' '; };
    const std::string_view folder = ProductUserFile("");
    return name.find_first_not_of('.') != name.npos && name.find_first_of("/\\:") == name.npos &&
           std::ranges::none_of(name, isControl) && folder.size() + name.size() <= PathLimit;
}

bool WriteText(std::FILE *file, const std::string &text) {
    std::setvbuf(file, nullptr, _IONBF, 0);
    return std::fwrite(text.data(), 1, text.size(), file) == text.size();
}

} // namespace

int ColourTableAdd(ColourTable &table, NamedColour colour) {
    const auto place = std::ranges::upper_bound(table.items, colour, StandsBefore);
    const int row = static_cast<int>(place - table.items.begin());
    table.items.insert(place, std::move(colour));
    ListBoxInsert(table, row);
    assert(table.items.size() == static_cast<std::size_t>(ListCount(table)));
    return row;
}

bool ColourTableDelete(ColourTable &table, int row) {
    if (!ListHasRow(table, row)) {
        return false;
    }
    table.items.erase(table.items.begin() + row);
    ListBoxDelete(table, row);
    assert(table.items.size() == static_cast<std::size_t>(ListCount(table)));
    return true;
}

int ColourTableRowOf(const ColourTable &table, std::uint32_t colour) {
    const auto place = std::ranges::find(table.items, colour, &NamedColour::colour);
    return place == table.items.end() ? NoRow : static_cast<int>(place - table.items.begin());
}

int ColourTableLoad(const char *path, ColourTable &table) {
    auto lines = OpenLines(path);
    if (!lines) {
        const int reason = errno;
        Fill(table, {});
        errno = reason;
        return 0;
    }
    return ColourTableRead(*lines, table);
}

int ColourTableRead(LineReader &lines, ColourTable &table) {
    std::vector<NamedColour> colours;
    for (std::string_view line; NextLine(lines, line);) {
        if (auto colour = ReadColour(line)) {
            colours.push_back(std::move(*colour));
        }
    }
    if (lines.error != 0) {
        colours.clear();
    }
    Fill(table, std::move(colours));
    errno = lines.error;
    return lines.error == 0 ? 1 : 0;
}

std::string ColourTableText(const ColourTable &table) {
    std::string text;
    for (const NamedColour &item : table.items) {
        const ColourParts parts = PartsOf(item.colour);
        text += item.name + FormatText("=%d,%d,%d\n", parts.red, parts.green, parts.blue);
    }
    return text;
}

int ColourTableSave(const char *path, const ColourTable *table) {
    if (!*path) {
        errno = ENOENT;
        return 0;
    }
    const std::string backup = std::string(path) + ".bak";
    RemoveFile(backup);
    FilePointer file = OpenFile(path, "wb");
    if (!file) {
        return 0;
    }
    if (!table) {
        file.reset();
        DeleteWrittenFile(path);
        RenameOver(backup.c_str(), path);
        return 0;
    }
    const bool written = WriteText(file.get(), PlatformLines(ColourTableText(*table)));
    const int reason = errno;
    const bool closed = std::fclose(file.release()) == 0;
    if (!written) {
        errno = reason;
    }
    return written && closed ? 1 : 0;
}

std::string ColourTableName() {
    return IsPlainName(ColourTableFile) ? ColourTableFile : DefaultColourTable;
}

std::string ColourTablePath() {
    return ProductUserFile(ColourTableName().c_str());
}

bool IsColourTableName(std::string_view name) {
    const std::string file = std::string(name) + std::string(EndingOf(name));
    return !name.empty() && name.front() != ' ' && name.front() != '=' && IsPlainName(file) &&
           file.size() <= LongestName && EqualNoCase(ExtensionOfPath(file), TableEnding.substr(1));
}

std::string ColourTableMeantBy(std::string_view name) {
    const std::string file = std::string(name) + std::string(EndingOf(name));
    const std::vector<std::string> names = ColourTableNames();
    const auto isMeant = [&file](const std::string &other) { return EqualNoCase(other, file); };
    const auto meant = std::ranges::find_if(names, isMeant);
    return meant == names.end() || std::ranges::find(names, file) != names.end() ? file : *meant;
}

void InstallColourTable() {
    const std::string path = ProductUserFile(DefaultColourTable);
    std::error_code error;
    if (path.empty() ||
        fs::symlink_status(PathOfUtf8(path), error).type() != fs::file_type::not_found) {
        return;
    }
    const std::string source = ApplicationPath + DefaultColourTable;
    if (const auto bytes = ReadFileBytes(source.c_str(), LargestProgramTable)) {
        WriteFileWhole(path.c_str(), *bytes);
    }
}

std::vector<std::string> ColourTableNames() {
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(PathOfUtf8(ProductUserFile("")), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::u8string bytes = entry->path().filename().u8string();
        std::string name(bytes.begin(), bytes.end());
        std::error_code unknown; // what it is
        if (EndingOf(name).empty() && IsColourTableName(name) && entry->is_regular_file(unknown)) {
            names.push_back(std::move(name));
        }
    }
    std::ranges::sort(names, NameStandsBefore);
    return names;
}

} // namespace tonewright
