// Off Windows the system maps a library into memory as its header says, and the program ends of a
// signal where the file has no bytes for that. macOS looks at the size of the file by itself.
#include "common/library_file.h"

#ifndef __APPLE__
#include <algorithm>
#include <bit>
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

bool LibraryIsWhole(std::istream &) {
    return true;
}

#else

namespace {

// Of this machine's bits and byte order, the only ones that are looked at.
using Header = ElfW(Ehdr);
using Segment = ElfW(Phdr);

// What the numbers of a header have to be, for them to be read here.
constexpr unsigned char OwnClass = sizeof(void *) == 8 ? ELFCLASS64 : ELFCLASS32;
constexpr unsigned char OwnOrder =
    std::endian::native == std::endian::little ? ELFDATA2LSB : ELFDATA2MSB;

bool ReadAt(std::istream &file, std::uint64_t place, void *target, std::size_t size) {
    file.seekg(static_cast<std::streamoff>(place));
    return static_cast<bool>(
        file.read(static_cast<char *>(target), static_cast<std::streamsize>(size)));
}

} // namespace

bool LibraryFileIsWhole(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    return LibraryIsWhole(file);
}

bool LibraryIsWhole(std::istream &file) {
    file.seekg(0, std::ios::end);
    const auto size = static_cast<std::uint64_t>(std::max<std::streamoff>(file.tellg(), 0));
    Header header;
    if (!ReadAt(file, 0, &header, sizeof header) ||
        std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_ident[EI_CLASS] != OwnClass ||
        header.e_ident[EI_DATA] != OwnOrder) {
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
