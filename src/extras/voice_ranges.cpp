// Ranges of the parameters of voices.
#include "extras/voice_ranges.h"

#include "drivers/reface_dx/voice_codec.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace tonewright {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::uint8_t LargestOfName = 0x7E, LeastOfName = 0x20;
constexpr std::uint8_t Any = 0xFF;
constexpr std::size_t PackedSize = Dx7PackedVoiceSize;
constexpr std::size_t SingleSize = Dx7Voice::operatorEnable;

// The limits of six operators, and behind them those of the voice, whose name fills the rest.
template <std::size_t Size, std::size_t OperatorSize, std::size_t CommonSize>
constexpr std::array<std::uint8_t, Size>
Dx7Limits(const std::array<std::uint8_t, OperatorSize> &block,
          const std::array<std::uint8_t, CommonSize> &common) {
    static_assert(Dx7OperatorCount * OperatorSize + CommonSize + Dx7NameSize == Size);
    std::array<std::uint8_t, Size> limits{};
    auto to = limits.begin();
    for (std::size_t n = 0; n < Dx7OperatorCount; ++n) {
        to = std::ranges::copy(block, to).out;
    }
    to = std::ranges::copy(common, to).out;
    std::fill(to, limits.end(), LargestOfName);
    return limits;
}

// The largest value of each byte of a packed voice, of which bits that no parameter has are 0.
constexpr auto PackedLimits =
    Dx7Limits<PackedSize>(std::to_array<std::uint8_t>({99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
                                                       0x0F, 0x77, 0x1F, 99, 0x3F, 99}),
                          std::to_array<std::uint8_t>({99, 99, 99, 99, 99, 99, 99, 99, 31, 0x0F, 99,
                                                       99, 99, 99, 0x7B, 48}));

// The same of a voice of a single-voice dump.
constexpr auto SingleLimits =
    Dx7Limits<SingleSize>(std::to_array<std::uint8_t>({99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
                                                       3,  3,  7,  3,  7,  99, 1,  31, 99, 14}),
                          std::to_array<std::uint8_t>({99, 99, 99, 99, 99, 99, 99, 99, 31, 7, 1, 99,
                                                       99, 99, 99, 1, 5, 7, 48}));

constexpr std::array<std::uint8_t, 150> RefaceLimits = [] {
    // Transpose and pitch bend, to 24 semitones up and down: our files count from 40, the
    // instrument from 64, so that either's largest and least value may stand there.
    constexpr std::uint8_t bend = RefaceInstrumentZero + 24;
    constexpr std::array<std::uint8_t, RefaceCommonSize> common = {
        Any,  Any, Any, Any,  Any, Any, Any, Any, Any, Any, Any, Any, // name and what is reserved
        bend, 2,   127, bend, 11,  6,   127, 127, 127, 127, 127, 127, 127,
        127,  127, 127, 127,  7,   127, 127, 7,   127, 127, Any, Any, Any};
    constexpr std::array<std::uint8_t, RefaceOperatorSize> block = {
        1,   127, 127, 127, 127, 127, 127, 127, 127, 127, 127, 127, 3,   3,
        127, 1,   1,   127, 127, 127, 1,   1,   31,  99,  127, Any, Any, Any};
    std::array<std::uint8_t, 150> limits{};
    auto to = std::ranges::copy(common, limits.begin()).out;
    for (std::size_t n = 0; n < RefaceOperatorCount; ++n) {
        to = std::ranges::copy(block, to).out;
    }
    return limits;
}();

// ---- in a message: bits that no parameter has do not count

constexpr std::size_t PackedName = PackedSize - Dx7NameSize;
constexpr std::size_t PackedAlgorithm = 110;
constexpr std::size_t PackedFeedback = 111;
constexpr std::size_t PackedWave = 116;

// The bits of each byte of a packed voice that are compared with its limit.
constexpr std::array<std::uint8_t, PackedSize> PackedBits = [] {
    std::array<std::uint8_t, PackedSize> bits{};
    bits.fill(0xFF);
    for (std::size_t n = 0; n < Dx7OperatorCount; ++n) {
        const std::size_t block = n * Dx7PackedOperatorSize;
        bits[block + 11] = 0x0F;
        bits[block + 12] = 0x78; // the detune alone, which has no 15
        bits[block + 13] = 0x1F;
        bits[block + 15] = 0x3F;
    }
    bits[PackedAlgorithm] = 0x1F;
    bits[PackedFeedback] = 0x0F;
    bits[PackedWave] = 0x0E; // the wave alone, which has no 6 and 7
    std::fill(bits.begin() + PackedName, bits.end(), std::uint8_t{0});
    return bits;
}();

template <std::size_t Size>
unsigned CountBeyond(Bytes voice, const std::array<std::uint8_t, Size> &limits) {
    unsigned beyond = 0;
    for (std::size_t place = 0; place < Size; ++place) {
        beyond += voice[place] > limits[place];
    }
    return beyond;
}

bool IsPackedInRange(Bytes voice) {
    unsigned beyond = 0;
    for (std::size_t place = 0; place < PackedSize; ++place) {
        const std::uint8_t bits = PackedBits[place];
        beyond |= (voice[place] & bits) > (PackedLimits[place] & bits);
    }
    return beyond == 0;
}

bool IsRefaceInRange(Bytes voice) {
    constexpr std::uint8_t leastBend = RefaceTransposeBias - 24;
    return CountBeyond(voice, RefaceLimits) == 0 && voice[RefaceVoice::transpose] >= leastBend &&
           voice[RefaceVoice::pitchBend] >= leastBend;
}

bool IsInRange(VoiceForm form, Bytes voice) {
    constexpr std::uint8_t allOperators = (1 << Dx7OperatorCount) - 1;
    switch (form) {
    case VoiceForm::Dx7Packed:
        return IsPackedInRange(voice);
    case VoiceForm::Reface:
        return IsRefaceInRange(voice);
    case VoiceForm::Dx7Stored:
        if (voice[Dx7Voice::operatorEnable] > allOperators) {
            return false;
        }
        [[fallthrough]];
    case VoiceForm::Dx7Single:
        break;
    }
    unsigned beyond = 0;
    for (std::size_t place = 0; place < Dx7Voice::name; ++place) {
        beyond |= voice[place] > SingleLimits[place];
    }
    return beyond == 0;
}

// ---- without a message

enum class Likeness {
    Whole, // a voice with a name
    Fair,  // the same with a few bytes that no voice has
    Empty, // bytes of zero, as banks have where there is no voice
    None,
};

// Fewer than there are operators: voices that seem to begin a few bytes beside their place have
// such a byte in each.
constexpr unsigned FewBytes = 5;

template <std::size_t Size>
Likeness LikenessOf(Bytes voice, const std::array<std::uint8_t, Size> &limits) {
    unsigned beyond = CountBeyond(voice, limits);
    for (const std::uint8_t letter : voice.subspan(Size - Dx7NameSize)) {
        beyond += letter < LeastOfName;
    }
    if (beyond == 0) {
        return Likeness::Whole;
    }
    if (beyond <= FewBytes) {
        return Likeness::Fair;
    }
    return std::ranges::all_of(voice, [](std::uint8_t byte) { return byte == 0; }) ? Likeness::Empty
                                                                                   : Likeness::None;
}

bool IsAlike(Likeness likeness) {
    return likeness == Likeness::Whole || likeness == Likeness::Fair;
}

// Some of the pieces of the size of a voice into which bytes are cut, from one up to another.
struct Stretch {
    std::size_t from = 0, to = 0;
    std::size_t Size() const { return to - from; }
};

struct Tally {
    std::size_t whole = 0, fair = 0, empty = 0, none = 0;

    std::size_t Alike() const { return whole + fair; }
    std::size_t All() const { return Alike() + empty + none; }
};

using Pieces = std::vector<Likeness>;

Tally TallyOf(const Pieces &pieces, const Stretch &stretch) {
    Tally tally;
    for (std::size_t at = stretch.from; at < stretch.to; ++at) {
        switch (pieces[at]) {
        case Likeness::Whole:
            ++tally.whole;
            break;
        case Likeness::Fair:
            ++tally.fair;
            break;
        case Likeness::Empty:
            ++tally.empty;
            break;
        case Likeness::None:
            ++tally.none;
            break;
        }
    }
    return tally;
}

constexpr std::size_t Several = 4; // voices that need no end where they should have it

bool AreVoices(const Tally &tally) {
    return tally.Alike() > 0 && 4 * tally.Alike() >= tally.All() && 8 * tally.none <= tally.All() &&
           (tally.Alike() >= Several || tally.fair == 0);
}

int ConfidenceOf(const Tally &tally) {
    constexpr std::size_t most = 99, ofFair = 75, ofEmpty = 50;
    const std::size_t sum = tally.whole * most + tally.fair * ofFair + tally.empty * ofEmpty;
    const int confidence = static_cast<int>(sum / tally.All());
    constexpr int ofFew = 90;
    return tally.All() < Several ? std::min(confidence, ofFew) : confidence;
}

// Whether zeros alone, of which banks have some where there is no voice, make the stretch as long
// as it is around that one.
bool HasEmptyEnds(const Pieces &pieces, const Stretch &stretch, const Stretch &core) {
    const auto isEmpty = [&pieces](std::size_t from, std::size_t to) {
        return std::all_of(pieces.begin() + static_cast<std::ptrdiff_t>(from),
                           pieces.begin() + static_cast<std::ptrdiff_t>(to),
                           [](Likeness likeness) { return likeness == Likeness::Empty; });
    };
    return isEmpty(stretch.from, core.from) && isEmpty(core.to, stretch.to);
}

// Whole banks around the pieces from the first voice to the last one: all of the pieces, whatever
// stands at their ends, or with zeros alone there, beginning with a voice rather than with zeros.
// Nothing where there are none.
std::optional<Stretch> BanksAround(const Pieces &pieces, const Stretch &core, bool isExact) {
    const std::size_t size =
        (core.Size() + Dx7VoicesPerBank - 1) / Dx7VoicesPerBank * Dx7VoicesPerBank;
    if (size > pieces.size()) {
        return std::nullopt;
    }
    if (isExact && size == pieces.size() && AreVoices(TallyOf(pieces, {0, size}))) {
        return Stretch{0, size};
    }
    const std::size_t first = core.to > size ? core.to - size : 0;
    for (std::size_t from = std::min(core.from, pieces.size() - size) + 1; from-- > first;) {
        const Stretch banks = {from, from + size};
        if (HasEmptyEnds(pieces, banks, core) && AreVoices(TallyOf(pieces, banks))) {
            return banks;
        }
    }
    return std::nullopt;
}

template <std::size_t Size>
std::optional<HeaderlessVoices> Judge(Bytes bytes, bool isAll, VoiceForm form,
                                      const std::array<std::uint8_t, Size> &limits) {
    constexpr std::size_t gap = 3; // pieces that are no voices behind which no more is looked for
    const bool isExact = isAll && bytes.size() % Size == 0;
    Pieces pieces;
    std::optional<Stretch> core; // from the first voice to the last one
    for (std::size_t at = 0; at + Size <= bytes.size(); at += Size) {
        const Likeness likeness = LikenessOf(bytes.subspan(at, Size), limits);
        const std::size_t others = core ? pieces.size() - core->to : 0;
        if (!isExact && others >= gap &&
            (likeness != Likeness::Empty || others >= Dx7VoicesPerBank)) {
            break;
        }
        pieces.push_back(likeness);
        if (IsAlike(likeness)) {
            core = {core ? core->from : pieces.size() - 1, pieces.size()};
        }
    }
    if (!core) {
        return std::nullopt;
    }
    std::optional<Stretch> found = BanksAround(pieces, *core, isExact);
    if (!found && AreVoices(TallyOf(pieces, *core)) &&
        (core->Size() >= Several || (isExact && AreVoices(TallyOf(pieces, {0, pieces.size()}))))) {
        found = core;
    }
    if (!found) {
        return std::nullopt;
    }
    const std::size_t start = found->from * Size;
    return HeaderlessVoices{.form = form,
                            .start = start,
                            .voices = found->Size(),
                            .confidence = ConfidenceOf(TallyOf(pieces, *found)),
                            .inRange = AreInRange(form, bytes.subspan(start), found->Size())};
}

// Most bytes are seen to be no voice by few of them.
constexpr std::size_t TellingBytes[] = {
    11, 13, PackedName, PackedFeedback, 17 + 11, PackedSize - 1};

} // namespace

bool AreInRange(VoiceForm form, std::span<const std::uint8_t> bytes, std::size_t voices) {
    const std::size_t size = SizeOfForm(form);
    for (std::size_t at = 0; at < voices * size; at += size) {
        if (!IsInRange(form, bytes.subspan(at, size))) {
            return false;
        }
    }
    return true;
}

std::size_t FindHeaderless(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t farthest = 256;
    const auto isWhole = [bytes](std::size_t at) {
        for (const std::size_t place : TellingBytes) {
            const std::uint8_t byte = bytes[at + place];
            if (byte > PackedLimits[place] || (place >= PackedName && byte < LeastOfName)) {
                return false;
            }
        }
        return LikenessOf(bytes.subspan(at, PackedSize), PackedLimits) == Likeness::Whole;
    };
    for (std::size_t at = 1; at < farthest && at + Several * PackedSize <= bytes.size(); ++at) {
        std::size_t whole = 0;
        while (whole < Several && isWhole(at + whole * PackedSize)) {
            ++whole;
        }
        if (whole == Several) {
            return at;
        }
    }
    return 0;
}

HeaderlessVoices JudgeHeaderless(std::span<const std::uint8_t> bytes, bool isAll) {
    if (const auto packed = Judge(bytes, isAll, VoiceForm::Dx7Packed, PackedLimits)) {
        return *packed;
    }
    return Judge(bytes, isAll, VoiceForm::Dx7Single, SingleLimits).value_or(HeaderlessVoices{});
}

} // namespace tonewright
