// What a query finds, in which order, and by which place each voice is shown.
#include "extras/archive_index.h"

#include "drivers/dx7/voice_codec.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <tuple>

namespace tonewright {
namespace {

ArchivePlace PlaceOf(VoiceIdentity identity, const std::string &name, int algorithm = 1,
                     std::uint8_t family = ArchiveFamilyDx7) {
    ArchivePlace place{.identity = identity, .family = family};
    place.algorithm = static_cast<std::uint8_t>(algorithm);
    place.name.fill(' ');
    std::ranges::copy(name, place.name.begin());
    return place;
}

// Files with ids that are not in the order of their paths.
struct Collection {
    ArchiveContent content;

    Collection() {
        content.folders = {{1, "/home/me/banks", true},
                           {2, "/home/me/banks/old", false},
                           {3, "/home/me/banks2", true}};
    }
    void Add(std::int64_t id, std::int64_t folder, const std::string &name,
             const std::vector<ArchivePlace> &places) {
        content.files.push_back(
            {.id = id, .folder = folder, .name = name, .voices = places.size()});
        content.places.push_back({id, 0, places});
    }
};

Collection Small() {
    Collection collection;
    collection.Add(7, 1, "b.syx",
                   {PlaceOf(100, "E.PIANO 1", 5), PlaceOf(200, "Bass  solo", 16),
                    PlaceOf(300, "\xC4RGER", 1)});
    collection.Add(3, 2, "a.srx", {PlaceOf(400, "piano", 2, ArchiveFamilyReface)});
    collection.Add(5, 3, "a.syx", {PlaceOf(200, "BASS", 16), PlaceOf(100, "E.Piano 1", 5)});
    return collection;
}

// Each hit as "IDENTITY NAME PATH PLACE".
std::vector<std::string> Texts(const ArchiveIndex &index, const ArchiveQuery &query) {
    std::vector<std::string> texts;
    for (const ArchiveHit &hit : FindInArchive(index, query)) {
        const ArchivePlaceInfo place = PlaceInfo(index, hit.place);
        texts.push_back(std::to_string(VoiceInfo(index, hit.voice).identity) + ' ' + place.name +
                        ' ' + place.path + ' ' + std::to_string(place.place));
    }
    return texts;
}

std::vector<VoiceIdentity> Identities(const ArchiveIndex &index, const ArchiveQuery &query) {
    std::vector<VoiceIdentity> identities;
    for (const ArchiveHit &hit : FindInArchive(index, query)) {
        identities.push_back(VoiceInfo(index, hit.voice).identity);
    }
    return identities;
}

using Ids = std::vector<VoiceIdentity>;

TEST(ArchiveIndex, EqualVoicesAreOneAtManyPlaces) {
    const auto index = MakeArchiveIndex(Small().content);
    EXPECT_EQ(PlaceCount(*index), 6u);
    EXPECT_EQ(VoiceCount(*index), 4u);
    const auto voice = VoiceOfIdentity(*index, 100);
    ASSERT_TRUE(voice);
    const ArchiveVoiceInfo info = VoiceInfo(*index, *voice);
    EXPECT_EQ(info.identity, 100u);
    EXPECT_EQ(info.family, ArchiveFamilyDx7);
    EXPECT_EQ(info.algorithm, 5);
    EXPECT_EQ(info.places, 2u);
    std::vector<std::string> places;
    for (const ArchivePlaceNumber place : PlacesOf(*index, *voice)) {
        const ArchivePlaceInfo where = PlaceInfo(*index, place);
        places.push_back(where.name + '|' + where.path + '|' + std::to_string(where.place));
    }
    EXPECT_EQ(places, (std::vector<std::string>{"E.PIANO 1|/home/me/banks/b.syx|0",
                                                "E.Piano 1|/home/me/banks2/a.syx|1"}));
    EXPECT_FALSE(VoiceOfIdentity(*index, 99));
    EXPECT_FALSE(VoiceOfIdentity(*index, 401));
}

TEST(ArchiveIndex, NoWordFindsEachVoiceOnceByItsFirstPlaceInTheOrder) {
    const auto index = MakeArchiveIndex(Small().content);
    EXPECT_EQ(Texts(*index, {}), (std::vector<std::string>{
                                     "200 BASS /home/me/banks2/a.syx 0",
                                     "100 E.Piano 1 /home/me/banks2/a.syx 1",
                                     "400 piano /home/me/banks/old/a.srx 0",
                                     "300 \xC4RGER /home/me/banks/b.syx 2",
                                 }));
    EXPECT_EQ(Texts(*index, {.text = "  ", .sort = ArchiveColumn::File}),
              (std::vector<std::string>{
                  "100 E.PIANO 1 /home/me/banks/b.syx 0",
                  "200 Bass  solo /home/me/banks/b.syx 1",
                  "300 \xC4RGER /home/me/banks/b.syx 2",
                  "400 piano /home/me/banks/old/a.srx 0",
              }));
}

TEST(ArchiveIndex, EachWordStandsSomewhereInTheNameInEitherCase) {
    const auto index = MakeArchiveIndex(Small().content);
    EXPECT_EQ(Identities(*index, {.text = "piano"}), (Ids{100, 400}));
    EXPECT_EQ(Identities(*index, {.text = "1 PIAN"}), (Ids{100}));
    EXPECT_EQ(Identities(*index, {.text = " solo  bass "}), (Ids{200}));
    EXPECT_EQ(Identities(*index, {.text = "bass solo x"}), Ids{});
    EXPECT_EQ(Identities(*index, {.text = std::string("solo\tbass\n\0", 11)}), (Ids{200}));
    EXPECT_EQ(Identities(*index, {.text = "\xE4rg"}), (Ids{300}));
    EXPECT_EQ(Identities(*index, {.text = "arg"}), Ids{}); // an accent counts
    EXPECT_EQ(Identities(*index, {.text = "ssb"}), Ids{});
    EXPECT_EQ(Identities(*index, {.text = "e.piano 1"}), (Ids{100}));
    EXPECT_EQ(Identities(*index, {.text = "e.piano-one"}), Ids{}); // longer than any name
}

TEST(ArchiveIndex, AWordFitsAtTheEndsOfANameOfTenCharacters) {
    Collection collection;
    collection.Add(1, 1, "x.syx", {PlaceOf(1, "ABCDEFGHIJ"), PlaceOf(2, "ABCDEFGHI")});
    const auto index = MakeArchiveIndex(collection.content);
    EXPECT_EQ(Identities(*index, {.text = "abcdefghij"}), (Ids{1}));
    EXPECT_EQ(Identities(*index, {.text = "j"}), (Ids{1}));
    EXPECT_EQ(Identities(*index, {.text = "hi"}), (Ids{2, 1}));
    EXPECT_EQ(Identities(*index, {.text = "a"}), (Ids{2, 1}));
    EXPECT_EQ(Identities(*index, {.text = "abcdefghijk"}), Ids{});
}

TEST(ArchiveIndex, FiltersHoldTogether) {
    const auto index = MakeArchiveIndex(Small().content);
    EXPECT_EQ(Identities(*index, {.family = ArchiveFamilyReface}), (Ids{400}));
    EXPECT_EQ(Identities(*index, {.family = ArchiveFamilyDx7}), (Ids{200, 100, 300}));
    EXPECT_EQ(Identities(*index, {.algorithm = 16}), (Ids{200}));
    EXPECT_EQ(Identities(*index, {.onlyRepeated = true}), (Ids{200, 100}));
    EXPECT_EQ(Identities(*index, {.text = "piano", .algorithm = 2, .onlyRepeated = true}), Ids{});
    EXPECT_EQ(Identities(*index, {.folder = "/home/me/banks"}), (Ids{200, 100, 400, 300}));
    EXPECT_EQ(Identities(*index, {.folder = "/home/me/banks/"}), (Ids{200, 100, 400, 300}));
    EXPECT_EQ(Identities(*index, {.folder = "/home/me/banks/old"}), (Ids{400}));
    EXPECT_EQ(Texts(*index, {.text = "bass", .folder = "/home/me/banks2"}),
              (std::vector<std::string>{"200 BASS /home/me/banks2/a.syx 0"}));
    EXPECT_EQ(Identities(*index, {.folder = "/home/me/bank"}), Ids{});
    EXPECT_EQ(Identities(*index, {.folder = "/"}), (Ids{200, 100, 400, 300}));
}

TEST(ArchiveIndex, DescendingTurnsTheColumnAndNotWhatFollowsIt) {
    const auto index = MakeArchiveIndex(Small().content);
    EXPECT_EQ(Identities(*index, {.descending = true}), (Ids{300, 400, 100, 200}));
    EXPECT_EQ(Identities(*index, {.sort = ArchiveColumn::Times}), (Ids{400, 300, 200, 100}));
    EXPECT_EQ(Identities(*index, {.sort = ArchiveColumn::Times, .descending = true}),
              (Ids{200, 100, 400, 300}));
    EXPECT_EQ(Identities(*index, {.sort = ArchiveColumn::Algorithm}), (Ids{300, 400, 100, 200}));
    EXPECT_EQ(Identities(*index, {.sort = ArchiveColumn::Instrument, .descending = true}),
              (Ids{400, 200, 100, 300}));
    EXPECT_EQ(Texts(*index, {.sort = ArchiveColumn::File, .descending = true}),
              (std::vector<std::string>{
                  "200 BASS /home/me/banks2/a.syx 0",
                  "100 E.Piano 1 /home/me/banks2/a.syx 1",
                  "400 piano /home/me/banks/old/a.srx 0",
                  "300 \xC4RGER /home/me/banks/b.syx 2",
              }));
    EXPECT_EQ(Texts(*index, {.sort = ArchiveColumn::Place, .descending = true}),
              (std::vector<std::string>{
                  "300 \xC4RGER /home/me/banks/b.syx 2",
                  "200 Bass  solo /home/me/banks/b.syx 1",
                  "100 E.Piano 1 /home/me/banks2/a.syx 1",
                  "400 piano /home/me/banks/old/a.srx 0",
              }));
}

TEST(ArchiveIndex, AnEmptyOneFindsNothing) {
    const auto index = MakeArchiveIndex({});
    EXPECT_EQ(VoiceCount(*index), 0u);
    for (int column = 0; column < 6; ++column) {
        EXPECT_TRUE(FindInArchive(*index, {.folder = "/a",
                                           .sort = static_cast<ArchiveColumn>(column),
                                           .descending = true})
                        .empty());
    }
    EXPECT_FALSE(VoiceOfIdentity(*index, 0));
}

TEST(ArchiveIndex, PlacesOfFilesThatAreNotThereAreLeftOut) {
    Collection collection;
    collection.Add(1, 1, "x.syx", {PlaceOf(1, "HERE")});
    collection.Add(2, 9, "y.syx", {PlaceOf(2, "NO FOLDER")});
    collection.content.places.push_back({77, 0, {PlaceOf(3, "NO FILE")}});
    const auto index = MakeArchiveIndex(collection.content);
    EXPECT_EQ(Identities(*index, {}), (Ids{1}));
}

// The rules of the header, place by place.
std::vector<std::pair<VoiceIdentity, std::tuple<std::string, std::uint64_t>>>
PlainSearch(const Collection &collection, const ArchiveQuery &query) {
    struct Row {
        std::string folded, name, path;
        std::uint64_t place;
        ArchivePlace voice;
        std::uint32_t times;
    };
    const auto fold = [](std::string text) {
        for (char &letter : text) {
            const auto byte = static_cast<std::uint8_t>(letter);
            if ((byte >= 'A' && byte <= 'Z') || (byte >= 0xC0 && byte <= 0xDE && byte != 0xD7)) {
                letter = static_cast<char>(byte + 0x20);
            }
        }
        return text;
    };
    std::map<std::int64_t, std::string> paths;
    for (const ArchiveFile &file : collection.content.files) {
        paths[file.id] = collection.content.folders[file.folder - 1].path + '/' + file.name;
    }
    std::map<VoiceIdentity, std::uint32_t> times;
    for (const auto &piece : collection.content.places) {
        for (const ArchivePlace &place : piece.places) {
            ++times[place.identity];
        }
    }
    std::vector<Row> rows;
    for (const auto &piece : collection.content.places) {
        std::uint64_t number = piece.first;
        for (const ArchivePlace &place : piece.places) {
            const std::string name = MakeVoiceNameText(place.name);
            const std::string &path = paths[piece.file];
            bool fits = query.folder.empty() || path.starts_with(query.folder + '/');
            fits &= query.family < 0 || place.family == query.family;
            fits &= query.algorithm == 0 || place.algorithm == query.algorithm;
            fits &= !query.onlyRepeated || times[place.identity] > 1;
            std::size_t start = 0;
            while (start < query.text.size()) {
                std::size_t end = std::min(query.text.find(' ', start), query.text.size());
                fits &= fold(name).find(fold(query.text.substr(start, end - start))) !=
                        std::string::npos;
                start = end + 1;
            }
            if (fits) {
                rows.push_back({fold(name), name, path, number, place, times[place.identity]});
            }
            ++number;
        }
    }
    const auto column = [&](const Row &row) -> std::tuple<int, std::string, std::string> {
        switch (query.sort) {
        case ArchiveColumn::Instrument:
            return {row.voice.family, "", ""};
        case ArchiveColumn::Algorithm:
            return {row.voice.algorithm, "", ""};
        case ArchiveColumn::Times:
            return {row.times, "", ""};
        case ArchiveColumn::Place:
            return {static_cast<int>(row.place), "", ""};
        case ArchiveColumn::File:
            return {0, row.path, ""};
        default:
            return {0, row.folded, ""};
        }
    };
    const bool byFile = query.sort == ArchiveColumn::File;
    std::ranges::sort(rows, [&](const Row &a, const Row &b) {
        if (column(a) != column(b)) {
            return query.descending ? column(b) < column(a) : column(a) < column(b);
        }
        if (byFile) {
            return a.place < b.place;
        }
        return std::tie(a.folded, a.path, a.place) < std::tie(b.folded, b.path, b.place);
    });
    std::vector<std::pair<VoiceIdentity, std::tuple<std::string, std::uint64_t>>> found;
    std::set<VoiceIdentity> seen;
    for (const Row &row : rows) {
        if (seen.insert(row.voice.identity).second) {
            found.push_back({row.voice.identity, {row.path, row.place}});
        }
    }
    return found;
}

// Many voices in few names and files, so that every order has ties, in pieces out of order; names
// are small letters, so that no capital decides.
TEST(ArchiveIndex, FindsWhatAPlainSearchFindsInTheSameOrder) {
    std::mt19937 random(20);
    Collection collection;
    const char *words[] = {"ab", "ba", "\xE4 b", "abba b", "", "bass 1", "zz top"};
    for (int file = 0; file < 90; ++file) {
        std::vector<ArchivePlace> places;
        for (unsigned place = 0; place < 1 + random() % 40; ++place) {
            const unsigned voice = random() % 700;
            places.push_back(PlaceOf(voice * 0x9E3779B97F4A7C15, words[random() % 7], 1 + voice % 5,
                                     voice % 3 == 0));
        }
        collection.Add(1000 - file, 1 + random() % 3, "f" + std::to_string(random()), places);
        auto &whole = collection.content.places.back();
        const std::size_t half = places.size() / 2;
        collection.content.places.push_back(
            {whole.file, half, {places.begin() + static_cast<std::ptrdiff_t>(half), places.end()}});
        collection.content.places[collection.content.places.size() - 2].places.resize(half);
    }
    std::ranges::shuffle(collection.content.places, random);
    const auto index = MakeArchiveIndex(collection.content);
    for (int trial = 0; trial < 300; ++trial) {
        const char *texts[] = {"", "a", "b a", "ab", "\xC4", "BASS", "top z", "q"};
        const char *folders[] = {"", "/home/me/banks", "/home/me/banks/old", "/home/me/banks2"};
        ArchiveQuery query{.text = texts[random() % 8],
                           .family = static_cast<int>(random() % 4) - 1,
                           .algorithm = static_cast<int>(random() % 3),
                           .folder = folders[random() % 4],
                           .onlyRepeated = random() % 4 == 0,
                           .sort = static_cast<ArchiveColumn>(random() % 6),
                           .descending = random() % 2 == 0};
        std::vector<std::pair<VoiceIdentity, std::tuple<std::string, std::uint64_t>>> found;
        for (const ArchiveHit &hit : FindInArchive(*index, query)) {
            const ArchivePlaceInfo place = PlaceInfo(*index, hit.place);
            found.push_back({VoiceInfo(*index, hit.voice).identity, {place.path, place.place}});
        }
        EXPECT_EQ(found, PlainSearch(collection, query))
            << trial << ' ' << query.text << ' ' << static_cast<int>(query.sort);
    }
}

// A voice of one operator at this level, with a name.
KeptVoice VoiceOfLevel(int level) {
    KeptVoice voice{VoiceForm::Dx7Packed, std::vector<std::uint8_t>(Dx7PackedVoiceSize)};
    voice.bytes[5 * Dx7PackedOperatorSize + 4] = 99;
    voice.bytes[5 * Dx7PackedOperatorSize + 14] = static_cast<std::uint8_t>(level);
    return voice;
}

// An archive on the disk with the voices of these levels.
struct ArchiveOnDisk : testing::Test {
    TempFolder folder;
    ArchiveError error;
    ArchiveStorePointer store =
        OpenArchive(folder.File("Archive.sqlite"), ArchiveUse::Write, error);

    void Put(const std::string &name, const std::vector<int> &levels) {
        ArchiveFolder root{.path = "/banks", .root = true};
        for (const ArchiveFolder &known : ArchiveFolders(*store, error)) {
            root = known;
        }
        ArchiveFile file{.name = name, .voices = levels.size()};
        std::vector<ArchivePlace> places;
        std::vector<VoiceFeatures> features;
        for (const int level : levels) {
            const KeptVoice voice = VoiceOfLevel(level);
            places.push_back(PlaceOf(IdentityOf(voice.Voice()), "LEVEL " + std::to_string(level)));
            features.push_back(FeaturesOf(voice.Voice()));
        }
        ASSERT_TRUE(BeginArchiveBatch(*store, error));
        if (root.id == 0) {
            ASSERT_TRUE(PutArchiveFolder(*store, root, error));
        }
        file.folder = root.id;
        ASSERT_TRUE(PutArchiveFile(*store, file, error));
        ASSERT_TRUE(PutArchiveVoices(*store, file.id, 0, places, features, error));
        ASSERT_TRUE(EndArchiveBatch(*store, error));
    }
    std::vector<std::string> Similar(const ArchiveIndex &index, int level, std::size_t count) {
        const KeptVoice voice = VoiceOfLevel(level);
        std::vector<std::string> names;
        float last = 0;
        for (const SimilarVoice &found : FindSimilar(index, *store, voice.Voice(), count, error)) {
            EXPECT_GE(found.distance, last);
            last = found.distance;
            names.push_back(PlaceInfo(index, PlacesOf(index, found.voice)[0]).name);
        }
        EXPECT_FALSE(error) << error.text;
        return names;
    }
};

TEST_F(ArchiveOnDisk, TheIndexIsThatOfTheStore) {
    ASSERT_TRUE(store) << error.text;
    Put("b.syx", {90, 80});
    Put("a.syx", {80, 70});
    const auto index = LoadArchiveIndex(*store, error);
    ASSERT_TRUE(index) << error.text;
    EXPECT_EQ(VoiceCount(*index), 3u);
    const auto found = FindInArchive(*index, {.text = "80"});
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(VoiceInfo(*index, found[0].voice).places, 2u);
    EXPECT_EQ(PlaceInfo(*index, found[0].place).path, "/banks/a.syx");
    EXPECT_EQ(PlaceInfo(*index, found[0].place).place, 0u);
}

TEST_F(ArchiveOnDisk, ALoadThatIsCancelledGivesNothing) {
    ASSERT_TRUE(store) << error.text;
    Put("b.syx", {90, 80});
    EXPECT_FALSE(LoadArchiveIndex(*store, error, [] { return true; }));
    EXPECT_FALSE(error);
    int asked = 0;
    EXPECT_FALSE(LoadArchiveIndex(*store, error, [&] { return ++asked == 2; }));
}

TEST_F(ArchiveOnDisk, TheNearestComeFirstEachOnceAndNeverTheVoiceItself) {
    ASSERT_TRUE(store) << error.text;
    Put("a.syx", {99, 60, 80, 95, 60, 92, 95});
    Put("b.syx", {80, 97, 92});
    const auto index = LoadArchiveIndex(*store, error);
    ASSERT_TRUE(index) << error.text;
    EXPECT_EQ(Similar(*index, 95, 3),
              (std::vector<std::string>{"LEVEL 97", "LEVEL 92", "LEVEL 99"}));
    EXPECT_EQ(Similar(*index, 95, 10), (std::vector<std::string>{"LEVEL 97", "LEVEL 92", "LEVEL 99",
                                                                 "LEVEL 80", "LEVEL 60"}));
    EXPECT_EQ(Similar(*index, 95, 0), std::vector<std::string>{});
    EXPECT_EQ(Similar(*index, 61, 1), (std::vector<std::string>{"LEVEL 60"}));

    Put("c.syx", {61}); // behind the index's back
    EXPECT_EQ(Similar(*index, 61, 1), (std::vector<std::string>{"LEVEL 60"}));
}

} // namespace
} // namespace tonewright
