// Reading a text file, of any size and content, in lines of bounded length.
#pragma once

#include "common/open_file.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace tonewright {

constexpr std::size_t LineLimit = 259; // bytes that are read as one line of most files

struct LineReader {
    FilePointer file;
    std::vector<char> buffer;
    std::size_t start = 0, end = 0; // of what waits in the buffer
    bool fileEnded = false;
    int error = 0;                 // why the rest of the file could not be read, as errno tells it
    std::size_t limit = LineLimit; // bytes that are read as one line
};

// A reader at the start of a regular file; nothing when the file cannot be opened, or is a folder
// or a pipe. `limit`, in bytes, is far below 64 KiB.
std::optional<LineReader> OpenLines(const char *path, std::size_t limit = LineLimit);
// The same of a text in memory, of which it keeps a copy.
LineReader LinesOf(std::string_view text);

// The next line with its line feed, valid until the next call. A line that is longer than the limit
// ends there, in front of a character that does not fit whole, and its rest is the next line. False
// at the end of the file, and behind what could be read of it when `error` says why it was not all.
bool NextLine(LineReader &reader, std::string_view &line);

// Passes over lines that are a line feed alone, as many as wait in the buffer: a file of millions
// of them says no more than one does.
void SkipEmptyLines(LineReader &reader);

} // namespace tonewright
