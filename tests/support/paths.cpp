#include "support/paths.h"

#include "common/platform.h"

namespace tonewright {

std::string SourceFile(const std::string &name) {
    return SOURCE_FOLDER "/" + name;
}

std::string ExampleFile(const std::string &name) {
    return SourceFile("examples/" + name);
}

std::string TestTheme(const std::string &name) {
    return TEST_THEME_FOLDER "/" + name + "." + PlatformLibraryExtension;
}

std::string WindowProgram() {
    return WINDOW_PROGRAM;
}

std::string CliProgram() {
    return CLI_PROGRAM;
}

std::string VoicetextProgram() {
    return VOICETEXT_PROGRAM;
}

} // namespace tonewright
