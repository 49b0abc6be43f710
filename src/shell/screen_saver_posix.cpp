#include "shell/screen_saver.h"

namespace tonewright {

void InstallScreenSaver(const std::string &) {}

} // namespace tonewright
