// What the colour box decides: which named colour a colour is, and how the table of them is
// changed.
#pragma once

#include "common/colour_table.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

class QWidget;

namespace tonewright {

struct ColourSelection {
    ColourTable table;
    bool editPending = false; // the table was changed, and is not as a whole in its file
};

// Loads the table that ColourTableFile names; without its file the table is empty.
void BeginColourSelection(ColourSelection &selection);
// Saves a table once more whose last change could not be saved.
void EndColourSelection(ColourSelection &selection);

// Red, green and blue as they stand in their fields.
using ColourFields = std::array<std::string, 3>;
// Each number cut to 8 bits; 0 where there is none.
std::uint32_t ColourOfFields(const ColourFields &fields);

// Selects the row of a colour; one that is selected stays it where there are several. Where there
// is none the selection stays.
void SelectColour(ColourSelection &selection, std::uint32_t colour);
// The name of a colour: that of the selected row if it is the one; empty when it has none.
std::string NameOfColour(const ColourSelection &selection, std::uint32_t colour);

// Asks whether a colour that is in the table is to be added once more.
bool MayAddColour(QWidget *owner, const ColourSelection &selection, std::uint32_t colour);
// A name is characters other than "=", with which it would end in the file, and control characters.
bool MayStandInColourName(char32_t character);
constexpr int ColourNameLimit = 60; // characters: with its numbers it fits in a line of the file
// Whether name and fields make a colour: a name, and one to three digits in each field.
bool IsWholeColour(std::string_view name, const ColourFields &fields);
// Adds a colour, selects it and saves the table.
void AddColour(ColourSelection &selection, NamedColour colour);

// Asks, and then deletes the selected row, saves the table, and selects the row before or else the
// first. False when nothing was selected or the answer was not Yes.
bool DeleteColour(QWidget *owner, ColourSelection &selection);

// Whether a name stands for a table in the user's folder, and goes into the settings and a path
// whole: a file name that ends in ".CCL", in letters of either case, or one without an ending.
bool IsColourTableName(std::string_view name);
// Makes another table the current one, and loads it; a name without an ending gets ".CCL". A change
// of the former table that could not be saved is saved first.
void OpenColourTable(ColourSelection &selection, std::string_view name);

} // namespace tonewright
