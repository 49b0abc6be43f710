// Reads and writes the bank ("syx") and single-voice ("sy1") documents of the DX7 family.
#include "drivers/dx7/files.h"

#include "common/desktop.h"
#include "common/file_bytes.h"
#include "common/file_time.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "core/document_file.h"
#include "core/voice_file.h"
#include "midi/sysex.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>
#include <vector>

namespace tonewright {

namespace {

constexpr std::size_t BankCountOffset = 4; // the header's bytes from here on are the byte count
constexpr std::size_t BankDataSize = Dx7VoicesPerBank * Dx7PackedVoiceSize;

// Header, data, checksum, end byte.
static_assert(Dx7BankFileSize == Dx7FileHeaderSize + BankDataSize + 2);
static_assert(Dx7VoiceFileSize == Dx7FileHeaderSize + Dx7VoiceSize + 2);

bool StartsWith(std::span<const std::uint8_t> bytes, std::span<const std::uint8_t> start) {
    return std::ranges::equal(bytes.first(start.size()), start);
}

// Header, checksum and end byte around the data that `file` already holds.
void CloseMessage(std::span<std::uint8_t> file, std::span<const std::uint8_t> header) {
    const std::size_t end = file.size() - 2;
    std::ranges::copy(header, file.begin());
    file[end] = SysexChecksum(file.subspan(Dx7FileHeaderSize, end - Dx7FileHeaderSize));
    file[end + 1] = EndOfSysex;
}

// Whether the bytes have the length and the frame of a bank; its sums are not looked at.
bool IsBank(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= Dx7BankFileSize && bytes[Dx7BankFileSize - 1] == EndOfSysex &&
           StartsWith(bytes, std::span(Dx7BankHeader).first<BankCountOffset>());
}

// The same of a single-voice file.
bool IsVoice(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= Dx7VoiceFileSize && bytes[Dx7VoiceFileSize - 1] == EndOfSysex &&
           StartsWith(bytes, Dx7VoiceHeader);
}

// Whether a file may be opened by its verdict; asks when it holds the right message with wrong
// sums.
bool IsAccepted(QWidget *window, const char *path, Dx7FileVerdict verdict) {
    switch (verdict) {
    case Dx7FileVerdict::Ok:
        return true;
    case Dx7FileVerdict::TooShort:
    case Dx7FileVerdict::WrongHeader:
        return false;
    case Dx7FileVerdict::WrongCount:
    case Dx7FileVerdict::WrongChecksum:
        break;
    }
    return AskToOpenDamaged(window, path);
}

std::size_t BankVoiceOffset(int voice) {
    return Dx7FileHeaderSize + static_cast<std::size_t>(voice) * Dx7PackedVoiceSize;
}

} // namespace

bool Dx7ChecksumHolds(std::span<const std::uint8_t> file) {
    const std::size_t end = file.size() - 2; // of the data, where the checksum stands
    return SysexChecksum(file.subspan(Dx7FileHeaderSize, end - Dx7FileHeaderSize)) == file[end];
}

Dx7FileVerdict JudgeDx7Bank(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < Dx7BankFileSize) {
        return Dx7FileVerdict::TooShort;
    }
    if (!IsBank(bytes)) {
        return Dx7FileVerdict::WrongHeader;
    }
    const auto file = bytes.first<Dx7BankFileSize>();
    if (!StartsWith(file, Dx7BankHeader)) {
        return Dx7FileVerdict::WrongCount;
    }
    return Dx7ChecksumHolds(file) ? Dx7FileVerdict::Ok : Dx7FileVerdict::WrongChecksum;
}

Dx7FileVerdict JudgeDx7Voice(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < Dx7VoiceFileSize) {
        return Dx7FileVerdict::TooShort;
    }
    if (!IsVoice(bytes)) {
        return Dx7FileVerdict::WrongHeader;
    }
    return Dx7ChecksumHolds(bytes.first<Dx7VoiceFileSize>()) ? Dx7FileVerdict::Ok
                                                             : Dx7FileVerdict::WrongChecksum;
}

bool DecodeDx7Bank(VoiceList &list, std::span<const std::uint8_t> bytes) {
    if (!IsBank(bytes)) {
        return false;
    }
    std::vector<VoiceObject> voices;
    voices.reserve(Dx7VoicesPerBank);
    for (int voice = 0; voice < Dx7VoicesPerBank; ++voice) {
        std::array<std::uint8_t, Dx7VoiceSize> unpacked;
        UnpackDx7Voice(unpacked,
                       Dx7PackedConst(&bytes[BankVoiceOffset(voice)], Dx7PackedVoiceSize));
        voices.push_back(MakeDx7VoiceObject(unpacked));
    }
    ListEnable(list, false);
    ListSetRedraw(list, false);
    ListFill(list, std::move(voices));
    SelectListFonts(list, Dx7DriverId);
    ListSetRedraw(list, true);
    ListEnable(list, true);
    ListSelect(list, 0);
    return true;
}

std::optional<VoiceObject> DecodeDx7Voice(std::span<const std::uint8_t> bytes) {
    if (!IsVoice(bytes)) {
        return std::nullopt;
    }
    return MakeDx7VoiceObject(bytes.subspan<Dx7FileHeaderSize>().first<Dx7VoiceSize>());
}

std::array<std::uint8_t, Dx7VoiceFileSize> EncodeDx7Voice(Dx7UnpackedConst voice) {
    std::array<std::uint8_t, Dx7VoiceFileSize> image;
    std::ranges::copy(voice, image.begin() + Dx7FileHeaderSize);
    CloseMessage(image, Dx7VoiceHeader);
    return image;
}

void CloseDx7Bank(std::span<std::uint8_t, Dx7BankFileSize> image) {
    CloseMessage(image, Dx7BankHeader);
}

void EncodeDx7Bank(const VoiceList &list, std::span<std::uint8_t, Dx7BankFileSize> image) {
    std::ranges::fill(image, std::uint8_t{0});
    for (int row = 0; row < Dx7VoicesPerBank; ++row) {
        if (const auto voice = Dx7VoiceOf(ListVoice(list, row))) {
            PackDx7Voice(Dx7Packed(&image[BankVoiceOffset(row)], Dx7PackedVoiceSize), *voice);
        }
    }
    CloseDx7Bank(image);
}

int Dx7OpenBank(QWidget *window, VoiceList &list, const char *path, std::int64_t *time) {
    const WaitCursor wait;
    if (time) {
        *time = ModificationTimeOrNow(path);
    }
    const auto bytes = ReadFileBytes(path, Dx7BankFileSize);
    return bytes && IsAccepted(window, path, JudgeDx7Bank(*bytes)) && DecodeDx7Bank(list, *bytes);
}

int Dx7SaveBank(QWidget *window, VoiceList &list, const char *path) {
    const WaitCursor wait;
    if (!MakeBackupOf(window, path)) {
        return 0;
    }
    std::array<std::uint8_t, Dx7BankFileSize> image;
    EncodeDx7Bank(list, image);
    switch (WriteDocumentFile(path, image)) {
    case WriteOutcome::Done:
        ListEnable(list, true);
        return 1;
    case WriteOutcome::NotOpened:
        return 0;
    case WriteOutcome::Short:
        // The file is gone, or in pieces, and the list is all that is left of it: it stays
        // disabled, so that nothing but opening or saving another document follows.
        const int reason = errno;
        ListEnable(list, false);
        errno = reason;
        return 0;
    }
    return 0;
}

int Dx7ImportVoice(QWidget *window, VoiceList &list, int index, const char *path,
                   VoiceObject *out) {
    const WaitCursor wait;
    // A row without a voice cannot be filled. A row past the end is no such row: the file is read
    // all the same, and its voice goes nowhere.
    const bool rowExists = index >= 0 && index < ListCount(list);
    if (!out && rowExists && !ListVoice(list, index)) {
        return 0;
    }
    const auto bytes = ReadFileBytes(path, Dx7VoiceFileSize);
    if (!bytes || !IsAccepted(window, path, JudgeDx7Voice(*bytes))) {
        return 0;
    }
    auto voice = DecodeDx7Voice(*bytes);
    if (!voice) {
        return 0;
    }
    if (out) {
        *out = std::move(*voice);
    } else {
        ListSetVoice(list, index, std::move(*voice));
    }
    return 1;
}

int Dx7ExportVoice(QWidget *, VoiceList &list, const VoiceObject *voice, const char *path,
                   int index, std::uint32_t) {
    const WaitCursor wait;
    const auto bytes = Dx7VoiceOf(voice ? voice : ListVoice(list, index));
    if (!bytes) {
        return 0;
    }
    return WriteDocumentFile(path, EncodeDx7Voice(*bytes)) == WriteOutcome::Done;
}

} // namespace tonewright
