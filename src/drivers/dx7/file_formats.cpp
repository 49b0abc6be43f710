// Judges and lists the files of the DX7 family: each is one system-exclusive message of a fixed
// size.
#include "drivers/dx7/file_formats.h"

#include "common/text.h"
#include "drivers/dx7/files.h"
#include "drivers/dx7/transfer.h"
#include "drivers/dx7/voice_codec.h"
#include "midi/sysex.h"

#include <algorithm>
#include <array>
#include <string>

namespace tonewright {
namespace {

VoiceFileReport ReportOf(Dx7FileVerdict verdict, std::span<const std::uint8_t> bytes,
                         std::size_t wholeSize, const char *whatItShouldBe) {
    switch (verdict) {
    case Dx7FileVerdict::Ok:
        return {};
    case Dx7FileVerdict::TooShort:
        return ShortFile(bytes.size(), wholeSize);
    case Dx7FileVerdict::WrongHeader:
        break;
    case Dx7FileVerdict::WrongCount:
        return {VoiceFileState::Damaged, Dx7ChecksumHolds(bytes.first(wholeSize))
                                             ? "wrong byte count, right checksum"
                                             : "wrong byte count and wrong checksum"};
    case Dx7FileVerdict::WrongChecksum:
        return {VoiceFileState::Damaged, "wrong checksum"};
    }
    return RefusedFile(std::string("not a ") + whatItShouldBe);
}

VoiceFileReport JudgeDx7BankFile(std::span<const std::uint8_t> bytes) {
    return ReportOf(JudgeDx7Bank(bytes), bytes, Dx7BankFileSize, "DX7 32-voice dump");
}

VoiceFileReport JudgeDx7VoiceFile(std::span<const std::uint8_t> bytes) {
    return ReportOf(JudgeDx7Voice(bytes), bytes, Dx7VoiceFileSize, "DX7 single-voice file");
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

// What is sent of a voice are its bytes but for the last, which operators are switched on.
bool Dx7FitsAMessage(const VoiceObject *voice) {
    const auto bytes = Dx7VoiceOf(voice);
    return !bytes || FitAMessage(bytes->first<Dx7Voice::operatorEnable>());
}

std::size_t Dx7BankMisfits(std::span<const std::uint8_t> bytes) {
    const auto voices = bytes.subspan<Dx7FileHeaderSize, Dx7VoicesPerBank * Dx7PackedVoiceSize>();
    if (FitAMessage(voices)) {
        return 0;
    }
    std::size_t misfits = 0;
    for (std::size_t at = 0; at < voices.size(); at += Dx7PackedVoiceSize) {
        misfits += !FitAMessage(voices.subspan(at, Dx7PackedVoiceSize));
    }
    return misfits;
}

std::size_t Dx7VoiceFileMisfits(std::span<const std::uint8_t> bytes) {
    return !FitAMessage(bytes.subspan<Dx7FileHeaderSize, Dx7Voice::operatorEnable>());
}

// ---- other things than these files

constexpr std::uint8_t AnyChannel = 0x0F; // bits of the header's third byte

// Whether a message of this header and size begins at `at`, whatever the channel that it is for.
bool HasMessage(std::span<const std::uint8_t> bytes, std::size_t at,
                std::span<const std::uint8_t> header, std::size_t size) {
    if (bytes.size() < size || at > bytes.size() - size || bytes[at + size - 1] != EndOfSysex) {
        return false;
    }
    for (std::size_t place = 0; place < header.size(); ++place) {
        const std::uint8_t byte = bytes[at + place];
        if ((place == 2 ? byte & ~AnyChannel : byte) != header[place]) {
            return false;
        }
    }
    return true;
}

// 4096 bytes are taken for voices when they look like some: bytes, names and envelopes in range.
bool AreVoicesWithoutHeader(std::span<const std::uint8_t> bytes) {
    constexpr std::uint8_t LargestOfEnvelope = 99;
    constexpr std::size_t EnvelopeSize = 8;
    if (bytes.size() != Dx7VoicesPerBank * Dx7PackedVoiceSize || !FitAMessage(bytes)) {
        return false;
    }
    for (std::size_t at = 0; at < bytes.size(); at += Dx7PackedVoiceSize) {
        const auto voice = bytes.subspan(at, Dx7PackedVoiceSize);
        const bool hasName = std::ranges::all_of(voice.last<Dx7NameSize>(), [](std::uint8_t byte) {
            return byte >= ' ' && byte < 0x7F;
        });
        for (std::size_t n = 0; n < Dx7OperatorCount; ++n) {
            const auto envelope = voice.subspan(n * Dx7PackedOperatorSize, EnvelopeSize);
            if (!hasName || std::ranges::max(envelope) > LargestOfEnvelope) {
                return false;
            }
        }
    }
    return true;
}

std::string RecogniseDx7Bank(std::span<const std::uint8_t> bytes) {
    if (HasMessage(bytes, 0, Dx7BankHeader, Dx7BankFileSize)) {
        const int channel = (bytes[2] & AnyChannel) + 1;
        return channel == 1 ? "a DX7 bank" : FormatText("a DX7 bank for channel %d", channel);
    }
    if (AreVoicesWithoutHeader(bytes)) {
        return "a DX7 bank of 32 voices without its header";
    }
    for (std::size_t at = 1; at + Dx7BankFileSize <= bytes.size(); ++at) {
        if (HasMessage(bytes, at, Dx7BankHeader, Dx7BankFileSize)) {
            return FormatText("a DX7 bank behind %zu bytes of something else", at);
        }
    }
    return "";
}

std::string RecogniseDx7Voice(std::span<const std::uint8_t> bytes) {
    if (HasMessage(bytes, 0, Dx7VoiceHeader, Dx7VoiceDumpSize)) {
        return "a DX7 voice of 163 bytes, as the instrument sends it";
    }
    return HasMessage(bytes, 0, Dx7VoiceHeader, Dx7VoiceFileSize) ? "a DX7 single-voice file" : "";
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
                                       .fitsAMessage = Dx7FitsAMessage,
                                       .misfits = Dx7BankMisfits,
                                       .recognise = RecogniseDx7Bank,
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
                                        .fitsAMessage = Dx7FitsAMessage,
                                        .misfits = Dx7VoiceFileMisfits,
                                        .recognise = RecogniseDx7Voice,
                                        .voicesWritten = 1};

} // namespace tonewright
