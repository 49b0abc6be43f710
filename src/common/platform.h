// The few things that are asked of the operating system directly. One implementation file a
// platform: platform_posix.cpp, platform_windows.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tonewright {

extern const char PathSeparator; // '/' or '\\'
// Of the libraries that a program loads while it runs, without a dot: "so" or "dll".
extern const char *const PlatformLibraryExtension;

// Creation ("birth") time of an existing file that can be opened for writing, in 100-nanosecond
// units since 1601 UTC. False when it cannot be opened or the file system keeps no such time.
bool PlatformFileCreationTime(const char *path, std::uint64_t *time);

// Bytes of a block that malloc() has given: as many as were asked for, or a few more.
std::size_t PlatformBlockSize(const void *block);

// What to run for a browser known by the name of its Windows program ("firefox.exe"): the path that
// the system has registered for it, else the bare name of the program on this platform.
std::string PlatformBrowserProgram(const char *windowsProgram);

// How the platform's file manager is called to show a folder (without a trailing separator), with
// `file` selected where the manager can do that; an empty file: the folder alone. An empty program
// stands for whatever opens folders.
struct FileManagerCall {
    std::string program;
    std::string argument;
};
FileManagerCall PlatformFileManagerCall(const std::string &folder, const std::string &file);

// Lines of text that end in line feeds, with the ends that the platform's own editors write. The
// settings and the history go to their files this way; whoever reads them takes both ends.
std::string PlatformLines(std::string text);

// From now on a write beyond the limit that a process has for the size of files fails as any other
// write does; by default the process ends of a signal, in the middle of the file. Programs call it
// first of all.
void PlatformLetLongWritesFail();

// The arguments that main() was called with as UTF-8, behind them a null pointer. The texts stay as
// long as the process runs.
std::vector<char *> PlatformArguments(int argumentCount, char **arguments);

// What stands behind the program's name on the command line: on Windows as it was typed, with its
// quotes and blanks, elsewhere the arguments joined by one blank.
std::string PlatformCommandLine(int argumentCount, char **arguments);

// For a program with windows that is to print: without a standard output of its own it gets that of
// the terminal that it was started from, if there is one.
void PlatformUseTerminalOfParent();

// Sees to it that the variable HOME names the user's home folder, since the toolkit and the
// programs that this one starts look for it there: missing or empty, it gets the home folder of the
// user's account. False when there is none either. Called before there is a second thread.
bool PlatformFindHome();

// The full path of the running executable, empty when unknown.
std::string PlatformExecutablePath();

// The folder in which programs keep what belongs to the user, where the platform's own differs from
// `configuration`, the toolkit's folder of the user's configuration.
std::string PlatformApplicationDataFolder(const std::string &configuration);

// The folder in which makers of programs keep what belongs to all users of the machine, where the
// platform's own differs from `applications`, the toolkit's folder of the user's applications.
std::string PlatformProgramsFolder(const std::string &applications);

// The folder of the system's fonts; empty where a toolkit without a display finds them by itself.
std::string PlatformFontFolder();

// The folders in which settings for all users of the machine stand, the one that counts most first.
std::vector<std::string> PlatformSystemConfigurationFolders();

} // namespace tonewright
