// What the window "Open any dump" shows of a file, and what it does with the voices that the user
// picks. The window itself is extras/view/dump_box. Texts are UTF-8.
#pragma once

#include "extras/dump_reader.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

class QWidget;

namespace tonewright {

// Of a file with more, the rest is counted and not shown.
constexpr std::size_t MostDumpsShown = 100'000;
constexpr std::size_t MostDumpVoicesShown = 100'000;

enum class DumpsReading { Whole, Cancelled, Failed };

struct DumpContents {
    std::string path;
    DumpsReading reading = DumpsReading::Whole;
    std::string failure = {}; // why it could not be read
    std::vector<FoundDump> dumps = {};
    std::vector<std::size_t> firstVoices = {}; // of each dump, among `voices`
    std::vector<KeptVoice> voices = {};        // of all dumps, in their order
    // Of all that was read, shown or not.
    std::uint64_t dumpsFound = 0, voicesFound = 0;
    std::uint64_t dumpsWithVoices = 0, faultyDumps = 0; // with voices, and something wrong with it
};

// Called from time to time with the bytes read so far and those of the file, 0 when that is not
// known; false ends the reading, and what was found up to there is kept.
using DumpsProgress = std::function<bool(std::uint64_t read, std::uint64_t size)>;
DumpContents ReadDumpContents(const std::string &path, const DumpsProgress &progress = {});

// The numbers of the voices that are shown of a dump: from firstVoices on.
std::size_t ShownVoicesOf(const DumpContents &contents, std::size_t dump);

// The file in a sentence or two: how many dumps and voices there are, or why none.
std::string DumpsInWords(const DumpContents &contents);
// A dump in a sentence: what it is, where it stands and what is wrong with it.
std::string DumpInWords(const FoundDump &dump);
// "DX7", "reface DX"; of a voice.
std::string InstrumentOfVoice(const KeptVoice &voice);

// What the two buttons do with voices of the file, by their numbers in `contents.voices`, which
// rise. Both ask where voices have bytes above 7F. The list is reached through TheListAccess.
//
// A new bank of the first 32 of them, of which a question is asked when there are more. False when
// the user thought better of it, or there was nothing to do.
bool TakeAsNewBank(QWidget *owner, const DumpContents &contents,
                   std::span<const std::size_t> numbers);
// Into the list from that row on, from 0, as many as it has rows for. How many were put, 0 for
// none.
int TakeIntoList(QWidget *owner, const DumpContents &contents, std::span<const std::size_t> numbers,
                 int row);
// "Put at rows 30 to 32, no room for 2"; the row from 1, of at least one voice.
std::string PutInWords(int row, int put, std::size_t wanted);

} // namespace tonewright
