// Any bytes as the lines of the history: every entry is one that the file can hold, and comes back
// from a line of its own.
#include "common/line_reader.h"
#include "common/text.h"
#include "shell/history.h"
#include "support/fuzz_support.h"

#include <algorithm>

using namespace tonewright;

namespace {

std::vector<HistoryEntry> EntriesOf(std::string_view text) {
    std::vector<HistoryEntry> entries;
    LineReader lines = LinesOf(text);
    ReadHistoryLines(lines, [&](const HistoryEntry &entry) { entries.push_back(entry); });
    return entries;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char *>(data), size);

    // The lines are the text, cut.
    LineReader lines = LinesOf(text);
    std::size_t read = 0;
    for (std::string_view line; NextLine(lines, line);) {
        Demand(line.size() <= LineLimit && line == text.substr(read, line.size()),
               "a line is the next piece of the text");
        Demand(line.substr(0, line.size() - 1).find('\n') == std::string_view::npos,
               "a line ends at its line feed");
        read += line.size();
    }
    Demand(read == size, "all of the text is read");

    const auto entries = EntriesOf(text);
    Demand(entries.size() <= size, "an entry takes a byte");
    std::string again;
    for (const HistoryEntry &entry : entries) {
        Demand(!entry.path.empty() && entry.path.size() <= LineLimit, "a path fits in a line");
        Demand(entry.path.find_first_of(std::string_view(",\0\r\n", 4)) == std::string::npos,
               "a path ends at the first comma and at the line's end");
        Demand(IsPinned(entry) == (PlainPath(entry) != entry.path), "the pin is the mark");
        Demand(!StandsBefore(entry, entry), "no entry stands before itself");
        again += entry.path + "," + std::to_string(static_cast<std::int32_t>(entry.time)) + "\n";
    }
    const bool allShort = std::ranges::all_of(
        entries, [](const HistoryEntry &entry) { return entry.path.size() <= 240; });
    if (allShort) {
        Demand(std::ranges::equal(EntriesOf(again), entries,
                                  [](const HistoryEntry &a, const HistoryEntry &b) {
                                      return a.path == b.path && a.time == b.time;
                                  }),
               "what is written is read again");
    }
    return 0;
}
