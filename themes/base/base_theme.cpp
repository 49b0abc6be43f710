// The default theme: coloured pictures on a bar shaded from the palette.
#include "shared/measures.h"
#include "shared/shapes.h"
#include "shared/tool_bar.h"

#include <QLinearGradient>
#include <QPainter>

namespace tonewright::theme {
namespace {

constexpr EmbeddedPicture Pictures[] = {
#include "embedded_pictures.inc"
};

constexpr int ToolPictureSize = MediumToolPicture;
constexpr double ToolRadius = 8;
constexpr double DisabledOpacity = 0.38;

QPixmap GreyPicture(const QPixmap &picture) {
    QImage grey = picture.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < grey.height(); ++y) {
        auto *pixels = reinterpret_cast<QRgb *>(grey.scanLine(y));
        for (int x = 0; x < grey.width(); ++x) {
            const int value = qGray(pixels[x]);
            pixels[x] = qRgba(value, value, value, qRound(qAlpha(pixels[x]) * DisabledOpacity));
        }
    }
    return QPixmap::fromImage(grey);
}

// A face that shows when the mouse is over it or presses it, and the picture in its middle, grey
// while the button is disabled.
bool DrawButton(QPainter &painter, const QPalette &palette, const QRect &rectangle, int picture,
                unsigned state) {
    const char *name = ToolPictureName(picture);
    if (!name) {
        return false;
    }
    const bool disabled = state & THEME_STATE_DISABLED;
    const bool pressed = (state & THEME_STATE_PRESSED) && !disabled;
    const bool hover = (state & THEME_STATE_HOVER) && !disabled;
    const QColor accent = palette.color(QPalette::Highlight);
    painter.setRenderHint(QPainter::Antialiasing);
    if (pressed || hover) {
        const QColor face = palette.color(QPalette::Window);
        painter.setPen(Mixed(face, accent, pressed ? 0.7 : 0.45));
        painter.setBrush(pressed ? Mixed(face, accent, 0.3)
                                 : Mixed(palette.color(QPalette::Light), accent, 0.08));
        painter.drawPath(RoundedOutline(rectangle, ToolRadius));
    }
    if ((state & (THEME_STATE_FOCUS | THEME_STATE_DEFAULT)) && !disabled) {
        painter.setPen(accent);
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(RoundedOutline(rectangle, ToolRadius));
    }
    const QPixmap shown =
        PixmapFor(painter, SvgOf(Pictures, name), {ToolPictureSize, ToolPictureSize});
    DrawInMiddle(painter, pressed ? rectangle.translated(1, 1) : rectangle,
                 disabled ? GreyPicture(shown) : shown);
    return true;
}

void DrawBackground(QPainter &painter, const QPalette &palette, const QRect &rectangle) {
    const QColor face = palette.color(QPalette::Window);
    QLinearGradient shade(rectangle.topLeft(), rectangle.bottomLeft());
    shade.setColorAt(0, Mixed(face, palette.color(QPalette::Light), 0.7));
    shade.setColorAt(1, Mixed(face, palette.color(QPalette::Mid), 0.25));
    painter.fillRect(rectangle, shade);
    painter.fillRect(QRect(rectangle.left(), rectangle.bottom(), rectangle.width(), 1),
                     palette.color(QPalette::Mid));
}

} // namespace

constexpr Look TheLook{
    .metrics = MediumMetrics,
    .drawButton = DrawButton,
    .drawBackground = DrawBackground,
    .pictures = Pictures,
};

} // namespace tonewright::theme
