// What is asked of the terminal that the program was started from.
#pragma once

namespace tonewright {

// From now on until the program ends the terminal takes what is printed as UTF-8.
void UseUtf8Terminal();
// True when standard input is a terminal, so that somebody can answer a question.
bool StandardInputIsTerminal();
// True when standard error is a terminal, so that somebody can watch.
bool StandardErrorIsTerminal();

} // namespace tonewright
