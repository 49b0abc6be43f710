// Sound output through the wave output of Windows.
#include "common/sound.h"

#include <windows.h>

#include <mmsystem.h>

#include <list>
#include <memory>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

constexpr std::size_t BlocksAhead = 4;
constexpr int BlocksPerSecond = 20;
constexpr DWORD WaitMilliseconds = 20;
constexpr int LastWaits = 10;

struct Block {
    std::vector<char> bytes;
    WAVEHDR header = {};
};

struct Stream {
    HWAVEOUT device = nullptr;
    std::size_t blockSize = 0;
    std::list<Block> blocks; // handed to the device, the oldest first
};

bool OpenStream(Stream &stream, const SoundFormat &format) {
    WAVEFORMATEX wave = {};
    wave.wFormatTag = WAVE_FORMAT_PCM;
    wave.nChannels = static_cast<WORD>(format.channels);
    wave.nSamplesPerSec = static_cast<DWORD>(format.framesPerSecond);
    wave.wBitsPerSample = static_cast<WORD>(format.bitsPerSample);
    wave.nBlockAlign = static_cast<WORD>(FrameSize(format));
    wave.nAvgBytesPerSec = wave.nSamplesPerSec * wave.nBlockAlign;
    stream.blockSize = static_cast<std::size_t>(FrameSize(format)) *
                       static_cast<std::size_t>(format.framesPerSecond / BlocksPerSecond);
    return waveOutOpen(&stream.device, WAVE_MAPPER, &wave, 0, 0, CALLBACK_NULL) == MMSYSERR_NOERROR;
}

void FreePlayedBlocks(Stream &stream) {
    while (!stream.blocks.empty() && (stream.blocks.front().header.dwFlags & WHDR_DONE) != 0) {
        waveOutUnprepareHeader(stream.device, &stream.blocks.front().header, sizeof(WAVEHDR));
        stream.blocks.pop_front();
    }
}

std::ptrdiff_t WriteStream(Stream &stream, std::span<const std::uint8_t> frames) {
    FreePlayedBlocks(stream);
    if (stream.blocks.size() >= BlocksAhead) {
        Sleep(WaitMilliseconds);
        return 0;
    }
    const auto piece =
        frames.first(frames.size() < stream.blockSize ? frames.size() : stream.blockSize);
    Block &block = stream.blocks.emplace_back();
    block.bytes.assign(piece.begin(), piece.end());
    block.header.lpData = block.bytes.data();
    block.header.dwBufferLength = static_cast<DWORD>(block.bytes.size());
    if (waveOutPrepareHeader(stream.device, &block.header, sizeof(WAVEHDR)) != MMSYSERR_NOERROR ||
        waveOutWrite(stream.device, &block.header, sizeof(WAVEHDR)) != MMSYSERR_NOERROR) {
        waveOutUnprepareHeader(stream.device, &block.header, sizeof(WAVEHDR));
        stream.blocks.pop_back();
        return -1;
    }
    return static_cast<std::ptrdiff_t>(piece.size());
}

bool StreamPlaying(Stream &stream) {
    FreePlayedBlocks(stream);
    return !stream.blocks.empty();
}

void CloseStream(Stream &stream) {
    // Resetting marks every block as played, unless the device has gone; its driver may be a little
    // late then.
    waveOutReset(stream.device);
    FreePlayedBlocks(stream);
    for (int wait = 0; wait < LastWaits && !stream.blocks.empty(); ++wait) {
        Sleep(WaitMilliseconds);
        FreePlayedBlocks(stream);
    }
    if (!stream.blocks.empty()) {
        // The driver may write to them at any time: they are left to it.
        static_cast<void>(new std::list<Block>(std::move(stream.blocks)));
        stream.blocks.clear();
    }
    waveOutClose(stream.device);
    stream.device = nullptr;
}

} // namespace

SoundDevice PlatformSoundDevice() {
    const auto stream = std::make_shared<Stream>();
    return {
        .Open = [stream](const SoundFormat &format) { return OpenStream(*stream, format); },
        .Write = [stream](auto frames) { return WriteStream(*stream, frames); },
        .Playing = [stream] { return StreamPlaying(*stream); },
        .Close = [stream] { CloseStream(*stream); },
    };
}

} // namespace tonewright
