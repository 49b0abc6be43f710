// The pages of the reface DX's editor and the pictures of algorithms on them.
#include "drivers/reface_dx/view/voice_editor.h"

#include "common/view/system_colours.h"
#include "drivers/reface_dx/view/algorithm_view.h"
#include "drivers/reface_dx/voice_codec.h"
#include "drivers/reface_dx/voice_parameters.h"
#include "drivers/view/voice_page.h"
#include "drivers/view/voice_sheet_box.h"
#include "ui_EditDXRefaceVoiceEdit01.h"
#include "ui_EditDXRefaceVoiceEdit02.h"

namespace tonewright {
namespace {

void DrawItem(QPainter &painter, const Rectangle &area, int algorithm, bool selected) {
    const AlgorithmColours colours = AlgorithmItemColours(selected);
    DrawRefaceAlgorithmSmooth(painter, area, algorithm, colours.ink, colours.paper,
                              selected ? 2 : 1, false);
}

void DrawPicture(QPainter &painter, const Rectangle &area, int algorithm) {
    const Rectangle inner = {.left = area.left + 2,
                             .top = area.top + 2,
                             .right = area.right - 2,
                             .bottom = area.bottom - 2};
    const AlgorithmColours colours = AlgorithmPictureColours();
    DrawRefaceAlgorithmSmooth(painter, inner, algorithm, colours.ink, colours.paper, 1, true);
}

const VoicePagesLook Look = {
    .family = RefaceParameters,
    .makeVoicePage = [](QWidget *page) { Ui::EditDXRefaceVoiceEdit01().setupUi(page); },
    .makeOperatorPage = [](QWidget *page) { Ui::EditDXRefaceVoiceEdit02().setupUi(page); },
    .algorithms = {.itemHeight = 36,
                   .disabledText = SystemColour::ButtonShadow,
                   .drawItem = DrawItem,
                   .drawPicture = DrawPicture},
};

} // namespace

int RefaceEditVoice(QWidget *window, VoiceObject &voice, MidiPorts ports, int index) {
    return ShowVoiceSheet(window, Look, RefaceDriverId, voice, ports, index);
}

} // namespace tonewright
