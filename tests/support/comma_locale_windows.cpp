// Lets the process's numbers follow a locale that Windows has.
#include "support/comma_locale.h"

#include <clocale>
#include <stdexcept>

namespace tonewright {

CommaLocale::CommaLocale() : former(std::setlocale(LC_NUMERIC, nullptr)) {
    if (!std::setlocale(LC_NUMERIC, "German_Germany") ||
        std::string(std::localeconv()->decimal_point) != ",") {
        std::setlocale(LC_NUMERIC, former.c_str());
        throw std::runtime_error("no locale with a decimal comma");
    }
}

CommaLocale::~CommaLocale() {
    std::setlocale(LC_NUMERIC, former.c_str());
}

// Programs here begin with the plain locale whatever the user's is.
std::vector<std::string> CommaLocale::Command(std::vector<std::string> words) const {
    return words;
}

} // namespace tonewright
