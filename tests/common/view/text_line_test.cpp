// One line of text: where it stands, where it is cut, and that every character stands for itself.
#include "common/view/text_line.h"

#include "common/view/fonts.h"

#include <gtest/gtest.h>

#include <QFontMetrics>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace tonewright {
namespace {

const QRect Box(20, 10, 300, 40);

QImage EmptyImage() {
    QImage image(400, 60, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

QFont TestFont() {
    return FontOfHeight("ARIAL", 24, 500);
}

QImage PaintLine(const QString &text, Qt::Alignment alignment = {}) {
    QImage image = EmptyImage();
    QPainter painter(&image);
    painter.setFont(TestFont());
    DrawTextLine(painter, Box, text, alignment);
    return image;
}

// The text at a place worked out by hand: the cell centred in the box from 10 to 50.
QImage PaintAt(int x, const QString &text) {
    QImage image = EmptyImage();
    QPainter painter(&image);
    painter.setFont(TestFont());
    const QFontMetrics metrics(TestFont());
    painter.drawText(x, 10 + (40 - metrics.ascent() - metrics.descent()) / 2 + metrics.ascent(),
                     text);
    return image;
}

int WidthOf(const QString &text) {
    return QFontMetrics(TestFont()).horizontalAdvance(text);
}

// The first and the last column of ink.
std::pair<int, int> InkColumns(const QImage &image) {
    std::pair<int, int> columns(image.width(), 0);
    for (int x = 0; x < image.width(); ++x) {
        if (image.copy(x, 0, 1, image.height()) != EmptyImage().copy(x, 0, 1, image.height())) {
            columns = {std::min(columns.first, x), x};
        }
    }
    return columns;
}

TEST(TextLine, StandsAtTheLeftUnlessAnotherPlaceIsGiven) {
    EXPECT_NE(PaintLine("E.PIANO 1"), EmptyImage());
    EXPECT_EQ(PaintLine("E.PIANO 1"), PaintAt(20, "E.PIANO 1"));
    EXPECT_EQ(PaintLine("E.PIANO 1", Qt::AlignLeft), PaintAt(20, "E.PIANO 1"));
}

TEST(TextLine, StandsAtTheRightOrInTheMiddle) {
    const int width = WidthOf("E.PIANO 1");
    EXPECT_EQ(PaintLine("E.PIANO 1", Qt::AlignRight), PaintAt(320 - width, "E.PIANO 1"));
    EXPECT_EQ(PaintLine("E.PIANO 1", Qt::AlignHCenter),
              PaintAt(20 + (300 - width) / 2, "E.PIANO 1"));
}

TEST(TextLine, EveryCharacterFrom0x80To0x9FStandsForItself) {
    for (int code = 0x80; code <= 0x9F; ++code) {
        const QString text = QString("AB") + QChar(code) + "CDEFGH";
        EXPECT_EQ(PaintLine(text), PaintAt(20, text)) << std::hex << code;
    }
}

TEST(TextLine, EveryCharacterFrom0x80To0x9FCountsInTheWidth) {
    for (int code = 0x80; code <= 0x9F; ++code) {
        const QString text = QString("HH") + QChar(code) + "HHHHHH";
        const auto [left, right] = InkColumns(PaintLine(text, Qt::AlignHCenter));
        EXPECT_NEAR(left - 20, 319 - right, 2) << std::hex << code;
        EXPECT_GE(right - left, WidthOf("HHHHHHHH") - 6) << std::hex << code;
        EXPECT_NEAR(InkColumns(PaintLine(text, Qt::AlignRight)).second, 317, 2) << std::hex << code;
    }
}

TEST(TextLine, TheWidthOfALineIsThatOfAllItsCharacters) {
    EXPECT_EQ(TextLineWidth("", TestFont()), 0);
    EXPECT_EQ(TextLineWidth("E.PIANO 1  ", TestFont()), WidthOf("E.PIANO 1  "));
    EXPECT_GE(TextLineWidth(QString("AB") + QChar(0x9C) + "CDEFGH", TestFont()),
              WidthOf("ABCDEFGH"));
}

TEST(TextLine, ATextTooWideEndsInAnEllipsis) {
    QString cut = QChar(0x2026);
    while (WidthOf("W" + cut) <= 300) {
        cut.prepend('W');
    }
    ASSERT_GT(cut.size(), 10);
    ASSERT_LT(cut.size(), 20);
    EXPECT_EQ(PaintLine(QString(30, 'W')), PaintAt(20, cut));
}

TEST(TextLine, ATextTooWideWithCharactersFrom0x80To0x9FIsCutAtItsEndOnly) {
    for (int code = 0x80; code <= 0x9F; ++code) {
        const QString start = QString("AB") + QChar(code) + "CD";
        const QImage image = PaintLine(start + QString(30, 'W'));
        // The whole start is there, and the box is filled from left to right.
        const QRect startArea(0, 0, 20 + WidthOf(start) - 2, 60);
        EXPECT_EQ(image.copy(startArea), PaintAt(20, start).copy(startArea)) << std::hex << code;
        EXPECT_NE(image.copy(270, 0, 50, 60), EmptyImage().copy(270, 0, 50, 60))
            << std::hex << code;
        EXPECT_EQ(image.copy(320, 0, 80, 60), EmptyImage().copy(320, 0, 80, 60))
            << std::hex << code;
    }
}

TEST(TextLine, InABoxTooNarrowForAnEllipsisItsBeginningIsSeen) {
    const QRect narrow(20, 10, 12, 40);
    ASSERT_GT(WidthOf(QChar(0x2026)), narrow.width());
    for (const auto side : {Qt::AlignLeft, Qt::AlignRight}) {
        QImage image = EmptyImage();
        QPainter painter(&image);
        painter.setFont(TestFont());
        DrawTextLine(painter, narrow, "  WW", side);
        painter.end();
        EXPECT_EQ(image.copy(narrow), PaintAt(20, "WW").copy(narrow)) << side;
        EXPECT_EQ(InkColumns(image).second, 31) << side;
    }
}

TEST(TextLine, BreaksAndTabsAreBlanks) {
    EXPECT_EQ(PaintLine("one\ntwo\rthree\tfour"), PaintAt(20, "one two three four"));
}

TEST(TextLine, AnAmpersandIsWritten) {
    EXPECT_EQ(PaintLine("B & K && C"), PaintAt(20, "B & K && C"));
}

} // namespace
} // namespace tonewright
