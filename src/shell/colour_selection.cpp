// The decisions of the colour box.
#include "shell/colour_selection.h"

#include "common/colour.h"
#include "common/desktop.h"
#include "common/folders.h"
#include "common/settings.h"
#include "common/text.h"

#include <algorithm>
#include <utility>

namespace tonewright {
namespace {

constexpr std::string_view TableEnding = ".CCL";
constexpr std::size_t LongestName = 240; // bytes, which fit behind the name of the setting

bool RowHasColour(const ColourTable &table, int row, std::uint32_t colour) {
    return ListHasRow(table, row) && table.items[row].colour == colour;
}

// The selected row, when it is of that colour, or else the first one that is.
int RowOf(const ColourTable &table, std::uint32_t colour) {
    return RowHasColour(table, table.selection, colour) ? table.selection
                                                        : ColourTableRowOf(table, colour);
}

// What is put behind the name of a table.
std::string_view EndingOf(std::string_view name) {
    return name.find('.') == name.npos ? TableEnding : std::string_view();
}

void Save(ColourSelection &selection) {
    selection.editPending = ColourTableSave(ColourTablePath().c_str(), &selection.table) == 0;
}

} // namespace

void BeginColourSelection(ColourSelection &selection) {
    ColourTableLoad(ColourTablePath().c_str(), selection.table);
}

void EndColourSelection(ColourSelection &selection) {
    if (selection.editPending) {
        Save(selection);
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
    return !name.empty() && std::ranges::all_of(fields, isNumber);
}

void AddColour(ColourSelection &selection, NamedColour colour) {
    ListSelect(selection.table, ColourTableAdd(selection.table, std::move(colour)));
    Save(selection);
}

bool DeleteColour(QWidget *owner, ColourSelection &selection) {
    const int row = selection.table.selection;
    if (row == NoRow ||
        AskYesNo(owner, "Do you really want to delete this color from the current color "
                        "database?") != ResultYes) {
        return false;
    }
    ColourTableDelete(selection.table, row);
    Save(selection);
    ListSelect(selection.table, std::max(row - 1, 0));
    return true;
}

bool IsColourTableName(std::string_view name) {
    const auto isControl = [](char character) { return character >= 0 && character < ' '; };
    const std::string_view folder = ProductUserFile("");
    const std::size_t room = std::min(LongestName, PathLimit - std::min(folder.size(), PathLimit));
    return !name.empty() && name.size() + EndingOf(name).size() <= room && name.front() != ' ' &&
           name.front() != '=' && name.find_first_of("/\\:") == name.npos &&
           std::ranges::none_of(name, isControl) &&
           (name.find('.') == name.npos ||
            EqualNoCase(ExtensionOfPath(name), TableEnding.substr(1)));
}

void OpenColourTable(ColourSelection &selection, std::string_view name) {
    EndColourSelection(selection);
    selection.editPending = false;
    ColourTableFile = name;
    ColourTableFile += EndingOf(name);
    BeginColourSelection(selection);
}

} // namespace tonewright
