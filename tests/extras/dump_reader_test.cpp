// What is found in files that are built by hand, one for each kind and each fault.
#include "extras/dump_reader.h"

#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "support/dump_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>

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

TEST(DumpReader, VoicesWithoutAMessageBehindAndInFrontOfABlockThatIsNone) {
    const Bytes block = Join({{0, 4}, TextBytes("BANK"), Bytes(122)});
    const Bytes file = Join({block, TestPackedVoices(32), Bytes(512)});
    EXPECT_EQ(Lines(file), (Strings{"unknown data @0+128",
                                    "DX7 bank without its header, 32 voices @128+4096 (no header)",
                                    "unknown data @4224+512"}));
    const Found found = Read(file);
    EXPECT_EQ(found.voices[0].bytes, TestPackedVoice(0));
    EXPECT_EQ(found.offsets[31], 128u + 31 * 128);
    // Fewer voices than a bank has, and its checksum and end.
    Bytes bank = Join({TestPackedVoices(28), Bytes(512)});
    bank += Bytes{TestChecksum(bank), 0xF7};
    EXPECT_EQ(Lines(bank)[0], "DX7 bank without its header, 32 voices @0+4098 (no header)");
    EXPECT_EQ(Lines(bank).size(), 1u);
}

TEST(DumpReader, TheReadingOfALargeFileMayBeEndedWhereNothingIsFound) {
    const TempFolder folder;
    const std::string path = folder.Write("large.bin", TestBank());
    std::filesystem::resize_file(path, 256 << 20); // takes no room on the disk
    std::uint64_t read = 0, voices = 0;
    DumpVisitor visitor;
    visitor.bytes = [&](std::span<const std::uint8_t> piece) { read += piece.size(); };
    visitor.voice = [&](const FoundVoice &) {
        ++voices;
        return true;
    };
    visitor.goesOn = [&] { return read < (20 << 20); };
    EXPECT_EQ(ReadDumps(path.c_str(), visitor), DumpRead::Ended);
    EXPECT_GE(read, 20u << 20);
    EXPECT_LE(read, 22u << 20);
    EXPECT_EQ(voices, 32u);
}

TEST(DumpReader, AFileOnDiskIsReadLikeBytes) {
    const TempFolder folder;
    const std::string path = folder.Write("bank.syx", Join({TestBank(), TextBytes("end")}));
    Strings lines;
    DumpVisitor visitor;
    visitor.dump = [&lines](const FoundDump &dump) {
        lines.push_back(Line(dump));
        return true;
    };
    EXPECT_EQ(ReadDumps(path.c_str(), visitor), DumpRead::Done);
    EXPECT_EQ(lines, (Strings{"DX7 bank, 32 voices @0+4104 ch1", "unknown data @4104+3"}));
    const auto voice = ReadVoiceAt(path.c_str(), 31);
    ASSERT_TRUE(voice);
    EXPECT_EQ(voice->bytes, TestPackedVoice(31));
    errno = EIO;
    EXPECT_FALSE(ReadVoiceAt(path.c_str(), 32));
    EXPECT_EQ(errno, 0);
    EXPECT_EQ(ReadDumps(folder.File("none").c_str(), visitor), DumpRead::Failed);
    EXPECT_EQ(errno, ENOENT);
}

// ---- banks with something wrong

Bytes Without(Bytes bytes, std::size_t from, std::size_t count) {
    const auto start = bytes.begin() + static_cast<std::ptrdiff_t>(from);
    bytes.erase(start, start + static_cast<std::ptrdiff_t>(count));
    return bytes;
}

Bytes FirstOf(Bytes bytes, std::size_t count) {
    bytes.resize(count);
    return bytes;
}

Bytes With(Bytes bytes, std::size_t at, int byte) {
    bytes[at] = static_cast<std::uint8_t>(byte);
    return bytes;
}

TEST(DumpReader, ABankForAnotherChannel) {
    EXPECT_EQ(Lines(TestBankMessage(5)),
              Strings{"DX7 bank, 32 voices @0+4104 ch5 (for channel 5)"});
    EXPECT_EQ(Lines(TestBankMessage(16)),
              Strings{"DX7 bank, 32 voices @0+4104 ch16 (for channel 16)"});
    EXPECT_EQ(Lines(TestVoiceMessage(2)), Strings{"DX7 voice @0+163 ch2 (for channel 2)"});
}

TEST(DumpReader, AWrongChecksumAndOneWithBit7) {
    const Bytes bank = TestBank();
    EXPECT_EQ(Lines(With(bank, 4102, bank[4102] ^ 1)),
              Strings{"DX7 bank, 32 voices @0+4104 ch1 (wrong checksum)"});
    EXPECT_EQ(Lines(With(bank, 4102, bank[4102] | 0x80)),
              Strings{"DX7 bank, 32 voices @0+4104 ch1 (bit 7 set in the checksum)"});
    EXPECT_EQ(Lines(With(bank, 4102, bank[4102] ^ 0x81)),
              Strings{"DX7 bank, 32 voices @0+4104 ch1 (wrong checksum)"});
    const Bytes voice = TestVoiceMessage(), ours = TestVoiceFile();
    EXPECT_EQ(Lines(With(voice, 161, voice[161] ^ 1)),
              Strings{"DX7 voice @0+163 ch1 (wrong checksum)"});
    EXPECT_EQ(Lines(With(voice, 161, voice[161] | 0x80)),
              Strings{"DX7 voice @0+163 ch1 (bit 7 set in the checksum)"});
    EXPECT_EQ(Lines(With(ours, 162, ours[162] | 0x80)),
              Strings{"DX7 voice @0+164 ch1 (bit 7 set in the checksum)"});
}

TEST(DumpReader, AnotherByteCountThanThatOfTheData) {
    EXPECT_EQ(Lines(With(TestBank(), 4, 0x10)),
              Strings{"DX7 bank, 32 voices @0+4104 ch1 (wrong byte count)"});
    EXPECT_EQ(Lines(With(TestVoiceMessage(), 5, 0x1C)),
              Strings{"DX7 voice @0+163 ch1 (wrong byte count)"});
}

TEST(DumpReader, AMissingEnd) {
    const Strings bank = {"DX7 bank, 32 voices @0+4103 ch1 (no end byte)"};
    EXPECT_EQ(Lines(FirstOf(TestBank(), 4103)), bank);
    EXPECT_EQ(Lines(Join({FirstOf(TestBank(), 4103), TextBytes("Hello")})),
              (Strings{bank[0], "unknown data @4103+5"}));
    EXPECT_EQ(Lines(Join({FirstOf(TestBank(), 4103), TestVoiceMessage()})),
              (Strings{bank[0], "DX7 voice @4103+163 ch1"}));
    EXPECT_EQ(Lines(FirstOf(TestBank(), 4102)),
              Strings{"DX7 bank, 32 voices @0+4102 ch1 (wrong checksum, no end byte, cut short)"});
    EXPECT_EQ(Lines(Without(TestBank(), 4102, 1)),
              Strings{"DX7 bank, 32 voices @0+4103 ch1 (wrong checksum)"});
    // What follows has the right sum neither behind 155 bytes nor behind 156.
    EXPECT_EQ(
        Lines(Join({FirstOf(TestVoiceMessage(), 161), TextBytes("Hello")})),
        (Strings{"DX7 voice @0+161 ch1 (wrong checksum, no end byte)", "unknown data @161+5"}));
    EXPECT_EQ(Lines(Join({FirstOf(TestVoiceMessage(), 162), TextBytes("Hello")})),
              (Strings{"DX7 voice @0+162 ch1 (no end byte)", "unknown data @162+5"}));
    EXPECT_EQ(Lines(Join({FirstOf(TestVoiceFile(), 163), TextBytes("Hello")})),
              (Strings{"DX7 voice @0+163 ch1 (no end byte)", "unknown data @163+5"}));
}

TEST(DumpReader, ACutBankHasItsWholeVoices) {
    EXPECT_EQ(Lines(FirstOf(TestBank(), 6 + 128 * 20 + 127)),
              Strings{"DX7 bank, 20 voices @0+2693 ch1 (no end byte, cut short)"});
    EXPECT_EQ(Read(FirstOf(TestBank(), 6 + 128 * 20 + 127)).voices.back().bytes,
              TestPackedVoice(19));
    EXPECT_EQ(Lines(FirstOf(TestBank(), 6)),
              Strings{"DX7 bank, 0 voices @0+6 ch1 (no end byte, cut short)"});
    EXPECT_EQ(Lines(Join({FirstOf(TestBank(), 6 + 128 * 3 + 1), TestBank()})),
              (Strings{"DX7 bank, 3 voices @0+391 ch1 (no end byte, cut short)",
                       "DX7 bank, 32 voices @391+4104 ch1"}));
    EXPECT_EQ(Lines(Join({FirstOf(TestBank(), 6 + 128 * 3), {0x11, 0xF7}})),
              Strings{"DX7 bank, 3 voices @0+392 ch1 (cut short)"});
    EXPECT_EQ(Lines(FirstOf(TestVoiceMessage(), 160)),
              Strings{"DX7 voice, 0 voices @0+160 ch1 (no end byte, cut short)"});
    // Bytes of eight bits that follow are none of the data.
    EXPECT_EQ(
        Lines(Join({FirstOf(TestBank(), 6 + 128 * 2), {0xA5, 0x12}})),
        (Strings{"DX7 bank, 2 voices @0+262 ch1 (no end byte, cut short)", "unknown data @262+2"}));
}

TEST(DumpReader, ADumpOfFewerOrMoreVoicesThatSaysSo) {
    EXPECT_EQ(Lines(TestBulk(0x09, TestPackedVoices(10))),
              Strings{"DX7 bank, 10 voices @0+1288 ch1"});
    Bytes long128 = TestBulk(0x09, TestPackedVoices(128));
    long128[4] = 0x20;
    long128[5] = 0x00;
    EXPECT_EQ(Lines(long128), Strings{"DX7 bank, 128 voices @0+16392 ch1"});
    const Bytes long33 = TestBulk(0x09, TestPackedVoices(33));
    ASSERT_EQ(long33[4], 0x21);
    EXPECT_EQ(Lines(long33), Strings{"DX7 bank, 33 voices @0+4232 ch1"});
    EXPECT_EQ(Lines(With(long33, 4, 0x20)),
              Strings{"DX7 bank, 33 voices @0+4232 ch1 (wrong byte count)"});
    EXPECT_EQ(Read(long128).voices[127].bytes, TestPackedVoice(31));
}

TEST(DumpReader, AFewBytesTooManyInFrontOfTheEnd) {
    const Bytes bank = TestBank();
    const auto lines = [&bank](std::size_t at, std::size_t count) {
        Bytes longer = bank;
        longer.insert(longer.begin() + static_cast<std::ptrdiff_t>(at), count, 0x33);
        return Lines(longer);
    };
    EXPECT_EQ(lines(4103, 1),
              Strings{"DX7 bank, 32 voices @0+4105 ch1 (more bytes than its data have)"});
    EXPECT_EQ(lines(4102, 8),
              Strings{"DX7 bank, 32 voices @0+4112 ch1 (more bytes than its data have)"});
    EXPECT_EQ(lines(2000, 1), Strings{"DX7 bank, 32 voices @0+4105 ch1 (wrong checksum, more bytes "
                                      "than its data have, values out of range)"});
    EXPECT_EQ(lines(4103, 9),
              (Strings{"DX7 bank, 32 voices @0+4103 ch1 (no end byte)", "unknown data @4103+10"}));
}

Bytes Inserted(Bytes bytes, std::size_t at, int byte) {
    bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at), static_cast<std::uint8_t>(byte));
    return bytes;
}

TEST(DumpReader, RealTimeBytesWithinAMessageAreNoPartOfIt) {
    for (const std::size_t at : {6u, 7u, 2000u, 4102u, 4103u}) {
        const Bytes bank = Inserted(TestBank(), at, 0xFE);
        EXPECT_EQ(Lines(bank), Strings{"DX7 bank, 32 voices @0+4105 ch1 (real-time bytes within)"})
            << at;
        EXPECT_EQ(Read(bank).voices.back().bytes, TestPackedVoice(31));
    }
    const Bytes clocks = Inserted(Inserted(TestBank(), 6 + 128, 0xF8), 6 + 128, 0xF8);
    const Found found = Read(clocks);
    EXPECT_EQ(found.offsets[0], 6u);
    EXPECT_EQ(found.offsets[1], 6u + 128 + 2);
    EXPECT_EQ(found.offsets[31], 6u + 31 * 128 + 2);
    EXPECT_EQ(found.voices[1].bytes, TestPackedVoice(1));
    // What would be our own voice of 156 bytes has the wrong sum.
    const Bytes voice = Inserted(TestVoiceMessage(), 100, 0xFE);
    EXPECT_EQ(Lines(voice), Strings{"DX7 voice @0+164 ch1 (real-time bytes within)"});
    EXPECT_EQ(Read(voice).voices[0].form, VoiceForm::Dx7Single);
    EXPECT_EQ(Lines(Inserted(TestRefaceMessages(TestRefaceVoice(1)), 40, 0xFA)),
              Strings{"reface DX voice @0+242 ch1 (real-time bytes within)"});
    EXPECT_EQ(Read(Inserted(TestRefaceMessages(TestRefaceVoice(1)), 40, 0xFA)).voices[0].bytes,
              TestRefaceVoice(1));
    // A message that begins within another one ends it; what is no whole message is as before.
    EXPECT_EQ(Lines(Join({FirstOf(TestBank(), 300), {0xFE}, TestBank()}))[0],
              "DX7 bank, 2 voices @0+300 ch1 (no end byte, cut short)");
    EXPECT_EQ(Lines(Without(Inserted(TestBank(), 300, 0xFE), 3000, 2))[0],
              "DX7 bank, 2 voices @0+300 ch1 (no end byte, cut short)");
}

TEST(DumpReader, BytesAbove7F) {
    Bytes bank = With(TestBank(), 6 + 99, 0xA7);
    bank = With(bank, 6 + 4095, 0xFE);
    FixTestChecksum(bank);
    EXPECT_EQ(Lines(bank), Strings{"DX7 bank, 32 voices @0+4104 ch1 (bytes above 7F, values out "
                                   "of range)"});
    EXPECT_EQ(Read(bank).voices[0].bytes[99], 0xA7);
    // So may be bytes that elsewhere begin and end a message.
    bank = With(With(TestBank(), 6 + 130, 0xF7), 6 + 500, 0xF0);
    FixTestChecksum(bank);
    EXPECT_EQ(Lines(bank), Strings{"DX7 bank, 32 voices @0+4104 ch1 (bytes above 7F, values out "
                                   "of range)"});
    // Where a message follows they are its end and its start.
    EXPECT_EQ(Lines(With(With(TestBank(), 6 + 130, 0xF7), 6 + 131, 0xF0))[0],
              "DX7 bank, 1 voice @0+137 ch1 (cut short)");
    bank = TestBank();
    bank.resize(6 + 300);
    bank = Join({bank, TestVoiceMessage(), Bytes(4104 - 6 - 300 - 163 - 1, 1), {0xF7}});
    EXPECT_EQ(Lines(bank)[0], "DX7 bank, 2 voices @0+306 ch1 (no end byte, cut short)");
    EXPECT_EQ(Lines(bank)[1], "DX7 voice @306+163 ch1");
}

TEST(DumpReader, AMessageInsideABankIsNoneOfItsDataWhateverTheSum) {
    Bytes bank = With(With(TestBank(), 6 + 300, 0xF7), 6 + 301, 0xF0);
    FixTestChecksum(bank);
    EXPECT_EQ(Lines(bank)[0], "DX7 bank, 2 voices @0+307 ch1 (cut short)");
    bank = With(With(TestBank(), 6 + 300, 0xF0), 6 + 301, 0x43);
    FixTestChecksum(bank);
    EXPECT_EQ(Lines(bank)[0], "DX7 bank, 2 voices @0+306 ch1 (no end byte, cut short)");
    // The sum shows that F0 in front of another byte was data.
    bank = With(With(TestBank(), 6 + 300, 0xF0), 6 + 301, 0x42);
    FixTestChecksum(bank);
    EXPECT_EQ(Lines(bank).size(), 1u);
    bank[4102] ^= 1;
    EXPECT_EQ(Lines(bank)[0], "DX7 bank, 2 voices @0+306 ch1 (no end byte, cut short)");
}

TEST(DumpReader, AmidOtherBytesAWrongCountNeedsWhatIsRight) {
    const Bytes junk = {0x90, 0x91};
    const auto lines = [&](const Bytes &message) { return Lines(Join({junk, message, junk})); };
    const Bytes bank = With(TestBank(), 4, 0x10), voice = With(TestVoiceMessage(), 4, 0x00);
    EXPECT_EQ(lines(bank)[1], "DX7 bank, 32 voices @2+4104 ch1 (wrong byte count)");
    EXPECT_EQ(lines(With(bank, 4102, bank[4102] ^ 1))[1],
              "DX7 bank, 32 voices @2+4104 ch1 (wrong checksum, wrong byte count)");
    EXPECT_EQ(lines(FirstOf(bank, 4103)), (Strings{"unknown data @0+8",
                                                   "DX7 bank without its header, 32 voices "
                                                   "@8+4096 (no header)",
                                                   "unknown data @4104+3"}));
    EXPECT_EQ(lines(voice)[1], "DX7 voice @2+163 ch1 (wrong byte count)");
    EXPECT_EQ(lines(With(voice, 161, voice[161] ^ 1)), Strings{"unknown data @0+167"});
    EXPECT_EQ(lines(With(TestVoiceMessage(), 161, 0x7F)).size(), 3u);
}

TEST(DumpReader, AmidOtherBytesAMessageOfOthersIsFollowedByAnotherOne) {
    const Bytes junk = {0x90, 0x91};
    const auto other = [](std::size_t size) {
        return Join({{0xF0, 0x41}, Bytes(size - 3, 1), {0xF7}});
    };
    const std::string line = "other message: manufacturer 41 @2+";
    EXPECT_EQ(Lines(Join({junk, other(33)}))[1], line + "33");
    EXPECT_EQ(Lines(Join({junk, other(33), TestBank()}))[1], line + "33");
    EXPECT_EQ(Lines(Join({junk, other(32)})), Strings{"unknown data @0+34"});
    EXPECT_EQ(Lines(Join({junk, other(33), junk})), Strings{"unknown data @0+37"});
    EXPECT_EQ(Lines(Join({junk, {0xF0, 0x41}, Bytes(100, 1)})), Strings{"unknown data @0+104"});
    EXPECT_EQ(Lines(Join({junk, {0xF0, 0, 0, 0}, Bytes(100, 1), {0xF7}})),
              Strings{"unknown data @0+107"});
    // A parameter change may be chance there.
    EXPECT_EQ(Lines(Join({junk, {0xF0, 0x43, 0x10, 1, 2, 3, 0xF7}})), Strings{"unknown data @0+9"});
}

TEST(DumpReader, NamedDataOfAnotherCount) {
    const Bytes named = TestBulk(0x7E, Join({TextBytes("LM  8973PE"), Bytes(51, 7)}));
    EXPECT_EQ(Lines(With(named, 5, 60)),
              Strings{"DX7II performances: one @0+69 ch1 (wrong byte count)"});
    EXPECT_EQ(Lines(With(named, 5, 62)),
              Strings{"DX7II performances: one @0+69 ch1 (wrong checksum)"});
    EXPECT_EQ(Lines(With(named, 5, 63)), Strings{"DX7II performances: one @0+69 ch1 (cut short)"});
    EXPECT_EQ(Lines(With(named, 67, named[67] ^ 1)),
              Strings{"DX7II performances: one @0+69 ch1 (wrong checksum)"});
    EXPECT_EQ(Lines(FirstOf(named, 40)),
              Strings{"DX7II performances: one @0+40 ch1 (no end byte, cut short)"});
}

TEST(DumpReader, EveryStartOfEveryMessageIsRead) {
    const Bytes voice = TestRefaceVoice(1);
    for (const Bytes &message :
         {TestRefaceHeader(), TestRefaceCommon(voice), TestVoiceMessage(), TestVoiceFile(),
          TestBulk(0x7E, Join({TextBytes("LM  8973PE"), Bytes(51, 7)})),
          Bytes{0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0, 0, 0, 0, 0xF7},
          Bytes{0xF0, 0x43, 0x10, 1, 2, 3, 0xF7}, Bytes{0xF0, 0, 0x20, 0x33, 1, 0xF7}}) {
        for (std::size_t size = 1; size <= message.size(); ++size) {
            std::uint64_t length = 0;
            for (const FoundDump &dump : Read(FirstOf(message, size)).dumps) {
                EXPECT_EQ(dump.offset, length);
                length += dump.length;
            }
            EXPECT_EQ(length, size);
        }
    }
}

TEST(DumpReader, ValuesThatTheInstrumentDoesNotHave) {
    const auto lines = [](std::size_t at, int byte) {
        Bytes bank = With(TestBank(), 6 + at, byte);
        FixTestChecksum(bank);
        return Lines(bank);
    };
    const Strings sound = {"DX7 bank, 32 voices @0+4104 ch1"};
    const Strings beyond = {"DX7 bank, 32 voices @0+4104 ch1 (values out of range)"};
    EXPECT_EQ(lines(0, 99), sound);
    EXPECT_EQ(lines(0, 100), beyond);
    EXPECT_EQ(lines(12, 14 << 3), sound);
    EXPECT_EQ(lines(12, 15 << 3), beyond);
    EXPECT_EQ(lines(11, 0x70), sound); // bits that no parameter has
    EXPECT_EQ(lines(116, 5 << 1), sound);
    EXPECT_EQ(lines(116, 6 << 1), beyond);
    EXPECT_EQ(lines(117, 48), sound);
    EXPECT_EQ(lines(117, 49), beyond);
    EXPECT_EQ(lines(127, 0x7F), sound); // of the name
    EXPECT_EQ(lines(31 * 128 + 117, 49), beyond);
    Bytes voice = With(TestVoiceFile(), 6 + 13, 8);
    FixTestChecksum(voice);
    EXPECT_EQ(Lines(voice), Strings{"DX7 voice @0+164 ch1 (values out of range)"});
    voice = With(TestVoiceFile(), 6 + 155, 0x40);
    FixTestChecksum(voice);
    EXPECT_EQ(Lines(voice), Strings{"DX7 voice @0+164 ch1 (values out of range)"});
}

TEST(DumpReader, ABankBehindAndInFrontOfAnything) {
    const Bytes junk = TextBytes("A bank of mine\r\n\x1A");
    EXPECT_EQ(
        Lines(Join({junk, TestBank(), junk, TestBankMessage(3)})),
        (Strings{"unknown data @0+17", "DX7 bank, 32 voices @17+4104 ch1", "unknown data @4121+17",
                 "DX7 bank, 32 voices @4138+4104 ch3 (for channel 3)"}));
    // A byte that seems to begin a message hides no message behind it.
    EXPECT_EQ(
        Lines(Join({{0xF0}, TestBank(), {0xF0, 0x43, 0x00}, TestBank(), {0xF7}})),
        (Strings{"unknown data @0+1", "DX7 bank, 32 voices @1+4104 ch1", "unknown data @4105+3",
                 "DX7 bank, 32 voices @4108+4104 ch1", "unknown data @8212+1"}));
}

TEST(DumpReader, ABankWhoseHeaderIsBroken) {
    const auto line = [](std::size_t length) {
        return Strings{"DX7 bank without its header, 32 voices @0+" + std::to_string(length) +
                       " (no header)"};
    };
    for (std::size_t lost = 1; lost <= 3; ++lost) {
        EXPECT_EQ(Lines(Join({Without(TestBank(), 0, lost), {1}}))[0], line(4104 - lost)[0]);
    }
    EXPECT_EQ(Lines(With(TestBank(), 0, 0x70)), line(4104));
    EXPECT_EQ(Lines(With(With(TestBank(), 0, 0x70), 2, 0x0F)), line(4104));
    EXPECT_EQ(Lines(With(With(TestBank(), 0, 0x70), 2, 0x10))[0], "unknown data @0+6");
    // A header of something else, or any bytes in front.
    EXPECT_EQ(Lines(With(With(TestBank(), 1, 0), 3, 0)),
              (Strings{"unknown data @0+6",
                       "DX7 bank without its header, 32 voices @6+4098 (no header)"}));
    EXPECT_EQ(Lines(Join({Bytes(255, 0x11), TestPackedVoices(4), {0x22}})),
              (Strings{"unknown data @0+255",
                       "DX7 bank without its header, 4 voices @255+512 (no header)",
                       "unknown data @767+1"}));
    EXPECT_EQ(Lines(Join({Bytes(257, 0x11), TestPackedVoices(4)})), Strings{"unknown data @0+769"});
    EXPECT_EQ(Lines(Join({Bytes(1, 0x11), TestPackedVoices(3)})), Strings{"unknown data @0+385"});
    EXPECT_EQ(Lines(Join({TestPackedVoices(32), {TestBank()[4102], 0xF7}})), line(4098));
    EXPECT_EQ(Lines(Join({TestPackedVoices(32), {0x01, 0xF7}})),
              (Strings{line(4096)[0], "unknown data @4096+2"}));
    for (std::size_t others = 1; others < 128; ++others) {
        EXPECT_EQ(Lines(Join({Bytes(others, 0x11), TestPackedVoices(32)})),
                  (Strings{"unknown data @0+" + std::to_string(others),
                           "DX7 bank without its header, 32 voices @" + std::to_string(others) +
                               "+4096 (no header)"}));
    }
    const Found found = Read(With(TestBank(), 0, 0x70));
    EXPECT_EQ(found.voices[31].bytes, TestPackedVoice(31));
    EXPECT_EQ(found.offsets[31], 6u + 31 * 128);
    EXPECT_EQ(found.dumps[0].confidence, 99);
    // What seems to be such a header makes nothing of other bytes.
    EXPECT_EQ(Lines(Join({{0x43, 0x00, 0x09, 0x20, 0x00}, Bytes(4096, 0x55)})),
              Strings{"unknown data @0+4101"});
}

// ---- what is named and skipped

Bytes Named(const std::string &name, std::size_t size) {
    return TestBulk(0x7E, Join({TextBytes(name), Bytes(size, 7)}), 4);
}

TEST(DumpReader, WhatLaterModelsSendBesideVoices) {
    EXPECT_EQ(Lines(TestBulk(0x01, Bytes(94, 5), 2)),
              Strings{"DX7 function data: of a TX7 voice @0+102 ch2"});
    EXPECT_EQ(Lines(TestBulk(0x02, Bytes(4096, 5), 2)),
              Strings{"DX7 function data: of 64 TX7 voices @0+4104 ch2"});
    EXPECT_EQ(Lines(TestBulk(0x05, Bytes(49, 5))),
              Strings{"DX7II supplement: of a voice @0+57 ch1"});
    EXPECT_EQ(Lines(TestBulk(0x06, Bytes(1120, 5))),
              Strings{"DX7II supplement: of a bank @0+1128 ch1"});
    EXPECT_EQ(Lines(Named("LM  8973PE", 51)), Strings{"DX7II performances: one @0+69 ch4"});
    EXPECT_EQ(Lines(Named("LM  8973PM", 1632)), Strings{"DX7II performances @0+1650 ch4"});
    EXPECT_EQ(Lines(Named("LM  8973S ", 112)), Strings{"DX7II set-up @0+130 ch4"});
    EXPECT_EQ(Lines(Named("LM  8952PE", 168)),
              Strings{"DX7II performances: of a TX802, one @0+186 ch4"});
    EXPECT_EQ(Lines(Named("LM  8952PM", 80)), Strings{"DX7II performances: of a TX802 @0+98 ch4"});
    EXPECT_EQ(Lines(Named("LM  MCRYE ", 256)),
              Strings{"DX7 function data: microtuning @0+274 ch4"});
    EXPECT_EQ(Lines(Named("LM  MCRYM0", 256)),
              Strings{"DX7 function data: microtuning @0+274 ch4"});
    EXPECT_EQ(Lines(Named("LM  FKSYE ", 100)),
              Strings{"DX7II supplement: fractional scaling @0+118 ch4"});
    EXPECT_EQ(Read(Named("LM  8973PE", 51)).dumps[0].family, Dx7DriverId);
    EXPECT_EQ(Lines(Named("LM  1234  ", 10)), Strings{"other message: manufacturer 43 @0+28 ch4"});
    EXPECT_EQ(Lines({0xF0, 0x43, 0x10, 0x01, 0x1B, 0x3F, 0xF7}),
              Strings{"DX7 parameter changes @0+7 ch1"});
    EXPECT_EQ(Lines(Join({{0xF0, 0x43, 0x11, 0x08, 0x40, 0x01, 0xF7},
                          {0xF0, 0x43, 0x11, 0x19, 0x40, 0x01, 0xF7}})),
              Strings{"DX7 parameter changes: 2 messages @0+14 ch2"});
    EXPECT_EQ(Lines({0xF0, 0x43, 0x20, 0x09, 0x00, 0xF7}),
              Strings{"other message: requests @0+6 ch1"});
    EXPECT_EQ(Lines({0xF0, 0x43, 0x20, 0x09, 0xF7}), Strings{"other message: requests @0+5 ch1"});
}

TEST(DumpReader, DumpsOfSeveralBlocksAndOfWhatNobodyKnows) {
    Bytes memory = {0xF0, 0x43, 0x00, 0x7E};
    for (int block = 0; block < 64; ++block) {
        memory += Join({{0x01, 0x32}, TextBytes("LM  8952PM"), Bytes(168, 3), {0x55}});
    }
    memory.push_back(0xF7);
    ASSERT_EQ(memory.size(), 11589u);
    EXPECT_EQ(Lines(memory), Strings{"DX7II performances: of a TX802 @0+11589 ch1"});
    EXPECT_EQ(Lines(With(memory, 5, 0x31)),
              Strings{"DX7II performances: of a TX802 @0+11589 ch1 (wrong byte count)"});
    Bytes unknown = Named("LM  1234  ", 10);
    unknown[unknown.size() - 2] ^= 1;
    unknown[5] ^= 1;
    EXPECT_EQ(Lines(unknown), Strings{"other message: manufacturer 43 @0+28 ch4"});
    Bytes known = Named("LM  8973PE", 51);
    known[known.size() - 2] ^= 1;
    EXPECT_EQ(Lines(known), Strings{"DX7II performances: one @0+69 ch4 (wrong checksum)"});
}

TEST(DumpReader, ABankInsideTheDumpsOfALaterModel) {
    EXPECT_EQ(
        Lines(
            Join({TestBulk(0x06, Bytes(1120, 5)), TestBankMessage(), TestBulk(0x06, Bytes(1120, 6)),
                  TestBankMessage(), Named("LM  8973PM", 1632), Named("LM  8973S ", 112)})),
        (Strings{"DX7II supplement: of a bank @0+1128 ch1", "DX7 bank, 32 voices @1128+4104 ch1",
                 "DX7II supplement: of a bank @5232+1128 ch1", "DX7 bank, 32 voices @6360+4104 ch1",
                 "DX7II performances @10464+1650 ch4", "DX7II set-up @12114+130 ch4"}));
}

TEST(DumpReader, WhatInstrumentsOfFourOperatorsSend) {
    EXPECT_EQ(Lines(TestBulk(0x04, Bytes(4096, 9), 3)),
              Strings{"four-operator bank, 32 voices @0+4104 ch3"});
    EXPECT_EQ(Lines(Join({Named("LM  8976AE", 23), TestBulk(0x03, Bytes(93, 9))})),
              (Strings{"four-operator data: supplement of a voice @0+41 ch4",
                       "four-operator voice @41+101 ch1"}));
    EXPECT_EQ(Read(TestBulk(0x04, Bytes(4096, 9))).dumps[0].family, NoDriverId);
    EXPECT_TRUE(Read(TestBulk(0x04, Bytes(4096, 9))).voices.empty());
    EXPECT_EQ(Read(TestBulk(0x03, Bytes(93, 9))).dumps[0].voices, 0u);
    EXPECT_EQ(Read(TestBulk(0x03, Bytes(93, 9))).dumps[0].otherVoices, 1u);
    EXPECT_EQ(Lines(Named("LM  8976PM", 80)),
              Strings{"four-operator data: performances @0+98 ch4"});
    EXPECT_EQ(Lines({0xF0, 0x43, 0x10, 0x12, 0x1B, 0x3F, 0xF7}),
              Strings{"four-operator data: parameter changes @0+7 ch1"});
    // The functions of the TX7 are no such data.
    EXPECT_EQ(Lines({0xF0, 0x43, 0x10, 0x11, 0x1B, 0x3F, 0xF7}),
              Strings{"DX7 parameter changes @0+7 ch1"});
    Bytes bank = {0xF0, 0x43, 0x75, 0x02, 0x00, 0x00, 0x03};
    bank += Join({{0x00, 0x40}, Bytes(64, 1), {0x40}});
    for (int voice = 0; voice < 48; ++voice) {
        bank += Join({{0x01, 0x00}, Bytes(128, 2), {0x00}});
    }
    bank.push_back(0xF7);
    ASSERT_EQ(bank.size(), 6363u);
    EXPECT_EQ(Lines(bank), Strings{"four-operator bank, 48 voices: FB-01 @0+6363 ch3"});
    EXPECT_EQ(
        Lines(Join(
            {{0xF0, 0x43, 0x75, 0x00, 0x08, 0x00, 0x00, 0x01, 0x00}, Bytes(128, 2), {0x00, 0xF7}})),
        Strings{"four-operator voice: FB-01 @0+139 ch1"});
    EXPECT_EQ(Lines({0xF0, 0x43, 0x75, 0x00, 0x20, 0x00, 0x00, 0xF7}),
              Strings{"four-operator data: FB-01 @0+8 ch1"});
    // A bank that ends early has as many voices as are there.
    EXPECT_EQ(Lines(FirstOf(TestBulk(0x04, Bytes(4096, 9)), 6 + 130)),
              Strings{"four-operator bank, 1 voice @0+136 ch1 (no end byte, cut short)"});
    EXPECT_EQ(Lines(With(TestBulk(0x03, Bytes(93, 9)), 99, 0x01)),
              Strings{"four-operator voice @0+101 ch1 (wrong checksum)"});
}

TEST(DumpReader, MessagesOfOthersAreToldTogether) {
    const Bytes one = Join({{0xF0, 0x41, 0x10}, Bytes(20, 1), {0xF7}});
    EXPECT_EQ(
        Lines(Join({one, one, one, {0xF0, 0x00, 0x20, 0x33, 0x01, 0xF7}, TestBank(), one})),
        (Strings{"other message: manufacturer 41, 3 messages @0+72",
                 "other message: manufacturer 00 20 33 @72+6", "DX7 bank, 32 voices @78+4104 ch1",
                 "other message: manufacturer 41 @4182+24"}));
    // A long one, beyond what is looked at at once.
    const Bytes endless = Join({{0xF0, 0x41}, Bytes(200000, 1)});
    EXPECT_EQ(Lines(Join({endless, {0xF7}, TestBank()})),
              (Strings{"other message: manufacturer 41 @0+200003",
                       "DX7 bank, 32 voices @200003+4104 ch1"}));
    EXPECT_EQ(Lines(Join({endless, TestBank()})),
              (Strings{"other message: manufacturer 41 @0+200002 (no end byte)",
                       "DX7 bank, 32 voices @200002+4104 ch1"}));
    EXPECT_EQ(Lines(Join({TestBank(), endless, {0xF7}}))[1],
              "other message: manufacturer 41 @4104+200003");
    // Amid other bytes a short one may be chance.
    EXPECT_EQ(Lines(Join({{1, 2, 0x80}, one, {0x90}})), Strings{"unknown data @0+28"});
}

// ---- the reface DX

TEST(DumpReader, ARefaceVoiceOfAnyDeviceNumberAndOrder) {
    const Bytes voice = TestRefaceVoice(7);
    EXPECT_EQ(Lines(TestRefaceMessages(voice, 16)), Strings{"reface DX voice @0+241 ch16"});
    Bytes mixed = TestRefaceHeader();
    for (const int number : {3, 1}) {
        mixed += TestRefaceOperator(voice, number);
    }
    mixed += TestRefaceCommon(voice);
    for (const int number : {0, 2}) {
        mixed += TestRefaceOperator(voice, number);
    }
    const Found found = Read(mixed);
    ASSERT_EQ(found.dumps.size(), 1u);
    EXPECT_EQ(Line(found.dumps[0]), "reface DX voice @0+228 ch1");
    EXPECT_EQ(found.voices[0].bytes, voice);
    // Voices for two instruments are two dumps.
    EXPECT_EQ(Lines(Join({TestRefaceMessages(voice, 1), TestRefaceMessages(voice, 2)})),
              (Strings{"reface DX voice @0+241 ch1", "reface DX voice @241+241 ch2"}));
}

TEST(DumpReader, RefaceVoicesWithoutSomeOfTheirBlocks) {
    const Bytes voice = TestRefaceVoice(7), other = TestRefaceVoice(8);
    const Bytes whole = TestRefaceMessages(voice);
    // Without operator 2, between two whole voices.
    const Bytes holed = Without(whole, 13 + 51 + 41, 41);
    Found found = Read(Join({whole, holed, TestRefaceMessages(other)}));
    ASSERT_EQ(found.dumps.size(), 1u);
    EXPECT_EQ(Line(found.dumps[0]),
              "reface DX voices, 2 voices @0+682 ch1 (parts of a voice missing)");
    EXPECT_EQ(found.voices[1].bytes, other);
    EXPECT_EQ(found.offsets[1], 441u);
    // Blocks alone, with neither header nor footer.
    const Bytes blocks = Bytes(whole.begin() + 13, whole.end() - 13);
    found = Read(Join({blocks, blocks}));
    EXPECT_EQ(Line(found.dumps[0]), "reface DX voices, 2 voices @0+430 ch1");
    EXPECT_EQ(found.offsets, (std::vector<std::uint64_t>{0, 215}));
    // A block that comes twice belongs to the next voice.
    found = Read(Join({TestRefaceOperator(voice, 0), blocks}));
    EXPECT_EQ(Line(found.dumps[0]), "reface DX voice @0+256 ch1 (parts of a voice missing)");
    EXPECT_EQ(found.voices[0].bytes, voice);
}

TEST(DumpReader, FaultsInTheBlocksOfARefaceVoice) {
    const Bytes whole = TestRefaceMessages(TestRefaceVoice(7));
    EXPECT_EQ(Lines(With(whole, 13 + 49, whole[13 + 49] ^ 1)),
              Strings{"reface DX voice @0+241 ch1 (wrong checksum)"});
    EXPECT_EQ(Lines(With(whole, 13 + 6, 0x2B)),
              Strings{"reface DX voice @0+241 ch1 (wrong byte count)"});
    EXPECT_EQ(Lines(FirstOf(whole, 240)), Strings{"reface DX voice @0+240 ch1 (no end byte)"});
    EXPECT_EQ(Lines(FirstOf(whole, 13 + 51 + 3 * 41 + 20)),
              Strings{"reface DX voices, 0 voices @0+207 ch1 (no end byte, cut short, parts of a "
                      "voice missing)"});
    EXPECT_EQ(Lines(With(whole, 13 + 11 + 16, 12)),
              Strings{"reface DX voice @0+241 ch1 (wrong checksum, values out of range)"});
}

TEST(DumpReader, OtherMessagesOfTheRefaceDx) {
    const Bytes voice = TestRefaceVoice(7);
    EXPECT_EQ(Lines(Join({TestRefaceMessages(voice),
                          TestRefaceBlock(Join({{0, 0, 0}, Bytes(32, 1)}), 1),
                          {0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x01, 0x00, 0xF7},
                          {0xF0, 0x43, 0x20, 0x7F, 0x1C, 0x05, 0x0E, 0x0F, 0x00, 0xF7},
                          {0xF0, 0x43, 0x20, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x00, 0xF7},
                          TestRefaceMessages(voice)})),
              (Strings{"reface DX voice @0+241 ch1", "reface DX data: settings @241+45 ch1",
                       "reface DX data: parameter changes @286+11 ch1",
                       "reface DX data: requests, 2 messages @297+20 ch1",
                       "reface DX voice @317+241 ch1"}));
}

TEST(DumpReader, SettingsOfTheRefaceDxAreNoVoices) {
    const Found found = Read(TestRefaceBlock(Join({{0, 0, 0}, Bytes(32, 1)})));
    ASSERT_EQ(found.dumps.size(), 1u);
    EXPECT_EQ(found.dumps[0].voices, 0u);
}

// ---- our own files

Bytes Little32(std::uint32_t value) {
    return {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8),
            static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 24)};
}

Bytes RefaceFile(const std::string &magic, std::uint32_t count, std::uint32_t recordSize = 202) {
    return Join({TextBytes(magic), Little32(160), Little32(17), TextBytes("xdFR"), Little32(0),
                 Little32(count), Little32(recordSize), Little32(0), Bytes(124)});
}

Bytes RefaceRecord(const Bytes &voice) {
    return Join({TextBytes("oWNT"), Little32(52), Little32(38), Little32(112), TextBytes("xdFR"),
                 Bytes(32), voice});
}

TEST(DumpReader, FilesOfTheRefaceDx) {
    Bytes bank = RefaceFile("TNWRDXrf", 32);
    for (int number = 0; number < 32; ++number) {
        bank += RefaceRecord(TestRefaceVoice(number));
    }
    ASSERT_EQ(bank.size(), 6624u);
    const Found found = Read(bank);
    EXPECT_EQ(Lines(bank), Strings{"reface DX bank, 32 voices @0+6624"});
    EXPECT_EQ(found.dumps[0].family, RefaceDriverId);
    ASSERT_EQ(found.voices.size(), 32u);
    EXPECT_EQ(found.voices[31], (KeptVoice{VoiceForm::Reface, TestRefaceVoice(31)}));
    EXPECT_EQ(found.offsets[1], 160u + 202 + 52);
    EXPECT_EQ(Lines(FirstOf(bank, 6623)), Strings{"reface DX bank, 31 voices @0+6623 (cut short)"});
    EXPECT_EQ(Lines(Join({bank, {1, 2}})),
              (Strings{"reface DX bank, 32 voices @0+6624", "unknown data @6624+2"}));

    const Bytes single = Join({RefaceFile("TNWRDxrf", 1), RefaceRecord(TestRefaceVoice(3))});
    ASSERT_EQ(single.size(), 362u);
    EXPECT_EQ(Lines(single), Strings{"reface DX single-voice file @0+362"});
    EXPECT_EQ(Read(single).voices[0].bytes, TestRefaceVoice(3));
    EXPECT_EQ(Lines(FirstOf(single, 160)),
              Strings{"reface DX single-voice file, 0 voices @0+160 (cut short)"});
}

TEST(DumpReader, RecordsOfOtherSizesAndWithoutAVoice) {
    const Bytes voice = TestRefaceVoice(4);
    Bytes bank = RefaceFile("TNWRDXrf", 2, 300);
    bank += Join({RefaceRecord(voice), Bytes(98), Bytes(300)});
    EXPECT_EQ(Lines(bank), Strings{"reface DX bank, 1 voice: one record without a voice @0+760"});
    EXPECT_EQ(Lines(RefaceFile("TNWRDXrf", 0xFFFFFFFF, 0)),
              Strings{"reface DX bank, 0 voices @0+160 (cut short)"});
    EXPECT_EQ(Lines(Join({RefaceFile("TNWRDXrf", 5, 0xFFFFFFFF), Bytes(500)})),
              Strings{"reface DX bank, 0 voices @0+660 (cut short)"});
    EXPECT_EQ(Lines(Join({RefaceFile("TNWRDXrf", 1), RefaceRecord(With(voice, 16, 12))})),
              Strings{"reface DX bank, 1 voice @0+362 (values out of range)"});
    EXPECT_EQ(Lines(Join({RefaceFile("TNWRDXrf", 1), RefaceRecord(With(voice, 10, 0x80))})),
              Strings{"reface DX bank, 1 voice @0+362 (bytes above 7F)"});
    for (const std::size_t size : {8, 12}) { // a part that is too short
        Bytes record = RefaceRecord(voice);
        --record[size];
        EXPECT_EQ(Lines(Join({RefaceFile("TNWRDXrf", 1), record})),
                  Strings{"reface DX bank, 0 voices: one record without a voice @0+362"});
    }
    // One that is larger than all that is looked at is none, though nothing is cut.
    EXPECT_EQ(Lines(Join({RefaceFile("TNWRDXrf", 1, 200000), Bytes(200000)})),
              Strings{"reface DX bank, 0 voices: one record without a voice @0+200160"});
    EXPECT_EQ(Lines(Join({RefaceFile("TNWRDXrf", 1, 200001), Bytes(200000)})),
              Strings{"reface DX bank, 0 voices @0+200160 (cut short)"});
    // A further part that stands elsewhere.
    const Bytes loose =
        Join({TextBytes("oWNT"), Little32(60), Little32(40), Little32(112), TextBytes("xdFR"),
              Bytes(40), Bytes(voice.begin(), voice.begin() + 38), Bytes(2),
              Bytes(voice.begin() + 38, voice.end())});
    const Found found = Read(Join({RefaceFile("TNWRDXrf", 1, 212), loose}));
    ASSERT_EQ(found.voices.size(), 1u);
    EXPECT_EQ(found.voices[0].bytes, voice);
    EXPECT_EQ(found.offsets[0], 220u);
}

Bytes Catalogue(const std::string &family, std::uint32_t count) {
    return Join({TextBytes("TnwrTWdb"), TextBytes(family), Little32(1), Little32(2),
                 Little32(count), Bytes(128)});
}

Bytes CatalogueRecord(const std::string &family, const Bytes &voice, std::uint32_t a,
                      std::uint32_t b) {
    return Join({TextBytes("RwnT"), TextBytes(family), Little32(1), Little32(2), Little32(290),
                 Little32(a), Little32(b), Bytes(262), voice});
}

TEST(DumpReader, CataloguesOfBothFamilies) {
    Bytes file = Catalogue("y7XD", 3);
    file += CatalogueRecord("y7XD", TestUnpackedVoice(), 156, 0);
    file += Bytes(446); // no record
    file += CatalogueRecord("y7XD", TestUnpackedVoice(), 156, 0);
    const Found found = Read(file);
    EXPECT_EQ(Lines(file), Strings{"catalogue, 2 voices: one record without a voice @0+1490"});
    EXPECT_EQ(found.dumps[0].family, Dx7DriverId);
    EXPECT_EQ(found.voices[0], (KeptVoice{VoiceForm::Dx7Stored, TestUnpackedVoice()}));
    EXPECT_EQ(found.offsets[0], 152u + 290);

    Bytes reface = Catalogue("xdFR", 2);
    reface += CatalogueRecord("xdFR", TestRefaceVoice(2), 38, 112);
    reface += FirstOf(CatalogueRecord("xdFR", TestRefaceVoice(2), 38, 112), 439);
    EXPECT_EQ(Lines(reface), Strings{"catalogue, 1 voice @0+1031 (cut short)"});
    EXPECT_EQ(Read(reface).voices[0], (KeptVoice{VoiceForm::Reface, TestRefaceVoice(2)}));
    EXPECT_EQ(Read(reface).dumps[0].family, RefaceDriverId);
}

// ---- MIDI files

TEST(DumpReader, MessagesInTheEventsOfAMidiFile) {
    const Bytes track = Join({{0x00, 0xFF, 0x03, 0x04, 'B', 'a', 'n', 'k'},
                              {0x00, 0x90, 0x40, 0x40, 0x10, 0x40, 0x00}, // and running status
                              {0x00, 0xC0, 0x05, 0x05, 0x06},
                              TestMidiMessage(TestBank()),
                              {0x81, 0x40, 0x90, 0x41, 0x40},
                              TestMidiMessage(TestVoiceMessage(3)),
                              TestMidiEnd()});
    const Bytes file = TestMidiFile({TestMidiEnd(), track});
    const std::size_t start = 14 + 12 + 8 + 8 + 7 + 5 + 1;
    const std::size_t voice = start + 4104 + 2 + 5 + 1;
    EXPECT_EQ(Lines(file), (Strings{"DX7 bank, 32 voices @" + std::to_string(start) +
                                        "+4106 ch1 (in a MIDI "
                                        "file)",
                                    "DX7 voice @" + std::to_string(voice) +
                                        "+165 ch3 (for channel 3, in a MIDI file)"}));
    const Found found = Read(file);
    EXPECT_EQ(found.offsets[0], start + 8);
    EXPECT_EQ(found.offsets[31], start + 8 + 31 * 128);
    EXPECT_EQ(found.voices[31].bytes, TestPackedVoice(31));
}

TEST(DumpReader, AMessageInSeveralEvents) {
    const Bytes bank = TestBank();
    const auto part = [&bank](std::size_t from, std::size_t to) {
        return Bytes(bank.begin() + static_cast<std::ptrdiff_t>(from),
                     bank.begin() + static_cast<std::ptrdiff_t>(to));
    };
    const Bytes track =
        Join({TestMidiEvent(0xF0, part(1, 1000)), TestMidiEvent(0xF7, part(1000, 1001)),
              TestMidiEvent(0xF7, {}), TestMidiEvent(0xF7, part(1001, 4104)),
              TestMidiEvent(0xF7, TestVoiceMessage()), TestMidiEnd()});
    const Found found = Read(TestMidiFile({track}));
    ASSERT_EQ(found.dumps.size(), 2u);
    EXPECT_EQ(Line(found.dumps[0]), "DX7 bank, 32 voices @23+4116 ch1 (in a MIDI file)");
    EXPECT_EQ(found.voices[31].bytes, TestPackedVoice(31));
    EXPECT_EQ(found.offsets[31], 23u + 6 + 31 * 128 + 2 + 3 + 3 + 4);
    EXPECT_EQ(found.voices[32].form, VoiceForm::Dx7Single);
}

TEST(DumpReader, EventsOfEveryKindInAMidiFile) {
    const Bytes message = TestMidiMessage(TestVoiceMessage());
    const auto count = [&](const Bytes &events) {
        return Read(TestMidiFile({Join({events, message, TestMidiEnd()})})).voices.size();
    };
    EXPECT_EQ(count({}), 1u);
    EXPECT_EQ(count({0, 0xF2, 1, 2, 0, 0xF3, 1, 0, 0xF1, 1, 0, 0xF6, 0, 0xF8}), 1u);
    EXPECT_EQ(count({0, 0x80, 1, 2, 0, 0xA0, 1, 2, 0, 0xB0, 1, 2, 0, 0xE0, 1, 2}), 1u);
    EXPECT_EQ(count({0, 0xC0, 1, 0, 2, 0, 0xD0, 1, 0, 2}), 1u);
    EXPECT_EQ(count({0xFF, 0xFF, 0xFF, 0x7F, 0x90, 1, 2}), 1u);
    // What is no event hides nothing that follows: no delta time, a status that there is not, or is
    // no longer.
    EXPECT_EQ(count({0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 0x90, 1, 2}), 1u);
    EXPECT_EQ(count({0, 1, 2}), 1u);
    EXPECT_EQ(count({0, 0x90, 1, 2, 0, 0xF6, 0, 1, 2}), 1u);
    // An event goes no further than its chunk.
    const Bytes cut = Join({{0, 0xFF, 1, 0x7F, 'a'}});
    EXPECT_EQ(Read(TestMidiFile({cut, Join({message, TestMidiEnd()})})).voices.size(), 1u);
    EXPECT_EQ(Read(TestMidiFile({{0},
                                 {0, 0x90},
                                 {0, 0xF0},
                                 {0, 0xF0, 5, 1},
                                 {0, 0x90, 1},
                                 {},
                                 Join({message, TestMidiEnd()})}))
                  .voices.size(),
              1u);
    // Behind the end of a track its chunk may go on.
    EXPECT_EQ(
        Read(TestMidiFile({Join({TestMidiEnd(), Bytes(70000, 0x55)}), message})).voices.size(), 1u);
    const Bytes two = Join({TestMidiChunk("MThd", {0, 1, 0, 1, 0, 96}),
                            TestMidiChunk("ZzAa", Bytes(3)), TestMidiChunk("MTrk", message)});
    EXPECT_EQ(Read(two).voices.size(), 1u);
}

TEST(DumpReader, MidiFilesInOtherFilesAndWithoutADump) {
    const Bytes file = TestMidiFile({Join({TestMidiMessage(TestVoiceMessage()), TestMidiEnd()})});
    Bytes riff = TextBytes("RIFF....RMIDdata....");
    EXPECT_EQ(Lines(Join({riff, file})), Strings{"DX7 voice @43+165 ch1 (in a MIDI file)"});
    EXPECT_EQ(Lines(Join({Bytes(128), file})), Strings{"DX7 voice @151+165 ch1 (in a MIDI file)"});
    const Bytes chunks = Join(
        {TextBytes("RIFF....RMIDDISP"), {3, 0, 0, 0}, TextBytes("abc."), TextBytes("data....")});
    EXPECT_EQ(Lines(Join({chunks, file})), Strings{"DX7 voice @55+165 ch1 (in a MIDI file)"});
    EXPECT_EQ(Lines(Join({TextBytes("Song.mid"), file})),
              Strings{"DX7 voice @31+165 ch1 (in a MIDI file)"});
    EXPECT_EQ(Lines(Join({RefaceFile("TNWRDxrf", 1), RefaceRecord(TestRefaceVoice(3)),
                          TestMidiFile({TestMidiEnd()})})),
              (Strings{"reface DX single-voice file @0+362",
                       "unknown data: MIDI file @362+26 (in a MIDI file)"}));
    // Behind a message it stands in the file like any bytes.
    EXPECT_EQ(Lines(Join({TestVoiceMessage(), file}))[0], "DX7 voice @0+163 ch1");
    EXPECT_EQ(Lines(TestMidiFile({Join({{0x00, 0x90, 0x40, 0x40}, TestMidiEnd()})})),
              Strings{"unknown data: MIDI file @0+30 (in a MIDI file)"});
    // What follows the last track is as in any file; so is the rest of one that ends early.
    EXPECT_EQ(Lines(Join({file, {0}, TestBank()})),
              (Strings{"DX7 voice @23+165 ch1 (in a MIDI file)",
                       "unknown data @" + std::to_string(file.size()) + "+1",
                       "DX7 bank, 32 voices @" + std::to_string(file.size() + 1) + "+4104 ch1"}));
    EXPECT_EQ(Lines(FirstOf(file, 23 + 100)),
              Strings{"DX7 voice, 0 voices @23+100 ch1 (no end byte, cut short, in a MIDI file)"});
    EXPECT_EQ(Lines(TextBytes("MThd123")), Strings{"unknown data @0+7"});
    EXPECT_EQ(Lines(Bytes(file.begin() + 14, file.end())),
              Strings{"DX7 voice @9+165 ch1 (in a MIDI file)"});
    // A chunk that nobody knows.
    Bytes odd = TestMidiChunk("MThd", {0, 1, 0, 1, 0, 96});
    odd += TestMidiChunk("XFIH", Bytes(1000, 0xF0));
    odd += TestMidiChunk("MTrk", Join({TestMidiMessage(TestVoiceMessage()), TestMidiEnd()}));
    EXPECT_EQ(Lines(odd), Strings{"DX7 voice @1031+165 ch1 (in a MIDI file)"});
}

TEST(DumpReader, MessagesBehindEventsThatAreNone) {
    const Bytes end = TestMidiEnd(), bank = TestMidiMessage(TestBank());
    const Bytes odd[] = {
        {0x00, 0x40, 0x41},                         // data without a status
        {0x00, 0xFF, 0x01, 0xFF, 0xFF, 0xFF, 0x7F}, // a text longer than the track
        {0x80, 0x80, 0x80, 0x80, 0x00},             // a delta time of five bytes
        end,                                        // and events behind it
    };
    for (const Bytes &event : odd) {
        const std::size_t start = 22 + event.size() + 1;
        const Found found = Read(TestMidiFile({Join({event, bank, end})}));
        ASSERT_EQ(found.dumps.size(), 1u) << event.size();
        EXPECT_EQ(Line(found.dumps[0]),
                  "DX7 bank, 32 voices @" + std::to_string(start) + "+4106 ch1 (in a MIDI file)");
        EXPECT_EQ(found.voices[31].bytes, TestPackedVoice(31));
    }
    // Without its delta time; the events behind go on.
    const Bytes broken = TestMidiFile(
        {Join({Bytes(bank.begin() + 1, bank.end()), {0x00, 0x90, 0x40, 0x40}, bank, end})});
    EXPECT_EQ(Lines(broken), (Strings{"DX7 bank, 32 voices @22+4106 ch1 (in a MIDI file)",
                                      "DX7 bank, 32 voices @4133+4106 ch1 (in a MIDI file)"}));
}

Bytes TrackOfLength(std::size_t length, const Bytes &events) {
    Bytes chunk = TestMidiChunk("MTrk", events);
    chunk[6] = static_cast<std::uint8_t>(length >> 8);
    chunk[7] = static_cast<std::uint8_t>(length);
    return chunk;
}

TEST(DumpReader, TracksOfWhichTheLengthIsWrong) {
    const Bytes track =
        Join({TestMidiMessage(TestBank()), TestMidiMessage(TestVoiceMessage()), TestMidiEnd()});
    const Bytes start = TestMidiChunk("MThd", {0, 1, 0, 1, 0, 96});
    const Strings both = {"DX7 bank, 32 voices @23+4106 ch1 (in a MIDI file)",
                          "DX7 voice @4130+165 ch1 (in a MIDI file)"};
    for (const std::size_t length : {std::size_t{0}, std::size_t{100}, std::size_t{4200},
                                     track.size() - 1, track.size() + 1, std::size_t{60000}}) {
        const Strings lines = Lines(Join({start, TrackOfLength(length, track)}));
        Strings dumps;
        std::copy_if(lines.begin(), lines.end(), std::back_inserter(dumps),
                     [](const std::string &line) { return line.starts_with("DX7"); });
        EXPECT_EQ(dumps, both) << length;
    }
    // One that is too long ends where the next one begins.
    const Bytes next = TestMidiChunk("MTrk", Join({TestMidiMessage(TestBank()), TestMidiEnd()}));
    EXPECT_EQ(Lines(Join({start, TrackOfLength(60000, track), next})),
              (Strings{both[0], both[1], "DX7 bank, 32 voices @4308+4106 ch1 (in a MIDI file)"}));
}

TEST(DumpReader, RealTimeBytesInAMessageOfSeveralEvents) {
    const Bytes bank = TestBank();
    const Bytes first(bank.begin() + 1, bank.begin() + 1000), rest(bank.begin() + 1000, bank.end());
    const Bytes track = Join({TestMidiEvent(0xF0, first), TestMidiEvent(0xF7, {0xFE}),
                              TestMidiEvent(0xF7, rest), TestMidiEnd()});
    const Found found = Read(TestMidiFile({track}));
    ASSERT_EQ(found.dumps.size(), 1u);
    EXPECT_EQ(Line(found.dumps[0]),
              "DX7 bank, 32 voices @23+4114 ch1 (real-time bytes within, in a MIDI file)");
    EXPECT_EQ(found.voices[31].bytes, TestPackedVoice(31));
    EXPECT_EQ(found.offsets[31], 23u + 6 + 31 * 128 + 2 + 4 + 4);
}

TEST(DumpReader, MessagesThatKeptTheLengthOfTheirEvent) {
    const auto event = [](const Bytes &message) {
        const Bytes whole = TestMidiMessage(message);
        return Bytes(whole.begin() + 1, whole.end());
    };
    const Bytes bank = event(TestBank()), voice = event(TestVoiceMessage());
    ASSERT_EQ(bank.size(), 4106u);
    EXPECT_EQ(Lines(bank), Strings{"DX7 bank, 32 voices @0+4106 ch1 (in a MIDI file)"});
    const Found found = Read(bank);
    EXPECT_EQ(found.voices[31].bytes, TestPackedVoice(31));
    EXPECT_EQ(found.offsets[31], 8u + 31 * 128);
    EXPECT_EQ(Lines(Join({bank, {0x00}, voice})),
              (Strings{"DX7 bank, 32 voices @0+4106 ch1 (in a MIDI file)", "unknown data @4106+1",
                       "DX7 voice @4107+165 ch1 (in a MIDI file)"}));
    EXPECT_EQ(Lines(event(TestRefaceCommon(TestRefaceVoice(1)))),
              Strings{"reface DX voices, 0 voices @0+52 ch1 (parts of a voice missing, in a MIDI "
                      "file)"});
    // One whose length is wrong is none.
    EXPECT_EQ(Lines(With(voice, 2, voice[2] - 1)), Strings{"unknown data @0+165"});
}

// ---- text

TEST(DumpReader, ADumpInHexadecimal) {
    const Bytes voice = TestVoiceMessage();
    const auto line = [](std::size_t offset, std::size_t length) {
        return Strings{"DX7 voice @" + std::to_string(offset) + "+" + std::to_string(length) +
                       " ch1 (written in hexadecimal)"};
    };
    EXPECT_EQ(Lines(TextBytes(TestHex(voice))), line(0, 163 * 3 - 1));
    EXPECT_EQ(Lines(TextBytes(TestHex(voice, ", ", "0123456789abcdef"))), line(0, 163 * 4 - 2));
    EXPECT_EQ(Lines(TextBytes(TestHex(voice, ""))), line(0, 163 * 2));
    EXPECT_EQ(Lines(TextBytes("0x" + TestHex(voice, ",\r\n0x"))), line(2, 163 * 7 - 5));
    EXPECT_EQ(Lines(TextBytes("{ $" + TestHex(voice, " $") + " };\n")), line(3, 163 * 4 - 2));
    EXPECT_EQ(Lines(TextBytes(TestHex(voice, "h ") + "h\n")), line(0, 163 * 4 - 2));
    EXPECT_EQ(Lines(TextBytes("\\x" + TestHex(voice, "\\x"))), line(2, 163 * 4 - 2));
    const Found found = Read(TextBytes(TestHex(voice)));
    EXPECT_EQ(found.voices[0].bytes, Bytes(voice.begin() + 6, voice.begin() + 161));
    EXPECT_EQ(found.offsets[0], 18u);
}

// As programs print bytes for people: the place, the bytes in groups, the letters.
std::string Printed(const Bytes &bytes, bool withBar) {
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 16) {
        const std::size_t size = std::min<std::size_t>(16, bytes.size() - at);
        const Bytes place = {0, 0, static_cast<std::uint8_t>(at >> 8),
                             static_cast<std::uint8_t>(at)};
        text += TestHex(place, "", "0123456789abcdef") + (withBar ? " " : ":");
        for (std::size_t byte = at; byte < at + size; ++byte) {
            const std::size_t number = byte - at;
            text += withBar ? (number % 8 == 0 ? "  " : " ") : (number % 2 == 0 ? " " : "");
            text.resize(text.size() - (withBar && number == 0));
            text += TestHex({bytes[byte]}, "", "0123456789abcdef");
        }
        text += withBar ? "  |" : "  ";
        for (std::size_t byte = at; byte < at + size; ++byte) {
            const bool isLetter = bytes[byte] > 0x20 && bytes[byte] < 0x7F;
            text += isLetter ? static_cast<char>(bytes[byte]) : '.';
        }
        text += withBar ? "|\n" : "\n";
    }
    return text;
}

TEST(DumpReader, BytesAsTheyArePrintedForPeople) {
    const Bytes voice = TestVoiceMessage();
    for (const bool withBar : {false, true}) {
        const std::string text = Printed(voice, withBar);
        const Found found = Read(TextBytes(text));
        ASSERT_EQ(found.dumps.size(), 1u) << text;
        EXPECT_EQ(TextOfDump(found.dumps[0]), "DX7 voice");
        EXPECT_EQ(TextOfFaults(found.dumps[0]), "written in hexadecimal");
        EXPECT_EQ(found.dumps[0].offset, 10u);
        EXPECT_EQ(found.dumps[0].length, text.rfind("f7") + 2 - 10);
        EXPECT_EQ(found.voices[0].bytes, Bytes(voice.begin() + 6, voice.begin() + 161));
        const std::string bank = "A bank:\n" + Printed(TestBank(), withBar);
        EXPECT_EQ(Read(TextBytes(bank)).voices.back().bytes, TestPackedVoice(31));
        EXPECT_EQ(Lines(TextBytes(bank))[0], "unknown data @0+6");
        EXPECT_EQ(Lines(TextBytes(bank)).size(), 2u);
    }
}

// Lines of sixteen bytes, the place in front by `format` and what follows it.
std::string Lined(const Bytes &bytes, const char *format, const char *middle = " ",
                  const char *behind = "", bool leavesOut = false) {
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 16) {
        const std::size_t size = std::min<std::size_t>(16, bytes.size() - at);
        const auto line = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        if (leavesOut && at > 0 && size == 16 && std::equal(line, line + 16, line - 16)) {
            text += text.ends_with("*\n") ? "" : "*\n";
            continue;
        }
        char place[32];
        std::snprintf(place, sizeof place, format, static_cast<unsigned>(at));
        text += place;
        for (std::size_t byte = 0; byte < size; ++byte) {
            text += byte == 0 ? "" : byte == 8 ? middle : " ";
            text += TestHex({line[static_cast<std::ptrdiff_t>(byte)]}, "");
        }
        text += behind;
        text += "\n";
    }
    return text;
}

TEST(DumpReader, LinesWithPlacesOfEveryKindInFront) {
    const Bytes bank = TestBank();
    const std::string texts[] = {
        Lined(bank, "%06x "),                         // od -A x -t x1
        Lined(bank, "%07o "),                         // od -t x1
        Lined(bank, "%07o ", " ", "  >ab cd ef 01<"), // od -t x1z
        Lined(bank, "%04X "),
        Lined(bank, "1A2B:%04X  ", "-", "   .C.. de"), // as debuggers print them
        Lined(bank, "%04X  ", "-", "   .C.. de"),
        Lined(bank, "%07o ") + "0010010\n", // the place behind the last byte
    };
    for (const std::string &text : texts) {
        const Found found = Read(TextBytes(text));
        ASSERT_FALSE(found.dumps.empty()) << text.substr(0, 60);
        EXPECT_EQ(TextOfDump(found.dumps[0]), "DX7 bank, 32 voices") << text.substr(0, 60);
        EXPECT_EQ(TextOfFaults(found.dumps[0]), "written in hexadecimal");
        ASSERT_EQ(found.voices.size(), 32u);
        EXPECT_EQ(found.voices[31].bytes, TestPackedVoice(31));
        EXPECT_EQ(found.dumps[0].offset, text.find("F0 43"));
        EXPECT_LE(found.dumps.size(), 2u); // the last line's letters
    }
}

TEST(DumpReader, LinesThatAreLeftOutAsTheOneBefore) {
    Bytes voices = TestPackedVoices(20);
    voices.resize(4096);
    const Bytes bank = TestBulk(0x09, voices);
    for (const char *format : {"%07o ", "%06x ", "%08x  "}) {
        const std::string text = Lined(bank, format, " ", "", true);
        ASSERT_NE(text.find("*\n"), std::string::npos);
        const Found found = Read(TextBytes(text));
        ASSERT_EQ(found.dumps.size(), 1u) << format;
        EXPECT_EQ(TextOfFaults(found.dumps[0]), "written in hexadecimal");
        ASSERT_EQ(found.voices.size(), 32u);
        EXPECT_EQ(found.voices[19].bytes, TestPackedVoice(19));
        EXPECT_EQ(found.voices[31].bytes, Bytes(128));
        EXPECT_EQ(found.dumps[0].length, text.rfind("F7") + 2 - found.dumps[0].offset);
    }
    std::string withReturns = Lined(bank, "%07o ", " ", "", true);
    for (std::size_t at = 0; (at = withReturns.find('\n', at)) != std::string::npos; at += 2) {
        withReturns.insert(at, "\r");
    }
    EXPECT_EQ(Read(TextBytes(withReturns)).voices.size(), 32u);
    // A line that stands for nothing any more.
    EXPECT_EQ(Read(TextBytes(Lined(bank, "%07o ") + "*")).voices.size(), 32u);
    // No more than the text may hold, however far the next place lies.
    const std::string far = Lined(FirstOf(bank, 32), "%08x  ") + "*\nfffffff0  00 00\n";
    EXPECT_LE(Read(TextBytes(far)).dumps.size(), 2u);
}

TEST(DumpReader, NumbersAsAssemblersWriteThem) {
    const Bytes voice = TestVoiceMessage();
    std::string text = "DB ";
    for (const std::uint8_t byte : voice) {
        const std::string digits = TestHex({byte}, "");
        text += (digits[0] > '9' ? "0" : "") + digits + "h,";
    }
    const Found found = Read(TextBytes(text));
    ASSERT_GE(found.dumps.size(), 2u);
    EXPECT_EQ(Line(found.dumps[1]), "DX7 voice @4+" + std::to_string(text.rfind('h') - 4) +
                                        " ch1 (written in hexadecimal)");
    EXPECT_EQ(found.voices[0].bytes, Bytes(voice.begin() + 6, voice.begin() + 161));
}

TEST(DumpReader, AHeaderOfWhichATextSpeaksIsNoDump) {
    for (const char *text :
         {"A bank begins with F0 43 00 09 20 00 and ends with F7.", "F0 43 00 09 20 00",
          "F0 43 00 09 20 00 F7", "F0,43,00,00,01,1B,..."}) {
        EXPECT_EQ(Lines(TextBytes(text)),
                  Strings{"unknown data @0+" + std::to_string(std::strlen(text))});
    }
    EXPECT_EQ(Lines(TextBytes("F0 43 10 01 1B 3F F7")),
              Strings{"DX7 parameter changes @0+20 ch1 (written in hexadecimal)"});
}

// More than is held at once of what stands in events or in digits.
TEST(DumpReader, ManyBanksInAMidiFileAndInAText) {
    constexpr std::size_t banks = 300;
    Bytes track;
    std::string text;
    for (std::size_t bank = 0; bank < banks; ++bank) {
        track += TestMidiMessage(TestBank());
        text += TestHex(TestBank()) + (bank % 2 == 0 ? "\n" : ",  ");
    }
    const Found events = Read(TestMidiFile({Join({track, TestMidiEnd()})}));
    const Found digits = Read(TextBytes(text));
    ASSERT_EQ(events.dumps.size(), banks);
    ASSERT_EQ(digits.dumps.size(), banks);
    std::size_t place = 0;
    for (std::size_t bank = 0; bank < banks; ++bank) {
        EXPECT_EQ(events.dumps[bank].offset, 23 + bank * 4107);
        EXPECT_EQ(events.dumps[bank].length, 4106u);
        EXPECT_EQ(events.offsets[32 * bank + 31], 23 + bank * 4107 + 8 + 31 * 128);
        EXPECT_EQ(digits.dumps[bank].offset, place);
        EXPECT_EQ(digits.dumps[bank].length, 4104u * 3 - 1);
        EXPECT_EQ(digits.offsets[32 * bank + 31], place + 3 * (6 + 31 * 128));
        EXPECT_EQ(digits.voices[32 * bank + 31].bytes, TestPackedVoice(31));
        place += 4104u * 3 - 1 + (bank % 2 == 0 ? 1 : 3);
    }
}

TEST(DumpReader, AMessageInATextBeginsWithAWord) {
    const std::string digits = TestHex(TestVoiceMessage());
    for (const std::string before : {"z", "Z", "a", "A", "9"}) {
        EXPECT_EQ(Read(TextBytes("- " + before + digits)).voices.size(), 0u) << before;
    }
    EXPECT_EQ(Read(TextBytes("z:" + digits)).voices.size(), 1u);
}

TEST(DumpReader, DigitsOfAMessageThatSeemToBeAPlace) {
    std::string text = TestHex(TestVoiceMessage());
    text.replace(0, 5, "F043:");
    EXPECT_EQ(Lines(TextBytes("\n" + text)),
              Strings{"DX7 voice @1+488 ch1 (written in hexadecimal)"});
}

TEST(DumpReader, WordsAroundADumpInHexadecimal) {
    const std::string voice = TestHex(TestVoiceMessage(), "\n");
    const std::string text = "Dear 50 friends of F0 and f0 bad,\n" + voice + "\nand\n" + voice +
                             voice + "\n\n12 33 Bye.\n";
    const std::string offset = std::to_string(34 + 488 + 1);
    EXPECT_EQ(
        Lines(TextBytes(text)),
        (Strings{"unknown data @0+32", "DX7 voice @34+488 ch1 (written in hexadecimal)",
                 "unknown data @" + offset + "+3",
                 "DX7 voice @" + std::to_string(34 + 488 + 5) + "+488 ch1 (written in hexadecimal)",
                 "DX7 voice @" + std::to_string(34 + 488 + 5 + 488) +
                     "+488 ch1 (written in hexadecimal)",
                 "unknown data @" + std::to_string(34 + 488 + 5 + 2 * 488 + 2) +
                     "+5 (written in hexadecimal)",
                 "unknown data @" + std::to_string(34 + 488 + 5 + 2 * 488 + 2 + 6) + "+5"}));
}

} // namespace
} // namespace tonewright
