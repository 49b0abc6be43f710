// How the pictures of algorithms are painted in every family: crisp lines on a filled ground, and
// small labels that can be told apart.
#pragma once

#include "common/geometry.h"

#include <QColor>

#include <vector>

class QPainter;
class QPointF;

namespace tonewright {

// Gives the painter pen and brush of such a picture, and fills `area` with `paper`. `lineWeight` is
// in pixels; 0 or less draws one device pixel. The caller saves and restores the painter.
void BeginAlgorithm(QPainter &painter, const Rectangle &area, QColor ink, QColor paper,
                    int lineWeight);

// Selects the font of labels whose character cells are `height` pixels high.
void SelectAlgorithmFont(QPainter &painter, int height);

// Where to draw a stroke of `lineWeight` pixels so that what is computed from the origin `x`, `y`
// covers whole pixels.
QPointF AlgorithmShift(int x, int y, int lineWeight);

// Draws the polylines of a picture, moved by `shift`.
void DrawAlgorithmLines(QPainter &painter, const std::vector<std::vector<PicturePoint>> &lines,
                        const QPointF &shift);

} // namespace tonewright
