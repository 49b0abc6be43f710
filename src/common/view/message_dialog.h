// The program's own message dialog: a picture, a text, a column of buttons, and under the text
// check boxes and note lines where they are asked for.
#pragma once

#include "common/desktop.h"

namespace tonewright {

// Shows the dialog of a request and returns when it has ended. `result` becomes ResultYes for
// button 1, ResultNo for button 2, and ResultCancel for button 3, Esc and the close box; button 4
// calls the help handler and ends nothing. The states of the check boxes are written at each
// change. The flags for controls that stand in a template change nothing, since the template has no
// others than the first button, the picture and the text. Needs a QApplication.
void RunMessageDialog(MessageRequest &request);

} // namespace tonewright
