// The entries of the history, their order, their file.
#include "shell/history.h"

#include "common/desktop.h"
#include "common/existing_files.h"
#include "common/file_bytes.h"
#include "common/folders.h"
#include "common/line_reader.h"
#include "common/platform.h"
#include "common/settings.h"
#include "common/text.h"
#include "common/utf8_path.h"
#include "common/whole_file.h"
#include "core/synth_driver.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <filesystem>
#include <system_error>

namespace tonewright {
namespace {

constexpr const char *HistoryFileName = "FileMenuHistory.txt";
constexpr std::string_view PinMark = "/P";
constexpr std::uint32_t UnknownDocumentPicture = 8500;

std::vector<HistoryEntry> Entries;
std::size_t Capacity = 0; // RememberFileHistoryCount at start
bool Used = false;        // an entry has been added, though it may be gone again

// False only when it is known that the folder of a file does not exist.
bool HasFolder(const std::string &path) {
    namespace fs = std::filesystem;
    std::error_code ignored;
    const fs::path file = PathOfUtf8(path);
    return fs::status(file.parent_path(), ignored).type() != fs::file_type::not_found;
}

std::string_view WithoutPin(std::string_view path) {
    return path.ends_with(PinMark) ? path.substr(0, path.size() - PinMark.size()) : path;
}

std::uint32_t Now() {
    return static_cast<std::uint32_t>(std::time(nullptr));
}

// A time as it is handed over, -1 being the present moment.
std::uint32_t TimeOrNow(std::uint32_t time) {
    return time == 0xFFFFFFFF ? Now() : time;
}

void SortEntries() {
    std::ranges::stable_sort(Entries, StandsBefore);
}

void Rebuild() {
    if (HistoryMenuChanged) {
        HistoryMenuChanged();
    }
}

// The setting may have changed since the start.
bool IsOff() {
    return RememberFileHistoryCount == 0 || Capacity == 0;
}

// True when a path can be kept as an entry, apart from whether there is such a document.
bool CanBeKept(std::string_view plainPath) {
    return !IsOff() && !plainPath.empty() && plainPath.size() <= PathLimit;
}

// Adds a document that exists. False when it is there already: then only its time has changed.
bool AddEntry(std::string_view path, std::uint32_t time) {
    for (HistoryEntry &entry : Entries) {
        if (EqualNoCase(WithoutPin(entry.path), WithoutPin(path))) {
            entry.time = Now();
            return false;
        }
    }
    if (Entries.size() >= Capacity) {
        Entries.pop_back();
    }
    Entries.push_back({.path = std::string(path), .time = time});
    Used = true;
    SortEntries();
    return true;
}

// The line up to its first zero byte, carriage return or line feed.
std::string_view CutAtLineEnd(std::string_view line) {
    const auto isEnd = [](char c) { return c == '\0' || c == '\r' || c == '\n'; };
    const auto end = std::ranges::find_if(line, isEnd);
    return line.substr(0, static_cast<std::size_t>(end - line.begin()));
}

} // namespace

std::function<void()> HistoryMenuChanged;

std::span<const HistoryEntry> HistoryEntries() {
    return Entries;
}

bool IsPinned(const HistoryEntry &entry) {
    return entry.path.ends_with(PinMark);
}

bool StandsBefore(const HistoryEntry &a, const HistoryEntry &b) {
    return IsPinned(a) != IsPinned(b) ? IsPinned(a) : a.time > b.time;
}

std::string PlainPath(const HistoryEntry &entry) {
    return std::string(WithoutPin(entry.path));
}

std::uint32_t DocumentPictureOf(std::string_view path) {
    const std::string extension = ExtensionOfPath(path);
    for (const SynthDriver *driver : SynthDrivers) {
        if (driver->documentPicture != 0 && EqualNoCase(extension, driver->bankExtension)) {
            return driver->documentPicture;
        }
    }
    return UnknownDocumentPicture;
}

void HistoryInit() {
    RememberFileHistoryCount = std::min(RememberFileHistoryCount, HistoryLimit);
    Capacity = RememberFileHistoryCount;
    Entries.clear();
    Used = false;
}

void ReadHistoryLines(LineReader &lines, const std::function<void(const HistoryEntry &)> &use) {
    HistoryEntry entry;
    std::string_view line;
    while (NextLine(lines, line)) {
        if (line == "\n") {
            SkipEmptyLines(lines);
        }
        line = CutAtLineEnd(line);
        // A comma ends the path; one inside it cuts the path short, which is then no document.
        const std::size_t end = std::min(line.find(','), line.size());
        if (end > 0) {
            entry.path = line.substr(0, end);
            entry.time = ReadInteger(line.substr(std::min(end + 1, line.size())));
            use(entry);
        }
    }
}

bool ReadHistoryFile(const char *path, const std::function<void(const HistoryEntry &)> &use) {
    auto reader = OpenLines(path);
    if (!reader) {
        return false;
    }
    ReadHistoryLines(*reader, use);
    errno = reader->error;
    return reader->error == 0;
}

std::string HistoryFilePath() {
    return ProductUserFile(HistoryFileName);
}

void HistoryRead() {
    if (IsOff()) {
        return;
    }
    ExistingFiles files;
    bool changed = false;
    ReadHistoryFile(HistoryFilePath().c_str(), [&](const HistoryEntry &entry) {
        const std::string_view plain = WithoutPin(entry.path);
        if (CanBeKept(plain) && FileExists(files, plain)) {
            changed = AddEntry(entry.path, TimeOrNow(entry.time)) || changed;
        }
    });
    if (changed) {
        Rebuild();
    }
}

bool HistorySave() {
    if (IsOff() || !Used) {
        return true;
    }
    std::string text;
    for (const HistoryEntry &entry : Entries) {
        text += entry.path + "," + std::to_string(static_cast<std::int32_t>(entry.time)) + "\n";
    }
    const std::string path = HistoryFilePath();
    return !HasFolder(path) || WriteFileWhole(path.c_str(), PlatformLines(text));
}

void HistoryEnd() {
    Entries.clear();
    Capacity = 0;
    Used = false;
}

void HistoryAdd(QWidget *, const std::string &path, std::int64_t time) {
    const std::string plain(WithoutPin(path));
    if (CanBeKept(plain) && FileExists(plain.c_str()) &&
        AddEntry(path, TimeOrNow(static_cast<std::uint32_t>(time)))) {
        Rebuild();
    }
}

int HistoryPick(std::string &destination, int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= Entries.size()) {
        return 0;
    }
    HistoryEntry &entry = Entries[static_cast<std::size_t>(index)];
    if (ShiftKeyDown()) {
        Entries.erase(Entries.begin() + index);
    } else if (ControlKeyDown()) {
        if (IsPinned(entry)) {
            entry.path = PlainPath(entry);
        } else {
            entry.path += PinMark;
        }
    } else {
        destination = PlainPath(entry);
        return 1;
    }
    SortEntries();
    Rebuild();
    return 0;
}

} // namespace tonewright
