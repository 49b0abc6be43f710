// The arrow buttons beside a number, and their keys and wheel.
#include "common/view/up_down.h"

#include "common/view/dialog_controls.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <algorithm>
#include <cstdlib>

namespace tonewright {
UpDown::UpDown(QWidget *parent) : QWidget(parent) {
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(MakeArrow(Qt::UpArrow, 1));
    column->addWidget(MakeArrow(Qt::DownArrow, -1));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
}

QToolButton *UpDown::MakeArrow(Qt::ArrowType arrow, int step) {
    auto *button = new QToolButton(this);
    button->setObjectName(step > 0 ? "up" : "down");
    button->setAccessibleName(step > 0 ? "Up" : "Down");
    button->setArrowType(arrow);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
    QObject::connect(button, &QToolButton::clicked, this, [this, step] { Step(step); });
    return button;
}

void UpDown::FollowEdit(QLineEdit *edit) {
    edit->installEventFilter(this);
}

std::string UpDown::RangeText() const {
    return property("rangeText").toString().toStdString();
}

void UpDown::Step(int step) {
    if (stepped && isEnabled()) {
        stepped(step);
    }
}

bool UpDown::eventFilter(QObject *, QEvent *event) {
    if (event->type() == QEvent::Wheel) {
        wheelEvent(static_cast<QWheelEvent *>(event));
        return true;
    }
    if (event->type() != QEvent::KeyPress) {
        return false;
    }
    const auto *key = static_cast<QKeyEvent *>(event);
    const bool plain = (key->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (!plain || (key->key() != Qt::Key_Up && key->key() != Qt::Key_Down)) {
        return false;
    }
    Step(key->key() == Qt::Key_Up ? 1 : -1);
    return true;
}

void UpDown::wheelEvent(QWheelEvent *event) {
    const int steps = notches.Take(*event);
    for (int step = 0; step < std::abs(steps); ++step) {
        Step(steps > 0 ? 1 : -1);
    }
    event->accept();
}

std::optional<SpinRange> SpinRangeOf(const QWidget *page, std::uint32_t number) {
    const auto *arrows = ControlOf<UpDown>(page, number + UpDownOffset);
    SpinRange range;
    if (!arrows || ScanSpinRange(arrows->RangeText().c_str(), range) < 2) {
        return std::nullopt;
    }
    return range;
}

int ClampedDlgInt(const QWidget *page, std::uint32_t number) {
    const auto *edit = ControlOf<QLineEdit>(page, number);
    const std::optional<SpinRange> range = SpinRangeOf(page, number);
    return edit && range ? ClampedInteger(edit->text().toUtf8().constData(), *range) : 0;
}

void StepNumberIn(QLineEdit *edit, UpDown *arrows, const SpinRange &range) {
    arrows->FollowEdit(edit);
    arrows->stepped = [edit, range](int step) {
        if (!edit->isEnabled() || edit->isReadOnly()) {
            return;
        }
        const std::int64_t number = ClampedInteger(edit->text().toUtf8().constData(), range);
        const std::int64_t least = range.minimum, largest = std::max(range.minimum, range.maximum);
        edit->setText(QString::number(std::clamp(number + step, least, largest)));
        edit->selectAll();
    };
}

} // namespace tonewright
