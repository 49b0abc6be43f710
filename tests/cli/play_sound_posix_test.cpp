// What play lets be heard, on a sound device that is a pipe to this test, and what sound tells of
// the devices.
#include "midi_home.h"

#include "support/alsa_posix.h"
#include "support/paths.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace tonewright {
namespace {

using Frames = std::vector<float>; // of both sides, interleaved

Frames FramesOf(const std::uint8_t *bytes, std::size_t size) {
    Frames frames(size / sizeof(float));
    if (!frames.empty()) {
        std::memcpy(frames.data(), bytes, frames.size() * sizeof(float));
    }
    return frames;
}

// Without what is silent before it.
Frames FromTheFirstSound(const Frames &frames) {
    return {std::ranges::find_if(frames, [](float side) { return side != 0.0f; }), frames.end()};
}

// A sound device of 48,000 frames a second: it takes what is played at that pace, and keeps it.
class Recorder {
public:
    explicit Recorder(const TempFolder &temp)
        : alsa(temp, FileAlsaDevice(MakePipe(temp.File("pipe")))),
          pipe(open(temp.File("pipe").c_str(), O_RDONLY | O_NONBLOCK)), reader([this] { Read(); }) {
    }
    ~Recorder() {
        End();
        close(pipe);
    }
    Frames Played() {
        End();
        return FramesOf(bytes.data(), bytes.size());
    }

private:
    static std::string MakePipe(const std::string &path) {
        EXPECT_EQ(mkfifo(path.c_str(), 0600), 0);
        return path;
    }
    void Read() {
        using namespace std::chrono;
        constexpr milliseconds step(5);
        constexpr std::size_t bytesOfStep = 48 * 5 * 2 * sizeof(float);
        std::uint8_t piece[bytesOfStep];
        auto next = steady_clock::now();
        // What is in the pipe when the program has ended counts, too.
        for (ssize_t count = 0; !ended || count > 0;) {
            count = read(pipe, piece, sizeof piece);
            bytes.insert(bytes.end(), piece, piece + std::max<ssize_t>(count, 0));
            next += step;
            std::this_thread::sleep_until(ended ? next - step : next);
        }
    }
    void End() {
        ended = true;
        if (reader.joinable()) {
            reader.join();
        }
    }

    const AlsaConfiguration alsa;
    const int pipe;
    std::atomic<bool> ended = false;
    std::vector<std::uint8_t> bytes;
    std::thread reader;
};

class CliPlayIsHeard : public CliMidi {
protected:
    void SetUp() override {
        CliMidi::SetUp();
        WriteSettings("[Tonewright]\nAuditionCurrentVelocity = 100\n");
    }
    static std::vector<std::string> PlayExample(const std::string &note) {
        return {"play", ExampleFile("tonewright.syx"), "1", note, "--out", "dx7"};
    }

    const EnvironmentVariable sound{"TONEWRIGHT_SOUND", std::nullopt};
};

TEST_F(CliPlayIsHeard, AsItIsRendered) {
    const std::string rendered = folder.File("rendered.wav");
    EXPECT_EQ(Cli({"render", ExampleFile("tonewright.syx"), "1", rendered, "--note", "60",
                   "--velocity", "100", "--seconds", "0.5", "--bits", "32f"})
                  .exitStatus,
              0);
    const Bytes file = ReadTestFile(rendered);
    const std::string tag = "data";
    const auto data = std::search(file.begin(), file.end(), tag.begin(), tag.end());
    ASSERT_GT(file.end() - data, 8);
    Frames expected = FromTheFirstSound(FramesOf(file.data() + (data - file.begin()) + 8,
                                                 static_cast<std::size_t>(file.end() - data) - 8));

    Recorder recorder(folder);
    ExpectOutput(PlayExample("60"), "");
    Frames played = FromTheFirstSound(recorder.Played());
    // The key is down for half a second on this machine's clock, and for as much on the card's but
    // for what it takes ahead.
    constexpr std::size_t compared = 2 * 48000 / 5;
    ASSERT_GE(expected.size(), compared);
    ASSERT_GE(played.size(), compared);
    expected.resize(compared);
    played.resize(compared);
    EXPECT_GT(std::ranges::max(expected), 0.01f);
    EXPECT_TRUE(played == expected);
}

TEST_F(CliPlayIsHeard, ToTheEndOfTheTail) {
    Recorder recorder(folder);
    ExpectOutput({"play", ExampleFile("tonewright.syx"), "28", "60", "--out", "dx7"}, "");
    const Frames played = FromTheFirstSound(recorder.Played());
    EXPECT_GT(played.size(), 2u * 48000); // a bell: it rings longer than its key is down
    EXPECT_EQ(std::ranges::count_if(played.end() - 200, played.end(),
                                    [](float side) { return std::abs(side) > 0.001f; }),
              0);
}

TEST_F(CliPlayIsHeard, NotWithSilent) {
    Recorder recorder(folder);
    auto words = PlayExample("60");
    words.push_back("--silent");
    ExpectOutput(words, "");
    EXPECT_TRUE(recorder.Played().empty());
}

TEST_F(CliPlayIsHeard, NotWhereSoundIsForbidden) {
    const EnvironmentVariable none("TONEWRIGHT_SOUND", "0");
    Recorder recorder(folder);
    ExpectOutput(PlayExample("60"), "");
    EXPECT_TRUE(recorder.Played().empty());
    ExpectFailure({"sound"}, "no sound: TONEWRIGHT_SOUND=0 in the environment forbids it");
}

TEST_F(CliPlayIsHeard, OrSaysWhyNotAndPlaysAllTheSame) {
    const AlsaConfiguration alsa(folder, NoAlsaDevice);
    auto words = PlayExample("60");
    const auto result = Cli(words);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.errors, "tonewright-cli: not heard: no sound card was found that is free\n");
    words.insert(words.end(), {"--trace", "--silent"});
    const auto messages = MessagesOf(Cli(words).errors);
    EXPECT_EQ(std::ranges::count(messages, "out\t90 3C 64"), 1);
}

TEST_F(CliPlayIsHeard, OtherCommandsAskForNoCard) {
    Recorder recorder(folder);
    ExpectOutput({"upload", ExampleFile("tonewright.syx"), "--out", "dx7"}, "");
    EXPECT_TRUE(recorder.Played().empty());
}

TEST_F(CliPlayIsHeard, SoundListsTheDevices) {
    const AlsaConfiguration alsa(folder,
                                 std::string(NullAlsaDevice) + "pcm.studio { type null }\n");
    const auto result = Cli({"sound"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "studio\tALSA\t44100\tno\ndefault\tALSA\t44100\tyes\n");
}

TEST_F(CliPlayIsHeard, SoundSaysWhyThereIsNone) {
    const AlsaConfiguration alsa(folder, NoAlsaDevice);
    ExpectFailure({"sound"}, "no sound: no sound card was found that is free");
}

} // namespace
} // namespace tonewright
