// The table through which engine code reaches the desktop: questions, progress, file dialogs, the
// clipboard, sounds. The Qt shell fills it in at start, the command-line program fills it in for a
// terminal, and a test fills it in with a script that fails on an unexpected question. All texts
// are UTF-8.
#pragma once

#include "common/reference_topic.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

class QWidget;

namespace tonewright {

// Results of the message dialog.
constexpr int ResultYes = 6;    // first button
constexpr int ResultNo = 7;     // second button
constexpr int ResultCancel = 2; // third button, and the window's close box

// Flags of a message request. Bit 0 is set by every caller and has no effect.
constexpr std::uint32_t MessageFlagBase = 0x1;
constexpr std::uint32_t MessageFlagButton1 = 0x2; // the first button takes the caption in button1
constexpr std::uint32_t MessageFlagButton2 = 0x4;
constexpr std::uint32_t MessageFlagButton3 = 0x8;
constexpr std::uint32_t MessageFlagButton4 = 0x10;
constexpr std::uint32_t MessageFlagPicture = 0x20;
constexpr std::uint32_t MessageFlagKeepControl2 = 0x40;
constexpr std::uint32_t MessageFlagKeepControl9 = 0x80;
constexpr std::uint32_t MessageFlagPopup = 0x100; // closes when the mouse is pressed outside it
constexpr std::uint32_t MessageFlagFont = 0x400;
constexpr std::uint32_t MessageFlagCheck1 = 0x800;
constexpr std::uint32_t MessageFlagCheck2 = 0x1000;
constexpr std::uint32_t MessageFlagCheck3 = 0x2000;
constexpr std::uint32_t MessageFlagSound = 0x4000;
constexpr std::uint32_t MessageFlagNote1 = 0x8000;
constexpr std::uint32_t MessageFlagNote2 = 0x10000;
constexpr std::uint32_t MessageFlagNote3 = 0x20000;
constexpr std::uint32_t MessageFlagCaption =
    0x40000; // title bar with `caption`, else a thin border

constexpr std::uint32_t ApplicationPicture = 0x8000001;

struct MessageFont {
    std::string family;
    int height = 0; // character cell, pixels
    int weight = 400;
};

struct MessageRequest {
    QWidget *owner = nullptr;
    std::uint32_t flags = 0;
    std::string text;
    std::string button1, button2, button3, button4; // captions of the controls 1, 7, 2 and 9
    std::string helpTopic;
    // Called with the dialog and the topic when the fourth button is pressed.
    std::function<void(QWidget *, const std::string &)> helpHandler;
    int result = 0;
    std::uint32_t picture = 0;
    MessageFont font;
    std::string check1, check2, check3;     // captions of the check boxes 500, 501 and 502
    int state1 = 0, state2 = 0, state3 = 0; // written at each change of the box
    std::string note1, note2, note3;
    std::string caption;
    std::string soundName; // sound file that plays while the dialog stands
};

struct Desktop {
    // Runs the message dialog; sets request.result and the check box states.
    std::function<void(MessageRequest &)> RunMessage;

    // Text of pane 0 and meter in pane 1 of the main window's status bar, painted at once.
    std::function<bool(QWidget *owner, const std::string &text)> SetStatusText;
    std::function<bool(int position, int total)> SetProgress;
    // The box that stands over the window while a transfer blocks it. Closing it brings
    // the owner to the top.
    std::function<bool(QWidget *owner, const std::string &text)> ShowBusyBox;
    std::function<void(const std::string &text)> SetBusyText;
    std::function<void()> CloseBusyBox;

    // Wait cursor, nested: each true is followed by one false.
    std::function<void(bool wait)> WaitCursor;

    // File dialogs. Each is given the path that starts it and answers with the chosen one; nothing
    // when the user cancels. The driver id chooses filter and default extension.
    std::function<std::optional<std::string>(QWidget *, const std::string &path,
                                             std::uint32_t driverId)>
        ChooseOpenFile;
    std::function<std::optional<std::string>(QWidget *, const std::string &path,
                                             std::uint32_t driverId)>
        ChooseImportFile;
    std::function<std::optional<std::string>(QWidget *, const std::string &path,
                                             std::uint32_t driverId)>
        ChooseExtraFile;
    std::function<std::optional<std::string>(QWidget *, const std::string &path,
                                             std::uint32_t driverId)>
        ChooseSaveFile;
    std::function<std::optional<std::string>(QWidget *, const std::string &path,
                                             std::uint32_t driverId)>
        ChooseExportFile;
    std::function<std::optional<std::string>(QWidget *, const std::string &path,
                                             std::uint32_t driverId)>
        ChooseSaveExtraFile;
    // A file to be read, whatever it is.
    std::function<std::optional<std::string>(QWidget *, const std::string &path)> ChooseAnyFile;
    // A folder that there is; `path`: of the one that is shown first.
    std::function<std::optional<std::string>(QWidget *, const std::string &path)> ChooseFolder;

    // Writes the settings of the program to their files, as at its end.
    std::function<void()> SaveConfiguration;

    // Writes the value that the user has given to a setting into its file.
    std::function<void(std::uint32_t &setting)> KeepSetting;

    // Opens an address with a program (a path or a bare name; empty: whatever the platform opens
    // such a file with). False when it could not be started.
    std::function<bool(const std::string &program, const std::string &address, bool maximised)>
        OpenAddress;
    // The help page at a topic: what the Help button of a window opens.
    std::function<void(QWidget *owner, ReferenceTopic topic)> ShowHelp;
    std::function<bool(const std::string &path)> MoveToTrash;

    // Clipboard: a whole voice block under the program's own type, and its name as plain text.
    std::function<bool(std::span<const std::uint8_t> block, const std::string &name)> PutClipboard;
    // Plain text, UTF-8.
    std::function<void(const std::string &text)> PutClipboardText;
    // True while something lies there under the program's own type.
    std::function<bool()> ClipboardHasVoice;
    // The block on the clipboard as it lies there; nothing while there is none.
    std::function<std::optional<std::vector<std::uint8_t>>()> TakeClipboard;

    // Starts playing a sound file and returns at once. False when it could
    // not be played.
    std::function<bool(const std::string &path)> PlaySoundFile;
    // The short sound of the system for what it does not take.
    std::function<void()> Beep;

    std::function<bool()> ShiftKeyDown;
    std::function<bool()> ControlKeyDown;
};

// The desktop of this process. Calls through an empty member do nothing and answer "no".
extern Desktop TheDesktop;

// The message dialog in its usual forms, caption "Message", with the application's picture.
void ShowMessage(QWidget *owner, const std::string &text);   // "Dismiss"
int AskYesNo(QWidget *owner, const std::string &text);       // 6 or 7
int AskYesNoCancel(QWidget *owner, const std::string &text); // 6, 7 or 2
// A question with buttons of its own: `yes` is answered by 6, `no` (null: there is none) by 7,
// `cancel` (the same) by 2.
int AskWithButtons(QWidget *owner, const std::string &text, const char *yes, const char *no,
                   const char *cancel);
// A question that the user can switch off: "Yes" and "No", with the check box "Show me this
// message again next time."; its state goes into `flag`.
int AskOnce(QWidget *owner, const std::string &text, std::uint32_t &flag);
// The same with one "Ok" button.
void ShowOnce(QWidget *owner, const std::string &text, std::uint32_t &flag);
// Runs any request; an untouched result (0) means that no dialog could be shown.
int RunMessage(MessageRequest &request);

bool SetStatusText(QWidget *owner, const std::string &text);
bool SetProgress(int position, int total);
bool ShowBusyBox(QWidget *owner, const std::string &text);
void SetBusyText(const std::string &text);
void CloseBusyBox();

std::optional<std::string> ChooseOpenFile(QWidget *, const std::string &path,
                                          std::uint32_t driverId);
std::optional<std::string> ChooseImportFile(QWidget *, const std::string &path,
                                            std::uint32_t driverId);
std::optional<std::string> ChooseExtraFile(QWidget *, const std::string &path,
                                           std::uint32_t driverId);
std::optional<std::string> ChooseSaveFile(QWidget *, const std::string &path,
                                          std::uint32_t driverId);
std::optional<std::string> ChooseExportFile(QWidget *, const std::string &path,
                                            std::uint32_t driverId);
std::optional<std::string> ChooseSaveExtraFile(QWidget *, const std::string &path,
                                               std::uint32_t driverId);
std::optional<std::string> ChooseAnyFile(QWidget *, const std::string &path);
std::optional<std::string> ChooseFolder(QWidget *, const std::string &path);

void SaveConfiguration();
void KeepSetting(std::uint32_t &setting);

void ShowHelp(QWidget *owner, ReferenceTopic topic);

void PutClipboardText(const std::string &text);

void Beep();

bool ShiftKeyDown();
bool ControlKeyDown();

// Shows a folder in the file manager, with `file` (a name, may be null) selected where it can do
// that. 0, or -4 when the file manager could not be called.
int ShowInExplorer(const std::string &folder, const char *file);

// Shows the wait cursor as long as it lives, on every way out. Its end keeps errno.
struct WaitCursor {
    WaitCursor();
    ~WaitCursor();
    WaitCursor(const WaitCursor &) = delete;
    WaitCursor &operator=(const WaitCursor &) = delete;
};

// The confirmation sound of an action. "Notify.wav" in the maker's application-data folder replaces
// every sound; "~~~DEFAULT~~~" is the program's own; "::RSRC::number" a sound of the program by
// number; any other name a file. 1 if something plays, else 0. Never blocks.
int PlayEventSound(const char *name);
constexpr const char *DefaultEventSound = "~~~DEFAULT~~~";

} // namespace tonewright
