// A scripted reface DX at the end of a cable, and everything that goes over it.
#pragma once

#include "drivers/reface_dx/transfer.h"

#include "common/settings.h"
#include "core/current.h"
#include "drivers/reface_dx/voice_codec.h"
#include "support/bank_bytes.h"
#include "support/fake_midi.h"
#include "support/reface_bytes.h"
#include "support/scripted_desktop.h"
#include "support/transfer_calls.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace tonewright {

using Bytes = FakeMidi::Bytes;
using Calls = std::vector<std::string>;
using Traffic = std::vector<std::string>;

inline Bytes operator+(Bytes front, const Bytes &back) {
    front.insert(front.end(), back.begin(), back.end());
    return front;
}

// "F0 43" as two bytes, and back.
inline Bytes Hex(const std::string &text) {
    Bytes bytes;
    std::istringstream stream(text);
    for (std::string byte; stream >> byte;) {
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(byte, nullptr, 16)));
    }
    return bytes;
}
inline std::string HexText(const Bytes &bytes) {
    constexpr const char *digits = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += text.empty() ? "" : " ";
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

inline const std::string SystemRequest = "F0 43 20 7F 1C 05 00 00 00 F7";
inline const std::string VoiceRequest = "F0 43 20 7F 1C 05 0E 0F 00 F7";
inline const std::string HeaderDump = "F0 43 00 7F 1C 00 04 05 0E 0F 00 5E F7";
inline const std::string FooterDump = "F0 43 00 7F 1C 00 04 05 0F 0F 00 5D F7";

// The instrument's settings: 0 to 14 all different, 60 to 70 behind them.
inline const std::string SettingsDump =
    "F0 43 00 7F 1C 00 24 05 00 00 00 03 10 07 04 0E 08 01 43 00 5A 21 02 05 06 09 "
    "60 61 62 63 64 65 66 67 68 69 6A 6B 6C 6D 6E 6F 70 0A F7";
inline const std::string Settings = "03 10 07 04 0E 08 01 43 00 5A 21 02 05 06 09 "
                                    "60 61 62 63 64 65 66 67 68 69 6A 6B 6C 6D 6E 6F 70";

// What puts these settings back.
inline const Traffic SettingsRestored = {
    "> F0 43 10 7F 1C 05 00 00 00 03 F7",          // transmit channel
    "> F0 43 10 7F 1C 05 00 00 01 10 F7",          // receive channel
    "> F0 43 10 7F 1C 05 00 00 02 07 04 0E 08 F7", // tuning, four bytes
    "> F0 43 10 7F 1C 05 00 00 06 01 F7",          // local control
    "> F0 43 10 7F 1C 05 00 00 07 43 F7",          // transpose
    "> F0 43 10 7F 1C 05 00 00 08 00 5A F7",       // tempo, two bytes
    "> F0 43 10 7F 1C 05 00 00 0A 21 F7",          // contrast
    "> F0 43 10 7F 1C 05 00 00 0B 02 F7",          // pedal
    "> F0 43 10 7F 1C 05 00 00 0C 05 F7",          // automatic power-off
    "> F0 43 10 7F 1C 05 00 00 0D 06 F7",          // speaker
    "> F0 43 10 7F 1C 05 00 00 0E 09 F7",          // MIDI control
};

// Dumps of a block, with the checksum over everything from the model byte on.
inline Bytes DumpOf(const Bytes &counted) {
    return Bytes{0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, static_cast<std::uint8_t>(counted.size())} +
           counted + Bytes{TestChecksum(counted), 0xF7};
}
inline Bytes CommonDump(const Bytes &data) {
    return DumpOf(Bytes{0x05, 0x30, 0x00, 0x00} + data);
}
inline Bytes OperatorDump(int n, const Bytes &data) {
    return DumpOf(Bytes{0x05, 0x31, static_cast<std::uint8_t>(n), 0x00} + data);
}

inline VoiceObject TestRefaceVoice(int number) {
    return {.bytes = TestRefaceBlock(number)};
}

// The header of a voice's block, and zeros.
inline VoiceObject ZeroRefaceVoice() {
    Bytes block = TestRefaceBlock(0);
    block.resize(52);
    block.resize(202, 0);
    return {.bytes = block};
}

constexpr const char *InvalidSystem = "Invalid system common.";

// The instrument answers a request for its settings with SettingsDump, and one for the voice of
// program p with the messages of `voiceMessages`, at first header, common block, operators and
// footer of TestRefaceCommon(p) and TestRefaceOperator.
struct RefaceTransferTest : testing::Test {
    ScriptedDesktop desktop;
    FakeMidi midi;
    const int in = midi.AddInput("reface DX");
    const int out = midi.AddOutput("reface DX");
    VoiceList list;

    Bytes settingsDump = Hex(SettingsDump);
    bool answersSettings = true;
    std::function<std::vector<Bytes>(int program)> voiceMessages = WholeVoice;
    int program = -1; // last program change

    // Messages that went over the cable, "> " to the instrument and "< " as far as they were read.
    Traffic traffic;

    RefaceTransferTest() {
        CurrentDriverId = RefaceDriverId;
        SynthFirmware = 0;
        SysexWait = 1500;
        CurrentMidiChannel = 1;
        MainItemFonts = {};
        RecordDesktopAmongCalls(midi);
        midi.onWrite = [this](const FakeMidi::Message &message) { Hear(message.bytes); };
        TheMidi.Pm_Read = [this, inner = TheMidi.Pm_Read](MidiStream stream, MidiEvent *event) {
            const int result = inner(stream, event);
            if (result > 0) {
                FollowRead(event->message);
            }
            return result;
        };
    }

    static std::vector<Bytes> WholeVoice(int program) {
        return {Hex(HeaderDump),
                CommonDump(TestRefaceCommon(program)),
                OperatorDump(0, TestRefaceOperator(0)),
                OperatorDump(1, TestRefaceOperator(1)),
                OperatorDump(2, TestRefaceOperator(2)),
                OperatorDump(3, TestRefaceOperator(3)),
                Hex(FooterDump)};
    }

    void FillList(int rows = 32) {
        for (int row = 0; row < rows; ++row) {
            ListSetVoice(list, ListAdd(list), TestRefaceVoice(row));
        }
    }

    int DownloadBank() { return RefaceDownloadBank(nullptr, list, {in, out}); }
    int UploadBank() { return RefaceUploadBank(nullptr, list, {in, out}); }
    int UploadVoice(const VoiceObject *voice, int index, std::uint8_t flags) {
        return RefaceUploadVoice(nullptr, list, voice, {in, out}, index, flags);
    }

    // When a program was selected, in milliseconds; -1: never.
    int TimeOfProgram(std::uint8_t number) const {
        for (const FakeMidi::Message &message : midi.written) {
            if (message.bytes == Bytes{0xC0, number, 0x00}) {
                return message.when;
            }
        }
        return -1;
    }

private:
    Bytes reading; // the bytes of the message that is being read

    void Hear(const Bytes &message) {
        traffic.push_back("> " + HexText(message));
        if (message[0] == 0xC0) {
            program = message[1];
        } else if (message == Hex(SystemRequest) && answersSettings) {
            midi.Send(in, settingsDump);
        } else if (message == Hex(VoiceRequest)) {
            for (const Bytes &answer : voiceMessages(program)) {
                midi.Send(in, answer);
            }
        }
    }

    void FollowRead(std::uint32_t word) {
        for (int position = 0; position < 4; ++position) {
            reading.push_back(static_cast<std::uint8_t>(word >> 8 * position));
            if (reading.back() == 0xF7) {
                traffic.push_back("< " + HexText(reading));
                reading.clear();
                return;
            }
        }
    }
};

inline Traffic operator+(Traffic front, const Traffic &back) {
    front.insert(front.end(), back.begin(), back.end());
    return front;
}

} // namespace tonewright
