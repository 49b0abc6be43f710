// Writes and reads files of reface DX settings.
#include "drivers/reface_dx/settings_file.h"

#include "common/platform.h"
#include "common/version.h"
#include "core/document_file.h"

#include <array>
#include <bitset>
#include <cerrno>
#include <ctime>
#include <optional>
#include <span>
#include <string_view>

namespace tonewright {
namespace {

constexpr std::string_view FirstLine = ";Quillbrook Tonewright - reface DX configuration";

// The keys with their colons, in the order of the bytes.
constexpr std::array<std::string_view, RefaceSentSize> CrgKeys = {
    "TransCh:",      "RcvCh:",     "MasterTune0:", "MasterTune1:", "MasterTune2:",
    "MasterTune3:",  "LocalCtrl:", "Transpose:",   "Tempo0:",      "Tempo1:",
    "LCDConstrast:", "Sustain:",   "AutoPower:",   "Speaker:",     "MIDICtrl:",
};

// The present local time as "Sun Nov 22 11:22:16 2026".
std::string TimeText() {
    const std::time_t now = std::time(nullptr);
    const char *text = std::ctime(&now);
    return text ? std::string(text, 24) : std::string();
}

// The next line as far as a text that ends with a zero byte holds it.
bool NextText(LineReader &reader, std::string_view &text) {
    const bool isThere = NextLine(reader, text);
    text = text.substr(0, text.find('\0'));
    return isThere;
}

// The byte whose key the line begins with. A file may have millions of lines, most of which a look
// at their first letter rules out.
std::optional<std::size_t> ByteOfLine(std::string_view line) {
    const char letter = line.empty() ? '\0' : LowerAscii(line[0]);
    if (letter < 'a' || letter > 'z') {
        return std::nullopt;
    }
    for (std::size_t n = 0; n < CrgKeys.size(); ++n) {
        const std::string_view key = CrgKeys[n];
        if (letter == LowerAscii(key[0]) && EqualNoCase(line.substr(0, key.size()), key)) {
            return n;
        }
    }
    return std::nullopt;
}

} // namespace

std::string CrgTextOf(const SynthConfigBlock &block) {
    std::string text(FirstLine);
    text += FormatText("\n;Written %s\nTonewright %s revision %d\n", TimeText().c_str(),
                       ProgramVersion, ProgramRevision);
    for (std::size_t n = 0; n < CrgKeys.size(); ++n) {
        text += std::string(CrgKeys[n]) + std::to_string(block.system[n]) + "\n";
    }
    return text;
}

int WriteCrgFile(const char *path, const SynthConfigBlock &block) {
    const std::string text = PlatformLines(CrgTextOf(block));
    const std::span bytes(reinterpret_cast<const std::uint8_t *>(text.data()), text.size());
    return WriteDocumentFile(path, bytes) == WriteOutcome::Done;
}

bool ReadCrgLines(LineReader &reader, SynthConfigBlock &block, std::vector<std::string> *missing) {
    std::string_view line;
    if (NextText(reader, line) && line.find(FirstLine) == line.npos) {
        return false;
    }
    std::bitset<RefaceSentSize> found;
    for (; NextText(reader, line); SkipEmptyLines(reader)) {
        if (const auto byte = ByteOfLine(line)) {
            line.remove_prefix(CrgKeys[*byte].size());
            block.system[*byte] = static_cast<std::uint8_t>(ReadInteger(line));
            found.set(*byte);
        }
    }
    if (missing) {
        missing->clear();
        for (std::size_t n = 0; n < CrgKeys.size(); ++n) {
            if (!found[n]) {
                missing->emplace_back(CrgKeys[n].substr(0, CrgKeys[n].size() - 1));
            }
        }
    }
    return true;
}

int ReadCrgFile(const char *path, SynthConfigBlock &block, std::vector<std::string> *missing) {
    block = {};
    auto reader = OpenLines(path);
    if (!reader) {
        return 0;
    }
    if (!ReadCrgLines(*reader, block, missing) || reader->error != 0) {
        errno = reader->error != 0 ? reader->error : EINVAL;
        block = {};
        return 0;
    }
    return 1;
}

} // namespace tonewright
