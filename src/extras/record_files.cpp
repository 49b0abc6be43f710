// Records one behind the other, each of the size that the header or the family says.
#include "extras/record_files.h"

#include "common/text.h"
#include "database/database_file.h"
#include "drivers/dx7/database.h"
#include "drivers/reface_dx/database.h"
#include "drivers/reface_dx/files.h"
#include "extras/dump_message.h"
#include "extras/voice_ranges.h"

#include <algorithm>
#include <array>
#include <optional>

namespace tonewright {
namespace {

using Bytes = std::span<const std::uint8_t>;

// What the records of a file are like.
struct Records {
    DumpKind kind = DumpKind::Catalogue;
    DriverId family = NoDriverId;
    std::size_t header = 0; // bytes
    std::uint64_t count = 0;
    std::uint64_t size = 0; // of each
};

std::optional<Records> RecordsOf(Bytes start) {
    if (const auto bank = RefaceHeaderOf(start, RefaceFileKind::Bank)) {
        return Records{DumpKind::RefaceBankFile, RefaceDriverId, RefaceFileHeaderSize,
                       bank->voiceCount, bank->recordSize};
    }
    if (const auto voice = RefaceHeaderOf(start, RefaceFileKind::SingleVoice)) {
        return Records{DumpKind::RefaceVoiceFile, RefaceDriverId, RefaceFileHeaderSize, 1,
                       voice->recordSize};
    }
    for (const DatabaseFamily *family : {&Dx7Database, &RefaceDatabase}) {
        if (HeaderFaultOf(family->id, start) == DatabaseHeaderFault::None) {
            return Records{DumpKind::Catalogue, family->id, DatabaseHeaderSize, HeaderCount(start),
                           DatabaseRecordSize(*family)};
        }
    }
    return std::nullopt;
}

// The voice in a record, its bytes in `room` where they do not stand one behind the other; nothing
// where a record is none.
using Room = std::array<std::uint8_t, RefaceCommonSize + RefaceOperatorsSize>;
std::optional<DumpVoice> VoiceOf(const Records &records, Bytes record, Room &room) {
    if (records.kind == DumpKind::Catalogue) {
        const bool isDx7 = records.family == Dx7DriverId;
        const DatabaseFamily &family = isDx7 ? Dx7Database : RefaceDatabase;
        if (RecordFaultsOf(family, record) & ~RecordTextHasNoEnd) {
            return std::nullopt;
        }
        const VoiceForm form = isDx7 ? VoiceForm::Dx7Stored : VoiceForm::Reface;
        return DumpVoice{form, record.subspan(DatabasePayloadOffset, SizeOfForm(form))};
    }
    const auto parts = PayloadOf(record);
    if (!parts || parts->payload.size() < RefaceCommonSize ||
        parts->extra.size() < RefaceOperatorsSize || HeaderOf(record)->driverId != RefaceDriverId) {
        return std::nullopt;
    }
    const auto behind = std::ranges::copy(parts->payload.first(RefaceCommonSize), room.begin()).out;
    std::ranges::copy(parts->extra.first(RefaceOperatorsSize), behind);
    return DumpVoice{VoiceForm::Reface, room};
}

// Where the bytes of the voice begin in its record.
std::size_t VoicePlace(const Records &records, Bytes record) {
    return records.kind == DumpKind::Catalogue
               ? DatabasePayloadOffset
               : static_cast<std::size_t>(PayloadOf(record)->payload.data() - record.data());
}

// False where the file ends before so many bytes.
bool Skip(DumpStream &stream, std::uint64_t size) {
    while (size > 0 && !LookAhead(stream).empty()) {
        const auto piece = std::min<std::uint64_t>(size, stream.bytes.size());
        MoveOn(stream, static_cast<std::size_t>(piece));
        size -= piece;
    }
    return size == 0;
}

} // namespace

void ReadRecordFile(DumpStream &stream, DumpOutput &output) {
    const auto records = RecordsOf(LookAhead(stream));
    if (!records) {
        return;
    }
    FoundDump dump;
    dump.kind = records->kind;
    dump.family = records->family;
    std::uint64_t others = 0;
    MoveOn(stream, records->header);
    for (std::uint64_t number = 0; number < records->count && !output.ended; ++number) {
        const Bytes bytes = LookAhead(stream);
        if (records->size == 0 || bytes.empty() || (stream.ends && bytes.size() < records->size)) {
            // The rest of the file is what there is of a record.
            dump.faults |= DumpFault::Cut;
            MoveOn(stream, records->size == 0 ? 0 : bytes.size());
            break;
        }
        if (bytes.size() < records->size) { // larger than all that can be looked at: no voice
            ++others;
            dump.faults |= Skip(stream, records->size) ? 0u : DumpFault::Cut;
            continue;
        }
        const Bytes record = bytes.first(static_cast<std::size_t>(records->size));
        Room room;
        if (const auto voice = VoiceOf(*records, record, room)) {
            ++dump.voices;
            if (!AreInRange(voice->form, voice->bytes, 1)) {
                dump.faults |= DumpFault::OutOfRange;
            }
            if (CountDataBytes(voice->bytes) < voice->bytes.size()) {
                dump.faults |= DumpFault::HighBytes;
            }
            PutVoice(output, *voice, OffsetOf(stream, VoicePlace(*records, record)));
        } else {
            ++others;
        }
        MoveOn(stream, record.size());
    }
    dump.length = stream.index;
    if (others > 0) {
        dump.detail = others == 1 ? "one record without a voice"
                                  : FormatText("%llu records without a voice",
                                               static_cast<unsigned long long>(others));
    }
    PutDump(output, std::move(dump));
}

} // namespace tonewright
