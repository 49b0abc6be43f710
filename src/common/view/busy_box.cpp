// Shows the busy box and keeps the user's events from the program.
#include "common/view/busy_box.h"

#include "common/view/centre_window.h"
#include "common/view/fonts.h"
#include "common/view/show_at_once.h"
#include "common/view/system_colours.h"
#include "common/view/text_line.h"

#include <QApplication>
#include <QEvent>
#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QWidget>

#include <algorithm>
#include <vector>

namespace tonewright {
namespace {

constexpr int BoxWidth = 360;   // pixels
constexpr int LeastHeight = 46; // pixels
constexpr int TextMargin = 14;  // pixels on either side of the text

// What comes from the user's hands.
constexpr QEvent::Type UserEvents[] = {
    QEvent::MouseButtonPress,
    QEvent::MouseButtonDblClick,
    QEvent::MouseMove,
    QEvent::NonClientAreaMouseButtonPress,
    QEvent::NonClientAreaMouseButtonDblClick,
    QEvent::Wheel,
    QEvent::KeyPress,
    QEvent::KeyRelease,
    QEvent::Shortcut,
    QEvent::ShortcutOverride,
    QEvent::ContextMenu,
    QEvent::InputMethod,
    QEvent::TouchBegin,
    QEvent::TouchUpdate,
    QEvent::TouchEnd,
    QEvent::NativeGesture,
    QEvent::TabletPress,
    QEvent::TabletMove,
    QEvent::TabletRelease,
    QEvent::DragEnter,
    QEvent::DragMove,
    QEvent::Drop,
};

class BusyBox : public QWidget {
public:
    BusyBox(QWidget *owner, const QString &title)
        : QWidget(owner, Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
          text(title), modalBelow(QApplication::activeModalWidget()) {
        setObjectName("BusyBox");
        setWindowTitle(title);
        setAttribute(Qt::WA_ShowWithoutActivating);
        setAttribute(Qt::WA_OpaquePaintEvent);
        setFont(DialogFont());
        setFixedSize(BoxWidth, std::max(LeastHeight, 2 * fontMetrics().height()));
        CentreWindow(*this);
        qApp->installEventFilter(this);
    }

    void ShowText(const QString &shown) {
        text = shown;
        repaint();
    }

protected:
    bool eventFilter(QObject *target, QEvent *event) override {
        // A question asked since the box came up must be seen and answered. The platform itself
        // keeps the user out of all other windows then.
        const bool questionStands = QApplication::activeModalWidget() != modalBelow;
        if (questionStands != standsBack) {
            standsBack = questionStands;
            setVisible(!standsBack);
        }
        if (questionStands) {
            return false;
        }
        if (event->type() == QEvent::Close) {
            if (event->spontaneous()) {
                event->ignore();
                return true;
            }
            return false;
        }
        if (event->type() == QEvent::MouseButtonRelease) {
            return DropsRelease(target, *static_cast<QMouseEvent *>(event));
        }
        if (event->type() == QEvent::MouseMove &&
            static_cast<QMouseEvent *>(event)->buttons() == Qt::NoButton) {
            return false; // does nothing, but what the mouse leaves must not stay lit
        }
        const bool dropped = std::find(std::begin(UserEvents), std::end(UserEvents),
                                       event->type()) != std::end(UserEvents);
        if (dropped && (event->type() == QEvent::MouseButtonPress ||
                        event->type() == QEvent::MouseButtonDblClick)) {
            droppedPresses |= static_cast<QMouseEvent *>(event)->button();
        }
        return dropped;
    }

    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        painter.fillRect(rect(), SystemColourOf(SystemColour::ButtonFace));
        painter.setPen(SystemColourOf(SystemColour::DarkShadow3D));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
        const QRect inside = rect().adjusted(TextMargin, 0, -TextMargin, 0);
        DrawTextLine(painter, inside, text, Qt::AlignHCenter);
    }

private:
    // The release of a button that was pressed before the box came up reaches the widget that waits
    // for it, so that it does not go on taking the button as held; but as one beside it, so that it
    // is no click.
    bool DropsRelease(QObject *target, const QMouseEvent &event) {
        if (droppedPresses.testFlag(event.button())) {
            droppedPresses.setFlag(event.button(), false);
            return true;
        }
        auto *widget = qobject_cast<QWidget *>(target);
        if (!widget || lettingUp) {
            return false;
        }
        const QPoint beside(-1, -1);
        QMouseEvent release(QEvent::MouseButtonRelease, beside, widget->mapToGlobal(beside),
                            event.button(), event.buttons(), event.modifiers());
        lettingUp = true;
        QCoreApplication::sendEvent(widget, &release);
        lettingUp = false;
        return true;
    }

    QString text;                 // as painted; the window's title stays the first one
    QPointer<QWidget> modalBelow; // the dialog that the box stands over, or none
    bool standsBack = false;      // hidden behind a question
    Qt::MouseButtons droppedPresses;
    bool lettingUp = false; // a release is being passed on
};

// The boxes that stand, the topmost one last; each belongs to its owner as well.
std::vector<QPointer<BusyBox>> Boxes;

} // namespace

bool ShowBusyBoxWindow(QWidget *owner, const std::string &text) {
    BusyBox *box = new BusyBox(owner ? owner->window() : nullptr, QString::fromStdString(text));
    Boxes.push_back(box);
    box->raise();
    ShowAtOnce(*box);
    return true;
}

void SetBusyBoxText(const std::string &text) {
    if (!Boxes.empty() && Boxes.back()) {
        Boxes.back()->ShowText(QString::fromStdString(text));
    }
}

void CloseBusyBoxWindow() {
    if (Boxes.empty()) {
        return;
    }
    const QPointer<BusyBox> box = Boxes.back();
    if (box) {
        // What has piled up while the thread was blocked comes out here and is dropped.
        QGuiApplication::sync();
        QCoreApplication::processEvents();
    }
    std::erase(Boxes, box);
    if (!box) {
        return;
    }
    QWidget *owner = box->parentWidget();
    delete box;
    if (owner) {
        owner->raise();
        owner->activateWindow();
    }
}

} // namespace tonewright
