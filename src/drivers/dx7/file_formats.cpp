// Judges and lists the files of the DX7 family: each is one system-exclusive message of a fixed
// size.
#include "drivers/dx7/file_formats.h"

#include "drivers/dx7/files.h"
#include "drivers/dx7/voice_codec.h"

#include <array>
#include <string>

namespace tonewright {
namespace {

VoiceFileReport ReportOf(Dx7FileVerdict verdict, std::size_t size, std::size_t wholeSize,
                         const char *whatItShouldBe) {
    switch (verdict) {
    case Dx7FileVerdict::Ok:
        return {};
    case Dx7FileVerdict::TooShort:
        return ShortFile(size, wholeSize);
    case Dx7FileVerdict::WrongHeader:
        break;
    case Dx7FileVerdict::WrongCount:
        return {VoiceFileState::Damaged, "wrong byte count"};
    case Dx7FileVerdict::WrongChecksum:
        return {VoiceFileState::Damaged, "wrong checksum"};
    }
    return RefusedFile(std::string("not a ") + whatItShouldBe);
}

VoiceFileReport JudgeDx7BankFile(std::span<const std::uint8_t> bytes) {
    return ReportOf(JudgeDx7Bank(bytes), bytes.size(), Dx7BankFileSize, "DX7 32-voice dump");
}

VoiceFileReport JudgeDx7VoiceFile(std::span<const std::uint8_t> bytes) {
    return ReportOf(JudgeDx7Voice(bytes), bytes.size(), Dx7VoiceFileSize, "DX7 single-voice file");
}

// A DX7 file is as large and has as many voices as each other of its kind.
template <std::uint64_t Number> std::uint64_t Always(std::span<const std::uint8_t>) {
    return Number;
}

VoiceLine Dx7Line(Dx7UnpackedConst voice) {
    return {Dx7NameText(&voice[Dx7Voice::name]), voice[Dx7Voice::algorithm] + 1};
}

VoiceLine Dx7BankLine(std::span<const std::uint8_t> bytes, std::size_t index) {
    std::array<std::uint8_t, Dx7VoiceSize> voice;
    UnpackDx7Voice(
        voice,
        bytes.subspan(Dx7FileHeaderSize + Dx7PackedVoiceSize * index).first<Dx7PackedVoiceSize>());
    return Dx7Line(voice);
}

VoiceLine Dx7VoiceFileLine(std::span<const std::uint8_t> bytes, std::size_t) {
    return Dx7Line(bytes.subspan<Dx7FileHeaderSize>().first<Dx7VoiceSize>());
}

// Rows without a voice become voices of zero bytes.
bool Dx7CanBeWritten(const VoiceObject *) {
    return true;
}

bool Dx7CanBeSent(const VoiceObject *voice) {
    return Dx7VoiceOf(voice).has_value();
}

} // namespace

const VoiceFileFormat Dx7BankFormat = {.driver = Dx7DriverId,
                                       .kind = VoiceFileKind::Bank,
                                       .size = Dx7BankFileSize,
                                       .wholeSize = Always<Dx7BankFileSize>,
                                       .judge = JudgeDx7BankFile,
                                       .count = Always<Dx7VoicesPerBank>,
                                       .voice = Dx7BankLine,
                                       .canBeWritten = Dx7CanBeWritten,
                                       .canBeSent = Dx7CanBeSent,
                                       .voicesWritten = Dx7VoicesPerBank};

const VoiceFileFormat Dx7VoiceFormat = {.driver = Dx7DriverId,
                                        .kind = VoiceFileKind::SingleVoice,
                                        .size = Dx7VoiceFileSize,
                                        .wholeSize = Always<Dx7VoiceFileSize>,
                                        .judge = JudgeDx7VoiceFile,
                                        .count = Always<1>,
                                        .voice = Dx7VoiceFileLine,
                                        .canBeWritten = Dx7CanBeWritten,
                                        .canBeSent = Dx7CanBeSent,
                                        .voicesWritten = 1};

} // namespace tonewright
