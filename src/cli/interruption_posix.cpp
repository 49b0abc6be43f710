// Requests to end the program, for POSIX systems: signals.
#include "cli/interruption.h"

#include <csignal>
#include <iterator>

namespace tonewright {
namespace {

constexpr int Requests[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t Waiting = 0; // the signal that came
struct sigaction Former[std::size(Requests)];
struct sigaction FormerPipe;

void Note(int signal) {
    Waiting = signal;
}

void Install(int signal, void (*handler)(int), struct sigaction *former) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, former);
}

} // namespace

void PostponeInterruption() {
    for (std::size_t i = 0; i < std::size(Requests); ++i) {
        Install(Requests[i], Note, &Former[i]);
        if (Former[i].sa_handler == SIG_IGN) { // as nohup and "&" leave it
            sigaction(Requests[i], &Former[i], nullptr);
        }
    }
    Install(SIGPIPE, SIG_IGN, &FormerPipe);
}

bool InterruptionWaits() {
    return Waiting != 0;
}

void AllowInterruption() {
    sigaction(SIGPIPE, &FormerPipe, nullptr);
    for (std::size_t i = 0; i < std::size(Requests); ++i) {
        sigaction(Requests[i], &Former[i], nullptr);
    }
    if (Waiting != 0) {
        std::raise(Waiting);
    }
}

} // namespace tonewright
