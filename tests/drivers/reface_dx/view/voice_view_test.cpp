// Tests of painted algorithms, list items and printed cells, pixel by pixel.
#include "drivers/reface_dx/view/voice_view.h"

#include "common/view/fonts.h"
#include "core/dispatch.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/view/algorithm_view.h"
#include "support/pixels.h"
#include "support/reface_bytes.h"

#include <QApplication>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QPalette>

#include <string>

#include <gtest/gtest.h>

namespace tonewright {
namespace {

using DrawFunction = void (*)(QPainter &, const Rectangle &, int, QColor, QColor, int, bool);

// A picture of `width` by `height` with ten pixels around it, which no picture here leaves.
constexpr int Around = 10;
QImage Paint(DrawFunction draw, int algorithm, int width, int height, int weight, bool withNumber,
             QColor ink = Qt::black, QColor paper = Qt::white) {
    QImage image = EmptyImage(width + 2 * Around, height + 2 * Around);
    QPainter painter(&image);
    draw(painter, {Around, Around, Around + width, Around + height}, algorithm, ink, paper, weight,
         withNumber);
    return image;
}

VoiceObject MakeVoice(const std::string &name, int algorithm) {
    VoiceObject voice{TestRefaceBlock(0)};
    for (std::size_t i = 0; i < 10; ++i) {
        voice.bytes[52 + i] = i < name.size() ? static_cast<std::uint8_t>(name[i]) : 0;
    }
    voice.bytes[52 + 16] = static_cast<std::uint8_t>(algorithm);
    return voice;
}

ItemFonts ListFonts() {
    ItemFonts fonts;
    fonts.title = {.family = "TIMES NEW ROMAN", .height = 28, .weight = 700};
    fonts.label = {.family = "ARIAL", .height = 14, .weight = 500};
    fonts.itemHeight = 48;
    return fonts;
}

// ---- algorithms
//
// A picture of 408 by 108 with lines of 2 has a drawing area of 400 by 100, which begins 4 from its
// corner: boxes of 37 at 0, 100, 200 and 300, from 18 to 55; lines above at 0, below at 73.

TEST(RefaceAlgorithmView, BoxesAndLinesStandWhereTheUnitsSay) {
    const QImage image = Paint(DrawRefaceAlgorithm, 4, 408, 108, 2, true);
    const int x = Around + 4, y = Around + 4;
    // The square of operator 1: strokes of two pixels around its edges.
    EXPECT_EQ(RunOfRow(image, x, y + 22), std::make_pair(x - 1, x));
    EXPECT_EQ(RunOfRow(image, x + 37, y + 22), std::make_pair(x + 36, x + 37));
    EXPECT_EQ(RunOfColumn(image, x + 5, y + 18), std::make_pair(y + 17, y + 18));
    EXPECT_EQ(RunOfColumn(image, x + 5, y + 55), std::make_pair(y + 54, y + 55));
    // The line to operator 2, in the middle of the boxes.
    EXPECT_EQ(RunOfColumn(image, x + 70, y + 36), std::make_pair(y + 35, y + 36));
    // The line above from 1 to 3, and the one below from 1 to 4.
    EXPECT_EQ(RunOfColumn(image, x + 118, y), std::make_pair(y - 1, y));
    EXPECT_EQ(RunOfRow(image, x + 118, y), std::make_pair(x + 17, x + 218));
    EXPECT_EQ(RunOfRow(image, x + 118, y + 73), std::make_pair(x + 17, x + 318));
    EXPECT_EQ(RunOfRow(image, x + 218, y + 8), std::make_pair(x + 217, x + 218));
    EXPECT_EQ(RunOfRow(image, x + 318, y + 64), std::make_pair(x + 317, x + 318));
    // Nothing joins 2 and 3.
    EXPECT_EQ(image.pixel(x + 170, y + 36), White);
}

TEST(RefaceAlgorithmView, ACarrierIsASquareAndAModulatorACircle) {
    const QImage image = Paint(DrawRefaceAlgorithm, 7, 408, 108, 2, true);
    for (int box = 0; box < 4; ++box) {
        const QPoint corner(Around + 4 + 100 * box, Around + 4 + 18);
        EXPECT_EQ(image.pixel(corner) == Black, box == 0 || box == 2) << box;
        // Both touch the middles of their edges, and are filled with the paper.
        EXPECT_EQ(image.pixel(corner + QPoint(18, 0)), Black) << box;
        EXPECT_EQ(image.pixel(corner + QPoint(18, 37)), Black) << box;
        EXPECT_EQ(image.pixel(corner + QPoint(7, 18)), White) << box;
    }
}

TEST(RefaceAlgorithmView, TheOperatorsNumberStandsInTheMiddleOfItsBox) {
    const QImage image = Paint(DrawRefaceAlgorithm, 11, 408, 108, 2, false);
    // Without the number of the algorithm: boxes of 50, from 25 to 75.
    for (int box = 0; box < 4; ++box) {
        const QRect inside(Around + 4 + 100 * box + 5, Around + 4 + 25 + 5, 40, 40);
        const QRect digit = InkOf(image, inside);
        EXPECT_GT(digit.height(), 20) << box;
        EXPECT_NEAR(digit.center().x(), inside.center().x(), 3) << box;
        EXPECT_NEAR(digit.center().y(), inside.center().y(), 3) << box;
    }
    const QFont font = FontOfHeight("ARIAL", 40, 700); // 80 percent of the box
    EXPECT_NEAR(InkOf(image, QRect(Around + 309, Around + 34, 40, 40)).width(),
                QFontMetrics(font).tightBoundingRect("4").width(), 2);
}

TEST(RefaceAlgorithmView, TheAlgorithmsNumberStandsBelowTheBoxesOfItsRow) {
    struct Row {
        int algorithm, middle;
    };
    // Below box 1, between boxes 1 and 2, below box 2.
    for (const Row row : {Row{0, 18}, Row{5, 68}, Row{7, 118}, Row{9, 118}}) {
        const QImage image = Paint(DrawRefaceAlgorithm, row.algorithm, 408, 108, 2, true);
        const QRect ink = InkOf(image, QRect(Around, Around + 4 + 76, 408, 28));
        EXPECT_NEAR(ink.center().x(), Around + 4 + row.middle, 3) << row.algorithm;
        EXPECT_GT(ink.height(), 15) << row.algorithm;
    }
    const QImage plain = Paint(DrawRefaceAlgorithm, 0, 408, 108, 2, false);
    EXPECT_TRUE(IsAll(plain, QRect(Around, Around + 4 + 80, 408, 24), White));
}

TEST(RefaceAlgorithmView, ThePaperCoversTheRectangleAndNothingAroundIt) {
    for (const DrawFunction draw : {DrawRefaceAlgorithm, DrawRefaceAlgorithmSmooth}) {
        const QImage image = Paint(draw, 5, 408, 108, 2, true, Qt::red, QColor(10, 200, 30));
        const QRgb green = qRgb(10, 200, 30);
        for (const QPoint corner :
             {QPoint(0, 0), QPoint(407, 0), QPoint(0, 107), QPoint(407, 107)}) {
            EXPECT_EQ(image.pixel(corner + QPoint(Around, Around)), green);
        }
        EXPECT_EQ(image.pixel(Around + 4 + 4, Around + 4 + 22), green) << "inside a box";
        EXPECT_TRUE(HasPixel(image, image.rect(), qRgb(255, 0, 0)));
        EXPECT_FALSE(HasPixel(image, image.rect(), Black));
        EXPECT_TRUE(IsAll(image, QRect(0, 0, 428, Around), Untouched));
        EXPECT_TRUE(IsAll(image, QRect(0, Around + 108, 428, Around), Untouched));
        EXPECT_TRUE(IsAll(image, QRect(0, 0, Around, 128), Untouched));
        EXPECT_TRUE(IsAll(image, QRect(Around + 408, 0, Around, 128), Untouched));
    }
}

TEST(RefaceAlgorithmView, AnAlgorithmOf12OrMoreShowsOnlyTheEmptyPaper) {
    for (const DrawFunction draw : {DrawRefaceAlgorithm, DrawRefaceAlgorithmSmooth}) {
        for (const int algorithm : {12, 13, 255, -1}) {
            EXPECT_TRUE(IsAll(Paint(draw, algorithm, 408, 108, 2, true),
                              QRect(Around, Around, 408, 108), White))
                << algorithm;
        }
    }
}

TEST(RefaceAlgorithmView, EveryWeightOfLineCoversWholePixels) {
    struct Row {
        int width, height, weight; // the drawing area is 400 by 100 in every row
        int before, after;         // pixels of a stroke before and after its coordinate
    };
    for (const Row row : {Row{396, 96, -1, 0, 0}, Row{400, 100, 0, 0, 0}, Row{404, 104, 1, 0, 0},
                          Row{408, 108, 2, 1, 0}, Row{412, 112, 3, 1, 1}, Row{416, 116, 4, 2, 1}}) {
        const QImage image = Paint(DrawRefaceAlgorithm, 2, row.width, row.height, row.weight, true);
        const int x = Around + 2 * row.weight, y = Around + 2 * row.weight;
        EXPECT_EQ(RunOfColumn(image, x + 70, y + 36),
                  std::make_pair(y + 36 - row.before, y + 36 + row.after))
            << row.weight;
        EXPECT_EQ(RunOfRow(image, x + 318, y + 64),
                  std::make_pair(x + 318 - row.before, x + 318 + row.after))
            << row.weight;
    }
}

TEST(RefaceAlgorithmView, ThePainterIsLeftAsItWasAndASmoothingOneGivesTheSamePicture) {
    QImage image = EmptyImage(428, 128);
    QPainter painter(&image);
    const QFont font = FontOfHeight("TIMES NEW ROMAN", 28, 700);
    painter.setFont(font);
    painter.setPen(QPen(Qt::red, 5));
    painter.setBrush(Qt::yellow);
    painter.setRenderHint(QPainter::Antialiasing);
    DrawRefaceAlgorithm(painter, {Around, Around, Around + 408, Around + 108}, 3, Qt::black,
                        Qt::white, 2, true);
    EXPECT_EQ(painter.font(), font);
    EXPECT_EQ(painter.pen(), QPen(Qt::red, 5));
    EXPECT_EQ(painter.brush(), QBrush(Qt::yellow));
    EXPECT_TRUE(painter.testRenderHint(QPainter::Antialiasing));
    painter.end();
    EXPECT_EQ(image, Paint(DrawRefaceAlgorithm, 3, 408, 108, 2, true));
}

TEST(RefaceAlgorithmView, TinyEmptyAndReversedRectanglesDoNoHarm) {
    QImage image = EmptyImage(100, 100);
    QPainter painter(&image);
    for (const DrawFunction draw : {DrawRefaceAlgorithm, DrawRefaceAlgorithmSmooth}) {
        for (const int size : {-20, -1, 0, 1, 2, 8, 9, 12}) {
            for (const int weight : {-2, 0, 1, 2, 8}) {
                draw(painter, {50, 50, 50 + size, 50 + size}, 8, Qt::black, Qt::white, weight,
                     true);
            }
        }
    }
}

// ---- the smooth form

// The picture at four times its size, each square of 4 by 4 pixels averaged, the long way round.
QImage AveragedPicture(int algorithm, int width, int height, int weight, bool withNumber,
                       QColor ink, QColor paper) {
    QImage large = EmptyImage(4 * width, 4 * height);
    QPainter painter(&large);
    DrawRefaceAlgorithm(painter, {0, 0, 4 * width, 4 * height}, algorithm, ink, paper, 4 * weight,
                        withNumber);
    painter.end();
    QImage image = EmptyImage(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            double red = 0, green = 0, blue = 0;
            for (int pixel = 0; pixel < 16; ++pixel) {
                const QRgb colour = large.pixel(4 * x + pixel % 4, 4 * y + pixel / 4);
                red += qRed(colour) / 16.0;
                green += qGreen(colour) / 16.0;
                blue += qBlue(colour) / 16.0;
            }
            image.setPixel(x, y, qRgb(qRound(red), qRound(green), qRound(blue)));
        }
    }
    return image;
}

TEST(RefaceAlgorithmSmooth, IsThePictureAtFourTimesItsSizeAveragedInSquaresOf4By4) {
    const QColor ink(200, 20, 90), paper(10, 250, 240);
    for (const int weight : {1, 2, 3}) {
        for (const bool withNumber : {false, true}) {
            for (int algorithm = 0; algorithm < 12; ++algorithm) {
                const QImage image = Paint(DrawRefaceAlgorithmSmooth, algorithm, 200, 40, weight,
                                           withNumber, ink, paper);
                EXPECT_EQ(image.copy(Around, Around, 200, 40),
                          AveragedPicture(algorithm, 200, 40, weight, withNumber, ink, paper))
                    << algorithm << " with lines of " << weight;
            }
        }
    }
}

TEST(RefaceAlgorithmSmooth, GivesTheEdgesOfACircleColoursBetweenInkAndPaper) {
    const QImage image = Paint(DrawRefaceAlgorithmSmooth, 0, 408, 108, 2, false);
    int between = 0;
    for (int y = 30; y < 90; ++y) {
        for (int x = 115; x < 165; ++x) { // around operator 2
            between += image.pixel(x, y) != Black && image.pixel(x, y) != White;
        }
    }
    EXPECT_GT(between, 50);
}

TEST(RefaceAlgorithmSmooth, IsCutOffAtItsRectangle) {
    // The number of a picture with lines of weight 0 reaches below it.
    const QImage image = Paint(DrawRefaceAlgorithmSmooth, 7, 400, 100, 0, true);
    EXPECT_TRUE(IsAll(image, QRect(0, Around + 100, 420, Around), Untouched));
}

TEST(RefaceAlgorithmSmooth, OnADenseScreenIsAsFineAsTheScreen) {
    QImage image = EmptyImage(2 * 220, 2 * 60);
    image.setDevicePixelRatio(2);
    QPainter painter(&image);
    DrawRefaceAlgorithmSmooth(painter, {Around, Around, Around + 200, Around + 40}, 3, Qt::black,
                              Qt::white, 2, true);
    painter.end();
    image.setDevicePixelRatio(1);
    QImage expected = EmptyImage(440, 120);
    QPainter reference(&expected);
    DrawRefaceAlgorithmSmooth(reference, {20, 20, 420, 100}, 3, Qt::black, Qt::white, 4, true);
    reference.end();
    EXPECT_EQ(image, expected);
}

TEST(RefaceAlgorithmSmooth, LinesAreAsWideAsTheScreenIsDense) {
    for (const double density : {1.0, 1.25, 1.5, 1.75, 2.0}) {
        for (const int weight : {1, 2, 3}) {
            // The line below, from operator 1 to operator 4, crossed in the middle of the picture.
            QImage image =
                EmptyImage(static_cast<int>(400 * density), static_cast<int>(100 * density), White);
            image.setDevicePixelRatio(density);
            QPainter painter(&image);
            DrawRefaceAlgorithmSmooth(painter, {0, 0, 400, 100}, 11, Qt::black, Qt::white, weight,
                                      false);
            painter.end();
            double ink = 0;
            for (int y = image.height() * 80 / 100; y < image.height(); ++y) {
                ink += (255 - qRed(image.pixel(image.width() / 2, y))) / 255.0;
            }
            EXPECT_NEAR(ink, weight * density, 0.02) << weight << " at " << density;
        }
    }
}

TEST(RefaceAlgorithmSmooth, APictureTooLargeToSmoothIsDrawnDirectly) {
    EXPECT_EQ(Paint(DrawRefaceAlgorithmSmooth, 8, 4000, 1000, 12, true),
              Paint(DrawRefaceAlgorithm, 8, 4000, 1000, 12, true));
}

// ---- list items

constexpr int ItemWidth = 560;
const QRect LabelArea(0, 0, 280, 16);
const QRect NameArea(0, 16, 280, 32);

// An item of the list as the main window asks for it: background filled, text colour set.
QImage PaintItem(const VoiceObject &voice, int index, bool selected, QRgb text = Black,
                 QRgb background = White) {
    QImage image = EmptyImage(ItemWidth, 48, background);
    QPainter painter(&image);
    painter.setPen(QColor(text));
    const DrawItem item = {.painter = &painter,
                           .rectangle = {0, 0, ItemWidth, 48},
                           .itemIndex = index,
                           .selected = selected};
    EXPECT_EQ(RefaceDrawVoiceItem(item, ListFonts(), voice, 1), 1);
    return image;
}

QImage PaintText(const QFont &font, int x, int top, int bottom, const QString &text,
                 QRgb colour = Black) {
    QImage image = EmptyImage(ItemWidth, 48, White);
    QPainter painter(&image);
    painter.setPen(QColor(colour));
    painter.setFont(font);
    const QFontMetrics metrics(font);
    const int cell = metrics.ascent() + metrics.descent();
    painter.drawText(x, top + (bottom - top - cell) / 2 + metrics.ascent(), text);
    return image;
}

QImage PaintLabel(const QString &text, QRgb colour = Black) {
    return PaintText(FontOfHeight("ARIAL", 14, 500), 4, 2, 16, text, colour).copy(LabelArea);
}

QImage PaintName(const QString &text, QRgb colour = Black) {
    return PaintText(FontOfHeight("TIMES NEW ROMAN", 28, 700), 16, 16, 44, text, colour)
        .copy(NameArea);
}

TEST(RefaceVoiceItem, ThePlaceIsShownWithItsBankAndProgram) {
    struct Row {
        int index;
        const char *text;
    };
    for (const Row row :
         {Row{0, "1 (Bank 1 - 1)"}, Row{7, "8 (Bank 1 - 8)"}, Row{8, "9 (Bank 2 - 1)"},
          Row{31, "32 (Bank 4 - 8)"}, Row{32, "33 (Bank 5 - 1)"}}) {
        const QImage image = PaintItem(MakeVoice("X", 0), row.index, false);
        EXPECT_EQ(image.copy(LabelArea), PaintLabel(row.text)) << row.text;
    }
}

TEST(RefaceVoiceItem, TheNameStandsBelowInTheTitleFont) {
    EXPECT_EQ(PaintItem(MakeVoice("LegacyEP", 4), 0, false).copy(NameArea), PaintName("LegacyEP"));
}

TEST(RefaceVoiceItem, BytesOfANameAreLatin1) {
    const QImage image = PaintItem(MakeVoice("\xC4"
                                             "B & \xE9",
                                             4),
                                   0, false);
    EXPECT_EQ(image.copy(NameArea), PaintName(QString(QChar(0xC4)) + "B & " + QChar(0xE9)));
}

TEST(RefaceVoiceItem, AZeroFilledVoiceHasNoNameAndTheFirstAlgorithm) {
    const QImage image = PaintItem(MakeVoice("", 0), 0, false);
    EXPECT_TRUE(IsAll(image, NameArea, White));
    const QRect area(280, 0, ItemWidth - 280, 48);
    EXPECT_EQ(image.copy(area), PaintItem(MakeVoice("X", 0), 0, false).copy(area));
    EXPECT_FALSE(IsAll(image, area, White));
}

TEST(RefaceVoiceItem, ThePictureIsThatOfTheVoicesAlgorithmSmoothWithItsNumber) {
    const QImage image = PaintItem(MakeVoice("X", 9), 0, false, Black, Untouched);
    QImage expected = EmptyImage(ItemWidth, 48);
    QPainter painter(&expected);
    DrawRefaceAlgorithmSmooth(painter, {280, 4, ItemWidth - 24, 44}, 9, Qt::black, Qt::white, 2,
                              true);
    painter.end();
    const QRect area(280, 0, ItemWidth - 280, 48);
    EXPECT_EQ(image.copy(area), expected.copy(area));
    // It lies 280 from the left, 24 from the right, and 4 from top and bottom.
    for (const QPoint corner :
         {QPoint(280, 4), QPoint(ItemWidth - 25, 4), QPoint(280, 43), QPoint(ItemWidth - 25, 43)}) {
        EXPECT_EQ(image.pixel(corner), White);
    }
    EXPECT_TRUE(IsAll(image, QRect(ItemWidth - 24, 0, 24, 48), Untouched));
}

TEST(RefaceVoiceItem, ASelectedItemShowsItsPictureInTheHighlightColours) {
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Highlight, QColor(0, 0, 160));
    palette.setColor(QPalette::HighlightedText, QColor(255, 255, 0));
    QApplication::setPalette(palette);
    const QImage image = PaintItem(MakeVoice("X", 8), 0, true, White, Untouched);
    QImage expected = EmptyImage(ItemWidth, 48);
    QPainter painter(&expected);
    DrawRefaceAlgorithmSmooth(painter, {280, 4, ItemWidth - 24, 44}, 8, QColor(255, 255, 0),
                              QColor(0, 0, 160), 2, true);
    painter.end();
    const QRect area(280, 0, ItemWidth - 280, 48);
    EXPECT_EQ(image.copy(area), expected.copy(area));
    EXPECT_EQ(image.pixel(280, 4), qRgb(0, 0, 160));
}

TEST(RefaceVoiceItem, TheTwoLinesOfTextTakeTheColourThatTheWindowSet) {
    const QRgb red = qRgb(255, 0, 0);
    for (const bool selected : {false, true}) {
        const QImage image = PaintItem(MakeVoice("LegacyEP", 4), 8, selected, red);
        EXPECT_EQ(image.copy(LabelArea), PaintLabel("9 (Bank 2 - 1)", red));
        EXPECT_EQ(image.copy(NameArea), PaintName("LegacyEP", red));
    }
}

TEST(RefaceVoiceItem, AnItemFurtherDownTheListLooksTheSame) {
    const VoiceObject voice = MakeVoice("LOWER", 9);
    QImage image = EmptyImage(ItemWidth, 480, White);
    QPainter painter(&image);
    const DrawItem item = {.painter = &painter,
                           .rectangle = {0, 240, ItemWidth, 288},
                           .itemIndex = 5,
                           .selected = false};
    EXPECT_EQ(RefaceDrawVoiceItem(item, ListFonts(), voice, 1), 1);
    painter.end();
    EXPECT_EQ(image.copy(0, 240, ItemWidth, 48), PaintItem(voice, 5, false));
}

TEST(RefaceVoiceItem, AnAlgorithmOf12OrMoreShowsOnlyTheEmptyPaper) {
    const QImage image = PaintItem(MakeVoice("X", 12), 0, false, Black, Untouched);
    EXPECT_TRUE(IsAll(image, QRect(280, 4, ItemWidth - 304, 40), White));
}

// The block of a voice with numbers of its header replaced: 4 payload offset, 8 payload size, 12
// extra size, 16 driver.
VoiceObject WithNumbers(const std::vector<std::pair<std::size_t, std::uint32_t>> &numbers) {
    VoiceObject voice{TestRefaceBlock(0)};
    for (const auto &[offset, number] : numbers) {
        PutTestNumber(voice.bytes, offset, number);
    }
    return voice;
}

// A block shorter than it says, one without a whole common block, one with a wrong magic; sizes of
// which no block has as much.
std::vector<VoiceObject> BrokenVoices() {
    constexpr std::uint32_t huge = 0xFFFFFFFF;
    VoiceObject cut{TestRefaceBlock(0)}, small = cut, magic = cut;
    cut.bytes.resize(100);
    small.bytes[8] = 37;
    magic.bytes[0] ^= 1;
    return {cut,
            small,
            magic,
            VoiceObject{},
            VoiceObject{{1, 2, 3}},
            WithNumbers({{4, huge}}),
            WithNumbers({{8, huge}}),
            WithNumbers({{12, huge}}),
            WithNumbers({{4, huge}, {8, huge}, {12, huge}}),
            WithNumbers({{4, huge - 37}, {8, 38}, {12, 202}}), // 202 again, in 32 bits
            WithNumbers({{4, 0}, {8, 0}, {12, 0}})};
}

TEST(RefaceVoiceItem, ABlockThatHoldsLessThanAVoicePaintsNothing) {
    for (const VoiceObject &voice : BrokenVoices()) {
        EXPECT_TRUE(IsAll(PaintItem(voice, 0, false, Black, Untouched), QRect(0, 0, ItemWidth, 48),
                          Untouched));
    }
}

TEST(RefaceVoiceItem, ABlockWithoutItsOperatorsPaintsNameAndPicture) {
    const QImage whole = PaintItem(VoiceObject{TestRefaceBlock(0)}, 3, false);
    for (const std::uint32_t extraSize : {0u, 70u, 111u}) {
        EXPECT_EQ(PaintItem(WithNumbers({{12, extraSize}}), 3, false), whole) << extraSize;
    }
}

TEST(RefaceVoiceItem, TheVoiceIsTakenFromWhereItsHeaderSays) {
    const VoiceObject voice = MakeVoice("MOVED", 7);
    VoiceObject moved = voice;
    moved.bytes.insert(moved.bytes.begin() + 52, 30, std::uint8_t{'x'});
    moved.bytes[4] = 82;
    EXPECT_EQ(PaintItem(moved, 3, false), PaintItem(voice, 3, false));
}

TEST(RefaceVoiceItem, AnItemOfTheListIsPaintedByTheFamilyThatItsBlockNames) {
    const auto paint = [](const VoiceObject &voice) {
        QImage image = EmptyImage(ItemWidth, 48, Untouched);
        QPainter painter(&image);
        const DrawItem item = {.painter = &painter,
                               .rectangle = {0, 0, ItemWidth, 48},
                               .itemIndex = 3,
                               .selected = false};
        EXPECT_EQ(DrawVoiceObject(item, voice, ListFonts()), 0);
        return image;
    };
    const VoiceObject voice{TestRefaceBlock(0)};
    EXPECT_EQ(paint(voice), PaintItem(voice, 3, false, Black, Untouched));
    // The other family finds no voice of its own in it.
    for (const DriverId family : {Dx7DriverId, MakeDriverId("none")}) {
        EXPECT_TRUE(
            IsAll(paint(WithNumbers({{16, family}})), QRect(0, 0, ItemWidth, 48), Untouched));
    }
    for (const VoiceObject &broken : BrokenVoices()) {
        EXPECT_TRUE(IsAll(paint(broken), QRect(0, 0, ItemWidth, 48), Untouched));
    }
}

// ---- printed cells
//
// A page of 1000 by 1600 with 32 voices: columns 500 wide, rows 100 high; a cell is shrunk by 10.

QImage PrintPage(int index, int voicesOnPage = 32, const VoiceObject &voice = MakeVoice("X", 12)) {
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
    EXPECT_EQ(RefacePrintVoice(painter, voice, cell), 1);
    return image;
}

QRect FrameOf(const QImage &page) {
    return InkOf(page, page.rect());
}

TEST(RefacePrintedVoice, VoicesFillTwoColumnsRowByRow) {
    // A frame of two pixels lies on either side of the cell's edges.
    EXPECT_EQ(FrameOf(PrintPage(0)), QRect(QPoint(9, 9), QPoint(490, 90)));
    EXPECT_EQ(FrameOf(PrintPage(1)), QRect(QPoint(509, 9), QPoint(990, 90)));
    EXPECT_EQ(FrameOf(PrintPage(2)), QRect(QPoint(9, 109), QPoint(490, 190)));
    EXPECT_EQ(FrameOf(PrintPage(31)), QRect(QPoint(509, 1509), QPoint(990, 1590)));
}

TEST(RefacePrintedVoice, ACellStartsAtTheCornerOfThePrintableArea) {
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
    RefacePrintVoice(painter, MakeVoice("X", 12), cell);
    painter.end();
    EXPECT_EQ(FrameOf(image), QRect(QPoint(559, 179), QPoint(1040, 260)));
}

TEST(RefacePrintedVoice, ThePictureLiesOverTheFrame) {
    const QImage page = PrintPage(0);
    for (const QPoint corner : {QPoint(9, 9), QPoint(490, 9), QPoint(9, 90), QPoint(490, 90)}) {
        EXPECT_EQ(page.pixel(corner), White);
    }
    QImage expected = EmptyImage(1000, 1600, White);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::black, 2));
    painter.drawRoundedRect(QRectF(10, 10, 480, 80), 5, 5);
    // Its paper covers what of the round corners lies within its rectangle: hardly anything.
    EXPECT_EQ(expected.pixel(487, 13), White);
    EXPECT_NE(expected.pixel(488, 13), White);
    painter.fillRect(308, 13, 489 - 308, 87 - 13, Qt::white);
    painter.end();
    const QRect rightEnd(470, 0, 30, 100);
    EXPECT_EQ(page.copy(rightEnd), expected.copy(rightEnd));
}

TEST(RefacePrintedVoice, NameAndPlaceTakeSixtyPercentOfTheCell) {
    const QImage page = PrintPage(10, 32, MakeVoice("LegacyEP", 12));
    // The cell of index 10 runs from 510 to 590 and has a margin of 1; texts from 20 to 20 + 288.
    QImage expected = EmptyImage(1000, 1600, White);
    QPainter painter(&expected);
    const auto write = [&](const QFont &font, int top, int bottom, const QString &text) {
        painter.setFont(font);
        const QFontMetrics metrics(font);
        const int cell = metrics.ascent() + metrics.descent();
        painter.drawText(20, top + (bottom - top - cell) / 2 + metrics.ascent(), text);
    };
    write(FontOfHeight("TIMES NEW ROMAN", 32, 700), 555, 587, "LegacyEP");
    write(FontOfHeight("ARIAL", 12, 500), 513, 555, "11 (Bank 2 - 3)");
    painter.end();
    const QRect text(20, 513, 288, 74);
    EXPECT_EQ(page.copy(text), expected.copy(text));
    EXPECT_TRUE(HasPixel(page, text, Black));
}

TEST(RefacePrintedVoice, ANameTooWideForItsBoxEndsInAnEllipsis) {
    const QFontMetrics metrics(FontOfHeight("TIMES NEW ROMAN", 32, 700));
    ASSERT_GT(metrics.horizontalAdvance("WWWWWWWWWW"), 288);
    const QImage page = PrintPage(0, 32, MakeVoice("WWWWWWWWWW", 12));
    const QRect ink = InkOf(page, QRect(14, 55, 300, 30));
    EXPECT_LT(ink.right(), 20 + 288);
    EXPECT_GT(ink.right(), 20 + 230);
}

TEST(RefacePrintedVoice, ThePictureFillsTheRestOfTheCell) {
    const QImage page = PrintPage(0, 32, MakeVoice("X", 6));
    QImage expected = EmptyImage(1000, 1600, White);
    QPainter painter(&expected);
    DrawRefaceAlgorithmSmooth(painter, {308, 13, 489, 87}, 6, Qt::black, Qt::white, 1, true);
    painter.end();
    const QRect picture(308, 12, 165, 76); // left of the frame's round corners
    EXPECT_EQ(page.copy(picture), expected.copy(picture));
    EXPECT_TRUE(HasPixel(page, picture, Black));
}

TEST(RefacePrintedVoice, ThePicturesLinesGrowWithThePage) {
    QImage image = EmptyImage(4000, 6400, White);
    QPainter painter(&image);
    const PrintCell cell = {.index = 0,
                            .pageWidth = 4000,
                            .pageHeight = 6400,
                            .left = 0,
                            .top = 0,
                            .voicesOnPage = 32,
                            .titleFontHeight = 128,
                            .labelFontHeight = 48};
    RefacePrintVoice(painter, MakeVoice("X", 0), cell);
    painter.end();
    // m is 6; the cell runs from 40 to 1960 and 40 to 360, its texts to 80 + 1152.
    QImage expected = EmptyImage(4000, 6400, White);
    QPainter reference(&expected);
    DrawRefaceAlgorithmSmooth(reference, {1232, 58, 1954, 342}, 0, Qt::black, Qt::white, 6, true);
    reference.end();
    const QRect picture(1232, 50, 660, 300);
    EXPECT_EQ(image.copy(picture), expected.copy(picture));
}

TEST(RefacePrintedVoice, ASmallPageKeepsMarginsOfOnePixel) {
    QImage image = EmptyImage(80, 100, White);
    QPainter painter(&image);
    const PrintCell cell = {.index = 0,
                            .pageWidth = 80,
                            .pageHeight = 100,
                            .left = 0,
                            .top = 0,
                            .voicesOnPage = 2,
                            .titleFontHeight = 9,
                            .labelFontHeight = 3};
    EXPECT_EQ(RefacePrintVoice(painter, MakeVoice("X", 12), cell), 1);
    painter.end();
    // A cell of 1 to 39 by 1 to 99 with a frame of one pixel.
    EXPECT_EQ(FrameOf(image), QRect(QPoint(1, 1), QPoint(39, 99)));
}

TEST(RefacePrintedVoice, ABlockThatHoldsLessThanAVoicePaintsNothing) {
    for (const VoiceObject &voice : BrokenVoices()) {
        EXPECT_EQ(FrameOf(PrintPage(0, 32, voice)), QRect());
    }
}

} // namespace
} // namespace tonewright
