// Tests of fonts by the height of their character cell, and of the pens of crisp strokes.
#include "common/view/fonts.h"
#include "common/view/strokes.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace tonewright {
namespace {

int CellOf(const QFont &font) {
    const QFontMetrics metrics(font);
    return metrics.ascent() + metrics.descent();
}

TEST(FontOfHeight, TheCellHasTheHeightThatWasAskedFor) {
    for (int weight : {400, 500, 700}) {
        for (int height : {11, 12, 14, 16, 22, 28, 32, 64}) {
            EXPECT_EQ(CellOf(FontOfHeight("ARIAL", height, weight)), height)
                << weight << " " << height;
        }
        for (int height : {11, 12, 14, 22, 32}) {
            EXPECT_EQ(CellOf(FontOfHeight("TIMES NEW ROMAN", height, weight)), height)
                << weight << " " << height;
        }
    }
}

TEST(FontOfHeight, AHeightWithoutASizeOfItsOwnTakesTheNextSmallerOne) {
    // 25 pixels give a cell of 27, 26 pixels one of 29.
    const QFont font = FontOfHeight("TIMES NEW ROMAN", 28, 700);
    EXPECT_EQ(font.pixelSize(), 25);
    EXPECT_EQ(CellOf(font), 27);
}

TEST(FontOfHeight, NoCellIsHigherThanAskedForAndTheNextSizeWouldBe) {
    for (int height = 2; height <= 120; ++height) {
        QFont font = FontOfHeight("ARIAL", height, 700);
        EXPECT_LE(CellOf(font), height);
        font.setPixelSize(font.pixelSize() + 1);
        EXPECT_GT(CellOf(font), height);
    }
}

TEST(FontOfHeight, ANegativeHeightIsTheSizeOfTheEm) {
    EXPECT_EQ(FontOfHeight("Arial", -11).pixelSize(), 11);
    EXPECT_EQ(FontOfHeight("Arial", -100, 700).pixelSize(), 100);
}

TEST(FontOfHeight, NoHeightAtAllIsTheSmallestFont) {
    EXPECT_EQ(FontOfHeight("Arial", 0).pixelSize(), 1);
}

TEST(FontOfHeight, FamiliesAreFoundWhateverTheCaseOfTheirName) {
    EXPECT_EQ(QFontInfo(FontOfHeight("ARIAL", 28)).family(),
              QFontInfo(FontOfHeight("Arial", 28)).family());
    EXPECT_EQ(QFontMetrics(FontOfHeight("TIMES NEW ROMAN", 28)).horizontalAdvance("Voice 32"),
              QFontMetrics(FontOfHeight("Times New Roman", 28)).horizontalAdvance("Voice 32"));
    EXPECT_NE(QFontMetrics(FontOfHeight("TIMES NEW ROMAN", 28)).horizontalAdvance("Voice 32"),
              QFontMetrics(FontOfHeight("ARIAL", 28)).horizontalAdvance("Voice 32"));
}

TEST(FontOfHeight, BoldIsWiderThanNormal) {
    EXPECT_GT(QFontMetrics(FontOfHeight("ARIAL", 28, 700)).horizontalAdvance("Voice 32"),
              QFontMetrics(FontOfHeight("ARIAL", 28, 400)).horizontalAdvance("Voice 32"));
}

TEST(FontOfHeight, AskingTwiceGivesTheSameFont) {
    EXPECT_EQ(FontOfHeight("ARIAL", 28, 700), FontOfHeight("ARIAL", 28, 700));
}

// The rows that a horizontal stroke at row 10 covers, as the first and the last; -1 where a pixel
// is neither ink nor background.
std::pair<int, int> RowsOfStroke(int width) {
    QImage image(40, 21, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setPen(StrokePen(Qt::black, width));
    const double offset = StrokeOffset(width);
    painter.drawLine(QPointF(10 + offset, 10 + offset), QPointF(30 + offset, 10 + offset));
    painter.end();
    std::pair<int, int> rows(-1, -1);
    for (int y = 0; y < image.height(); ++y) {
        const QRgb pixel = image.pixel(20, y);
        if (pixel == 0xFF000000) {
            rows = {rows.first < 0 ? y : rows.first, y};
        } else if (pixel != 0xFFFFFFFF) {
            return {-1, -1};
        }
    }
    return rows;
}

TEST(Strokes, AStrokeCoversWholePixelsAtEveryWidth) {
    EXPECT_EQ(RowsOfStroke(1), std::make_pair(10, 10));
    EXPECT_EQ(RowsOfStroke(2), std::make_pair(9, 10));
    EXPECT_EQ(RowsOfStroke(3), std::make_pair(9, 11));
    EXPECT_EQ(RowsOfStroke(4), std::make_pair(8, 11));
    EXPECT_EQ(RowsOfStroke(8), std::make_pair(6, 13));
}

TEST(Strokes, AWidthOfZeroOrLessIsOneDevicePixel) {
    EXPECT_EQ(RowsOfStroke(0), std::make_pair(10, 10));
    EXPECT_EQ(RowsOfStroke(-1), std::make_pair(10, 10));
    EXPECT_EQ(StrokePen(Qt::black, -7).width(), 0);
}

TEST(Strokes, EndsAreSquareAndCornersMitred) {
    EXPECT_EQ(StrokePen(Qt::red, 2).capStyle(), Qt::SquareCap);
    EXPECT_EQ(StrokePen(Qt::red, 2).joinStyle(), Qt::MiterJoin);
    EXPECT_EQ(StrokePen(Qt::red, 2).color(), QColor(Qt::red));
}

} // namespace
} // namespace tonewright
