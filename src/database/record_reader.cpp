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

bool ReadRecords(DatabaseHandle &database, std::uint32_t count, const RecordVisitor &visit) {
    count = std::min(count, RecordsThatBegin(database));
    std::FILE *file = database.file.get();
    const std::size_t size = DatabaseRecordSize(*database.family);
    database.last = DatabaseHandle::Last::Other; // the stream moves
    if (std::fseek(file, static_cast<long>(DatabaseHeaderSize), SEEK_SET) != 0) {
        return false;
    }
    std::vector<std::uint8_t> piece(std::min<std::size_t>(count, PieceSize / size) * size);
    for (std::uint32_t index = 0; index < count;) {
        const std::size_t got = std::fread(piece.data(), 1, piece.size(), file);
        for (std::size_t at = 0; at < got && index < count; at += size, ++index) {
            visit(index, {&piece[at], std::min(size, got - at)});
        }
        if (got < piece.size()) {
            return std::ferror(file) == 0;
        }
    }
    return true;
}

bool ReadLoadedRecords(DatabaseHandle &database, const RecordVisitor &visit) {
    const std::size_t size = DatabaseRecordSize(*database.family);
    return ReadRecords(database, RecordsToLoad(database),
                       [&](std::uint32_t index, std::span<const std::uint8_t> bytes) {
                           if (bytes.size() == size && IsDatabaseRecord(bytes)) {
                               visit(index, bytes);
                           }
                       });
}

} // namespace tonewright
