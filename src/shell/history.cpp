// The entries of the history, their order, their file.
#include "shell/history.h"

#include "common/desktop.h"
#include "common/file_bytes.h"
#include "common/folders.h"
#include "common/settings.h"
#include "common/text.h"
#include "core/synth_driver.h"
#include "shell/commands.h"
#include "shell/documents.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <memory>

namespace tonewright {
namespace {

constexpr const char *HistoryFileName = "FileMenuHistory.txt";
constexpr std::string_view PinMark = "/P";
constexpr std::uint32_t UnknownDocumentPicture = 8500;
constexpr std::size_t LineLimit = 260; // with its terminator

std::vector<HistoryEntry> Entries;
std::size_t Capacity = 0; // RememberFileHistoryCount at start
bool Used = false;        // an entry has been added, though it may be gone again

std::string_view WithoutPin(std::string_view path) {
    return path.ends_with(PinMark) ? path.substr(0, path.size() - PinMark.size()) : path;
}

std::uint32_t Now() {
    return static_cast<std::uint32_t>(std::time(nullptr));
}

void SortEntries() {
    std::ranges::stable_sort(Entries, [](const HistoryEntry &a, const HistoryEntry &b) {
        return IsPinned(a) != IsPinned(b) ? IsPinned(a) : a.time > b.time;
    });
}

void Rebuild() {
    if (HistoryMenuChanged) {
        HistoryMenuChanged();
    }
}

struct CloseFile {
    void operator()(std::FILE *file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

} // namespace

std::function<void()> HistoryMenuChanged;

std::span<const HistoryEntry> HistoryEntries() {
    return Entries;
}

bool IsPinned(const HistoryEntry &entry) {
    return entry.path.ends_with(PinMark);
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

bool ReadHistoryFile(
    const char *path,
    const std::function<void(const std::string &path, std::uint32_t time)> &entry) {
    const File file(std::fopen(path, "r"));
    if (!file) {
        return false;
    }
    char line[LineLimit];
    while (std::fgets(line, sizeof line, file.get())) {
        line[std::strcspn(line, "\r\n")] = 0;
        // A comma ends the path; one inside it cuts the path short, which is then no document.
        const std::size_t length = std::strcspn(line, ",");
        if (length > 0) {
            const char *time = line[length] ? line + length + 1 : line + length;
            entry(std::string(line, length), ReadInteger(time));
        }
    }
    return true;
}

void HistoryRead() {
    if (RememberFileHistoryCount == 0) {
        return;
    }
    ReadHistoryFile(ProductUserFile(HistoryFileName),
                    [](const std::string &path, std::uint32_t time) {
                        HistoryAdd(nullptr, path, static_cast<std::int32_t>(time));
                    });
}

void HistorySave() {
    if (RememberFileHistoryCount == 0 || !Used) {
        return;
    }
    const File file(std::fopen(ProductUserFile(HistoryFileName), "w"));
    if (!file) {
        return;
    }
    for (const HistoryEntry &entry : Entries) {
        std::fprintf(file.get(), "%s,%d\n", entry.path.c_str(),
                     static_cast<std::int32_t>(entry.time));
    }
}

void HistoryEnd() {
    Entries.clear();
    Capacity = 0;
    Used = false;
}

void HistoryAdd(QWidget *, const std::string &path, std::int64_t time) {
    const std::string_view plain = WithoutPin(path);
    if (RememberFileHistoryCount == 0 || Capacity == 0 || plain.empty() ||
        plain.size() > PathLimit || !FileExists(std::string(plain).c_str())) {
        return;
    }
    for (HistoryEntry &entry : Entries) {
        if (EqualNoCase(WithoutPin(entry.path), plain)) {
            entry.time = Now();
            return;
        }
    }
    if (Entries.size() >= Capacity) {
        Entries.pop_back();
    }
    Entries.push_back({.path = path, .time = time == -1 ? Now() : static_cast<std::uint32_t>(time)});
    Used = true;
    SortEntries();
    Rebuild();
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

int RunHistoryItem(int item) {
    std::string path;
    if (!HistoryPick(path, item - HistoryFirstItem)) {
        return 0;
    }
    PendingOpenPath = path;
    return RunCommand(CommandOpen);
}

} // namespace tonewright
