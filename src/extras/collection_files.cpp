// Which files of a folder may hold dumps.
#include "extras/collection_files.h"

#include "common/text.h"

#include <algorithm>

namespace tonewright {
namespace {

// Of files that are made of dumps.
constexpr std::string_view DumpExtensions[] = {
    "syx", "sysex", "dx7", "mid", "midi", "rmi", "srx", "sr1", "sy1", "syx_db", "srx_db",
};

// What dumps begin with: a message, a Standard MIDI File, our own documents and catalogues.
constexpr std::string_view DumpStarts[] = {"\xF0", "MThd", "TNWR", "Tnwr"};

// What no dump begins with.
constexpr std::string_view OtherStarts[] = {
    // sounds and films
    "RIFF", "RIFX", "RF64", "FORM", "OggS", "fLaC", "wvpk", "MAC ", "caff", "ID3\2", "ID3\3",
    "ID3\4", "\xFF\xFB", "\xFF\xF1",
    // pictures, and texts with pictures
    "\x89PNG", "\xFF\xD8\xFF", "GIF8", "%PDF", "%!PS", "\xD0\xCF\x11\xE0",
    // archives
    "PK\3\4", "PK\5\6", "Rar!", "7z\xBC\xAF", "\x1F\x8B", "BZh", "\3757zXZ", "\x28\xB5\x2F\xFD",
    // programs
    "\177ELF", "\xCF\xFA\xED\xFE",
    // databases, and what stands beside them
    "SQLite format 3", "\x37\x7F\x06"};

FileJudgement UpTo(std::uint64_t limit, std::uint64_t size, FileJudgement beyond) {
    return size <= limit ? FileJudgement::Read : beyond;
}

} // namespace

bool IsHidden(std::string_view name) {
    return name.starts_with('.');
}

FileJudgement JudgeFile(std::string_view name, std::uint64_t size) {
    if (size < SmallestDumpFile) {
        return FileJudgement::Skip;
    }
    const std::size_t dot = name.rfind('.');
    const std::string_view extension =
        dot == std::string_view::npos ? std::string_view() : name.substr(dot + 1);
    const bool isDump = std::ranges::any_of(
        DumpExtensions, [&](std::string_view known) { return EqualNoCase(known, extension); });
    return isDump ? UpTo(LargestDumpFile, size, FileJudgement::TooLarge)
                  : FileJudgement::LookInside;
}

FileJudgement JudgeFile(std::span<const std::uint8_t> start, std::uint64_t size) {
    const std::string_view bytes(reinterpret_cast<const char *>(start.data()), start.size());
    const auto beginsWith = [bytes](std::string_view known) { return bytes.starts_with(known); };
    if (std::ranges::any_of(DumpStarts, beginsWith)) {
        return UpTo(LargestDumpFile, size, FileJudgement::TooLarge);
    }
    return std::ranges::any_of(OtherStarts, beginsWith)
               ? FileJudgement::Skip
               : UpTo(LargestUnknownFile, size, FileJudgement::Skip);
}

} // namespace tonewright
