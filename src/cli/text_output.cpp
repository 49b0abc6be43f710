// Buffered output to standard output and standard error, written in big pieces.
#include "cli/text_output.h"

#include "cli/command_line.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace tonewright {
namespace {

constexpr std::size_t PieceSize = 64 * 1024;
constexpr char Replacement = '?';

unsigned char ByteAt(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]);
}

bool IsControl(unsigned char byte) {
    return byte < 0x20 || (byte >= 0x7F && byte < 0xA0);
}

// The bytes of the UTF-8 character that the text begins with; 1 for a byte that begins none.
std::size_t CharacterSize(std::string_view text) {
    const unsigned char first = ByteAt(text, 0);
    const std::size_t size = first < 0xC2 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    if (first > 0xF4 || size > text.size()) {
        return 1;
    }
    for (std::size_t at = 1; at < size; ++at) {
        // What could be told by fewer bytes, a surrogate and what is beyond U+10FFFF are none.
        const bool isSecond = at == 1;
        const unsigned char lowest = isSecond && first == 0xE0   ? 0xA0
                                     : isSecond && first == 0xF0 ? 0x90
                                                                 : 0x80;
        const unsigned char highest = isSecond && first == 0xED   ? 0x9F
                                      : isSecond && first == 0xF4 ? 0x8F
                                                                  : 0xBF;
        if (ByteAt(text, at) < lowest || ByteAt(text, at) > highest) {
            return 1;
        }
    }
    return size;
}

} // namespace

TextOutput StandardOutput{.stream = stdout, .text = {}, .failed = false};
TextOutput StandardError{.stream = stderr, .text = {}, .failed = false};

void Put(TextOutput &output, std::string_view text) {
    output.text += text;
    if (output.text.size() >= PieceSize) {
        Flush(output);
    }
}

void Put(TextOutput &output, char character) {
    Put(output, std::string_view(&character, 1));
}

void PutNumber(TextOutput &output, unsigned long long number) {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    Put(output, std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

bool Flush(TextOutput &output) {
    if (!output.text.empty()) {
        const std::size_t written =
            std::fwrite(output.text.data(), 1, output.text.size(), output.stream);
        if (written != output.text.size() || std::fflush(output.stream) != 0) {
            output.failed = true;
        }
        output.text.clear();
    }
    return !output.failed;
}

std::string FieldText(std::string_view text) {
    std::string field;
    while (!text.empty()) {
        const std::size_t size = CharacterSize(text);
        // U+0080 to U+009F are C2 80 to C2 9F.
        const bool isControl = size == 2 ? ByteAt(text, 0) == 0xC2 && IsControl(ByteAt(text, 1))
                                         : size == 1 && IsControl(ByteAt(text, 0));
        if (isControl) {
            field += Replacement;
        } else {
            field += text.substr(0, size);
        }
        text.remove_prefix(size);
    }
    return field;
}

void PutVoiceName(TextOutput &output, std::string_view latin1) {
    const auto isPlain = [](char character) { return character >= 0x20 && character < 0x7F; };
    for (;;) { // a run of plain characters and the one behind it
        const auto plain =
            static_cast<std::size_t>(std::ranges::find_if_not(latin1, isPlain) - latin1.begin());
        output.text += latin1.substr(0, plain);
        if (plain == latin1.size()) {
            break;
        }
        const auto byte = static_cast<unsigned char>(latin1[plain]);
        latin1.remove_prefix(plain + 1);
        if (IsControl(byte)) {
            output.text += Replacement;
        } else {
            output.text += static_cast<char>(0xC0 | (byte >> 6));
            output.text += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
}

std::string WithSystemReason(std::string_view reason, int error) {
    std::string told(reason);
    if (error != 0) {
        told += std::string(": ") + std::strerror(error);
    }
    return told;
}

void TellError(std::string_view subject, std::string_view reason) {
    Put(StandardError, "tonewright-cli: ");
    if (!subject.empty()) {
        Put(StandardError, FieldText(subject));
        Put(StandardError, ": ");
    }
    Put(StandardError, reason);
    Put(StandardError, '\n');
}

int TellFailure(std::string_view subject, std::string_view reason) {
    TellError(subject, reason);
    return ExitFailed;
}

int TellWrongCall(std::string_view subject, std::string_view reason) {
    TellError(subject, reason);
    return ExitWrongCall;
}

} // namespace tonewright
