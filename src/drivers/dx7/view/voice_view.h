// Paints a DX7 voice: one item of the main list, one cell of a printed page.
#pragma once

#include "core/synth_driver.h"

namespace tonewright {

// Operations of the DX7 row; see core/synth_driver.h. Both return 1, and paint nothing for a block
// whose payload is shorter than a DX7 voice.
int Dx7DrawVoiceItem(const DrawItem &item, const ItemFonts &fonts, const VoiceObject &voice,
                     int rowIndex);
int Dx7PrintVoice(QPainter &painter, const VoiceObject &voice, const PrintCell &cell);

} // namespace tonewright
