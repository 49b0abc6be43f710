// An X server of our own with a window manager, the real program on it, driven by keys and mouse
// from outside, and what stands on its screen, pixel by pixel. Nothing here shares a process with
// the program, so that a window that is blocked can be looked at.
#pragma once

#include "support/temp_folder.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tonewright {

using Strings = std::vector<std::string>;
using TestClock = std::chrono::steady_clock;

// True as soon as `condition` holds; false when it does not before the time is over.
bool Becomes(const std::function<bool()> &condition, TestClock::duration time);

// A process that is ended with its owner, or by itself after five minutes.
struct Process {
    pid_t id = -1;
    int status = 0;

    // `command` is looked up in PATH. `environment`: "NAME=value" beside what this process has;
    // `output`: where standard output goes, and `errors` standard error; -1: nowhere.
    Process(const Strings &command, const Strings &environment, int output = -1, int errors = 2);
    ~Process();
    Process(const Process &) = delete;
    Process &operator=(const Process &) = delete;

    bool HasEnded();
    bool Ends(TestClock::duration time);
    // 0 when it ended by itself and well.
    int ExitStatus() const;
    void Kill();
    // Halts it, and lets it go on. While it is halted its windows stay as they are.
    void Halt();
    void GoOn();
};

// A part of a screen, in pixels.
struct ScreenPlace {
    int x = 0, y = 0, width = 0, height = 0;
};

// What stands in a part of a screen. Equal pictures look the same.
struct ScreenPicture {
    int width = 0, height = 0;
    std::vector<std::uint32_t> pixels; // row by row from the top, 0x00RRGGBB

    std::uint32_t At(int x, int y) const;
    bool operator==(const ScreenPicture &) const = default;
};

struct XDisplay {
    TempFolder folder;
    Strings environment; // for programs that are to run on it
    std::optional<Process> server, manager;

    // `screen`: width, height and bits of a pixel; `focus`: how the window manager gives the
    // keyboard away, by a "click" or to the window below the mouse ("sloppy"). False when there is
    // no X server to be had.
    bool Start(const std::string &screen = "1280x1024x24", const std::string &focus = "click");

    // What a call of xdotool prints; nothing when it fails or takes too long.
    std::optional<std::string> Tool(Strings words) const;
    // The number of a visible window whose title matches a regular expression; empty without one.
    std::string FindWindow(const std::string &title) const;
    // Width and height of the inside of a window.
    std::optional<ScreenPlace> SizeOf(const std::string &window) const;

    // A part of the screen, cut at its edges, or the whole screen, as the server has it at this
    // moment. Throws when it cannot be read.
    ScreenPicture Screen(std::optional<ScreenPlace> place = std::nullopt) const;
};

// The program with a home of its own.
struct ProgramOnDisplay {
    const XDisplay &display;
    TempFolder home;
    std::string file;   // the program itself; the one of the build unless set
    std::string window; // set by Stands
    std::optional<Process> process;

    explicit ProgramOnDisplay(const XDisplay &display);

    // `settings`: lines "Key = value" beside, or in place of, those that keep the windows of a
    // start away; `environment`: "NAME=value".
    void Start(const Strings &arguments, const Strings &settings = {},
               const Strings &environment = {});
    // Once more, with the settings that the last run has left.
    void StartAgain(const Strings &arguments, const Strings &environment = {});
    // True once the window shows the document of that name.
    bool Stands(const std::string &document);
    // Presses keys while this program's window has the focus; false when it does not get it.
    bool Press(const Strings &keys) const;
};

} // namespace tonewright
