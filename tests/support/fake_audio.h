// A sound card in place of the machine's, whose thread is the test: it asks for frames when the
// test says so.
#pragma once

#include "common/audio_output.h"
#include "midi/instrument_sound.h"
#include "support/put_back.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

namespace tonewright {

struct FakeAudio {
    PutBack<AudioOutput> former{TheAudioOutput};
    std::mutex mutex;
    std::condition_variable changed;
    int devices = 0, opens = 0, starts = 0, closes = 0; // calls
    AudioRequest request;                               // of the last Open
    // What the card does.
    double rate = 0.0;       // 0: the one that is asked for
    std::string refuses;     // why it does not open
    bool hangs = false;      // in Open
    bool hangsAtEnd = false; // in Close
    bool runs = true;
    bool startFails = false;

    FillFrames fill = nullptr; // while it runs
    void *context = nullptr;

    FakeAudio() {
        TheAudioOutput = {
            .Devices =
                [this](std::string &) {
                    const std::lock_guard lock(mutex);
                    ++devices;
                    return std::vector<AudioDevice>();
                },
            .Open = [this](const AudioRequest &asked, AudioStream &stream,
                           std::string &why) { return Open(asked, stream, why); },
            .Start = [this](FillFrames function, void *itsContext,
                            std::string &why) { return Start(function, itsContext, why); },
            .Runs =
                [this] {
                    const std::lock_guard lock(mutex);
                    return runs;
                },
            .Close =
                [this] {
                    std::unique_lock lock(mutex);
                    ++closes;
                    fill = nullptr;
                    changed.notify_all();
                    changed.wait(lock, [this] { return !hangsAtEnd; });
                },
        };
    }
    ~FakeAudio() {
        Change([this] { hangs = hangsAtEnd = false; });
        EndInstrumentSound();
    }

    int Calls() {
        const std::lock_guard lock(mutex);
        return devices + opens + starts + closes;
    }
    template <typename Action> void Change(Action action) {
        const std::lock_guard lock(mutex);
        action();
        changed.notify_all();
    }
    // Waits until `holds`; false when that takes longer than ten seconds.
    template <typename Condition> bool Until(Condition holds) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, std::chrono::seconds(10), holds);
    }
    bool UntilItRuns() {
        return Until([this] { return fill != nullptr; });
    }
    // What it plays next; nothing when it does not run.
    std::vector<float> Play(int count) {
        std::vector<float> frames;
        const std::lock_guard lock(mutex); // so that it is not closed meanwhile
        if (fill) {
            frames.resize(2 * static_cast<std::size_t>(count));
            fill(context, frames.data(), count);
        }
        return frames;
    }

private:
    bool Open(const AudioRequest &asked, AudioStream &stream, std::string &why) {
        std::unique_lock lock(mutex);
        ++opens;
        request = asked;
        changed.notify_all();
        changed.wait(lock, [this] { return !hangs; });
        stream = {.rate = rate > 0.0 ? rate : asked.rate, .latency = 0.01};
        why = refuses;
        return refuses.empty();
    }
    bool Start(FillFrames function, void *itsContext, std::string &why) {
        const std::lock_guard lock(mutex);
        ++starts;
        if (startFails) {
            why = "it does not start";
            return false;
        }
        fill = function;
        context = itsContext;
        changed.notify_all();
        return true;
    }
};

} // namespace tonewright
