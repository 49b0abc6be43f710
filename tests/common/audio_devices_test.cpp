// Looking for sound cards on a thread.
#include "common/audio_devices.h"

#include "support/put_back.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <thread>

namespace tonewright {
namespace {

std::optional<FoundAudioDevices> WaitFor(AudioDeviceSearch &search) {
    for (int look = 0; look < 1000; ++look) {
        if (auto found = TakeFoundDevices(search)) {
            return found;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return std::nullopt;
}

TEST(AudioDevices, AreFoundWhileTheCallerGoesOnAndTakenOnce) {
    const PutBack<AudioOutput> former{TheAudioOutput};
    std::promise<void> go;
    TheAudioOutput.Devices = [waits = go.get_future().share()](std::string &) {
        waits.wait();
        return std::vector<AudioDevice>{{.name = "Speaker"}, {.name = "Phones"}};
    };
    const auto search = SearchAudioDevices();
    EXPECT_EQ(TakeFoundDevices(*search), std::nullopt);
    go.set_value();
    const auto found = WaitFor(*search);
    ASSERT_TRUE(found);
    ASSERT_EQ(found->devices.size(), 2u);
    EXPECT_EQ(found->devices[1].name, "Phones");
    EXPECT_EQ(TakeFoundDevices(*search), std::nullopt);
}

TEST(AudioDevices, WhereThereIsNoneTheReasonIsFound) {
    const PutBack<AudioOutput> former{TheAudioOutput};
    TheAudioOutput.Devices = [](std::string &why) {
        why = "it is switched off";
        return std::vector<AudioDevice>();
    };
    const auto found = WaitFor(*SearchAudioDevices());
    ASSERT_TRUE(found);
    EXPECT_TRUE(found->devices.empty());
    EXPECT_EQ(found->why, "it is switched off");
}

} // namespace
} // namespace tonewright
