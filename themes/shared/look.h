// What makes one theme differ from another. The entry points (entry_points.cpp) are the same for
// every theme: they ask the look of the theme that they are linked with.
#pragma once

#include "shared/picture.h"
#include "tonewright_theme.h"

#include <QPalette>
#include <QRect>

#include <span>

class QPainter;

namespace tonewright::theme {

struct MetricRow {
    int number; // THEME_METRIC_...
    int pixels;
};

struct Look {
    std::span<const MetricRow> metrics;
    // A button of the tool bar into a rectangle of a window with this palette; false, with nothing
    // drawn, for a picture that the theme does not have. The painter's state may be changed.
    bool (*drawButton)(QPainter &painter, const QPalette &palette, const QRect &rectangle,
                       int picture, unsigned state);
    // What lies behind the buttons. The painter's state may be changed.
    void (*drawBackground)(QPainter &painter, const QPalette &palette, const QRect &rectangle);
    // Those of the tools (shared/tool_bar.h) and of the boxes (shared/box_pictures.h), by name.
    std::span<const EmbeddedPicture> pictures;
};

extern const Look TheLook;

// The value of a metric of TheLook; 0 for a number that has none.
int MetricOf(int number);

} // namespace tonewright::theme
