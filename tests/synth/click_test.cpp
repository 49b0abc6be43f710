// Nothing that happens to a player is heard as a click: with a low sine at full level sounding, no
// step between two samples is wider than 1.5 times the widest of the steady sounds before and
// after.
#include "synth/player.h"

#include "voices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace tonewright {
namespace {

constexpr double Rate = 48000.0;
constexpr int LowKey = 30; // 46 Hz
constexpr double NoClick = 1.5;
constexpr int Buffer = 256;
constexpr double SweepTime = 1.5; // of a chorus, a flanger or a phaser in the middle of its range

// Of both sides, and from the end of one part to the begin of the next.
struct Steps {
    float left = 0.0f;
    float right = 0.0f;
    bool known = false;
};

// The widest step in so many seconds.
double Widest(SynthPlayer &player, Steps &last, double seconds, int part = Buffer) {
    double widest = 0.0;
    for (int done = 0; done < static_cast<int>(std::lround(seconds * Rate)); done += part) {
        std::vector<float> frames(2 * static_cast<std::size_t>(part));
        RenderFrames(player, frames.data(), part);
        for (int i = 0; i < part; ++i) {
            if (last.known) {
                widest = std::max<double>({widest, std::fabs(frames[2 * i] - last.left),
                                           std::fabs(frames[2 * i + 1] - last.right)});
            }
            last = {.left = frames[2 * i], .right = frames[2 * i + 1], .known = true};
        }
    }
    return widest;
}

PreparedVoice Sine() {
    return InitialVoice().Prepared();
}

PreparedVoice SineBehind(EffectKind kind, double first = 0.5, double second = 0.5) {
    PreparedVoice voice = Sine();
    voice.effects[0] = {.kind = kind, .first = first, .second = second};
    return voice;
}

// An effect of the second stage, behind a chorus.
PreparedVoice SineBehindTwo(EffectKind kind, double first = 0.5, double second = 0.5) {
    PreparedVoice voice = SineBehind(EffectKind::Chorus);
    voice.effects[1] = {.kind = kind, .first = first, .second = second};
    return voice;
}

PreparedVoice Changed(const std::function<void(SixVoice &)> &change) {
    SixVoice voice = InitialVoice();
    change(voice);
    return voice.Prepared();
}

void Down(SynthPlayer &player, int key) {
    SendEvent(
        player, 0,
        {.kind = SynthEventKind::NoteOn, .number = static_cast<std::uint8_t>(key), .value = 98});
}

void Up(SynthPlayer &player, int key) {
    SendEvent(player, 0,
              {.kind = SynthEventKind::NoteOff, .number = static_cast<std::uint8_t>(key)});
}

void Control(SynthPlayer &player, int number, int value) {
    SendEvent(player, 0,
              {.kind = SynthEventKind::Controller,
               .number = static_cast<std::uint8_t>(number),
               .value = static_cast<std::uint16_t>(value)});
}

struct Happening {
    std::string name;
    std::function<void(SynthPlayer &)> happen;
    PreparedVoice voice = Sine();
    int polyphony = 16;
};

std::vector<Happening> Happenings() {
    std::vector<Happening> all = {
        {"KeyOn", [](SynthPlayer &player) { Down(player, LowKey + 7); }},
        {"KeyOff", [](SynthPlayer &player) { Up(player, LowKey); }},
        {"StolenKey", [](SynthPlayer &player) { Down(player, LowKey + 5); }, Sine(), 1},
        {"ManyStolenKeys",
         [](SynthPlayer &player) {
             for (int key = 0; key < 20; ++key) {
                 Down(player, LowKey + key % 7);
             }
         },
         Sine(), 1},
        {"NewVoice",
         [](SynthPlayer &player) { SendVoice(player, 0, ExampleVoice(3).Prepared(), false); }},
        {"NewVoiceAndKey",
         [](SynthPlayer &player) {
             SendVoice(player, 0, Changed([](SixVoice &voice) { voice.Operator(1, Coarse) = 2; }),
                       false);
             Down(player, LowKey);
         }},
        {"Panic", [](SynthPlayer &player) { SendPanic(player); }},
        {"PanicAndKey",
         [](SynthPlayer &player) {
             SendPanic(player);
             Down(player, LowKey);
         }},
        {"AllSoundOff", [](SynthPlayer &player) { Control(player, 120, 0); }},
        {"AllSoundOffAndKey",
         [](SynthPlayer &player) {
             Control(player, 120, 0);
             Down(player, LowKey);
         }},
        {"AllSoundOffInAReverb", [](SynthPlayer &player) { Control(player, 120, 0); },
         SineBehind(EffectKind::Reverb, 1.0, 0.7)},
        {"AllNotesOff", [](SynthPlayer &player) { Control(player, 123, 0); }},
        {"PedalUp",
         [](SynthPlayer &player) {
             Control(player, 64, 127);
             Up(player, LowKey);
             Control(player, 64, 0);
         }},
        {"Legato", [](SynthPlayer &player) { Down(player, LowKey + 2); },
         [] {
             PreparedVoice voice = Sine();
             voice.partMode = PartMode::MonoLegato;
             return voice;
         }()},
        {"MonoMode", [](SynthPlayer &player) { Control(player, 126, 1); }},
        {"LouderOperator", [](SynthPlayer &player) { SendVoice(player, 0, Sine(), true); },
         Changed([](SixVoice &voice) { voice.Operator(1, OutputLevel) = 60; })},
        {"SofterOperator",
         [](SynthPlayer &player) {
             SendVoice(player, 0,
                       Changed([](SixVoice &voice) { voice.Operator(1, OutputLevel) = 60; }), true);
         }},
        {"OtherAlgorithm",
         [](SynthPlayer &player) {
             SendVoice(player, 0, Changed([](SixVoice &voice) { voice.bytes[AlgorithmByte] = 31; }),
                       true);
         }},
        {"OtherPitch",
         [](SynthPlayer &player) {
             SendVoice(player, 0, Changed([](SixVoice &voice) { voice.Operator(1, Coarse) = 2; }),
                       true);
         }},
        {"ManyChanges",
         [](SynthPlayer &player) {
             for (int level = 0; level < 20; ++level) {
                 SendVoice(player, 0, Changed([&](SixVoice &voice) {
                               voice.Operator(1, OutputLevel) =
                                   static_cast<std::uint8_t>(99 - level);
                           }),
                           true);
             }
         }},
        {"Bend",
         [](SynthPlayer &player) {
             SendEvent(player, 0, {.kind = SynthEventKind::Bend, .value = 16383});
         }},
        {"Wheel", [](SynthPlayer &player) { Control(player, 1, 127); },
         Changed([](SixVoice &voice) { voice.bytes[PitchSensitivityByte] = 7; })},
        {"Silenced", [](SynthPlayer &player) { Control(player, 7, 0); }},
        {"Expression", [](SynthPlayer &player) { Control(player, 11, 30); }},
        {"Volume", [](SynthPlayer &player) { SetPlayerVolume(player, 0.0); }},
    };
    const char *const names[] = {"Through", "Distortion", "TouchWah", "Chorus",
                                 "Flanger", "Phaser",     "Delay",    "Reverb"};
    const auto send = [](const PreparedVoice &voice) {
        return [voice](SynthPlayer &player) { SendVoice(player, 0, voice, true); };
    };
    for (int i = 1; i < 8; ++i) {
        const auto kind = static_cast<EffectKind>(i);
        const std::string name = names[i];
        all.push_back({"To" + name, send(SineBehind(kind)), Sine()});
        all.push_back({"From" + name, send(Sine()), SineBehind(kind)});
        all.push_back({name + "ToTheNext", send(SineBehind(static_cast<EffectKind>(i % 7 + 1))),
                       SineBehind(kind)});
        all.push_back(
            {name + "InTheSecondStage", send(SineBehindTwo(kind)), SineBehind(EffectKind::Chorus)});
        all.push_back(
            {name + "FirstParameterUp", send(SineBehind(kind, 1.0)), SineBehind(kind, 0.1)});
        all.push_back(
            {name + "FirstParameterDown", send(SineBehind(kind, 0.0)), SineBehind(kind, 0.9)});
        all.push_back({name + "SecondParameterUp", send(SineBehind(kind, 0.5, 1.0)),
                       SineBehind(kind, 0.5, 0.1)});
        all.push_back({name + "SecondParameterDown", send(SineBehind(kind, 0.5, 0.0)),
                       SineBehind(kind, 0.5, 0.9)});
        if (kind != EffectKind::TouchWah) { // lets less through of the low sine than of its end
            all.push_back({"NewVoiceFrom" + name,
                           [](SynthPlayer &player) { SendVoice(player, 0, Sine(), false); },
                           SineBehind(kind)});
        }
    }
    return all;
}

void PrintTo(const Happening &happening, std::ostream *stream) {
    *stream << happening.name;
}

class Clicks : public testing::TestWithParam<Happening> {};

TEST_P(Clicks, AreNotHeard) {
    // At so many places of the sine.
    for (int place = 0; place < 4; ++place) {
        const OwnedSynthPlayer player = MakeSynthPlayer(1, Rate, GetParam().polyphony);
        PreparedVoice voice = GetParam().voice;
        voice.oscillatorSync = place % 2 == 0;
        SendVoice(*player, 0, voice, false);
        Down(*player, LowKey);
        Steps last;
        Widest(*player, last, 1.0 + place * 0.0187);
        const double before = Widest(*player, last, SweepTime);
        GetParam().happen(*player);
        const double meanwhile = Widest(*player, last, 1.0);
        const double after = Widest(*player, last, SweepTime);
        ASSERT_GT(before, 0.0);
        EXPECT_LT(meanwhile / std::max(before, after), NoClick)
            << place << ": " << before << ", " << meanwhile << ", " << after;
    }
}

INSTANTIATE_TEST_SUITE_P(Happenings, Clicks, testing::ValuesIn(Happenings()),
                         [](const auto &information) { return information.param.name; });

// However quickly voices come one after the other.
TEST(ClicksOfVoices, AreNotHeardInAFlood) {
    for (const bool sameKeys : {true, false}) {
        for (const int part : {64, 100, 300}) {
            const OwnedSynthPlayer player = MakeSynthPlayer(1, Rate, 16);
            SendVoice(*player, 0, Sine(), false);
            Down(*player, LowKey);
            Steps last;
            Widest(*player, last, 0.5);
            const double before = Widest(*player, last, 0.2);
            double widest = 0.0;
            for (int change = 0; change < 100; ++change) {
                SendVoice(*player, 0, Changed([&](SixVoice &voice) {
                    voice.Operator(1, OutputLevel) = static_cast<std::uint8_t>(99 - change % 3);
                }),
                          sameKeys);
                if (!sameKeys) {
                    Down(*player, LowKey);
                }
                widest = std::max(widest, Widest(*player, last, part / Rate, part));
            }
            EXPECT_LT(widest / before, NoClick) << sameKeys << ", " << part;
        }
    }
}

// The limiter only takes away, and lets go slowly: what it does to a chord that comes and goes adds
// no step to it.
TEST(Limiter, MakesNoStepWider) {
    for (int turn = 0; turn < 4; ++turn) {
        const OwnedSynthPlayer limited = MakeSynthPlayer(1, Rate, 16);
        const OwnedSynthPlayer soft = MakeSynthPlayer(1, Rate, 16);
        SetPlayerVolume(*soft, 0.1);
        Steps lastLimited;
        Steps lastSoft;
        for (SynthPlayer *player : {limited.get(), soft.get()}) {
            SendVoice(*player, 0, Sine(), false);
        }
        Widest(*limited, lastLimited, 0.1);
        Widest(*soft, lastSoft, 0.1);
        for (int step = 0; step < 40; ++step) {
            const int key = LowKey + 3 * (step % 20) + turn;
            for (SynthPlayer *player : {limited.get(), soft.get()}) {
                step < 20 ? Down(*player, key) : Up(*player, key);
            }
            const double bounded = Widest(*limited, lastLimited, 0.05);
            EXPECT_LT(bounded, 1.02 * 10.0 * Widest(*soft, lastSoft, 0.05)) << step;
        }
        EXPECT_TRUE(TakePlayerLevel(*limited).limited);
        EXPECT_FALSE(TakePlayerLevel(*soft).limited);
    }
}

// And it bends no wave: it is as strong from one side of it to the other.
TEST(Limiter, IsSteady) {
    const OwnedSynthPlayer limited = MakeSynthPlayer(1, Rate, 16);
    const OwnedSynthPlayer soft = MakeSynthPlayer(1, Rate, 16);
    SetPlayerVolume(*soft, 0.05);
    constexpr int Count = 4800; // of 46 Hz, four waves and a half
    for (SynthPlayer *player : {limited.get(), soft.get()}) {
        SendVoice(*player, 0, Sine(), false);
        for (int i = 0; i < 16; ++i) {
            Down(*player, LowKey);
        }
        Steps last;
        Widest(*player, last, 1.0);
    }
    std::vector<float> whole(2 * Count);
    std::vector<float> twentieth(2 * Count);
    RenderFrames(*limited, whole.data(), Count);
    RenderFrames(*soft, twentieth.data(), Count);
    float least = 1.0f;
    float most = 0.0f;
    for (std::size_t i = 0; i < whole.size(); ++i) {
        if (std::fabs(twentieth[i]) > 0.01f) {
            least = std::min(least, whole[i] / twentieth[i] / 20.0f);
            most = std::max(most, whole[i] / twentieth[i] / 20.0f);
        }
    }
    EXPECT_LT(most, 0.8f); // 16 times an eighth of full scale is too much
    EXPECT_LT(most / least, 1.08f);
}

} // namespace
} // namespace tonewright
