// The command-line program with catalogues, on a home of its own.
#pragma once

#include "run_cli.h"

#include "database/test_catalogue.h"
#include "support/environment.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace tonewright {

namespace fs = std::filesystem;

inline const TestFamily &Dx7 = TestFamilies[0];
inline const TestFamily &Reface = TestFamilies[1];

inline bool Contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

class CliDb : public testing::Test {
protected:
    void SetUp() override {
        SetHome(home.path.string());
        fs::create_directories(Documents());
        fs::create_directories(home.path / ".config/Quillbrook");
    }

    fs::path Documents() const { return home.path / "Documents" / "My Tonewright 17 Documents"; }
    // The file of a catalogue of that name, with its extension.
    std::string Catalogue(const std::string &name) const { return (Documents() / name).string(); }
    std::string Write(const std::string &name, const TestBytes &bytes) const {
        WriteTestFile(Catalogue(name), bytes);
        return Catalogue(name);
    }
    // The names in a folder.
    static std::vector<std::string> Entries(const fs::path &folder) {
        std::vector<std::string> names;
        for (const auto &entry : fs::directory_iterator(folder)) {
            names.push_back(entry.path().filename().string());
        }
        std::ranges::sort(names);
        return names;
    }
    void WriteSettings(const std::string &text) const {
        WriteTestText(home.File(".config/Quillbrook/Tonewright 17.ini"), text);
    }

    TempFolder home;
};

} // namespace tonewright
