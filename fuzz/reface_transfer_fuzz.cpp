// Any run of events as what a reface DX answers: settings are read or refused, each voice of a
// download is what the messages say that were read for it, and everything is closed at the end.
// Slow, since every run goes through six conversations; the fuzzers of what is received and of the
// messages of a reface DX look at many more inputs.
//
// The input begins with the wait in milliseconds, the number of the write that fails, and what the
// answers are to. Then come steps: a byte that says what arrives and how, and the bytes it needs.
#include "common/desktop.h"
#include "common/settings.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "drivers/reface_dx/transfer.h"
#include "drivers/reface_dx/voice_codec.h"
#include "midi/transport.h"
#include "support/fuzz_support.h"

#include <algorithm>
#include <array>
#include <optional>

using namespace tonewright;

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t MostArrivals = 4096;
constexpr int In = 0, Out = 1;
constexpr int VoicesOfBank = 32;

// ---- what arrives

enum class Reading { Event, Nothing, Failure };
constexpr Reading Readings[] = {Reading::Event, Reading::Event, Reading::Nothing, Reading::Failure};

struct Arrival {
    std::uint32_t word = 0;
    std::uint8_t wait = 0; // milliseconds behind the one before it
    Reading reading = Reading::Event;
    bool isAnswer = false; // comes when the next message has been written
};

// The blocks of a voice, the settings and the identity, with right sums.
Bytes MessageOf(std::uint8_t kind, std::uint8_t seed) {
    const auto block = [seed](Bytes address, std::size_t size) {
        Bytes message = {0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, static_cast<std::uint8_t>(size + 4),
                         0x05};
        message.insert(message.end(), address.begin(), address.end());
        for (std::size_t i = 0; i < size; ++i) {
            message.push_back((seed + i * 3) & 0x7F);
        }
        unsigned sum = 0;
        for (std::size_t i = 7; i < message.size(); ++i) {
            sum += message[i];
        }
        message.push_back((128 - sum % 128) % 128);
        message.push_back(0xF7);
        return message;
    };
    switch (kind % 8) {
    case 0:
        return block({0x30, 0x00, 0x00}, 38);
    case 5:
        return block({0x0E, 0x0F, 0x00}, 0);
    case 6:
        return block({0x00, 0x00, 0x00}, 32);
    case 7:
        return {0xF0, 0x7E, 0x7F, 0x06, 0x02, 0x43, 0x00, 0x41,
                0x53, 0x06, seed, 0x00, 0x00, 0x7F, 0xF7};
    default:
        return block({0x31, static_cast<std::uint8_t>(kind % 8 - 1), 0x00}, 28);
    }
}

std::vector<Arrival> ReadSteps(std::span<const std::uint8_t> steps) {
    std::vector<Arrival> arrivals;
    std::size_t place = 0;
    const auto next = [&] { return place < steps.size() ? steps[place++] : std::uint8_t{0}; };
    while (place < steps.size() && arrivals.size() < MostArrivals) {
        const std::uint8_t how = next();
        Arrival arrival = {.wait = static_cast<std::uint8_t>(how >> 2 & 7),
                           .reading = Readings[how >> 6],
                           .isAnswer = (how & 0x20) != 0};
        Bytes bytes;
        if ((how & 3) == 0) { // one event
            bytes = {next(), next(), next(), next()};
        } else { // a whole message, a whole voice, or a message with one wrong byte
            const std::uint8_t kind = next(), seed = next();
            if ((how & 3) == 2) {
                for (const std::uint8_t part : {5, 0, 1, 2, 3, 4, 5}) {
                    const Bytes message = MessageOf(part, seed);
                    bytes.insert(bytes.end(), message.begin(), message.end());
                    bytes.resize((bytes.size() + 3) / 4 * 4);
                }
            } else {
                bytes = MessageOf(kind, seed);
            }
            if ((how & 3) == 3) {
                const std::uint8_t wrong = next();
                bytes[wrong % bytes.size()] = next();
            }
        }
        bytes.resize((bytes.size() + 3) / 4 * 4);
        for (std::size_t start = 0; start < bytes.size(); start += 4) {
            arrival.word = ReadLittle32(bytes, start);
            arrivals.push_back(arrival);
            arrival = {};
        }
    }
    return arrivals;
}

// ---- the instrument

// What was written, and the words that were read behind it; a word that could not be read is the
// one before it in its message once more.
struct Exchange {
    Bytes written;
    std::vector<std::optional<std::uint32_t>> read;
};

struct Instrument {
    std::span<const Arrival> arrivals;
    int failingWrite = -1;
    std::size_t next = 0;
    std::size_t released = 0; // what may arrive: up to the next answer
    std::int32_t now = 0;
    std::int32_t due = 0;
    int openStreams = 0;
    bool clockRuns = false;
    std::vector<Exchange> exchanges{};

    // What is written is answered: with all that comes up to the next answer.
    int Write(std::span<const std::uint8_t> message) {
        Demand(openStreams == 2 && clockRuns, "the link is open while something is written");
        const bool fails = static_cast<int>(exchanges.size()) == failingWrite;
        exchanges.push_back({.written = {message.begin(), message.end()}, .read = {}});
        if (fails) {
            return MidiFailure;
        }
        if (released < arrivals.size()) {
            ++released;
            while (released < arrivals.size() && !arrivals[released].isAnswer) {
                ++released;
            }
        }
        return MidiSuccess;
    }
    bool IsDue() const { return next < released && now >= due; }
    int Read(MidiEvent *event) {
        if (!IsDue()) {
            return 0;
        }
        Demand(!exchanges.empty(), "nothing is read ahead of a request");
        const Arrival &arrival = arrivals[next++];
        due = now + (next < arrivals.size() ? arrivals[next].wait : 0);
        switch (arrival.reading) {
        case Reading::Nothing:
            return 0;
        case Reading::Failure:
            exchanges.back().read.emplace_back();
            return MidiFailure;
        case Reading::Event:
            break;
        }
        exchanges.back().read.emplace_back(arrival.word);
        *event = {arrival.word, now};
        return 1;
    }
};

constexpr std::array<MidiDeviceInfo, 2> Devices = {
    MidiDeviceInfo{.interf = "", .name = "reface DX", .input = true},
    MidiDeviceInfo{.interf = "", .name = "reface DX", .output = true}};

MidiApi ApiOf(Instrument &instrument) {
    MidiApi api;
    api.Pt_Start = [&](int) {
        instrument.clockRuns = true;
        return MidiSuccess;
    };
    api.Pt_Stop = [&] {
        instrument.clockRuns = false;
        return MidiSuccess;
    };
    api.Pt_Time = [&] { return instrument.now; };
    api.Pm_CountDevices = [] { return static_cast<int>(Devices.size()); };
    api.Pm_GetDeviceInfo = [](int device) { return &Devices[static_cast<std::size_t>(device)]; };
    api.Pm_OpenInput = [&](MidiStream *stream, int, std::int32_t) {
        *stream = 1;
        ++instrument.openStreams;
        return MidiSuccess;
    };
    api.Pm_OpenOutput = [&](MidiStream *stream, int, std::int32_t, std::int32_t) {
        *stream = 2;
        ++instrument.openStreams;
        return MidiSuccess;
    };
    api.Pm_Close = [&](MidiStream) {
        --instrument.openStreams;
        return MidiSuccess;
    };
    api.Pm_WriteSysEx = [&](MidiStream, std::int32_t, std::span<const std::uint8_t> message) {
        Demand(message.front() == 0xF0, "a message begins with F0");
        Demand(std::ranges::find(message, 0xF7) == message.end() - 1, "and ends at its F7");
        return instrument.Write(message);
    };
    api.Pm_WriteShort = [&](MidiStream, std::int32_t, std::uint32_t word) {
        Demand((word & 0xFF) >= 0x80 && (word & 0xFF808000) == 0, "a short message has its form");
        return instrument.Write(std::array{static_cast<std::uint8_t>(word)});
    };
    api.Pm_Poll = [&](MidiStream) {
        const bool isDue = instrument.IsDue();
        ++instrument.now;
        return static_cast<int>(isDue);
    };
    api.Pm_Read = [&](MidiStream, MidiEvent *event) { return instrument.Read(event); };
    return api;
}

// ---- what it should come to

// The whole messages among what was read, each as a buffer that is zero behind its end.
using Buffer = std::array<std::uint8_t, 8192>;
std::vector<Buffer> MessagesOf(const Exchange &exchange) {
    std::vector<Buffer> messages;
    Buffer buffer = {};
    std::size_t count = 0;
    std::uint32_t former = 0;
    for (const auto &word : exchange.read) {
        former = word.value_or(former);
        bool ends = false;
        for (int shift = 0; shift < 32 && !ends && count < buffer.size(); shift += 8) {
            buffer[count++] = static_cast<std::uint8_t>(former >> shift);
            ends = buffer[count - 1] == 0xF7;
        }
        if (ends || count == buffer.size()) {
            messages.push_back(buffer);
            buffer = {};
            count = 0;
            former = 0;
        }
    }
    return messages;
}

// The 150 bytes that the messages behind a request come to.
Bytes VoiceFrom(const Exchange &exchange) {
    Bytes voice(150, 0);
    for (const Buffer &message : MessagesOf(exchange)) {
        if (message[5] == 0 && message[6] == 0x2A) {
            std::copy_n(message.begin() + 11, 38, voice.begin());
        } else if (message[5] == 0 && message[6] == 0x20) {
            std::copy_n(message.begin() + 11, 28,
                        voice.begin() + 38 + 28 * std::min<int>(message[9], 3));
        }
    }
    return voice;
}

bool AreSettings(const std::vector<Buffer> &messages) {
    if (messages.empty()) {
        return false;
    }
    const Buffer &first = messages.front();
    return first[0] == 0xF0 && first[1] == 0x43 && first[5] == 0x00 && first[6] == 0x24 &&
           first[7] == 0x05;
}

// ---- the operations

struct Run {
    Instrument instrument;
    VoiceList list;
    int busyBoxes = 0;
    std::vector<std::string> messages;

    Run(std::span<const Arrival> arrivals, int failingWrite)
        : instrument{.arrivals = arrivals, .failingWrite = failingWrite} {
        TheMidi = ApiOf(instrument);
        AnswerYesToEverything();
        TheDesktop.RunMessage = [this](MessageRequest &request) {
            messages.push_back(request.text);
        };
        TheDesktop.ShowBusyBox = [this](QWidget *, const std::string &) {
            ++busyBoxes;
            return true;
        };
        TheDesktop.CloseBusyBox = [this] { --busyBoxes; };
        CurrentDriverId = RefaceDriverId;
        MidiInPort = In;
        MidiOutPort = Out;
        // A voice that the instrument has sent, and a block that is none.
        VoiceObject voice = MakeRefaceVoiceObject();
        for (std::size_t i = 0; i < arrivals.size() && VoiceObjectHeaderSize + i < 202; ++i) {
            voice.bytes[VoiceObjectHeaderSize + i] = static_cast<std::uint8_t>(arrivals[i].word);
        }
        ListSetVoice(list, ListAdd(list), voice);
        ListSetVoice(list, ListAdd(list), VoiceObject{.bytes = Bytes(60, 0x6F)});
    }
    ~Run() { TheMidi = {}; }
    Run(const Run &) = delete;
    Run &operator=(const Run &) = delete;

    void DemandClosed() const {
        Demand(instrument.openStreams == 0, "every stream is closed");
        Demand(!instrument.clockRuns, "the clock is stopped");
        Demand(busyBoxes == 0, "no busy box stands");
    }
    // `result` is that of an operation that begins with the settings. True when it went on.
    bool WentOn(int result, std::size_t writes, bool tells) {
        DemandClosed();
        const auto &exchanges = instrument.exchanges;
        const bool hasSettings = AreSettings(MessagesOf(exchanges.front()));
        Demand(result == (hasSettings ? 1 : 0), "settings are needed, and all that is needed");
        Demand(exchanges.size() == (hasSettings ? writes : 1), "all is written, or a request");
        Demand(messages.size() == (hasSettings && !tells ? 0 : 1), "a failure is told");
        return hasSettings;
    }
};

void ReadSettings(Run &run) {
    std::array<std::uint8_t, RefaceSystemSize> settings;
    settings.fill(0xEE);
    const auto former = settings;
    MidiLink link;
    Demand(MidiLinkOpen(link, true, In, Out) == 1, "the link opens");
    const int result = ReadSystemCommon(link, settings);
    MidiLinkClose(link);
    run.DemandClosed();
    const auto messages = MessagesOf(run.instrument.exchanges.front());
    Demand(messages.size() <= 1, "one message is read");
    Demand(result == (AreSettings(messages) ? 1 : 0), "settings are read or refused");
    Demand(result == 1 ? std::ranges::equal(std::span(messages[0]).subspan(11, 32), settings)
                       : settings == former,
           "as they came, or not at all");
}

void Download(Run &run) {
    const auto before = run.list.items;
    const int result = DownloadCurrent(nullptr, run.list);
    Demand(run.list.enabled && run.list.redraw, "the list can be used again");
    DemandSoundList(run.list);
    if (!run.WentOn(result, 6 + 2 * VoicesOfBank + 1 + 11, false)) {
        Demand(run.list.items == before, "the list is left alone");
        return;
    }
    Demand(ListCount(run.list) == VoicesOfBank && run.list.selection == 0, "there are 32 rows");
    for (int row = 0; row < VoicesOfBank; ++row) {
        const VoiceObject &voice = run.list.items[static_cast<std::size_t>(row)];
        const VoiceObject empty = MakeRefaceVoiceObject();
        Demand(voice.bytes.size() == empty.bytes.size(), "a row holds a whole voice");
        Demand(std::equal(empty.bytes.begin(), empty.bytes.begin() + VoiceObjectHeaderSize,
                          voice.bytes.begin()),
               "whose header is its own");
        const Bytes expected =
            VoiceFrom(run.instrument.exchanges[7 + 2 * static_cast<std::size_t>(row)]);
        Demand(std::ranges::equal(std::span(voice.bytes).subspan(VoiceObjectHeaderSize), expected),
               "and whose blocks are those that were read for it");
        VoiceObjectName(voice);
    }
}

void Find(Run &run, bool autodetect) {
    SelectKeyboardAutodetect = autodetect ? 1 : 0;
    SynthFirmware = 0;
    SelectKeyboardMidiIn = SelectKeyboardMidiOut = "reface";
    const int result = FindCurrentSynth(nullptr);
    run.DemandClosed();
    Demand(MidiInPort == In && MidiOutPort == Out, "the ports are found in any case");
    Demand(CurrentDriverId == NoDriverId || CurrentDriverId == RefaceDriverId, "known or none");
    if (autodetect) {
        Demand((CurrentDriverId == NoDriverId) || (SynthFirmware >> 16 == 1 && result == 0),
               "an instrument has its version");
        Demand(run.instrument.exchanges.size() == 1, "it is asked once");
    } else {
        Demand(result == 1 && run.instrument.exchanges.empty(), "it is not asked");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    if (size < 3) {
        return 0;
    }
    SysexWait = data[0] % 16 + 1u;
    const int failingWrite = data[1] < 128 ? data[1] : -1;
    auto arrivals = ReadSteps({data + 3, size - 3});
    if ((data[2] & 1) != 0) { // settings first, so that the rest is what voices are asked for
        const std::uint8_t settings[] = {0x21, 6, data[2]};
        auto first = ReadSteps(settings);
        first.insert(first.end(), arrivals.begin(), arrivals.end());
        arrivals = std::move(first);
    }
    {
        Run run(arrivals, failingWrite);
        ReadSettings(run);
    }
    {
        Run run(arrivals, failingWrite);
        Download(run);
    }
    {
        Run run(arrivals, failingWrite);
        const auto before = run.list.items;
        const bool wentOn = run.WentOn(UploadCurrent(nullptr, run.list), 24, false);
        Demand(run.list.enabled != wentOn && run.list.items == before, "the list stays disabled");
    }
    for (const int row : {0, 1}) {
        Run run(arrivals, failingWrite);
        const int result =
            UploadOneVoice(nullptr, run.list, nullptr, RefaceDriverId, {In, Out}, row, 1);
        run.WentOn(result, 26, true);
        Demand(run.list.enabled, "the list can be used");
    }
    for (const bool autodetect : {true, false}) {
        Run run(arrivals, failingWrite);
        Find(run, autodetect);
    }
    return 0;
}
