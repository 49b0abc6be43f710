// What the items of the main list and the cells of a printed page look like in every family: place
// and name at the left, room for a picture at the right.
#pragma once

#include "core/synth_driver.h"

#include <QColor>
#include <QString>

namespace tonewright {

struct VoiceTexts {
    QString place; // where the voice stands in its list
    QString name;
};

// What is shown of a voice.
struct VoiceFace {
    VoiceTexts texts;
    int algorithm = 0; // from 0
};

// Where the picture of an item goes, and its colours: those of the highlight when it is selected.
struct ItemPicture {
    Rectangle area;
    QColor ink, paper;
};
// Paints the two lines of text of an item in the painter's pen, over the background that is there.
ItemPicture PaintItemTexts(const DrawItem &item, const ItemFonts &fonts, const VoiceTexts &texts);

// The measures of a printed cell.
struct PrintedCell {
    Rectangle area;                  // inside the space around it
    int columnWidth = 0;             // of the page
    int radius = 0;                  // of the frame's corners
    int margin = 0;                  // three thousandths of the column, at least 1
    int textLeft = 0, textRight = 0; // of the texts
};
// `textShare`: the width of the texts in thousandths of the cell's.
PrintedCell MeasurePrintedCell(const PrintCell &cell, int textShare);
// Paints the frame of a cell and its two lines of text. The picture follows, and its paper covers
// what of the frame's corners it reaches.
void PaintPrintedTexts(QPainter &painter, const PrintCell &cell, const PrintedCell &printed,
                       const VoiceTexts &texts);

// `share` thousandths of a length, cut towards zero, but at least 1.
int PerMilleAtLeastOne(int length, int share);

} // namespace tonewright
