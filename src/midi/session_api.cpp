// Keeps the clock, takes note of failures and hands on the user's wish to end.
#include "midi/session_api.h"

#include <utility>

namespace tonewright {
namespace {

// `write`, taking note of its failure.
template <typename... Arguments>
std::function<int(Arguments...)> Watched(MidiSession &session,
                                         std::function<int(Arguments...)> write) {
    return [&session, write = std::move(write)](Arguments... arguments) {
        const int result = write(arguments...);
        session.writeFailed = session.writeFailed || result != MidiSuccess;
        return result;
    };
}

} // namespace

MidiApi MakeSessionApi(MidiSession &session) {
    MidiApi api = session.inner;
    const int started = session.inner.Pt_Start(MidiClockResolution);
    api.Pt_Start = [started](int) { return started; };
    api.Pt_Stop = [] { return MidiSuccess; };
    api.Pm_WriteSysEx = Watched(session, session.inner.Pm_WriteSysEx);
    api.Pm_WriteShort = Watched(session, session.inner.Pm_WriteShort);
    api.Pm_Write = Watched(session, session.inner.Pm_Write);
    if (session.isCancelled) {
        api.TransferCancelled = session.isCancelled;
    }
    return api;
}

void EndSession(MidiSession &session) {
    session.inner.Pt_Stop();
}

} // namespace tonewright
