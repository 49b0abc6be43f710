// Bounded text helpers. Sizes count bytes; a cut never splits a UTF-8 character of a path.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

// The formats that std::vsnprintf takes, where the build does not name others.
#ifndef TONEWRIGHT_PRINTF_FORMAT
#define TONEWRIGHT_PRINTF_FORMAT printf
#endif

namespace tonewright {

constexpr std::size_t PathLimit = 260; // bytes of a path, without a terminator

// `text` cut to at most `limit` bytes, in front of the UTF-8 character that would be split.
std::string_view CutText(std::string_view text, std::size_t limit);

// Copies at most `n` bytes of `source` and a terminator; `target` holds n + 1 bytes.
void CopyBounded(char *target, const char *source, std::size_t n);
// Appends as many bytes as `n` minus the present length allows, and a terminator.
void AppendBounded(char *target, const char *source, std::size_t n);

// The same on strings: the result is at most `n` bytes long.
void CopyBounded(std::string &target, std::string_view source, std::size_t n);
void AppendBounded(std::string &target, std::string_view source, std::size_t n);

// Formatted print with the semantics of sprintf.
std::string FormatText(const char *format, ...)
    __attribute__((format(TONEWRIGHT_PRINTF_FORMAT, 1, 2)));

// Formatted scan with the semantics of sscanf; the number of fields read.
int ScanText(const char *text, const char *format, ...) __attribute__((format(scanf, 2, 3)));

// "1,234,567". Shared static buffer, one for each thread, overwritten by the next call.
const char *FormatThousands(std::uint32_t number);
// The text without its double-quote characters. Shared static buffer.
const char *StripQuotes(const char *text);

// False for a path of more than PathLimit bytes. One that the user has chosen is refused then,
// never cut: what is left of it could be the path of another file.
bool IsPath(std::string_view path);
// Name and extension of a path. Shared static buffer.
const char *FileNameOfPath(const char *path);
// The extension without its dot, empty when the name has none.
std::string ExtensionOfPath(std::string_view path);
// Drive and folder with the trailing separator; empty for a bare name.
std::string FolderOfPath(std::string_view path);
// The same as a part of `path`.
std::string_view FolderPartOf(std::string_view path);
// The path with everything behind the last dot of its name replaced; a dot is added when missing.
std::string ReplaceExtension(std::string_view path, std::string_view extension);
// The path with "Backup of " in front of its name.
std::string BackupPathOf(std::string_view path);

// An ASCII letter as a small one; any other byte as it is.
char LowerAscii(char character);
// Compares without regard to the case of ASCII letters.
bool EqualNoCase(std::string_view a, std::string_view b);
// Below 0, 0 or above 0 as `one` stands in front of `other`, with it or behind it, by their bytes
// with A to Z taken for small letters.
int CompareText(std::string_view one, std::string_view other);
// The order of a list of names in which none stands twice: by CompareText, and by their bytes where
// that finds no difference.
bool NameStandsBefore(std::string_view one, std::string_view other);

// The items of a text separated by `separator`; empty items are dropped, each is cut to 260 bytes.
std::vector<std::string> SplitList(std::string_view text, char separator = ';');

// Reads an integer as atoi does and keeps it modulo 2^32.
std::uint32_t ReadInteger(std::string_view text);
// The decimal number at the start of a text, read as atof does in the C locale, whatever the
// locale is: 0 where there is none, infinite where it is too large. It may be no number (NaN).
double ReadNumber(std::string_view text);
// The same, limited to `lowest` to `highest`; what is no number counts as `fallback`.
double LimitedNumber(std::string_view text, double lowest, double highest, double fallback);

// Range text of a spin control, "minimum,maximum,start".
struct SpinRange {
    int minimum = 0, maximum = 0, start = 0;
};
// How many numbers stand at the text's beginning, at most three; as many members of `range` are
// set, from the minimum on.
int ScanSpinRange(const char *text, SpinRange &range);
// The number in a control's text, limited to the range (read as signed when minimum is below 0,
// as unsigned otherwise).
int ClampedInteger(const char *text, const SpinRange &range);

// The instrument's bytes as UTF-8, taking them as Latin-1.
std::string Latin1ToUtf8(std::string_view bytes);
// UTF-8 in the instrument's bytes: "?" for each character that Latin-1 lacks, and for each byte
// that belongs to none.
std::string Utf8ToLatin1(std::string_view text);
// A voice's name as the beginning of a file name: UTF-8, with / \ : * ? " < > |, control characters
// and a dot in front, which would hide the file, replaced by an underscore.
std::string FileNameOfVoice(std::string_view latin1Name);

} // namespace tonewright
