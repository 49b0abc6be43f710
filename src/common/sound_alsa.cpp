// Sound output through libasound.
#include "common/sound.h"

#include "common/quiet_library.h"

#include <alsa/asoundlib.h>

#include <memory>

namespace tonewright {
namespace {

constexpr unsigned BufferMicroseconds = 200'000;
constexpr int WaitMilliseconds = 20;

struct PcmCloser {
    void operator()(snd_pcm_t *pcm) const { snd_pcm_close(pcm); }
};
using Pcm = std::unique_ptr<snd_pcm_t, PcmCloser>;

snd_pcm_format_t SampleFormat(int bits) {
    switch (bits) {
    case 8:
        return SND_PCM_FORMAT_U8;
    case 16:
        return SND_PCM_FORMAT_S16_LE;
    case 24:
        return SND_PCM_FORMAT_S24_3LE;
    default:
        return SND_PCM_FORMAT_S32_LE;
    }
}

bool OpenStream(Pcm &stream, const SoundFormat &format) {
    snd_pcm_t *pcm = nullptr;
    if (snd_pcm_open(&pcm, "default", SND_PCM_STREAM_PLAYBACK, SND_PCM_NONBLOCK) < 0) {
        return false;
    }
    stream.reset(pcm);
    const int convertRate = 1;
    if (snd_pcm_set_params(pcm, SampleFormat(format.bitsPerSample), SND_PCM_ACCESS_RW_INTERLEAVED,
                           static_cast<unsigned>(format.channels),
                           static_cast<unsigned>(format.framesPerSecond), convertRate,
                           BufferMicroseconds) < 0) {
        stream.reset();
        return false;
    }
    return true;
}

std::ptrdiff_t WriteStream(snd_pcm_t *pcm, std::span<const std::uint8_t> frames) {
    const auto count = snd_pcm_bytes_to_frames(pcm, static_cast<ssize_t>(frames.size()));
    const auto taken = snd_pcm_writei(pcm, frames.data(), static_cast<snd_pcm_uframes_t>(count));
    if (taken >= 0) {
        return snd_pcm_frames_to_bytes(pcm, taken);
    }
    const int error =
        taken == -EAGAIN ? snd_pcm_wait(pcm, WaitMilliseconds) : static_cast<int>(taken);
    return error < 0 && snd_pcm_recover(pcm, error, 1) < 0 ? -1 : 0;
}

bool StreamPlaying(snd_pcm_t *pcm) {
    // A sound shorter than the buffer has not been started by its own weight.
    if (snd_pcm_state(pcm) == SND_PCM_STATE_PREPARED && snd_pcm_start(pcm) < 0) {
        return false;
    }
    snd_pcm_sframes_t waiting = 0;
    return snd_pcm_delay(pcm, &waiting) == 0 && waiting > 0;
}

void CloseStream(Pcm &stream) {
    snd_pcm_drop(stream.get());
    stream.reset();
}

} // namespace

SoundDevice PlatformSoundDevice() {
    KeepAlsaQuiet();
    const auto stream = std::make_shared<Pcm>();
    return {
        .Open = [stream](const SoundFormat &format) { return OpenStream(*stream, format); },
        .Write = [stream](auto frames) { return WriteStream(stream->get(), frames); },
        .Playing = [stream] { return StreamPlaying(stream->get()); },
        .Close = [stream] { CloseStream(*stream); },
    };
}

} // namespace tonewright
