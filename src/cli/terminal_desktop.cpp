// Messages on standard error, questions answered by --yes and --no or on the terminal. While a
// transfer runs, a line on the terminal tells how far it is.
#include "cli/terminal_desktop.h"

#include "cli/terminal.h"
#include "cli/text_output.h"
#include "common/desktop.h"

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace tonewright {
namespace {

enum class Answers { FromTerminal, Yes, No };
Answers AnswersComeFrom = Answers::No;
bool Refused = false;

// One line of standard input without its end; nothing at the end of the input.
std::optional<std::string> ReadLine() {
    std::string line;
    int character = std::getchar();
    if (character == EOF) {
        return std::nullopt;
    }
    for (; character != EOF && character != '\n'; character = std::getchar()) {
        line += static_cast<char>(character);
    }
    return line;
}

bool AskOnTerminal() {
    for (;;) {
        Put(StandardError, " [y/n] ");
        Flush(StandardError);
        const auto line = ReadLine();
        if (!line) {
            Put(StandardError, '\n');
            return false;
        }
        if (*line == "y" || *line == "yes") {
            return true;
        }
        if (*line == "n" || *line == "no") {
            return false;
        }
        Put(StandardError, "Please answer y or n.");
    }
}

bool Ask() {
    if (AnswersComeFrom == Answers::FromTerminal) {
        return AskOnTerminal();
    }
    const bool yes = AnswersComeFrom == Answers::Yes;
    Put(StandardError, yes ? " [y/n] yes\n" : " [y/n] no\n");
    return yes;
}

// What the line on the terminal shows during a transfer; nothing while none runs.
std::optional<std::string> StatusLine;

// Writes over what the line has shown so far.
void ShowStatusLine(const std::string &text) {
    const std::size_t former = StatusLine ? StatusLine->size() : 0;
    Put(StandardError, '\r');
    Put(StandardError, text);
    if (text.size() < former) {
        Put(StandardError, std::string(former - text.size(), ' '));
        Put(StandardError, '\r');
        Put(StandardError, text);
    }
    Flush(StandardError);
    StatusLine = text;
}

bool ShowTerminalBusyBox(QWidget *, const std::string &text) {
    ShowStatusLine(FieldText(text));
    return true;
}

bool SetTerminalStatusText(QWidget *, const std::string &text) {
    if (StatusLine) {
        ShowStatusLine(FieldText(text));
    }
    return true;
}

void CloseTerminalBusyBox() {
    ShowStatusLine("");
    StatusLine.reset();
}

void RunTerminalMessage(MessageRequest &request) {
    Flush(StandardOutput);
    std::string text = request.text;
    std::erase(text, '\r');
    for (std::string_view rest = text;;) {
        const std::size_t end = rest.find('\n');
        Put(StandardError, FieldText(rest.substr(0, end))); // names of files may hold anything
        if (end == std::string_view::npos) {
            break;
        }
        Put(StandardError, '\n');
        rest.remove_prefix(end + 1);
    }
    if (request.flags & MessageFlagButton2) {
        const bool yes = Ask();
        Refused = Refused || !yes;
        request.result = yes ? ResultYes : ResultNo;
    } else {
        Put(StandardError, '\n');
        request.result = ResultYes;
    }
    Flush(StandardError);
}

} // namespace

void UseTerminalDesktop(const CliCall &call) {
    if (call[CliOption::Yes]) {
        AnswersComeFrom = Answers::Yes;
    } else if (call[CliOption::No] || !StandardInputIsTerminal()) {
        AnswersComeFrom = Answers::No;
    } else {
        AnswersComeFrom = Answers::FromTerminal;
    }
    TheDesktop.RunMessage = RunTerminalMessage;
    // A trace says it all, and has its own lines.
    if (StandardErrorIsTerminal() && !call[CliOption::Trace]) {
        TheDesktop.ShowBusyBox = ShowTerminalBusyBox;
        TheDesktop.SetStatusText = SetTerminalStatusText;
        TheDesktop.CloseBusyBox = CloseTerminalBusyBox;
    }
}

bool SomethingWasRefused() {
    return Refused;
}

} // namespace tonewright
