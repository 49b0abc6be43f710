// Looks into the voice files of every family whose driver reads them, without opening them as a
// document: what kind a file is, whether it is whole, and its voices' names and algorithms.
#pragma once

#include "core/voice_object.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright {

enum class VoiceFileKind { Bank, SingleVoice };

enum class VoiceFileState {
    Ok,
    Refused, // cannot be read as what its extension says
    Damaged, // can be read when the user says so
};

struct VoiceFileReport {
    VoiceFileState state = VoiceFileState::Ok;
    std::string reason; // in words, unless Ok
};

struct VoiceLine {
    std::string_view name; // Latin-1; valid until the next call
    int algorithm = 0;     // from 1; 0 where a file holds something else than a voice
};

struct VoiceFileFormat {
    DriverId driver;
    VoiceFileKind kind;
    std::size_t size; // bytes of a file as the program writes it
    // Bytes of a whole file, by its first `size` bytes; what follows them is ignored.
    std::uint64_t (*wholeSize)(std::span<const std::uint8_t> bytes);
    // `bytes`: the file from its start, whole if it is.
    VoiceFileReport (*judge)(std::span<const std::uint8_t> bytes);
    // Of a file that was not refused; `index` from 0.
    std::size_t (*count)(std::span<const std::uint8_t> bytes);
    VoiceLine (*voice)(std::span<const std::uint8_t> bytes, std::size_t index);
    // Whether a row of a list can be written into such a file.
    bool (*canBeWritten)(const VoiceObject *voice);
    // Whether a row holds a voice that can be sent to the instrument.
    bool (*canBeSent)(const VoiceObject *voice);
    // Whether a row of a download arrived whole; nullptr where nothing is downloaded.
    bool (*cameWhole)(const VoiceObject *voice);
    int voicesWritten; // by each file
};

// The format of a driver's files, or nullptr while the driver's row leaves its reader empty.
const VoiceFileFormat *FormatOfDriver(DriverId driver, VoiceFileKind kind);

// The format that a path's extension, in any case of letters, stands for; nullptr for none.
const VoiceFileFormat *FormatOfPath(std::string_view path);

// Why FormatOfPath knows no format for a path.
std::string UnknownFormatReason();

// Reads the file's start and judges it. A file that cannot be read counts as refused; `bytes` is
// then empty.
VoiceFileReport ReadVoiceFile(const char *path, const VoiceFileFormat &format,
                              std::vector<std::uint8_t> &bytes);

} // namespace tonewright
