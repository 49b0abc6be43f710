// The decisions of the colour box.
#include "shell/colour_selection.h"

#include "common/colour.h"
#include "common/desktop.h"
#include "common/settings.h"
#include "common/text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace tonewright {
namespace {

bool RowHasColour(const ColourTable &table, int row, std::uint32_t colour) {
    return ListHasRow(table, row) && table.items[row].colour == colour;
}

// The selected row, when it is of that colour, or else the first one that is.
int RowOf(const ColourTable &table, std::uint32_t colour) {
    return RowHasColour(table, table.selection, colour) ? table.selection
                                                        : ColourTableRowOf(table, colour);
}

// What went wrong with the file of the table, and what follows from that.
std::string FailureText(const char *failure, int reason, const char *consequence) {
    return std::string(failure) + "\n\n" + ColourTablePath() + ": " + std::strerror(reason) +
           ".\n\n" + consequence;
}

// Saves the table. What went wrong, with `consequence`; empty when nothing did.
std::string Save(ColourSelection &selection, const char *consequence) {
    selection.editPending = ColourTableSave(ColourTablePath().c_str(), &selection.table) == 0;
    return selection.editPending
               ? FailureText("The color table could not be saved.", errno, consequence)
               : std::string();
}

void SaveOrSay(QWidget *owner, ColourSelection &selection, const char *consequence) {
    const std::string failure = Save(selection, consequence);
    if (!failure.empty()) {
        ShowMessage(owner, failure);
    }
}

constexpr const char *StaysInList = "The change stays in the list. It will be saved once more when "
                                    "the list is changed or left.";

} // namespace

void BeginColourSelection(ColourSelection &selection) {
    const bool loaded = ColourTableLoad(ColourTablePath().c_str(), selection.table) != 0;
    selection.readError = loaded || errno == ENOENT ? 0 : errno;
}

void EndColourSelection(QWidget *owner, ColourSelection &selection) {
    if (selection.editPending) {
        SaveOrSay(owner, selection, "The changes of its colors are lost.");
    }
}

std::uint32_t ColourOfFields(const ColourFields &fields) {
    const auto part = [&fields](int index) {
        return static_cast<std::uint8_t>(ReadInteger(fields[index]));
    };
    return ColourOf({.red = part(0), .green = part(1), .blue = part(2)});
}

void SelectColour(ColourSelection &selection, std::uint32_t colour) {
    const int row = RowOf(selection.table, colour);
    if (row != NoRow) {
        ListSelect(selection.table, row);
    }
}

std::string NameOfColour(const ColourSelection &selection, std::uint32_t colour) {
    const int row = RowOf(selection.table, colour);
    return row == NoRow ? std::string() : selection.table.items[row].name;
}

bool MayAddColour(QWidget *owner, const ColourSelection &selection, std::uint32_t colour) {
    if (selection.readError != 0) {
        ShowMessage(owner, FailureText("The color table could not be read.", selection.readError,
                                       "It stays as it is, and no color can be added to it."));
        return false;
    }
    const int row = RowOf(selection.table, colour);
    return row == NoRow ||
           AskYesNo(owner, "This color already exists in the current color database as " +
                               selection.table.items[row].name +
                               ". Do you wish to add it anyway?") == ResultYes;
}

bool MayStandInColourName(char32_t character) {
    return character >= ' ' && character != '=' && !(character >= 0x7F && character <= 0x9F);
}

bool IsWholeColour(std::string_view name, const ColourFields &fields) {
    const auto isNumber = [](const std::string &field) {
        return !field.empty() && field.size() <= 3 &&
               field.find_first_not_of("0123456789") == field.npos;
    };
    return name.find_first_not_of(' ') != name.npos && std::ranges::all_of(fields, isNumber);
}

void AddColour(QWidget *owner, ColourSelection &selection, NamedColour colour) {
    ListSelect(selection.table, ColourTableAdd(selection.table, std::move(colour)));
    SaveOrSay(owner, selection, StaysInList);
}

bool DeleteColour(QWidget *owner, ColourSelection &selection) {
    const int row = selection.table.selection;
    if (row == NoRow ||
        AskYesNo(owner, "Do you really want to delete this color from the current color "
                        "database?") != ResultYes) {
        return false;
    }
    ColourTableDelete(selection.table, row);
    SaveOrSay(owner, selection, StaysInList);
    ListSelect(selection.table, std::max(row - 1, 0));
    return true;
}

bool OpenColourTable(QWidget *owner, ColourSelection &selection, std::string_view name) {
    if (selection.editPending) {
        const std::string failure =
            Save(selection, "Do you wish to open another color table and lose the changes?");
        if (!failure.empty() && AskYesNo(owner, failure) != ResultYes) {
            return false;
        }
        selection.editPending = false;
    }
    ColourTableFile = ColourTableMeantBy(name);
    BeginColourSelection(selection);
    return true;
}

} // namespace tonewright
