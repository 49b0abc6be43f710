// Runs a program in a child process with its output going to files that have no name.
#include "support/run_program.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tonewright {

static std::string ReadFromStart(std::FILE *file) {
    std::string text;
    std::rewind(file);
    char piece[4096];
    for (std::size_t count; (count = std::fread(piece, 1, sizeof piece, file)) > 0;)
        text.append(piece, count);
    std::fclose(file);
    return text;
}

ProgramResult RunProgram(const std::vector<std::string> &command) {
    std::vector<char *> arguments;
    for (const std::string &word : command)
        arguments.push_back(const_cast<char *>(word.c_str()));
    arguments.push_back(nullptr);

    ProgramResult result;
    std::FILE *output = std::tmpfile();
    std::FILE *errors = std::tmpfile();
    if (output == nullptr || errors == nullptr)
        return result;
    const pid_t child = fork();
    if (child == 0) {
        const int input = open("/dev/null", O_RDONLY);
        if (dup2(input, 0) == 0 && dup2(fileno(output), 1) == 1 && dup2(fileno(errors), 2) == 2)
            execv(arguments[0], arguments.data());
        _exit(127);
    }
    int status = 0;
    if (child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status))
        result.exitStatus = WEXITSTATUS(status);
    result.output = ReadFromStart(output);
    result.errors = ReadFromStart(errors);
    return result;
}

} // namespace tonewright
