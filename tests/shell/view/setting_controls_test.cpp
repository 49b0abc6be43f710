// Settings and controls: every flag of a row, on a made-up page with a made-up table.
#include "common/settings.h"
#include "common/view/up_down.h"
#include "shell/shell_window.h"
#include "shell/view/setting_controls.h"
#include "support/modal_box.h"
#include "support/pixels.h"
#include "support/put_back.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFontDatabase>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include <memory>
#include <string>
#include <vector>

namespace tonewright {
namespace {

std::uint32_t Flag, Colour, Channel, Level, Plain, ByIndex, ByValue, OwnItems, Unbound;
std::string Name, Folder, FontName;

constexpr SettingChoice Choices[] = {{"Low", 10}, {"Middle", 200}, {"High", 3000}, {nullptr, 0}};

std::string BrowseAnswer;
std::vector<std::string> BrowseFolders;
QWidget *BrowseOwner = nullptr;

std::optional<std::string> AnswerBrowse(QWidget *owner, const std::string &folder) {
    BrowseOwner = owner;
    BrowseFolders.push_back(folder);
    return BrowseAnswer.empty() ? std::nullopt : std::optional(BrowseAnswer);
}

const ConfigKey Keys[] = {
    {"Flag", &Flag, SettingBool, 1},
    {"Colour", &Colour, SettingInteger | SettingColour, 2},
    {"Channel", &Channel, SettingInteger | SettingSpin, 3},
    {"Level", &Level, SettingInteger | SettingSpin | SettingRestart, 4},
    {"Plain", &Plain, SettingInteger, 5},
    {"ByIndex", &ByIndex, SettingInteger | SettingDropDown, 6, Choices},
    {"ByValue", &ByValue, SettingInteger | SettingDropDown | SettingByValue, 7, Choices},
    {"OwnItems", &OwnItems, SettingInteger | SettingDropDown, 8},
    {"Name", &Name, SettingText, 9},
    {"Folder", &Folder, SettingText | SettingBrowse, 10, AnswerBrowse},
    {"FontName", &FontName, SettingText | SettingDropDown | SettingFontList, 11},
    {"Unbound", &Unbound, SettingBool, 0},
};

class SettingControlsTest : public testing::Test {
protected:
    void SetUp() override {
        Flag = Colour = Plain = ByIndex = OwnItems = Unbound = 0;
        Channel = 5;
        Level = 3;
        ByValue = 200;
        Name = Folder = FontName = "";
        BrowseAnswer = "";
        BrowseFolders.clear();
        OpenImportPath = "/imports/";
        TheShellWindow.SetTitle = [this](const std::string &title) { titles.push_back(title); };

        window.resize(400, 500);
        flag = Make<QCheckBox>(1);
        colour = Make<QPushButton>(2);
        channel = Make<QLineEdit>(3);
        channelArrows = Make<UpDown>(10003);
        channelArrows->setProperty("rangeText", "1,16,10");
        level = Make<QLineEdit>(4);
        levelArrows = Make<UpDown>(10004);
        levelArrows->setProperty("rangeText", "1,32,10");
        plain = Make<QLineEdit>(5);
        byIndex = Make<QComboBox>(6);
        byValue = Make<QComboBox>(7);
        ownItems = Make<QComboBox>(8);
        ownItems->addItems({"None", "Some", "All"});
        name = Make<QLineEdit>(9);
        folder = Make<QLineEdit>(10);
        browse = Make<QPushButton>(15010);
        fonts = Make<QComboBox>(11);
    }
    // Given to the main window, oldest first; also while the controls below go.
    std::vector<std::string> titles;
    PutBack<ShellWindow> formerWindow{TheShellWindow};

    template <typename Widget> Widget *Make(int number) {
        auto *control = new Widget(page);
        control->setObjectName(QString("control_%1").arg(number));
        control->setGeometry(10, 10 + 30 * static_cast<int>(page->children().size()), 120, 26);
        return control;
    }
    void Remove(QWidget *control) { delete control; }

    void Show() {
        KeysToControls(page, Keys);
        ConnectKeyControls(page, Keys);
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        titles.clear();
    }
    void Load() { KeysToControls(page, Keys); }
    void Store() { ControlsToKeys(page, Keys); }

    QWidget window;
    QWidget *page = new QWidget(&window);
    QCheckBox *flag;
    QPushButton *colour, *browse;
    QLineEdit *channel, *level, *plain, *name, *folder;
    UpDown *channelArrows, *levelArrows;
    QComboBox *byIndex, *byValue, *ownItems, *fonts;
};

TEST_F(SettingControlsTest, ABoolIsACheckBoxBothWays) {
    Flag = 1;
    Load();
    EXPECT_TRUE(flag->isChecked());
    flag->setChecked(false);
    Store();
    EXPECT_EQ(Flag, 0u);
    flag->setChecked(true);
    Store();
    EXPECT_EQ(Flag, 1u);
}

TEST_F(SettingControlsTest, ABoolOfAnyOtherNumberIsOnAndStoredAs1) {
    Flag = 4294967291u;
    Load();
    EXPECT_TRUE(flag->isChecked());
    Store();
    EXPECT_EQ(Flag, 1u);
}

TEST_F(SettingControlsTest, AKeyWinsOverTheStartOfTheRange) {
    Load();
    EXPECT_EQ(channel->text(), "5");
    EXPECT_EQ(level->text(), "3");
}

TEST_F(SettingControlsTest, ASpinNumberIsBroughtIntoItsRange) {
    Load();
    const std::pair<const char *, unsigned> cases[] = {
        {"7", 7},
        {"1", 1},
        {"32", 32},
        {"33", 32},
        {"99", 32},
        {"0", 1},
        {"", 1},
        {"abc", 1},
        {"-5", 1},
        {"4294967291", 32},
        {"99999999999", 32},
        {"12 voices", 12},
        {" 8", 8},
        {"007", 7},
    };
    for (const auto &[text, stored] : cases) {
        level->setText(text);
        Store();
        EXPECT_EQ(Level, stored) << text;
    }
}

TEST_F(SettingControlsTest, AKeyBeyondItsRangeIsShownUnsignedAndBroughtBackWhenStored) {
    Channel = 4294967291u;
    Load();
    EXPECT_EQ(channel->text(), "4294967291");
    Store();
    EXPECT_EQ(Channel, 16u);
}

TEST_F(SettingControlsTest, TheArrowsStepInTheirRange) {
    Show();
    auto *up = channelArrows->findChild<QToolButton *>("up");
    auto *down = channelArrows->findChild<QToolButton *>("down");
    channel->setText("15");
    QTest::mouseClick(up, Qt::LeftButton);
    QTest::mouseClick(up, Qt::LeftButton);
    EXPECT_EQ(channel->text(), "16");
    QTest::mouseClick(down, Qt::LeftButton);
    EXPECT_EQ(channel->text(), "15");
    EXPECT_EQ(level->text(), "3");
}

TEST_F(SettingControlsTest, ARangeWithoutAStartStillLimits) {
    levelArrows->setProperty("rangeText", "2,8");
    Load();
    level->setText("99");
    Store();
    EXPECT_EQ(Level, 8u);
}

TEST_F(SettingControlsTest, WithoutARangeASpinNumberIsStoredAsItIs) {
    const auto stored = [&](const char *text) {
        Load();
        level->setText(text);
        Store();
        return Level;
    };
    levelArrows->setProperty("rangeText", "2");
    EXPECT_EQ(stored("4294967291"), 4294967291u);
    EXPECT_EQ(stored("abc"), 0u);
    EXPECT_EQ(stored("99999999999"), 0u);
    levelArrows->setProperty("rangeText", QVariant());
    EXPECT_EQ(stored("77"), 77u);
    Remove(levelArrows);
    EXPECT_EQ(stored(" 78"), 78u);
}

TEST_F(SettingControlsTest, ARangeBelowZeroReadsASignedNumber) {
    levelArrows->setProperty("rangeText", "-12,12,0");
    Load();
    level->setText("-5");
    Store();
    EXPECT_EQ(Level, 4294967291u);
    level->setText("-50");
    Store();
    EXPECT_EQ(Level, 4294967284u);
}

TEST_F(SettingControlsTest, APlainNumberIsShownAndNeverStored) {
    Plain = 600;
    Load();
    EXPECT_EQ(plain->text(), "600");
    plain->setText("700");
    Store();
    EXPECT_EQ(Plain, 600u);
}

TEST_F(SettingControlsTest, AListByIndexHoldsItsChoicesAndStoresTheIndex) {
    ByIndex = 2;
    Load();
    ASSERT_EQ(byIndex->count(), 3);
    EXPECT_EQ(byIndex->itemText(0), "Low");
    EXPECT_EQ(byIndex->itemText(2), "High");
    EXPECT_EQ(byIndex->currentText(), "High");
    byIndex->setCurrentIndex(1);
    Store();
    EXPECT_EQ(ByIndex, 1u);
}

TEST_F(SettingControlsTest, AListByValueSelectsAndStoresTheValue) {
    Load();
    EXPECT_EQ(byValue->currentText(), "Middle");
    byValue->setCurrentIndex(2);
    Store();
    EXPECT_EQ(ByValue, 3000u);
}

TEST_F(SettingControlsTest, WithNothingSelectedAListWithChoicesLeavesItsKeyAlone) {
    ByIndex = 77;
    ByValue = 1; // an index, and no choice's value
    Load();
    EXPECT_EQ(byIndex->currentIndex(), -1);
    EXPECT_EQ(byValue->currentIndex(), -1);
    Store();
    EXPECT_EQ(ByIndex, 77u);
    EXPECT_EQ(ByValue, 1u);
}

TEST_F(SettingControlsTest, AListWithoutChoicesKeepsThePagesItems) {
    OwnItems = 2;
    Load();
    EXPECT_EQ(ownItems->count(), 3);
    EXPECT_EQ(ownItems->currentText(), "All");
    ownItems->setCurrentIndex(1);
    Store();
    EXPECT_EQ(OwnItems, 1u);
}

TEST_F(SettingControlsTest, WithNothingSelectedAListWithoutChoicesStores0) {
    for (const std::uint32_t value : {3u, 77u, 4294967295u}) {
        OwnItems = value;
        Load();
        EXPECT_EQ(ownItems->currentIndex(), -1) << value;
        Store();
        EXPECT_EQ(OwnItems, 0u) << value;
    }
}

TEST_F(SettingControlsTest, AFontListHoldsTheSystemsFamiliesAndStoresTheName) {
    const QStringList families = QFontDatabase::families();
    ASSERT_GE(families.size(), 2);
    FontName = families.last().toStdString();
    Load();
    EXPECT_EQ(fonts->count(), families.size());
    EXPECT_EQ(fonts->currentText(), families.last());
    fonts->setCurrentIndex(0);
    Store();
    EXPECT_EQ(FontName, families.first().toStdString());
}

TEST_F(SettingControlsTest, AFontThatIsNotHereStaysInItsKey) {
    FontName = "A family of another machine";
    Load();
    EXPECT_EQ(fonts->currentIndex(), -1);
    Store();
    EXPECT_EQ(FontName, "A family of another machine");
}

TEST_F(SettingControlsTest, ShowingTwiceDoesNotDoubleTheLists) {
    Load();
    Load();
    EXPECT_EQ(byIndex->count(), 3);
    EXPECT_EQ(ownItems->count(), 3);
    EXPECT_EQ(fonts->count(), QFontDatabase::families().size());
}

TEST_F(SettingControlsTest, ATextIsShownAndStored) {
    Name = "Größe";
    Load();
    EXPECT_EQ(name->text(), QString::fromUtf8("Größe"));
    name->setText("other");
    Store();
    EXPECT_EQ(Name, "other");
}

TEST_F(SettingControlsTest, ATextEndsAt260BytesWhenItIsTyped) {
    Show();
    name->setText(QString(259, 'x'));
    name->setFocus();
    QTest::keyClicks(name, "yz");
    EXPECT_EQ(name->text(), QString(259, 'x') + "y");
    Store();
    EXPECT_EQ(Name, std::string(259, 'x') + "y");
}

TEST_F(SettingControlsTest, TheLimitOfATextDoesNotSplitACharacter) {
    Load();
    // 259 bytes, and a character of two that has no room.
    name->setText(QString(259, 'x') + QString::fromUtf8("\u00f6"));
    Store();
    EXPECT_EQ(Name, std::string(259, 'x'));
    // 256 bytes and a character of four that just fits, and then none more.
    name->setText(QString(256, 'x') + QString::fromUtf8("\U0001F3B9\U0001F3B9"));
    Store();
    EXPECT_EQ(Name, std::string(256, 'x') + "\U0001F3B9");
    EXPECT_EQ(name->text().toUtf8().size(), 260);
}

TEST_F(SettingControlsTest, AColourGoesThroughTheControlsUserData) {
    Colour = 0x00332211;
    Load();
    EXPECT_EQ(colour->property("userData").toUInt(), 0x00332211u);
    colour->setProperty("userData", 0x00AABBCCu);
    Store();
    EXPECT_EQ(Colour, 0x00AABBCCu);
}

TEST_F(SettingControlsTest, EveryOtherControlsUserDataBecomes0) {
    flag->setProperty("userData", 5);
    Load();
    for (const QWidget *control : std::initializer_list<QWidget *>{flag, channel, plain, byIndex}) {
        EXPECT_TRUE(control->property("userData").isValid());
        EXPECT_EQ(control->property("userData").toUInt(), 0u);
    }
}

TEST_F(SettingControlsTest, AColourIsPaintedAsASwatchWithRedInTheLowByte) {
    Colour = 0x00332211;
    Show();
    EXPECT_EQ(colour->grab().toImage().pixelColor(60, 13), QColor(0x11, 0x22, 0x33));
    Colour = 0x000000FF;
    Load();
    EXPECT_EQ(colour->grab().toImage().pixelColor(60, 13), QColor(Qt::red));
}

TEST_F(SettingControlsTest, ASwatchShowsItsColourInADialogWhoseOtherButtonsAreSoft) {
    Colour = 0x00332211;
    for (SoftButtons = 0; SoftButtons < 4; ++SoftButtons) {
        QDialog dialog;
        dialog.resize(400, 500);
        auto *sheet = new QWidget(&dialog);
        auto *swatch = new QPushButton(sheet), *plain = new QPushButton(sheet);
        swatch->setObjectName("control_2");
        plain->setGeometry(0, 40, 120, 26);
        swatch->setGeometry(0, 80, 120, 26);
        KeysToControls(sheet, Keys);
        ConnectKeyControls(sheet, Keys);
        dialog.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
        EXPECT_EQ(plain->children().isEmpty(), SoftButtons == 0); // it has its painter
        const QImage image = swatch->grab().toImage();
        EXPECT_TRUE(IsAll(image, image.rect().adjusted(3, 3, -3, -3), qRgb(0x11, 0x22, 0x33)))
            << SoftButtons;
    }
}

TEST_F(SettingControlsTest, ASwatchOpensTheColourBoxAndTakesItsColourOnOk) {
    Colour = 0x00332211;
    Show();
    const auto open = [this] { QTest::mouseClick(colour, Qt::LeftButton); };
    const auto writeAndPress = [](QDialog &box, const char *number, const char *button) {
        auto *hex = box.findChild<QLineEdit *>("control_102");
        hex->selectAll();
        QTest::keyClicks(hex, number);
        QTest::mouseClick(box.findChild<QPushButton *>(button), Qt::LeftButton);
    };
    WithModalBox(open, [&](QDialog &box) {
        EXPECT_EQ(box.windowTitle(), "Color");
        EXPECT_EQ(box.parentWidget(), &window);
        EXPECT_EQ(box.findChild<QLineEdit *>("control_102")->text(), "#112233");
        writeAndPress(box, "#010203", "control_1");
    });
    EXPECT_EQ(colour->property("userData").toUInt(), 0x00030201u);
    EXPECT_EQ(colour->grab().toImage().pixelColor(60, 13), QColor(1, 2, 3));
    EXPECT_EQ(Colour, 0x00332211u); // until it is stored

    WithModalBox(open, [&](QDialog &box) { writeAndPress(box, "#090909", "control_2"); });
    EXPECT_EQ(colour->property("userData").toUInt(), 0x00030201u);
    Store();
    EXPECT_EQ(Colour, 0x00030201u);
}

TEST_F(SettingControlsTest, ABrowseButtonAsksItsRowAndKeepsTheFolder) {
    Show();
    BrowseAnswer = "/music/banks/first.syx";
    QTest::mouseClick(browse, Qt::LeftButton);
    EXPECT_EQ(BrowseFolders, std::vector<std::string>{"/imports/"});
    EXPECT_EQ(BrowseOwner, &window);
    EXPECT_EQ(folder->text(), "/music/banks/first.syx");
    EXPECT_EQ(OpenImportPath, "/music/banks/");
    EXPECT_EQ(Folder, "");
    Store();
    EXPECT_EQ(Folder, "/music/banks/first.syx");
}

TEST_F(SettingControlsTest, ABrowseThatIsCancelledChangesNothing) {
    Folder = "/somewhere";
    Show();
    QTest::mouseClick(browse, Qt::LeftButton);
    EXPECT_EQ(BrowseFolders.size(), 1u);
    EXPECT_EQ(folder->text(), "/somewhere");
    EXPECT_EQ(OpenImportPath, "/imports/");
}

TEST_F(SettingControlsTest, CommandsOfAPageThatIsNotVisibleAreIgnored) {
    Show();
    page->hide();
    BrowseAnswer = "/music/first.syx";
    browse->click();
    colour->click(); // would wait for ever in the dialog
    level->setText("8");
    EXPECT_TRUE(BrowseFolders.empty());
    EXPECT_TRUE(titles.empty());
}

TEST_F(SettingControlsTest, EachCommandOfASpinEditShowsKeyAndFlagsInTheTitle) {
    Show();
    level->setFocus();
    EXPECT_EQ(titles, std::vector<std::string>{"Level 8044"});
    QTest::keyClicks(level, "12");
    EXPECT_EQ(titles.size(), 3u);
    EXPECT_EQ(titles.back(), "Level 8044");
    titles.clear();
    channel->setFocus();
    EXPECT_EQ(titles, (std::vector<std::string>{"Level 8044", "Channel 44"}));
    titles.clear();
    QTest::mouseClick(levelArrows->findChild<QToolButton *>("up"), Qt::LeftButton);
    EXPECT_EQ(titles, std::vector<std::string>{"Level 8044"});
}

TEST_F(SettingControlsTest, OtherControlsLeaveTheTitleAlone) {
    Show();
    QTest::keyClicks(name, "text");
    QTest::keyClicks(plain, "7");
    flag->click();
    byIndex->setCurrentIndex(1);
    EXPECT_TRUE(titles.empty());
}

TEST_F(SettingControlsTest, ARowWhoseControlIsMissingIsSkippedBothWays) {
    Flag = 7;
    Level = 99;
    ByIndex = 50;
    Unbound = 9;
    Name = "kept";
    for (QWidget *control : std::initializer_list<QWidget *>{flag, level, byIndex, name}) {
        Remove(control);
    }
    Load();
    ConnectKeyControls(page, Keys);
    Store();
    EXPECT_EQ(Flag, 7u);
    EXPECT_EQ(Level, 99u);
    EXPECT_EQ(ByIndex, 50u);
    EXPECT_EQ(Name, "kept");
    EXPECT_EQ(Unbound, 9u);
}

TEST_F(SettingControlsTest, ARowWithoutAControlIsNeverBound) {
    Unbound = 1;
    auto *box = Make<QCheckBox>(0);
    Load();
    EXPECT_FALSE(box->isChecked());
    Store();
    EXPECT_EQ(Unbound, 1u);
}

TEST_F(SettingControlsTest, AControlOfAnotherKindIsPassedOver) {
    Flag = 7;
    Level = 99;
    ByIndex = 2;
    Remove(flag);
    Remove(level);
    Remove(byIndex);
    auto *wrongFlag = Make<QLineEdit>(1);
    wrongFlag->setText("text");
    Make<QCheckBox>(4);
    Make<QWidget>(6);
    Load();
    Store();
    EXPECT_EQ(wrongFlag->text(), "text");
    EXPECT_EQ(Flag, 7u);
    EXPECT_EQ(Level, 99u);
    EXPECT_EQ(ByIndex, 2u);
}

TEST_F(SettingControlsTest, AControlBelongsToTheKeyWithItsNumber) {
    ASSERT_TRUE(SettingOf(level, Keys));
    EXPECT_STREQ(SettingOf(level, Keys)->name, "Level");
    ASSERT_TRUE(SettingOf(flag, Keys));
    EXPECT_STREQ(SettingOf(flag, Keys)->name, "Flag");
    EXPECT_FALSE(SettingOf(levelArrows, Keys));
    EXPECT_FALSE(SettingOf(browse, Keys));
    EXPECT_FALSE(SettingOf(page, Keys));
    EXPECT_FALSE(SettingOf(nullptr, Keys));
}

} // namespace
} // namespace tonewright
