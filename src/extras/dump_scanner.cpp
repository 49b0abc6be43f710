// Message for message, and what stands between them.
#include "extras/dump_scanner.h"

#include "drivers/reface_dx/voice_codec.h"
#include "extras/dump_message.h"
#include "extras/hex_text.h"
#include "extras/voice_ranges.h"
#include "midi/sysex.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace tonewright {
namespace {

using Bytes = std::span<const std::uint8_t>;

// The parts of reface DX voices that follow each other.
struct RefaceRun {
    bool isOpen = false;
    FoundDump dump;
    std::array<std::uint8_t, RefaceCommonSize + RefaceOperatorsSize> voice = {};
    unsigned parts = 0;            // of the present voice, a bit for each
    std::uint64_t voiceOffset = 0; // where that begins
    bool hasBegun = false;
    bool hasHeader = false;
};
constexpr unsigned AllParts = (1u << (RefaceOperatorCount + 1)) - 1;

struct Scanner {
    DumpStream &stream;
    ScannedBytes what;
    DumpOutput &output;
    RefaceRun run = {};
    MessagePlace place = MessagePlace::Clean;
    bool isAmid = false;          // a stretch that is nothing goes on
    bool isText = false;          // and it is text
    std::uint64_t noneBefore = 0; // no message begins amid the bytes in front of this index
};

FoundDump DumpAt(const DumpStream &stream, DumpKind kind, std::size_t length) {
    FoundDump dump;
    dump.kind = kind;
    dump.offset = OffsetOf(stream, 0);
    dump.length = LengthInFile(stream, length);
    return dump;
}

// Where a byte of a message stands that has so many bytes in front of it from a place on, real-time
// bytes not counted.
std::size_t PlaceBehind(Bytes bytes, std::size_t place, std::size_t count) {
    while (count > 0 || IsRealTime(bytes[place])) {
        count -= !IsRealTime(bytes[place]);
        ++place;
    }
    return place;
}

// `bytes`: those in memory, or the present message without its real-time bytes.
void PutVoices(Scanner &scanner, VoiceForm form, Bytes bytes, std::size_t start,
               std::size_t voices) {
    if (!scanner.output.visitor.voice) {
        scanner.output.place += voices;
        return;
    }
    const Bytes file = scanner.stream.bytes;
    const bool hasRealTime = bytes.data() != file.data();
    const std::size_t size = SizeOfForm(form);
    std::size_t before = 0, place = 0; // of the last voice, in these bytes and in the file
    for (std::size_t at = start; at < start + voices * size && !scanner.output.ended; at += size) {
        place = hasRealTime ? PlaceBehind(file, place, at - before) : at;
        before = at;
        PutVoice(scanner.output, {form, bytes.subspan(at, size)}, OffsetOf(scanner.stream, place));
    }
}

Bytes BytesOf(const Scanner &scanner, const DumpMessage &message) {
    return message.withoutRealTime.empty() ? scanner.stream.bytes : Bytes(message.withoutRealTime);
}

// ---- voices of the reface DX

void EndVoice(RefaceRun &run) {
    if (run.hasBegun) { // and did not become whole
        run.dump.faults |= DumpFault::MissingBlocks;
    }
    run.parts = 0;
    run.hasBegun = run.hasHeader = false;
}

void EndRun(Scanner &scanner) {
    RefaceRun &run = scanner.run;
    if (run.isOpen) {
        EndVoice(run);
        run.isOpen = false;
        PutDump(scanner.output, run.dump);
    }
}

void BeginVoice(RefaceRun &run, std::uint64_t offset) {
    EndVoice(run);
    run.hasBegun = true;
    run.voiceOffset = offset;
}

void TakePart(Scanner &scanner, const DumpMessage &message) {
    RefaceRun &run = scanner.run;
    const std::uint64_t offset = OffsetOf(scanner.stream, 0);
    if (run.isOpen && run.dump.channel != message.channel) {
        EndRun(scanner);
    }
    if (!run.isOpen) {
        BeginDump(scanner.output, message.kind);
        run = {};
        run.isOpen = true;
        run.dump = DumpAt(scanner.stream, message.kind, message.length);
        run.dump.family = message.family;
        run.dump.channel = message.channel;
    }
    run.dump.length = offset + LengthInFile(scanner.stream, message.length) - run.dump.offset;
    run.dump.faults |= message.faults;
    if (message.part == RefacePart::Header) {
        BeginVoice(run, offset);
        run.hasHeader = true;
        return;
    }
    if (message.part == RefacePart::Footer) {
        EndVoice(run);
        return;
    }
    const bool isCommon = message.part == RefacePart::Common;
    const std::size_t size = isCommon ? RefaceCommonSize : RefaceOperatorSize;
    const std::size_t number = isCommon ? RefaceOperatorCount : message.operatorNumber;
    const unsigned bit = 1u << number;
    // The common block comes first where no header did.
    if (!run.hasBegun || (run.parts & bit) || (isCommon && !run.hasHeader)) {
        BeginVoice(run, offset);
    }
    if (!message.isWholePart) {
        return;
    }
    std::memcpy(run.voice.data() + (isCommon ? 0 : RefaceCommonSize + number * RefaceOperatorSize),
                BytesOf(scanner, message).data() + message.data, size);
    run.parts |= bit;
    if (run.parts == AllParts) {
        run.hasBegun = run.hasHeader = false;
        run.parts = 0;
        ++run.dump.voices;
        if (!AreInRange(VoiceForm::Reface, run.voice, 1)) {
            run.dump.faults |= DumpFault::OutOfRange;
        }
        PutVoice(scanner.output, {VoiceForm::Reface, run.voice}, run.voiceOffset);
    }
}

// ---- messages

void TakeMessage(Scanner &scanner, DumpMessage &message) {
    DumpStream &stream = scanner.stream;
    scanner.place = MessagePlace::Clean;
    scanner.isAmid = false;
    if (message.part != RefacePart::None) {
        TakePart(scanner, message);
        MoveOn(stream, message.length);
        return;
    }
    EndRun(scanner);
    BeginDump(scanner.output, message.kind);
    FoundDump dump = DumpAt(stream, message.kind, message.length);
    dump.family = message.family;
    dump.channel = message.channel;
    dump.voices = message.voices;
    dump.otherVoices = message.otherVoices;
    dump.faults = message.faults;
    dump.detail = std::move(message.detail);
    PutVoices(scanner, message.form, BytesOf(scanner, message), message.data, message.voices);
    MoveOn(stream, message.length);
    while (message.goesOn) {
        const Bytes bytes = LookAhead(stream);
        std::size_t more = CountDataBytes(bytes);
        message.goesOn = more == bytes.size() && !stream.ends;
        const bool hasEnd = more < bytes.size() && bytes[more] == EndOfSysex;
        if (!hasEnd && !message.goesOn) {
            dump.faults |= DumpFault::NoEnd;
        }
        more += hasEnd;
        if (more > 0) {
            dump.length = OffsetOf(stream, 0) + LengthInFile(stream, more) - dump.offset;
            MoveOn(stream, more);
        }
    }
    PutDump(scanner.output, std::move(dump));
}

// ---- what stands between them

// How many bytes of a bank's header that has lost its first ones, or of which F0 is another byte,
// stand in front of voices.
std::size_t RestOfHeader(Bytes bytes) {
    constexpr std::array<std::uint8_t, 6> header = {0xF0, 0x43, 0x00, 0x09, 0x20, 0x00};
    constexpr std::size_t shortest = 3, channelPlace = 2;
    for (std::size_t lost = 0; lost + shortest <= header.size(); ++lost) {
        const std::size_t size = header.size() - lost;
        bool fits = bytes.size() >= size;
        for (std::size_t at = std::max<std::size_t>(lost, 1); at < header.size() && fits; ++at) {
            const std::uint8_t byte = bytes[at - lost];
            fits = at == channelPlace ? byte < 0x10 : byte == header[at];
        }
        if (fits) {
            return size;
        }
    }
    return 0;
}

void PutUnknown(Scanner &scanner, std::size_t size) {
    BeginDump(scanner.output, DumpKind::Unknown);
    PutDump(scanner.output, DumpAt(scanner.stream, DumpKind::Unknown, size));
    MoveOn(scanner.stream, size);
}

// The checksum and the end of a bank, if they follow its voices.
std::size_t RestBehind(Bytes voices, Bytes behind) {
    constexpr std::size_t bank = Dx7VoicesPerBank * Dx7PackedVoiceSize;
    if (voices.size() != bank || behind.empty() || behind[0] != SysexChecksum(voices)) {
        return 0;
    }
    return behind.size() > 1 && behind[1] == EndOfSysex ? 2 : 0;
}

// Voices without a message in a stretch. `isAll`: it ends with these bytes.
bool TakeHeaderless(Scanner &scanner, Bytes stretch, bool isAll) {
    std::size_t start = RestOfHeader(stretch);
    HeaderlessVoices found = JudgeHeaderless(stretch.subspan(start), isAll);
    if (found.voices == 0 && start > 0) {
        start = 0;
        found = JudgeHeaderless(stretch, isAll);
    }
    // What is in doubt may be voices that are looked at beside their place.
    constexpr int sure = 90;
    const std::size_t others =
        found.voices == 0 || found.confidence < sure ? FindHeaderless(stretch) : 0;
    if (others > 0) {
        const HeaderlessVoices behind = JudgeHeaderless(stretch.subspan(others), isAll);
        // By whole voices they are not beside it.
        const std::size_t size = SizeOfForm(found.form);
        const bool isBeside = found.voices == 0 || others % size != (start + found.start) % size;
        if (behind.voices > 0 && isBeside) {
            PutUnknown(scanner, others);
            stretch = stretch.subspan(others);
            start = 0;
            found = behind;
        }
    }
    if (found.voices == 0) {
        return false;
    }
    const DumpKind kind = found.form == VoiceForm::Dx7Packed ? DumpKind::Dx7Headerless
                                                             : DumpKind::Dx7HeaderlessVoices;
    if (found.start > 0) { // then the header is none
        PutUnknown(scanner, start + found.start);
        stretch = stretch.subspan(start + found.start);
        start = 0;
    }
    const std::size_t size = found.voices * SizeOfForm(found.form);
    const Bytes voices = stretch.subspan(start, size);
    const std::size_t length = start + size + RestBehind(voices, stretch.subspan(start + size));
    BeginDump(scanner.output, kind);
    FoundDump dump = DumpAt(scanner.stream, kind, length);
    dump.family = Dx7DriverId;
    dump.voices = found.voices;
    dump.confidence = found.confidence;
    dump.faults = DumpFault::NoHeader;
    if (!found.inRange) {
        dump.faults |= DumpFault::OutOfRange;
    }
    if (CountDataBytes(voices) < voices.size()) {
        dump.faults |= DumpFault::HighBytes;
    }
    PutVoices(scanner, found.form, scanner.stream.bytes, start, found.voices);
    MoveOn(scanner.stream, length);
    PutDump(scanner.output, std::move(dump));
    return true;
}

void TakeUnknown(Scanner &scanner, std::size_t size) {
    if (scanner.what == ScannedBytes::Events) {
        MoveOn(scanner.stream, size);
    } else {
        PutUnknown(scanner, size);
    }
    scanner.isAmid = true;
    scanner.place = MessagePlace::Amid;
}

// What is written in a text from a message's digits on.
void TakeHexText(Scanner &scanner, const HexMessage &message) {
    DumpOutput &output = scanner.output;
    if (message.front > 0) {
        TakeUnknown(scanner, message.front);
    }
    EndDumps(output);
    output.faults |= DumpFault::InHexText;
    ReadHexText(scanner.stream, {.front = 0, .digits = message.digits - message.front},
                [&output](DumpStream &bytes) { ScanDumps(bytes, ScannedBytes::Digits, output); });
    EndDumps(output);
    output.faults &= ~std::uint32_t{DumpFault::InHexText};
    scanner.isAmid = false;
    scanner.place = MessagePlace::Clean;
}

// What stands between two messages, or its start. `isAll`: it ends with these bytes.
void TakeStretch(Scanner &scanner, std::size_t size, bool isAll) {
    constexpr std::size_t judged = 256; // characters
    EndRun(scanner);
    if (scanner.what == ScannedBytes::Plain) {
        const Bytes bytes = scanner.stream.bytes;
        if (!scanner.isAmid) {
            scanner.isText = IsText(bytes.first(std::min(size, judged)));
        }
        if (!scanner.isAmid && !scanner.isText &&
            TakeHeaderless(scanner, bytes.first(size), isAll)) {
            return;
        }
        if (scanner.isText) {
            if (const auto message = FindHexMessage(bytes, size)) {
                TakeHexText(scanner, *message);
                return;
            }
        }
    }
    TakeUnknown(scanner, size);
}

// Where the next message begins behind the place, or `limit`. What has been looked at once is not
// looked at again.
std::size_t FindAmid(Scanner &scanner, std::size_t limit, std::optional<DumpMessage> &message) {
    const DumpStream &stream = scanner.stream;
    const Bytes bytes = stream.bytes;
    std::size_t at = 1;
    if (scanner.noneBefore > stream.index + at) {
        at = static_cast<std::size_t>(
            std::min<std::uint64_t>(scanner.noneBefore - stream.index, limit));
    }
    while (at < limit && !message) {
        const void *found = std::memchr(&bytes[at], StartOfSysex, limit - at);
        if (!found) {
            at = limit;
            break;
        }
        at = static_cast<std::size_t>(static_cast<const std::uint8_t *>(found) - bytes.data());
        message = MessageAt(bytes.subspan(at), stream.ends, MessagePlace::Amid);
        at += !message;
    }
    scanner.noneBefore = std::max(scanner.noneBefore, stream.index + at);
    return at;
}

} // namespace

void ScanDumps(DumpStream &stream, ScannedBytes what, DumpOutput &output) {
    Scanner scanner{stream, what, output};
    while (!output.ended) {
        const Bytes bytes = LookAhead(stream);
        if (bytes.empty()) {
            break;
        }
        // Of what is not there whole no more than its start is looked at.
        std::size_t limit = stream.ends ? bytes.size() : bytes.size() - DumpLookAhead;
        if (!scanner.isAmid) {
            limit = std::min(limit, DumpLookAhead);
        }
        std::optional<DumpMessage> message;
        std::size_t at = 0;
        if (bytes[0] == StartOfSysex) {
            message = MessageAt(bytes, stream.ends, scanner.place);
        }
        if (!message) {
            at = FindAmid(scanner, std::max<std::size_t>(limit, 1), message);
        }
        if (at > 0) {
            TakeStretch(scanner, at, message || (stream.ends && at == bytes.size()));
        } else {
            TakeMessage(scanner, *message);
        }
    }
    EndRun(scanner);
}

} // namespace tonewright
