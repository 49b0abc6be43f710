// The pictures of boxes by the numbers of the interface.
#pragma once

#include <QImage>

#include <cstdint>

namespace tonewright::theme {

// The heading of the tip box in the size in which it was drawn, or the picture of a box in the size
// of the metrics, with `ratio` pixels for each device-independent one; a null image for any other
// number. TheLook has their pictures as "tip-heading", "app", "settings-box" and "voice-box".
QImage BoxPicture(std::uint32_t number, double ratio);

} // namespace tonewright::theme
