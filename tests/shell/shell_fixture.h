// The shell's engine without a window: a temporary home, a scripted desktop, a window that records
// what it is asked for.
#pragma once

#include "common/folders.h"
#include "common/settings.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "shell/command_table.h"
#include "shell/documents.h"
#include "shell/list_state.h"
#include "shell/shell_window.h"
#include "shell/undo.h"
#include "support/bank_bytes.h"
#include "support/driver_rows.h"
#include "support/put_back.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tonewright {

inline const std::string SaveQuestion =
    "Your current document has not been saved. Do you wish to save it?\n\nClick on Yes to save it, "
    "or click on No to abandon it.\n\nClick on Cancel to return to the main window of Tonewright.";
inline const std::string ReadError =
    "There has been an error reading this file. It might be corrupted.";
inline const std::string WriteError = "There has been an error writing this file. Please check the "
                                      "available space on the destination drive.";
inline const std::string BackupQuestion =
    "Warning: there has been an error creating a backup for your file.\r\n\r\nClick on Yes to "
    "proceed, or click on No to abort this save.";
inline const std::string LevelError = "There has been an error building this undo level.";
inline const std::string ConfirmSound = "/program/sounds/confirm.wav";

class ShellTest : public testing::Test {
protected:
    void SetUp() override {
        PlatformFolders = {.applicationData = home.path.string(),
                           .documents = home.path.string(),
                           .pictures = home.path.string(),
                           .programs = home.path.string()};
        ApplicationPath = "/program/";
        OpenPath = home.Folder();
        OpenExportPath = home.Folder();
        OpenImportPath = "/imports/";
        CreateBackups = 0;
        MaxUndoLevel = 3;
        TheShellWindow.SetTitle = [this](const std::string &title) { titles.push_back(title); };
        TheShellWindow.RepaintList = [this] { ++repaints; };
        TheShellWindow.Raise = [this] { ++raises; };
        TheShellWindow.Close = [this] { ++closes; };
        UndoInit(nullptr);
        RefreshCommands();
        RefreshCopy();
    }

    // Opens a bank of the voices "VOICE 01" to "VOICE 32"; row 0 is selected then. Whatever was
    // recorded up to here is forgotten.
    void OpenBank(const std::string &name = "bank.syx") {
        PendingOpenPath = home.Write(name, TestBank());
        ASSERT_EQ(RunCommand(CommandOpen), 1);
        Forget();
    }
    void Forget() {
        desktop.sounds.clear();
        desktop.statusTexts.clear();
        titles.clear();
        repaints = raises = closes = 0;
    }

    static VoiceObject RefaceDxVoice(std::uint8_t mark) {
        return MakeVoiceObject(RefaceDriverId, std::vector<std::uint8_t>(38, mark),
                               std::vector<std::uint8_t>(112, mark));
    }

    // The first ten bytes of the name in the voice's own bytes; "-" for a row without a voice.
    static std::string NameAt(int row) {
        const VoiceObject *voice = ListVoice(MainList, row);
        if (!voice) {
            return "-";
        }
        const auto parts = PayloadOf(*voice);
        std::string name(parts->payload.begin() + 145, parts->payload.begin() + 155);
        return name.substr(0, name.find_last_not_of(' ') + 1);
    }
    static std::vector<std::string> Names(int first, int last) {
        std::vector<std::string> names;
        for (int row = first; row <= last; ++row) {
            names.push_back(NameAt(row));
        }
        return names;
    }
    static void SetNameAt(int row, const std::string &tenBytes) {
        const auto payload = MutablePayloadOf(MainList.items[static_cast<std::size_t>(row)]);
        for (std::size_t i = 0; i < 10; ++i) {
            payload[145 + i] = static_cast<std::uint8_t>(tenBytes[i]);
        }
    }

    PutBack<ShellWindow> formerWindow{TheShellWindow};
    TempFolder home;
    ScriptedDesktop desktop;
    std::vector<std::string> titles; // given to the window, oldest first
    int repaints = 0;
    int raises = 0;
    int closes = 0;
};

} // namespace tonewright
