// Large files, which take no room on the disk, and files that cannot be read.
#include "extras/dump_reader.h"
#include "extras/rescue.h"
#include "support/dump_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

// Bytes that are allocated now; in a checking build alone, which holds freed memory back, so that
// what the system counts is no measure there.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace tonewright {
namespace {

using Bytes = DumpBytes;

void WriteAt(const std::string &path, std::uint64_t offset, const Bytes &bytes) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT, 0600);
    ASSERT_GE(file, 0);
    EXPECT_EQ(pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(offset)),
              static_cast<ssize_t>(bytes.size()));
    close(file);
}

// The most memory of this process in kilobytes since the last call.
long MostMemory() {
    std::ifstream status("/proc/self/status");
    long most = 0;
    for (std::string word; status >> word;) {
        if (word == "VmHWM:") {
            status >> most;
        }
    }
    std::ofstream("/proc/self/clear_refs") << 5;
    return most;
}

// A message, records and events whose lengths say gigabytes.
TEST(LargeDumpFile, OfOneMessageOrManyRecordsTakesLittleMemory) {
    const TempFolder folder;
    constexpr std::uint64_t size = 50 << 20;
    Bytes bank = TextBytes("TNWRDXrf");
    bank += Bytes{160, 0, 0, 0, 17, 0, 0, 0, 'x', 'd', 'F', 'R', 0, 0, 0, 0};
    bank += Bytes{0xFF, 0xFF, 0xFF, 0xFF, 202, 0, 0, 0};
    Bytes large = bank;
    large[30] = 0x40; // a record of four megabytes
    const Bytes midi = Join({TestMidiChunk("MThd", {0, 1, 0, 1, 0, 96}),
                             TextBytes("MTrk"),
                             {0x7F, 0, 0, 0, 0, 0xF0, 0xFF, 0xFF, 0xFF, 0x7F, 0x41, 0x10}});
    for (const Bytes &start : {Bytes{0xF0, 0x41, 0x10}, bank, large, midi,
                               TextBytes("F0 43 00 00 01 "), TextBytes("Text")}) {
        const std::string path = folder.File("large.bin");
        WriteAt(path, 0, start);
        WriteAt(path, size - 1, {0x01});
        MostMemory();
        const long before = MostMemory();
        DumpVisitor visitor;
        std::uint64_t end = 0;
        visitor.bytes = [](std::span<const std::uint8_t> piece) {
            EXPECT_LE(piece.size(), 1024u * 1024);
        };
        visitor.dump = [&end](const FoundDump &dump) {
            end = dump.offset + dump.length;
            return true;
        };
        ASSERT_EQ(ReadDumps(path.c_str(), visitor), DumpRead::Done);
        EXPECT_LT(MostMemory() - before, 16 * 1024);
        EXPECT_EQ(end, size);
        std::filesystem::remove(path);
    }
}

TEST(LargeDumpFile, OfManyVoicesIsRescuedInLittleMemory) {
    const TempFolder folder;
    for (const Bytes &voices :
         {TestVoiceMessage(), TestRefaceMessages(TestRefaceVoice(1)), TestPackedVoices(32)}) {
        Bytes file;
        while (file.size() < 30 << 20) {
            file += voices;
        }
        const std::string path = folder.Write("large.bin", file);
        file = {};
        MostMemory();
        const long before = MostMemory();
        const auto allocated = [] {
            return __sanitizer_get_current_allocated_bytes
                       ? __sanitizer_get_current_allocated_bytes()
                       : 0;
        };
        const std::size_t allocatedBefore = allocated();
        std::size_t mostAllocated = 0;
        std::uint64_t documents = 0;
        EXPECT_EQ(RescueDocuments(path.c_str(),
                                  [&](const RescuedDocument &document) {
                                      EXPECT_FALSE(document.bytes.empty());
                                      ++documents;
                                      mostAllocated = std::max(mostAllocated, allocated());
                                      return true;
                                  }),
                  DumpRead::Done);
        EXPECT_GT(documents, 1000u);
        EXPECT_LT(mostAllocated, allocatedBefore + (16 << 20));
        if (!__sanitizer_get_current_allocated_bytes) {
            EXPECT_LT(MostMemory() - before, 16 * 1024);
        }
    }
}

TEST(UnreadableDumpFile, SaysWhy) {
    const TempFolder folder;
    const auto reason = [](const std::string &path) {
        errno = 0;
        EXPECT_EQ(ReadDumps(path.c_str(), {}), DumpRead::Failed);
        return errno;
    };
    EXPECT_EQ(reason(folder.File("none")), ENOENT);
    EXPECT_EQ(reason(folder.path.string()), EISDIR);
    const std::string pipe = folder.File("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(reason(pipe), ENOTSUP);
    EXPECT_EQ(reason("/proc/self/mem"), EIO);
    EXPECT_EQ(ReadDumps(folder.File("none").c_str(), {}), DumpRead::Failed);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(ReadVoiceAt(folder.File("none").c_str(), 0));
    EXPECT_EQ(errno, ENOENT);
}

// Files of which the system tells no size are read to their end all the same.
TEST(UnreadableDumpFile, IsNotOneWithoutASize) {
    std::uint64_t length = 0;
    DumpVisitor visitor;
    visitor.dump = [&length](const FoundDump &dump) {
        length += dump.length;
        return true;
    };
    EXPECT_EQ(ReadDumps("/proc/self/status", visitor), DumpRead::Done);
    EXPECT_GT(length, 100u);
}

} // namespace
} // namespace tonewright
