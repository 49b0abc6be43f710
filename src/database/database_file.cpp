// Catalogues on disk.
#include "database/database_file.h"

#include "common/file_bytes.h"
#include "common/settings.h"
#include "core/current.h"
#include "core/document_file.h"
#include "database/database_names.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <optional>
#include <string_view>

namespace tonewright {
namespace {

constexpr std::string_view Magic = "TnwrTWdb";

// Offsets in the header.
constexpr std::size_t Driver = 8;
constexpr std::size_t Created = 12;
constexpr std::size_t Modified = 16;
constexpr std::size_t RecordCount = 20;

constexpr std::uint64_t EndOfReach = std::uint64_t{INT32_MAX} + 1; // where nothing begins any more

// The header and the records that a new one is compared with are read in one piece.
constexpr std::size_t StreamBuffer = 16 * 1024; // bytes
constexpr std::size_t WritePiece = 64 * 1024;   // about so many bytes of records at a time

std::uint32_t Now() {
    return static_cast<std::uint32_t>(std::time(nullptr));
}

// Moves the stream, unless it stands there and goes on with what it did last. False beyond 2 GB
// less one byte.
bool MoveTo(DatabaseHandle &database, std::uint64_t place, DatabaseHandle::Last next) {
    if (place >= EndOfReach) {
        errno = EFBIG;
        return false;
    }
    if (place == database.place && database.last == next) {
        return true;
    }
    database.last = DatabaseHandle::Last::Other;
    if (std::fseek(database.file.get(), static_cast<long>(place), SEEK_SET) != 0) {
        return false;
    }
    database.place = place;
    database.last = next;
    return true;
}

bool ReadAt(DatabaseHandle &database, std::uint64_t place, std::span<std::uint8_t> bytes) {
    if (!MoveTo(database, place, DatabaseHandle::Last::Read)) {
        return false;
    }
    const std::size_t got = std::fread(bytes.data(), 1, bytes.size(), database.file.get());
    database.place += got;
    if (got != bytes.size()) {
        database.last = DatabaseHandle::Last::Other;
    }
    return got == bytes.size();
}

// What has been written is out of the stream's buffer then, so that a full disk shows at once.
bool WriteAt(DatabaseHandle &database, std::uint64_t place, std::span<const std::uint8_t> bytes) {
    if (!MoveTo(database, place, DatabaseHandle::Last::Write)) {
        return false;
    }
    const bool isWritten =
        std::fwrite(bytes.data(), 1, bytes.size(), database.file.get()) == bytes.size() &&
        std::fflush(database.file.get()) == 0;
    database.place += bytes.size();
    if (!isWritten) {
        database.last = DatabaseHandle::Last::Other;
    }
    return isWritten;
}

std::uint64_t PlaceOf(const DatabaseFamily &family, std::uint64_t index) {
    return DatabaseHeaderSize + index * DatabaseRecordSize(family);
}

// Bytes of the file; nothing where the platform cannot tell them.
std::optional<std::uint64_t> SizeOf(DatabaseHandle &database) {
    database.last = DatabaseHandle::Last::Other;
    return SizeOfFile(database.file.get());
}

std::shared_ptr<DatabaseHandle> OpenStream(const DatabaseFamily &family, const char *path,
                                           const char *mode) {
    auto database = std::make_shared<DatabaseHandle>();
    database->family = &family;
    database->file = OpenFile(path, mode);
    if (!database->file) {
        return nullptr;
    }
    database->buffer.resize(StreamBuffer);
    std::setvbuf(database->file.get(), database->buffer.data(), _IOFBF, StreamBuffer);
    return database;
}

std::array<std::uint8_t, DatabaseHeaderSize> NewHeader(const DatabaseFamily &family,
                                                       std::uint32_t count) {
    std::array<std::uint8_t, DatabaseHeaderSize> header = {};
    std::ranges::copy(Magic, header.begin());
    WriteLittle32(header, Driver, family.id);
    const std::uint32_t now = Now();
    WriteLittle32(header, Created, now);
    WriteLittle32(header, Modified, now);
    WriteLittle32(header, RecordCount, count);
    return header;
}

bool IsRecordOf(const DatabaseFamily &family, const DatabaseRecord &record) {
    return record.bytes.size() == DatabaseRecordSize(family) && IsDatabaseRecord(record.bytes);
}

// Makes a file with nothing but a header, where there is none. Null, with the reason in errno, when
// there is one, and when it could not be made whole.
std::shared_ptr<DatabaseHandle> CreateDatabase(const DatabaseFamily &family, const char *path) {
    if (FileExists(path)) {
        errno = EEXIST;
        return nullptr;
    }
    auto database = OpenStream(family, path, "w+b");
    if (!database) {
        return nullptr;
    }
    database->header = NewHeader(family, 0);
    return WriteAt(*database, 0, database->header) ? database : nullptr;
}

// The stream that a mode asks for; its header is read anew.
std::shared_ptr<DatabaseHandle> StreamOf(const DatabaseFamily &family, const char *path,
                                         std::uint32_t mode) {
    constexpr std::uint32_t Read = 1, Make = 2, Append = 4;
    const bool isUpdate = (mode & (Read | Make)) == (Read | Make);
    if (!isUpdate && (mode & Read)) {
        return OpenStream(family, path, "rb");
    }
    if (!isUpdate && (mode & Make)) {
        if (FileExists(path) && !OpenFile(path, "r+b")) {
            return nullptr; // what may not be written is not replaced either
        }
        DeleteWrittenFile(path);
        return CreateDatabase(family, path);
    }
    if (!isUpdate && !(mode & Append)) {
        errno = EINVAL;
        return nullptr;
    }
    if (!FileExists(path) && !CreateDatabase(family, path)) {
        return nullptr;
    }
    return OpenStream(family, path, isUpdate ? "r+b" : "a+b");
}

void WriteBack(std::FILE *file, std::uint64_t place, std::span<const std::uint8_t> bytes) {
    if (std::fseek(file, static_cast<long>(place), SEEK_SET) == 0) {
        std::fwrite(bytes.data(), 1, bytes.size(), file);
    }
}

// Careful mode: what an add writes over, as it was before.
struct BeforeAdd {
    bool wasThere = false;
    std::array<std::uint8_t, DatabaseHeaderSize> header = {};
    std::uint64_t size = 0;              // of the file
    std::uint64_t place = 0;             // of the new record
    std::vector<std::uint8_t> uncounted; // bytes that stood there already
};

// False when there is no way back from an add.
bool LookBeforeAdd(BeforeAdd &before, DatabaseHandle &database) {
    const auto size = SizeOf(database);
    if (!size) {
        return false;
    }
    before.header = database.header;
    before.size = *size;
    before.place = PlaceOf(*database.family, DatabaseCount(database));
    if (MoveTo(database, before.place, DatabaseHandle::Last::Read)) {
        before.uncounted = ReadBytesOf(database.file.get(), DatabaseRecordSize(*database.family));
        database.last = DatabaseHandle::Last::Other;
    }
    return true;
}

// The file has been closed.
void PutBackAfterAdd(const std::string &path, const BeforeAdd &before) {
    const int reason = errno;
    if (!before.wasThere) {
        DeleteWrittenFile(path.c_str());
    } else if (const FilePointer file = OpenFile(path.c_str(), "r+b")) {
        SetFileSize(file.get(), before.size); // which makes room
        WriteBack(file.get(), before.place, before.uncounted);
        WriteBack(file.get(), 0, before.header);
    }
    errno = reason;
}

// The field of a voice that holds its name; empty for no voice of the family.
std::string OwnNameOf(const DatabaseFamily &family, const VoiceObject &voice) {
    const auto parts = PayloadOf(voice);
    return parts && parts->payload.size() >= family.nameOffset + family.nameSize
               ? MakeVoiceNameText(parts->payload.subspan(family.nameOffset, family.nameSize))
               : "";
}

DatabaseRecord NewRecordOf(const DatabaseFamily &family, const VoiceObject &voice, const char *name,
                           const char *source, int position) {
    std::string nameText = name ? name : OwnNameOf(family, voice);
    std::string sourceText = source;
    if (DatabaseMakePrettyNames != 0) {
        nameText = MakePrettyName(nameText);
        sourceText = MakePrettyName(sourceText);
    }
    return MakeDatabaseRecord(family, voice,
                              {.name = nameText,
                               .source = sourceText,
                               .position = static_cast<std::uint32_t>(position),
                               .date = static_cast<std::uint32_t>(CurrentDocumentTime)});
}

bool HoldsDuplicate(DatabaseHandle &database, const DatabaseRecord &record) {
    const std::uint32_t count = std::min<std::uint32_t>(DatabaseCount(database), DatabaseCompared);
    DatabaseRecord other;
    for (std::uint32_t index = 0; index < count; ++index) {
        if (ReadDatabaseRecord(database, index, other) && AreDuplicates(record, other)) {
            return true;
        }
    }
    return false;
}

} // namespace

std::string DatabasePathOfThisRun;

DatabaseHeaderFault HeaderFaultOf(DriverId family, std::span<const std::uint8_t> bytes) {
    if (bytes.size() < DatabaseHeaderSize) {
        return DatabaseHeaderFault::Short;
    }
    if (!std::equal(Magic.begin(), Magic.end(), bytes.begin())) {
        return DatabaseHeaderFault::Magic;
    }
    return HeaderDriver(bytes) == family ? DatabaseHeaderFault::None : DatabaseHeaderFault::Family;
}

DriverId HeaderDriver(std::span<const std::uint8_t> header) {
    return ReadLittle32(header, Driver);
}

std::uint32_t HeaderCount(std::span<const std::uint8_t> header) {
    return ReadLittle32(header, RecordCount);
}

std::uint32_t DatabaseCount(const DatabaseHandle &database) {
    return HeaderCount(database.header);
}

std::uint64_t DatabaseSize(DatabaseHandle &database) {
    return SizeOf(database).value_or(EndOfReach);
}

std::uint32_t RecordsThatBegin(DatabaseHandle &database) {
    const std::uint64_t end = std::min(DatabaseSize(database), EndOfReach);
    const std::uint64_t recordSize = DatabaseRecordSize(*database.family);
    return end <= DatabaseHeaderSize
               ? 0
               : static_cast<std::uint32_t>((end - DatabaseHeaderSize + recordSize - 1) /
                                            recordSize);
}

bool HasRoomBehind(const DatabaseFamily &family, std::uint32_t count) {
    return PlaceOf(family, count) < EndOfReach;
}

std::shared_ptr<DatabaseHandle> OpenDatabase(const DatabaseFamily &family, const char *path,
                                             std::uint32_t mode) {
    auto database = StreamOf(family, path, mode);
    if (!database) {
        return nullptr;
    }
    if (!ReadAt(*database, 0, database->header) ||
        HeaderFaultOf(family.id, database->header) != DatabaseHeaderFault::None) {
        const int reason = std::ferror(database->file.get()) ? errno : EINVAL;
        database.reset();
        errno = reason;
    }
    return database;
}

int CloseDatabase(std::shared_ptr<DatabaseHandle> database) {
    WriteLittle32(database->header, Modified, Now());
    const bool isWritten = WriteAt(*database, 0, database->header);
    const bool isClosed = std::fclose(database->file.release()) == 0;
    return isWritten && isClosed;
}

int ReadDatabaseRecord(DatabaseHandle &database, std::uint32_t index, DatabaseRecord &record) {
    DatabaseRecord read;
    read.bytes.resize(DatabaseRecordSize(*database.family));
    if (!ReadAt(database, PlaceOf(*database.family, index), read.bytes) ||
        !IsDatabaseRecord(read.bytes)) {
        return 0;
    }
    record = std::move(read);
    return 1;
}

int WriteDatabaseRecord(DatabaseHandle &database, std::uint32_t index,
                        const DatabaseRecord &record) {
    if (!HasRoomBehind(*database.family, index)) {
        errno = EFBIG;
        return 0;
    }
    WriteLittle32(database.header, RecordCount, std::max(DatabaseCount(database), index + 1));
    return IsRecordOf(*database.family, record) &&
           WriteAt(database, PlaceOf(*database.family, index), record.bytes);
}

bool WriteDatabase(const DatabaseFamily &family, std::span<const DatabaseRecord> records,
                   std::FILE *file, std::size_t &written) {
    if (!records.empty() && PlaceOf(family, records.size() - 1) >= EndOfReach) {
        errno = EFBIG;
        return false;
    }
    const auto header = NewHeader(family, static_cast<std::uint32_t>(records.size()));
    std::vector<std::uint8_t> piece(header.begin(), header.end());
    written = 0;
    const auto put = [&] {
        written += piece.size();
        const bool isPut = std::fwrite(piece.data(), 1, piece.size(), file) == piece.size();
        piece.clear();
        return isPut;
    };
    for (const DatabaseRecord &record : records) {
        if (!IsRecordOf(family, record)) {
            errno = EINVAL;
            return false;
        }
        if (piece.size() >= WritePiece && !put()) {
            return false;
        }
        piece.insert(piece.end(), record.bytes.begin(), record.bytes.end());
    }
    return put();
}

std::string DatabasePathOf(const DatabaseFamily &family) {
    if (!DatabasePathOfThisRun.empty()) {
        return DatabasePathOfThisRun;
    }
    return DatabasePathNamed(DatabaseCurrentName, family.extension);
}

DatabaseInfoResult DatabaseInfoOf(const DatabaseFamily &family, int selector) {
    switch (selector) {
    case DatabaseInfoVoicesPerBank:
        return {.number = family.voicesPerBank};
    case DatabaseInfoBankExtension:
        return {.text = family.bankExtension};
    case DatabaseInfoExtension:
        return {.text = family.extension};
    case DatabaseInfoBackupExtension:
        return {.text = family.backupExtension};
    default:
        return {};
    }
}

int AddToDatabase(const DatabaseFamily &family, const VoiceObject &voice, const char *name,
                  const char *source, int position) {
    const std::string path = DatabasePathOf(family);
    const bool keeps = KeepsFormerDocuments();
    BeforeAdd before;
    before.wasThere = FileExists(path.c_str());
    auto database = OpenDatabase(family, path.c_str(), DatabaseUpdate);
    if (!database) {
        // What could not be looked into may be a catalogue.
        if (!before.wasThere || (!keeps && errno == EINVAL)) {
            DeleteWrittenFile(path.c_str());
        }
        return 0;
    }
    const DatabaseRecord record = NewRecordOf(family, voice, name, source, position);
    const bool isVoice = !record.bytes.empty();
    if (isVoice && DatabaseNoDuplicates != 0 && HoldsDuplicate(*database, record)) {
        CloseDatabase(std::move(database));
        return 1;
    }
    if (keeps && !LookBeforeAdd(before, *database)) {
        return 0;
    }
    errno = EINVAL;
    if (isVoice && WriteDatabaseRecord(*database, DatabaseCount(*database), record) &&
        CloseDatabase(std::move(database))) {
        return 1;
    }
    const int reason = errno;
    database.reset(); // closes the file
    errno = reason;
    if (keeps) {
        PutBackAfterAdd(path, before);
    } else {
        DeleteWrittenFile(path.c_str());
    }
    return 0;
}

} // namespace tonewright
