// The machine's own sound output: without a device, and on a device that is a file.
#include "common/desktop.h"
#include "common/folders.h"
#include "common/settings.h"
#include "common/sound.h"
#include "support/alsa_posix.h"
#include "support/sound_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

using namespace tonewright;

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

void PlayAsTheShellDoes(const TempFolder &temp) {
    std::filesystem::create_directory(temp.path / "sounds");
    temp.Write("sounds/confirm.wav", TestSound(800));
    ApplicationPath = temp.Folder();
    PlatformFolders = {};
    TheDesktop.PlaySoundFile = [](const std::string &path) { return PlaySoundFile(path.c_str()); };
}

} // namespace

TEST(NoSoundDevice, AnEventSoundReturnsAtOnceAndPrintsNothing) {
    const TempFolder temp;
    const AlsaConfiguration alsa(temp, NoAlsaDevice);
    PlayAsTheShellDoes(temp);
    CapturedErrors errors(temp.File("errors"));
    const auto start = Clock::now();
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(PlayEventSound(DefaultEventSound), 1);
    }
    EXPECT_LT(Clock::now() - start, milliseconds(500));
    std::this_thread::sleep_for(milliseconds(200)); // the worker meets the missing device
    StopSounds();
    EXPECT_LT(Clock::now() - start, milliseconds(2500));
    EXPECT_EQ(errors.Text(), "");
}

TEST(NoSoundDevice, AConfigurationThatNamesNoDeviceIsNoErrorEither) {
    const TempFolder temp;
    const AlsaConfiguration alsa(temp, "");
    PlayAsTheShellDoes(temp);
    CapturedErrors errors(temp.File("errors"));
    EXPECT_EQ(PlayEventSound(DefaultEventSound), 1);
    std::this_thread::sleep_for(milliseconds(100));
    StopSounds();
    EXPECT_EQ(errors.Text(), "");
}

TEST(NoSoundDevice, AMissingSoundIsIgnoredInSilence) {
    const TempFolder temp;
    PlayAsTheShellDoes(temp);
    std::filesystem::remove(temp.path / "sounds/confirm.wav");
    CapturedErrors errors(temp.File("errors"));
    EXPECT_EQ(PlayEventSound(DefaultEventSound), 0);
    StopSounds();
    EXPECT_EQ(errors.Text(), "");
}

TEST(SoundDevice, PlaysEveryFrameOfTheFile) {
    const TempFolder temp;
    const std::string heard = temp.File("heard.raw");
    const AlsaConfiguration alsa(temp, FileAlsaDevice(heard));
    PlayAsTheShellDoes(temp);
    CapturedErrors errors(temp.File("errors"));
    ASSERT_EQ(PlayEventSound(DefaultEventSound), 1);
    const auto deadline = Clock::now() + std::chrono::seconds(10);
    SoundBytes bytes;
    while (bytes.size() < 1600 && Clock::now() < deadline) {
        std::this_thread::sleep_for(milliseconds(10));
        bytes = temp.Holds("heard.raw") ? ReadTestFile(heard) : SoundBytes();
    }
    StopSounds();
    EXPECT_EQ(errors.Text(), "");
    ASSERT_GE(bytes.size(), 1600u);
    bytes.resize(1600);
    EXPECT_EQ(bytes, TestSoundFrames(800));
}
