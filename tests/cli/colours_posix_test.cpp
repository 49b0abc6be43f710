// The command "colours" with a file that opens and cannot be read.
#include "run_cli.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

TEST(CliColoursFaults, SaysWhyATableCannotBeReadToItsEnd) {
    const auto result = Cli({"colours", "/proc/self/mem"}); // nobody reads its start
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "tonewright-cli: /proc/self/mem: not readable: Input/output error\n");
}

} // namespace
} // namespace tonewright
