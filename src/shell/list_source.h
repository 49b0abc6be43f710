// Lists that came from elsewhere in the place of a document: where from, and what the document was
// like.
#pragma once

#include "core/midi_ports.h"
#include "core/voice_object.h"
#include "shell/list_origin.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tonewright {

// What an Undo brings back beside the voices.
struct ReplacedDocument {
    std::string path;
    std::int64_t time = 0;
    DocumentFile file;
    DriverId family = NoDriverId;
    MidiPorts ports;
    std::uint32_t firmware = 0;
};

// The present list, by MainListOrigin, came from there (in words, UTF-8; empty for nothing to say)
// in the place of that document. Lists before `oldestOrigin`, to which neither the list nor a level
// of undo leads back, are forgotten.
void KeepListSource(const std::string &source, ReplacedDocument document, int oldestOrigin);

// Where the voices of the list come from; empty when they are those of the document.
std::string SourceOfList();

// The document that was there when the present list, which Undo has brought back, was replaced;
// nothing when it was not, or when this has been asked before.
std::optional<ReplacedDocument> TakeReplacedDocument();

void ForgetListSources();

} // namespace tonewright
