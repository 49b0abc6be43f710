// Where the files of this checkout and the programs of this build stand. All of it is in one source
// file, so that the compiler is told no absolute path for any other and a compiler cache can share
// their objects between checkouts.
#pragma once

#include <string>

namespace tonewright {

// The full path of a file of the checkout: SourceFile("resources/html/").
std::string SourceFile(const std::string &name);
// Of a file in examples/; ExampleFile("") is the folder.
std::string ExampleFile(const std::string &name);

// Of a theme made for tests, by its name in tests/CMakeLists.txt.
std::string TestTheme(const std::string &name);

std::string WindowProgram();    // tonewright
std::string CliProgram();       // tonewright-cli
std::string VoicetextProgram(); // of tools/

} // namespace tonewright
