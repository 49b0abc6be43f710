// The moments at which the editor's pages read and store a voice.
#include "drivers/voice_sheet.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "common/strings.h"
#include "drivers/careful_editing.h"
#include "drivers/frequency.h"

#include <algorithm>
#include <utility>

namespace tonewright {
namespace {

constexpr unsigned CopyFailed = 6; // the string table has no such text
constexpr int LargestStartPage = 5;
constexpr const char *HelpTopic = "VOICEEDIT";

// ---- rows of a page

// The part of the voice that a page shows: of operator pages the last ones share a block.
int PartOfPage(const VoiceParameters &family, int page) {
    return page == VoicePage ? 0 : std::min(page - 1, family.lastPageBlock) + 1;
}

std::span<const VoiceParameter> RowsOfPage(const VoiceSheet &sheet, int page) {
    return RowsOf(*sheet.family, page);
}

RowState &StateOf(VoiceSheet &sheet, int page, std::size_t row) {
    return sheet.pages[static_cast<std::size_t>(page)].rows[row];
}

int LimitTo(const SpinRange &range, std::int64_t number) {
    const std::int64_t least = range.minimum, largest = std::max(range.minimum, range.maximum);
    return static_cast<int>(std::clamp(number, least, largest));
}

int NumberIn(const RowState &state) {
    return state.range ? ClampedInteger(state.text.c_str(), *state.range) : 0;
}

// What the controls of a row that is no name show, as it is to be stored; 0 where they are missing.
int ReadRow(const VoiceParameter &row, const RowState &state) {
    if (!state.exists) {
        return 0;
    }
    if (row.IsList()) {
        return std::clamp(state.selection, 0, row.maximum);
    }
    if (row.IsCheck()) {
        return state.checked;
    }
    return row.kind == ParameterKind::Frequency ? ReadFrequency(state.text.c_str())
                                                : NumberIn(state);
}

void StoreRow(VoiceSheet &sheet, int page, std::size_t index) {
    const VoiceParameter &row = RowsOfPage(sheet, page)[index];
    const RowState &state = StateOf(sheet, page, index);
    if (row.kind == ParameterKind::Name) {
        StoreShownName(*sheet.family, row, sheet.copy, Utf8ToLatin1(state.text.c_str()));
        return;
    }
    const int former = AlgorithmOf(sheet);
    StoreShownValue(*sheet.family, row, sheet.copy, PartOfPage(*sheet.family, page),
                    ReadRow(row, state));
    if (AlgorithmOf(sheet) != former && sheet.showAlgorithm) {
        sheet.showAlgorithm();
    }
}

// ---- making a page

std::string NameOfCopy(const VoiceSheet &sheet, const VoiceParameter &row) {
    return Latin1ToUtf8(ShownName(*sheet.family, row, sheet.copy));
}

void FillRow(const VoiceSheet &sheet, int page, const VoiceParameter &row, RowState &state) {
    if (row.kind == ParameterKind::Name) {
        state.text = NameOfCopy(sheet, row);
        state.enabled = row.taken != ParameterTaken::Never;
        return;
    }
    if (row.taken == ParameterTaken::Never) {
        return; // stands for nothing in the voice
    }
    const int shown = ShownValue(*sheet.family, row, sheet.copy, PartOfPage(*sheet.family, page));
    if (row.IsList()) {
        state.selection = shown <= row.maximum ? shown : -1;
    } else if (row.IsCheck()) {
        state.checked = shown != 0;
    } else if (row.kind == ParameterKind::Frequency) {
        state.text = FrequencyText(shown);
    } else {
        state.text = std::to_string(shown);
        state.bar = row.hasBar ? NumberIn(state) : 0;
    }
}

bool IsGateOpen(const VoiceSheet &sheet, int page, std::uint32_t control) {
    const auto rows = RowsOfPage(sheet, page);
    const auto gate = std::ranges::find(rows, control, &VoiceParameter::control);
    const auto index = static_cast<std::size_t>(gate - rows.begin());
    return gate != rows.end() && sheet.pages[static_cast<std::size_t>(page)].rows[index].checked;
}

// Enables the rows that have gates, or disables them. `changed` hears of each that was changed.
template <class Changed> void FollowGates(VoiceSheet &sheet, int page, const Changed &changed) {
    const auto rows = RowsOfPage(sheet, page);
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const auto &gates = rows[index].gates;
        if (gates.front() == 0) {
            continue;
        }
        const bool enabled = std::ranges::all_of(gates, [&](std::uint32_t control) {
            return control == 0 || IsGateOpen(sheet, page, control);
        });
        if (std::exchange(StateOf(sheet, page, index).enabled, enabled) != enabled) {
            changed(index);
        }
    }
}

void MakePage(VoiceSheet &sheet, int page, const PageControls &controls) {
    SheetPage &made = sheet.pages[static_cast<std::size_t>(page)];
    for (const VoiceParameter &row : RowsOfPage(sheet, page)) {
        RowState state;
        state.exists = controls.has(row.control);
        SpinRange range;
        if (row.kind == ParameterKind::Number &&
            ScanSpinRange(controls.rangeText(row.control).c_str(), range) >= 2) {
            state.range = range;
        }
        if (state.exists) {
            FillRow(sheet, page, row, state);
        }
        made.rows.push_back(std::move(state));
    }
    made.made = true;
    FollowGates(sheet, page, [](std::size_t) {});
}

void RefreshOperatorName(VoiceSheet &sheet, int page) {
    const auto rows = RowsOfPage(sheet, page);
    for (std::size_t index = 0; index < rows.size(); ++index) {
        RowState &state = StateOf(sheet, page, index);
        if (rows[index].kind == ParameterKind::Name && state.exists) {
            state.text = NameOfCopy(sheet, rows[index]);
        }
    }
}

// ---- commands of the page that is shown

// The row whose control the user has used; nothing when it cannot be used, or the page has no such
// row.
RowState *UsedRow(VoiceSheet &sheet, std::size_t row) {
    if (!sheet.isShown || sheet.activePage == NoPage ||
        row >= RowsOfPage(sheet, sheet.activePage).size()) {
        return nullptr;
    }
    RowState &state = StateOf(sheet, sheet.activePage, row);
    return state.exists && state.enabled ? &state : nullptr;
}

const VoiceParameter &ShownRow(const VoiceSheet &sheet, std::size_t row) {
    return RowsOfPage(sheet, sheet.activePage)[row];
}

void TellRow(const VoiceSheet &sheet, std::size_t row) {
    if (sheet.showRow) {
        sheet.showRow(sheet.activePage, row);
    }
}

// A command of the row's control: its bar follows, and a row taken at once is stored. True when the
// bar has moved.
bool TakeCommand(VoiceSheet &sheet, std::size_t index) {
    const VoiceParameter &row = ShownRow(sheet, index);
    RowState &state = StateOf(sheet, sheet.activePage, index);
    if (row.taken == ParameterTaken::AtOnce) {
        StoreRow(sheet, sheet.activePage, index);
    }
    if (!row.hasBar) {
        return false;
    }
    const int bar = NumberIn(state);
    return std::exchange(state.bar, bar) != bar;
}

// A new text in a row's edit that its arrows or its bar wrote.
void WriteText(VoiceSheet &sheet, std::size_t row, std::string text) {
    RowState &state = StateOf(sheet, sheet.activePage, row);
    if (std::exchange(state.text, text) != text) {
        sheet.isTouched = true;
        TakeCommand(sheet, row);
    }
    TellRow(sheet, row);
}

// ---- buttons

// Whether the user has changed something that OK would keep.
bool HasEdits(const VoiceSheet &sheet) {
    if (!sheet.isTouched) {
        return false;
    }
    VoiceSheet trial = sheet;
    trial.showAlgorithm = nullptr;
    CollectPage(trial, trial.activePage);
    return trial.copy != sheet.original;
}

// As the voice was called at the beginning.
std::string NameOfOriginal(const VoiceSheet &sheet) {
    const auto row =
        std::ranges::find(sheet.family->voice, ParameterKind::Name, &VoiceParameter::kind);
    return row == sheet.family->voice.end()
               ? ""
               : Latin1ToUtf8(ShownName(*sheet.family, *row, sheet.original));
}

void PlayCopy(const VoiceSheet &sheet) {
    const std::size_t size = RecordSizeOf(sheet.copy);
    if (size > 0 && sheet.audition) {
        const auto begin = sheet.copy.bytes.begin();
        sheet.audition({.bytes = {begin, begin + static_cast<std::ptrdiff_t>(size)}});
    }
}

} // namespace

int PageCount(const VoiceParameters &family) {
    return 1 + family.operatorCount;
}

std::span<const VoiceParameter> RowsOf(const VoiceParameters &family, int page) {
    return page == VoicePage ? family.voice : family.operators;
}

std::string PageTitle(int page) {
    return page == VoicePage ? "Voice" : FormatText("Operator %d", page);
}

int AlgorithmOf(const VoiceSheet &sheet) {
    const auto row =
        std::ranges::find(sheet.family->voice, ParameterKind::Algorithm, &VoiceParameter::kind);
    return row == sheet.family->voice.end() ? 0 : ShownValue(*sheet.family, *row, sheet.copy, 0);
}

std::optional<VoiceSheet> BeginVoiceSheet(QWidget *window, const VoiceParameters &family,
                                          const VoiceObject &voice, MidiPorts ports,
                                          int itemIndex) {
    if (!family.IsWhole(voice)) {
        ShowMessage(window, LoadProgramString(CopyFailed));
        return std::nullopt;
    }
    VoiceSheet sheet;
    sheet.family = &family;
    sheet.copy = sheet.original = voice;
    sheet.ports = ports;
    sheet.itemIndex = itemIndex;
    sheet.pages.resize(static_cast<std::size_t>(PageCount(family)));
    return sheet;
}

int StartPage(const VoiceSheet &sheet) {
    return VoiceEditPage < static_cast<std::uint32_t>(PageCount(*sheet.family))
               ? static_cast<int>(VoiceEditPage)
               : VoicePage;
}

int EndVoiceSheet(const VoiceSheet &sheet, VoiceObject &voice) {
    if (!sheet.accepted) {
        return 0;
    }
    const std::size_t size = std::min(sheet.copy.bytes.size(), voice.bytes.size());
    std::copy_n(sheet.copy.bytes.begin(), size, voice.bytes.begin());
    return 1;
}

void ShowPage(VoiceSheet &sheet, int page, const PageControls &controls) {
    if (page == sheet.activePage) {
        return;
    }
    CollectPage(sheet, sheet.activePage);
    if (!sheet.pages[static_cast<std::size_t>(page)].made) {
        MakePage(sheet, page, controls);
    }
    sheet.activePage = page;
    VoiceEditPage = static_cast<std::uint32_t>(std::min(page, LargestStartPage));
    if (page != VoicePage) {
        RefreshOperatorName(sheet, page);
    }
}

void CollectPage(VoiceSheet &sheet, int page) {
    if (page == NoPage || !sheet.pages[static_cast<std::size_t>(page)].made) {
        return;
    }
    const auto rows = RowsOfPage(sheet, page);
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const VoiceParameter &row = rows[index];
        if (row.taken == ParameterTaken::Never) {
            continue;
        }
        StoreRow(sheet, page, index);
        if (row.kind == ParameterKind::Name && ShownName(*sheet.family, row, sheet.copy).empty()) {
            StoreShownName(*sheet.family, row, sheet.copy, NameForNone);
        }
    }
}

void RowCommand(VoiceSheet &sheet, std::size_t row) {
    // A name is stored when it is changed, so that one that was only visited keeps its blanks.
    if (UsedRow(sheet, row) && ShownRow(sheet, row).kind != ParameterKind::Name) {
        TakeCommand(sheet, row); // the bar stands where the text has it
    }
}

void TypeInRow(VoiceSheet &sheet, std::size_t row, const std::string &text) {
    RowState *state = UsedRow(sheet, row);
    if (!state || !ShownRow(sheet, row).IsEdit()) {
        return;
    }
    sheet.isTouched = std::exchange(state->text, text) != text || sheet.isTouched;
    if (TakeCommand(sheet, row)) {
        TellRow(sheet, row);
    }
}

void SelectInRow(VoiceSheet &sheet, std::size_t row, int selection) {
    RowState *state = UsedRow(sheet, row);
    if (!state || !ShownRow(sheet, row).IsList()) {
        return;
    }
    selection = std::max(selection, -1);
    sheet.isTouched = std::exchange(state->selection, selection) != selection || sheet.isTouched;
    TakeCommand(sheet, row);
}

void CheckRow(VoiceSheet &sheet, std::size_t row, bool checked) {
    RowState *state = UsedRow(sheet, row);
    if (!state || !ShownRow(sheet, row).IsCheck()) {
        return;
    }
    sheet.isTouched = std::exchange(state->checked, checked) != checked || sheet.isTouched;
    TakeCommand(sheet, row);
    FollowGates(sheet, sheet.activePage, [&sheet](std::size_t gated) { TellRow(sheet, gated); });
}

void StepRow(VoiceSheet &sheet, std::size_t row, int step) {
    const RowState *state = UsedRow(sheet, row);
    if (!state) {
        return;
    }
    if (ShownRow(sheet, row).kind == ParameterKind::Frequency) {
        WriteText(sheet, row, StepFrequency(state->text.c_str(), step));
    } else if (ShownRow(sheet, row).kind == ParameterKind::Number && state->range) {
        const std::int64_t number = NumberIn(*state);
        WriteText(sheet, row, std::to_string(LimitTo(*state->range, number + step)));
    }
}

void ScrollRow(VoiceSheet &sheet, std::size_t row, ScrollAction action, int thumb) {
    RowState *state = UsedRow(sheet, row);
    if (!state || !ShownRow(sheet, row).hasBar || !state->range) {
        return;
    }
    if (ScrollStep(action, thumb, state->range->maximum, state->bar)) {
        WriteText(sheet, row, std::to_string(std::min(state->bar, state->range->maximum)));
    }
}

bool PressSheetButton(VoiceSheet &sheet, QWidget *window, std::uint32_t button,
                      std::uint32_t focused) {
    switch (button) {
    case SheetOk:
        CollectPage(sheet, sheet.activePage);
        sheet.accepted = sheet.accepted || focused == SheetOk || CarefulAcceptsReturn();
        return true;
    case SheetAudition:
        CollectPage(sheet, sheet.activePage);
        PlayCopy(sheet);
        return false;
    case SheetCancel:
        return CarefulMayDropEdits(window, NameOfOriginal(sheet), HasEdits(sheet));
    case SheetHelp:
        ShowHelp(window, HelpTopic);
        return false;
    default:
        return false;
    }
}

} // namespace tonewright
