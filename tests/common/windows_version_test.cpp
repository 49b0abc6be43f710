// The generations of Windows, with versions that need not run here.
#include "common/windows_version.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

struct ExpectedGeneration {
    WindowsVersion version;
    unsigned build;
    int number;
    const char *name;
};

TEST(WindowsVersion, EachVersionHasItsGenerationNameAndServicePack) {
    constexpr ExpectedGeneration Expected[] = {
        {{0, 0, 0}, 0, 0, "Windows (unknown version)"},
        {{5, 0, 4}, 2195, 0, "Windows (unknown version)"},
        {{5, 1, 0}, 2600, 12, "Windows XP"},
        {{5, 1, 1}, 2600, 12, "Windows XP SP1"},
        {{5, 1, 2}, 2600, 12, "Windows XP SP2"},
        {{5, 1, 3}, 2600, 12, "Windows XP SP3"},
        {{5, 1, 4}, 2600, 12, "Windows XP SP3"},
        {{5, 2, 0}, 3790, 12, "Windows XP SP3"},
        {{6, 0, 0}, 6000, 14, "Windows Vista"},
        {{6, 0, 1}, 6001, 14, "Windows Vista SP1"},
        {{6, 0, 2}, 6002, 14, "Windows Vista SP2"},
        {{6, 1, 0}, 7600, 15, "Windows 7"},
        {{6, 1, 1}, 7601, 15, "Windows 7 SP1"},
        {{6, 2, 0}, 9200, 16, "Windows 8"},
        {{6, 3, 0}, 9600, 17, "Windows 8"},
        {{6, 3, 0}, 22000, 17, "Windows 8"},
        {{10, 0, 0}, 10240, 18, "Windows 10"},
        {{10, 0, 0}, 0, 18, "Windows 10"},
    };
    for (const ExpectedGeneration &expected : Expected) {
        const WindowsGeneration generation = GenerationOf(expected.version, expected.build);
        EXPECT_EQ(generation.number, expected.number) << expected.name;
        EXPECT_EQ(generation.name, expected.name);
    }
}

TEST(WindowsVersion, OfVersion10Build22000IsTheFirstWindows11) {
    EXPECT_EQ(GenerationOf({10, 0, 0}, 22000).name, "Windows 11");
    EXPECT_EQ(GenerationOf({10, 0, 0}, 22000).number, 19);
    EXPECT_EQ(GenerationOf({10, 0, 0}, 21999).name, "Windows 10");
    EXPECT_EQ(GenerationOf({10, 0, 0}, 21999).number, 18);
}

TEST(WindowsVersion, TheFirstNumberThatDiffersDecides) {
    const WindowsVersion running{6, 1, 1};
    for (const WindowsVersion older :
         {WindowsVersion{5, 9, 9}, {6, 0, 9}, {6, 1, 0}, {6, 1, 1}, {0, 0, 0}}) {
        EXPECT_TRUE(IsVersionAtLeast(running, older));
    }
    for (const WindowsVersion newer : {WindowsVersion{7, 0, 0}, {6, 2, 0}, {6, 1, 2}}) {
        EXPECT_FALSE(IsVersionAtLeast(running, newer));
    }
}

TEST(WindowsVersion, ASystemsNameIsItsPrettyNameElseNameAndVersion) {
    EXPECT_EQ(NameInOsRelease("NAME=\"Some Linux\"\nVERSION=\"12 (x)\"\n"
                              "PRETTY_NAME=\"Some Linux 12\"\n"),
              "Some Linux 12");
    EXPECT_EQ(NameInOsRelease("VERSION_ID=9\nVERSION='12 (x)'\nNAME=Plain"), "Plain 12 (x)");
    EXPECT_EQ(NameInOsRelease("NAME=Rolling\n"), "Rolling");
    EXPECT_EQ(NameInOsRelease("PRETTY_NAME=\"A \\\"B\\\" \\$C\"\n"), "A \"B\" $C");
    for (const char *nameless : {"", "\n\n", "VERSION=3\n", "PRETTY_NAME", "# NAME=x\n"}) {
        EXPECT_EQ(NameInOsRelease(nameless), "") << nameless;
    }
}

} // namespace
} // namespace tonewright
