// Themes made for tests (themes/test_theme.cc), put into a program folder of the test's own.
#pragma once

#include "support/temp_folder.h"

#include <string>
#include <vector>

namespace tonewright {

// The libraries that are made of it; the name of each says what it lacks or does.
extern const std::vector<std::string> ThemesThatDoNotStart;
extern const std::vector<std::string> ThemesWithoutBitmaps; // with such as are none, to be exact

// A program folder with a folder "theme", which becomes ApplicationPath, and a folder of programs
// of the user's with another one. Themes tell it what they are called with.
struct ThemeHouse {
    ThemeHouse();
    ~ThemeHouse();
    ThemeHouse(const ThemeHouse &) = delete;
    ThemeHouse &operator=(const ThemeHouse &) = delete;

    // Puts a library of the tests below the program as the theme of a name, "THEME_A.dll"; its
    // path.
    std::string Put(const std::string &library, const std::string &theme) const;
    // The same below the user's folder of programs.
    std::string PutForUser(const std::string &library, const std::string &theme) const;
    // The path that a theme has below the program.
    std::string PathOf(const std::string &theme) const;
    // What themes have been called with since the last call.
    std::vector<std::string> Calls() const;

    TempFolder program, user;
};

// Puts the window program and the default theme, without which it does not start, into a folder;
// the program's path there. It looks for other themes beside itself.
std::string PutProgram(const TempFolder &folder);

} // namespace tonewright
