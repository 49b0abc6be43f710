// Lays out plain text in lines of a given width.
#include "common/view/wrapped_text.h"

#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace tonewright {
namespace {

// Breaks the text into lines; the height of them all, in pixels.
double LayOut(QTextLayout &layout, const QString &text, const QFont &font, int width,
              Qt::Alignment alignment) {
    QString lines = text;
    lines.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    lines.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
    // A path may break behind its separators.
    constexpr QChar zeroWidthSpace(0x200B);
    for (const QChar separator : {QLatin1Char('/'), QLatin1Char('\\')}) {
        lines.replace(separator, QString(separator) + zeroWidthSpace);
    }
    QTextOption option(alignment & Qt::AlignHorizontal_Mask);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setText(lines);
    layout.setFont(font);
    layout.setTextOption(option);
    double height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, height});
        height += std::ceil(line.height());
    }
    layout.endLayout();
    return height;
}

} // namespace

QSize TextSize(const QString &text, const QFont &font) {
    QTextLayout layout;
    const double height = LayOut(layout, text, font, QWIDGETSIZE_MAX, Qt::AlignLeft);
    double width = 0;
    for (int line = 0; line < layout.lineCount(); ++line) {
        width = std::max(width, layout.lineAt(line).horizontalAdvance());
    }
    return {qRound(width), static_cast<int>(height)};
}

void DrawWrappedText(QPainter &painter, const QRect &box, const QString &text,
                     Qt::Alignment alignment) {
    QTextLayout layout;
    LayOut(layout, text, painter.font(), std::max(1, box.width()), alignment);
    layout.draw(&painter, box.topLeft());
}

WrappedText::WrappedText(QWidget *parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

int WrappedText::heightForWidth(int width) const {
    const QMargins margins = contentsMargins();
    const int lineWidth = std::max(1, width - margins.left() - margins.right());
    QTextLayout layout;
    const double height =
        text().isEmpty() ? 0 : LayOut(layout, text(), font(), lineWidth, alignment());
    return static_cast<int>(height) + margins.top() + margins.bottom();
}

void WrappedText::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setPen(
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole()));
    DrawWrappedText(painter, contentsRect(), text(), alignment());
}

} // namespace tonewright
