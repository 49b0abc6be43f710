// Buffered output to standard output and standard error, written in big pieces.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace tonewright {

struct TextOutput {
    std::FILE *stream = nullptr;
    std::string text;    // what waits to be written; never much more than 64 KiB
    bool failed = false; // something could not be written
};

extern TextOutput StandardOutput;
extern TextOutput StandardError;

// Appends, and writes when the buffer is full.
void Put(TextOutput &output, std::string_view text);
void Put(TextOutput &output, char character);
void PutNumber(TextOutput &output, unsigned long long number);

// Writes what waits. False when this or an earlier piece could not be written.
bool Flush(TextOutput &output);

// `text` (UTF-8) with each control character (0 to 31 and 127 to 159) replaced by "?", so that it
// is one field of one line. A byte of such a number outside of a character is taken for one too;
// other bytes that are no UTF-8 stay.
std::string FieldText(std::string_view text);

// The bytes of a voice's name, taken as Latin-1, as UTF-8 with each control character (0 to 31 and
// 127 to 159) replaced by "?".
void PutVoiceName(TextOutput &output, std::string_view latin1);

// "REASON: " and the system's words for the error number; of 0, the reason alone.
std::string WithSystemReason(std::string_view reason, int error);

// "tonewright-cli: SUBJECT: REASON" on standard error; without a subject only the reason.
void TellError(std::string_view subject, std::string_view reason);
// The same, and the exit status that goes with it: ExitFailed or ExitWrongCall.
int TellFailure(std::string_view subject, std::string_view reason);
int TellWrongCall(std::string_view subject, std::string_view reason);

} // namespace tonewright
