// The name box of the voice editor: what can be typed and pasted, and what stays.
#include "sheet_window.h"

#include "drivers/view/name_edit.h"

#include <QClipboard>
#include <QInputMethodEvent>

#include <algorithm>

namespace tonewright {
namespace {

class NameBox : public SheetWindow {
protected:
    QLineEdit &Box() const { return *Control<QLineEdit>(101); }
    void Paste(const QString &text) const {
        QApplication::clipboard()->setText(text);
        Box().selectAll();
        Box().paste();
    }
    // A key that writes `text`, as a keyboard or a dead key gives it.
    void KeyThatWrites(const QString &text) const {
        QKeyEvent event(QEvent::KeyPress, 0, Qt::NoModifier, text);
        QApplication::sendEvent(&Box(), &event);
    }
    void Commit(const QString &text) const {
        QInputMethodEvent event;
        event.setCommitString(text);
        QApplication::sendEvent(&Box(), &event);
    }
};

TEST_F(NameBox, AKeyWithACodeOf128OrAboveBeepsAndAddsNothing) {
    Edited(Dx7Sheets, [&] {
        Type(101, "AB");
        int beeps = 0;
        for (const int code : {0x80, 0xE9, 0xFF, 0x394}) {
            KeyThatWrites(QChar(code));
            EXPECT_EQ(Text(101), "AB") << code;
            EXPECT_EQ(desktop.beeps, ++beeps) << code;
            Commit(QChar(code));
            EXPECT_EQ(Text(101), "AB") << code;
            EXPECT_EQ(desktop.beeps, ++beeps) << code;
        }
        KeyThatWrites("~");
        Commit("z");
        EXPECT_EQ(Text(101), "AB~z");
        EXPECT_EQ(desktop.beeps, beeps);
        Cancel();
    });
}

TEST_F(NameBox, PastedLatin1GoesInAndOtherCharactersDoNot) {
    const Bytes bytes = Edited(Dx7Sheets, [&] {
        Focus(101);
        Paste(QString::fromUtf8("\xC3\x89t\xC3\xA9\xC2\xA0\xC3\xBF"));
        EXPECT_EQ(Text(101), QString::fromLatin1("\xC9t\xE9\xA0\xFF"));
        EXPECT_EQ(desktop.beeps, 0);
        Paste(QString::fromUtf8("a\xCE\xA9"
                                "b\x01\x7F"
                                "c"));
        EXPECT_EQ(Text(101), "abc");
        EXPECT_EQ(desktop.beeps, 1);
        Paste("1234567890ABC");
        EXPECT_EQ(Text(101), "1234567890");
        Paste(QString::fromLatin1("\xC9t\xE9"));
        Ok();
    });
    EXPECT_EQ(Bytes(bytes.begin() + 145, bytes.begin() + 155),
              (Bytes{0xC9, 't', 0xE9, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(NameBox, TenCharactersAreTyped) {
    const Bytes bytes = Edited(RefaceSheets, [&] {
        Type(101, "ABCDEFGHIJKL");
        EXPECT_EQ(Text(101), "ABCDEFGHIJ");
        Ok();
    });
    EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 10), "ABCDEFGHIJ");
}

TEST_F(NameBox, AnEmptyNameBecomesUntitledAndOneOfThreeLettersEndsInZeroBytes) {
    const auto name = [&](const char *typed) {
        const Bytes bytes = Edited(Dx7Sheets, [&] {
            Type(101, typed);
            Ok();
        });
        return Bytes(bytes.begin() + 145, bytes.begin() + 155);
    };
    EXPECT_EQ(name(""), (Bytes{'U', 'n', 't', 'i', 't', 'l', 'e', 'd', 0, 0}));
    EXPECT_EQ(name("ABC"), (Bytes{'A', 'B', 'C', 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(NameBox, EveryByteInsideANameSurvivesOpenAndOk) {
    for (const SheetFamily *sheets : {&Dx7Sheets, &RefaceSheets}) {
        const std::size_t name = sheets == &Dx7Sheets ? 145 : 0;
        for (int first = 1; first <= 255; first += 8) {
            VoiceObject voice = sheets->voice;
            Bytes stored = {'A'};
            for (int byte = first; byte < first + 8; ++byte) {
                stored.push_back(static_cast<std::uint8_t>(std::min(byte, 255)));
            }
            stored.push_back('Z');
            std::copy(stored.begin(), stored.end(),
                      voice.bytes.begin() + VoiceObjectHeaderSize + name);
            EXPECT_EQ(Edit(*sheets, voice,
                           [&] {
                               Focus(104);
                               Focus(101);
                               Ok();
                           }),
                      1);
            const Bytes bytes = VoiceBytes(voice);
            EXPECT_EQ(Bytes(bytes.begin() + name, bytes.begin() + name + 10), stored) << first;
        }
    }
    EXPECT_EQ(desktop.beeps, 0);
}

TEST_F(NameBox, WhatStandsInANameStaysWhileItIsEdited) {
    VoiceObject voice = Dx7Sheets.voice;
    const Bytes stored = {'A', 0x01, 0xE9, 0x9C, ' ', 0, 0, 0, 0, 0};
    std::copy(stored.begin(), stored.end(), voice.bytes.begin() + VoiceObjectHeaderSize + 145);
    Edit(Dx7Sheets, voice, [&] {
        Focus(101);
        Key(Qt::Key_Home);
        QTest::keyClicks(&Box(), "x");
        Ok();
    });
    const Bytes bytes = VoiceBytes(voice);
    EXPECT_EQ(Bytes(bytes.begin() + 145, bytes.begin() + 150), (Bytes{'x', 'A', 0x01, 0xE9, 0x9C}));
    EXPECT_EQ(desktop.beeps, 0);
}

TEST_F(NameBox, APageOfAnOperatorShowsTheChangedNameAndTakesNone) {
    Edited(RefaceSheets, [&] {
        Type(101, "BELL");
        ShowTab(2);
        EXPECT_EQ(Text(101), "BELL");
        EXPECT_FALSE(Control(101)->isEnabled());
        Cancel();
    });
}

TEST(NameEdit, TakesAsManyCharactersAsItsFamilysNamesHave) {
    NameEdit edit;
    edit.SetLength(4);
    const int narrow = edit.sizeHint().width();
    edit.setText("ABCDEFGH");
    EXPECT_EQ(edit.text(), "ABCD");
    edit.SetLength(16);
    EXPECT_EQ(edit.sizeHint().width() - narrow, 12 * edit.fontMetrics().horizontalAdvance(u'N'));
}

} // namespace
} // namespace tonewright
