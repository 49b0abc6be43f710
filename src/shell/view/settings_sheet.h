// The settings: a sheet of two pages over the settings.
#pragma once

#include "shell/view/setting_controls.h"

class QWidget;

namespace tonewright {

// Shows the settings over `window` and returns when the sheet is closed. OK stores what stands on
// the pages that were looked at; Cancel stores nothing. SetupPageIndex, which gives the page that
// the sheet opens on, follows the page that is shown, whichever way the sheet is closed. What the
// settings change elsewhere is the caller's business (shell/settings_flow.h).
void SetupShow(QWidget *window);

} // namespace tonewright
