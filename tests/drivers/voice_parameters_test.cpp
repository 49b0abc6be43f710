// How a row reads and stores its parameter, and what the rows of both families say.
#include "drivers/voice_parameters.h"

#include "common/settings.h"
#include "common/text.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/dx7/voice_parameters.h"
#include "drivers/reface_dx/voice_codec.h"
#include "drivers/reface_dx/voice_parameters.h"
#include "support/bank_bytes.h"
#include "support/reface_bytes.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tonewright {
namespace {

const VoiceParameter &RowNamed(std::span<const VoiceParameter> rows, std::string_view name) {
    const auto row = std::ranges::find(rows, name, &VoiceParameter::name);
    EXPECT_NE(row, rows.end()) << name;
    return *row;
}

VoiceObject RefaceVoiceOfZeros() {
    return MakeRefaceVoiceObject();
}
VoiceObject Dx7VoiceOfZeros() {
    return MakeVoiceObject(Dx7DriverId, std::vector<std::uint8_t>(Dx7VoiceSize));
}

TEST(VoiceParameters, ABiasedValueShowsAsItStandsAndIsStoredInEightBits) {
    VoiceObject voice = RefaceVoiceOfZeros();
    const VoiceParameter &transpose = RowNamed(RefaceParameters.voice, "transpose");
    const auto shown = [&](int stored) {
        voice.bytes[52 + 12] = static_cast<std::uint8_t>(stored);
        return ShownValue(RefaceParameters, transpose, voice, 0);
    };
    EXPECT_EQ(shown(0), -40);
    EXPECT_EQ(shown(40), 0);
    EXPECT_EQ(shown(255), 215);
    const auto stored = [&](int value) {
        StoreShownValue(RefaceParameters, transpose, voice, 0, value);
        return int{voice.bytes[52 + 12]};
    };
    EXPECT_EQ(stored(-24), 16);
    EXPECT_EQ(stored(24), 64);
    EXPECT_EQ(stored(-41), 255);
    EXPECT_EQ(stored(300), 84);
    StoreShownValue(RefaceParameters, RowNamed(RefaceParameters.operators, "frequencyDetune"),
                    voice, 4, -64);
    EXPECT_EQ(voice.bytes[52 + 38 + 3 * 28 + 24], 0);
}

TEST(VoiceParameters, TransposeAndBendOfARefaceDxAreCountedAbout64WithTheExtraAlone) {
    VoiceObject voice = RefaceVoiceOfZeros();
    for (const auto &[name, offset] : {std::pair{"transpose", 12}, std::pair{"pitchBend", 15}}) {
        const VoiceParameter &row = RowNamed(RefaceParameters.voice, name);
        std::uint8_t &byte = voice.bytes[52u + static_cast<std::size_t>(offset)];
        const auto shown = [&](int stored) {
            byte = static_cast<std::uint8_t>(stored);
            return ShownValue(RefaceParameters, row, voice, 0);
        };
        const auto stored = [&](int value) {
            StoreShownValue(RefaceParameters, row, voice, 0, value);
            return int{byte};
        };
        RefaceZero64 = 1;
        EXPECT_EQ(shown(64), 0);
        EXPECT_EQ(shown(40), row.minimum);
        EXPECT_EQ(shown(88), row.maximum);
        EXPECT_EQ(shown(0), -64);
        EXPECT_EQ(shown(255), 191);
        EXPECT_EQ(stored(0), 64);
        EXPECT_EQ(stored(-24), 40);
        EXPECT_EQ(stored(24), 88);
        RefaceZero64 = 0;
        EXPECT_EQ(ShownValue(RefaceParameters, row, voice, 0), 48);
        EXPECT_EQ(stored(0), 40);
    }
}

TEST(VoiceParameters, NothingElseIsCountedInAnotherWayWithTheExtra) {
    for (const VoiceParameters *family : {&Dx7Parameters, &RefaceParameters}) {
        for (const auto rows : {family->voice, family->operators}) {
            for (const VoiceParameter &row : rows) {
                const std::string_view name = row.name;
                const bool isMeant =
                    family == &RefaceParameters && (name == "transpose" || name == "pitchBend");
                RefaceZero64 = 0;
                const int bias = BiasOf(row);
                RefaceZero64 = 1;
                EXPECT_EQ(BiasOf(row) != bias, isMeant) << name;
            }
        }
    }
}

TEST(VoiceParameters, ANameIsStoredWithZeroBytesBehindItAndCutToTen) {
    VoiceObject voice = RefaceVoiceOfZeros();
    const VoiceParameter &name = RowNamed(RefaceParameters.voice, "name");
    const auto stored = [&](const std::string &text) {
        voice.bytes[52 + 10] = 0xEE; // the byte behind the name
        StoreShownName(RefaceParameters, name, voice, text);
        EXPECT_EQ(voice.bytes[52 + 10], 0xEE);
        return std::string(voice.bytes.begin() + 52, voice.bytes.begin() + 62);
    };
    EXPECT_EQ(stored("Pad"), std::string("Pad\0\0\0\0\0\0\0", 10));
    EXPECT_EQ(stored("0123456789AB"), "0123456789");
    EXPECT_EQ(stored(""), std::string(10, '\0'));
    EXPECT_EQ(stored(NameForNone), std::string("Untitled\0\0", 10));
}

TEST(VoiceParameters, ANameIsShownWithoutWhatDoesNotCountAtItsEnd) {
    const VoiceParameter &name = RowNamed(Dx7Parameters.voice, "name");
    VoiceObject voice = Dx7VoiceOfZeros();
    const auto shown = [&](const std::string &tenBytes) {
        std::copy_n(tenBytes.begin(), 10, voice.bytes.begin() + 52 + 145);
        return ShownName(Dx7Parameters, name, voice);
    };
    EXPECT_EQ(shown("PAD       "), "PAD");
    EXPECT_EQ(shown("0123456789"), "0123456789");
    EXPECT_EQ(shown(std::string("AB\0CD     ", 10)), "AB");
    EXPECT_EQ(shown("          "), " ");
}

TEST(VoiceParameters, ACheckShowsWhateverIsNot0AndIsStoredAs1) {
    VoiceObject voice = Dx7VoiceOfZeros();
    const VoiceParameter &sync = RowNamed(Dx7Parameters.voice, "lfoKeySync");
    voice.bytes[52 + 141] = 0x80;
    EXPECT_EQ(ShownValue(Dx7Parameters, sync, voice, 0), 1);
    StoreShownValue(Dx7Parameters, sync, voice, 0, 1);
    EXPECT_EQ(voice.bytes[52 + 141], 1);
    StoreShownValue(Dx7Parameters, sync, voice, 0, 0);
    EXPECT_EQ(voice.bytes[52 + 141], 0);
    EXPECT_EQ(ShownValue(Dx7Parameters, sync, voice, 0), 0);
}

TEST(VoiceParameters, TheBitsOfTheOperatorsGoDownFromTheFirstAndTheOtherBitsStay) {
    const VoiceParameter &enable = RowNamed(Dx7Parameters.operators, "enable");
    for (int part = 1; part <= 6; ++part) {
        VoiceObject voice = Dx7VoiceOfZeros();
        const int bit = 1 << (6 - part);
        StoreShownValue(Dx7Parameters, enable, voice, part, 1);
        EXPECT_EQ(voice.bytes[52 + 155], bit);
        EXPECT_EQ(ShownValue(Dx7Parameters, enable, voice, part), 1);
        voice.bytes[52 + 155] = 0xFF;
        StoreShownValue(Dx7Parameters, enable, voice, part, 0);
        EXPECT_EQ(voice.bytes[52 + 155], 0xFF - bit);
        EXPECT_EQ(ShownValue(Dx7Parameters, enable, voice, part), 0);
    }
}

TEST(VoiceParameters, AFrequencyIsItsWholePartAndItsHundredths) {
    VoiceObject voice = Dx7VoiceOfZeros();
    const VoiceParameter &frequency = RowNamed(Dx7Parameters.operators, "frequency");
    StoreShownValue(Dx7Parameters, frequency, voice, 2, 1234);
    EXPECT_EQ(voice.bytes[52 + 21 + 18], 12);
    EXPECT_EQ(voice.bytes[52 + 21 + 19], 34);
    voice.bytes[52 + 21 + 18] = 1;
    voice.bytes[52 + 21 + 19] = 127;
    EXPECT_EQ(ShownValue(Dx7Parameters, frequency, voice, 2), 227);
}

TEST(VoiceParameters, AVoiceIsNamedByItsPlace) {
    EXPECT_EQ(Dx7Parameters.PlaceText(0), "Voice 1");
    EXPECT_EQ(Dx7Parameters.PlaceText(31), "Voice 32");
    EXPECT_EQ(RefaceParameters.PlaceText(8), "9 (Bank 2 - 1)");
}

TEST(VoiceParameters, OnlyAWholeVoiceOfTheFamilyIsOne) {
    VoiceObject dx7 = MakeVoiceObject(Dx7DriverId, TestUnpackedVoice());
    VoiceObject reface{TestRefaceBlock(0)};
    EXPECT_TRUE(Dx7Parameters.IsWhole(dx7));
    EXPECT_FALSE(Dx7Parameters.IsWhole(reface));
    EXPECT_TRUE(RefaceParameters.IsWhole(reface));
    EXPECT_FALSE(RefaceParameters.IsWhole(dx7));
    dx7.bytes.pop_back();
    EXPECT_FALSE(Dx7Parameters.IsWhole(dx7));
    reface.bytes.pop_back();
    EXPECT_FALSE(RefaceParameters.IsWhole(reface));
    EXPECT_FALSE(Dx7Parameters.IsWhole(VoiceObject{}));
    EXPECT_FALSE(RefaceParameters.IsWhole(VoiceObject{}));
}

TEST(VoiceParameters, ABankOfADx7KeepsTheBitsThatARowSaysAndNoMore) {
    WholeDetune = 1; // packed in four bits, whichever of them are read
    for (int part : {0, 1, 6}) {
        for (const VoiceParameter &row :
             part == 0 ? Dx7Parameters.voice : Dx7Parameters.operators) {
            if (row.kind == ParameterKind::Name || row.name[0] == '\0') {
                continue;
            }
            for (int shown = row.minimum; shown <= row.maximum; ++shown) {
                VoiceObject voice = Dx7VoiceOfZeros();
                std::fill_n(voice.bytes.begin() + 52, 156, std::uint8_t{1});
                voice.bytes[52 + 155] = 0x3F;
                StoreShownValue(Dx7Parameters, row, voice, part, shown);
                std::vector<std::uint8_t> packed(Dx7PackedVoiceSize);
                std::vector<std::uint8_t> unpacked(Dx7VoiceSize);
                PackDx7Voice(Dx7Packed(packed), *Dx7VoiceOf(&voice));
                UnpackDx7Voice(Dx7Unpacked(unpacked), Dx7PackedConst(packed));
                const VoiceObject back = MakeDx7VoiceObject(Dx7UnpackedConst(unpacked));
                const bool fits = shown + row.bias < 1 << row.packedBits;
                EXPECT_EQ(ShownValue(Dx7Parameters, row, back, part) == shown, fits)
                    << row.name << " " << shown;
            }
        }
    }
}

TEST(VoiceParameters, EveryListHasAsManyItemsAsItsRowHasValues) {
    for (const VoiceParameters *family : {&Dx7Parameters, &RefaceParameters}) {
        for (const auto rows : {family->voice, family->operators}) {
            for (const VoiceParameter &row : rows) {
                if (row.IsList()) {
                    EXPECT_EQ(row.minimum, 0);
                    EXPECT_EQ(SplitList(row.items).size(),
                              static_cast<std::size_t>(row.maximum) + 1)
                        << row.name;
                } else {
                    EXPECT_EQ(row.items, nullptr) << row.name;
                }
            }
        }
    }
}

TEST(VoiceParameters, NoControlAndNoNameStandsForTwoRowsOfAPage) {
    for (const VoiceParameters *family : {&Dx7Parameters, &RefaceParameters}) {
        for (const auto rows : {family->voice, family->operators}) {
            for (const VoiceParameter &row : rows) {
                EXPECT_EQ(std::ranges::count(rows, row.control, &VoiceParameter::control), 1);
                const auto isOfThatName = [&row](const VoiceParameter &other) {
                    return row.name[0] != '\0' && std::string(other.name) == row.name;
                };
                EXPECT_LE(std::ranges::count_if(rows, isOfThatName), 1) << row.name;
            }
        }
    }
}

} // namespace
} // namespace tonewright
