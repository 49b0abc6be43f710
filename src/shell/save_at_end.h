// What the program writes by itself when it ends. There is no window any more that could show what
// went wrong: that goes to standard error.
#pragma once

namespace tonewright {

void SaveSettings();
void SaveHistory();
// Both, but for settings that stand in their file already: whoever asks again and again leaves the
// versions before them as they are.
void SaveWhatChanged();

} // namespace tonewright
