#include "extras/collection_files.h"

#include <gtest/gtest.h>

#include <string>

namespace tonewright {
namespace {

constexpr std::uint64_t MB = 1 << 20, GB = 1 << 30;

FileJudgement JudgeStart(const std::string &start, std::uint64_t size) {
    return JudgeFile(std::span(reinterpret_cast<const std::uint8_t *>(start.data()), start.size()),
                     size);
}

TEST(CollectionFiles, AreJudgedByNameAndSize) {
    EXPECT_EQ(JudgeFile("bank.syx", 99), FileJudgement::Skip);
    EXPECT_EQ(JudgeFile("bank.syx", 100), FileJudgement::Read);
    EXPECT_EQ(JudgeFile("BANK.SYX", GB), FileJudgement::Read);
    EXPECT_EQ(JudgeFile("bank.syx", GB + 1), FileJudgement::TooLarge);
    EXPECT_EQ(JudgeFile("a.song.Mid", 50 * MB), FileJudgement::Read);
    EXPECT_EQ(JudgeFile("Voices.syx_db", 50 * MB), FileJudgement::Read);
    EXPECT_EQ(JudgeFile("syx", 4104), FileJudgement::LookInside);
    EXPECT_EQ(JudgeFile("bank.syx.bak", 4104), FileJudgement::LookInside);
    EXPECT_EQ(JudgeFile("film.mkv", 4 * GB), FileJudgement::LookInside);
    EXPECT_EQ(JudgeFile("", 99), FileJudgement::Skip);
}

TEST(CollectionFiles, AreJudgedByTheirFirstBytes) {
    EXPECT_EQ(JudgeStart("\xF0\x43", GB), FileJudgement::Read);
    EXPECT_EQ(JudgeStart("\xF0\x43", GB + 1), FileJudgement::TooLarge);
    EXPECT_EQ(JudgeStart("MThd", 2 * MB), FileJudgement::Read);
    EXPECT_EQ(JudgeStart("TNWRDXrf", 2 * MB), FileJudgement::Read);
    EXPECT_EQ(JudgeStart("TnwrTWdb", 2 * MB), FileJudgement::Read);
    EXPECT_EQ(JudgeStart("RIFF....WAVE", 200), FileJudgement::Skip);
    EXPECT_EQ(JudgeStart("\x7F" + std::string("ELF"), 200), FileJudgement::Skip);
    EXPECT_EQ(JudgeStart("\xFD" + std::string("7zXZ"), 200), FileJudgement::Skip);
    EXPECT_EQ(JudgeStart("PK\3\4", 200), FileJudgement::Skip);
    EXPECT_EQ(JudgeStart("PK", 200), FileJudgement::Read);
    EXPECT_EQ(JudgeStart("anything else", MB), FileJudgement::Read);
    EXPECT_EQ(JudgeStart("anything else", MB + 1), FileJudgement::Skip);
    EXPECT_EQ(JudgeStart("", MB), FileJudgement::Read);
}

TEST(CollectionFiles, HiddenOnesBeginWithAPoint) {
    EXPECT_TRUE(IsHidden("._BANK.SYX"));
    EXPECT_FALSE(IsHidden("BANK.SYX"));
    EXPECT_FALSE(IsHidden(""));
}

} // namespace
} // namespace tonewright
