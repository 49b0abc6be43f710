// Paints colours, and takes the places in them that the mouse chooses.
#include "shell/view/colour_field.h"

#include "common/view/accessible_role.h"
#include "common/view/system_colours.h"
#include "common/view/text_line.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace tonewright {
namespace {

constexpr int FieldWidth = 240;  // pixels
constexpr int FieldHeight = 220; // of the bar too
constexpr int BarWidth = 20;
constexpr int ArrowWidth = 9;  // beside the bar
constexpr int ArrowReach = 4;  // up and down from its tip
constexpr int ArrowMargin = 3; // above and below the bar, for an arrow at its end
constexpr int CrossReach = 9;  // of the mark in the field
constexpr int CrossGap = 3;

// The number, 0 to HueRange, of a pixel among so many.
int NumberAt(int pixel, int pixels) {
    return std::clamp(pixel, 0, pixels - 1) * HueRange / std::max(1, pixels - 1);
}

// The pixel that NumberAt gives the number of: there are no more pixels than numbers.
int PixelOf(int number, int pixels) {
    return (number * (pixels - 1) + HueRange - 1) / HueRange;
}
static_assert(FieldWidth <= HueRange + 1 && FieldHeight <= HueRange + 1);

QRgb RgbOf(std::uint32_t colour) {
    const ColourParts parts = PartsOf(colour);
    return qRgb(parts.red, parts.green, parts.blue);
}

// Fills `area` with the colour of a frame; what is inside of it.
QRect DrawFrame(QPainter &painter, const QRect &area) {
    painter.fillRect(area, SystemColourOf(SystemColour::ButtonShadow));
    return area.adjusted(1, 1, -1, -1);
}

} // namespace

QColor QColourOf(std::uint32_t colour) {
    const ColourParts parts = PartsOf(colour);
    return QColor(parts.red, parts.green, parts.blue);
}

ColourPicker::ColourPicker(QWidget *parent) : QWidget(parent) {
    SetAccessibleRole(*this, QAccessible::Graphic);
    setCursor(Qt::CrossCursor);
}

void ColourPicker::SetPlace(ColourPlace newPlace) {
    place = newPlace;
    update();
}

void ColourPicker::mousePressEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton) {
        isHeld = true;
        mouseMoveEvent(event);
    }
}

void ColourPicker::mouseMoveEvent(QMouseEvent *event) {
    if (!isHeld) {
        return;
    }
    const QPoint point = event->position().toPoint();
    Choose({std::clamp(point.x(), 0, width() - 1), std::clamp(point.y(), 0, height() - 1)});
    update();
    if (chosen) {
        chosen();
    }
}

void ColourPicker::mouseReleaseEvent(QMouseEvent *event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    isHeld = false;
    if (released) {
        released(!rect().contains(event->position().toPoint()));
    }
}

ColourField::ColourField(QWidget *parent) : ColourPicker(parent) {
    setFixedSize(FieldWidth + 2, FieldHeight + 2);
    setAccessibleName("Hue and saturation");
}

void ColourField::Choose(QPoint point) {
    place.hue = std::min(NumberAt(point.x() - 1, FieldWidth), HueRange - 1);
    place.saturation = HueRange - NumberAt(point.y() - 1, FieldHeight);
}

void ColourField::paintEvent(QPaintEvent *) {
    if (picture.isNull()) {
        picture = QImage(FieldWidth, FieldHeight, QImage::Format_RGB32);
        for (int y = 0; y < FieldHeight; ++y) {
            for (int x = 0; x < FieldWidth; ++x) {
                picture.setPixel(x, y,
                                 RgbOf(ColourAt({.hue = NumberAt(x, FieldWidth),
                                                 .saturation = HueRange - NumberAt(y, FieldHeight),
                                                 .luminance = HueRange / 2})));
            }
        }
    }
    QPainter painter(this);
    const QRect inside = DrawFrame(painter, rect());
    painter.setClipRect(inside);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(inside, picture);
    const QPoint middle(1 + PixelOf(std::min(place.hue, HueRange), FieldWidth),
                        1 + PixelOf(HueRange - place.saturation, FieldHeight));
    constexpr int Arm = CrossReach - CrossGap + 1;
    for (const QRect arm : {QRect(CrossGap, -1, Arm, 3), QRect(-CrossReach, -1, Arm, 3),
                            QRect(-1, CrossGap, 3, Arm), QRect(-1, -CrossReach, 3, Arm)}) {
        painter.fillRect(arm.translated(middle), Qt::black);
    }
}

LuminanceBar::LuminanceBar(QWidget *parent) : ColourPicker(parent) {
    setFixedSize(BarWidth + 2 + ArrowWidth, FieldHeight + 2 + 2 * ArrowMargin);
    setAccessibleName("Luminance");
}

void LuminanceBar::Choose(QPoint point) {
    place.luminance = HueRange - NumberAt(point.y() - ArrowMargin - 1, FieldHeight);
}

void LuminanceBar::paintEvent(QPaintEvent *) {
    const ColourPlace shown{.hue = place.hue, .saturation = place.saturation, .luminance = 0};
    if (picture.isNull() || painted != shown) {
        painted = shown;
        picture = QImage(1, FieldHeight, QImage::Format_RGB32);
        for (int y = 0; y < FieldHeight; ++y) {
            picture.setPixel(0, y,
                             RgbOf(ColourAt({.hue = shown.hue,
                                             .saturation = shown.saturation,
                                             .luminance = HueRange - NumberAt(y, FieldHeight)})));
        }
    }
    QPainter painter(this);
    const QRect bar(0, ArrowMargin, BarWidth + 2, FieldHeight + 2);
    painter.drawImage(DrawFrame(painter, bar), picture);
    const int y =
        bar.top() + 1 + PixelOf(HueRange - std::min(place.luminance, HueRange), FieldHeight);
    const int left = bar.right() + 2, right = width() - 1;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(SystemColourOf(SystemColour::ButtonText));
    painter.drawPolygon(QPolygonF({QPointF(left, y + 0.5), QPointF(right, y + 0.5 - ArrowReach),
                                   QPointF(right, y + 0.5 + ArrowReach)}));
}

ColourSample::ColourSample(QWidget *parent) : QWidget(parent) {
    SetAccessibleRole(*this, QAccessible::Graphic);
    setAccessibleName("Sample of the color");
}

void ColourSample::ShowColour(std::uint32_t newColour) {
    colour = newColour;
    update();
}

void ColourSample::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    DrawColourSample(painter, rect(), colour);
}

ColourName::ColourName(QWidget *parent) : QWidget(parent) {
    SetAccessibleRole(*this, QAccessible::StaticText);
}

void ColourName::ShowName(const QString &newName) {
    name = newName;
    setAccessibleName(name);
    update();
}

QSize ColourName::sizeHint() const {
    return {0, fontMetrics().height()};
}

void ColourName::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setPen(SystemColourOf(SystemColour::WindowText));
    DrawTextLine(painter, rect(), name);
}

void DrawColourSample(QPainter &painter, const QRect &area, std::uint32_t colour) {
    painter.fillRect(DrawFrame(painter, area), QColourOf(colour));
}

} // namespace tonewright
