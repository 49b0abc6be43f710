// Paints pictures of the theme in the place of a label's own painting.
#include "common/view/theme_picture.h"

#include "common/view/accessible_role.h"
#include "common/view/theme.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionTabWidgetFrame>
#include <QTabWidget>

namespace tonewright {
namespace {

// The colour of a sheet's pages, which a style may give another one than its windows.
QColor GroundOfPages(const QTabWidget &tabs) {
    QImage sample(32, 32, QImage::Format_RGB32);
    sample.fill(tabs.palette().color(QPalette::Window));
    QPainter painter(&sample);
    QStyleOptionTabWidgetFrame option;
    option.initFrom(&tabs);
    option.rect = sample.rect();
    tabs.style()->drawPrimitive(QStyle::PE_FrameTabWidget, &option, &painter, &tabs);
    return sample.pixelColor(sample.rect().center());
}

// What lies behind a control.
QColor GroundOf(const QWidget &control) {
    for (const QWidget *parent = control.parentWidget(); parent; parent = parent->parentWidget()) {
        if (const auto *tabs = qobject_cast<const QTabWidget *>(parent)) {
            return GroundOfPages(*tabs);
        }
    }
    return control.palette().color(QPalette::Window);
}

class ThemePicturePainter : public QObject {
public:
    using Draw = void(QPainter &, const QRect &, std::uint32_t, const QColor &);

    ThemePicturePainter(QLabel &control, Draw &draw, std::uint32_t number)
        : QObject(&control), control(control), draw(draw), number(number) {
        control.installEventFilter(this);
        SetAccessibleRole(control, QAccessible::Graphic);
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() != QEvent::Paint) {
            return false;
        }
        QPainter painter(&control);
        draw(painter, control.rect(), number, GroundOf(control));
        return true;
    }

private:
    QLabel &control; // owns this object
    Draw &draw;
    std::uint32_t number;
};

} // namespace

void ShowThemePicture(QLabel &control, std::uint32_t number) {
    ThemeSizePicture(control);
    new ThemePicturePainter(control, ThemeDrawPicture, number); // a child of the control
}

void ShowThemeBitmap(QLabel &control, std::uint32_t number) {
    const std::optional<ThemeBitmap> bitmap = ThemeGetBitmap(number);
    control.setVisible(bitmap.has_value());
    if (bitmap) {
        control.setFixedSize(SizeOfThemeBitmap(*bitmap).toSize().boundedTo(LargestShownBitmap));
        new ThemePicturePainter(control, ThemeDrawBitmap, number);
    }
}

} // namespace tonewright
