// The worker that opens and closes a sound card, the card's own thread and one that writes all the
// while, for ThreadSanitizer, with which alone this is built: a race ends the program with a
// report.
#include "common/audio_output.h"
#include "midi/instrument_sound.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <random>
#include <thread>

namespace tonewright {
namespace {

// A little while, that leaves the machine to the other threads.
void Wait() {
    std::this_thread::sleep_for(std::chrono::microseconds(100));
}

// A card that asks for frames without end, when it opens at all.
struct Card {
    std::atomic<int> opens = 0;
    std::atomic<unsigned> calls = 0;
    std::atomic<bool> ends = false;
    std::thread thread;
};
Card TheCard;

bool Open(const AudioRequest &request, AudioStream &stream, std::string &why) {
    const int number = TheCard.opens.fetch_add(1);
    std::this_thread::sleep_for(std::chrono::microseconds(number % 3 * 100));
    stream = {.rate = number % 5 == 0 ? 44100.0 : request.rate, .latency = 0.0};
    why = number % 7 == 6 ? "it is busy" : "";
    return why.empty();
}

bool Start(FillFrames fill, void *context, std::string &) {
    TheCard.ends = false;
    TheCard.thread = std::thread([fill, context] {
        while (!TheCard.ends) {
            float frames[2 * 128];
            fill(context, frames, 128);
            ++TheCard.calls;
            Wait();
        }
    });
    return true;
}

void Close() {
    TheCard.ends = true;
    if (TheCard.thread.joinable()) {
        TheCard.thread.join();
    }
}

} // namespace

AudioOutput TheAudioOutput = {
    .Devices = {},
    .Open = Open,
    .Start = Start,
    .Runs = [] { return TheCard.opens % 11 != 0; },
    .Close = Close,
};

// Of the instruments only this is asked.
PreparedVoice PreparedVoiceOf(BuiltinInstrument) {
    PreparedVoice voice;
    voice.operators[0].output = 127;
    return voice;
}

namespace {

TEST(InstrumentSoundThreads, OpenAndCloseManyTimesWhileNotesCome) {
    std::mt19937 random(3);
    const auto listener = InstrumentSound();
    const auto play = [&](int events) {
        for (int event = 0; event < events; ++event) {
            const auto number = static_cast<std::uint8_t>(random() % 128);
            const auto value = static_cast<std::uint16_t>(random() % 128);
            listener.heard(static_cast<BuiltinInstrument>(random() % BuiltinInstrumentCount),
                           {static_cast<SynthEventKind>(random() % 7), number, value});
        }
    };
    int played = 0;
    for (int times = 0; times < 300; ++times) {
        SetInstrumentSound(
            {.device = "", .volume = times % 10 / 10.0, .frames = 256, .polyphony = 8 + times % 3});
        listener.outputOpened(BuiltinInstrument::Dx7);
        play(20);
        if (times % 4 != 0) {
            const unsigned calls = TheCard.calls;
            std::string why;
            while (StateOfInstrumentSound(why) == InstrumentSoundState::Opening) {
                Wait();
            }
            for (int wait = 0; wait < 50 && TheCard.calls - calls < 3; ++wait) {
                Wait();
            }
            played += TheCard.calls - calls >= 3 ? 1 : 0;
            play(20);
        }
        if (times % 5 == 0) {
            PanicInstruments();
        }
        InstrumentLevel();
        InstrumentsAreSilent();
        listener.outputClosed(BuiltinInstrument::Dx7);
        if (times % 3 == 0) {
            EndInstrumentSound();
        }
    }
    EndInstrumentSound();
    EXPECT_FALSE(TheCard.thread.joinable());
    EXPECT_GT(TheCard.opens, 100);
    EXPECT_GT(played, 50);
}

} // namespace
} // namespace tonewright
