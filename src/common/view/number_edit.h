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

} // namespace tonewright
