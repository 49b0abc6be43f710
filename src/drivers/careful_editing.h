// What careful mode (the setting CarefulMode) decides in the editor of a voice, so that no edit is
// lost without words. Each decision is one function, which the sheet asks at one place; while the
// mode is off it answers that the sheet goes its plain way.
#pragma once

#include <string>

class QWidget;

namespace tonewright {

// Return in a control of a page: whether the sheet is accepted as by OK itself.
bool CarefulAcceptsReturn();

// Cancel: false when the user would rather go on editing. `name`: the voice's, UTF-8; `changed`:
// whether the user has changed something that OK would keep.
bool CarefulMayDropEdits(QWidget *window, const std::string &name, bool changed);

} // namespace tonewright
