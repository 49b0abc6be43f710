// The built-in instruments in place of the MIDI table, as they come from the factory and on a
// simulated clock. The test fails when a stream is open or the clock runs at the end.
#pragma once

#include "midi/instruments/builtin_instruments.h"
#include "midi/midi_api.h"
#include "support/put_back.h"

#include <gtest/gtest.h>

namespace tonewright {

struct BuiltinMidi {
    PutBack<MidiApi> former{TheMidi};

    BuiltinMidi() {
        ResetBuiltinInstruments();
        TheMidi = MakeBuiltinInstruments({.simulatedClock = true});
    }
    ~BuiltinMidi() {
        EXPECT_EQ(OpenBuiltinStreams(), 0);
        EXPECT_FALSE(BuiltinClockRuns());
        ResetBuiltinInstruments();
    }
    BuiltinMidi(const BuiltinMidi &) = delete;
    BuiltinMidi &operator=(const BuiltinMidi &) = delete;
};

} // namespace tonewright
