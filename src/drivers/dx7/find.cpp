// The search for the ports, by name.
#include "drivers/dx7/find.h"

#include "drivers/find_by_name.h"

namespace tonewright {

int Dx7FindSynth(QWidget *, DriverId *driver, int *midiIn, int *midiOut, std::uint32_t *,
                 const char *inPattern, const char *outPattern, bool) {
    return FindSynthByName(Dx7DriverId, driver, midiIn, midiOut, inPattern, outPattern);
}

} // namespace tonewright
