// Paints tool bar, buttons and pictures out of the palette and the SVG files.
#include "common/view/theme.h"

#include "common/desktop.h"
#include "common/settings.h"

#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmapCache>
#include <QPolygonF>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>

namespace tonewright {
namespace {

struct MetricRow {
    int number;
    int pixels;
};
constexpr MetricRow Metrics[] = {
    {MetricToolBarHeight, 56}, {MetricToolWidth, 48},    {MetricToolHeight, 48},
    {MetricToolGroupGap, 16},  {MetricToolLeft, 8},      {MetricToolTop, 4},
    {MetricToolGap, 4},        {MetricPictureWidth, 96}, {MetricPictureHeight, 96},
};

constexpr int LargestPictureSide = 4096; // pixels
constexpr double ToolRadius = 8;
constexpr double SoftRadius = 5;
constexpr double FlexRadius = 1.5;
constexpr double WedgeCut = 7; // of the corners, along both sides
constexpr double DisabledOpacity = 0.38;
constexpr int PressedOffset = 2; // a caption moves down while its button is pressed

QString PicturePath(std::uint32_t number) {
    return number == ApplicationPicture ? QStringLiteral(":/pictures/app.svg")
                                        : QStringLiteral(":/pictures/%1.svg").arg(number);
}

QColor Mixed(const QColor &first, const QColor &second, double partOfSecond) {
    const auto mix = [&](float a, float b) {
        return static_cast<float>(a + (b - a) * partOfSecond);
    };
    return QColor::fromRgbF(mix(first.redF(), second.redF()), mix(first.greenF(), second.greenF()),
                            mix(first.blueF(), second.blueF()));
}

// A path whose outline runs through the middle of the outermost pixels of a rectangle.
QPainterPath RoundedOutline(const QRect &rectangle, double radius) {
    QPainterPath path;
    path.addRoundedRect(QRectF(rectangle).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    return path;
}

QPixmap GreyPicture(const QPixmap &picture) {
    QImage image = picture.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *pixels = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int grey = qGray(pixels[x]);
            pixels[x] = qRgba(grey, grey, grey, qRound(qAlpha(pixels[x]) * DisabledOpacity));
        }
    }
    QPixmap grey = QPixmap::fromImage(image);
    grey.setDevicePixelRatio(picture.devicePixelRatio());
    return grey;
}

// A tile where a picture is missing.
void DrawMissingPicture(QPainter &painter, const QRect &rectangle) {
    const QPalette palette = QApplication::palette();
    const double radius = std::min(rectangle.width(), rectangle.height()) / 8.0;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette.color(QPalette::Mid));
    painter.setBrush(Mixed(palette.color(QPalette::Window), palette.color(QPalette::Mid), 0.4));
    painter.drawPath(RoundedOutline(rectangle, radius));
}

unsigned StateOf(const QPushButton &button) {
    return (button.isDown() || button.isChecked() ? ButtonPressed : 0) |
           (button.isEnabled() ? 0 : ButtonDisabled) | (button.underMouse() ? ButtonHover : 0) |
           (button.hasFocus() ? ButtonFocus : 0) | (button.isDefault() ? ButtonDefault : 0);
}

struct SoftColours {
    QColor face, edge, light, shade, ink;
};

SoftColours SoftColoursOf(unsigned state, const QPalette &palette) {
    const bool disabled = state & ButtonDisabled;
    const bool pressed = (state & ButtonPressed) && !disabled;
    const bool hover = (state & ButtonHover) && !disabled;
    const QPalette::ColorGroup group = disabled ? QPalette::Disabled : QPalette::Active;
    const QColor button = palette.color(group, QPalette::Button);
    const QColor light = palette.color(QPalette::Active, QPalette::Light);
    const QColor text = palette.color(QPalette::Active, QPalette::ButtonText);
    const QColor accent = palette.color(QPalette::Active, QPalette::Highlight);

    SoftColours colours;
    colours.face = disabled ? button : Mixed(button, light, 0.7);
    colours.edge = Mixed(button, text, disabled ? 0.175 : 0.35);
    colours.light = light;
    colours.shade = Mixed(button, text, disabled ? 0.12 : 0.25);
    colours.ink = palette.color(group, QPalette::ButtonText);
    if (hover) {
        colours.face = Mixed(colours.face, accent, 0.10);
        colours.edge = Mixed(colours.edge, accent, 0.6);
    }
    if (pressed) {
        colours.face = Mixed(button, accent, 0.28);
    }
    if ((state & (ButtonDefault | ButtonFocus)) && !disabled) {
        colours.edge = accent;
    }
    return colours;
}

QPainterPath SoftOutline(const QRect &rectangle, int inset) {
    return RoundedOutline(rectangle.adjusted(inset, inset, -inset, -inset), SoftRadius - inset);
}

QPainterPath FlexOutline(const QRect &rectangle, int inset) {
    return RoundedOutline(rectangle.adjusted(inset, inset, -inset, -inset), FlexRadius);
}

// The corners of the wedge: those of the rectangle, each cut off by a slanting line.
QPolygonF WedgeCorners(const QRect &rectangle, int inset) {
    const QRectF box =
        QRectF(rectangle).adjusted(inset + 0.5, inset + 0.5, -inset - 0.5, -inset - 0.5);
    // Parallel slants keep their distance when the cut shrinks by less than the inset.
    const double cut = std::min(WedgeCut - inset * 0.6, std::min(box.width(), box.height()) / 2);
    return QPolygonF({{box.left() + cut, box.top()},
                      {box.right() - cut, box.top()},
                      {box.right(), box.top() + cut},
                      {box.right(), box.bottom() - cut},
                      {box.right() - cut, box.bottom()},
                      {box.left() + cut, box.bottom()},
                      {box.left(), box.bottom() - cut},
                      {box.left(), box.top() + cut}});
}

QPainterPath WedgeOutline(const QRect &rectangle, int inset) {
    QPainterPath path;
    path.addPolygon(WedgeCorners(rectangle, inset));
    path.closeSubpath();
    return path;
}

// Two frames of one pixel, one inside the other, two pixels in from the edge.
void DrawFlexFrame(QPainter &painter, const QRect &rectangle, const SoftColours &colours,
                   bool pressed) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(pressed ? colours.shade : colours.light);
    painter.drawPath(FlexOutline(rectangle, 2));
    painter.setPen(pressed ? colours.light : colours.shade);
    painter.drawPath(FlexOutline(rectangle, 3));
}

// Single lines inside the edge, light where light falls from the upper left.
void DrawWedgeFrame(QPainter &painter, const QRect &rectangle, const SoftColours &colours,
                    bool pressed) {
    const QPolygonF corners = WedgeCorners(rectangle, 1);
    const auto line = [&](std::initializer_list<int> numbers, const QColor &colour) {
        QPolygonF points;
        for (const int number : numbers) {
            points.append(corners[number]);
        }
        painter.setPen(colour);
        painter.drawPolyline(points);
    };
    line({1, 2, 3, 4, 5, 6}, pressed ? colours.light : colours.shade);
    line({6, 7, 0, 1}, pressed ? colours.shade : colours.light);
}

// The face falls away from the light.
QBrush WedgeFace(const QRect &rectangle, const SoftColours &colours) {
    QLinearGradient slope(rectangle.topLeft(), rectangle.bottomLeft());
    slope.setColorAt(0, Mixed(colours.face, colours.light, 0.6));
    slope.setColorAt(1, Mixed(colours.face, colours.shade, 0.35));
    return slope;
}

// Dull, so that both frames stand out from it.
QBrush FlexFace(const QRect &, const SoftColours &colours) {
    return Mixed(colours.face, colours.shade, 0.18);
}

QBrush SoftFace(const QRect &, const SoftColours &colours) {
    return colours.face;
}

// A drawn look: the outline of a button, some pixels in from its edge, its face, and what lies upon
// the face.
struct SoftLook {
    std::uint32_t style;
    QBrush (*face)(const QRect &rectangle, const SoftColours &colours);
    QPainterPath (*outline)(const QRect &rectangle, int inset);
    void (*frame)(QPainter &painter, const QRect &rectangle, const SoftColours &colours,
                  bool pressed); // null: nothing
};
constexpr SoftLook SoftLooks[] = {
    {SoftButtonSoft, SoftFace, SoftOutline, nullptr},
    {SoftButtonFlex, FlexFace, FlexOutline, DrawFlexFrame},
    {SoftButtonWedge, WedgeFace, WedgeOutline, DrawWedgeFrame},
};

const SoftLook &SoftLookOf(std::uint32_t style) {
    for (const SoftLook &look : SoftLooks) {
        if (look.style == style) {
            return look;
        }
    }
    return SoftLooks[0];
}

void DrawSoftButton(QPainter &painter, const QRect &rectangle, std::uint32_t style, unsigned state,
                    const QString &text, const QPalette &palette) {
    const bool enabled = !(state & ButtonDisabled);
    const bool pressed = (state & ButtonPressed) && enabled;
    const SoftLook &look = SoftLookOf(style);
    const SoftColours colours = SoftColoursOf(state, palette);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(colours.edge);
    painter.setBrush(look.face(rectangle, colours));
    painter.drawPath(look.outline(rectangle, 0));
    painter.setBrush(Qt::NoBrush);
    if (look.frame) {
        look.frame(painter, rectangle, colours, pressed);
    }
    if ((state & ButtonFocus) && enabled) {
        painter.setPen(colours.edge);
        painter.drawPath(look.outline(rectangle, 1));
    }
    painter.setPen(colours.ink);
    painter.drawText(rectangle.translated(0, pressed ? PressedOffset : 0),
                     Qt::AlignCenter | Qt::TextShowMnemonic, text);
    painter.restore();
}

// Paints a push button in its own paint step; everything else stays the toolkit's.
class SoftButtonPainter : public QObject {
public:
    SoftButtonPainter(QPushButton *button, std::uint32_t style)
        : QObject(button), button(button), style(style) {
        setObjectName(Name);
        button->setAttribute(Qt::WA_Hover);
        button->installEventFilter(this);
        button->update();
    }

    static constexpr const char *Name = "SoftButtonPainter";

protected:
    bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() != QEvent::Paint) {
            return false;
        }
        QPainter painter(button);
        painter.setFont(button->font());
        DrawSoftButton(painter, button->rect(), style, StateOf(*button), button->text(),
                       button->palette());
        return true;
    }

private:
    QPushButton *button; // owns this object
    std::uint32_t style;
};

} // namespace

int ThemeGetMetric(int number) {
    for (const MetricRow &row : Metrics) {
        if (row.number == number) {
            return row.pixels;
        }
    }
    return 0;
}

void ThemeDrawButton(QPainter &painter, const QRect &rectangle, unsigned state,
                     const QPixmap &picture) {
    const bool disabled = state & ButtonDisabled;
    const bool pressed = (state & ButtonPressed) && !disabled;
    const bool hover = (state & ButtonHover) && !disabled;
    painter.save();
    if (pressed || hover) {
        const QPalette palette = QApplication::palette();
        const QColor face = palette.color(QPalette::Window);
        const QColor accent = palette.color(QPalette::Highlight);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Mixed(face, accent, pressed ? 0.7 : 0.45));
        painter.setBrush(pressed ? Mixed(face, accent, 0.3)
                                 : Mixed(palette.color(QPalette::Light), accent, 0.08));
        painter.drawPath(RoundedOutline(rectangle, ToolRadius));
    }
    if ((state & ButtonFocus) && !disabled) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QApplication::palette().color(QPalette::Highlight));
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(RoundedOutline(rectangle, ToolRadius));
    }
    const QSizeF size = picture.deviceIndependentSize();
    QPointF corner(rectangle.left() + std::floor((rectangle.width() - size.width()) / 2),
                   rectangle.top() + std::floor((rectangle.height() - size.height()) / 2));
    if (pressed) {
        corner += QPointF(1, 1);
    }
    painter.drawPixmap(corner, disabled ? GreyPicture(picture) : picture);
    painter.restore();
}

void ThemeDrawToolbarBackground(QPainter &painter, const QRect &rectangle) {
    const QPalette palette = QApplication::palette();
    const QColor face = palette.color(QPalette::Window);
    QLinearGradient shade(rectangle.topLeft(), rectangle.bottomLeft());
    shade.setColorAt(0, Mixed(face, palette.color(QPalette::Light), 0.7));
    shade.setColorAt(1, Mixed(face, palette.color(QPalette::Mid), 0.25));
    painter.save();
    painter.fillRect(rectangle, shade);
    painter.fillRect(QRect(rectangle.left(), rectangle.bottom(), rectangle.width(), 1),
                     palette.color(QPalette::Mid));
    painter.restore();
}

QPixmap PictureOf(std::uint32_t number, QSize size, double devicePixelRatio) {
    const double ratio = devicePixelRatio > 0 ? std::min(devicePixelRatio, 16.0) : 1.0;
    const auto side = [ratio](int length) {
        return std::clamp(qRound(std::max(length, 1) * ratio), 1, LargestPictureSide);
    };
    const QSize pixels(side(size.width()), side(size.height()));
    const QString key = QStringLiteral("picture %1 %2x%3 %4")
                            .arg(number)
                            .arg(pixels.width())
                            .arg(pixels.height())
                            .arg(ratio);
    QPixmap picture;
    if (QPixmapCache::find(key, &picture)) {
        return picture;
    }
    picture = QPixmap(pixels);
    picture.fill(Qt::transparent);
    {
        QPainter painter(&picture);
        ThemeDrawPicture(painter, number, QRect(QPoint(0, 0), pixels));
    }
    picture.setDevicePixelRatio(ratio);
    QPixmapCache::insert(key, picture);
    return picture;
}

QSize PictureSize(std::uint32_t number) {
    const QString path = PicturePath(number);
    return QFile::exists(path) ? QSvgRenderer(path).defaultSize() : QSize();
}

void ThemeDrawPicture(QPainter &painter, std::uint32_t number, const QRect &rectangle) {
    painter.save();
    const QString path = PicturePath(number);
    QSvgRenderer renderer;
    if (QFile::exists(path) && renderer.load(path)) {
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter, QRectF(rectangle));
    } else {
        DrawMissingPicture(painter, rectangle);
    }
    painter.restore();
}

void MakeSoftButton(QPushButton *button) {
    if (SoftButtons == SoftButtonNone || !button ||
        button->findChild<QObject *>(SoftButtonPainter::Name, Qt::FindDirectChildrenOnly)) {
        return;
    }
    new SoftButtonPainter(button, SoftButtons); // a child of the button
}

void DrawSoftButtonSample(QPainter &painter, const QRect &rectangle, std::uint32_t style,
                          const QString &caption) {
    const QPalette palette = QApplication::palette();
    if (style != SoftButtonNone) {
        DrawSoftButton(painter, rectangle, style, 0, caption, palette);
        return;
    }
    QStyleOptionButton option;
    option.rect = rectangle;
    option.palette = palette;
    option.state = QStyle::State_Enabled | QStyle::State_Raised;
    option.text = caption;
    option.fontMetrics = painter.fontMetrics();
    painter.save();
    QApplication::style()->drawControl(QStyle::CE_PushButton, &option, &painter);
    painter.restore();
}

} // namespace tonewright
