// The named calls over the desktop table, and which sound stands for an event.
#include "common/desktop.h"

#include "common/file_bytes.h"
#include "common/folders.h"
#include "common/platform.h"
#include "common/settings.h"
#include "common/text.h"

#include <algorithm>
#include <cerrno>
#include <string_view>

namespace tonewright {
namespace {

constexpr const char *MessageCaption = "Message";
constexpr const char *ShowAgainCaption = "Show me this message again next time.";
constexpr const char *ShowAgainNote = "Note: if you disable this message now, you can re-enable it "
                                      "at any time through the Setup window.";
constexpr std::uint32_t UsualFlags =
    MessageFlagBase | MessageFlagButton1 | MessageFlagPicture | MessageFlagCaption;
constexpr std::string_view NumberedSound = "::RSRC::";

MessageRequest UsualRequest(QWidget *owner, const std::string &text, std::uint32_t flags) {
    MessageRequest request;
    request.owner = owner;
    request.flags = UsualFlags | flags;
    request.text = text;
    request.picture = ApplicationPicture;
    request.caption = MessageCaption;
    return request;
}

int RunWithCheckBox(MessageRequest &request, std::uint32_t &flag) {
    request.flags |= MessageFlagCheck1 | MessageFlagNote1;
    request.check1 = ShowAgainCaption;
    request.note1 = ShowAgainNote;
    request.state1 = flag != 0;
    const int before = request.state1;
    RunMessage(request);
    if (request.state1 != before) {
        flag = request.state1 != 0;
    }
    return request.result;
}

using FileDialog =
    std::function<std::optional<std::string>(QWidget *, const std::string &, std::uint32_t)>;
std::optional<std::string> Choose(const FileDialog &dialog, QWidget *owner, const std::string &path,
                                  std::uint32_t driverId) {
    return dialog ? dialog(owner, path, driverId) : std::nullopt;
}

int PlayFile(const std::string &path) {
    return TheDesktop.PlaySoundFile && TheDesktop.PlaySoundFile(path) ? 1 : 0;
}

// A sound that comes with the program.
int PlayOwnSound(std::string_view name) {
    return PlayFile(ApplicationPath + "sounds/" + std::string(name) + ".wav");
}

bool PlayNotifySound() {
    const std::string path = UserFile("Notify.wav");
    return FileExists(path.c_str()) && PlayFile(path) != 0;
}

} // namespace

Desktop TheDesktop;

void ShowMessage(QWidget *owner, const std::string &text) {
    MessageRequest request = UsualRequest(owner, text, 0);
    request.button1 = "Dismiss";
    RunMessage(request);
}

int AskWithButtons(QWidget *owner, const std::string &text, const char *yes, const char *no,
                   const char *cancel) {
    MessageRequest request = UsualRequest(
        owner, text, (no ? MessageFlagButton2 : 0) | (cancel ? MessageFlagButton3 : 0));
    request.button1 = yes;
    request.button2 = no ? no : "";
    request.button3 = cancel ? cancel : "";
    return RunMessage(request);
}

int AskYesNo(QWidget *owner, const std::string &text) {
    return AskWithButtons(owner, text, "Yes", "No", nullptr);
}

int AskYesNoCancel(QWidget *owner, const std::string &text) {
    return AskWithButtons(owner, text, "Yes", "No", "Cancel");
}

int AskOnce(QWidget *owner, const std::string &text, std::uint32_t &flag) {
    MessageRequest request = UsualRequest(owner, text, MessageFlagButton2);
    request.button1 = "Yes";
    request.button2 = "No";
    return RunWithCheckBox(request, flag);
}

void ShowOnce(QWidget *owner, const std::string &text, std::uint32_t &flag) {
    MessageRequest request = UsualRequest(owner, text, 0);
    request.button1 = "Ok";
    RunWithCheckBox(request, flag);
}

int RunMessage(MessageRequest &request) {
    if (TheDesktop.RunMessage) {
        TheDesktop.RunMessage(request);
    }
    return request.result;
}

bool SetStatusText(QWidget *owner, const std::string &text) {
    return TheDesktop.SetStatusText && TheDesktop.SetStatusText(owner, text);
}

bool SetProgress(int position, int total) {
    return TheDesktop.SetProgress && TheDesktop.SetProgress(position, total);
}

bool ShowBusyBox(QWidget *owner, const std::string &text) {
    return TheDesktop.ShowBusyBox && TheDesktop.ShowBusyBox(owner, text);
}

void SetBusyText(const std::string &text) {
    if (TheDesktop.SetBusyText) {
        TheDesktop.SetBusyText(text);
    }
}

void CloseBusyBox() {
    if (TheDesktop.CloseBusyBox) {
        TheDesktop.CloseBusyBox();
    }
}

std::optional<std::string> ChooseOpenFile(QWidget *owner, const std::string &path,
                                          std::uint32_t driverId) {
    return Choose(TheDesktop.ChooseOpenFile, owner, path, driverId);
}

std::optional<std::string> ChooseImportFile(QWidget *owner, const std::string &path,
                                            std::uint32_t driverId) {
    return Choose(TheDesktop.ChooseImportFile, owner, path, driverId);
}

std::optional<std::string> ChooseExtraFile(QWidget *owner, const std::string &path,
                                           std::uint32_t driverId) {
    return Choose(TheDesktop.ChooseExtraFile, owner, path, driverId);
}

std::optional<std::string> ChooseSaveFile(QWidget *owner, const std::string &path,
                                          std::uint32_t driverId) {
    return Choose(TheDesktop.ChooseSaveFile, owner, path, driverId);
}

std::optional<std::string> ChooseExportFile(QWidget *owner, const std::string &path,
                                            std::uint32_t driverId) {
    return Choose(TheDesktop.ChooseExportFile, owner, path, driverId);
}

std::optional<std::string> ChooseSaveExtraFile(QWidget *owner, const std::string &path,
                                               std::uint32_t driverId) {
    return Choose(TheDesktop.ChooseSaveExtraFile, owner, path, driverId);
}

std::optional<std::string> ChooseAnyFile(QWidget *owner, const std::string &path) {
    return TheDesktop.ChooseAnyFile ? TheDesktop.ChooseAnyFile(owner, path) : std::nullopt;
}

std::optional<std::string> ChooseFolder(QWidget *owner, const std::string &path) {
    return TheDesktop.ChooseFolder ? TheDesktop.ChooseFolder(owner, path) : std::nullopt;
}

void SaveConfiguration() {
    if (TheDesktop.SaveConfiguration) {
        TheDesktop.SaveConfiguration();
    }
}

void KeepSetting(std::uint32_t &setting) {
    if (TheDesktop.KeepSetting) {
        TheDesktop.KeepSetting(setting);
    }
}

void ShowHelp(QWidget *owner, ReferenceTopic topic) {
    if (TheDesktop.ShowHelp) {
        TheDesktop.ShowHelp(owner, topic);
    }
}

void PutClipboardText(const std::string &text) {
    if (TheDesktop.PutClipboardText) {
        TheDesktop.PutClipboardText(text);
    }
}

void Beep() {
    if (TheDesktop.Beep) {
        TheDesktop.Beep();
    }
}

bool ShiftKeyDown() {
    return TheDesktop.ShiftKeyDown && TheDesktop.ShiftKeyDown();
}

bool ControlKeyDown() {
    return TheDesktop.ControlKeyDown && TheDesktop.ControlKeyDown();
}

WaitCursor::WaitCursor() {
    if (TheDesktop.WaitCursor) {
        TheDesktop.WaitCursor(true);
    }
}

WaitCursor::~WaitCursor() {
    const int reason = errno; // of what failed meanwhile; the desktop has errors of its own
    if (TheDesktop.WaitCursor) {
        TheDesktop.WaitCursor(false);
    }
    errno = reason;
}

int PlayEventSound(const char *name) {
    std::string_view sound(name ? name : "");
    if (sound.empty()) {
        return 0;
    }
    // The user's own sound replaces every other one.
    if (PlayNotifySound()) {
        return 1;
    }
    if (sound == DefaultEventSound) {
        return PlayOwnSound("confirm");
    }
    if (sound.starts_with(NumberedSound)) {
        sound.remove_prefix(NumberedSound.size());
        const std::size_t digits = std::min(sound.find_first_not_of("0123456789"), sound.size());
        return digits > 0 ? PlayOwnSound(sound.substr(0, digits)) : 0;
    }
    return PlayFile(std::string(sound));
}

int ShowInExplorer(const std::string &folder, const char *file) {
    constexpr int ShellCallFailed = -4;
    std::string bare = folder;
    if (!bare.empty() && bare.back() == PathSeparator) {
        bare.pop_back();
    }
    const FileManagerCall call = PlatformFileManagerCall(bare, file ? file : "");
    return TheDesktop.OpenAddress && TheDesktop.OpenAddress(call.program, call.argument, false)
               ? 0
               : ShellCallFailed;
}

} // namespace tonewright
