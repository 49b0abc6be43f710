// The path family: where the program finds its per-user and shared places. Each path is computed
// afresh at each call into a static buffer of the function, one for each thread; it holds at most
// 260 bytes and is cut without notice. When the platform gives no folder the result is empty.
#pragma once

#include <string>
#include <vector>

namespace tonewright {

// Folders of the platform, filled in by the shell at start and by tests with temporary folders.
struct SpecialFolders {
    std::string applicationData;
    std::string documents;
    std::string pictures;
    std::string programs;
    // Settings for all users of the machine, the folder that counts most first.
    std::vector<std::string> systemConfiguration = {};
    // Told in the report about the machine, and used for nothing else.
    std::string music = {}, videos = {}, desktop = {}, profile = {}, programMenu = {};
};
extern SpecialFolders PlatformFolders;

// programs + "Quillbrook/"
const char *MakerProgramFolder();
// application data + "Quillbrook/" + name
const char *UserFile(const char *name);
// application data + "Quillbrook/Tonewright 17/" + name
const char *ProductUserFile(const char *name);
// documents + name
const char *DocumentsFile(const char *name);
// pictures + "Tonewright Background.bmp"
const char *PicturesFile();
// application data + "Quillbrook/"
std::string MakerUserFolder();

// each folder of the system's configuration + "Quillbrook/" + name, in their order
std::vector<std::string> SystemFiles(const char *name);

// documents + "My Tonewright 17 Documents/"
std::string DefaultDocumentsFolder();

// Makes the folders that an installer would make: "Quillbrook/" and "Quillbrook/Tonewright 17/"
// under application data, "My Tonewright 17 Documents/" under documents. Failures are ignored.
void MakeProgramFolders();

} // namespace tonewright
