// A stand-in for winmm.dll, for machines that have no MIDI ports, as under Wine: one port called
// "Stand-in" in each direction. What is sent to the output comes back on the input, from another
// thread, as a cable between the two would bring it. The environment tells two things more:
//   STAND_IN_RECORD  a file that every byte that is sent is added to
//   STAND_IN_ANSWER  a file whose bytes come back in place of any system-exclusive message of up to
//                    16 bytes: the answer to a request
// Beside it there is what else programs and Qt call of the library: clocks and timers as they are,
// sound that nobody hears.
#include <windows.h>

#include <mmsystem.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <iterator>
#include <utility>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr const wchar_t PortName[] = L"Stand-in";
constexpr std::size_t LongestRequest = 16;

CRITICAL_SECTION Lock; // of all that follows
HANDLE Arrived;        // an event: there is a message, or the input closes

struct Input {
    bool open = false, started = false, closing = false;
    DWORD_PTR callback = 0, instance = 0;
    DWORD flags = 0;
    DWORD start = 0; // GetTickCount when it was started
    HANDLE thread = nullptr;
    std::deque<MIDIHDR *> buffers;
    std::deque<Bytes> messages; // that have not been handed over
} TheInput;

struct Output {
    bool open = false;
    DWORD_PTR callback = 0, instance = 0;
    DWORD flags = 0;
} TheOutput;

const auto InputHandle = reinterpret_cast<HMIDIIN>(&TheInput);
const auto OutputHandle = reinterpret_cast<HMIDIOUT>(&TheOutput);

struct Locked {
    Locked() { EnterCriticalSection(&Lock); }
    ~Locked() { LeaveCriticalSection(&Lock); }
};

template <typename Handle>
void Tell(DWORD flags, DWORD_PTR callback, DWORD_PTR instance, Handle handle, UINT message,
          DWORD_PTR first, DWORD_PTR second) {
    using Callback = void(CALLBACK *)(Handle, UINT, DWORD_PTR, DWORD_PTR, DWORD_PTR);
    switch (flags & CALLBACK_TYPEMASK) {
    case CALLBACK_FUNCTION:
        reinterpret_cast<Callback>(callback)(handle, message, instance, first, second);
        break;
    case CALLBACK_EVENT:
        SetEvent(reinterpret_cast<HANDLE>(callback));
        break;
    default:
        break;
    }
}

void TellInput(UINT message, DWORD_PTR first, DWORD_PTR second) {
    Tell(TheInput.flags, TheInput.callback, TheInput.instance, InputHandle, message, first, second);
}

void TellOutput(UINT message, DWORD_PTR first) {
    Tell(TheOutput.flags, TheOutput.callback, TheOutput.instance, OutputHandle, message, first, 0);
}

// The next piece of what waits, if it can be handed over: a short message whole, a long one in a
// buffer of the program.
struct Piece {
    bool there = false;
    DWORD_PTR shortMessage = 0;
    MIDIHDR *buffer = nullptr;
};

Piece TakePiece() {
    Piece piece;
    if (TheInput.messages.empty() || !TheInput.started) {
        return piece;
    }
    Bytes &message = TheInput.messages.front();
    if (message.front() != 0xF0 && message.size() <= 3) {
        for (std::size_t i = 0; i < message.size(); ++i) {
            piece.shortMessage |= static_cast<DWORD_PTR>(message[i]) << 8 * i;
        }
        piece.there = true;
        TheInput.messages.pop_front();
        return piece;
    }
    if (TheInput.buffers.empty()) {
        return piece;
    }
    piece.there = true;
    piece.buffer = TheInput.buffers.front();
    TheInput.buffers.pop_front();
    const std::size_t size = std::min<std::size_t>(piece.buffer->dwBufferLength, message.size());
    std::memcpy(piece.buffer->lpData, message.data(), size);
    piece.buffer->dwBytesRecorded = static_cast<DWORD>(size);
    message.erase(message.begin(), message.begin() + static_cast<std::ptrdiff_t>(size));
    if (message.empty()) {
        TheInput.messages.pop_front();
    }
    piece.buffer->dwFlags = (piece.buffer->dwFlags | MHDR_DONE) & ~static_cast<DWORD>(MHDR_INQUEUE);
    return piece;
}

DWORD WINAPI HandOver(void *) {
    for (;;) {
        WaitForSingleObject(Arrived, INFINITE);
        for (;;) {
            Piece piece;
            DWORD time = 0;
            {
                const Locked locked;
                if (TheInput.closing) {
                    return 0;
                }
                piece = TakePiece();
                time = GetTickCount() - TheInput.start;
            }
            if (!piece.there) {
                break;
            }
            if (piece.buffer) {
                TellInput(MIM_LONGDATA, reinterpret_cast<DWORD_PTR>(piece.buffer), time);
            } else {
                TellInput(MIM_DATA, piece.shortMessage, time);
            }
        }
    }
}

void Record(const Bytes &message) {
    const char *path = std::getenv("STAND_IN_RECORD");
    if (std::FILE *file = path ? std::fopen(path, "ab") : nullptr) {
        std::fwrite(message.data(), 1, message.size(), file);
        std::fclose(file);
    }
}

Bytes AnswerTo(const Bytes &message) {
    const char *path = std::getenv("STAND_IN_ANSWER");
    if (!path || message.front() != 0xF0 || message.size() > LongestRequest) {
        return message;
    }
    Bytes answer;
    if (std::FILE *file = std::fopen(path, "rb")) {
        for (int byte; (byte = std::fgetc(file)) != EOF;) {
            answer.push_back(static_cast<std::uint8_t>(byte));
        }
        std::fclose(file);
    }
    return answer;
}

void Send(const Bytes &message) {
    Record(message);
    const Bytes answer = AnswerTo(message);
    const Locked locked;
    if (TheInput.open && !answer.empty()) {
        TheInput.messages.push_back(answer);
        SetEvent(Arrived);
    }
}

std::size_t ShortMessageSize(DWORD message) {
    const DWORD status = message & 0xFF;
    if (status >= 0xF0) {
        return status == 0xF2 ? 3 : status == 0xF1 || status == 0xF3 ? 2 : 1;
    }
    return (status & 0xE0) == 0xC0 ? 2 : 3;
}

template <typename Text, std::size_t size> void CopyName(Text (&target)[size]) {
    std::copy(std::begin(PortName), std::end(PortName), target);
}

template <typename Caps> MMRESULT FillCaps(UINT_PTR device, Caps *caps, UINT size) {
    if (device != 0) {
        return MMSYSERR_BADDEVICEID;
    }
    Caps full = {};
    full.wMid = 1;
    full.wPid = 1;
    full.vDriverVersion = 0x100;
    CopyName(full.szPname);
    if constexpr (requires { full.wTechnology; }) {
        full.wTechnology = MOD_MIDIPORT;
    }
    std::memcpy(caps, &full, std::min<std::size_t>(size, sizeof full));
    return MMSYSERR_NOERROR;
}

template <typename Text> MMRESULT ErrorText(MMRESULT error, Text *text, UINT size) {
    char plain[32];
    std::snprintf(plain, sizeof plain, "error %u of the stand-in", error);
    for (UINT i = 0; i < size; ++i) {
        text[i] = static_cast<Text>(plain[i]);
        if (plain[i] == 0) {
            break;
        }
    }
    return MMSYSERR_NOERROR;
}

MMRESULT Prepare(MIDIHDR *header) {
    header->dwFlags = (header->dwFlags | MHDR_PREPARED) & ~static_cast<DWORD>(MHDR_DONE);
    return MMSYSERR_NOERROR;
}

MMRESULT Unprepare(MIDIHDR *header) {
    if (header->dwFlags & MHDR_INQUEUE) {
        return MIDIERR_STILLPLAYING;
    }
    header->dwFlags &= ~static_cast<DWORD>(MHDR_PREPARED);
    return MMSYSERR_NOERROR;
}

} // namespace

#define EXPORTED extern "C" __declspec(dllexport)

// ---- MIDI input

EXPORTED UINT WINAPI midiInGetNumDevs() {
    return 1;
}
EXPORTED MMRESULT WINAPI midiInGetDevCapsA(UINT_PTR device, LPMIDIINCAPSA caps, UINT size) {
    return FillCaps(device, caps, size);
}
EXPORTED MMRESULT WINAPI midiInGetDevCapsW(UINT_PTR device, LPMIDIINCAPSW caps, UINT size) {
    return FillCaps(device, caps, size);
}
EXPORTED MMRESULT WINAPI midiInGetErrorTextA(MMRESULT error, LPSTR text, UINT size) {
    return ErrorText(error, text, size);
}
EXPORTED MMRESULT WINAPI midiInGetErrorTextW(MMRESULT error, LPWSTR text, UINT size) {
    return ErrorText(error, text, size);
}
EXPORTED MMRESULT WINAPI midiInOpen(LPHMIDIIN handle, UINT device, DWORD_PTR callback,
                                    DWORD_PTR instance, DWORD flags) {
    const Locked locked;
    if (device != 0) {
        return MMSYSERR_BADDEVICEID;
    }
    if (TheInput.open) {
        return MMSYSERR_ALLOCATED;
    }
    TheInput = {};
    TheInput.open = true;
    TheInput.callback = callback;
    TheInput.instance = instance;
    TheInput.flags = flags;
    TheInput.thread = CreateThread(nullptr, 0, HandOver, nullptr, 0, nullptr);
    *handle = InputHandle;
    TellInput(MIM_OPEN, 0, 0);
    return MMSYSERR_NOERROR;
}
EXPORTED MMRESULT WINAPI midiInStart(HMIDIIN) {
    const Locked locked;
    TheInput.started = true;
    TheInput.start = GetTickCount();
    SetEvent(Arrived);
    return MMSYSERR_NOERROR;
}
EXPORTED MMRESULT WINAPI midiInStop(HMIDIIN) {
    const Locked locked;
    TheInput.started = false;
    return MMSYSERR_NOERROR;
}
EXPORTED MMRESULT WINAPI midiInReset(HMIDIIN) {
    std::deque<MIDIHDR *> buffers;
    {
        const Locked locked;
        TheInput.started = false;
        TheInput.messages.clear();
        buffers.swap(TheInput.buffers);
    }
    for (MIDIHDR *buffer : buffers) { // they go back empty
        buffer->dwBytesRecorded = 0;
        buffer->dwFlags = (buffer->dwFlags | MHDR_DONE) & ~static_cast<DWORD>(MHDR_INQUEUE);
        TellInput(MIM_LONGDATA, reinterpret_cast<DWORD_PTR>(buffer), 0);
    }
    return MMSYSERR_NOERROR;
}
EXPORTED MMRESULT WINAPI midiInClose(HMIDIIN) {
    HANDLE thread = nullptr;
    {
        const Locked locked;
        if (!TheInput.buffers.empty()) {
            return MIDIERR_STILLPLAYING;
        }
        TheInput.closing = true;
        thread = TheInput.thread;
        SetEvent(Arrived);
    }
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    TheInput.open = false;
    TellInput(MIM_CLOSE, 0, 0);
    return MMSYSERR_NOERROR;
}
EXPORTED MMRESULT WINAPI midiInPrepareHeader(HMIDIIN, LPMIDIHDR header, UINT) {
    return Prepare(header);
}
EXPORTED MMRESULT WINAPI midiInUnprepareHeader(HMIDIIN, LPMIDIHDR header, UINT) {
    return Unprepare(header);
}
EXPORTED MMRESULT WINAPI midiInAddBuffer(HMIDIIN, LPMIDIHDR header, UINT) {
    const Locked locked;
    if (!(header->dwFlags & MHDR_PREPARED)) {
        return MIDIERR_UNPREPARED;
    }
    header->dwFlags = (header->dwFlags | MHDR_INQUEUE) & ~static_cast<DWORD>(MHDR_DONE);
    header->dwBytesRecorded = 0;
    TheInput.buffers.push_back(header);
    SetEvent(Arrived);
    return MMSYSERR_NOERROR;
}

// ---- MIDI output

EXPORTED UINT WINAPI midiOutGetNumDevs() {
    return 1;
}
EXPORTED MMRESULT WINAPI midiOutGetDevCapsA(UINT_PTR device, LPMIDIOUTCAPSA caps, UINT size) {
    return FillCaps(device, caps, size);
}
EXPORTED MMRESULT WINAPI midiOutGetDevCapsW(UINT_PTR device, LPMIDIOUTCAPSW caps, UINT size) {
    return FillCaps(device, caps, size);
}
EXPORTED MMRESULT WINAPI midiOutGetErrorTextA(MMRESULT error, LPSTR text, UINT size) {
    return ErrorText(error, text, size);
}
EXPORTED MMRESULT WINAPI midiOutGetErrorTextW(MMRESULT error, LPWSTR text, UINT size) {
    return ErrorText(error, text, size);
}
EXPORTED MMRESULT WINAPI midiOutOpen(LPHMIDIOUT handle, UINT device, DWORD_PTR callback,
                                     DWORD_PTR instance, DWORD flags) {
    if (device != 0) {
        return MMSYSERR_BADDEVICEID;
    }
    if (TheOutput.open) {
        return MMSYSERR_ALLOCATED;
    }
    TheOutput = {true, callback, instance, flags};
    *handle = OutputHandle;
    TellOutput(MOM_OPEN, 0);
    return MMSYSERR_NOERROR;
}
EXPORTED MMRESULT WINAPI midiOutClose(HMIDIOUT) {
    TheOutput.open = false;
    TellOutput(MOM_CLOSE, 0);
    return MMSYSERR_NOERROR;
}
EXPORTED MMRESULT WINAPI midiOutShortMsg(HMIDIOUT, DWORD message) {
    Bytes bytes;
    for (std::size_t i = 0; i < ShortMessageSize(message); ++i) {
        bytes.push_back(static_cast<std::uint8_t>(message >> 8 * i));
    }
    Send(bytes);
    return MMSYSERR_NOERROR;
}
// A program may send a long message in several calls: it comes back when its end has been sent.
EXPORTED MMRESULT WINAPI midiOutLongMsg(HMIDIOUT, LPMIDIHDR header, UINT) {
    static Bytes begun;
    if (!(header->dwFlags & MHDR_PREPARED)) {
        return MIDIERR_UNPREPARED;
    }
    begun.insert(begun.end(), header->lpData, header->lpData + header->dwBufferLength);
    if (!begun.empty() && (begun.front() != 0xF0 || begun.back() == 0xF7)) {
        Send(begun);
        begun.clear();
    }
    header->dwFlags |= MHDR_DONE;
    TellOutput(MOM_DONE, reinterpret_cast<DWORD_PTR>(header));
    return MMSYSERR_NOERROR;
}
EXPORTED MMRESULT WINAPI midiOutPrepareHeader(HMIDIOUT, LPMIDIHDR header, UINT) {
    return Prepare(header);
}
EXPORTED MMRESULT WINAPI midiOutUnprepareHeader(HMIDIOUT, LPMIDIHDR header, UINT) {
    return Unprepare(header);
}
EXPORTED MMRESULT WINAPI midiOutReset(HMIDIOUT) {
    return MMSYSERR_NOERROR;
}

// Streams, which play at times that are told beforehand, are not offered.
EXPORTED MMRESULT WINAPI midiStreamOpen(LPHMIDISTRM, LPUINT, DWORD, DWORD_PTR, DWORD_PTR, DWORD) {
    return MMSYSERR_NOTSUPPORTED;
}
EXPORTED MMRESULT WINAPI midiStreamClose(HMIDISTRM) {
    return MMSYSERR_NOTSUPPORTED;
}
EXPORTED MMRESULT WINAPI midiStreamOut(HMIDISTRM, LPMIDIHDR, UINT) {
    return MMSYSERR_NOTSUPPORTED;
}
EXPORTED MMRESULT WINAPI midiStreamPosition(HMIDISTRM, LPMMTIME, UINT) {
    return MMSYSERR_NOTSUPPORTED;
}
EXPORTED MMRESULT WINAPI midiStreamProperty(HMIDISTRM, LPBYTE, DWORD) {
    return MMSYSERR_NOTSUPPORTED;
}
EXPORTED MMRESULT WINAPI midiStreamRestart(HMIDISTRM) {
    return MMSYSERR_NOTSUPPORTED;
}
EXPORTED MMRESULT WINAPI midiStreamStop(HMIDISTRM) {
    return MMSYSERR_NOTSUPPORTED;
}

// ---- clocks and timers

EXPORTED DWORD WINAPI timeGetTime() {
    return GetTickCount();
}
EXPORTED MMRESULT WINAPI timeBeginPeriod(UINT) {
    return TIMERR_NOERROR;
}
EXPORTED MMRESULT WINAPI timeEndPeriod(UINT) {
    return TIMERR_NOERROR;
}
EXPORTED MMRESULT WINAPI timeGetDevCaps(LPTIMECAPS caps, UINT) {
    *caps = {1, 1000};
    return TIMERR_NOERROR;
}

namespace {

struct Timer {
    UINT id = 0;
    HANDLE timer = nullptr;
    LPTIMECALLBACK callback = nullptr;
    DWORD_PTR user = 0;
    UINT flags = 0;
};
std::deque<Timer> Timers; // those that have gone keep their places

void CALLBACK Due(void *data, BOOLEAN) {
    const Timer timer = *static_cast<Timer *>(data);
    if (timer.flags & (TIME_CALLBACK_EVENT_SET | TIME_CALLBACK_EVENT_PULSE)) {
        SetEvent(reinterpret_cast<HANDLE>(timer.callback));
    } else {
        timer.callback(timer.id, 0, timer.user, 0, 0);
    }
}

} // namespace

EXPORTED MMRESULT WINAPI timeSetEvent(UINT delay, UINT, LPTIMECALLBACK callback, DWORD_PTR user,
                                      UINT flags) {
    const Locked locked;
    Timer &timer = Timers.emplace_back();
    timer = {static_cast<UINT>(Timers.size()), nullptr, callback, user, flags};
    CreateTimerQueueTimer(&timer.timer, nullptr, Due, &timer, delay,
                          flags & TIME_PERIODIC ? delay : 0, WT_EXECUTEDEFAULT);
    return timer.id;
}
EXPORTED MMRESULT WINAPI timeKillEvent(UINT id) {
    HANDLE timer = nullptr;
    {
        const Locked locked;
        if (id == 0 || id > Timers.size() || !Timers[id - 1].timer) {
            return MMSYSERR_INVALPARAM;
        }
        timer = std::exchange(Timers[id - 1].timer, nullptr);
    }
    DeleteTimerQueueTimer(nullptr, timer, nullptr);
    return TIMERR_NOERROR;
}

// ---- sound

EXPORTED MMRESULT WINAPI waveOutOpen(LPHWAVEOUT, UINT, LPCWAVEFORMATEX, DWORD_PTR, DWORD_PTR,
                                     DWORD) {
    return MMSYSERR_NODRIVER;
}
EXPORTED MMRESULT WINAPI waveOutClose(HWAVEOUT) {
    return MMSYSERR_INVALHANDLE;
}
EXPORTED MMRESULT WINAPI waveOutPrepareHeader(HWAVEOUT, LPWAVEHDR, UINT) {
    return MMSYSERR_INVALHANDLE;
}
EXPORTED MMRESULT WINAPI waveOutUnprepareHeader(HWAVEOUT, LPWAVEHDR, UINT) {
    return MMSYSERR_INVALHANDLE;
}
EXPORTED MMRESULT WINAPI waveOutWrite(HWAVEOUT, LPWAVEHDR, UINT) {
    return MMSYSERR_INVALHANDLE;
}
EXPORTED MMRESULT WINAPI waveOutReset(HWAVEOUT) {
    return MMSYSERR_INVALHANDLE;
}
EXPORTED BOOL WINAPI PlaySoundA(LPCSTR, HMODULE, DWORD) {
    return TRUE;
}
EXPORTED BOOL WINAPI PlaySoundW(LPCWSTR, HMODULE, DWORD) {
    return TRUE;
}

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        InitializeCriticalSection(&Lock);
        Arrived = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    }
    return TRUE;
}
