// The two document formats of the DX7 family; each holds one system-exclusive message.
//
// Bank, "syx", 4104 bytes:             F0 43 00 09 20 00 | 32 packed voices | checksum | F7
// Single voice, "sy1", 164 bytes:      F0 43 00 00 01 1B | 156 bytes        | checksum | F7
//
// The byte count of a single voice says 155 while 156 bytes follow: the file keeps one byte more
// than the instrument's dump, which operators are switched on.
#pragma once

#include "core/voice_list.h"
#include "drivers/dx7/voice_codec.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>

class QWidget;

namespace tonewright {

constexpr std::size_t Dx7BankFileSize = 4104;
constexpr std::size_t Dx7VoiceFileSize = 164;
constexpr std::size_t Dx7FileHeaderSize = 6;
constexpr std::array<std::uint8_t, Dx7FileHeaderSize> Dx7BankHeader = {0xF0, 0x43, 0x00,
                                                                       0x09, 0x20, 0x00};
constexpr std::array<std::uint8_t, Dx7FileHeaderSize> Dx7VoiceHeader = {0xF0, 0x43, 0x00,
                                                                        0x00, 0x01, 0x1B};

// What the first bytes of a file are, judged without any question.
enum class Dx7FileVerdict {
    Ok,
    TooShort,    // fewer bytes than the format has
    WrongHeader, // not such a dump, or no end byte
    WrongCount,  // a bank whose byte count is not 4096 (its checksum is not looked at)
    WrongChecksum,
};
// `bytes`: the file from its start; anything behind the format's size is ignored.
Dx7FileVerdict JudgeDx7Bank(std::span<const std::uint8_t> bytes);
Dx7FileVerdict JudgeDx7Voice(std::span<const std::uint8_t> bytes);
// Whether the checksum of a message fits its data. `file`: the whole message, nothing behind it.
bool Dx7ChecksumHolds(std::span<const std::uint8_t> file);

// Replaces the list's contents by the voices of a bank, whatever its sums, with the first one
// selected. False, and the list untouched, for bytes that JudgeDx7Bank calls TooShort or
// WrongHeader.
bool DecodeDx7Bank(VoiceList &list, std::span<const std::uint8_t> bytes);
// The voice of a single-voice file, whatever its checksum; nothing for bytes that JudgeDx7Voice
// calls TooShort or WrongHeader.
std::optional<VoiceObject> DecodeDx7Voice(std::span<const std::uint8_t> bytes);

// The bytes of a single-voice file.
std::array<std::uint8_t, Dx7VoiceFileSize> EncodeDx7Voice(Dx7UnpackedConst voice);
// Header, checksum and end byte around the 32 packed voices that the bytes of a bank hold already.
void CloseDx7Bank(std::span<std::uint8_t, Dx7BankFileSize> image);
// The bytes of a bank of the list; rows without a DX7 voice become 128 zero bytes.
void EncodeDx7Bank(const VoiceList &list, std::span<std::uint8_t, Dx7BankFileSize> image);

// The four file operations of the DX7 row. All show the wait cursor from start to end and return 1
// on success and 0 on failure, without a message but for the questions told in core/synth_driver.h
// and here: a wrong checksum (or byte count of a bank) is asked about, a failed backup too. A write
// that falls short deletes the file; that of a bank leaves the list disabled.
int Dx7OpenBank(QWidget *window, VoiceList &list, const char *path, std::int64_t *time);
int Dx7SaveBank(QWidget *window, VoiceList &list, const char *path);
int Dx7ImportVoice(QWidget *window, VoiceList &list, int index, const char *path, VoiceObject *out);
int Dx7ExportVoice(QWidget *window, VoiceList &list, const VoiceObject *voice, const char *path,
                   int index, std::uint32_t firmware);

} // namespace tonewright
