// Playing a row, and ending it.
#include "shell/row_audition.h"

#include "common/desktop.h"
#include "core/current.h"
#include "midi/instrument_sound.h"
#include "shell/shell_window.h"

#include <utility>

namespace tonewright {
namespace {

// While it lives no box says that the voice is being sent: it would take the keys of the user, and
// the end of the one that is held with them.
struct WithoutBusyBox {
    Desktop former = TheDesktop;

    WithoutBusyBox() {
        TheDesktop.ShowBusyBox = nullptr;
        TheDesktop.SetBusyText = nullptr;
        TheDesktop.CloseBusyBox = nullptr;
    }
    ~WithoutBusyBox() { TheDesktop = std::move(former); }
    WithoutBusyBox(const WithoutBusyBox &) = delete;
    WithoutBusyBox &operator=(const WithoutBusyBox &) = delete;
};

bool Send(AuditionState &state) {
    const WithoutBusyBox quiet;
    AuditionOctave(); // within their ranges
    AuditionVelocity();
    return SendAudition(state, TheShellWindow.window);
}

} // namespace

void EndRowAudition::operator()(RowAudition *audition) const {
    const std::unique_ptr<RowAudition> ended(audition);
    SilenceAudition(ended->state);
    std::string why;
    if (PlaysBuiltinInstrument(ended->state) &&
        StateOfInstrumentSound(why) == InstrumentSoundState::Failed) {
        SetStatusText(TheShellWindow.window, "No sound: " + why + ".");
    }
    CloseAudition(ended->state);
}

PlayedRow PlayRow(int row) {
    const VoiceObject *voice = ListVoice(MainList, row);
    if (!voice || SomethingIsRunning()) {
        return nullptr;
    }
    const auto state = PrepareAudition(nullptr, voice, CurrentDriverId, CurrentMidiPorts(), row);
    auto audition = std::unique_ptr<RowAudition>(new RowAudition{.running = {}, .state = *state});
    if (!Send(audition->state)) {
        CloseAudition(audition->state);
        return nullptr;
    }
    RefreshStatus(); // a row before may have said that there is no sound
    PressAuditionKey(audition->state, 0);
    return PlayedRow(audition.release());
}

} // namespace tonewright
