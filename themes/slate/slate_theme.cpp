// The themes "Slate Medium" and "Slate Compact": line drawings with flat colours on a bar of slate,
// which take ink and ground from the palette. SLATE_COMPACT makes the compact one.
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

#if defined(SLATE_COMPACT)
constexpr std::span<const MetricRow> Metrics = CompactMetrics;
constexpr int ToolPictureSize = CompactToolPicture;
constexpr double ToolRadius = 4;
#else
constexpr std::span<const MetricRow> Metrics = MediumMetrics;
constexpr int ToolPictureSize = MediumToolPicture;
constexpr double ToolRadius = 6;
#endif
constexpr int FocusWidth = 2;

constexpr QColor Slate(0x5b, 0x74, 0x8a);

// The colours of a tool bar on a palette, and of the pictures on it.
struct Colours {
    QColor top, bottom, edge;              // of the bar
    QColor hover, pressed;                 // of the face of a button
    QColor ink, paper, tone, accent, warm; // of the pictures
};

Colours ColoursOf(const QPalette &palette) {
    const QColor window = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::WindowText);
    if (window.lightness() < text.lightness()) {
        const QColor top = Mixed(window, Slate, 0.3);
        return {.top = top,
                .bottom = Mixed(window, Slate, 0.18),
                .edge = Mixed(window, Qt::black, 0.45),
                .hover = Mixed(top, Slate, 0.45),
                .pressed = Mixed(top, Qt::black, 0.35),
                .ink = Mixed(text, Slate, 0.15),
                .paper = Mixed(window, Slate, 0.65),
                .tone = Mixed(window, Slate, 0.4),
                .accent = QColor(0x22, 0x9c, 0x90),
                .warm = QColor(0xd9, 0x92, 0x2c)};
    }
    const QColor bottom = Mixed(window, Slate, 0.26);
    return {.top = Mixed(window, Slate, 0.12),
            .bottom = bottom,
            .edge = Mixed(window, Slate, 0.75),
            .hover = Mixed(bottom, Qt::white, 0.75),
            .pressed = Mixed(bottom, Slate, 0.35),
            .ink = Mixed(text, Slate, 0.35),
            .paper = Qt::white,
            .tone = Mixed(Qt::white, Slate, 0.45),
            .accent = QColor(0x35, 0xb5, 0xa6),
            .warm = QColor(0xf0, 0xae, 0x48)};
}

QColor GroundOf(const Colours &colours) {
    return Mixed(colours.top, colours.bottom, 0.5);
}

// The colours as those of a button that is disabled: grey, and close to the bar.
Colours Dimmed(const Colours &colours) {
    const QColor ground = GroundOf(colours);
    Colours dimmed = colours;
    dimmed.ink = Mixed(colours.ink, ground, 0.55);
    for (QColor *fill : {&dimmed.paper, &dimmed.tone, &dimmed.accent, &dimmed.warm}) {
        const int grey = qGray(fill->rgb());
        *fill = Mixed(QColor(grey, grey, grey), ground, 0.75);
    }
    return dimmed;
}

// A picture of a tool in these colours. The files are drawn in colours of their own, one for each.
QByteArray Coloured(const QByteArray &svg, const Colours &colours) {
    struct ColourRow {
        const char *drawn;
        QColor wanted;
    };
    const ColourRow rows[] = {{"#24323f", colours.ink},
                              {"#ffffff", colours.paper},
                              {"#b4c3d0", colours.tone},
                              {"#1f9e91", colours.accent},
                              {"#e8a33a", colours.warm}};
    QByteArray coloured = svg;
    for (qsizetype place = coloured.indexOf('#'); place >= 0;
         place = coloured.indexOf('#', place + 1)) {
        for (const ColourRow &row : rows) {
            if (coloured.sliced(place).startsWith(row.drawn)) {
                coloured.replace(place, qstrlen(row.drawn), row.wanted.name().toLatin1());
                break;
            }
        }
    }
    return coloured;
}

// A flat face, lighter than the bar under the mouse and darker while it is pressed, and the picture
// in its middle.
bool DrawButton(QPainter &painter, const QPalette &palette, const QRect &rectangle, int picture,
                unsigned state) {
    const char *name = ToolPictureName(picture);
    if (!name) {
        return false;
    }
    const Colours colours = ColoursOf(palette);
    const bool disabled = state & THEME_STATE_DISABLED;
    const bool pressed = (state & THEME_STATE_PRESSED) && !disabled;
    const bool hover = (state & THEME_STATE_HOVER) && !disabled;
    painter.setRenderHint(QPainter::Antialiasing);
    if (pressed || hover) {
        painter.setPen(Mixed(GroundOf(colours), Slate, pressed ? 0.9 : 0.6));
        painter.setBrush(pressed ? colours.pressed : colours.hover);
        painter.drawPath(RoundedOutline(rectangle, ToolRadius));
    }
    if ((state & (THEME_STATE_FOCUS | THEME_STATE_DEFAULT)) && !disabled) {
        painter.setPen(QPen(palette.color(QPalette::Highlight), FocusWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(RoundedOutline(rectangle, ToolRadius, FocusWidth));
    }
    const QByteArray svg = Coloured(SvgOf(Pictures, name), disabled ? Dimmed(colours) : colours);
    DrawInMiddle(painter, pressed ? rectangle.translated(0, 1) : rectangle,
                 PixmapFor(painter, svg, {ToolPictureSize, ToolPictureSize}));
    return true;
}

void DrawBackground(QPainter &painter, const QPalette &palette, const QRect &rectangle) {
    const Colours colours = ColoursOf(palette);
    QLinearGradient shade(rectangle.topLeft(), rectangle.bottomLeft());
    shade.setColorAt(0, colours.top);
    shade.setColorAt(1, colours.bottom);
    painter.fillRect(rectangle, shade);
    painter.fillRect(QRect(rectangle.left(), rectangle.bottom(), rectangle.width(), 1),
                     colours.edge);
}

} // namespace

constexpr Look TheLook{
    .metrics = Metrics,
    .drawButton = DrawButton,
    .drawBackground = DrawBackground,
    .pictures = Pictures,
};

} // namespace tonewright::theme
