// A thread that plays while another one sends everything and a third one asks, for ThreadSanitizer,
// with which alone this is built: a race ends the program with a report.
#include "synth/player.h"

#include "random_events.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace tonewright {
namespace {

TEST(PlayerThreads, ShareNothingWithoutSayingSo) {
    constexpr int Instruments = 2;
    std::mt19937 random(5);
    const std::vector<PreparedVoice> voices = RandomVoices(random, 4);
    const OwnedSynthPlayer player = MakeSynthPlayer(Instruments, 48000.0, 4);
    std::atomic<bool> ends = false;
    std::atomic<int> rendered = 0;
    std::thread reader([&] {
        while (!ends) {
            float frames[2 * 256];
            RenderFrames(*player, frames, 1 + rendered.fetch_add(1) % 256);
        }
    });
    std::atomic<int> silent = 0;
    std::thread asker([&] {
        while (!ends) {
            silent += IsSilent(*player) ? 1 : 0;
            std::this_thread::yield();
        }
    });
    for (int sent = 0; sent < 20000; ++sent) {
        SendAnything(*player, Instruments, voices, random);
        if (sent % 16 == 0) {
            TakePlayerLevel(*player);
        }
        while (rendered < sent / 16) { // a few with each buffer
            std::this_thread::yield();
        }
    }
    SendPanic(*player);
    // Silence stays: whoever asks comes to see it.
    while (!IsSilent(*player) || silent == 0) {
        std::this_thread::yield();
    }
    ends = true;
    reader.join();
    asker.join();
}

} // namespace
} // namespace tonewright
