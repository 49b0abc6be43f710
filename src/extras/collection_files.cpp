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

// What files begin with: dumps, and what no dump is.
struct FileStart {
    std::string_view bytes;
    bool isDump;
};
constexpr FileStart FileStarts[] = {
    {"\xF0", true},              // a message
    {"MThd", true},              // a Standard MIDI File
    {"TNWR", true},              // our own documents
    {"Tnwr", true},              // our own catalogues
    {"RIFF", false},             // sounds, pictures, films
    {"RIFX", false},             //
    {"RF64", false},             //
    {"FORM", false},             // the same of another maker
    {"OggS", false},             //
    {"fLaC", false},             //
    {"wvpk", false},             //
    {"MAC ", false},             //
    {"caff", false},             //
    {"ID3\2", false},            //
    {"ID3\3", false},            //
    {"ID3\4", false},            //
    {"\xFF\xFB", false},         //
    {"\xFF\xF1", false},         //
    {"\x89PNG", false},          // pictures and texts with pictures
    {"\xFF\xD8\xFF", false},     //
    {"GIF8", false},             //
    {"%PDF", false},             //
    {"%!PS", false},             //
    {"\xD0\xCF\x11\xE0", false}, //
    {"PK\3\4", false},           // archives
    {"PK\5\6", false},           //
    {"Rar!", false},             //
    {"7z\xBC\xAF", false},       //
    {"\x1F\x8B", false},         //
    {"BZh", false},              //
    {"\xFD"
     "7zXZ",
     false},                     //
    {"\x28\xB5\x2F\xFD", false}, //
    {"\x7F"
     "ELF",
     false},                     // programs and their files
    {"\xCF\xFA\xED\xFE", false}, //
    {"SQLite format 3", false},  //
};

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
    const auto known = std::ranges::find_if(
        FileStarts, [&](const FileStart &row) { return bytes.starts_with(row.bytes); });
    if (known == std::end(FileStarts)) {
        return UpTo(LargestUnknownFile, size, FileJudgement::Skip);
    }
    return known->isDump ? UpTo(LargestDumpFile, size, FileJudgement::TooLarge)
                         : FileJudgement::Skip;
}

} // namespace tonewright
