// The numbered texts.
#include "common/strings.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using namespace tonewright;

namespace {

constexpr const char *Fallback = "String table error - this application may be damaged";

TEST(LoadProgramString, PutsPartsInTheSteadOfTheirMarksInOrder) {
    EXPECT_EQ(LoadProgramString(109, {"unused"}), "Tonewright");
    EXPECT_EQ(LoadProgramString(20047, {"%s", "2", "3, 4", "unused"}),
              "Not added: %s of the 2 voices in the list, at these places: 3, 4.");
    EXPECT_EQ(LoadProgramString(20047, {"1"}),
              "Not added: 1 of the %s voices in the list, at these places: %s.");
}

TEST(Paragraphs, StandApart) {
    EXPECT_EQ(Paragraphs("One.", "Two."), "One.\n\nTwo.");
}

} // namespace

TEST(LoadProgramString, GivesTheTextOfANumber) {
    EXPECT_STREQ(LoadProgramString(108), "There has been an error writing this file. Please check "
                                         "the available space on the destination drive.");
    EXPECT_STREQ(LoadProgramString(109), "Tonewright");
    EXPECT_STREQ(LoadProgramString(110),
                 "There has been an error reading this file. It might be corrupted.");
    EXPECT_STREQ(
        LoadProgramString(111),
        "Your current document has not been saved. Do you wish to save it?\n\nClick on Yes "
        "to save it, or click on No to abandon it.\n\nClick on Cancel to return to the "
        "main window of Tonewright.");
    EXPECT_STREQ(LoadProgramString(116),
                 "There has been an error displaying the manual page. Please ensure that there is "
                 "an application installed on your system capable of opening HTML documents "
                 "associated with the file extension .HTM.");
    EXPECT_STREQ(LoadProgramString(125),
                 "You are about to display the Tonewright manual document. Your web browser will "
                 "open. Tonewright will remain running, and you can return to it at any time "
                 "through the Windows task bar.");
    EXPECT_STREQ(LoadProgramString(127), "Opening %s");
    EXPECT_STREQ(LoadProgramString(128), "Saving %s");
    EXPECT_STREQ(LoadProgramString(138),
                 "There has been an error registering a required window class.");
    EXPECT_STREQ(LoadProgramString(141), "There has been an error accessing the tip of the day.");
    EXPECT_STREQ(LoadProgramString(142),
                 "You have made changes to Tonewright that require it to be restarted. Click on OK "
                 "to close this application, and run the software again.");
    const std::string display = LoadProgramString(12000);
    EXPECT_TRUE(display.starts_with("Your current screen driver can't display true color or is "
                                    "configured to an invalid resolution setting."));
    EXPECT_TRUE(display.ends_with("You can configure a suitable screen resolution in the Settings "
                                  "tab as well."));
    EXPECT_EQ(display.size(), 489u);
}

TEST(LoadProgramString, HasATipForEachToolOfTheBar) {
    const char *const tips[] = {
        "Loads a document from disk",
        "Saves the document to disk",
        "Edits year",
        "Edits current page",
        "Displays the manual document",
        "Allows Tonewright's options to be configured",
        "Exits Tonewright",
        "Prints the current voice list",
        "Download your synthesizer's current voice list",
        "Uploads the current voice list to your synthesizer",
        "Undoes changes to your current voice list",
    };
    for (unsigned tool = 50; tool <= 60; ++tool) {
        EXPECT_STREQ(LoadProgramString(1651 + tool), tips[tool - 50]);
    }
}

TEST(LoadProgramString, HasTheFourPagesOfTheWizardAsMarkup) {
    const std::string look = "type=static;fontface=arial;fontsize=16;text=";
    struct Page {
        unsigned number;
        const char *begin;
        std::size_t size; // bytes
    };
    const Page pages[] = {{12002, "This wizard will help you", 488},
                          {12003, "Tonewright offers user-sel", 523},
                          {12004, "Tonewright has a number of", 813},
                          {12005, "You've completed the init", 544}};
    for (const Page &page : pages) {
        const std::string text = LoadProgramString(page.number);
        EXPECT_TRUE(text.starts_with(look + page.begin)) << page.number;
        EXPECT_EQ(text.size() - look.size(), page.size) << page.number;
        EXPECT_EQ(text.find(';', look.size()), text.npos) << "it would end there";
    }
}

TEST(LoadProgramString, OfANumberWithoutTextGivesTheFallback) {
    for (const unsigned number : {0u, 3u, 6u, 11u, 107u, 143u, 1700u, 1712u, 12001u, 12006u, ~0u}) {
        EXPECT_STREQ(LoadProgramString(number), Fallback) << number;
    }
}

TEST(LoadProgramString, ReturnsTheSameBufferAtEachCall) {
    const char *first = LoadProgramString(109);
    EXPECT_EQ(LoadProgramString(6), first);
    EXPECT_EQ(LoadProgramString(110), first);
    EXPECT_TRUE(std::string(first).starts_with("There has been an error reading"));
}
