// A desktop for tests: answers from a script and records everything else.
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tonewright {

namespace {

const char *NameOf(FileDialogKind kind) {
    switch (kind) {
    case FileDialogKind::Open:
        return "open";
    case FileDialogKind::Import:
        return "import";
    case FileDialogKind::Extra:
        return "extra";
    case FileDialogKind::Save:
        return "save";
    case FileDialogKind::Export:
        return "export";
    case FileDialogKind::SaveExtra:
        return "save extra";
    case FileDialogKind::Any:
        return "any";
    case FileDialogKind::Folder:
        return "folder";
    }
    return "?";
}

std::vector<std::string> ButtonsOf(const MessageRequest &request) {
    std::vector<std::string> captions;
    const std::pair<std::uint32_t, const std::string *> buttons[] = {
        {MessageFlagButton1, &request.button1},
        {MessageFlagButton2, &request.button2},
        {MessageFlagButton3, &request.button3},
        {MessageFlagButton4, &request.button4}};
    for (const auto &[flag, caption] : buttons) {
        if (request.flags & flag) {
            captions.push_back(*caption);
        }
    }
    return captions;
}

} // namespace

ScriptedDesktop::ScriptedDesktop() : former(std::move(TheDesktop)) {
    const auto dialog = [this](FileDialogKind kind) {
        return [this, kind](QWidget *, const std::string &path, std::uint32_t driverId) {
            return Choose(kind, path, driverId);
        };
    };
    TheDesktop = Desktop{
        .RunMessage = [this](MessageRequest &request) { Answer(request); },
        .SetStatusText =
            [this](QWidget *, const std::string &text) {
                statusTexts.push_back(text);
                return true;
            },
        .SetProgress =
            [this](int position, int total) {
                progress.emplace_back(position, total);
                return true;
            },
        .ShowBusyBox =
            [this](QWidget *, const std::string &text) {
                if (busyBoxWorks) {
                    busyTexts.push_back(text);
                    ++busyBoxesShown;
                    ++busyBoxesOpen;
                }
                return busyBoxWorks;
            },
        .SetBusyText = [this](const std::string &text) { busyTexts.push_back(text); },
        .CloseBusyBox = [this] { busyBoxesOpen = std::max(0, busyBoxesOpen - 1); },
        .WaitCursor =
            [this](bool wait) {
                waitDepth += wait ? 1 : -1;
                waitsBegun += wait ? 1 : 0;
                deepestWait = std::max(deepestWait, waitDepth);
                EXPECT_GE(waitDepth, 0) << "a wait cursor was taken off that was not on";
            },
        .ChooseOpenFile = dialog(FileDialogKind::Open),
        .ChooseImportFile = dialog(FileDialogKind::Import),
        .ChooseExtraFile = dialog(FileDialogKind::Extra),
        .ChooseSaveFile = dialog(FileDialogKind::Save),
        .ChooseExportFile = dialog(FileDialogKind::Export),
        .ChooseSaveExtraFile = dialog(FileDialogKind::SaveExtra),
        .ChooseAnyFile =
            [this](QWidget *, const std::string &path) {
                return Choose(FileDialogKind::Any, path, 0);
            },
        .ChooseFolder =
            [this](QWidget *, const std::string &path) {
                return Choose(FileDialogKind::Folder, path, 0);
            },
        .SaveConfiguration = [this] { ++configurationsSaved; },
        .KeepSetting = [this](std::uint32_t &setting) { settingsKept.push_back(&setting); },
        .OpenAddress =
            [this](const std::string &program, const std::string &address, bool maximised) {
                opened.push_back({program, address, maximised});
                return addressesOpen;
            },
        .ShowHelp = [this](QWidget *,
                           ReferenceTopic topic) { helpTopics.emplace_back(topic.name); },
        .MoveToTrash =
            [this](const std::string &path) {
                trashed.push_back(path);
                return trashWorks;
            },
        .PutClipboard =
            [this](std::span<const std::uint8_t> block, const std::string &name) {
                if (clipboardWorks) {
                    clipboard.emplace(block.begin(), block.end());
                    clipboardNames.push_back(name);
                }
                return clipboardWorks;
            },
        .PutClipboardText = [this](const std::string &text) { clipboardTexts.push_back(text); },
        .ClipboardHasVoice = [this] { return clipboard.has_value(); },
        .TakeClipboard = [this] { return clipboard; },
        .PlaySoundFile =
            [this](const std::string &path) {
                sounds.push_back(path);
                return soundsPlay;
            },
        .Beep = [this] { ++beeps; },
        .ShiftKeyDown = [this] { return shiftDown; },
        .ControlKeyDown = [this] { return controlDown; },
    };
}

ScriptedDesktop::~ScriptedDesktop() {
    ExpectNothingLeft();
    EXPECT_EQ(waitDepth, 0) << "the wait cursor is still on";
    TheDesktop = std::move(former);
}

void ScriptedDesktop::Expect(ExpectedMessage message) {
    script.push_back({.message = std::move(message), .dialog = std::nullopt});
}

void ScriptedDesktop::Expect(ExpectedFileDialog dialog) {
    script.push_back({.message = std::nullopt, .dialog = std::move(dialog)});
}

void ScriptedDesktop::ExpectYesNo(const std::string &text, int answer) {
    Expect(ExpectedMessage{.text = text, .buttons = {"Yes", "No"}, .answer = answer});
}

void ScriptedDesktop::ExpectYesNoCancel(const std::string &text, int answer) {
    Expect(ExpectedMessage{.text = text, .buttons = {"Yes", "No", "Cancel"}, .answer = answer});
}

void ScriptedDesktop::ExpectMessage(const std::string &text) {
    Expect(ExpectedMessage{.text = text, .buttons = {"Dismiss"}, .answer = ResultYes});
}

void ScriptedDesktop::ExpectNothingLeft() {
    for (const Step &step : script) {
        if (step.message) {
            ADD_FAILURE() << "expected, but never asked: " << step.message->text;
        } else {
            ADD_FAILURE() << "expected, but never opened: " << NameOf(step.dialog->kind)
                          << " dialog";
        }
    }
    script.clear();
}

void ScriptedDesktop::Answer(MessageRequest &request) {
    if (script.empty() || !script.front().message) {
        ADD_FAILURE() << "unexpected message: " << request.text;
        messages.push_back(request);
        return;
    }
    const auto expected = std::move(*script.front().message);
    script.pop_front();
    EXPECT_EQ(request.text, expected.text);
    EXPECT_EQ(ButtonsOf(request), expected.buttons) << "buttons of: " << request.text;
    if (expected.check1) {
        EXPECT_TRUE(request.flags & MessageFlagCheck1) << "no check box: " << request.text;
        EXPECT_EQ(request.check1, *expected.check1);
    }
    if (expected.during) {
        expected.during(request);
    }
    if (expected.state1) {
        request.state1 = *expected.state1;
    }
    request.result = expected.answer;
    messages.push_back(request);
}

std::optional<std::string> ScriptedDesktop::Choose(FileDialogKind kind, const std::string &path,
                                                   std::uint32_t driverId) {
    if (script.empty() || !script.front().dialog || script.front().dialog->kind != kind) {
        ADD_FAILURE() << "unexpected " << NameOf(kind) << " dialog, starting with " << path;
        return std::nullopt;
    }
    const auto expected = std::move(*script.front().dialog);
    script.pop_front();
    if (expected.start) {
        EXPECT_EQ(path, *expected.start) << "start of the " << NameOf(kind) << " dialog";
    }
    if (expected.driverId) {
        EXPECT_EQ(driverId, *expected.driverId) << "driver of the " << NameOf(kind) << " dialog";
    }
    if (expected.during) {
        expected.during();
    }
    return expected.answer;
}

} // namespace tonewright
