// The heads of libraries: whatever one says, it is looked at to an end, and one of which a byte
// that it needs is taken away is cut.
#include "common/library_file.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

using namespace tonewright;

namespace {

constexpr std::size_t HeadSize = 64;
constexpr std::size_t TableSize = 56; // of one segment

bool IsWhole(const std::string &bytes) {
    std::istringstream stream(bytes);
    return LibraryIsWhole(stream);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::string bytes(data, data + size);
    IsWhole(bytes);
    if (size < HeadSize + TableSize) {
        return 0;
    }
    // The same with the head of a library of 64 bits, little-endian, and the table behind it.
    static constexpr char Ident[] = {0x7F, 'E', 'L', 'F', 2, 1, 1};
    std::copy(std::begin(Ident), std::end(Ident), bytes.begin());
    std::fill_n(bytes.begin() + 32, 8, '\0');
    bytes[32] = HeadSize;
    bytes[57] = 0; // up to 255 segments
    const auto segments = static_cast<unsigned char>(bytes[56]);
    if (!IsWhole(bytes)) {
        return 0;
    }
    // It is whole: all of its table is there, and is missed when it is not.
    const std::size_t table = HeadSize + segments * TableSize;
    if (bytes.size() < table || (segments > 0 && IsWhole(bytes.substr(0, table - 1)))) {
        std::abort();
    }
    return 0;
}
