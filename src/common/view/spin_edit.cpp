// Takes the range of a number field out of its template, and reads what was typed.
#include "common/view/spin_edit.h"

#include <QEvent>
#include <QVariant>

namespace tonewright {
namespace {

constexpr const char *RangeProperty = "range";

} // namespace

SpinEdit::SpinEdit(QWidget *parent) : QSpinBox(parent) {
    setKeyboardTracking(true);
}

int SpinEdit::ClampedValue() const {
    return ClampedInteger(text().toUtf8().constData(), range);
}

bool SpinEdit::event(QEvent *event) {
    if (event->type() == QEvent::DynamicPropertyChange) {
        SpinRange given;
        if (ReadSpinRange(property(RangeProperty).toByteArray().constData(), given)) {
            range = given;
            setRange(range.minimum, range.maximum);
            setValue(range.start);
        }
    }
    return QSpinBox::event(event);
}

QValidator::State SpinEdit::validate(QString &, int &) const {
    return QValidator::Acceptable;
}

int SpinEdit::valueFromText(const QString &text) const {
    return ClampedInteger(text.toUtf8().constData(), range);
}

} // namespace tonewright
