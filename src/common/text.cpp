// Bounded text helpers.
#include "common/text.h"

#include "common/platform.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>

namespace tonewright {
namespace {

constexpr bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

// The white space of the C locale.
constexpr bool IsSpace(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

constexpr bool IsContinuation(char character) {
    return (static_cast<unsigned char>(character) & 0xC0) == 0x80;
}

// Bytes of the UTF-8 character that begins with `lead`; 1 for a byte that begins none.
constexpr std::size_t SequenceLength(char lead) {
    const auto byte = static_cast<unsigned char>(lead);
    if (byte >= 0xC2 && byte <= 0xDF) {
        return 2;
    }
    if (byte >= 0xE0 && byte <= 0xEF) {
        return 3;
    }
    if (byte >= 0xF0 && byte <= 0xF4) {
        return 4;
    }
    return 1;
}

bool IsSeparator(char character) {
    return character == '/' || character == PathSeparator ||
           (PathSeparator == '\\' && character == ':');
}

// Where the name begins in a path.
std::size_t NameStart(std::string_view path) {
    std::size_t start = path.size();
    while (start > 0 && !IsSeparator(path[start - 1])) {
        --start;
    }
    return start;
}

// Where the dot of the extension stands in a path, or npos.
std::size_t ExtensionDot(std::string_view path) {
    const std::size_t dot = path.rfind('.');
    return dot == std::string_view::npos || dot < NameStart(path) ? std::string_view::npos : dot;
}

std::size_t SkipSpaces(std::string_view text, std::size_t position) {
    while (position < text.size() && IsSpace(text[position])) {
        ++position;
    }
    return position;
}

// Reads digits at `position` and moves it behind them; values beyond `limit` count as `limit`.
std::int64_t ReadDigits(std::string_view text, std::size_t &position, std::int64_t limit) {
    std::int64_t number = 0;
    for (; position < text.size() && IsDigit(text[position]); ++position) {
        number = std::min<std::int64_t>(number * 10 + (text[position] - '0'), limit);
    }
    return number;
}

// One signed number, with white space in front of it. False when there is no digit.
bool ReadSigned(std::string_view text, std::size_t &position, int &number) {
    std::size_t at = SkipSpaces(text, position);
    const bool negative = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) {
        ++at;
    }
    if (at >= text.size() || !IsDigit(text[at])) {
        return false;
    }
    const std::int64_t limit = std::numeric_limits<int>::max();
    const std::int64_t magnitude = ReadDigits(text, at, limit);
    number = static_cast<int>(negative ? -magnitude : magnitude);
    position = at;
    return true;
}

void AppendUtf8(std::string &text, unsigned char latin1) {
    if (latin1 < 0x80) {
        text += static_cast<char>(latin1);
    } else {
        text += static_cast<char>(0xC0 | (latin1 >> 6));
        text += static_cast<char>(0x80 | (latin1 & 0x3F));
    }
}

} // namespace

std::string_view CutText(std::string_view text, std::size_t limit) {
    if (text.size() <= limit) {
        return text;
    }
    if (IsContinuation(text[limit])) {
        // A character has at most three bytes behind its first one.
        for (std::size_t back = 1; back <= 3 && back <= limit; ++back) {
            if (!IsContinuation(text[limit - back])) {
                if (SequenceLength(text[limit - back]) > back) {
                    return text.substr(0, limit - back);
                }
                break;
            }
        }
    }
    return text.substr(0, limit);
}

void CopyBounded(char *target, const char *source, std::size_t n) {
    const std::string_view kept = CutText(std::string_view(source, strnlen(source, n + 1)), n);
    std::memmove(target, kept.data(), kept.size());
    target[kept.size()] = 0;
}

void AppendBounded(char *target, const char *source, std::size_t n) {
    const std::size_t length = std::strlen(target);
    if (length < n) {
        CopyBounded(target + length, source, n - length);
    }
}

void CopyBounded(std::string &target, std::string_view source, std::size_t n) {
    target = std::string(CutText(source, n));
}

void AppendBounded(std::string &target, std::string_view source, std::size_t n) {
    if (target.size() < n) {
        target += CutText(source, n - target.size());
    }
}

std::string FormatText(const char *format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    if (length > 0) {
        std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
    va_end(again);
    return text;
}

int ScanText(const char *text, const char *format, ...) {
    std::va_list targets;
    va_start(targets, format);
    const int count = std::vsscanf(text, format, targets);
    va_end(targets);
    return count;
}

const char *FormatThousands(std::uint32_t number) {
    static thread_local char text[sizeof "4,294,967,295"];
    char *first = text + sizeof text - 1;
    *first = 0;
    int digits = 0;
    do {
        if (digits > 0 && digits % 3 == 0) {
            *--first = ',';
        }
        *--first = static_cast<char>('0' + number % 10);
        number /= 10;
        ++digits;
    } while (number != 0);
    std::memmove(text, first, std::strlen(first) + 1);
    return text;
}

const char *StripQuotes(const char *text) {
    static std::string stripped;
    std::string kept(text);
    std::erase(kept, '"');
    stripped = kept;
    return stripped.c_str();
}

bool IsPath(std::string_view path) {
    return path.size() <= PathLimit;
}

const char *FileNameOfPath(const char *path) {
    static char name[PathLimit + 1];
    CopyBounded(name, path + NameStart(path), PathLimit);
    return name;
}

std::string ExtensionOfPath(std::string_view path) {
    const std::size_t dot = ExtensionDot(path);
    return dot == std::string_view::npos ? std::string() : std::string(path.substr(dot + 1));
}

std::string FolderOfPath(std::string_view path) {
    return std::string(FolderPartOf(path));
}

std::string_view FolderPartOf(std::string_view path) {
    return path.substr(0, NameStart(path));
}

std::string ReplaceExtension(std::string_view path, std::string_view extension) {
    std::string replaced(path.substr(0, ExtensionDot(path)));
    replaced += '.';
    replaced += extension;
    return replaced;
}

std::string BackupPathOf(std::string_view path) {
    const std::size_t name = NameStart(path);
    std::string backup(path.substr(0, name));
    backup += "Backup of ";
    backup += path.substr(name);
    return backup;
}

char LowerAscii(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
}

bool EqualNoCase(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, LowerAscii, LowerAscii);
}

int CompareText(std::string_view one, std::string_view other) {
    const auto folded = [](char byte) { return static_cast<unsigned char>(LowerAscii(byte)); };
    const std::size_t size = std::min(one.size(), other.size());
    for (std::size_t at = 0; at < size; ++at) {
        if (const int difference = folded(one[at]) - folded(other[at])) {
            return difference;
        }
    }
    return (one.size() > other.size()) - (one.size() < other.size());
}

bool NameStandsBefore(std::string_view one, std::string_view other) {
    const int order = CompareText(one, other);
    return order != 0 ? order < 0 : one < other;
}

std::vector<std::string> SplitList(std::string_view text, char separator) {
    std::vector<std::string> items;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (end > 0) {
            items.emplace_back(CutText(text.substr(0, end), PathLimit));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return items;
}

std::uint32_t ReadInteger(std::string_view text) {
    std::size_t position = SkipSpaces(text, 0);
    bool negative = false;
    if (position < text.size() && (text[position] == '-' || text[position] == '+')) {
        negative = text[position] == '-';
        ++position;
    }
    std::uint32_t number = 0;
    for (; position < text.size() && IsDigit(text[position]); ++position) {
        number = number * 10 + static_cast<std::uint32_t>(text[position] - '0');
    }
    return negative ? 0u - number : number;
}

double ReadNumber(std::string_view text) {
    text = text.substr(0, PathLimit); // so that only an exponent leads out of range
    text.remove_prefix(SkipSpaces(text, 0));
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    const std::string_view digits = isHexadecimal ? text.substr(2) : text;
    if (digits.starts_with('-')) {
        return 0; // a second sign ends the number
    }
    double number = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number,
                        isHexadecimal ? std::chars_format::hex : std::chars_format::general);
    if (error == std::errc::result_out_of_range) {
        const std::string_view read(digits.data(), static_cast<std::size_t>(end - digits.data()));
        const bool isTooSmall = read.find('-') != read.npos; // the exponent's
        number = isTooSmall ? 0 : std::numeric_limits<double>::infinity();
    }
    return negative ? -number : number;
}

double LimitedNumber(std::string_view text, double lowest, double highest, double fallback) {
    const double number = ReadNumber(text);
    return std::isnan(number) ? fallback : std::clamp(number, lowest, highest);
}

int ScanSpinRange(const char *text, SpinRange &range) {
    const std::string_view all(text);
    std::size_t position = 0;
    int found = 0;
    for (int *number : {&range.minimum, &range.maximum, &range.start}) {
        if (found > 0) {
            if (position >= all.size() || all[position] != ',') {
                break;
            }
            ++position;
        }
        if (!ReadSigned(all, position, *number)) {
            break;
        }
        ++found;
    }
    return found;
}

int ClampedInteger(const char *text, const SpinRange &range) {
    const std::string_view all(text);
    std::size_t position = SkipSpaces(all, 0);
    const bool negative = range.minimum < 0 && position < all.size() && all[position] == '-';
    if (negative) {
        ++position;
    }
    const std::int64_t magnitude =
        ReadDigits(all, position, std::numeric_limits<std::uint32_t>::max());
    const std::int64_t number = negative ? -magnitude : magnitude;
    return static_cast<int>(
        std::max<std::int64_t>(std::min<std::int64_t>(number, range.maximum), range.minimum));
}

std::string Latin1ToUtf8(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        AppendUtf8(text, static_cast<unsigned char>(byte));
    }
    return text;
}

std::string Utf8ToLatin1(std::string_view text) {
    std::string bytes;
    while (!text.empty()) {
        const std::size_t length = SequenceLength(text[0]);
        std::size_t taken = 1;
        while (taken < length && taken < text.size() && IsContinuation(text[taken])) {
            ++taken;
        }
        const auto first = static_cast<unsigned char>(text[0]);
        if (first < 0x80) {
            bytes += text[0];
        } else if (length == 2 && taken == 2 && first <= 0xC3) { // U+0080 to U+00FF
            bytes += static_cast<char>((first & 3) << 6 | (text[1] & 0x3F));
        } else {
            bytes += '?';
        }
        text.remove_prefix(taken);
    }
    return bytes;
}

std::string FileNameOfVoice(std::string_view latin1Name) {
    constexpr std::string_view Forbidden = "/\\:*?\"<>|";
    std::string name;
    for (const char character : latin1Name) {
        const auto byte = static_cast<unsigned char>(character);
        const bool control = byte < 0x20 || (byte >= 0x7F && byte <= 0x9F);
        const bool hides = character == '.' && name.empty();
        if (control || hides || Forbidden.find(character) != std::string_view::npos) {
            name += '_';
        } else {
            AppendUtf8(name, byte);
        }
    }
    return name;
}

} // namespace tonewright
