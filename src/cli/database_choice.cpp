// Chooses and opens the catalogue of a command.
#include "cli/database_choice.h"

#include "cli/choices.h"
#include "cli/midi_session.h"
#include "cli/text_output.h"
#include "cli/user_settings.h"
#include "common/folders.h"
#include "common/open_file.h"
#include "common/text.h"
#include "common/utf8_path.h"
#include "core/dispatch.h"
#include "database/database_file.h"

#include <algorithm>
#include <cerrno>
#include <string_view>

namespace tonewright {
namespace {

const char *ExtensionOf(const SynthDriver &family) {
    return family.DatabaseInfo(DatabaseInfoExtension).text;
}

// The family whose catalogues have the extension of `path`, or nullptr.
const SynthDriver *FamilyOfExtension(std::string_view path) {
    const auto found = std::ranges::find_if(SynthDrivers, [&](const SynthDriver *family) {
        return HasCatalogues(*family) && ExtensionOfPath(path) == ExtensionOf(*family);
    });
    return found != SynthDrivers.end() ? *found : nullptr;
}

// The family of --synth, else of the settings, else the first one that has catalogues; nullptr
// after telling that there is none.
const SynthDriver *FamilyOfCall(const CliCall &call) {
    const SynthDriver *preset = SynthOfSettings();
    if (!preset || !HasCatalogues(*preset)) {
        const auto first = std::ranges::find_if(
            SynthDrivers, [](const SynthDriver *family) { return HasCatalogues(*family); });
        preset = first != SynthDrivers.end() ? *first : nullptr;
    }
    const auto family = ReadSynth(call, preset);
    if (family && !*family) {
        TellError("", "there are no catalogues of any instrument");
    }
    return family ? *family : nullptr;
}

// True for the name of a catalogue, false for the path of one.
bool IsName(std::string_view text) {
    return FolderPartOf(text).empty() && !FamilyOfExtension(text);
}

// A catalogue of this name. Nothing after telling that the name is none.
std::optional<ChosenDatabase> NamedDatabase(const SynthDriver &family, std::string_view name) {
    if (name.empty()) {
        TellError("--database", "needs the name of a catalogue");
        return std::nullopt;
    }
    const std::string path = PathOfName(family, name);
    if (!IsPath(path)) {
        TellError(name,
                  FormatText("not a name: the path would have more than %zu bytes", PathLimit));
        return std::nullopt;
    }
    return ChosenDatabase{&family, path};
}

} // namespace

bool HasCatalogues(const SynthDriver &family) {
    return family.DatabaseOpen && family.DatabaseClose && family.DatabaseReadRecord &&
           family.DatabasePath && family.DatabaseInfo;
}

std::string PathOfName(const SynthDriver &family, std::string_view name) {
    return DefaultDocumentsFolder() + std::string(name) + '.' + ExtensionOf(family);
}

std::optional<ChosenDatabase> ChooseDatabase(const CliCall &call) {
    ReadDatabaseSettings();
    const char *database = call[CliOption::Database];
    const SynthDriver *family = database ? FamilyOfExtension(database) : nullptr;
    if (!family) {
        family = FamilyOfCall(call);
    }
    return family ? ChooseDatabaseOf(call, *family) : std::nullopt;
}

std::optional<ChosenDatabase> ChooseDatabaseOf(const CliCall &call, const SynthDriver &family) {
    if (!HasCatalogues(family)) {
        TellError(family.name, "there are no catalogues of this instrument");
        return std::nullopt;
    }
    const char *database = call[CliOption::Database];
    if (!database) {
        return ChosenDatabase{&family, family.DatabasePath()};
    }
    if (IsName(database)) {
        return NamedDatabase(family, database);
    }
    if (!IsPath(AbsolutePath(database))) {
        TellError(database, FormatText("not a path: it has more than %zu bytes", PathLimit));
        return std::nullopt;
    }
    const SynthDriver *ofExtension = FamilyOfExtension(database);
    return ChosenDatabase{ofExtension ? ofExtension : &family, database};
}

std::shared_ptr<DatabaseHandle> OpenChosenDatabase(const ChosenDatabase &chosen) {
    errno = 0;
    auto database = chosen.family->DatabaseOpen(chosen.path.c_str(), DatabaseRead);
    if (!database) {
        TellError(chosen.path, ReasonNotOpened(chosen, errno));
    }
    return database;
}

std::string FamilyInWords(const SynthDriver *family) {
    return family ? std::string("the ") + family->name : "an instrument that is not known";
}

std::string ReasonNotOpened(const ChosenDatabase &chosen, int error) {
    std::vector<std::uint8_t> header;
    if (error != EINVAL || !ReadStartOfFile(chosen.path.c_str(), DatabaseHeaderSize, header)) {
        return WithSystemReason("not readable", error);
    }
    switch (HeaderFaultOf(chosen.family->id, header)) {
    case DatabaseHeaderFault::Short:
        return FormatText("not a catalogue: it has %zu bytes, and the header alone has %zu",
                          header.size(), DatabaseHeaderSize);
    case DatabaseHeaderFault::Family:
        return FormatText("not a catalogue of the %s, but of %s", chosen.family->name,
                          FamilyInWords(DriverOfId(HeaderDriver(header))).c_str());
    default:
        return "not a catalogue: it begins with other bytes";
    }
}

bool ReadSortMode(const CliCall &call, std::optional<std::uint32_t> &mode) {
    const char *name = call[CliOption::Sort];
    if (!name) {
        return true;
    }
    const Choice *order = ChoiceOfName(SortOrders, name);
    if (!order) {
        TellError(name, "not an order: " + InWords(SortOrders, "and") + " are");
        return false;
    }
    mode = order->value;
    return true;
}

} // namespace tonewright
