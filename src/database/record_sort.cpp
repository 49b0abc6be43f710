// Comparing and sorting records.
#include "database/record_sort.h"

#include "common/text.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tonewright {
namespace {

// Letters of both cases as one.
constexpr std::array<std::uint8_t, 256> Folded = [] {
    std::array<std::uint8_t, 256> table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte) {
        const bool isCapital = byte >= 'A' && byte <= 'Z';
        table[byte] = static_cast<std::uint8_t>(isCapital ? byte + ('a' - 'A') : byte);
    }
    return table;
}();

std::uint8_t FoldedAt(std::string_view text, std::size_t at) {
    return Folded[static_cast<unsigned char>(text[at])];
}

int CompareText(std::string_view one, std::string_view other) {
    const std::size_t size = std::min(one.size(), other.size());
    for (std::size_t at = 0; at < size; ++at) {
        if (const int difference = FoldedAt(one, at) - FoldedAt(other, at)) {
            return difference;
        }
    }
    return (one.size() > other.size()) - (one.size() < other.size());
}

// What a record is first sorted by, as a number: the higher one stands behind. Of a text, its first
// eight characters; nothing of it is left to be compared when it is shorter.
struct SortKey {
    std::uint64_t first;
    std::uint32_t index; // of the record
};

std::uint64_t FirstCharacters(std::string_view text) {
    std::uint64_t characters = 0;
    for (std::size_t at = 0; at < sizeof characters; ++at) {
        characters = characters << 8 | (at < text.size() ? FoldedAt(text, at) : 0);
    }
    return characters;
}

std::uint64_t FirstKeyOf(const DatabaseFields &fields, std::uint32_t mode) {
    switch (mode) {
    case SortBySource:
        return FirstCharacters(fields.source);
    case SortByDate:
        return fields.date;
    case SortByPosition:
        return fields.position ^ 0x80000000u; // signed
    default:
        return FirstCharacters(fields.name);
    }
}

int CompareFields(const DatabaseFields &one, const DatabaseFields &other, std::uint32_t mode) {
    const auto byNumber = [](auto a, auto b) { return (a > b) - (a < b); };
    int order = 0;
    switch (mode) {
    case SortBySource:
        order = CompareText(one.source, other.source);
        break;
    case SortByDate:
        order = byNumber(one.date, other.date);
        break;
    case SortByPosition:
        order = byNumber(static_cast<std::int32_t>(one.position),
                         static_cast<std::int32_t>(other.position));
        break;
    default:
        break;
    }
    return order != 0 ? order : CompareText(one.name, other.name);
}

} // namespace

int CompareRecords(const DatabaseRecord &one, const DatabaseRecord &other, std::uint32_t mode) {
    const auto fields = RecordFields(one), otherFields = RecordFields(other);
    return fields && otherFields ? CompareFields(*fields, *otherFields, mode) : 0;
}

void SortRecords(std::vector<DatabaseRecord> &records, std::uint32_t mode) {
    std::vector<SortKey> keys;
    std::vector<DatabaseFields> fields;
    keys.reserve(records.size());
    fields.reserve(records.size());
    for (const DatabaseRecord &record : records) {
        const std::size_t index = keys.size();
        fields.push_back(RecordFields(record).value_or(DatabaseFields{}));
        keys.push_back({FirstKeyOf(fields.back(), mode), static_cast<std::uint32_t>(index)});
    }
    std::ranges::stable_sort(keys, [&](const SortKey &one, const SortKey &other) {
        if (one.first != other.first) {
            return one.first < other.first;
        }
        return CompareFields(fields[one.index], fields[other.index], mode) < 0;
    });
    std::vector<DatabaseRecord> sorted;
    sorted.reserve(records.size());
    for (const SortKey &key : keys) {
        sorted.push_back(std::move(records[key.index]));
    }
    records = std::move(sorted);
}

} // namespace tonewright
