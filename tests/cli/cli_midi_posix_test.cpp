// The commands for instruments on a POSIX system: an end in the middle of a note or a transfer,
// output that nobody takes, a memory that cannot be written.
#include "midi_home.h"
#include "unprivileged_cli.h"

#include "support/paths.h"
#include "support/posix_limits.h"

namespace tonewright {
namespace {

class CliMidiOnPosix : public CliMidi {
protected:
    // `script` in a shell in which $cli is the program.
    static ProgramResult Shell(const std::string &script) {
        return RunProgram({"/bin/sh", "-c", "cli='" + CliProgram() + "'; " + script});
    }
    // The program with these words, which gets a signal once `text`, as grep knows it, stands in
    // its errors, or after half a minute. The output is its exit status as a shell counts it; the
    // errors are its own.
    ProgramResult CliWithSignal(const std::string &words, const std::string &text,
                                const char *signal) const {
        const std::string errors = folder.File("errors.txt");
        ProgramResult result =
            Shell("\"$cli\" " + words + " 2>" + Quoted(errors) +
                  " & n=0; until [ $n = 600 ] || grep -q " + Quoted(text) + " " + Quoted(errors) +
                  "; do sleep 0.05; n=$((n + 1)); done; kill -" + signal + " $!; wait $!; echo $?");
        result.errors = ReadTestText(errors);
        return result;
    }
    static std::string Quoted(const std::string &path) { return "'" + path + "'"; }
};

TEST_F(CliMidiOnPosix, AnEndInTheMiddleOfANoteEndsTheNoteFirst) {
    const auto result = CliWithSignal(
        "play " + Quoted(Bank()) + " 1 60 62 64 65 67 69 --out dx7 --trace", "out.90 ", "TERM");
    EXPECT_EQ(result.output, "143\n"); // 128 and the signal: ended by it, in the end
    const std::string end = "tonewright-cli: stopped\n";
    ASSERT_TRUE(result.errors.ends_with(end)) << result.errors;
    const auto messages = MessagesOf(result.errors.substr(0, result.errors.size() - end.size()));
    ASSERT_GE(messages.size(), 3u);
    const std::string off = messages[messages.size() - 3];
    EXPECT_TRUE(off.starts_with("out\t80 ")) << off;
    EXPECT_EQ(std::ranges::count(messages, "out\t90" + off.substr(6)), 1);
    EXPECT_EQ(std::vector<std::string>(messages.end() - 2, messages.end()),
              (std::vector<std::string>{"out\t80 7F 64", "out\tB0 78 00"}));
    EXPECT_EQ(std::ranges::count(messages, "out\t90 45 64"), 0); // the last note was not reached
}

TEST_F(CliMidiOnPosix, AnEndInTheMiddleOfADownloadLeavesTheInstrumentAsItWas) {
    const std::string out = folder.File("out.srx");
    const auto result = CliWithSignal(
        "download " + Quoted(out) + " --trace --memory " + Quoted(Memory()), "00 2A 05 30", "HUP");
    EXPECT_EQ(result.output, "129\n");
    EXPECT_FALSE(folder.Holds("out.srx"));
    const std::string end = "tonewright-cli: stopped\n";
    ASSERT_TRUE(result.errors.ends_with(end)) << result.errors;
    const auto messages = MessagesOf(result.errors.substr(0, result.errors.size() - end.size()));
    const auto voices = std::ranges::count_if(messages, [](const std::string &message) {
        return message.starts_with("in\tF0 43 00 7F 1C 00 2A 05 30 00 00 ");
    });
    EXPECT_GT(voices, 0);
    EXPECT_LT(voices, 32); // the rest was not waited for
    // Speaker off for the transfer, and on again at its end.
    EXPECT_EQ(std::ranges::count(messages, "out\tF0 43 10 7F 1C 05 00 00 0D 00 F7"), 1);
    EXPECT_EQ(std::ranges::count(messages, "out\tF0 43 10 7F 1C 05 00 00 0D 01 F7"), 1);
    EXPECT_EQ(Part(ReadTestFile(Memory()), RefaceSystemOffset, 15),
              (Bytes{0, 16, 0, 4, 0, 0, 1, 64, 0, 0x78, 32, 0, 1, 1, 1}));
}

TEST_F(CliMidiOnPosix, AnEndDuringALongWaitDoesNotWaitForIt) {
    WriteSettings("SysexWait = 600000\n"); // ten minutes
    const auto result = CliWithSignal("upload-voice " + Quoted(RefaceBank()) +
                                          " 1 --in 'Built-in reface' --out 'Built-in DX7' --trace",
                                      "F0 43 20", "TERM");
    EXPECT_EQ(result.output, "143\n");
    EXPECT_TRUE(result.errors.ends_with("tonewright-cli: stopped\n")) << result.errors;
}

TEST_F(CliMidiOnPosix, ASignalThatWasSwitchedOffBeforehandStaysOff) {
    // A shell starts a command behind "&" with SIGINT switched off.
    const auto result =
        CliWithSignal("play " + Quoted(Bank()) + " 1 60 62 --out dx7 --trace", "out.90 ", "INT");
    EXPECT_EQ(result.output, "0\n");
    EXPECT_EQ(result.errors.find("stopped"), std::string::npos);
    EXPECT_NE(result.errors.find("out\t90 3E "), std::string::npos); // the second note
}

TEST_F(CliMidiOnPosix, OnATerminalADownloadTellsHowFarItIsAndLeavesAnEmptyLine) {
    const std::string out = folder.File("out.srx");
    const auto result =
        Shell("export cli; script -qec '\"$cli\" download \"" + out + "\"' /dev/null </dev/null");
    EXPECT_NE(result.output.find("\rDownloading voices"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("\rDownloading voice 1 of 32 ("), std::string::npos);
    EXPECT_NE(result.output.find("\rDownloading voice 32 of 32 ("), std::string::npos);
    EXPECT_TRUE(result.output.ends_with("\r")) << result.output;
    EXPECT_TRUE(folder.Holds("out.srx"));
}

TEST_F(CliMidiOnPosix, OnATerminalTheNameOfAVoiceIsNoCommandToIt) {
    Bytes bank = TestBank();
    bank[6 + 118] = 0x1B; // the name of the first voice begins with Esc
    bank[4102] = static_cast<std::uint8_t>((bank[4102] + TestBank()[6 + 118] - 0x1B) & 0x7F);
    const auto result = Shell("export cli; script -qec '\"$cli\" upload \"" +
                              folder.Write("esc.syx", bank) + "\" --out dx7' /dev/null </dev/null");
    EXPECT_NE(result.output.find("\rEncoding voice 1 of 32 (?"), std::string::npos)
        << result.output;
    EXPECT_EQ(result.output.find('\x1B'), std::string::npos);
}

TEST_F(CliMidiOnPosix, ATraceThatNobodyReadsDoesNotEndTheTransfer) {
    const auto result =
        Shell("\"$cli\" play " + Quoted(Bank()) + " 3 60 --out dx7 --memory " + Quoted(Memory()) +
              " --trace 2>&1 | head -n 1 >/dev/null; cat " + Quoted(Memory()) + " | wc -c");
    EXPECT_EQ(std::stoul(result.output), InstrumentFileSize) << result.errors;
}

TEST_F(CliMidiOnPosix, AClosedOrFullOutputIsAFailureWhereSomethingIsPrinted) {
    auto result = Shell("\"$cli\" ports >&-");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, "tonewright-cli: standard output: Bad file descriptor\n");
    result = Shell("\"$cli\" find >/dev/full");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, "tonewright-cli: standard output: No space left on device\n");
}

TEST_F(CliMidiOnPosix, AClosedOutputIsNoMatterWhereNothingIsPrinted) {
    const std::string bank = Bank(), back = folder.File("back.syx");
    const auto result =
        Shell("\"$cli\" upload " + Quoted(bank) + " --out dx7 --memory " + Quoted(Memory()) +
              " >&- && \"$cli\" memory " + Quoted(Memory()) + " dx7 " + Quoted(back) + " >&-");
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    EXPECT_EQ(ReadTestFile(bank), TestBank());
    EXPECT_EQ(ReadTestFile(back), TestBank());
}

TEST_F(CliMidiOnPosix, AMemoryInAReadOnlyFolderIsToldOf) {
    const std::string bank = Bank();
    RunCliUnprivileged(
        {{folder.path, 0500}}, {"upload", bank, "--out", "dx7", "--memory", Memory()},
        [&](const ProgramResult &result) {
            EXPECT_EQ(result.exitStatus, 1);
            EXPECT_EQ(result.errors, "tonewright-cli: " + Memory() +
                                         ": could not be written: Permission denied\n");
        });
    EXPECT_FALSE(folder.Holds("studio"));
}

TEST_F(CliMidiOnPosix, AMemoryThatMayNotBeReadIsToldOfAndStays) {
    const std::string bank = Bank();
    ExpectDone({"upload", bank, "--out", "dx7", "--memory", Memory()});
    const Bytes studio = ReadTestFile(Memory());
    RunCliUnprivileged({{Memory(), 0200}},
                       {"upload", bank, "--out", "volca", "--memory", Memory(), "--trace"},
                       [&](const ProgramResult &result) {
                           EXPECT_EQ(result.exitStatus, 1);
                           EXPECT_EQ(result.errors, "tonewright-cli: " + Memory() +
                                                        ": not readable: Permission denied\n");
                       });
    EXPECT_EQ(ReadTestFile(Memory()), studio);
}

TEST_F(CliMidiOnPosix, ADownloadThatCannotBeWrittenWholeIsDeleted) {
    const std::string out = folder.File("out.srx");
    ProgramResult result;
    {
        const FileSizeLimit limit(2000);
        result = RunProgram({CliProgram(), "download", out});
    }
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, "tonewright-cli: " + out + ": could not be written: File too large\n");
    EXPECT_FALSE(folder.Holds("out.srx"));
}

} // namespace
} // namespace tonewright
