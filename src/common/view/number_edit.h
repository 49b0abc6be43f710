// A line of text for a number: as wide as numbers of a few digits need, in any font.
#pragma once

#include <QLineEdit>

namespace tonewright {

class NumberEdit : public QLineEdit {
public:
    explicit NumberEdit(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
};

// Lets a line take whole numbers from 0 to `largest` only, and no text at all.
void TakeNumbersUpTo(QLineEdit *edit, int largest);

} // namespace tonewright
