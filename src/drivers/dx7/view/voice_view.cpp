// Paints a DX7 voice as its place, its name and the picture of its algorithm.
#include "drivers/dx7/view/voice_view.h"

#include "drivers/dx7/view/algorithm_view.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/view/voice_cell.h"

#include <optional>

namespace tonewright {

namespace {

// What is shown of the voice at place `index`; nothing for a block that holds less than a voice.
std::optional<VoiceFace> FaceOf(const VoiceObject &voice, int index) {
    const std::optional<VoicePayload> parts = PayloadOf(voice);
    if (!parts || parts->payload.size() < Dx7VoiceSize) {
        return std::nullopt;
    }
    const std::uint8_t *bytes = parts->payload.data();
    return VoiceFace{.texts = {.place = QStringLiteral("Voice %1").arg(index + 1),
                               .name = QString::fromLatin1(Dx7NameText(bytes + Dx7Voice::name))},
                     .algorithm = bytes[Dx7Voice::algorithm]};
}

} // namespace

int Dx7DrawVoiceItem(const DrawItem &item, const ItemFonts &fonts, const VoiceObject &voice,
                     int /*rowIndex*/) {
    const std::optional<VoiceFace> face = FaceOf(voice, item.itemIndex);
    if (face) {
        const ItemPicture picture = PaintItemTexts(item, fonts, face->texts);
        DrawKeptDx7Algorithm(*item.painter, picture.area, face->algorithm, picture.ink,
                             picture.paper, 2, ShowAlgorithmNumber);
    }
    return 1;
}

int Dx7PrintVoice(QPainter &painter, const VoiceObject &voice, const PrintCell &cell) {
    const std::optional<VoiceFace> face = FaceOf(voice, cell.index);
    if (!face) {
        return 1;
    }
    const PrintedCell printed = MeasurePrintedCell(cell, 550);
    PaintPrintedTexts(painter, cell, printed, face->texts);
    const int weight = PerMilleAtLeastOne(printed.columnWidth, 5);
    DrawDx7Algorithm(painter,
                     {.left = printed.textRight,
                      .top = printed.area.top + 3 * weight,
                      .right = printed.area.right - printed.margin,
                      .bottom = printed.area.bottom - 3 * weight},
                     face->algorithm, Qt::black, Qt::white, weight - 2, ShowAlgorithmNumber);
    return 1;
}

} // namespace tonewright
