// The decisions of careful mode about the edits of a voice.
#include "drivers/careful_editing.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "common/strings.h"

namespace tonewright {
namespace {

enum Text : unsigned {
    EditsNotKept = 20050,
};

bool IsOn() {
    return CarefulMode != 0;
}

} // namespace

bool CarefulAcceptsReturn() {
    return IsOn();
}

bool CarefulMayDropEdits(QWidget *window, const std::string &name, bool changed) {
    return !IsOn() || !changed ||
           AskWithButtons(window, LoadProgramString(EditsNotKept, {name}), "Go on editing",
                          "Drop changes", nullptr) == ResultNo; // Return and Esc go on
}

} // namespace tonewright
