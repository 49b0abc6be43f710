#include "support/paths.h"

#include "common/platform.h"

#include <filesystem>

namespace tonewright {
namespace {

// As the platform writes it.
std::string Preferred(const std::string &path) {
    return std::filesystem::path(path).make_preferred().string();
}

} // namespace

std::string SourceFile(const std::string &name) {
    return Preferred(SOURCE_FOLDER "/" + name);
}

std::string ExampleFile(const std::string &name) {
    return SourceFile("examples/" + name);
}

std::string TestTheme(const std::string &name) {
    return Preferred(TEST_THEME_FOLDER "/" + name + "." + PlatformLibraryExtension);
}

std::string WindowProgram() {
    return Preferred(WINDOW_PROGRAM);
}

std::string CliProgram() {
    return Preferred(CLI_PROGRAM);
}

std::string VoicetextProgram() {
    return Preferred(VOICETEXT_PROGRAM);
}

} // namespace tonewright
