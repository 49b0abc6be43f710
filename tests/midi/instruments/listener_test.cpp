// What a listener learns of the built-in instruments: their outputs, and what is to be heard.
#include "cable.h"

#include "support/bank_bytes.h"
#include "support/temp_folder.h"
#include "synth/synth.h"

#include <algorithm>
#include <ostream>

namespace tonewright {

static void PrintTo(const SynthEvent &event, std::ostream *out) {
    *out << "kind " << static_cast<int>(event.kind) << ", number " << int{event.number}
         << ", value " << event.value;
}

namespace {

constexpr auto Dx7 = BuiltinInstrument::Dx7;
constexpr auto Volca = BuiltinInstrument::VolcaFm;
constexpr auto Reface = BuiltinInstrument::Reface;

using Kind = SynthEventKind;
using Events = std::vector<SynthEvent>;

// A cable with a listener that keeps what it learns.
struct HeardCable {
    std::vector<std::pair<BuiltinInstrument, SynthEvent>> all;
    std::vector<BuiltinInstrument> opened, closed;
    struct ListenerIsGone {
        ~ListenerIsGone() { MakeBuiltinInstruments({}); }
    } listenerIsGone;
    Cable cable;

    explicit HeardCable(BuiltinInstrument instrument)
        : cable(instrument, true,
                {.outputOpened = [this](BuiltinInstrument which) { opened.push_back(which); },
                 .outputClosed = [this](BuiltinInstrument which) { closed.push_back(which); },
                 .heard = [this](BuiltinInstrument which,
                                 const SynthEvent &event) { all.emplace_back(which, event); }}) {}

    // What has been heard of an instrument since the last look.
    Events Take(BuiltinInstrument instrument) {
        Events events;
        for (const auto &[which, event] : all) {
            EXPECT_EQ(which, instrument);
            events.push_back(event);
        }
        all.clear();
        return events;
    }
};

class Listener : public testing::TestWithParam<BuiltinInstrument> {};
INSTANTIATE_TEST_SUITE_P(Instruments, Listener, testing::Values(Dx7, Volca, Reface),
                         [](const auto &given) {
                             return std::string(given.param == Dx7     ? "Dx7"
                                                : given.param == Volca ? "VolcaFm"
                                                                       : "Reface");
                         });

TEST_P(Listener, LearnsWhenAnOutputIsOpenedAndClosed) {
    HeardCable heard(GetParam());
    const MidiApi &midi = heard.cable.midi;
    const std::vector<BuiltinInstrument> once = {GetParam()};
    EXPECT_EQ(heard.opened, once) << "the input does not count";
    midi.Pm_Close(heard.cable.input);
    EXPECT_TRUE(heard.closed.empty());
    MidiStream second = NoMidiStream;
    EXPECT_NE(midi.Pm_OpenOutput(&second, 2 * static_cast<int>(GetParam()) + 1, 0, 0), 0);
    EXPECT_EQ(heard.opened, once) << "an output that does not open";
    midi.Pm_Close(heard.cable.output);
    EXPECT_EQ(heard.closed, once);
    midi.Pm_Close(heard.cable.output);
    EXPECT_EQ(heard.closed, once) << "closed once only";
    EXPECT_TRUE(heard.all.empty());
}

TEST_P(Listener, HearsKeysControllersBendAndPressure) {
    HeardCable heard(GetParam());
    heard.cable.SendShort(0x643C90);
    heard.cable.SendShort(0x017F90);
    EXPECT_EQ(heard.Take(GetParam()), (Events{{Kind::NoteOn, 60, 100}, {Kind::NoteOn, 127, 1}}));
    heard.cable.SendShort(0x003C90);
    heard.cable.SendShort(0x407F80);
    EXPECT_EQ(heard.Take(GetParam()), (Events{{Kind::NoteOff, 60, 0}, {Kind::NoteOff, 127, 0}}));
    heard.cable.SendShort(0x7F01B0);
    heard.cable.SendShort(0x0040B0);
    EXPECT_EQ(heard.Take(GetParam()),
              (Events{{Kind::Controller, 1, 127}, {Kind::Controller, 64, 0}}));
    heard.cable.SendShort(0x4000E0);
    heard.cable.SendShort(0x7F7FE0);
    heard.cable.SendShort(0x0001E0);
    EXPECT_EQ(heard.Take(GetParam()),
              (Events{{Kind::Bend, 0, 8192}, {Kind::Bend, 0, 16383}, {Kind::Bend, 0, 1}}));
    heard.cable.SendShort(0x7FD0);
    EXPECT_EQ(heard.Take(GetParam()), (Events{{Kind::Pressure, 0, 127}}));
    heard.cable.SendShort(0x403CA0); // of one key: no instrument takes it
    heard.cable.SendShort(0xF8);
    EXPECT_EQ(heard.Take(GetParam()), Events{});
}

TEST_P(Listener, HearsEveryModeMessageThatSilencesTheKeys) {
    HeardCable heard(GetParam());
    for (const std::uint8_t controller : {120, 123, 124, 125, 126, 127}) {
        heard.cable.SendShort(0x643C90);
        heard.cable.SendShort(0x0100B0u | controller << 8);
        EXPECT_EQ(heard.Take(GetParam()),
                  (Events{{Kind::NoteOn, 60, 100}, {Kind::Controller, controller, 1}}));
        EXPECT_TRUE(SoundingNotesOf(GetParam()).empty());
    }
}

TEST_P(Listener, HearsAProgramChangeAsANewVoice) {
    HeardCable heard(GetParam());
    heard.cable.SendShort(0x03C0);
    EXPECT_EQ(heard.Take(GetParam()), (Events{{Kind::NewVoice}}));
    heard.cable.SendShort(0x20C0); // behind the last voice
    EXPECT_EQ(heard.Take(GetParam()), Events{});
}

TEST(Listener, HearsOfADx7WhatItsChannelAndOmniLetThrough) {
    HeardCable heard(Dx7);
    const auto play = [&] {
        for (const std::uint32_t word :
             {0x643C92u, 0x403C82u, 0x7F01B2u, 0x0078B2u, 0x01C2u, 0x40D2u, 0x4000E2u}) {
            heard.cable.SendShort(word);
        }
        return heard.Take(Dx7);
    };
    EXPECT_EQ(play(), Events{});
    heard.cable.SendShort(0x007DB0);
    heard.Take(Dx7);
    const Events all = {{Kind::NoteOn, 60, 100},    {Kind::NoteOff, 60, 0},
                        {Kind::Controller, 1, 127}, {Kind::Controller, 120, 0},
                        {Kind::NewVoice},           {Kind::Pressure, 0, 64},
                        {Kind::Bend, 0, 8192}};
    EXPECT_EQ(play(), all);
    heard.cable.SendShort(0x007CB0);
    heard.Take(Dx7);
    EXPECT_EQ(play(), Events{});
    ChannelOf(Dx7) = 3;
    EXPECT_EQ(play(), all);
}

TEST(Listener, HearsOfARefaceWhatItsSettingsLetThrough) {
    HeardCable heard(Reface);
    SystemSettingsOf(Reface)[0x0E] = 0; // MIDI control
    for (const std::uint32_t word :
         {0x643C92u, 0x403C82u, 0x7F01B2u, 0x007BB2u, 0x01C2u, 0x40D2u, 0x4000E2u}) {
        heard.cable.SendShort(word);
    }
    EXPECT_EQ(heard.Take(Reface),
              (Events{{Kind::NoteOn, 60, 100}, {Kind::NoteOff, 60, 0}, {Kind::Controller, 123, 0}}))
        << "what silences the keys comes through";
    SystemSettingsOf(Reface)[0x0E] = 1;
    SystemSettingsOf(Reface)[0x01] = 4; // channel 5
    heard.cable.SendShort(0x643C92);
    heard.cable.SendShort(0x7F01B2);
    EXPECT_EQ(heard.Take(Reface), Events{});
    heard.cable.SendShort(0x7F01B4);
    EXPECT_EQ(heard.Take(Reface), (Events{{Kind::Controller, 1, 127}}));
}

TEST(Listener, HearsAVoiceInTheEditBufferOfADx7AndNoBank) {
    HeardCable heard(Dx7);
    heard.cable.Send(TestBank());
    EXPECT_EQ(heard.Take(Dx7), Events{});
    Bytes voice = EditBufferOf(Dx7);
    voice[144] = 36; // transpose
    EXPECT_EQ(PreparedVoiceOf(Dx7).transpose, 0);
    const Bytes header = {0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B};
    heard.cable.Send(header + voice + Bytes{SumByte(voice), 0xF7});
    EXPECT_EQ(heard.Take(Dx7), (Events{{Kind::NewVoice}}));
    EXPECT_EQ(PreparedVoiceOf(Dx7).transpose, 12);
    heard.cable.Send(header + voice + Bytes{static_cast<std::uint8_t>(SumByte(voice) ^ 1), 0xF7});
    EXPECT_EQ(heard.Take(Dx7), Events{});
    EXPECT_EQ(PreparedVoiceOf(Volca).transpose, 0);
}

TEST(Listener, HearsAVoiceOfARefaceWhenItIsWhole) {
    HeardCable heard(Reface);
    const Bytes &voice = EditBufferOf(Reface);
    Bytes common(voice.begin(), voice.begin() + 38);
    common[16] = 11; // the last algorithm
    heard.cable.Send(VoiceHeader);
    heard.cable.Send(CommonDump(common));
    EXPECT_EQ(heard.Take(Reface), Events{});
    EXPECT_NE(PreparedVoiceOf(Reface).algorithm.carriers, 0x0Fu);
    heard.cable.Send(VoiceFooter);
    EXPECT_EQ(heard.Take(Reface), (Events{{Kind::NewVoice}}));
    EXPECT_EQ(PreparedVoiceOf(Reface).algorithm.carriers, 0x0Fu);
}

TEST(Listener, HearsAParameterAsAChangedVoice) {
    {
        HeardCable heard(Volca);
        heard.cable.Send({0xF0, 0x43, 0x10, 0x01, 0x10, 0x24, 0xF7});
        EXPECT_EQ(PreparedVoiceOf(Volca).transpose, 12);
        heard.cable.Send({0xF0, 0x43, 0x10, 0x01, 0x1B, 0x00, 0xF7});
        EXPECT_EQ(heard.Take(Volca), (Events{{Kind::ChangedVoice}, {Kind::ChangedVoice}}));
        heard.cable.Send({0xF0, 0x43, 0x10, 0x01, 0x1C, 0x00, 0xF7}); // there is none
        heard.cable.Send({0xF0, 0x43, 0x11, 0x01, 0x10, 0x24, 0xF7}); // channel 2
        EXPECT_EQ(heard.Take(Volca), Events{});
    }
    HeardCable heard(Reface);
    heard.cable.Send({0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x30, 0x00, 0x0C, 0x4C, 0xF7});
    EXPECT_EQ(heard.Take(Reface), (Events{{Kind::ChangedVoice}}));
    EXPECT_EQ(PreparedVoiceOf(Reface).transpose, 12);
    heard.cable.Send({0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x01, 0x02, 0xF7});
    EXPECT_EQ(heard.Take(Reface), Events{}) << "a setting";
}

TEST(Listener, HearsTheTuneAndTheTransposeOfTheSettings) {
    HeardCable heard(Reface);
    const int transpose = PreparedVoiceOf(Reface).transpose;
    EXPECT_EQ(PreparedVoiceOf(Reface).tune, 0.0);
    heard.cable.Send({0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x07, 0x45, 0xF7});
    EXPECT_EQ(heard.Take(Reface), (Events{{Kind::ChangedVoice}}));
    EXPECT_EQ(PreparedVoiceOf(Reface).transpose, transpose + 5);
    // 1524 = 5F4 hexadecimal: 500 tenths of a cent up.
    heard.cable.Send(
        {0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x02, 0x00, 0x05, 0x0F, 0x04, 0xF7});
    EXPECT_EQ(heard.Take(Reface), (Events{{Kind::ChangedVoice}}));
    EXPECT_NEAR(PreparedVoiceOf(Reface).tune, 50.0 / 1200.0, 1e-12);
    // No higher than the panel goes, and none of a transpose that the instrument does not take.
    heard.cable.Send(
        {0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x02, 0x0F, 0x0F, 0x0F, 0x0F, 0xF7});
    EXPECT_NEAR(PreparedVoiceOf(Reface).tune, 102.3 / 1200.0, 1e-12);
    heard.Take(Reface);
    heard.cable.Send({0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x07, 0x4D, 0xF7});
    EXPECT_EQ(heard.Take(Reface), Events{});
    SystemSettingsOf(Reface)[7] = 0;
    EXPECT_EQ(PreparedVoiceOf(Reface).transpose, transpose - 12);
}

// Whether a key sounds in an engine that hears what is sent.
bool Sounds(const Events &events) {
    const PreparedVoice voice = PreparedVoiceOf(Dx7);
    Synth synth = MakeSynth(48000.0, 4);
    SetVoice(synth, &voice, false);
    for (const SynthEvent &event : events) {
        if (event.kind == Kind::NoteOn) {
            NoteOn(synth, event.number, event.value);
        } else if (event.kind == Kind::Controller) {
            Control(synth, event.number, event.value);
        }
        for (int block = 0; block < 75; ++block) {
            float left[BlockFrames];
            float right[BlockFrames];
            Render(synth, left, right);
        }
    }
    return std::ranges::any_of(synth.keys, [](const Key &key) { return key.sounds && key.held; });
}

TEST(Listener, HearsAnInstrumentAndItsSoundHoldTheSameKeysAfterAnyController) {
    for (unsigned controller = 64; controller < 128; ++controller) {
        ResetBuiltinInstruments();
        HeardCable heard(Dx7);
        heard.cable.SendShort(0x643C90);
        heard.cable.SendShort(0xB0 | controller << 8);
        EXPECT_EQ(!SoundingNotesOf(Dx7).empty(), Sounds(heard.Take(Dx7))) << controller;
    }
}

TEST(Listener, LearnsOfTheVoicesOfTheFactoryAndOfAFile) {
    const TempFolder folder;
    const std::string path = folder.File("studio");
    ASSERT_TRUE(SaveInstrumentMemory(path.c_str()));
    HeardCable heard(Volca);
    const std::vector<std::pair<BuiltinInstrument, SynthEvent>> all = {
        {Dx7, {Kind::NewVoice}}, {Volca, {Kind::NewVoice}}, {Reface, {Kind::NewVoice}}};
    EXPECT_TRUE(LoadInstrumentMemory(path.c_str()));
    EXPECT_EQ(heard.all, all);
    heard.all.clear();
    EXPECT_FALSE(LoadInstrumentMemory(folder.File("none").c_str()));
    EXPECT_EQ(heard.all, all) << "those of the factory";
    heard.all.clear();
    EXPECT_TRUE(heard.closed.empty());
    ResetBuiltinInstruments();
    EXPECT_EQ(heard.all, all);
    EXPECT_EQ(heard.closed, std::vector<BuiltinInstrument>{Volca}) << "open streams are gone";
}

TEST(Listener, IsThatOfTheTableThatWasMadeLast) {
    HeardCable heard(Dx7);
    MakeBuiltinInstruments({});
    heard.cable.SendShort(0x643C90);
    EXPECT_TRUE(heard.all.empty());
}

} // namespace
} // namespace tonewright
