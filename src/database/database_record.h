// A record of a catalogue: a voice with what the catalogue says of it, in the bytes of the file.
//
//   offset   0  magic          "TnwR", T in the high byte
//            4  driverId       of the voice
//            8  date           seconds since 1970, low 32 bits: the time of the voice's document
//           12  firstDate      the same when the record was made; neither changed nor read later
//           16  payloadOffset  290
//           20  payloadSizeA   bytes of the voice's payload
//           24  payloadSizeB   bytes of its further data
//           28  name           64 characters (Latin-1) at most and a zero byte, zero-filled
//           93  source         the same: the name of the document that the voice came from
//          158  position       row of the voice in its document, from 0
//          162  128 bytes of zero
//          290  payload and further data, as in the voice's block
//
// All numbers are 32 bits, little-endian. How long a record is depends on its family alone.
#pragma once

#include "core/voice_object.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright {

constexpr std::uint32_t DatabaseRecordMagic = 0x546E7752; // "TnwR", T in the high byte
constexpr std::size_t DatabaseTextSize = 64;              // characters, without the zero byte
constexpr std::size_t DatabasePayloadOffset = 290;

// What a family's catalogues are like.
struct DatabaseFamily {
    DriverId id;
    const char *bankExtension;   // of the family's documents, without the dot
    const char *extension;       // of catalogues, without the dot
    const char *backupExtension; // of their backups, with the dot
    int voicesPerBank;
    std::size_t payloadSize; // bytes of a voice's payload, and of its further data
    std::size_t extraSize;
    std::size_t nameOffset; // of the voice's own name, in its payload
    std::size_t nameSize;
};

// Bytes of a record.
constexpr std::size_t DatabaseRecordSize(const DatabaseFamily &family) {
    return DatabasePayloadOffset + family.payloadSize + family.extraSize;
}

// A value that owns the bytes of a record; none for no record.
struct DatabaseRecord {
    std::vector<std::uint8_t> bytes;

    bool operator==(const DatabaseRecord &) const = default;
};

// What a record says of its voice.
struct DatabaseFields {
    std::string_view name; // Latin-1; valid as long as the record's bytes
    std::string_view source;
    std::uint32_t position = 0; // from 0
    std::uint32_t date = 0;     // seconds since 1970
};

// What is wrong with the bytes of a record in a file, a bit for each; 0 for nothing. A record with
// one of the first two is not read at all.
constexpr unsigned RecordIsShort = 1; // fewer bytes than a record of the family has
constexpr unsigned RecordHasNoMagic = 2;
constexpr unsigned RecordHasOtherSizes = 4; // or another offset than the family's have
constexpr unsigned RecordIsOfOtherFamily = 8;
constexpr unsigned RecordTextHasNoEnd = 16;
unsigned RecordFaultsOf(const DatabaseFamily &family, std::span<const std::uint8_t> bytes);

// True for bytes that hold the fields of a record and begin with its magic.
bool IsDatabaseRecord(std::span<const std::uint8_t> bytes);
// The fields; nothing where the above is false. A text without its zero byte ends after 64
// characters.
std::optional<DatabaseFields> RecordFields(const DatabaseRecord &record);
std::optional<DatabaseFields> RecordFields(std::span<const std::uint8_t> bytes);
// Whether name or source holds the text (Latin-1), letters of either case being the same, those
// with accents too.
bool FieldsHold(const DatabaseFields &fields, std::string_view text);
// Bytes of a record by its own offset and sizes, and the family that it names; 0 for no record.
std::uint64_t RecordOwnSize(const DatabaseRecord &record);
DriverId RecordDriver(const DatabaseRecord &record);
// Change what a record says of its voice. Texts are Latin-1, of which at most 64 characters are
// taken, up to a zero byte. Nothing happens to what is no record.
void SetRecordName(DatabaseRecord &record, std::string_view name);
void SetRecordSource(DatabaseRecord &record, std::string_view source);
void SetRecordDate(DatabaseRecord &record, std::uint32_t date);
void SetRecordPosition(DatabaseRecord &record, std::uint32_t position);
// The voice, with the sizes, the place and the driver id that the record gives; no voice when the
// magic is wrong or the voice would not lie within the record.
VoiceObject RecordToVoice(const DatabaseRecord &record);

// A text for the catalogue's fields: each run of blanks becomes one blank, the letters small ones
// and the first character a capital one, which is none after a blank. ASCII letters only; at most
// 64 characters.
std::string MakePrettyName(std::string_view text);

// What a new record says of its voice.
struct NewDatabaseRecord {
    std::string_view name; // at most 64 characters of each text are taken, up to a zero byte
    std::string_view source;
    std::uint32_t position;
    std::uint32_t date;
};
// Whether a record of the family can hold the voice: it is a voice of that family, and as long as
// all of them are.
bool FitsDatabase(const DatabaseFamily &family, const VoiceObject &voice);
// The record of a voice; no bytes for a voice that it cannot hold.
DatabaseRecord MakeDatabaseRecord(const DatabaseFamily &family, const VoiceObject &voice,
                                  const NewDatabaseRecord &fields);

// Whether both are the same voice of the same name and source, letters of either case being the
// same. False for anything that is no record, or whose voice does not lie within it.
bool AreDuplicates(const DatabaseRecord &one, const DatabaseRecord &other);

} // namespace tonewright
