// The worker that feeds sounds to the device, with a device that the test plays itself.
#include "common/sound.h"

#include "support/put_back.h"
#include "support/sound_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

using namespace tonewright;

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::seconds;

// A device that takes frames in small pieces, as many as the test has given it room for.
struct FakeDevice {
    PutBack<SoundDevice> former{TheSoundDevice};
    std::mutex mutex;
    std::condition_variable changed;
    int opens = 0, closes = 0;
    SoundFormat format;
    SoundBytes taken; // since the last Open
    std::size_t room = SIZE_MAX;
    bool opensAtAll = true;
    bool fails = false;
    bool playsOn = false;

    FakeDevice() {
        TheSoundDevice = {
            .Open = [this](const SoundFormat &opened) { return Open(opened); },
            .Write = [this](std::span<const std::uint8_t> frames) { return Write(frames); },
            .Playing =
                [this] {
                    const std::lock_guard lock(mutex);
                    return playsOn;
                },
            .Close =
                [this] {
                    const std::lock_guard lock(mutex);
                    ++closes;
                    changed.notify_all();
                },
        };
    }
    ~FakeDevice() { StopSounds(); }

    bool Open(const SoundFormat &opened) {
        const std::lock_guard lock(mutex);
        ++opens;
        format = opened;
        taken.clear();
        changed.notify_all();
        return opensAtAll;
    }
    std::ptrdiff_t Write(std::span<const std::uint8_t> frames) {
        const std::lock_guard lock(mutex);
        if (fails) {
            return -1;
        }
        const auto piece = frames.first(std::min({frames.size(), room, std::size_t{6}}));
        taken.insert(taken.end(), piece.begin(), piece.end());
        room -= room == SIZE_MAX ? 0 : piece.size();
        changed.notify_all();
        return static_cast<std::ptrdiff_t>(piece.size());
    }
    // Waits until `holds`; false when that takes longer than ten seconds.
    template <typename Condition> bool Until(Condition holds) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, seconds(10), holds);
    }
};

} // namespace

TEST(PlaySoundFile, GivesTheDeviceEveryFrameInOrder) {
    const TempFolder temp;
    FakeDevice device;
    ASSERT_TRUE(PlaySoundFile(temp.Write("bell.wav", TestSound(1000)).c_str()));
    ASSERT_TRUE(device.Until([&device] { return device.closes == 1; }));
    EXPECT_EQ(device.opens, 1);
    EXPECT_EQ(device.format.channels, 1);
    EXPECT_EQ(device.format.framesPerSecond, 8000);
    EXPECT_EQ(device.format.bitsPerSample, 16);
    EXPECT_EQ(device.taken, TestSoundFrames(1000));
}

TEST(PlaySoundFile, OfAMissingOrInvalidFileIsFalseAndOpensNothing) {
    const TempFolder temp;
    FakeDevice device;
    EXPECT_FALSE(PlaySoundFile(temp.File("missing.wav").c_str()));
    EXPECT_FALSE(PlaySoundFile(temp.WriteText("text.wav", "no sound").c_str()));
    EXPECT_FALSE(PlaySoundFile(temp.Folder().c_str()));
    StopSounds();
    EXPECT_EQ(device.opens, 0);
}

TEST(PlaySoundFile, ReplacesTheSoundThatIsPlaying) {
    const TempFolder temp;
    FakeDevice device;
    device.room = 12;
    ASSERT_TRUE(PlaySoundFile(temp.Write("long.wav", TestSound(1000)).c_str()));
    ASSERT_TRUE(device.Until([&device] { return device.taken.size() == 12; }));
    ASSERT_TRUE(PlaySoundFile(temp.Write("short.wav", TestSound(3)).c_str()));
    ASSERT_TRUE(device.Until([&device] { return device.opens == 2; }));
    {
        const std::lock_guard lock(device.mutex);
        device.room = SIZE_MAX;
    }
    ASSERT_TRUE(device.Until([&device] { return device.closes == 2; }));
    EXPECT_EQ(device.taken, TestSoundFrames(3));
}

TEST(PlaySoundFile, GivesUpWhenTheDeviceDoesNotOpenOrFails) {
    const TempFolder temp;
    FakeDevice device;
    device.opensAtAll = false;
    const std::string path = temp.Write("bell.wav", TestSound(10));
    ASSERT_TRUE(PlaySoundFile(path.c_str()));
    ASSERT_TRUE(device.Until([&device] { return device.opens == 1; }));
    StopSounds();
    EXPECT_EQ(device.closes, 0);
    EXPECT_TRUE(device.taken.empty());
    device.opensAtAll = true;
    device.fails = true;
    ASSERT_TRUE(PlaySoundFile(path.c_str()));
    ASSERT_TRUE(device.Until([&device] { return device.closes == 1; }));
    EXPECT_TRUE(device.taken.empty());
}

TEST(StopSounds, EndsASoundThatIsBeingWritten) {
    const TempFolder temp;
    FakeDevice device;
    device.room = 12;
    ASSERT_TRUE(PlaySoundFile(temp.Write("long.wav", TestSound(100000)).c_str()));
    ASSERT_TRUE(device.Until([&device] { return device.taken.size() == 12; }));
    const auto start = Clock::now();
    StopSounds();
    EXPECT_LT(Clock::now() - start, seconds(1));
    EXPECT_EQ(device.closes, 1);
}

TEST(StopSounds, EndsASoundThatIsStillHeard) {
    const TempFolder temp;
    FakeDevice device;
    device.playsOn = true;
    ASSERT_TRUE(PlaySoundFile(temp.Write("bell.wav", TestSound(3)).c_str()));
    ASSERT_TRUE(device.Until([&device] { return device.taken.size() == 6; }));
    const auto start = Clock::now();
    StopSounds();
    EXPECT_LT(Clock::now() - start, seconds(1));
    EXPECT_EQ(device.closes, 1);
}

TEST(StopSounds, WithoutASoundDoesNothingAndASoundCanFollow) {
    const TempFolder temp;
    FakeDevice device;
    StopSounds();
    StopSounds();
    ASSERT_TRUE(PlaySoundFile(temp.Write("bell.wav", TestSound(3)).c_str()));
    ASSERT_TRUE(device.Until([&device] { return device.closes == 1; }));
    StopSounds();
    ASSERT_TRUE(PlaySoundFile(temp.File("bell.wav").c_str()));
    EXPECT_TRUE(device.Until([&device] { return device.closes == 2; }));
}

TEST(StopSounds, LeavesADeviceBehindThatDoesNotAnswer) {
    const TempFolder temp;
    const std::string path = temp.Write("bell.wav", TestSound(3));
    auto gate = std::make_shared<std::mutex>();
    auto opening = std::make_shared<std::atomic<bool>>(false);
    std::unique_lock held(*gate);
    TheSoundDevice.Open = [gate, opening](const SoundFormat &) {
        *opening = true;
        const std::lock_guard wait(*gate);
        return false;
    };
    const auto start = Clock::now();
    ASSERT_TRUE(PlaySoundFile(path.c_str()));
    EXPECT_LT(Clock::now() - start, seconds(1)) << "the caller waited for the device";
    while (!*opening) {
        std::this_thread::yield();
    }
    StopSounds();
    EXPECT_LT(Clock::now() - start, seconds(5));
    held.unlock();
}
