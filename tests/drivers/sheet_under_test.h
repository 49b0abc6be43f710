// A voice editor's sheet without a window, whose controls are named by their numbers.
#pragma once

#include "drivers/voice_sheet.h"
#include "sheet_controls.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tonewright {

struct SheetUnderTest {
    VoiceObject voice; // that the sheet was begun with
    VoiceSheet sheet;
    std::vector<std::string> shown; // "page:control" of each row that was shown anew
    int algorithmsShown = 0;
    std::vector<VoiceObject> played;

    SheetUnderTest(const VoiceParameters &family, VoiceObject begun) : voice(std::move(begun)) {
        auto begunSheet = BeginVoiceSheet(nullptr, family, voice, {.in = 3, .out = 4}, 5);
        if (!begunSheet) {
            ADD_FAILURE() << "no sheet";
            return;
        }
        sheet = std::move(*begunSheet);
        sheet.isShown = true;
        sheet.showRow = [this](int page, std::size_t row) {
            shown.push_back(std::to_string(page) + ":" +
                            std::to_string(RowsOf(*sheet.family, page)[row].control));
        };
        sheet.showAlgorithm = [this] { ++algorithmsShown; };
        sheet.audition = [this](const VoiceObject &further) { played.push_back(further); };
    }
    SheetUnderTest(const SheetUnderTest &) = delete;
    SheetUnderTest &operator=(const SheetUnderTest &) = delete;

    void Show(int page) { ShowPage(sheet, page, ControlsOfRows(RowsOf(*sheet.family, page))); }

    // The index of a control's row on the page that is shown.
    std::size_t RowOf(std::uint32_t control) const {
        const auto rows = RowsOf(*sheet.family, sheet.activePage);
        for (std::size_t row = 0; row < rows.size(); ++row) {
            if (rows[row].control == control) {
                return row;
            }
        }
        ADD_FAILURE() << "page " << sheet.activePage << " has no row " << control;
        return 0;
    }
    const RowState &At(std::uint32_t control) const {
        return sheet.pages[static_cast<std::size_t>(sheet.activePage)].rows[RowOf(control)];
    }
    void Type(std::uint32_t control, const std::string &text) {
        TypeInRow(sheet, RowOf(control), text);
    }
    void Select(std::uint32_t control, int selection) {
        SelectInRow(sheet, RowOf(control), selection);
    }
    void Check(std::uint32_t control, bool checked) { CheckRow(sheet, RowOf(control), checked); }
    void Step(std::uint32_t control, int step) { StepRow(sheet, RowOf(control), step); }
    void Scroll(std::uint32_t control, ScrollAction action, int thumb = 0) {
        ScrollRow(sheet, RowOf(control), action, thumb);
    }
    bool Press(std::uint32_t button) { return PressSheetButton(sheet, nullptr, button, button); }
    bool ReturnIn(std::uint32_t control) {
        return PressSheetButton(sheet, nullptr, SheetOk, control);
    }

    // A byte of the payload and what is behind it, of the copy.
    int Byte(std::size_t offset) const { return sheet.copy.bytes[VoiceObjectHeaderSize + offset]; }
    // What EndVoiceSheet makes of the voice.
    VoiceObject Ended() {
        EndVoiceSheet(sheet, voice);
        return voice;
    }
};

} // namespace tonewright
