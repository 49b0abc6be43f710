// The environment of a test and of the programs that it starts, on POSIX systems.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace tonewright {

// A variable of the environment has another value, or none, as long as this lives.
struct EnvironmentVariable {
    EnvironmentVariable(const char *name, const std::optional<std::string> &value) : name(name) {
        if (const char *text = std::getenv(name)) {
            former = text;
        }
        Set(value);
    }
    ~EnvironmentVariable() { Set(former); }
    EnvironmentVariable(const EnvironmentVariable &) = delete;
    EnvironmentVariable &operator=(const EnvironmentVariable &) = delete;

private:
    void Set(const std::optional<std::string> &value) const {
        if (value) {
            setenv(name, value->c_str(), 1);
        } else {
            unsetenv(name);
        }
    }

    const char *name;
    std::optional<std::string> former;
};

// The window program, when it is started, takes `home` for the user's home folder, needs no display
// and ends once it has painted its window.
struct EnvironmentOfOnePaint {
    explicit EnvironmentOfOnePaint(const std::string &home)
        : homeFolder("HOME", home), settings("XDG_CONFIG_HOME", home + "/.config") {}

private:
    const EnvironmentVariable homeFolder, settings;
    const EnvironmentVariable platform{"QT_QPA_PLATFORM", "offscreen"};
    const EnvironmentVariable end{"TONEWRIGHT_EXIT_AFTER_FIRST_PAINT", "1"};
};

} // namespace tonewright
