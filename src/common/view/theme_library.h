// A theme library of its own file: loading it, and asking it what the interface of themes
// (themes/tonewright_theme.h) has entry points for. Which theme the program draws with is
// common/view/theme.
#pragma once

#include "common/theme_bitmap.h"
#include "tonewright_theme.h"

#include <QLibrary>

#include <memory>
#include <optional>
#include <string>

class QWidget;

namespace tonewright {

// The entry points that the program draws with. Null: not there.
struct ThemeDrawing {
    decltype(&THEMEDrawButton) drawButton = nullptr;
    decltype(&THEMEDrawToolbarBackground) drawToolbarBackground = nullptr;
    decltype(&THEMEGetMetric) getMetric = nullptr;
    decltype(&THEMEGetBitmap) getBitmap = nullptr;
};

struct StartedTheme {
    // Null when the file could not be loaded as a library.
    std::unique_ptr<QLibrary> module;
    ThemeDrawing drawing;
    // Why the program cannot draw with it, for the user of a command line; empty when it can.
    std::string fault;
};

// Loads the library at `path` and takes it through all that a theme has to pass: it supports this
// version of the interface, its beginning succeeds, and each entry point is there. It stops at the
// first that it does not pass; what has been loaded by then is the caller's to end.
StartedTheme StartTheme(const std::string &path);
// Calls the library's THEMEDeInit, if it has one, and lets it go. Its code stays in memory until
// the program ends, so that what it has left behind does not call into nothing; a theme that is put
// in its place meanwhile is looked at from the next start on.
void EndTheme(std::unique_ptr<QLibrary> module);

// The bitmap in a block that a theme has handed over, which is freed; nothing for null and for a
// block that holds something else.
std::optional<ThemeBitmap> TakeThemeBitmap(void *block);

// The picture by which the library at `path`, which the program does not draw with, shows itself.
// Nothing when it cannot be loaded, does not begin, or has none.
std::optional<ThemeBitmap> ThemePreviewOf(const std::string &path);

// Lets the user configure the theme at `path`, in its own window above `owner`. Nothing happens
// when it cannot be loaded or has nothing to configure.
void ConfigureTheme(const std::string &path, QWidget *owner);

} // namespace tonewright
