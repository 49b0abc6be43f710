// The program's own pictures, known by their numbers; what a theme draws is common/view/theme.
#pragma once

#include <QPixmap>
#include <QSize>

#include <cstdint>

namespace tonewright {

// A numbered picture in a size of logical pixels, its proportions kept, on a transparent ground. A
// number without a picture gives a grey tile. ApplicationPicture is the program's icon.
QPixmap PictureOf(std::uint32_t number, QSize size, double devicePixelRatio = 1.0);

// The size in which a numbered picture was drawn; empty when there is none.
QSize PictureSize(std::uint32_t number);

} // namespace tonewright
