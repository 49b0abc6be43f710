// The history at the end of the real File menu: its items, their measures and painting, and clicks
// on them.
#include "window_fixture.h"

#include "common/view/system_colours.h"
#include "common/view/pictures.h"
#include "shell/history.h"
#include "shell/view/desktop_qt.h"

#include <QAction>
#include <QMenuBar>
#include <QPainter>
#include <QPixmap>
#include <QStyle>
#include <QStyleOptionMenuItem>

namespace tonewright {
namespace {

using Strings = std::vector<std::string>;

class HistoryMenu : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        // The keys of the real keyboard and mouse events.
        const Desktop scripted = TheDesktop;
        UseQtDesktop();
        const Desktop real = TheDesktop;
        TheDesktop = scripted;
        TheDesktop.ShiftKeyDown = real.ShiftKeyDown;
        TheDesktop.ControlKeyDown = real.ControlKeyDown;
        MakeProgramFolders();
        UseHistory(10);
    }
    void TearDown() override {
        window.reset();
        HistoryEnd();
    }

    void UseHistory(std::uint32_t count) {
        RememberFileHistoryCount = count;
        HistoryInit();
    }
    // A document of the history, by its name in the home folder.
    std::string Add(const std::string &name, std::int64_t time) {
        const std::string path = home.Write(name, TestBank());
        HistoryAdd(window.get(), path, time);
        return path;
    }

    QMenu &FileMenu() const { return *window->findChildren<QMenuBar *>()[0]->actions()[0]->menu(); }
    // The texts behind "E&xit", without the home folder.
    Strings Items() const {
        Strings texts = TextsOf(FileMenu());
        texts.erase(texts.begin(), std::ranges::find(texts, "E&xit") + 1);
        for (std::string &text : texts) {
            if (text.starts_with(home.Folder())) {
                text.erase(0, home.Folder().size());
            }
        }
        return texts;
    }
    QAction *Item(int item) const { return ActionOf(FileMenu(), item); }

    QMenu &OpenMenu() const {
        QMenu &menu = FileMenu();
        menu.popup(window->mapToGlobal(QPoint(0, 0)));
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&menu));
        return menu;
    }
    void Click(int item, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        QMenu &menu = OpenMenu();
        const QPoint point = menu.actionGeometry(Item(item)).center();
        ComeTo(menu, point);
        QTest::mouseClick(&menu, Qt::LeftButton, modifiers, point);
        QTest::qWait(1);
        EXPECT_FALSE(menu.isVisible());
    }

    QStyleOptionMenuItem OptionOf(int item) const {
        QStyleOptionMenuItem option;
        option.initFrom(&FileMenu());
        option.text = Item(item)->text();
        option.font = FileMenu().font();
        return option;
    }
    QSize Measure(int item) const {
        const QStyleOptionMenuItem option = OptionOf(item);
        return FileMenu().style()->sizeFromContents(QStyle::CT_MenuItem, &option, QSize(),
                                                    &FileMenu());
    }
    int TextWidth(const std::string &text) const {
        return QFontMetrics(FileMenu().font()).horizontalAdvance(QString::fromStdString(text));
    }
    int TextHeight() const { return QFontMetrics(FileMenu().font()).height(); }
    // An item painted on a ground of white.
    QImage Paint(int item, QSize size, bool selected = false) const {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::white);
        QStyleOptionMenuItem option = OptionOf(item);
        option.rect = image.rect();
        option.state.setFlag(QStyle::State_Selected, selected);
        QPainter painter(&image);
        FileMenu().style()->drawControl(QStyle::CE_MenuItem, &option, &painter, &FileMenu());
        return image;
    }
    static QImage Pictured(std::uint32_t number, int side, QColor ground) {
        QImage image(side, side, QImage::Format_RGB32);
        image.fill(ground);
        QPainter painter(&image);
        painter.drawPixmap(0, 0, PictureOf(number, {side, side}));
        return image;
    }
    // Where something was painted.
    static QRect InkOf(const QImage &image, QColor ground) {
        QRect ink;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) != ground) {
                    ink |= QRect(x, y, 1, 1);
                }
            }
        }
        return ink;
    }
    // How much darker than white all pixels are together.
    static long Darkness(const QImage &image) {
        long sum = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                sum += 255 - qGray(image.pixel(x, y));
            }
        }
        return sum;
    }
};

TEST_F(HistoryMenu, EntriesStandBehindASeparatorAtTheEndOfTheFileMenu) {
    EXPECT_EQ(Items(), Strings{});
    Add("a.syx", 100);
    Add("b.syx", 200);
    EXPECT_EQ(Items(), (Strings{"-", "b.syx", "a.syx"}));
    EXPECT_TRUE(Item(180)->isSeparator());
    EXPECT_EQ(Item(181)->text().toStdString(), home.File("b.syx"));
    EXPECT_EQ(Item(182)->text().toStdString(), home.File("a.syx"));
    EXPECT_TRUE(Item(182)->isEnabled());
}

TEST_F(HistoryMenu, ACountOf0ShowsNoItems) {
    UseHistory(0);
    WriteTestText(home.File("Quillbrook/Tonewright 17/FileMenuHistory.txt"),
                  home.Write("a.syx", TestBank()) + ",100\n");
    HistoryRead();
    Add("b.syx", 100);
    EXPECT_EQ(Items(), Strings{});
    EXPECT_EQ(Item(180), nullptr);
}

TEST_F(HistoryMenu, ACountOf30Shows20Items) {
    UseHistory(30);
    for (int number = 0; number < 30; ++number) {
        Add(std::to_string(number) + ".syx", number);
    }
    EXPECT_EQ(Items().size(), 21u);
    EXPECT_NE(Item(200), nullptr);
    EXPECT_EQ(Item(201), nullptr);
}

TEST_F(HistoryMenu, TheFileOfTheLastRunFillsTheMenu) {
    WriteTestText(home.File("Quillbrook/Tonewright 17/FileMenuHistory.txt"),
                  home.Write("a.syx", TestBank()) + ",100\n" + home.Write("b.syx", TestBank()) +
                      "/P,50\n");
    HistoryRead();
    EXPECT_EQ(Items(), (Strings{"-", "b.syx/P", "a.syx"}));
}

TEST_F(HistoryMenu, AClickOpensTheDocument) {
    Add("a.syx", 100);
    Add("b.syx", 200);
    Click(182);
    EXPECT_EQ(window->windowTitle(), "Tonewright [ a.syx ]");
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_TRUE(CommandAllowed(CommandSave));
    // Its place changes at the next rebuild only.
    EXPECT_EQ(Items(), (Strings{"-", "b.syx", "a.syx"}));
    Add("c.syx", 50);
    EXPECT_EQ(Items(), (Strings{"-", "a.syx", "b.syx", "c.syx"}));
}

TEST_F(HistoryMenu, ReturnOpensTheDocument) {
    Add("a.syx", 100);
    QMenu &menu = OpenMenu();
    menu.setActiveAction(Item(181));
    QTest::keyClick(&menu, Qt::Key_Return);
    EXPECT_EQ(window->windowTitle(), "Tonewright [ a.syx ]");
}

TEST_F(HistoryMenu, ShiftClickRemovesAnEntryPinnedOrNotAndOpensNothing) {
    Add("a.syx", 100);
    Add("b.syx", 200);
    Click(182, Qt::ControlModifier);
    EXPECT_EQ(Items(), (Strings{"-", "a.syx/P", "b.syx"}));
    Click(181, Qt::ShiftModifier);
    EXPECT_EQ(Items(), (Strings{"-", "b.syx"}));
    Click(181, Qt::ShiftModifier | Qt::ControlModifier);
    EXPECT_EQ(Items(), Strings{});
    EXPECT_EQ(Item(180), nullptr);
    EXPECT_EQ(ListCount(MainList), 0);
    EXPECT_TRUE(home.Holds("a.syx"));
}

TEST_F(HistoryMenu, CtrlClickPinsAndTakesThePinAwayAndOpensNothing) {
    Add("a.syx", 100);
    Add("b.syx", 200);
    Add("c.syx", 300);
    Click(183, Qt::ControlModifier);
    EXPECT_EQ(Items(), (Strings{"-", "a.syx/P", "c.syx", "b.syx"}));
    Click(183, Qt::ControlModifier);
    EXPECT_EQ(Items(), (Strings{"-", "b.syx/P", "a.syx/P", "c.syx"}));
    Click(181, Qt::ControlModifier);
    EXPECT_EQ(Items(), (Strings{"-", "a.syx/P", "c.syx", "b.syx"}));
    EXPECT_EQ(ListCount(MainList), 0);
}

TEST_F(HistoryMenu, AClickOnAPinnedEntryOpensItsPlainPath) {
    Add("a.syx", 100);
    Click(181, Qt::ControlModifier);
    Click(181);
    EXPECT_EQ(CurrentDocumentPath, home.File("a.syx"));
    EXPECT_EQ(ListCount(MainList), 32);
}

TEST_F(HistoryMenu, AnEntryWhoseDocumentIsGoneReportsIt) {
    Add("a.syx", 100);
    std::filesystem::remove(home.path / "a.syx");
    desktop.ExpectMessage("There has been an error reading this file. It might be corrupted.");
    Click(181);
    EXPECT_EQ(Items(), (Strings{"-", "a.syx"}));
}

TEST_F(HistoryMenu, AnAmpersandInAPathIsShownAsItIs) {
    Add("soft & loud.syx", 100);
    EXPECT_EQ(Items(), (Strings{"-", "soft && loud.syx"}));
    Click(181);
    EXPECT_EQ(CurrentDocumentPath, home.File("soft & loud.syx"));
}

// ---- measures

TEST_F(HistoryMenu, AnEntryHasRoomForItsPictureItsTextAndTheCheckMark) {
    const std::string path = Add("a bank of brass and strings.syx", 100);
    EXPECT_EQ(Measure(181), QSize(TextWidth(path) + 12 + 48 + 19, 48 + 6));
    EXPECT_EQ(OpenMenu().actionGeometry(Item(181)).height(), 54);
    FileMenu().close();
}

TEST_F(HistoryMenu, TheMenuFontMeasuresAPinnedEntryToo) {
    const std::string path = Add("a bank of brass and strings.syx", 100);
    Click(181, Qt::ControlModifier);
    EXPECT_EQ(Measure(181), QSize(TextWidth(path + "/P") + 12 + 48 + 19, 48 + 6));
}

TEST_F(HistoryMenu, TheSizeOfThePictureIsASetting) {
    const std::string path = Add("a.syx", 100);
    RememberFileHistorySize = 24;
    EXPECT_EQ(Measure(181), QSize(TextWidth(path) + 12 + 24 + 19, 24 + 6));
    RememberFileHistorySize = 0;
    EXPECT_EQ(Measure(181), QSize(TextWidth(path) + 12 + 19, TextHeight()));
    RememberFileHistorySize = 4294967295;
    EXPECT_EQ(Measure(181).height(), 256 + 6);
}

TEST_F(HistoryMenu, ALongPathDoesNotMakeTheMenuWiderThanTheScreen) {
    Add(std::string(200, 'W') + ".syx", 100);
    EXPECT_LT(Measure(181).width(), QGuiApplication::primaryScreen()->size().width());
}

TEST_F(HistoryMenu, WithoutPicturesEntriesArePlainItemsWithTheirPinMark) {
    RememberFileHistoryEnable = 0;
    const std::string path = Add("a.syx", 100);
    Click(181, Qt::ControlModifier);
    EXPECT_EQ(Items(), (Strings{"-", "a.syx/P"}));
    QMenu &menu = OpenMenu();
    EXPECT_EQ(menu.actionGeometry(Item(181)).height(),
              menu.actionGeometry(window->MenuAction(CommandExit)).height());
    menu.close();
    const QSize size(TextWidth(path) + 150, 54);
    const QImage image = Paint(181, size);
    EXPECT_LT(InkOf(image, Qt::white).right(), size.width() - 48); // no picture at the right
}

TEST_F(HistoryMenu, TheSettingOfPicturesCountsAtTheNextRebuild) {
    Add("a.syx", 100);
    RememberFileHistoryEnable = 0;
    EXPECT_EQ(Measure(181).height(), 54);
    Add("b.syx", 200);
    EXPECT_LT(Measure(181).height(), 54);
    RememberFileHistoryEnable = 1;
}

// ---- painting

TEST_F(HistoryMenu, ThePictureStandsAtTheRightEdgeAndTheTextLeftOfIt) {
    Add("a.syx", 100);
    const QSize size = Measure(181);
    const QImage image = Paint(181, size);
    const int left = size.width() - 48;
    EXPECT_EQ(image.copy(left, 3, 48, 48), Pictured(8502, 48, Qt::white));
    const QRect text = InkOf(image.copy(0, 0, left, 54), Qt::white);
    EXPECT_GE(text.left(), 19);
    EXPECT_LE(text.right(), left - 6);
    EXPECT_GT(text.width(), TextWidth(home.File("a.syx")) - 6); // whole
    EXPECT_NEAR(text.center().y(), 27, 4);
}

TEST_F(HistoryMenu, ThePictureHasTheSizeOfTheSetting) {
    Add("a.syx", 100);
    RememberFileHistorySize = 24;
    const QSize size = Measure(181);
    const QImage image = Paint(181, size);
    EXPECT_EQ(image.copy(size.width() - 24, 3, 24, 24), Pictured(8502, 24, Qt::white));
    RememberFileHistorySize = 0;
    EXPECT_FALSE(InkOf(Paint(181, Measure(181)), Qt::white).isEmpty()); // the text remains
}

TEST_F(HistoryMenu, EachKindOfDocumentHasItsPicture) {
    home.WriteText("a.srx", "");
    home.WriteText("b.txt", "");
    HistoryAdd(nullptr, home.File("a.srx"), 200);
    HistoryAdd(nullptr, home.File("b.txt"), 100);
    const QSize size = Measure(181);
    EXPECT_EQ(Paint(181, size).copy(size.width() - 48, 3, 48, 48), Pictured(8501, 48, Qt::white));
    EXPECT_EQ(Paint(182, size).copy(size.width() - 48, 3, 48, 48), Pictured(8500, 48, Qt::white));
    EXPECT_NE(Pictured(8500, 48, Qt::white), Pictured(8501, 48, Qt::white));
    EXPECT_NE(Pictured(8501, 48, Qt::white), Pictured(8502, 48, Qt::white));
}

TEST_F(HistoryMenu, ASelectedEntryIsPaintedInTheColoursOfASelection) {
    Add("a.syx", 100);
    const QSize size = Measure(181);
    const QColor ground = SystemColourOf(SystemColour::Highlight);
    const QImage image = Paint(181, size, true);
    EXPECT_EQ(image.pixelColor(0, 0), ground);
    EXPECT_EQ(image.pixelColor(2, size.height() - 1), ground);
    EXPECT_EQ(image.copy(size.width() - 48, 3, 48, 48), Pictured(8502, 48, ground));
    const QRect text = InkOf(image.copy(0, 0, size.width() - 48, 54), ground);
    bool found = false;
    for (int y = text.top(); y <= text.bottom(); ++y) {
        for (int x = text.left(); x <= text.right(); ++x) {
            found = found || image.pixelColor(x, y) == SystemColourOf(SystemColour::HighlightText);
        }
    }
    EXPECT_TRUE(found);
}

TEST_F(HistoryMenu, APinnedEntryIsBoldAndShowsItsPlainPath) {
    Add("a.syx", 100);
    const QSize size = Measure(181) + QSize(60, 0);
    const QImage plain = Paint(181, size);
    Click(181, Qt::ControlModifier);
    const QImage pinned = Paint(181, size);
    const int left = size.width() - 48;
    EXPECT_GT(Darkness(pinned.copy(0, 0, left, 54)), 1.2 * Darkness(plain.copy(0, 0, left, 54)));
    // A bold path and no mark behind it.
    QFont bold = FileMenu().font();
    bold.setWeight(QFont::Weight(700));
    const int width =
        QFontMetrics(bold).horizontalAdvance(QString::fromStdString(home.File("a.syx")));
    EXPECT_NEAR(InkOf(pinned.copy(0, 0, left, 54), Qt::white).width(), width, 4);
    Click(181, Qt::ControlModifier);
    EXPECT_EQ(Paint(181, size), plain);
}

TEST_F(HistoryMenu, AnAmpersandIsPaintedAsItIs) {
    Add("a&b.syx", 100);
    Add("aAb.syx", 50);
    const QSize size = Measure(181);
    EXPECT_EQ(size.width(), TextWidth(home.File("a&b.syx")) + 12 + 48 + 19);
    EXPECT_NEAR(InkOf(Paint(181, size).copy(0, 0, size.width() - 48, 54), Qt::white).width(),
                TextWidth(home.File("a&b.syx")), 4);
}

TEST_F(HistoryMenu, APathIsPaintedWholeWithACharacter0x9CInIt) {
    Add("AB\xC2\x9C"
        "CDEFGHIJ.syx",
        100);
    const QSize size = Measure(181);
    const int width = TextWidth(home.File("ABCDEFGHIJ.syx"));
    EXPECT_GE(size.width(), width + 12 + 48 + 19);
    EXPECT_GE(InkOf(Paint(181, size).copy(0, 0, size.width() - 48, 54), Qt::white).width(),
              width - 4);
}

TEST_F(HistoryMenu, APathWithoutRoomEndsInAnEllipsisInFrontOfThePicture) {
    Add(std::string(200, 'W') + ".syx", 100);
    const QSize size = Measure(181);
    const QImage image = Paint(181, size);
    const int left = size.width() - 48;
    EXPECT_EQ(image.copy(left, 3, 48, 48), Pictured(8502, 48, Qt::white));
    const int right = InkOf(image.copy(0, 0, left, 54), Qt::white).right();
    EXPECT_LE(right, left - 6);
    EXPECT_GT(right, left - 40);
    // The dots stand at the foot of the line, behind the last letter.
    const QRect dots = InkOf(image.copy(right - 6, 0, 7, 54), Qt::white);
    ASSERT_FALSE(dots.isEmpty());
    EXPECT_GT(dots.top(), 27);
}

TEST_F(HistoryMenu, OtherItemsAreThePlatforms) {
    Add("a.syx", 100);
    QStyleOptionMenuItem option = OptionOf(181);
    option.text = "E&xit";
    const QSize size = FileMenu().style()->sizeFromContents(QStyle::CT_MenuItem, &option,
                                                            QSize(40, 20), &FileMenu());
    const QSize plain = QApplication::style()->sizeFromContents(QStyle::CT_MenuItem, &option,
                                                                QSize(40, 20), &FileMenu());
    EXPECT_EQ(size, plain);
}

} // namespace
} // namespace tonewright
