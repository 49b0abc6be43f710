// What a kill leaves of a catalogue that is just added to, made or stored, what a load, the next
// add and the check make of it.
#include "core/dispatch.h"
#include "database/database_check.h"
#include "database/database_names.h"
#include "database/record_list.h"
#include "support/killed_child.h"
#include "test_catalogue.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <random>
#include <string>
#include <utility>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

constexpr int Kills = 50; // of each family

class KilledDatabase : public CatalogueTest {
protected:
    KilledDatabase() {
        DatabaseMakePrettyNames = 0;
        DatabaseNoDuplicates = 0;
    }

    // The record of Add(number, nullptr, "a.syx", number).
    TestBytes AddedRecord(int number) const {
        return TestRecord(family, number % 32,
                          {NameOf(number % 32), "a.syx", static_cast<std::uint32_t>(number), 0});
    }
    std::string NameOf(int voice) const {
        std::string name = family.name; // of voice 0: it ends in "01"
        name.resize(name.size() - 2);
        return name + (voice < 9 ? "0" : "") + std::to_string(voice + 1);
    }
    void ExpectRecord(const TestBytes &file, std::size_t index, const TestBytes &record) const {
        const std::size_t at = 152 + index * family.recordSize;
        ASSERT_GE(file.size(), at + record.size()) << index;
        EXPECT_TRUE(std::equal(record.begin(), record.end(),
                               file.begin() + static_cast<std::ptrdiff_t>(at)))
            << index;
    }
    // What the check says; nothing when the file does not open.
    std::optional<DatabaseReport> Check() const {
        const auto database = row.DatabaseOpen(Path().c_str(), DatabaseRead);
        DatabaseReport report;
        if (!database) {
            return std::nullopt;
        }
        EXPECT_TRUE(CheckDatabase(*database, report, [](auto, auto, auto) {}));
        return report;
    }
    int Loaded() const {
        RecordList list;
        list.sorted = false;
        EXPECT_EQ(DatabaseLoadList(DriverIndexOfId(row.id), list), 1);
        return ListCount(list);
    }

    // What holds of a catalogue with `before` records after a kill of the add behind them.
    void ExpectOldRecordsOrOneMore(int before) const {
        const TestBytes file = File();
        const auto report = Check();
        ASSERT_TRUE(report);
        const auto count = static_cast<int>(report->counted);
        EXPECT_TRUE(count == before || count == before + 1) << count << " behind " << before;
        for (int number = 0; number < count; ++number) {
            ExpectRecord(file, static_cast<std::size_t>(number), AddedRecord(number));
        }
        EXPECT_EQ(report->present, report->counted);
        EXPECT_EQ(report->faulty, 0u);
        // What had not been counted yet, in whole or in part.
        EXPECT_LE(report->uncounted, count == before ? 1u : 0u);
        EXPECT_LT(report->rest, family.recordSize);
        EXPECT_TRUE(report->uncounted == 0 || report->rest == 0);
        EXPECT_EQ(IsSound(*report), file.size() == 152 + count * family.recordSize);
        EXPECT_EQ(Loaded(), count);
        // The next add writes over it.
        ASSERT_EQ(Add(count % 32, nullptr, "a.syx", count), 1);
        ExpectRecord(File(), static_cast<std::size_t>(count), AddedRecord(count));
        const auto after = Check();
        ASSERT_TRUE(after);
        EXPECT_TRUE(IsSound(*after));
        EXPECT_EQ(Loaded(), count + 1);
    }
};

INSTANTIATE_TEST_SUITE_P(Families, KilledDatabase, testing::ValuesIn(TestFamilies), LabelOf);

TEST_P(KilledDatabase, HoldsTheOldRecordsOrOneMoreAfterAnAdd) {
    std::mt19937 random(21);
    for (int kill = 0; kill < Kills && !HasFailure(); ++kill) {
        fs::remove(Path());
        const int round =
            KillDuring(random, [&](int number) { Add(number % 32, nullptr, "a.syx", number); });
        ExpectOldRecordsOrOneMore(round);
    }
}

TEST_P(KilledDatabase, IsNoneOrBegunOrHoldsOneRecordAfterTheAddThatMakesIt) {
    std::mt19937 random(22);
    const auto name = [](int number) { return "Made " + std::to_string(number); };
    for (int kill = 0; kill < Kills && !HasFailure(); ++kill) {
        const int round = KillDuring(random, [&](int number) {
            DatabaseCurrentName = name(number);
            fs::remove(row.DatabasePath()); // of the kill before
            Add(0);
        });
        DatabaseCurrentName = name(round);
        const std::string path = row.DatabasePath();
        fs::remove(Path());
        if (!fs::exists(path)) {
            DatabaseCurrentName = "Voices";
            EXPECT_EQ(Loaded(), 0);
            EXPECT_EQ(Size(), 152u); // made by the load
            continue;
        }
        fs::rename(path, Path());
        DatabaseCurrentName = "Voices";
        if (Size() >= 152) {
            ExpectOldRecordsOrOneMore(0);
            continue;
        }
        // A header that was only begun is no catalogue: the next add takes it away, and the one
        // behind it makes another.
        EXPECT_FALSE(Check());
        RecordList list;
        EXPECT_EQ(DatabaseLoadList(DriverIndexOfId(row.id), list), 0);
        EXPECT_EQ(Add(0), 0);
        EXPECT_FALSE(HasFile());
        EXPECT_EQ(Add(0), 1);
        EXPECT_EQ(Loaded(), 1);
    }
}

TEST_P(KilledDatabase, IsWholeOrItsBackupIsAfterAStore) {
    constexpr int Records = 40;
    const std::string backup = DatabaseBackupPathOf(Path(), family.backupExtension);
    const int driver = DriverIndexOfId(row.id);
    std::mt19937 random(23);
    // Of each round its own records: those from `number` on.
    const auto isStored = [&](const std::string &path, int number) {
        TestBytes records = TestCatalogue(family, number % 7 + Records, 0);
        const auto from = 152 + static_cast<std::size_t>(number % 7) * family.recordSize;
        records.erase(records.begin(), records.begin() + static_cast<std::ptrdiff_t>(from));
        const TestBytes file = fs::exists(path) ? ReadTestFile(path) : TestBytes();
        return file.size() == 152 + records.size() && Test32(file, 20) == Records &&
               TestTextAt(file, 0, 8) == "TnwrTWdb" &&
               std::equal(records.begin(), records.end(), file.begin() + 152);
    };
    const auto store = [&](int number) {
        RecordList list;
        list.sorted = false;
        for (int index = 0; index < Records; ++index) {
            RecordListAdd(list, {TestRecordAt(family, number % 7 + index)});
        }
        return DatabaseStoreList(nullptr, list, driver);
    };
    for (int kill = 0; kill < Kills && !HasFailure(); ++kill) {
        fs::remove(backup);
        fs::remove(Path());
        const int round = KillDuring(random, store);
        const bool isWhole = isStored(Path(), round) || isStored(Path(), round - 1);
        EXPECT_TRUE(isWhole || isStored(backup, round - 1)) << kill;
        const auto report = Check();
        if (isWhole) {
            ASSERT_TRUE(report);
            EXPECT_TRUE(IsSound(*report));
        } else if (report) {
            // The header counts none until the last record is written.
            EXPECT_EQ(report->counted, 0u);
            EXPECT_FALSE(IsSound(*report) && Size() > 152);
            EXPECT_EQ(report->uncounted, (Size() - 152) / family.recordSize);
            EXPECT_EQ(Loaded(), 0);
        } else {
            EXPECT_TRUE(!HasFile() || Size() < 152);
        }
        ASSERT_EQ(store(round + 1), 1); // a store goes on from whatever there is
        EXPECT_TRUE(isStored(Path(), round + 1));
    }
}

} // namespace
} // namespace tonewright
