// What the engine of the shell asks of the main window, and the texts in it; filled in by the
// window, by the command-line program (mostly empty) and by tests. An empty member does nothing.
#pragma once

#include "core/midi_ports.h"
#include "core/voice_object.h"

#include <functional>
#include <string>

class QWidget;

namespace tonewright {

struct WizardRequest;

struct ShellWindow {
    QWidget *window = nullptr; // owner of all dialogs
    std::function<void(const std::string &title)> SetTitle;
    std::function<void()> CommandStatesChanged; // ask anew which commands are enabled, or checked
    std::function<void()> RepaintList;
    std::function<void()> Raise; // to the top, without staying there
    std::function<void()> Close; // as the system's close message: settings are written
    std::function<void()> Wake;  // posted work waits: call RunNextPosted soon, from the event loop
    std::function<void()> ShowAboutBox;
    std::function<void()> ShowTipBox; // with the next tip of the day; returns when it is closed
    std::function<void()> ShowSystemInformation;
    std::function<int()> AskForWizard; // whether a first start shows it: ResultYes or ResultNo
    std::function<int(const WizardRequest &)> ShowWizard; // WizardDismissed or 0
    std::function<void()> ShowSettings;   // the settings; returns when they are closed
    std::function<void()> DropBackground; // the picture is loaded anew at the next painting
    std::function<void()> RepaintWindow;
    std::function<void()> RepaintTools;          // the buttons of the tool bar
    std::function<int(int row)> ShowAuditionBox; // for the voice in a row of the list
    // For a voice that need not be in the list.
    std::function<int(QWidget *owner, const VoiceObject &voice, DriverId family, MidiPorts ports)>
        AuditionVoice;
    std::function<int()> ShowSelectSynthBox; // 1: OK
    std::function<void()> ShowMidiDevicesBox;
    std::function<void()> ShowInstrumentsBox;
    std::function<void(const std::string &path)>
        ShowDumpBox;                // of a file; returns when it is closed
    std::function<void()> ShowArchive; // its window, which stays while one works
    std::function<int()> PrintList; // asks for a printer and prints the voices of the list; 1
};

extern ShellWindow TheShellWindow;

// Title of the current instrument into the status bar.
void RefreshStatus();
// "Tonewright [ file ]" into the title bar.
void RefreshTitle();
void RepaintList();

} // namespace tonewright
