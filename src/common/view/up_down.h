// The two small arrow buttons beside the edit of a whole number. In a dialog template the property
// `rangeText` of the arrows of edit 118, the control 10118, is "minimum,maximum,start".
#pragma once

#include "common/text.h"
#include "common/view/wheel_notches.h"

#include <QWidget>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

class QLineEdit;
class QToolButton;

namespace tonewright {

constexpr std::uint32_t UpDownOffset = 10000; // number of the arrows minus that of their edit

class UpDown : public QWidget {
public:
    explicit UpDown(QWidget *parent = nullptr);

    // Called with +1 or -1 for each step: a press of an arrow, again and again while it is held,
    // and once `edit` was given to FollowEdit, its arrow keys and the wheel over it. Empty:
    // nothing.
    std::function<void(int step)> stepped;
    void FollowEdit(QLineEdit *edit);

    // The property `rangeText`; empty when the template gives none.
    std::string RangeText() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    QToolButton *MakeArrow(Qt::ArrowType arrow, int step);
    void Step(int step);

    WheelNotches notches;
};

// The range that the arrows of edit `number` of a page tell; nothing without arrows, or when they
// do not tell both ends.
std::optional<SpinRange> SpinRangeOf(const QWidget *page, std::uint32_t number);
// The number typed into edit `number`, limited to the range of its arrows; 0 without edit or range.
int ClampedDlgInt(const QWidget *page, std::uint32_t number);

// Lets the arrows step the number in an edit. A number beyond the range counts as the nearest one
// in it, and the steps stay in it.
void StepNumberIn(QLineEdit *edit, UpDown *arrows, const SpinRange &range);

} // namespace tonewright
