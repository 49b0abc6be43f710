// The sound card through PortAudio; the only file that includes the library's header.
//
// The library looks for cards when it is initialised, which takes its time: that happens when cards
// are asked for or one is opened, and it is given back with the card. Where it is a file of the
// system it is loaded then, too, since few runs of a program play anything, and every one would
// have to wait for it and for the three libraries that it brings along.
#include "common/audio_output.h"

#include "common/denormals.h"
#include "common/quiet_library.h"
#include "common/sound_configuration.h"

#ifdef TONEWRIGHT_PORTAUDIO_FILE
#include "common/loaded_library.h"
#endif

#include <portaudio.h>

#include <algorithm>
#include <array>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tonewright {
namespace {

constexpr int Sides = 2;
// Frames that the card has before it is given more, in those that it asks for at once.
constexpr double BuffersAhead = 2.0;

// ---- the library

// The calls that are used, under their own names.
#define PORTAUDIO_CALLS(CALL)                                                                      \
    CALL(Pa_CloseStream)                                                                           \
    CALL(Pa_GetDefaultOutputDevice)                                                                \
    CALL(Pa_GetDeviceCount)                                                                        \
    CALL(Pa_GetDeviceInfo)                                                                         \
    CALL(Pa_GetErrorText)                                                                          \
    CALL(Pa_GetHostApiInfo)                                                                        \
    CALL(Pa_GetLastHostErrorInfo)                                                                  \
    CALL(Pa_GetStreamInfo)                                                                         \
    CALL(Pa_HostApiTypeIdToHostApiIndex)                                                           \
    CALL(Pa_Initialize)                                                                            \
    CALL(Pa_IsStreamActive)                                                                        \
    CALL(Pa_OpenStream)                                                                            \
    CALL(Pa_StartStream)                                                                           \
    CALL(Pa_StopStream)                                                                            \
    CALL(Pa_Terminate)

struct PortAudio {
#define DECLARE(name) decltype(&::name) name = nullptr;
    PORTAUDIO_CALLS(DECLARE)
#undef DECLARE
};

// nullptr, and why, without the library.
const PortAudio *LoadPortAudio(std::string &why) {
#ifdef TONEWRIGHT_PORTAUDIO_FILE
    static PortAudio loaded;
    if (!loaded.Pa_Initialize) {
        void *file = LoadSystemLibrary(TONEWRIGHT_PORTAUDIO_FILE);
        bool isWhole = file != nullptr;
        PortAudio found;
#define FIND(name) isWhole = isWhole && FindFunction(file, #name, found.name);
        PORTAUDIO_CALLS(FIND)
#undef FIND
        if (!isWhole) {
            why = "the library " TONEWRIGHT_PORTAUDIO_FILE " cannot be loaded";
            return nullptr;
        }
        loaded = found;
    }
    return &loaded;
#else
#define TAKE(name) .name = ::name,
    static const PortAudio linked = {PORTAUDIO_CALLS(TAKE)};
#undef TAKE
    static_cast<void>(why);
    return &linked;
#endif
}

// The library keeps no order among threads: a card may be open on one of them while another one
// asks which there are.
std::mutex Calls;

std::string TextOf(const char *text) {
    return text ? text : "";
}

std::string ReasonOf(const PortAudio &library, PaError error) {
    std::string reason;
    if (error == paUnanticipatedHostError) {
        const PaHostErrorInfo *info = library.Pa_GetLastHostErrorInfo();
        reason = info ? TextOf(info->errorText) : "";
    }
    if (reason.empty()) {
        reason = TextOf(library.Pa_GetErrorText(error));
    }
    while (reason.ends_with('.')) {
        reason.pop_back();
    }
    return reason;
}

constexpr const char *NoCard = "no sound card was found that is free";

// nullptr, and why, when the library cannot be used. One that is not nullptr is given back by
// Pa_Terminate.
const PortAudio *BeginPortAudio(std::string &why) {
    const PortAudio *library = LoadPortAudio(why);
    if (!library) {
        return nullptr;
    }
    KeepAlsaQuiet();
    KeepJackQuiet();
    if (!HasSoundConfiguration()) {
        why = NoCard;
        return nullptr;
    }
    const PaError error = library->Pa_Initialize();
    if (error != paNoError) {
        why = ReasonOf(*library, error);
        return nullptr;
    }
    return library;
}

// ---- devices

struct Device {
    AudioDevice device;
    PaDeviceIndex index = paNoDevice;
    PaHostApiIndex interface = 0;
    double lowLatency = 0.0; // seconds
};

// Of an interface that plays at low latency where the one that the library would take does not.
PaDeviceIndex DefaultDevice(const PortAudio &library) {
    const PaHostApiIndex quick = library.Pa_HostApiTypeIdToHostApiIndex(paWASAPI);
    const PaHostApiInfo *info = quick >= 0 ? library.Pa_GetHostApiInfo(quick) : nullptr;
    return info && info->defaultOutputDevice != paNoDevice ? info->defaultOutputDevice
                                                           : library.Pa_GetDefaultOutputDevice();
}

// Each by a name of its own: those of the default's interface first, and what the others call the
// same by the interface as well.
std::vector<Device> FindDevices(const PortAudio &library) {
    const PaDeviceIndex defaultDevice = DefaultDevice(library);
    std::vector<Device> devices;
    PaHostApiIndex preferred = 0;
    for (PaDeviceIndex index = 0; index < library.Pa_GetDeviceCount(); ++index) {
        const PaDeviceInfo *info = library.Pa_GetDeviceInfo(index);
        if (!info || info->maxOutputChannels < Sides) {
            continue;
        }
        const PaHostApiInfo *interface = library.Pa_GetHostApiInfo(info->hostApi);
        devices.push_back({.device = {.name = TextOf(info->name),
                                      .interface = interface ? TextOf(interface->name) : "",
                                      .rate = info->defaultSampleRate,
                                      .isDefault = index == defaultDevice},
                           .index = index,
                           .interface = info->hostApi,
                           .lowLatency = info->defaultLowOutputLatency});
        if (index == defaultDevice) {
            preferred = info->hostApi;
        }
    }
    std::stable_partition(devices.begin(), devices.end(), [preferred](const Device &device) {
        return device.interface == preferred;
    });
    for (std::size_t at = 1; at < devices.size(); ++at) {
        AudioDevice &device = devices[at].device;
        const auto former = devices.begin() + static_cast<std::ptrdiff_t>(at);
        if (std::any_of(devices.begin(), former,
                        [&](const Device &other) { return other.device.name == device.name; })) {
            device.name += " (" + device.interface + ")";
        }
    }
    return devices;
}

std::vector<AudioDevice> Devices(std::string &why) {
    const std::lock_guard lock(Calls);
    std::vector<AudioDevice> found;
    const PortAudio *library = BeginPortAudio(why);
    if (!library) {
        return found;
    }
    for (Device &device : FindDevices(*library)) {
        found.push_back(std::move(device.device));
    }
    library->Pa_Terminate();
    if (found.empty()) {
        why = NoCard;
    }
    return found;
}

// The one of that name, or else the default, or else any; nullptr when there is none.
const Device *ChooseDevice(const std::vector<Device> &devices, const std::string &name) {
    const Device *chosen = devices.empty() ? nullptr : &devices.front();
    for (const Device &device : devices) {
        if (!name.empty() && device.device.name == name) {
            return &device;
        }
        chosen = device.device.isDefault ? &device : chosen;
    }
    return chosen;
}

// ---- the stream

struct Output {
    const PortAudio *library = nullptr; // nullptr: not in use
    PaStream *stream = nullptr;
    FillFrames fill = nullptr;
    void *context = nullptr;
};

int Fill(const void *, void *frames, unsigned long count, const PaStreamCallbackTimeInfo *,
         PaStreamCallbackFlags, void *user) {
    const Output &output = *static_cast<const Output *>(user);
    TakeDenormalsForZero(); // on the thread of the library, whose begin nobody learns of
    output.fill(output.context, static_cast<float *>(frames), static_cast<int>(count));
    return paContinue;
}

void CloseOutput(Output &output) {
    if (output.stream) {
        output.library->Pa_StopStream(output.stream);
        output.library->Pa_CloseStream(output.stream);
    }
    if (output.library) {
        output.library->Pa_Terminate();
    }
    output = {};
}

// At the rate and by the frames that are wanted, or by as many as the device likes, or at the rate
// that it likes.
PaError OpenStream(Output &output, const Device &device, const AudioRequest &request) {
    struct Way {
        double rate = 0.0;
        unsigned long frames = paFramesPerBufferUnspecified;
    };
    const auto frames = static_cast<unsigned long>(request.frames);
    const std::array<Way, 4> ways = {{{request.rate, frames},
                                      {device.device.rate, frames},
                                      {request.rate},
                                      {device.device.rate}}};
    PaError error = paNoError;
    for (const Way &way : ways) {
        const PaStreamParameters parameters = {
            .device = device.index,
            .channelCount = Sides,
            .sampleFormat = paFloat32,
            .suggestedLatency =
                std::max(device.lowLatency, BuffersAhead * request.frames / way.rate),
            .hostApiSpecificStreamInfo = nullptr};
        error = output.library->Pa_OpenStream(&output.stream, nullptr, &parameters, way.rate,
                                              way.frames, paNoFlag, Fill, &output);
        if (error == paNoError || error == paDeviceUnavailable) {
            return error;
        }
        output.stream = nullptr;
    }
    return error;
}

bool Open(Output &output, const AudioRequest &request, AudioStream &stream, std::string &why) {
    output.library = BeginPortAudio(why);
    if (!output.library) {
        return false;
    }
    const std::vector<Device> devices = FindDevices(*output.library);
    const Device *device = ChooseDevice(devices, request.device);
    if (!device) {
        why = NoCard;
        return false;
    }
    const PaError error = OpenStream(output, *device, request);
    if (error != paNoError) {
        why = ReasonOf(*output.library, error);
        output.stream = nullptr;
        return false;
    }
    const PaStreamInfo *info = output.library->Pa_GetStreamInfo(output.stream);
    stream = {.rate = info ? info->sampleRate : request.rate,
              .latency = info ? info->outputLatency : 0.0};
    return true;
}

bool Start(Output &output, FillFrames fill, void *context, std::string &why) {
    output.fill = fill;
    output.context = context;
    const PaError error = output.library->Pa_StartStream(output.stream);
    if (error != paNoError) {
        why = ReasonOf(*output.library, error);
    }
    return error == paNoError;
}

} // namespace

AudioOutput PlatformAudioOutput() {
    const auto output = std::make_shared<Output>();
    return {
        .Devices = Devices,
        .Open =
            [output](const AudioRequest &request, AudioStream &stream, std::string &why) {
                const std::lock_guard lock(Calls);
                CloseOutput(*output);
                const bool isOpen = Open(*output, request, stream, why);
                if (!isOpen) {
                    CloseOutput(*output);
                }
                return isOpen;
            },
        .Start =
            [output](FillFrames fill, void *context, std::string &why) {
                const std::lock_guard lock(Calls);
                return Start(*output, fill, context, why);
            },
        .Runs =
            [output] {
                return output->stream && output->library->Pa_IsStreamActive(output->stream) == 1;
            },
        .Close =
            [output] {
                const std::lock_guard lock(Calls);
                CloseOutput(*output);
            },
    };
}

} // namespace tonewright
