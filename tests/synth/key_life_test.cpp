// How keys begin, follow each other and end, also where their voice changes meanwhile.
#include "synth/synth.h"

#include "measure.h"
#include "voices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace tonewright {
namespace {

constexpr double Rate = 48000.0;

Samples Played(Synth &synth, double seconds) {
    Samples samples;
    while (static_cast<double>(samples.size()) < seconds * synth.rate) {
        float left[BlockFrames];
        float right[BlockFrames];
        Render(synth, left, right);
        samples.insert(samples.end(), left, left + BlockFrames);
    }
    return samples;
}

double Loudest(const Samples &samples) {
    double loudest = 0.0;
    for (const double sample : samples) {
        loudest = std::max(loudest, 8.0 * std::fabs(sample));
    }
    return loudest;
}

// Of the keys that sound, in rising order.
std::vector<int> Numbers(const Synth &synth) {
    std::vector<int> numbers;
    for (const Key &key : synth.keys) {
        if (key.sounds) {
            numbers.push_back(key.number);
        }
    }
    std::ranges::sort(numbers);
    return numbers;
}

class KeyLife : public testing::Test {
protected:
    SixVoice bytes_ = InitialVoice();
    PreparedVoice voice_;
    PreparedVoice other_;
    Synth synth_ = MakeSynth(Rate, 16);

    void Use() {
        voice_ = bytes_.Prepared();
        SetVoice(synth_, &voice_, false);
    }
    void SetByte(int operatorNumber, int place, int value) {
        bytes_.Operator(operatorNumber, place) = static_cast<std::uint8_t>(value);
    }
    void Change(const PreparedVoice &voice) {
        PreparedVoice &unused = synth_.voice == &voice_ ? other_ : voice_;
        unused = voice;
        SetVoice(synth_, &unused, true);
        Played(synth_, 2.0 * FadeTime);
        ASSERT_FALSE(IsFading(synth_));
    }
};

TEST_F(KeyLife, EndsAfterTheHardestTouchAsAfterAnyOther) {
    SetByte(1, VelocitySensitivity, 7);
    Use();
    for (const int velocity : {125, 126, 127}) {
        NoteOn(synth_, 60, velocity);
        Played(synth_, 0.2);
        NoteOff(synth_, 60);
        Played(synth_, 2.0);
        EXPECT_EQ(SoundingKeys(synth_), 0) << velocity;
        EXPECT_TRUE(IsSilent(synth_)) << velocity;
    }
}

// From the key on until half of full level is heard of a voice that rises at once from its second
// level on; the first takes its time at rate 40, or a part of it.
double Pause(SixVoice voice, int firstLevel, int output, int velocity) {
    voice.Operator(1, Rate1) = 40;
    voice.Operator(1, Level1) = static_cast<std::uint8_t>(firstLevel);
    voice.Operator(1, OutputLevel) = static_cast<std::uint8_t>(output);
    const PreparedVoice prepared = voice.Prepared();
    Synth synth = MakeSynth(Rate, 1);
    SetVoice(synth, &prepared, false);
    NoteOn(synth, 96, velocity);
    const Samples samples = Played(synth, 1.0);
    const double loudest = Loudest(samples);
    const auto heard = std::ranges::find_if(
        samples, [&](double sample) { return 8.0 * std::fabs(sample) > loudest / 2.0; });
    return static_cast<double>(heard - samples.begin()) / Rate;
}

TEST_F(KeyLife, BeginsSoonBehindAFirstLevelOfZeroWhateverTheTouch) {
    // A full rise takes 0.496 s at rate 40, and a first level of 0 a twentieth of it.
    SetByte(1, VelocitySensitivity, 7);
    EXPECT_NEAR(Pause(bytes_, 0, 99, 98), 0.0248, 0.004);
    EXPECT_NEAR(Pause(bytes_, 0, 99, 127), 0.0248, 0.004);
    // A first level that is only too soft to be heard takes the whole time: of level 19, half of
    // its 46 units, 64 * 23 + 32 * 88 - 4256 is 32 steps of an operator of level 60.
    EXPECT_NEAR(Pause(bytes_, 19, 60, 98), 0.496, 0.01);
}

TEST_F(KeyLife, OfKeysThatAreHeldWhenTheirVoiceBecomesMonoEnds) {
    Use();
    for (const int number : {60, 64, 67}) {
        NoteOn(synth_, number, 100);
        Played(synth_, 0.05);
    }
    PreparedVoice mono = voice_;
    mono.partMode = PartMode::MonoFull;
    Change(mono);
    Played(synth_, 1.0);
    EXPECT_EQ(Numbers(synth_), std::vector<int>{67}); // the youngest goes on
    NoteOn(synth_, 72, 100);
    Played(synth_, 0.1);
    EXPECT_EQ(Numbers(synth_), std::vector<int>{72});
    for (const int number : {60, 64, 67, 72}) {
        NoteOff(synth_, number);
    }
    Played(synth_, 1.0);
    EXPECT_EQ(SoundingKeys(synth_), 0);
}

TEST_F(KeyLife, OfKeysThatAreHeldWhenTheirVoiceBecomesPolyEnds) {
    bytes_.bytes[OscillatorSync] = 0;
    voice_ = bytes_.Prepared();
    voice_.partMode = PartMode::MonoLegato;
    SetVoice(synth_, &voice_, false);
    for (const int number : {60, 64, 67}) {
        NoteOn(synth_, number, 100);
        Played(synth_, 0.05);
    }
    PreparedVoice poly = voice_;
    poly.partMode = PartMode::Poly;
    Change(poly);
    EXPECT_EQ(Numbers(synth_), std::vector<int>{67});
    NoteOn(synth_, 72, 100);
    Played(synth_, 0.1);
    EXPECT_EQ(Numbers(synth_), (std::vector<int>{67, 72}));
    for (const int number : {72, 60, 64, 67}) {
        NoteOff(synth_, number);
    }
    Played(synth_, 1.0);
    EXPECT_EQ(SoundingKeys(synth_), 0);
}

TEST_F(KeyLife, EndsWithEveryModeMessage) {
    Use();
    for (const int message : {120, 123, 124, 125, 126, 127}) {
        NoteOn(synth_, 60, 100);
        NoteOn(synth_, 64, 100);
        Played(synth_, 0.05);
        Control(synth_, message, 0);
        Played(synth_, 0.5);
        EXPECT_EQ(SoundingKeys(synth_), 0) << message;
    }
}

// Where the pitch of the youngest key stands, in semitones.
double PitchOf(const Synth &synth) {
    const auto key = std::ranges::max_element(synth.keys, {}, &Key::order);
    return key->number + 12.0 * key->glide;
}

TEST_F(KeyLife, GlidesFromWhereThePitchStands) {
    SetByte(1, Rate1 + 3, 30);
    voice_ = bytes_.Prepared();
    voice_.partMode = PartMode::MonoFull;
    voice_.glideSpeed = 0.2;
    SetVoice(synth_, &voice_, false);
    NoteOn(synth_, 36, 100);
    Played(synth_, 0.1);
    NoteOn(synth_, 72, 100);
    Played(synth_, 0.3);
    double before = PitchOf(synth_);
    EXPECT_GT(before, 40.0);
    EXPECT_LT(before, 68.0);
    NoteOn(synth_, 74, 100); // another key while it glides
    EXPECT_NEAR(PitchOf(synth_), before, 1e-9);
    Played(synth_, 0.1);
    before = PitchOf(synth_);
    NoteOff(synth_, 74); // back to one that is still down
    EXPECT_NEAR(PitchOf(synth_), before, 1e-9);
    NoteOff(synth_, 72);
    NoteOff(synth_, 36);
    Played(synth_, 0.1);
    before = PitchOf(synth_);
    EXPECT_GT(std::fabs(before - 36.0), 1.0);
    NoteOn(synth_, 50, 100); // beside one that has been released
    EXPECT_NEAR(PitchOf(synth_), before, 1e-9);
    Played(synth_, 20.0);
    EXPECT_NEAR(PitchOf(synth_), 50.0, 1e-9);
    NoteOff(synth_, 50);
    Played(synth_, 20.0);
    NoteOn(synth_, 62, 100); // after all has ended
    EXPECT_NEAR(PitchOf(synth_), 50.0, 1e-9);
}

TEST_F(KeyLife, StandsOnALevelByTheRateAndItsScalingTogether) {
    // Key 60 at scaling 7 adds 11 to a rate; 31 is a full rise of 1.418 s, 99 one of 0.98 ms.
    SetByte(1, KeyRateScaling, 7);
    SetByte(1, Rate1 + 1, 20); // of a level that is already there
    SetByte(1, Level1 + 2, 0);
    Use();
    NoteOn(synth_, 60, 98);
    Played(synth_, 1.3);
    EXPECT_GT(Loudest(Played(synth_, 0.05)), 0.9);
    Played(synth_, 0.1);
    EXPECT_LT(Loudest(Played(synth_, 0.1)), 0.01);
}

TEST_F(KeyLife, GoesOnWhileItsCarrierIsSwitchedOff) {
    bytes_.bytes[AlgorithmByte] = 15; // one carrier
    Use();
    NoteOn(synth_, 60, 98);
    Played(synth_, 0.1);
    Change(PrepareSixOperatorVoice(bytes_.bytes, 0x3E));
    Played(synth_, 0.1);
    EXPECT_LT(Loudest(Played(synth_, 0.5)), 0.001);
    Change(PrepareSixOperatorVoice(bytes_.bytes));
    Played(synth_, 0.1);
    EXPECT_GT(Loudest(Played(synth_, 0.1)), 0.9);
}

TEST_F(KeyLife, EndsWithItsEnvelopesWhileItsCarrierIsSwitchedOff) {
    bytes_.bytes[AlgorithmByte] = 15;
    SetByte(1, Rate1 + 3, 40); // 22.6 dB a second
    for (const int lastLevel : {0, 50}) {
        SetByte(1, Level1 + 3, lastLevel);
        Use();
        Change(PrepareSixOperatorVoice(bytes_.bytes, 0x3E));
        NoteOn(synth_, 60, 98);
        Played(synth_, 0.1);
        NoteOff(synth_, 60);
        Played(synth_, 1.0);
        EXPECT_EQ(SoundingKeys(synth_), 1) << lastLevel; // may be switched on again
        Played(synth_, 4.0);
        EXPECT_EQ(SoundingKeys(synth_), 0) << lastLevel;
    }
}

TEST_F(KeyLife, OfAHeldKeyThatHasFallenSilentGivesWayFirst) {
    // With rate scaling a high key falls to its third level in half a second, a low one in ten.
    SetByte(1, KeyRateScaling, 7);
    SetByte(1, Rate1 + 1, 30);
    SetByte(1, Level1 + 1, 0);
    SetByte(1, Level1 + 2, 0);
    synth_ = MakeSynth(Rate, 2);
    Use();
    NoteOn(synth_, 30, 98);
    NoteOn(synth_, 108, 98);
    Played(synth_, 1.0);
    NoteOn(synth_, 60, 98);
    Played(synth_, 0.1);
    EXPECT_EQ(Numbers(synth_), (std::vector<int>{30, 60}));
}

TEST_F(KeyLife, OfAHeldKeyThatHasNotBegunYetDoesNotGiveWayFirst) {
    SetByte(1, Rate1, 10); // 13 s on a first level of silence, or a twentieth of it
    SetByte(1, Level1, 0);
    synth_ = MakeSynth(Rate, 2);
    Use();
    NoteOn(synth_, 30, 98);
    Played(synth_, 1.0);
    NoteOn(synth_, 108, 98);
    Played(synth_, 0.1);
    NoteOn(synth_, 60, 98);
    Played(synth_, 0.1);
    EXPECT_EQ(Numbers(synth_), (std::vector<int>{60, 108})); // the oldest has gone
}

} // namespace
} // namespace tonewright
