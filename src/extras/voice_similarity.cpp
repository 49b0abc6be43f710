// The bytes that are compared, and their distance.
//
//   offset  0  family: 0 six operators, 1 four
//           1  algorithm, from 0
//           2  operators, the first one first: six of 8 bytes, or four of 9
//              then what is of the whole voice
#include "extras/voice_similarity.h"

#include "drivers/reface_dx/voice_codec.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>
#include <string_view>

namespace tonewright {

namespace {

constexpr std::uint8_t SixOperators = 0;
constexpr std::uint8_t FourOperators = 1;

constexpr std::size_t FamilyByte = 0;
constexpr std::size_t AlgorithmByte = 1;
constexpr std::size_t FirstOperator = 2;
constexpr int Middle = 128; // of a byte that counts to both sides

// In the features of an operator.
enum OperatorFeature : std::size_t {
    Strength,
    Sustained,
    Frequency,
    Attack,
    Decay,
    Release,
    Touch,
    Rest,
    Feedback,
};

struct FamilyLayout {
    std::size_t operators;
    std::size_t featuresOfOperator; // without feedback where the voice has one alone

    constexpr std::size_t BehindOperators() const {
        return FirstOperator + operators * featuresOfOperator;
    }
};
constexpr FamilyLayout Layouts[] = {{Dx7OperatorCount, Feedback},
                                    {RefaceOperatorCount, Feedback + 1}};

// Behind the operators.
constexpr std::size_t FeedbackOfSix = Layouts[SixOperators].BehindOperators();
constexpr std::size_t LfoOfSix = FeedbackOfSix + 1;
constexpr std::size_t PitchEgOfSix = LfoOfSix + 1;
constexpr std::size_t TransposeOfSix = PitchEgOfSix + 1;
constexpr std::size_t RestOfSix = TransposeOfSix + 1;
static_assert(RestOfSix < VoiceFeatureSize);
constexpr std::size_t LfoOfFour = Layouts[FourOperators].BehindOperators();
constexpr std::size_t PitchEgOfFour = LfoOfFour + 1;
constexpr std::size_t TransposeOfFour = PitchEgOfFour + 1;
constexpr std::size_t EffectsOfFour = TransposeOfFour + 1; // of each kind but "through"
constexpr std::size_t EffectKinds = 7;
constexpr std::size_t PortamentoOfFour = EffectsOfFour + EffectKinds;
constexpr std::size_t ModeOfFour = PortamentoOfFour + 1;
constexpr std::size_t RestOfFour = ModeOfFour + 1;
static_assert(RestOfFour < VoiceFeatureSize);

// The weights, as the header tells them.
constexpr float StrengthWeight = 100;
constexpr float SustainedWeight = 50;
constexpr float OctaveWeight = 24;
constexpr float DetuneWeight = 0.5f; // a step
constexpr float AttackWeight = 60;
constexpr float DecayWeight = 60;
constexpr float ReleaseWeight = 30;
constexpr float VelocityWeight = 28;
constexpr float ScalingWeight = 12; // a side
constexpr float FixedWeight = 60;
constexpr float RestWeight = 4; // a byte that counts once
constexpr float FeedbackWeight = 50;
constexpr float LfoWeight = 60;
constexpr float PitchEgWeight = 40;
constexpr float TransposeWeight = 3; // a semitone
constexpr float EffectWeight = 10;
constexpr float EffectDepthWeight = 30;
constexpr float PortamentoWeight = 20;
constexpr float ModeWeight = 10;
constexpr int WiringWeight = 8;

constexpr int LargestOfSix = 99; // of a level or rate
constexpr int LargestOfFour = 127;
constexpr float AtOnce = 80; // a rate

// Each row: the carriers, then what modulates what ("65": 6 modulates 5), then which one feeds
// back.
constexpr std::string_view SixOperatorAlgorithms[] = {
    "13 65 54 43 21 f6",   "13 65 54 43 21 f2",   "14 65 54 32 21 f6",  "14 65 54 32 21 f6",
    "135 65 43 21 f6",     "135 65 43 21 f6",     "13 65 53 43 21 f6",  "13 65 53 43 21 f4",
    "13 65 53 43 21 f2",   "14 64 54 32 21 f3",   "14 64 54 32 21 f6",  "13 63 53 43 21 f2",
    "13 63 53 43 21 f6",   "13 64 54 43 21 f6",   "13 64 54 43 21 f2",  "1 65 51 43 31 21 f6",
    "1 65 51 43 31 21 f2", "1 65 54 41 31 21 f3", "145 65 64 32 21 f6", "124 64 54 32 31 f3",
    "1245 65 64 32 31 f3", "1345 65 64 63 21 f6", "1245 65 64 32 f6",   "12345 65 64 63 f6",
    "12345 65 64 f6",      "124 64 54 32 f6",     "124 64 54 32 f3",    "136 54 43 21 f5",
    "1235 65 43 f6",       "1236 54 43 f5",       "12345 65 f6",        "123456 f6",
};
constexpr std::string_view FourOperatorAlgorithms[] = {
    "1 43 32 21",  "1 42 32 21", "1 32 21 41",   "1 43 42 31 21", "1 41 31 21", "12 43 32",
    "12 43 32 31", "13 21 43",   "123 41 42 43", "123 42 43",     "123 43",     "1234",
};

// Operators from 0.
struct Wiring {
    std::uint8_t carriers = 0;                // a bit for each
    std::array<std::uint8_t, 6> targets = {}; // of each operator, a bit for each that it modulates
    std::size_t feedback = 0;

    bool operator==(const Wiring &other) const {
        return carriers == other.carriers && targets == other.targets;
    }
};

Wiring ReadWiring(std::string_view row) {
    Wiring wiring;
    const auto number = [](char digit) { return static_cast<std::size_t>(digit - '1'); };
    std::size_t place = 0;
    for (; place < row.size() && row[place] != ' '; ++place) {
        wiring.carriers |= 1 << number(row[place]);
    }
    for (; place + 2 < row.size(); place += 3) {
        if (row[place + 1] == 'f') {
            wiring.feedback = number(row[place + 2]);
        } else {
            wiring.targets[number(row[place + 1])] |= 1 << number(row[place + 2]);
        }
    }
    return wiring;
}

using Arrangement = std::array<std::uint8_t, 6>; // which operator takes the place of each

// The orders of operators that leave a wiring as it is, the present one first.
std::vector<Arrangement> ArrangementsOf(const Wiring &wiring, std::size_t operators) {
    Arrangement order;
    std::iota(order.begin(), order.end(), std::uint8_t{0});
    std::vector<Arrangement> found;
    do {
        const auto moved = [&](std::uint8_t set) {
            std::uint8_t result = 0;
            for (std::size_t one = 0; one < operators; ++one) {
                result |= (set >> order[one] & 1) << one;
            }
            return result;
        };
        bool same = moved(wiring.carriers) == wiring.carriers;
        for (std::size_t one = 0; same && one < operators; ++one) {
            same = moved(wiring.targets[order[one]]) == wiring.targets[one];
        }
        if (same) {
            found.push_back(order);
        }
    } while (std::next_permutation(order.begin(), order.begin() + operators));
    return found;
}

struct FamilyAlgorithms {
    std::vector<Wiring> wirings;
    std::vector<std::vector<Arrangement>> arrangements;
    std::array<std::array<std::uint8_t, 32>, 32> distances = {};
};

FamilyAlgorithms MakeAlgorithms(std::span<const std::string_view> rows, std::size_t operators) {
    FamilyAlgorithms made;
    for (const std::string_view row : rows) {
        made.wirings.push_back(ReadWiring(row));
        made.arrangements.push_back(ArrangementsOf(made.wirings.back(), operators));
    }
    for (std::size_t one = 0; one < rows.size(); ++one) {
        for (std::size_t other = 0; other < rows.size(); ++other) {
            int differing = 0;
            for (std::size_t from = 0; from < operators; ++from) {
                differing += std::popcount(static_cast<unsigned>(
                    made.wirings[one].targets[from] ^ made.wirings[other].targets[from]));
            }
            made.distances[one][other] = static_cast<std::uint8_t>(WiringWeight * differing);
        }
    }
    return made;
}

const FamilyAlgorithms &AlgorithmsOf(std::uint8_t family) {
    static const FamilyAlgorithms families[] = {
        MakeAlgorithms(SixOperatorAlgorithms, Dx7OperatorCount),
        MakeAlgorithms(FourOperatorAlgorithms, RefaceOperatorCount),
    };
    return families[family];
}

// What the two families have in common, in the units of six operators.
struct Sounding {
    std::array<float, 4> rates, levels; // of the envelope, 0 to 99
    float level;                        // 0 to 99; 0: silent
    float velocity;                     // 0 to 1
    float tremolo;                      // 0 to 1
    float scaling[2];                   // to both sides, -1 to 1
    float octaves;                      // above the key, or above middle C
    bool fixed;
    float rest; // of all of its bytes, whatever they do

    float HighestLevel() const { return std::max({levels[0], levels[1], levels[2]}); }
};

// By level: how loud a carrier is, and how bright a modulator makes, 0 to 1.
struct StrengthTables {
    std::array<float, LargestOfSix + 1> carrier = {}, modulator = {};
};

const StrengthTables &Strengths() {
    static const StrengthTables tables = [] {
        constexpr float decibels = 0.7526f; // a step of level
        constexpr float octave = 6.0206f;   // decibels of a factor of 2
        constexpr float largestIndex = 4 * std::numbers::pi_v<float>;
        StrengthTables made;
        for (int level = 1; level <= LargestOfSix; ++level) {
            const float below = static_cast<float>(LargestOfSix - level) * decibels;
            made.carrier[level] = std::exp2(-below / 10);
            made.modulator[level] =
                std::log1p(largestIndex * std::exp2(-below / octave)) / std::log1p(largestIndex);
        }
        return made;
    }();
    return tables;
}

std::uint8_t ByteOf(float value) {
    return static_cast<std::uint8_t>(std::clamp(value + 0.5f, 0.f, 255.f));
}

// One that counts to both sides.
std::uint8_t SidedByteOf(float value) {
    return ByteOf(static_cast<float>(Middle) + value);
}

// The strength of an operator whose envelope stands at `level`.
float StrengthAt(const Sounding &sounding, float level, bool carrier) {
    const auto whole = static_cast<int>(sounding.level + level) - LargestOfSix;
    if (whole <= 0 || sounding.level <= 0) {
        return 0;
    }
    const StrengthTables &tables = Strengths();
    return (carrier ? tables.carrier : tables.modulator)[std::min(whole, LargestOfSix)];
}

// How much of each operator is heard, 0 to 1: a carrier beside the loudest one, a modulator in what
// it modulates.
void WeighOperators(std::span<float> weights, std::span<const Sounding> operators,
                    const Wiring &wiring) {
    float loudest = 0;
    for (std::size_t one = 0; one < operators.size(); ++one) {
        const bool carrier = wiring.carriers >> one & 1;
        weights[one] = StrengthAt(operators[one], operators[one].HighestLevel(), carrier);
        loudest = carrier ? std::max(loudest, weights[one]) : loudest;
    }
    for (std::size_t one = 0; one < operators.size(); ++one) {
        if (wiring.carriers >> one & 1) {
            weights[one] = loudest > 0 ? weights[one] / loudest : 0;
            continue;
        }
        float within = 0;
        for (std::size_t target = 0; target < one; ++target) { // it has a smaller number
            if (wiring.targets[one] >> target & 1) {
                within = std::max(within, weights[target]);
            }
        }
        weights[one] *= within;
    }
}

void WriteOperator(std::uint8_t *features, const Sounding &sounding, bool carrier, float weight) {
    const auto &levels = sounding.levels;
    constexpr float largest = LargestOfSix;
    const float highest = StrengthAt(sounding, sounding.HighestLevel(), carrier);
    const float sustained = StrengthAt(sounding, levels[2], carrier);
    const float strength = carrier ? highest : weight;
    const float side = carrier ? 1 : -1;
    features[Strength] = SidedByteOf(side * StrengthWeight * strength);
    features[Sustained] =
        SidedByteOf(highest > 0 ? side * SustainedWeight * weight * sustained / highest : 0);
    features[Frequency] =
        SidedByteOf(weight * std::clamp(OctaveWeight * sounding.octaves, -127.f, 127.f));
    const float attack = std::max(0.f, AtOnce - sounding.rates[0]) / AtOnce;
    features[Attack] = ByteOf(weight * AttackWeight * attack);
    const float decay = (std::abs(levels[0] - levels[1]) * sounding.rates[1] +
                         std::abs(levels[1] - levels[2]) * sounding.rates[2]) /
                        (largest * largest);
    features[Decay] = ByteOf(weight * DecayWeight * decay);
    const float release = sounding.rates[3] * (largest - levels[3]) / (largest * largest);
    features[Release] = ByteOf(weight * ReleaseWeight * release);
    features[Touch] =
        SidedByteOf(weight * (VelocityWeight * sounding.velocity +
                              ScalingWeight * (sounding.scaling[0] + sounding.scaling[1]) +
                              (sounding.fixed ? FixedWeight : 0)));
    features[Rest] = ByteOf(sounding.rest);
}

float LfoOf(float vibrato, float tremolo, float speed) {
    const float amount = std::max(std::sqrt(vibrato), tremolo);
    return LfoWeight * amount * (1 + speed) / 2;
}

float RatioOctaves(int coarse, int fine) {
    static const auto tables = [] {
        struct {
            std::array<float, 32> coarse;
            std::array<float, 128> fine;
        } made;
        for (int value = 0; value < 32; ++value) {
            made.coarse[value] = value == 0 ? -1 : std::log2(static_cast<float>(value));
        }
        for (int value = 0; value < 128; ++value) {
            made.fine[value] = std::log2(1 + static_cast<float>(value) / 100);
        }
        return made;
    }();
    return tables.coarse[coarse & 31] + tables.fine[fine & 127];
}

// Of 10 to the power of `decades`, in Hz.
float FixedOctaves(float decades) {
    constexpr float octavesOfDecade = 3.321928f;
    constexpr float middleC = 8.0313f; // octaves above 1 Hz
    return decades * octavesOfDecade - middleC;
}

float UpTo(int value, int largest) {
    return static_cast<float>(std::min(value, largest));
}

// How far a curve (-LIN, -EXP, +EXP, +LIN) moves the level to its side.
float ScalingOf(int depth, int curve, int largest) {
    return UpTo(depth, largest) / static_cast<float>(largest) * (curve & 2 ? 1.f : -1.f);
}

float PitchEgOf(std::span<const std::uint8_t> levels, int middle) {
    int largest = 0;
    for (const std::uint8_t level : levels) {
        largest = std::max(largest, std::abs(level - middle));
    }
    return PitchEgWeight *
           std::sqrt(std::min(static_cast<float>(largest) / static_cast<float>(middle), 1.f));
}

// `largest`: of a byte, as a rule. Bytes count once, twice or three times, so that one that grows
// seldom makes up for its neighbour that shrinks.
float RestOf(std::span<const std::uint8_t> bytes, int largest) {
    int sum = 0;
    int times = 1;
    for (const std::uint8_t byte : bytes) {
        sum += times * byte;
        times = times % 3 + 1;
    }
    return RestWeight * static_cast<float>(sum) / static_cast<float>(largest);
}

// Of a packed operator.
Sounding SoundingOfSix(std::span<const std::uint8_t> bytes) {
    Sounding sounding;
    sounding.rest = RestOf(bytes, LargestOfSix);
    for (std::size_t step = 0; step < 4; ++step) {
        sounding.rates[step] = UpTo(bytes[step], LargestOfSix);
        sounding.levels[step] = UpTo(bytes[4 + step], LargestOfSix);
    }
    sounding.scaling[0] = ScalingOf(bytes[9], bytes[11], LargestOfSix);
    sounding.scaling[1] = ScalingOf(bytes[10], bytes[11] >> 2, LargestOfSix);
    sounding.velocity = static_cast<float>(bytes[13] >> 2 & 7) / 7;
    sounding.tremolo = static_cast<float>(bytes[13] & 3) / 3;
    sounding.level = UpTo(bytes[14], LargestOfSix);
    sounding.fixed = bytes[15] & 1;
    const int coarse = bytes[15] >> 1 & 31;
    const int fine = bytes[16];
    const float detune = static_cast<float>((bytes[12] >> 3 & 15) - 7);
    sounding.octaves =
        (sounding.fixed
             ? FixedOctaves(static_cast<float>(coarse & 3) + UpTo(fine, LargestOfSix) / 100)
             : RatioOctaves(coarse, fine)) +
        detune * DetuneWeight / OctaveWeight;
    return sounding;
}

VoiceFeatures FeaturesOfSix(std::span<const std::uint8_t, Dx7PackedVoiceSize> bytes) {
    constexpr float largest = LargestOfSix;
    VoiceFeatures features = {};
    const std::uint8_t algorithm = bytes[110] & 31;
    features[FamilyByte] = SixOperators;
    features[AlgorithmByte] = algorithm;
    const Wiring &wiring = AlgorithmsOf(SixOperators).wirings[algorithm];
    std::array<Sounding, Dx7OperatorCount> operators;
    float tremolo = 0;
    for (std::size_t one = 0; one < Dx7OperatorCount; ++one) {
        const std::size_t place = (Dx7OperatorCount - 1 - one) * Dx7PackedOperatorSize;
        operators[one] = SoundingOfSix(bytes.subspan(place, Dx7PackedOperatorSize));
    }
    std::array<float, Dx7OperatorCount> weights;
    WeighOperators(weights, operators, wiring);
    for (std::size_t one = 0; one < Dx7OperatorCount; ++one) {
        WriteOperator(&features[FirstOperator + one * Layouts[SixOperators].featuresOfOperator],
                      operators[one], wiring.carriers >> one & 1, weights[one]);
        tremolo = std::max(tremolo, weights[one] * operators[one].tremolo);
    }
    // A step doubles the index of a modulator by itself; at 7 and full level it is 6.3 radians.
    static constexpr std::array<float, 8> feedbacks = {0,     0.048f, 0.091f, 0.167f,
                                                       0.29f, 0.475f, 0.715f, 1};
    features[FeedbackOfSix] =
        ByteOf(FeedbackWeight * feedbacks[bytes[111] & 7] * weights[wiring.feedback]);
    static constexpr std::array<float, 8> pitchSensitivities = {0, 10, 20, 33, 55, 92, 153, 255};
    features[LfoOfSix] = ByteOf(LfoOf(UpTo(bytes[114], LargestOfSix) / largest *
                                          pitchSensitivities[bytes[116] >> 4 & 7] / 255,
                                      UpTo(bytes[115], LargestOfSix) / largest * tremolo,
                                      UpTo(bytes[112], LargestOfSix) / largest));
    features[PitchEgOfSix] = ByteOf(PitchEgOf(bytes.subspan(106, 4), 50));
    features[TransposeOfSix] = SidedByteOf(TransposeWeight * static_cast<float>(bytes[117] - 24));
    features[RestOfSix] = ByteOf(RestOf(bytes.subspan(102, 8), LargestOfSix) +
                                 RestOf(bytes.subspan(111, 7), LargestOfSix));
    return features;
}

// The larger units of four operators in those of six: the same decibels a step, the same rates over
// more steps.
float LevelOfFour(int level) {
    return static_cast<float>(std::clamp(level - (LargestOfFour - LargestOfSix), 0, LargestOfSix));
}

float PartOfFour(int value) {
    return UpTo(value, LargestOfFour) / LargestOfFour;
}

Sounding SoundingOfFour(std::span<const std::uint8_t> bytes) {
    Sounding sounding;
    sounding.rest = RestOf(bytes, LargestOfFour);
    for (std::size_t step = 0; step < 4; ++step) {
        sounding.rates[step] = PartOfFour(bytes[RefaceOperator::egRate1 + step]) * LargestOfSix;
        sounding.levels[step] = LevelOfFour(bytes[RefaceOperator::egLevel1 + step]);
    }
    sounding.scaling[0] = ScalingOf(bytes[RefaceOperator::kbdLeftDepth],
                                    bytes[RefaceOperator::kbdLeftCurve], LargestOfFour);
    sounding.scaling[1] = ScalingOf(bytes[RefaceOperator::kbdRightDepth],
                                    bytes[RefaceOperator::kbdRightCurve], LargestOfFour);
    sounding.velocity = PartOfFour(bytes[RefaceOperator::levelVelocitySense]);
    sounding.tremolo = PartOfFour(bytes[RefaceOperator::lfoAmdDepth]);
    sounding.level =
        bytes[RefaceOperator::enable] == 0 ? 0 : LevelOfFour(bytes[RefaceOperator::outputLevel]);
    sounding.fixed = bytes[RefaceOperator::frequencyMode] == 1;
    const int coarse = bytes[RefaceOperator::frequencyCoarse] & 31;
    const int fine = bytes[RefaceOperator::frequencyFine];
    // Two steps are as far as one of the others'.
    const float detune =
        static_cast<float>(bytes[RefaceOperator::frequencyDetune] - RefaceDetuneBias) / 2;
    sounding.octaves =
        (sounding.fixed
             ? FixedOctaves(static_cast<float>(coarse >> 3) + UpTo(fine, LargestOfSix) / 100)
             : RatioOctaves(coarse, fine)) +
        detune * DetuneWeight / OctaveWeight;
    return sounding;
}

VoiceFeatures FeaturesOfFour(std::span<const std::uint8_t> bytes) {
    VoiceFeatures features = {};
    const std::span<const std::uint8_t> common = bytes.first(RefaceCommonSize);
    const std::uint8_t algorithm = std::min<std::uint8_t>(common[RefaceVoice::algorithm],
                                                          std::size(FourOperatorAlgorithms) - 1);
    features[FamilyByte] = FourOperators;
    features[AlgorithmByte] = algorithm;
    const Wiring &wiring = AlgorithmsOf(FourOperators).wirings[algorithm];
    std::array<Sounding, RefaceOperatorCount> operators;
    const auto blockOf = [&bytes](std::size_t one) {
        return bytes.subspan(RefaceCommonSize + one * RefaceOperatorSize, RefaceOperatorSize);
    };
    for (std::size_t one = 0; one < RefaceOperatorCount; ++one) {
        operators[one] = SoundingOfFour(blockOf(one));
    }
    std::array<float, RefaceOperatorCount> weights;
    WeighOperators(weights, operators, wiring);
    float tremolo = 0;
    float vibrato = 0;
    for (std::size_t one = 0; one < RefaceOperatorCount; ++one) {
        const std::span<const std::uint8_t> block = blockOf(one);
        std::uint8_t *written =
            &features[FirstOperator + one * Layouts[FourOperators].featuresOfOperator];
        WriteOperator(written, operators[one], wiring.carriers >> one & 1, weights[one]);
        const float feedback =
            FeedbackWeight * weights[one] * PartOfFour(block[RefaceOperator::feedbackLevel]);
        written[Feedback] =
            SidedByteOf(block[RefaceOperator::feedbackType] == 1 ? -feedback : feedback);
        tremolo = std::max(tremolo, weights[one] * operators[one].tremolo);
        vibrato = std::max(vibrato, block[RefaceOperator::lfoPmd] != 0 ? weights[one] : 0);
    }
    features[LfoOfFour] = ByteOf(LfoOf(vibrato * PartOfFour(common[RefaceVoice::lfoModDepth]),
                                       tremolo, PartOfFour(common[RefaceVoice::lfoSpeed])));
    features[PitchEgOfFour] =
        ByteOf(PitchEgOf(common.subspan(RefaceVoice::pitchEgLevel1, 4), RefaceInstrumentZero));
    features[TransposeOfFour] =
        SidedByteOf(TransposeWeight *
                    static_cast<float>(common[RefaceVoice::transpose] - RefaceInstrumentZero));
    for (const std::size_t effect :
         {std::size_t{RefaceVoice::effect1Type}, std::size_t{RefaceVoice::effect2Type}}) {
        const std::size_t kind = common[effect];
        if (kind >= 1 && kind <= EffectKinds) {
            std::uint8_t &amount = features[EffectsOfFour + kind - 1];
            amount = ByteOf(static_cast<float>(amount) + EffectWeight +
                            EffectDepthWeight * PartOfFour(common[effect + 1]));
        }
    }
    features[PortamentoOfFour] =
        ByteOf(PortamentoWeight * PartOfFour(common[RefaceVoice::portamentoTime]));
    features[ModeOfFour] = common[RefaceVoice::partMode] == 0 ? 0 : ByteOf(ModeWeight);
    features[RestOfFour] = ByteOf(RestOf(common.subspan(RefaceVoice::transpose, 4), LargestOfFour) +
                                  RestOf(common.subspan(RefaceVoice::lfoWave, 18), LargestOfFour));
    return features;
}

int SumOfDifferences(const VoiceFeatures &one, const VoiceFeatures &other) {
    int sum = 0;
    for (std::size_t place = 0; place < VoiceFeatureSize; ++place) {
        sum += std::abs(one[place] - other[place]);
    }
    return sum;
}

// Not more than the sum of differences is in any arrangement.
int LeastDifference(const VoiceFeatures &one, const VoiceFeatures &other) {
    const FamilyLayout &layout = Layouts[one[FamilyByte]];
    int sum = 0;
    for (std::size_t feature = 0; feature < layout.featuresOfOperator; ++feature) {
        int difference = 0;
        for (std::size_t operatorPlace = 0; operatorPlace < layout.operators; ++operatorPlace) {
            const std::size_t place =
                FirstOperator + operatorPlace * layout.featuresOfOperator + feature;
            difference += one[place] - other[place];
        }
        sum += std::abs(difference);
    }
    for (std::size_t place = layout.BehindOperators(); place < VoiceFeatureSize; ++place) {
        sum += std::abs(one[place] - other[place]);
    }
    return sum;
}

} // namespace

VoiceFeatures FeaturesOf(const DumpVoice &voice) {
    switch (voice.form) {
    case VoiceForm::Reface:
        return FeaturesOfFour(voice.bytes);
    case VoiceForm::Dx7Packed:
        return FeaturesOfSix(voice.bytes.first<Dx7PackedVoiceSize>());
    default:
        return FeaturesOfSix(PackedBytesOf(voice));
    }
}

VoiceComparison CompareWith(const VoiceFeatures &features) {
    VoiceComparison comparison{features, {}};
    const FamilyLayout &layout = Layouts[features[FamilyByte]];
    const std::size_t size = layout.featuresOfOperator;
    for (const Arrangement &order :
         AlgorithmsOf(features[FamilyByte]).arrangements[features[AlgorithmByte]]) {
        VoiceFeatures arranged = features;
        for (std::size_t place = 0; place < layout.operators; ++place) {
            std::copy_n(&features[FirstOperator + order[place] * size], size,
                        &arranged[FirstOperator + place * size]);
        }
        comparison.arrangements.push_back(arranged);
    }
    // Operators that are alike, as all silent ones, make many of them the same.
    auto &all = comparison.arrangements;
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return comparison;
}

float DistanceWithin(const VoiceComparison &comparison, const VoiceFeatures &other, float limit) {
    const VoiceFeatures &features = comparison.features;
    const std::uint8_t family = features[FamilyByte];
    if (other[FamilyByte] != family) {
        return std::numeric_limits<float>::infinity();
    }
    const FamilyAlgorithms &algorithms = AlgorithmsOf(family);
    const std::size_t algorithm = features[AlgorithmByte];
    const std::size_t otherAlgorithm =
        std::min<std::size_t>(other[AlgorithmByte], algorithms.wirings.size() - 1);
    const int offset = std::abs(features[AlgorithmByte] - other[AlgorithmByte]); // is no quantity
    int distance = SumOfDifferences(features, other) - offset +
                   algorithms.distances[algorithm][otherAlgorithm];
    if (comparison.arrangements.size() > 1 &&
        algorithms.wirings[algorithm] == algorithms.wirings[otherAlgorithm] &&
        static_cast<float>(LeastDifference(features, other)) <= limit) {
        for (const VoiceFeatures &arranged : comparison.arrangements) {
            distance = std::min(distance, SumOfDifferences(arranged, other) - offset);
        }
    }
    return static_cast<float>(distance);
}

float DistanceOf(const VoiceFeatures &one, const VoiceFeatures &other) {
    return DistanceWithin(CompareWith(one), other, std::numeric_limits<float>::infinity());
}

} // namespace tonewright
