// Makes document and family follow the list.
#include "shell/list_replacement.h"

#include "core/current.h"
#include "core/dispatch.h"
#include "shell/list_origin.h"
#include "shell/list_source.h"
#include "shell/list_state.h"
#include "shell/shell_window.h"
#include "shell/undo.h"

#include <utility>

namespace tonewright {
namespace {

void MakeDocumentNew() {
    CurrentDocumentPath = DefaultDocumentName();
    CurrentDocumentTime = 0;
    TheDocumentFile = {};
}

} // namespace

void BeginListFrom(const std::string &source, DriverId family) {
    const int oldestOrigin = UndoOldestOrigin();
    ReplacedDocument document = {.path = CurrentDocumentPath,
                                 .time = CurrentDocumentTime,
                                 .file = std::move(TheDocumentFile),
                                 .family = CurrentDriverId,
                                 .ports = CurrentMidiPorts(),
                                 .firmware = SynthFirmware};
    if (family != CurrentDriverId) {
        SelectFamily(family);
    }
    BeginListOrigin();
    KeepListSource(source, std::move(document), oldestOrigin);
    MakeDocumentNew();
    RefreshTitle();
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
    std::optional<ReplacedDocument> document = TakeReplacedDocument();
    if (!document) {
        return;
    }
    const DriverId family = FamilyOfMainList();
    const bool isSameFamily = family == document->family;
    if (family != CurrentDriverId) {
        SelectFamily(family);
        if (isSameFamily) {
            MidiInPort = document->ports.in;
            MidiOutPort = document->ports.out;
            SynthFirmware = document->firmware;
        }
    }
    SelectListFonts(MainList, family);
    if (isSameFamily) {
        CurrentDocumentPath = std::move(document->path);
        CurrentDocumentTime = document->time;
        TheDocumentFile = std::move(document->file);
    } else { // its name is one for voices of another family
        MakeDocumentNew();
    }
    RefreshTitle();
    RefreshStatus();
}

} // namespace tonewright
