// The box in which a theme is chosen.
#pragma once

#include <string>

class QWidget;

namespace tonewright {

// Shows the themes of both folders, each with its preview, and lets the user choose one. True when
// one was chosen; `theme`, the name in the settings of the one that is selected first, is its name
// then. A theme without a preview is not shown.
bool SelectThemeBox(QWidget *owner, std::string &theme);

} // namespace tonewright
