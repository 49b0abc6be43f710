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

WrappedText::WrappedText(QWidget *parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
}

int WrappedText::heightForWidth(int width) const {
    if (text().isEmpty()) {
        return 0;
    }
    QTextLayout layout;
    return static_cast<int>(LayOut(layout, text(), font(), std::max(1, width), alignment()));
}

void WrappedText::paintEvent(QPaintEvent *) {
    QTextLayout layout;
    const double height = LayOut(layout, text(), font(), std::max(1, width()), alignment());
    double top = 0;
    if (alignment() & Qt::AlignVCenter) {
        top = std::max(0.0, std::floor((this->height() - height) / 2));
    } else if (alignment() & Qt::AlignBottom) {
        top = std::max(0.0, this->height() - height);
    }
    QPainter painter(this);
    painter.setPen(
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole()));
    layout.draw(&painter, {0, top});
}

} // namespace tonewright
