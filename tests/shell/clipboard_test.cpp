// Copy and Paste of a voice, with the clipboard's content checked like any other input.
#include "shell/clipboard.h"
#include "shell_fixture.h"

#include <algorithm>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

const std::string ClipboardError = "Clipboard error";

void PutNumber(Bytes &bytes, std::size_t offset, std::uint32_t number) {
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[offset + i] = static_cast<std::uint8_t>(number >> (8 * i));
    }
}

// A block as another program would lay it down, written out by hand.
Bytes Block(const std::string &driver, std::size_t payloadSize, std::size_t extraSize = 0) {
    Bytes bytes = {'o', 'W', 'N', 'T', 52, 0, 0, 0};
    bytes.resize(52 + payloadSize + extraSize, 0x20);
    PutNumber(bytes, 8, static_cast<std::uint32_t>(payloadSize));
    PutNumber(bytes, 12, static_cast<std::uint32_t>(extraSize));
    std::copy(driver.begin(), driver.end(), bytes.begin() + 16);
    std::fill(bytes.begin() + 20, bytes.begin() + 52, std::uint8_t{0});
    return bytes;
}

Bytes Dx7Block(const std::string &tenByteName) {
    Bytes bytes = Block("y7XD", 156);
    std::fill(bytes.begin() + 52, bytes.end(), std::uint8_t{0});
    std::copy(tenByteName.begin(), tenByteName.end(), bytes.begin() + 52 + 145);
    return bytes;
}

class Clipboard : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        OpenBank();
        MainListState.dirty = false;
    }
    void Put(Bytes bytes) {
        desktop.clipboard = std::move(bytes);
        ClipboardChanged();
    }
    ContextEntry PasteEntry() {
        for (const ContextEntry &entry : BuildContextMenu(3)) {
            if (entry.id == CommandPaste) {
                return entry;
            }
        }
        return {};
    }
    // Pastes onto row 5 and expects the message.
    void ExpectRefused(Bytes bytes, const std::string &what) {
        SCOPED_TRACE(what);
        Put(std::move(bytes));
        EXPECT_TRUE(CommandAllowed(CommandPaste));
        const auto before = MainList.items;
        const int levels = UndoCount();
        MainListState.clickedIndex = 5;
        desktop.ExpectMessage(ClipboardError);
        EXPECT_EQ(RunCommand(CommandPaste), 0);
        EXPECT_EQ(MainList.items, before);
        EXPECT_FALSE(MainListState.dirty);
        EXPECT_EQ(UndoCount(), std::min(levels + 1, 3));
        EXPECT_EQ(ClipboardVoiceName(nullptr), "");
        EXPECT_EQ(PasteEntry().text, "Paste");
        EXPECT_TRUE(PasteEntry().enabled);
        desktop.ExpectNothingLeft();
    }
};

TEST_F(Clipboard, CopyAndPasteOntoAnotherRowLeavesTwoEqualVoicesAndADirtyDocument) {
    ListSelect(MainList, 2);
    EXPECT_EQ(RunCommand(CommandCopy), 1);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(UndoCount(), 0);
    ListSelect(MainList, 7);
    repaints = 0;
    EXPECT_EQ(RunCommand(CommandPaste), 1);
    EXPECT_EQ(*ListVoice(MainList, 7), *ListVoice(MainList, 2));
    EXPECT_EQ(NameAt(7), "VOICE 03");
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_GE(repaints, 1);
    EXPECT_EQ(UndoCount(), 1);
    RunCommand(CommandUndo);
    EXPECT_EQ(NameAt(7), "VOICE 08");
}

TEST_F(Clipboard, TheCopyOutlivesTheVoiceAndTheDocument) {
    ListSelect(MainList, 2);
    RunCommand(CommandCopy);
    SetNameAt(2, "CHANGED   ");
    ListSelect(MainList, 7);
    RunCommand(CommandPaste);
    EXPECT_EQ(NameAt(7), "VOICE 03");
    SetNameAt(7, "AGAIN     "); // the row has a copy of its own
    RunCommand(CommandPaste);
    EXPECT_EQ(NameAt(7), "VOICE 03");
}

TEST_F(Clipboard, TheBlockLiesThereWholeWithTheNameAsPlainText) {
    ListSelect(MainList, 0);
    RunCommand(CommandCopy);
    ASSERT_TRUE(desktop.clipboard);
    Bytes expected = Block("y7XD", 156);
    ASSERT_EQ(desktop.clipboard->size(), expected.size());
    EXPECT_EQ(Bytes(desktop.clipboard->begin(), desktop.clipboard->begin() + 52),
              Bytes(expected.begin(), expected.begin() + 52));
    EXPECT_EQ(
        std::string(desktop.clipboard->begin() + 52 + 145, desktop.clipboard->begin() + 52 + 155),
        "VOICE 01  ");
    EXPECT_EQ(desktop.clipboardNames, std::vector<std::string>{"VOICE 01"});
}

TEST_F(Clipboard, TheNameIsHandedOverAsUtf8) {
    SetNameAt(0, "\xC4RGER \xFC  ");
    ListSelect(MainList, 0);
    RunCommand(CommandCopy);
    EXPECT_EQ(desktop.clipboardNames.back(), "\xC3\x84RGER \xC3\xBC");
    EXPECT_EQ(ClipboardVoiceName(nullptr), "\xC3\x84RGER \xC3\xBC");
}

TEST_F(Clipboard, CopyTakesTheClickedRowBeforeTheSelection) {
    ListSelect(MainList, 0);
    MainListState.clickedIndex = 4;
    RunCommand(CommandCopy);
    EXPECT_EQ(desktop.clipboardNames.back(), "VOICE 05");
    EXPECT_EQ(MainListState.clickedIndex, -1);
    RunCommand(CommandCopy);
    EXPECT_EQ(desktop.clipboardNames.back(), "VOICE 01");
}

TEST_F(Clipboard, CopyWithoutARowOrAVoiceLeavesTheClipboardAlone) {
    ListSelect(MainList, NoRow);
    EXPECT_EQ(RunCommand(CommandCopy), 0);
    ListSelect(MainList, 3);
    ListTakeVoice(MainList, 3);
    EXPECT_EQ(RunCommand(CommandCopy), 0);
    EXPECT_TRUE(desktop.clipboardNames.empty());
    EXPECT_FALSE(desktop.clipboard);
}

TEST_F(Clipboard, AClipboardThatIsHeldByAnotherProgramIsNotAskedAbout) {
    desktop.clipboardWorks = false;
    ListSelect(MainList, 0);
    EXPECT_EQ(ClipboardCopy(nullptr, *ListVoice(MainList, 0)), 1);
    EXPECT_EQ(RunCommand(CommandCopy), 1);
    EXPECT_FALSE(desktop.clipboard);
}

TEST_F(Clipboard, PasteWithoutASelectionOrAClickUsesAnUndoLevelAndNothingElse) {
    Put(Dx7Block("OTHER     "));
    ListSelect(MainList, NoRow);
    const auto before = MainList.items;
    EXPECT_EQ(RunCommand(CommandPaste), 0);
    EXPECT_EQ(MainList.items, before);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(UndoCount(), 1);
}

TEST_F(Clipboard, PasteFillsARowWithoutAVoice) {
    Put(Dx7Block("OTHER     "));
    ListTakeVoice(MainList, 6);
    ListSelect(MainList, 6);
    desktop.ExpectMessage(LevelError); // a level cannot hold such a row
    EXPECT_EQ(RunCommand(CommandPaste), 1);
    EXPECT_EQ(NameAt(6), "OTHER");
}

TEST_F(Clipboard, PasteIntoAnEmptyListDoesNothing) {
    Put(Dx7Block("OTHER     "));
    ListReset(MainList);
    EXPECT_EQ(RunCommand(CommandPaste), 0);
    EXPECT_EQ(ListCount(MainList), 0);
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(Clipboard, AVoiceOfTheOtherDriverReportsAnErrorAndUsesAnUndoLevel) {
    const Bytes reface = Block("xdFR", 38, 112);
    ExpectRefused(reface, "reface DX");
    // The same voice is welcome where it belongs.
    CurrentDriverId = RefaceDriverId;
    EXPECT_EQ(ClipboardPaste(nullptr, MainList, 0), 1);
    EXPECT_EQ(ListVoice(MainList, 0)->bytes, reface);
}

TEST_F(Clipboard, NoDriverTakesNoVoice) {
    CurrentDriverId = NoDriverId;
    Put(Dx7Block("OTHER     "));
    EXPECT_EQ(ClipboardPaste(nullptr, MainList, 0), 0);
    EXPECT_EQ(NameAt(0), "VOICE 01");
}

TEST_F(Clipboard, ContentThatIsNoVoiceReportsAnErrorAndKeepsTheRow) {
    const Bytes good = Dx7Block("OTHER     ");
    ExpectRefused({}, "nothing");
    ExpectRefused({'o', 'W', 'N', 'T'}, "the magic alone");
    ExpectRefused(Bytes(good.begin(), good.begin() + 51), "a header that is one byte short");
    ExpectRefused(Bytes(good.begin(), good.begin() + 52), "a header without its payload");
    ExpectRefused(Bytes(good.begin(), good.end() - 1), "a block that is one byte short");
    Bytes bytes = good;
    bytes[0] = 'O';
    ExpectRefused(bytes, "another magic");
    bytes = good;
    std::reverse(bytes.begin(), bytes.begin() + 4);
    ExpectRefused(bytes, "the magic in the other order");
    bytes = good;
    bytes[16] ^= 1;
    ExpectRefused(bytes, "a driver that nobody knows");
    ExpectRefused(Block("????", 156), "no driver");
    ExpectRefused(Bytes(1'000'000, 0xFF), "a megabyte of ones");
}

TEST_F(Clipboard, SizesThatLieAboutTheLengthReportAnErrorAndKeepTheRow) {
    struct Lie {
        std::size_t offset;
        std::uint32_t number;
    };
    for (const Lie &lie :
         {Lie{4, 53}, Lie{4, 0xFFFFFFFF}, Lie{4, 0x80000000}, Lie{8, 157}, Lie{8, 0xFFFFFFFF},
          Lie{8, 0xFFFFFFCC}, Lie{12, 1}, Lie{12, 0xFFFFFFFF}, Lie{12, 0x7FFFFFFF}}) {
        Bytes bytes = Dx7Block("OTHER     ");
        PutNumber(bytes, lie.offset, lie.number);
        ExpectRefused(bytes, std::to_string(lie.number) + " at " + std::to_string(lie.offset));
    }
    // All three near their limit: the sum does not fit into 32 bits.
    Bytes bytes = Dx7Block("OTHER     ");
    for (const std::size_t offset : {4u, 8u, 12u}) {
        PutNumber(bytes, offset, 0xFFFFFFFF);
    }
    ExpectRefused(bytes, "a sum beyond 32 bits");
}

TEST_F(Clipboard, AVoiceThatIsTooShortForItsDriverHarmsNothing) {
    Put(Block("y7XD", 3));
    EXPECT_EQ(ClipboardPaste(nullptr, MainList, 4), 1);
    EXPECT_EQ(BuildContextMenu(4).size(), 17u);
    const auto saved = home.File("short.syx");
    CurrentDocumentPath = saved;
    RunCommand(CommandSave);
    EXPECT_EQ(ReadTestFile(saved).size(), 4104u);
}

TEST_F(Clipboard, PasteFollowsTheClipboard) {
    ClipboardChanged();
    EXPECT_FALSE(CommandAllowed(CommandPaste));
    Put(Dx7Block("OTHER     "));
    EXPECT_TRUE(CommandAllowed(CommandPaste));
    RefreshCommands(); // the other rules leave it alone
    EXPECT_TRUE(CommandAllowed(CommandPaste));
    desktop.clipboard.reset();
    ClipboardChanged();
    EXPECT_FALSE(CommandAllowed(CommandPaste));
    RefreshCommands();
    EXPECT_FALSE(CommandAllowed(CommandPaste));
}

TEST_F(Clipboard, WithoutAVoicePasteIsGreyInTheContextMenuAndFailsWhenItIsRunAllTheSame) {
    ClipboardChanged();
    EXPECT_EQ(PasteEntry().text, "Paste");
    EXPECT_FALSE(PasteEntry().enabled);
    const auto before = MainList.items;
    EXPECT_EQ(RunUserCommand(CommandPaste), 0);
    EXPECT_EQ(UndoCount(), 0);
    desktop.ExpectMessage(ClipboardError);
    EXPECT_EQ(RunCommand(CommandPaste), 0);
    EXPECT_EQ(MainList.items, before);
}

TEST_F(Clipboard, TheContextMenuNamesTheVoiceOnTheClipboard) {
    Put(Dx7Block("OTHER     "));
    EXPECT_EQ(PasteEntry().text, "Paste OTHER");
    EXPECT_TRUE(PasteEntry().enabled);
    VerboseRightClickMenu = 0;
    EXPECT_EQ(PasteEntry().text, "Paste");
    EXPECT_TRUE(PasteEntry().enabled);
}

TEST_F(Clipboard, CutIsGreyAndDoesNothing) {
    ListSelect(MainList, 0);
    EXPECT_FALSE(CommandAllowed(CommandCut));
    EXPECT_EQ(RunUserCommand(CommandCut), 0);
    EXPECT_EQ(RunCommand(CommandCut), 0);
    EXPECT_EQ(NameAt(0), "VOICE 01");
    EXPECT_FALSE(desktop.clipboard);
    EXPECT_EQ(UndoCount(), 0);
}

} // namespace
} // namespace tonewright
