// Every parameter of a voice with a value, as the command line shows it and as the bytes have it,
// written out here without any code of the program.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tonewright {

struct TestParameter {
    std::string name;
    std::string text;
    std::size_t offset; // in the bytes of the voice
    std::vector<std::uint8_t> stored;
};

// A value of each parameter of the 156 bytes of a DX7 voice, in the order of the editor; none is
// that of TestUnpackedVoice(), and the operators 2, 4 and 6 are on.
inline std::vector<TestParameter> TestDx7Parameters() {
    std::vector<TestParameter> all = {
        {"name", "FLUTE 2", 145, {'F', 'L', 'U', 'T', 'E', ' ', '2', 0, 0, 0}},
        {"algorithm", "32", 134, {31}},
        {"feedback", "5", 135, {5}},
        {"transpose", "-24", 144, {0}},
        {"oscillatorKeySync", "on", 136, {1}},
        {"lfoWave", "Sample and hold (SH)", 142, {5}},
        {"lfoSpeed", "99", 137, {99}},
        {"lfoDelay", "98", 138, {98}},
        {"lfoPitchModDepth", "97", 139, {97}},
        {"lfoAmpModDepth", "96", 140, {96}},
        {"pitchModSensitivity", "7", 143, {7}},
        {"lfoKeySync", "on", 141, {1}},
        {"pitchEgRate1", "11", 126, {11}},
        {"pitchEgLevel1", "15", 130, {15}},
        {"pitchEgRate2", "12", 127, {12}},
        {"pitchEgLevel2", "16", 131, {16}},
        {"pitchEgRate3", "13", 128, {13}},
        {"pitchEgLevel3", "17", 132, {17}},
        {"pitchEgRate4", "14", 129, {14}},
        {"pitchEgLevel4", "18", 133, {18}},
    };
    for (std::size_t number = 1; number <= 6; ++number) {
        const std::string prefix = "operator" + std::to_string(number) + ".";
        const std::size_t block = 21 * (number - 1);
        all.push_back({prefix + "enable", number % 2 == 0 ? "on" : "off", 155, {0x15}});
        const std::vector<TestParameter> rows = {
            {"oscillatorMode", "on", 17, {1}},
            {"frequency", "1.15", 18, {1, 15}},
            {"detune", "-3", 20, {4}},
            {"outputLevel", "66", 16, {66}},
            {"velocitySensitivity", "4", 15, {4}},
            {"ampModSensitivity", "1", 14, {1}},
            {"egRate1", "31", 0, {31}},
            {"egLevel1", "41", 4, {41}},
            {"egRate2", "32", 1, {32}},
            {"egLevel2", "42", 5, {42}},
            {"egRate3", "33", 2, {33}},
            {"egLevel3", "43", 6, {43}},
            {"egRate4", "34", 3, {34}},
            {"egLevel4", "44", 7, {44}},
            {"scaleBreakPoint", "127", 8, {127}},
            {"rateScaling", "5", 13, {5}},
            {"scaleLeftCurve", "+exponential (+EXP)", 11, {2}},
            {"scaleLeftDepth", "51", 9, {51}},
            {"scaleRightCurve", "-exponential (-EXP)", 12, {1}},
            {"scaleRightDepth", "52", 10, {52}},
        };
        for (const TestParameter &row : rows) {
            all.push_back({prefix + row.name, row.text, block + row.offset, row.stored});
        }
    }
    return all;
}

// The same of the 150 bytes of a reface DX voice, common block and operators; none is that of
// TestRefaceBlock(0).
inline std::vector<TestParameter> TestRefaceParameters() {
    std::vector<TestParameter> all = {
        {"name", "ORGAN", 0, {'O', 'R', 'G', 'A', 'N', 0, 0, 0, 0, 0}},
        {"algorithm", "12", 16, {11}},
        {"partMode", "Mono-legato", 13, {2}},
        {"portamentoTime", "127", 14, {127}},
        {"transpose", "-24", 12, {16}},
        {"pitchBend", "24", 15, {64}},
        {"lfoWave", "Sine (SIN)", 17, {0}},
        {"lfoSpeed", "91", 18, {91}},
        {"lfoDelay", "92", 19, {92}},
        {"lfoModDepth", "93", 20, {93}},
        {"pitchEgRate1", "1", 21, {1}},
        {"pitchEgLevel1", "5", 25, {5}},
        {"pitchEgRate2", "2", 22, {2}},
        {"pitchEgLevel2", "6", 26, {6}},
        {"pitchEgRate3", "3", 23, {3}},
        {"pitchEgLevel3", "7", 27, {7}},
        {"pitchEgRate4", "4", 24, {4}},
        {"pitchEgLevel4", "8", 28, {8}},
        {"effect1Type", "Delay (DLY)", 29, {6}},
        {"effect1Param1", "94", 30, {94}},
        {"effect1Param2", "95", 31, {95}},
        {"effect2Type", "Touch wah (T.WAH)", 32, {2}},
        {"effect2Param1", "96", 33, {96}},
        {"effect2Param2", "97", 34, {97}},
    };
    const std::vector<TestParameter> rows = {
        {"enable", "off", 0, {0}},
        {"frequencyMode", "Fixed freq/Hz (Fixed)", 21, {1}},
        {"frequency", "31.99", 22, {31, 99}},
        {"frequencyDetune", "-64", 24, {0}},
        {"outputLevel", "70", 18, {70}},
        {"levelVelocitySense", "71", 17, {71}},
        {"feedbackLevel", "72", 19, {72}},
        {"feedbackType", "Sawtooth", 20, {0}},
        {"lfoAmdDepth", "73", 14, {73}},
        {"lfoPmd", "off", 15, {0}},
        {"pitchEg", "on", 16, {1}},
        {"egRate1", "21", 1, {21}},
        {"egLevel1", "25", 5, {25}},
        {"egRate2", "22", 2, {22}},
        {"egLevel2", "26", 6, {26}},
        {"egRate3", "23", 3, {23}},
        {"egLevel3", "27", 7, {27}},
        {"egRate4", "24", 4, {24}},
        {"egLevel4", "28", 8, {28}},
        {"kbdRateScaling", "74", 9, {74}},
        {"kbdLeftCurve", "+linear (+LIN)", 12, {3}},
        {"kbdLeftDepth", "75", 10, {75}},
        {"kbdRightCurve", "-linear (-LIN)", 13, {0}},
        {"kbdRightDepth", "76", 11, {76}},
    };
    for (std::size_t number = 1; number <= 4; ++number) {
        const std::string prefix = "operator" + std::to_string(number) + ".";
        const std::size_t block = 38 + 28 * (number - 1);
        for (const TestParameter &row : rows) {
            all.push_back({prefix + row.name, row.text, block + row.offset, row.stored});
        }
    }
    return all;
}

// Writes the stored bytes of all of these into the bytes of a voice, which begin at `start`.
inline void PutTestParameters(std::vector<std::uint8_t> &bytes, std::size_t start,
                              const std::vector<TestParameter> &parameters) {
    for (const TestParameter &parameter : parameters) {
        for (std::size_t at = 0; at < parameter.stored.size(); ++at) {
            bytes[start + parameter.offset + at] = parameter.stored[at];
        }
    }
}

} // namespace tonewright
