// ./run without a display, on a copy of what it uses: the programs are those of this build.
#include "run_cli.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

class RunCommand : public testing::Test {
protected:
    void SetUp() override {
        fs::copy_file(SourceFile("run"), home.path / "run");
        fs::copy(SourceFile("packaging"), home.path / "packaging", fs::copy_options::recursive);
        fs::copy(SourceFile("examples"), home.path / "examples", fs::copy_options::recursive);
        fs::create_directories(home.path / "build/release");
        home.WriteText("build/release/build.ninja", "");
        // Nothing is installed or built.
        WriteProgram("bin/dpkg-query", "echo ok installed");
        WriteProgram("bin/ninja", "exit 0");
        WriteProgram("build/release/tonewright-cli",
                     "echo \"$XDG_CONFIG_DIRS\" >>\"" + home.File("dirs") +
                         "\"\n{ printf '%s|' \"$@\"; echo; } >>\"" + home.File("calls") +
                         "\"\nexec \"" + CliProgram() + "\" \"$@\"");
    }
    void WriteProgram(const std::string &name, const std::string &script) const {
        fs::create_directories((home.path / name).parent_path());
        home.WriteText(name, "#!/bin/sh\n" + script + "\n");
        fs::permissions(home.path / name, fs::perms::all);
    }
    ProgramResult Run() const {
        return RunProgram({"/usr/bin/env", "-u", "DISPLAY", "-u", "WAYLAND_DISPLAY",
                           "PATH=" + home.File("bin") + ":/usr/bin:/bin", "HOME=" + home.Folder(),
                           "XDG_CONFIG_HOME=" + home.File("config"), home.File("run")});
    }

    TempFolder home;
};

TEST_F(RunCommand, TwiceDoesTheSameAndNeitherAsksNorFails) {
    const auto bank = ReadTestFile(ExampleFile("tonewright.syx"));
    std::string first;
    for (int time = 0; time < 2; ++time) {
        const auto result = Run();
        EXPECT_EQ(result.exitStatus, 0) << result.errors;
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(ReadTestFile(home.File("run-output/saved.syx")), bank);
        EXPECT_EQ(ReadTestFile(home.File("run-output/dx7-memory.syx")), bank);
        EXPECT_NE(result.output.find("\n< name\tVELVET EP\n> name\tNIGHT EP\n"), std::string::npos)
            << result.output;
        EXPECT_NE(result.output.find("\nmasterTune\t442.0\ntempo\t131\n"), std::string::npos);
        EXPECT_TRUE(home.Holds("run-output/reface-dx.crg"));
        EXPECT_TRUE(home.Holds("run-output/main-window.png"));
        EXPECT_TRUE(home.Holds("run-output/voices.pdf"));
        EXPECT_TRUE(home.Holds("run-output/catalogue.pdf"));
        EXPECT_TRUE(home.Holds("run-output/archive.sqlite"));
        EXPECT_NE(ReadTestText(home.File("run-output/archive.tsv")).find("\nvoices\t37\n"),
                  std::string::npos);
        EXPECT_NE(result.output.find("\nb7ab5b3991f32c15\tTOWER BELL\tdx7\t13\t2\t"),
                  std::string::npos)
            << result.output;
        if (time == 0) {
            first = result.output;
            EXPECT_NE(first.find("painted the main window"), std::string::npos);
        } else {
            EXPECT_EQ(result.output, first);
        }
    }
    EXPECT_EQ(ReadTestFile(home.File("examples/tonewright.syx")), bank);
    EXPECT_FALSE(home.Holds("config"));
}

// One with ports of that name beside the built-in ones would be preferred.
TEST_F(RunCommand, NoInstrumentButTheBuiltInOnesIsWrittenToOrAsked) {
    ASSERT_EQ(Run().exitStatus, 0);
    std::istringstream calls(ReadTestText(home.File("calls")));
    int transfers = 0;
    for (std::string call; std::getline(calls, call);) {
        if (call.starts_with("upload|") || call.starts_with("download|") ||
            call.starts_with("reface-settings|")) {
            ++transfers;
            EXPECT_NE(call.find("|--in|Built-in "), std::string::npos) << call;
            EXPECT_NE(call.find("|--out|Built-in "), std::string::npos) << call;
        }
    }
    EXPECT_EQ(transfers, 5);
}

TEST_F(RunCommand, ItsProgramFindsTheExtrasOfAPackageOn) {
    ASSERT_EQ(Run().exitStatus, 0);
    const std::string dirs = ReadTestText(home.File("dirs"));
    EXPECT_TRUE(dirs.starts_with(home.File("packaging/xdg") + ":")) << dirs;
    const auto result = RunProgram({"/usr/bin/env", "XDG_CONFIG_HOME=" + home.File("config"),
                                    "XDG_CONFIG_DIRS=" + dirs.substr(0, dirs.find('\n')),
                                    CliProgram(), "settings", "list"});
    EXPECT_NE(result.output.find("\nextras.CarefulMode\t1\nextras.WholeDetune\t1\n"
                                 "extras.AuditionKeepsVoice\t1\nextras.BuiltinInstruments\t0\n"),
              std::string::npos)
        << result.output;
}

} // namespace
} // namespace tonewright
