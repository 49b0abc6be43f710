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
    int readError = 0;        // why the file, which is there, could not be read, as errno tells it
};

// Loads the table that ColourTableFile names; without its file, or when that cannot be read, the
// table is empty.
void BeginColourSelection(ColourSelection &selection);
// Saves a table once more whose last change could not be saved, and says so when it fails again.
void EndColourSelection(QWidget *owner, ColourSelection &selection);

// Red, green and blue as they stand in their fields.
using ColourFields = std::array<std::string, 3>;
// Each number cut to 8 bits; 0 where there is none.
std::uint32_t ColourOfFields(const ColourFields &fields);

// Selects the row of a colour; one that is selected stays it where there are several. Where there
// is none the selection stays.
void SelectColour(ColourSelection &selection, std::uint32_t colour);
// The name of a colour: that of the selected row if it is the one; empty when it has none.
std::string NameOfColour(const ColourSelection &selection, std::uint32_t colour);

// Asks whether a colour that is in the table is to be added once more. Says that none can be added
// to a table that could not be read: what its file holds would be lost.
bool MayAddColour(QWidget *owner, const ColourSelection &selection, std::uint32_t colour);
// A name is characters other than "=", with which it would end in the file, and control characters.
bool MayStandInColourName(char32_t character);
constexpr int ColourNameLimit = 60; // characters: with its numbers it fits in a line of the file
// Whether name and fields make a colour: a name of more than blanks, and one to three digits in
// each field.
bool IsWholeColour(std::string_view name, const ColourFields &fields);
// Adds a colour that MayAddColour allows, selects it and saves the table. The change stays in the
// list when it cannot be saved, which is said.
void AddColour(QWidget *owner, ColourSelection &selection, NamedColour colour);

// Asks, and then deletes the selected row, saves the table as AddColour does, and selects the row
// before or else the first. False when nothing was selected or the answer was not Yes.
bool DeleteColour(QWidget *owner, ColourSelection &selection);

// Makes the table that a name means (ColourTableMeantBy) the current one, and loads it. A change of
// the former table that could not be saved is saved first; when that fails again it is asked
// whether it may be lost. False, and nothing changed, when it may not.
bool OpenColourTable(QWidget *owner, ColourSelection &selection, std::string_view name);

} // namespace tonewright
