// Paints a DX7 voice as its place, its name and the picture of its algorithm.
#include "drivers/dx7/view/voice_view.h"

#include "common/view/fonts.h"
#include "common/view/strokes.h"
#include "common/view/system_colours.h"
#include "common/view/text_line.h"
#include "drivers/dx7/view/algorithm_view.h"
#include "drivers/dx7/voice_codec.h"

#include <algorithm>
#include <optional>

#include <QPainter>

namespace tonewright {

namespace {

// What is shown of a voice besides its place.
struct VoiceFace {
    QString name;
    int algorithm = 0;
};

// Nothing for a block that holds less than a voice.
std::optional<VoiceFace> FaceOf(const VoiceObject &voice) {
    const std::optional<VoicePayload> parts = PayloadOf(voice);
    if (!parts || parts->payload.size() < Dx7VoiceSize) {
        return std::nullopt;
    }
    const std::uint8_t *bytes = parts->payload.data();
    return VoiceFace{.name = QString::fromLatin1(Dx7NameText(bytes + Dx7Voice::name)),
                     .algorithm = bytes[Dx7Voice::algorithm]};
}

QString PlaceText(int index) {
    return QStringLiteral("Voice %1").arg(index + 1);
}

void WriteLine(QPainter &painter, const Rectangle &box, const QString &text) {
    DrawTextLine(painter, QRect(box.left, box.top, box.right - box.left, box.bottom - box.top),
                 text);
}

void SelectFont(QPainter &painter, const FontDescription &font) {
    if (!font.family.empty()) {
        painter.setFont(
            FontOfHeight(QString::fromStdString(font.family), font.height, font.weight));
    }
}

int PerMille(int length, int share) {
    return length * share / 1000;
}

int PerMilleAtLeastOne(int length, int share) {
    return std::max(1, PerMille(length, share));
}

} // namespace

int Dx7DrawVoiceItem(const DrawItem &item, const ItemFonts &fonts, const VoiceObject &voice,
                     int /*rowIndex*/) {
    const std::optional<VoiceFace> face = FaceOf(voice);
    if (!face) {
        return 1;
    }
    QPainter &painter = *item.painter;
    const Rectangle &area = item.rectangle;
    painter.save();

    SelectFont(painter, fonts.label);
    WriteLine(
        painter,
        {.left = area.left + 4, .top = area.top + 2, .right = area.right, .bottom = area.top + 16},
        PlaceText(item.itemIndex));

    SelectFont(painter, fonts.title);
    WriteLine(painter,
              {.left = area.left + 16,
               .top = area.bottom - 4 - 28,
               .right = area.left + 16 + 260,
               .bottom = area.bottom - 4},
              face->name);

    const QColor ink =
        item.selected ? SystemColourOf(SystemColour::HighlightText) : QColor(Qt::black);
    const QColor background =
        item.selected ? SystemColourOf(SystemColour::Highlight) : QColor(Qt::white);
    DrawDx7Algorithm(painter,
                     {.left = area.left + 280,
                      .top = area.top + 4,
                      .right = area.right - 24,
                      .bottom = area.bottom - 4},
                     face->algorithm, ink, background, 2, ShowAlgorithmNumber);
    painter.restore();
    return 1;
}

int Dx7PrintVoice(QPainter &painter, const VoiceObject &voice, const PrintCell &cell) {
    const std::optional<VoiceFace> face = FaceOf(voice);
    if (!face) {
        return 1;
    }
    const int columnWidth = cell.pageWidth / 2;
    const int rowHeight = cell.pageHeight / std::max(1, cell.voicesOnPage / 2);
    const int inset = PerMilleAtLeastOne(cell.pageWidth, 10);
    const int cellLeft = cell.left + cell.index % 2 * columnWidth;
    const int cellTop = cell.top + cell.index / 2 * rowHeight;
    const Rectangle area = {.left = cellLeft + inset,
                            .top = cellTop + inset,
                            .right = cellLeft + columnWidth - inset,
                            .bottom = cellTop + rowHeight - inset};
    painter.save();

    const int frame = PerMille(cell.pageWidth, 2);
    const double offset = StrokeOffset(frame);
    const int radius = PerMilleAtLeastOne(columnWidth, 20);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::black, frame));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(area.left + offset, area.top + offset, area.right - area.left,
                                   area.bottom - area.top)
                                .normalized(),
                            radius, radius);
    painter.restore();

    const int margin = PerMilleAtLeastOne(columnWidth, 3);
    const int textLeft = area.left + PerMille(columnWidth, 20);
    const int textRight = textLeft + PerMille(area.right - area.left, 550);
    const Rectangle nameBox = {.left = textLeft,
                               .top = area.bottom - 3 * margin - cell.titleFontHeight,
                               .right = textRight,
                               .bottom = area.bottom - 3 * margin};
    painter.setFont(FontOfHeight(QStringLiteral("TIMES NEW ROMAN"), cell.titleFontHeight, 700));
    WriteLine(painter, nameBox, face->name);

    painter.setFont(FontOfHeight(QStringLiteral("ARIAL"), cell.labelFontHeight, 500));
    WriteLine(
        painter,
        {.left = textLeft, .top = area.top + 3 * margin, .right = textRight, .bottom = nameBox.top},
        PlaceText(cell.index));

    const int weight = PerMilleAtLeastOne(columnWidth, 5);
    DrawDx7Algorithm(painter,
                     {.left = textRight,
                      .top = area.top + 3 * weight,
                      .right = area.right - margin,
                      .bottom = area.bottom - 3 * weight},
                     face->algorithm, Qt::black, Qt::white, weight - 2, ShowAlgorithmNumber);
    painter.restore();
    return 1;
}

} // namespace tonewright
