// The command that prints the next tip of the day.
#include "cli/cli_commands.h"
#include "cli/text_output.h"
#include "cli/user_settings.h"
#include "common/settings.h"
#include "common/strings.h"
#include "shell/tips.h"

#include <string_view>

namespace tonewright {

int CliTip(const CliCall &) {
    ReadUserSettings();
    const Tip tip = TipOfLine(TipOfTheDay);
    if (tip.text.empty()) {
        return TellFailure(TipsFilePath(), LoadProgramString(NoTipString));
    }
    std::string_view rest(tip.text);
    for (auto feed = rest.find('\n'); feed != rest.npos; feed = rest.find('\n')) {
        Put(StandardOutput, FieldText(rest.substr(0, feed)));
        Put(StandardOutput, '\n');
        rest.remove_prefix(feed + 1);
    }
    Put(StandardOutput, FieldText(rest));
    Put(StandardOutput, '\n');
    return ExitDone;
}

} // namespace tonewright
