// Frequencies as texts: how they are written, read and stepped.
#include "drivers/frequency.h"

#include "support/comma_locale.h"

#include <gtest/gtest.h>

#include <string>

namespace tonewright {
namespace {

TEST(Frequency, OneAndFiveHundredthsReads1Point05) {
    EXPECT_EQ(FrequencyText(105), "1.05");
    EXPECT_EQ(FrequencyText(0), "0.00");
    EXPECT_EQ(FrequencyText(3199), "31.99");
}

TEST(Frequency, CoarseAndFineBeyondTheirRangesShowTheirSum) {
    EXPECT_EQ(FrequencyText(100 + 127), "2.27");
    EXPECT_EQ(FrequencyText(200 * 100), "200.00");
    EXPECT_EQ(FrequencyText(255 * 100 + 255), "257.55");
}

TEST(Frequency, ATextIsCutNotRounded) {
    EXPECT_EQ(ReadFrequency("1.15"), 114); // 1.15 * 100 is 114.99999999999999
    EXPECT_EQ(ReadFrequency("0.29"), 28);
    EXPECT_EQ(ReadFrequency("1.05"), 105);
    EXPECT_EQ(ReadFrequency("2.999"), 299);
    EXPECT_EQ(ReadFrequency("0.009"), 0);
}

TEST(Frequency, ATextIsLimitedToTheRange) {
    EXPECT_EQ(ReadFrequency("40"), 3199);
    EXPECT_EQ(ReadFrequency("31.99"), 3199);
    EXPECT_EQ(ReadFrequency("31.98"), 3198);
    EXPECT_EQ(ReadFrequency("-0.5"), 0);
    EXPECT_EQ(ReadFrequency("-32"), 0);
    EXPECT_EQ(ReadFrequency("4294967297"), 3199);
    EXPECT_EQ(ReadFrequency("1e300"), 3199);
    EXPECT_EQ(ReadFrequency("1e9999"), 3199);
    EXPECT_EQ(ReadFrequency("1e+9999"), 3199);
    EXPECT_EQ(ReadFrequency("-1e9999"), 0);
    EXPECT_EQ(ReadFrequency("1e-9999"), 0);
    EXPECT_EQ(ReadFrequency("inf"), 3199);
    EXPECT_EQ(ReadFrequency("Infinity"), 3199);
    EXPECT_EQ(ReadFrequency("-inf"), 0);
    EXPECT_EQ(ReadFrequency("nan"), 0);
    EXPECT_EQ(ReadFrequency("-NaN(7)"), 0);
    EXPECT_EQ(ReadFrequency(std::string(1000, '9')), 3199);
    EXPECT_EQ(ReadFrequency("0." + std::string(1000, '0') + "1"), 0);
}

TEST(Frequency, ATextEndsWhereItsNumberDoes) {
    EXPECT_EQ(ReadFrequency(""), 0);
    EXPECT_EQ(ReadFrequency("   "), 0);
    EXPECT_EQ(ReadFrequency("-"), 0);
    EXPECT_EQ(ReadFrequency("Hz"), 0);
    EXPECT_EQ(ReadFrequency(" \t+3.5 Hz"), 350);
    EXPECT_EQ(ReadFrequency("7,25"), 700);
    EXPECT_EQ(ReadFrequency(".5"), 50);
    EXPECT_EQ(ReadFrequency("2."), 200);
    EXPECT_EQ(ReadFrequency("2.5e1x"), 2500);
    EXPECT_EQ(ReadFrequency("+-2"), 0);
    EXPECT_EQ(ReadFrequency("-+2"), 0);
    EXPECT_EQ(ReadFrequency("--2"), 0);
}

TEST(Frequency, AHexadecimalNumberIsOne) {
    EXPECT_EQ(ReadFrequency("0x10"), 1600);
    EXPECT_EQ(ReadFrequency("+0X1.8p1"), 300);
    EXPECT_EQ(ReadFrequency("0x"), 0);
    EXPECT_EQ(ReadFrequency("-0x1"), 0);
    EXPECT_EQ(ReadFrequency("-0x-1"), 0);
    EXPECT_EQ(ReadFrequency("0x1p9999"), 3199);
    EXPECT_EQ(ReadFrequency("0x1p-9999"), 0);
}

TEST(Frequency, ExactlyHundredAndFortyFourOfAllComeBackOneHundredthLower) {
    int lower = 0;
    for (int hundredths = 0; hundredths < 3200; ++hundredths) {
        const int back = ReadFrequency(FrequencyText(hundredths));
        EXPECT_TRUE(back == hundredths || back == hundredths - 1) << hundredths;
        lower += back != hundredths;
    }
    EXPECT_EQ(lower, 144);
}

TEST(Frequency, TheArrowsStepByAHundredthWithinTheRange) {
    EXPECT_EQ(StepFrequency("1.05", 1), "1.06");
    EXPECT_EQ(StepFrequency("1.05", -1), "1.04");
    EXPECT_EQ(StepFrequency("1.05", 0), "1.04"); // whatever is not up is down
    EXPECT_EQ(StepFrequency("0.99", 1), "1.00");
    EXPECT_EQ(StepFrequency("31.99", 1), "31.99");
    EXPECT_EQ(StepFrequency("31.98", 1), "31.99");
    EXPECT_EQ(StepFrequency("0.00", -1), "0.00");
    EXPECT_EQ(StepFrequency("0.01", -1), "0.00");
    EXPECT_EQ(StepFrequency("200.00", -1), "31.99");
    EXPECT_EQ(StepFrequency("-3", 1), "0.00");
    EXPECT_EQ(StepFrequency("-0.004", 1), "0.01");
}

TEST(Frequency, TheArrowsReachEveryHundredth) {
    std::string up = "0.00", down = "31.99";
    for (int step = 1; step < 3200; ++step) {
        up = StepFrequency(up, 1);
        down = StepFrequency(down, -1);
        ASSERT_EQ(up, FrequencyText(step));
        ASSERT_EQ(down, FrequencyText(3199 - step));
    }
}

TEST(Frequency, TheArrowsTakeAnyText) {
    EXPECT_EQ(StepFrequency("", 1), "0.01");
    EXPECT_EQ(StepFrequency("-", -1), "0.00");
    EXPECT_EQ(StepFrequency("nan", 1), "0.01");
    EXPECT_EQ(StepFrequency("inf", -1), "31.99");
    EXPECT_EQ(StepFrequency("-inf", 1), "0.00");
    EXPECT_EQ(StepFrequency("1e999", 1), "31.99");
    EXPECT_EQ(StepFrequency("1e300", 1), "31.99");
    EXPECT_EQ(StepFrequency("-1e300", 1), "0.00");
}

TEST(Frequency, TheDecimalPointIsADotWhateverTheLanguage) {
    const CommaLocale comma;
    EXPECT_EQ(FrequencyText(105), "1.05");
    EXPECT_EQ(ReadFrequency("1.05"), 105);
    EXPECT_EQ(ReadFrequency("1,05"), 100);
    EXPECT_EQ(StepFrequency("1.05", 1), "1.06");
    EXPECT_EQ(StepFrequency("1,05", 1), "1.01");
}

} // namespace
} // namespace tonewright
