// Finds a browser for the help pages; runs the commands of the Help menu.
#include "shell/show_document.h"

#include "common/desktop.h"
#include "common/platform.h"
#include "common/settings.h"
#include "common/strings.h"
#include "common/text.h"
#include "shell/shell_window.h"

#include <cstdint>
#include <string_view>

namespace tonewright {
namespace {

// The browsers of DocumentBrowserFlags, in the order in which they are tried.
struct Browser {
    std::uint32_t flag;
    const char *program;
};
constexpr Browser Browsers[] = {
    {1, "firefox.exe"},   {2, "chrome.exe"},    {4, "opera.exe"},   {8, "safari.exe"},
    {16, "netscape.exe"}, {32, "iexplore.exe"}, {64, "msedge.exe"},
};

std::string EscapeBlanks(const std::string &text) {
    std::string escaped;
    for (const char character : text) {
        if (character == ' ') {
            escaped += FormatText("%%%02X", static_cast<unsigned>(' '));
        } else {
            escaped += character;
        }
    }
    return escaped;
}

bool Open(const std::string &program, const std::string &address, bool maximised) {
    return TheDesktop.OpenAddress && TheDesktop.OpenAddress(program, address, maximised);
}

bool OpenWithSomeBrowser(const std::string &address, bool maximised) {
    for (const Browser &browser : Browsers) {
        if ((DocumentBrowserFlags & browser.flag) != 0 &&
            Open(PlatformBrowserProgram(browser.program), address, maximised)) {
            return true;
        }
    }
    return false;
}

// The reference page at the place that has the name in capitals.
int ShowReference(QWidget *window, std::string_view name) {
    std::string fragment = "#";
    for (const char character : name) {
        fragment += character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                                         : character;
    }
    return ShowDocument(window, ApplicationPath + "html/referenc.html", fragment, false);
}

} // namespace

std::string DocumentAddress(const std::string &path, const std::string &fragment) {
    if (path.starts_with("http")) {
        return EscapeBlanks(path);
    }
    return EscapeBlanks("file:///" + path + fragment);
}

int ShowDocument(QWidget *window, const std::string &path, const std::string &fragment,
                 bool maximised) {
    const std::string address = DocumentAddress(path, fragment);
    if (!DocumentBrowserPath.empty() && Open(DocumentBrowserPath, address, maximised)) {
        return 1;
    }
    if (OpenWithSomeBrowser(address, maximised) || Open("", address, maximised)) {
        return 1;
    }
    ShowMessage(window, LoadProgramString(116));
    return 0;
}

int ShowHelpTopic(QWidget *window, ReferenceTopic topic) {
    return ShowReference(window, topic.name);
}

int ShowSettingHelp(QWidget *window, const ConfigKey *setting) {
    return setting ? ShowReference(window, std::string("SETUP_") + setting->name)
                   : ShowHelpTopic(window, "SETUP");
}

int RunManual() {
    if (WarnShowManual != 0) {
        ShowOnce(TheShellWindow.window, LoadProgramString(125), WarnShowManual);
    }
    return ShowDocument(TheShellWindow.window, ApplicationPath + "html/manual.html",
                        "#DOCUMENTATION", false);
}

int RunHelp() {
    return ShowHelpTopic(TheShellWindow.window, "INDEX");
}

int RunAbout() {
    if (TheShellWindow.ShowAboutBox) {
        TheShellWindow.ShowAboutBox();
    }
    return 1;
}

int RunSystemInformation() {
    if (TheShellWindow.ShowSystemInformation) {
        TheShellWindow.ShowSystemInformation();
    }
    return 1;
}

} // namespace tonewright
