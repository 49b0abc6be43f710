// The archive in memory: arrays that a query walks once.
//
// Places are numbered in the order of their names, so that the places of a name, and whatever a
// search by name finds, lie side by side; files in the order of their paths, so that the files of a
// folder do; voices in the order of their identities. An order by another column is a list of place
// numbers, made when it is first asked for.
//
// Memory, in bytes: 20 for each place, 24 for each name that differs and 14 for each voice that
// differs, so 58 for a place at most; and about 4 for each place and column that was sorted by.
#include "extras/archive_index.h"

#include <algorithm>
#include <array>
#include <bit>
#include <compare>
#include <functional>
#include <limits>
#include <mutex>
#include <numeric>
#include <unordered_map>
#include <utility>

namespace tonewright {

namespace {

constexpr std::size_t NameSize = 10;
constexpr std::size_t BitsOfWord = 64;
constexpr std::size_t ColumnCount = 6;

using NameText = std::array<std::uint8_t, NameSize>; // zeros behind its end
using Bits = std::vector<std::uint64_t>;

// 64 names, folded, letter by letter: one step of a comparison does many of them.
struct NameBlock {
    std::array<std::array<std::uint8_t, BitsOfWord>, NameSize> column = {};
};

// All places in some order; without a list that of their numbers. A run is what is equal in the
// column that the order is by.
struct PlaceOrder {
    std::vector<ArchivePlaceNumber> places;
    Bits runStarts;
};

} // namespace

struct ArchiveIndex {
    // Files, in the order of their paths.
    std::string paths; // all, one behind the other
    std::vector<std::uint64_t> pathStarts = {0};
    std::vector<std::int64_t> fileIds;
    std::vector<std::uint32_t> fileFirsts; // where its places begin in the order of files
    // Names that differ, in their order.
    std::vector<NameText> names;
    std::vector<NameBlock> foldedNames;
    std::vector<ArchivePlaceNumber> nameFirsts;
    // Places, in the order of their names.
    std::vector<ArchiveVoiceNumber> placeVoices;
    std::vector<std::uint32_t> placeFiles;
    std::vector<std::uint32_t> placesInFile;
    // Voices, in the order of their identities.
    std::vector<VoiceIdentity> identities;
    std::vector<std::uint8_t> families, algorithms;
    std::vector<std::uint32_t> voiceFirsts; // where its places begin in `voicePlaces`
    std::vector<ArchivePlaceNumber> voicePlaces;

    // Those by name and by file are made with the index, the others when they are asked for.
    mutable std::array<PlaceOrder, ColumnCount> orders;
    mutable std::array<std::once_flag, ColumnCount> orderMade;
};

namespace {

// What is sorted: by `key`, then by `minor`.
struct SortEntry {
    std::uint64_t key = 0;
    std::uint32_t minor = 0;
    std::uint32_t value = 0;
};

constexpr int DigitBits = 11;

// Entries that are equal in the digit, a number below 2048, stay in the order in which they stand.
// `other` is room of the same size.
template <class Entry, class DigitOf>
void SortByDigit(std::vector<Entry> &entries, std::vector<Entry> &other, DigitOf digitOf) {
    std::array<std::size_t, std::size_t{1} << DigitBits> counts = {};
    for (const Entry &entry : entries) {
        ++counts[digitOf(entry)];
    }
    if (entries.empty() || counts[digitOf(entries.front())] == entries.size()) {
        return;
    }
    std::size_t start = 0;
    for (std::size_t &count : counts) {
        start += std::exchange(count, start);
    }
    other.resize(entries.size());
    for (const Entry &entry : entries) {
        other[counts[digitOf(entry)]++] = entry;
    }
    entries.swap(other);
}

// By the bits of a number that `numberOf` gives, from `firstBit` up.
template <class Entry, class NumberOf>
void SortByBits(std::vector<Entry> &entries, std::vector<Entry> &other, int firstBit, int endBit,
                NumberOf numberOf) {
    constexpr std::uint64_t mask = (std::uint64_t{1} << DigitBits) - 1;
    for (int bit = firstBit; bit < endBit; bit += DigitBits) {
        SortByDigit(entries, other, [bit, numberOf](const Entry &entry) {
            return std::uint64_t{numberOf(entry)} >> bit & mask;
        });
    }
}

std::size_t WordsFor(std::size_t bits) {
    return (bits + BitsOfWord - 1) / BitsOfWord;
}

bool BitAt(const Bits &bits, std::size_t place) {
    return bits[place / BitsOfWord] >> place % BitsOfWord & 1;
}

void SetBit(Bits &bits, std::size_t place) {
    bits[place / BitsOfWord] |= std::uint64_t{1} << place % BitsOfWord;
}

std::size_t CountBits(const Bits &bits) {
    std::size_t count = 0;
    for (const std::uint64_t word : bits) {
        count += std::popcount(word);
    }
    return count;
}

void SetBits(Bits &bits, std::size_t first, std::size_t end) {
    constexpr std::uint64_t all = ~std::uint64_t{0};
    if (first == end) {
        return;
    }
    const std::size_t firstWord = first / BitsOfWord;
    const std::size_t lastWord = (end - 1) / BitsOfWord;
    const std::uint64_t fromFirst = all << first % BitsOfWord;
    const std::uint64_t toLast = all >> (BitsOfWord - 1 - (end - 1) % BitsOfWord);
    if (firstWord == lastWord) {
        bits[firstWord] |= fromFirst & toLast;
        return;
    }
    bits[firstWord] |= fromFirst;
    std::fill(bits.begin() + firstWord + 1, bits.begin() + lastWord, all);
    bits[lastWord] |= toLast;
}

constexpr std::uint8_t SmallLetter = 0x20; // what it is above the capital

// Latin-1: capital letters as small ones, those with accents too.
std::uint8_t FoldedLetter(std::uint8_t letter) {
    const bool capital =
        (letter >= 'A' && letter <= 'Z') || (letter >= 0xC0 && letter <= 0xDE && letter != 0xD7);
    return capital ? letter + SmallLetter : letter;
}

NameText TextOfName(const std::array<std::uint8_t, NameSize> &bytes) {
    const std::string text = MakeVoiceNameText(bytes);
    NameText padded = {};
    std::copy(text.begin(), text.end(), padded.begin());
    return padded;
}

// Names in their order: by folded letters, then those with a capital behind.
SortEntry EntryOfName(const NameText &name, std::uint32_t value) {
    SortEntry entry;
    entry.value = value;
    std::uint32_t capitals = 0;
    for (std::size_t place = 0; place < NameSize; ++place) {
        const std::uint8_t letter = FoldedLetter(name[place]);
        capitals = capitals << 1 | (letter != name[place] ? 1 : 0);
        if (place < 8) {
            entry.key = entry.key << 8 | letter;
        } else {
            entry.minor = entry.minor << 8 | letter;
        }
    }
    entry.minor = entry.minor << NameSize | capitals;
    return entry;
}
constexpr int NameMinorBits = 16 + NameSize;

NameText FoldedNameOf(const SortEntry &entry) {
    NameText folded;
    for (std::size_t place = 0; place < 8; ++place) {
        folded[place] = static_cast<std::uint8_t>(entry.key >> (56 - 8 * place));
    }
    folded[8] = static_cast<std::uint8_t>(entry.minor >> (NameSize + 8));
    folded[9] = static_cast<std::uint8_t>(entry.minor >> NameSize);
    return folded;
}

NameText NameOf(const SortEntry &entry) {
    NameText name = FoldedNameOf(entry);
    for (std::size_t place = 0; place < NameSize; ++place) {
        const bool capital = entry.minor >> (NameSize - 1 - place) & 1;
        name[place] -= capital ? SmallLetter : 0;
    }
    return name;
}

// Takes the places as they are handed over, and then makes the index of them.
struct IndexMaker {
    struct Arrival {
        VoiceIdentity identity;
        NameText name;
        std::uint8_t family, algorithm;
    };
    // Arrivals side by side that are so in their file too.
    struct Piece {
        std::uint32_t file;
        std::uint64_t first; // place in the file
        std::size_t start, count;

        auto operator<=>(const Piece &) const = default;
    };

    std::shared_ptr<ArchiveIndex> index = std::make_shared<ArchiveIndex>();
    std::unordered_map<std::int64_t, std::uint32_t> fileNumbers;
    std::vector<Arrival> arrivals;
    std::vector<Piece> pieces;

    void TakeFiles(std::span<const ArchiveFolder> folders, std::span<const ArchiveFile> files);
    void TakePlaces(std::int64_t file, std::uint64_t first, std::span<const ArchivePlace> places);
    void Finish();
};

void IndexMaker::TakeFiles(std::span<const ArchiveFolder> folders,
                           std::span<const ArchiveFile> files) {
    std::unordered_map<std::int64_t, const std::string *> folderPaths;
    for (const ArchiveFolder &folder : folders) {
        folderPaths[folder.id] = &folder.path;
    }
    struct PathOfFile {
        std::string path;
        std::int64_t id;
    };
    std::vector<PathOfFile> paths;
    std::size_t voices = 0;
    for (const ArchiveFile &file : files) {
        const auto folder = folderPaths.find(file.folder);
        if (file.voices > 0 && folder != folderPaths.end()) {
            paths.push_back({PathInFolder(*folder->second, file.name), file.id});
            voices += file.voices;
        }
    }
    std::ranges::sort(paths, {}, &PathOfFile::path);
    for (const PathOfFile &file : paths) {
        fileNumbers[file.id] = static_cast<std::uint32_t>(index->fileIds.size());
        index->fileIds.push_back(file.id);
        index->paths += file.path;
        index->pathStarts.push_back(index->paths.size());
    }
    arrivals.reserve(voices);
}

void IndexMaker::TakePlaces(std::int64_t file, std::uint64_t first,
                            std::span<const ArchivePlace> places) {
    const auto number = fileNumbers.find(file);
    if (number == fileNumbers.end()) {
        return;
    }
    pieces.push_back({number->second, first, arrivals.size(), places.size()});
    for (const ArchivePlace &place : places) {
        arrivals.push_back({place.identity, TextOfName(place.name), place.family, place.algorithm});
    }
}

// Numbers the names, and by them the places; gives the numbers of the places in the order of
// `entries` before they were sorted by name.
std::vector<ArchivePlaceNumber> NumberPlaces(ArchiveIndex &index, std::vector<SortEntry> &entries,
                                             std::vector<SortEntry> &other) {
    SortByBits(entries, other, 0, NameMinorBits, std::mem_fn(&SortEntry::minor));
    SortByBits(entries, other, 0, 64, std::mem_fn(&SortEntry::key));
    std::vector<ArchivePlaceNumber> numbers(entries.size());
    Bits &runStarts = index.orders[static_cast<std::size_t>(ArchiveColumn::Name)].runStarts;
    runStarts.resize(WordsFor(entries.size()));
    for (std::uint32_t number = 0; number < entries.size(); ++number) {
        const SortEntry &entry = entries[number];
        numbers[entry.value] = number;
        if (number > 0 && entry.key == entries[number - 1].key &&
            entry.minor == entries[number - 1].minor) {
            continue;
        }
        const std::size_t inBlock = index.names.size() % BitsOfWord;
        if (inBlock == 0) {
            index.foldedNames.emplace_back();
        }
        const NameText folded = FoldedNameOf(entry);
        for (std::size_t letter = 0; letter < NameSize; ++letter) {
            index.foldedNames.back().column[letter][inBlock] = folded[letter];
        }
        index.names.push_back(NameOf(entry));
        index.nameFirsts.push_back(number);
        SetBit(runStarts, number);
    }
    index.nameFirsts.push_back(static_cast<ArchivePlaceNumber>(entries.size()));
    return numbers;
}

// `entries` are in the order of files, the key being the identity and the minor one family and
// algorithm; `numbers` those of the places.
void NumberVoices(ArchiveIndex &index, std::vector<SortEntry> &entries,
                  std::vector<SortEntry> &other, std::span<const ArchivePlaceNumber> numbers) {
    SortByBits(entries, other, 0, 64, std::mem_fn(&SortEntry::key));
    index.placeVoices.resize(entries.size());
    index.voicePlaces.resize(entries.size());
    std::uint32_t place = 0;
    for (const SortEntry &entry : entries) {
        if (index.identities.empty() || index.identities.back() != entry.key) {
            index.identities.push_back(entry.key);
            index.families.push_back(static_cast<std::uint8_t>(entry.minor >> 8));
            index.algorithms.push_back(static_cast<std::uint8_t>(entry.minor));
            index.voiceFirsts.push_back(place);
        }
        const ArchivePlaceNumber number = numbers[entry.value];
        index.placeVoices[number] = static_cast<std::uint32_t>(index.identities.size() - 1);
        index.voicePlaces[place++] = number;
    }
    index.voiceFirsts.push_back(place);
}

void IndexMaker::Finish() {
    std::ranges::sort(pieces);
    std::vector<SortEntry> names(arrivals.size());
    std::vector<SortEntry> voices(arrivals.size());
    std::uint32_t place = 0;
    for (const Piece &piece : pieces) {
        for (const Arrival &arrival : std::span(arrivals).subspan(piece.start, piece.count)) {
            names[place] = EntryOfName(arrival.name, place);
            voices[place] = {arrival.identity,
                             static_cast<std::uint32_t>(arrival.family << 8 | arrival.algorithm),
                             place};
            ++place;
        }
    }
    std::vector<Arrival>().swap(arrivals);

    std::vector<SortEntry> other;
    std::vector<ArchivePlaceNumber> numbers = NumberPlaces(*index, names, other);
    std::vector<SortEntry>().swap(names);
    NumberVoices(*index, voices, other, numbers);

    index->placeFiles.resize(numbers.size());
    index->placesInFile.resize(numbers.size());
    index->fileFirsts.assign(index->fileIds.size() + 1, 0);
    PlaceOrder &byFile = index->orders[static_cast<std::size_t>(ArchiveColumn::File)];
    byFile.runStarts.resize(WordsFor(numbers.size()));
    place = 0;
    for (const Piece &piece : pieces) {
        if (piece.count > 0 && index->fileFirsts[piece.file + 1] == 0) {
            SetBit(byFile.runStarts, place);
        }
        index->fileFirsts[piece.file + 1] += static_cast<std::uint32_t>(piece.count);
        for (std::size_t inPiece = 0; inPiece < piece.count; ++inPiece) {
            const ArchivePlaceNumber number = numbers[place++];
            index->placeFiles[number] = piece.file;
            index->placesInFile[number] = static_cast<std::uint32_t>(piece.first + inPiece);
        }
    }
    std::partial_sum(index->fileFirsts.begin(), index->fileFirsts.end(), index->fileFirsts.begin());
    byFile.places = std::move(numbers);
}

// What an order by a column compares: equal for equal.
std::uint32_t KeyOf(const ArchiveIndex &index, ArchiveColumn column, ArchivePlaceNumber place) {
    const ArchiveVoiceNumber voice = index.placeVoices[place];
    switch (column) {
    case ArchiveColumn::Instrument:
        return index.families[voice];
    case ArchiveColumn::Algorithm:
        return index.algorithms[voice];
    case ArchiveColumn::Times:
        return index.voiceFirsts[voice + 1] - index.voiceFirsts[voice];
    case ArchiveColumn::Place:
        return index.placesInFile[place];
    case ArchiveColumn::Name:
    case ArchiveColumn::File:
        break; // their orders are there from the start
    }
    return 0;
}

const PlaceOrder &OrderBy(const ArchiveIndex &index, ArchiveColumn column) {
    const auto number = static_cast<std::size_t>(column);
    PlaceOrder &order = index.orders[number];
    if (column == ArchiveColumn::Name || column == ArchiveColumn::File) {
        return order;
    }
    std::call_once(index.orderMade[number], [&] {
        std::vector<std::uint64_t> entries(index.placeVoices.size()); // key, place
        std::vector<std::uint64_t> other;
        std::uint64_t keyBits = 0;
        for (ArchivePlaceNumber place = 0; place < entries.size(); ++place) {
            const std::uint64_t key = KeyOf(index, column, place);
            entries[place] = key << 32 | place;
            keyBits |= key;
        }
        SortByBits(entries, other, 32, 32 + std::bit_width(keyBits), std::identity());
        order.places.resize(entries.size());
        order.runStarts.resize(WordsFor(entries.size()));
        for (std::size_t place = 0; place < entries.size(); ++place) {
            order.places[place] = static_cast<ArchivePlaceNumber>(entries[place]);
            if (place == 0 || entries[place] >> 32 != entries[place - 1] >> 32) {
                SetBit(order.runStarts, place);
            }
        }
    });
    return order;
}

// Where the run begins that holds the place in front of `end`, which is not 0.
std::size_t RunStartBefore(const Bits &runStarts, std::size_t end) {
    std::size_t word = (end - 1) / BitsOfWord;
    std::uint64_t bits =
        runStarts[word] & ~std::uint64_t{0} >> (BitsOfWord - 1 - (end - 1) % BitsOfWord);
    while (bits == 0) {
        bits = runStarts[--word];
    }
    return word * BitsOfWord + std::bit_width(bits) - 1;
}

template <class Visit>
void VisitPlaces(const PlaceOrder &order, std::size_t first, std::size_t end, Visit visit) {
    if (order.places.empty()) {
        for (std::size_t place = first; place < end; ++place) {
            visit(static_cast<ArchivePlaceNumber>(place));
        }
        return;
    }
    for (std::size_t place = first; place < end; ++place) {
        visit(order.places[place]);
    }
}

template <class Visit>
void VisitInOrder(const PlaceOrder &order, std::size_t count, bool descending, Visit visit) {
    if (!descending) {
        VisitPlaces(order, 0, count, visit);
        return;
    }
    for (std::size_t end = count; end > 0;) {
        const std::size_t start = RunStartBefore(order.runStarts, end);
        VisitPlaces(order, start, end, visit);
        end = start;
    }
}

std::vector<std::string> FoldedWords(std::string_view text) {
    std::vector<std::string> words;
    bool within = false;
    for (const char character : text) {
        const auto byte = static_cast<std::uint8_t>(character);
        if (byte <= ' ') {
            within = false;
            continue;
        }
        if (!within) {
            words.emplace_back();
            within = true;
        }
        words.back() += static_cast<char>(FoldedLetter(byte));
    }
    return words;
}

// A bit for each name of the block that holds the word.
std::uint64_t NamesWithWord(const NameBlock &block, std::string_view word) {
    std::array<std::uint8_t, BitsOfWord> found = {};
    for (std::size_t start = 0; start + word.size() <= NameSize; ++start) {
        std::array<std::uint8_t, BitsOfWord> here;
        here.fill(1);
        for (std::size_t letter = 0; letter < word.size(); ++letter) {
            const auto &column = block.column[start + letter];
            const auto wanted = static_cast<std::uint8_t>(word[letter]);
            for (std::size_t name = 0; name < BitsOfWord; ++name) {
                here[name] &= column[name] == wanted ? 1 : 0;
            }
        }
        for (std::size_t name = 0; name < BitsOfWord; ++name) {
            found[name] |= here[name];
        }
    }
    std::uint64_t bits = 0;
    for (std::size_t name = 0; name < BitsOfWord; ++name) {
        bits |= std::uint64_t{found[name]} << name;
    }
    return bits;
}

// A bit for each place whose name holds all words.
Bits PlacesWithWords(const ArchiveIndex &index, std::span<const std::string> words) {
    Bits bits(WordsFor(index.placeVoices.size()));
    if (words.empty()) {
        SetBits(bits, 0, index.placeVoices.size());
        return bits;
    }
    for (std::size_t block = 0; block < index.foldedNames.size(); ++block) {
        std::uint64_t names = ~std::uint64_t{0};
        for (std::size_t word = 0; word < words.size() && names != 0; ++word) {
            names &= NamesWithWord(index.foldedNames[block], words[word]);
        }
        for (; names != 0; names &= names - 1) {
            const std::size_t name = block * BitsOfWord + std::countr_zero(names);
            SetBits(bits, index.nameFirsts[name], index.nameFirsts[name + 1]);
        }
    }
    return bits;
}

std::string_view PathOfFile(const ArchiveIndex &index, std::size_t file) {
    const std::uint64_t start = index.pathStarts[file];
    return std::string_view(index.paths).substr(start, index.pathStarts[file + 1] - start);
}

// The first file whose path does not come before.
std::size_t FirstFileFrom(const ArchiveIndex &index, std::string_view path) {
    std::size_t first = 0;
    std::size_t end = index.fileIds.size();
    while (first < end) {
        const std::size_t middle = (first + end) / 2;
        if (PathOfFile(index, middle) < path) {
            first = middle + 1;
        } else {
            end = middle;
        }
    }
    return first;
}

// Leaves the bits of places in files of the folder, or below it.
void KeepPlacesBelow(Bits &bits, const ArchiveIndex &index, std::string_view folder) {
    while (folder.ends_with('/')) {
        folder.remove_suffix(1);
    }
    const std::size_t first = FirstFileFrom(index, std::string(folder) + '/');
    const std::size_t end = FirstFileFrom(index, std::string(folder) + static_cast<char>('/' + 1));
    Bits below(bits.size());
    const PlaceOrder &byFile = OrderBy(index, ArchiveColumn::File);
    for (std::size_t place = index.fileFirsts[first]; place < index.fileFirsts[end]; ++place) {
        SetBit(below, byFile.places[place]);
    }
    for (std::size_t word = 0; word < bits.size(); ++word) {
        bits[word] &= below[word];
    }
}

bool VoiceFits(const ArchiveIndex &index, ArchiveVoiceNumber voice, const ArchiveQuery &query) {
    return (query.family < 0 || index.families[voice] == query.family) &&
           (query.algorithm == 0 || index.algorithms[voice] == query.algorithm) &&
           (!query.onlyRepeated || index.voiceFirsts[voice + 1] - index.voiceFirsts[voice] > 1);
}

// A bit for each voice that is not to be found.
Bits VoicesToLeaveOut(const ArchiveIndex &index, const ArchiveQuery &query) {
    Bits bits(WordsFor(index.identities.size()));
    if (query.family < 0 && query.algorithm == 0 && !query.onlyRepeated) {
        return bits;
    }
    for (ArchiveVoiceNumber voice = 0; voice < index.identities.size(); ++voice) {
        if (!VoiceFits(index, voice, query)) {
            SetBit(bits, voice);
        }
    }
    return bits;
}

// Takes the places of a query in their order. They go through a batch in steps of which none waits
// for the memory or the branch of the place before.
struct HitList {
    const ArchiveIndex &index;
    const Bits &fits; // of places
    Bits done;        // of voices
    std::vector<ArchiveHit> hits = {};
    std::size_t count = 0; // in the batch
    std::array<ArchivePlaceNumber, 256> places = {};

    void Add(ArchivePlaceNumber place) {
        places[count] = place;
        count += BitAt(fits, place);
        if (count == places.size()) {
            Flush();
        }
    }
    void Flush();
};

void HitList::Flush() {
    std::array<ArchiveVoiceNumber, 256> voices;
    for (std::size_t place = 0; place < count; ++place) {
        voices[place] = index.placeVoices[places[place]];
    }
    std::array<ArchiveHit, 256> found;
    std::size_t foundCount = 0;
    for (std::size_t place = 0; place < count; ++place) {
        found[foundCount] = {voices[place], places[place]};
        foundCount += !BitAt(done, voices[place]);
        SetBit(done, voices[place]);
    }
    hits.insert(hits.end(), found.begin(), found.begin() + foundCount);
    count = 0;
}

} // namespace

std::shared_ptr<const ArchiveIndex> MakeArchiveIndex(const ArchiveContent &content) {
    IndexMaker maker;
    maker.TakeFiles(content.folders, content.files);
    for (const ArchiveContent::Places &piece : content.places) {
        maker.TakePlaces(piece.file, piece.first, piece.places);
    }
    maker.Finish();
    return maker.index;
}

std::shared_ptr<const ArchiveIndex> LoadArchiveIndex(ArchiveStore &store, ArchiveError &error,
                                                     const std::function<bool()> &cancelled) {
    const ArchiveSnapshot snapshot(store);
    IndexMaker maker;
    const std::vector<ArchiveFolder> folders = ArchiveFolders(store, error);
    if (error) {
        return nullptr;
    }
    bool stopped = false;
    const auto goOn = [&cancelled, &stopped] {
        stopped = stopped || (cancelled && cancelled());
        return !stopped;
    };
    std::vector<ArchiveFile> files;
    const auto takeFile = [&files](ArchiveFile &file) {
        if (file.voices > 0) {
            files.push_back(std::move(file));
        }
        return true;
    };
    if (!ReadArchiveFiles(store, takeFile, error) || !goOn()) {
        return nullptr;
    }
    maker.TakeFiles(folders, files);
    const auto takePlaces = [&](std::int64_t file, std::uint64_t first,
                                std::span<const ArchivePlace> places) {
        maker.TakePlaces(file, first, places);
        return goOn();
    };
    if (!ReadArchivePlaces(store, takePlaces, error) || !goOn()) {
        return nullptr;
    }
    maker.Finish();
    return maker.index;
}

std::size_t VoiceCount(const ArchiveIndex &index) {
    return index.identities.size();
}

std::size_t PlaceCount(const ArchiveIndex &index) {
    return index.placeVoices.size();
}

ArchiveVoiceInfo VoiceInfo(const ArchiveIndex &index, ArchiveVoiceNumber voice) {
    return {index.identities[voice], index.families[voice], index.algorithms[voice],
            index.voiceFirsts[voice + 1] - index.voiceFirsts[voice]};
}

std::span<const ArchivePlaceNumber> PlacesOf(const ArchiveIndex &index, ArchiveVoiceNumber voice) {
    const std::uint32_t first = index.voiceFirsts[voice];
    return std::span(index.voicePlaces).subspan(first, index.voiceFirsts[voice + 1] - first);
}

ArchivePlaceInfo PlaceInfo(const ArchiveIndex &index, ArchivePlaceNumber place) {
    const auto next = std::ranges::upper_bound(index.nameFirsts, place);
    const NameText &name = index.names[next - index.nameFirsts.begin() - 1];
    return {{name.begin(), std::ranges::find(name, std::uint8_t{0})},
            std::string(PathOfFile(index, index.placeFiles[place])),
            index.placesInFile[place]};
}

std::optional<ArchiveVoiceNumber> VoiceOfIdentity(const ArchiveIndex &index,
                                                  VoiceIdentity identity) {
    const auto found = std::ranges::lower_bound(index.identities, identity);
    if (found == index.identities.end() || *found != identity) {
        return {};
    }
    return static_cast<ArchiveVoiceNumber>(found - index.identities.begin());
}

std::vector<ArchiveHit> FindInArchive(const ArchiveIndex &index, const ArchiveQuery &query) {
    Bits fits = PlacesWithWords(index, FoldedWords(query.text));
    if (!query.folder.empty()) {
        KeepPlacesBelow(fits, index, query.folder);
    }
    HitList list{index, fits, VoicesToLeaveOut(index, query)};
    list.hits.reserve(std::min(CountBits(fits), VoiceCount(index) - CountBits(list.done)));
    VisitInOrder(OrderBy(index, query.sort), PlaceCount(index), query.descending,
                 [&list](ArchivePlaceNumber place) { list.Add(place); });
    list.Flush();
    return std::move(list.hits);
}

std::vector<SimilarVoice> FindSimilar(const ArchiveIndex &index, ArchiveStore &store,
                                      const DumpVoice &voice, std::size_t count,
                                      ArchiveError &error) {
    const VoiceComparison comparison = CompareWith(FeaturesOf(voice));
    const VoiceIdentity identity = IdentityOf(voice);
    std::unordered_map<std::int64_t, std::uint32_t> fileNumbers;
    for (std::uint32_t file = 0; file < index.fileIds.size(); ++file) {
        fileNumbers[index.fileIds[file]] = file;
    }
    const PlaceOrder &byFile = OrderBy(index, ArchiveColumn::File);
    std::vector<SimilarVoice> nearest; // the nearest first
    float limit = std::numeric_limits<float>::max();
    const auto takeVoice = [&](ArchiveVoiceNumber found, float distance) {
        if (index.identities[found] == identity ||
            std::ranges::find(nearest, found, &SimilarVoice::voice) != nearest.end()) {
            return;
        }
        nearest.insert(std::ranges::upper_bound(nearest, distance, {}, &SimilarVoice::distance),
                       {found, distance});
        if (nearest.size() > count) {
            nearest.pop_back();
        }
        if (nearest.size() == count) {
            limit = nearest.back().distance;
        }
    };
    const auto takePiece = [&](std::int64_t file, std::uint64_t first,
                               std::span<const VoiceFeatures> features) {
        const auto number = fileNumbers.find(file);
        if (number == fileNumbers.end()) {
            return true;
        }
        // The archive may have grown since it was read.
        const std::span<const ArchivePlaceNumber> places =
            std::span(byFile.places)
                .subspan(index.fileFirsts[number->second],
                         index.fileFirsts[number->second + 1] - index.fileFirsts[number->second]);
        for (std::size_t place = first; place - first < features.size() && place < places.size();
             ++place) {
            const float distance = DistanceWithin(comparison, features[place - first], limit);
            if (distance < limit) {
                takeVoice(index.placeVoices[places[place]], distance);
            }
        }
        return true;
    };
    if (count == 0 || !ReadArchiveFeatures(store, takePiece, error)) {
        return {};
    }
    if (nearest.empty() && LacksArchiveFeatures(store, error)) {
        error.text = "The archive is to be updated first: another version of the program has made "
                     "it.";
    }
    return nearest;
}

} // namespace tonewright
