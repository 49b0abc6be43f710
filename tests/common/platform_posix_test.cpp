// What the operating system is asked for, on this kind of system.
#include "common/desktop.h"
#include "common/folders.h"
#include "common/platform.h"
#include "support/posix_limits.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <pwd.h>
#include <string>
#include <unistd.h>
#include <vector>

using namespace tonewright;

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

TEST(Platform, TheSystemsFoldersOfSettingsAreThoseOfTheEnvironment) {
    using Folders = std::vector<std::string>;
    const std::string before = std::getenv("XDG_CONFIG_DIRS");
    const auto with = [](const char *value) {
        setenv("XDG_CONFIG_DIRS", value, 1);
        return PlatformSystemConfigurationFolders();
    };
    EXPECT_EQ(with("/one:/two and/three:/four/"), (Folders{"/one", "/two and/three", "/four/"}));
    EXPECT_EQ(with("::/one:"), Folders{"/one"});
    EXPECT_EQ(with("one:./two:/three"), Folders{"/three"}); // relative ones count for nothing
    EXPECT_EQ(with("one"), Folders{});
    EXPECT_EQ(with(""), Folders{"/etc/xdg"});
    unsetenv("XDG_CONFIG_DIRS");
    EXPECT_EQ(PlatformSystemConfigurationFolders(), Folders{"/etc/xdg"});
    setenv("XDG_CONFIG_DIRS", before.c_str(), 1);
}

TEST(Platform, AMissingOrEmptyHomeIsThatOfTheAccount) {
    const std::string before = std::getenv("HOME");
    const std::string ofAccount = getpwuid(getuid())->pw_dir;
    setenv("HOME", "/somewhere", 1);
    EXPECT_TRUE(PlatformFindHome());
    EXPECT_STREQ(std::getenv("HOME"), "/somewhere");
    setenv("HOME", "", 1);
    EXPECT_TRUE(PlatformFindHome());
    EXPECT_EQ(std::getenv("HOME"), ofAccount);
    unsetenv("HOME");
    EXPECT_TRUE(PlatformFindHome());
    EXPECT_EQ(std::getenv("HOME"), ofAccount);
    setenv("HOME", before.c_str(), 1);
}

TEST(Platform, WithoutAnAccountThereIsNoHomeButThatOfTheEnvironment) {
    RunWithoutAccount([] {
        setenv("HOME", "/somewhere", 1);
        EXPECT_TRUE(PlatformFindHome());
        unsetenv("HOME");
        EXPECT_FALSE(PlatformFindHome());
        EXPECT_EQ(std::getenv("HOME"), nullptr);
    });
}

TEST(Platform, TheCommandLineIsTheArgumentsJoinedByBlanks) {
    const auto joined = [](std::vector<std::string> arguments) {
        std::vector<char *> pointers;
        for (std::string &argument : arguments) {
            pointers.push_back(argument.data());
        }
        return PlatformCommandLine(static_cast<int>(pointers.size()), pointers.data());
    };
    EXPECT_EQ(joined({"tonewright"}), "");
    EXPECT_EQ(joined({"tonewright", "my", "bank.syx"}), "my bank.syx");
    EXPECT_EQ(joined({"tonewright", "\"quoted  bank.syx\""}), "\"quoted  bank.syx\"");
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
