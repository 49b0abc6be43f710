// Screen savers are programs in the folder of Windows. The desktop takes the path of the one in
// force from the registry, older programs from SYSTEM.INI.
#include "shell/screen_saver.h"

#include <windows.h>

#include <algorithm>

namespace tonewright {
namespace {

constexpr const char *Entry = "SCRNSAVE.EXE";
constexpr UINT LeastTimeout = 300; // seconds

// The short form where there is one, which holds no blanks.
std::string SaverPath(const std::string &fileName) {
    char folder[MAX_PATH] = {};
    const UINT length = GetWindowsDirectoryA(folder, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) {
        return {};
    }
    const std::string path = std::string(folder) + "\\" + fileName;
    char shortened[MAX_PATH] = {};
    const DWORD shortLength = GetShortPathNameA(path.c_str(), shortened, MAX_PATH);
    return shortLength == 0 || shortLength >= MAX_PATH ? path : shortened;
}

} // namespace

void InstallScreenSaver(const std::string &fileName) {
    const std::string path = SaverPath(fileName);
    if (path.empty()) {
        return;
    }
    UINT timeout = 0;
    SystemParametersInfoA(SPI_GETSCREENSAVETIMEOUT, 0, &timeout, 0);
    WritePrivateProfileStringA("boot", Entry, path.c_str(), "system.ini");
    RegSetKeyValueA(HKEY_CURRENT_USER, "Control Panel\\Desktop", Entry, REG_SZ, path.c_str(),
                    static_cast<DWORD>(path.size() + 1));
    SystemParametersInfoA(SPI_SETSCREENSAVETIMEOUT, std::max(timeout, LeastTimeout), nullptr,
                          SPIF_UPDATEINIFILE | SPIF_SENDCHANGE);
    SystemParametersInfoA(SPI_SETSCREENSAVEACTIVE, TRUE, nullptr,
                          SPIF_UPDATEINIFILE | SPIF_SENDCHANGE);
}

} // namespace tonewright
