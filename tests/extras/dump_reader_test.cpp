// What is found in files that are built by hand, one for each kind and each fault.
#include "extras/dump_reader.h"

#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "support/dump_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace tonewright {
namespace {

using Bytes = DumpBytes;

struct Found {
    std::vector<FoundDump> dumps;
    std::vector<KeptVoice> voices;
    std::vector<std::uint64_t> offsets; // of the voices
};

Found Read(const Bytes &file) {
    Found found;
    DumpVisitor visitor;
    visitor.voice = [&](const FoundVoice &voice) {
        EXPECT_EQ(voice.place, found.voices.size());
        found.voices.push_back(KeepVoice(voice.voice));
        found.offsets.push_back(voice.offset);
        return true;
    };
    visitor.dump = [&](const FoundDump &dump) {
        found.dumps.push_back(dump);
        return true;
    };
    EXPECT_EQ(ReadDumps(file, visitor), DumpRead::Done);
    return found;
}

// What is told of a dump, in a line that a test can hold against another.
std::string Line(const FoundDump &dump) {
    std::string line =
        TextOfDump(dump) + " @" + std::to_string(dump.offset) + "+" + std::to_string(dump.length);
    if (dump.channel != 0) {
        line += " ch" + std::to_string(dump.channel);
    }
    const std::string faults = TextOfFaults(dump);
    return faults.empty() ? line : line + " (" + faults + ")";
}

std::vector<std::string> Lines(const Bytes &file) {
    std::vector<std::string> lines;
    for (const FoundDump &dump : Read(file).dumps) {
        lines.push_back(Line(dump));
    }
    return lines;
}

using Strings = std::vector<std::string>;

TEST(DumpReader, AnEmptyFileHasNothing) {
    EXPECT_EQ(Lines({}), Strings{});
}

TEST(DumpReader, ABankAsWeWriteIt) {
    const Found found = Read(TestBank());
    ASSERT_EQ(found.dumps.size(), 1u);
    EXPECT_EQ(found.dumps[0], (FoundDump{.kind = DumpKind::Dx7Bank,
                                         .offset = 0,
                                         .length = 4104,
                                         .family = Dx7DriverId,
                                         .channel = 1,
                                         .voices = 32}));
    ASSERT_EQ(found.voices.size(), 32u);
    for (int number = 0; number < 32; ++number) {
        EXPECT_EQ(found.voices[number].bytes, TestPackedVoice(number));
        EXPECT_EQ(found.voices[number].form, VoiceForm::Dx7Packed);
        EXPECT_EQ(found.offsets[number], 6u + 128 * number);
    }
}

TEST(DumpReader, SingleVoicesOfBothLengths) {
    const Bytes sent = TestVoiceMessage(), ours = TestVoiceFile();
    ASSERT_EQ(sent.size(), 163u);
    const Found found = Read(Join({sent, ours, sent}));
    EXPECT_EQ(
        Lines(Join({sent, ours, sent})),
        (Strings{"DX7 voice @0+163 ch1", "DX7 voice @163+164 ch1", "DX7 voice @327+163 ch1"}));
    ASSERT_EQ(found.voices.size(), 3u);
    EXPECT_EQ(found.voices[0],
              (KeptVoice{VoiceForm::Dx7Single, Bytes(sent.begin() + 6, sent.begin() + 161)}));
    EXPECT_EQ(found.voices[1], (KeptVoice{VoiceForm::Dx7Stored, TestUnpackedVoice()}));
    EXPECT_EQ(found.offsets, (std::vector<std::uint64_t>{6, 169, 333}));
}

TEST(DumpReader, VoicesOfTheRefaceDxOneBehindTheOther) {
    const Bytes one = TestRefaceMessages(TestRefaceVoice(1)),
                two = TestRefaceMessages(TestRefaceVoice(2));
    ASSERT_EQ(one.size(), 241u);
    EXPECT_EQ(Lines(one), Strings{"reface DX voice @0+241 ch1"});
    const Found found = Read(Join({one, two}));
    ASSERT_EQ(found.dumps.size(), 1u);
    EXPECT_EQ(Line(found.dumps[0]), "reface DX voices, 2 voices @0+482 ch1");
    EXPECT_EQ(found.dumps[0].family, RefaceDriverId);
    ASSERT_EQ(found.voices.size(), 2u);
    EXPECT_EQ(found.voices[0], (KeptVoice{VoiceForm::Reface, TestRefaceVoice(1)}));
    EXPECT_EQ(found.voices[1], (KeptVoice{VoiceForm::Reface, TestRefaceVoice(2)}));
    EXPECT_EQ(found.offsets, (std::vector<std::uint64_t>{0, 241}));
}

TEST(DumpReader, VoicesWithoutAMessage) {
    EXPECT_EQ(Lines(TestPackedVoices(32)),
              Strings{"DX7 bank without its header, 32 voices @0+4096 (no header)"});
}

TEST(DumpReader, AFileOnDiskIsReadLikeBytes) {
    const TempFolder folder;
    const std::string path = folder.Write("bank.syx", Join({TestBank(), TextBytes("end")}));
    const auto list = ListDumps(path.c_str(), 5);
    ASSERT_TRUE(list);
    ASSERT_EQ(list->dumps.size(), 2u);
    EXPECT_EQ(list->dumps[0].voices, 32u);
    EXPECT_EQ(Line(list->dumps[1]), "unknown data @4104+3");
    EXPECT_EQ(list->voices.size(), 5u);
    const auto voice = ReadVoiceAt(path.c_str(), 31);
    ASSERT_TRUE(voice);
    EXPECT_EQ(voice->bytes, TestPackedVoice(31));
    errno = EIO;
    EXPECT_FALSE(ReadVoiceAt(path.c_str(), 32));
    EXPECT_EQ(errno, 0);
    EXPECT_FALSE(ListDumps(folder.File("none").c_str(), 5));
    EXPECT_EQ(errno, ENOENT);
}

} // namespace
} // namespace tonewright
