// Takes the ports whose names match as the instrument.
#include "drivers/find_by_name.h"

#include "midi/transport.h"

namespace tonewright {

int FindSynthByName(DriverId family, DriverId *driver, int *midiIn, int *midiOut,
                    const char *inPattern, const char *outPattern) {
    if (!FindPortsInsideClock(inPattern, outPattern, midiIn, midiOut)) {
        return 0;
    }
    if (driver) {
        *driver = family;
    }
    return 1;
}

} // namespace tonewright
