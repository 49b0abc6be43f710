// Follows the mouse over controls, and paints and places their tips.
#include "common/view/tool_tip.h"

#include "common/settings.h"
#include "common/tip_area.h"
#include "common/tip_step.h"
#include "common/view/accessible_role.h"
#include "common/view/fonts.h"
#include "common/view/shapes.h"
#include "common/view/system_colours.h"
#include "common/view/text_line.h"
#include "common/view/tip_ground.h"

#include <QApplication>
#include <QBasicTimer>
#include <QCursor>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QScreen>
#include <QTimerEvent>
#include <QWidget>

#include <optional>

namespace tonewright {
namespace {

constexpr int PictureTop = 3;

std::optional<QFont> TipFont; // of the registered class

class ToolTip : public QWidget {
public:
    // The mouse passes through the window, which never takes the keyboard.
    ToolTip(QWidget *owner, const QString &text)
        : QWidget(owner, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput |
                             Qt::WindowDoesNotAcceptFocus),
          control(owner) {
        SetAccessibleRole(*this, QAccessible::ToolTip);
        setObjectName("TonewrightTip");
        setAttribute(Qt::WA_ShowWithoutActivating);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setAttribute(Qt::WA_OpaquePaintEvent);
        setCursor(Qt::ArrowCursor);
        setFont(*TipFont);
        setWindowTitle(text);
        setAccessibleName(text);
        const TipSize size = TextSizeOf();
        resize(size.width, size.height);
        control->setMouseTracking(true);
        control->installEventFilter(this);
    }

    void SetPicture(const QPixmap &added) {
        picture = added;
        const QSize side = picture.deviceIndependentSize().toSize();
        const TipSize size =
            ToolTipSizeWith(TextSizeOf(), {.width = side.width(), .height = side.height()});
        resize(size.width, size.height);
        update();
    }

protected:
    // Of its control, and of the whole program while the tip shows or is about to.
    bool eventFilter(QObject *receiver, QEvent *event) override {
        switch (event->type()) {
        case QEvent::MouseMove:
            FollowMove(receiver, static_cast<QMouseEvent &>(*event));
            break;
        case QEvent::Leave:
        case QEvent::Hide:
        case QEvent::WindowDeactivate:
        case QEvent::WindowBlocked:
            if (receiver == control) {
                Follow({});
            }
            break;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::ShortcutOverride: // a key that is a shortcut has no KeyPress
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            Follow({});
            break;
        default:
            break;
        }
        return false;
    }

    void timerEvent(QTimerEvent *event) override {
        if (event->timerId() != timer.timerId()) {
            return;
        }
        timer.stop();
        const QPoint cursor = control->mapFromGlobal(QCursor::pos());
        if (IsStrictlyInside({.x = cursor.x(), .y = cursor.y()}, control->width(),
                             control->height())) {
            ShowBelowControl();
        } else {
            qApp->removeEventFilter(this);
        }
    }

    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        PaintTipGround(painter, rect(), Mixed(SystemColourOf(SystemColour::Info), Qt::black, 0.5),
                       0);
        const int textHeight = TextSizeOf().height;
        DrawTextLine(painter, rect().adjusted(0, height() - textHeight, 0, 0), windowTitle(),
                     Qt::AlignHCenter);
        if (!picture.isNull()) {
            const int left = (width() - picture.deviceIndependentSize().toSize().width()) / 2;
            painter.drawPixmap(left, PictureTop, picture);
        }
    }

private:
    TipSize TextSizeOf() const {
        const QFontMetrics metrics(font());
        return ToolTipSizeOf(TextLineWidth(windowTitle(), font()),
                             metrics.ascent() + metrics.descent());
    }

    // A move goes on to the window behind a control that leaves it alone; where the mouse is
    // counts.
    void FollowMove(QObject *receiver, const QMouseEvent &event) {
        const QPoint cursor = control->mapFromGlobal(event.globalPosition().toPoint());
        if (receiver == control ||
            (receiver->isWidgetType() && !control->rect().contains(cursor))) {
            Follow({.isMove = true,
                    .leftButtonDown = event.buttons().testFlag(Qt::LeftButton),
                    .cursor = {.x = cursor.x(), .y = cursor.y()}});
        }
    }

    void Follow(const TipEvent &event) {
        switch (TipStepOf(event, control->width(), control->height(), isVisible())) {
        case TipStep::StartTimer:
            if (!timer.isActive()) {
                timer.start(ToolTipDelay, this);
                qApp->installEventFilter(this);
            }
            break;
        case TipStep::Hide:
            timer.stop();
            qApp->removeEventFilter(this);
            hide();
            break;
        case TipStep::None:
            break;
        }
    }

    void ShowBelowControl() {
        const QPoint corner = control->mapToGlobal(QPoint(0, control->height() + 1));
        const QRect screen = control->screen()->geometry();
        const Rectangle area = ToolTipAreaOf({.width = width(), .height = height()},
                                             {.x = corner.x(), .y = corner.y()},
                                             {.left = screen.left(),
                                              .top = screen.top(),
                                              .right = screen.left() + screen.width(),
                                              .bottom = screen.top() + screen.height()});
        move(area.left, area.top);
        show();
    }

    QWidget *control; // owns the tip
    QPixmap picture;
    QBasicTimer timer; // runs while the mouse rests on the control before the tip shows
};

} // namespace

void RegisterToolTipClass() {
    TipFont = FontOfHeight(QStringLiteral("Arial"), ToolTipFontHeight(TipFont01Size));
}

void UnregisterToolTipClass() {
    TipFont.reset();
}

QWidget *MakeToolTip(QWidget *control, const QString &text) {
    if (!TipFont || !control || text.isEmpty() || dynamic_cast<ToolTip *>(control)) {
        return nullptr;
    }
    return new ToolTip(control, text); // a child of the control
}

void SetToolTipPicture(QWidget &tip, const QPixmap &picture) {
    if (auto *window = dynamic_cast<ToolTip *>(&tip)) {
        window->SetPicture(picture);
    }
}

} // namespace tonewright
