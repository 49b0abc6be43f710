// The defaults of the settings.
#include "common/settings.h"

#include "common/setting_rows.h"

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

TEST(Settings, ResetPutsEveryOneBackToItsDefault) {
    const std::string built = BuildDate;
    for (const ConfigKey &row : ProgramSettings.rows) {
        if (std::uint32_t *const *number = std::get_if<std::uint32_t *>(&row.value)) {
            **number += 1'000'000;
        } else {
            *std::get<std::string *>(row.value) += " and more";
        }
    }
    ASSERT_EQ(MaxUndoLevel, 1'000'003u);
    ASSERT_EQ(DatabaseCurrentName, "Voices and more");
    ResetSettings();
    EXPECT_EQ(MaxUndoLevel, 3u);
    EXPECT_EQ(SysexWait, 1500u);
    EXPECT_EQ(CreateBackups, 1u);
    EXPECT_EQ(OpenRecentDocument, 0u);
    EXPECT_EQ(ShowWelcomeWizard, 1u); // the last row
    EXPECT_EQ(DatabaseCurrentName, "Voices");
    EXPECT_EQ(ThemeCurrent, "");
    EXPECT_EQ(ApplicationPath, "");
    EXPECT_EQ(BuildDate, built);
    for (const ConfigKey &row : ProgramSettings.rows) {
        if (std::uint32_t *const *number = std::get_if<std::uint32_t *>(&row.value)) {
            EXPECT_LT(**number, 1'000'000u) << row.name;
        } else {
            EXPECT_FALSE(std::get<std::string *>(row.value)->ends_with(" more")) << row.name;
        }
    }
}
