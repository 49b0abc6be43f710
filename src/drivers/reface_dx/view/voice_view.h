// Paints a reface DX voice: one item of the main list, one cell of a printed page.
#pragma once

#include "core/synth_driver.h"

namespace tonewright {

// Operations of the reface DX row; see core/synth_driver.h. Both return 1, and paint nothing for a
// block without a whole common block.
int RefaceDrawVoiceItem(const DrawItem &item, const ItemFonts &fonts, const VoiceObject &voice,
                        int rowIndex);
int RefacePrintVoice(QPainter &painter, const VoiceObject &voice, const PrintCell &cell);

} // namespace tonewright
