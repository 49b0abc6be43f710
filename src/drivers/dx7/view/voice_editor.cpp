// The pages of the DX7's editor and the pictures of algorithms on them.
#include "drivers/dx7/view/voice_editor.h"

#include "common/view/system_colours.h"
#include "drivers/dx7/view/algorithm_view.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/dx7/voice_parameters.h"
#include "drivers/view/voice_page.h"
#include "drivers/view/voice_sheet_box.h"
#include "ui_EditDX7VoiceEdit01.h"
#include "ui_EditDX7VoiceEdit02.h"

namespace tonewright {
namespace {

Rectangle Inset(const Rectangle &area, int across, int down) {
    return {.left = area.left + across,
            .top = area.top + down,
            .right = area.right - across,
            .bottom = area.bottom - down};
}

void DrawItem(QPainter &painter, const Rectangle &area, int algorithm, bool selected) {
    const AlgorithmColours colours = AlgorithmItemColours(selected);
    DrawKeptDx7Algorithm(painter, Inset(area, 0, 4), algorithm, colours.ink, colours.paper, 2, 0);
}

void DrawPicture(QPainter &painter, const Rectangle &area, int algorithm) {
    const AlgorithmColours colours = AlgorithmPictureColours();
    DrawKeptDx7Algorithm(painter, Inset(area, 2, 10), algorithm, colours.ink, colours.paper, 1,
                         ShowAlgorithmNumber);
}

const VoicePagesLook Look = {
    .family = Dx7Parameters,
    .makeVoicePage = [](QWidget *page) { Ui::EditDX7VoiceEdit01().setupUi(page); },
    .makeOperatorPage = [](QWidget *page) { Ui::EditDX7VoiceEdit02().setupUi(page); },
    .algorithms = {.itemHeight = 52,
                   .disabledText = SystemColour::GrayText,
                   .drawItem = DrawItem,
                   .drawPicture = DrawPicture},
};

} // namespace

int Dx7EditVoice(QWidget *window, VoiceObject &voice, MidiPorts ports, int index) {
    return ShowVoiceSheet(window, Look, Dx7DriverId, voice, ports, index);
}

} // namespace tonewright
