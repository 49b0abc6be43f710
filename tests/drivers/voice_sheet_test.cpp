// When the pages of a voice editor read and store a voice, and what its buttons do.
#include "drivers/voice_sheet.h"

#include "common/settings.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/dx7/voice_parameters.h"
#include "drivers/reface_dx/voice_codec.h"
#include "drivers/reface_dx/voice_parameters.h"
#include "sheet_under_test.h"
#include "support/bank_bytes.h"
#include "support/program_texts.h"
#include "support/reface_bytes.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace tonewright {
namespace {

// Where a block of operators begins in the payload.
constexpr std::size_t Dx7Block(int block) {
    return static_cast<std::size_t>(block) * 21;
}
constexpr std::size_t RefaceBlock(int block) {
    return 38 + static_cast<std::size_t>(block) * 28;
}

VoiceObject WithByte(VoiceObject voice, std::size_t offset, int byte) {
    voice.bytes[VoiceObjectHeaderSize + offset] = static_cast<std::uint8_t>(byte);
    return voice;
}
// With an amplitude modulation sensitivity of 2 and every operator on.
VoiceObject Dx7Voice() {
    VoiceObject voice = MakeVoiceObject(Dx7DriverId, TestUnpackedVoice());
    for (int block = 0; block < 6; ++block) {
        voice = WithByte(std::move(voice), Dx7Block(block) + 14, 2);
    }
    return WithByte(std::move(voice), 155, 0x3F);
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
        desktop.ExpectMessage(NoSuchText);
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
    Dx7Sheet sheet;
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

TEST(VoiceSheet, OkCollectsTheActivePageOnlySoThatAnOpenedOperator6DoesNotWriteOverOperator5) {
    Dx7Sheet sheet;
    sheet.Show(6);
    const std::string former = sheet.At(202).text;
    sheet.Show(5);
    sheet.Type(202, "11");
    sheet.Press(SheetOk);
    EXPECT_EQ(sheet.Byte(Dx7Block(4)), 11);
    EXPECT_NE(former, "11");
}

TEST(VoiceSheet, TheValuesShownOnOperator6OverwriteThoseOfOperator5WhenThatPageIsLeft) {
    Dx7Sheet sheet;
    sheet.Show(6);
    const int former = sheet.Byte(Dx7Block(4));
    sheet.Show(5);
    sheet.Type(202, "11");
    sheet.Show(6); // made before: its controls keep what they showed
    EXPECT_EQ(sheet.Byte(Dx7Block(4)), 11);
    sheet.Press(SheetOk);
    EXPECT_EQ(sheet.Byte(Dx7Block(4)), former);
}

TEST(VoiceSheet, APageThatWasNeverShownNeitherReadsNorWrites) {
    VoiceObject voice = Dx7Voice();
    const std::string padded = "BLANKS    ";
    std::copy(padded.begin(), padded.end(), voice.bytes.begin() + 52 + 145);
    voice = WithByte(voice, 134, 77); // no algorithm
    Dx7Sheet sheet(voice);
    sheet.Show(3);
    EXPECT_EQ(sheet.At(101).text, "BLANKS");
    sheet.Press(SheetOk);
    EXPECT_EQ(sheet.Ended(), WithByte(voice, Dx7Block(2) + 14, 0));
    EXPECT_FALSE(sheet.sheet.pages[0].made);
    EXPECT_FALSE(sheet.sheet.pages[1].made);
}

TEST(VoiceSheet, OpeningAPageStoresNothing) {
    for (int page = 0; page < 7; ++page) {
        Dx7Sheet sheet;
        sheet.Show(page);
        EXPECT_EQ(sheet.sheet.copy, sheet.voice);
        EXPECT_FALSE(sheet.sheet.isTouched);
    }
    for (int page = 0; page < 5; ++page) {
        RefaceSheet sheet;
        sheet.Show(page);
        EXPECT_EQ(sheet.sheet.copy, sheet.voice);
    }
}

TEST(VoiceSheet, LeavingAPageCollectsItBeforeTheNextOneIsMade) {
    Dx7Sheet sheet;
    sheet.Show(0);
    sheet.Type(101, "");
    sheet.Show(1);
    EXPECT_EQ(sheet.At(101).text, "Untitled");
    EXPECT_EQ(sheet.Byte(Dx7Block(0) + 14), 2); // not yet left
    sheet.Show(0);
    EXPECT_EQ(sheet.Byte(Dx7Block(0) + 14), 0);
    EXPECT_EQ(sheet.At(101).text, ""); // shown again with its old values
}

TEST(VoiceSheet, APageShownAgainKeepsItsValuesButForTheNameOfAnOperatorPage) {
    Dx7Sheet sheet;
    sheet.Show(1);
    sheet.Type(202, "120");
    sheet.Show(0);
    sheet.Type(101, "Renamed");
    sheet.Show(1);
    EXPECT_EQ(sheet.At(202).text, "120");
    EXPECT_EQ(sheet.At(202).bar, 99);
    EXPECT_EQ(sheet.Byte(Dx7Block(0)), 99);
    EXPECT_EQ(sheet.At(101).text, "Renamed");
    EXPECT_FALSE(sheet.At(101).enabled);
}

TEST(VoiceSheet, ThePageThatIsShownIsNotLeftByShowingItOnceMore) {
    Dx7Sheet sheet;
    sheet.Show(1);
    sheet.Show(1);
    EXPECT_EQ(sheet.Byte(Dx7Block(0) + 14), 2);
}

TEST(VoiceSheet, ASecondCollectionOfAPageChangesNothing) {
    Dx7Sheet sheet;
    for (int page = 0; page < 7; ++page) {
        sheet.Show(page);
        CollectPage(sheet.sheet, page);
        const VoiceObject once = sheet.sheet.copy;
        CollectPage(sheet.sheet, page);
        EXPECT_EQ(sheet.sheet.copy, once);
    }
    CollectPage(sheet.sheet, NoPage);
    Dx7Sheet other;
    CollectPage(other.sheet, 3); // was not made
    EXPECT_EQ(other.sheet.copy, other.voice);
}

TEST(VoiceSheet, TheSettingTellsThePageToOpenWithAndFollowsThePages) {
    const auto startPage = [](const VoiceParameters &family, std::uint32_t setting) {
        VoiceEditPage = setting;
        VoiceSheet sheet;
        sheet.family = &family;
        return StartPage(sheet);
    };
    EXPECT_EQ(startPage(Dx7Parameters, 0), 0);
    EXPECT_EQ(startPage(Dx7Parameters, 5), 5);
    EXPECT_EQ(startPage(Dx7Parameters, 6), 6);
    EXPECT_EQ(startPage(Dx7Parameters, 7), 0);
    EXPECT_EQ(startPage(Dx7Parameters, 0xFFFFFFFF), 0);
    EXPECT_EQ(startPage(RefaceParameters, 4), 4);
    EXPECT_EQ(startPage(RefaceParameters, 5), 0);

    Dx7Sheet sheet;
    const std::uint32_t expected[] = {0, 1, 2, 3, 4, 5, 5};
    for (int page = 0; page < 7; ++page) {
        sheet.Show(page);
        EXPECT_EQ(VoiceEditPage, expected[page]);
    }
    sheet.Show(0);
    EXPECT_EQ(VoiceEditPage, 0u);
}

TEST(VoiceSheet, PagesHaveTitlesByTheirNumbers) {
    EXPECT_EQ(PageCount(Dx7Parameters), 7);
    EXPECT_EQ(PageCount(RefaceParameters), 5);
    EXPECT_EQ(PageTitle(0), "Voice");
    EXPECT_EQ(PageTitle(1), "Operator 1");
    EXPECT_EQ(PageTitle(6), "Operator 6");
}

// ---- the voice's page

TEST(VoiceSheet, TheVoicePageOfADx7StoresWithEachCommand) {
    Dx7Sheet sheet;
    sheet.Show(0);
    sheet.Type(108, "12");
    EXPECT_EQ(sheet.Byte(137), 12);
    sheet.Type(102, "-3");
    EXPECT_EQ(sheet.Byte(144), 21);
    sheet.Select(107, 4);
    EXPECT_EQ(sheet.Byte(142), 4);
    sheet.Check(120, false);
    EXPECT_EQ(sheet.Byte(136), 0);
    sheet.Check(120, true);
    EXPECT_EQ(sheet.Byte(136), 1);
    sheet.Type(101, "abc");
    EXPECT_EQ(std::string(sheet.sheet.copy.bytes.begin() + 52 + 145,
                          sheet.sheet.copy.bytes.begin() + 52 + 155),
              std::string("abc\0\0\0\0\0\0\0", 10));
}

TEST(VoiceSheet, ListsAndShiftsOfARefaceDxWaitUntilThePageIsCollected) {
    RefaceSheet sheet;
    const VoiceObject before = sheet.voice;
    sheet.Show(0);
    sheet.Select(103, 2);
    sheet.Select(107, 1);
    sheet.Select(119, 3);
    sheet.Select(122, 4);
    sheet.Type(102, "-2");
    sheet.Type(105, "5");
    EXPECT_EQ(sheet.sheet.copy, before);
    EXPECT_TRUE(sheet.shown.empty()); // the user's own hand has shown it all
    sheet.Select(106, 9);
    EXPECT_EQ(sheet.sheet.copy, WithByte(before, 16, 9));
    CollectPage(sheet.sheet, 0);
    EXPECT_EQ(sheet.Byte(13), 2);
    EXPECT_EQ(sheet.Byte(17), 1);
    EXPECT_EQ(sheet.Byte(29), 3);
    EXPECT_EQ(sheet.Byte(32), 4);
    EXPECT_EQ(sheet.Byte(12), 38);
    EXPECT_EQ(sheet.Byte(15), 45);
}

TEST(VoiceSheet, ACommandThatChangesNothingStoresAsWellButForTheName) {
    VoiceObject voice = WithByte(WithByte(Dx7Voice(), 137, 200), 134, 40);
    voice = WithByte(voice, 154, ' ');
    Dx7Sheet sheet(voice);
    sheet.Show(0);
    RowCommand(sheet.sheet, sheet.RowOf(108));
    EXPECT_EQ(sheet.Byte(137), 99);
    RowCommand(sheet.sheet, sheet.RowOf(106));
    EXPECT_EQ(sheet.Byte(134), 0);
    RowCommand(sheet.sheet, sheet.RowOf(101));
    EXPECT_EQ(sheet.Byte(154), ' ');
    EXPECT_FALSE(sheet.sheet.isTouched);
}

TEST(VoiceSheet, WhileTheWindowDoesNotStandNothingIsACommand) {
    Dx7Sheet sheet;
    sheet.sheet.isShown = false;
    sheet.Show(0);
    sheet.Type(108, "12");
    sheet.Select(106, 3);
    sheet.Check(120, false);
    sheet.Step(108, 1);
    sheet.Scroll(108, ScrollAction::Bottom);
    EXPECT_EQ(sheet.sheet.copy, sheet.voice);
    EXPECT_NE(sheet.At(108).text, "12");
}

TEST(VoiceSheet, ALimitNeverRewritesABox) {
    Dx7Sheet sheet;
    sheet.Show(0);
    sheet.Type(108, "120");
    EXPECT_EQ(sheet.At(108).text, "120");
    EXPECT_EQ(sheet.Byte(137), 99);
    EXPECT_EQ(sheet.At(108).bar, 99);
    EXPECT_EQ(sheet.shown, std::vector<std::string>{"0:108"});
    sheet.Press(SheetAudition);
    EXPECT_EQ(sheet.At(108).text, "120");
}

TEST(VoiceSheet, TransposeMinus24IsStoredAs0AndTranspose24As48) {
    Dx7Sheet sheet;
    sheet.Show(0);
    sheet.Type(102, "-24");
    EXPECT_EQ(sheet.Byte(144), 0);
    sheet.Type(102, "24");
    EXPECT_EQ(sheet.Byte(144), 48);
    sheet.Type(102, "-25");
    EXPECT_EQ(sheet.Byte(144), 0);
}

TEST(VoiceSheet, AStoredTransposeOf0OfARefaceDxShowsMinus40UntilItIsCollectedAs16) {
    RefaceSheet sheet(WithByte(RefaceVoice0(), 12, 0));
    sheet.Show(0);
    EXPECT_EQ(sheet.At(102).text, "-40");
    RowCommand(sheet.sheet, sheet.RowOf(102));
    EXPECT_EQ(sheet.Byte(12), 0);
    sheet.Press(SheetOk);
    EXPECT_EQ(sheet.Byte(12), 16);
    EXPECT_EQ(sheet.At(102).text, "-40");
}

TEST(VoiceSheet, ARefaceDxIsCountedAbout64WithTheExtraAndKeepsItsBendThen) {
    const VoiceObject voice = WithByte(WithByte(RefaceVoice0(), 12, 64), 15, 66);
    {
        RefaceSheet sheet(voice);
        sheet.Show(0);
        EXPECT_EQ(sheet.At(102).text, "24");
        EXPECT_EQ(sheet.At(105).text, "26");
        CollectPage(sheet.sheet, 0);
        EXPECT_EQ(sheet.Byte(12), 64);
        EXPECT_EQ(sheet.Byte(15), 64);
    }
    RefaceZero64 = 1;
    RefaceSheet sheet(voice);
    sheet.Show(0);
    EXPECT_EQ(sheet.At(102).text, "0");
    EXPECT_EQ(sheet.At(105).text, "2");
    CollectPage(sheet.sheet, 0);
    EXPECT_EQ(sheet.sheet.copy, voice);
    for (const auto &[text, stored] :
         {std::pair{"-24", 40}, std::pair{"24", 88}, std::pair{"-25", 40}, std::pair{"25", 88}}) {
        sheet.Type(102, text);
        sheet.Type(105, text);
        CollectPage(sheet.sheet, 0);
        EXPECT_EQ(sheet.Byte(12), stored) << text;
        EXPECT_EQ(sheet.Byte(15), stored) << text;
    }
}

TEST(VoiceSheet, AByteOutsideTheRangeShowsAsItStandsWithTheExtraToo) {
    RefaceZero64 = 1;
    RefaceSheet sheet(WithByte(WithByte(RefaceVoice0(), 12, 0), 15, 255));
    sheet.Show(0);
    EXPECT_EQ(sheet.At(102).text, "-64");
    EXPECT_EQ(sheet.At(105).text, "191");
    sheet.Press(SheetOk);
    EXPECT_EQ(sheet.Byte(12), 40);
    EXPECT_EQ(sheet.Byte(15), 88);
}

TEST(VoiceSheet, AnAlgorithmOutsideTheListSelectsNothingAndIsCollectedAs0) {
    RefaceSheet sheet(WithByte(RefaceVoice0(), 16, 12));
    sheet.Show(0);
    EXPECT_EQ(sheet.At(106).selection, -1);
    EXPECT_EQ(AlgorithmOf(sheet.sheet), 12);
    CollectPage(sheet.sheet, 0);
    EXPECT_EQ(AlgorithmOf(sheet.sheet), 0);
    EXPECT_EQ(sheet.algorithmsShown, 1);
}

TEST(VoiceSheet, AnOperatorsListWithNothingSelectedIsCollectedAs0) {
    Dx7Sheet sheet(WithByte(Dx7Voice(), Dx7Block(2) + 11, 4));
    sheet.Show(3);
    EXPECT_EQ(sheet.At(213).selection, -1);
    sheet.Press(SheetOk);
    EXPECT_EQ(sheet.Byte(Dx7Block(2) + 11), 0);
}

TEST(VoiceSheet, AnIndexBehindTheListIsStoredAsItsLast) {
    Dx7Sheet sheet;
    sheet.Show(0);
    sheet.Select(106, 50);
    EXPECT_EQ(sheet.Byte(134), 31);
    sheet.Select(107, 6);
    EXPECT_EQ(sheet.Byte(142), 5);
    sheet.Select(107, -7); // nothing
    EXPECT_EQ(sheet.At(107).selection, -1);
    EXPECT_EQ(sheet.Byte(142), 0);
}

TEST(VoiceSheet, ANewAlgorithmIsShownAtOnceAndTheSameOneIsNot) {
    Dx7Sheet sheet;
    sheet.Show(0);
    sheet.Select(106, 7);
    EXPECT_EQ(sheet.algorithmsShown, 1);
    sheet.Select(106, 7);
    sheet.Type(108, "1");
    EXPECT_EQ(sheet.algorithmsShown, 1);
    EXPECT_EQ(AlgorithmOf(sheet.sheet), 7);
}

TEST(VoiceSheet, TheRowOfPitchBendIsEmptyAndInert) {
    Dx7Sheet sheet;
    sheet.Show(0);
    EXPECT_EQ(sheet.At(105).text, "");
    EXPECT_TRUE(sheet.At(105).enabled);
    sheet.Type(105, "12");
    sheet.Step(105, 1);
    EXPECT_EQ(sheet.At(105).text, "13");
    sheet.Type(105, "99");
    sheet.Step(105, 1);
    EXPECT_EQ(sheet.At(105).text, "24");
    sheet.Type(105, "-99");
    sheet.Step(105, -1);
    EXPECT_EQ(sheet.At(105).text, "-24");
    EXPECT_EQ(sheet.sheet.copy, sheet.voice);
    const VoiceObject collected = [&] {
        CollectPage(sheet.sheet, 0);
        return sheet.sheet.copy;
    }();
    sheet.Type(105, "-7");
    CollectPage(sheet.sheet, 0);
    EXPECT_EQ(sheet.sheet.copy, collected);
}

// ---- names

std::string NameBytes(const SheetUnderTest &sheet, std::size_t offset) {
    const auto begin = sheet.sheet.copy.bytes.begin() + static_cast<std::ptrdiff_t>(52 + offset);
    return {begin, begin + 10};
}

TEST(VoiceSheet, AnEmptiedNameBecomesUntitledWhenItIsCollected) {
    Dx7Sheet sheet;
    sheet.Show(0);
    sheet.Type(101, "");
    EXPECT_EQ(NameBytes(sheet, 145), std::string(10, '\0'));
    sheet.Press(SheetOk);
    EXPECT_EQ(NameBytes(sheet, 145), std::string("Untitled\0\0", 10));
    RefaceSheet reface;
    reface.Show(0);
    reface.Type(101, "");
    reface.Press(SheetOk);
    EXPECT_EQ(NameBytes(reface, 0), std::string("Untitled\0\0", 10));
}

TEST(VoiceSheet, ANameOfThreeLettersIsStoredWithSevenZeroBytes) {
    Dx7Sheet sheet;
    sheet.Show(0);
    sheet.Type(101, "Pad");
    sheet.Press(SheetOk);
    EXPECT_EQ(NameBytes(sheet, 145), std::string("Pad\0\0\0\0\0\0\0", 10));
}

TEST(VoiceSheet, ANameIsCutToTenCharactersOfLatin1) {
    RefaceSheet sheet;
    sheet.Show(0);
    sheet.Type(101, "\xC3\xA4\xE2\x82\xAC"
                    "23456789AB");
    EXPECT_EQ(NameBytes(sheet, 0), "\xE4?23456789");
    EXPECT_EQ(sheet.Byte(10), 0x51); // the byte behind it
}

TEST(VoiceSheet, EveryByteInsideANameSurvivesOpenAndOkAndAZeroByteEndsIt) {
    for (int byte = 1; byte < 256; ++byte) {
        VoiceObject voice = Dx7Voice();
        const std::string name = std::string("A") + static_cast<char>(byte) + "CDEFGHIJ";
        std::copy(name.begin(), name.end(), voice.bytes.begin() + 52 + 145);
        Dx7Sheet sheet(voice);
        sheet.Show(0);
        sheet.Press(SheetOk);
        EXPECT_EQ(NameBytes(sheet, 145), name) << byte;
    }
    Dx7Sheet sheet(WithByte(Dx7Voice(), 147, 0));
    sheet.Show(0);
    EXPECT_EQ(sheet.At(101).text.size(), 2u);
    sheet.Press(SheetOk);
    EXPECT_EQ(NameBytes(sheet, 145).substr(2), std::string(8, '\0'));
}

// ---- operator pages

TEST(VoiceSheet, AnOperatorPageStoresNothingUntilItIsCollected) {
    RefaceSheet sheet;
    sheet.Show(1);
    sheet.Type(210, "77");
    sheet.Select(213, 3);
    sheet.Check(217, true);
    sheet.Check(201, false);
    EXPECT_EQ(sheet.sheet.copy, sheet.voice);
    CollectPage(sheet.sheet, 1);
    EXPECT_EQ(sheet.Byte(RefaceBlock(0)), 0);
    EXPECT_EQ(sheet.Byte(RefaceBlock(0) + 9), 77);
    EXPECT_EQ(sheet.Byte(RefaceBlock(0) + 12), 3);
    EXPECT_EQ(sheet.Byte(RefaceBlock(0) + 16), 1);
}

TEST(VoiceSheet, TheBarsOfAnOperatorPageFollowTyping) {
    Dx7Sheet sheet;
    sheet.Show(1);
    sheet.Type(202, "33");
    EXPECT_EQ(sheet.At(202).bar, 33);
    EXPECT_EQ(sheet.shown, std::vector<std::string>{"1:202"});
    EXPECT_EQ(sheet.sheet.copy, sheet.voice);
}

TEST(VoiceSheet, ClearingPitchEgDisablesTheEnvelopeAndItsValuesStay) {
    RefaceSheet sheet(WithByte(RefaceVoice0(), RefaceBlock(0) + 16, 1));
    const VoiceObject before = sheet.voice;
    sheet.Show(1);
    EXPECT_TRUE(sheet.At(202).enabled);
    sheet.Check(217, false);
    for (std::uint32_t control = 202; control <= 209; ++control) {
        EXPECT_FALSE(sheet.At(control).enabled);
    }
    EXPECT_TRUE(sheet.At(210).enabled);
    EXPECT_TRUE(sheet.At(217).enabled);
    EXPECT_EQ(sheet.shown, (std::vector<std::string>{"1:202", "1:206", "1:203", "1:207", "1:204",
                                                     "1:208", "1:205", "1:209"}));
    sheet.Press(SheetOk);
    EXPECT_EQ(sheet.sheet.copy, WithByte(before, RefaceBlock(0) + 16, 0));
}

TEST(VoiceSheet, ClearingEnableDisablesThePageAndOnlyTheSwitchIsStored) {
    VoiceObject voice = WithByte(RefaceVoice0(), RefaceBlock(2) + 16, 1);
    RefaceSheet sheet(voice);
    sheet.Show(3);
    sheet.Check(201, false);
    for (std::uint32_t control = 202; control <= 224; ++control) {
        EXPECT_FALSE(sheet.At(control).enabled) << control;
    }
    EXPECT_TRUE(sheet.At(201).enabled);
    sheet.Check(201, true);
    EXPECT_TRUE(sheet.At(202).enabled);
    EXPECT_TRUE(sheet.At(224).enabled);
    sheet.Check(201, false);
    sheet.Press(SheetOk);
    EXPECT_EQ(sheet.sheet.copy, WithByte(voice, RefaceBlock(2), 0));
}

TEST(VoiceSheet, AnOperatorThatIsOffOpensDisabledAndItsRowsAreStillCollected) {
    VoiceObject voice = WithByte(Dx7Voice(), 155, 0x1F); // the first one is off
    voice = WithByte(voice, Dx7Block(0) + 16, 200);
    Dx7Sheet sheet(voice);
    sheet.Show(1);
    EXPECT_FALSE(sheet.At(201).checked);
    for (const std::uint32_t control : {202u, 215u, 213u, 221u, 223u, 224u}) {
        EXPECT_FALSE(sheet.At(control).enabled) << control;
    }
    sheet.Press(SheetOk);
    EXPECT_EQ(sheet.Byte(Dx7Block(0) + 16), 99);
    EXPECT_EQ(sheet.Byte(155), 0x1F);
}

TEST(VoiceSheet, ADisabledRowTakesNoStepNoScrollAndNoText) {
    Dx7Sheet sheet(WithByte(Dx7Voice(), 155, 0));
    sheet.Show(1);
    const RowState before = sheet.At(202);
    sheet.Step(202, 1);
    sheet.Scroll(202, ScrollAction::Bottom);
    sheet.Type(202, "3");
    EXPECT_EQ(sheet.At(202).text, before.text);
    EXPECT_EQ(sheet.At(202).bar, before.bar);
    sheet.Step(223, 1);
    sheet.Check(221, false);
    sheet.Select(213, 0);
    EXPECT_FALSE(sheet.sheet.isTouched);
}

TEST(VoiceSheet, AFrequencyOf40IsCollectedAs31And99) {
    Dx7Sheet sheet;
    sheet.Show(1);
    sheet.Type(223, "40");
    EXPECT_EQ(sheet.At(223).text, "40");
    sheet.Press(SheetOk);
    EXPECT_EQ(sheet.Byte(18), 31);
    EXPECT_EQ(sheet.Byte(19), 99);
}

TEST(VoiceSheet, ATypedFrequencyOf1Point15IsCollectedAs1Point14) {
    RefaceSheet sheet;
    sheet.Show(2);
    sheet.Type(223, "1.15");
    sheet.Press(SheetOk);
    EXPECT_EQ(sheet.Byte(RefaceBlock(1) + 22), 1);
    EXPECT_EQ(sheet.Byte(RefaceBlock(1) + 23), 14);
}

TEST(VoiceSheet, AFrequencyOf1Point16EndsAt1Point12AfterFourEditings) {
    VoiceObject voice = WithByte(WithByte(Dx7Voice(), 18, 1), 19, 16);
    for (const int fine : {15, 14, 13, 12, 12}) {
        Dx7Sheet sheet(voice);
        sheet.Show(1);
        sheet.Press(SheetOk);
        voice = sheet.Ended();
        EXPECT_EQ(voice.bytes[52 + 18], 1);
        EXPECT_EQ(voice.bytes[52 + 19], fine);
    }
}

TEST(VoiceSheet, Hundred44OfAllFrequenciesChangeWhenAPageIsOpenedAndLeft) {
    int changed = 0;
    for (int hundredths = 0; hundredths < 3200; ++hundredths) {
        RefaceSheet sheet(WithByte(WithByte(RefaceVoice0(), RefaceBlock(0) + 22, hundredths / 100),
                                   RefaceBlock(0) + 23, hundredths % 100));
        sheet.Show(1);
        sheet.Show(0);
        changed += sheet.sheet.copy != sheet.voice;
    }
    EXPECT_EQ(changed, 144);
}

TEST(VoiceSheet, AFineOf127BesideACoarseOf1Reads2Point27) {
    Dx7Sheet sheet(WithByte(WithByte(Dx7Voice(), 18, 1), 19, 127));
    sheet.Show(1);
    EXPECT_EQ(sheet.At(223).text, "2.27");
    sheet.Press(SheetOk);
    EXPECT_EQ(sheet.Byte(18), 2);
    EXPECT_EQ(sheet.Byte(19), 27);
}

// ---- arrows and bars

TEST(VoiceSheet, TheArrowsStepWithinTheRangeFromTheLimitedValue) {
    Dx7Sheet sheet;
    sheet.Show(0);
    sheet.Type(108, "98");
    sheet.Step(108, 1);
    sheet.Step(108, 1);
    EXPECT_EQ(sheet.At(108).text, "99");
    EXPECT_EQ(sheet.Byte(137), 99);
    EXPECT_EQ(sheet.At(108).bar, 99);
    sheet.Type(108, "120");
    sheet.Step(108, -1);
    EXPECT_EQ(sheet.At(108).text, "98");
    sheet.Type(102, "-24");
    sheet.Step(102, -1);
    EXPECT_EQ(sheet.At(102).text, "-24");
    sheet.Step(102, 1);
    EXPECT_EQ(sheet.Byte(144), 1);
}

TEST(VoiceSheet, TheArrowsOfTheFrequencyStepByAHundredth) {
    RefaceSheet sheet;
    sheet.Show(1);
    sheet.Type(223, "1.05");
    sheet.Step(223, 1);
    EXPECT_EQ(sheet.At(223).text, "1.06");
    sheet.Step(223, -1);
    sheet.Step(223, -1);
    EXPECT_EQ(sheet.At(223).text, "1.04");
    EXPECT_EQ(sheet.sheet.copy, sheet.voice);
}

TEST(VoiceSheet, ABarWritesItsPositionAndIsACommandOfTheVoicePage) {
    Dx7Sheet sheet;
    sheet.Show(0);
    sheet.Scroll(108, ScrollAction::Thumb, 50);
    EXPECT_EQ(sheet.At(108).text, "50");
    EXPECT_EQ(sheet.Byte(137), 50);
    sheet.Scroll(108, ScrollAction::PageForward);
    EXPECT_EQ(sheet.Byte(137), 62); // an eighth of 99
    sheet.Scroll(108, ScrollAction::LineBack);
    EXPECT_EQ(sheet.Byte(137), 61);
    sheet.Scroll(108, ScrollAction::Thumb, 500);
    EXPECT_EQ(sheet.Byte(137), 99);
    sheet.Scroll(108, ScrollAction::Top);
    EXPECT_EQ(sheet.Byte(137), 0);
    sheet.Scroll(104, ScrollAction::Top);
    sheet.Scroll(104, ScrollAction::PageForward); // 0 to 7 has no pages
    EXPECT_EQ(sheet.Byte(135), 0);
    sheet.Scroll(104, ScrollAction::Bottom);
    EXPECT_EQ(sheet.Byte(135), 7);
    sheet.Scroll(102, ScrollAction::Bottom); // has no bar
    EXPECT_EQ(sheet.Byte(144), TestUnpackedVoice()[144]);
}

TEST(VoiceSheet, ABarThatDoesNotMoveWritesNothing) {
    Dx7Sheet sheet(WithByte(Dx7Voice(), 137, 200));
    sheet.Show(0);
    EXPECT_EQ(sheet.At(108).text, "200");
    EXPECT_EQ(sheet.At(108).bar, 99);
    sheet.Scroll(108, ScrollAction::LineForward);
    EXPECT_EQ(sheet.At(108).text, "200");
    EXPECT_EQ(sheet.Byte(137), 200);
    sheet.Scroll(108, ScrollAction::LineBack);
    EXPECT_EQ(sheet.At(108).text, "98");
}

TEST(VoiceSheet, TheTextOfTheArrowsIsTheRange) {
    Dx7Sheet sheet;
    PageControls controls = ControlsOfRows(Dx7Parameters.voice);
    controls.rangeText = [](std::uint32_t control) {
        return control == 108 ? "5,10" : control == 109 ? "garbage" : "0,99,0";
    };
    ShowPage(sheet.sheet, 0, controls);
    sheet.Type(108, "50");
    EXPECT_EQ(sheet.Byte(137), 10);
    sheet.Type(108, "1");
    EXPECT_EQ(sheet.Byte(137), 5);
    sheet.Type(109, "50"); // without a range it reads 0
    EXPECT_EQ(sheet.Byte(138), 0);
    sheet.Step(109, 1);
    sheet.Scroll(109, ScrollAction::Bottom);
    EXPECT_EQ(sheet.At(109).text, "50");
}

TEST(VoiceSheet, AMissingControlReads0) {
    RefaceSheet sheet;
    PageControls controls = ControlsOfRows(RefaceParameters.operators);
    controls.has = [](std::uint32_t) { return false; };
    ShowPage(sheet.sheet, 1, controls);
    CollectPage(sheet.sheet, 1);
    VoiceObject expected = sheet.voice;
    std::fill_n(expected.bytes.begin() + 52 + 38, 24, std::uint8_t{0});
    expected.bytes[52 + 38 + 24] = 64; // a shown 0
    EXPECT_EQ(sheet.sheet.copy, expected);
}

TEST(VoiceSheet, AnyTextIsTakenByEveryBox) {
    const std::string texts[] = {"nan",
                                 "inf",
                                 "-inf",
                                 "1e999",
                                 "-1e999",
                                 "",
                                 "-",
                                 "+",
                                 " ",
                                 std::string(100000, '9'),
                                 "-" + std::string(100000, '9')};
    for (const std::string &text : texts) {
        Dx7Sheet dx7;
        RefaceSheet reface;
        for (SheetUnderTest *sheet :
             {static_cast<SheetUnderTest *>(&dx7), static_cast<SheetUnderTest *>(&reface)}) {
            for (const int page : {0, 1}) {
                sheet->Show(page);
                const auto rows = RowsOf(*sheet->sheet.family, page);
                for (std::size_t row = 0; row < rows.size(); ++row) {
                    TypeInRow(sheet->sheet, row, text);
                }
                CollectPage(sheet->sheet, page);
                for (std::size_t row = 0; row < rows.size(); ++row) {
                    if (rows[row].kind != ParameterKind::Name && rows[row].control != 105) {
                        const int shown =
                            ShownValue(*sheet->sheet.family, rows[row], sheet->sheet.copy, page);
                        EXPECT_GE(shown, rows[row].minimum) << rows[row].control;
                        EXPECT_LE(shown, rows[row].maximum) << rows[row].control;
                    }
                    StepRow(sheet->sheet, row, 1);
                    StepRow(sheet->sheet, row, -1);
                }
            }
        }
    }
}

// ---- every row

TEST(VoiceSheet, EveryControlOfADx7IsStoredInItsByte) {
    VoiceObject voice = Dx7Voice();
    std::fill(voice.bytes.begin() + 52, voice.bytes.end(), std::uint8_t{0x6E});
    voice = WithByte(voice, 155, 0xC0);                        // bits 6 and 7 belong to no operator
    voice.bytes.insert(voice.bytes.end(), {0xEE, 0xED, 0xEC}); // bytes behind the voice
    Dx7Sheet sheet(voice);
    sheet.Show(0);
    sheet.Type(101, "Every Row!");
    sheet.Select(106, 17);
    sheet.Type(104, "6");
    sheet.Type(102, "-4");
    sheet.Type(105, "9");
    sheet.Check(120, false);
    sheet.Select(107, 3);
    sheet.Type(108, "51");
    sheet.Type(109, "52");
    sheet.Type(110, "53");
    sheet.Type(122, "54");
    sheet.Type(121, "5");
    sheet.Check(123, true);
    const char *pitchEg[] = {"61", "62", "63", "64", "65", "66", "67", "68"};
    for (std::uint32_t i = 0; i < 8; ++i) {
        sheet.Type(111 + i, pitchEg[i]);
    }
    for (int page = 1; page <= 6; ++page) {
        sheet.Show(page);
        sheet.Check(201, true);
        for (std::uint32_t i = 0; i < 8; ++i) {
            sheet.Type(202 + i, std::to_string(10 * page + static_cast<int>(i)));
        }
        sheet.Type(215, std::to_string(120 + page));
        sheet.Type(211, std::to_string(80 + page));
        sheet.Type(212, std::to_string(70 + page));
        sheet.Select(213, page % 4);
        sheet.Select(214, 3 - page % 4);
        sheet.Type(210, std::to_string(60 + page));
        sheet.Type(219, std::to_string(50 + page));
        sheet.Type(220, std::to_string(40 + page));
        sheet.Check(221, page % 2 == 0);
        sheet.Type(223, std::to_string(page) + ".25");
        sheet.Type(224, std::to_string(page - 5));
        if (page == 2 || page == 6) {
            sheet.Check(201, false);
        }
    }
    sheet.Press(SheetOk);

    // clang-format off
    const std::vector<std::uint8_t> expected = {
        // rates        levels          point and depths  curves  scaling to mode       frequency, detune
        10, 11, 12, 13, 14, 15, 16, 17, 121, 81, 71,      1, 2,   61, 0, 51, 41, 0,     1, 25, 3,
        20, 21, 22, 23, 24, 25, 26, 27, 122, 82, 72,      2, 1,   62, 0, 52, 42, 1,     2, 25, 4,
        30, 31, 32, 33, 34, 35, 36, 37, 123, 83, 73,      3, 0,   63, 0, 53, 43, 0,     3, 25, 5,
        40, 41, 42, 43, 44, 45, 46, 47, 124, 84, 74,      0, 3,   64, 0, 54, 44, 1,     4, 25, 6,
        // as the page Operator 6 shows it
        60, 61, 62, 63, 64, 65, 66, 67, 126, 86, 76,      2, 1,   66, 0, 56, 46, 1,     6, 25, 8,
        // no page shows the last block
        0x6E, 0x6E, 0x6E, 0x6E, 0x6E, 0x6E, 0x6E, 0x6E, 0x6E, 0x6E, 0x6E,
        0x6E, 0x6E, 0x6E, 0x6E, 0x6E, 0x6E, 0x6E, 0x6E, 0x6E, 0x6E,
        61, 62, 63, 64, 65, 66, 67, 68, // pitch envelope
        17, 6, 0,                       // algorithm, feedback, oscillator sync
        51, 52, 53, 54, 1, 3,           // LFO speed, delay, depths, sync, wave
        5, 20,                          // pitch modulation sensitivity, transpose
        'E', 'v', 'e', 'r', 'y', ' ', 'R', 'o', 'w', '!',
        0xC0 | 0x2C,                    // operators 1, 3 and 4
        0xEE, 0xED, 0xEC,
    };
    // clang-format on
    EXPECT_EQ(std::vector<std::uint8_t>(sheet.sheet.copy.bytes.begin() + 52,
                                        sheet.sheet.copy.bytes.end()),
              expected);
    EXPECT_EQ(expected.size(), 156u + 3);
}

TEST(VoiceSheet, EveryControlOfARefaceDxIsStoredInItsByte) {
    VoiceObject voice = RefaceVoice0();
    std::fill(voice.bytes.begin() + 52, voice.bytes.end(), std::uint8_t{0x6E});
    voice.bytes.insert(voice.bytes.end(), {0xEE, 0xED, 0xEC});
    RefaceSheet sheet(voice);
    sheet.Show(0);
    sheet.Type(101, "Each row");
    sheet.Type(102, "-4");
    sheet.Select(103, 2);
    sheet.Type(104, "91");
    sheet.Type(105, "7");
    sheet.Select(106, 10);
    sheet.Select(107, 5);
    for (std::uint32_t i = 0; i < 11; ++i) {
        sheet.Type(108 + i, std::to_string(50 + i));
    }
    sheet.Select(119, 7);
    sheet.Type(120, "71");
    sheet.Type(121, "72");
    sheet.Select(122, 4);
    sheet.Type(123, "73");
    sheet.Type(124, "74");
    for (int page = 1; page <= 4; ++page) {
        sheet.Show(page);
        for (std::uint32_t i = 0; i < 11; ++i) {
            sheet.Type(202 + i, std::to_string(20 * page + static_cast<int>(i)));
        }
        sheet.Select(213, page % 4);
        sheet.Select(214, 3 - page % 4);
        sheet.Type(215, std::to_string(100 + page));
        sheet.Check(216, page % 2 != 0);
        sheet.Type(218, std::to_string(110 + page));
        sheet.Type(219, std::to_string(120 + page));
        sheet.Type(220, std::to_string(90 + page));
        sheet.Select(221, page % 2);
        sheet.Select(222, 1 - page % 2);
        sheet.Type(223, std::to_string(page) + ".25");
        sheet.Type(224, std::to_string(10 * page - 30));
        sheet.Check(217, page > 2);
        sheet.Check(201, page != 3);
    }
    sheet.Press(SheetOk);

    // clang-format off
    const std::vector<std::uint8_t> expected = {
        'E', 'a', 'c', 'h', ' ', 'r', 'o', 'w', 0, 0,
        0x6E, 0x6E,             // no parameter
        36, 2, 91, 47, 10, 5,   // transpose, part mode, portamento, pitch bend, algorithm, wave
        50, 51, 52,             // LFO
        53, 54, 55, 56, 57, 58, 59, 60, // pitch envelope
        7, 71, 72, 4, 73, 74,   // effects
        0x6E, 0x6E, 0x6E,       // no parameter
        // on  rates            levels            scaling        curves  LFO, EG    levels        types   frequency
        1,     20, 21, 22, 23,  24, 25, 26, 27,   28, 29, 30,    1, 2,   101, 1, 0, 111, 121, 91, 1, 0,   1, 25, 44, 0x6E, 0x6E, 0x6E,
        1,     40, 41, 42, 43,  44, 45, 46, 47,   48, 49, 50,    2, 1,   102, 0, 0, 112, 122, 92, 0, 1,   2, 25, 54, 0x6E, 0x6E, 0x6E,
        0,     60, 61, 62, 63,  64, 65, 66, 67,   68, 69, 70,    3, 0,   103, 1, 1, 113, 123, 93, 1, 0,   3, 25, 64, 0x6E, 0x6E, 0x6E,
        1,     80, 81, 82, 83,  84, 85, 86, 87,   88, 89, 90,    0, 3,   104, 0, 1, 114, 124, 94, 0, 1,   4, 25, 74, 0x6E, 0x6E, 0x6E,
        0xEE, 0xED, 0xEC,
    };
    // clang-format on
    EXPECT_EQ(std::vector<std::uint8_t>(sheet.sheet.copy.bytes.begin() + 52,
                                        sheet.sheet.copy.bytes.end()),
              expected);
    EXPECT_EQ(expected.size(), 150u + 3);
}

// ---- buttons

TEST(VoiceSheet, AuditionPlaysAFurtherCopyOfTheVoiceAndLeavesTheSheetOpen) {
    VoiceObject voice = Dx7Voice();
    voice.bytes.push_back(0xEE); // behind the voice
    Dx7Sheet sheet(voice);
    sheet.Show(1);
    sheet.Show(2);
    sheet.Type(202, "12");
    EXPECT_FALSE(sheet.Press(SheetAudition));
    EXPECT_FALSE(sheet.sheet.accepted);
    ASSERT_EQ(sheet.played.size(), 1u);
    EXPECT_EQ(sheet.played[0].bytes.size(), 52u + 156);
    EXPECT_EQ(sheet.played[0].bytes[52 + 21], 12);
    EXPECT_TRUE(std::equal(sheet.played[0].bytes.begin(), sheet.played[0].bytes.end(),
                           sheet.sheet.copy.bytes.begin()));
    EXPECT_TRUE(sheet.Press(SheetCancel));
    EXPECT_EQ(sheet.Ended(), voice);
}

TEST(VoiceSheet, WithoutAFurtherCopyNothingIsPlayedAndTheSheetStaysOpen) {
    Dx7Sheet sheet;
    sheet.sheet.copy.bytes[0] = 0; // no voice any more, of which there is no copy
    EXPECT_FALSE(sheet.Press(SheetAudition));
    EXPECT_TRUE(sheet.played.empty());
}

TEST(VoiceSheet, HelpOpensItsTopicAndTheSheetStaysOpen) {
    ScriptedDesktop desktop;
    Dx7Sheet sheet;
    sheet.Show(1);
    EXPECT_FALSE(sheet.Press(SheetHelp));
    EXPECT_EQ(desktop.helpTopics, std::vector<std::string>{"VOICEEDIT"});
    EXPECT_EQ(sheet.sheet.copy, sheet.voice);
    EXPECT_FALSE(PressSheetButton(sheet.sheet, nullptr, 4711, 4711));
}

TEST(VoiceSheet, AVoiceWithItsPayloadInItsHeaderIsRefused) {
    ScriptedDesktop desktop;
    VoiceObject voice = RefaceVoice0();
    voice.bytes[4] = 51;
    desktop.ExpectMessage(NoSuchText);
    EXPECT_FALSE(BeginVoiceSheet(nullptr, RefaceParameters, voice, {}, 0));
    VoiceObject dx7 = Dx7Voice();
    dx7.bytes[4] = 0;
    desktop.ExpectMessage(NoSuchText);
    EXPECT_FALSE(BeginVoiceSheet(nullptr, Dx7Parameters, dx7, {}, 0));
}

TEST(VoiceSheet, AVoiceWithAGapBeforeItsPayloadIsEditedInItsPlace) {
    VoiceObject voice = WithByte(RefaceVoice0(), RefaceBlock(3) + 16, 1);
    voice.bytes[4] = 54;
    voice.bytes.insert(voice.bytes.begin() + 52, {0xA1, 0xA2});
    RefaceSheet sheet(voice);
    sheet.Show(4);
    sheet.Type(202, "33");
    sheet.Press(SheetOk);
    VoiceObject expected = voice;
    expected.bytes[54 + RefaceBlock(3) + 1] = 33;
    EXPECT_EQ(sheet.Ended(), expected);
}

// ---- careful mode

TEST(CarefulVoiceSheet, ReturnInAControlAccepts) {
    CarefulMode = 1;
    Dx7Sheet sheet;
    sheet.Show(0);
    sheet.Type(108, "77");
    EXPECT_TRUE(sheet.ReturnIn(108));
    EXPECT_TRUE(sheet.sheet.accepted);
    EXPECT_EQ(sheet.Ended().bytes[52 + 137], 77);
}

ExpectedMessage DropQuestion(const std::string &name, int answer) {
    return {.text = "You have changed the voice " + name + ". Do you wish to drop the changes?",
            .buttons = {"Go on editing", "Drop changes"},
            .answer = answer};
}

TEST(CarefulVoiceSheet, CancelAsksBeforeEditsAreDropped) {
    CarefulMode = 1;
    ScriptedDesktop desktop;
    RefaceSheet sheet;
    sheet.Show(0);
    sheet.Type(101, "New name");
    desktop.Expect(DropQuestion("REFACE 01", ResultCancel));
    EXPECT_FALSE(sheet.Press(SheetCancel));
    EXPECT_EQ(sheet.At(101).text, "New name");
    desktop.Expect(DropQuestion("REFACE 01", ResultYes));
    EXPECT_FALSE(sheet.Press(SheetCancel));
    desktop.Expect(DropQuestion("REFACE 01", ResultNo));
    EXPECT_TRUE(sheet.Press(SheetCancel));
    EXPECT_FALSE(sheet.sheet.accepted);
}

TEST(CarefulVoiceSheet, EditsOfAPageThatIsNotCollectedYetAreAskedAboutAndStayUncollected) {
    CarefulMode = 1;
    ScriptedDesktop desktop;
    RefaceSheet sheet;
    sheet.Show(2);
    sheet.Type(210, "99");
    desktop.Expect(DropQuestion("REFACE 01", ResultCancel));
    EXPECT_FALSE(sheet.Press(SheetCancel));
    EXPECT_EQ(sheet.sheet.copy, sheet.voice);
    EXPECT_EQ(sheet.algorithmsShown, 0);
}

TEST(CarefulVoiceSheet, CancelDoesNotAskWhenTheUserChangedNothing) {
    CarefulMode = 1;
    ScriptedDesktop desktop;
    Dx7Sheet sheet; // opening its pages clears ampModSensitivity
    sheet.Show(1);
    sheet.Show(2);
    EXPECT_NE(sheet.sheet.copy, sheet.voice);
    EXPECT_TRUE(sheet.Press(SheetCancel));
}

TEST(CarefulVoiceSheet, CancelDoesNotAskWhenWhatWasChangedIsAsBefore) {
    CarefulMode = 1;
    ScriptedDesktop desktop;
    RefaceSheet sheet;
    sheet.Show(0);
    const std::string former = sheet.At(108).text;
    sheet.Type(108, "77");
    sheet.Type(108, former);
    EXPECT_TRUE(sheet.sheet.isTouched);
    EXPECT_TRUE(sheet.Press(SheetCancel));
}

TEST(CarefulVoiceSheet, WithoutTheModeCancelAsksNothing) {
    ScriptedDesktop desktop;
    RefaceSheet sheet;
    sheet.Show(0);
    sheet.Type(108, "77");
    EXPECT_TRUE(sheet.Press(SheetCancel));
}

} // namespace
} // namespace tonewright
