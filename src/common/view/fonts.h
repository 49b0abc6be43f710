// Makes real fonts of font descriptions.
#pragma once

#include <QFont>
#include <QString>

namespace tonewright {

// A font whose character cell (QFontMetrics ascent plus descent) is `height` pixels high; a
// negative height is the size of the em in pixels. `weight` is 400, 500 or 700. Cached.
QFont FontOfHeight(const QString &family, int height, int weight = 400);

// The font of controls: "Arial", height 16.
QFont DialogFont();

} // namespace tonewright
