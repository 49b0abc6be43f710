// Keeps what was replaced by lists from elsewhere.
#include "shell/list_source.h"

#include "core/current.h"
#include "core/dispatch.h"
#include "core/midi_ports.h"
#include "shell/list_origin.h"
#include "shell/list_state.h"
#include "shell/shell_window.h"
#include "shell/undo.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

struct ListFromElsewhere {
    int origin = NoListOrigin; // of the list; levels of undo with a lower one are of those before
    std::string source;
    // The document before it, and the instrument.
    std::string path;
    std::int64_t time = 0;
    DocumentFile file;
    DriverId family = NoDriverId;
    MidiPorts ports;
    std::uint32_t firmware = 0;
};

// Oldest first. Origins rise.
std::vector<ListFromElsewhere> Lists;

void MakeDocumentNew() {
    CurrentDocumentPath = DefaultDocumentName();
    CurrentDocumentTime = 0;
    TheDocumentFile = {};
}

} // namespace

void BeginListFrom(const std::string &source, DriverId family) {
    // What neither Undo nor the list leads to any more.
    std::erase_if(Lists, [oldest = UndoOldestOrigin()](const ListFromElsewhere &list) {
        return list.origin < oldest;
    });
    ListFromElsewhere list{.source = source,
                           .path = CurrentDocumentPath,
                           .time = CurrentDocumentTime,
                           .file = std::move(TheDocumentFile),
                           .family = CurrentDriverId,
                           .ports = CurrentMidiPorts(),
                           .firmware = SynthFirmware};
    if (family != CurrentDriverId) {
        SelectFamily(family);
    }
    BeginListOrigin();
    MakeDocumentNew();
    list.origin = MainListOrigin;
    Lists.push_back(std::move(list));
    RefreshTitle();
}

std::string SourceOfList() {
    const auto list = std::ranges::find(Lists, MainListOrigin, &ListFromElsewhere::origin);
    return list == Lists.end() ? "" : list->source;
}

DriverId FamilyOfMainList() {
    for (const VoiceObject &voice : MainList.items) {
        if (const auto header = HeaderOf(voice)) {
            return header->driverId;
        }
    }
    return CurrentDriverId;
}

void BringDocumentBack() {
    std::optional<ListFromElsewhere> first;
    while (!Lists.empty() && MainListOrigin < Lists.back().origin) {
        first = std::move(Lists.back());
        Lists.pop_back();
    }
    if (!first) {
        return;
    }
    const DriverId family = FamilyOfMainList();
    const bool isSameFamily = family == first->family;
    if (family != CurrentDriverId) {
        SelectFamily(family);
        if (isSameFamily) {
            MidiInPort = first->ports.in;
            MidiOutPort = first->ports.out;
            SynthFirmware = first->firmware;
        }
    }
    SelectListFonts(MainList, family);
    if (isSameFamily) {
        CurrentDocumentPath = std::move(first->path);
        CurrentDocumentTime = first->time;
        TheDocumentFile = std::move(first->file);
    } else { // its name is one for voices of another family
        MakeDocumentNew();
    }
    RefreshTitle();
    RefreshStatus();
}

void ForgetListSources() {
    Lists.clear();
}

} // namespace tonewright
