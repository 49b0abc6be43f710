// Walks through chunks and events.
#include "extras/midi_file_reader.h"

#include "extras/dump_scanner.h"
#include "midi/sysex.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace tonewright {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::string_view HeaderId = "MThd", TrackId = "MTrk";
constexpr std::size_t ChunkHeader = 8; // id and length
constexpr std::size_t RiffHeader = 20; // "RIFF", length, "RMID", "data", length
constexpr std::size_t OtherHeader = 128;

bool HasText(Bytes bytes, std::size_t at, std::string_view text) {
    return bytes.size() >= at + text.size() &&
           std::equal(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

bool HasChunk(Bytes bytes, std::size_t at, std::string_view id) {
    return HasText(bytes, at, id) && bytes.size() >= at + ChunkHeader;
}

// Where the MIDI file begins in a file; nothing for no MIDI file.
std::optional<std::size_t> StartOfMidi(Bytes bytes) {
    if (HasChunk(bytes, 0, HeaderId) || HasChunk(bytes, 0, TrackId)) {
        return 0;
    }
    if (HasText(bytes, 0, "RIFF") && HasText(bytes, 8, "RMID") &&
        HasChunk(bytes, RiffHeader, HeaderId)) {
        return RiffHeader;
    }
    if (HasChunk(bytes, OtherHeader, HeaderId) && bytes[0] == 0) {
        return OtherHeader;
    }
    return std::nullopt;
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

// Reads an event up to the bytes of a message, if it has some. False at the end of the track, and
// where what follows is no event.
bool NextEvent(Track &track) {
    constexpr std::uint8_t meta = 0xFF, endOfTrack = 0x2F, firstStatus = 0x80, firstSystem = 0xF0;
    if (!NextNumber(track)) {
        return false;
    }
    const std::uint64_t offset = OffsetOf(track.file, 0);
    const auto first = NextByte(track);
    if (!first) {
        return false;
    }
    if (*first < firstStatus) {
        if (track.status == 0) {
            return false;
        }
        Skip(track, DataBytesOf(track.status) - 1);
        return true;
    }
    if (*first == StartOfSysex || *first == EndOfSysex) {
        const auto length = NextNumber(track);
        if (!length) {
            return false;
        }
        if (*first == StartOfSysex) {
            AddBytes(track.decoded, {&StartOfSysex, 1}, offset);
        }
        track.messageLeft = std::min<std::uint64_t>(*length, track.left);
        return true;
    }
    if (*first == meta) {
        const auto type = NextByte(track);
        const auto length = NextNumber(track);
        if (!type || !length || *type == endOfTrack) {
            return false;
        }
        Skip(track, *length);
        return true;
    }
    Skip(track, DataBytesOf(*first));
    track.status = *first < firstSystem ? *first : 0;
    return true;
}

void ReadMore(Track &track, DumpStream &stream, std::size_t wanted) {
    ForgetUsed(track.decoded, stream);
    wanted = std::max(wanted, DecodedAtOnce);
    while (track.decoded.bytes.size() < wanted && !track.ends) {
        if (track.messageLeft == 0) {
            track.ends = !NextEvent(track);
            continue;
        }
        const Bytes bytes = LookAhead(track.file, 1);
        const std::size_t size =
            static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), track.messageLeft));
        if (size == 0) {
            track.ends = true;
            break;
        }
        const std::size_t piece = std::min(size, DumpLookAhead);
        AddBytes(track.decoded, bytes.first(piece), OffsetOf(track.file, 0));
        Skip(track, piece);
        track.messageLeft -= piece;
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
        dump.length = stream.index;
        dump.detail = "MIDI file";
        PutDump(output, dump);
    }
    output.faults &= ~std::uint32_t{DumpFault::InMidiFile};
    EndDumps(output);
}

} // namespace tonewright
