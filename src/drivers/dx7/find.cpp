// The search for the ports, by name.
#include "drivers/dx7/find.h"

#include "drivers/dx7/voice_codec.h"
#include "drivers/find_by_name.h"

namespace tonewright {

int Dx7FindSynth(QWidget *, FoundSynth &found, const PortNames &names, bool) {
    return FindSynthByName(Dx7DriverId, found, names);
}

} // namespace tonewright
