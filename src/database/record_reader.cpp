// Reads the records of a catalogue in pieces.
#include "database/record_reader.h"

#include <algorithm>
#include <vector>

namespace tonewright {
namespace {

constexpr std::size_t PieceSize = 128 * 1024; // bytes, at most

} // namespace

std::uint32_t RecordsToLoad(DatabaseHandle &database) {
    return std::min(DatabaseCount(database), RecordsThatBegin(database));
}

bool ReadRecords(DatabaseHandle &database, std::uint32_t from, std::uint32_t end,
                 const RecordVisitor &visit) {
    end = std::min(end, RecordsThatBegin(database));
    if (from >= end) {
        return true;
    }
    std::FILE *file = database.file.get();
    const std::size_t size = DatabaseRecordSize(*database.family);
    const std::uint64_t place = DatabaseHeaderSize + std::uint64_t{from} * size;
    database.last = DatabaseHandle::Last::Other; // the stream moves
    if (std::fseek(file, static_cast<long>(place), SEEK_SET) != 0) {
        return false;
    }
    std::vector<std::uint8_t> piece(std::min<std::size_t>(end - from, PieceSize / size) * size);
    for (std::uint32_t index = from; index < end;) {
        const std::size_t got = std::fread(piece.data(), 1, piece.size(), file);
        for (std::size_t at = 0; at < got && index < end; at += size, ++index) {
            if (!visit(index, {&piece[at], std::min(size, got - at)})) {
                return true;
            }
        }
        if (got < piece.size()) {
            return std::ferror(file) == 0;
        }
    }
    return true;
}

} // namespace tonewright
