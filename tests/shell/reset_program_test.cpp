// What the tests of a program rely on: whatever one of them has changed is put back before the
// next.
#include "support/reset_program.h"

#include "common/desktop.h"
#include "common/folders.h"
#include "common/settings.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "drivers/dx7/voice_codec.h"
#include "midi/instruments/builtin_instruments.h"
#include "midi/midi_api.h"
#include "shell/command_queue.h"
#include "shell/command_state.h"
#include "shell/documents.h"
#include "shell/history.h"
#include "shell/list_origin.h"
#include "shell/list_state.h"
#include "shell/shell_window.h"
#include "shell/undo.h"
#include "support/bank_bytes.h"
#include "support/driver_rows.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

TEST(ResetProgram, PutsEveryVariableBackToItsStart) {
    TheDesktop.ShiftKeyDown = [] { return true; };
    TheShellWindow.Raise = [] {};
    TheMidi.Pm_CountDevices = [] { return 7; };
    HistoryMenuChanged = [] {};
    PlatformFolders.documents = "/documents";
    ApplicationPath = "/program/";
    OpenPath = "/banks/";
    SysexWait = 1;
    CreateBackups = 0;
    MaxUndoLevel = 7;
    CurrentDriverId = Dx7DriverId;
    CurrentDocumentPath = "/banks/one.syx";
    MidiInPort = MidiOutPort = 2;
    SynthFirmware = 0x10200;
    for (int row = 0; row < 32; ++row) {
        ListSetVoice(MainList, ListAdd(MainList),
                     MakeVoiceObject(Dx7DriverId, TestUnpackedVoice()));
    }
    EXPECT_STREQ(VoiceObjectName(MainList.items[0]), "E.PIANO 1x");
    MainListState = {.clickedIndex = 3, .dirty = true};
    OriginOfDownload = 5;
    PendingOpenPath = "/banks/two.syx";
    Post([] {});
    UndoInit(nullptr);
    EXPECT_EQ(UndoPush(nullptr, MainList), 1);
    SetRule(CommandRule::VoiceOnClipboard, false);
    FaultsOf(BuiltinInstrument::Dx7).silent = true;
    Dx7Row.OpenBank = nullptr;

    ResetProgram();

    EXPECT_FALSE(ShiftKeyDown());
    EXPECT_FALSE(TheShellWindow.Raise);
    EXPECT_EQ(TheMidi.Pm_CountDevices(), 0);
    EXPECT_FALSE(HistoryMenuChanged);
    EXPECT_EQ(PlatformFolders.documents, "");
    EXPECT_EQ(ApplicationPath, "");
    EXPECT_EQ(OpenPath, "");
    EXPECT_EQ(SysexWait, 1500u);
    EXPECT_EQ(CreateBackups, 1u);
    EXPECT_EQ(MaxUndoLevel, 3u);
    EXPECT_EQ(CurrentDriverId, NoDriverId);
    EXPECT_EQ(CurrentDocumentPath, "Untitled.Twl");
    EXPECT_EQ(MidiInPort, -1);
    EXPECT_EQ(MidiOutPort, -1);
    EXPECT_EQ(SynthFirmware, 0u);
    EXPECT_EQ(ListCount(MainList), 0);
    EXPECT_STREQ(VoiceObjectName({}), "Unknown Voice");
    EXPECT_EQ(MainListState.clickedIndex, -1);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(OriginOfDownload, NoDownload);
    EXPECT_EQ(PendingOpenPath, "");
    EXPECT_FALSE(RunNextPosted());
    EXPECT_FALSE(UndoAvailable());
    EXPECT_FALSE(RuleAllows(CommandRule::UndoLevelThere));
    EXPECT_TRUE(RuleAllows(CommandRule::VoiceOnClipboard));
    EXPECT_FALSE(FaultsOf(BuiltinInstrument::Dx7).silent);
    EXPECT_TRUE(Dx7Row.OpenBank);
}

} // namespace
} // namespace tonewright
