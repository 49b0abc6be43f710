// What is asked of the terminal that the program was started from.
#pragma once

namespace tonewright {

// True when standard input is a terminal, so that somebody can answer a question.
bool StandardInputIsTerminal();

} // namespace tonewright
