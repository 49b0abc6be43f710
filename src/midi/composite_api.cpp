// Joins two MIDI tables: device indices run on from the first to the second, and the lowest bit of
// a stream says whose it is.
#include "midi/composite_api.h"

#include <array>
#include <memory>
#include <utility>

namespace tonewright {
namespace {

constexpr std::size_t First = 0;
constexpr std::size_t Second = 1;

struct Composite {
    std::array<MidiApi, 2> apis;
    std::size_t clock = Second; // whose time is told
    bool clockRuns = false;     // then the choice stands
};

struct InnerDevice {
    MidiApi &api;
    std::size_t side;
    int device; // in that table
};

InnerDevice InnerDeviceOf(Composite &both, int device) {
    const int ofFirst = both.apis[First].Pm_CountDevices();
    const std::size_t side = device < ofFirst ? First : Second;
    return {both.apis[side], side, side == First ? device : device - ofFirst};
}

MidiApi &ApiOf(Composite &both, MidiStream stream) {
    return both.apis[stream & 1];
}

// 0, no stream, stays 0.
MidiStream InnerStream(MidiStream stream) {
    return stream >> 1;
}

int Opened(int result, MidiStream *stream, MidiStream inner, std::size_t side) {
    *stream = result == MidiSuccess ? inner << 1 | side : NoMidiStream;
    return result;
}

} // namespace

MidiApi MakeCompositeApi(MidiApi first, MidiApi second) {
    const auto both = std::make_shared<Composite>();
    both->apis = {std::move(first), std::move(second)};
    return MidiApi{
        .Pt_Start =
            [both](int resolution) {
                const int ofFirst = both->apis[First].Pt_Start(resolution);
                const int ofSecond = both->apis[Second].Pt_Start(resolution);
                if (!both->clockRuns) {
                    both->clock = ofSecond == MidiSuccess ? Second : First;
                    both->clockRuns = true;
                }
                return both->clock == Second ? ofSecond : ofFirst;
            },
        .Pt_Stop =
            [both] {
                both->clockRuns = false;
                const int ofFirst = both->apis[First].Pt_Stop();
                const int ofSecond = both->apis[Second].Pt_Stop();
                return both->clock == Second ? ofSecond : ofFirst;
            },
        .Pt_Time = [both] { return both->apis[both->clock].Pt_Time(); },
        .Pm_CountDevices =
            [both] {
                return both->apis[First].Pm_CountDevices() + both->apis[Second].Pm_CountDevices();
            },
        .Pm_GetDeviceInfo =
            [both](int device) {
                const InnerDevice found = InnerDeviceOf(*both, device);
                return found.api.Pm_GetDeviceInfo(found.device);
            },
        .Pm_OpenInput =
            [both](MidiStream *stream, int device, std::int32_t bufferSize) {
                const InnerDevice found = InnerDeviceOf(*both, device);
                MidiStream inner = NoMidiStream;
                const int result = found.api.Pm_OpenInput(&inner, found.device, bufferSize);
                return Opened(result, stream, inner, found.side);
            },
        .Pm_OpenOutput =
            [both](MidiStream *stream, int device, std::int32_t bufferSize, std::int32_t latency) {
                const InnerDevice found = InnerDeviceOf(*both, device);
                MidiStream inner = NoMidiStream;
                const int result =
                    found.api.Pm_OpenOutput(&inner, found.device, bufferSize, latency);
                return Opened(result, stream, inner, found.side);
            },
        .Pm_Close =
            [both](MidiStream stream) {
                return ApiOf(*both, stream).Pm_Close(InnerStream(stream));
            },
        .Pm_WriteSysEx =
            [both](MidiStream stream, std::int32_t when, std::span<const std::uint8_t> message) {
                return ApiOf(*both, stream).Pm_WriteSysEx(InnerStream(stream), when, message);
            },
        .Pm_WriteShort =
            [both](MidiStream stream, std::int32_t when, std::uint32_t message) {
                return ApiOf(*both, stream).Pm_WriteShort(InnerStream(stream), when, message);
            },
        .Pm_Write =
            [both](MidiStream stream, const MidiEvent &event) {
                return ApiOf(*both, stream).Pm_Write(InnerStream(stream), event);
            },
        .Pm_Poll =
            [both](MidiStream stream) { return ApiOf(*both, stream).Pm_Poll(InnerStream(stream)); },
        .Pm_Read =
            [both](MidiStream stream, MidiEvent *event) {
                return ApiOf(*both, stream).Pm_Read(InnerStream(stream), event);
            },
        .RescanDevices =
            [both] {
                both->apis[First].RescanDevices();
                both->apis[Second].RescanDevices();
            },
    };
}

} // namespace tonewright
