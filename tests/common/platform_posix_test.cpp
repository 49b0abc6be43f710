// What the operating system is asked for, on this kind of system.
#include "common/desktop.h"
#include "common/folders.h"
#include "common/platform.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace tonewright;

TEST(Platform, EveryVersionOfTheSystemIsSupported) {
    EXPECT_TRUE(PlatformVersionIsSupported());
}

TEST(Platform, ABrowserIsKnownByTheNameThatItHasHere) {
    EXPECT_EQ(PlatformBrowserProgram("firefox.exe"), "firefox");
    EXPECT_EQ(PlatformBrowserProgram("opera.exe"), "opera");
    EXPECT_EQ(PlatformBrowserProgram("chrome.exe"), "google-chrome");
    EXPECT_EQ(PlatformBrowserProgram("msedge.exe"), "microsoft-edge");
    EXPECT_EQ(PlatformBrowserProgram("browser"), "browser");
    EXPECT_EQ(PlatformBrowserProgram(""), "");
}

TEST(Platform, TheExecutableIsThisTestProgram) {
    const std::filesystem::path path = PlatformExecutablePath();
    EXPECT_TRUE(path.is_absolute());
    EXPECT_TRUE(std::filesystem::is_regular_file(path));
    EXPECT_EQ(path.filename(), "common_tests");
}

TEST(ShowInExplorer, CallsWhateverOpensFoldersWithoutTheTrailingSeparator) {
    ScriptedDesktop desktop;
    EXPECT_EQ(ShowInExplorer("/home/me/My banks/", nullptr), 0);
    EXPECT_EQ(ShowInExplorer("/home/me", "bank.syx"), 0);
    EXPECT_EQ(ShowInExplorer("/a#b?c%d/\xC3\xA9", nullptr), 0);
    ASSERT_EQ(desktop.opened.size(), 3u);
    EXPECT_EQ(desktop.opened[0].program, "");
    EXPECT_EQ(desktop.opened[0].address, "file:///home/me/My%20banks");
    EXPECT_EQ(desktop.opened[1].address, "file:///home/me");
    EXPECT_EQ(desktop.opened[2].address, "file:///a%23b%3Fc%25d/%C3%A9");
}

TEST(ShowInExplorer, IsMinus4WhenTheCallFails) {
    ScriptedDesktop desktop;
    desktop.addressesOpen = false;
    EXPECT_EQ(ShowInExplorer("/home/me", nullptr), -4);
    TheDesktop.OpenAddress = nullptr;
    EXPECT_EQ(ShowInExplorer("/home/me", nullptr), -4);
}
