// Looks up the program's numbered texts.
#include "common/strings.h"

#include "common/text.h"

#include <algorithm>
#include <iterator>

namespace tonewright {
namespace {

struct ProgramString {
    unsigned number;
    const char *text;
};

constexpr ProgramString Strings[] = {
#define PROGRAM_STRING(number, text) {number, text},
#include "strings.inc"
#undef PROGRAM_STRING
};
static_assert(std::ranges::adjacent_find(Strings, std::ranges::greater_equal{},
                                         &ProgramString::number) == std::end(Strings),
              "the numbers ascend and none is given twice");

constexpr const char *FallbackText = "String table error - this application may be damaged";
constexpr std::size_t BufferSize = 8192;

} // namespace

const char *LoadProgramString(unsigned number) {
    static char buffer[BufferSize];
    const auto row = std::ranges::lower_bound(Strings, number, {}, &ProgramString::number);
    const bool found = row != std::end(Strings) && row->number == number;
    CopyBounded(buffer, found ? row->text : FallbackText, BufferSize - 1);
    return buffer;
}

} // namespace tonewright
