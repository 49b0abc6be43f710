// When the pages of a voice editor read and store a voice, and what its buttons do.
#include "drivers/voice_sheet.h"

#include "common/settings.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/dx7/voice_parameters.h"
#include "drivers/reface_dx/voice_codec.h"
#include "drivers/reface_dx/voice_parameters.h"
#include "sheet_under_test.h"
#include "support/bank_bytes.h"
#include "support/reface_bytes.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

constexpr const char *NoSuchString = "String table error - this application may be damaged";

// Where a block of operators begins in the payload.
constexpr std::size_t Dx7Block(int block) {
    return static_cast<std::size_t>(block) * 21;
}
constexpr std::size_t RefaceBlock(int block) {
    return 38 + static_cast<std::size_t>(block) * 28;
}

VoiceObject Dx7Voice() {
    return MakeVoiceObject(Dx7DriverId, TestUnpackedVoice());
}
VoiceObject WithByte(VoiceObject voice, std::size_t offset, int byte) {
    voice.bytes[VoiceObjectHeaderSize + offset] = static_cast<std::uint8_t>(byte);
    return voice;
}
VoiceObject RefaceVoice0() {
    return VoiceObject{TestRefaceBlock(0)};
}

struct Dx7Sheet : SheetUnderTest {
    explicit Dx7Sheet(VoiceObject voice = Dx7Voice())
        : SheetUnderTest(Dx7Parameters, std::move(voice)) {}
};
struct RefaceSheet : SheetUnderTest {
    explicit RefaceSheet(VoiceObject voice = RefaceVoice0())
        : SheetUnderTest(RefaceParameters, std::move(voice)) {}
};

// ---- beginning and end

TEST(VoiceSheet, AVoiceThatIsNoWholeOneOfTheFamilyIsRefusedWithAMessage) {
    ScriptedDesktop desktop;
    VoiceObject cut = Dx7Voice();
    cut.bytes.pop_back();
    for (const VoiceObject &voice : {cut, RefaceVoice0(), VoiceObject{}}) {
        desktop.ExpectMessage(NoSuchString);
        EXPECT_FALSE(BeginVoiceSheet(nullptr, Dx7Parameters, voice, {}, 0));
        desktop.ExpectNothingLeft();
    }
}

TEST(VoiceSheet, CancelAfterChangesLeavesEveryByteAndTheNumberOfTheLastPage) {
    Dx7Sheet sheet;
    const VoiceObject before = sheet.voice;
    sheet.Show(0);
    sheet.Type(108, "77");
    sheet.Show(3);
    sheet.Type(202, "1");
    EXPECT_TRUE(sheet.Press(SheetCancel));
    EXPECT_EQ(EndVoiceSheet(sheet.sheet, sheet.voice), 0);
    EXPECT_EQ(sheet.voice, before);
    EXPECT_EQ(VoiceEditPage, 3u);
}

TEST(VoiceSheet, OkGivesTheCopyToTheVoice) {
    Dx7Sheet sheet;
    sheet.Show(0);
    sheet.Type(108, "77");
    EXPECT_TRUE(sheet.Press(SheetOk));
    EXPECT_TRUE(sheet.sheet.accepted);
    EXPECT_EQ(EndVoiceSheet(sheet.sheet, sheet.voice), 1);
    EXPECT_EQ(sheet.voice.bytes[52 + 137], 77);
}

TEST(VoiceSheet, ReturnInAControlClosesTheSheetAndDropsTheEdits) {
    Dx7Sheet sheet;
    const VoiceObject before = sheet.voice;
    sheet.Show(0);
    sheet.Type(108, "77");
    EXPECT_TRUE(sheet.ReturnIn(108));
    EXPECT_FALSE(sheet.sheet.accepted);
    EXPECT_EQ(EndVoiceSheet(sheet.sheet, sheet.voice), 0);
    EXPECT_EQ(sheet.voice, before);
}

// ---- pages

TEST(VoiceSheet, AnOperatorPageThatIsOpenedAndLeftClearsAmpModSensitivityAndTruncatesTheFrequency) {
    VoiceObject voice = WithByte(Dx7Voice(), Dx7Block(1) + 14, 3);
    voice = WithByte(WithByte(voice, Dx7Block(1) + 18, 1), Dx7Block(1) + 19, 15);
    Dx7Sheet sheet(voice);
    sheet.Show(2);
    EXPECT_EQ(sheet.At(223).text, "1.15");
    EXPECT_TRUE(sheet.Press(SheetOk));
    VoiceObject expected = WithByte(voice, Dx7Block(1) + 14, 0);
    expected = WithByte(expected, Dx7Block(1) + 19, 14);
    EXPECT_EQ(sheet.Ended(), expected);
}

TEST(VoiceSheet, AnOperatorThatIsSwitchedOffKeepsItsLevelAndLosesItsBit) {
    Dx7Sheet sheet(WithByte(Dx7Voice(), 155, 0xFF));
    sheet.Show(2);
    sheet.Check(201, false);
    EXPECT_FALSE(sheet.At(220).enabled);
    sheet.Press(SheetOk);
    EXPECT_EQ(sheet.Byte(155), 0xEF);
    EXPECT_EQ(sheet.Byte(Dx7Block(1) + 16), TestUnpackedVoice()[Dx7Block(1) + 16]);
}

TEST(VoiceSheet, Operator5AndOperator6WriteTheSameBlockAndTheLastOneStays) {
    Dx7Sheet sheet(WithByte(Dx7Voice(), 155, 0x3F));
    const VoiceObject before = sheet.voice;
    sheet.Show(5);
    sheet.Type(202, "11");
    sheet.Show(6);
    EXPECT_EQ(sheet.At(202).text, "11");
    EXPECT_EQ(VoiceEditPage, 5u);
    sheet.Type(203, "22");
    sheet.Check(201, false);
    sheet.Press(SheetOk);
    VoiceObject expected = WithByte(before, Dx7Block(4), 11);
    expected = WithByte(expected, Dx7Block(4) + 1, 22);
    expected = WithByte(expected, Dx7Block(4) + 14, 0);
    expected = WithByte(expected, 155, 0x3D);
    EXPECT_EQ(sheet.Ended(), expected);
}

} // namespace
} // namespace tonewright
