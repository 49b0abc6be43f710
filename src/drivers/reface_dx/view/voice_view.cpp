// Paints a reface DX voice as its place, its name and the picture of its algorithm.
#include "drivers/reface_dx/view/voice_view.h"

#include "drivers/reface_dx/view/algorithm_view.h"
#include "drivers/reface_dx/voice_codec.h"
#include "drivers/view/voice_cell.h"

#include <optional>

namespace tonewright {

namespace {

// What is shown of the voice at place `index`; nothing for a block that holds less than a voice.
std::optional<VoiceFace> FaceOf(const VoiceObject &voice, int index) {
    const auto common = RefaceCommonOf(voice);
    if (!common) {
        return std::nullopt;
    }
    return VoiceFace{
        .texts = {.place = QString::fromStdString(RefacePlaceText(index)),
                  .name = QString::fromLatin1(RefaceNameText(&(*common)[RefaceVoice::name]))},
        .algorithm = (*common)[RefaceVoice::algorithm]};
}

} // namespace

int RefaceDrawVoiceItem(const DrawItem &item, const ItemFonts &fonts, const VoiceObject &voice,
                        int /*rowIndex*/) {
    const std::optional<VoiceFace> face = FaceOf(voice, item.itemIndex);
    if (face) {
        const ItemPicture picture = PaintItemTexts(item, fonts, face->texts);
        DrawRefaceAlgorithmSmooth(*item.painter, picture.area, face->algorithm, picture.ink,
                                  picture.paper, 2, true);
    }
    return 1;
}

int RefacePrintVoice(QPainter &painter, const VoiceObject &voice, const PrintCell &cell) {
    const std::optional<VoiceFace> face = FaceOf(voice, cell.index);
    if (!face) {
        return 1;
    }
    PrintedCell printed = MeasurePrintedCell(cell, 600);
    printed.radius /= 2; // so that the paper of the picture does not reach into the corners
    PaintPrintedTexts(painter, cell, printed, face->texts);
    DrawRefaceAlgorithmSmooth(painter,
                              {.left = printed.textRight,
                               .top = printed.area.top + 3 * printed.margin,
                               .right = printed.area.right - printed.margin,
                               .bottom = printed.area.bottom - 3 * printed.margin},
                              face->algorithm, Qt::black, Qt::white, printed.margin, true);
    return 1;
}

} // namespace tonewright
