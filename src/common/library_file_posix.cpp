// Off Windows the system maps a library into memory as its header says, and the program ends of a
// signal where the file has no bytes for that. macOS looks at the size of the file by itself.
#include "common/library_file.h"

#ifndef __APPLE__
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <link.h>
#endif

namespace tonewright {

#ifdef __APPLE__

bool LibraryFileIsWhole(const std::string &) {
    return true;
}

#else

namespace {

// The same numbers for every kind of machine; what is of another class the system refuses.
using Header = ElfW(Ehdr);
using Segment = ElfW(Phdr);

bool ReadAt(std::ifstream &file, std::uint64_t place, void *target, std::size_t size) {
    file.seekg(static_cast<std::streamoff>(place));
    return static_cast<bool>(
        file.read(static_cast<char *>(target), static_cast<std::streamsize>(size)));
}

} // namespace

bool LibraryFileIsWhole(const std::string &path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const auto size = static_cast<std::uint64_t>(std::max<std::streamoff>(file.tellg(), 0));
    Header header;
    if (!ReadAt(file, 0, &header, sizeof header) ||
        std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) {
        return true;
    }
    for (std::uint64_t index = 0; index < header.e_phnum; ++index) {
        Segment segment;
        if (!ReadAt(file, header.e_phoff + index * sizeof segment, &segment, sizeof segment)) {
            return false;
        }
        if (segment.p_filesz > size || segment.p_offset > size - segment.p_filesz) {
            return false;
        }
    }
    return true;
}

#endif

} // namespace tonewright
