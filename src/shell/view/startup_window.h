// The window that greets the user at start.
#pragma once

#include <functional>
#include <memory>

class QWidget;

namespace tonewright {

// Shows the startup window. It closes by itself after 8 seconds or at the release of a mouse
// button over it, and then calls `closed`, once. Destroying the window calls nothing.
std::unique_ptr<QWidget> ShowStartupWindowBox(std::function<void()> closed);

} // namespace tonewright
