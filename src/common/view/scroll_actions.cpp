// Translates the toolkit's actions on a scroll bar.
#include "common/view/scroll_actions.h"

#include "common/view/wheel_notches.h"

#include <QScrollBar>
#include <QWheelEvent>

#include <cstdlib>
#include <utility>

namespace tonewright {
namespace {

ScrollAction ActionOf(int sliderAction) {
    switch (sliderAction) {
    case QAbstractSlider::SliderSingleStepSub:
        return ScrollAction::LineBack;
    case QAbstractSlider::SliderSingleStepAdd:
        return ScrollAction::LineForward;
    case QAbstractSlider::SliderPageStepSub:
        return ScrollAction::PageBack;
    case QAbstractSlider::SliderPageStepAdd:
        return ScrollAction::PageForward;
    case QAbstractSlider::SliderToMinimum:
        return ScrollAction::Top;
    case QAbstractSlider::SliderToMaximum:
        return ScrollAction::Bottom;
    default:
        return ScrollAction::Thumb;
    }
}

// Turns each notch of the wheel over a scroll bar into one step, upwards to add. The toolkit's own
// step is as many lines as the desktop scrolls in a text.
class WheelSteps : public QObject {
public:
    explicit WheelSteps(QScrollBar *bar) : QObject(bar), bar(bar) {}

    bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() != QEvent::Wheel) {
            return false;
        }
        const int steps = notches.Take(*static_cast<QWheelEvent *>(event));
        for (int step = 0; step < std::abs(steps); ++step) {
            bar->triggerAction(steps > 0 ? QScrollBar::SliderSingleStepAdd
                                         : QScrollBar::SliderSingleStepSub);
        }
        return true;
    }

private:
    QScrollBar *bar;
    WheelNotches notches;
};

} // namespace

void TakeScrollActions(QScrollBar *bar, std::function<void(ScrollAction action, int thumb)> act) {
    bar->setContextMenuPolicy(Qt::NoContextMenu);
    bar->setInvertedControls(false);
    QObject::connect(
        bar, &QScrollBar::actionTriggered, bar,
        [bar, act = std::move(act)](int action) { act(ActionOf(action), bar->sliderPosition()); });
    bar->installEventFilter(new WheelSteps(bar));
}

} // namespace tonewright
