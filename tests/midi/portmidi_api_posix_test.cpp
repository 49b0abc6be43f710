// The real library without a sequencer: everything fails, quietly.
#include "midi/portmidi_api.h"

#include "midi/transport.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <array>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace tonewright {
namespace {

// Without its configuration the sequencer cannot be reached, on a machine that has one too.
[[maybe_unused]] const int NoSequencer = setenv("ALSA_CONFIG_PATH", "/dev/null", 1);

// What is written to a file descriptor while it lives, by libraries too.
class Capture {
public:
    explicit Capture(int watched) : descriptor(watched), kept(dup(watched)), file(std::tmpfile()) {
        dup2(fileno(file), descriptor);
    }
    ~Capture() { Stop(); }

    std::string Stop() {
        if (!file) {
            return {};
        }
        std::fflush(nullptr);
        dup2(kept, descriptor);
        close(kept);
        std::string text;
        std::rewind(file);
        std::array<char, 256> part;
        while (const std::size_t size = std::fread(part.data(), 1, part.size(), file)) {
            text.append(part.data(), size);
        }
        std::fclose(file);
        file = nullptr;
        return text;
    }

private:
    int descriptor, kept;
    std::FILE *file;
};

// Runs `what` and demands that nothing is printed.
void Quietly(const std::function<void()> &what) {
    Capture errors(STDERR_FILENO), output(STDOUT_FILENO);
    what();
    EXPECT_EQ(output.Stop(), "");
    EXPECT_EQ(errors.Stop(), "");
}

TEST(PortMidiApi, CountsNoDevices) {
    const MidiApi api = MakePortMidiApi();
    int count = -1;
    Quietly([&] { count = api.Pm_CountDevices(); });
    EXPECT_EQ(count, 0);
}

TEST(PortMidiApi, KnowsNothingOfIndicesWithoutADevice) {
    const MidiApi api = MakePortMidiApi();
    Quietly([&] {
        for (const int device : {0, 1, 99, -1, INT_MAX, INT_MIN}) {
            EXPECT_EQ(api.Pm_GetDeviceInfo(device), nullptr) << device;
        }
    });
}

TEST(PortMidiApi, OpensNothingAlsoAsTheVeryFirstCall) {
    const MidiApi api = MakePortMidiApi();
    Quietly([&] {
        for (const int device : {0, 99, -1, INT_MAX, INT_MIN}) {
            MidiStream stream = 7;
            EXPECT_NE(api.Pm_OpenInput(&stream, device, 512), 0) << device;
            EXPECT_EQ(stream, NoMidiStream);
            stream = 7;
            EXPECT_NE(api.Pm_OpenOutput(&stream, device, 0, 0), 0) << device;
            EXPECT_EQ(stream, NoMidiStream);
        }
    });
}

TEST(PortMidiApi, FailsOnStreamsThatAreNone) {
    const MidiApi api = MakePortMidiApi();
    const std::array<std::uint8_t, 2> message = {0xF0, 0xF7};
    Quietly([&] {
        for (const MidiStream stream : {NoMidiStream, MidiStream{1}, ~MidiStream{0}}) {
            MidiEvent event = {.message = 1, .timestamp = 2};
            EXPECT_NE(api.Pm_Close(stream), 0);
            EXPECT_NE(api.Pm_Poll(stream), 0);
            EXPECT_LT(api.Pm_Read(stream, &event), 0);
            EXPECT_EQ(event.message, 1u);
            EXPECT_NE(api.Pm_Write(stream, event), 0);
            EXPECT_NE(api.Pm_WriteShort(stream, 0, 0x90), 0);
            EXPECT_NE(api.Pm_WriteSysEx(stream, 0, message), 0);
        }
    });
}

TEST(PortMidiApi, CanBeScannedAgainAndAgain) {
    const MidiApi api = MakePortMidiApi();
    Quietly([&] {
        api.RescanDevices();
        api.RescanDevices();
        EXPECT_EQ(api.Pm_CountDevices(), 0);
        EXPECT_EQ(api.Pm_GetDeviceInfo(0), nullptr);
        api.RescanDevices();
    });
}

TEST(PortMidiApi, HasAClockThatGoesOnAlsoWhenStartedOrStoppedTwice) {
    const MidiApi api = MakePortMidiApi();
    Quietly([&] {
        api.Pt_Stop();
        EXPECT_EQ(api.Pt_Start(1), 0);
        const std::int32_t start = api.Pt_Time();
        EXPECT_GE(start, 0);
        EXPECT_LT(start, 1000);
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        api.Pt_Start(1);
        EXPECT_GE(api.Pt_Time(), start + 25);
        api.Pt_Stop();
        api.Pt_Stop();
    });
}

TEST(PortMidiApi, LeavesLinksAndSearchesWithoutAResult) {
    TheMidi = MakePortMidiApi();
    Quietly([&] {
        MidiLink link;
        EXPECT_EQ(MidiLinkOpen(link, true, 0, 0), 0);
        EXPECT_EQ(MidiLinkOpen(link, false, NoMidiDevice, NoMidiDevice), 0);
        MidiPorts ports;
        EXPECT_FALSE(FindPorts({}, ports));
    });
}

} // namespace
} // namespace tonewright
