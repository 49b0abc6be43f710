// Takes the complaints of libasound and JACK off standard error.
#include "common/quiet_library.h"

#include <alsa/asoundlib.h>
#include <dlfcn.h>
#include <initializer_list>

namespace tonewright {
namespace {

// The program is not linked with JACK: it may be there in either of two editions, of this name.
constexpr const char *JackLibrary = "libjack.so.0";

void KeepQuiet(const char *, int, const char *, int, const char *, ...) {}

using JackMessageFunction = void (*)(const char *message);
using SetJackMessageFunction = void (*)(JackMessageFunction function);

void KeepMessageQuiet(const char *) {}

} // namespace

void KeepAlsaQuiet() {
    snd_lib_error_set_handler(KeepQuiet);
}

void KeepJackQuiet() {
    void *jack = dlopen(JackLibrary, RTLD_LAZY | RTLD_NOLOAD);
    if (!jack) {
        return;
    }
    for (const char *name : {"jack_set_error_function", "jack_set_info_function"}) {
        if (const auto set = reinterpret_cast<SetJackMessageFunction>(dlsym(jack, name))) {
            set(KeepMessageQuiet);
        }
    }
    dlclose(jack); // whoever has loaded it keeps it
}

} // namespace tonewright
