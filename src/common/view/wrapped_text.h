// A label whose lines break between words, and inside a word only where the word is wider than the
// label, as a path may be. The text begins at the top of the label's contents.
#pragma once

#include <QLabel>

class QPainter;

namespace tonewright {

// Size in pixels of a text that breaks at its own line breaks only.
QSize TextSize(const QString &text, const QFont &font);

// Writes a text into a box from its top, in the painter's font and pen. Nothing is clipped.
void DrawWrappedText(QPainter &painter, const QRect &box, const QString &text,
                     Qt::Alignment alignment = Qt::AlignLeft);

class WrappedText : public QLabel {
public:
    explicit WrappedText(QWidget *parent = nullptr);

    // Height of the text and the margins at a width, both in pixels.
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace tonewright
