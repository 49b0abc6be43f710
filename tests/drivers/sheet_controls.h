// The controls of a page as the rows say them, for a sheet without a window.
#pragma once

#include "common/text.h"
#include "drivers/voice_sheet.h"

#include <algorithm>
#include <span>
#include <string>

namespace tonewright {

inline bool HasControls(const VoiceParameter &row) {
    return *row.label != '\0';
}

// "minimum,maximum,0", as the arrows of a number tell their range.
inline std::string RangeTextOf(const VoiceParameter &row) {
    return FormatText("%d,%d,0", row.minimum, row.maximum);
}

inline PageControls ControlsOfRows(std::span<const VoiceParameter> rows) {
    const auto rowOf = [rows](std::uint32_t control) -> const VoiceParameter * {
        const auto row = std::ranges::find(rows, control, &VoiceParameter::control);
        return row != rows.end() && HasControls(*row) ? &*row : nullptr;
    };
    return {.has = [rowOf](std::uint32_t control) { return rowOf(control) != nullptr; },
            .rangeText =
                [rowOf](std::uint32_t control) {
                    const VoiceParameter *row = rowOf(control);
                    return row && row->kind == ParameterKind::Number ? RangeTextOf(*row) : "";
                }};
}

} // namespace tonewright
