// A number field with arrows, whose range stands in the dialog's template.
#pragma once

#include "common/text.h"

#include <QSpinBox>

namespace tonewright {

// The template gives the property "range" the text "minimum,maximum,start"; the field has that
// range and starts there. Anything may be typed; what is read of it is limited to the range.
class SpinEdit : public QSpinBox {
public:
    explicit SpinEdit(QWidget *parent = nullptr);

    // What the typed text stands for.
    int ClampedValue() const;

protected:
    bool event(QEvent *event) override;
    QValidator::State validate(QString &text, int &place) const override;
    int valueFromText(const QString &text) const override;

private:
    SpinRange range;
};

} // namespace tonewright
