// Bytes that are made to be looked at again and again take time that grows with their number alone.
#include "extras/dump_reader.h"
#include "extras/rescue.h"
#include "support/dump_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <ctime>
#include <functional>

namespace tonewright {
namespace {

using Bytes = DumpBytes;

Bytes Repeated(const Bytes &piece, std::size_t size) {
    Bytes bytes;
    bytes.reserve(size + piece.size());
    while (bytes.size() < size) {
        bytes += piece;
    }
    return bytes;
}

Bytes Repeated(const char *text, std::size_t size) {
    return Repeated(TextBytes(text), size);
}

struct Pattern {
    const char *name;
    Bytes (*make)(std::size_t size);
};

const Pattern Patterns[] = {
    {"starts", [](std::size_t size) { return Bytes(size, 0xF0); }},
    {"starts of others",
     [](std::size_t size) {
         return Repeated(Bytes{0xF0, 0x41}, size);
     }},
    {"starts amid nothing",
     [](std::size_t size) {
         return Repeated(Bytes{0x80, 0xF0, 0x41, 0x00}, size);
     }},
    {"headers of banks",
     [](std::size_t size) {
         return Repeated(Bytes{0xF0, 0x43, 0, 9, 0x20, 0}, size);
     }},
    {"headers of banks and high bytes",
     [](std::size_t size) {
         return Repeated(Bytes{0xF0, 0x43, 0, 9, 0x20, 0, 0x80}, size);
     }},
    {"headers of voices and high bytes",
     [](std::size_t size) {
         return Repeated(Bytes{0xF0, 0x43, 0, 0, 1, 0x1B, 0x80, 1}, size);
     }},
    {"a far end for many headers",
     [](std::size_t size) {
         Bytes bytes = Repeated(Bytes{0xF0, 0x44, 0xF0, 0x43, 0x00, 0x09, 0x10, 0x80}, size);
         for (std::size_t at = 5; at < bytes.size(); at += 13) {
             bytes[at] = 0xF7;
         }
         return bytes;
     }},
    {"names of data",
     [](std::size_t size) {
         return Repeated(
             Join({{0x80, 0xF0, 0x43, 0x00, 0x7E, 0x7F, 0x7F}, TextBytes("LM  8973PE")}), size);
     }},
    {"ends", [](std::size_t size) { return Bytes(size, 0xF7); }},
    {"a long message",
     [](std::size_t size) {
         return Join({{0xF0, 0x41}, Bytes(size, 1)});
     }},
    {"parts of voices", [](std::size_t size) { return Repeated(TestRefaceHeader(), size); }},
    {"voices of the reface DX",
     [](std::size_t size) { return Repeated(TestRefaceMessages(TestRefaceVoice(1)), size); }},
    {"voices without a message",
     [](std::size_t size) { return Repeated(TestPackedVoices(32), size); }},
    {"few voices without a message",
     [](std::size_t size) {
         return Repeated(Join({TestPackedVoices(4), Bytes(3 * 128, 0xFF)}), size);
     }},
    {"voices of two forms without a message",
     [](std::size_t size) {
         Bytes single = TestUnpackedVoice();
         single.pop_back();
         return Repeated(Join({TestPackedVoices(4), Repeated(single, 4 * 155)}), size);
     }},
    {"voices and short messages",
     [](std::size_t size) {
         return Repeated(Join({TestPackedVoices(1), {0xF0, 0x43, 0x10, 0, 0, 0, 0xF7}}), size);
     }},
    {"short messages",
     [](std::size_t size) {
         return Repeated(Bytes{0xF0, 0x43, 0x10, 0, 0, 0, 0xF7, 0xF0, 0x7E, 0xF7}, size);
     }},
    {"a text", [](std::size_t size) { return Repeated("The F0 of 430 f0, 0xF0, F000 ", size); }},
    {"starts in a text", [](std::size_t size) { return Repeated("F0 43 ", size); }},
    {"messages in a text", [](std::size_t size) { return Repeated("F0 43 00 00 00 zz ", size); }},
    {"blanks in a text",
     [](std::size_t size) {
         return Repeated(Join({TextBytes("F0 43"), Bytes(5000, ' ')}), size);
     }},
    {"one line of digits",
     [](std::size_t size) { return Repeated(TestHex(TestVoiceMessage(), "").c_str(), size); }},
    {"repeated lines in a text",
     [](std::size_t size) {
         return Repeated("F0 43 00 09 20 00 00 00\n00 01 02 03\n*\nffffff00 01 02 03 04\n", size);
     }},
    {"changes in a text", [](std::size_t size) { return Repeated("F043100000F7", size); }},
    {"a MIDI file of short messages",
     [](std::size_t size) {
         return TestMidiFile(
             {Repeated(TestMidiMessage({0xF0, 0x43, 0x10, 0x00, 0x00, 0x00, 0xF7}), size)});
     }},
    {"a MIDI file of bytes alone",
     [](std::size_t size) { return TestMidiFile({Repeated(TestMidiEvent(0xF7, {0x01}), size)}); }},
    {"a MIDI file of tracks",
     [](std::size_t size) {
         return Join({TestMidiFile({}), Repeated(TestMidiChunk("MTrk", {}), size)});
     }},
};

// Processor time in seconds.
double TimeOf(const Bytes &file) {
    DumpVisitor visitor;
    visitor.voice = [](const FoundVoice &) { return true; };
    visitor.dump = [](const FoundDump &) { return true; };
    const std::clock_t start = std::clock();
    EXPECT_EQ(ReadDumps(file, visitor), DumpRead::Done);
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

double TimeOfRescue(const Bytes &file) {
    const TempFolder folder;
    const std::string path = folder.Write("found.bin", file);
    const std::clock_t start = std::clock();
    EXPECT_EQ(RescueDocuments(path.c_str(), [](const RescuedDocument &) { return true; }),
              DumpRead::Done);
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// What is looked at as often as there are places to look from would take minutes.
TEST(DumpTime, GrowsWithTheNumberOfBytesAlone) {
    constexpr std::size_t size = 2 * 1024 * 1024;
    constexpr double seconds = 2;
    for (const Pattern &pattern : Patterns) {
        const Bytes file = pattern.make(size);
        EXPECT_LT(TimeOf(file), seconds) << pattern.name;
        EXPECT_LT(TimeOfRescue(file), seconds) << pattern.name;
    }
}

} // namespace
} // namespace tonewright
