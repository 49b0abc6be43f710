// Digits and what stands between them.
#include "extras/hex_text.h"

#include "midi/sysex.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <vector>

namespace tonewright {
namespace {

using Text = std::span<const std::uint8_t>;

constexpr std::string_view Between = " \t\r\n,;:-_{}()[]<>\"'\\/";
constexpr int NoDigit = -1;

constexpr std::array<signed char, 256> Digits = [] {
    std::array<signed char, 256> digits{};
    digits.fill(NoDigit);
    for (int digit = 0; digit < 10; ++digit) {
        digits['0' + digit] = static_cast<signed char>(digit);
    }
    for (int digit = 0; digit < 6; ++digit) {
        digits['a' + digit] = digits['A' + digit] = static_cast<signed char>(10 + digit);
    }
    return digits;
}();

constexpr std::array<bool, 256> IsBetween = [] {
    std::array<bool, 256> between{};
    for (const char character : Between) {
        between[static_cast<unsigned char>(character)] = true;
    }
    return between;
}();

bool IsLetterOrDigit(std::uint8_t character) {
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'z') ||
           (character >= 'A' && character <= 'Z');
}

bool IsEndOfLine(std::uint8_t character) {
    return character == '\n' || character == '\r';
}

// What tells the letters behind the bytes of a line from more bytes.
enum class Column {
    None,        // the line has no place in front
    TwoBlanks,   // "00000010: ..."
    VerticalBar, // "00000010  ..."
};

// How many characters a reading of one step looks at.
constexpr std::size_t StepSize = 64;

struct Lexer {
    bool atLineStart = true;
    Column column = Column::None;
    std::size_t bytesOfLine = 0;
    bool isInColumn = false;
    bool ends = false; // what follows are no digits of a dump
    // Lines that are left out since they are as the one before, which stands for them as "*".
    bool hasPlaces = false;
    std::uint64_t place = 0;        // of the present line
    std::vector<std::uint8_t> line; // its bytes, as far as a line may be repeated
    bool isRepeated = false;        // up to the place of the next line
    std::uint64_t repeatedAt = 0;   // where "*" stands
    std::uint64_t repeats = 0;      // bytes that are still to be repeated
    std::uint64_t mayRepeat = 0;    // so many, by what has been read
};
constexpr std::size_t LongestLine = 64; // bytes of one that is repeated
constexpr std::uint64_t RepeatsPerCharacter = 48;

struct Step {
    std::size_t size = 0; // characters
    bool isByte = false;  // whose digits are the last two of them
    std::uint8_t byte = 0;
};

std::uint8_t At(Text text, std::size_t at) {
    return at < text.size() ? text[at] : std::uint8_t{'\n'};
}

bool IsPair(Text text, std::size_t at) {
    return Digits[At(text, at)] != NoDigit && Digits[At(text, at + 1)] != NoDigit;
}

std::size_t CountDigits(Text text, std::size_t from) {
    std::size_t count = 0;
    while (count <= StepSize && Digits[At(text, from + count)] != NoDigit) {
        ++count;
    }
    return count;
}

std::size_t CountBlanks(Text text, std::size_t from) {
    std::size_t count = 0;
    while (count <= StepSize && At(text, from + count) == ' ') {
        ++count;
    }
    return count;
}

// The number that a place is, in eights where it has seven digits, as some programs write them.
std::uint64_t NumberOf(Text digits) {
    constexpr std::size_t ofEights = 7;
    const unsigned bits = digits.size() == ofEights ? 3 : 4;
    std::uint64_t number = 0;
    for (const std::uint8_t digit : digits) {
        number = number << bits | static_cast<unsigned>(Digits[digit]);
    }
    return number;
}

// The length of the place that a line begins with and what follows it; 0 for none. Behind a place
// stand a colon, or blanks and two digits alone, or nothing at the end of a text.
std::size_t PlaceAt(Text text, Lexer &lexer) {
    constexpr std::size_t least = 4, whole = 8;
    std::size_t start = 0, digits = CountDigits(text, 0);
    if (digits < least || digits > whole) {
        return 0;
    }
    if (At(text, digits) == ':' && digits == least && CountDigits(text, digits + 1) == least &&
        CountBlanks(text, 2 * least + 1) > 0) { // segment and place in it
        start = least + 1;
    }
    lexer.place = NumberOf(text.subspan(start, digits));
    if (start == 0 && At(text, digits) == ':') {
        lexer.column = Column::TwoBlanks;
        return digits + 1;
    }
    const std::size_t end = start + digits;
    const std::size_t blanks = CountBlanks(text, end);
    if (IsEndOfLine(At(text, end + blanks)) && lexer.hasPlaces) {
        lexer.column = Column::TwoBlanks;
        return end;
    }
    if (blanks == 0 || CountDigits(text, end + blanks) != 2) {
        return 0;
    }
    lexer.column = digits == whole && blanks == 2 ? Column::VerticalBar : Column::TwoBlanks;
    return end;
}

// "0F0h": a number that would begin with a letter has 0 in front.
bool HasZeroInFront(Text text) {
    return text[0] == '0' && IsPair(text, 1) && (At(text, 3) == 'h' || At(text, 3) == 'H');
}

// The letters behind the bytes of a line begin here.
bool IsColumn(Text text, const Lexer &lexer) {
    switch (lexer.column) {
    case Column::TwoBlanks:
        return lexer.bytesOfLine > 0 && text[0] == ' ' && At(text, 1) == ' ';
    case Column::VerticalBar:
        return text[0] == '|';
    case Column::None:
        break;
    }
    return false;
}

// A line with a place begins, the one before having ended at `behind`.
void BeginLine(Lexer &lexer, std::uint64_t behind) {
    if (lexer.isRepeated && lexer.place > behind && !lexer.line.empty() &&
        lexer.line.size() == lexer.bytesOfLine && (lexer.place - behind) % lexer.line.size() == 0) {
        lexer.repeats = std::min(lexer.place - behind, lexer.mayRepeat);
        lexer.mayRepeat -= lexer.repeats;
    } else {
        lexer.line.clear();
    }
    lexer.isRepeated = false;
    lexer.hasPlaces = true;
    lexer.bytesOfLine = 0;
}

void TakeByte(Lexer &lexer, std::uint8_t byte) {
    if (lexer.bytesOfLine == 0) {
        lexer.line.clear();
    }
    if (lexer.line.size() < LongestLine) {
        lexer.line.push_back(byte);
    }
    ++lexer.bytesOfLine;
}

// `text` is not empty and, unless it ends, StepSize long.
Step NextStep(Text text, Lexer &lexer) {
    if (lexer.atLineStart && !IsEndOfLine(text[0])) {
        lexer.atLineStart = false;
        if (text[0] == '*' && IsEndOfLine(At(text, 1)) && lexer.bytesOfLine > 0) {
            lexer.isRepeated = true;
            return {1};
        }
        const std::uint64_t behind = lexer.place + lexer.bytesOfLine;
        lexer.column = Column::None;
        if (const std::size_t place = PlaceAt(text, lexer)) {
            BeginLine(lexer, behind);
            return {place};
        }
        lexer.bytesOfLine = 0;
    }
    lexer.isInColumn = (lexer.isInColumn || IsColumn(text, lexer)) && !IsEndOfLine(text[0]);
    if (lexer.isInColumn) {
        return {1};
    }
    std::size_t at = 0;
    if (text[0] == '$' || text[0] == '#') {
        at = 1;
    } else if (text[0] == '0' && (At(text, 1) == 'x' || At(text, 1) == 'X')) {
        at = 2;
    } else if (text[0] == 'x' || text[0] == 'X' || HasZeroInFront(text)) {
        at = 1;
    }
    if (IsPair(text, at)) {
        const auto byte = static_cast<std::uint8_t>(Digits[text[at]] << 4 | Digits[text[at + 1]]);
        TakeByte(lexer, byte);
        return {at + 2, true, byte};
    }
    const bool isSuffix = (text[0] == 'h' || text[0] == 'H') && !IsLetterOrDigit(At(text, 1)) &&
                          lexer.bytesOfLine > 0;
    if (IsBetween[text[0]] || isSuffix) {
        lexer.atLineStart = IsEndOfLine(text[0]);
        return {1};
    }
    lexer.ends = true;
    return {};
}

// Whether the digits of an FM instrument's message are what `text` begins with, and of a dump more
// than its header, of which people write.
bool IsMessage(Text text) {
    constexpr std::size_t leastOpen = 16, leastWhole = 9, leastShort = 5; // bytes
    constexpr std::size_t header = 5, kindPlace = 2;
    constexpr std::uint8_t yamaha = 0x43, firstStatus = 0x80, firstOfOthers = 0x10;
    Lexer lexer;
    lexer.atLineStart = false;
    std::size_t bytes = 0;
    bool isDump = true;
    while (!text.empty() && bytes < leastOpen) {
        const Step step = NextStep(text, lexer);
        if (lexer.ends) {
            return false;
        }
        if (step.isByte) {
            if (step.byte == EndOfSysex && bytes >= leastShort - 1) {
                return bytes + 1 >= (isDump ? leastWhole : leastShort);
            }
            const bool fits = bytes == 0       ? step.byte == StartOfSysex
                              : bytes == 1     ? step.byte == yamaha
                              : bytes < header ? step.byte < firstStatus
                                               : step.byte != StartOfSysex;
            if (!fits) {
                return false;
            }
            isDump = bytes == kindPlace ? step.byte < firstOfOthers : isDump;
            ++bytes;
        }
        text = text.subspan(step.size);
    }
    return bytes == leastOpen;
}

// Where the line begins that ends with `before`.
std::size_t LineStart(Text before) {
    std::size_t start = before.size();
    while (start > 0 && !IsEndOfLine(before[start - 1])) {
        --start;
    }
    return start;
}

// What the line says whose bytes begin at `digits`, and where it begins if it says that.
Lexer LexerAt(Text text, std::size_t digits, std::size_t &front) {
    Lexer lexer;
    lexer.atLineStart = false;
    constexpr std::size_t longest = 14; // of a place and what follows it
    const std::size_t start = LineStart(text.first(digits));
    if (digits - start > longest) {
        return lexer;
    }
    const std::size_t place = PlaceAt(text.subspan(start), lexer);
    // The digits may seem to be the place of a line themselves.
    if (place > 0 && place <= digits - start &&
        std::ranges::all_of(text.subspan(start + place, digits - start - place),
                            [](std::uint8_t blank) { return blank == ' '; })) {
        front = start;
    } else {
        lexer.column = Column::None;
    }
    return lexer;
}

// Where that begins which stands in front of a message's digits and belongs to them.
std::size_t FrontOf(Text text, std::size_t digits) {
    std::size_t front = digits;
    if (front > 0 && (text[front - 1] == '$' || text[front - 1] == '#')) {
        --front;
    } else if (front > 0 && (text[front - 1] == 'x' || text[front - 1] == 'X')) {
        front -= front > 1 && text[front - 2] == '0' ? 2 : 1;
    } else if (front > 0 && HasZeroInFront(text.subspan(front - 1))) {
        --front;
    }
    LexerAt(text, digits, front);
    while (front > 0 && IsBetween[text[front - 1]]) {
        --front;
    }
    return front;
}

void ReadMore(DumpStream &text, Lexer &lexer, DecodedBytes &decoded, DumpStream &stream,
              std::size_t wanted) {
    ForgetUsed(decoded, stream);
    wanted = std::max(wanted, DecodedAtOnce);
    while (decoded.bytes.size() < wanted && !lexer.ends) {
        LookAhead(text, StepSize);
        if (text.bytes.empty()) {
            lexer.ends = true;
            break;
        }
        if (lexer.repeats > 0) {
            for (const std::uint8_t byte : lexer.line) {
                AddByte(decoded, byte, lexer.repeatedAt);
            }
            lexer.repeats -= std::min<std::uint64_t>(lexer.repeats, lexer.line.size());
            continue;
        }
        const bool wasRepeated = lexer.isRepeated;
        const Step step = NextStep(text.bytes, lexer);
        if (lexer.isRepeated && !wasRepeated) {
            lexer.repeatedAt = OffsetOf(text, 0);
        }
        lexer.mayRepeat += step.size * RepeatsPerCharacter;
        if (step.isByte) {
            AddByte(decoded, step.byte, OffsetOf(text, step.size - 2));
        }
        MoveOn(text, step.size);
    }
    stream.ends = lexer.ends;
    ShowBytes(decoded, stream);
}

} // namespace

bool IsText(std::span<const std::uint8_t> bytes) {
    return std::ranges::all_of(bytes, [](std::uint8_t byte) {
        return (byte >= 0x20 && byte != 0x7F) || byte == '\n' || byte == '\r' || byte == '\t';
    });
}

std::optional<HexMessage> FindHexMessage(std::span<const std::uint8_t> text, std::size_t limit) {
    const std::size_t end = std::min(text.size(), limit + 1);
    for (std::size_t at = 0; at + 1 < end; ++at) {
        // The second digit is the rarer one.
        const void *found = std::memchr(&text[at + 1], '0', end - at - 1);
        if (!found) {
            break;
        }
        at = static_cast<std::size_t>(static_cast<const std::uint8_t *>(found) - text.data()) - 1;
        const bool isF = text[at] == 'F' || text[at] == 'f';
        const bool beginsWord =
            at == 0 || !IsLetterOrDigit(text[at - 1]) || text[at - 1] == 'x' ||
            text[at - 1] == 'X' ||
            (HasZeroInFront(text.subspan(at - 1)) && (at == 1 || !IsLetterOrDigit(text[at - 2])));
        if (isF && beginsWord && IsMessage(text.subspan(at))) {
            return HexMessage{FrontOf(text, at), at};
        }
    }
    return std::nullopt;
}

void ReadHexText(DumpStream &text, const HexMessage &message,
                 const std::function<void(DumpStream &)> &read) {
    std::size_t front = 0;
    Lexer lexer = LexerAt(text.bytes, message.digits, front);
    MoveOn(text, message.digits);
    DecodedBytes decoded;
    DumpStream bytes;
    bytes.ends = false;
    bytes.width = 2;
    bytes.more = [&](DumpStream &stream, std::size_t wanted) {
        ReadMore(text, lexer, decoded, stream, wanted);
    };
    read(bytes);
}

} // namespace tonewright
