// Brings the factory back before each test, also when many run in one process.
#include "midi/instruments/builtin_instruments.h"

#include <gtest/gtest.h>

#include <memory>

namespace tonewright {
namespace {

struct FreshInstruments : testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo &) override { ResetBuiltinInstruments(); }
};

[[maybe_unused]] const bool isRegistered = [] {
    // The test framework owns its listeners.
    testing::UnitTest::GetInstance()->listeners().Append(
        std::make_unique<FreshInstruments>().release());
    return true;
}();

} // namespace
} // namespace tonewright
