// Shows the refusals in the program's message dialog.
#include "shell/view/refusal_box.h"

#include "common/strings.h"
#include "common/text.h"
#include "common/view/message_dialog.h"
#include "shell/shell_window.h"

#include <QApplication>

namespace tonewright {
namespace {

constexpr unsigned ProgramName = 109;
constexpr unsigned UnsuitableDisplay = 12000;
constexpr const char *VersionRefused =
    "This version of %s is not compatible with your installation of Windows. You need newer "
    "software.\n\n%s requires Windows 10 or Windows 11. Please update Windows, and run the "
    "software again.";

// With the program's name in a title bar, or without a title bar.
void ShowRefusal(QWidget *owner, const std::string &text, const char *button, bool titled) {
    MessageRequest request;
    request.owner = owner;
    request.flags = MessageFlagBase | MessageFlagButton1 | MessageFlagPicture |
                    (titled ? MessageFlagCaption : 0);
    request.text = text;
    request.button1 = button;
    request.picture = ApplicationPicture;
    request.caption = LoadProgramString(ProgramName);
    RunMessageDialog(request);
}

} // namespace

void ShowScreenDriverMessage() {
    QApplication::beep();
    ShowRefusal(TheShellWindow.window, LoadProgramString(UnsuitableDisplay), "Close", false);
}

void ShowVersionRefusedBox() {
    const std::string name = LoadProgramString(ProgramName);
    ShowRefusal(nullptr, QString(VersionRefused).replace("%s", name.c_str()).toStdString(),
                "Dismiss", true);
}

} // namespace tonewright
