// The measures of the two sizes in which themes come, in device-independent pixels.
#pragma once

#include "shared/look.h"

namespace tonewright::theme {

constexpr MetricRow MediumMetrics[] = {
    {THEME_METRIC_TOOLBAR_HEIGHT, 56}, {THEME_METRIC_TOOL_WIDTH, 48},
    {THEME_METRIC_TOOL_HEIGHT, 48},    {THEME_METRIC_TOOL_GROUP_GAP, 16},
    {THEME_METRIC_TOOL_LEFT, 8},       {THEME_METRIC_TOOL_TOP, 4},
    {THEME_METRIC_TOOL_GAP, 4},        {THEME_METRIC_PICTURE_WIDTH, 96},
    {THEME_METRIC_PICTURE_HEIGHT, 96},
};
constexpr MetricRow CompactMetrics[] = {
    {THEME_METRIC_TOOLBAR_HEIGHT, 40}, {THEME_METRIC_TOOL_WIDTH, 34},
    {THEME_METRIC_TOOL_HEIGHT, 34},    {THEME_METRIC_TOOL_GROUP_GAP, 10},
    {THEME_METRIC_TOOL_LEFT, 6},       {THEME_METRIC_TOOL_TOP, 3},
    {THEME_METRIC_TOOL_GAP, 3},        {THEME_METRIC_PICTURE_WIDTH, 64},
    {THEME_METRIC_PICTURE_HEIGHT, 64},
};

// The sides of the square pictures in the middle of tool buttons of these sizes.
constexpr int MediumToolPicture = 32;
constexpr int CompactToolPicture = 24;

} // namespace tonewright::theme
