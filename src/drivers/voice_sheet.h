// The editor of a voice: a sheet of pages over a copy of it, one for the voice as a whole and one
// for each operator. What the controls of a page hold is kept here; a window shows it and passes on
// what the user does.
//
// A page is made when it is first shown, and keeps its values from then on. Leaving a page collects
// it: whatever its controls show goes into the copy. The voice's page stores most values at once as
// well. Only a sheet that was accepted gives the copy to the voice.
#pragma once

#include "common/scroll_step.h"
#include "common/text.h"
#include "core/midi_ports.h"
#include "drivers/voice_parameters.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class QWidget;

namespace tonewright {

// What the controls of a row show.
struct RowState {
    bool exists = false;            // the page has the row's own control
    std::optional<SpinRange> range; // of a number, as its arrows tell it; without one it reads 0
    std::string text;               // of an edit, UTF-8
    int selection = -1;             // of a list, the index of an item; -1: nothing
    bool checked = false;           // of a check box
    int bar = 0;                    // where the scroll bar stands
    bool enabled = true;            // with its label, arrows and bar
};

struct SheetPage {
    bool made = false;
    std::vector<RowState> rows; // as RowsOf
};

// Page 0 is the voice's, 1 to the number of operators are theirs.
constexpr int VoicePage = 0;
constexpr int NoPage = -1;

struct VoiceSheet {
    const VoiceParameters *family = nullptr;
    VoiceObject copy;     // that is edited
    VoiceObject original; // as it was at the beginning
    MidiPorts ports;
    int itemIndex = 0; // of the voice in its list, from 0
    bool accepted = false;
    bool isShown = false;   // the window stands: commands of its controls count
    bool isTouched = false; // the user has changed what some control shows
    int activePage = NoPage;
    std::vector<SheetPage> pages;

    // Called when what a row's controls show has changed otherwise than by the user's own hand on
    // the control: the window shows the row's state anew. A page that is made or shown again is
    // read by the window itself.
    std::function<void(int page, std::size_t row)> showRow;
    // Called when the copy's algorithm has become another.
    std::function<void()> showAlgorithm;
    // Plays a further copy of the voice as it stands.
    std::function<void(const VoiceObject &voice)> audition;
};

// The controls that a page of the window has.
struct PageControls {
    std::function<bool(std::uint32_t control)> has;
    // The range that the arrows of an edit tell, by the edit's number: "minimum,maximum,start";
    // empty where there is none.
    std::function<std::string(std::uint32_t control)> rangeText;
};

// ---- facts

int PageCount(const VoiceParameters &family);
std::span<const VoiceParameter> RowsOf(const VoiceParameters &family, int page);
// "Voice", "Operator 1".
std::string PageTitle(int page);
// The number of the voice's algorithm as it is stored, from 0; the copy's.
int AlgorithmOf(const VoiceSheet &sheet);

// ---- beginning and end

// A sheet over a copy of `voice`; no page is shown yet. Nothing, after a message, when `voice` is
// no whole voice of the family.
std::optional<VoiceSheet> BeginVoiceSheet(QWidget *window, const VoiceParameters &family,
                                          const VoiceObject &voice, MidiPorts ports, int itemIndex);
// The page to open with: the setting VoiceEditPage, or the voice's when there is no such page.
int StartPage(const VoiceSheet &sheet);
// Gives the copy to `voice` when the sheet was accepted. The result of EditVoice: 1 then, else 0.
int EndVoiceSheet(const VoiceSheet &sheet, VoiceObject &voice);

// ---- pages

// Leaves the page that is shown, which collects it, and shows another one, made of the copy when
// it is shown for the first time; an operator's page reads the name each time. The setting
// VoiceEditPage follows.
void ShowPage(VoiceSheet &sheet, int page, const PageControls &controls);
// Stores all that the controls of a page show. Nothing of a page that was not made.
void CollectPage(VoiceSheet &sheet, int page);

// ---- what the user does, on the page that is shown; `row` is an index into its rows

// A command of a row's control that changes nothing, such as its taking the focus.
void RowCommand(VoiceSheet &sheet, std::size_t row);
void TypeInRow(VoiceSheet &sheet, std::size_t row, const std::string &text);
void SelectInRow(VoiceSheet &sheet, std::size_t row, int selection);
void CheckRow(VoiceSheet &sheet, std::size_t row, bool checked);
// One step of the arrows: +1 or -1.
void StepRow(VoiceSheet &sheet, std::size_t row, int step);
// One action on the scroll bar; `thumb` is where the thumb was drawn to.
void ScrollRow(VoiceSheet &sheet, std::size_t row, ScrollAction action, int thumb);

// ---- buttons

constexpr std::uint32_t SheetOk = 1;
constexpr std::uint32_t SheetCancel = 2;
constexpr std::uint32_t SheetHelp = 9;
constexpr std::uint32_t SheetAudition = 12321;

// A button of the sheet takes effect while the control `focused` has the focus, which is the button
// itself when it was pressed, and another control when Return pressed OK from there. True when the
// sheet closes: with OK, which accepts the copy only when OK itself has the focus, and with Cancel.
// In careful mode OK accepts from wherever it was pressed, and Cancel asks whether to drop what the
// user has changed.
bool PressSheetButton(VoiceSheet &sheet, QWidget *window, std::uint32_t button,
                      std::uint32_t focused);

} // namespace tonewright
