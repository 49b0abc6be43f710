// Finds the built-in instruments among the devices.
#include "midi/builtin_ports.h"

#include "common/settings.h"
#include "core/dispatch.h"
#include "midi/midi_api.h"
#include "midi/transport.h"

#include <string_view>

namespace tonewright {
namespace {

bool IsBuiltin(const MidiDeviceInfo &device) {
    return std::string_view(device.interf) == BuiltinInterface;
}

// The port of the first built-in instrument of the family in that direction; NoMidiDevice for none.
int FirstPortOf(const SynthDriver &family, bool input) {
    for (int port = 0; port < TheMidi.Pm_CountDevices(); ++port) {
        const MidiDeviceInfo *device = TheMidi.Pm_GetDeviceInfo(port);
        if (device && IsBuiltin(*device) && (input ? device->input : device->output) &&
            MemoryOfFamily(family, device->name)) {
            return port;
        }
    }
    return NoMidiDevice;
}

} // namespace

const InstrumentMemory *MemoryOfFamily(const SynthDriver &family, const char *instrument) {
    for (const InstrumentMemory &memory : family.memories) {
        if (NameContains(instrument, memory.instrument)) {
            return &memory;
        }
    }
    return nullptr;
}

MidiPorts PortsToHear(DriverId id, MidiPorts ports) {
    const SynthDriver *family = DriverOfId(id);
    if (BuiltinInstruments == 0 || !family) {
        return ports;
    }
    const MidiDeviceInfo *output = TheMidi.Pm_GetDeviceInfo(ports.out);
    if (output && (!IsBuiltin(*output) || MemoryOfFamily(*family, output->name))) {
        return ports;
    }
    const MidiPorts builtin = {.in = FirstPortOf(*family, true),
                               .out = FirstPortOf(*family, false)};
    return builtin.out == NoMidiDevice ? ports : builtin;
}

} // namespace tonewright
