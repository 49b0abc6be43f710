// The two document formats of the reface DX; each is a header and whole blocks as they stand in
// memory.
//
//   offset  0  magic: "TNWRDXrf" of a bank ("srx"), "TNWRDxrf" of a single voice ("sr1")
//           8  header size      160
//          12  program version
//          16  driver id        "xdFR"
//          20  written at       seconds since 1970, low 32 bits
//          24  voice count      32 of a bank, 1 of a single voice
//          28  record size      202
//          32  firmware of the instrument
//          36  124 bytes of zero
//         160  the records, one behind the other
//
// All numbers are 32 bits, little-endian. A reader uses magic, driver id, voice count and record
// size and nothing else, and takes the header as 160 bytes. Other counts and record sizes than
// those written are read as they stand, as far as the file really holds the records.
#pragma once

#include "core/voice_list.h"
#include "drivers/reface_dx/voice_codec.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

class QWidget;

namespace tonewright {

constexpr std::size_t RefaceFileHeaderSize = 160;
constexpr std::size_t RefaceBankFileSize =
    RefaceFileHeaderSize + RefaceVoicesPerBank * RefaceVoiceObjectSize;
constexpr std::size_t RefaceVoiceFileSize = RefaceFileHeaderSize + RefaceVoiceObjectSize;
static_assert(RefaceBankFileSize == 6624 && RefaceVoiceFileSize == 362);

enum class RefaceFileKind { Bank, SingleVoice };

// What a reader uses of a header.
struct RefaceFileHeader {
    std::uint32_t voiceCount = 0;
    std::uint32_t recordSize = 0; // of 0 no record can be read
};
// `bytes`: the file from its start. Nothing when it is shorter than a header, or when the magic is
// not that of `kind` or the driver id not the reface DX's.
std::optional<RefaceFileHeader> RefaceHeaderOf(std::span<const std::uint8_t> bytes,
                                               RefaceFileKind kind);

// Replaces the list's contents by the records of a bank, with the first one selected. False, and
// the list untouched, without a header of a bank; false, and the whole records in the list, when
// the bytes end within the records.
bool DecodeRefaceBank(VoiceList &list, std::span<const std::uint8_t> bytes);
// The first record of a single-voice file, whatever the voice count; nothing without such a header,
// or when the record is not there whole.
std::optional<VoiceObject> DecodeRefaceVoice(std::span<const std::uint8_t> bytes);

// True for a block that a file can hold: at least 202 bytes, the first 202 of which are written
// whatever they are.
bool RefaceVoiceCanBeWritten(const VoiceObject *voice);

// The bytes of a file of `voices`, each of which can be written; written now, by `firmware`.
std::vector<std::uint8_t> EncodeRefaceFile(RefaceFileKind kind,
                                           std::span<const VoiceObject *const> voices,
                                           std::uint32_t firmware);

// The four file operations of the reface DX row. All show the wait cursor from start to end and
// return 1 on success and 0 on failure, without a message; only a failed backup is asked about.
//
// A bank that ends within its records fails, and leaves the voices in front of its end in the list.
int RefaceOpenBank(QWidget *window, VoiceList &list, const char *path, std::int64_t *time);
// Writes the first 32 rows. When one of them cannot be written, or a write falls short, the file is
// deleted.
int RefaceSaveBank(QWidget *window, VoiceList &list, const char *path);
// Reads the first record, whatever the voice count.
int RefaceImportVoice(QWidget *window, VoiceList &list, int index, const char *path,
                      VoiceObject *out);
// A voice that cannot be written, and a write that falls short, delete the file.
int RefaceExportVoice(QWidget *window, VoiceList &list, const VoiceObject *voice, const char *path,
                      int index, std::uint32_t firmware);

} // namespace tonewright
