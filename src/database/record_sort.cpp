// Comparing and sorting records.
#include "database/record_sort.h"

#include "common/text.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

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

// A piece of what records are sorted by, as a number: the higher one stands behind. Of a text it is
// eight characters.
struct SortKey {
    std::uint64_t piece;
    std::uint32_t index; // of the record

    auto operator<=>(const SortKey &) const = default;
};
constexpr std::size_t PieceSize = sizeof(SortKey::piece); // characters

std::uint64_t PieceOfText(std::string_view text, std::size_t from) {
    std::uint64_t piece = 0;
    for (std::size_t at = from; at < from + PieceSize; ++at) {
        piece = piece << 8 | (at < text.size() ? FoldedAt(text, at) : 0);
    }
    return piece;
}

// A text holds no zero byte, so that its last piece ends in one, or in none at its limit.
bool EndsText(std::uint64_t piece, std::size_t from) {
    return (piece & 0xFF) == 0 || from + PieceSize >= DatabaseTextSize;
}

// What is looked at next where all before is equal: a field, and where in its text.
struct SortStep {
    std::uint32_t field; // SortBy...
    std::size_t from = 0;
};

std::uint64_t PieceOf(const DatabaseRecord &record, SortStep step) {
    const auto fields = RecordFields(record);
    if (!fields) {
        return 0;
    }
    switch (step.field) {
    case SortBySource:
        return PieceOfText(fields->source, step.from);
    case SortByDate:
        return fields->date;
    case SortByPosition:
        return fields->position ^ 0x80000000u; // signed
    default:
        return PieceOfText(fields->name, step.from);
    }
}

// The step behind one in which all had this piece; nothing behind the end of the name.
std::optional<SortStep> StepBehind(SortStep step, std::uint64_t piece) {
    const bool isText = step.field == SortBySource || step.field == SortByName;
    if (isText && !EndsText(piece, step.from)) {
        return SortStep{step.field, step.from + PieceSize};
    }
    if (step.field == SortByName) {
        return std::nullopt;
    }
    return SortStep{SortByName};
}

// Sorts records that are equal in all before `step`, piece by piece, so that what is compared lies
// side by side. Equals stay in the order that they had.
void SortFrom(const std::vector<DatabaseRecord> &records, std::span<SortKey> keys, SortStep step) {
    for (SortKey &key : keys) {
        key.piece = PieceOf(records[key.index], step);
    }
    std::ranges::sort(keys);
    for (auto run = keys.begin(); run != keys.end();) {
        const std::uint64_t piece = run->piece;
        const auto end = std::find_if(run, keys.end(),
                                      [piece](const SortKey &key) { return key.piece != piece; });
        const auto next = StepBehind(step, piece);
        if (next && end - run > 1) {
            SortFrom(records, {run, end}, *next);
        }
        run = end;
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

std::vector<std::uint32_t> OrderOfRecords(const std::vector<DatabaseRecord> &records,
                                          std::uint32_t mode) {
    std::vector<SortKey> keys(records.size());
    for (std::size_t index = 0; index < keys.size(); ++index) {
        keys[index].index = static_cast<std::uint32_t>(index);
    }
    const bool isOwnField = mode >= SortBySource && mode <= SortByPosition;
    SortFrom(records, keys, {isOwnField ? mode : SortByName});
    std::vector<std::uint32_t> order(keys.size());
    std::ranges::transform(keys, order.begin(), &SortKey::index);
    return order;
}

void SortRecords(std::vector<DatabaseRecord> &records, std::uint32_t mode) {
    std::vector<DatabaseRecord> sorted;
    sorted.reserve(records.size());
    for (const std::uint32_t index : OrderOfRecords(records, mode)) {
        sorted.push_back(std::move(records[index]));
    }
    records = std::move(sorted);
}

} // namespace tonewright
