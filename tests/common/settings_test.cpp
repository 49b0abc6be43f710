// The defaults of the settings.
#include "common/settings.h"

#include <gtest/gtest.h>

#include <cstdio>

using namespace tonewright;

TEST(Settings, BuildDateReadsLikeFeb222026) {
    // Month, day without a leading blank or zero, year.
    char month[4] = {};
    char blank = 0;
    int day = 0;
    int year = 0;
    ASSERT_EQ(std::sscanf(BuildDate.c_str(), "%3s%c%d %d", month, &blank, &day, &year), 4);
    EXPECT_EQ(BuildDate,
              std::string(month) + " " + std::to_string(day) + " " + std::to_string(year));
    EXPECT_NE(std::string("Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec").find(month),
              std::string::npos);
    EXPECT_GE(year, 2026);
}

TEST(Settings, PathsAndNamesOfTheMachineAreEmptyAtFirst) {
    for (const std::string *text :
         {&ApplicationPath, &DefaultPrinterName, &DocumentBrowserPath, &OpenExportPath,
          &OpenImportPath, &OpenPath, &RecentDocumentPath, &SelectKeyboardMidiIn,
          &SelectKeyboardMidiOut, &SelectKeyboardName, &ThemeCurrent}) {
        EXPECT_EQ(*text, "");
    }
}
