// What a reface DX is asked and sent, in which order: its settings, and uploads.
#include "core/dispatch.h"
#include "drivers/reface_dx/voice_codec.h"
#include "transfer_fixture.h"

namespace tonewright {
namespace {

// A voice written out, and its five messages.
const std::string CrystalCommon =
    "43 72 79 73 74 61 6C 00 00 00 11 12 34 02 13 2A 0B 06 7F 14 15 65 66 67 68 40 41 42 43 "
    "07 1F 20 01 21 22 61 62 63";
const std::string CrystalOperators[] = {
    "01 78 50 28 5A 7F 64 46 00 0F 05 06 02 03 09 01 00 21 5A 2D 01 00 03 32 40 71 72 73",
    "01 78 50 28 5A 7F 64 46 00 0F 05 06 02 03 09 01 00 21 5B 2D 01 01 04 32 41 71 72 74",
    "01 78 50 28 5A 7F 64 46 00 0F 05 06 02 03 09 01 00 21 5C 2D 01 00 05 32 42 71 72 75",
    "01 78 50 28 5A 7F 64 46 00 0F 05 06 02 03 09 01 00 21 5D 2D 01 01 06 32 43 71 72 76",
};
const Traffic CrystalSent = {
    "> F0 43 00 7F 1C 00 2A 05 30 00 00 " + CrystalCommon + " 4A F7",
    "> F0 43 00 7F 1C 00 20 05 31 00 00 " + CrystalOperators[0] + " 39 F7",
    "> F0 43 00 7F 1C 00 20 05 31 01 00 " + CrystalOperators[1] + " 33 F7",
    "> F0 43 00 7F 1C 00 20 05 31 02 00 " + CrystalOperators[2] + " 2F F7",
    "> F0 43 00 7F 1C 00 20 05 31 03 00 " + CrystalOperators[3] + " 29 F7",
};

constexpr const char *CrystalPrompt =
    "Crystal has been uploaded to your reface DX.\n\nPress Store, select the bank and program you "
    "want to store your uploaded voice to and then use the red Data Entry controls to confirm the "
    "upload.";
constexpr const char *PromptWithoutName =
    " has been uploaded to your reface DX.\n\nPress Store, select the bank and program you want to "
    "store your uploaded voice to and then use the red Data Entry controls to confirm the upload.";

// 38 + 112 bytes of nothing, five messages.
const Traffic ZerosSent = {
    "> " + HexText(Hex("F0 43 00 7F 1C 00 2A 05 30 00 00") + Bytes(38, 0) + Hex("4B F7")),
    "> " + HexText(Hex("F0 43 00 7F 1C 00 20 05 31 00 00") + Bytes(28, 0) + Hex("4A F7")),
    "> " + HexText(Hex("F0 43 00 7F 1C 00 20 05 31 01 00") + Bytes(28, 0) + Hex("49 F7")),
    "> " + HexText(Hex("F0 43 00 7F 1C 00 20 05 31 02 00") + Bytes(28, 0) + Hex("48 F7")),
    "> " + HexText(Hex("F0 43 00 7F 1C 00 20 05 31 03 00") + Bytes(28, 0) + Hex("47 F7")),
};

const Traffic SettingsAsked = {"> " + SystemRequest, "< " + SettingsDump};
const Traffic OmniOff = {"> B0 7C 00"};
const Traffic OmniOn = {"> B0 7D 00"};
const Traffic Prepared = {
    "> F0 43 10 7F 1C 05 00 00 01 00 F7", // receive channel 1
    "> F0 43 10 7F 1C 05 00 00 00 00 F7", // transmit channel 1
    "> F0 43 10 7F 1C 05 00 00 0C 00 F7", // automatic power-off 0
    "> F0 43 10 7F 1C 05 00 00 0D 00 F7", // speaker off
    "> F0 43 10 7F 1C 05 00 00 0E 01 F7", // MIDI control on
};
const Traffic Header = {"> " + HeaderDump};
const Traffic Footer = {"> " + FooterDump};

// All that an upload of one voice says, around its blocks.
Traffic VoiceUpload(const Traffic &blocks) {
    return SettingsAsked + OmniOff + Prepared + Header + blocks + Footer + SettingsRestored +
           OmniOn;
}
Traffic BankUpload(const Traffic &blocks) {
    return SettingsAsked + Prepared + Header + blocks + Footer + SettingsRestored;
}

Bytes CrystalBlock() {
    Bytes block = TestRefaceBlock(0);
    block.resize(52);
    block = block + Hex(CrystalCommon);
    for (const std::string &text : CrystalOperators) {
        block = block + Hex(text);
    }
    return block;
}

VoiceObject Crystal() {
    return {.bytes = CrystalBlock()};
}

// The sysex messages that hold the voice, out of all that was written.
std::vector<Bytes> BlocksOf(const FakeMidi &midi) {
    std::vector<Bytes> blocks;
    bool inside = false;
    for (const Bytes &message : midi.WrittenBytes()) {
        inside = inside && message != Hex(FooterDump);
        if (inside) {
            blocks.push_back(message);
        }
        inside = inside || message == Hex(HeaderDump);
    }
    return blocks;
}

// Settings.

struct RefaceSettings : RefaceTransferTest {
    MidiLink link;
    std::array<std::uint8_t, 32> system;

    RefaceSettings() { system.fill(0xEE); }

    int Read() {
        EXPECT_EQ(MidiLinkOpen(link, true, in, out), 1);
        const int result = ReadSystemCommon(link, system);
        endOfRead = midi.now;
        MidiLinkClose(link);
        return result;
    }
    int Write() {
        EXPECT_EQ(MidiLinkOpen(link, true, in, out), 1);
        const int result = WriteSystemCommon(link, system);
        MidiLinkClose(link);
        return result;
    }
    bool IsUntouched() const {
        return std::ranges::all_of(system, [](std::uint8_t byte) { return byte == 0xEE; });
    }
    int endOfRead = 0;
};

TEST_F(RefaceSettings, AreAskedForOnceAndGivenAsThe32BytesOfTheDump) {
    EXPECT_EQ(Read(), 1);
    EXPECT_EQ(traffic, SettingsAsked);
    EXPECT_EQ(Bytes(system.begin(), system.end()), Hex(Settings));
    EXPECT_EQ(endOfRead, 12) << "twelve events of four bytes, none of them waited for";
}

TEST_F(RefaceSettings, OfADumpThatDiffersInAnyOfTheFiveTestedBytesAreRefused) {
    for (const std::size_t place : {0u, 1u, 5u, 6u, 7u}) {
        settingsDump = Hex(SettingsDump);
        settingsDump[place] ^= 1;
        EXPECT_EQ(Read(), 0) << place;
        EXPECT_TRUE(IsUntouched()) << place;
    }
}

TEST_F(RefaceSettings, OfADumpThatDiffersAnywhereElseAreTaken) {
    for (const std::size_t place : {2u, 3u, 4u, 8u, 9u, 10u, 43u}) {
        settingsDump = Hex(SettingsDump);
        settingsDump[place] ^= 1;
        system.fill(0xEE);
        EXPECT_EQ(Read(), 1) << place;
        EXPECT_EQ(Bytes(system.begin(), system.end()), Hex(Settings)) << place;
    }
}

TEST_F(RefaceSettings, AreWaitedForAsLongAsTheSettingSaysAndThenRefused) {
    answersSettings = false;
    for (const int wait : {1, 250, 1500}) {
        SysexWait = static_cast<std::uint32_t>(wait);
        EXPECT_EQ(Read(), 0);
        EXPECT_EQ(endOfRead, wait);
        EXPECT_TRUE(IsUntouched());
    }
}

TEST_F(RefaceSettings, OfADumpWithoutAnEndAreRefused) {
    settingsDump.pop_back();
    EXPECT_EQ(Read(), 0);
    EXPECT_TRUE(IsUntouched());
}

TEST_F(RefaceSettings, AreReadFromTheFirstMessageOnly) {
    midi.SendAt(in, Hex(HeaderDump), 0); // ahead of the dump that answers
    EXPECT_EQ(Read(), 0);
    EXPECT_EQ(traffic, (Traffic{"> " + SystemRequest, "< " + HeaderDump}));
    EXPECT_TRUE(IsUntouched());
}

TEST_F(RefaceSettings, BehindANoteAreRefused) {
    midi.SendAt(in, Hex("90 3C 40"), 0);
    EXPECT_EQ(Read(), 0);
    EXPECT_TRUE(IsUntouched());
}

TEST_F(RefaceSettings, AreTakenThoughTheRequestCouldNotBeWritten) {
    midi.allWritesFail = true;
    midi.SendAt(in, settingsDump, 1499);
    EXPECT_EQ(Read(), 1);
    EXPECT_EQ(Bytes(system.begin(), system.end()), Hex(Settings));
}

TEST_F(RefaceSettings, OfADumpThatIsCutShortHaveZerosBehindItsEnd) {
    settingsDump = Hex("F0 43 00 7F 1C 00 24 05 00 00 00 03 10 F7");
    EXPECT_EQ(Read(), 1);
    EXPECT_EQ(Bytes(system.begin(), system.end()), Hex("03 10 F7") + Bytes(29, 0));
    settingsDump = Hex("F0 43 00 7F 1C 00 24 05 F7");
    EXPECT_EQ(Read(), 1);
    EXPECT_EQ(Bytes(system.begin(), system.end()), Bytes(32, 0));
}

TEST_F(RefaceSettings, OfADumpThatIsLongerThanTheBufferAreTaken) {
    settingsDump.pop_back();
    settingsDump.resize(10'000, 0x11);
    EXPECT_EQ(Read(), 1);
    EXPECT_EQ(Bytes(system.begin(), system.end()), Hex(Settings));
}

TEST_F(RefaceSettings, AreWrittenAsElevenMessages) {
    std::ranges::copy(Hex(Settings), system.begin());
    EXPECT_EQ(Write(), 1);
    EXPECT_EQ(traffic, SettingsRestored);
}

TEST_F(RefaceSettings, BehindIndex14AreNeverWritten) {
    std::ranges::copy(Hex(Settings), system.begin());
    std::fill(system.begin() + 15, system.end(), 0x55);
    EXPECT_EQ(Write(), 1);
    EXPECT_EQ(traffic, SettingsRestored);
}

TEST_F(RefaceSettings, AreAllWrittenWhateverTheWritesSay) {
    midi.allWritesFail = true;
    EXPECT_EQ(Write(), 1);
    EXPECT_EQ(midi.writes, 11);
}

TEST_F(RefaceSettings, AreCutBehindAnEndByteAmongThem) {
    system.fill(0x01);
    system[3] = 0xF7; // the second byte of a message of four
    system[14] = 0xF7;
    EXPECT_EQ(Write(), 1);
    ASSERT_EQ(traffic.size(), 11u);
    EXPECT_EQ(traffic[2], "> F0 43 10 7F 1C 05 00 00 02 01 F7");
    EXPECT_EQ(traffic[3], "> F0 43 10 7F 1C 05 00 00 06 01 F7");
    EXPECT_EQ(traffic[10], "> F0 43 10 7F 1C 05 00 00 0E F7");
}

// One voice.

struct RefaceUploadVoiceTest : RefaceTransferTest {};

TEST_F(RefaceUploadVoiceTest, SaysTheseBytesInThisOrder) {
    const VoiceObject voice = Crystal();
    EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
    EXPECT_EQ(traffic, VoiceUpload(CrystalSent));
    EXPECT_TRUE(desktop.messages.empty()) << "without the flag there is no prompt";
}

TEST_F(RefaceUploadVoiceTest, DoesEverythingInItsOrder) {
    const VoiceObject voice = Crystal();
    FillList();
    RecordListAmongCalls(midi, list);
    desktop.ExpectMessage(CrystalPrompt);
    EXPECT_EQ(UploadVoice(&voice, 3, 1), 1);
    EXPECT_EQ(midi.calls, (Calls{
                              "Pt_Start(1)",
                              "Pm_OpenInput(0, 512)",
                              "Pm_OpenOutput(1, 0, 0)",
                              "Pm_WriteSysEx(1, 0, " + SystemRequest + ")",
                              "Pm_WriteShort(1, 12, B0 7C 00)",
                              "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 01 00 F7)",
                              "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 00 00 F7)",
                              "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 0C 00 F7)",
                              "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 0D 00 F7)",
                              "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 0E 01 F7)",
                              "Pm_WriteSysEx(1, 0, " + HeaderDump + ")",
                              "ShowBusyBox(Uploading Crystal)",
                              "Pm_WriteSysEx(1, 0, 51 bytes)",
                              "Pm_WriteSysEx(1, 0, 41 bytes)",
                              "Pm_WriteSysEx(1, 0, 41 bytes)",
                              "Pm_WriteSysEx(1, 0, 41 bytes)",
                              "Pm_WriteSysEx(1, 0, 41 bytes)",
                              "CloseBusyBox()",
                              "Pm_WriteSysEx(1, 0, " + FooterDump + ")",
                              "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 00 03 F7)",
                              "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 01 10 F7)",
                              "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 02 07 04 0E 08 F7)",
                              "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 06 01 F7)",
                              "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 07 43 F7)",
                              "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 08 00 5A F7)",
                              "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 0A 21 F7)",
                              "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 0B 02 F7)",
                              "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 0C 05 F7)",
                              "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 0D 06 F7)",
                              "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 0E 09 F7)",
                              "Pm_WriteShort(1, 12, B0 7D 00)",
                              "message",
                              "Pt_Stop()",
                              "Pm_Close(1)",
                              "Pm_Close(0)",
                          }))
        << "and the list, the status bar and its meter are left alone";
    EXPECT_EQ(desktop.busyBoxesOpen, 0);
    EXPECT_TRUE(list.enabled);
}

TEST_F(RefaceUploadVoiceTest, OfACommonBlockOfZerosHasTheChecksum4B) {
    const VoiceObject voice = ZeroRefaceVoice();
    EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
    EXPECT_EQ(traffic, VoiceUpload(ZerosSent));
    EXPECT_EQ(desktop.busyTexts, (Calls{"Uploading Unknown Voice"}))
        << "what an empty name is shown as";
}

TEST_F(RefaceUploadVoiceTest, TakesTheVoiceOfTheRowWhenNoneIsGiven) {
    FillList();
    ListSetVoice(list, 7, Crystal());
    desktop.ExpectMessage(CrystalPrompt);
    EXPECT_EQ(UploadVoice(nullptr, 7, 1), 1);
    EXPECT_EQ(traffic, VoiceUpload(CrystalSent));
    EXPECT_EQ(desktop.busyTexts, (Calls{"Uploading Crystal"}));
}

TEST_F(RefaceUploadVoiceTest, OfAGivenVoiceLooksAtNoRow) {
    FillList();
    const VoiceObject voice = Crystal();
    EXPECT_EQ(UploadVoice(&voice, 7, 0), 1);
    EXPECT_EQ(traffic, VoiceUpload(CrystalSent));
}

TEST_F(RefaceUploadVoiceTest,
       WithoutAVoiceSendsHeaderAndFooterWithNothingBetweenAndPromptsWithoutAName) {
    FillList(2);
    const VoiceObject named = Crystal();
    EXPECT_STREQ(VoiceObjectName(named), "Crystal") << "the last good name is not used here";
    ListTakeVoice(list, 1);
    for (const int row : {1, 2, -1, 99}) {
        traffic.clear();
        desktop.ExpectMessage(PromptWithoutName);
        EXPECT_EQ(UploadVoice(nullptr, row, 1), 1) << row;
        EXPECT_EQ(traffic, VoiceUpload({})) << row;
        desktop.ExpectNothingLeft();
    }
    EXPECT_EQ(UploadVoice(nullptr, 1, 0), 1);
    EXPECT_EQ(desktop.messages.size(), 4u);
    EXPECT_EQ(desktop.busyBoxesShown, 0);
}

TEST_F(RefaceUploadVoiceTest, PromptsForTheLowestFlagOnly) {
    const VoiceObject voice = Crystal();
    EXPECT_EQ(UploadVoice(&voice, 0, 0xFE), 1);
    EXPECT_TRUE(desktop.messages.empty());
    desktop.ExpectMessage(CrystalPrompt);
    EXPECT_EQ(UploadVoice(&voice, 0, 0xFF), 1);
}

TEST_F(RefaceUploadVoiceTest, OutlivesTheLossOfItsRowDuringThePrompt) {
    ListSetVoice(list, ListAdd(list), Crystal());
    desktop.Expect(ExpectedMessage{.text = CrystalPrompt,
                                   .buttons = {"Dismiss"},
                                   .answer = ResultYes,
                                   .during = [this](MessageRequest &) { ListReset(list); }});
    EXPECT_EQ(UploadVoice(nullptr, 0, 1), 1);
    EXPECT_EQ(traffic, VoiceUpload(CrystalSent));
}

TEST_F(RefaceUploadVoiceTest, ShowsTheNameAsLatin1) {
    VoiceObject voice = Crystal();
    std::ranges::copy(Bytes{0xC9, 't', 0xE9, ' ', ' ', ' ', ' ', ' ', ' ', ' '},
                      voice.bytes.begin() + 52);
    desktop.ExpectMessage("\xC3\x89t\xC3\xA9" + std::string(PromptWithoutName));
    EXPECT_EQ(UploadVoice(&voice, 0, 1), 1);
    EXPECT_EQ(desktop.busyTexts, (Calls{"Uploading \xC3\x89t\xC3\xA9"}));
}

TEST_F(RefaceUploadVoiceTest, SendsBytesAboveSevenBitsAsTheyStand) {
    VoiceObject voice = ZeroRefaceVoice();
    voice.bytes[52 + 37] = 0x80;
    voice.bytes[90] = 0xFF;
    voice.bytes[90 + 28 + 5] = 0xF0;
    voice.bytes[201] = 0xF8;
    EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
    const std::vector<Bytes> blocks = BlocksOf(midi);
    ASSERT_EQ(blocks.size(), 5u);
    EXPECT_EQ(blocks[0], Hex("F0 43 00 7F 1C 00 2A 05 30 00 00") + Bytes(37, 0) + Hex("80 4B F7"));
    EXPECT_EQ(blocks[1], Hex("F0 43 00 7F 1C 00 20 05 31 00 00 FF") + Bytes(27, 0) + Hex("4B F7"));
    EXPECT_EQ(blocks[2], Hex("F0 43 00 7F 1C 00 20 05 31 01 00 00 00 00 00 00 F0") + Bytes(22, 0) +
                             Hex("59 F7"));
    EXPECT_EQ(blocks[4], Hex("F0 43 00 7F 1C 00 20 05 31 03 00") + Bytes(27, 0) + Hex("F8 4F F7"));
}

TEST_F(RefaceUploadVoiceTest, CutsABlockBehindAnEndByteAmongItsDataAndSendsTheOthersWhole) {
    for (const std::size_t place : {0u, 9u, 37u}) {
        midi.written.clear();
        VoiceObject voice = Crystal();
        voice.bytes[52 + place] = 0xF7;
        EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
        const std::vector<Bytes> blocks = BlocksOf(midi);
        ASSERT_EQ(blocks.size(), 5u);
        Bytes cut = Hex("F0 43 00 7F 1C 00 2A 05 30 00 00 " + CrystalCommon);
        cut[11 + place] = 0xF7;
        cut.resize(11 + place + 1);
        EXPECT_EQ(blocks[0], cut) << place;
        EXPECT_EQ("> " + HexText(blocks[1]), CrystalSent[1]);
        EXPECT_EQ("> " + HexText(blocks[4]), CrystalSent[4]);
    }
    for (const std::size_t place : {0u, 13u, 27u}) {
        midi.written.clear();
        VoiceObject voice = Crystal();
        voice.bytes[52 + 38 + 2 * 28 + place] = 0xF7;
        EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
        const std::vector<Bytes> blocks = BlocksOf(midi);
        ASSERT_EQ(blocks.size(), 5u);
        Bytes cut = Hex("F0 43 00 7F 1C 00 20 05 31 02 00 " + CrystalOperators[2]);
        cut[11 + place] = 0xF7;
        cut.resize(11 + place + 1);
        EXPECT_EQ(blocks[3], cut) << place;
        EXPECT_EQ("> " + HexText(blocks[2]), CrystalSent[2]);
        EXPECT_EQ("> " + HexText(blocks[4]), CrystalSent[4]);
    }
}

TEST_F(RefaceUploadVoiceTest, OfNothingButEndBytesSendsOneInEachBlock) {
    VoiceObject voice = ZeroRefaceVoice();
    std::fill(voice.bytes.begin() + 52, voice.bytes.end(), 0xF7);
    EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
    EXPECT_EQ(BlocksOf(midi), (std::vector<Bytes>{Hex("F0 43 00 7F 1C 00 2A 05 30 00 00 F7"),
                                                  Hex("F0 43 00 7F 1C 00 20 05 31 00 00 F7"),
                                                  Hex("F0 43 00 7F 1C 00 20 05 31 01 00 F7"),
                                                  Hex("F0 43 00 7F 1C 00 20 05 31 02 00 F7"),
                                                  Hex("F0 43 00 7F 1C 00 20 05 31 03 00 F7")}));
}

TEST_F(RefaceUploadVoiceTest, OfABlockThatHoldsNoVoiceSendsZerosUnderTheLastGoodName) {
    VoiceObject wrongMagic = Crystal(), cut = Crystal(), cutInHeader = Crystal(), lying = Crystal();
    wrongMagic.bytes[0] ^= 1;
    cut.bytes.pop_back();
    cutInHeader.bytes.resize(20);
    lying.bytes[4] = 0xFF; // the payload begins behind the block
    const VoiceObject good = TestRefaceVoice(4);
    EXPECT_STREQ(VoiceObjectName(good), "REFACE 05");
    for (const VoiceObject &voice : {wrongMagic, cut, cutInHeader, lying, VoiceObject{}}) {
        traffic.clear();
        EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
        EXPECT_EQ(traffic, VoiceUpload(ZerosSent));
        EXPECT_EQ(desktop.busyTexts.back(), "Uploading REFACE 05");
    }
}

TEST_F(RefaceUploadVoiceTest, OfABlockWithoutAllItsOperatorsSendsZerosForThoseThatAreMissing) {
    VoiceObject voice = Crystal();
    voice.bytes.resize(52 + 38 + 2 * 28 + 27);
    voice.bytes[12] = 2 * 28 + 27; // extraSize
    EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
    EXPECT_EQ(traffic, VoiceUpload({CrystalSent[0], CrystalSent[1], CrystalSent[2], ZerosSent[3],
                                    ZerosSent[4]}));
    EXPECT_EQ(desktop.busyTexts, (Calls{"Uploading Crystal"}));
}

TEST_F(RefaceUploadVoiceTest, OfABlockWithAShortCommonBlockSendsZerosForIt) {
    // 37 bytes of payload, and the operators right behind them.
    VoiceObject voice = Crystal();
    voice.bytes.erase(voice.bytes.begin() + 52 + 37);
    voice.bytes[8] = 37; // payloadSize
    EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
    EXPECT_EQ(traffic, VoiceUpload({ZerosSent[0], CrystalSent[1], CrystalSent[2], CrystalSent[3],
                                    CrystalSent[4]}));
}

TEST_F(RefaceUploadVoiceTest, FindsThePayloadByItsOffset) {
    VoiceObject voice = Crystal();
    voice.bytes.insert(voice.bytes.begin() + 52, 8, 0x55);
    voice.bytes[4] = 60; // payloadOffset
    EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
    EXPECT_EQ(traffic, VoiceUpload(CrystalSent));
}

TEST_F(RefaceUploadVoiceTest, GoesOnBehindAWriteThatFailsAtEachPlace) {
    const VoiceObject voice = Crystal();
    // Request, Omni off, five settings, header, five blocks, footer, eleven settings, Omni on.
    constexpr int writes = 1 + 1 + 5 + 1 + 5 + 1 + 11 + 1;
    for (int failing = 1; failing < writes; ++failing) {
        const int before = midi.writes;
        midi.failingWrites = {before + failing};
        traffic.clear();
        desktop.ExpectMessage(CrystalPrompt);
        EXPECT_EQ(UploadVoice(&voice, 0, 1), 1) << failing;
        EXPECT_EQ(midi.writes - before, writes) << failing;
        Traffic heard = VoiceUpload(CrystalSent);
        heard.erase(heard.begin() + failing + 1); // behind the reply that was read
        EXPECT_EQ(traffic, heard) << failing;
        EXPECT_EQ(desktop.busyBoxesOpen, 0) << failing;
        desktop.ExpectNothingLeft();
    }
}

TEST_F(RefaceUploadVoiceTest, ToAnInputThatDoesNotOpenDoesNothing) {
    FillList();
    midi.devices[0].opens = false;
    EXPECT_EQ(UploadVoice(nullptr, 0, 1), 0);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pt_Stop()"}));
}

TEST_F(RefaceUploadVoiceTest, ToAnOutputThatDoesNotOpenClosesTheInput) {
    FillList();
    midi.devices[1].opens = false;
    EXPECT_EQ(UploadVoice(nullptr, 0, 1), 0);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pm_OpenOutput(1, 0, 0)",
                                 "Pt_Stop()", "Pm_Close(0)"}));
}

TEST_F(RefaceUploadVoiceTest, ToASilentInstrumentSaysInvalidSystemCommonAndSendsNothing) {
    FillList();
    answersSettings = false;
    desktop.ExpectMessage(InvalidSystem);
    EXPECT_EQ(UploadVoice(nullptr, 0, 1), 0);
    EXPECT_EQ(traffic, (Traffic{"> " + SystemRequest}));
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pm_OpenOutput(1, 0, 0)",
                                 "Pm_WriteSysEx(1, 0, " + SystemRequest + ")", "message",
                                 "Pt_Stop()", "Pm_Close(1)", "Pm_Close(0)"}));
    EXPECT_EQ(midi.now, 1500);
}

TEST_F(RefaceUploadVoiceTest, WhoseFirstWriteFailsSaysInvalidSystemCommon) {
    midi.failingWrites = {0};
    desktop.ExpectMessage(InvalidSystem);
    EXPECT_EQ(UploadVoice(nullptr, 0, 1), 0);
}

TEST_F(RefaceUploadVoiceTest, SpeaksOnChannel1WhateverTheSettingSays) {
    const VoiceObject voice = Crystal();
    CurrentMidiChannel = 5;
    EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
    EXPECT_EQ(traffic, VoiceUpload(CrystalSent));
}

TEST_F(RefaceUploadVoiceTest, WithoutABusyBoxGoesOn) {
    const VoiceObject voice = Crystal();
    desktop.busyBoxWorks = false;
    EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
    EXPECT_EQ(traffic, VoiceUpload(CrystalSent));
}

// The first voice of the list.

struct RefaceUploadBankTest : RefaceTransferTest {};

TEST_F(RefaceUploadBankTest, SendsTheFirstVoiceOnly) {
    FillList();
    ListSetVoice(list, 0, Crystal());
    EXPECT_EQ(UploadBank(), 1);
    EXPECT_EQ(traffic, BankUpload(CrystalSent));
}

TEST_F(RefaceUploadBankTest, DisablesTheListForGoodAndShowsNothing) {
    FillList();
    RecordListAmongCalls(midi, list);
    EXPECT_EQ(UploadBank(), 1);
    EXPECT_FALSE(list.enabled);
    EXPECT_TRUE(list.redraw);
    EXPECT_EQ(ListCount(list), 32);
    std::erase_if(midi.calls, [](const std::string &call) {
        return call.starts_with("Pm_WriteSysEx(1, 0, F0 43 10");
    });
    EXPECT_EQ(midi.calls,
              (Calls{"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pm_OpenOutput(1, 0, 0)",
                     "Pm_WriteSysEx(1, 0, " + SystemRequest + ")", "disable", "SetProgress(0, 1)",
                     "Pm_WriteSysEx(1, 0, " + HeaderDump + ")", "Pm_WriteSysEx(1, 0, 51 bytes)",
                     "Pm_WriteSysEx(1, 0, 41 bytes)", "Pm_WriteSysEx(1, 0, 41 bytes)",
                     "Pm_WriteSysEx(1, 0, 41 bytes)", "Pm_WriteSysEx(1, 0, 41 bytes)",
                     "Pm_WriteSysEx(1, 0, " + FooterDump + ")", "Pt_Stop()", "Pm_Close(1)",
                     "Pm_Close(0)"}));
}

TEST_F(RefaceUploadBankTest, DisablesTheListBehindTheSettings) {
    FillList();
    RecordListAmongCalls(midi, list);
    EXPECT_EQ(UploadBank(), 1);
    const auto disabled = std::ranges::find(midi.calls, "disable");
    ASSERT_NE(disabled, midi.calls.end());
    EXPECT_EQ(*(disabled - 1), "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 0E 01 F7)");
    EXPECT_EQ(*(disabled + 1), "SetProgress(0, 1)");
    EXPECT_EQ(*(disabled + 2), "Pm_WriteSysEx(1, 0, " + HeaderDump + ")");
}

TEST_F(RefaceUploadBankTest, OfAnEmptyListSendsHeaderAndFooterWithNothingBetween) {
    EXPECT_EQ(UploadBank(), 1);
    EXPECT_EQ(traffic, BankUpload({}));
}

TEST_F(RefaceUploadBankTest, OfAFirstRowWithoutAVoiceSendsNoOther) {
    FillList();
    ListTakeVoice(list, 0);
    EXPECT_EQ(UploadBank(), 1);
    EXPECT_EQ(traffic, BankUpload({}));
}

TEST_F(RefaceUploadBankTest, OfABlockThatHoldsNoVoiceSendsZeros) {
    FillList();
    list.items[0].bytes.resize(100);
    EXPECT_EQ(UploadBank(), 1);
    EXPECT_EQ(traffic, BankUpload(ZerosSent));
}

TEST_F(RefaceUploadBankTest, GoesOnBehindAWriteThatFailsAtEachPlace) {
    FillList();
    constexpr int writes = 1 + 5 + 1 + 5 + 1 + 11;
    for (int failing = 1; failing < writes; ++failing) {
        const int before = midi.writes;
        midi.failingWrites = {before + failing};
        EXPECT_EQ(UploadBank(), 1) << failing;
        EXPECT_EQ(midi.writes - before, writes) << failing;
    }
}

TEST_F(RefaceUploadBankTest, ToPortsThatDoNotOpenLeavesTheListEnabled) {
    FillList();
    midi.devices[1].opens = false;
    EXPECT_EQ(UploadBank(), 0);
    midi.devices[0].opens = false;
    EXPECT_EQ(UploadBank(), 0);
    EXPECT_EQ(RefaceUploadBank(nullptr, list, {}), 0);
    EXPECT_TRUE(list.enabled);
    EXPECT_TRUE(traffic.empty());
    EXPECT_TRUE(desktop.progress.empty());
}

TEST_F(RefaceUploadBankTest, ToASilentInstrumentSaysInvalidSystemCommonAndLeavesTheListEnabled) {
    FillList();
    answersSettings = false;
    desktop.ExpectMessage(InvalidSystem);
    EXPECT_EQ(UploadBank(), 0);
    EXPECT_TRUE(list.enabled);
    EXPECT_EQ(traffic, (Traffic{"> " + SystemRequest}));
}

// Through the row of the driver.

TEST_F(RefaceTransferTest, VoiceGoesThroughTheRowOfItsDriver) {
    CurrentDriverId = NoDriverId;
    const VoiceObject voice = Crystal();
    EXPECT_EQ(UploadOneVoice(nullptr, list, &voice, RefaceDriverId, {in, out}, 0, 0), 1);
    EXPECT_EQ(traffic, VoiceUpload(CrystalSent));
}

TEST_F(RefaceTransferTest, BankGoesThroughTheCurrentRow) {
    MidiInPort = in;
    MidiOutPort = out;
    ListSetVoice(list, ListAdd(list), Crystal());
    EXPECT_EQ(UploadCurrent(nullptr, list), 1);
    EXPECT_EQ(traffic, BankUpload(CrystalSent));
    EXPECT_EQ(DownloadCurrent(nullptr, list), 1);
    EXPECT_EQ(ListCount(list), 32);
}

} // namespace
} // namespace tonewright
