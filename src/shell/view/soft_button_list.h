// A drop-down list of button styles, each of which is shown as a button drawn in it.
#pragma once

#include <QComboBox>

namespace tonewright {

class SoftButtonList : public QComboBox {
public:
    // Without items; the item of index n is drawn in the style n, with its text as the caption.
    explicit SoftButtonList(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace tonewright
