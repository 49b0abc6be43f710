// Reading a text file in lines.
#include "common/line_reader.h"

#include "common/text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace tonewright {
namespace {

constexpr std::size_t BufferSize = 64 * 1024;
static_assert(BufferSize > LineLimit);

// Moves what waits to the front of the buffer and fills the rest of it.
void FillBuffer(LineReader &reader) {
    reader.buffer.resize(BufferSize);
    std::memmove(reader.buffer.data(), reader.buffer.data() + reader.start,
                 reader.end - reader.start);
    reader.end -= std::exchange(reader.start, 0);
    const std::size_t got = std::fread(reader.buffer.data() + reader.end, 1,
                                       BufferSize - reader.end, reader.file.get());
    reader.end += got;
    reader.fileEnded = reader.end < BufferSize;
    reader.error = std::ferror(reader.file.get()) != 0 ? errno : 0;
}

} // namespace

std::optional<LineReader> OpenLines(const char *path, std::size_t limit) {
    LineReader reader{.file = OpenFile(path, "rb"), .buffer = {}, .limit = limit};
    if (!reader.file) {
        return std::nullopt;
    }
    std::setvbuf(reader.file.get(), nullptr, _IONBF, 0);
    return reader;
}

LineReader LinesOf(std::string_view text) {
    return {.file = {},
            .buffer = {text.begin(), text.end()},
            .start = 0,
            .end = text.size(),
            .fileEnded = true};
}

bool NextLine(LineReader &reader, std::string_view &line) {
    // One byte more than a line can have tells whether a character is cut.
    if (reader.end - reader.start <= reader.limit && !reader.fileEnded) {
        FillBuffer(reader);
    }
    const std::string_view waiting(reader.buffer.data() + reader.start, reader.end - reader.start);
    const std::size_t feed = waiting.substr(0, reader.limit).find('\n');
    line = feed != std::string_view::npos ? waiting.substr(0, feed + 1)
                                          : CutText(waiting, reader.limit);
    reader.start += line.size();
    return !line.empty();
}

void SkipEmptyLines(LineReader &reader) {
    while (reader.start < reader.end && reader.buffer[reader.start] == '\n') {
        ++reader.start;
    }
}

} // namespace tonewright
