// The commands for instruments with the built-in ones: the real program, its output, what it sends
// as --trace shows it, and what the instruments hold afterwards.
#include "midi_home.h"

namespace tonewright {
namespace {

bool Contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

constexpr const char *BuiltinPorts = "0\tBuilt-in\tBuilt-in DX7\tyes\tno\n"
                                     "1\tBuilt-in\tBuilt-in DX7\tno\tyes\n"
                                     "2\tBuilt-in\tBuilt-in volca fm\tyes\tno\n"
                                     "3\tBuilt-in\tBuilt-in volca fm\tno\tyes\n"
                                     "4\tBuilt-in\tBuilt-in reface DX\tyes\tno\n"
                                     "5\tBuilt-in\tBuilt-in reface DX\tno\tyes\n";

constexpr const char *Dx7Found = "Yamaha DX7, TX7, Korg Volca FM\t\t0\tBuilt-in DX7\t1\t"
                                 "Built-in DX7\n";
constexpr const char *RefaceFound =
    "Yamaha reface DX\t01.20\t4\tBuilt-in reface DX\t5\tBuilt-in reface DX\n";
// By the names of its ports: nobody has asked it.
constexpr const char *RefaceNamed =
    "Yamaha reface DX\t\t4\tBuilt-in reface DX\t5\tBuilt-in reface DX\n";

const std::string NoDx7Ports =
    std::string(Dx7Name) + ": no device: name its MIDI ports by --in and --out, or in the settings "
                           "SelectKeyboardMidiIn and SelectKeyboardMidiOut";
const std::string NoRefacePorts =
    std::string(RefaceName) + ": no device: there are no MIDI ports of its name";

// ---- ports

using CliPorts = CliMidi;

TEST_F(CliPorts, PrintsTheBuiltInInstrumentsAheadOfTheRealPorts) {
    const auto all = Cli({"ports"});
    EXPECT_EQ(all.exitStatus, 0);
    EXPECT_EQ(all.errors, "");
    EXPECT_TRUE(all.output.starts_with(BuiltinPorts)) << all.output;
    // A machine without MIDI has no line, and says nothing of it.
    RemoveVariable("TONEWRIGHT_INSTRUMENTS");
    const auto real = Cli({"ports"});
    EXPECT_EQ(real.exitStatus, 0);
    EXPECT_EQ(real.errors, "");
    EXPECT_FALSE(Contains(real.output, "Built-in"));
    EXPECT_EQ(std::ranges::count(real.output, '\n') + 6, std::ranges::count(all.output, '\n'));
}

// ---- without an instrument

class CliWithoutInstruments : public CliMidi {
protected:
    void SetUp() override {
        CliMidi::SetUp();
        RemoveVariable("TONEWRIGHT_INSTRUMENTS");
    }
    // Every command that needs a DX7, with further options.
    void ExpectNoDx7(const std::vector<std::string> &options, const std::string &reason) const {
        const std::string bank = Bank();
        for (std::vector<std::string> call :
             std::vector<std::vector<std::string>>{{"upload", bank},
                                                   {"upload-voice", bank, "1"},
                                                   {"play", bank, "1", "60"},
                                                   {"find", "--synth", "DX7"}}) {
            call.insert(call.end(), options.begin(), options.end());
            ExpectFailure(call, reason);
        }
    }
};

TEST_F(CliWithoutInstruments, EveryCommandForADx7SaysWhichPortsWereLookedFor) {
    ExpectNoDx7({}, NoDx7Ports);
    ExpectNoDx7({"--in", "No Such In", "--out", "No Such Out"},
                std::string(Dx7Name) + ": no device: no MIDI input named \"No Such In\" and no "
                                       "MIDI output named \"No Such Out\"");
    ExpectNoDx7({"--out", "No Such\tPort"},
                std::string(Dx7Name) + ": no device: no MIDI input named \"No Such?Port\" and no "
                                       "MIDI output named \"No Such?Port\"");
}

TEST_F(CliWithoutInstruments, EveryCommandForARefaceDxSaysSo) {
    const std::string bank = RefaceBank(), out = folder.File("out.srx");
    ExpectFailure({"download", out}, NoRefacePorts);
    ExpectFailure({"upload-voice", bank, "1"}, NoRefacePorts);
    ExpectFailure({"play", bank, "1", "60"}, NoRefacePorts);
    ExpectFailure({"find", "--synth", "reface"}, NoRefacePorts);
    ExpectFailure({"download", out, "--in", "No Such"},
                  std::string(RefaceName) + ": no device: no MIDI input named \"No Such\" and no "
                                            "MIDI output named \"No Such\"");
    EXPECT_FALSE(folder.Holds("out.srx"));
}

TEST_F(CliWithoutInstruments, FindNamesEveryFamilyThatWasLookedFor) {
    ExpectFailure({"find"}, NoDx7Ports + "\ntonewright-cli: " + NoRefacePorts);
}

TEST_F(CliWithoutInstruments, AMemoryIsOfNoUseAndIsNotMade) {
    ExpectFailure({"upload", Bank(), "--out", "DX7", "--memory", Memory()},
                  Memory() + ": no device: the built-in instruments, whose memory it keeps, are "
                             "there with TONEWRIGHT_INSTRUMENTS=1, or the setting "
                             "extras.BuiltinInstruments");
    EXPECT_FALSE(folder.Holds("studio"));
}

TEST_F(CliMidi, OfTwoPortsTheOneThatIsMissingIsNamed) {
    ExpectFailure({"upload", Bank(), "--in", "dx7", "--out", "No Such"},
                  std::string(Dx7Name) + ": no device: no MIDI output named \"No Such\"");
    ExpectFailure({"upload", Bank(), "--in", "No Such", "--out", "dx7"},
                  std::string(Dx7Name) + ": no device: no MIDI input named \"No Such\"");
}

// ---- find

using CliFind = CliMidi;

TEST_F(CliFind, WithoutAChoiceEveryFamilyThatCanBeFoundIsPrinted) {
    ExpectOutput({"find"}, RefaceFound);
    WriteSettings("SelectKeyboardMidiIn = built-in dx7\nSelectKeyboardMidiOut = built-in dx7\n");
    ExpectOutput({"find"}, std::string(Dx7Found) + RefaceFound);
}

TEST_F(CliFind, TheSettingsChooseTheInstrument) {
    WriteSettings("SelectKeyboardName = Yamaha DX7, TX7, Korg Volca FM\n"
                  "SelectKeyboardMidiIn = Built-in DX7\nSelectKeyboardMidiOut = Built-in DX7\n");
    ExpectOutput({"find"}, Dx7Found);
    ExpectOutput({"find", "--synth", RefaceName}, RefaceFound);
    WriteSettings("SelectKeyboardName = Yamaha reface DX\n");
    ExpectOutput({"find"}, RefaceFound);
}

TEST_F(CliFind, AnInstrumentIsNamedInAnyCaseOrByAPart) {
    for (const char *name : {RefaceName, "YAMAHA REFACE dx", "reface"}) {
        ExpectOutput({"find", "--synth", name}, RefaceFound);
    }
    for (const char *name : {"yamaha dx7, tx7, korg volca fm", "volca", "DX7"}) {
        ExpectOutput({"find", "--synth", name, "--out=Built-in DX7"}, Dx7Found);
    }
}

TEST_F(CliFind, AnotherNameIsRefusedWithTheNamesThatThereAre) {
    const std::string names = "; there are: Yamaha DX7, TX7, Korg Volca FM; Yamaha reface DX";
    ExpectFailure({"find", "--synth", "Minimoog"}, "Minimoog: no such instrument" + names, 2);
    ExpectFailure({"find", "--synth", "yamaha"}, "yamaha: more than one instrument" + names, 2);
    ExpectFailure({"find", "--synth="}, "no such instrument" + names, 2);
}

TEST_F(CliFind, WithNamesOfPortsNothingIsAsked) {
    ExpectOutput({"find", "--synth", "reface", "--in", "reface", "--out", "reface", "--trace"},
                 RefaceNamed);
    WriteSettings("SelectKeyboardAutodetect = 0\nSelectKeyboardMidiIn = reface\n");
    ExpectOutput({"find", "--synth", "reface"}, RefaceNamed);
    WriteSettings("SelectKeyboardAutodetect = 0\n");
    ExpectFailure({"find", "--synth", "reface"},
                  std::string(RefaceName) + NoDx7Ports.substr(std::string(Dx7Name).size()));
}

TEST_F(CliFind, TheLastPortThatMatchesIsTaken) {
    ExpectOutput({"find", "--synth", "dx7", "--in", "BUILT", "--out", "dx"},
                 std::string(Dx7Name) + "\t\t4\tBuilt-in reface DX\t5\tBuilt-in reface DX\n");
}

TEST_F(CliFind, TheTraceShowsTheQuestionAndTheAnswer) {
    const auto result = Cli({"find", "--synth", "reface", "--trace"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, RefaceFound);
    EXPECT_EQ(MessagesOf(result.errors),
              (std::vector<std::string>{"out\tF0 7E 00 06 01 F7",
                                        "in\tF0 7E 7F 06 02 43 00 41 53 06 02 00 00 7F F7"}));
}

TEST_F(CliFind, ChangesNoMemory) {
    ExpectOutput({"find", "--synth", "reface", "--memory", Memory()}, RefaceFound);
    EXPECT_FALSE(folder.Holds("studio"));
}

// ---- upload

using CliUpload = CliMidi;

TEST_F(CliUpload, SendsTheBankAndReadsItBackByteForByte) {
    const std::string bank = Bank(), back = folder.File("back.syx");
    ExpectDone({"upload", bank, "--out", "Built-in DX7", "--memory", Memory()});
    const Bytes studio = ReadTestFile(Memory());
    ASSERT_EQ(studio.size(), InstrumentFileSize);
    EXPECT_EQ(Part(studio, Dx7MemoryOffset, 4096), Part(TestBank(), 6, 4096));
    EXPECT_NE(Part(studio, VolcaStateOffset + 3, 4096), Part(TestBank(), 6, 4096));
    ExpectDone({"memory", Memory(), "dx7", back});
    EXPECT_EQ(ReadTestFile(back), TestBank());
    EXPECT_EQ(ReadTestFile(bank), TestBank());
}

TEST_F(CliUpload, TheTraceShowsEveryMessage) {
    const auto result = Cli({"upload", Bank(), "--out", "dx7", "--trace"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(MessagesOf(result.errors),
              (std::vector<std::string>{"out\tB0 7D 00", "out\t" + HexOf(TestBank()), "out\tC0 1F",
                                        "out\tC0 00", "out\tB0 7C 00"}));
}

TEST_F(CliUpload, TheChannelIsTheOptionsOrElseThatOfTheSettings) {
    WriteSettings("CurrentMidiChannel = 5\nSelectKeyboardMidiIn = dx7\n"
                  "SelectKeyboardMidiOut = dx7\n");
    auto messages = MessagesOf(Cli({"upload", Bank(), "--trace"}).errors);
    ASSERT_EQ(messages.size(), 5u);
    EXPECT_EQ(messages[0], "out\tB4 7D 00");
    EXPECT_EQ(messages[2], "out\tC4 1F");
    messages = MessagesOf(Cli({"upload", Bank(), "--trace", "--channel", "16"}).errors);
    ASSERT_EQ(messages.size(), 5u);
    EXPECT_EQ(messages[0], "out\tBF 7D 00");
    EXPECT_EQ(messages[3], "out\tCF 00");
}

TEST_F(CliUpload, TwoBanksOneAfterTheOtherLeaveTheSecondAndEachInstrumentItsOwn) {
    const std::string first = Bank(), back = folder.File("back.syx");
    Bytes other = TestBank();
    other[6 + 118] = 'X';
    FixTestChecksum(other);
    const std::string second = folder.Write("second.syx", other);
    ExpectDone({"upload", first, "--out", "volca", "--memory", Memory()});
    ExpectDone({"upload", first, "--out", "dx7", "--memory", Memory()});
    ExpectDone({"upload", second, "--out", "dx7", "--memory", Memory()});
    ExpectDone({"memory", Memory(), "DX7", back});
    EXPECT_EQ(ReadTestFile(back), other);
    ExpectDone({"memory", Memory(), "Built-in volca fm", back});
    EXPECT_EQ(ReadTestFile(back), TestBank());
    EXPECT_EQ(ReadTestFile(folder.File("Backup of back.syx")), other);
}

TEST_F(CliUpload, ADamagedBankIsSentOnlyWithYes) {
    Bytes bytes = TestBank();
    bytes[4102] ^= 1;
    const std::string bank = folder.Write("bank.syx", bytes), back = folder.File("back.syx");
    const auto result = Cli({"upload", bank, "--out", "dx7", "--memory", Memory(), "--trace"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(Contains(result.errors, "wrong checksum, and the answer was not to open it\n"));
    EXPECT_FALSE(folder.Holds("studio"));
    EXPECT_EQ(Cli({"upload", bank, "--out", "dx7", "--memory", Memory(), "--yes"}).exitStatus, 0);
    ExpectDone({"memory", Memory(), "dx7", back});
    EXPECT_EQ(ReadTestFile(back), TestBank());
}

// What a command says that sends nothing, since no message can carry what it should send.
std::string CannotBeCarried(const std::string &path, const std::string &places) {
    return path +
           ": not sent, since a message cannot carry bytes above 7F, which are in the voices at "
           "these places: " +
           places;
}

TEST_F(CliUpload, ABankThatNoMessageCanCarryIsToldOfAndNothingIsSent) {
    Bytes bytes = TestBank();
    bytes[TestBankVoiceOffset(1) + 110] = 0x80;  // an algorithm
    bytes[TestBankVoiceOffset(31) + 127] = 0xFF; // the last letter of a name
    FixTestChecksum(bytes);
    const std::string bank = folder.Write("high.syx", bytes);
    ExpectFailure({"upload", bank, "--out", "dx7"}, CannotBeCarried(bank, "2, 32"));
    const auto result = Cli({"upload", bank, "--out", "dx7", "--trace"});
    EXPECT_FALSE(Contains(result.errors, "\tout\t")) << result.errors;
    bytes[TestBankVoiceOffset(1) + 110] = 0x7F;
    bytes[TestBankVoiceOffset(31) + 127] = 0x7F;
    FixTestChecksum(bytes);
    ExpectDone({"upload", folder.Write("low.syx", bytes), "--out", "dx7"});
}

TEST_F(CliUpload, OneVoiceThatNoMessageCanCarryIsToldOfAndTheOthersCanBeSent) {
    Bytes bytes = TestBank();
    bytes[TestBankVoiceOffset(1)] = 0x80;
    FixTestChecksum(bytes);
    const std::string bank = folder.Write("high.syx", bytes);
    ExpectFailure({"upload-voice", bank, "2", "--out", "dx7"}, CannotBeCarried(bank, "2"));
    ExpectFailure({"play", bank, "2", "C3", "--out", "dx7"}, CannotBeCarried(bank, "2"));
    ExpectDone({"upload-voice", bank, "1", "--out", "dx7"});
    bytes = TestRefaceBank();
    bytes[160 + 202 + 201] = 0x80; // the last byte of the second voice
    const std::string reface = folder.Write("high.srx", bytes);
    ExpectFailure({"upload-voice", reface, "2"}, CannotBeCarried(reface, "2"));
    ExpectDone({"upload-voice", reface, "1"});
    bytes[160 + 202 + 201] = 0;
    bytes[160 + 202 + 52] = 0xFF; // its first
    ExpectFailure({"upload-voice", folder.Write("high.srx", bytes), "2"},
                  CannotBeCarried(reface, "2"));
}

TEST_F(CliUpload, AFileThatCannotBeReadIsToldOf) {
    const std::string missing = folder.File("missing.syx");
    ExpectFailure({"upload", missing, "--out", "dx7"},
                  missing + ": not readable: No such file or directory");
}

// ---- upload-voice

using CliUploadVoice = CliMidi;

// The 163 bytes that carry a single voice to a DX7.
Bytes Dx7VoiceDump() {
    Bytes dump = {0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B};
    const Bytes voice = TestUnpackedVoice();
    dump.insert(dump.end(), voice.begin(), voice.begin() + 155);
    dump.push_back(TestChecksum(Part(dump, 6, 155)));
    dump.push_back(0xF7);
    return dump;
}

TEST_F(CliUploadVoice, TheTraceShowsTheMessagesToADx7) {
    const std::string voice = folder.Write("voice.sy1", TestVoiceFile());
    const auto result =
        Cli({"upload-voice", voice, "1", "--out", "dx7", "--channel", "3", "--trace"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(MessagesOf(result.errors),
              (std::vector<std::string>{"out\tB2 7D 00", "out\t" + HexOf(Dx7VoiceDump()),
                                        "out\tB2 7C 00"}));
}

TEST_F(CliUploadVoice, ReachesTheEditBufferOfADx7) {
    const std::string voice = folder.Write("voice.sy1", TestVoiceFile());
    const std::string back = folder.File("back.sy1");
    ExpectDone({"upload-voice", voice, "1", "--out", "dx7", "--memory", Memory()});
    EXPECT_EQ(Part(ReadTestFile(Memory()), Dx7EditOffset, 155), Part(TestVoiceFile(), 6, 155));
    ExpectDone({"memory", Memory(), "dx7", back});
    // In the instrument every operator is on.
    Bytes expected = TestVoiceFile();
    expected[6 + 155] = 0x3F;
    FixTestChecksum(expected);
    EXPECT_EQ(ReadTestFile(back), expected);
}

TEST_F(CliUploadVoice, TakesTheVoiceAtAPlaceOfABank) {
    ExpectDone({"upload-voice", Bank(), "32", "--out", "dx7", "--memory", Memory()});
    const Bytes name = Part(ReadTestFile(Memory()), Dx7EditOffset + 145, 10);
    EXPECT_EQ(std::string(name.begin(), name.end()), "VOICE 32  ");
}

// A bulk dump of the reface DX: the bytes from the model on are counted, and summed.
std::string RefaceBlockMessage(const Bytes &address, const Bytes &data) {
    Bytes counted = {0x05};
    counted.insert(counted.end(), address.begin(), address.end());
    counted.insert(counted.end(), data.begin(), data.end());
    Bytes message = {0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, static_cast<std::uint8_t>(counted.size())};
    message.insert(message.end(), counted.begin(), counted.end());
    message.push_back(TestChecksum(counted));
    message.push_back(0xF7);
    return "out\t" + HexOf(message);
}

TEST_F(CliUploadVoice, TheTraceShowsTheConversationWithARefaceDx) {
    const auto result = Cli({"upload-voice", RefaceBank(), "7", "--trace"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "");
    const std::string change = "out\tF0 43 10 7F 1C 05 00 00 ";
    EXPECT_EQ(
        MessagesOf(result.errors),
        (std::vector<std::string>{
            // who are you
            "out\tF0 7E 00 06 01 F7",
            "in\tF0 7E 7F 06 02 43 00 41 53 06 02 00 00 7F F7",
            // the settings
            "out\tF0 43 20 7F 1C 05 00 00 00 F7",
            "in\tF0 43 00 7F 1C 00 24 05 00 00 00 00 10 00 04 00 00 01 40 00 78 20 00 01 01 01 00 "
            "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0B F7",
            "out\tB0 7C 00",
            change + "01 00 F7",
            change + "00 00 F7",
            change + "0C 00 F7",
            change + "0D 00 F7",
            change + "0E 01 F7",
            // the voice
            "out\tF0 43 00 7F 1C 00 04 05 0E 0F 00 5E F7",
            RefaceBlockMessage({0x30, 0x00, 0x00}, TestRefaceCommon(6)),
            RefaceBlockMessage({0x31, 0x00, 0x00}, TestRefaceOperator(0)),
            RefaceBlockMessage({0x31, 0x01, 0x00}, TestRefaceOperator(1)),
            RefaceBlockMessage({0x31, 0x02, 0x00}, TestRefaceOperator(2)),
            RefaceBlockMessage({0x31, 0x03, 0x00}, TestRefaceOperator(3)),
            "out\tF0 43 00 7F 1C 00 04 05 0F 0F 00 5D F7",
            // the settings as they were
            change + "00 00 F7",
            change + "01 10 F7",
            change + "02 00 04 00 00 F7",
            change + "06 01 F7",
            change + "07 40 F7",
            change + "08 00 78 F7",
            change + "0A 20 F7",
            change + "0B 00 F7",
            change + "0C 01 F7",
            change + "0D 01 F7",
            change + "0E 01 F7",
            "out\tB0 7D 00",
        }));
}

TEST_F(CliUploadVoice, ReachesTheEditBufferOfARefaceDx) {
    const std::string voice = folder.Write("voice.sr1", TestRefaceVoiceFile(4));
    const std::string back = folder.File("back.sr1");
    ExpectDone({"upload-voice", voice, "1", "--memory", Memory()});
    ExpectDone({"memory", Memory(), "reface", back});
    EXPECT_EQ(WithoutTestTime(ReadTestFile(back)), TestRefaceVoiceFile(4));
}

TEST_F(CliUploadVoice, APlaceThatIsNotThereIsToldOfAndNothingIsSent) {
    const std::string bank = Bank(), voice = folder.Write("voice.sy1", TestVoiceFile());
    const std::vector<std::string> options = {"--out", "dx7", "--trace", "--memory", Memory()};
    const auto expect = [&](std::vector<std::string> call, const std::string &reason) {
        call.insert(call.end(), options.begin(), options.end());
        ExpectFailure(call, reason);
    };
    expect({"upload-voice", bank, "33"}, bank + ": there is no place 33 among its 32 voices");
    expect({"upload-voice", voice, "2"}, voice + ": there is no place 2 among its 1 voices");
    expect({"play", bank, "33", "60"}, bank + ": there is no place 33 among its 32 voices");
    EXPECT_FALSE(folder.Holds("studio"));
}

TEST_F(CliUploadVoice, ARecordThatHoldsNoVoiceIsNotSent) {
    Bytes bytes = TestRefaceBank(3);
    bytes[160] ^= 1;             // magic of the first
    bytes[160 + 202 + 16] = 'X'; // driver of the second
    const std::string bank = folder.Write("bank.srx", bytes);
    for (const char *place : {"1", "2"}) {
        const std::string reason = bank + ": place " + place + " holds no whole voice";
        ExpectFailure({"upload-voice", bank, place, "--trace"}, reason);
        ExpectFailure({"play", bank, place, "60", "--trace"}, reason);
    }
}

TEST_F(CliMidi, WholeDetuneReachesTheInstrumentAndComesBackFromItsMemory) {
    Bytes bank = TestBank();
    bank[6 + 12] = 0x73; // detune 14, rate scaling 3
    FixTestChecksum(bank);
    const std::string in = folder.Write("detuned.syx", bank);
    const std::string back = folder.File("back.syx");
    ExpectDone({"upload", in, "--out", "dx7", "--memory", Memory(), "--whole-detune"});
    EXPECT_EQ(Part(ReadTestFile(Memory()), Dx7MemoryOffset, 4096), Part(bank, 6, 4096));
    ExpectDone({"memory", Memory(), "dx7", back, "--whole-detune"});
    EXPECT_EQ(ReadTestFile(back), bank);
    ExpectDone({"memory", Memory(), "dx7", back, "--no-whole-detune"});
    EXPECT_EQ(ReadTestFile(back)[6 + 12], 0x33);
    ExpectDone({"upload-voice", in, "1", "--out", "dx7", "--memory", Memory(), "--whole-detune"});
    EXPECT_EQ(ReadTestFile(Memory())[Dx7EditOffset + 20], 14);
    ExpectDone({"upload", in, "--out", "dx7", "--memory", Memory()});
    EXPECT_EQ(ReadTestFile(Memory())[Dx7MemoryOffset + 12], 0x33);
}

TEST_F(CliMidi, WholeDetuneOfExtrasHoldsForExportAndPlay) {
    Bytes bank = TestBank();
    bank[6 + 12] = 0x73; // detune 14, rate scaling 3
    FixTestChecksum(bank);
    const std::string in = folder.Write("detuned.syx", bank), out = folder.File("voice.sy1");
    for (const char *value : {"0", "1"}) {
        const int detune = *value == '1' ? 14 : 6;
        ExpectDone({"settings", "set", "extras.WholeDetune", value});
        ExpectDone({"export", in, "1", out});
        EXPECT_EQ(ReadTestFile(out)[6 + 20], detune);
        ExpectDone({"play", in, "1", "60", "--out", "dx7", "--memory", Memory()});
        EXPECT_EQ(ReadTestFile(Memory())[Dx7EditOffset + 20], detune);
    }
}

// ---- play

using CliPlay = CliMidi;

TEST_F(CliPlay, SendsTheVoiceAndPlaysOneNoteAfterTheOther) {
    const std::string voice = folder.Write("voice.sy1", TestVoiceFile());
    WriteSettings("AuditionCurrentVelocity = 77\n");
    const auto result = Cli(
        {"play", voice, "1", "0", "C3", "eb3", "127", "--out", "dx7", "--channel", "2", "--trace"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "");
    const std::vector<std::string> expected = {
        "out\tB1 7D 00", "out\t" + HexOf(Dx7VoiceDump()),
        "out\tB1 7C 00", "out\t91 00 4D",
        "out\t81 00 4D", "out\t91 3C 4D",
        "out\t81 3C 4D", "out\t91 3F 4D",
        "out\t81 3F 4D", "out\t91 7F 4D",
        "out\t81 7F 4D", "out\t81 7F 4D",
        "out\tB1 78 00",
    };
    EXPECT_EQ(MessagesOf(result.errors), expected);
    const auto lines = TraceOf(result.errors);
    ASSERT_EQ(lines.size(), expected.size());
    for (const std::size_t noteOn : {3u, 5u, 7u, 9u}) { // half a second each
        EXPECT_GE(lines[noteOn + 1].time - lines[noteOn].time, 490) << noteOn;
    }
}

TEST_F(CliPlay, TheVoiceThatWasSentIsTheOneThatIsHeard) {
    const std::string voice = folder.Write("voice.sy1", TestVoiceFile());
    ExpectDone({"play", voice, "1", "60", "--out", "dx7", "--memory", Memory()});
    const std::string edited = folder.File("edited.sy1");
    ExpectDone({"memory", Memory(), "dx7", edited});
    EXPECT_EQ(Part(ReadTestFile(edited), 0, 161), Part(TestVoiceFile(), 0, 161));
}

TEST_F(CliPlay, PlaysAVoiceOfARefaceDx) {
    const auto result = Cli({"play", RefaceBank(), "1", "60", "--trace"});
    EXPECT_EQ(result.exitStatus, 0);
    const auto messages = MessagesOf(result.errors);
    ASSERT_GT(messages.size(), 5u);
    const std::vector<std::string> last(messages.end() - 5, messages.end());
    EXPECT_EQ(last, (std::vector<std::string>{"out\tB0 7D 00", "out\t90 3C 64", "out\t80 3C 64",
                                              "out\t80 7F 64", "out\tB0 78 00"}));
}

TEST_F(CliPlay, WhenTheVoiceDoesNotArriveNoNoteIsPlayedAndTheEndIsSentAllTheSame) {
    WriteSettings("SysexWait = 100\n");
    const auto result = Cli({"play", RefaceBank(), "1", "60", "--in", "Built-in reface", "--out",
                             "Built-in DX7", "--trace"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_FALSE(Contains(result.errors, "\t90 3C")) << result.errors;
    EXPECT_TRUE(Contains(result.errors, "\tout\tB0 78 00\n"));
    EXPECT_TRUE(Contains(result.errors, "The selected voice could not be uploaded.\n"));
    EXPECT_TRUE(result.errors.ends_with(
        "tonewright-cli: Yamaha reface DX: did not answer as this instrument does\n"));
}

TEST_F(CliPlay, NamesOfNotesCountFromCMinusTwo) {
    const std::string bank = Bank();
    const std::vector<std::pair<const char *, const char *>> notes = {
        {"C-2", "00"}, {"cb-1", "0B"}, {"B#2", "3C"}, {"c#3", "3D"},
        {"bb3", "46"}, {"G8", "7F"},   {"Ab8", ""},   {"Cb-2", ""}};
    std::vector<std::string> call = {"play", bank, "1"};
    for (const auto &[name, number] : notes) {
        if (*number) {
            call.push_back(name);
        } else {
            ExpectFailure({"play", bank, "1", name},
                          std::string(name) + ": not a note: 0 to 127, or C-2 to G8, is (C3 is 60)",
                          2);
        }
    }
    call.insert(call.end(), {"--out", "dx7", "--trace"});
    const auto messages = MessagesOf(Cli(call).errors);
    for (const auto &[name, number] : notes) {
        if (*number) {
            EXPECT_EQ(std::ranges::count(messages, std::string("out\t90 ") + number + " 64"), 1)
                << name;
        }
    }
}

// ---- download

using CliDownload = CliMidi;

TEST_F(CliDownload, TheVoicesAreWrittenAlsoWhenTheMemoryIsNot) {
    const std::string out = folder.File("out.srx"), memory = folder.File("none/studio");
    ExpectFailure({"download", out, "--memory", memory},
                  memory + ": could not be written: No such file or directory");
    EXPECT_TRUE(folder.Holds("out.srx"));
}

TEST_F(CliDownload, AFolderThatDoesNotExistIsToldOfBeforeAnythingIsSent) {
    const std::string out = folder.File("none/out.srx");
    ExpectFailure({"download", out, "--trace"},
                  out + ": could not be written: there is no such folder");
}

// The bank that a reface DX gives whose memory and settings stand in the file of the instruments.
Bytes RefaceBankOf(const Bytes &studio) {
    Bytes bank = TestRefaceHeader(TestRefaceBankMagic, 32, 202, 0x00010200);
    for (int number = 0; number < 32; ++number) {
        Bytes block = TestRefaceBlock(number);
        const Bytes voice =
            Part(studio, RefaceMemoryOffset + 150 * static_cast<std::size_t>(number), 150);
        std::copy(voice.begin(), voice.end(), block.begin() + 52);
        bank.insert(bank.end(), block.begin(), block.end());
    }
    return bank;
}

TEST_F(CliDownload, WritesTheVoicesOfTheInstrumentTheSameEachTime) {
    const std::string first = folder.File("first.srx"), second = folder.File("second.srx");
    ExpectDone({"download", first, "--memory", Memory()});
    const Bytes studio = ReadTestFile(Memory());
    EXPECT_EQ(WithoutTestTime(ReadTestFile(first)), RefaceBankOf(studio));
    const auto list = Cli({"list", first});
    EXPECT_EQ(list.exitStatus, 0);
    EXPECT_EQ(std::ranges::count(list.output, '\n'), 32);
    EXPECT_TRUE(list.output.starts_with("1\tRose Tine\t8\n"));

    ExpectDone({"download", second, "--memory", Memory()});
    EXPECT_EQ(WithoutTestTime(ReadTestFile(second)), WithoutTestTime(ReadTestFile(first)));
    EXPECT_EQ(ReadTestFile(Memory()), studio);
    // The settings of the factory are back: all channels, auto power off, speaker, MIDI control.
    EXPECT_EQ(Part(studio, RefaceSystemOffset, 15),
              (Bytes{0, 16, 0, 4, 0, 0, 1, 64, 0, 0x78, 32, 0, 1, 1, 1}));
    // And what the instrument holds can also be read without a conversation.
    ExpectDone({"memory", Memory(), "reface", second});
    Bytes expected = RefaceBankOf(studio);
    PutTestNumber(expected, 32, 0); // nobody asked for the firmware
    EXPECT_EQ(WithoutTestTime(ReadTestFile(second)), expected);
}

TEST_F(CliDownload, KeepsTheFileThatItReplacesWhateverTheSettingsOfTheWindow) {
    WriteSettings("CreateBackups = 0\n");
    const std::string out = folder.WriteText("out.srx", "the former file");
    ExpectDone({"download", out});
    EXPECT_EQ(ReadTestText(folder.File("Backup of out.srx")), "the former file");
}

TEST_F(CliDownload, AnInstrumentThatDoesNotAnswerIsToldOfAndNoFileIsMade) {
    WriteSettings("SysexWait = 200\n");
    const std::string out = folder.File("out.srx");
    const auto result =
        Cli({"download", out, "--in", "Built-in reface", "--out", "Built-in DX7", "--yes"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              "Invalid system common.\n"
              "tonewright-cli: Yamaha reface DX: did not answer as this instrument does\n");
    EXPECT_FALSE(folder.Holds("out.srx"));
    // Nor when its ports have been detected.
    WriteSettings("SysexWait = 0\n");
    ExpectFailure({"download", out, "--yes"},
                  std::string(RefaceName) +
                      ": no device: there are ports of its name, and no answer");
    EXPECT_FALSE(folder.Holds("out.srx"));
}

TEST_F(CliDownload, VoicesThatDidNotComeWholeAreAskedAbout) {
    ExpectDone({"upload", Bank(), "--out", "dx7", "--memory", Memory()});
    Bytes studio = ReadTestFile(Memory());
    // As if they had not come: all of voice 2, the common block of 5, the last operator of 32.
    const auto clear = [&](std::size_t offset, std::size_t size) {
        std::fill_n(studio.begin() + static_cast<std::ptrdiff_t>(RefaceMemoryOffset + offset), size,
                    std::uint8_t{0});
    };
    clear(150, 150);
    clear(4 * 150, 38);
    clear(32 * 150 - 28, 28);
    FixMemoryCheck(studio);
    WriteTestFile(Memory(), studio);
    const std::string out = folder.File("out.srx");
    const std::string question = "The instrument did not send all of these voices: 2, 5, 32.\n\n"
                                 "Do you wish to save the others anyway? [y/n] ";
    auto result = Cli({"download", out, "--memory", Memory()});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              question + "no\ntonewright-cli: " + out + ": not written, as answered\n");
    EXPECT_FALSE(folder.Holds("out.srx"));
    result = Cli({"download", out, "--memory", Memory(), "--yes"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.errors, question + "yes\n");
    EXPECT_EQ(WithoutTestTime(ReadTestFile(out)), RefaceBankOf(studio));
}

// ---- the memory between calls

using CliMemory = CliMidi;

TEST_F(CliMemory, AMissingFileStartsFromTheFactoryAndIsMade) {
    ExpectDone({"upload-voice", Bank(), "1", "--out", "dx7", "--memory", Memory()});
    const Bytes studio = ReadTestFile(Memory());
    ASSERT_EQ(studio.size(), InstrumentFileSize);
    const Bytes name = Part(studio, Dx7MemoryOffset + 118, 10);
    EXPECT_EQ(std::string(name.begin(), name.end()), "INIT VOICE");
}

TEST_F(CliMemory, ADamagedFileIsToldOfAndLeftAlone) {
    ExpectDone({"upload", Bank(), "--out", "dx7", "--memory", Memory()});
    const Bytes whole = ReadTestFile(Memory());
    Bytes changed = whole, longer = whole;
    changed[1000] ^= 1;
    longer.push_back(0);
    for (const Bytes &damaged : {Bytes(), Part(whole, 0, whole.size() - 1), changed, longer}) {
        WriteTestFile(Memory(), damaged);
        const std::string reason = Memory() + ": not a memory of the built-in instruments";
        ExpectFailure({"upload", Bank(), "--out", "dx7", "--memory", Memory(), "--trace"}, reason);
        ExpectFailure({"find", "--memory", Memory()}, reason);
        ExpectFailure({"memory", Memory(), "dx7", folder.File("out.syx")}, reason);
        EXPECT_EQ(ReadTestFile(Memory()), damaged);
    }
    EXPECT_FALSE(folder.Holds("out.syx"));
}

TEST_F(CliMemory, AFolderInItsPlaceIsToldOf) {
    const auto result =
        Cli({"upload", Bank(), "--out", "dx7", "--trace", "--memory", folder.path.string()});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(
        result.errors.starts_with("tonewright-cli: " + folder.path.string() + ": not readable: "))
        << result.errors;
    EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1);
}

TEST_F(CliMemory, AFileThatCannotBeWrittenIsToldOf) {
    const std::string path = folder.File("no such folder/studio");
    ExpectFailure({"upload", Bank(), "--out", "dx7", "--memory", path},
                  path + ": could not be written: No such file or directory");
}

TEST_F(CliMemory, NothingIsKeptWhenTheInstrumentWasNotFound) {
    EXPECT_EQ(Cli({"upload", Bank(), "--out", "No Such", "--memory", Memory()}).exitStatus, 1);
    EXPECT_FALSE(folder.Holds("studio"));
}

TEST_F(CliMemory, ReadingItBackNeedsTheFileTheInstrumentAndTheRightExtension) {
    const std::string out = folder.File("out.syx");
    ExpectFailure({"memory", Memory(), "dx7", out},
                  Memory() + ": not readable: No such file or directory");
    const std::string names = "; there are: Built-in DX7; Built-in volca fm; Built-in reface DX";
    ExpectFailure({"memory", Memory(), "tx81z", out}, "tx81z: no such built-in instrument" + names,
                  2);
    ExpectFailure({"memory", Memory(), "dx", out}, "dx: more than one built-in instrument" + names,
                  2);
    ExpectFailure({"memory", Memory(), "volca", folder.File("out.srx")},
                  folder.File("out.srx") + ": the extension of the file to write must be \"syx\", "
                                           "or \"sy1\" for the edit buffer",
                  2);
    ExpectFailure({"memory", Memory(), "reface", folder.File("out")},
                  folder.File("out") + ": the extension of the file to write must be \"srx\", or "
                                       "\"sr1\" for the edit buffer",
                  2);
    EXPECT_FALSE(folder.Holds("out.syx"));
}

TEST_F(CliMemory, CanBeReadWithoutTheInstruments) {
    ExpectDone({"upload", Bank(), "--out", "dx7", "--memory", Memory()});
    RemoveVariable("TONEWRIGHT_INSTRUMENTS");
    ExpectDone({"memory", Memory(), "dx7", folder.File("out.syx")});
    EXPECT_EQ(ReadTestFile(folder.File("out.syx")), TestBank());
}

// ---- wrong calls

using CliMidiWrongCalls = CliMidi;

TEST_F(CliMidiWrongCalls, AreToldOfAndSendNothing) {
    const std::string syx = Bank(), srx = RefaceBank();
    const std::string sy1 = folder.Write("voice.sy1", TestVoiceFile());
    const std::string out = folder.File("out.srx");
    const std::string noNote = ": not a note: 0 to 127, or C-2 to G8, is (C3 is 60)";
    const std::string noChannel = ": not a MIDI channel: a number from 1 to 16 is";
    const std::string noPlace = ": not a place: a number from 1 is";
    const std::string noExtension =
        ": the extension is none of those that can be read (syx, sy1, srx, sr1)";
    struct WrongCall {
        std::vector<std::string> words;
        std::string reason;
    };
    const std::vector<WrongCall> calls = {
        {{"upload", srx},
         srx + ": the Yamaha reface DX takes single voices only; upload-voice "
               "sends one"},
        {{"upload", sy1}, sy1 + ": a single voice; upload-voice sends it"},
        {{"upload", folder.File("bank.txt")}, folder.File("bank.txt") + noExtension},
        {{"upload", syx, "--synth", "reface"},
         syx + ": such a file is for the Yamaha DX7, TX7, Korg Volca FM, not for the Yamaha reface "
               "DX"},
        {{"upload", syx, "--synth", "nothing"},
         "nothing: no such instrument; there are: Yamaha DX7, TX7, Korg Volca FM; Yamaha reface "
         "DX"},
        {{"upload", syx, "--in="}, "--in: needs the name of a port"},
        {{"upload", syx, "--out="}, "--out: needs the name of a port"},
        {{"upload-voice", syx, "0"}, "0" + noPlace},
        {{"upload-voice", syx, "one"}, "one" + noPlace},
        {{"upload-voice", srx, "1", "--synth", "DX7"},
         srx + ": such a file is for the Yamaha reface DX, not for the Yamaha DX7, TX7, Korg Volca "
               "FM"},
        {{"download", folder.File("out.syx")},
         folder.File("out.syx") + ": the Yamaha DX7, TX7, Korg Volca FM does not give its voices "
                                  "back"},
        {{"download", folder.File("out.sr1")},
         folder.File("out.sr1") + ": the extension of the file to write must be \"srx\""},
        {{"download", folder.File("out")},
         folder.File("out") + ": the extension of the file to write must be \"srx\""},
        {{"download", out, "--synth", "DX7"},
         out + ": such a file is for the Yamaha reface DX, not for the Yamaha DX7, TX7, Korg Volca "
               "FM"},
        {{"play", syx, "x", "60"}, "x" + noPlace},
        {{"play", syx, "1", "128"}, "128" + noNote},
        {{"play", syx, "1", "60", "H3"}, "H3" + noNote},
        {{"play", syx, "1", ""}, noNote.substr(2)},
        {{"play", syx, "1", " 3"}, " 3" + noNote},
        {{"play", syx, "1", "C"}, "C" + noNote},
        {{"play", syx, "1", "C9"}, "C9" + noNote},
        {{"play", syx, "1", "C-3"}, "C-3" + noNote},
        {{"find", "--channel", "0"}, "0" + noChannel},
        {{"upload", syx, "--channel", "17"}, "17" + noChannel},
        {{"upload", syx, "--channel=two"}, "two" + noChannel},
    };
    for (const WrongCall &call : calls) {
        std::vector<std::string> words = call.words;
        words.insert(words.end(), {"--trace", "--memory", Memory()});
        ExpectFailure(words, call.reason, 2);
    }
    EXPECT_FALSE(folder.Holds("studio"));
    for (const char *name : {"out.syx", "out.srx", "out.sr1", "out"}) {
        EXPECT_FALSE(folder.Holds(name)) << name;
    }
}

TEST_F(CliMidiWrongCalls, AMemoryWithoutANameIsRefused) {
    ExpectFailure({"find", "--memory="}, "--memory: needs the name of a file", 2);
}

TEST_F(CliMidiWrongCalls, OptionsAndWordsThatACommandDoesNotTakeAreRefused) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> calls = {
        {{"ports", "--synth", "DX7"}, "ports takes no --synth"},
        {{"ports", "--memory", "x"}, "ports takes no --memory"},
        {{"list", "--trace", "x.syx"}, "list takes no --trace"},
        {{"save", "--in", "x", "a.syx", "b.syx"}, "save takes no --in"},
        {{"memory", "--memory", "x", "a", "b", "c"}, "memory takes no --memory"},
        {{"ports", "all"}, "ports has too many arguments"},
        {{"find", "all"}, "find has too many arguments"},
        {{"upload"}, "upload lacks arguments"},
        {{"upload", "a.syx", "b.syx"}, "upload has too many arguments"},
        {{"upload-voice", "a.syx"}, "upload-voice lacks arguments"},
        {{"upload-voice", "a.syx", "1", "2"}, "upload-voice has too many arguments"},
        {{"download"}, "download lacks arguments"},
        {{"download", "a.srx", "b.srx"}, "download has too many arguments"},
        {{"play", "a.syx", "1"}, "play lacks arguments"},
        {{"memory", "a", "b"}, "memory lacks arguments"},
    };
    for (const auto &[words, reason] : calls) {
        const auto result = Cli(words);
        EXPECT_EQ(result.exitStatus, 2) << reason;
        EXPECT_EQ(result.output, "");
        EXPECT_TRUE(result.errors.starts_with("tonewright-cli: " + reason + "\nusage: "))
            << result.errors;
    }
    for (const char *option : {"--synth", "--in", "--out", "--channel", "--memory"}) {
        const auto result = Cli({"find", option});
        EXPECT_EQ(result.exitStatus, 2) << option;
        EXPECT_TRUE(Contains(result.errors, std::string(option) + " needs a value: "));
    }
    EXPECT_EQ(Cli({"find", "--trace=yes"}).exitStatus, 2);
}

TEST_F(CliMidi, TheHelpOfACommandSaysHowThePortsAreChosen) {
    for (const char *command : {"find", "upload", "upload-voice", "download", "play"}) {
        const auto result = Cli({command, "--help"});
        EXPECT_EQ(result.exitStatus, 0);
        for (const char *option :
             {"--synth NAME", "--in NAME", "--out NAME", "--channel N", "--trace", "--memory FILE",
              "SelectKeyboardMidiOut", "The Yamaha reface DX is detected without names, unless",
              "SelectKeyboardAutodetect", "TONEWRIGHT_INSTRUMENTS", "extras.BuiltinInstruments"}) {
            EXPECT_TRUE(Contains(result.output, option)) << command << ' ' << option;
        }
    }
    EXPECT_FALSE(Contains(Cli({"list", "--help"}).output, "SelectKeyboardMidiOut"));
    EXPECT_FALSE(Contains(Cli({"ports", "--help"}).output, "--synth"));
}

} // namespace
} // namespace tonewright
