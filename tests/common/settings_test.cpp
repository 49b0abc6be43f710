// The defaults of the settings.
#include "common/settings.h"

#include <gtest/gtest.h>

#include <regex>

using namespace tonewright;

TEST(Settings, BuildDateReadsLikeFeb222026) {
    EXPECT_TRUE(std::regex_match(
        BuildDate, std::regex("(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) [1-9][0-9]? "
                              "20[0-9]{2}")))
        << BuildDate;
}

TEST(Settings, PathsAndNamesOfTheMachineAreEmptyAtFirst) {
    for (const std::string *text :
         {&ApplicationPath, &DefaultPrinterName, &DocumentBrowserPath, &OpenExportPath,
          &OpenImportPath, &OpenPath, &RecentDocumentPath, &SelectKeyboardMidiIn,
          &SelectKeyboardMidiOut, &SelectKeyboardName, &ThemeCurrent}) {
        EXPECT_EQ(*text, "");
    }
}
