// The box "New Database", used with mouse and keys.
#include "database/view/new_database_box.h"

#include "support/modal_box.h"
#include "support/pixels.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <functional>

namespace tonewright {
namespace {

constexpr int Ok = 1, Cancel = 2, Help = 9, Name = 65;

class NewDatabaseBox : public testing::Test {
protected:
    // Opens the box and hands it to `use`, which closes it. The box's result.
    std::optional<std::string> WithBox(const std::function<void()> &use,
                                       const std::string &start = "Voices") {
        std::optional<std::string> result;
        WithModalBox([&] { result = RunNewDatabaseBox(nullptr, existing, start); },
                     [&](QDialog &opened) {
                         box = &opened;
                         use();
                     });
        return result;
    }
    template <typename Widget> Widget *Control(int number) const {
        auto *control = box->findChild<Widget *>(QString("control_%1").arg(number));
        EXPECT_NE(control, nullptr) << number;
        return control;
    }
    void Click(int button) const {
        QTest::mouseClick(Control<QPushButton>(button), Qt::LeftButton);
    }
    QComboBox &Names() const { return *Control<QComboBox>(Name); }
    std::string Text() const { return Names().currentText().toStdString(); }
    bool IsOkEnabled() const { return Control<QPushButton>(Ok)->isEnabled(); }
    void Type(const QString &text) const {
        for (const char32_t character : text.toUcs4()) {
            QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString::fromUcs4(&character, 1));
            QApplication::sendEvent(&Names(), &press);
        }
    }
    void Clear() const {
        Names().lineEdit()->selectAll();
        QTest::keyClick(&Names(), Qt::Key_Delete);
    }
    void Paste(const QString &text) const {
        QApplication::clipboard()->setText(text);
        QTest::keyClick(&Names(), Qt::Key_V, Qt::ControlModifier);
    }

    ScriptedDesktop desktop;
    std::vector<std::string> existing = {"Bells", "Live set"};
    QDialog *box = nullptr;
};

TEST_F(NewDatabaseBox, ListsTheNamesAndBeginsWithOne) {
    EXPECT_EQ(WithBox([&] {
                  EXPECT_EQ(box->windowTitle(), "New Database");
                  EXPECT_EQ(Names().count(), 2);
                  EXPECT_EQ(Names().itemText(0), "Bells");
                  EXPECT_EQ(Names().itemText(1), "Live set");
                  EXPECT_EQ(Text(), "Voices");
                  EXPECT_TRUE(Names().hasFocus());
                  EXPECT_EQ(Names().lineEdit()->selectedText(), "Voices");
                  EXPECT_FALSE(IsOkEnabled());
                  EXPECT_TRUE(HasInk(*Control<QLabel>(10)));
                  Click(Help);
                  Click(Cancel);
              }),
              std::nullopt);
    EXPECT_EQ(desktop.helpTopics, std::vector<std::string>{"DATABASE"});
}

TEST_F(NewDatabaseBox, AcceptsANewName) {
    EXPECT_EQ(WithBox([&] {
                  Type("Pads");
                  EXPECT_EQ(Text(), "Pads");
                  EXPECT_TRUE(IsOkEnabled());
                  Click(Ok);
              }),
              "Pads");
    EXPECT_EQ(WithBox([&] { QTest::keyClick(&Names(), Qt::Key_Return); }, "Leads"), "Leads");
    EXPECT_EQ(desktop.beeps, 0);
}

TEST_F(NewDatabaseBox, EnterOnCancelOrHelpPressesThatButton) {
    EXPECT_EQ(WithBox(
                  [&] {
                      QTest::keyClick(Control<QPushButton>(Help), Qt::Key_Return);
                      EXPECT_TRUE(box->isVisible());
                      QTest::keyClick(Control<QPushButton>(Cancel), Qt::Key_Return);
                  },
                  "Leads"),
              std::nullopt);
    EXPECT_EQ(desktop.helpTopics, std::vector<std::string>{"DATABASE"});
}

TEST_F(NewDatabaseBox, ANameThatIsTypedIsNotCompletedToAnExistingOne) {
    WithBox([&] {
        Type("Be");
        EXPECT_EQ(Text(), "Be");
        EXPECT_TRUE(IsOkEnabled());
        Click(Cancel);
    });
}

TEST_F(NewDatabaseBox, OkFollowsTheName) {
    WithBox([&] {
        const std::pair<const char *, bool> names[] = {
            {"voices", false}, {"Voices 2", true}, {"bells", false}, {"LIVE SET", false},
            {"Live", true},    {"  Pads", false},  {"Pads  ", true}, {"_", true},
            {"-", true},       {"Bells", false},   {"Bell", true},   {"VOICES", false},
        };
        for (const auto &[name, isNew] : names) {
            Clear();
            EXPECT_FALSE(IsOkEnabled());
            Type(name);
            EXPECT_EQ(IsOkEnabled(), isNew) << name;
        }
        Click(Cancel);
    });
}

TEST_F(NewDatabaseBox, EnterDoesNotAcceptAnExistingName) {
    EXPECT_EQ(WithBox([&] {
                  QTest::keyClick(&Names(), Qt::Key_Return);
                  EXPECT_TRUE(box->isVisible());
                  QTest::keyClick(&Names(), Qt::Key_Escape);
              }),
              std::nullopt);
}

TEST_F(NewDatabaseBox, OkFollowsTheListWhenItCloses) {
    WithBox([&] {
        Type("Pads");
        EXPECT_TRUE(IsOkEnabled());
        Names().showPopup();
        QAbstractItemView *view = Names().view();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                          view->visualRect(view->model()->index(1, 0)).center());
        QTest::qWait(1);
        EXPECT_EQ(Text(), "Live set");
        EXPECT_FALSE(IsOkEnabled());
        Click(Cancel);
    });
}

TEST_F(NewDatabaseBox, OtherCharactersThanToldCannotBeTyped) {
    EXPECT_EQ(WithBox([&] {
                  Type("a.b/c\\d:e*f?g\"h<i>j|k+l;m=n[o]");
                  EXPECT_EQ(Text(), "abcdefghijklmno");
                  EXPECT_EQ(desktop.beeps, 15);
                  Clear();
                  Type("1$%'-_@~`!(){}^#&, z");
                  Type(QString::fromUtf8("\xC3\xA9\xD0\x96\xE6\x97\xA5\xF0\x9D\x9F\x97"));
                  EXPECT_EQ(desktop.beeps, 15);
                  Type(QString::fromUtf8("\xE2\x82\xAC\xF0\x9F\x8E\xB9"));
                  EXPECT_EQ(desktop.beeps, 17);
                  Click(Ok);
              }),
              "1$%'-_@~`!(){}^#&, z\xC3\xA9\xD0\x96\xE6\x97\xA5\xF0\x9D\x9F\x97");
}

TEST_F(NewDatabaseBox, OtherCharactersAreDroppedFromWhatIsPasted) {
    WithBox([&] {
        Paste("My/new.voices\n2");
        EXPECT_EQ(Text(), "Mynewvoices2");
        EXPECT_EQ(Names().lineEdit()->cursorPosition(), 12);
        EXPECT_EQ(desktop.beeps, 1);
        EXPECT_TRUE(IsOkEnabled());
        Names().lineEdit()->setCursorPosition(2);
        Paste(" *very*, ");
        EXPECT_EQ(Text(), "My very, newvoices2");
        EXPECT_EQ(Names().lineEdit()->cursorPosition(), 9);
        EXPECT_EQ(desktop.beeps, 2);
        Paste("fine");
        EXPECT_EQ(desktop.beeps, 2);
        Names().lineEdit()->selectAll();
        Paste("*.*");
        EXPECT_EQ(Text(), "");
        EXPECT_FALSE(IsOkEnabled());
        Click(Cancel);
    });
}

TEST_F(NewDatabaseBox, TabGoesFromTheNameToTheButtons) {
    WithBox([&] {
        Type("Pads");
        QStringList order;
        for (int stop = 0; stop < 4; ++stop) {
            order += box->focusWidget()->objectName().mid(8);
            QTest::keyClick(box->focusWidget(), Qt::Key_Tab);
        }
        EXPECT_EQ(order.join(' '), "65 1 2 9");
        EXPECT_EQ(box->focusWidget(), &Names());
        Click(Cancel);
    });
}

TEST_F(NewDatabaseBox, NamesOfTheListStandAsTheyAre) {
    existing = {"My.bank", "[old] a+b", "no UTF-8: \xFF.", std::string(64, '.') + "cut"};
    WithBox([&] {
        EXPECT_EQ(desktop.beeps, 0);
        const QString texts[] = {"My.bank", "[old] a+b", "no UTF-8: \uFFFD."};
        for (int index = 0; index < 3; ++index) {
            Names().setCurrentIndex(index);
            EXPECT_EQ(Names().currentText(), texts[index]);
            EXPECT_FALSE(IsOkEnabled()) << index;
        }
        Names().setCurrentIndex(3);
        EXPECT_EQ(Text(), std::string(64, '.'));
        EXPECT_EQ(desktop.beeps, 0);
        Click(Cancel);
    });
}

TEST_F(NewDatabaseBox, WhatIsWrittenIntoANameOfTheListIsFilteredAlone) {
    existing = {"My.bank"};
    EXPECT_EQ(WithBox([&] {
                  Names().setCurrentIndex(-1);
                  Names().setCurrentIndex(0);
                  Names().lineEdit()->end(false);
                  Type("2.");
                  EXPECT_EQ(Text(), "My.bank2");
                  EXPECT_EQ(desktop.beeps, 1);
                  Names().lineEdit()->setCursorPosition(3);
                  Paste(".o/l.d ");
                  EXPECT_EQ(Text(), "My.old bank2");
                  EXPECT_EQ(Names().lineEdit()->cursorPosition(), 7);
                  EXPECT_EQ(desktop.beeps, 2);
                  QTest::keyClick(&Names(), Qt::Key_Backspace);
                  EXPECT_EQ(Text(), "My.oldbank2");
                  EXPECT_EQ(desktop.beeps, 2);
                  EXPECT_TRUE(IsOkEnabled());
                  Click(Ok);
              }),
              "My.oldbank2");
}

TEST_F(NewDatabaseBox, NumbersThatAreNoDigitsCannotBeTyped) {
    WithBox([&] {
        Clear();
        Type(QString::fromUtf8("a\u00B2\u00BD\u216B\u2460"));
        EXPECT_EQ(Text(), "a");
        EXPECT_EQ(desktop.beeps, 4);
        Paste(QString::fromUtf8("\u00B2\u0663")); // the second is a digit of Arabic
        EXPECT_EQ(Text(), "a\u0663");
        EXPECT_EQ(desktop.beeps, 5);
        Click(Cancel);
    });
}

TEST_F(NewDatabaseBox, TakesSixtyFourCharacters) {
    EXPECT_EQ(WithBox([&] {
                  Type(QString(65, u'n'));
                  Click(Ok);
              }),
              std::string(64, 'n'));
}

} // namespace
} // namespace tonewright
