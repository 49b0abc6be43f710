// Starts another program, which goes on by itself.
#pragma once

#include <QString>

namespace tonewright {

// `argument` arrives as it is, with the quotes in it. False when the program does not start.
bool StartProgram(const QString &program, const QString &argument);

} // namespace tonewright
