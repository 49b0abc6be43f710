#include "common/tip_step.h"

namespace tonewright {

TipStep TipStepOf(const TipEvent &event, int width, int height, bool tipShows) {
    const PicturePoint cursor = event.cursor;
    const bool isInside = cursor.x >= 0 && cursor.y >= 0 && cursor.x < width && cursor.y < height;
    if (!event.isMove || !isInside || event.leftButtonDown) {
        return TipStep::Hide;
    }
    return tipShows ? TipStep::None : TipStep::StartTimer;
}

bool IsStrictlyInside(PicturePoint cursor, int width, int height) {
    return cursor.x > 0 && cursor.y > 0 && cursor.x < width - 1 && cursor.y < height - 1;
}

} // namespace tonewright
