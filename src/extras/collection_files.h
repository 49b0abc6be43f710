// Which files of a folder may hold dumps, so that the archive reads them. People keep dumps beside
// sounds, pictures and programs, and many dumps have names without an extension or with one of
// their own; so a file is judged
//
//   by its name       those whose name begins with a point are hidden and left out, as are folders
//   by its size       one that is too small for a voice is left out
//   by its extension  one of dumps is read up to 1 GB
//   by its first bytes, if the extension says nothing: those of a dump are read up to 1 GB, those
//                     of sounds, pictures, archives (which are not opened) and the like are not
//   by its size       all others are read up to 1 MB
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace tonewright {

constexpr std::uint64_t SmallestDumpFile = 100;          // bytes
constexpr std::uint64_t LargestDumpFile = 1ULL << 30;    // of those that speak for themselves
constexpr std::uint64_t LargestUnknownFile = 1ULL << 20; // of all others
constexpr std::size_t FirstBytesOfFile = 16;             // as many as are looked at

// True for a name that begins with a point.
bool IsHidden(std::string_view name);

enum class FileJudgement {
    Read,
    Skip,
    TooLarge,   // it speaks for itself, and is larger than any collection of voices
    LookInside, // at its first bytes
};
FileJudgement JudgeFile(std::string_view name, std::uint64_t size);
// Of one that is to be looked into; `start` may be shorter than FirstBytesOfFile.
FileJudgement JudgeFile(std::span<const std::uint8_t> start, std::uint64_t size);

} // namespace tonewright
