// What is read of texts and processors that need not be of this machine.
#include "shell/system_facts.h"

#include <gtest/gtest.h>

#include <string>

namespace tonewright {
namespace {

// Four bytes of a text as a processor holds them.
std::uint32_t Word(const char *text) {
    std::uint32_t word = 0;
    for (int byte = 3; byte >= 0; --byte) {
        word = word << 8 | static_cast<unsigned char>(text[byte]);
    }
    return word;
}

std::vector<std::string> Volumes(const char *mounts) {
    std::vector<std::string> volumes;
    for (const VolumeFacts &volume : VolumesIn(mounts)) {
        volumes.push_back(volume.place + "|" + volume.kind);
    }
    return volumes;
}

using Texts = std::vector<std::string>;

TEST(SystemFacts, TheMemoryIsToldInMegabytesAndInHowMuchOfItIsInUse) {
    const auto memory = MemoryIn("MemTotal:        2048000 kB\nMemFree: 1 kB\n"
                                 "MemAvailable:     512000 kB\nSwapTotal: 9 kB\n");
    ASSERT_TRUE(memory.has_value());
    EXPECT_EQ(memory->megabytes, 2000u);
    EXPECT_EQ(memory->percentInUse, 75);
}

TEST(SystemFacts, MemoryThatIsNotToldOrImpossibleIsNone) {
    for (const char *text :
         {"", "MemTotal: 10 kB\n", "MemAvailable: 10 kB\n", "MemTotal: 0 kB\nMemAvailable: 0 kB\n",
          "MemTotal: 5 kB\nMemAvailable: 6 kB\n", "MemTotal: 9e99 kB\nMemAvailable: 6 kB\n",
          "MemTotal: 5 kB\nMemAvailable: -1 kB\n", "MemTotal\nMemAvailable", "MemTotal:nan"}) {
        EXPECT_FALSE(MemoryIn(text).has_value()) << text;
    }
}

TEST(SystemFacts, AVolumeHasTheKindOfItsFileSystem) {
    EXPECT_EQ(Volumes("/dev/sda2 / ext4 rw 0 0\n"
                      "/dev/sdb1 /media/stick vfat rw 0 0\n"
                      "server:/home /home nfs4 rw 0 0\n"
                      "/dev/sr0 /media/disc iso9660 ro 0 0\n"
                      "tmpfs /tmp tmpfs rw 0 0"),
              (Texts{"/|Fixed (hard drive)", "/media/stick|Removable",
                     "/home|Remote (network drive)", "/media/disc|CD-ROM", "/tmp|RAM disk"}));
}

TEST(SystemFacts, WhatHoldsNoFilesOfUsersIsNoVolume) {
    EXPECT_EQ(Volumes("proc /proc proc rw 0 0\nsysfs /sys sysfs rw 0 0\n"
                      "/dev/loop0 /snap/x squashfs ro 0 0\ncgroup2 /sys/fs/cgroup cgroup2 rw 0 0\n"
                      "tmpfs /run/user/1000 tmpfs rw 0 0\ntmpfs /dev/shm tmpfs rw 0 0\n"
                      "tmpfs /run tmpfs rw 0 0\n\nnonsense\n/dev/sda9\n/dev/sda9  ext4\n"),
              Texts{});
    EXPECT_EQ(Volumes("tmpfs /running tmpfs rw 0 0\n"), Texts{"/running|RAM disk"});
}

TEST(SystemFacts, ThePartitionOfTheFirmwareIsFixed) {
    EXPECT_EQ(
        Volumes("/dev/sda1 /boot/efi vfat rw 0 0\n/dev/sdb1 /efi vfat rw 0 0\n"
                "/dev/sdc1 /bootleg vfat rw 0 0\n"),
        (Texts{"/boot/efi|Fixed (hard drive)", "/efi|Fixed (hard drive)", "/bootleg|Removable"}));
}

TEST(SystemFacts, AVolumeStandsOnceAtTheFirstOfItsPlaces) {
    EXPECT_EQ(Volumes("/dev/sda2 / ext4 rw 0 0\n/dev/sda2 /etc/hosts ext4 rw 0 0\n"
                      "tmpfs /tmp tmpfs rw 0 0\ntmpfs /var/tmp tmpfs rw 0 0\n"),
              (Texts{"/|Fixed (hard drive)", "/tmp|RAM disk", "/var/tmp|RAM disk"}));
}

TEST(SystemFacts, ThePlaceOfAVolumeMayHoldBlanksAndBackslashes) {
    EXPECT_EQ(Volumes("/dev/a /media/My\\040stick\\134x exfat rw 0 0\n/dev/b /x\\04 ext4 rw 0 0\n"
                      "/dev/c /y\\089 ext4 rw 0 0\n"),
              (Texts{"/media/My stick\\x|Removable", "/x\\04|Fixed (hard drive)",
                     "/y\\089|Fixed (hard drive)"}));
}

TEST(SystemFacts, AProcessorTellsMakerNameAndFeatures) {
    const ProcessorFacts facts = ProcessorOf([](std::uint32_t function) -> CpuidRegisters {
        switch (function) {
        case 0:
            return {13, Word("Some"), Word("any."), Word("Comp")}; // ebx, edx, ecx in order
        case 1:
            return {0, ~0u, 1u | 1u << 19 | 1u << 31, 1u | 1u << 10 | 1u << 17 | 1u << 31};
        case 0x80000000:
            return {0x80000004, 0, 0, 0};
        case 0x80000002:
            return {Word("   F"), Word("ast "), Word("Proc"), Word("esso")};
        case 0x80000003:
            return {Word("r 90"), Word("00  "), 0, 0};
        default:
            return {};
        }
    });
    EXPECT_EQ(facts.highestFunction, 13u);
    EXPECT_EQ(facts.manufacturer, "SomeCompany.");
    EXPECT_EQ(facts.name, "Fast Processor 9000");
    EXPECT_EQ(facts.features, (Texts{"fpu", "pse-36", "pbe", "sse3", "sse4.1", "hypervisor"}));
}

TEST(SystemFacts, AnOldProcessorIsNotAskedForWhatItDoesNotKnow) {
    const ProcessorFacts facts = ProcessorOf([](std::uint32_t function) -> CpuidRegisters {
        EXPECT_TRUE(function == 0 || function == 0x80000000) << function;
        return {function == 0 ? 0 : 0x80000003, Word("Olde"), Word("e   "), Word(" Tim")};
    });
    EXPECT_EQ(facts.highestFunction, 0u);
    EXPECT_EQ(facts.manufacturer, "Olde Time");
    EXPECT_EQ(facts.name, "");
    EXPECT_EQ(facts.features, Texts{});
}

} // namespace
} // namespace tonewright
