// Requests to end the program, for Windows: Ctrl-C and Ctrl-Break.
#include "cli/interruption.h"

#include <csignal>
#include <cstdlib>
#include <windows.h>

namespace tonewright {
namespace {

constexpr int Requests[] = {SIGINT, SIGBREAK};

volatile std::sig_atomic_t Waiting = 0; // the signal that came

void Note(int signal) {
    Waiting = signal;
    std::signal(signal, Note); // each one resets it
}

} // namespace

void PostponeInterruption() {
    for (const int request : Requests) {
        std::signal(request, Note);
    }
}

bool InterruptionWaits() {
    return Waiting != 0;
}

void AllowInterruption() {
    for (const int request : Requests) {
        std::signal(request, SIG_DFL);
    }
    if (Waiting != 0) {
        std::exit(static_cast<int>(STATUS_CONTROL_C_EXIT)); // what the system ends it with
    }
}

} // namespace tonewright
