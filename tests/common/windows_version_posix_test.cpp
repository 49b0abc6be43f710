// What a system that is not Windows counts as.
#include "common/windows_version.h"

#include <gtest/gtest.h>

#include <sys/utsname.h>

namespace tonewright {
namespace {

TEST(WindowsVersionElsewhere, IsNewEnoughForEverythingUnderItsOwnName) {
    EXPECT_TRUE(WindowsVersionAtLeast(10, 0, 0));
    EXPECT_TRUE(WindowsVersionAtLeast(99, 9, 9));
    std::string name;
    EXPECT_EQ(WindowsName(&name), 18);
    EXPECT_EQ(WindowsName(nullptr), 18);
    EXPECT_NE(name, "");
    EXPECT_LE(name.size(), 260u);
    EXPECT_EQ(name.find("Windows"), name.npos);
    EXPECT_TRUE(IsWindows10OrLater());
}

TEST(WindowsVersionElsewhere, TheBuildIsTheReleaseOfTheKernel) {
    utsname kernel;
    ASSERT_GE(uname(&kernel), 0);
    EXPECT_EQ(SystemBuild(), kernel.release);
}

} // namespace
} // namespace tonewright
