// What "Select Synthesizer" shows and stores.
#include "shell/synth_selection.h"

#include "common/settings.h"
#include "core/current.h"
#include "core/voice_list.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "shell/command_state.h"
#include "shell/list_state.h"
#include "support/fake_midi.h"
#include "support/family_names.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

using Texts = std::vector<std::string>;

const std::string SaveQuestion =
    "Your current document has not been saved. Do you wish to save it?\n\nClick on Yes to save it, "
    "or click on No to abandon it.\n\nClick on Cancel to return to the main window of Tonewright.";

class SynthSelectionTest : public testing::Test {
protected:
    void SetUp() override {
        CurrentDriverId = RefaceDriverId;
        SelectKeyboardName = RefaceName;
        SelectKeyboardMidiIn = "Keys";
        SelectKeyboardMidiOut = "Module";
        SelectKeyboardAutodetect = 1;
        CurrentMidiChannel = 4;
    }
    // Two inputs, two outputs, and one device that is both, at index 2.
    void AddDevices() {
        midi.AddInput("Keys");
        midi.AddOutput("Module");
        midi.AddDevice({.name = "Both", .input = true, .output = true});
        midi.AddInput("Pads");
        midi.AddOutput("Sampler");
    }
    static SynthSelection Open() { return OpenSynthSelection(CurrentSelectParams()); }
    static int Accept(const SynthSelection &selection) {
        return AcceptSynthSelection(selection, CurrentSelectParams());
    }

    ScriptedDesktop desktop;
    FakeMidi midi;
};

TEST_F(SynthSelectionTest, TheChoicesAreUnknownAndTheFamilies) {
    EXPECT_EQ(Open().synths.items, (Texts{"Unknown", Dx7Name, RefaceName}));
}

TEST_F(SynthSelectionTest, TheStoredValuesAreShown) {
    AddDevices();
    const SynthSelection selection = Open();
    EXPECT_EQ(selection.synths.selected, 2);
    EXPECT_EQ(selection.inputs.items, (Texts{"Keys", "Both", "Pads"}));
    EXPECT_EQ(selection.outputs.items, (Texts{"Module", "Both", "Sampler"}));
    EXPECT_EQ(selection.inputs.selected, 0);
    EXPECT_EQ(selection.outputs.selected, 0);
    EXPECT_TRUE(selection.detect);
    EXPECT_TRUE(selection.detectEnabled);
    EXPECT_EQ(selection.midiChannel, 4);
}

TEST_F(SynthSelectionTest, ANameThatIsInNoRowSelectsUnknown) {
    for (const char *name : {"", "Some other instrument", "reface"}) {
        SelectKeyboardName = name;
        EXPECT_EQ(Open().synths.selected, 0) << name;
    }
}

TEST_F(SynthSelectionTest, ANameSelectsTheItemThatBeginsWithItInAnyCase) {
    SelectKeyboardName = "yamaha REFACE";
    EXPECT_EQ(Open().synths.selected, 2);
    SelectKeyboardName = "Yamaha";
    EXPECT_EQ(Open().synths.selected, 1);
}

TEST_F(SynthSelectionTest, ADeviceWithoutARecordIsPassedOver) {
    AddDevices();
    midi.devices[2].absent = true;
    EXPECT_EQ(Open().inputs.items, (Texts{"Keys", "Pads"}));
    EXPECT_EQ(Open().outputs.items, (Texts{"Module", "Sampler"}));
}

TEST_F(SynthSelectionTest, ADeviceInBothListsMayBeSelectedInEach) {
    AddDevices();
    SelectKeyboardMidiIn = SelectKeyboardMidiOut = "Both";
    SynthSelection selection = Open();
    EXPECT_EQ(selection.inputs.selected, 1);
    EXPECT_EQ(selection.outputs.selected, 1);
    EXPECT_EQ(Accept(selection), 1);
    EXPECT_EQ(SelectKeyboardMidiIn, "Both");
    EXPECT_EQ(SelectKeyboardMidiOut, "Both");
}

TEST_F(SynthSelectionTest, OfTwoDevicesOfTheSameNameTheFirstIsSelected) {
    midi.AddInput("Other");
    midi.AddInput("Keys");
    midi.AddInput("Keys");
    EXPECT_EQ(Open().inputs.selected, 1);
}

TEST_F(SynthSelectionTest, ADeviceOfTheWholeNameGoesBeforeOneThatBeginsWithIt) {
    midi.AddInput("Keys 2");
    midi.AddInput("Keys");
    EXPECT_EQ(Open().inputs.selected, 1);
}

TEST_F(SynthSelectionTest, AStoredNameThatIsNotThereSelectsTheFirstItemWhichOkStores) {
    AddDevices();
    SelectKeyboardMidiIn = SelectKeyboardMidiOut = "unplugged";
    const SynthSelection selection = Open();
    EXPECT_EQ(selection.inputs.selected, 0);
    EXPECT_EQ(selection.outputs.selected, 0);
    EXPECT_EQ(SelectKeyboardMidiIn, "unplugged");
    EXPECT_EQ(Accept(selection), 1);
    EXPECT_EQ(SelectKeyboardMidiIn, "Keys");
    EXPECT_EQ(SelectKeyboardMidiOut, "Module");
}

TEST_F(SynthSelectionTest, WithoutDevicesTheListsAreEmptyAndOkStoresEmptyNames) {
    const SynthSelection selection = Open();
    EXPECT_TRUE(selection.inputs.items.empty());
    EXPECT_EQ(selection.inputs.selected, NoItem);
    EXPECT_EQ(selection.outputs.selected, NoItem);
    EXPECT_EQ(Accept(selection), 1);
    EXPECT_EQ(SelectKeyboardMidiIn, "");
    EXPECT_EQ(SelectKeyboardMidiOut, "");
}

TEST_F(SynthSelectionTest, ChoosingTheDx7GreysTheCheckBoxAndKeepsItsState) {
    SynthSelection selection = Open();
    selection.synths.selected = 1;
    SynthChosen(selection);
    EXPECT_FALSE(selection.detectEnabled);
    EXPECT_TRUE(selection.detect);
    EXPECT_EQ(Accept(selection), 1);
    EXPECT_EQ(SelectKeyboardAutodetect, 1u);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
}

TEST_F(SynthSelectionTest, ChoosingTheRefaceDxAllowsTheCheckBox) {
    SelectKeyboardName = Dx7Name;
    SynthSelection selection = Open();
    EXPECT_FALSE(selection.detectEnabled);
    selection.synths.selected = 2;
    SynthChosen(selection);
    EXPECT_TRUE(selection.detectEnabled);
}

TEST_F(SynthSelectionTest, ChoosingUnknownLeavesTheCheckBoxAsItIs) {
    SynthSelection selection = Open();
    selection.synths.selected = 0;
    SynthChosen(selection);
    EXPECT_TRUE(selection.detectEnabled);
    selection.synths.selected = 1;
    SynthChosen(selection);
    selection.synths.selected = 0;
    SynthChosen(selection);
    EXPECT_FALSE(selection.detectEnabled);
}

TEST_F(SynthSelectionTest, UnknownWithOkKeepsTheDriver) {
    SynthSelection selection = Open();
    selection.synths.selected = 0;
    EXPECT_EQ(Accept(selection), 1);
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
    EXPECT_EQ(SelectKeyboardName, "Unknown");
}

TEST_F(SynthSelectionTest, OkStoresAllChoices) {
    AddDevices();
    SynthSelection selection = Open();
    selection.synths.selected = 1;
    selection.inputs.selected = 2;
    selection.outputs.selected = 2;
    selection.detect = false;
    selection.midiChannel = 16;
    EXPECT_EQ(Accept(selection), 1);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_EQ(SelectKeyboardName, Dx7Name);
    EXPECT_EQ(SelectKeyboardMidiIn, "Pads");
    EXPECT_EQ(SelectKeyboardMidiOut, "Sampler");
    EXPECT_EQ(SelectKeyboardAutodetect, 0u);
    EXPECT_EQ(CurrentMidiChannel, 16u);
}

TEST_F(SynthSelectionTest, OkEmptiesTheListAndKeepsTheDocument) {
    ListAdd(MainList);
    RefreshCommands();
    CurrentDocumentPath = "/somewhere/bank.syx";
    EXPECT_EQ(Accept(Open()), 1);
    EXPECT_EQ(ListCount(MainList), 0);
    EXPECT_FALSE(RuleAllows(CommandRule::ListHasRows)); // also while the search goes on
    EXPECT_EQ(CurrentDocumentPath, "/somewhere/bank.syx");
}

TEST_F(SynthSelectionTest, WhenTheUserWantsToStayNothingIsStored) {
    AddDevices();
    ListAdd(MainList);
    MainListState.dirty = true;
    SynthSelection selection = Open();
    selection.synths.selected = 1;
    selection.inputs.selected = 2;
    selection.detect = false;
    selection.midiChannel = 9;
    desktop.ExpectYesNoCancel(SaveQuestion, ResultCancel);
    EXPECT_EQ(Accept(selection), 0);
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
    EXPECT_EQ(SelectKeyboardName, RefaceName);
    EXPECT_EQ(SelectKeyboardMidiIn, "Keys");
    EXPECT_EQ(SelectKeyboardAutodetect, 1u);
    EXPECT_EQ(CurrentMidiChannel, 4u);
    EXPECT_EQ(ListCount(MainList), 1);
    EXPECT_TRUE(MainListState.dirty);
}

TEST_F(SynthSelectionTest, LongNamesAreCutTo260Bytes) {
    midi.AddInput(std::string(300, 'n'));
    EXPECT_EQ(Accept(Open()), 1);
    EXPECT_EQ(SelectKeyboardMidiIn, std::string(260, 'n'));
}

} // namespace
} // namespace tonewright
