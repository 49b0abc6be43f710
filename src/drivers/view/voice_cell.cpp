// Paints what the items of the main list and the cells of a printed page share.
#include "drivers/view/voice_cell.h"

#include "common/view/fonts.h"
#include "common/view/strokes.h"
#include "common/view/system_colours.h"
#include "common/view/text_line.h"

#include <algorithm>
#include <cstdint>

#include <QPainter>

namespace tonewright {

namespace {

void SelectFont(QPainter &painter, const FontDescription &font) {
    if (!font.family.empty()) {
        painter.setFont(
            FontOfHeight(QString::fromStdString(font.family), font.height, font.weight));
    }
}

void WriteLine(QPainter &painter, const Rectangle &box, const QString &text) {
    DrawTextLine(painter, QRect(box.left, box.top, box.right - box.left, box.bottom - box.top),
                 text);
}

int PerMille(int length, int share) {
    return static_cast<int>(std::int64_t{length} * share / 1000);
}

} // namespace

int PerMilleAtLeastOne(int length, int share) {
    return std::max(1, PerMille(length, share));
}

ItemPicture PaintItemTexts(const DrawItem &item, const ItemFonts &fonts, const VoiceTexts &texts) {
    QPainter &painter = *item.painter;
    const Rectangle &area = item.rectangle;
    painter.save();
    SelectFont(painter, fonts.label);
    WriteLine(
        painter,
        {.left = area.left + 4, .top = area.top + 2, .right = area.right, .bottom = area.top + 16},
        texts.place);
    SelectFont(painter, fonts.title);
    WriteLine(painter,
              {.left = area.left + 16,
               .top = area.bottom - 4 - 28,
               .right = area.left + 16 + 260,
               .bottom = area.bottom - 4},
              texts.name);
    painter.restore();

    return {.area = {.left = area.left + 280,
                     .top = area.top + 4,
                     .right = area.right - 24,
                     .bottom = area.bottom - 4},
            .ink = item.selected ? SystemColourOf(SystemColour::HighlightText) : QColor(Qt::black),
            .paper = item.selected ? SystemColourOf(SystemColour::Highlight) : QColor(Qt::white)};
}

PrintedCell MeasurePrintedCell(const PrintCell &cell, int textShare) {
    const int columnWidth = cell.pageWidth / 2;
    const int rowHeight = cell.pageHeight / std::max(1, cell.voicesOnPage / 2);
    const int inset = PerMilleAtLeastOne(cell.pageWidth, 10);
    const int left = cell.left + cell.index % 2 * columnWidth;
    const int top = cell.top + cell.index / 2 * rowHeight;
    PrintedCell printed;
    printed.area = {.left = left + inset,
                    .top = top + inset,
                    .right = left + columnWidth - inset,
                    .bottom = top + rowHeight - inset};
    printed.columnWidth = columnWidth;
    printed.radius = PerMilleAtLeastOne(columnWidth, 20);
    printed.margin = PerMilleAtLeastOne(columnWidth, 3);
    printed.textLeft = printed.area.left + PerMille(columnWidth, 20);
    printed.textRight =
        printed.textLeft + PerMille(printed.area.right - printed.area.left, textShare);
    return printed;
}

void PaintPrintedTexts(QPainter &painter, const PrintCell &cell, const PrintedCell &printed,
                       const VoiceTexts &texts) {
    const Rectangle &area = printed.area;
    const int frame = PerMille(cell.pageWidth, 2);
    const double offset = StrokeOffset(frame);
    painter.save();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::black, frame));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(area.left + offset, area.top + offset, area.right - area.left,
                                   area.bottom - area.top)
                                .normalized(),
                            printed.radius, printed.radius);
    painter.restore();

    const Rectangle nameBox = {.left = printed.textLeft,
                               .top = area.bottom - 3 * printed.margin - cell.titleFontHeight,
                               .right = printed.textRight,
                               .bottom = area.bottom - 3 * printed.margin};
    painter.setFont(FontOfHeight(QStringLiteral("TIMES NEW ROMAN"), cell.titleFontHeight, 700));
    WriteLine(painter, nameBox, texts.name);
    painter.setFont(FontOfHeight(QStringLiteral("ARIAL"), cell.labelFontHeight, 500));
    WriteLine(painter,
              {.left = printed.textLeft,
               .top = area.top + 3 * printed.margin,
               .right = printed.textRight,
               .bottom = nameBox.top},
              texts.place);
    painter.restore();
}

} // namespace tonewright
