// Opens files, reads them in pieces and hands them on.
#include "extras/dump_reader.h"

#include "common/open_file.h"
#include "extras/dump_output.h"
#include "extras/dump_scanner.h"
#include "extras/dump_stream.h"
#include "extras/midi_file_reader.h"
#include "extras/record_files.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

namespace tonewright {
namespace {

constexpr std::size_t LargestPiece = 1024 * 1024; // bytes of a file in memory
static_assert(LargestPiece > DumpWindow);

// Where a file is read into. A small one is read in one piece.
struct FilePieces {
    FileToRead file;
    const DumpVisitor &visitor;
    std::unique_ptr<std::uint8_t[]> room;
    std::size_t size = 0; // of the room
    std::uint64_t read = 0;
    int reason = 0;       // why the file could not be read to its end
    bool isEnded = false; // by the visitor
};

void ReadPiece(FilePieces &pieces, DumpStream &stream, std::size_t wanted) {
    std::size_t have = stream.bytes.size();
    if (have > 0) {
        std::memmove(pieces.room.get(), stream.bytes.data(), have);
    }
    while (have < wanted && !stream.ends) {
        if (pieces.visitor.goesOn && !pieces.visitor.goesOn()) {
            pieces.isEnded = stream.ends = true;
            break;
        }
        const auto got = ReadOn(pieces.file, {pieces.room.get() + have, pieces.size - have});
        if (!got) {
            pieces.reason = errno;
        }
        const std::size_t more = got.value_or(0);
        if (more > 0 && pieces.visitor.bytes) {
            pieces.visitor.bytes({pieces.room.get() + have, more});
        }
        have += more;
        pieces.read += more;
        // Whoever tells the size of its files is not asked whether there is more.
        stream.ends = more == 0 || pieces.read == pieces.file.size;
    }
    stream.bytes = {pieces.room.get(), have};
}

void ReadAll(DumpStream &stream, DumpOutput &output) {
    ReadRecordFile(stream, output);
    ReadMidiFile(stream, output);
    ScanDumps(stream, ScannedBytes::Plain, output);
    EndDumps(output);
}

} // namespace

DumpRead ReadDumps(const char *path, const DumpVisitor &visitor) {
    FilePieces pieces{.file = {}, .visitor = visitor, .room = {}};
    if (!OpenToRead(pieces.file, path)) {
        return DumpRead::Failed;
    }
    // Where the system tells no size, it may be any.
    const std::uint64_t size = pieces.file.size == 0 ? LargestPiece : pieces.file.size;
    pieces.size = static_cast<std::size_t>(std::min<std::uint64_t>(size, LargestPiece));
    pieces.room = std::make_unique_for_overwrite<std::uint8_t[]>(pieces.size);
    DumpStream stream;
    stream.ends = false;
    stream.more = [&pieces](DumpStream &what, std::size_t wanted) {
        ReadPiece(pieces, what, wanted);
    };
    DumpOutput output{visitor};
    ReadAll(stream, output);
    if (output.ended || pieces.isEnded) {
        return DumpRead::Ended;
    }
    errno = pieces.reason;
    return pieces.reason == 0 ? DumpRead::Done : DumpRead::Failed;
}

DumpRead ReadDumps(std::span<const std::uint8_t> file, const DumpVisitor &visitor) {
    if (visitor.bytes && !file.empty()) {
        visitor.bytes(file);
    }
    DumpStream stream;
    stream.bytes = file;
    DumpOutput output{visitor};
    ReadAll(stream, output);
    return output.ended ? DumpRead::Ended : DumpRead::Done;
}

std::optional<KeptVoice> ReadVoiceAt(const char *path, std::uint64_t place) {
    std::optional<KeptVoice> voice;
    DumpVisitor visitor;
    visitor.voice = [&](const FoundVoice &found) {
        if (found.place == place) {
            voice = KeepVoice(found.voice);
        }
        return found.place != place;
    };
    if (ReadDumps(path, visitor) != DumpRead::Failed) {
        errno = 0;
    }
    return voice;
}

} // namespace tonewright
