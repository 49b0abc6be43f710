// Looks up the program's numbered texts.
#include "common/strings.h"

#include "common/text.h"

#include <algorithm>
#include <iterator>
#include <utility>

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

std::string LoadProgramString(unsigned number, std::initializer_list<std::string> parts) {
    std::string text = LoadProgramString(number);
    std::size_t from = 0;
    for (const std::string &part : parts) {
        const std::size_t at = text.find("%s", from);
        if (at == std::string::npos) {
            break;
        }
        text.replace(at, 2, part);
        from = at + part.size();
    }
    return text;
}

std::string Paragraphs(std::string first, const std::string &second) {
    return std::move(first) + "\n\n" + second;
}

} // namespace tonewright
