// Reads and writes the bank ("srx") and single-voice ("sr1") documents of the reface DX.
#include "drivers/reface_dx/files.h"

#include "common/desktop.h"
#include "common/file_bytes.h"
#include "common/file_time.h"
#include "common/open_file.h"
#include "common/settings.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "core/document_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

namespace tonewright {

namespace {

using Bytes = std::vector<std::uint8_t>;

// Offsets in the header of a file.
namespace Header {
enum : std::size_t {
    magic = 0,
    headerSize = 8,
    programVersion = 12,
    driverId = 16,
    writtenAt = 20,
    voiceCount = 24,
    recordSize = 28,
    firmware = 32,
    reserved = 36,
};
static_assert(reserved + 124 == RefaceFileHeaderSize);
} // namespace Header

// The two differ in the case of one letter.
constexpr std::string_view MagicOf(RefaceFileKind kind) {
    return kind == RefaceFileKind::Bank ? "TNWRDXrf" : "TNWRDxrf";
}

// The records that a file holds by its header: one of a single voice, whatever the count.
std::uint32_t RecordsOf(const RefaceFileHeader &header, RefaceFileKind kind) {
    return kind == RefaceFileKind::Bank ? header.voiceCount : 1;
}

// Of as many bytes as a program can address.
constexpr std::uint64_t LargestFile = std::numeric_limits<std::size_t>::max();

// The start of a file, as far as its header says that its records go.
Bytes ReadFile(const char *path, RefaceFileKind kind) {
    const FilePointer file = OpenFile(path, "rb");
    if (!file) {
        return {};
    }
    Bytes bytes = ReadBytesOf(file.get(), RefaceFileHeaderSize);
    if (const auto header = RefaceHeaderOf(bytes, kind)) {
        const std::uint64_t size =
            RefaceFileHeaderSize + std::uint64_t{RecordsOf(*header, kind)} * header->recordSize;
        ReadOnBehind(bytes, file.get(), static_cast<std::size_t>(std::min(size, LargestFile)));
    }
    return bytes;
}

// The record of that number (from 0) as a block; nothing when it is not there whole or has no
// bytes.
std::optional<VoiceObject> RecordAt(std::span<const std::uint8_t> bytes,
                                    const RefaceFileHeader &header, std::uint32_t number) {
    const auto records = bytes.subspan(RefaceFileHeaderSize);
    const std::uint64_t start = std::uint64_t{number} * header.recordSize;
    if (header.recordSize == 0 || start + header.recordSize > records.size()) {
        return std::nullopt;
    }
    const auto record = records.subspan(static_cast<std::size_t>(start), header.recordSize);
    return VoiceObject{{record.begin(), record.end()}};
}

void AppendHeader(Bytes &file, RefaceFileKind kind, std::size_t voiceCount,
                  std::uint32_t firmware) {
    file.resize(RefaceFileHeaderSize);
    std::ranges::copy(MagicOf(kind), file.begin());
    WriteLittle32(file, Header::headerSize, RefaceFileHeaderSize);
    WriteLittle32(file, Header::programVersion, VersionNumber);
    WriteLittle32(file, Header::driverId, RefaceDriverId);
    WriteLittle32(file, Header::writtenAt, static_cast<std::uint32_t>(std::time(nullptr)));
    WriteLittle32(file, Header::voiceCount, static_cast<std::uint32_t>(voiceCount));
    WriteLittle32(file, Header::recordSize, RefaceVoiceObjectSize);
    WriteLittle32(file, Header::firmware, firmware);
}

// Writes a file of all the voices. It is opened before they are looked at: with one that cannot be
// written no file is left, not even the former one, unless documents keep those.
bool WriteVoices(const char *path, RefaceFileKind kind, std::span<const VoiceObject *const> voices,
                 std::uint32_t firmware) {
    const bool complete = std::ranges::all_of(voices, RefaceVoiceCanBeWritten);
    if (!complete && KeepsFormerDocuments()) {
        errno = EINVAL;
        return false;
    }
    if (!complete) {
        voices = {};
    }
    if (WriteDocumentFile(path, EncodeRefaceFile(kind, voices, firmware)) != WriteOutcome::Done) {
        return false;
    }
    if (!complete) {
        DeleteWrittenFile(path);
    }
    return complete;
}

} // namespace

std::optional<RefaceFileHeader> RefaceHeaderOf(std::span<const std::uint8_t> bytes,
                                               RefaceFileKind kind) {
    if (bytes.size() < RefaceFileHeaderSize ||
        ReadLittle32(bytes, Header::driverId) != RefaceDriverId ||
        !std::ranges::equal(bytes.first(MagicOf(kind).size()), MagicOf(kind),
                            [](std::uint8_t byte, char letter) { return byte == letter; })) {
        return std::nullopt;
    }
    return RefaceFileHeader{.voiceCount = ReadLittle32(bytes, Header::voiceCount),
                            .recordSize = ReadLittle32(bytes, Header::recordSize)};
}

bool DecodeRefaceBank(VoiceList &list, std::span<const std::uint8_t> bytes) {
    const auto header = RefaceHeaderOf(bytes, RefaceFileKind::Bank);
    if (!header) {
        return false;
    }
    std::vector<VoiceObject> voices;
    while (voices.size() < header->voiceCount) {
        auto voice = RecordAt(bytes, *header, static_cast<std::uint32_t>(voices.size()));
        if (!voice) {
            break;
        }
        voices.push_back(std::move(*voice));
    }
    const bool isWhole = voices.size() == header->voiceCount;
    SelectListFonts(list, RefaceDriverId);
    ListFill(list, std::move(voices));
    if (isWhole) {
        ListSelect(list, 0);
    }
    return isWhole;
}

std::optional<VoiceObject> DecodeRefaceVoice(std::span<const std::uint8_t> bytes) {
    const auto header = RefaceHeaderOf(bytes, RefaceFileKind::SingleVoice);
    return header ? RecordAt(bytes, *header, 0) : std::nullopt;
}

bool RefaceVoiceCanBeWritten(const VoiceObject *voice) {
    return voice && voice->bytes.size() >= RefaceVoiceObjectSize;
}

Bytes EncodeRefaceFile(RefaceFileKind kind, std::span<const VoiceObject *const> voices,
                       std::uint32_t firmware) {
    Bytes file;
    AppendHeader(file, kind, voices.size(), firmware);
    for (const VoiceObject *voice : voices) {
        const auto block = std::span(voice->bytes).first<RefaceVoiceObjectSize>();
        file.insert(file.end(), block.begin(), block.end());
    }
    return file;
}

int RefaceOpenBank(QWidget *, VoiceList &list, const char *path, std::int64_t *time) {
    const WaitCursor wait;
    if (time) {
        *time = ModificationTimeOrNow(path);
    }
    return DecodeRefaceBank(list, ReadFile(path, RefaceFileKind::Bank));
}

int RefaceSaveBank(QWidget *window, VoiceList &list, const char *path) {
    const WaitCursor wait;
    if (!MakeBackupOf(window, path)) {
        return 0;
    }
    std::array<const VoiceObject *, RefaceVoicesPerBank> voices;
    for (int row = 0; row < RefaceVoicesPerBank; ++row) {
        voices[row] = ListVoice(list, row);
    }
    return WriteVoices(path, RefaceFileKind::Bank, voices, SynthFirmware);
}

int RefaceImportVoice(QWidget *, VoiceList &list, int index, const char *path, VoiceObject *out) {
    const WaitCursor wait;
    // A row without a voice cannot be filled. A row past the end is no such row: the file is read
    // all the same, and its voice goes nowhere.
    const bool rowExists = index >= 0 && index < ListCount(list);
    if (!out && rowExists && !ListVoice(list, index)) {
        return 0;
    }
    auto voice = DecodeRefaceVoice(ReadFile(path, RefaceFileKind::SingleVoice));
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

int RefaceExportVoice(QWidget *, VoiceList &list, const VoiceObject *voice, const char *path,
                      int index, std::uint32_t firmware) {
    const WaitCursor wait;
    if (!voice) {
        voice = ListVoice(list, index);
    }
    if (!voice) {
        return 0;
    }
    const VoiceObject *const voices[] = {voice};
    return WriteVoices(path, RefaceFileKind::SingleVoice, voices, firmware);
}

} // namespace tonewright
