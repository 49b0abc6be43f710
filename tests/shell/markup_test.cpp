// The mark-up in the titles of controls.
#include "shell/markup.h"

#include "common/strings.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

std::string Found(std::string_view markup, std::string_view key) {
    const auto value = MarkupFind(markup, key);
    return value ? std::string(*value) : "(none)";
}

std::uint32_t NumberIn(std::string_view markup, std::string_view key) {
    std::uint32_t number = 77;
    return MarkupNumber(markup, key, number) ? number : 77;
}

TEST(Markup, AValueGoesUpToTheNextSemicolonOrTheEnd) {
    EXPECT_EQ(Found("type=static;text=A = b, c", "type"), "static");
    EXPECT_EQ(Found("type=static;text=A = b, c", "text"), "A = b, c");
    EXPECT_EQ(Found("text=one;two", "text"), "one");
    EXPECT_EQ(Found("text=;type=x", "text"), "");
    EXPECT_EQ(Found("text=", "text"), "");
    EXPECT_EQ(Found("", "text"), "(none)");
    EXPECT_EQ(Found("type=x", "variable"), "(none)");
}

TEST(Markup, BlanksAndControlCharactersInFrontOfAKeyArePassedOver) {
    EXPECT_EQ(Found("\n\t type=a; \r\n\x01\x7F res=b", "type"), "a");
    EXPECT_EQ(Found("\n\t type=a; \r\n\x01\x7F res=b", "res"), "b");
}

TEST(Markup, BlanksAndFurtherEqualSignsInFrontOfAValueArePassedOver) {
    EXPECT_EQ(Found("text= == = A=", "text"), "A=");
    EXPECT_EQ(Found("text ===B", "text"), "B");
    EXPECT_EQ(Found("text=\tC", "text"), "\tC"); // a tab is no blank
    EXPECT_EQ(Found("text= = ;res=1", "text"), "");
    EXPECT_EQ(Found("text= = ;res=1", "res"), "1");
}

TEST(Markup, KeysAreComparedWithoutRegardToCase) {
    EXPECT_EQ(Found("TyPe=a", "tYpE"), "a");
}

TEST(Markup, AKeyThatIsAPrefixOfAnotherMatchesTheFirstItemThatBeginsTheSameWay) {
    EXPECT_EQ(Found("fontface=arial;font=other", "font"), "arial");
    EXPECT_EQ(Found("font=other;fontface=arial", "fontface"), "other");
    EXPECT_EQ(Found("fontsize=20;fontface=arial", "fontface"), "arial");
    EXPECT_EQ(Found("fontsize=20;fontface=arial", "font"), "20");
    EXPECT_EQ(Found("t=a;text=b", "text"), "a");
    EXPECT_EQ(Found("=a;text=b", "text"), "a"); // an empty key begins every one
}

TEST(Markup, WhatHasNoEqualSignIsNoItem) {
    EXPECT_EQ(Found("text;te;;text=a", "text"), "a");
    EXPECT_EQ(Found("plain text", "text"), "(none)");
    EXPECT_EQ(Found(";;;", "text"), "(none)");
}

TEST(Markup, ATextIsCutAt260BytesAndNotInsideOfACharacter) {
    const std::string long260(260, 'x');
    EXPECT_EQ(MarkupText("text=" + long260 + "y", "text"), long260);
    EXPECT_EQ(MarkupText("text=" + std::string(259, 'x') + "\xC3\xA9", "text"),
              std::string(259, 'x'));
    EXPECT_EQ(Found("text=" + long260 + "y", "text"), long260 + "y"); // whole
    EXPECT_EQ(MarkupText("type=a", "text"), std::nullopt);
}

TEST(Markup, ANumberIsDecimalAndUpTo260CharactersLong) {
    EXPECT_EQ(NumberIn("res=7400", "res"), 7400u);
    EXPECT_EQ(NumberIn("res=12 apples", "res"), 12u);
    EXPECT_EQ(NumberIn("res=apples", "res"), 0u);
    EXPECT_EQ(NumberIn("res=", "res"), 0u);
    EXPECT_EQ(NumberIn("res=-1", "res"), 0xFFFFFFFFu);
    EXPECT_EQ(NumberIn("res=0x10", "res"), 0u);
    EXPECT_EQ(NumberIn("res=" + std::string(258, '0') + "12", "res"), 12u);
    EXPECT_EQ(NumberIn("res=" + std::string(259, '0') + "12", "res"), 1u);
    EXPECT_EQ(NumberIn("type=1", "res"), 77u); // stays as it was
}

// ---- "~!!~" and a number

TEST(Markup, ATitleWithTheMarkIsReplacedByTheTextOfItsNumber) {
    const std::string page = LoadProgramString(12002);
    EXPECT_EQ(MarkupOfTitle("~!!~12002"), page);
    EXPECT_EQ(MarkupOfTitle("type=static;text=in front ~!!~12002 behind"), page);
    const ControlRecord record = ReadControlRecord("~!!~12002");
    EXPECT_EQ(record.kind, ControlKind::Static);
    EXPECT_EQ(record.fontHeight, 16);
    EXPECT_TRUE(record.text.starts_with("This wizard will help you"));
    EXPECT_EQ(record.text.size(), 488u) << "not cut";
}

TEST(Markup, ATitleWithoutANumberBehindTheMarkStays) {
    for (const char *title :
         {"~!!~0", "~!!~", "~!!~x", "~!! ~12002", "12002", "~!!~-1", "~!!~-5", "~!!~-2147483648"}) {
        EXPECT_EQ(MarkupOfTitle(title), title);
    }
}

TEST(Markup, ANumberWithoutATextGivesWhatStandsForOne) {
    EXPECT_EQ(MarkupOfTitle("~!!~12006"), "String table error - this application may be damaged");
}

// ---- what a title says

TEST(ControlRecord, HasItsDefaults) {
    const ControlRecord record = ReadControlRecord("type=static");
    EXPECT_EQ(record.kind, ControlKind::Static);
    EXPECT_EQ(record.picture, 0u);
    EXPECT_EQ(record.variable, "");
    EXPECT_EQ(record.fontFace, "");
    EXPECT_EQ(record.fontHeight, 14);
    EXPECT_EQ(record.fontWeight, 400);
    EXPECT_FALSE(record.italic);
    EXPECT_EQ(record.checkedValue, 1u);
    EXPECT_EQ(record.uncheckedValue, 0u);
    EXPECT_EQ(record.checkedString, "");
    EXPECT_EQ(record.subclass, "");
    EXPECT_EQ(record.screenSaver, "");
    EXPECT_EQ(record.text, "");
}

TEST(ControlRecord, TakesEveryItem) {
    const ControlRecord record = ReadControlRecord(
        "type=RADIOBUTTON;res=12;variable=SysexWait;fontface=arial;fontsize=20;fontweight=700;"
        "fontital=2;checkedvalue=3;uncheckedvalue=4;checkedstring=five;subclass=six;"
        "screensaver=seven;text=eight");
    EXPECT_EQ(record.kind, ControlKind::RadioButton);
    EXPECT_EQ(record.picture, 12u);
    EXPECT_EQ(record.variable, "SysexWait");
    EXPECT_EQ(record.fontFace, "arial");
    EXPECT_EQ(record.fontHeight, 20);
    EXPECT_EQ(record.fontWeight, 700);
    EXPECT_TRUE(record.italic);
    EXPECT_EQ(record.checkedValue, 3u);
    EXPECT_EQ(record.uncheckedValue, 4u);
    EXPECT_EQ(record.checkedString, "five");
    EXPECT_EQ(record.subclass, "six");
    EXPECT_EQ(record.screenSaver, "seven");
    EXPECT_EQ(record.text, "eight");
}

TEST(ControlRecord, KnowsFiveKinds) {
    EXPECT_EQ(ReadControlRecord("type=alphagraphic").kind, ControlKind::AlphaGraphic);
    EXPECT_EQ(ReadControlRecord("type=static").kind, ControlKind::Static);
    EXPECT_EQ(ReadControlRecord("type=checkbox").kind, ControlKind::CheckBox);
    EXPECT_EQ(ReadControlRecord("type=radiobutton").kind, ControlKind::RadioButton);
    EXPECT_EQ(ReadControlRecord("type=listbox").kind, ControlKind::ListBox);
    for (const char *other :
         {"type=staticx", "type=stat", "type=", "type= slider", "text=static"}) {
        EXPECT_EQ(ReadControlRecord(other).kind, ControlKind::None) << other;
    }
}

TEST(ControlRecord, AFontIsAtLeast4AndAtMost128PixelsHigh) {
    const auto height = [](const std::string &size) {
        return ReadControlRecord("type=static;fontsize=" + size).fontHeight;
    };
    EXPECT_EQ(height("200"), 128);
    EXPECT_EQ(height("129"), 128);
    EXPECT_EQ(height("128"), 128);
    EXPECT_EQ(height("4"), 4);
    EXPECT_EQ(height("3"), 4);
    EXPECT_EQ(height("1"), 4);
    EXPECT_EQ(height("-20"), 4);
    EXPECT_EQ(height("x"), 4);
}

TEST(ControlRecord, AFontsWeightIsWithinItsRange) {
    const auto weight = [](const std::string &number) {
        return ReadControlRecord("type=static;fontweight=" + number).fontWeight;
    };
    EXPECT_EQ(weight("1000"), 1000);
    EXPECT_EQ(weight("1001"), 1000);
    EXPECT_EQ(weight("0"), 0);
    EXPECT_EQ(weight("-1"), 0);
}

TEST(ControlRecord, ATitleWithoutATypeIsItsTextUnlessItHasOne) {
    EXPECT_EQ(ReadControlRecord("Hello; res=3").text, "Hello; res=3");
    EXPECT_EQ(ReadControlRecord("res=3;text=Hello").text, "Hello");
    EXPECT_EQ(ReadControlRecord("type=slider;res=3").text, "type=slider;res=3");
    EXPECT_EQ(ReadControlRecord("type=slider;text=Hello").text, "Hello");
    EXPECT_EQ(ReadControlRecord("type=static;res=3").text, "");
}

} // namespace
} // namespace tonewright
