// Makes a bank or a single voice of the DX7 family from a text that a musician can read and edit.
//
//   voicetext bank IN.txt OUT.syx          all 32 voices, 4104 bytes
//   voicetext voice IN.txt PLACE OUT.sy1   the voice at PLACE, 1 to 32, 164 bytes
//
// The text, of which examples/tonewright.voices.txt is one and explains each field:
//
//   # comment to the end of the line
//   voice 1  name="VELVET EP"
//     algorithm=5  feedback=4 ...
//     op1  mode=ratio  coarse=1  fine=0 ...
//     ...
//     op6  ...
//   voice 2 ...
//
// Words are parted by blanks and line breaks. The reader is strict: every field stands there once
// and within its range, every voice has six operators, every text has 32 voices; anything else is
// an error that names the line, and then nothing is written.
//
// Exit status: 0 done, 1 an error told on standard error, 2 a wrong call.

#include "common/file_bytes.h"
#include "drivers/dx7/files.h"
#include "drivers/dx7/voice_codec.h"
#include "midi/sysex.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace tonewright;

constexpr std::size_t TextLimit = 1 << 20; // bytes; a bank's text is some 60,000

// A field of the text: `count` numbers separated by commas, or one of `words`, which stand for 0,
// 1, 2... The byte in the voice is the number plus `bias`.
struct Field {
    std::string_view name;
    std::size_t offset; // in an operator block, or in the voice
    int minimum = 0, maximum = 0;
    int bias = 0;
    std::size_t count = 1;
    std::array<std::string_view, 6> words = {};
    std::string_view hint = {}; // why the range is narrower than the instrument's
};

constexpr Field OperatorFields[] = {
    {.name = "mode", .offset = Dx7Operator::oscillatorMode, .words = {"ratio", "fixed"}},
    {.name = "coarse", .offset = Dx7Operator::frequencyCoarse, .maximum = 31},
    {.name = "fine", .offset = Dx7Operator::frequencyFine, .maximum = 99},
    {.name = "detune",
     .offset = Dx7Operator::detune,
     .minimum = -7,
     .bias = 7,
     .hint = "a bank that is read keeps no detune above 0"},
    {.name = "level",
     .offset = Dx7Operator::outputLevel,
     .minimum = 1,
     .maximum = 99,
     .hint = "level 0 switches an operator off in a bank"},
    {.name = "velocity", .offset = Dx7Operator::velocitySensitivity, .maximum = 7},
    {.name = "ams", .offset = Dx7Operator::ampModSensitivity, .maximum = 3},
    {.name = "eg_rates", .offset = Dx7Operator::egRate1, .maximum = 99, .count = 4},
    {.name = "eg_levels", .offset = Dx7Operator::egLevel1, .maximum = 99, .count = 4},
    {.name = "rate_scaling", .offset = Dx7Operator::rateScaling, .maximum = 7},
    {.name = "breakpoint", .offset = Dx7Operator::scaleBreakPoint, .maximum = 99},
    {.name = "left_depth", .offset = Dx7Operator::scaleLeftDepth, .maximum = 99},
    {.name = "left_curve",
     .offset = Dx7Operator::scaleLeftCurve,
     .words = {"-lin", "-exp", "+exp", "+lin"}},
    {.name = "right_depth", .offset = Dx7Operator::scaleRightDepth, .maximum = 99},
    {.name = "right_curve",
     .offset = Dx7Operator::scaleRightCurve,
     .words = {"-lin", "-exp", "+exp", "+lin"}},
};

constexpr Field VoiceFields[] = {
    {.name = "algorithm", .offset = Dx7Voice::algorithm, .minimum = 1, .maximum = 32, .bias = -1},
    {.name = "feedback", .offset = Dx7Voice::feedback, .maximum = 7},
    {.name = "osc_sync", .offset = Dx7Voice::oscillatorKeySync, .words = {"off", "on"}},
    {.name = "transpose", .offset = Dx7Voice::transpose, .maximum = 48},
    {.name = "pitch_rates", .offset = Dx7Voice::pitchEgRate1, .maximum = 99, .count = 4},
    {.name = "pitch_levels", .offset = Dx7Voice::pitchEgLevel1, .maximum = 99, .count = 4},
    {.name = "lfo_wave",
     .offset = Dx7Voice::lfoWave,
     .words = {"triangle", "saw_down", "saw_up", "square", "sine", "sample_hold"}},
    {.name = "lfo_speed", .offset = Dx7Voice::lfoSpeed, .maximum = 99},
    {.name = "lfo_delay", .offset = Dx7Voice::lfoDelay, .maximum = 99},
    {.name = "lfo_sync", .offset = Dx7Voice::lfoKeySync, .words = {"off", "on"}},
    {.name = "lfo_pitch_depth", .offset = Dx7Voice::lfoPitchModDepth, .maximum = 99},
    {.name = "lfo_amp_depth", .offset = Dx7Voice::lfoAmpModDepth, .maximum = 99},
    {.name = "pitch_sensitivity", .offset = Dx7Voice::pitchModSensitivity, .maximum = 7},
};

// Every parameter of the voice but its name and operatorEnable has one row above.
constexpr std::size_t BytesOf(std::span<const Field> fields) {
    std::size_t bytes = 0;
    for (const Field &field : fields)
        bytes += field.count;
    return bytes;
}
static_assert(BytesOf(OperatorFields) == Dx7OperatorSize);
static_assert(BytesOf(VoiceFields) == Dx7Voice::name - Dx7Voice::pitchEgRate1);

// What is wrong with the text; `what` begins with "LINE: ".
struct TextError : std::runtime_error {
    TextError(int line, const std::string &what)
        : std::runtime_error(std::to_string(line) + ": " + what) {}
};

struct Word {
    int line;
    std::string_view text;
};

using VoiceBytes = std::array<std::uint8_t, Dx7VoiceSize>;

std::string Quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

// The words of a text. Blanks inside quotes do not part a word; quotes end on their line.
std::vector<Word> SplitWords(std::string_view text) {
    std::vector<Word> words;
    int line = 1;
    std::size_t at = 0;
    while (at < text.size()) {
        const char c = text[at];
        if (c == '\n') {
            ++line;
            ++at;
        } else if (c == ' ' || c == '\t' || c == '\r') {
            ++at;
        } else if (c == '#') {
            at = std::min(text.find('\n', at), text.size());
        } else {
            const std::size_t start = at;
            bool quoted = false;
            while (
                at < text.size() && text[at] != '\n' &&
                (quoted || std::string_view(" \t\r#").find(text[at]) == std::string_view::npos)) {
                if (text[at] == '"')
                    quoted = !quoted;
                ++at;
            }
            if (quoted)
                throw TextError(line, "the quotes are not closed on this line");
            words.push_back({line, text.substr(start, at - start)});
        }
    }
    return words;
}

// A whole number with nothing around it, within -99999 to 99999.
std::optional<int> ReadNumber(std::string_view text) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < -99999 ||
        number > 99999)
        return std::nullopt;
    return number;
}

std::vector<std::string_view> SplitCommas(std::string_view text) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t comma = text.find(',');
        parts.push_back(text.substr(0, comma));
        if (comma == std::string_view::npos)
            return parts;
        text.remove_prefix(comma + 1);
    }
}

// Stores the field's value at its offset in `block`. `where` begins the message of an error.
void StoreField(std::span<std::uint8_t> block, const Field &field, std::string_view value, int line,
                const std::string &where) {
    const std::string name(field.name);
    if (!field.words[0].empty()) {
        std::string choices;
        for (std::size_t i = 0; i < field.words.size() && !field.words[i].empty(); ++i) {
            if (value == field.words[i]) {
                block[field.offset] = static_cast<std::uint8_t>(i);
                return;
            }
            choices += (i == 0 ? "" : ", ") + std::string(field.words[i]);
        }
        throw TextError(line,
                        where + name + " is " + Quoted(value) + ", must be one of " + choices);
    }
    const std::vector<std::string_view> parts = SplitCommas(value);
    if (parts.size() != field.count)
        throw TextError(line, where + name + " has " + std::to_string(parts.size()) +
                                  " values, must have " + std::to_string(field.count));
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const std::optional<int> number = ReadNumber(parts[i]);
        if (!number)
            throw TextError(line,
                            where + name + " is " + Quoted(parts[i]) + ", must be a whole number");
        if (*number < field.minimum || *number > field.maximum)
            throw TextError(
                line, where + name + " is " + std::to_string(*number) + ", must be " +
                          std::to_string(field.minimum) + " to " + std::to_string(field.maximum) +
                          (field.hint.empty() ? "" : " (" + std::string(field.hint) + ")"));
        block[field.offset + i] = static_cast<std::uint8_t>(*number + field.bias);
    }
}

// Stores a name, quotes around it, blank-padded to ten bytes.
void StoreName(VoiceBytes &voice, std::string_view value, int line, const std::string &where) {
    if (value.size() < 2 || value.front() != '"' || value.find('"', 1) != value.size() - 1)
        throw TextError(line, where + "name must stand in quotes");
    value = value.substr(1, value.size() - 2);
    if (value.empty() || value.size() > Dx7NameSize)
        throw TextError(line, where + "name " + Quoted(value) + " has " +
                                  std::to_string(value.size()) + " characters, must have 1 to " +
                                  std::to_string(Dx7NameSize));
    if (std::any_of(value.begin(), value.end(), [](char c) { return c < 0x20 || c > 0x7E; }))
        throw TextError(line, where + "name has a character that is not plain ASCII");
    std::fill_n(voice.begin() + Dx7Voice::name, Dx7NameSize, std::uint8_t{' '});
    std::copy(value.begin(), value.end(), voice.begin() + Dx7Voice::name);
}

// Reads the words of a text one after the other.
struct Reader {
    std::vector<Word> words;
    std::size_t next = 0;
};

bool AtEnd(const Reader &reader) {
    return reader.next == reader.words.size();
}

// The number behind "op", 1 to 6; 0 for any other word.
std::size_t OperatorNumberOf(std::string_view word) {
    const bool isOperator =
        word.size() == 3 && word.starts_with("op") && word[2] >= '1' && word[2] <= '6';
    return isOperator ? static_cast<std::size_t>(word[2] - '0') : 0;
}

// Reads name=value words up to the next operator or voice. Each of `fields` must come once;
// `voiceName` is where a field "name" goes, null when there is none. `head` is the word that the
// fields belong to.
void ReadFields(Reader &reader, std::span<const Field> fields, std::span<std::uint8_t> block,
                VoiceBytes *voiceName, const Word &head, const std::string &where) {
    std::vector<bool> seen(fields.size(), false);
    bool nameSeen = voiceName == nullptr;
    for (; !AtEnd(reader); ++reader.next) {
        const auto [line, text] = reader.words[reader.next];
        const std::size_t sign = text.find('=');
        if (text == "voice" || OperatorNumberOf(text) != 0)
            break;
        if (sign == std::string_view::npos)
            throw TextError(line, where + Quoted(text) + " is no field and no operator");
        const std::string_view name = text.substr(0, sign), value = text.substr(sign + 1);
        if (voiceName != nullptr && name == "name") {
            if (nameSeen)
                throw TextError(line, where + "name stands there twice");
            StoreName(*voiceName, value, line, where);
            nameSeen = true;
            continue;
        }
        const auto field = std::find_if(fields.begin(), fields.end(),
                                        [&](const Field &row) { return row.name == name; });
        if (field == fields.end())
            throw TextError(line, where + "there is no field " + Quoted(name));
        const std::size_t index = static_cast<std::size_t>(field - fields.begin());
        if (seen[index])
            throw TextError(line, where + std::string(name) + " stands there twice");
        StoreField(block, *field, value, line, where);
        seen[index] = true;
    }
    if (!nameSeen)
        throw TextError(head.line, where + "name is missing");
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (!seen[i])
            throw TextError(head.line, where + std::string(fields[i].name) + " is missing");
}

// Reads one voice, from the word "voice" on. All six operators come out enabled.
VoiceBytes ReadVoice(Reader &reader, std::size_t place) {
    const Word head = reader.words[reader.next++];
    if (head.text != "voice")
        throw TextError(head.line, Quoted(head.text) + " stands where a voice should begin");
    if (place > Dx7VoicesPerBank)
        throw TextError(head.line, "there are more than 32 voices");
    if (AtEnd(reader) || ReadNumber(reader.words[reader.next].text) != static_cast<int>(place))
        throw TextError(head.line, "the next voice must be voice " + std::to_string(place));
    ++reader.next;

    VoiceBytes voice = {};
    const std::string where = "voice " + std::to_string(place) + ": ";
    ReadFields(reader, VoiceFields, voice, &voice, head, where);

    std::array<bool, Dx7OperatorCount> seen = {};
    while (!AtEnd(reader) && reader.words[reader.next].text != "voice") {
        const Word operatorHead = reader.words[reader.next++];
        const std::size_t number = OperatorNumberOf(operatorHead.text);
        const std::string name(operatorHead.text);
        if (seen[number - 1])
            throw TextError(operatorHead.line, where + name + " stands there twice");
        seen[number - 1] = true;
        // The first block in the data is op6, the last is op1.
        const std::size_t offset = (Dx7OperatorCount - number) * Dx7OperatorSize;
        ReadFields(reader, OperatorFields, std::span(voice).subspan(offset, Dx7OperatorSize),
                   nullptr, operatorHead, where + name + ": ");
    }
    for (std::size_t i = 0; i < seen.size(); ++i)
        if (!seen[i])
            throw TextError(head.line, where + "op" + std::to_string(i + 1) + " is missing");
    voice[Dx7Voice::operatorEnable] = 0x3F;
    return voice;
}

// Reads a whole text of 32 voices; throws TextError.
std::vector<VoiceBytes> ReadVoices(std::string_view text) {
    Reader reader{SplitWords(text)};
    std::vector<VoiceBytes> voices;
    while (!AtEnd(reader))
        voices.push_back(ReadVoice(reader, voices.size() + 1));
    if (voices.size() != Dx7VoicesPerBank)
        throw TextError(reader.words.empty() ? 1 : reader.words.back().line,
                        "there are " + std::to_string(voices.size()) + " voices, must be 32");
    return voices;
}

std::vector<std::uint8_t> BuildBank(const std::vector<VoiceBytes> &voices) {
    std::vector<std::uint8_t> image = {0xF0, 0x43, 0x00, 0x09, 0x20, 0x00};
    for (const VoiceBytes &voice : voices) {
        std::array<std::uint8_t, Dx7PackedVoiceSize> packed;
        PackDx7Voice(packed, voice);
        image.insert(image.end(), packed.begin(), packed.end());
    }
    image.push_back(SysexChecksum(std::span(image).subspan(Dx7FileHeaderSize)));
    image.push_back(EndOfSysex);
    return image;
}

std::vector<std::uint8_t> BuildVoice(const VoiceBytes &voice) {
    std::vector<std::uint8_t> image = {0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B};
    image.insert(image.end(), voice.begin(), voice.end());
    image.push_back(SysexChecksum(voice));
    image.push_back(EndOfSysex);
    return image;
}

int Fail(const std::string &message) {
    std::fprintf(stderr, "voicetext: %s\n", message.c_str());
    return 1;
}

// Reads `in`, writes the bank to `out`, or the voice at `place` when that is not 0.
int Run(const std::string &in, std::size_t place, const std::string &out) {
    const std::optional<std::vector<std::uint8_t>> bytes = ReadFileBytes(in.c_str(), TextLimit + 1);
    if (!bytes)
        return Fail(in + ": cannot be read");
    if (bytes->size() > TextLimit)
        return Fail(in + ": is too long for a text of 32 voices");
    std::vector<VoiceBytes> voices;
    try {
        voices = ReadVoices({reinterpret_cast<const char *>(bytes->data()), bytes->size()});
    } catch (const TextError &error) {
        return Fail(in + ":" + error.what());
    }
    const std::vector<std::uint8_t> image =
        place == 0 ? BuildBank(voices) : BuildVoice(voices[place - 1]);
    if (WriteFileBytes(out.c_str(), image) != WriteOutcome::Done)
        return Fail(out + ": cannot be written");
    return 0;
}

int Usage() {
    std::fputs("usage: voicetext bank IN.txt OUT.syx\n"
               "       voicetext voice IN.txt PLACE OUT.sy1   (PLACE: 1 to 32)\n",
               stderr);
    return 2;
}

} // namespace

int main(int argc, char **argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() == 3 && arguments[0] == "bank")
        return Run(arguments[1], 0, arguments[2]);
    if (arguments.size() == 4 && arguments[0] == "voice") {
        const std::optional<int> place = ReadNumber(arguments[2]);
        if (place && *place >= 1 && *place <= Dx7VoicesPerBank)
            return Run(arguments[1], static_cast<std::size_t>(*place), arguments[3]);
    }
    return Usage();
}
