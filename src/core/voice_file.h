// A format of voice files: how a file is judged and listed without opening it as a document.
#pragma once

#include "core/voice_object.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

class QWidget;

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

// A file that is refused, for that reason; and one that is too short.
VoiceFileReport RefusedFile(std::string reason);
VoiceFileReport ShortFile(std::size_t size, std::uint64_t wholeSize);

// Whether a message can carry these bytes: one above 7F would break it off.
bool FitAMessage(std::span<const std::uint8_t> bytes);

// Asks whether to open a damaged file all the same.
bool AskToOpenDamaged(QWidget *window, const char *path);

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
    // Whether such a file keeps all bytes of a row that can be written.
    bool (*isKept)(const VoiceObject *voice) = nullptr; // nullptr: of each
    // Whether a row holds a voice that can be sent to the instrument.
    bool (*canBeSent)(const VoiceObject *voice);
    // Whether a message can carry the bytes of such a voice; nullptr where nothing is sent.
    bool (*fitsAMessage)(const VoiceObject *voice) = nullptr;
    // How many voices of a file that was not refused have bytes that no message can carry.
    std::size_t (*misfits)(std::span<const std::uint8_t> bytes) = nullptr;
    // What a file holds that was refused as what its extension says, when that is of this kind in
    // any form: words behind "but", with an article; else empty. `bytes`: the file from its start.
    std::string (*recognise)(std::span<const std::uint8_t> bytes) = nullptr;
    // Whether a row of a download arrived whole; nullptr where nothing is downloaded.
    bool (*cameWhole)(const VoiceObject *voice) = nullptr;
    int voicesWritten; // by each file
};

} // namespace tonewright
