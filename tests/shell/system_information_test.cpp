// The report about machine and program, of facts that are made up.
#include "shell/system_information.h"

#include "common/folders.h"
#include "common/settings.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace tonewright {
namespace {

using Texts = std::vector<std::string>;

class SystemInformation : public testing::Test {
protected:
    // A folder in the home, which is made.
    std::string Made(const std::string &name) const {
        std::filesystem::create_directories(home.path / name);
        return home.File(name);
    }
    void WriteConfiguration(const std::string &text) {
        PlatformFolders.applicationData = home.Folder();
        Made("Quillbrook");
        home.WriteText("Quillbrook/Tonewright 17.ini", text);
    }
    static SystemFacts NoFacts() { return {.system = "", .build = ""}; }
    static bool HasLabel(const Texts &lines, const std::string &label) {
        return std::ranges::any_of(
            lines, [&](const std::string &line) { return line.starts_with(label + ":\t"); });
    }

    TempFolder home;
};

TEST_F(SystemInformation, EachFactIsALineInTheOrderOfTheReport) {
    PlatformFolders = {.applicationData = Made("config"),
                       .documents = Made("documents"),
                       .pictures = Made("pictures"),
                       .programs = Made("program files"),
                       .music = Made("music"),
                       .videos = Made("videos"),
                       .desktop = Made("desktop"),
                       .profile = home.Folder(),
                       .programMenu = Made("programs")};
    const SystemFacts facts = {
        .system = "Windows 11",
        .build = "22631",
        .display = {.screenWidth = 1920,
                    .screenHeight = 1080,
                    .bitsPerPixel = 16,
                    .monitors = 2,
                    .mouseWheel = true},
        .mouseButtons = 5,
        .mouseButtonsSwapped = false,
        .network = true,
        .lowEndProcessor = false,
        .tabletPc = true,
        .memory = MemoryFacts{1234567, 42},
        .windowsFolder = Made("windows"),
        .systemFolder = Made("system"),
        .startUpFolder = Made("startup"),
        .rawVersion = RawVersionFacts{10, 0, 22631, 2, "Pack 3", 3, 0, 256, 1},
        .volumes = {{"C", FixedVolume}, {"D", OpticalVolume}},
        .processor = ProcessorFacts{13, "SomeCompany", "Fast 9000", {"fpu", "vme"}},
    };
    EXPECT_EQ(SystemLines(facts), (Texts{
                                      "Operating system:\tWindows 11",
                                      "Operating system build:\t22631",
                                      "Screen width:\t1920 pixels",
                                      "Screen depth:\t1080 pixels",
                                      "Screen colors:\t65,536 colors",
                                      "Monitors:\t2",
                                      "Mouse buttons:\t5",
                                      "Mouse wheel:\tYES",
                                      "Mouse buttons swapped:\tNO",
                                      "Network:\tYES",
                                      "Low end processor:\tNO",
                                      "Tablet PC:\tYES",
                                      "Physical memory:\t1,234,567 megabytes",
                                      "Memory in use:\t42 percent",
                                      "Configuration folder:\t" + home.File("config"),
                                      "Documents folder:\t" + home.File("documents"),
                                      "Music folder:\t" + home.File("music"),
                                      "Pictures folder:\t" + home.File("pictures"),
                                      "Video folder:\t" + home.File("videos"),
                                      "Desktop folder:\t" + home.File("desktop"),
                                      "Windows folder:\t" + home.File("windows"),
                                      "System folder:\t" + home.File("system"),
                                      "Start-up folder:\t" + home.File("startup"),
                                      "Programs folder:\t" + home.File("programs"),
                                      "Profile folder:\t" + home.Folder(),
                                      "Raw major version:\t10",
                                      "Raw minor version:\t0",
                                      "Raw build number:\t22631",
                                      "Raw platform ID:\t2",
                                      "Raw CSD version:\tPack 3",
                                      "Raw service major version:\t3",
                                      "Raw service minor version:\t0",
                                      "Raw suite mask:\t256",
                                      "Raw product type:\t1",
                                      "Application build date:\t" + BuildDate,
                                      "Drive C:\tFixed (hard drive)",
                                      "Drive D:\tCD-ROM",
                                      "CPUID highest function:\t13",
                                      "CPUID manufacturer:\tSomeCompany",
                                      "CPUID processor:\tFast 9000",
                                      "CPUID features:\tfpu, vme",
                                  }));
}

TEST_F(SystemInformation, WhatIsNotKnownHasNoLine) {
    EXPECT_EQ(SystemLines(NoFacts()), (Texts{"Application build date:\t" + BuildDate}));
}

TEST_F(SystemInformation, AnAbsentSpecialFolderHasNoLine) {
    PlatformFolders = {.applicationData = home.File("gone"),
                       .documents = Made("documents"),
                       .pictures = home.WriteText("file", "x"),
                       .programs = "",
                       .desktop = Made("desktop")};
    const Texts lines = SystemLines(NoFacts());
    EXPECT_TRUE(HasLabel(lines, "Documents folder"));
    EXPECT_TRUE(HasLabel(lines, "Desktop folder"));
    for (const char *absent : {"Configuration folder", "Pictures folder", "Programs folder",
                               "Music folder", "Windows folder", "Profile folder"}) {
        EXPECT_FALSE(HasLabel(lines, absent)) << absent;
    }
}

TEST_F(SystemInformation, WithoutAServicePackItsLineStandsEmpty) {
    SystemFacts facts = NoFacts();
    facts.rawVersion = RawVersionFacts{};
    const Texts lines = SystemLines(facts);
    EXPECT_NE(std::ranges::find(lines, "Raw CSD version:\t"), lines.end());
}

TEST_F(SystemInformation, MoreThan24BitsOfColourCountAs24) {
    SystemFacts facts = NoFacts();
    facts.display.bitsPerPixel = 32;
    EXPECT_EQ(SystemLines(facts).at(0), "Screen colors:\t16,777,216 colors");
}

TEST_F(SystemInformation, ManyFeaturesGoOnInLinesThatBeginWithATab) {
    SystemFacts facts = NoFacts();
    facts.processor = ProcessorFacts{1, "", "", Texts(15, "feature8")}; // six fit into 60 bytes
    const Texts lines = SystemLines(facts);
    const std::string six = "feature8, feature8, feature8, feature8, feature8, feature8,";
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines[2], "CPUID features:\t" + six);
    EXPECT_EQ(lines[3], "\t" + six);
    EXPECT_EQ(lines[4], "\tfeature8, feature8, feature8");
}

TEST_F(SystemInformation, AValueIsOneLineWhateverItHolds) {
    SystemFacts facts = NoFacts();
    facts.system = "A\tB\nC\x7f\xc3\xa9";
    facts.volumes = {{"/media/a\nb", RemovableVolume}};
    EXPECT_EQ(SystemLines(facts).at(0), "Operating system:\tA?B?C?\xc3\xa9");
    EXPECT_EQ(SystemLines(facts).at(2), "Drive /media/a?b:\tRemovable");
}

TEST_F(SystemInformation, TheProgramTellsTimeNameAndVersion) {
    const Texts lines = ProgramLines();
    ASSERT_EQ(lines.size(), 6u);
    EXPECT_TRUE(lines[0].starts_with("Date:\t"));
    EXPECT_EQ(lines[0].size(), std::string("Date:\tSun Feb 22 14:05:09 2026").size());
    EXPECT_EQ(Texts(lines.begin() + 1, lines.end()),
              (Texts{"Application:\tTonewright", "Version:\t17", "Sub-version:\t0", "Revision:\ta",
                     "Patch:\t1"}));
}

TEST_F(SystemInformation, TheClipboardHasTheValuesBelowEachOtherAndTheWholeConfigurationFile) {
    WriteConfiguration("[Tonewright]\nMaxUndoLevel = 5\n" + std::string(100000, 'x'));
    EXPECT_EQ(ReportText({"One:\t1", "Eleven:\t11", "\tmore", "Path:\ta b"}),
              "One:    1\r\n"
              "Eleven: 11\r\n"
              "        more\r\n"
              "Path:   a b\r\n"
              ";\r\n;\r\n;------ INI FILE ------\r\n;\r\n;\r\n"
              "[Tonewright]\nMaxUndoLevel = 5\n" +
                  std::string(100000, 'x'));
}

TEST_F(SystemInformation, WithTheConfigurationFileMissingTheClipboardHoldsTheReportAlone) {
    PlatformFolders.applicationData = home.Folder();
    EXPECT_EQ(ReportText({"One:\t1", "Two:\t2"}), "One: 1\r\nTwo: 2\r\n");
    PlatformFolders.applicationData = "";
    EXPECT_EQ(ReportText({"One:\t1"}), "One: 1\r\n");
}

} // namespace
} // namespace tonewright
