// The built-in instruments are heard: what happens to them goes to a player, and the player to the
// sound card, which is opened on a thread of its own when the first of their outputs is opened, and
// closed when all are closed and the tail has died away. Without a sound card everything else
// works; the next output that is opened tries it again, unless the card still does not answer.
//
// All functions are for the thread that writes to the instruments, and never wait for the card.
#pragma once

#include "midi/instruments/builtin_instruments.h"
#include "synth/player.h"

#include <string>

namespace tonewright {

struct InstrumentSoundOptions {
    std::string device;  // name; empty for the system's default
    double volume = 1.0; // 0 to 1
    int frames = 256;    // that the card asks for at once
    int polyphony = 16;  // MinPolyphony to MaxPolyphony, of each instrument
};

// From now on: the volume at once, the rest when the card is opened next.
void SetInstrumentSound(const InstrumentSoundOptions &options);

// For MakeBuiltinInstruments on the wall clock.
InstrumentListener InstrumentSound();
// Closes the card and ends the thread; a card that does not answer is left behind after a second.
// The next output that is opened begins anew.
void EndInstrumentSound();

enum class InstrumentSoundState { Closed, Opening, Plays, Failed };
// `why`: words without a full stop, when it has failed.
InstrumentSoundState StateOfInstrumentSound(std::string &why);

// True while one of the outputs of the built-in instruments is open.
bool InstrumentOutputIsOpen();
// True when nothing sounds nor is to sound any more, tails of effects too.
bool InstrumentsAreSilent();

// Silence at once, whatever sounds.
void PanicInstruments();
// The level since the last call.
PlayerLevel InstrumentLevel();

} // namespace tonewright
