// The tip of a list as it is shown and painted.
#include "common/view/file_tip.h"

#include "common/view/fonts.h"
#include "support/pixels.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QFontMetrics>
#include <QMouseEvent>
#include <QTest>

#include <algorithm>
#include <array>

namespace tonewright {
namespace {

const QString FourLines = "NAME: Bells\r\nSOURCE: Keys.syx\r\n"
                          "FILE DATE: Sat Nov 14 2:05:09 PM 2026\r\nPOSITION: 7";
constexpr QRgb Paper = 0xFFFFEEBB, Ink = 0xFF0000AA;

class FileTipOf : public testing::Test {
protected:
    FileTipOf() : former(QApplication::palette()), tip(&list) {
        QPalette colours = former;
        colours.setColor(QPalette::ToolTipBase, QColor(Paper));
        colours.setColor(QPalette::ToolTipText, QColor(Ink));
        QApplication::setPalette(colours);
        list.resize(600, 300);
        list.show();
    }
    ~FileTipOf() override { QApplication::setPalette(former); }

    QImage Painted() {
        QImage image = EmptyImage(tip.width(), tip.height());
        tip.render(&image, QPoint(), QRegion(), {});
        return image;
    }
    static int WidthOf(const char *line) {
        return QFontMetrics(FontOfHeight("Arial", 14)).horizontalAdvance(line);
    }

    const QPalette former;
    QWidget list;
    FileTip tip;
};

TEST_F(FileTipOf, IsHiddenAtFirst) {
    EXPECT_FALSE(tip.isVisible());
    EXPECT_EQ(tip.parentWidget(), &list);
    EXPECT_FALSE(tip.isWindow());
}

TEST_F(FileTipOf, HasTheSizeOfItsLinesAndATenthMore) {
    tip.ShowAt(FourLines, {100, 50});
    EXPECT_TRUE(tip.isVisible());
    const int widest = WidthOf("FILE DATE: Sat Nov 14 2:05:09 PM 2026");
    EXPECT_EQ(tip.geometry(), QRect(102, 66, widest * 110 / 100 + 8, 4 * 14 * 110 / 100 + 4));
    tip.ShowAt("One line", {590, 299});
    EXPECT_EQ(tip.size(), QSize(WidthOf("One line") * 110 / 100 + 8, 14 * 110 / 100 + 4));
    EXPECT_EQ(tip.geometry().right(), 599);
    EXPECT_EQ(tip.geometry().bottom(), 299);
}

TEST_F(FileTipOf, LetsTheMouseThrough) {
    tip.ShowAt(FourLines, {100, 50});
    EXPECT_EQ(list.childAt(tip.geometry().center()), nullptr);
}

TEST_F(FileTipOf, HasABlackFrameAndAShadowRightAndBelow) {
    tip.ShowAt(FourLines, {100, 50});
    const QImage image = Painted();
    const int right = image.width() - 1, bottom = image.height() - 1;
    EXPECT_TRUE(IsAll(image, QRect(0, 0, right, 1), Black));
    EXPECT_TRUE(IsAll(image, QRect(0, 0, 1, bottom), Black));
    EXPECT_TRUE(IsAll(image, QRect(QPoint(right - 1, 1), QPoint(right, bottom)), Black));
    EXPECT_TRUE(IsAll(image, QRect(QPoint(1, bottom - 1), QPoint(right, bottom)), Black));
    EXPECT_EQ(image.pixel(right, 0), Untouched);
    EXPECT_EQ(image.pixel(0, bottom), Untouched);
    EXPECT_EQ(image.pixel(1, 1), Paper);
    EXPECT_EQ(image.pixel(right - 2, bottom - 2), Paper);
    EXPECT_FALSE(HasPixel(image, QRect(1, 1, right - 2, bottom - 2), Black));
}

TEST_F(FileTipOf, WritesSeveralLinesFromTheLeft) {
    tip.ShowAt(FourLines, {100, 50});
    const QImage image = Painted();
    const QRect inner(1, 1, image.width() - 3, image.height() - 3);
    const int left = image.width() * 5 / 100, top = image.height() * 5 / 100;
    const QRect ink = InkOf(image, inner, Paper);
    EXPECT_GE(ink.left(), left);
    EXPECT_LE(ink.left(), left + 2);
    EXPECT_LE(ink.right(), image.width() - left);
    for (int line = 0; line < 4; ++line) {
        const QRect cell(left, top + 14 * line, inner.width() - left, 14);
        EXPECT_TRUE(HasPixel(image, cell, Ink)) << line;
    }
    EXPECT_LE(ink.bottom(), top + 4 * 14);
}

TEST_F(FileTipOf, WritesOneLineInTheMiddle) {
    tip.ShowAt("HHHH", {100, 50});
    const QImage image = Painted();
    const QRect ink = InkOf(image, QRect(1, 1, image.width() - 3, image.height() - 3), Paper);
    EXPECT_NEAR(ink.left(), image.width() - 1 - ink.right(), 2);
}

TEST_F(FileTipOf, CannotBeMadeAnotherTextByWhatANameHolds) {
    tip.ShowAt(QString("NAME: a[*]b") + QChar(0x9C) + "long\r\nPOSITION: 1", {0, 0});
    EXPECT_EQ(tip.width(), WidthOf("NAME: a[*]b\u0080long") * 110 / 100 + 8);
    EXPECT_EQ(tip.height(), 2 * 14 * 110 / 100 + 4);
}

TEST_F(FileTipOf, AScreenReaderFindsATipWithItsText) {
    tip.ShowAt("One line", {0, 0});
    const QAccessibleInterface *seen = QAccessible::queryAccessibleInterface(&tip);
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->role(), QAccessible::ToolTip);
    EXPECT_EQ(seen->text(QAccessible::Name), "One line");
}

TEST_F(FileTipOf, ShowsTheLatestText) {
    tip.ShowAt("HHHHHHHH", {0, 0});
    QTest::qWait(1);
    const QImage first = Painted();
    tip.ShowAt("IHHHHHHI", {0, 0});
    EXPECT_NE(Painted(), first);
}

} // namespace
} // namespace tonewright
