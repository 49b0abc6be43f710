// Brings the program up in one strict order, runs it and takes it down again.
#pragma once

namespace tonewright {

// The whole run of the program; returns the process's exit code.
int RunApplication(int argc, char **argv);

} // namespace tonewright
