// What the bytes of the reface DX's settings mean, in a box and in words.
#include "drivers/reface_dx/settings.h"

#include "support/comma_locale.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tonewright {
namespace {

using System = std::array<std::uint8_t, RefaceSystemSize>;

// The places of the controls, by their numbers from 101 on.
enum Place {
    Transmit,
    Receive,
    Tune,
    Local,
    Transpose,
    Tempo,
    Contrast,
    Pedal,
    Power,
    Speaker,
    Midi
};

// Channel 4, all, 1024, local, +3, 200, 33, FC4/5, on, on, on.
const System Known = {3,   16,  0,   4,   0,    0,    1,   67,  1,   72,  33,
                      1,   1,   1,   1,   0x60, 0x61, 98,  99,  100, 101, 102,
                      103, 104, 105, 106, 107,  108,  109, 110, 111, 112};

RefaceControls Shown(const System &system) {
    RefaceControls controls;
    ShowRefaceSettings(controls, system);
    return controls;
}

System Collected(const RefaceControls &controls) {
    System system = {};
    CollectRefaceSettings(controls, system);
    return system;
}

// The four bytes of a tuning.
System WithTuning(int tuning) {
    System system = {};
    for (int n = 0; n < 4; ++n) {
        system[static_cast<std::size_t>(2 + n)] =
            static_cast<std::uint8_t>(tuning >> (12 - 4 * n) & 15);
    }
    return system;
}

TEST(RefaceSettingValues, ShowTheirBytesInTheControls) {
    const RefaceControls controls = Shown(Known);
    EXPECT_EQ(controls[Transmit].item, 3);
    EXPECT_EQ(controls[Receive].item, 16);
    EXPECT_EQ(controls[Tune].text, "440.0");
    EXPECT_TRUE(controls[Local].checked);
    EXPECT_EQ(controls[Transpose].number, 3);
    EXPECT_EQ(controls[Tempo].number, 200);
    EXPECT_EQ(controls[Contrast].number, 33);
    EXPECT_EQ(controls[Pedal].item, 1);
    EXPECT_TRUE(controls[Power].checked);
    EXPECT_TRUE(controls[Speaker].checked);
    EXPECT_TRUE(controls[Midi].checked);
}

TEST(RefaceSettingValues, CollectWhatTheyShowAndLeaveTheBytesBehindThem) {
    System system = Known;
    CollectRefaceSettings(Shown(Known), system);
    EXPECT_EQ(system, Known);
}

TEST(RefaceSettingValues, OfNothingButZerosShowAsTheLowestValues) {
    const RefaceControls controls = Shown({});
    EXPECT_EQ(controls[Tune].text, "414.7");
    EXPECT_EQ(controls[Transpose].number, -64);
    EXPECT_EQ(controls[Tempo].number, 0);
    EXPECT_EQ(controls[Transmit].item, 0);
    EXPECT_FALSE(controls[Speaker].checked);
}

TEST(RefaceSettingValues, TransmitChannels16And127ShowAsOffAndAreCollectedAs127) {
    for (const int value : {16, 127}) {
        System system = {};
        system[0] = static_cast<std::uint8_t>(value);
        EXPECT_EQ(Shown(system)[Transmit].item, 16) << value;
        EXPECT_EQ(RefaceSettingText(Transmit, system), "Off");
        EXPECT_EQ(Collected(Shown(system))[0], 127) << value;
    }
}

TEST(RefaceSettingValues, AnItemOf16OfTheReceiveChannelShowsAsAll) {
    System system = {};
    system[1] = 16;
    EXPECT_EQ(Shown(system)[Receive].item, 16);
    EXPECT_EQ(RefaceSettingText(Receive, system), "All");
    EXPECT_EQ(Collected(Shown(system))[1], 16);
}

TEST(RefaceSettingValues, AByteWithoutItemSelectsNoneAndIsCollectedAsZero) {
    System system = {};
    system[0] = 17;
    system[1] = 17;
    system[11] = 2;
    const RefaceControls controls = Shown(system);
    EXPECT_EQ(controls[Transmit].item, -1);
    EXPECT_EQ(controls[Receive].item, -1);
    EXPECT_EQ(controls[Pedal].item, -1);
    const System collected = Collected(controls);
    EXPECT_EQ(collected[0], 0);
    EXPECT_EQ(collected[1], 0);
    EXPECT_EQ(collected[11], 0);
}

TEST(RefaceSettingValues, ASwitchIsCollectedAsOneOrZero) {
    System system = {};
    system[6] = 200;
    EXPECT_TRUE(Shown(system)[Local].checked);
    const System collected = Collected(Shown(system));
    EXPECT_EQ(collected[6], 1);
    EXPECT_EQ(collected[13], 0);
}

TEST(RefaceSettingValues, ShownAgainOnlyEverCheckABox) {
    RefaceControls controls = Shown(Known);
    ShowRefaceSettings(controls, System{});
    EXPECT_TRUE(controls[Local].checked);
    EXPECT_TRUE(controls[Midi].checked);
    EXPECT_EQ(controls[Transmit].item, 0);
    EXPECT_EQ(controls[Tune].text, "414.7");
}

TEST(RefaceSettingValues, TransposeIsStoredPlus64) {
    RefaceControls controls;
    controls[Transpose].number = -12;
    EXPECT_EQ(Collected(controls)[7], 52);
    controls[Transpose].number = 12;
    EXPECT_EQ(Collected(controls)[7], 76);
}

TEST(RefaceSettingValues, ATempoUpTo255ReadsBackAndOneAboveLosesItsHighBits) {
    const auto readBack = [](int tempo) {
        RefaceControls controls;
        controls[Tempo].number = tempo;
        return Shown(Collected(controls))[Tempo].number;
    };
    RefaceControls controls;
    controls[Tempo].number = 120;
    EXPECT_EQ(Collected(controls)[8], 0);
    EXPECT_EQ(Collected(controls)[9], 120);
    EXPECT_EQ(readBack(120), 120);
    EXPECT_EQ(readBack(200), 200);
    EXPECT_EQ(readBack(255), 255);
    EXPECT_EQ(readBack(256), 0);
    EXPECT_EQ(readBack(300), 44);
}

TEST(RefaceSettingValues, ATempoShowsSevenBitsOfEachByte) {
    System system = {};
    system[8] = 0x82;
    system[9] = 0xAC;
    EXPECT_EQ(Shown(system)[Tempo].number, 300);
}

// ---- master tune

TEST(MasterTune, Of440HzIs1024) {
    EXPECT_EQ(MasterTuneOf("440.0"), 1024);
    RefaceControls controls;
    controls[Tune].text = "440.0";
    const System system = Collected(controls);
    EXPECT_EQ((std::vector<int>{system[2], system[3], system[4], system[5]}),
              (std::vector<int>{0, 4, 0, 0}));
}

TEST(MasterTune, OfAnOddTenthIsThatOfTheEvenOneBelow) {
    EXPECT_EQ(MasterTuneOf("440.1"), 1024);
    EXPECT_EQ(MasterTuneOf("440.3"), MasterTuneOf("440.2"));
    EXPECT_NE(MasterTuneOf("440.2"), 1024);
}

TEST(MasterTune, IsLimitedWhenItIsCollected) {
    EXPECT_EQ(MasterTuneOf("500"), MasterTuneOf("466.8"));
    EXPECT_EQ(MasterTuneText(MasterTuneOf("500")), "466.8");
    EXPECT_EQ(MasterTuneOf("0"), MasterTuneOf("414.8"));
    EXPECT_EQ(MasterTuneText(MasterTuneOf("-440")), "414.8");
}

TEST(MasterTune, OfWhatIsNoFrequencyIsALimit) {
    for (const char *text : {"", "-", "nan", "Hz", "-inf", "-1e999", "1e-999"}) {
        EXPECT_EQ(MasterTuneOf(text), MasterTuneOf("414.8")) << text;
        EXPECT_EQ(StepMasterTune(text, 1), "414.8") << text;
    }
    for (const char *text : {"inf", "1e999", "99999999999999999999"}) {
        EXPECT_EQ(MasterTuneOf(text), MasterTuneOf("466.8")) << text;
        EXPECT_EQ(StepMasterTune(text, -1), "466.8") << text;
    }
    EXPECT_EQ(MasterTuneOf("440,9"), 1024) << "a comma ends the number";
}

TEST(MasterTune, Of261TuningsOutOf2049SurvivesACollectionThatChangesNothing) {
    int survivors = 0;
    for (int tuning = 0; tuning <= 2048; ++tuning) {
        const System system = WithTuning(tuning);
        survivors += Collected(Shown(system)) == [&] {
            System expected = system;
            expected[7] = 0; // -64 and back
            return expected;
        }();
    }
    EXPECT_EQ(survivors, 261);
}

TEST(MasterTune, ShowsAnyFourBytesByTheirLowBits) {
    System system = {};
    system[2] = 0xF0;
    system[3] = 0x74;
    EXPECT_EQ(Shown(system)[Tune].text, "440.0");
    EXPECT_EQ(MasterTuneText(65535), "18271.1");
}

TEST(MasterTune, StepsByATenthWithinItsLimits) {
    EXPECT_EQ(StepMasterTune("440.0", 1), "440.1");
    EXPECT_EQ(StepMasterTune("440.0", -1), "439.9");
    EXPECT_EQ(StepMasterTune("440.0", 0), "439.9");
    EXPECT_EQ(StepMasterTune("466.8", 1), "466.8");
    EXPECT_EQ(StepMasterTune("414.8", -1), "414.8");
    EXPECT_EQ(StepMasterTune("500", -1), "466.8");
}

TEST(MasterTune, HasADotWhateverTheLanguage) {
    const CommaLocale comma;
    EXPECT_EQ(Shown(WithTuning(1032))[Tune].text, "440.2");
    EXPECT_EQ(MasterTuneOf("440.2"), 1032);
    EXPECT_EQ(MasterTuneOf("440,2"), 1024);
    EXPECT_EQ(StepMasterTune("440.2", 1), "440.3");
    System system = WithTuning(1024);
    EXPECT_EQ(RefaceSettingText(Tune, system), "440.0");
    EXPECT_EQ(StoreRefaceSetting(Tune, "440.2", system), "");
    EXPECT_EQ(system, WithTuning(1032));
    EXPECT_EQ(StoreRefaceSetting(Tune, "440,4", system),
              "440,4 is no number of Hz with one decimal");
}

// ---- in words

std::vector<std::string> Words(const System &system) {
    std::vector<std::string> words;
    for (std::size_t n = 0; n < RefaceSettingCount; ++n) {
        words.push_back(RefaceSettingNames[n] + std::string("=") + RefaceSettingText(n, system));
    }
    return words;
}

TEST(RefaceSettingWords, TellEverySettingByItsName) {
    EXPECT_EQ(Words(Known),
              (std::vector<std::string>{"transmitChannel=Channel 4", "receiveChannel=All",
                                        "masterTune=440.0", "localControl=on", "transpose=3",
                                        "tempo=200", "lcdContrast=33", "sustainPedal=Yamaha FC4/5",
                                        "powerAutoOff=on", "speaker=on", "midiControl=on"}));
}

TEST(RefaceSettingWords, TellZerosToo) {
    EXPECT_EQ(Words({}),
              (std::vector<std::string>{"transmitChannel=Channel 1", "receiveChannel=Channel 1",
                                        "masterTune=414.7", "localControl=off", "transpose=-64",
                                        "tempo=0", "lcdContrast=0", "sustainPedal=Yamaha FC3",
                                        "powerAutoOff=off", "speaker=off", "midiControl=off"}));
}

TEST(RefaceSettingWords, TellAByteWithoutItemByItsNumber) {
    System system = {};
    system[0] = 100;
    EXPECT_EQ(RefaceSettingText(Transmit, system), "100");
}

TEST(RefaceSettingWords, AreTakenBackAndChangeNoOtherByte) {
    const struct {
        Place setting;
        const char *text;
        std::vector<std::pair<std::size_t, int>> bytes;
    } cases[] = {
        {Transmit, "Channel 16", {{0, 15}}},
        {Transmit, "off", {{0, 127}}},
        {Receive, "ALL", {{1, 16}}},
        {Receive, "channel 1", {{1, 0}}},
        {Tune, "466.8", {{2, 0}, {3, 8}, {4, 0}, {5, 0}}},
        {Tune, "440", {{2, 0}, {3, 4}, {4, 0}, {5, 0}}},
        {Local, "on", {{6, 1}}},
        {Local, "Off", {{6, 0}}},
        {Transpose, "-12", {{7, 52}}},
        {Tempo, "255", {{8, 1}, {9, 127}}},
        {Tempo, "30", {{8, 0}, {9, 30}}},
        {Contrast, "63", {{10, 63}}},
        {Pedal, "yamaha fc3", {{11, 0}}},
        {Power, "on", {{12, 1}}},
        {Speaker, "on", {{13, 1}}},
        {Speaker, "YES", {{13, 1}}},
        {Speaker, "1", {{13, 1}}},
        {Speaker, "no", {{13, 0}}},
        {Speaker, "0", {{13, 0}}},
        {Midi, "on", {{14, 1}}},
    };
    for (const auto &each : cases) {
        System system;
        system.fill(99);
        System expected = system;
        for (const auto &[byte, value] : each.bytes) {
            expected[byte] = static_cast<std::uint8_t>(value);
        }
        EXPECT_EQ(StoreRefaceSetting(each.setting, each.text, system), "") << each.text;
        EXPECT_EQ(system, expected) << each.text;
    }
}

TEST(RefaceSettingWords, RefuseWhatCannotBeKeptAndSayWhy) {
    const struct {
        Place setting;
        const char *text, *why;
    } cases[] = {
        {Tempo, "256", "256 cannot be kept: it would become 0"},
        {Tempo, "300", "300 cannot be kept: it would become 44"},
        {Tempo, "301", "301 is no whole number from 30 to 300"},
        {Tempo, "29", "29 is no whole number from 30 to 300"},
        {Tempo, "99999999999", "99999999999 is no whole number from 30 to 300"},
        {Tempo, "120.5", "120.5 is no whole number from 30 to 300"},
        {Tempo, "", "an empty text is no whole number from 30 to 300"},
        {Transpose, "13", "13 is no whole number from -12 to 12"},
        {Contrast, "64", "64 is no whole number from 0 to 63"},
        {Tune, "440.1", "440.1 cannot be kept: it would become 440.0"},
        {Tune, "414.7", "414.7 is no number from 414.8 to 466.8"},
        {Tune, "466.9", "466.9 is no number from 414.8 to 466.8"},
        {Tune, "440.00", "440.00 is no number of Hz with one decimal"},
        {Tune, "440.", "440. is no number of Hz with one decimal"},
        {Tune, "nan", "nan is no number of Hz with one decimal"},
        {Speaker, "2", "2 is neither on nor off"},
        {Speaker, "", "an empty text is neither on nor off"},
        // Channels count from 1, so that no index of one is taken; nor what shows for lack of a
        // word.
        {Pedal, "1", "1 is none of Yamaha FC3; Yamaha FC4/5"},
        {Pedal, "100", "100 is none of Yamaha FC3; Yamaha FC4/5"},
        {Pedal, "FC3", "FC3 is none of Yamaha FC3; Yamaha FC4/5"},
    };
    for (const auto &each : cases) {
        System system = Known;
        EXPECT_EQ(StoreRefaceSetting(each.setting, each.text, system), each.why);
        EXPECT_EQ(system, Known) << each.text;
    }
}

TEST(RefaceSettingWords, TakeEveryEvenTenthOfATune) {
    for (int tenths = 4148; tenths <= 4668; tenths += 2) {
        const std::string text = FormatText("%d.%d", tenths / 10, tenths % 10);
        System system = {};
        EXPECT_EQ(StoreRefaceSetting(Tune, text, system), "");
        EXPECT_EQ(RefaceSettingText(Tune, system), text);
    }
}

} // namespace
} // namespace tonewright
