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
        const char *text;
    };
    const Page pages[] = {
        {12002,
         "This wizard will help you configure some of the common settings of Tonewright, so it "
         "will be aware of your preferences.\n\n"
         "This will be the only time you'll see this window, and everything you configure herein "
         "can be changed at any time in the Tonewright Setup window.\n\n"
         "Click on the Gear button in the Tonewright tool bar at any time after you complete "
         "this wizard to access the Setup window.\n\n"
         "You can exit this wizard whenever you wish by clicking on Close.\n\n"
         "Please click on Next to begin."},
        {12003,
         "Tonewright offers user-selectable themes to define its toolbar buttons and other "
         "graphic objects that appear throughout the software.\n\n"
         "You can choose the theme that you find the most attractive.\n\n"
         "As with all of Tonewright's options, you can change your mind about the theme you "
         "prefer later on by clicking on the Gear button in the tool bar and selecting a "
         "different theme.\n\n"
         "The Slate theme is the default theme for Tonewright.\n\n"
         "Note that the theme you choose now won't become active until the next time you run "
         "Tonewright."},
        {12004,
         "Tonewright has a number of configurable options to make it the ideal image management "
         "environment for your needs. You'll probably find that you have no cause to change most "
         "of them.\n\n"
         "The ones to your right, however, will turn up almost immediately.\n\n"
         "The opening splash screen will appear each time Tonewright boots up, and then close "
         "automatically, or with a click. You can disable it here if you like.\n\n"
         "The Tip of the Day window also appears when Tonewright starts, and it will show you a "
         "new tip each time to help you master this software. If you'd rather not see it, you "
         "can disable it.\n\n"
         "When Tonewright saves a file to disk, it can optionally rename the previous iteration "
         "of the file to create a backup, which you can access if everything goes horribly "
         "wrong. Enable the Create Backups item to have it do so."},
        {12005,
         "You've completed the initial configuration of Tonewright.\n\n"
         "To get up to speed with Tonewright, please be sure to click on the ? button in the "
         "Tonewright tool bar to access its extensive manual.\n\n"
         "The Introduction and Tutorial section will walk you through the basic operation of "
         "Tonewright.\n\n"
         "The Reference section of the Manual will tell you everything there is to know about "
         "this software.\n\n"
         "If you'd like to access this wizard again in the future, select Welcome Wizard from "
         "Tonewright's Help menu.\n\n"
         "Please click on Finish to close this window."},
    };
    for (const Page &page : pages) {
        EXPECT_EQ(LoadProgramString(page.number), look + page.text);
        EXPECT_EQ(std::string(page.text).find(';'), std::string::npos) << "it would end there";
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
