// The worker thread that feeds event sounds to the sound output.
#include "common/sound.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace tonewright {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds PollInterval{10};
constexpr milliseconds StopLimit{1000};

// What the caller and the worker share. The worker holds it too, so that it outlives a caller who
// gave up waiting.
struct Player {
    SoundDevice device;
    std::mutex mutex;
    std::condition_variable changed;
    std::optional<Sound> next; // waits to replace what is playing
    bool stop = false;
    bool ended = false;
};

struct Worker {
    std::shared_ptr<Player> player;
    std::thread thread;
};
Worker TheWorker;

// Falls silent when the program ends, whichever way it takes.
struct StopAtExit {
    ~StopAtExit() { StopSounds(); }
} StopSoundsAtExit;

bool Interrupted(Player &player) {
    const std::lock_guard lock(player.mutex);
    return player.stop || player.next;
}

// Waits a little. True when the sound is to be given up.
bool InterruptedAfterWaiting(Player &player) {
    std::unique_lock lock(player.mutex);
    return player.changed.wait_for(lock, PollInterval,
                                   [&player] { return player.stop || player.next; });
}

void PlayOne(Player &player, const Sound &sound) {
    const SoundDevice &device = player.device;
    if (!device.Open || !device.Open(sound.format)) {
        return;
    }
    std::span<const std::uint8_t> rest(sound.frames);
    while (!rest.empty() && !Interrupted(player)) {
        const std::ptrdiff_t taken = device.Write(rest);
        if (taken < 0) {
            break;
        }
        rest = rest.subspan(static_cast<std::size_t>(taken));
        if (taken == 0 && InterruptedAfterWaiting(player)) {
            break;
        }
    }
    while (rest.empty() && device.Playing() && !InterruptedAfterWaiting(player)) {
    }
    device.Close();
}

void Work(const std::shared_ptr<Player> &player) {
    std::unique_lock lock(player->mutex);
    while (!player->stop) {
        if (player->next) {
            const Sound sound = *std::exchange(player->next, std::nullopt);
            lock.unlock();
            PlayOne(*player, sound);
            lock.lock();
        } else {
            player->changed.wait(lock);
        }
    }
    player->ended = true;
    player->changed.notify_all();
}

void StartWorker() {
    if (TheWorker.player) {
        return;
    }
    TheWorker.player = std::make_shared<Player>();
    TheWorker.player->device = TheSoundDevice;
    TheWorker.thread = std::thread(Work, TheWorker.player);
}

} // namespace

SoundDevice TheSoundDevice = PlatformSoundDevice();

bool PlaySoundFile(const char *path) {
    std::optional<Sound> sound = ReadSoundFile(path);
    if (!sound) {
        return false;
    }
    StartWorker();
    const std::lock_guard lock(TheWorker.player->mutex);
    TheWorker.player->next = std::move(sound);
    TheWorker.player->changed.notify_all();
    return true;
}

void StopSounds() {
    if (!TheWorker.player) {
        return;
    }
    bool ended = false;
    {
        std::unique_lock lock(TheWorker.player->mutex);
        TheWorker.player->stop = true;
        TheWorker.player->changed.notify_all();
        ended = TheWorker.player->changed.wait_for(lock, StopLimit,
                                                   [] { return TheWorker.player->ended; });
    }
    if (ended) {
        TheWorker.thread.join();
    } else {
        TheWorker.thread.detach();
    }
    TheWorker.player.reset();
}

} // namespace tonewright
