// Takes the voices of the archive out of their files.
#pragma once

#include "extras/archive_index.h"
#include "extras/dump_voice.h"

#include <optional>

namespace tonewright {

// Reads a voice from its file. Where it does not stand there any more, it is taken from another of
// its places, whichever still holds it; one with the same name goes before others. Nothing: no
// place holds it any more.
std::optional<KeptVoice> ReadArchiveVoice(const ArchiveIndex &index, ArchiveHit hit);

} // namespace tonewright
