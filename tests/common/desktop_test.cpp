// The message forms, the calls through an empty table, and which sound an event plays.
#include "common/desktop.h"

#include "common/folders.h"
#include "common/settings.h"
#include "support/put_back.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

using namespace tonewright;

namespace {

QWidget *const SomeWindow = reinterpret_cast<QWidget *>(0x10);
const std::string NoteText = "Note: if you disable this message now, you can re-enable it at any "
                             "time through the Setup window.";

// Keeps the request that was run, and answers it.
struct MessageRecorder {
    PutBack<Desktop> former{TheDesktop};
    MessageRequest request;
    int runs = 0;

    explicit MessageRecorder(int answer, int state = -1) {
        TheDesktop.RunMessage = [this, answer, state](MessageRequest &run) {
            request = run;
            ++runs;
            run.result = answer;
            if (state >= 0) {
                run.state1 = state;
            }
        };
    }
};

// Records what is played; plays it only if it is the `playable` one or that is empty.
struct SoundRecorder {
    PutBack<Desktop> former{TheDesktop};
    std::vector<std::string> tried;
    std::string refused;

    SoundRecorder() {
        TheDesktop.PlaySoundFile = [this](const std::string &path) {
            tried.push_back(path);
            return path != refused;
        };
    }
};

void UseFolders(const TempFolder &temp) {
    PlatformFolders.applicationData = temp.File("app");
    MakeProgramFolders();
    ApplicationPath = temp.Folder();
}

} // namespace

TEST(ShowMessage, HasOneButtonAndTheUsualFrame) {
    MessageRecorder recorder(ResultYes);
    ShowMessage(SomeWindow, "It is done.");
    EXPECT_EQ(recorder.runs, 1);
    EXPECT_EQ(recorder.request.owner, SomeWindow);
    EXPECT_EQ(recorder.request.flags, 0x40023u);
    EXPECT_EQ(recorder.request.picture, 0x8000001u);
    EXPECT_EQ(recorder.request.caption, "Message");
    EXPECT_EQ(recorder.request.text, "It is done.");
    EXPECT_EQ(recorder.request.button1, "Dismiss");
}

TEST(AskYesNo, HasTwoButtons) {
    MessageRecorder recorder(ResultNo);
    EXPECT_EQ(AskYesNo(SomeWindow, "Shall I?"), 7);
    EXPECT_EQ(recorder.request.flags, 0x40027u);
    EXPECT_EQ(recorder.request.caption, "Message");
    EXPECT_EQ(recorder.request.button1, "Yes");
    EXPECT_EQ(recorder.request.button2, "No");
    EXPECT_EQ(recorder.request.picture, 0x8000001u);
}

TEST(AskYesNoCancel, HasThreeButtons) {
    MessageRecorder recorder(ResultCancel);
    EXPECT_EQ(AskYesNoCancel(nullptr, "Shall I?"), 2);
    EXPECT_EQ(recorder.request.flags, 0x4002Fu);
    EXPECT_EQ(recorder.request.button1, "Yes");
    EXPECT_EQ(recorder.request.button2, "No");
    EXPECT_EQ(recorder.request.button3, "Cancel");
}

TEST(AskOnce, HasACheckBoxWithTheStateOfTheFlag) {
    MessageRecorder recorder(ResultYes);
    std::uint32_t flag = 1;
    EXPECT_EQ(AskOnce(SomeWindow, "Shall I?", flag), 6);
    EXPECT_EQ(recorder.request.flags, 0x48827u);
    EXPECT_EQ(recorder.request.caption, "Message");
    EXPECT_EQ(recorder.request.button1, "Yes");
    EXPECT_EQ(recorder.request.button2, "No");
    EXPECT_EQ(recorder.request.check1, "Show me this message again next time.");
    EXPECT_EQ(recorder.request.state1, 1);
    EXPECT_EQ(recorder.request.note1, NoteText);
    EXPECT_EQ(flag, 1u);
}

TEST(AskOnce, TakesTheBoxAlsoWhenTheAnswerIsNo) {
    MessageRecorder recorder(ResultNo, 0);
    std::uint32_t flag = 1;
    EXPECT_EQ(AskOnce(SomeWindow, "Shall I?", flag), 7);
    EXPECT_EQ(flag, 0u);
}

TEST(AskOnce, CanSwitchTheFlagOnAgain) {
    MessageRecorder recorder(ResultYes, 1);
    std::uint32_t flag = 0;
    AskOnce(SomeWindow, "Shall I?", flag);
    EXPECT_EQ(recorder.request.state1, 0);
    EXPECT_EQ(flag, 1u);
}

TEST(ShowOnce, HasOneOkButtonAndTheCheckBox) {
    MessageRecorder recorder(ResultYes, 0);
    std::uint32_t flag = 1;
    ShowOnce(SomeWindow, "Mind the gap.", flag);
    EXPECT_EQ(recorder.request.flags, 0x48823u);
    EXPECT_EQ(recorder.request.button1, "Ok");
    EXPECT_EQ(recorder.request.check1, "Show me this message again next time.");
    EXPECT_EQ(recorder.request.note1, NoteText);
    EXPECT_EQ(flag, 0u);
}

TEST(RunMessage, WithoutADialogLeavesTheResultUntouched) {
    MessageRequest request;
    EXPECT_EQ(RunMessage(request), 0);
    EXPECT_NE(AskYesNo(nullptr, "Shall I?"), ResultYes);
    EXPECT_NE(AskYesNoCancel(nullptr, "Shall I?"), ResultYes);
    std::uint32_t flag = 5;
    EXPECT_NE(AskOnce(nullptr, "Shall I?", flag), ResultYes);
    EXPECT_EQ(flag, 5u);
}

TEST(EmptyDesktop, DoesNothingAndAnswersNo) {
    ShowMessage(nullptr, "text");
    EXPECT_FALSE(SetStatusText(nullptr, "text"));
    EXPECT_FALSE(SetProgress(1, 2));
    EXPECT_FALSE(ShowBusyBox(nullptr, "text"));
    SetBusyText("text");
    CloseBusyBox();
    EXPECT_EQ(ChooseOpenFile(nullptr, "path", 0), std::nullopt);
    EXPECT_EQ(ChooseImportFile(nullptr, "path", 0), std::nullopt);
    EXPECT_EQ(ChooseExtraFile(nullptr, "path", 0), std::nullopt);
    EXPECT_EQ(ChooseSaveFile(nullptr, "path", 0), std::nullopt);
    EXPECT_EQ(ChooseExportFile(nullptr, "path", 0), std::nullopt);
    EXPECT_EQ(ChooseSaveExtraFile(nullptr, "path", 0), std::nullopt);
    EXPECT_EQ(ChooseAnyFile(nullptr, "path"), std::nullopt);
    SaveConfiguration();
    KeepSetting(ShowTipOfTheDay);
    EXPECT_FALSE(ShiftKeyDown());
    EXPECT_FALSE(ControlKeyDown());
    { const WaitCursor wait; }
    EXPECT_EQ(PlayEventSound(DefaultEventSound), 0);
}

TEST(FileDialogs, AreCalledWithPathAndDriver) {
    const PutBack former(TheDesktop);
    std::string log;
    const auto dialog = [&log](const char *name) {
        return [&log, name](QWidget *owner, const std::string &path, std::uint32_t driverId) {
            EXPECT_EQ(owner, SomeWindow);
            EXPECT_EQ(driverId, 7u);
            log += name + path;
            return std::optional<std::string>("chosen");
        };
    };
    TheDesktop.ChooseOpenFile = dialog("open ");
    TheDesktop.ChooseImportFile = dialog(" import ");
    TheDesktop.ChooseExtraFile = dialog(" extra ");
    TheDesktop.ChooseSaveFile = dialog(" save ");
    TheDesktop.ChooseExportFile = dialog(" export ");
    TheDesktop.ChooseSaveExtraFile = dialog(" save extra ");
    EXPECT_EQ(ChooseOpenFile(SomeWindow, "a", 7), "chosen");
    EXPECT_EQ(ChooseImportFile(SomeWindow, "b", 7), "chosen");
    EXPECT_EQ(ChooseExtraFile(SomeWindow, "c", 7), "chosen");
    EXPECT_EQ(ChooseSaveFile(SomeWindow, "d", 7), "chosen");
    EXPECT_EQ(ChooseExportFile(SomeWindow, "e", 7), "chosen");
    EXPECT_EQ(ChooseSaveExtraFile(SomeWindow, "f", 7), "chosen");
    EXPECT_EQ(log, "open a import b extra c save d export e save extra f");
    TheDesktop.ChooseAnyFile = [](QWidget *owner, const std::string &path) {
        EXPECT_EQ(owner, SomeWindow);
        return std::optional("any " + path);
    };
    EXPECT_EQ(ChooseAnyFile(SomeWindow, "g"), "any g");
}

TEST(SaveConfiguration, AsksTheDesktop) {
    const PutBack former(TheDesktop);
    int saved = 0;
    TheDesktop.SaveConfiguration = [&saved] { ++saved; };
    SaveConfiguration();
    EXPECT_EQ(saved, 1);
}

TEST(KeepSetting, AsksTheDesktop) {
    const PutBack former(TheDesktop);
    const IntegerSettingValue *kept = nullptr;
    TheDesktop.KeepSetting = [&kept](IntegerSettingValue &setting) { kept = &setting; };
    KeepSetting(InstrumentVolume);
    EXPECT_EQ(kept, &InstrumentVolume);
}

TEST(WaitCursor, IsTakenOffOnEveryWayOut) {
    const PutBack former(TheDesktop);
    std::vector<bool> calls;
    TheDesktop.WaitCursor = [&calls](bool wait) { calls.push_back(wait); };
    {
        const WaitCursor outer;
        const WaitCursor inner;
    }
    EXPECT_EQ(calls, (std::vector<bool>{true, true, false, false}));
}

TEST(PlayEventSound, OfAnEmptyNamePlaysNothingNotEvenTheUsersSound) {
    const TempFolder temp;
    UseFolders(temp);
    temp.WriteText("app/Quillbrook/Notify.wav", "sound");
    SoundRecorder recorder;
    EXPECT_EQ(PlayEventSound(""), 0);
    EXPECT_EQ(PlayEventSound(nullptr), 0);
    EXPECT_TRUE(recorder.tried.empty());
}

TEST(PlayEventSound, OfTheDefaultPlaysTheProgramsOwn) {
    const TempFolder temp;
    UseFolders(temp);
    SoundRecorder recorder;
    EXPECT_EQ(PlayEventSound("~~~DEFAULT~~~"), 1);
    EXPECT_EQ(recorder.tried, std::vector{temp.Folder() + "sounds/confirm.wav"});
}

TEST(PlayEventSound, OfANumberPlaysTheSoundOfThatNumber) {
    const TempFolder temp;
    UseFolders(temp);
    SoundRecorder recorder;
    EXPECT_EQ(PlayEventSound("::RSRC::9003"), 1);
    EXPECT_EQ(PlayEventSound("::RSRC::9004,4194304"), 1);
    EXPECT_EQ(recorder.tried,
              (std::vector{temp.Folder() + "sounds/9003.wav", temp.Folder() + "sounds/9004.wav"}));
}

TEST(PlayEventSound, OfANumberThatIsNonePlaysNothing) {
    const TempFolder temp;
    UseFolders(temp);
    SoundRecorder recorder;
    EXPECT_EQ(PlayEventSound("::RSRC::"), 0);
    EXPECT_EQ(PlayEventSound("::RSRC::../secret"), 0);
    EXPECT_TRUE(recorder.tried.empty());
}

TEST(PlayEventSound, OfAnyOtherNamePlaysAFile) {
    const TempFolder temp;
    UseFolders(temp);
    SoundRecorder recorder;
    EXPECT_EQ(PlayEventSound("/music/bell.wav"), 1);
    EXPECT_EQ(recorder.tried, std::vector<std::string>{"/music/bell.wav"});
    recorder.refused = "/music/bell.wav";
    EXPECT_EQ(PlayEventSound("/music/bell.wav"), 0);
}

TEST(PlayEventSound, PlaysTheUsersSoundInPlaceOfEveryOther) {
    const TempFolder temp;
    UseFolders(temp);
    const std::string notify = temp.WriteText("app/Quillbrook/Notify.wav", "sound");
    SoundRecorder recorder;
    EXPECT_EQ(PlayEventSound("~~~DEFAULT~~~"), 1);
    EXPECT_EQ(PlayEventSound("::RSRC::9003"), 1);
    EXPECT_EQ(PlayEventSound("/music/bell.wav"), 1);
    EXPECT_EQ(recorder.tried, (std::vector{notify, notify, notify}));
}

TEST(PlayEventSound, GoesOnWhenTheUsersSoundCannotBePlayed) {
    const TempFolder temp;
    UseFolders(temp);
    const std::string notify = temp.WriteText("app/Quillbrook/Notify.wav", "no sound");
    SoundRecorder recorder;
    recorder.refused = notify;
    EXPECT_EQ(PlayEventSound("~~~DEFAULT~~~"), 1);
    EXPECT_EQ(recorder.tried, (std::vector{notify, temp.Folder() + "sounds/confirm.wav"}));
}
