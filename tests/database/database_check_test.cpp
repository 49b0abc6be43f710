// Reading catalogues record by record, and looking them through for faults.
#include "database/database_check.h"
#include "database/record_reader.h"
#include "test_catalogue.h"

#include <filesystem>
#include <utility>

namespace tonewright {
namespace {

class DatabaseCheck : public CatalogueTest {
protected:
    std::shared_ptr<DatabaseHandle> Open(const TestBytes &file) const {
        WriteTestFile(Path(), file);
        return row.DatabaseOpen(Path().c_str(), DatabaseRead);
    }
    // The report, and the faulty records in the order in which they were told of.
    using Faults = std::vector<std::pair<std::uint32_t, unsigned>>;
    DatabaseReport Check(const TestBytes &file, Faults *faults = nullptr) const {
        DatabaseReport report;
        EXPECT_TRUE(CheckDatabase(*Open(file), report,
                                  [&](std::uint32_t index, unsigned fault, std::size_t) {
                                      if (faults) {
                                          faults->emplace_back(index, fault);
                                      }
                                  }));
        return report;
    }
    std::size_t Record(std::size_t index) const { return 152 + index * family.recordSize; }
};

INSTANTIATE_TEST_SUITE_P(Families, DatabaseCheck, testing::ValuesIn(TestFamilies), LabelOf);

TEST_P(DatabaseCheck, ReadsTheFirstRecordsAsFarAsTheyBegin) {
    TestBytes file = TestCatalogue(family, 700, 2); // of more than one piece
    file.resize(file.size() - 3);
    const auto database = Open(file);
    for (const std::uint32_t count : {0u, 1u, 293u, 294u, 297u, 298u, 699u, 700u, 0xFFFFFFFFu}) {
        std::uint32_t next = 0;
        EXPECT_TRUE(ReadRecords(
            *database, count, [&](std::uint32_t index, std::span<const std::uint8_t> bytes) {
                const TestBytes whole = TestRecordAt(family, static_cast<int>(index));
                EXPECT_EQ(index, next++);
                EXPECT_EQ(bytes.size(), index == 699 ? whole.size() - 3 : whole.size());
                EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), whole.begin()));
            }));
        EXPECT_EQ(next, std::min(count, 700u));
    }
    DatabaseRecord record; // the place of the stream is known again
    EXPECT_TRUE(row.DatabaseReadRecord(*database, 1, record));
    EXPECT_EQ(record.bytes, TestRecordAt(family, 1));
}

TEST_P(DatabaseCheck, ReadsWhatALoadTakes) {
    TestBytes file = TestCatalogue(family, 9, 7);
    file[Record(2)] = 'x';
    std::vector<std::uint32_t> indices;
    EXPECT_TRUE(ReadLoadedRecords(*Open(file),
                                  [&](std::uint32_t index, auto) { indices.push_back(index); }));
    EXPECT_EQ(indices, (std::vector<std::uint32_t>{0, 1, 3, 4, 5, 6}));
    file.resize(Record(6) - 1);
    indices.clear();
    EXPECT_TRUE(ReadLoadedRecords(*Open(file),
                                  [&](std::uint32_t index, auto) { indices.push_back(index); }));
    EXPECT_EQ(indices, (std::vector<std::uint32_t>{0, 1, 3, 4}));
}

TEST_P(DatabaseCheck, CountsWhatALoadTries) {
    EXPECT_EQ(RecordsToLoad(*Open(TestCatalogue(family, 5, 3))), 3u);
    EXPECT_EQ(RecordsToLoad(*Open(TestCatalogue(family, 5, 0xFFFFFFFF))), 5u);
    EXPECT_EQ(RecordsThatBegin(*Open(TestCatalogue(family, 5, 3))), 5u);
    TestBytes file = TestCatalogue(family, 5, 5);
    file.resize(Record(4) + 1);
    EXPECT_EQ(RecordsToLoad(*Open(file)), 5u);
    file.resize(Record(4));
    EXPECT_EQ(RecordsToLoad(*Open(file)), 4u);
}

TEST_P(DatabaseCheck, ReachesRecordsThatBeginBelow2GB) {
    const auto database = Open(TestCatalogue(family, 1, 0xFFFFFFFF));
    std::filesystem::resize_file(Path(), std::uintmax_t{0x80000000} + 10'000); // a hole
    const std::uint32_t last = (0x7FFFFFFF - 152) / static_cast<std::uint32_t>(family.recordSize);
    EXPECT_EQ(RecordsThatBegin(*database), last + 1);
}

TEST_P(DatabaseCheck, CountsTheBytesBeyond2GBToo) {
    TestBytes file = TestCatalogue(family, 2, 2);
    const auto database = Open(file);
    const std::uintmax_t size = std::uintmax_t{0x80000000} + 10'000;
    std::filesystem::resize_file(Path(), size); // a hole
    DatabaseReport report;
    EXPECT_TRUE(CheckDatabase(*database, report, [](auto, auto, auto) {}));
    EXPECT_EQ(report.present, 2u);
    EXPECT_EQ(report.uncounted, 0u);
    EXPECT_EQ(report.rest, size - file.size());
}

TEST_P(DatabaseCheck, FindsNothingInASoundCatalogue) {
    for (const int records : {0, 1, 40}) {
        const DatabaseReport report =
            Check(TestCatalogue(family, records, static_cast<std::uint32_t>(records)));
        EXPECT_TRUE(IsSound(report));
    }
}

TEST_P(DatabaseCheck, FindsEachFaultOfARecord) {
    const auto expect = [&](std::size_t offset, std::uint8_t value, unsigned fault) {
        TestBytes file = TestCatalogue(family, 3, 3);
        file[Record(1) + offset] = value;
        Faults faults;
        const DatabaseReport report = Check(file, &faults);
        EXPECT_EQ(faults, (Faults{{1, fault}})) << offset;
        EXPECT_EQ(report.faulty, 1u);
        EXPECT_FALSE(IsSound(report));
    };
    for (const std::size_t offset : {0, 1, 2, 3}) {
        expect(offset, 0, RecordHasNoMagic);
    }
    for (const std::size_t offset : {4, 5, 6, 7}) {
        expect(offset, 0, RecordIsOfOtherFamily);
    }
    for (const std::size_t offset : {16, 20, 24, 19, 23, 27}) {
        expect(offset, 0xFF, RecordHasOtherSizes);
    }
    for (const std::size_t offset : {28, 93}) { // 64 characters and no zero byte
        TestBytes file = TestCatalogue(family, 3, 3);
        std::fill_n(file.begin() + static_cast<std::ptrdiff_t>(Record(1) + offset), 64, 'x');
        EXPECT_TRUE(IsSound(Check(file)));
        file[Record(1) + offset + 64] = 'x';
        Faults faults;
        Check(file, &faults);
        EXPECT_EQ(faults, (Faults{{1, RecordTextHasNoEnd}}));
    }
}

TEST_P(DatabaseCheck, HoldsTheCountAgainstTheFile) {
    DatabaseReport report = Check(TestCatalogue(family, 3, 0xFFFFFFFF));
    EXPECT_EQ(report.counted, 0xFFFFFFFF);
    EXPECT_EQ(report.present, 3u);
    EXPECT_FALSE(IsSound(report));

    TestBytes file = TestCatalogue(family, 3, 3);
    file.pop_back();
    Faults faults;
    report = Check(file, &faults);
    EXPECT_EQ(faults, (Faults{{2, RecordIsShort}}));
    EXPECT_EQ(report.present, 3u);
    EXPECT_FALSE(IsSound(report));
}

TEST_P(DatabaseCheck, CountsWhatStandsBehindTheCount) {
    TestBytes file = TestCatalogue(family, 5, 2);
    file[Record(3)] = 'x';
    file.pop_back();
    Faults faults;
    const DatabaseReport report = Check(file, &faults);
    EXPECT_EQ(report.uncounted, 1u);
    EXPECT_EQ(report.rest, 2 * family.recordSize - 1);
    EXPECT_EQ(faults, Faults{});
    EXPECT_FALSE(IsSound(report));
    EXPECT_FALSE(IsSound(Check(TestCatalogue(family, 3, 2))));
    file = TestCatalogue(family, 2, 2);
    file.push_back(0);
    EXPECT_FALSE(IsSound(Check(file)));
}

} // namespace
} // namespace tonewright
