// What the program's boxes share: the picture at the top and the row of buttons.
#pragma once

#include "common/reference_topic.h"

class QDialog;
class QWidget;

namespace tonewright {

// Sets up the controls that every box has under the same numbers, after those of its form are made:
// 10, where there is one, shows the program's picture; 1, which has the focus, accepts the box; 2,
// where there is one, rejects it; 9 opens the help page of `helpTopic`, and so does F1. Return in a
// check box is the box's.
void SetUpBoxControls(QDialog &box, ReferenceTopic helpTopic);

// Return in a check box or a closed list belongs to what is around it, also on desktops where it
// would change the one or open the other.
void LeaveReturnToBox(QWidget *control);

} // namespace tonewright
