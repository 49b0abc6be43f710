// Records of catalogues as bytes.
#include "database/database_record.h"

#include "common/text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <zlib.h>

namespace tonewright {
namespace {

// Offsets in a record.
constexpr std::size_t Magic = 0;
constexpr std::size_t Driver = 4;
constexpr std::size_t Date = 8;
constexpr std::size_t FirstDate = 12;
constexpr std::size_t PayloadOffset = 16;
constexpr std::size_t PayloadSizeA = 20;
constexpr std::size_t PayloadSizeB = 24;
constexpr std::size_t Name = 28;
constexpr std::size_t Source = 93;
constexpr std::size_t Position = 158;
static_assert(Source == Name + DatabaseTextSize + 1 && Position == Source + DatabaseTextSize + 1);

std::string_view TextAt(std::span<const std::uint8_t> bytes, std::size_t offset) {
    const auto *text = reinterpret_cast<const char *>(&bytes[offset]);
    const void *end = std::memchr(text, '\0', DatabaseTextSize);
    return {text, end ? static_cast<const char *>(end) : text + DatabaseTextSize};
}

void PutText(std::span<std::uint8_t> bytes, std::size_t offset, std::string_view text) {
    text = text.substr(0, std::min(text.find('\0'), DatabaseTextSize));
    const auto field = bytes.subspan(offset, DatabaseTextSize + 1);
    std::ranges::fill(std::ranges::copy(text, field.begin()).out, field.end(), 0);
}

// The letters of Latin-1 as small ones; any other byte as it is.
constexpr std::array<unsigned char, 256> SmallLetters = [] {
    constexpr std::size_t FirstAccent = 0xC0, LastAccent = 0xDE, Times = 0xD7, ToSmall = 0x20;
    std::array<unsigned char, 256> table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte) {
        const bool isCapital = (byte >= 'A' && byte <= 'Z') ||
                               (byte >= FirstAccent && byte <= LastAccent && byte != Times);
        table[byte] = static_cast<unsigned char>(isCapital ? byte + ToSmall : byte);
    }
    return table;
}();

bool IsSameLetter(char one, char other) {
    return SmallLetters[static_cast<unsigned char>(one)] ==
           SmallLetters[static_cast<unsigned char>(other)];
}

bool HoldsText(std::string_view field, std::string_view text) {
    for (std::size_t at = 0; at + text.size() <= field.size(); ++at) {
        std::size_t same = 0;
        while (same < text.size() && IsSameLetter(field[at + same], text[same])) {
            ++same;
        }
        if (same == text.size()) {
            return true;
        }
    }
    return false;
}

// The bytes of a record from `offset` on that its two sizes say are a voice's; nothing when they do
// not lie within it.
struct Payloads {
    std::span<const std::uint8_t> a, b;
};
std::optional<Payloads> PayloadsAt(std::span<const std::uint8_t> bytes, std::uint64_t offset) {
    const std::uint64_t a = ReadLittle32(bytes, PayloadSizeA);
    const std::uint64_t b = ReadLittle32(bytes, PayloadSizeB);
    if (offset + a + b > bytes.size()) {
        return std::nullopt;
    }
    return Payloads{bytes.subspan(offset, a), bytes.subspan(offset + a, b)};
}

// The voice that a record itself says that it has.
std::optional<Payloads> OwnPayloadsOf(std::span<const std::uint8_t> bytes) {
    return PayloadsAt(bytes, ReadLittle32(bytes, PayloadOffset));
}

// What records are compared by: as long as the voice, at the usual place. Nothing when the voice
// does not lie within its record.
std::optional<Payloads> ComparedOf(std::span<const std::uint8_t> bytes) {
    return OwnPayloadsOf(bytes) ? PayloadsAt(bytes, DatabasePayloadOffset) : std::nullopt;
}

// The checksum of what both bring, one behind the other.
std::uint32_t ChecksumOf(const Payloads &payloads) {
    uLong sum = crc32(0, nullptr, 0);
    for (const auto part : {payloads.a, payloads.b}) {
        sum = crc32(sum, part.data(), static_cast<uInt>(part.size()));
    }
    return static_cast<std::uint32_t>(sum);
}

} // namespace

unsigned RecordFaultsOf(const DatabaseFamily &family, std::span<const std::uint8_t> bytes) {
    if (bytes.size() < DatabaseRecordSize(family)) {
        return RecordIsShort;
    }
    if (!IsDatabaseRecord(bytes)) {
        return RecordHasNoMagic;
    }
    unsigned faults = 0;
    if (ReadLittle32(bytes, PayloadOffset) != DatabasePayloadOffset ||
        ReadLittle32(bytes, PayloadSizeA) != family.payloadSize ||
        ReadLittle32(bytes, PayloadSizeB) != family.extraSize) {
        faults |= RecordHasOtherSizes;
    }
    if (ReadLittle32(bytes, Driver) != family.id) {
        faults |= RecordIsOfOtherFamily;
    }
    for (const std::size_t offset : {Name, Source}) {
        const auto field = bytes.subspan(offset, DatabaseTextSize + 1);
        if (std::ranges::find(field, 0) == field.end()) {
            faults |= RecordTextHasNoEnd;
        }
    }
    return faults;
}

bool IsDatabaseRecord(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= DatabasePayloadOffset &&
           ReadLittle32(bytes, Magic) == DatabaseRecordMagic;
}

std::optional<DatabaseFields> RecordFields(const DatabaseRecord &record) {
    return RecordFields(std::span(record.bytes));
}

std::optional<DatabaseFields> RecordFields(std::span<const std::uint8_t> bytes) {
    if (!IsDatabaseRecord(bytes)) {
        return std::nullopt;
    }
    return DatabaseFields{.name = TextAt(bytes, Name),
                          .source = TextAt(bytes, Source),
                          .position = ReadLittle32(bytes, Position),
                          .date = ReadLittle32(bytes, Date)};
}

bool FieldsHold(const DatabaseFields &fields, std::string_view text) {
    return HoldsText(fields.name, text) || HoldsText(fields.source, text);
}

std::uint64_t RecordOwnSize(const DatabaseRecord &record) {
    const auto &bytes = record.bytes;
    return IsDatabaseRecord(bytes)
               ? std::uint64_t{ReadLittle32(bytes, PayloadOffset)} +
                     ReadLittle32(bytes, PayloadSizeA) + ReadLittle32(bytes, PayloadSizeB)
               : 0;
}

DriverId RecordDriver(const DatabaseRecord &record) {
    return IsDatabaseRecord(record.bytes) ? ReadLittle32(record.bytes, Driver) : 0;
}

void SetRecordName(DatabaseRecord &record, std::string_view name) {
    if (IsDatabaseRecord(record.bytes)) {
        PutText(record.bytes, Name, name);
    }
}

void SetRecordSource(DatabaseRecord &record, std::string_view source) {
    if (IsDatabaseRecord(record.bytes)) {
        PutText(record.bytes, Source, source);
    }
}

void SetRecordDate(DatabaseRecord &record, std::uint32_t date) {
    if (IsDatabaseRecord(record.bytes)) {
        WriteLittle32(record.bytes, Date, date);
    }
}

void SetRecordPosition(DatabaseRecord &record, std::uint32_t position) {
    if (IsDatabaseRecord(record.bytes)) {
        WriteLittle32(record.bytes, Position, position);
    }
}

VoiceObject RecordToVoice(const DatabaseRecord &record) {
    if (!IsDatabaseRecord(record.bytes)) {
        return {};
    }
    const auto payloads = OwnPayloadsOf(record.bytes);
    return payloads ? MakeVoiceObject(ReadLittle32(record.bytes, Driver), payloads->a, payloads->b)
                    : VoiceObject{};
}

std::string MakePrettyName(std::string_view text) {
    std::string pretty;
    for (const char character : text.substr(0, DatabaseTextSize)) {
        if (character != ' ' || !pretty.ends_with(' ')) {
            pretty += LowerAscii(character);
        }
    }
    if (!pretty.empty() && pretty[0] >= 'a' && pretty[0] <= 'z') {
        pretty[0] = static_cast<char>(pretty[0] - 'a' + 'A');
    }
    return pretty;
}

bool FitsDatabase(const DatabaseFamily &family, const VoiceObject &voice) {
    const auto parts = PayloadOf(voice);
    return parts && HeaderOf(voice)->driverId == family.id &&
           parts->payload.size() == family.payloadSize && parts->extra.size() == family.extraSize;
}

DatabaseRecord MakeDatabaseRecord(const DatabaseFamily &family, const VoiceObject &voice,
                                  const NewDatabaseRecord &fields) {
    if (!FitsDatabase(family, voice)) {
        return {};
    }
    const auto parts = PayloadOf(voice);
    DatabaseRecord record;
    record.bytes.resize(DatabaseRecordSize(family));
    WriteLittle32(record.bytes, Magic, DatabaseRecordMagic);
    WriteLittle32(record.bytes, Driver, family.id);
    WriteLittle32(record.bytes, Date, fields.date);
    WriteLittle32(record.bytes, FirstDate, fields.date);
    WriteLittle32(record.bytes, PayloadOffset, DatabasePayloadOffset);
    WriteLittle32(record.bytes, PayloadSizeA, static_cast<std::uint32_t>(family.payloadSize));
    WriteLittle32(record.bytes, PayloadSizeB, static_cast<std::uint32_t>(family.extraSize));
    PutText(record.bytes, Name, fields.name);
    PutText(record.bytes, Source, fields.source);
    WriteLittle32(record.bytes, Position, fields.position);
    std::ranges::copy(parts->payload, record.bytes.begin() + DatabasePayloadOffset);
    std::ranges::copy(parts->extra,
                      record.bytes.end() - static_cast<std::ptrdiff_t>(family.extraSize));
    return record;
}

bool AreDuplicates(const DatabaseRecord &one, const DatabaseRecord &other) {
    const auto fields = RecordFields(one), otherFields = RecordFields(other);
    if (!fields || !otherFields || !EqualNoCase(fields->name, otherFields->name) ||
        !EqualNoCase(fields->source, otherFields->source)) {
        return false;
    }
    const auto voice = ComparedOf(one.bytes), otherVoice = ComparedOf(other.bytes);
    return voice && otherVoice && ChecksumOf(*voice) == ChecksumOf(*otherVoice);
}

} // namespace tonewright
