// The string table of the program: every numbered text, in resources/strings.inc.
#pragma once

namespace tonewright {

// The text of a number, or "String table error - this application may be damaged". The text stands
// in one static buffer of 8,192 characters, overwritten by the next call.
const char *LoadProgramString(unsigned number);

} // namespace tonewright
