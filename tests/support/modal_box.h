// Looks into a modal box while the code that opened it waits for the user.
#pragma once

#include <functional>

class QDialog;

namespace tonewright {

// Runs `open`, which blocks in a modal box, and hands the box to `use` once it is active; `use`
// closes it. The test fails when no box opens, or when it is still open behind `use`.
void WithModalBox(const std::function<void()> &open, const std::function<void(QDialog &)> &use);

} // namespace tonewright
