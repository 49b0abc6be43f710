// Takes the ports whose names match as the instrument.
#include "drivers/find_by_name.h"

#include "midi/transport.h"

namespace tonewright {

int FindSynthByName(DriverId family, FoundSynth &found, const PortNames &names) {
    TheMidi.Pt_Start(MidiClockResolution);
    const bool both = FindPorts(names, found.ports);
    TheMidi.Pt_Stop();
    if (!both) {
        return 0;
    }
    found.driver = family;
    return 1;
}

} // namespace tonewright
