// Reordering the voice list by dragging: what a press and a release do.
#pragma once

namespace tonewright {

// The voice of `pressedRow` goes to the row in front of `targetRow`, with an undo level. So a voice
// that is dragged downward lands above the target row, and the selection, which goes to the
// target's index, then rests on the voice below it. Nothing happens unless both rows exist and
// differ.
void DropVoiceAt(int pressedRow, int targetRow);

} // namespace tonewright
