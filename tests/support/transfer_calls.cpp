// Records desktop and list between the calls of a MIDI table.
#include "support/transfer_calls.h"

#include "common/desktop.h"

#include <string>

namespace tonewright {

void RecordDesktopAmongCalls(FakeMidi &midi) {
    TheDesktop.SetProgress = [&midi, inner = TheDesktop.SetProgress](int position, int total) {
        midi.calls.push_back("SetProgress(" + std::to_string(position) + ", " +
                             std::to_string(total) + ")");
        return inner(position, total);
    };
    TheDesktop.SetStatusText = [&midi, inner = TheDesktop.SetStatusText](QWidget *owner,
                                                                         const std::string &text) {
        midi.calls.push_back("SetStatusText(" + text + ")");
        return inner(owner, text);
    };
    TheDesktop.ShowBusyBox = [&midi, inner = TheDesktop.ShowBusyBox](QWidget *owner,
                                                                     const std::string &text) {
        midi.calls.push_back("ShowBusyBox(" + text + ")");
        return inner(owner, text);
    };
    TheDesktop.CloseBusyBox = [&midi, inner = TheDesktop.CloseBusyBox] {
        midi.calls.emplace_back("CloseBusyBox()");
        inner();
    };
    TheDesktop.RunMessage = [&midi, inner = TheDesktop.RunMessage](MessageRequest &request) {
        midi.calls.emplace_back("message");
        inner(request);
    };
}

void RecordListAmongCalls(FakeMidi &midi, VoiceList &list) {
    list.observer = [&midi, &list, enabled = list.enabled, redraw = list.redraw,
                     height = list.itemHeight](ListChange change) mutable {
        if (change == ListChange::Items) {
            midi.calls.push_back(std::to_string(ListCount(list)) + " rows");
        } else if (change == ListChange::Item) {
            midi.calls.emplace_back("voice");
        } else if (change == ListChange::Selection) {
            midi.calls.push_back("select " + std::to_string(list.selection));
        }
        if (list.redraw != redraw) {
            redraw = list.redraw;
            midi.calls.emplace_back(redraw ? "redraw" : "no redraw");
        }
        if (list.enabled != enabled) {
            enabled = list.enabled;
            midi.calls.emplace_back(enabled ? "enable" : "disable");
        }
        if (list.itemHeight != height) {
            height = list.itemHeight;
            midi.calls.push_back("height " + std::to_string(height));
        }
    };
}

} // namespace tonewright
