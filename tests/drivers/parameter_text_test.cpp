// Parameters as texts: what each is called, shows and takes, for voices of both families whose
// bytes are written by hand.
#include "drivers/parameter_text.h"

#include "common/settings.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/dx7/voice_parameters.h"
#include "drivers/reface_dx/voice_parameters.h"
#include "support/bank_bytes.h"
#include "support/parameter_bytes.h"
#include "support/reface_bytes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;
constexpr auto Bank = VoiceFileKind::Bank, Single = VoiceFileKind::SingleVoice;
constexpr std::size_t BlockHeader = 52; // the bytes of a voice follow it

struct Family {
    const char *name;
    const VoiceParameters *rows;
    std::vector<TestParameter> parameters;
    VoiceObject voice; // with other values
};

std::vector<Family> Families() {
    const Bytes unpacked = TestUnpackedVoice();
    VoiceObject reface;
    reface.bytes = TestRefaceBlock(0);
    return {{"Dx7", &Dx7Parameters, TestDx7Parameters(),
             MakeDx7VoiceObject(std::span(unpacked).first<Dx7VoiceSize>())},
            {"Reface", &RefaceParameters, TestRefaceParameters(), reface}};
}

class ParameterTextOf : public testing::TestWithParam<Family> {
protected:
    const VoiceParameters &rows = *GetParam().rows;
    VoiceObject voice = GetParam().voice;

    NamedParameter Named(const std::string &name) const { return *ParameterOfName(rows, name); }
};

INSTANTIATE_TEST_SUITE_P(Families, ParameterTextOf, testing::ValuesIn(Families()),
                         [](const auto &info) { return std::string(info.param.name); });

TEST_P(ParameterTextOf, NamesAllOfThemInTheOrderOfTheRows) {
    const auto parameters = NamedParameters(rows);
    ASSERT_EQ(parameters.size(), GetParam().parameters.size());
    for (std::size_t at = 0; at < parameters.size(); ++at) {
        EXPECT_EQ(ParameterName(parameters[at]), GetParam().parameters[at].name);
        EXPECT_EQ(ParameterOfName(rows, GetParam().parameters[at].name), parameters[at]);
    }
}

TEST_P(ParameterTextOf, KnowsNoOtherName) {
    for (const char *name :
         {"", "Algorithm", "algorithm ", "operator1", "operator1.", "operator0.egRate1",
          "operator7.egRate1", "operator01.egRate1", "egRate1", "operator1.name", "pitch bend"}) {
        EXPECT_FALSE(ParameterOfName(rows, name)) << name;
    }
}

TEST_P(ParameterTextOf, EachChangesItsOwnBytesAndShowsWhatItWasGiven) {
    for (const TestParameter &parameter : GetParam().parameters) {
        VoiceObject changed = voice;
        EXPECT_EQ(SetParameterText(rows, Named(parameter.name), changed, parameter.text, Single),
                  "")
            << parameter.name;
        Bytes expected = voice.bytes;
        if (rows.operatorCount == 6 && parameter.name.ends_with(".enable")) {
            const int bit = 0x20 >> (parameter.name[8] - '1');
            std::uint8_t &enable = expected[BlockHeader + 155];
            enable =
                static_cast<std::uint8_t>(parameter.text == "on" ? enable | bit : enable & ~bit);
        } else {
            PutTestParameters(expected, BlockHeader, {parameter});
        }
        EXPECT_EQ(changed.bytes, expected) << parameter.name;
        EXPECT_EQ(ParameterText(rows, Named(parameter.name), changed), parameter.text)
            << parameter.name;
    }
}

TEST_P(ParameterTextOf, WhatIsShownChangesNoByteWhateverTheVoiceHolds) {
    std::uint32_t random = 1;
    for (int round = 0; round < 50; ++round) {
        for (std::size_t at = BlockHeader; at < voice.bytes.size(); ++at) {
            random = random * 1664525 + 1013904223;
            voice.bytes[at] = static_cast<std::uint8_t>(random >> 24);
        }
        const NamedParameter name = Named("name");
        voice.bytes[BlockHeader + name.row->offset] |= 0x40; // an empty name is told apart
        const Bytes before = voice.bytes;
        for (const NamedParameter &parameter : NamedParameters(rows)) {
            const std::string shown = ParameterText(rows, parameter, voice);
            for (const VoiceFileKind kind : {Bank, Single}) {
                EXPECT_EQ(SetParameterText(rows, parameter, voice, shown, kind), "")
                    << ParameterName(parameter) << " " << shown;
                EXPECT_EQ(voice.bytes, before) << ParameterName(parameter) << " " << shown;
            }
        }
    }
}

TEST_P(ParameterTextOf, TakesTheEndsOfARangeAndNothingBeyond) {
    for (const NamedParameter &parameter : NamedParameters(rows)) {
        const VoiceParameter &row = *parameter.row;
        if (row.kind != ParameterKind::Number) {
            continue;
        }
        for (const int value : {row.minimum, row.maximum}) {
            EXPECT_EQ(SetParameterText(rows, parameter, voice, std::to_string(value), Single), "");
            EXPECT_EQ(ParameterText(rows, parameter, voice), std::to_string(value));
        }
        const Bytes before = voice.bytes;
        for (const int value : {row.minimum - 1, row.maximum + 1}) {
            EXPECT_EQ(SetParameterText(rows, parameter, voice, std::to_string(value), Single),
                      std::to_string(value) + " is no whole number from " +
                          std::to_string(row.minimum) + " to " + std::to_string(row.maximum));
        }
        EXPECT_EQ(voice.bytes, before);
    }
}

TEST_P(ParameterTextOf, ListsTakeEachItemByItsPartsAndItsIndexInAnyCase) {
    for (const NamedParameter &parameter : NamedParameters(rows)) {
        const VoiceParameter &row = *parameter.row;
        if (row.kind != ParameterKind::List) {
            continue;
        }
        for (int index = 0; index <= row.maximum; ++index) {
            VoiceObject changed = voice;
            StoreShownValue(rows, row, changed, parameter.part, index);
            const std::string item = ParameterText(rows, parameter, changed);
            std::string capitals = item;
            for (char &character : capitals) {
                character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
            }
            std::vector<std::string> texts = {item, capitals, std::to_string(index)};
            if (const auto open = item.find(" ("); open != std::string::npos) {
                texts.push_back(item.substr(0, open));
                texts.push_back(item.substr(open + 2, item.size() - open - 3));
            }
            for (const std::string &text : texts) {
                VoiceObject read = voice;
                EXPECT_EQ(SetParameterText(rows, parameter, read, text, Bank), "") << text;
                EXPECT_EQ(read.bytes, changed.bytes) << text;
            }
        }
    }
}

TEST_P(ParameterTextOf, RefusesWhatIsNoValueAndLeavesTheVoiceAlone) {
    struct Case {
        const char *name, *text, *reason;
    };
    const Case cases[] = {
        {"lfoSpeed", "", "an empty text is no whole number from 0 to "},
        {"lfoSpeed", "5x", "5x is no whole number from 0 to "},
        {"lfoSpeed", " 5", " 5 is no whole number from 0 to "},
        {"lfoSpeed", "+5", "+5 is no whole number from 0 to "},
        {"lfoSpeed", "5.0", "5.0 is no whole number from 0 to "},
        {"lfoSpeed", "5\r", "5\r is no whole number from 0 to "},
        {"lfoSpeed", "99999999999999999999", "99999999999999999999 is no whole number from 0 to "},
        {"transpose", "--1", "--1 is no whole number from -24 to 24"},
        {"algorithm", "0", "0 is no whole number from 1 to "},
        {"lfoWave", "", "an empty text is none of "},
        {"lfoWave", "S", "S is none of "},
        {"lfoWave", "(SI)", "(SI) is none of "},
        {"lfoWave", "7", "7 is none of "},
        {"lfoWave", "-1", "-1 is none of "},
        {"operator1.enable", "", "an empty text is neither on nor off"},
        {"operator1.enable", "2", "2 is neither on nor off"},
        {"operator2.frequency", "", "an empty text is no number from 0.00 to 31.99"},
        {"operator2.frequency", "1.155", "1.155 has more than two decimals"},
        {"operator2.frequency", "1.100", "1.100 has more than two decimals"},
        {"operator2.frequency", "32", "32 is no number from 0.00 to 31.99"},
        {"operator2.frequency", "31.995", "31.995 has more than two decimals"},
        {"operator2.frequency", "-1", "-1 is no number from 0.00 to 31.99"},
        {"operator2.frequency", "1,15", "1,15 is no number from 0.00 to 31.99"},
        {"operator2.frequency", ".5", ".5 is no number from 0.00 to 31.99"},
        {"operator2.frequency", "5.", "5. is no number from 0.00 to 31.99"},
        {"operator2.frequency", "1.-5", "1.-5 is no number from 0.00 to 31.99"},
        {"operator2.frequency", "1e1", "1e1 is no number from 0.00 to 31.99"},
        {"operator2.frequency", "nan", "nan is no number from 0.00 to 31.99"},
        {"operator2.frequency", "99999999999999999999", "99999999999999999999 is no number"},
        {"name", "ELEVEN CHAR", "ELEVEN CHAR has 11 characters, and 10 is the limit"},
        {"name", "\xE2\x82\xAC", "\xE2\x82\xAC has characters that are not in Latin-1"},
        {"name", "a\xE9", "a\xE9 has characters that are not in Latin-1"}, // a byte of no UTF-8
        {"name", "a\tb", "a\tb has control characters"},
        {"name", "a\r", "a\r has control characters"},
        {"name", "\x1F", "\x1F has control characters"},
        {"name", "\xC2\x85", "\xC2\x85 has control characters"}, // U+0085
    };
    for (const Case &value : cases) {
        const std::string reason =
            SetParameterText(rows, Named(value.name), voice, value.text, Single);
        EXPECT_TRUE(reason.starts_with(value.reason)) << value.name << ": " << reason;
        EXPECT_EQ(voice.bytes, GetParam().voice.bytes) << value.name << " " << value.text;
    }
}

TEST_P(ParameterTextOf, FrequenciesAreExact) {
    const NamedParameter frequency = Named("operator3.frequency");
    for (int hundredths = 0; hundredths <= 3199; ++hundredths) {
        const std::string fine = std::to_string(hundredths % 100);
        const std::string text =
            std::to_string(hundredths / 100) + "." + (fine.size() == 1 ? "0" : "") + fine;
        EXPECT_EQ(SetParameterText(rows, frequency, voice, text, Bank), "") << text;
        EXPECT_EQ(ShownValue(rows, *frequency.row, voice, 3), hundredths);
        EXPECT_EQ(ParameterText(rows, frequency, voice), text);
    }
    EXPECT_EQ(SetParameterText(rows, frequency, voice, "7", Bank), "");
    EXPECT_EQ(ParameterText(rows, frequency, voice), "7.00");
    EXPECT_EQ(SetParameterText(rows, frequency, voice, "007.3", Bank), "");
    EXPECT_EQ(ParameterText(rows, frequency, voice), "7.30");
}

TEST_P(ParameterTextOf, SwitchesTakeOtherWordsToo) {
    const NamedParameter enable = Named("operator1.enable");
    for (const char *text : {"on", "ON", "yes", "1"}) {
        ASSERT_EQ(SetParameterText(rows, enable, voice, "off", Single), "");
        EXPECT_EQ(SetParameterText(rows, enable, voice, text, Single), "");
        EXPECT_EQ(ParameterText(rows, enable, voice), "on") << text;
    }
    for (const char *text : {"off", "Off", "no", "0"}) {
        ASSERT_EQ(SetParameterText(rows, enable, voice, "on", Single), "");
        EXPECT_EQ(SetParameterText(rows, enable, voice, text, Single), "");
        EXPECT_EQ(ParameterText(rows, enable, voice), "off") << text;
    }
}

TEST_P(ParameterTextOf, NamesAreLatin1AndZeroFilled) {
    const NamedParameter name = Named("name");
    const auto bytes = [&] {
        const auto begin =
            voice.bytes.begin() + static_cast<std::ptrdiff_t>(BlockHeader + name.row->offset);
        return std::string(begin, begin + 10);
    };
    EXPECT_EQ(SetParameterText(rows, name, voice, "TEN LETTRS", Bank), "");
    EXPECT_EQ(bytes(), "TEN LETTRS");
    EXPECT_EQ(SetParameterText(rows, name, voice, "\xC3\xA9 =", Bank), "");
    EXPECT_EQ(bytes(), std::string("\xE9 =\0\0\0\0\0\0\0", 10));
    EXPECT_EQ(ParameterText(rows, name, voice), "\xC3\xA9 =");
    EXPECT_EQ(SetParameterText(rows, name, voice, "", Bank), "");
    EXPECT_EQ(bytes(), std::string("Untitled\0\0", 10));
    // Ten characters, twenty bytes of UTF-8.
    const std::string accents = "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9"
                                "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9";
    EXPECT_EQ(SetParameterText(rows, name, voice, accents, Bank), "");
    EXPECT_EQ(bytes(), "\xE9\xE9\xE9\xE9\xE9\xE9\xE9\xE9\xE9\xE9");
}

TEST_P(ParameterTextOf, AnEmptyNameBecomesUntitledAlsoWhereItIsShown) {
    const NamedParameter name = Named("name");
    voice.bytes[BlockHeader + name.row->offset] = 0;
    ASSERT_EQ(ParameterText(rows, name, voice), "");
    EXPECT_EQ(SetParameterText(rows, name, voice, "", Single), "");
    EXPECT_EQ(ParameterText(rows, name, voice), "Untitled");
}

TEST_P(ParameterTextOf, ShowsWhatIsOutOfRangeAsItIs) {
    const auto show = [&](const char *name, std::vector<std::uint8_t> stored) {
        const NamedParameter parameter = Named(name);
        const std::size_t at = rows.PartOffset(voice, parameter.part) + parameter.row->offset;
        std::copy(stored.begin(), stored.end(),
                  voice.bytes.begin() + static_cast<std::ptrdiff_t>(at));
        return ParameterText(rows, parameter, voice);
    };
    EXPECT_EQ(show("algorithm", {255}), "256");
    EXPECT_EQ(show("lfoWave", {9}), "9");
    EXPECT_EQ(show("lfoSpeed", {200}), "200");
    EXPECT_EQ(show("operator1.frequency", {1, 127}), "2.27");
    EXPECT_EQ(show("operator1.frequency", {255, 255}), "257.55");
    EXPECT_EQ(show("name", {'a', 1, 0x7F, 0x9F, 0xA0, 0xFF, ' ', ' ', ' ', ' '}),
              "a???\xC2\xA0\xC3\xBF");
}

// ---- what the bank of a family has no room for

class Dx7ParameterText : public testing::Test {
protected:
    VoiceObject voice = Families()[0].voice;

    std::string Set(const char *name, const char *text, VoiceFileKind kind) {
        return SetParameterText(Dx7Parameters, *ParameterOfName(Dx7Parameters, name), voice, text,
                                kind);
    }
    std::string NotKept(const char *name, VoiceFileKind kind) {
        return ReasonNotKept(Dx7Parameters, *ParameterOfName(Dx7Parameters, name), voice, kind);
    }
};

TEST_F(Dx7ParameterText, ABankTakesNoMoreThanTheBitsOfItsField) {
    const Bytes before = voice.bytes;
    for (const char *name : {"operator1.rateScaling", "operator1.velocitySensitivity"}) {
        EXPECT_EQ(Set(name, "8", Bank), "8 does not fit into a bank, which has room for 0 to 7");
        EXPECT_EQ(voice.bytes, before);
        EXPECT_EQ(Set(name, "7", Bank), "");
        EXPECT_EQ(Set(name, "99", Single), "");
        voice.bytes = before;
    }
    EXPECT_EQ(Set("operator1.detune", "7", Bank), "");
    EXPECT_EQ(voice.bytes[BlockHeader + 20], 14);
    EXPECT_EQ(Set("operator1.frequency", "31.99", Bank), "");
    EXPECT_EQ(Set("operator1.scaleLeftCurve", "+LIN", Bank), "");
    EXPECT_EQ(Set("operator1.ampModSensitivity", "3", Bank), "");
    EXPECT_EQ(Set("feedback", "7", Bank), "");
    EXPECT_EQ(Set("lfoWave", "SH", Bank), "");
}

TEST_F(Dx7ParameterText, ABankKeepsNoLevelOfAnOperatorThatIsOff) {
    // Operator 2 is off and has a level of 58.
    EXPECT_EQ(NotKept("operator2.outputLevel", Bank),
              "a bank keeps none with operator2.enable off");
    EXPECT_EQ(NotKept("operator2.outputLevel", Single), "");
    EXPECT_EQ(NotKept("operator2.enable", Bank), "");
    EXPECT_EQ(NotKept("operator1.outputLevel", Bank), "");
    EXPECT_EQ(NotKept("operator1.enable", Bank), "");
    EXPECT_EQ(NotKept("algorithm", Bank), "");
    ASSERT_EQ(Set("operator2.outputLevel", "0", Bank), "");
    EXPECT_EQ(NotKept("operator2.outputLevel", Bank), "");
    EXPECT_EQ(NotKept("operator2.enable", Bank), "");
    ASSERT_EQ(Set("operator2.enable", "on", Bank), "");
    EXPECT_EQ(NotKept("operator2.enable", Bank),
              "an operator with operator2.outputLevel 0 is off in a bank");
    EXPECT_EQ(NotKept("operator2.enable", Single), "");
    EXPECT_EQ(NotKept("operator2.outputLevel", Bank), "");
}

TEST_F(Dx7ParameterText, AnOperatorThatIsSwitchedOffInABankIsRemarkedOnForItsLevel) {
    const NamedParameter enable = *ParameterOfName(Dx7Parameters, "operator2.enable");
    ASSERT_EQ(Set("operator2.outputLevel", "80", Single), "");
    ASSERT_EQ(Set("operator2.enable", "off", Bank), "");
    const char *lost =
        "a bank keeps no level of an operator that is off: operator2.outputLevel is 0 "
        "in the stead of 80";
    EXPECT_EQ(RemarkOnValue(Dx7Parameters, enable, voice, Bank), lost);
    EXPECT_EQ(RemarkOnValue(Dx7Parameters, enable, voice, Single), "");
    WholeDetune = 1;
    EXPECT_EQ(RemarkOnValue(Dx7Parameters, enable, voice, Bank), lost);
    WholeDetune = 0;
    ASSERT_EQ(Set("operator2.outputLevel", "0", Single), "");
    EXPECT_EQ(RemarkOnValue(Dx7Parameters, enable, voice, Bank), "");
    ASSERT_EQ(Set("operator2.outputLevel", "80", Single), "");
    ASSERT_EQ(Set("operator2.enable", "on", Bank), "");
    EXPECT_EQ(RemarkOnValue(Dx7Parameters, enable, voice, Bank), "");
}

TEST_F(Dx7ParameterText, ADetuneThatABankGivesBackOtherwiseIsRemarkedOn) {
    const NamedParameter detune = *ParameterOfName(Dx7Parameters, "operator3.detune");
    for (int value = -7; value <= 7; ++value) {
        ASSERT_EQ(Set("operator3.detune", std::to_string(value).c_str(), Bank), "");
        // Stored from 0 on, of which the lowest three bits are read.
        const std::string lost = "a bank read without --whole-detune has " +
                                 std::to_string(value - 8) + " in the stead of " +
                                 std::to_string(value);
        EXPECT_EQ(RemarkOnValue(Dx7Parameters, detune, voice, Bank), value > 0 ? lost : "");
        EXPECT_EQ(RemarkOnValue(Dx7Parameters, detune, voice, Single), "");
        WholeDetune = 1;
        EXPECT_EQ(RemarkOnValue(Dx7Parameters, detune, voice, Bank), "");
        WholeDetune = 0;
    }
}

TEST_P(ParameterTextOf, NothingElseIsRemarkedOnButTheControlCharactersOfAName) {
    for (const NamedParameter &parameter : NamedParameters(rows)) {
        if (parameter.row->kind == ParameterKind::OperatorBit ||
            ParameterName(parameter).ends_with(".detune")) {
            continue;
        }
        const bool isName = parameter.row->kind == ParameterKind::Name;
        for (const int value : {0, 1, 0x7F, 0x85, 0xFF}) {
            VoiceObject changed = voice;
            changed.bytes[rows.PartOffset(voice, parameter.part) + parameter.row->offset] =
                static_cast<std::uint8_t>(value);
            const bool isTold = isName && (value == 1 || value == 0x7F || value == 0x85);
            EXPECT_EQ(RemarkOnValue(rows, parameter, changed, Bank),
                      isTold ? "as before, with the control characters shown as ?" : "")
                << ParameterName(parameter) << " " << value;
        }
    }
}

TEST(RefaceParameterText, ABankKeepsAll) {
    Family reface = Families()[1];
    for (const NamedParameter &parameter : NamedParameters(RefaceParameters)) {
        EXPECT_EQ(ReasonNotKept(RefaceParameters, parameter, reface.voice, Bank), "");
    }
}

} // namespace
} // namespace tonewright
