// Two running copies of the real program share the clipboard of one X server: a voice that is
// copied in one is pasted in the other. Driven by keys, judged by the files that the programs save.
#include "support/bank_bytes.h"
#include "support/x_display.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;
using namespace std::chrono_literals;

// A running program with a bank of its own.
struct RunningProgram {
    ProgramOnDisplay program;
    std::string name; // of the document
    std::string bank; // its path

    RunningProgram(const XDisplay &display, const std::string &documentName, const Bytes &bytes)
        : program(display), name(documentName), bank(program.home.Write(documentName, bytes)) {
        program.Start({bank});
    }

    // True once the window shows the document.
    bool Stands() { return program.Stands(name); }
    bool Press(const Strings &keys) const { return program.Press(keys); }
    // The keys that select a row, and then those given.
    bool PressAt(int row, const Strings &keys) const {
        Strings all = {"Home"};
        all.insert(all.end(), static_cast<std::size_t>(row), "Down");
        all.insert(all.end(), keys.begin(), keys.end());
        return Press(all);
    }
    Bytes Saved() const { return ReadTestFile(bank); }
};

// A valid bank of the voices of TestBank() under other names, "OTHER 01" to "OTHER 32".
Bytes OtherBank() {
    Bytes bank = TestBank();
    const std::string word = "OTHER";
    for (int number = 0; number < 32; ++number) {
        std::ranges::copy(word, bank.begin() +
                                    static_cast<std::ptrdiff_t>(TestBankVoiceOffset(number) + 118));
    }
    FixTestChecksum(bank);
    return bank;
}

// `bank` with the voice of one row replaced by a voice of another bank.
Bytes WithVoice(Bytes bank, int row, const Bytes &other, int otherRow) {
    const auto at = [](int number) {
        return static_cast<std::ptrdiff_t>(TestBankVoiceOffset(number));
    };
    std::copy_n(other.begin() + at(otherRow), TestPackedVoiceSize, bank.begin() + at(row));
    FixTestChecksum(bank);
    return bank;
}

// Copies a voice in one program, pastes it in the other and saves there, until the file is as
// expected: a key that is pressed before the other program has heard of the copy does nothing.
bool Carry(const RunningProgram &from, int fromRow, const RunningProgram &to, int toRow,
           const Bytes &expected) {
    return Becomes(
        [&] {
            return from.PressAt(fromRow, {"ctrl+c"}) && to.PressAt(toRow, {"ctrl+v", "ctrl+s"}) &&
                   Becomes([&] { return to.Saved() == expected; }, 1s);
        },
        12s);
}

TEST(TwoPrograms, AVoiceGoesFromEachToTheOtherAndIsGoneWithItsProgram) {
    XDisplay display;
    ASSERT_TRUE(display.Start()) << "no X server";
    RunningProgram first(display, "first.syx", TestBank());
    RunningProgram second(display, "second.syx", OtherBank());
    ASSERT_TRUE(first.Stands());
    ASSERT_TRUE(second.Stands());

    const Bytes secondBank = WithVoice(OtherBank(), 5, TestBank(), 2);
    EXPECT_TRUE(Carry(first, 2, second, 5, secondBank));
    EXPECT_EQ(first.Saved(), TestBank());

    const Bytes firstBank = WithVoice(TestBank(), 1, OtherBank(), 7);
    EXPECT_TRUE(Carry(second, 7, first, 1, firstBank));
    EXPECT_EQ(second.Saved(), secondBank);

    // With the program that copied, its offer goes: Paste is grey, so that nothing is pasted and no
    // message stands in the way of what follows, a voice of its own for yet another row.
    second.program.process->Kill();
    ASSERT_TRUE(first.PressAt(9, {"ctrl+v", "ctrl+s"}));
    EXPECT_TRUE(Carry(first, 0, first, 3, WithVoice(firstBank, 3, TestBank(), 0)));

    // It ends by its menu and keeps its history.
    EXPECT_TRUE(first.Press({"alt+f"}));
    EXPECT_TRUE(Becomes(
        [&] {
            if (first.program.process->HasEnded()) {
                return true;
            }
            display.Tool({"key", "x"});
            return first.program.process->Ends(1s);
        },
        8s));
    EXPECT_EQ(first.program.process->ExitStatus(), 0);
    EXPECT_EQ(ReadTestText(
                  first.program.home.File(".config/Quillbrook/Tonewright 17/FileMenuHistory.txt"))
                  .substr(0, first.bank.size() + 1),
              first.bank + ",");
}

// The toolkit waits five seconds for an owner of the clipboard that does not answer, at each look.
TEST(TwoPrograms, AnOwnerOfTheClipboardThatDoesNotAnswerHoldsUpNoDocument) {
    XDisplay display;
    ASSERT_TRUE(display.Start()) << "no X server";
    auto start = TestClock::now();
    RunningProgram first(display, "first.syx", TestBank());
    ASSERT_TRUE(first.Stands());
    const auto usual = TestClock::now() - start;
    EXPECT_TRUE(Carry(first, 0, first, 3, WithVoice(TestBank(), 3, TestBank(), 0)));
    first.program.process->Halt();
    start = TestClock::now();
    RunningProgram second(display, "second.syx", OtherBank());
    ASSERT_TRUE(second.Stands());
    EXPECT_LT(TestClock::now() - start, usual + 4500ms);
    // When the owner answers after all, the voice is pasted.
    first.program.process->GoOn();
    EXPECT_TRUE(Carry(first, 2, second, 5, WithVoice(OtherBank(), 5, TestBank(), 2)));
}

} // namespace
} // namespace tonewright
