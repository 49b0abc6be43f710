// The command that prints a table of named colours.
#include "cli/cli_commands.h"
#include "cli/text_output.h"
#include "common/colour.h"
#include "common/colour_table.h"

#include <cerrno>

namespace tonewright {

int CliColours(const CliCall &call) {
    const char *path = call.words[0];
    ColourTable table;
    if (ColourTableLoad(path, table) == 0) {
        return TellFailure(path, WithSystemReason("not readable", errno));
    }
    for (const NamedColour &item : table.items) {
        const ColourParts parts = PartsOf(item.colour);
        Put(StandardOutput, FieldText(item.name));
        for (const unsigned part : {parts.red, parts.green, parts.blue}) {
            Put(StandardOutput, '\t');
            PutNumber(StandardOutput, part);
        }
        Put(StandardOutput, '\n');
    }
    return ExitDone;
}

} // namespace tonewright
