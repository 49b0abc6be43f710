// Requests to end the program, for POSIX systems: signals, noted in a pipe.
#include "shell/end_signals.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace tonewright {
namespace {

constexpr int Requests[] = {SIGTERM, SIGHUP, SIGINT};

int Pipe[2] = {-1, -1};

void Note(int) {
    const int error = errno;
    [[maybe_unused]] const ssize_t written = write(Pipe[1], "", 1); // a full pipe says enough
    errno = error;
}

// Gives every request that is not ignored, as nohup leaves it, another handler; once that has run,
// the next such request ends the program, whatever it is waiting for by then.
void Handle(void (*handler)(int)) {
    for (const int request : Requests) {
        struct sigaction present = {};
        sigaction(request, nullptr, &present);
        if (present.sa_handler == SIG_IGN) {
            continue;
        }
        struct sigaction action = {};
        action.sa_handler = handler;
        action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
        sigaction(request, &action, nullptr);
    }
}

} // namespace

int CatchEndSignals() {
    if (Pipe[0] < 0) {
        if (pipe(Pipe) != 0) {
            return -1;
        }
        for (const int end : Pipe) {
            fcntl(end, F_SETFD, FD_CLOEXEC);
            fcntl(end, F_SETFL, O_NONBLOCK);
        }
    }
    Handle(Note);
    return Pipe[0];
}

void ReleaseEndSignals() {
    Handle(SIG_DFL);
}

} // namespace tonewright
