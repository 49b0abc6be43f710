// Catalogues on disk.
#include "database/database_file.h"

#include "common/file_bytes.h"
#include "common/settings.h"
#include "core/current.h"
#include "database/database_names.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <ctime>
#include <string_view>

namespace tonewright {
namespace {

constexpr std::string_view Magic = "TnwrTWdb";

// Offsets in the header.
constexpr std::size_t Driver = 8;
constexpr std::size_t Created = 12;
constexpr std::size_t Modified = 16;
constexpr std::size_t RecordCount = 20;

// The header and the records that a new one is compared with are read in one piece.
constexpr std::size_t StreamBuffer = 16 * 1024; // bytes

std::uint32_t Now() {
    return static_cast<std::uint32_t>(std::time(nullptr));
}

// Moves the stream, unless it stands there and goes on with what it did last. False beyond 2 GB
// less one byte.
bool MoveTo(DatabaseHandle &database, std::uint64_t place, DatabaseHandle::Last next) {
    if (place > INT32_MAX) {
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

std::uint64_t PlaceOf(const DatabaseHandle &database, std::uint64_t index) {
    return DatabaseHeaderSize + index * DatabaseRecordSize(*database.family);
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
    std::ranges::copy(Magic, database->header.begin());
    WriteLittle32(database->header, Driver, family.id);
    const std::uint32_t now = Now();
    WriteLittle32(database->header, Created, now);
    WriteLittle32(database->header, Modified, now);
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

// Whether the file is none of ours to delete: it is there and may not be opened.
bool IsForbidden(int reason) {
    return reason == EACCES || reason == EPERM || reason == EROFS;
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

std::uint32_t DatabaseCount(const DatabaseHandle &database) {
    return ReadLittle32(database.header, RecordCount);
}

std::uint64_t RecordsThatBegin(DatabaseHandle &database) {
    std::FILE *file = database.file.get();
    database.last = DatabaseHandle::Last::Other;
    const long size = std::fseek(file, 0, SEEK_END) == 0 ? std::ftell(file) : 0;
    const std::uint64_t recordSize = DatabaseRecordSize(*database.family);
    const auto bytes = static_cast<std::uint64_t>(std::max(size, 0L));
    return bytes <= DatabaseHeaderSize ? 0
                                       : (bytes - DatabaseHeaderSize + recordSize - 1) / recordSize;
}

std::shared_ptr<DatabaseHandle> OpenDatabase(const DatabaseFamily &family, const char *path,
                                             std::uint32_t mode) {
    auto database = StreamOf(family, path, mode);
    if (!database) {
        return nullptr;
    }
    if (!ReadAt(*database, 0, database->header) ||
        HeaderFaultOf(family.id, database->header) != DatabaseHeaderFault::None) {
        database.reset();
        errno = EINVAL;
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
    if (!ReadAt(database, PlaceOf(database, index), read.bytes) || !IsDatabaseRecord(read.bytes)) {
        return 0;
    }
    record = std::move(read);
    return 1;
}

int WriteDatabaseRecord(DatabaseHandle &database, std::uint32_t index,
                        const DatabaseRecord &record) {
    const std::uint64_t place = PlaceOf(database, index);
    if (place > INT32_MAX) {
        errno = EFBIG;
        return 0;
    }
    WriteLittle32(database.header, RecordCount, std::max(DatabaseCount(database), index + 1));
    return record.bytes.size() == DatabaseRecordSize(*database.family) &&
           IsDatabaseRecord(record.bytes) && WriteAt(database, place, record.bytes);
}

std::string DatabasePathOf(const DatabaseFamily &family) {
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
    auto database = OpenDatabase(family, path.c_str(), DatabaseUpdate);
    if (!database) {
        if (!IsForbidden(errno)) {
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
    const bool isAdded =
        isVoice && WriteDatabaseRecord(*database, DatabaseCount(*database), record);
    if (CloseDatabase(std::move(database)) && isAdded) {
        return 1;
    }
    DeleteWrittenFile(path.c_str());
    return 0;
}

} // namespace tonewright
