// What the colour box paints: the field of colours, the bar of luminance beside it, and a sample.
#pragma once

#include "common/colour.h"

#include <QColor>
#include <QImage>
#include <QWidget>

#include <functional>

namespace tonewright {

QColor QColourOf(std::uint32_t colour);

// A place can be chosen by pressing the left button on it, and by moving the mouse while it is
// held, also beside the widget.
class ColourPicker : public QWidget {
public:
    explicit ColourPicker(QWidget *parent);

    ColourPlace place;
    // The user has chosen `place`.
    std::function<void()> chosen;
    // The left button was released, where the cursor may be beside the widget.
    std::function<void(bool beside)> released;
    void SetPlace(ColourPlace newPlace);
    bool IsHeld() const { return isHeld; } // by the left button

protected:
    // Puts into `place` what a point, which lies on the widget, stands for.
    virtual void Choose(QPoint point) = 0;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    QImage picture;      // without the mark of the place
    ColourPlace painted; // of the picture

private:
    bool isHeld = false;
};

// All hues from left to right, saturated at the top.
class ColourField : public ColourPicker {
public:
    explicit ColourField(QWidget *parent = nullptr);

protected:
    void Choose(QPoint point) override;
    void paintEvent(QPaintEvent *event) override;
};

// The luminances of a hue and saturation, white at the top, with an arrow beside them.
class LuminanceBar : public ColourPicker {
public:
    explicit LuminanceBar(QWidget *parent = nullptr);

protected:
    void Choose(QPoint point) override;
    void paintEvent(QPaintEvent *event) override;
};

// A framed area of one colour.
class ColourSample : public QWidget {
public:
    explicit ColourSample(QWidget *parent = nullptr);

    void ShowColour(std::uint32_t newColour);
    std::uint32_t Colour() const { return colour; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    std::uint32_t colour = 0;
};

// A line of text of any length, which says the name of a colour.
class ColourName : public QWidget {
public:
    explicit ColourName(QWidget *parent = nullptr);

    void ShowName(const QString &newName);
    QString Name() const { return name; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString name;
};

// Paints a sample into a rectangle.
void DrawColourSample(QPainter &painter, const QRect &area, std::uint32_t colour);

} // namespace tonewright
