// A desktop for tests: questions, messages and file dialogs are answered from a script, everything
// else is recorded.
//
//     ScriptedDesktop desktop;
//     desktop.ExpectYesNo("Do you wish to open it anyway?", ResultNo);
//     ... the code under test ...
//     desktop.ExpectNothingLeft();   // also done at the end of the desktop's life
//
// The test fails at a question or dialog that the script does not have next, at one that was
// expected and never came, and at a wait cursor that is still on at the end.
#pragma once

#include "common/desktop.h"

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tonewright {

enum class FileDialogKind { Open, Import, Extra, Save, Export, SaveExtra, Any, Folder };

// One step of the script. A member without a value is not compared.
struct ExpectedMessage {
    std::string text;
    std::vector<std::string> buttons; // captions from the first to the last button that is shown
    int answer = 0;                   // what the request's result becomes
    std::optional<std::string> check1 = std::nullopt; // caption of the first check box
    std::optional<int> state1 = std::nullopt;         // what the user leaves the first box at
    // Looks at the request, or at the world, while the message stands.
    std::function<void(MessageRequest &)> during = nullptr;
};

struct ExpectedFileDialog {
    FileDialogKind kind = FileDialogKind::Open;
    std::optional<std::string> answer;               // nothing: cancelled
    std::optional<std::string> start = std::nullopt; // the path that the dialog starts with
    std::optional<std::uint32_t> driverId = std::nullopt;
    std::function<void()> during = nullptr;
};

struct ScriptedDesktop {
    // Takes TheDesktop over, and gives it back at the end.
    ScriptedDesktop();
    ~ScriptedDesktop();
    ScriptedDesktop(const ScriptedDesktop &) = delete;
    ScriptedDesktop &operator=(const ScriptedDesktop &) = delete;

    // The script, in the order in which the questions come.
    void Expect(ExpectedMessage message);
    void Expect(ExpectedFileDialog dialog);
    // The usual forms. Buttons "Yes" and "No"; "Yes", "No" and "Cancel"; "Dismiss".
    void ExpectYesNo(const std::string &text, int answer);
    void ExpectYesNoCancel(const std::string &text, int answer);
    void ExpectMessage(const std::string &text);
    // Fails the test when a step of the script has not come; the script is empty afterwards.
    void ExpectNothingLeft();

    // What was recorded, oldest first.
    std::vector<MessageRequest> messages; // each with its result
    std::vector<std::string> statusTexts;
    std::vector<std::pair<int, int>> progress; // position, total
    std::vector<std::string> busyTexts;        // of each box shown and each change of its text
    int busyBoxesShown = 0;
    int busyBoxesOpen = 0;
    std::vector<std::string> sounds; // paths that were played
    int beeps = 0;
    int configurationsSaved = 0;
    std::vector<std::uint32_t *> settingsKept;
    int waitDepth = 0;               // wait cursors that are on now
    int deepestWait = 0;
    int waitsBegun = 0;
    struct OpenedAddress {
        std::string program, address;
        bool maximised = false;
    };
    std::vector<OpenedAddress> opened;
    std::vector<std::string> helpTopics; // of the help that was opened
    std::vector<std::string> trashed; // paths moved to the trash; the files stay where they are
    std::vector<std::string> clipboardNames; // of each voice put on the clipboard
    std::vector<std::string> clipboardTexts; // other texts put there

    // How the desktop behaves; change them as the test needs.
    std::optional<std::vector<std::uint8_t>> clipboard; // what is taken; set by each copy
    bool clipboardWorks = true;
    bool soundsPlay = true;
    bool busyBoxWorks = true;
    bool addressesOpen = true;
    bool trashWorks = true;
    bool shiftDown = false;
    bool controlDown = false;

private:
    struct Step {
        std::optional<ExpectedMessage> message;
        std::optional<ExpectedFileDialog> dialog;
    };
    std::deque<Step> script;
    Desktop former;

    void Answer(MessageRequest &request);
    std::optional<std::string> Choose(FileDialogKind kind, const std::string &path,
                                      std::uint32_t driverId);
};

} // namespace tonewright
