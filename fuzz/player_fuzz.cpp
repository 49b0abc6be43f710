// Any voices and any events to a player of any polyphony at any rate, in buffers of any size: what
// comes out is always a number and never above full scale, and panic ends it. Sounds take their
// time: a hundred inputs a second or so.
//
// The input is the rate and the polyphony, a byte each, and a run of steps: a byte that says what
// is done, and the bytes that it needs.
#include "support/fuzz_support.h"
#include "synth/player.h"

#include <algorithm>
#include <array>
#include <cmath>

using namespace tonewright;

namespace {

constexpr int Instruments = 2; // of six operators, and of four
constexpr int MostFrames = 8192;

struct Steps {
    std::span<const std::uint8_t> rest;

    std::uint8_t Byte() {
        if (rest.empty()) {
            return 0;
        }
        const std::uint8_t byte = rest.front();
        rest = rest.subspan(1);
        return byte;
    }
    // Leaves those alone for which nothing is left.
    void Bytes(std::span<std::uint8_t> bytes) {
        const auto piece = rest.first(std::min(bytes.size(), rest.size()));
        std::ranges::copy(piece, bytes.begin());
        rest = rest.subspan(piece.size());
    }
};

struct Session {
    OwnedSynthPlayer player;
    std::uint8_t six[SixOperatorBytes] = {};
    std::uint8_t four[FourOperatorBytes] = {};
    int frames = 0; // so far
};

std::span<std::uint8_t> BufferOf(Session &session, int instrument) {
    return instrument == 0 ? std::span<std::uint8_t>(session.six)
                           : std::span<std::uint8_t>(session.four);
}

void Send(Session &session, int instrument, bool sameKeys) {
    const PreparedVoice voice = instrument == 0 ? PrepareSixOperatorVoice(session.six)
                                                : PrepareFourOperatorVoice(session.four);
    SendVoice(*session.player, instrument, voice, sameKeys);
}

void Play(Session &session, int count) {
    static std::array<float, 2 * 4096> frames;
    const std::span<float> part(frames.data(), 2 * static_cast<std::size_t>(count));
    std::ranges::fill(part, 9.0f);
    RenderFrames(*session.player, part.data(), count);
    Demand(std::ranges::all_of(part, [](float sample) { return std::fabs(sample) <= 1.0f; }),
           "a number, and not above full scale");
    session.frames += count;
}

void Step(Session &session, Steps &steps) {
    const std::uint8_t what = steps.Byte();
    const int instrument = what >> 4 & 1;
    const auto event = [&](SynthEventKind kind) {
        const std::uint8_t number = steps.Byte() & 0x7F;
        SendEvent(*session.player, instrument,
                  {.kind = kind,
                   .number = number,
                   .value = std::max<std::uint16_t>(1, steps.Byte() & 0x7F)});
    };
    switch (what & 0x0F) {
    case 0:
        steps.Bytes(BufferOf(session, instrument));
        Send(session, instrument, (what & 0x20) != 0);
        break;
    case 1:
    case 2:
    case 3: {
        const std::span<std::uint8_t> buffer = BufferOf(session, instrument);
        buffer[steps.Byte() % buffer.size()] = steps.Byte();
        Send(session, instrument, (what & 0x20) == 0);
        break;
    }
    case 4:
    case 5:
    case 6:
        event(SynthEventKind::NoteOn);
        break;
    case 7:
        event(SynthEventKind::NoteOff);
        break;
    case 8:
        event(SynthEventKind::Controller);
        break;
    case 9:
        SendEvent(*session.player, instrument,
                  {.kind = SynthEventKind::Bend,
                   .value = static_cast<std::uint16_t>((steps.Byte() & 0x7F) * 129)});
        break;
    case 10:
        SendEvent(*session.player, instrument,
                  {.kind = SynthEventKind::Pressure,
                   .value = static_cast<std::uint16_t>(steps.Byte() & 0x7F)});
        break;
    case 11:
        SetPlayerVolume(*session.player, steps.Byte() / 255.0);
        break;
    case 12:
        SendPanic(*session.player);
        break;
    case 13:
        Play(session, 1 + steps.Byte());
        break;
    case 14:
        Play(session, 1 + (steps.Byte() * 16 + 15) % 4096);
        break;
    default:
        for (int key = 0; key < 64; ++key) {
            SendEvent(*session.player, instrument,
                      {.kind = SynthEventKind::NoteOn,
                       .number = static_cast<std::uint8_t>(2 * key),
                       .value = 127});
        }
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    constexpr double Rates[] = {8000.0,  11025.0, 16000.0, 22050.0,
                                44100.0, 48000.0, 96000.0, 192000.0};
    Steps steps = {.rest = {data, size}};
    const double rate = Rates[steps.Byte() % std::size(Rates)];
    const int polyphony = 1 + steps.Byte() % 64;
    Session session = {.player = MakeSynthPlayer(Instruments, rate, polyphony)};
    while (!steps.rest.empty() && session.frames < MostFrames) {
        Step(session, steps);
    }
    Play(session, 1000);
    SendPanic(*session.player);
    Play(session, 256);
    Demand(IsSilent(*session.player), "panic leaves nothing");
    return 0;
}
