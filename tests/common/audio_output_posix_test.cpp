// The machine's own sound card, through the libraries: without one, and on devices that are none.
#include "common/audio_output.h"
#include "support/alsa_posix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <limits>
#include <thread>
#include <vector>

using namespace tonewright;

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

// What a callback learns and does.
struct Callback {
    std::atomic<int> calls = 0;
    std::atomic<int> frames = 0; // of the last call
    std::atomic<float> denormal = -1.0f;

    bool IsCalled(int times) const {
        const auto end = Clock::now() + seconds(10);
        while (calls < times && Clock::now() < end) {
            std::this_thread::sleep_for(milliseconds(1));
        }
        return calls >= times;
    }
};

void FillWithQuarters(void *context, float *frames, int count) {
    Callback &callback = *static_cast<Callback *>(context);
    for (int at = 0; at < 2 * count; ++at) {
        frames[at] = at % 2 == 0 ? 0.25f : -0.25f;
    }
    volatile float small = std::numeric_limits<float>::min();
    small = small / 16.0f;
    callback.denormal = small;
    callback.frames = count;
    if (++callback.calls > 10) { // such devices would take millions of frames
        std::this_thread::sleep_for(milliseconds(1));
    }
}

constexpr const char *MissingConfiguration = "no file";

// Opens, starts and closes the output.
void ExpectItPlays(AudioOutput &output, const AudioRequest &request) {
    AudioStream stream;
    std::string why;
    ASSERT_TRUE(output.Open(request, stream, why)) << why;
    EXPECT_EQ(stream.rate, request.rate);
    EXPECT_GT(stream.latency, 0.0);
    EXPECT_FALSE(output.Runs());
    Callback callback;
    ASSERT_TRUE(output.Start(FillWithQuarters, &callback, why)) << why;
    EXPECT_TRUE(callback.IsCalled(3));
    EXPECT_TRUE(output.Runs());
    output.Close();
    const int calls = callback.calls;
    std::this_thread::sleep_for(milliseconds(20));
    EXPECT_EQ(callback.calls, calls);
    EXPECT_FALSE(output.Runs());
    EXPECT_EQ(callback.frames, request.frames);
    EXPECT_EQ(callback.denormal, 0.0f);
}

} // namespace

TEST(NoAudioOutput, SaysWhyAndPrintsNothing) {
    const TempFolder temp;
    for (const char *configuration :
         {NoAlsaDevice, "", "pcm.other { type null }\n", "{", MissingConfiguration}) {
        const AlsaConfiguration alsa(temp, configuration);
        if (configuration == MissingConfiguration) {
            std::filesystem::remove(temp.path / "alsa.conf");
        }
        SCOPED_TRACE(configuration);
        CapturedErrors errors(temp.File("errors"));
        AudioOutput output = PlatformAudioOutput();
        std::string why;
        EXPECT_TRUE(output.Devices(why).empty());
        EXPECT_EQ(why, "no sound card was found that is free");
        why.clear();
        AudioStream stream;
        EXPECT_FALSE(output.Open({}, stream, why));
        EXPECT_EQ(why, "no sound card was found that is free");
        EXPECT_FALSE(output.Runs());
        output.Close();
        EXPECT_EQ(errors.Text(), "");
    }
}

TEST(AudioOutputOfTheMachine, PlaysOnTheDefaultAndOnTheDeviceOfAName) {
    const TempFolder temp;
    const AlsaConfiguration alsa(temp, std::string(NullAlsaDevice) +
                                           "pcm.second { type null hint { show on } }\n");
    CapturedErrors errors(temp.File("errors"));
    AudioOutput output = PlatformAudioOutput();
    std::string why;
    const auto devices = output.Devices(why);
    ASSERT_EQ(devices.size(), 2u) << why;
    for (const AudioDevice &device : devices) {
        EXPECT_EQ(device.interface, "ALSA");
        EXPECT_EQ(device.isDefault, device.name == "default");
        EXPECT_GT(device.rate, 8000.0);
        ExpectItPlays(output, {.device = device.name, .rate = 48000.0, .frames = 256});
    }
    ExpectItPlays(output, {.device = "", .rate = 44100.0, .frames = 512});
    ExpectItPlays(output, {.device = "unplugged", .rate = 48000.0, .frames = 128});
    EXPECT_EQ(errors.Text(), "");
}

TEST(AudioOutputOfTheMachine, TellsItsDevicesWhileOneIsOpen) {
    const TempFolder temp;
    const AlsaConfiguration alsa(temp, NullAlsaDevice);
    AudioOutput output = PlatformAudioOutput();
    AudioStream stream;
    std::string why;
    ASSERT_TRUE(output.Open({}, stream, why)) << why;
    Callback callback;
    ASSERT_TRUE(output.Start(FillWithQuarters, &callback, why));
    std::thread([&output] {
        std::string why;
        EXPECT_EQ(output.Devices(why).size(), 1u) << why;
    }).join();
    const int calls = callback.calls;
    EXPECT_TRUE(callback.IsCalled(calls + 3));
    output.Close();
}

TEST(AudioOutputOfTheMachine, GivesTheDeviceTheFramesAsTheyAre) {
    const TempFolder temp;
    const std::string heard = temp.File("heard.raw");
    const AlsaConfiguration alsa(temp, FileAlsaDevice(heard));
    AudioOutput output = PlatformAudioOutput();
    ExpectItPlays(output, {});
    const auto bytes = ReadTestFile(heard);
    std::vector<float> frames(bytes.size() / sizeof(float));
    std::memcpy(frames.data(), bytes.data(), frames.size() * sizeof(float));
    // The library begins with silence.
    const auto begin = std::ranges::find_if(frames, [](float side) { return side != 0.0f; });
    const auto at = begin - frames.begin();
    EXPECT_EQ(at % 2, 0);
    ASSERT_GE(frames.end() - begin, 3 * 256 * 2);
    for (int frame = 0; frame < 3 * 256; ++frame) {
        ASSERT_EQ(begin[2 * frame], 0.25f) << frame;
        ASSERT_EQ(begin[2 * frame + 1], -0.25f) << frame;
    }
}
