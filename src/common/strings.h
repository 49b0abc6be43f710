// The string table of the program: every numbered text, in resources/strings.inc.
#pragma once

#include <initializer_list>
#include <string>

namespace tonewright {

// The text of a number, or "String table error - this application may be damaged". The text stands
// in one static buffer of 8,192 characters, overwritten by the next call.
const char *LoadProgramString(unsigned number);
// The text of a number with the parts in the stead of its "%s", in this order, as many as there
// are.
std::string LoadProgramString(unsigned number, std::initializer_list<std::string> parts);

// Two paragraphs of a message.
std::string Paragraphs(std::string first, const std::string &second);

} // namespace tonewright
