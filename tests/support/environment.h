// The environment of a test and of the programs that it starts.
#pragma once

#include <QByteArray>

#include <optional>
#include <string>

namespace tonewright {

inline void SetVariable(const char *name, const std::string &value) {
    qputenv(name, QByteArray::fromStdString(value));
}
inline void RemoveVariable(const char *name) {
    qunsetenv(name);
}

// Programs that are started from now on take `home` for the user's home folder. Their settings are
// in its folder .config, their documents in Documents.
inline void SetHome(const std::string &home) {
    SetVariable("HOME", home);
    SetVariable("XDG_CONFIG_HOME", home + "/.config");
}

// A variable of the environment has another value, or none, as long as this lives.
struct EnvironmentVariable {
    EnvironmentVariable(const char *name, const std::optional<std::string> &value) : name(name) {
        if (qEnvironmentVariableIsSet(name)) {
            former = qgetenv(name).toStdString();
        }
        Set(value);
    }
    ~EnvironmentVariable() { Set(former); }
    EnvironmentVariable(const EnvironmentVariable &) = delete;
    EnvironmentVariable &operator=(const EnvironmentVariable &) = delete;

private:
    void Set(const std::optional<std::string> &value) const {
        if (value) {
            SetVariable(name, *value);
        } else {
            RemoveVariable(name);
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
