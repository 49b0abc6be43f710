// A test's end of the cable to a built-in instrument: writes bytes and words, and gathers what
// comes back.
#pragma once

#include "midi/instruments/builtin_instruments.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace tonewright {

using Bytes = std::vector<std::uint8_t>;

inline Bytes operator+(Bytes left, const Bytes &right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

// What makes the low seven bits of the sum zero.
inline std::uint8_t SumByte(const Bytes &bytes) {
    unsigned sum = 0;
    for (const std::uint8_t byte : bytes) {
        sum += byte;
    }
    return static_cast<std::uint8_t>((0x80 - (sum & 0x7F)) & 0x7F);
}

inline Bytes Text(const std::string &text) {
    return Bytes(text.begin(), text.end());
}

struct Cable {
    MidiApi midi;
    MidiStream input = NoMidiStream;
    MidiStream output = NoMidiStream;

    explicit Cable(BuiltinInstrument instrument, bool simulatedClock = true,
                   const InstrumentListener &listener = {})
        : midi(MakeBuiltinInstruments({.simulatedClock = simulatedClock, .listener = listener})) {
        const int device = 2 * static_cast<int>(instrument);
        EXPECT_EQ(midi.Pm_OpenInput(&input, device, MidiInputBufferSize), 0);
        EXPECT_EQ(midi.Pm_OpenOutput(&output, device + 1, MidiOutputBufferSize, 0), 0);
        midi.Pt_Start(1);
    }
    ~Cable() {
        midi.Pt_Stop();
        midi.Pm_Close(output);
        midi.Pm_Close(input);
    }
    Cable(const Cable &) = delete;
    Cable &operator=(const Cable &) = delete;

    int Send(const Bytes &sysex) { return midi.Pm_WriteSysEx(output, 0, sysex); }
    int SendShort(std::uint32_t word) { return midi.Pm_WriteShort(output, midi.Pt_Time(), word); }

    // The words of all events that come until nothing has come for `patience` milliseconds.
    std::vector<std::uint32_t> Words(int patience = 50) {
        std::vector<std::uint32_t> words;
        for (std::int32_t last = midi.Pt_Time(); midi.Pt_Time() < last + patience;) {
            MidiEvent event;
            const int found = midi.Pm_Poll(input);
            if (found < 0) {
                ADD_FAILURE() << "the input is not open";
                break;
            }
            if (found > 0 && midi.Pm_Read(input, &event) > 0) {
                words.push_back(event.message);
                last = midi.Pt_Time();
            }
        }
        return words;
    }
    // The same as whole messages of system-exclusive bytes; zeros behind F7 are left out.
    std::vector<Bytes> Messages(int patience = 50) {
        std::vector<Bytes> messages;
        bool insideMessage = false;
        for (const std::uint32_t word : Words(patience)) {
            for (int shift = 0; shift < 32; shift += 8) {
                const auto byte = static_cast<std::uint8_t>(word >> shift);
                if (!insideMessage) {
                    messages.emplace_back();
                }
                messages.back().push_back(byte);
                insideMessage = byte != 0xF7;
                if (!insideMessage) {
                    break;
                }
            }
        }
        return messages;
    }
};

// Requests to a reface DX, as they go over the cable.
inline const Bytes IdentityRequest = {0xF0, 0x7E, 0x00, 0x06, 0x01, 0xF7};
inline const Bytes SystemRequest = {0xF0, 0x43, 0x20, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x00, 0xF7};
inline const Bytes VoiceRequest = {0xF0, 0x43, 0x20, 0x7F, 0x1C, 0x05, 0x0E, 0x0F, 0x00, 0xF7};
inline const Bytes VoiceHeader = {0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, 0x04,
                                  0x05, 0x0E, 0x0F, 0x00, 0x5E, 0xF7};
inline const Bytes VoiceFooter = {0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, 0x04,
                                  0x05, 0x0F, 0x0F, 0x00, 0x5D, 0xF7};
inline const Bytes IdentityReply = {0xF0, 0x7E, 0x7F, 0x06, 0x02, 0x43, 0x00, 0x41,
                                    0x53, 0x06, 0x02, 0x00, 0x00, 0x7F, 0xF7};

// Blocks around data: count 2A for the common block, 20 for an operator.
inline Bytes CommonDump(const Bytes &data) {
    const Bytes summed = Bytes{0x05, 0x30, 0x00, 0x00} + data;
    return Bytes{0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, 0x2A} + summed + Bytes{SumByte(summed), 0xF7};
}
inline Bytes OperatorDump(std::uint8_t op, const Bytes &data) {
    const Bytes summed = Bytes{0x05, 0x31, op, 0x00} + data;
    return Bytes{0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, 0x20} + summed + Bytes{SumByte(summed), 0xF7};
}

} // namespace tonewright
