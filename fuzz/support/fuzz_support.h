// What every fuzzer needs: a desktop that says yes, a file to offer, and a check that ends the run.
#pragma once

#include "core/voice_list.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tonewright {

// Fills TheDesktop so that every question is answered with "Yes", and switches backups off.
void AnswerYesToEverything();

// The path of a file of this process in a temporary folder, which is removed at the end.
std::string FuzzPath(const std::string &name);

// Writes the input to that file and returns its path.
std::string FuzzFile(const std::string &name, std::span<const std::uint8_t> bytes);

// The bytes of a file that must be there.
std::vector<std::uint8_t> FuzzRead(const std::string &path);

// Ends the run as a finding, saying `what`, when `holds` is false.
void Demand(bool holds, const char *what);

// Ends the run when a list is not as core/voice_list.h says that it always is.
void DemandSoundList(const VoiceList &list);

} // namespace tonewright
