// The named colours: a text file of a colour a line,
//
//     Navy=0,0,128
//
// name, red, green and blue, and the list box that they stand in, sorted by their names.
//
// A name ends at the first "="; more of these, blanks and backspaces may stand behind it. Several
// commas count as one. A number may have blanks and a sign in front of it, and of one above 255 the
// low 8 bits count. What stands behind the third number is passed over, and so is a line without a
// name or without three numbers.
#pragma once

#include "common/line_reader.h"
#include "common/list_box.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright {

struct NamedColour {
    std::string name; // UTF-8
    std::uint32_t colour = 0;
};

// What holds between any two calls: the list has one row for each of its colours, and their names
// are in the order of their letters, A to Z counting as small ones.
struct ColourTable : ListBox {
    std::vector<NamedColour> items; // one per row
};

// Puts a colour where its name belongs, behind equal ones; its row.
int ColourTableAdd(ColourTable &table, NamedColour colour);
// Removes a row. False when there is no such row.
bool ColourTableDelete(ColourTable &table, int row);
// The first row of a colour; NoRow when it is not there.
int ColourTableRowOf(const ColourTable &table, std::uint32_t colour);

// Replaces all colours by those of the file. 0 when it cannot be opened or not be read to its end,
// or is no regular file: the list is empty then, and errno tells why. Else 1.
int ColourTableLoad(const char *path, ColourTable &table);
// The same with lines from anywhere.
int ColourTableRead(LineReader &lines, ColourTable &table);

// Writes the colours in their order, after a file of that name with ".bak" behind it has been
// removed. 1 when all of them are in the file. Else 0: the file is as it was when it could not be
// opened for writing, and ends where the disk was full; errno tells why. `table` is null for a list
// whose rows cannot be counted: the file is removed then, and one with ".bak" gets its name. An
// empty path touches nothing.
int ColourTableSave(const char *path, const ColourTable *table);
// What is written.
std::string ColourTableText(const ColourTable &table);

constexpr const char *DefaultColourTable = "TNWRGT.CCL";

// The name in ColourTableFile. The default one when that is empty or no plain name of a file in the
// user's folder: it holds a separator, a colon or a control character, consists of dots, or makes a
// path that is too long.
std::string ColourTableName();
// The file of that name; empty while the platform has no folder for it.
std::string ColourTablePath();
// Whether the user may give a table a name, which goes into the settings and a path whole: a plain
// name as above that ends in ".CCL", in letters of either case, or one without an ending.
bool IsColourTableName(std::string_view name);
// The table that the user means by such a name: one that is there and differs from it in the case
// of letters only, or else a file of that name. A name without an ending gets ".CCL".
std::string ColourTableMeantBy(std::string_view name);
// Copies the default table, which stands beside the program, to the user's folder when there is
// nothing of that name there. Without a sound when it cannot be copied: the list is empty then.
void InstallColourTable();
// The names of the tables in the user's folder: regular files that end in ".CCL", in letters of
// either case, and whose names IsColourTableName takes; in the order of their letters.
std::vector<std::string> ColourTableNames();

} // namespace tonewright
