// Compiles a locale with localedef and lets the process's numbers follow it.
#include "support/comma_locale.h"

#include "support/run_program.h"

#include <clocale>
#include <cstdlib>
#include <optional>
#include <stdexcept>

namespace tonewright {
namespace {

constexpr const char *LocaleName = "comma";
// Only what differs from the C locale: the whole of a language takes a hundred times as long.
constexpr const char *LocaleSource = "LC_NUMERIC\n"
                                     "decimal_point \",\"\n"
                                     "thousands_sep \".\"\n"
                                     "grouping 3;3\n"
                                     "END LC_NUMERIC\n";

// Where setlocale looks for locales first, as long as it lives.
struct LocaleFolder {
    explicit LocaleFolder(const TempFolder &folder) {
        if (const char *path = std::getenv("LOCPATH")) {
            former = path;
        }
        setenv("LOCPATH", folder.path.c_str(), 1);
    }
    ~LocaleFolder() {
        if (former) {
            setenv("LOCPATH", former->c_str(), 1);
        } else {
            unsetenv("LOCPATH");
        }
    }
    LocaleFolder(const LocaleFolder &) = delete;
    LocaleFolder &operator=(const LocaleFolder &) = delete;

private:
    std::optional<std::string> former;
};

} // namespace

CommaLocale::CommaLocale() : former(std::setlocale(LC_NUMERIC, nullptr)) {
    // -c: also without the other categories, of which it warns.
    const ProgramResult made =
        RunProgram({"/usr/bin/env", "localedef", "--no-archive", "-c", "-i",
                    folder.WriteText("source", LocaleSource), folder.File(LocaleName)});
    const LocaleFolder here(folder);
    if (!std::setlocale(LC_NUMERIC, LocaleName) ||
        std::string(std::localeconv()->decimal_point) != ",") {
        std::setlocale(LC_NUMERIC, former.c_str());
        throw std::runtime_error("no locale with a decimal comma (package locales): " +
                                 made.errors);
    }
}

CommaLocale::~CommaLocale() {
    std::setlocale(LC_NUMERIC, former.c_str());
}

std::vector<std::string> CommaLocale::Command(std::vector<std::string> words) const {
    words.insert(words.begin(), {"/usr/bin/env", "LOCPATH=" + folder.path.string(),
                                 std::string("LC_ALL=") + LocaleName});
    return words;
}

} // namespace tonewright
