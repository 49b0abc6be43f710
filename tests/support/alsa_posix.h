// The sound devices of the machine, as a test wants them, and what libraries write to standard
// error meanwhile.
#pragma once

#include "support/environment.h"
#include "support/temp_folder.h"

#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace tonewright {

// libasound reads this configuration in place of the machine's as long as this lives, and so do
// programs that are started.
struct AlsaConfiguration {
    AlsaConfiguration(const TempFolder &temp, const std::string &text)
        : path("ALSA_CONFIG_PATH", temp.WriteText("alsa.conf", text)) {}

    EnvironmentVariable path;
};

constexpr const char *NoAlsaDevice = "pcm.!default { type hw card 77 }\n";
// Takes frames as fast as they come.
constexpr const char *NullAlsaDevice = "pcm.!default { type null }\n";
// The same, and keeps them in a file.
inline std::string FileAlsaDevice(const std::string &path) {
    return "pcm.!default { type file slave.pcm { type null } file \"" + path + "\" format raw }\n";
}

// Sends standard error to a file as long as it lives; what the libraries write counts too.
struct CapturedErrors {
    std::string path;
    int former;

    explicit CapturedErrors(const std::string &path) : path(path), former(dup(STDERR_FILENO)) {
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        dup2(file, STDERR_FILENO);
        close(file);
    }
    std::string Text() {
        Restore();
        return ReadTestText(path);
    }
    void Restore() {
        if (former >= 0) {
            dup2(former, STDERR_FILENO);
            close(former);
            former = -1;
        }
    }
    ~CapturedErrors() { Restore(); }
};

} // namespace tonewright
