// Walks through chunks and events.
#include "extras/midi_file_reader.h"

#include "extras/dump_scanner.h"
#include "midi/sysex.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string_view>

namespace tonewright {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::string_view HeaderId = "MThd", TrackId = "MTrk";
constexpr std::size_t ChunkHeader = 8; // id and length
constexpr std::size_t RiffHeader = 12; // "RIFF", length, "RMID"

bool HasText(Bytes bytes, std::size_t at, std::string_view text) {
    return bytes.size() >= at + text.size() &&
           std::equal(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

bool HasChunk(Bytes bytes, std::size_t at, std::string_view id) {
    return HasText(bytes, at, id) && bytes.size() >= at + ChunkHeader;
}

// Where the data of a RIFF file begin, behind other chunks of it, whose lengths have their low byte
// first; where none are, the end of what is looked at.
std::size_t DataOfRiff(Bytes bytes) {
    std::size_t at = RiffHeader;
    while (at + ChunkHeader <= bytes.size() && !HasText(bytes, at, "data")) {
        const std::size_t length = std::size_t{bytes[at + 4]} | std::size_t{bytes[at + 5]} << 8 |
                                   std::size_t{bytes[at + 6]} << 16;
        at += ChunkHeader + length + length % 2;
    }
    return std::min(at + ChunkHeader, bytes.size());
}

// Where the MIDI file begins in a file; nothing for no MIDI file.
std::optional<std::size_t> StartOfMidi(Bytes bytes) {
    if (HasChunk(bytes, 0, HeaderId) || HasChunk(bytes, 0, TrackId)) {
        return 0;
    }
    if (HasText(bytes, 0, "RIFF") && HasText(bytes, 8, "RMID")) {
        const std::size_t data = DataOfRiff(bytes);
        return HasChunk(bytes, data, HeaderId) ? std::optional(data) : std::nullopt;
    }
    // Behind a few bytes of something else, in which no message begins.
    constexpr std::array<std::uint8_t, ChunkHeader> header = {'M', 'T', 'h', 'd', 0, 0, 0, 6};
    constexpr std::size_t farthest = 1024;
    const Bytes front = bytes.first(std::min(bytes.size(), farthest));
    const auto found = std::search(front.begin(), front.end(), header.begin(), header.end());
    if (found == front.end() || std::find(front.begin(), found, StartOfSysex) != found) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - front.begin());
}

struct Chunk {
    bool isTrack = false;
    std::uint32_t length = 0;
};

// What a chunk's first eight bytes say; nothing where none begins.
std::optional<Chunk> ChunkAt(Bytes bytes) {
    if (bytes.size() < ChunkHeader || !std::ranges::all_of(bytes.first(4), [](std::uint8_t letter) {
            return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z') ||
                   letter == ' ';
        })) {
        return std::nullopt;
    }
    return Chunk{HasText(bytes, 0, TrackId), std::uint32_t{bytes[4]} << 24 |
                                                 std::uint32_t{bytes[5]} << 16 |
                                                 std::uint32_t{bytes[6]} << 8 | bytes[7]};
}

// The events of a track, of which the messages' bytes are taken.
struct Track {
    DumpStream &file;
    std::uint64_t left = 0;        // bytes of the chunk
    std::uint64_t messageLeft = 0; // bytes of the event that belong to a message
    std::uint8_t status = 0;       // for events that leave theirs out; 0: there is none
    bool isLost = false;           // what follows are no events, up to the next message
    bool isLonger = false;         // than its chunk says
    bool ends = false;
    DecodedBytes decoded;
};

void Skip(Track &track, std::uint64_t size) {
    size = std::min(size, track.left);
    track.left -= size;
    while (size > 0) {
        const std::size_t there = static_cast<std::size_t>(
            std::min<std::uint64_t>(LookAhead(track.file, 1).size(), size));
        if (there == 0) { // the file ends before the chunk
            track.left = 0;
            return;
        }
        MoveOn(track.file, there);
        size -= there;
    }
}

std::optional<std::uint8_t> NextByte(Track &track) {
    if (track.left == 0 || LookAhead(track.file, 1).empty()) {
        track.left = 0;
        return std::nullopt;
    }
    const std::uint8_t byte = track.file.bytes[0];
    MoveOn(track.file, 1);
    --track.left;
    return byte;
}

// A number of seven bits a byte, of four bytes at most.
std::optional<std::uint32_t> NextNumber(Track &track) {
    constexpr int mostBytes = 4;
    constexpr std::uint8_t goesOn = 0x80;
    std::uint32_t number = 0;
    for (int count = 0; count < mostBytes; ++count) {
        const auto byte = NextByte(track);
        if (!byte) {
            return std::nullopt;
        }
        number = number << 7 | (*byte & 0x7Fu);
        if (!(*byte & goesOn)) {
            return number;
        }
    }
    return std::nullopt;
}

// Bytes of data behind a status that is none of a message.
std::size_t DataBytesOf(std::uint8_t status) {
    switch (status & 0xF0) {
    case 0xC0:
    case 0xD0:
        return 1;
    case 0xF0:
        return status == 0xF2 ? 2 : status == 0xF1 || status == 0xF3 ? 1 : 0;
    default:
        return 2;
    }
}

// Reads the start of a message or of its next part, behind the status. False where none follows.
bool BeginMessage(Track &track, std::uint8_t status, std::uint64_t offset) {
    const auto length = NextNumber(track);
    if (!length) {
        return false;
    }
    if (status == StartOfSysex) {
        AddBytes(track.decoded, {&StartOfSysex, 1}, offset);
    }
    track.messageLeft = *length;
    return true;
}

enum class Event {
    Read,
    EndOfTrack,
    None, // what follows is no event
};

// Reads an event up to the bytes of a message, if it has some.
Event ReadEvent(Track &track) {
    constexpr std::uint8_t meta = 0xFF, endOfTrack = 0x2F, firstStatus = 0x80, firstSystem = 0xF0;
    if (!NextNumber(track)) {
        return Event::None;
    }
    const std::uint64_t offset = OffsetOf(track.file, 0);
    const auto first = NextByte(track);
    if (!first || (*first < firstStatus && track.status == 0)) {
        return Event::None;
    }
    if (*first < firstStatus) {
        Skip(track, DataBytesOf(track.status) - 1);
        return Event::Read;
    }
    if (*first == StartOfSysex || *first == EndOfSysex) {
        return BeginMessage(track, *first, offset) ? Event::Read : Event::None;
    }
    if (*first == meta) {
        const auto type = NextByte(track);
        const auto length = NextNumber(track);
        if (!type || !length || *length > track.left) {
            return Event::None;
        }
        Skip(track, *length);
        return *type == endOfTrack ? Event::EndOfTrack : Event::Read;
    }
    Skip(track, DataBytesOf(*first));
    track.status = *first < firstSystem ? *first : 0;
    return Event::Read;
}

// The same; of what is no event nothing is taken.
Event NextEvent(Track &track) {
    constexpr std::size_t longest = 16; // that an event is known by
    const Bytes bytes = LookAhead(track.file, longest);
    const std::uint64_t index = track.file.index, left = track.left;
    const Event event = ReadEvent(track);
    if (event == Event::None) {
        track.file.bytes = bytes;
        track.file.index = index;
        track.left = left;
    }
    return event;
}

// Whether F0 of an FM instrument's message and its length are what bytes begin with.
bool IsStartOfMessage(Bytes bytes) {
    constexpr std::size_t mostBytes = 4;
    constexpr std::uint8_t yamaha = 0x43, goesOn = 0x80;
    std::size_t at = 1;
    while (at < bytes.size() && at < mostBytes && bytes[at] >= goesOn) {
        ++at;
    }
    return at + 1 < bytes.size() && bytes[0] == StartOfSysex && bytes[at] < goesOn &&
           bytes[at + 1] == yamaha;
}

// Moves on to the next message of an FM instrument, whatever stands in front of it, and reads its
// start. False where there is none.
bool FindMessage(Track &track) {
    constexpr std::size_t longest = 6; // of the start of a message
    while (track.left > 0) {
        const Bytes there = LookAhead(track.file, longest);
        const Bytes bytes = there.first(
            static_cast<std::size_t>(std::min<std::uint64_t>(there.size(), track.left)));
        if (bytes.empty()) {
            return false;
        }
        if (IsStartOfMessage(bytes)) {
            const std::uint64_t offset = OffsetOf(track.file, 0);
            Skip(track, 1);
            return BeginMessage(track, StartOfSysex, offset);
        }
        const auto next = std::find(bytes.begin() + 1, bytes.end(), StartOfSysex);
        Skip(track, static_cast<std::uint64_t>(next - bytes.begin()));
    }
    return false;
}

// A chunk that ends within a message has a wrong length, unless the next one or nothing follows.
bool IsLonger(Track &track) {
    if (track.isLonger || LookAhead(track.file, ChunkHeader).empty() || ChunkAt(track.file.bytes)) {
        return false;
    }
    track.isLonger = true;
    track.left = std::numeric_limits<std::uint64_t>::max();
    return true;
}

// Reads on to the bytes of a message, which `messageLeft` counts, or to the end.
void ReadOn(Track &track) {
    if (track.isLost) {
        track.isLost = false;
        track.ends = !FindMessage(track);
        return;
    }
    switch (NextEvent(track)) {
    case Event::Read:
        break;
    case Event::EndOfTrack:
        if (const auto chunk = ChunkAt(LookAhead(track.file, ChunkHeader));
            track.isLonger || (chunk && chunk->isTrack)) {
            track.left = 0;
        }
        track.ends = track.left == 0;
        track.isLost = true;
        break;
    case Event::None:
        track.ends = track.left == 0;
        track.isLost = true;
        break;
    }
}

void ReadMore(Track &track, DumpStream &stream, std::size_t wanted) {
    ForgetUsed(track.decoded, stream);
    wanted = std::max(wanted, DecodedAtOnce);
    while (track.decoded.bytes.size() < wanted && !track.ends) {
        if (track.messageLeft == 0) {
            ReadOn(track);
            continue;
        }
        if (track.left == 0 && !IsLonger(track)) {
            track.ends = true;
            break;
        }
        const Bytes bytes = LookAhead(track.file, 1);
        const std::size_t size = static_cast<std::size_t>(
            std::min<std::uint64_t>({bytes.size(), track.messageLeft, track.left, DumpLookAhead}));
        if (size == 0) {
            track.ends = true;
            break;
        }
        AddBytes(track.decoded, bytes.first(size), OffsetOf(track.file, 0));
        Skip(track, size);
        track.messageLeft -= size;
    }
    stream.ends = track.ends;
    ShowBytes(track.decoded, stream);
}

// Finds the dumps in a track, and leaves what is behind its chunk.
void ReadTrack(DumpStream &file, std::uint64_t length, DumpOutput &output) {
    Track track{.file = file, .left = length, .decoded = {}};
    DumpStream events;
    events.ends = false;
    events.more = [&track](DumpStream &stream, std::size_t wanted) {
        ReadMore(track, stream, wanted);
    };
    ScanDumps(events, ScannedBytes::Events, output);
    EndDumps(output);
    Skip(track, track.left);
}

} // namespace

void ReadMidiFile(DumpStream &stream, DumpOutput &output) {
    const auto start = StartOfMidi(LookAhead(stream));
    if (!start) {
        return;
    }
    const std::uint64_t offset = OffsetOf(stream, 0);
    MoveOn(stream, *start);
    output.faults |= DumpFault::InMidiFile;
    const std::uint64_t dumps = output.dumps;
    while (const auto chunk = ChunkAt(LookAhead(stream, ChunkHeader))) {
        MoveOn(stream, ChunkHeader);
        if (chunk->isTrack) {
            ReadTrack(stream, chunk->length, output);
        } else {
            Track other{.file = stream, .left = chunk->length, .decoded = {}};
            Skip(other, other.left);
        }
        if (output.ended) {
            return;
        }
    }
    if (output.dumps == dumps) {
        FoundDump dump;
        dump.offset = offset;
        dump.length = OffsetOf(stream, 0) - offset;
        dump.detail = "MIDI file";
        PutDump(output, dump);
    }
    output.faults &= ~std::uint32_t{DumpFault::InMidiFile};
    EndDumps(output);
}

} // namespace tonewright
