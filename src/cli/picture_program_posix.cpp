// The new program takes the place of the process, so that signals and the exit status are its own.
#include "cli/picture_program.h"

#include <unistd.h>

namespace tonewright {

int RunInPlace(const std::string &program, const std::vector<std::string> &arguments) {
    std::vector<char *> words = {const_cast<char *>(program.c_str())};
    for (const std::string &argument : arguments) {
        words.push_back(const_cast<char *>(argument.c_str()));
    }
    words.push_back(nullptr);
    return execv(program.c_str(), words.data());
}

} // namespace tonewright
