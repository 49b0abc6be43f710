// The File menu's history: the documents that were opened or saved last, pinned ones first.
//
// Kept between runs in "FileMenuHistory.txt", one entry a line: the path, with "/P" behind it when
// the entry is pinned, a comma, and the time of its last use in seconds since 1970.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class QWidget;

namespace tonewright {

struct LineReader;

constexpr int HistorySeparatorItem = 180; // menu items; the entries follow from 181
constexpr int HistoryFirstItem = 181;
constexpr std::uint32_t HistoryLimit = 20;

struct HistoryEntry {
    std::string path; // with its pin mark, at most 263 bytes
    std::uint32_t time = 0;
};

// The entries in menu order.
std::span<const HistoryEntry> HistoryEntries();
// Called after each change of the menu's items.
extern std::function<void()> HistoryMenuChanged;

bool IsPinned(const HistoryEntry &entry);
// The path without its pin mark.
std::string PlainPath(const HistoryEntry &entry);
// The order of the menu: pinned entries first, then by time, the latest first.
bool StandsBefore(const HistoryEntry &a, const HistoryEntry &b);
// The number of the picture for a document: that of the driver row whose bank extension it has,
// else that of an unknown document, 8500.
std::uint32_t DocumentPictureOf(std::string_view path);

// Cuts RememberFileHistoryCount to 20 and starts with an empty history.
void HistoryInit();
// Adds the entries of the file; documents that no longer exist fall out.
void HistoryRead();
// Writes the file. Nothing is done while RememberFileHistoryCount is 0 or the history was never
// used, nor when the folder does not exist. False, the reason in errno, when the file could not be
// written; it is then as it was.
bool HistorySave();
void HistoryEnd();

// Adds a document with a time, or with the present time for -1. One that is there already gets the
// present time, and keeps its place until the menu is next rebuilt.
void HistoryAdd(QWidget *window, const std::string &path, std::int64_t time);

// A click on the entry `index`: Shift removes it, Ctrl pins or unpins it. 1 when neither is held:
// then `destination` is the path to open.
int HistoryPick(std::string &destination, int index);

// "FileMenuHistory.txt" in the product's application-data folder; empty when there is no such
// folder.
std::string HistoryFilePath();
// Hands over the entries of a history file in the order of its lines, without looking at the
// documents.
void ReadHistoryLines(LineReader &lines, const std::function<void(const HistoryEntry &)> &use);
// The same of any file. False, the reason in errno, when it cannot be opened or read to its
// end.
bool ReadHistoryFile(const char *path, const std::function<void(const HistoryEntry &)> &use);

} // namespace tonewright
