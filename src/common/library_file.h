// What the file of a library is looked at for before the system loads it.
#pragma once

#include <iosfwd>
#include <string>

namespace tonewright {

// False for a library whose file ends before what it says to hold, as a copy that broke off leaves
// it: loading it may end the program. True for all other files, also for such as are no library,
// which the system refuses with a reason of its own, as it does those of other machines.
bool LibraryFileIsWhole(const std::string &path);
// The same of the bytes of a file, which may be asked for in any order.
bool LibraryIsWhole(std::istream &file);

} // namespace tonewright
