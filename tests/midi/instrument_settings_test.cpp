// What the settings of the instruments' sound come to.
#include "midi/instrument_settings.h"

#include "common/settings.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

TEST(InstrumentSettings, WithoutAFileTheyAreThoseOfTheSound) {
    const InstrumentSoundOptions sound = InstrumentSoundOfSettings(), usual;
    EXPECT_EQ(sound.device, usual.device);
    EXPECT_EQ(sound.volume, usual.volume);
    EXPECT_EQ(sound.frames, usual.frames);
    EXPECT_EQ(sound.polyphony, usual.polyphony);
}

TEST(InstrumentSettings, WhatIsChosenCounts) {
    InstrumentDevice = "Speaker";
    InstrumentVolume = 50;
    InstrumentBuffer = 300; // none of those to choose from, but one that works
    InstrumentPolyphony = 9;
    const InstrumentSoundOptions sound = InstrumentSoundOfSettings();
    EXPECT_EQ(sound.device, "Speaker");
    EXPECT_DOUBLE_EQ(sound.volume, 0.5);
    EXPECT_EQ(sound.frames, 300);
    EXPECT_EQ(sound.polyphony, 9);
}

TEST(InstrumentSettings, ANumberBeyondItsRangeCountsAsTheNearestOneInIt) {
    InstrumentVolume = 101;
    InstrumentBuffer = 127;
    InstrumentPolyphony = 7;
    InstrumentSoundOptions sound = InstrumentSoundOfSettings();
    EXPECT_DOUBLE_EQ(sound.volume, 1.0);
    EXPECT_EQ(sound.frames, 128);
    EXPECT_EQ(sound.polyphony, 8);
    InstrumentVolume = InstrumentBuffer = InstrumentPolyphony = 4'294'967'295u;
    sound = InstrumentSoundOfSettings();
    EXPECT_DOUBLE_EQ(sound.volume, 1.0);
    EXPECT_EQ(sound.frames, 2048);
    EXPECT_EQ(sound.polyphony, 64);
}

} // namespace
} // namespace tonewright
