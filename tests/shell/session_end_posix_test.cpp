// Requests to end the real program, sent as the system sends them: they count as the close of the
// window, without a question, whatever stands on the screen.
#include "support/bank_bytes.h"
#include "support/x_display.h"

#include <gtest/gtest.h>

#include <csignal>

namespace tonewright {
namespace {

using namespace std::chrono_literals;

class SessionEnd : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(display.Start()) << "no X server"; }

    // A program with a bank open, of settings that lack most keys.
    void StartWithBank() {
        program.emplace(display);
        bank = program->home.Write("bank.syx", TestBank());
        program->Start({bank});
        ASSERT_TRUE(program->Stands("bank.syx"));
    }
    // Presses keys until a window of that title stands.
    bool Opens(const std::string &title, const Strings &keys) {
        return Becomes(
            [&] {
                return program->Press(keys) &&
                       Becomes([&] { return !display.FindWindow(title).empty(); }, 2s);
            },
            20s);
    }
    void ExpectEndAfter(int signal) {
        ASSERT_FALSE(program->process->HasEnded());
        kill(program->process->id, signal);
        EXPECT_TRUE(program->process->Ends(15s)) << signal;
        EXPECT_EQ(program->process->ExitStatus(), 0) << signal;
        const std::string settings =
            ReadTestText(program->home.File(".config/Quillbrook/Tonewright 17.ini"));
        EXPECT_NE(settings.find("\nRecentDocumentPath = " + bank + "\n"), std::string::npos);
        EXPECT_NE(settings.find("\nMaxUndoLevel = 3\n"), std::string::npos);
        EXPECT_EQ(
            ReadTestText(program->home.File(".config/Quillbrook/Tonewright 17/FileMenuHistory.txt"))
                .substr(0, bank.size() + 1),
            bank + ",");
        EXPECT_EQ(ReadTestFile(bank), TestBank()) << "nothing else is saved";
    }

    XDisplay display;
    std::optional<ProgramOnDisplay> program;
    std::string bank; // its path
};

TEST_F(SessionEnd, ASignalEndsTheProgramAsACloseOfItsWindowDoes) {
    for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
        ASSERT_NO_FATAL_FAILURE(StartWithBank());
        ExpectEndAfter(signal);
    }
}

TEST_F(SessionEnd, AQuestionThatStandsIsLeftWithoutAnAnswer) {
    ASSERT_NO_FATAL_FAILURE(StartWithBank());
    // Exit asks whether the changed document is to be saved.
    ASSERT_TRUE(Opens("^Message$", {"Home", "ctrl+c", "Down", "ctrl+v", "alt+f", "x"}));
    ExpectEndAfter(SIGTERM);
}

TEST_F(SessionEnd, AFileDialogThatStandsIsLeftToo) {
    ASSERT_NO_FATAL_FAILURE(StartWithBank());
    ASSERT_TRUE(Opens("^Open$", {"ctrl+o"}));
    ExpectEndAfter(SIGTERM);
}

} // namespace
} // namespace tonewright
