// The command complete: what a shell may offer for the last word of a call. Commands, options and
// what stands where come from the table of the commands; names of settings, parameters and
// instruments from the tables that the commands themselves read them from.
#include "cli/choices.h"
#include "cli/cli_commands.h"
#include "cli/command_table.h"
#include "cli/text_output.h"
#include "common/setting_rows.h"
#include "common/text.h"
#include "core/synth_driver.h"
#include "core/synth_settings.h"
#include "core/voice_file_reader.h"
#include "database/database_record.h"
#include "drivers/parameter_text.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright {
namespace {

// The word that is to be completed.
struct Begun {
    std::string_view text;         // what of it is typed
    std::string lead;              // what is part of the word and not of what is looked for
    std::span<char *const> before; // the command's arguments in front of it
};

void OfferWord(const Begun &begun, std::string_view word, std::string_view meaning = "") {
    if (word.starts_with(begun.text)) {
        Put(StandardOutput, "word\t" + begun.lead);
        Put(StandardOutput, word);
        Put(StandardOutput, '\t');
        Put(StandardOutput, meaning);
        Put(StandardOutput, '\n');
    }
}

void OfferFiles(const std::vector<std::string> &extensions) {
    Put(StandardOutput, "files");
    for (const std::string &extension : extensions) {
        Put(StandardOutput, '\t');
        Put(StandardOutput, extension);
    }
    Put(StandardOutput, '\n');
}

// What the rows of the families say there, but for those that leave it empty.
template <typename Member> std::vector<std::string> ExtensionsOf(Member member) {
    std::vector<std::string> extensions;
    for (const SynthDriver *synth : SynthDrivers) {
        if (*(synth->*member)) {
            extensions.emplace_back(synth->*member);
        }
    }
    return extensions;
}

void OfferBanks(const Begun &) {
    OfferFiles(ExtensionsOf(&SynthDriver::bankExtension));
}

void OfferVoices(const Begun &) {
    OfferFiles(ExtensionsOf(&SynthDriver::voiceExtension));
}

void OfferBanksAndVoices(const Begun &) {
    auto extensions = ExtensionsOf(&SynthDriver::bankExtension);
    for (std::string &extension : ExtensionsOf(&SynthDriver::voiceExtension)) {
        extensions.push_back(std::move(extension));
    }
    OfferFiles(extensions);
}

void OfferCatalogues(const Begun &) {
    std::vector<std::string> extensions;
    for (const SynthDriver *synth : SynthDrivers) {
        if (synth->database) {
            extensions.emplace_back(synth->database->extension);
        }
    }
    OfferFiles(extensions);
}

void OfferAnyFile(const Begun &) {
    OfferFiles({});
}

void OfferSettingsFiles(const Begun &) {
    OfferFiles({"ini"});
}

void OfferColourTables(const Begun &) {
    OfferFiles({"ccl"});
}

template <const auto &Choices> void OfferChoices(const Begun &begun) {
    for (const Choice &choice : Choices) {
        OfferWord(begun, choice.name);
    }
}

// Those that get or set takes.
void OfferSettingKeys(const Begun &begun) {
    const std::string_view action = begun.before[0];
    if (action != "get" && action != "set") {
        return;
    }
    for (const SettingsList *list : SettingsLists) {
        for (const ConfigKey &key : list->rows) {
            if (action == "get" || !(key.flags & SettingWriteOnly)) {
                OfferWord(begun, std::string(list->prefix) + key.name);
            }
        }
    }
}

// A name that a value follows, while it is not there yet.
void OfferAssignment(const Begun &begun, const std::string &name) {
    if (begun.text.find('=') == begun.text.npos) {
        OfferWord(begun, name + '=');
    }
}

template <typename OfferName> void OfferInstrumentSettings(OfferName offer) {
    for (const SynthDriver *synth : SynthDrivers) {
        if (synth->settings) {
            std::ranges::for_each(synth->settings->names, offer);
        }
    }
}

void OfferInstrumentKeys(const Begun &begun) {
    OfferInstrumentSettings([&](const char *name) { OfferWord(begun, name); });
}

void OfferInstrumentAssignments(const Begun &begun) {
    OfferInstrumentSettings([&](const char *name) { OfferAssignment(begun, name); });
}

// The parameters of the family whose file the first argument names.
void OfferParameters(const Begun &begun) {
    const VoiceFileFormat *format = FormatOfPath(begun.before[0]);
    if (!format) {
        return;
    }
    for (const SynthDriver *synth : SynthDrivers) {
        if (synth->id == format->driver && synth->parameters) {
            for (const NamedParameter &parameter : NamedParameters(*synth->parameters)) {
                OfferAssignment(begun, ParameterName(parameter));
            }
        }
    }
}

void OfferInstruments(const Begun &begun) {
    for (const SynthDriver *synth : SynthDrivers) {
        OfferWord(begun, synth->name);
    }
}

using Offer = void (*)(const Begun &);

// What stands for an argument, by its name in the help: of that command, which its function tells,
// or of all others. One that bears its extension needs no row; nothing is offered for a place, a
// note or a text.
struct ArgumentRow {
    int (*command)(const CliCall &call);
    std::string_view argument;
    Offer offer;
};
constexpr ArgumentRow Arguments[] = {
    {CliPicture, "FILE", OfferBanks},
    {CliPrint, "FILE", OfferBanks},
    {CliUpload, "FILE", OfferBanks},
    {CliConfig, "FILE", OfferSettingsFiles},
    {CliColours, "FILE", OfferColourTables},
    {CliIdentify, "FILE", OfferAnyFile},
    {CliRescue, "IN", OfferAnyFile},
    {CliArchiveSimilar, "FILE", OfferAnyFile},
    {nullptr, "FOLDER", OfferAnyFile},
    {nullptr, "FILE", OfferBanksAndVoices},
    {nullptr, "IN", OfferBanks},
    {nullptr, "BANK", OfferBanks},
    {nullptr, "VOICE", OfferVoices},
    {CliExport, "OUT", OfferVoices},
    {CliDbExport, "OUT", OfferVoices},
    {CliEdit, "OUT", OfferBanksAndVoices},
    {CliMemory, "OUT", OfferBanksAndVoices},
    {nullptr, "OUT", OfferBanks},
    {nullptr, "MEMORY", OfferAnyFile},
    {CliSettings, "WHAT", OfferChoices<SettingsActions>},
    {CliSettings, "KEY", OfferSettingKeys},
    {CliRefaceSettingsGet, "KEY", OfferInstrumentKeys},
    {CliRefaceSettingsSet, "KEY=VALUE", OfferInstrumentAssignments},
    {CliEdit, "NAME=VALUE", OfferParameters},
};

// The same for the value of an option.
struct ValueRow {
    CliOption option;
    Offer offer;
};
constexpr ValueRow Values[] = {
    {CliOption::File, OfferAnyFile},
    {CliOption::Memory, OfferAnyFile},
    {CliOption::Database, OfferCatalogues},
    {CliOption::Synth, OfferInstruments},
    {CliOption::Sort, OfferChoices<SortOrders>},
    {CliOption::Paper, OfferChoices<Papers>},
    {CliOption::Into, OfferAnyFile},
    {CliOption::Archive, OfferAnyFile},
    {CliOption::Folder, OfferAnyFile},
    {CliOption::Instrument, OfferChoices<ArchiveInstruments>},
    {CliOption::Bits, OfferChoices<SampleKinds>},
};

void OfferArgument(const CliCommand &command, std::string_view argument, const Begun &begun) {
    const std::string extension = ExtensionOfPath(argument);
    if (!extension.empty()) {
        OfferFiles({extension});
        return;
    }
    const auto fits = [&](const ArgumentRow &row) {
        return row.argument == argument && (!row.command || row.command == command.run);
    };
    const auto *row = std::ranges::find_if(Arguments, fits);
    if (row != std::end(Arguments)) {
        row->offer(begun);
    }
}

// Walks the arguments as the help shows them, "FILE PLACE NAME=VALUE... OUT": behind one that may
// be repeated stands it again, or whatever follows.
void OfferArguments(const CliCommand &command, const Begun &begun) {
    std::size_t place = begun.before.size();
    if (place >= command.maximumWords) {
        return;
    }
    bool repeated = false;
    for (std::string argument : SplitList(command.arguments, ' ')) {
        std::erase_if(argument, [](char letter) { return letter == '[' || letter == ']'; });
        const bool mayRepeat = argument.ends_with("...");
        if (mayRepeat) {
            argument.resize(argument.size() - 3);
        }
        if (place == 0 || mayRepeat || repeated) {
            OfferArgument(command, argument, begun);
            if (!mayRepeat || place == 0) {
                return;
            }
            repeated = true;
        } else {
            --place;
        }
    }
}

void OfferOptions(unsigned options, const Begun &begun) {
    for (const CliOptionRow &row : CliOptions) {
        if (options & OptionBit(row.option)) {
            OfferWord(begun, row.name, row.help);
        }
    }
}

// The commands that begin with this word and, once their group is typed, what stands behind that.
void OfferCommands(const Begun &begun) {
    std::string_view former;
    for (const CliCommand &command : CliCommands) {
        const std::string_view name = command.name;
        const std::size_t blank = name.find(' ');
        if (!begun.before.empty()) {
            if (begun.before.size() == 1 && IsOfGroup(command, begun.before[0])) {
                OfferWord(begun, name.substr(blank + 1), command.help);
            }
        } else if (blank == name.npos) {
            OfferWord(begun, name, command.help);
        } else if (name.substr(0, blank) != former) {
            former = name.substr(0, blank);
            OfferWord(begun, former);
        }
    }
}

void OfferValue(const CliOptionRow &option, const Begun &begun) {
    const auto *row = std::ranges::find(Values, option.option, &ValueRow::option);
    if (row != std::end(Values)) {
        row->offer(begun);
    }
}

// The option of that name that takes a value; or null.
const CliOptionRow *OptionWithValue(std::string_view name) {
    const auto *row = std::ranges::find(CliOptions, name, &CliOptionRow::name);
    return row != std::end(CliOptions) && row->valueName ? row : nullptr;
}

} // namespace

int CliComplete(const CliCall &call) {
    std::vector<char *> words; // of the call that is begun, without its options
    bool optionsEnded = false;
    const CliOptionRow *option = nullptr; // whose value comes next
    for (char *word : call.words.first(call.words.size() - 1)) {
        const std::string_view text = word;
        if (option) {
            option = nullptr;
        } else if (optionsEnded || text.size() < 2 || text[0] != '-') {
            words.push_back(word);
        } else if (text == "--") {
            optionsEnded = true;
        } else {
            option = OptionWithValue(text);
        }
    }
    std::size_t taken = 0;
    const CliCommand *command = CommandOfWords(words, taken);
    Begun begun{.text = call.words.back(), .lead = "", .before = words};
    if (option) {
        OfferValue(*option, begun);
    } else if (!optionsEnded && begun.text.starts_with('-')) {
        const std::size_t equals = begun.text.find('=');
        if (equals == begun.text.npos) {
            OfferOptions((command ? command->options : 0) | CliOptionsOfAll, begun);
        } else if (const CliOptionRow *named = OptionWithValue(begun.text.substr(0, equals))) {
            begun.lead = begun.text.substr(0, equals + 1);
            begun.text.remove_prefix(equals + 1);
            OfferValue(*named, begun);
        }
    } else if (command) {
        begun.before = begun.before.subspan(taken);
        OfferArguments(*command, begun);
    } else {
        OfferCommands(begun);
    }
    return ExitDone;
}

} // namespace tonewright
