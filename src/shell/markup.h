// The mark-up in the titles of controls, which says what a control is, how it looks and which
// setting it is bound to:
//
//   type=checkbox;variable=CreateBackups;text=Create backups
//
// A list of items "key=value", separated by ";". Blanks and control characters in front of a key
// are passed over, blanks and further "=" in front of a value too. What has no "=" is no item.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tonewright {

constexpr std::size_t MarkupTextLimit = 260; // bytes

// The value of the first item whose key begins alike, up to the next ";". Keys are compared without
// regard to case, by the shorter of the two: "font" finds the value of "fontface", and "fontface"
// that of "font". A value may be empty. It is a part of `markup`.
std::optional<std::string_view> MarkupFind(std::string_view markup, std::string_view key);

// The same, cut at MarkupTextLimit.
std::optional<std::string> MarkupText(std::string_view markup, std::string_view key);

// The same as a decimal number, as ReadInteger reads it; digits behind MarkupTextLimit do not
// count. True when there is such an item; `number` stays as it is without one.
bool MarkupNumber(std::string_view markup, std::string_view key, std::uint32_t &number);

// What a title stands for: where it holds the mark "~!!~" with a number behind it, the program's
// text of that number, which is mark-up as well. The title itself without a mark, for a number
// below 1 and for a text of less than two bytes.
std::string MarkupOfTitle(std::string_view title);

enum class ControlKind { None, AlphaGraphic, Static, CheckBox, RadioButton, ListBox };

// What the mark-up of a control says.
struct ControlRecord {
    ControlKind kind = ControlKind::None; // also for a word that is none of the kinds
    std::uint32_t picture = 0;            // of an AlphaGraphic: its number
    std::string variable;                 // the name of a setting
    std::string fontFace;                 // of a Static; empty: the font around it
    int fontHeight = 14;                  // character cell, pixels; 4 to 128
    int fontWeight = 400;                 // 0, the usual one, to 1000
    bool italic = false;
    std::uint32_t checkedValue = 1;   // what a check box, or a radio button, stores of a number
    std::uint32_t uncheckedValue = 0; // what a check box stores that is not checked
    std::string checkedString;        // what a radio button stores of a text
    std::string subclass;             // of a list that fills itself and is bound to nothing
    std::string screenSaver;          // of a check box that installs one and is bound to nothing
    std::string text;                 // what is to be read in the control
};

// Reads a title. Where it has no known kind and no text, the whole title is the text.
ControlRecord ReadControlRecord(std::string_view title);

} // namespace tonewright
