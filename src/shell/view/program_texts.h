// How the program introduces itself in its own windows.
#pragma once

#include "common/strings.h"
#include "common/version.h"

#include <QString>

namespace tonewright {

constexpr const char *ProgramLicence = "Free software under the MIT licence";

// "Tonewright 17.0a"
inline QString ProgramNameAndVersion() {
    return QString("%1 %2").arg(LoadProgramString(109), ProgramVersion);
}

} // namespace tonewright
