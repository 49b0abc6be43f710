// What every theme knows of the tool bar: its pictures, and the bar as a preview.
#pragma once

#include "shared/look.h"

namespace tonewright::theme {

// The name of the picture of a tool, as its SVG file is called; null for a number that is none.
const char *ToolPictureName(int picture);

// The left end of the tool bar as TheLook draws it on the application's palette, at its true size,
// so that themes can be told apart by their measures too.
QImage PreviewOfToolBar(double ratio);

} // namespace tonewright::theme
