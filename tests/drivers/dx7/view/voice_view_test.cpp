// Tests of painted algorithms, list items and printed cells, pixel by pixel.
#include "drivers/dx7/view/voice_view.h"

#include "common/view/fonts.h"
#include "drivers/dx7/view/algorithm_view.h"
#include "drivers/dx7/voice_codec.h"
#include "support/pixels.h"

#include <QApplication>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <array>
#include <string>

#include <gtest/gtest.h>

namespace tonewright {
namespace {

// A picture on an image with ten pixels around it, which no line leaves in the pictures looked at
// here.
constexpr int Around = 10;
QImage PaintAlgorithm(int algorithm, int height, int weight, int flags, QColor ink = Qt::black,
                      QColor background = Qt::white, int width = 240) {
    QImage image = EmptyImage(width + 2 * Around, height + 2 * Around);
    QPainter painter(&image);
    EXPECT_EQ(DrawDx7Algorithm(painter, {Around, Around, Around + width, Around + height},
                               algorithm, ink, background, weight, flags),
              1);
    return image;
}

int StripWidth(int fontHeight) {
    return QFontMetrics(FontOfHeight("ARIAL", 2 * fontHeight, 700)).horizontalAdvance("00  ");
}

VoiceObject MakeVoice(const std::string &name, int algorithm) {
    std::array<std::uint8_t, Dx7VoiceSize> bytes{};
    for (std::size_t i = 0; i < Dx7NameSize; ++i) {
        bytes[145 + i] = i < name.size() ? static_cast<std::uint8_t>(name[i]) : ' ';
    }
    bytes[134] = static_cast<std::uint8_t>(algorithm);
    return MakeVoiceObject(Dx7DriverId, bytes);
}

ItemFonts ListFonts() {
    ItemFonts fonts;
    fonts.title = {.family = "TIMES NEW ROMAN", .height = 28, .weight = 700};
    fonts.label = {.family = "ARIAL", .height = 14, .weight = 500};
    fonts.itemHeight = 48;
    return fonts;
}

constexpr int ItemWidth = 560;
const QRect LabelArea(0, 0, 280, 16);
const QRect NameArea(0, 16, 280, 32);

// An item of the list as the main window asks for it: background filled, text colour set.
QImage PaintItem(const VoiceObject &voice, int index, bool selected, QRgb text = Black,
                 QRgb background = White, const ItemFonts &fonts = ListFonts()) {
    QImage image = EmptyImage(ItemWidth, 48, background);
    QPainter painter(&image);
    painter.setPen(QColor(text));
    const DrawItem item = {.painter = &painter,
                           .rectangle = {0, 0, ItemWidth, 48},
                           .itemIndex = index,
                           .selected = selected};
    EXPECT_EQ(Dx7DrawVoiceItem(item, fonts, voice, 0), 1);
    return image;
}

// The same area with one text on a baseline, for comparison.
QImage PaintText(const QFont &font, int x, int top, int bottom, const QString &text,
                 QRgb colour = Black, QRgb background = White) {
    QImage image = EmptyImage(ItemWidth, 48, background);
    QPainter painter(&image);
    painter.setPen(QColor(colour));
    painter.setFont(font);
    const QFontMetrics metrics(font);
    const int cell = metrics.ascent() + metrics.descent();
    painter.drawText(x, top + (bottom - top - cell) / 2 + metrics.ascent(), text);
    return image;
}

TEST(Dx7AlgorithmView, WithoutTheNumberTheBoxesStartAtTheLeftEdge) {
    const QImage image = PaintAlgorithm(31, 48, 2, 0);
    // The inner rectangle starts 4 to the right; the stroke of 2 lies on either side of that.
    const QRect ink = InkOf(image, QRect(Around, Around, 240, 48), White);
    EXPECT_EQ(ink.left(), Around + 4 - 1);
}

TEST(Dx7AlgorithmView, WithTheNumberTheBoxesStartRightOfItsStrip) {
    const QImage plain = PaintAlgorithm(31, 48, 2, 0);
    const QImage numbered = PaintAlgorithm(31, 48, 2, ShowAlgorithmNumber);
    const int strip = StripWidth(11);
    ASSERT_GT(strip, 20);
    // The same boxes, moved by the width of the strip.
    EXPECT_EQ(plain.copy(Around, 0, 160, 68), numbered.copy(Around + strip, 0, 160, 68));
    // "32" stands in the strip, with room for two blanks at its right.
    const QRect number = InkOf(numbered, QRect(Around, Around, 4 + strip - 1, 48), White);
    EXPECT_GE(number.left(), Around + 4);
    EXPECT_LT(number.right(), Around + 4 + strip - 8);
    EXPECT_NEAR(number.center().y(), Around + 24, 2);
}

TEST(Dx7AlgorithmView, OneDigitStandsAtTheRightOfTheStrip) {
    const int strip = StripWidth(11);
    const QRect area(Around, Around, 4 + strip - 1, 48);
    const QRect one = InkOf(PaintAlgorithm(32 + 3, 48, 2, ShowAlgorithmNumber), area, White);
    const QRect digit = InkOf(PaintAlgorithm(5, 48, 2, ShowAlgorithmNumber), area, White);
    EXPECT_EQ(one.right(), digit.right()); // "36" and "6"
    EXPECT_GT(digit.left(), one.left());
}

TEST(Dx7AlgorithmView, TheNumberIsWrittenBoldAndTwiceAsHighAsThoseOfTheBoxes) {
    const int strip = StripWidth(11);
    const QFont font = FontOfHeight("ARIAL", 22, 700);
    const QFontMetrics metrics(font);
    for (const char *number : {"4  ", "27  "}) {
        const int algorithm = QString(number).trimmed().toInt() - 1;
        // Right-aligned in the strip behind the border of 4, in the middle of the inner 40.
        const int x = Around + 4 + strip - metrics.horizontalAdvance(number);
        const QImage expected = PaintText(font, x, Around + 4, Around + 44, number);
        const QRect area(Around, Around, 4 + strip - 2, 38);
        EXPECT_EQ(PaintAlgorithm(algorithm, 48, 2, ShowAlgorithmNumber).copy(area),
                  expected.copy(area))
            << number;
    }
}

TEST(Dx7AlgorithmView, AnAlgorithmOf32OrMorePaintsTheBackgroundAndNoBoxes) {
    for (int algorithm : {32, 100, 255}) {
        EXPECT_TRUE(
            IsAll(PaintAlgorithm(algorithm, 48, 2, 0), QRect(Around, Around, 240, 48), White))
            << algorithm;
    }
}

TEST(Dx7AlgorithmView, AnAlgorithmOf32OrMorePaintsItsNumberWhenAsked) {
    const QImage image = PaintAlgorithm(32, 48, 2, ShowAlgorithmNumber);
    const int strip = 4 + StripWidth(11);
    EXPECT_TRUE(HasPixel(image, QRect(Around, Around, strip, 48), Black));
    EXPECT_TRUE(IsAll(image, QRect(Around + strip, Around, 240 - strip, 48), White));
}

TEST(Dx7AlgorithmView, TheWholeRectangleIsFilledAndNothingAroundIt) {
    const QImage image = PaintAlgorithm(0, 48, 2, 0, Qt::black, QColor(10, 200, 30));
    const QRgb green = qRgb(10, 200, 30);
    EXPECT_EQ(image.pixel(Around, Around), green);
    EXPECT_EQ(image.pixel(Around + 239, Around), green);
    EXPECT_EQ(image.pixel(Around, Around + 47), green);
    EXPECT_EQ(image.pixel(Around + 239, Around + 47), green);
    EXPECT_TRUE(IsAll(image, QRect(0, 0, 260, Around), Untouched));
    EXPECT_TRUE(IsAll(image, QRect(0, Around + 48, 260, Around), Untouched));
    EXPECT_TRUE(IsAll(image, QRect(0, 0, Around, 68), Untouched));
    EXPECT_TRUE(IsAll(image, QRect(Around + 240, 0, Around, 68), Untouched));
    // Boxes are filled with the background too: the corner inside the first one.
    EXPECT_EQ(image.pixel(Around + 4 + 7 + 1, Around + 4 + 1), green);
}

TEST(Dx7AlgorithmView, AnOddHeightPaintsTheSameAsTheHeightOneLower) {
    for (int algorithm : {0, 6, 18, 31}) {
        const QImage odd = PaintAlgorithm(algorithm, 49, 2, ShowAlgorithmNumber);
        const QImage even = PaintAlgorithm(algorithm, 48, 2, ShowAlgorithmNumber);
        EXPECT_EQ(odd.copy(0, 0, 260, Around + 48), even.copy(0, 0, 260, Around + 48)) << algorithm;
    }
}

TEST(Dx7AlgorithmView, APicture48HighHasItsBoxesAndLinesWhereTheUnitsSay) {
    const QImage image = PaintAlgorithm(0, 48, 2, 0);
    const int x = Around + 4;
    const int y = Around + 4;
    // Box 1 of side 14 at (7, 0): strokes of two pixels around its edges.
    EXPECT_EQ(RunOfRow(image, x + 7, y + 2), std::make_pair(x + 6, x + 7));
    EXPECT_EQ(RunOfRow(image, x + 21, y + 2), std::make_pair(x + 20, x + 21));
    EXPECT_EQ(RunOfColumn(image, x + 9, y), std::make_pair(y - 1, y));
    EXPECT_EQ(RunOfColumn(image, x + 9, y + 14), std::make_pair(y + 13, y + 14));
    // The line to box 2 at (38, 0), in the middle of the boxes.
    EXPECT_EQ(RunOfColumn(image, x + 30, y + 7), std::make_pair(y + 6, y + 7));
    // The stub of 5 at the left, from the upper row to the lower one.
    EXPECT_EQ(RunOfRow(image, x + 2, y + 20), std::make_pair(x + 1, x + 2));
    EXPECT_EQ(RunOfColumn(image, x + 2, y + 20), std::make_pair(y + 6, y + 31));
    // The loop around box 6 runs along y = 43.
    EXPECT_EQ(RunOfColumn(image, x + 107, y + 43), std::make_pair(y + 42, y + 43));
    EXPECT_EQ(RunOfRow(image, x + 107, y + 43), std::make_pair(x + 94, x + 119));
}

// A number in the middle of a box of `side` whose top left corner is at x, y, on a white image.
QImage PaintLabel(QSize size, int x, int y, int side, int fontHeight, int number) {
    QImage image = EmptyImage(size.width(), size.height(), White);
    QPainter painter(&image);
    QFont font = FontOfHeight("ARIAL", fontHeight, 700);
    font.setHintingPreference(QFont::PreferFullHinting);
    painter.setFont(font);
    const QFontMetrics metrics(font);
    const QString text = QString::number(number);
    const int cell = metrics.ascent() + metrics.descent();
    painter.drawText(x + (side - metrics.horizontalAdvance(text)) / 2,
                     y + (side - cell) / 2 + metrics.ascent(), text);
    return image;
}

TEST(Dx7AlgorithmView, EveryBoxHoldsItsNumberInTheMiddle) {
    struct Row {
        int algorithm, height;
        int side, fontHeight;
        std::array<QPoint, 6> corners; // of the boxes 1 to 6
    };
    const Row rows[] = {
        {9, 40, 10, 8, {{{5, 0}, {29, 0}, {53, 0}, {5, 19}, {53, 19}, {29, 19}}}},
        {9, 48, 14, 11, {{{7, 0}, {38, 0}, {69, 0}, {7, 24}, {69, 24}, {38, 24}}}},
        {9, 122, 40, 32, {{{20, 0}, {108, 0}, {196, 0}, {20, 68}, {196, 68}, {108, 68}}}},
        {31, 48, 14, 11, {{{0, 24}, {24, 24}, {48, 24}, {72, 24}, {96, 24}, {120, 24}}}},
        {25, 48, 14, 11, {{{0, 24}, {24, 24}, {24, 0}, {72, 24}, {48, 0}, {72, 0}}}},
    };
    for (const Row &row : rows) {
        const QImage image =
            PaintAlgorithm(row.algorithm, row.height, 2, 0, Qt::black, Qt::white, 260);
        for (int number = 1; number <= 6; ++number) {
            const QPoint corner = row.corners[number - 1] + QPoint(Around + 4, Around + 4);
            // Within the strokes of two pixels on the box's edges.
            const QRect inside(corner.x() + 1, corner.y() + 1, row.side - 2, row.side - 2);
            const QImage expected =
                PaintLabel(image.size(), corner.x(), corner.y(), row.side, row.fontHeight, number);
            EXPECT_FALSE(IsAll(expected, inside, White));
            EXPECT_EQ(image.copy(inside), expected.copy(inside))
                << row.algorithm + 1 << " at " << row.height << ": box " << number;
        }
    }
}

TEST(Dx7AlgorithmView, ABoxOutsideOfANarrowRectangleIsFilledAllTheSame) {
    const QRgb green = qRgb(10, 200, 30);
    QImage image = EmptyImage(200, 68);
    QPainter painter(&image);
    DrawDx7Algorithm(painter, {Around, Around, Around + 60, Around + 48}, 31, Qt::black,
                     QColor::fromRgb(green), 2, 0);
    painter.end();
    EXPECT_EQ(image.pixel(Around + 59, Around), green);
    EXPECT_EQ(image.pixel(Around + 60, Around), Untouched);
    // Box 6 of side 14 at (120, 24), and the gap between it and box 5.
    const int x = Around + 4 + 120;
    const int y = Around + 4 + 24;
    EXPECT_FALSE(HasPixel(image, QRect(x + 1, y + 1, 12, 12), Untouched));
    EXPECT_EQ(image.pixel(x + 1, y + 1), green);
    EXPECT_EQ(image.pixel(x + 12, y + 12), green);
    EXPECT_EQ(image.pixel(x - 5, y + 7), Untouched);
}

TEST(Dx7AlgorithmView, EveryWeightOfLineCoversWholePixels) {
    struct Row {
        int height, weight; // the inner height is 40 in every row
        int before, after;  // pixels of a stroke before and after its coordinate
    };
    for (const Row &row : {Row{36, -1, 0, 0}, Row{40, 0, 0, 0}, Row{44, 1, 0, 0}, Row{48, 2, 1, 0},
                           Row{52, 3, 1, 1}, Row{56, 4, 2, 1}}) {
        const QImage image = PaintAlgorithm(0, row.height, row.weight, 0);
        const int x = Around + 2 * row.weight;
        const int y = Around + 2 * row.weight;
        EXPECT_EQ(RunOfColumn(image, x + 30, y + 7),
                  std::make_pair(y + 7 - row.before, y + 7 + row.after))
            << row.weight;
        EXPECT_EQ(RunOfRow(image, x + 2, y + 20),
                  std::make_pair(x + 2 - row.before, x + 2 + row.after))
            << row.weight;
        EXPECT_EQ(RunOfRow(image, x + 21, y + 3),
                  std::make_pair(x + 21 - row.before, x + 21 + row.after))
            << row.weight;
    }
}

TEST(Dx7AlgorithmView, ALineBelowABoxHangsFromItsExactMiddle) {
    for (int height = 24; height < 160; ++height) {
        for (int weight : {1, 2, 3}) {
            const QImage image = PaintAlgorithm(31, height, weight, 0, Qt::black, Qt::white, 600);
            // Left to right along the lower edge of box 1, then along the line below it.
            const int inner = (height - 4 * weight) & ~1;
            const int box = (inner * 36 / 100) & ~1;
            const int gap = (inner * 60 / 100 - box) / 2;
            if (gap < 2 * weight || box < 6 * weight) {
                continue; // strokes run into each other
            }
            const int x = Around + 2 * weight + box / 2;
            const int y = Around + 2 * weight + inner * 60 / 100 + box;
            const std::pair<int, int> edge = RunOfRow(image, x, y);
            const std::pair<int, int> line = RunOfRow(image, x, y + (weight + 1) / 2);
            EXPECT_EQ(edge.second - edge.first + 1, box + weight) << height << " " << weight;
            EXPECT_EQ(line.second - line.first + 1, weight) << height << " " << weight;
            EXPECT_EQ(line.first - edge.first, edge.second - line.second)
                << height << " " << weight;
        }
    }
}

TEST(Dx7AlgorithmView, ACrossingLineOfTheListStepsAsideByOnePixel) {
    const QImage image = PaintAlgorithm(6, 40, 2, 0);
    const int x = Around + 4;
    const int y = Around + 4;
    EXPECT_EQ(RunOfRow(image, x + 33, y + 17), std::make_pair(x + 32, x + 33));
    EXPECT_EQ(RunOfRow(image, x + 33, y + 30), std::make_pair(x + 33, x + 34));
}

TEST(Dx7AlgorithmView, LinesAboveAndBelowTheInnerRectangleAreNotClipped) {
    // Without a border of their own weight, loops and bus leave the rectangle.
    const QImage image = PaintAlgorithm(4, 40, 0, 0);
    const int x = Around;
    EXPECT_EQ(RunOfColumn(image, x + 60, Around - 5), std::make_pair(Around - 5, Around - 5));
    EXPECT_EQ(RunOfColumn(image, x + 20, Around + 43), std::make_pair(Around + 43, Around + 43));
}

TEST(Dx7AlgorithmView, ThePainterIsLeftAsItWas) {
    QImage image = EmptyImage(300, 60);
    QPainter painter(&image);
    const QFont font = FontOfHeight("TIMES NEW ROMAN", 28, 700);
    painter.setFont(font);
    painter.setPen(QPen(Qt::red, 5));
    painter.setBrush(Qt::yellow);
    painter.setRenderHint(QPainter::Antialiasing);
    DrawDx7Algorithm(painter, {0, 0, 300, 48}, 3, Qt::black, Qt::white, 2, ShowAlgorithmNumber);
    EXPECT_EQ(painter.font(), font);
    EXPECT_EQ(painter.pen(), QPen(Qt::red, 5));
    EXPECT_EQ(painter.brush(), QBrush(Qt::yellow));
    EXPECT_TRUE(painter.testRenderHint(QPainter::Antialiasing));
}

TEST(Dx7AlgorithmView, APainterThatSmoothsGivesTheSamePicture) {
    // 40 pixels high, a line of algorithm 7 is slanted; upright and level ones cover whole pixels
    // and look the same smoothed.
    QImage image = EmptyImage(260, 60);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    DrawDx7Algorithm(painter, {Around, Around, Around + 240, Around + 40}, 6, Qt::black, Qt::white,
                     2, ShowAlgorithmNumber);
    painter.end();
    EXPECT_EQ(image, PaintAlgorithm(6, 40, 2, ShowAlgorithmNumber));
}

// The same picture painted anew and as it is kept, at a place and density of the device.
QImage PaintAt(double density, QPointF place, const Rectangle &area, int algorithm, int weight,
               bool kept, QColor ink = Qt::black) {
    QImage image = EmptyImage(static_cast<int>(400 * density), static_cast<int>(100 * density));
    image.setDevicePixelRatio(density);
    QPainter painter(&image);
    painter.translate(place);
    if (kept) {
        DrawKeptDx7Algorithm(painter, area, algorithm, ink, Qt::white, weight, ShowAlgorithmNumber);
    } else {
        DrawDx7Algorithm(painter, area, algorithm, ink, Qt::white, weight, ShowAlgorithmNumber);
    }
    return image;
}

TEST(Dx7AlgorithmView, AKeptPictureIsTheSamePixelByPixel) {
    const Rectangle area = {.left = 20, .top = 10, .right = 320, .bottom = 50};
    for (const double density : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
        for (int algorithm = 0; algorithm <= 32; ++algorithm) {
            for (const QPointF place : {QPointF(0, 0), QPointF(40, 24), QPointF(3, 5)}) {
                for (const QColor ink : {QColor(Qt::black), QColor(Qt::red)}) {
                    const QImage anew = PaintAt(density, place, area, algorithm, 2, false, ink);
                    for (int time = 0; time < 2; ++time) {
                        ASSERT_EQ(PaintAt(density, place, area, algorithm, 2, true, ink), anew)
                            << density << " " << algorithm << " " << place.x();
                    }
                }
            }
        }
    }
}

TEST(Dx7AlgorithmView, AMarginThatIsNotWholePixelsIsNotKept) {
    // With its margin of 4 the area is whole pixels in eighths, without it is not.
    const Rectangle area = {.left = 20, .top = 12, .right = 316, .bottom = 52};
    for (const double density : {1.125, 1.375}) {
        for (int algorithm = 0; algorithm <= 32; ++algorithm) {
            for (const QPointF place : {QPointF(0, 0), QPointF(8, 16), QPointF(4, 4)}) {
                const QImage anew = PaintAt(density, place, area, algorithm, 2, false);
                for (int time = 0; time < 2; ++time) {
                    ASSERT_EQ(PaintAt(density, place, area, algorithm, 2, true), anew)
                        << density << " " << algorithm << " " << place.x();
                }
            }
        }
    }
}

TEST(Dx7AlgorithmView, APictureThatLeavesItsRectangleIsNotKept) {
    struct Row {
        Rectangle area;
        int algorithm, weight;
    };
    for (const Row &row : {Row{{20, 20, 80, 60}, 31, 2}, Row{{20, 20, 320, 60}, 4, 0},
                           Row{{20, 20, 120, 60}, 18, 2}, Row{{20, 20, 10, 60}, 0, 2},
                           Row{{20, 20, 320, 21}, 0, 2}, Row{{20, 20, 320, 20}, 0, 2}}) {
        const QImage anew = PaintAt(1, {}, row.area, row.algorithm, row.weight, false);
        for (int time = 0; time < 2; ++time) {
            EXPECT_EQ(PaintAt(1, {}, row.area, row.algorithm, row.weight, true), anew)
                << row.algorithm << " " << row.area.right;
        }
    }
}

TEST(Dx7AlgorithmView, TinyEmptyAndReversedRectanglesDoNoHarm) {
    QImage image = EmptyImage(100, 100);
    QPainter painter(&image);
    for (int height : {-20, -1, 0, 1, 2, 8, 9, 12}) {
        for (int weight : {-2, 0, 1, 2, 8}) {
            EXPECT_EQ(DrawDx7Algorithm(painter, {50, 50, 40, 50 + height}, 6, Qt::black, Qt::white,
                                       weight, ShowAlgorithmNumber),
                      1);
        }
    }
}

TEST(Dx7VoiceItem, TheFirstVoiceShowsTheNumber1) {
    const QImage image = PaintItem(MakeVoice("BRASS   1", 21), 0, false);
    const QImage expected = PaintText(FontOfHeight("ARIAL", 14, 500), 4, 2, 16, "Voice 1");
    EXPECT_EQ(image.copy(LabelArea), expected.copy(LabelArea));
    EXPECT_FALSE(IsAll(image, LabelArea, White));
}

TEST(Dx7VoiceItem, TheLastVoiceOfABankShowsTheNumber32) {
    const QImage image = PaintItem(MakeVoice("X", 0), 31, false);
    const QImage expected = PaintText(FontOfHeight("ARIAL", 14, 500), 4, 2, 16, "Voice 32");
    EXPECT_EQ(image.copy(LabelArea), expected.copy(LabelArea));
}

TEST(Dx7VoiceItem, TheNameStandsBelowInTheTitleFont) {
    const QImage image = PaintItem(MakeVoice("E.PIANO 1", 4), 0, false);
    const QImage expected =
        PaintText(FontOfHeight("TIMES NEW ROMAN", 28, 700), 16, 16, 44, "E.PIANO 1");
    EXPECT_EQ(image.copy(NameArea), expected.copy(NameArea));
}

TEST(Dx7VoiceItem, EvenTheWidestNameOfTenCharactersFitsItsBox) {
    const QFont font = FontOfHeight("TIMES NEW ROMAN", 28, 700);
    ASSERT_LE(QFontMetrics(font).horizontalAdvance("WWWWWWWWWW"), 260);
    const QImage image = PaintItem(MakeVoice("WWWWWWWWWW", 4), 0, false);
    const QImage expected = PaintText(font, 16, 16, 44, "WWWWWWWWWW");
    EXPECT_EQ(image.copy(NameArea), expected.copy(NameArea));
}

TEST(Dx7VoiceItem, ANameTooWideForItsBoxEndsInAnEllipsis) {
    ItemFonts fonts = ListFonts();
    fonts.title.height = 34;
    const QFont font = FontOfHeight("TIMES NEW ROMAN", 34, 700);
    const QFontMetrics metrics(font);
    const QString cut = QString("WWWWWWW") + QChar(0x2026);
    ASSERT_GT(metrics.horizontalAdvance("WWWWWWWWWW"), 260);
    ASSERT_LE(metrics.horizontalAdvance(cut), 260);
    ASSERT_GT(metrics.horizontalAdvance("W" + cut), 260);
    const QImage image = PaintItem(MakeVoice("WWWWWWWWWW", 4), 0, false, Black, White, fonts);
    EXPECT_EQ(image.copy(NameArea), PaintText(font, 16, 16, 44, cut).copy(NameArea));
    EXPECT_TRUE(IsAll(image, QRect(16 + 260, 16, 4, 32), White));
}

// A name in a font of that height that just fits into `width` pixels; empty when none was found.
std::string NameJustFitting(int height, int width) {
    const QFontMetrics metrics(FontOfHeight("TIMES NEW ROMAN", height, 700));
    const auto fits = [&](const std::string &name, int box) {
        const QString text = QString::fromStdString(name);
        return metrics.elidedText(text, Qt::ElideRight, box) == text;
    };
    const std::string letters = "WMABCEFLRSabcfgirt";
    for (int wide = 0; wide <= 10; ++wide) {
        for (const char first : letters) {
            for (const char second : letters) {
                for (int seconds = 0; seconds <= 10 - wide; ++seconds) {
                    const std::string name = std::string(wide, 'W') + std::string(seconds, second) +
                                             std::string(10 - wide - seconds, first);
                    if (metrics.horizontalAdvance(QString::fromStdString(name)) == width &&
                        fits(name, width) && !fits(name, width - 1)) {
                        return name;
                    }
                }
            }
        }
    }
    return {};
}

// How wide the letters of a height are is the machine's matter; at some height there is a name of
// each width.
TEST(Dx7VoiceItem, ANameOf260PixelsFitsItsBoxAndOneOf261DoesNot) {
    for (const int width : {260, 261}) {
        ItemFonts fonts = ListFonts();
        std::string name;
        for (fonts.title.height = 30; name.empty() && fonts.title.height < 40;) {
            name = NameJustFitting(++fonts.title.height, width);
        }
        ASSERT_EQ(name.size(), 10u) << width;
        const QFont font = FontOfHeight("TIMES NEW ROMAN", fonts.title.height, 700);
        const QString shown =
            QFontMetrics(font).elidedText(QString::fromStdString(name), Qt::ElideRight, 260);
        EXPECT_EQ(shown == QString::fromStdString(name), width == 260);
        const QImage image = PaintItem(MakeVoice(name, 4), 0, false, Black, White, fonts);
        EXPECT_EQ(image.copy(NameArea), PaintText(font, 16, 16, 44, shown).copy(NameArea)) << name;
    }
}

TEST(Dx7VoiceItem, BytesOfANameAreLatin1) {
    const QImage image = PaintItem(MakeVoice("\xC4"
                                             "B & \xE9",
                                             4),
                                   0, false);
    const QImage expected = PaintText(FontOfHeight("TIMES NEW ROMAN", 28, 700), 16, 16, 44,
                                      QString(QChar(0xC4)) + "B & " + QChar(0xE9));
    EXPECT_EQ(image.copy(NameArea), expected.copy(NameArea));
}

TEST(Dx7VoiceItem, BytesFrom0x80To0x9FInANameCutNothingOff) {
    for (int byte = 0x80; byte <= 0x9F; ++byte) {
        const QImage image = PaintItem(
            MakeVoice("AB" + std::string(1, static_cast<char>(byte)) + "CDEFGH", 4), 0, false);
        const QImage expected = PaintText(FontOfHeight("TIMES NEW ROMAN", 28, 700), 16, 16, 44,
                                          QString("AB") + QChar(byte) + "CDEFGH");
        EXPECT_EQ(image.copy(NameArea), expected.copy(NameArea)) << std::hex << byte;
    }
}

TEST(Dx7VoiceItem, AnUnselectedItemShowsItsPictureBlackOnWhite) {
    const QImage image = PaintItem(MakeVoice("X", 21), 0, false, Black, Untouched);
    EXPECT_TRUE(HasPixel(image, QRect(280, 4, ItemWidth - 304, 40), Black));
    // The picture lies 280 from the left, 24 from the right, and 4 from top and bottom.
    for (QPoint corner :
         {QPoint(280, 4), QPoint(ItemWidth - 25, 4), QPoint(280, 43), QPoint(ItemWidth - 25, 43)}) {
        EXPECT_EQ(image.pixel(corner), White);
    }
    EXPECT_TRUE(IsAll(image, QRect(ItemWidth - 24, 0, 24, 48), Untouched));
    EXPECT_TRUE(IsAll(image, QRect(276, 0, 4, 48), Untouched));
    EXPECT_EQ(image.pixel(ItemWidth - 25, 3), Untouched);
    EXPECT_EQ(image.pixel(ItemWidth - 25, 44), Untouched);
}

TEST(Dx7VoiceItem, ThePictureIsThatOfTheVoicesAlgorithmWithItsNumber) {
    const QImage image = PaintItem(MakeVoice("X", 16), 0, false);
    QImage expected = EmptyImage(ItemWidth, 48, White);
    QPainter painter(&expected);
    DrawDx7Algorithm(painter, {280, 4, ItemWidth - 24, 44}, 16, Qt::black, Qt::white, 2, 1);
    painter.end();
    const QRect area(280, 0, ItemWidth - 280, 48);
    EXPECT_EQ(image.copy(area), expected.copy(area));
}

TEST(Dx7VoiceItem, ASelectedItemShowsItsPictureInTheHighlightColours) {
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Highlight, QColor(0, 0, 160));
    palette.setColor(QPalette::HighlightedText, QColor(255, 255, 0));
    QApplication::setPalette(palette);
    const QRgb highlight = qRgb(0, 0, 160);
    const QRgb yellow = qRgb(255, 255, 0);
    const QImage image = PaintItem(MakeVoice("X", 21), 0, true, White, Untouched);
    const QRect picture(280, 4, ItemWidth - 304, 40);
    EXPECT_EQ(image.pixel(280, 4), highlight);
    EXPECT_EQ(image.pixel(ItemWidth - 25, 43), highlight);
    EXPECT_TRUE(HasPixel(image, picture, yellow));
    EXPECT_FALSE(HasPixel(image, picture, Black));
    EXPECT_FALSE(HasPixel(image, picture, White));
}

TEST(Dx7VoiceItem, TheTwoLinesOfTextTakeTheColourThatTheWindowSet) {
    for (bool selected : {false, true}) {
        const QRgb red = qRgb(255, 0, 0);
        const QImage image = PaintItem(MakeVoice("E.PIANO 1", 4), 8, selected, red, White);
        EXPECT_EQ(
            image.copy(LabelArea),
            PaintText(FontOfHeight("ARIAL", 14, 500), 4, 2, 16, "Voice 9", red).copy(LabelArea));
        EXPECT_EQ(image.copy(NameArea),
                  PaintText(FontOfHeight("TIMES NEW ROMAN", 28, 700), 16, 16, 44, "E.PIANO 1", red)
                      .copy(NameArea));
    }
}

TEST(Dx7VoiceItem, AnItemFurtherDownTheListLooksTheSame) {
    const VoiceObject voice = MakeVoice("LOWER", 9);
    QImage image = EmptyImage(ItemWidth, 480, White);
    QPainter painter(&image);
    const DrawItem item = {.painter = &painter,
                           .rectangle = {0, 240, ItemWidth, 288},
                           .itemIndex = 5,
                           .selected = false};
    EXPECT_EQ(Dx7DrawVoiceItem(item, ListFonts(), voice, 0), 1);
    painter.end();
    EXPECT_EQ(image.copy(0, 240, ItemWidth, 48), PaintItem(voice, 5, false));
}

TEST(Dx7VoiceItem, ABlockTooShortForAVoicePaintsNothing) {
    const std::vector<std::uint8_t> cut(155, 1);
    for (const VoiceObject &voice :
         {VoiceObject{}, MakeVoiceObject(Dx7DriverId, cut), VoiceObject{{1, 2, 3}}}) {
        EXPECT_TRUE(IsAll(PaintItem(voice, 0, false, Black, Untouched), QRect(0, 0, ItemWidth, 48),
                          Untouched));
    }
}

TEST(Dx7VoiceItem, ThePainterIsLeftAsItWas) {
    QImage image = EmptyImage(ItemWidth, 48);
    QPainter painter(&image);
    const QFont font = FontOfHeight("ARIAL", 20);
    painter.setFont(font);
    painter.setPen(Qt::red);
    const DrawItem item = {
        .painter = &painter, .rectangle = {0, 0, ItemWidth, 48}, .itemIndex = 0, .selected = true};
    Dx7DrawVoiceItem(item, ListFonts(), MakeVoice("X", 1), 0);
    EXPECT_EQ(painter.font(), font);
    EXPECT_EQ(painter.pen().color(), QColor(Qt::red));
}

// A page of 1000 by 1600 with 32 voices: columns 500 wide, rows 100 high; a cell is shrunk by 10.
// An algorithm without boxes leaves the frame as the outermost ink.
QImage PrintPage(int index, int voicesOnPage = 32, const VoiceObject &voice = MakeVoice("X", 32)) {
    QImage image = EmptyImage(1000, 1600, White);
    QPainter painter(&image);
    const PrintCell cell = {.index = index,
                            .pageWidth = 1000,
                            .pageHeight = 1600,
                            .left = 0,
                            .top = 0,
                            .voicesOnPage = voicesOnPage,
                            .titleFontHeight = 32,
                            .labelFontHeight = 12};
    EXPECT_EQ(Dx7PrintVoice(painter, voice, cell), 1);
    return image;
}

QRect FrameOf(const QImage &page) {
    return InkOf(page, page.rect(), White);
}

TEST(Dx7PrintedVoice, TheFirstVoiceLiesAtTheTopLeft) {
    // A frame of two pixels lies on either side of the cell's edges 10, 490 and 10, 90.
    EXPECT_EQ(FrameOf(PrintPage(0)), QRect(QPoint(9, 9), QPoint(490, 90)));
}

TEST(Dx7PrintedVoice, TheSecondVoiceLiesInTheRightColumn) {
    EXPECT_EQ(FrameOf(PrintPage(1)), QRect(QPoint(509, 9), QPoint(990, 90)));
}

TEST(Dx7PrintedVoice, WithThirtyTwoVoicesTheThirdLiesInTheLeftColumnOfTheSecondOf16Rows) {
    EXPECT_EQ(FrameOf(PrintPage(2)), QRect(QPoint(9, 109), QPoint(490, 190)));
    EXPECT_EQ(FrameOf(PrintPage(31)), QRect(QPoint(509, 1509), QPoint(990, 1590)));
}

TEST(Dx7PrintedVoice, ACellStartsAtTheCornerOfThePrintableArea) {
    QImage image = EmptyImage(1100, 400, White);
    QPainter painter(&image);
    const PrintCell cell = {.index = 3,
                            .pageWidth = 1000,
                            .pageHeight = 1600,
                            .left = 50,
                            .top = 70,
                            .voicesOnPage = 32,
                            .titleFontHeight = 32,
                            .labelFontHeight = 12};
    Dx7PrintVoice(painter, MakeVoice("X", 32), cell);
    painter.end();
    EXPECT_EQ(FrameOf(image), QRect(QPoint(559, 179), QPoint(1040, 260)));
}

TEST(Dx7PrintedVoice, TheCornersOfTheFrameAreRound) {
    const QImage page = PrintPage(0);
    EXPECT_EQ(page.pixel(9, 9), White);
    EXPECT_EQ(page.pixel(11, 11), White);
    EXPECT_EQ(page.pixel(490, 90), White);
    // The straight parts are two pixels of plain black.
    EXPECT_EQ(RunOfColumn(page, 250, 9), std::make_pair(9, 10));
    EXPECT_EQ(RunOfRow(page, 9, 50), std::make_pair(9, 10));
}

TEST(Dx7PrintedVoice, ThePictureLiesOverTheFrame) {
    const QImage page = PrintPage(0);
    QImage expected = EmptyImage(1000, 1600, White);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::black, 2));
    painter.drawRoundedRect(QRectF(10, 10, 480, 80), 10, 10);
    // Its paper covers what of the round corners lies within its rectangle.
    EXPECT_NE(expected.pixel(488, 16), White);
    painter.fillRect(284, 16, 489 - 284, 84 - 16, Qt::white);
    painter.end();
    const QRect rightEnd(470, 0, 30, 100);
    EXPECT_EQ(page.copy(rightEnd), expected.copy(rightEnd));
}

TEST(Dx7PrintedVoice, NameAndPlaceStandInTheLeftPartOfTheCell) {
    const QImage page = PrintPage(2, 32, MakeVoice("E.PIANO 1", 32));
    // m is 1, so the text runs from 10 + 10 to 20 + 264; the name from 155 to 187, the place from
    // 113 to 155.
    QImage expected = EmptyImage(1000, 1600, White);
    QPainter painter(&expected);
    const auto write = [&](const QFont &font, int top, int bottom, const QString &text) {
        painter.setFont(font);
        const QFontMetrics metrics(font);
        const int cell = metrics.ascent() + metrics.descent();
        painter.drawText(20, top + (bottom - top - cell) / 2 + metrics.ascent(), text);
    };
    write(FontOfHeight("TIMES NEW ROMAN", 32, 700), 155, 187, "E.PIANO 1");
    write(FontOfHeight("ARIAL", 12, 500), 113, 155, "Voice 3");
    painter.end();
    const QRect text(20, 113, 264, 74);
    EXPECT_EQ(page.copy(text), expected.copy(text));
    EXPECT_TRUE(HasPixel(page, text, Black));
}

TEST(Dx7PrintedVoice, AByte0x9CInANameCutsNothingOff) {
    const QRect text(20, 155, 264, 32);
    const QRect whole = InkOf(PrintPage(2, 32, MakeVoice("ABCDEFGH", 32)), text, White);
    const QRect ink = InkOf(PrintPage(2, 32,
                                      MakeVoice("AB\x9C"
                                                "CDEFGH",
                                                32)),
                            text, White);
    EXPECT_GT(whole.width(), 100);
    EXPECT_GE(ink.right(), whole.right());
}

TEST(Dx7PrintedVoice, ANameTooWideForItsBoxEndsInAnEllipsis) {
    const QFontMetrics metrics(FontOfHeight("TIMES NEW ROMAN", 32, 700));
    ASSERT_GT(metrics.horizontalAdvance("WWWWWWWWWW"), 264);
    const QImage page = PrintPage(0, 32, MakeVoice("WWWWWWWWWW", 32));
    const QRect ink = InkOf(page, QRect(14, 55, 270, 30), White);
    EXPECT_LT(ink.right(), 20 + 264);
    EXPECT_GT(ink.right(), 20 + 200);
}

TEST(Dx7PrintedVoice, ThePictureFillsTheRightPartOfTheCell) {
    const QImage page = PrintPage(0, 32, MakeVoice("X", 6));
    // k is 2, so the line weight is 0; the picture runs from 284 to 489 and from 16 to 84.
    QImage expected = EmptyImage(1000, 1600, White);
    QPainter painter(&expected);
    DrawDx7Algorithm(painter, {284, 16, 489, 84}, 6, Qt::black, Qt::white, 0, ShowAlgorithmNumber);
    painter.end();
    const QRect picture(284, 12, 190, 76); // left of the frame's round corners
    EXPECT_EQ(page.copy(picture), expected.copy(picture));
    EXPECT_TRUE(HasPixel(page, picture, Black));
}

TEST(Dx7PrintedVoice, ASmallPageGivesANegativeLineWeightThatStillPaintsThePicture) {
    QImage image = EmptyImage(300, 400, White);
    QPainter painter(&image);
    // Columns 150 wide: k is 1, the line weight -1; every margin is at least 1.
    const PrintCell cell = {.index = 0,
                            .pageWidth = 300,
                            .pageHeight = 400,
                            .left = 0,
                            .top = 0,
                            .voicesOnPage = 8,
                            .titleFontHeight = 9,
                            .labelFontHeight = 3};
    EXPECT_EQ(Dx7PrintVoice(painter, MakeVoice("X", 31), cell), 1);
    painter.end();
    // Cell 3..147 by 3..97; text from 6 to 85; picture 85..146 by 6..94.
    QImage expected = EmptyImage(300, 400, White);
    QPainter reference(&expected);
    DrawDx7Algorithm(reference, {85, 6, 146, 94}, 31, Qt::black, Qt::white, -1,
                     ShowAlgorithmNumber);
    reference.end();
    const QRect picture(86, 6, 60, 88);
    EXPECT_EQ(image.copy(picture), expected.copy(picture));
    EXPECT_TRUE(HasPixel(image, picture, Black));
    // The frame of 300 * 2 / 1000 = 0 is one pixel.
    EXPECT_EQ(RunOfColumn(image, 40, 3), std::make_pair(3, 3));
    EXPECT_EQ(RunOfRow(image, 3, 50), std::make_pair(3, 3));
}

// The cell of voice 4 on a page of 4000 by 1200 with 8 voices, on which every measure is larger
// than its least: columns 2000 wide, rows 300 high; the cell runs from 2040 to 3960 and from 340 to
// 560.
QImage PrintLargePage(const VoiceObject &voice, int titleFontHeight) {
    QImage image = EmptyImage(4000, 620);
    QPainter painter(&image);
    const PrintCell cell = {.index = 3,
                            .pageWidth = 4000,
                            .pageHeight = 1200,
                            .left = 0,
                            .top = 0,
                            .voicesOnPage = 8,
                            .titleFontHeight = titleFontHeight,
                            .labelFontHeight = 24};
    EXPECT_EQ(Dx7PrintVoice(painter, voice, cell), 1);
    return image;
}

TEST(Dx7PrintedLargePage, TheFrameIs8WideWithCornersOfRadius40) {
    const QImage page = PrintLargePage(MakeVoice("X", 32), 64);
    EXPECT_EQ(RunOfRow(page, 2040, 450), std::make_pair(2036, 2043));
    EXPECT_EQ(RunOfRow(page, 3960, 450), std::make_pair(3956, 3963));
    EXPECT_EQ(RunOfColumn(page, 3000, 340), std::make_pair(336, 343));
    EXPECT_EQ(RunOfColumn(page, 3000, 560), std::make_pair(556, 563));
    // The corner's arc has its centre at 2080, 380 and crosses the diagonal at 2051.7, 351.7.
    EXPECT_EQ(page.pixel(2051, 351), Black);
    EXPECT_EQ(page.pixel(2046, 346), Untouched);
    EXPECT_EQ(page.pixel(2057, 357), Untouched);
}

TEST(Dx7PrintedLargePage, NameAndPlaceStandTheirMarginsInsideOfTheCell) {
    // m is 6 and the text's indent 40: the name stands from 478 to 542, the place from 358 to 478.
    QImage expected = EmptyImage(4000, 620);
    QPainter painter(&expected);
    const auto write = [&](const QFont &font, int top, int bottom, const QString &text) {
        painter.setFont(font);
        const QFontMetrics metrics(font);
        const int cell = metrics.ascent() + metrics.descent();
        painter.drawText(2080, top + (bottom - top - cell) / 2 + metrics.ascent(), text);
    };
    write(FontOfHeight("TIMES NEW ROMAN", 64, 700), 478, 542, "E.PIANO 1");
    write(FontOfHeight("ARIAL", 24, 500), 358, 478, "Voice 4");
    painter.end();
    const QImage page = PrintLargePage(MakeVoice("E.PIANO 1", 4), 64);
    const QRect text(2080, 350, 3136 - 2080, 200); // right of the frame's round corners
    EXPECT_EQ(page.copy(text), expected.copy(text));
    EXPECT_FALSE(IsAll(page, text, Untouched));
}

TEST(Dx7PrintedLargePage, ANameEndsWhereThePictureBegins) {
    // The text's width is 550 per mille of the cell's 1920.
    const QFont font = FontOfHeight("TIMES NEW ROMAN", 180, 700);
    const QFontMetrics metrics(font);
    const QString cut = QString("WWWWW") + QChar(0x2026);
    ASSERT_LE(metrics.horizontalAdvance(cut), 1056);
    ASSERT_GT(metrics.horizontalAdvance("W" + cut), 1056);
    QImage expected = EmptyImage(4000, 620);
    QPainter painter(&expected);
    painter.setFont(font);
    painter.drawText(
        2080, 362 + (180 - metrics.ascent() - metrics.descent()) / 2 + metrics.ascent(), cut);
    painter.end();
    const QImage page = PrintLargePage(MakeVoice("WWWWWWWWWW", 4), 180);
    const QRect text(2060, 400, 3136 - 2060, 140); // below the place
    EXPECT_EQ(page.copy(text), expected.copy(text));
}

TEST(Dx7PrintedLargePage, ThePictureRunsFromTheTextToTheCellsRightMargin) {
    const QImage page = PrintLargePage(MakeVoice("X", 31), 64);
    // k is 10, so the line weight is 8; the picture is 30 from top and bottom and m from the right.
    EXPECT_EQ(page.pixel(3135, 450), Untouched);
    EXPECT_EQ(page.pixel(3136, 450), White);
    EXPECT_EQ(page.pixel(3953, 450), White);
    EXPECT_EQ(page.pixel(3954, 450), Untouched);
    EXPECT_EQ(page.pixel(3900, 369), Untouched);
    EXPECT_EQ(page.pixel(3900, 370), White);
    EXPECT_EQ(page.pixel(3900, 529), White);
    EXPECT_EQ(page.pixel(3900, 530), Untouched);
    QImage expected = EmptyImage(4000, 620);
    QPainter painter(&expected);
    DrawDx7Algorithm(painter, {3136, 370, 3954, 530}, 31, Qt::black, Qt::white, 8,
                     ShowAlgorithmNumber);
    painter.end();
    const QRect beside(3120, 345, 780, 210); // left of the frame's round corners
    EXPECT_EQ(page.copy(beside), expected.copy(beside));
    EXPECT_TRUE(HasPixel(page, QRect(3300, 370, 600, 160), Black));
}

// The frame of a cell that is high and narrow, by its left edge; its picture is wider than the
// cell.
QRect LeftEdgeOf(const QImage &page, int left) {
    return InkOf(page, QRect(left, 0, 30, page.height()), White);
}

TEST(Dx7PrintedVoice, AnOddVoiceGoesBelowTheRowsOfItsPage) {
    // Three voices: one row of the whole height; the third voice lies below the page.
    EXPECT_EQ(LeftEdgeOf(PrintPage(1, 3), 500), QRect(QPoint(509, 9), QPoint(529, 1590)));
    EXPECT_TRUE(FrameOf(PrintPage(2, 3)).isEmpty());
}

TEST(Dx7PrintedVoice, ASingleVoiceTakesTheWholeHeight) {
    EXPECT_EQ(LeftEdgeOf(PrintPage(0, 1), 0), QRect(QPoint(9, 9), QPoint(29, 1590)));
}

TEST(Dx7PrintedVoice, ABlockTooShortForAVoicePaintsNothing) {
    const std::vector<std::uint8_t> cut(155, 1);
    EXPECT_EQ(FrameOf(PrintPage(0, 32, MakeVoiceObject(Dx7DriverId, cut))), QRect());
    EXPECT_EQ(FrameOf(PrintPage(0, 32, VoiceObject{})), QRect());
}

} // namespace
} // namespace tonewright
