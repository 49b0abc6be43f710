#include "support/test_themes.h"

#include "common/folders.h"
#include "common/platform.h"
#include "common/settings.h"
#include "common/theme_files.h"
#include "support/paths.h"

#include <QByteArray>

#include <sstream>

namespace tonewright {

const std::vector<std::string> ThemesThatDoNotStart = {
    "without_get_support",
    "without_init",
    "without_draw_button",
    "without_draw_small_button",
    "without_draw_tool",
    "without_draw_toolbar_background",
    "without_get_metric",
    "without_get_bitmap",
    "refusing",
    "failing",
};
const std::vector<std::string> ThemesWithoutBitmaps = {
    "bits_16", "negative_height", "too_wide", "cut", "no_bitmap",
};

namespace {

std::string Copied(const std::string &library, const std::filesystem::path &folder,
                   const std::string &theme) {
    std::filesystem::create_directories(folder);
    const std::filesystem::path path = folder / ThemeDiskName(theme);
    std::filesystem::copy_file(TestTheme(library), path);
    return path.string();
}

} // namespace

std::string PutProgram(const TempFolder &folder) {
    const std::filesystem::path program = WindowProgram();
    for (const std::filesystem::path &file :
         {program,
          program.parent_path() / ("basetheme_x64." + std::string(PlatformLibraryExtension))}) {
        std::error_code error; // a link where it can be had, since the program is large
        std::filesystem::create_hard_link(file, folder.path / file.filename(), error);
        if (error) {
            std::filesystem::copy_file(file, folder.path / file.filename());
        }
    }
    return (folder.path / program.filename()).string();
}

ThemeHouse::ThemeHouse() {
    ApplicationPath = program.Folder();
    PlatformFolders.programs = user.Folder();
    qputenv("TEST_THEME_CALLS", QByteArray::fromStdString(program.File("calls")));
}

ThemeHouse::~ThemeHouse() {
    qunsetenv("TEST_THEME_CALLS");
}

std::string ThemeHouse::Put(const std::string &library, const std::string &theme) const {
    return Copied(library, program.path / "theme", theme);
}

std::string ThemeHouse::PutForUser(const std::string &library, const std::string &theme) const {
    return Copied(library, user.path / "Quillbrook" / "theme", theme);
}

std::string ThemeHouse::PathOf(const std::string &theme) const {
    return (program.path / "theme" / ThemeDiskName(theme)).string();
}

std::vector<std::string> ThemeHouse::Calls() const {
    std::vector<std::string> calls;
    if (program.Holds("calls")) {
        std::istringstream text(ReadTestText(program.File("calls")));
        for (std::string line; std::getline(text, line);) {
            calls.push_back(line);
        }
        std::filesystem::remove(program.File("calls"));
    }
    return calls;
}

} // namespace tonewright
