// The algorithms in the editor of a voice: a drop-down list whose items are pictures, and the
// picture of the one that the voice has.
#pragma once

#include "common/geometry.h"
#include "common/view/system_colours.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QWidget>

class QPainter;

namespace tonewright {

// How a family shows its algorithms, which are numbers from 0.
struct AlgorithmLook {
    int itemHeight = 0; // of the list, in pixels
    SystemColour disabledText = SystemColour::GrayText;
    // Paints the picture of an item into the whole area behind the item's number.
    void (*drawItem)(QPainter &painter, const Rectangle &area, int algorithm,
                     bool selected) = nullptr;
    // Paints the picture of a voice's algorithm into an area that has the colour of dialogs.
    void (*drawPicture)(QPainter &painter, const Rectangle &area, int algorithm) = nullptr;
};

// What is seen and heard of an algorithm: "Algorithm 5" for 4.
QString AlgorithmName(int algorithm);

// Ink and paper of an item, and of the picture of a voice's algorithm.
struct AlgorithmColours {
    QColor ink, paper;
};
AlgorithmColours AlgorithmItemColours(bool selected);
AlgorithmColours AlgorithmPictureColours();

// Digits that are typed in quick succession select the item that shows their number, also while the
// list is open.
class AlgorithmList : public QComboBox {
public:
    explicit AlgorithmList(QWidget *parent = nullptr);

    // `newLook` outlives the list.
    void SetLook(const AlgorithmLook &newLook);
    // Names the items for those who hear them; called when they are there.
    void NameItems();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override; // of the open list

private:
    QRect FieldIn(const QSize &size) const;
    // Takes a key that writes a digit, and none else. The item that the digits so far stand for;
    // -1 where there is none.
    bool TakesDigit(const QKeyEvent &key, int &item);

    const AlgorithmLook *look = nullptr;
    int typed = 0; // the number so far
    QElapsedTimer sinceDigit;
};

class AlgorithmPicture : public QWidget {
public:
    explicit AlgorithmPicture(QWidget *parent = nullptr);

    void SetLook(const AlgorithmLook &newLook); // `newLook` outlives the picture
    void ShowAlgorithm(int number);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const AlgorithmLook *look = nullptr;
    int algorithm = 0;
};

} // namespace tonewright
