// Keeps what the enabling rules said.
#include "shell/command_state.h"

#include "core/current.h"
#include "core/dispatch.h"
#include "shell/shell_window.h"

#include <bitset>

namespace tonewright {
namespace {

constexpr std::size_t BitOf(CommandRule rule) {
    return static_cast<std::size_t>(rule);
}

using RuleStates = std::bitset<BitOf(CommandRule::VoiceOnClipboard) + 1>;

RuleStates StatesAtStart() {
    RuleStates states;
    states.set();
    states.reset(BitOf(CommandRule::Never));
    states.reset(BitOf(CommandRule::UndoLevelThere));
    return states;
}
RuleStates States = StatesAtStart();

void UseStates(const RuleStates &states) {
    if (states == States) {
        return;
    }
    States = states;
    if (TheShellWindow.CommandStatesChanged) {
        TheShellWindow.CommandStatesChanged();
    }
}

} // namespace

bool RuleAllows(CommandRule rule) {
    return States[BitOf(rule)];
}

void SetRule(CommandRule rule, bool allows) {
    RuleStates states = States;
    states[BitOf(rule)] = allows;
    UseStates(states);
}

void RefreshCommands() {
    const bool hasRows = ListCount(MainList) > 0;
    const int driver = DriverIndexOfId(CurrentDriverId);
    RuleStates states = States;
    states[BitOf(CommandRule::ListHasRows)] = hasRows;
    states[BitOf(CommandRule::DriverDownloads)] = DriverCanDownload(driver);
    states[BitOf(CommandRule::DriverUploads)] = DriverCanUpload(driver) && hasRows;
    states[BitOf(CommandRule::DriverConfigures)] = DriverCanConfigure(driver);
    states[BitOf(CommandRule::DriverFinds)] = DriverCanFind(driver);
    UseStates(states);
}

void RefreshCopy() {
    SetRule(CommandRule::RowSelected, ListCount(MainList) > 0 && MainList.selection != NoRow);
}

void ResetCommandState() {
    States = StatesAtStart();
}

} // namespace tonewright
