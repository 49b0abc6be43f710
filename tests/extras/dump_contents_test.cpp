// What the window of a dump says of a file.
#include "extras/dump_contents.h"

#include "support/dump_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

std::string WordsOf(const DumpBytes &file) {
    const TempFolder folder;
    return DumpsInWords(ReadDumpContents(folder.Write("found.bin", file)));
}

TEST(DumpContents, TellsHowMuchThereIsAndWhatIsWrong) {
    EXPECT_EQ(WordsOf({}), "There is nothing in this file.");
    EXPECT_EQ(WordsOf(TextBytes("hello")), "There is no voice in this file that a list can hold.");
    EXPECT_EQ(WordsOf(TestVoiceFile()), "There is one voice in this file, in one dump.");
    EXPECT_EQ(WordsOf(TestBankMessage(2)),
              "There are 32 voices in this file, in one dump, which is not as it should be.");
    EXPECT_EQ(
        WordsOf(Join({TestBank(), TestBankMessage(2), TestBankMessage(3)})),
        "There are 96 voices in this file, in 3 dumps, of which 2 are not as they should be.");
}

TEST(DumpContents, WhatStandsInFrontOfAPlaceThatCannotBeReadIsTold) {
    EXPECT_EQ(DumpsInWords({.path = "disk",
                            .reading = DumpsReading::Failed,
                            .failure = "Input/output error",
                            .dumpsFound = 1,
                            .voicesFound = 32,
                            .dumpsWithVoices = 1}),
              "There are 32 voices in this file, in one dump. It could not be read to its end: "
              "Input/output error.");
    EXPECT_EQ(
        DumpsInWords(
            {.path = "disk", .reading = DumpsReading::Failed, .failure = "Input/output error"}),
        "This file could not be read: Input/output error.");
}

TEST(DumpContents, ADumpIsToldWithItsPlace) {
    EXPECT_EQ(DumpInWords({.kind = DumpKind::Dx7Bank,
                           .offset = 4111,
                           .length = 4104,
                           .channel = 3,
                           .voices = 32,
                           .faults = DumpFault::Channel}),
              "DX7 bank, 32 voices, 4,104 bytes from 4,111 (hexadecimal 100F): for channel 3.");
    EXPECT_EQ(DumpInWords({.kind = DumpKind::Unknown, .offset = 0, .length = 1}),
              "unknown data, one byte from 0 (hexadecimal 0).");
}

TEST(DumpContents, TheVoicesOfADumpAreItsOwn) {
    const TempFolder folder;
    const DumpContents contents = ReadDumpContents(folder.Write(
        "found.bin", Join({TestVoiceFile(), TextBytes("text"), TestBank(), TestVoiceMessage()})));
    ASSERT_EQ(contents.dumps.size(), 4u);
    EXPECT_EQ(contents.firstVoices, (std::vector<std::size_t>{0, 1, 1, 33}));
    EXPECT_EQ(ShownVoicesOf(contents, 0), 1u);
    EXPECT_EQ(ShownVoicesOf(contents, 1), 0u);
    EXPECT_EQ(ShownVoicesOf(contents, 2), 32u);
    EXPECT_EQ(ShownVoicesOf(contents, 3), 1u);
}

TEST(DumpContents, ACancelledReadingKeepsWhatWasFound) {
    const TempFolder folder;
    const DumpContents contents =
        ReadDumpContents(folder.Write("found.bin", Join({TestBank(), DumpBytes(8 << 20, 0x11)})),
                         [](std::uint64_t read, std::uint64_t size) {
                             EXPECT_EQ(size, 4104u + (8 << 20));
                             return read < (2 << 20);
                         });
    EXPECT_EQ(contents.reading, DumpsReading::Cancelled);
    EXPECT_EQ(contents.voices.size(), 32u);
    EXPECT_TRUE(
        DumpsInWords(contents).ends_with(" The reading was cancelled, and there may be more."));
}

} // namespace
} // namespace tonewright
