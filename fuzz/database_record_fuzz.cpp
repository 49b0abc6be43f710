// Any bytes as two records of a catalogue: fields and voices lie within them, and comparing,
// sorting and undoing agree with each other.
#include "common/settings.h"
#include "database/database_undo.h"
#include "database/record_list.h"
#include "database/record_sort.h"
#include "support/fuzz_support.h"

#include <algorithm>

using namespace tonewright;

namespace {

void LookInto(const DatabaseRecord &record) {
    const auto fields = RecordFields(record);
    const VoiceObject voice = RecordToVoice(record);
    Demand(fields || voice.bytes.empty(), "what has no fields has no voice");
    Demand(voice.bytes.empty() || (PayloadOf(voice) && RecordSizeOf(voice) == voice.bytes.size()),
           "a voice is a whole block");
    if (!fields) {
        return;
    }
    for (const std::string_view text : {fields->name, fields->source}) {
        Demand(text.size() <= DatabaseTextSize && text.find('\0') == text.npos, "a text ends");
        const std::string pretty = MakePrettyName(text);
        Demand(pretty.size() <= text.size() && pretty.find("  ") == pretty.npos,
               "a pretty text is no longer, and has no two blanks");
        Demand(MakePrettyName(pretty) == pretty, "a pretty text is pretty");
    }
}

int SignOf(int number) {
    return (number > 0) - (number < 0);
}

void Compare(const DatabaseRecord &one, const DatabaseRecord &other) {
    Demand(AreDuplicates(one, other) == AreDuplicates(other, one), "both are duplicates or none");
    for (std::uint32_t mode = SortByName; mode <= SortByPosition + 1; ++mode) {
        const int order = SignOf(CompareRecords(one, other, mode));
        Demand(order == -SignOf(CompareRecords(other, one, mode)), "one stands behind the other");
        Demand(CompareRecords(one, one, mode) == 0, "a record stands with itself");
        std::vector<DatabaseRecord> records = {other, one};
        SortRecords(records, mode);
        Demand(!RecordFields(one) || !RecordFields(other) ||
                   records[0] == (order < 0 ? one : other),
               "sorting goes by comparing, and keeps equals in their order");
    }
}

void UndoThem(const DatabaseRecord &one, const DatabaseRecord &other) {
    DatabaseUndoInit(nullptr);
    RecordList list;
    RecordListFill(list, {one, other});
    ListSelect(list, 1);
    const auto before = list.items;
    if (ListCount(list) > 0 && DatabaseUndoPush(nullptr, list, true)) {
        std::uint32_t changed = 0;
        RecordListDelete(list, 0);
        Demand(DatabaseUndoPop(nullptr, list, changed) == 1 && changed == 1, "a level comes back");
        Demand(list.items == before, "with every byte");
    }
    Demand(!RecordListFault(list), "the list is sound");
    DatabaseUndoEnd();
}

// `bytes` as a record, with a right magic.
DatabaseRecord WithMagic(std::span<const std::uint8_t> bytes) {
    DatabaseRecord record{{bytes.begin(), bytes.end()}};
    if (record.bytes.size() >= 4) {
        WriteLittle32(record.bytes, 0, DatabaseRecordMagic);
    }
    return record;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    AnswerYesToEverything();
    DatabaseSortMode = SortByName;
    const std::span<const std::uint8_t> input(data, size);
    const DatabaseRecord raw{{input.begin(), input.end()}};
    const DatabaseRecord one = WithMagic(input.first(size / 2));
    const DatabaseRecord other = WithMagic(input.subspan(size / 2));
    for (const DatabaseRecord *record : {&raw, &one, &other}) {
        LookInto(*record);
    }
    Compare(one, other);
    UndoThem(one, other);
    return 0;
}
