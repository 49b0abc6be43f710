// A catalogue: one file with a header of 152 bytes and the records of one family behind it.
//
//   offset   0  magic "TnwrTWdb"
//            8  driverId
//           12  created      seconds since 1970, low 32 bits
//           16  modified     the same; of the last close
//           20  recordCount
//           24  128 bytes, zero in a new file and carried along
//          152  the records, one behind the other
//
// All numbers are 32 bits, little-endian. What is not told here about the operations stands with
// the row of a family (core/synth_driver.h), which calls them.
#pragma once

#include "common/open_file.h"
#include "core/synth_driver.h"
#include "database/database_record.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace tonewright {

constexpr std::size_t DatabaseHeaderSize = 152;
constexpr std::size_t DatabaseCompared = 32; // of the first records a new one is no duplicate

// Modes of opening that the programs use.
constexpr std::uint32_t DatabaseRead = 1;    // for reading
constexpr std::uint32_t DatabaseReplace = 2; // an empty one in the place of any
constexpr std::uint32_t DatabaseUpdate = 3;  // for reading and writing, made if there is none

// An open catalogue.
struct DatabaseHandle {
    enum class Last { Other, Read, Write }; // what the stream has done at its place

    const DatabaseFamily *family = nullptr;
    std::array<std::uint8_t, DatabaseHeaderSize> header = {};
    std::vector<char> buffer; // of the stream, which is closed before it goes
    FilePointer file;
    std::uint64_t place = 0; // where the stream stands
    Last last = Last::Other;
};

// What is wrong with the bytes that a file begins with, as the header of a family's catalogue: the
// first of these.
enum class DatabaseHeaderFault { None, Short, Magic, Family };
DatabaseHeaderFault HeaderFaultOf(DriverId family, std::span<const std::uint8_t> bytes);
// What a header says, which is not short: the family, and the number of records.
DriverId HeaderDriver(std::span<const std::uint8_t> header);
std::uint32_t HeaderCount(std::span<const std::uint8_t> header);

// The number of records by the header.
std::uint32_t DatabaseCount(const DatabaseHandle &database);

// Bytes of the file; 2 GB where the platform cannot tell so many.
std::uint64_t DatabaseSize(DatabaseHandle &database);
// How many records begin in the file where they can be read, below 2 GB, whatever its header says.
std::uint32_t RecordsThatBegin(DatabaseHandle &database);
// Whether one more can be added to so many: it would begin below 2 GB.
bool HasRoomBehind(const DatabaseFamily &family, std::uint32_t count);

// Operations of a family's row. A catalogue that does not open leaves the reason in errno: EINVAL
// for a file that is none of the family's, and for no mode. A file that is only begun, for want of
// room, stays.
std::shared_ptr<DatabaseHandle> OpenDatabase(const DatabaseFamily &family, const char *path,
                                             std::uint32_t mode);
int CloseDatabase(std::shared_ptr<DatabaseHandle> database);
int ReadDatabaseRecord(DatabaseHandle &database, std::uint32_t index, DatabaseRecord &record);
int WriteDatabaseRecord(DatabaseHandle &database, std::uint32_t index,
                        const DatabaseRecord &record);

// Writes a new catalogue of these records, from where the file stands; `written` becomes its bytes.
// False, with the reason in errno, when not all is there; EINVAL for what is no record of the
// family, EFBIG for more than a catalogue can hold.
bool WriteDatabase(const DatabaseFamily &family, std::span<const DatabaseRecord> records,
                   std::FILE *file, std::size_t &written);

// When not empty, the path of a catalogue that stands in for the one of the settings in this run of
// the program, for whichever family it is asked.
extern std::string DatabasePathOfThisRun;

// The path of the family's catalogue that the settings name, cut at 260 bytes; "Voices.syx_db" in
// the user's documents.
std::string DatabasePathOf(const DatabaseFamily &family);
DatabaseInfoResult DatabaseInfoOf(const DatabaseFamily &family, int selector);

// Adds a voice to the catalogue at DatabasePathOf, behind its last record, with the time of the
// current document. `name`: null for the voice's own. Texts are Latin-1. What the settings ask for
// is done: texts made pretty, no duplicate among the first 32 records, for which the result is 1.
//
// A failure costs the catalogue: 0, and the file deleted, for a file that is none of the family's,
// a voice that is none, and a write that falls short. What is no regular file stays, and so does
// one that may not be opened. In careful mode the file is then as it was, or there is none again.
// errno tells why; EINVAL for what is none.
int AddToDatabase(const DatabaseFamily &family, const VoiceObject &voice, const char *name,
                  const char *source, int position);

} // namespace tonewright
