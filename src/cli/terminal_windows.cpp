// The terminal, for Windows.
#include "cli/terminal.h"

#include <cstdlib>

#include <windows.h>

namespace tonewright {
namespace {

// The library takes every device for one, NUL too.
bool IsTerminal(DWORD stream) {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

UINT FormerCodePage = 0; // 0 without a terminal

void RestoreCodePage() {
    SetConsoleOutputCP(FormerCodePage);
}

// Comes after the handler of a transfer that is not to be interrupted, and before the system ends
// the program, which calls nothing of ours then.
BOOL WINAPI RestoreBeforeEnd(DWORD) {
    RestoreCodePage();
    return FALSE;
}

} // namespace

void UseUtf8Terminal() {
    FormerCodePage = GetConsoleOutputCP();
    if (FormerCodePage != 0 && SetConsoleOutputCP(CP_UTF8)) {
        std::atexit(RestoreCodePage);
        SetConsoleCtrlHandler(RestoreBeforeEnd, TRUE);
    }
}

bool StandardInputIsTerminal() {
    return IsTerminal(STD_INPUT_HANDLE);
}

bool StandardErrorIsTerminal() {
    return IsTerminal(STD_ERROR_HANDLE);
}

} // namespace tonewright
