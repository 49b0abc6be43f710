// Paints push buttons in three looks out of the palette.
#include "common/view/soft_button.h"

#include "common/settings.h"
#include "common/view/shapes.h"
#include "common/view/theme.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPolygonF>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionButton>

#include <algorithm>

namespace tonewright {
namespace {

constexpr double SoftRadius = 5;
constexpr double FlexRadius = 1.5;
constexpr double WedgeCut = 7;   // of the corners, along both sides
constexpr int PressedOffset = 2; // a caption moves down while its button is pressed

constexpr const char *PaintsItself = "paintsItself"; // a property of buttons

unsigned StateOf(const QPushButton &button) {
    return (button.isDown() || button.isChecked() ? ButtonPressed : 0) |
           (button.isEnabled() ? 0 : ButtonDisabled) | (button.underMouse() ? ButtonHover : 0) |
           (button.hasFocus() ? ButtonFocus : 0) | (button.isDefault() ? ButtonDefault : 0);
}

struct SoftColours {
    QColor face, edge, light, shade;
};

// True when a line of the first colour is seen on the second one.
bool IsBrighter(const QColor &line, const QColor &face) {
    constexpr int LeastDifference = 5; // of 255 steps from black to white
    return qGray(line.rgb()) - qGray(face.rgb()) >= LeastDifference;
}

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
    colours.light =
        disabled || IsBrighter(light, colours.face) ? light : Mixed(light, Qt::white, 0.25);
    colours.shade = Mixed(button, Qt::black, disabled ? 0.12 : 0.25);
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

// An edge of two pixels where light falls from the upper left, and one of a pixel across from it.
void DrawSoftFrame(QPainter &painter, const QRect &rectangle, const SoftColours &colours,
                   bool pressed) {
    QPainterPath inside;
    inside.addRoundedRect(QRectF(rectangle).adjusted(1, 1, -1, -1), SoftRadius - 1, SoftRadius - 1);
    painter.fillPath(inside.subtracted(inside.translated(-1, -1)),
                     pressed ? colours.light : colours.shade);
    painter.fillPath(inside.subtracted(inside.translated(2, 2)),
                     pressed ? colours.shade : colours.light);
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
    return Mixed(colours.face, colours.shade, 0.1);
}

// A drawn look: the outline of a button, some pixels in from its edge, its face, and what lies upon
// the face. The frame of the focus lies inside all lines of the look.
struct SoftLook {
    std::uint32_t style;
    int focusInset; // pixels
    QBrush (*face)(const QRect &rectangle, const SoftColours &colours);
    QPainterPath (*outline)(const QRect &rectangle, int inset);
    void (*frame)(QPainter &painter, const QRect &rectangle, const SoftColours &colours,
                  bool pressed);
};
constexpr SoftLook SoftLooks[] = {
    {SoftButtonSoft, 4, SoftFace, SoftOutline, DrawSoftFrame},
    {SoftButtonFlex, 5, FlexFace, FlexOutline, DrawFlexFrame},
    {SoftButtonWedge, 3, WedgeFace, WedgeOutline, DrawWedgeFrame},
};

const SoftLook &SoftLookOf(std::uint32_t style) {
    for (const SoftLook &look : SoftLooks) {
        if (look.style == style) {
            return look;
        }
    }
    return SoftLooks[0];
}

// A dotted line in the colour of captions, every other pixel of it, so that the button that has the
// keyboard is told from the default one.
void DrawFocusFrame(QPainter &painter, const QPainterPath &outline, const QPalette &palette) {
    QPen dots(palette.color(QPalette::Active, QPalette::ButtonText), 1, Qt::CustomDashLine,
              Qt::FlatCap);
    dots.setDashPattern({1, 1});
    painter.setPen(dots);
    painter.drawPath(outline);
}

// A caption that is wider than the button ends in an ellipsis. The margin is as narrow as the one
// with which the toolkit works out the size of a button, so that a button of that size says all.
void DrawLabel(QPainter &painter, QStyleOptionButton label, bool pressed) {
    constexpr int Margin = 4, IconGap = 4; // pixels
    const int icon = label.icon.isNull() ? 0 : label.iconSize.width() + IconGap;
    label.text = label.fontMetrics.elidedText(
        label.text, Qt::ElideRight, label.rect.width() - 2 * Margin - icon, Qt::TextShowMnemonic);
    label.rect.translate(0, pressed ? PressedOffset : 0);
    label.features = QStyleOptionButton::None;
    label.state &= QStyle::State_Enabled | QStyle::State_Active; // a style moves what is pressed
    QApplication::style()->drawControl(QStyle::CE_PushButtonLabel, &label, &painter);
}

void DrawSoftButton(QPainter &painter, const QStyleOptionButton &button, std::uint32_t style,
                    unsigned state) {
    const QRect &rectangle = button.rect;
    const bool enabled = !(state & ButtonDisabled);
    const bool pressed = (state & ButtonPressed) && enabled;
    const SoftLook &look = SoftLookOf(style);
    const SoftColours colours = SoftColoursOf(state, button.palette);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(colours.edge);
    painter.setBrush(look.face(rectangle, colours));
    painter.drawPath(look.outline(rectangle, 0));
    painter.setBrush(Qt::NoBrush);
    look.frame(painter, rectangle, colours, pressed);
    painter.setRenderHint(QPainter::Antialiasing, false);
    if ((state & ButtonFocus) && enabled) {
        DrawFocusFrame(painter, look.outline(rectangle, look.focusInset), button.palette);
    }
    DrawLabel(painter, button, pressed);
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
        QStyleOptionButton option;
        option.initFrom(button);
        option.text = button->text();
        option.icon = button->icon();
        option.iconSize = button->iconSize();
        DrawSoftButton(painter, option, style, StateOf(*button));
        return true;
    }

private:
    QPushButton *button; // owns this object
    std::uint32_t style;
};

// Waits for the push buttons that dialogs show. A button may be polished before it is in its
// dialog, when its size is asked for.
class SoftButtonWatch : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *receiver, QEvent *event) override {
        if (event->type() == QEvent::Show) {
            auto *button = qobject_cast<QPushButton *>(receiver);
            if (button && qobject_cast<QDialog *>(button->window())) {
                MakeSoftButton(button);
            }
        }
        return false;
    }
};

} // namespace

void MakeSoftButton(QPushButton *button) {
    if (SoftButtons == SoftButtonNone || !button || button->property(PaintsItself).toBool() ||
        button->findChild<QObject *>(SoftButtonPainter::Name, Qt::FindDirectChildrenOnly)) {
        return;
    }
    new SoftButtonPainter(button, SoftButtons); // a child of the button
}

void KeepOwnPainting(QWidget *button) {
    button->setProperty(PaintsItself, true);
}

void MakeDialogButtonsSoft() {
    qApp->installEventFilter(new SoftButtonWatch(qApp));
}

void DrawSoftButtonSample(QPainter &painter, const QRect &rectangle, std::uint32_t style,
                          const QString &caption) {
    QStyleOptionButton option;
    option.rect = rectangle;
    option.palette = QApplication::palette();
    option.state = QStyle::State_Enabled | QStyle::State_Raised;
    option.text = caption;
    option.fontMetrics = painter.fontMetrics();
    if (style != SoftButtonNone) {
        DrawSoftButton(painter, option, style, 0);
        return;
    }
    painter.save();
    QApplication::style()->drawControl(QStyle::CE_PushButton, &option, &painter);
    painter.restore();
}

} // namespace tonewright
