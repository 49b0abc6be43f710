// Files of reface DX settings, written and read.
#include "drivers/reface_dx/settings_file.h"

#include "support/program_texts.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <regex>
#include <string>
#include <vector>

namespace tonewright {
namespace {

struct CrgFile : testing::Test {
    TempFolder folder;
    std::string path = folder.File("settings.crg");
    // Anything but zeros, which reading has to clear.
    SynthConfigBlock block{
        .driverId = RefaceDriverId, .midiIn = 5, .midiOut = 6, .system = Filled()};

    static std::array<std::uint8_t, RefaceSystemSize> Filled() {
        std::array<std::uint8_t, RefaceSystemSize> bytes;
        bytes.fill(77);
        return bytes;
    }
    // Reads a file of that text.
    int Read(const std::string &text) {
        WriteTestText(path, text);
        return ReadCrgFile(path.c_str(), block);
    }
    // The same with the right first line, and the result 1.
    void ReadLines(const std::string &lines) { EXPECT_EQ(Read(CrgFirstLine + lines), 1) << lines; }
    bool IsCleared() const {
        return block.driverId == 0 && block.midiIn == 0 && block.midiOut == 0 &&
               block.system == std::array<std::uint8_t, RefaceSystemSize>{};
    }
};

TEST_F(CrgFile, IsWrittenAsFifteenKeysBehindThreeLinesOfItsOrigin) {
    for (std::size_t n = 0; n < RefaceSystemSize; ++n) {
        block.system[n] = static_cast<std::uint8_t>(n * 10);
    }
    block.system[1] = 255;
    ASSERT_EQ(WriteCrgFile(path.c_str(), block), 1);
    std::string text = ReadTestText(path);
    const std::regex time("\n;Written [A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] "
                          "[0-9]{2}:[0-9]{2}:[0-9]{2} [0-9]{4}\n");
    EXPECT_TRUE(std::regex_search(text, time)) << text;
    text = std::regex_replace(text, time, "\n;Written\n");
    EXPECT_EQ(text, ";Quillbrook Tonewright - reface DX configuration\n"
                    ";Written\n"
                    "Tonewright 17.0a revision 1\n"
                    "TransCh:0\n"
                    "RcvCh:255\n"
                    "MasterTune0:20\n"
                    "MasterTune1:30\n"
                    "MasterTune2:40\n"
                    "MasterTune3:50\n"
                    "LocalCtrl:60\n"
                    "Transpose:70\n"
                    "Tempo0:80\n"
                    "Tempo1:90\n"
                    "LCDConstrast:100\n"
                    "Sustain:110\n"
                    "AutoPower:120\n"
                    "Speaker:130\n"
                    "MIDICtrl:140\n");
}

TEST_F(CrgFile, ReadsBackWhatWasWrittenButForTheBytesBehindIt) {
    const auto written = block.system;
    ASSERT_EQ(WriteCrgFile(path.c_str(), block), 1);
    SynthConfigBlock read = block;
    std::vector<std::string> missing = {"former"};
    ASSERT_EQ(ReadCrgFile(path.c_str(), read, &missing), 1);
    for (std::size_t n = 0; n < RefaceSystemSize; ++n) {
        EXPECT_EQ(read.system[n], n < 15 ? written[n] : 0) << n;
    }
    EXPECT_EQ(read.driverId, 0u);
    EXPECT_EQ(read.midiIn, 0);
    EXPECT_EQ(read.midiOut, 0);
    EXPECT_TRUE(missing.empty());
}

TEST_F(CrgFile, AKeyInLowerCaseWithTheValue3Sets3) {
    ReadLines("transch:3\n");
    EXPECT_EQ(block.system[0], 3);
    ReadLines("MIDICTRL:1\n");
    EXPECT_EQ(block.system[14], 1);
}

TEST_F(CrgFile, OfTheFirstLineAloneIsOneOfZeros) {
    ReadLines("");
    EXPECT_TRUE(IsCleared());
}

TEST_F(CrgFile, WithoutALineIsOneOfZeros) {
    EXPECT_EQ(Read(""), 1);
    EXPECT_TRUE(IsCleared());
}

TEST_F(CrgFile, WithAnotherFirstLineIsRefusedAndClearsTheBlock) {
    for (const char *text : {"Tonewright 17.0a revision 1\nTransCh:3\n", "\n", ";\nTransCh:3\n",
                             ";Quillbrook Tonewright - reface DX configuratio\n",
                             ";quillbrook tonewright - reface dx configuration\n"}) {
        block.system = Filled();
        errno = 0;
        EXPECT_EQ(Read(text), 0) << text;
        EXPECT_EQ(errno, EINVAL);
        EXPECT_TRUE(IsCleared()) << text;
    }
}

TEST_F(CrgFile, NeedOnlyContainTheTextInItsFirstLine) {
    EXPECT_EQ(Read("\xEF\xBB\xBF" + CrgFirstLine + "RcvCh:7\n"), 1);
    EXPECT_EQ(block.system[1], 7);
    EXPECT_EQ(Read("; a copy of ;Quillbrook Tonewright - reface DX configuration 2\nRcvCh:8"), 1);
    EXPECT_EQ(block.system[1], 8);
}

TEST_F(CrgFile, TakesTheEndsOfLinesOfOtherPlatforms) {
    EXPECT_EQ(
        Read(";Quillbrook Tonewright - reface DX configuration\r\nRcvCh:7\r\n\r\nSpeaker:1\r"), 1);
    EXPECT_EQ(block.system[1], 7);
    EXPECT_EQ(block.system[13], 1);
}

TEST_F(CrgFile, PassesOverCommentsUnknownKeysAndWhatDoesNotBeginWithAKey) {
    ReadLines(";TransCh:1\n\nTonewright 17.0a revision 1\nRcvCh 2\n Tempo1:3\nLCDContrast:4\n"
              "TransCh\n:5\nTransCh:6\n");
    EXPECT_EQ(block.system[0], 6);
    block.system[0] = 0;
    EXPECT_TRUE(IsCleared());
}

TEST_F(CrgFile, TheLastLineOfAKeyCountsWhateverTheOrder) {
    ReadLines("Speaker:1\nTransCh:1\nTRANSCH:2\nSpeaker:0\nTransCh:9\n");
    EXPECT_EQ(block.system[0], 9);
    EXPECT_EQ(block.system[13], 0);
}

TEST_F(CrgFile, ANumberIsReadAsFarAsItGoesAndItsLowEightBitsCount) {
    const struct {
        const char *number;
        int byte;
    } cases[] = {
        {"255", 255},
        {"256", 0},
        {"300", 44},
        {"-1", 255},
        {" 12", 12},
        {"+5", 5},
        {"7x", 7},
        {"x7", 0},
        {"", 0},
        {"1.9", 1},
        {"0x10", 0},
        {"4294967297", 1},
        {"99999999999999999999", 255}, // 10^20 - 1 ends in the bits FF
    };
    for (const auto &each : cases) {
        ReadLines(std::string("Sustain:") + each.number + "\n");
        EXPECT_EQ(block.system[11], each.byte) << each.number;
    }
}

TEST_F(CrgFile, AZeroByteEndsALineButNotTheFile) {
    ReadLines(std::string("Speaker:1\0junk\nTrans\0Ch:5\nRcvCh:3\n", 35));
    EXPECT_EQ(block.system[13], 1);
    EXPECT_EQ(block.system[0], 0);
    EXPECT_EQ(block.system[1], 3);
    EXPECT_EQ(Read(std::string("\0", 1) + CrgFirstLine), 0);
}

TEST_F(CrgFile, ALineEndsAfter259BytesAndItsRestIsALine) {
    ReadLines(";" + std::string(258, 'x') + "TransCh:4\n");
    EXPECT_EQ(block.system[0], 4);
    ReadLines(";" + std::string(257, 'x') + "TransCh:4\n");
    EXPECT_EQ(block.system[0], 0);
    EXPECT_EQ(Read(std::string(300, 'x') + CrgFirstLine), 0) << "the text is not in the first line";
}

TEST_F(CrgFile, TellsWhichKeysItLacks) {
    WriteTestText(path, CrgFirstLine + "Tempo0:0\nTempo1:120\nspeaker:1\n;MIDICtrl:1\n");
    std::vector<std::string> missing;
    ASSERT_EQ(ReadCrgFile(path.c_str(), block, &missing), 1);
    EXPECT_EQ(missing,
              (std::vector<std::string>{"TransCh", "RcvCh", "MasterTune0", "MasterTune1",
                                        "MasterTune2", "MasterTune3", "LocalCtrl", "Transpose",
                                        "LCDConstrast", "Sustain", "AutoPower", "MIDICtrl"}));
}

TEST_F(CrgFile, ThatDoesNotExistOrIsAFolderClearsTheBlock) {
    EXPECT_EQ(ReadCrgFile(path.c_str(), block), 0);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_TRUE(IsCleared());
    block.system = Filled();
    EXPECT_EQ(ReadCrgFile(folder.Folder().c_str(), block), 0);
    EXPECT_TRUE(IsCleared());
    EXPECT_EQ(ReadCrgFile("", block), 0);
}

TEST_F(CrgFile, InAFolderThatDoesNotExistIsNotWritten) {
    EXPECT_EQ(WriteCrgFile(folder.File("none/settings.crg").c_str(), block), 0);
    EXPECT_EQ(WriteCrgFile(folder.Folder().c_str(), block), 0);
}

TEST_F(CrgFile, OfTenMegabytesOfAnythingIsReadToItsEnd) {
    const std::size_t size = 10'000'000;
    for (const std::string &line : std::vector<std::string>{
             "x", "\n", std::string(1, '\0'), "MasterTune3:\n", "TransCh:3\n", "\xFF\xFE;"}) {
        std::string lines = line;
        while (lines.size() < size) {
            lines += lines;
        }
        const std::string text = CrgFirstLine + lines.substr(0, size);
        EXPECT_EQ(Read(text + "\nMIDICtrl:9\n"), 1) << testing::PrintToString(line.substr(0, 9));
        EXPECT_EQ(block.system[14], 9) << testing::PrintToString(line.substr(0, 9));
        EXPECT_EQ(Read(text.substr(CrgFirstLine.size())), 0)
            << testing::PrintToString(line.substr(0, 9));
    }
}

} // namespace
} // namespace tonewright
