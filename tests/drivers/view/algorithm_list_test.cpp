// The list of algorithms in the voice editor and the picture beside it, pixel by pixel.
#include "sheet_window.h"

#include "common/view/fonts.h"
#include "common/view/system_colours.h"
#include "drivers/dx7/view/algorithm_view.h"
#include "drivers/reface_dx/view/algorithm_view.h"
#include "drivers/view/algorithm_list.h"
#include "support/pixels.h"

#include <QPainter>

namespace tonewright {
namespace {

const QRect NumberStrip(4, 0, 28, 36); // of an item, where its number stands

class AlgorithmsOfTheSheet : public SheetWindow {
protected:
    // What is seen of an item while the list is open.
    QImage ItemOf(int index) const {
        auto *list = Control<QComboBox>(106);
        list->showPopup();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(list->view()->window()));
        list->view()->scrollTo(list->model()->index(index, 0));
        const QRect area = list->view()->visualRect(list->model()->index(index, 0));
        const QImage image = list->view()->viewport()->grab(area).toImage();
        list->hidePopup();
        return image.convertToFormat(QImage::Format_RGB32);
    }
    QImage PictureImage() const {
        return Control(125)->grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    static Rectangle Area(const QImage &image, int left, int top, int right, int bottom) {
        return {.left = left,
                .top = top,
                .right = image.width() - right,
                .bottom = image.height() - bottom};
    }
};

TEST_F(AlgorithmsOfTheSheet, ItemsAndTheFieldHaveTheHeightOfTheFamily) {
    for (const auto &[sheets, height, count] :
         {std::tuple{&Dx7Sheets, 52, 32}, std::tuple{&RefaceSheets, 36, 12}}) {
        Edited(*sheets, [&, height = height, count = count] {
            auto *list = Control<QComboBox>(106);
            EXPECT_EQ(list->count(), count);
            EXPECT_EQ(ItemOf(0).height(), height);
            QStyleOptionComboBox option;
            option.initFrom(list);
            option.subControls = QStyle::SC_All;
            EXPECT_EQ(list->style()
                          ->subControlRect(QStyle::CC_ComboBox, &option,
                                           QStyle::SC_ComboBoxEditField, list)
                          .height(),
                      height);
            Cancel();
        });
    }
}

TEST_F(AlgorithmsOfTheSheet, AnItemOfADx7IsItsNumberAndItsPictureBlackOnWhite) {
    Edited(Dx7Sheets, [&] {
        const QImage item = ItemOf(31); // six boxes beside each other
        QImage expected(item.size(), QImage::Format_RGB32);
        expected.fill(Qt::white);
        {
            QPainter painter(&expected);
            DrawDx7Algorithm(painter, Area(item, 48, 4, 8, 4), 31, Qt::black, Qt::white, 2, 0);
        }
        const QRect picture(48, 4, item.width() - 56, item.height() - 8);
        EXPECT_EQ(item.copy(picture), expected.copy(picture));
        EXPECT_LT(InkOf(item, picture).right(), picture.right() - 2); // the whole of it
        const QRect number = InkOf(item, QRect(0, 0, 48, item.height()));
        EXPECT_GE(number.left(), 3);
        EXPECT_LE(number.right(), 32);
        EXPECT_GT(number.height(), 14);
        Cancel();
    });
}

TEST_F(AlgorithmsOfTheSheet, AnItemOfARefaceDxIsItsNumberAndItsSmoothPicture) {
    Edited(RefaceSheets, [&] {
        const QImage item = ItemOf(11);
        QImage expected(item.size(), QImage::Format_RGB32);
        expected.fill(Qt::white);
        {
            QPainter painter(&expected);
            DrawRefaceAlgorithmSmooth(painter, Area(item, 48, 0, 8, 0), 11, Qt::black, Qt::white, 1,
                                      false);
        }
        const QRect picture(48, 0, item.width() - 56, item.height());
        EXPECT_EQ(item.copy(picture), expected.copy(picture));
        EXPECT_FALSE(InkOf(item, NumberStrip).isEmpty());
        Cancel();
    });
}

TEST_F(AlgorithmsOfTheSheet, TheSelectedItemHasTheColoursOfTheHighlight) {
    const QRgb highlight = SystemColourOf(SystemColour::Highlight).rgb();
    const QRgb text = SystemColourOf(SystemColour::HighlightText).rgb();
    for (const SheetFamily *sheets : {&Dx7Sheets, &RefaceSheets}) {
        Edited(*sheets, [&] {
            Choose(106, 2);
            const QImage item = ItemOf(2);
            EXPECT_EQ(item.pixel(1, 1), highlight);
            EXPECT_EQ(item.pixel(item.width() - 2, 1), highlight);
            EXPECT_TRUE(HasPixel(item, NumberStrip, text));
            EXPECT_TRUE(HasPixel(item, QRect(48, 4, 100, 28), text));
            EXPECT_FALSE(HasPixel(item, item.rect(), Black));
            Cancel();
        });
    }
}

TEST_F(AlgorithmsOfTheSheet, TheFieldIsHighlightedWhileItHasTheFocus) {
    const QRgb highlight = SystemColourOf(SystemColour::Highlight).rgb();
    Edited(Dx7Sheets, [&] {
        const auto fieldIs = [&](QRgb colour) {
            const QImage image = Control(106)->grab().toImage();
            return image.pixel(image.width() / 2, 8) == colour;
        };
        Focus(101);
        EXPECT_TRUE(fieldIs(White));
        Focus(106);
        EXPECT_TRUE(fieldIs(highlight));
        Cancel();
    });
}

TEST_F(AlgorithmsOfTheSheet, DigitsSelectTheItemThatShowsTheirNumber) {
    const int pause = QApplication::keyboardInputInterval() + 50;
    for (const auto &[sheets, last] : {std::pair{&Dx7Sheets, 32}, std::pair{&RefaceSheets, 12}}) {
        SCOPED_TRACE(sheets->name);
        const Bytes bytes = Edited(*sheets, [&, last = last] {
            auto *list = Control<QComboBox>(106);
            const auto shown = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
                Key(key, modifiers);
                return list->currentIndex() + 1;
            };
            Focus(106);
            EXPECT_EQ(shown(Qt::Key_5), 5);
            QTest::qWait(pause);
            EXPECT_EQ(shown(Qt::Key_1), 1);
            EXPECT_EQ(shown(Qt::Key_2, Qt::KeypadModifier), 12);
            EXPECT_EQ(shown(Qt::Key_0), 12); // no item shows 120, or 0
            EXPECT_EQ(shown(Qt::Key_7), 7);
            QTest::qWait(pause);
            EXPECT_EQ(shown(Qt::Key_9), 9);
            EXPECT_EQ(shown(Qt::Key_A), 9);
            QTest::qWait(pause);
            Key(static_cast<Qt::Key>(Qt::Key_0 + last / 10));
            EXPECT_EQ(shown(static_cast<Qt::Key>(Qt::Key_0 + last % 10)), last);
            QTest::qWait(pause);
            EXPECT_EQ(shown(Qt::Key_6), 6);
            Ok();
        });
        EXPECT_EQ(bytes[sheets == &Dx7Sheets ? 134 : 16], 5);
    }
}

TEST_F(AlgorithmsOfTheSheet, DigitsFindAnItemOfTheOpenListAndReturnTakesIt) {
    Edited(Dx7Sheets, [&] {
        Choose(106, 2);
        auto *list = Control<QComboBox>(106);
        list->showPopup();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(list->view()->window()));
        QTest::keyClick(list->view(), Qt::Key_1);
        EXPECT_EQ(list->view()->currentIndex().row(), 0);
        QTest::keyClick(list->view(), Qt::Key_2);
        EXPECT_EQ(list->view()->currentIndex().row(), 11);
        EXPECT_EQ(list->currentIndex(), 2);
        QTest::keyClick(list->view(), Qt::Key_Return);
        EXPECT_EQ(list->currentIndex(), 11);
        EXPECT_TRUE(sheet->isVisible());
        Cancel();
    });
}

TEST_F(AlgorithmsOfTheSheet, ADisabledListShowsGreyNumbersOnWhite) {
    for (const auto &[sheets, grey] :
         {std::pair{&Dx7Sheets, SystemColourOf(SystemColour::GrayText)},
          std::pair{&RefaceSheets, SystemColourOf(SystemColour::ButtonShadow)}}) {
        Edited(*sheets, [&, grey = grey] {
            Control(106)->setEnabled(false);
            const QImage image =
                Control(106)->grab().toImage().convertToFormat(QImage::Format_RGB32);
            const QRect strip(6, 4, 30, image.height() - 8);
            EXPECT_TRUE(HasPixel(image, strip, grey.rgb()));
            EXPECT_FALSE(HasPixel(image, strip, Black));
            EXPECT_EQ(image.pixel(image.width() / 2, 8), White);
            Cancel();
        });
    }
}

TEST_F(AlgorithmsOfTheSheet, ThePictureShowsTheVoicesAlgorithmAndFollowsTheListAtOnce) {
    const QColor ink = SystemColourOf(SystemColour::DarkShadow3D);
    const QColor paper = SystemColourOf(SystemColour::ButtonFace);
    const auto expected = [&](const QImage &shown, int algorithm) {
        QImage image(shown.size(), QImage::Format_RGB32);
        image.fill(paper);
        {
            QPainter painter(&image);
            if (family == &Dx7Sheets) {
                DrawDx7Algorithm(painter, Area(image, 2, 10, 2, 10), algorithm, ink, paper, 1,
                                 ShowAlgorithmNumber);
            } else {
                DrawRefaceAlgorithmSmooth(painter, Area(image, 2, 2, 2, 2), algorithm, ink, paper,
                                          1, true);
            }
        }
        return image;
    };
    for (const SheetFamily *sheets : {&Dx7Sheets, &RefaceSheets}) {
        Edited(*sheets, [&] {
            Choose(106, 4);
            EXPECT_EQ(PictureImage(), expected(PictureImage(), 4)) << sheets->name;
            Choose(106, 9);
            EXPECT_EQ(PictureImage(), expected(PictureImage(), 9)) << sheets->name;
            ShowTab(1);
            EXPECT_EQ(PictureImage(), expected(PictureImage(), 9)) << sheets->name;
            Cancel();
        });
        VoiceEditPage = 0;
    }
}

TEST_F(AlgorithmsOfTheSheet, EveryPictureIsWhole) {
    for (const SheetFamily *sheets : {&Dx7Sheets, &RefaceSheets}) {
        Edited(*sheets, [&] {
            const QRgb paper = SystemColourOf(SystemColour::ButtonFace).rgb();
            for (int algorithm = 0; algorithm < Control<QComboBox>(106)->count(); ++algorithm) {
                Control<QComboBox>(106)->setCurrentIndex(algorithm);
                const QImage image = PictureImage();
                const QRect ink = InkOf(image, image.rect(), paper);
                EXPECT_TRUE(image.rect().adjusted(2, 2, -2, -2).contains(ink)) << algorithm;
            }
            Cancel();
        });
    }
}

TEST_F(AlgorithmsOfTheSheet, AnAlgorithmOfNoListShowsTheEmptyPaperAndSelectsNothing) {
    VoiceObject voice = RefaceSheets.voice;
    voice.bytes[VoiceObjectHeaderSize + 16] = 12;
    Edit(RefaceSheets, voice, [&] {
        EXPECT_EQ(Control<QComboBox>(106)->currentIndex(), -1);
        const QImage image = PictureImage();
        EXPECT_TRUE(IsAll(image, image.rect(), SystemColourOf(SystemColour::ButtonFace).rgb()));
        Ok();
    });
    EXPECT_EQ(VoiceBytes(voice)[16], 0);
}

TEST_F(AlgorithmsOfTheSheet, OnADarkGroundThePictureIsDrawnInTheColourOfTexts) {
    const QPalette former = QApplication::palette();
    QPalette dark(QColor(50, 50, 50));
    dark.setColor(QPalette::ButtonText, QColor(250, 251, 252));
    dark.setColor(QPalette::Shadow, QColor(20, 20, 20));
    QApplication::setPalette(dark);
    EXPECT_EQ(AlgorithmPictureColours().ink, QColor(250, 251, 252));
    for (const SheetFamily *sheets : {&Dx7Sheets, &RefaceSheets}) {
        Edited(*sheets, [&] {
            const QImage image = PictureImage();
            EXPECT_TRUE(HasPixel(image, image.rect(), qRgb(250, 251, 252))) << sheets->name;
            Cancel();
        });
    }
    QApplication::setPalette(former);
    EXPECT_EQ(AlgorithmPictureColours().ink, SystemColourOf(SystemColour::DarkShadow3D));
}

} // namespace
} // namespace tonewright
