// Fonts, texts and rules of a printed page.
#include "database/view/print_painter.h"

#include "common/view/fonts.h"
#include "common/view/text_line.h"
#include "core/dispatch.h"

#include <algorithm>
#include <vector>

#include <QBuffer>
#include <QFontMetrics>
#include <QPainter>
#include <QPdfWriter>

namespace tonewright {
namespace {

constexpr int PdfUnitsPerInch = 1200; // as of a printer that writes a file

QFont FontOf(const FontDescription &font) {
    return FontOfHeight(QString::fromStdString(font.family), font.height, font.weight);
}

Qt::Alignment AlignmentOf(TextSide side) {
    switch (side) {
    case TextSide::Left:
        return Qt::AlignLeft;
    case TextSide::Right:
        return Qt::AlignRight;
    case TextSide::Centre:
        return Qt::AlignHCenter;
    }
    return {};
}

void DrawTexts(QPainter &painter, const PrintedPage &page) {
    std::vector<QFont> fonts;
    for (const FontDescription &font : page.fonts) {
        fonts.push_back(FontOf(font));
    }
    const QFont *present = nullptr;
    for (const PageText &text : page.texts) {
        if (present != &fonts[text.font]) {
            present = &fonts[text.font];
            painter.setFont(*present);
        }
        const Rectangle &box = text.box;
        DrawTextLine(painter, QRect(box.left, box.top, box.right - box.left, box.bottom - box.top),
                     QString::fromStdString(text.text), AlignmentOf(text.side));
    }
}

void DrawPage(QPainter &painter, const PrintedPage &page) {
    painter.setPen(Qt::black);
    DrawTexts(painter, page);
    for (const PageRule &rule : page.rules) {
        painter.fillRect(rule.left, rule.y - rule.width / 2, rule.right - rule.left,
                         std::max(1, rule.width), Qt::black);
    }
}

} // namespace

PrintDevice DeviceOn(QPagedPaintDevice &paper, QPainter &painter) {
    return {.width = paper.width(),
            .height = paper.height(),
            .LineHeight =
                [](const FontDescription &font) {
                    const QFontMetrics metrics(FontOf(font));
                    return metrics.ascent() + metrics.descent();
                },
            .StartDocument =
                [&] {
                    if (!painter.begin(&paper)) {
                        return false;
                    }
                    painter.setRenderHint(QPainter::LosslessImageRendering);
                    return true;
                },
            .NextPage = [&] { return paper.newPage(); },
            .EndDocument = [&] { painter.end(); },
            .DrawPage = [&](const PrintedPage &page) { DrawPage(painter, page); },
            .DrawVoice = [&](const VoiceObject &voice,
                             const PrintCell &cell) { PrintVoiceObject(painter, voice, cell); }};
}

QByteArray PrintToPdf(QPageSize::PageSizeId paper, const QString &title,
                      const std::function<int(const PrintDevice &device)> &report) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&file);
        writer.setResolution(PdfUnitsPerInch);
        writer.setPageSize(QPageSize(paper));
        writer.setTitle(title);
        writer.setCreator(QStringLiteral("Tonewright"));
        QPainter painter;
        PrintDevice device = DeviceOn(writer, painter);
        device.isFile = true;
        if (report(device) == 0) {
            return {};
        }
    }
    return file.data();
}

} // namespace tonewright
