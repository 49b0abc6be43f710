// Files that are put together at random, of which it is known what is in them: what is found must
// be exactly that, in plain bytes, in MIDI files and in texts.
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "extras/dump_output.h"
#include "extras/dump_reader.h"
#include "extras/dump_scanner.h"
#include "support/dump_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace tonewright {
namespace {

using Bytes = DumpBytes;
namespace Fault = DumpFault;

using Random = std::mt19937;

int Below(Random &random, int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
}
bool OneIn(Random &random, int number) {
    return Below(random, number) == 0;
}
std::uint8_t Byte(int value) {
    return static_cast<std::uint8_t>(value);
}

// ---- voices, every value in its range

struct KnownVoice {
    KeptVoice voice;
    std::size_t offset = 0;
    bool operator==(const KnownVoice &) const = default;
};

Bytes RandomName(Random &random) {
    Bytes name;
    for (int letter = 0; letter < 10; ++letter) {
        name.push_back(Byte('A' + Below(random, 26)));
    }
    return name;
}

Bytes RandomPacked(Random &random) {
    Bytes voice;
    const auto add = [&](int largest) { voice.push_back(Byte(Below(random, largest + 1))); };
    for (int block = 0; block < 6; ++block) {
        for (int at = 0; at < 11; ++at) {
            add(99);
        }
        add(15);
        voice.push_back(Byte(Below(random, 8) | Below(random, 15) << 3));
        add(31);
        add(99);
        add(63);
        add(99);
    }
    for (int at = 0; at < 8; ++at) {
        add(99);
    }
    add(31);
    add(15);
    for (int at = 0; at < 4; ++at) {
        add(99);
    }
    voice.push_back(Byte(Below(random, 2) | Below(random, 6) << 1 | Below(random, 8) << 4));
    add(48);
    return Join({voice, RandomName(random)});
}

Bytes RandomUnpacked(Random &random, bool isStored) {
    constexpr int block[] = {99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
                             3,  3,  7,  3,  7,  99, 1,  31, 99, 14};
    constexpr int common[] = {99, 99, 99, 99, 99, 99, 99, 99, 31, 7,
                              1,  99, 99, 99, 99, 1,  5,  7,  48};
    Bytes voice;
    for (int number = 0; number < 6; ++number) {
        for (const int largest : block) {
            voice.push_back(Byte(Below(random, largest + 1)));
        }
    }
    for (const int largest : common) {
        voice.push_back(Byte(Below(random, largest + 1)));
    }
    voice += RandomName(random);
    if (isStored) {
        voice.push_back(Byte(Below(random, 64)));
    }
    return voice;
}

// ---- pieces

// Where a piece may stand, by what it leaves open.
enum class Behind {
    Anything,
    HighOrMessage, // a message, a byte above 7F or the end: there is no end byte
    Message,       // a message or the end
};

struct Piece {
    Bytes bytes;
    FoundDump dump; // its offset is 0
    std::vector<KnownVoice> voices;
    Behind behind = Behind::Anything;
    bool isMessage = true;
    bool beginsAnywhere = true; // false: only behind a message, which its start may be taken for
};

FoundDump Known(DumpKind kind, DriverId family, int channel, std::size_t voices,
                std::uint32_t faults = 0, const std::string &detail = "") {
    FoundDump dump;
    dump.kind = kind;
    dump.family = family;
    dump.channel = channel;
    dump.voices = voices;
    dump.faults = faults;
    dump.detail = detail;
    return dump;
}

// Puts some fault into a message with `header` bytes in front of its data, which are voices of
// `size` bytes each, and says what is wrong then.
void Spoil(Random &random, Piece &piece, std::size_t size) {
    constexpr std::size_t header = 6;
    Bytes &bytes = piece.bytes;
    std::uint32_t &faults = piece.dump.faults;
    const std::size_t sum = bytes.size() - 2;
    switch (Below(random, 11)) {
    case 7: { // real-time bytes, behind the header
        const std::size_t at = header + static_cast<std::size_t>(
                                            Below(random, static_cast<int>(bytes.size() - header)));
        bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                     Byte(0xF8 + Below(random, 7)));
        faults |= Fault::RealTime;
        for (KnownVoice &voice : piece.voices) {
            voice.offset += voice.offset >= at;
        }
        break;
    }
    case 8: // bytes too many behind the sum
        bytes.insert(bytes.end() - 1, static_cast<std::size_t>(size == 156 ? 2 : 3), 0x01);
        faults |= Fault::TooLong;
        break;
    case 0:
        bytes[sum] = Byte((bytes[sum] + 1 + Below(random, 127)) % 128);
        faults |= Fault::Checksum;
        break;
    case 1:
        bytes[sum] |= 0x80;
        faults |= Fault::ChecksumBit7;
        break;
    case 2:
        bytes[4] = 0x10;
        bytes[5] = 0x00;
        faults |= Fault::ByteCount;
        break;
    case 3:
        bytes.pop_back();
        faults |= Fault::NoEnd;
        piece.behind = Behind::HighOrMessage;
        break;
    case 4: { // cut within the data
        const std::size_t data = sum - header;
        const std::size_t kept = static_cast<std::size_t>(Below(random, static_cast<int>(data)));
        bytes.resize(header + kept);
        faults |= Fault::Cut | Fault::NoEnd;
        piece.behind = Behind::HighOrMessage;
        piece.dump.voices = kept / size;
        piece.voices.resize(piece.dump.voices);
        break;
    }
    case 5: { // a byte above 7F
        const std::size_t voice =
            static_cast<std::size_t>(Below(random, static_cast<int>(piece.voices.size())));
        const std::size_t at = static_cast<std::size_t>(Below(random, 10)); // of an envelope
        std::uint8_t &byte = piece.voices[voice].voice.bytes[at];
        byte = Byte(0x80 + Below(random, 0x60));
        bytes[header + voice * size + at] = byte;
        bytes[sum] = TestChecksum(std::span(bytes).subspan(header, sum - header));
        faults |= Fault::HighBytes | Fault::OutOfRange;
        break;
    }
    case 6: { // a value that there is not
        std::uint8_t &byte = piece.voices.back().voice.bytes[3];
        byte = Byte(100 + Below(random, 28));
        bytes[header + (piece.voices.size() - 1) * size + 3] = byte;
        bytes[sum] = TestChecksum(std::span(bytes).subspan(header, sum - header));
        faults |= Fault::OutOfRange;
        break;
    }
    default:
        break;
    }
}

int RandomChannel(Random &random) {
    return OneIn(random, 3) ? 1 + Below(random, 16) : 1;
}

Piece RandomBank(Random &random) {
    const int channel = RandomChannel(random);
    Piece piece;
    Bytes data;
    for (std::size_t number = 0; number < 32; ++number) {
        piece.voices.push_back({{VoiceForm::Dx7Packed, RandomPacked(random)}, 6 + 128 * number});
        data += piece.voices.back().voice.bytes;
    }
    piece.bytes = TestBulk(0x09, data, channel);
    piece.dump = Known(DumpKind::Dx7Bank, Dx7DriverId, channel, 32,
                       channel == 1 ? 0u : std::uint32_t{Fault::Channel});
    Spoil(random, piece, 128);
    return piece;
}

Piece RandomSingle(Random &random) {
    const int channel = RandomChannel(random);
    const bool isStored = OneIn(random, 2);
    Piece piece;
    const Bytes voice = RandomUnpacked(random, isStored);
    piece.voices.push_back({{isStored ? VoiceForm::Dx7Stored : VoiceForm::Dx7Single, voice}, 6});
    piece.bytes = TestBulk(0x00, voice, channel);
    piece.bytes[5] = 0x1B;
    piece.dump = Known(DumpKind::Dx7Voice, Dx7DriverId, channel, 1,
                       channel == 1 ? 0u : std::uint32_t{Fault::Channel});
    Spoil(random, piece, voice.size());
    // What is left of 156 bytes may be 155, and so may be what has more, where their sum follows.
    const bool mayBeSingle = isStored && (piece.dump.faults & Fault::TooLong) &&
                             voice[155] == TestChecksum(std::span(voice).first(155));
    if (isStored && (piece.bytes.size() == 6 + 155 || mayBeSingle)) {
        return RandomSingle(random);
    }
    return piece;
}

Piece RandomReface(Random &random) {
    const int device = RandomChannel(random);
    Piece piece;
    piece.dump = Known(DumpKind::RefaceVoices, RefaceDriverId, device, 0);
    const int count = 1 + Below(random, 4);
    for (int number = 0; number < count; ++number) {
        const Bytes voice = TestRefaceVoice(Below(random, 100));
        std::vector<Bytes> blocks = {TestRefaceHeader(device), TestRefaceCommon(voice, device)};
        for (int part = 0; part < 4; ++part) {
            blocks.push_back(TestRefaceOperator(voice, part, device));
        }
        blocks.push_back(TestRefaceFooter(device));
        bool isWhole = true;
        if (OneIn(random, 5)) {
            blocks.erase(blocks.begin() + 1 + Below(random, 5));
            piece.dump.faults |= Fault::MissingBlocks;
            isWhole = false;
        } else if (OneIn(random, 5)) {
            Bytes &block = blocks[static_cast<std::size_t>(Below(random, 7))];
            block[block.size() - 2] ^= 0x11;
            piece.dump.faults |= Fault::Checksum;
        }
        if (isWhole) {
            ++piece.dump.voices;
            piece.voices.push_back({{VoiceForm::Reface, voice}, piece.bytes.size()});
        }
        for (const Bytes &block : blocks) {
            piece.bytes += block;
        }
    }
    return piece;
}

Piece RandomHeaderless(Random &random) {
    const bool isPacked = OneIn(random, 2);
    const std::size_t count = static_cast<std::size_t>(4 + Below(random, 40));
    Piece piece;
    piece.isMessage = false;
    piece.beginsAnywhere = false;
    piece.behind = Behind::Message;
    piece.dump = Known(isPacked ? DumpKind::Dx7Headerless : DumpKind::Dx7HeaderlessVoices,
                       Dx7DriverId, 0, count, Fault::NoHeader);
    piece.dump.confidence = 99;
    for (std::size_t number = 0; number < count; ++number) {
        const Bytes voice = isPacked ? RandomPacked(random) : RandomUnpacked(random, false);
        piece.voices.push_back(
            {{isPacked ? VoiceForm::Dx7Packed : VoiceForm::Dx7Single, voice}, piece.bytes.size()});
        piece.bytes += voice;
    }
    return piece;
}

Piece RandomSkipped(Random &random) {
    struct Skipped {
        int format;
        int size;
        DumpKind kind;
        DriverId family;
        std::size_t voices;
        const char *detail;
    };
    const Skipped rows[] = {
        {0x01, 94, DumpKind::Dx7Function, Dx7DriverId, 0, "of a TX7 voice"},
        {0x03, 93, DumpKind::FourOperatorVoice, NoDriverId, 1, ""},
        {0x04, 4096, DumpKind::FourOperatorBank, NoDriverId, 32, ""},
        {0x05, 49, DumpKind::Dx7Supplement, Dx7DriverId, 0, "of a voice"},
        {0x06, 1120, DumpKind::Dx7Supplement, Dx7DriverId, 0, "of a bank"},
    };
    const Skipped &row = rows[Below(random, 5)];
    const int channel = 1 + Below(random, 16);
    Bytes data;
    for (int at = 0; at < row.size; ++at) {
        data.push_back(Byte(Below(random, 128)));
    }
    Piece piece;
    piece.bytes = TestBulk(Byte(row.format), data, channel);
    piece.dump = Known(row.kind, row.family, channel, 0, 0, row.detail);
    piece.dump.otherVoices = row.voices;
    return piece;
}

Piece RandomNamed(Random &random) {
    struct Named {
        const char *name;
        DumpKind kind;
        DriverId family;
        const char *detail;
    };
    const Named rows[] = {
        {"LM  8973PE", DumpKind::Dx7Performances, Dx7DriverId, "one"},
        {"LM  8973S ", DumpKind::Dx7System, Dx7DriverId, ""},
        {"LM  8952PM", DumpKind::Dx7Performances, Dx7DriverId, "of a TX802"},
        {"LM  MCRYM1", DumpKind::Dx7Function, Dx7DriverId, "microtuning"},
        {"LM  8976AE", DumpKind::FourOperatorOther, NoDriverId, "supplement of a voice"},
    };
    const Named &row = rows[Below(random, 5)];
    const int channel = 1 + Below(random, 16);
    Bytes data = TextBytes(row.name);
    for (int at = Below(random, 200); at >= 0; --at) {
        data.push_back(Byte(Below(random, 128)));
    }
    Piece piece;
    piece.bytes = TestBulk(0x7E, data, channel);
    piece.dump = Known(row.kind, row.family, channel, 0, 0, row.detail);
    return piece;
}

Piece RandomOther(Random &random) {
    Piece piece;
    piece.beginsAnywhere = false;
    piece.bytes = {0xF0, Byte(1 + Below(random, 0x40))};
    for (int at = 1 + Below(random, 100); at >= 0; --at) {
        piece.bytes.push_back(Byte(Below(random, 128)));
    }
    piece.bytes.push_back(0xF7);
    constexpr const char *digits = "0123456789ABCDEF";
    piece.dump = Known(DumpKind::OtherMessage, NoDriverId, 0, 0, 0,
                       std::string("manufacturer ") + digits[piece.bytes[1] >> 4] +
                           digits[piece.bytes[1] & 15]);
    return piece;
}

Piece RandomJunk(Random &random) {
    Piece piece;
    piece.isMessage = false;
    for (int at = Below(random, 400); at >= 0; --at) {
        const int byte = 0x80 + Below(random, 128);
        piece.bytes.push_back(Byte(byte == 0xF0 || byte == 0xF7 ? 0x81 : byte));
    }
    piece.dump = Known(DumpKind::Unknown, NoDriverId, 0, 0);
    return piece;
}

Piece RandomPiece(Random &random, bool messagesOnly) {
    switch (Below(random, messagesOnly ? 7 : 10)) {
    case 0:
        return RandomBank(random);
    case 1:
    case 2:
        return RandomSingle(random);
    case 3:
        return RandomReface(random);
    case 4:
        return RandomSkipped(random);
    case 5:
        return RandomNamed(random);
    case 6:
        return RandomOther(random);
    case 7:
        return RandomHeaderless(random);
    default:
        return RandomJunk(random);
    }
}

bool MayFollow(const Piece &last, const Piece &next) {
    // Two that would become one.
    if (last.dump.kind == next.dump.kind && last.dump.kind != DumpKind::Dx7Bank &&
        last.dump.kind != DumpKind::Dx7Voice) {
        return false;
    }
    // Amid nothing a message must be long, or its channel and sums be right.
    if (!last.isMessage && (!next.beginsAnywhere || (next.dump.faults & Fault::ByteCount))) {
        return false;
    }
    switch (last.behind) {
    case Behind::Anything:
        return true;
    case Behind::HighOrMessage:
        return next.isMessage || next.dump.kind == DumpKind::Unknown;
    case Behind::Message:
        return next.isMessage;
    }
    return false;
}

std::vector<Piece> Compose(Random &random, int count, bool messagesOnly) {
    std::vector<Piece> pieces;
    while (static_cast<int>(pieces.size()) < count) {
        Piece next = RandomPiece(random, messagesOnly);
        if (pieces.empty() || MayFollow(pieces.back(), next)) {
            pieces.push_back(std::move(next));
        }
    }
    return pieces;
}

// ---- what is expected and what is found

struct Contents {
    std::vector<FoundDump> dumps;
    std::vector<KnownVoice> voices;
    bool operator==(const Contents &) const = default;
};

void PrintTo(const Contents &contents, std::ostream *out) {
    for (const FoundDump &dump : contents.dumps) {
        *out << "\n  " << TextOfDump(dump) << " @" << dump.offset << "+" << dump.length << " ch"
             << dump.channel << " " << dump.confidence << "% (" << TextOfFaults(dump) << ")";
    }
    *out << "\n  " << contents.voices.size() << " voices";
}

DumpVisitor VisitorOf(Contents &contents) {
    DumpVisitor visitor;
    visitor.voice = [&contents](const FoundVoice &found) {
        EXPECT_EQ(found.place, contents.voices.size());
        contents.voices.push_back({KeepVoice(found.voice), found.offset});
        return true;
    };
    visitor.dump = [&contents](const FoundDump &dump) {
        contents.dumps.push_back(dump);
        return true;
    };
    return visitor;
}

Contents ContentsOf(const Bytes &file) {
    Contents contents;
    EXPECT_EQ(ReadDumps(file, VisitorOf(contents)), DumpRead::Done);
    return contents;
}

// Where each byte of the pieces stands in a file.
struct Places {
    std::vector<std::size_t> offsets;
    std::size_t width = 1;
};

Contents Expected(const std::vector<Piece> &pieces, const Places &places, std::uint32_t faults) {
    Contents contents;
    std::size_t start = 0;
    for (const Piece &piece : pieces) {
        FoundDump dump = piece.dump;
        const std::size_t last = start + piece.bytes.size() - 1;
        dump.offset = places.offsets[start];
        dump.length = places.offsets[last] + places.width - dump.offset;
        dump.faults |= faults;
        contents.dumps.push_back(dump);
        for (KnownVoice voice : piece.voices) {
            voice.offset = places.offsets[start + voice.offset];
            contents.voices.push_back(voice);
        }
        start += piece.bytes.size();
    }
    return contents;
}

Bytes BytesOf(const std::vector<Piece> &pieces, Places &places) {
    Bytes file;
    for (const Piece &piece : pieces) {
        file += piece.bytes;
    }
    for (std::size_t at = 0; at < file.size(); ++at) {
        places.offsets.push_back(at);
    }
    return file;
}

// ---- tests

TEST(ComposedDumps, AreFoundInPlainFiles) {
    for (unsigned seed = 0; seed < 2000; ++seed) {
        Random random(seed);
        const auto pieces = Compose(random, 1 + Below(random, 8), false);
        Places places;
        const Bytes file = BytesOf(pieces, places);
        ASSERT_EQ(ContentsOf(file), Expected(pieces, places, 0)) << "seed " << seed;
    }
}

// Events of a track that hold no message, the last of them with a status that later ones leave out.
Bytes RandomEvents(Random &random) {
    Bytes events;
    for (int count = Below(random, 4); count > 0; --count) {
        switch (Below(random, 5)) {
        case 0:
            events += Bytes{0x00, 0xFF, 0x01, 0x03, 0xF0, 0x43, 0x00};
            break;
        case 1:
            events += Bytes{0x81, 0x00, 0xC3, 0x05};
            break;
        case 2:
            events += Bytes{0x00, 0x93, 0x40, 0x40, 0x60, 0x40, 0x00, 0x00, 0x41, 0x41};
            break;
        case 3:
            events += Bytes{0x83, 0xFF, 0x7F, 0xE1, 0x00, 0x40};
            break;
        default:
            events += Bytes{0x00, 0xD1, 0x11, 0x22, 0x12};
            break;
        }
    }
    return events;
}

TEST(ComposedDumps, AreFoundInMidiFiles) {
    for (unsigned seed = 0; seed < 1000; ++seed) {
        Random random(seed);
        auto pieces = Compose(random, 1 + Below(random, 6), true);
        Bytes file = TestMidiChunk("MThd", {0, 1, 0, 1, 0, 96});
        Places places;
        std::size_t piece = 0;
        while (piece < pieces.size()) {
            // A track of some of the pieces.
            Bytes track = RandomEvents(random);
            std::vector<std::size_t> inTrack;
            const std::size_t end = piece + 1 + random() % (pieces.size() - piece);
            for (; piece < end; ++piece) {
                const Bytes &bytes = pieces[piece].bytes;
                std::size_t at = 0;
                while (at < bytes.size()) {
                    // A packet ends where a message does, at the latest.
                    const bool begins = bytes[at] == 0xF0;
                    const auto next = std::find(bytes.begin() + static_cast<std::ptrdiff_t>(at + 1),
                                                bytes.end(), std::uint8_t{0xF0});
                    const std::size_t most =
                        static_cast<std::size_t>(next - bytes.begin()) - at - begins;
                    const std::size_t size = OneIn(random, 2) ? most : random() % (most + 1);
                    if (!begins && size == 0) {
                        continue;
                    }
                    track += Bytes{0x00, Byte(begins ? 0xF0 : 0xF7)};
                    if (begins) {
                        inTrack.push_back(track.size() - 1);
                        ++at;
                    }
                    track += TestMidiNumber(size);
                    for (std::size_t byte = 0; byte < size; ++byte, ++at) {
                        inTrack.push_back(track.size());
                        track.push_back(bytes[at]);
                    }
                    track += RandomEvents(random);
                }
            }
            track += TestMidiEnd();
            if (OneIn(random, 3)) {
                file += TestMidiChunk("Yama", Bytes(50, 0xF0));
            }
            for (const std::size_t offset : inTrack) {
                places.offsets.push_back(file.size() + 8 + offset);
            }
            file += TestMidiChunk("MTrk", track);
        }
        ASSERT_EQ(ContentsOf(file), Expected(pieces, places, Fault::InMidiFile)) << "seed " << seed;
    }
}

TEST(ComposedDumps, AreFoundInTextsInHexadecimal) {
    constexpr const char *between[] = {" ", "", ",", ", ", "\n", "\r\n", " 0x", ", $", "h ", "-"};
    for (unsigned seed = 0; seed < 1000; ++seed) {
        Random random(seed);
        auto pieces = Compose(random, 1 + Below(random, 4), true);
        // Messages of others and headers without data are not looked for in texts; they are read
        // behind a message that is.
        if (pieces[0].bytes[1] != 0x43 || pieces[0].bytes.size() < 16) {
            continue;
        }
        const std::string separator = between[Below(random, 10)];
        const bool isSmall = OneIn(random, 2);
        std::string text = OneIn(random, 2) ? "\n\n" : "";
        Places places;
        places.width = 2;
        for (const Piece &piece : pieces) {
            for (const std::uint8_t byte : piece.bytes) {
                text += places.offsets.empty() || OneIn(random, 30) ? "\n" : separator;
                places.offsets.push_back(text.size());
                text += TestHex({byte}, "", isSmall ? "0123456789abcdef" : "0123456789ABCDEF");
            }
        }
        if (separator == "h ") {
            text += "h";
        }
        text += OneIn(random, 2) ? "\n" : "";
        ASSERT_EQ(ContentsOf(TextBytes(text)), Expected(pieces, places, Fault::InHexText))
            << "seed " << seed << " separator \"" << separator << '"';
    }
}

// The same bytes are found in pieces that come as late as they may.
TEST(ComposedDumps, AreFoundWhateverTheirPieces) {
    for (unsigned seed = 0; seed < 12; ++seed) {
        Random random(seed);
        const auto pieces = Compose(random, 150, false);
        Places places;
        const Bytes file = BytesOf(pieces, places);
        Contents contents;
        const DumpVisitor visitor = VisitorOf(contents);
        Bytes room; // of its own each time, so that a look at what has gone is seen
        std::size_t read = 0;
        DumpStream stream;
        stream.ends = false;
        stream.more = [&](DumpStream &what, std::size_t wanted) {
            Bytes next(what.bytes.begin(), what.bytes.end());
            const std::size_t more =
                std::min(file.size() - read, wanted - next.size() + random() % 5000);
            next.insert(next.end(), file.begin() + static_cast<std::ptrdiff_t>(read),
                        file.begin() + static_cast<std::ptrdiff_t>(read + more));
            read += more;
            room = std::move(next);
            what.bytes = room;
            what.ends = read == file.size();
        };
        DumpOutput output{visitor};
        ScanDumps(stream, ScannedBytes::Plain, output);
        EndDumps(output);
        ASSERT_EQ(contents, Expected(pieces, places, 0)) << "seed " << seed;
    }
}

TEST(ComposedDumps, AreFoundInFilesLargerThanAPiece) {
    const TempFolder folder;
    Random random(1);
    std::vector<Piece> pieces;
    for (int part = 0; part < 30; ++part) {
        const auto more = Compose(random, 100, false);
        for (const Piece &piece : more) {
            if (pieces.empty() || MayFollow(pieces.back(), piece)) {
                pieces.push_back(piece);
            }
        }
    }
    Places places;
    const Bytes file = BytesOf(pieces, places);
    ASSERT_GT(file.size(), 2u * 1024 * 1024);
    Contents contents;
    DumpVisitor visitor = VisitorOf(contents);
    Bytes seen;
    visitor.bytes = [&seen](std::span<const std::uint8_t> piece) { seen += piece; };
    const std::string path = folder.Write("large.bin", file);
    ASSERT_EQ(ReadDumps(path.c_str(), visitor), DumpRead::Done);
    EXPECT_EQ(contents, Expected(pieces, places, 0));
    EXPECT_TRUE(seen == file);
}

// More bytes than 32 bits can count, which come from nowhere and take no memory.
TEST(ComposedDumps, AreFoundBehindFourGigabytes) {
    constexpr std::uint64_t four = std::uint64_t{4} << 30;
    constexpr std::size_t piece = 1024 * 1024;
    const Bytes bank = TestBank();
    const std::uint64_t place = four - 100, size = four + 5000;
    Bytes room(piece);
    std::uint64_t read = 0;
    DumpStream stream;
    stream.ends = false;
    stream.more = [&](DumpStream &what, std::size_t) {
        const std::size_t have = what.bytes.size();
        std::copy(what.bytes.begin(), what.bytes.end(), room.begin());
        const std::size_t more =
            static_cast<std::size_t>(std::min<std::uint64_t>(size - read, piece - have));
        std::fill_n(room.begin() + static_cast<std::ptrdiff_t>(have), more, std::uint8_t{0});
        for (std::size_t at = 0; at < bank.size(); ++at) {
            if (place + at >= read && place + at < read + more) {
                room[have + static_cast<std::size_t>(place + at - read)] = bank[at];
            }
        }
        read += more;
        what.bytes = std::span(room).first(have + more);
        what.ends = read == size;
    };
    Contents contents;
    const DumpVisitor visitor = VisitorOf(contents);
    DumpOutput output{visitor};
    ScanDumps(stream, ScannedBytes::Plain, output);
    EndDumps(output);
    ASSERT_EQ(contents.dumps.size(), 3u);
    EXPECT_EQ(contents.dumps[0].length, place);
    EXPECT_EQ(contents.dumps[1].kind, DumpKind::Dx7Bank);
    EXPECT_EQ(contents.dumps[1].offset, place);
    EXPECT_EQ(contents.dumps[2].offset, place + 4104);
    ASSERT_EQ(contents.voices.size(), 32u);
    EXPECT_EQ(contents.voices[31].offset, place + 6 + 31 * 128);
    EXPECT_EQ(contents.voices[31].voice.bytes, TestPackedVoice(31));
}

} // namespace
} // namespace tonewright
