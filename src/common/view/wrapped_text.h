// A label whose lines break between words, and inside a word only where the word is wider than the
// label, as a path may be. The text begins at the top of the label's contents.
#pragma once

#include <QLabel>

namespace tonewright {

class WrappedText : public QLabel {
public:
    explicit WrappedText(QWidget *parent = nullptr);

    // Height of the text and the margins at a width, both in pixels.
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace tonewright
