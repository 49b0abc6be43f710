// The report about machine and program, for those who help its users. A line is a label that ends
// in a colon, a tab and a value; a line that begins with the tab goes on with the value of the one
// before. Other control characters are question marks.
#pragma once

#include "shell/system_facts.h"

#include <string>
#include <vector>

namespace tonewright {

// A line for each fact that is known, and for each folder of PlatformFolders and of `facts` that is
// there.
std::vector<std::string> SystemLines(const SystemFacts &facts);
// The time, and the name and version of the program.
std::vector<std::string> ProgramLines();

// The text for the clipboard: the lines with their values below each other, and the user's
// configuration file, if it is there.
std::string ReportText(const std::vector<std::string> &lines);

// The folders that the report offers to open in the file manager.
struct ReportFolder {
    const char *caption;
    std::string folder;
    std::string file; // the file in it that is to be selected; may be empty
};
std::vector<ReportFolder> ReportFolders();

} // namespace tonewright
