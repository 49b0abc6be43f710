// The MIDI table of the built-in instruments: their ports, the streams that are open, the clock,
// and the line on which answers come back.
#include "midi/instruments/builtin_instruments.h"

#include "midi/instruments/instrument.h"
#include "midi/instruments/memory_file.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <deque>
#include <map>
#include <thread>
#include <utility>

namespace tonewright {

namespace {

// The error codes of PortMidi.
constexpr int Success = 0;
constexpr int NoSuchDevice = -9999;
constexpr int NoSuchStream = -9995;
constexpr int BadData = -9994;
constexpr int HostFailure = -10000;

constexpr std::int64_t MicrosecondsPerMillisecond = 1000;
// A real reface DX begins to answer about 16 ms after the request; what follows goes at the speed
// of a MIDI line, 31,250 bits a second with ten bits a byte. All its voices take three seconds.
constexpr std::int64_t AnswerBegins = 16 * MicrosecondsPerMillisecond;
constexpr std::int64_t MicrosecondsPerByte = 320;
constexpr std::size_t ShortMessageSize = 3;

constexpr std::int32_t DefaultInputBuffer = 256; // events

struct PendingEvent {
    AnswerEvent event;
    std::int64_t due = 0; // microseconds
};

struct OpenStream {
    std::size_t instrument = 0;
    int device = 0;
    bool isInput = false;
    std::size_t bufferSize = 0;       // of an input, in events
    std::deque<PendingEvent> pending; // of an input
    std::int64_t lineFree = 0;        // of an input: when the line has sent all that is pending
    int writes = 0;                   // of an output
};

struct Studio {
    std::array<Instrument, BuiltinInstrumentCount> instruments;
    std::array<InstrumentFaults, BuiltinInstrumentCount> faults;
    std::map<MidiStream, OpenStream> streams;
    MidiStream lastStream = NoMidiStream;
    InstrumentListener listener;
    bool simulatedClock = true;
    std::int64_t simulatedTime = 0; // microseconds
    bool clockRuns = false;
    std::int64_t clockStart = 0; // microseconds
};

// There is one of each instrument, whatever the number of tables.
Studio &TheStudio() {
    static Studio studio = [] {
        Studio fresh;
        fresh.instruments = FactoryInstruments();
        return fresh;
    }();
    return studio;
}

std::int64_t Now(const Studio &studio) {
    if (studio.simulatedClock) {
        return studio.simulatedTime;
    }
    return std::chrono::duration_cast<std::chrono::microseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

std::int32_t ClockTime(const Studio &studio, std::int64_t microseconds) {
    return static_cast<std::int32_t>((microseconds - studio.clockStart) /
                                     MicrosecondsPerMillisecond);
}

// Ports: for each instrument its input and its output, in the order of the instruments; behind
// them, so that no number changes, those of the twins.
struct Port {
    std::size_t instrument = 0;
    bool isInput = false;
};
struct Ports {
    std::array<Port, 4 * BuiltinInstrumentCount> all;
    std::size_t count = 0;

    void AddPair(std::size_t instrument) {
        all[count++] = {instrument, true};
        all[count++] = {instrument, false};
    }
    // nullptr for a number without a port.
    const Port *At(int device) const {
        return device >= 0 && static_cast<std::size_t>(device) < count
                   ? &all[static_cast<std::size_t>(device)]
                   : nullptr;
    }
};
Ports PortsOf(const Studio &studio) {
    Ports ports;
    for (std::size_t i = 0; i < BuiltinInstrumentCount; ++i) {
        ports.AddPair(i);
    }
    for (std::size_t i = 0; i < BuiltinInstrumentCount; ++i) {
        if (studio.faults[i].twin) {
            ports.AddPair(i);
        }
    }
    return ports;
}

const MidiDeviceInfo *DeviceInfo(int device) {
    static const auto infos = [] {
        std::array<std::array<MidiDeviceInfo, 2>, BuiltinInstrumentCount> table;
        for (std::size_t i = 0; i < table.size(); ++i) {
            const char *name = TheStudio().instruments[i].model->portName;
            table[i][0] = {BuiltinInterface, name, false, true};
            table[i][1] = {BuiltinInterface, name, true, false};
        }
        return table;
    }();
    const Ports ports = PortsOf(TheStudio());
    const Port *port = ports.At(device);
    return port ? &infos[port->instrument][port->isInput ? 1 : 0] : nullptr;
}

void TellOpened(const Studio &studio, std::size_t instrument) {
    if (studio.listener.outputOpened) {
        studio.listener.outputOpened(static_cast<BuiltinInstrument>(instrument));
    }
}

void TellClosed(const Studio &studio, std::size_t instrument) {
    if (studio.listener.outputClosed) {
        studio.listener.outputClosed(static_cast<BuiltinInstrument>(instrument));
    }
}

void TellHeard(const Studio &studio, std::size_t instrument, const SynthEvent &event) {
    if (studio.listener.heard) {
        studio.listener.heard(static_cast<BuiltinInstrument>(instrument), event);
    }
}

void TellNewVoices(const Studio &studio) {
    for (std::size_t i = 0; i < BuiltinInstrumentCount; ++i) {
        TellHeard(studio, i, {SynthEventKind::NewVoice});
    }
}

// As with PortMidi, a device is open once at a time.
int OpenPort(MidiStream *stream, int device, bool asInput, std::int32_t bufferSize) {
    Studio &studio = TheStudio();
    *stream = NoMidiStream;
    const Ports ports = PortsOf(studio);
    const Port *port = ports.At(device);
    if (!port) {
        return NoSuchDevice;
    }
    const bool isOpen = std::ranges::any_of(
        studio.streams, [&](const auto &entry) { return entry.second.device == device; });
    if (port->isInput != asInput || isOpen) {
        return NoSuchDevice;
    }
    const InstrumentFaults &faults = studio.faults[port->instrument];
    if (asInput ? faults.inputDoesNotOpen : faults.outputDoesNotOpen) {
        return HostFailure;
    }
    *stream = ++studio.lastStream;
    OpenStream &opened = studio.streams[*stream];
    opened.instrument = port->instrument;
    opened.device = device;
    opened.isInput = asInput;
    opened.bufferSize = static_cast<std::size_t>(bufferSize > 0 ? bufferSize : DefaultInputBuffer);
    if (!asInput) {
        TellOpened(studio, port->instrument);
    }
    return Success;
}

int ClosePort(MidiStream handle) {
    Studio &studio = TheStudio();
    const auto closed = studio.streams.extract(handle);
    if (!closed) {
        return NoSuchStream;
    }
    if (!closed.mapped().isInput) {
        TellClosed(studio, closed.mapped().instrument);
    }
    return Success;
}

OpenStream *StreamOf(Studio &studio, MidiStream handle, bool asInput) {
    const auto found = studio.streams.find(handle);
    const bool isThere = found != studio.streams.end() && found->second.isInput == asInput;
    return isThere ? &found->second : nullptr;
}

// Puts events on the line to an input. What its buffer cannot take is lost, as with PortMidi.
void SendTo(OpenStream &input, const std::vector<AnswerEvent> &events, const Studio &studio) {
    const std::int64_t now = Now(studio);
    if (studio.simulatedClock) {
        input.lineFree = now;
    } else {
        input.lineFree = std::max(input.lineFree, now + AnswerBegins);
    }
    for (const AnswerEvent &event : events) {
        if (input.pending.size() >= input.bufferSize) {
            return;
        }
        if (!studio.simulatedClock) {
            input.lineFree += event.bytes * MicrosecondsPerByte;
        }
        PendingEvent pending{event, input.lineFree};
        if (input.pending.empty()) { // nothing before it to wait for: it waits from now on
            pending.due =
                std::max(pending.due, now + event.waitMilliseconds * MicrosecondsPerMillisecond);
        }
        input.pending.push_back(pending);
    }
}

void SendAnswers(std::size_t instrument, std::vector<Answer> answers) {
    Studio &studio = TheStudio();
    if (answers.empty()) {
        return;
    }
    const auto events = EventsOfAnswers(studio.faults[instrument], std::move(answers));
    for (auto &[handle, stream] : studio.streams) {
        if (stream.isInput && stream.instrument == instrument) {
            SendTo(stream, events, studio);
        }
    }
}

// On the wall clock a write lasts as long as its bytes need on the line.
void WaitUntilSent(const Studio &studio, std::size_t bytes) {
    if (!studio.simulatedClock) {
        std::this_thread::sleep_for(
            std::chrono::microseconds(static_cast<std::int64_t>(bytes) * MicrosecondsPerByte));
    }
}

// Hands `bytes` that are written to the instrument behind an output, through `read`.
template <typename Read> int Write(MidiStream handle, std::size_t bytes, Read read) {
    Studio &studio = TheStudio();
    OpenStream *stream = StreamOf(studio, handle, false);
    if (!stream) {
        return NoSuchStream;
    }
    const std::size_t number = stream->instrument;
    if (stream->writes++ == studio.faults[number].failWrite) {
        return HostFailure;
    }
    WaitUntilSent(studio, bytes);
    Instrument &instrument = studio.instruments[number];
    read(instrument.reader, [&](std::span<const std::uint8_t> message) {
        std::vector<Answer> answers;
        std::vector<SynthEvent> events;
        TakeInstrumentMessage(instrument, message, answers, events);
        for (const SynthEvent &event : events) {
            TellHeard(studio, number, event);
        }
        SendAnswers(number, std::move(answers));
    });
    return Success;
}

int WriteSysExBytes(MidiStream stream, std::span<const std::uint8_t> message) {
    const auto end = std::ranges::find(message, 0xF7);
    if (end == message.end()) {
        return StreamOf(TheStudio(), stream, false) ? BadData : NoSuchStream;
    }
    const auto whole = message.first(static_cast<std::size_t>(end - message.begin()) + 1);
    return Write(stream, whole.size(), [&](MessageReader &reader, const TakeMessage &take) {
        ReadBytes(reader, whole, take);
    });
}

int WriteWord(MidiStream stream, std::uint32_t word) {
    return Write(stream, ShortMessageSize, [&](MessageReader &reader, const TakeMessage &take) {
        ReadWord(reader, word, take);
    });
}

bool IsDue(const OpenStream &input, const Studio &studio) {
    return !input.pending.empty() && input.pending.front().due <= Now(studio);
}

int Poll(MidiStream handle) {
    Studio &studio = TheStudio();
    const OpenStream *input = StreamOf(studio, handle, true);
    if (!input) {
        return NoSuchStream;
    }
    const bool isDue = IsDue(*input, studio);
    if (studio.simulatedClock) {
        studio.simulatedTime += MicrosecondsPerMillisecond;
    }
    return isDue ? 1 : 0;
}

int Read(MidiStream handle, MidiEvent *event) {
    Studio &studio = TheStudio();
    OpenStream *input = StreamOf(studio, handle, true);
    if (!input) {
        return NoSuchStream;
    }
    if (!IsDue(*input, studio)) {
        return 0;
    }
    event->message = input->pending.front().event.message;
    event->timestamp = ClockTime(studio, input->pending.front().due);
    input->pending.pop_front();
    if (!input->pending.empty()) {
        PendingEvent &next = input->pending.front();
        next.due = std::max(next.due,
                            Now(studio) + next.event.waitMilliseconds * MicrosecondsPerMillisecond);
    }
    return 1;
}

int StartClock() {
    Studio &studio = TheStudio();
    if (!studio.clockRuns) {
        studio.clockRuns = true;
        studio.clockStart = Now(studio);
    }
    return Success;
}

int StopClock() {
    TheStudio().clockRuns = false;
    return Success;
}

std::size_t IndexOf(BuiltinInstrument instrument) {
    return static_cast<std::size_t>(instrument);
}

} // namespace

MidiApi MakeBuiltinInstruments(const InstrumentsOptions &options) {
    TheStudio().simulatedClock = options.simulatedClock;
    TheStudio().listener = options.listener;
    MidiApi api;
    api.Pt_Start = [](int) { return StartClock(); };
    api.Pt_Stop = StopClock;
    api.Pt_Time = [] {
        const Studio &studio = TheStudio();
        return ClockTime(studio, Now(studio));
    };
    api.Pm_CountDevices = [] { return static_cast<int>(PortsOf(TheStudio()).count); };
    api.Pm_GetDeviceInfo = DeviceInfo;
    api.Pm_OpenInput = [](MidiStream *stream, int device, std::int32_t bufferSize) {
        return OpenPort(stream, device, true, bufferSize);
    };
    api.Pm_OpenOutput = [](MidiStream *stream, int device, std::int32_t bufferSize, std::int32_t) {
        return OpenPort(stream, device, false, bufferSize);
    };
    api.Pm_Close = ClosePort;
    api.Pm_WriteSysEx = [](MidiStream stream, std::int32_t, std::span<const std::uint8_t> message) {
        return WriteSysExBytes(stream, message);
    };
    api.Pm_WriteShort = [](MidiStream stream, std::int32_t, std::uint32_t message) {
        return WriteWord(stream, message);
    };
    api.Pm_Write = [](MidiStream stream, const MidiEvent &event) {
        return WriteWord(stream, event.message);
    };
    api.Pm_Poll = Poll;
    api.Pm_Read = Read;
    api.RescanDevices = [] {};
    return api;
}

InstrumentFaults &FaultsOf(BuiltinInstrument instrument) {
    return TheStudio().faults[IndexOf(instrument)];
}

void ResetBuiltinInstruments() {
    Studio &studio = TheStudio();
    const auto streams = std::exchange(studio.streams, {});
    studio.instruments = FactoryInstruments();
    studio.faults = {};
    studio.simulatedTime = 0;
    studio.clockRuns = false;
    studio.clockStart = 0;
    TellNewVoices(studio);
    for (const auto &[handle, stream] : streams) {
        if (!stream.isInput) {
            TellClosed(studio, stream.instrument);
        }
    }
}

std::vector<std::uint8_t> &MemoryOf(BuiltinInstrument instrument) {
    return TheStudio().instruments[IndexOf(instrument)].memory;
}

std::vector<std::uint8_t> &EditBufferOf(BuiltinInstrument instrument) {
    return TheStudio().instruments[IndexOf(instrument)].editBuffer;
}

std::vector<std::uint8_t> &SystemSettingsOf(BuiltinInstrument instrument) {
    return TheStudio().instruments[IndexOf(instrument)].system;
}

PreparedVoice PreparedVoiceOf(BuiltinInstrument instrument) {
    Instrument &sounding = TheStudio().instruments[IndexOf(instrument)];
    FitBlocks(sounding);
    return sounding.model->prepare(sounding);
}

int SelectedProgramOf(BuiltinInstrument instrument) {
    return TheStudio().instruments[IndexOf(instrument)].selectedProgram;
}

std::vector<int> SoundingNotesOf(BuiltinInstrument instrument) {
    const auto &notes = TheStudio().instruments[IndexOf(instrument)].notes;
    std::vector<int> sounding;
    for (std::size_t key = 0; key < notes.size(); ++key) {
        if (notes[key]) {
            sounding.push_back(static_cast<int>(key));
        }
    }
    return sounding;
}

int &ChannelOf(BuiltinInstrument instrument) {
    return TheStudio().instruments[IndexOf(instrument)].channel;
}

bool OmniOf(BuiltinInstrument instrument) {
    return TheStudio().instruments[IndexOf(instrument)].omni;
}

int OpenBuiltinStreams() {
    return static_cast<int>(TheStudio().streams.size());
}

bool BuiltinClockRuns() {
    return TheStudio().clockRuns;
}

bool LoadInstrumentMemory(const char *path) {
    Studio &studio = TheStudio();
    studio.instruments = FactoryInstruments();
    const bool isRead = ReadMemoryFile(path, studio.instruments);
    TellNewVoices(studio);
    return isRead;
}

bool SaveInstrumentMemory(const char *path) {
    return WriteMemoryFile(path, TheStudio().instruments);
}

} // namespace tonewright
