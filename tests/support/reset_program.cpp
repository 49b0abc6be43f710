#include "support/reset_program.h"

#include "common/audio_output.h"
#include "common/desktop.h"
#include "common/folders.h"
#include "common/settings.h"
#include "common/sound.h"
#include "common/view/theme.h"
#include "common/view/tool_tip.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "database/database_file.h"
#include "database/database_undo.h"
#include "database/database_window.h"
#include "extras/list_access.h"
#include "extras/view/archive_window.h"
#include "midi/instrument_sound.h"
#include "midi/instruments/builtin_instruments.h"
#include "midi/midi_api.h"
#include "shell/command_queue.h"
#include "shell/command_state.h"
#include "shell/documents.h"
#include "shell/history.h"
#include "shell/list_origin.h"
#include "shell/list_state.h"
#include "shell/settings_flow.h"
#include "shell/settings_migration.h"
#include "shell/shell_window.h"
#include "shell/undo.h"

#include <QApplication>
#include <QClipboard>

namespace tonewright {
namespace {

// Windows that are going, before the variables that they may look at.
void ResetWindows() {
    if (!qobject_cast<QApplication *>(QCoreApplication::instance())) {
        return;
    }
    DropArchiveWindow();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::clipboard()->clear();
    while (QApplication::overrideCursor()) {
        QApplication::restoreOverrideCursor();
    }
    QCoreApplication::sendPostedEvents();
}

} // namespace

void ResetProgram() {
    ResetWindows();
    StopSounds();
    ThemeUnload();
    TheDesktop = {};
    TheShellWindow = {};
    TheListAccess = {};
    TheDatabaseViews = {};
    TheMidi = {};
    TheSoundDevice = PlatformSoundDevice();
    EndInstrumentSound();
    SetInstrumentSound({});
    TheAudioOutput = PlatformAudioOutput();
    ThePreviousInstallation = {};
    HistoryMenuChanged = nullptr;
    PlatformFolders = {};
    ResetSettings();
    ResetBuiltinInstruments();
    CurrentDriverId = NoDriverId;
    CurrentDocumentPath = "Untitled.Twl";
    CurrentDocumentTime = 0;
    DatabasePathOfThisRun.clear();
    MainList = {};
    MainItemFonts = {};
    ForgetVoiceName();
    MidiInPort = MidiOutPort = -1;
    SynthFirmware = 0;
    MainListState = {};
    MainListOrigin = NoListOrigin;
    OriginOfDownload = NoDownload;
    TheDocumentFile = {};
    PendingOpenPath.clear();
    ClearPosted();
    UndoEnd();
    DatabaseUndoEnd();
    HistoryEnd();
    RestartNeeded = false;
    UnregisterToolTipClass();
    ResetCommandState();
    RestoreDriverRows();
}

} // namespace tonewright
