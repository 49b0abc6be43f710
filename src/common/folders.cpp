// The path family: the program's places under the platform's folders.
#include "common/folders.h"

#include "common/platform.h"
#include "common/text.h"
#include "common/utf8_path.h"

#include <filesystem>
#include <system_error>

namespace tonewright {
namespace {

constexpr const char *MakerFolder = "Quillbrook";
constexpr const char *ProductFolder = "Tonewright 17";
constexpr const char *DocumentsFolder = "My Tonewright 17 Documents";
constexpr const char *PictureName = "Tonewright Background.bmp";

using PathBuffer = char[PathLimit + 1];

// Puts a separator behind the path unless it ends in one.
void EndInSeparator(PathBuffer &path) {
    const std::string_view present(path);
    if (!present.ends_with(PathSeparator)) {
        const char separator[] = {PathSeparator, 0};
        AppendBounded(path, separator, PathLimit);
    }
}

// The base folder with a trailing separator, or an empty path and false when there is none.
bool StartPath(PathBuffer &path, const std::string &base) {
    CopyBounded(path, base.c_str(), PathLimit);
    if (path[0] == 0) {
        return false;
    }
    EndInSeparator(path);
    return true;
}

void AppendFolder(PathBuffer &path, const char *name) {
    AppendBounded(path, name, PathLimit);
    EndInSeparator(path);
}

void MakeFolder(const std::string &path) {
    std::error_code ignored;
    if (!path.empty()) {
        std::filesystem::create_directories(PathOfUtf8(path), ignored);
    }
}

} // namespace

SpecialFolders PlatformFolders;

const char *MakerProgramFolder() {
    static thread_local PathBuffer path;
    if (StartPath(path, PlatformFolders.programs)) {
        AppendFolder(path, MakerFolder);
    }
    return path;
}

const char *UserFile(const char *name) {
    static thread_local PathBuffer path;
    if (StartPath(path, PlatformFolders.applicationData)) {
        AppendFolder(path, MakerFolder);
        AppendBounded(path, name, PathLimit);
    }
    return path;
}

const char *ProductUserFile(const char *name) {
    static thread_local PathBuffer path;
    if (StartPath(path, PlatformFolders.applicationData)) {
        AppendFolder(path, MakerFolder);
        AppendFolder(path, ProductFolder);
        AppendBounded(path, name, PathLimit);
    }
    return path;
}

const char *DocumentsFile(const char *name) {
    static thread_local PathBuffer path;
    if (StartPath(path, PlatformFolders.documents)) {
        AppendBounded(path, name, PathLimit);
    }
    return path;
}

const char *PicturesFile() {
    static thread_local PathBuffer path;
    if (StartPath(path, PlatformFolders.pictures)) {
        AppendBounded(path, PictureName, PathLimit);
    }
    return path;
}

std::string MakerUserFolder() {
    PathBuffer path;
    if (StartPath(path, PlatformFolders.applicationData)) {
        AppendFolder(path, MakerFolder);
    }
    return path;
}

std::vector<std::string> SystemFiles(const char *name) {
    std::vector<std::string> files;
    for (const std::string &folder : PlatformFolders.systemConfiguration) {
        PathBuffer path;
        if (StartPath(path, folder)) {
            AppendFolder(path, MakerFolder);
            AppendBounded(path, name, PathLimit);
            files.emplace_back(path);
        }
    }
    return files;
}

std::string DefaultDocumentsFolder() {
    PathBuffer path;
    if (StartPath(path, PlatformFolders.documents)) {
        AppendFolder(path, DocumentsFolder);
    }
    return path;
}

void MakeProgramFolders() {
    MakeFolder(ProductUserFile(""));
    MakeFolder(DefaultDocumentsFolder());
}

} // namespace tonewright
