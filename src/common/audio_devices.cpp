// The thread that looks for sound cards.
#include "common/audio_devices.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace tonewright {
namespace {

constexpr std::chrono::seconds EndLimit(1);

// Searches that go on. At the end of the program they are waited for, but not for ever.
struct Searches {
    std::mutex mutex;
    std::condition_variable ended;
    int count = 0;
};

struct SearchesAtExit {
    std::shared_ptr<Searches> searches = std::make_shared<Searches>();

    ~SearchesAtExit() {
        std::unique_lock lock(searches->mutex);
        searches->ended.wait_for(lock, EndLimit, [this] { return searches->count == 0; });
    }
};

std::shared_ptr<Searches> &AllSearches() {
    static SearchesAtExit all;
    return all.searches;
}

} // namespace

struct AudioDeviceSearch {
    std::mutex mutex;
    std::optional<FoundAudioDevices> found;
};

std::shared_ptr<AudioDeviceSearch> SearchAudioDevices() {
    auto search = std::make_shared<AudioDeviceSearch>();
    const auto searches = AllSearches();
    {
        const std::lock_guard lock(searches->mutex);
        ++searches->count;
    }
    std::thread([search, searches, ask = TheAudioOutput.Devices] {
        FoundAudioDevices found;
        if (ask) {
            found.devices = ask(found.why);
        }
        {
            const std::lock_guard lock(search->mutex);
            search->found = std::move(found);
        }
        const std::lock_guard lock(searches->mutex);
        --searches->count;
        searches->ended.notify_all();
    }).detach();
    return search;
}

std::optional<FoundAudioDevices> TakeFoundDevices(AudioDeviceSearch &search) {
    const std::lock_guard lock(search.mutex);
    return std::exchange(search.found, std::nullopt);
}

} // namespace tonewright
