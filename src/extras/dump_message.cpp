// Messages, judged by their first bytes, their length and their sums.
#include "extras/dump_message.h"

#include "common/text.h"
#include "drivers/reface_dx/voice_codec.h"
#include "extras/dump_stream.h"
#include "extras/voice_ranges.h"
#include "midi/sysex.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace tonewright {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::uint8_t FirstStatus = 0x80;
constexpr std::uint8_t Yamaha = 0x43;
constexpr std::size_t KindPlace = 2; // upper four bits the kind of message, lower ones the channel
constexpr std::size_t FormatPlace = 3;
constexpr std::size_t CountPlace = 4;
constexpr std::size_t BulkHeader = 6;     // bytes in front of the data
constexpr std::size_t RefaceHeader = 7;   // the same, the model byte being the first of the data
constexpr std::size_t RefaceAddress = 4;  // bytes of model and address
constexpr std::size_t LeastKnown = 5;     // bytes of a request
constexpr std::size_t LeastAmid = 32;     // bytes of a message that is taken amid anything else
constexpr std::size_t LongestChange = 32; // bytes of a parameter change

int ChannelOf(Bytes message) {
    return (message[KindPlace] & 0x0F) + 1;
}

std::size_t CountAt(Bytes message, std::size_t place) {
    return std::size_t{message[place]} << 7 | message[place + 1];
}

// ---- data with a checksum and an end behind them

struct BulkData {
    std::size_t size = 0;   // bytes of data that are there
    std::size_t length = 0; // of the message
    std::uint32_t faults = 0;
};

std::uint32_t ChecksumFault(Bytes data, std::uint8_t sum) {
    const std::uint8_t right = SysexChecksum(data);
    if (sum == right) {
        return 0;
    }
    return sum == (right | 0x80) ? DumpFault::ChecksumBit7 : DumpFault::Checksum;
}

// Whether `size` bytes of data from `start`, a checksum of whatever bits, and the end stand there.
// Bytes that begin or end a message may be data whose bit 7 is wrong, which leaves the sum right;
// but not where a message of an FM instrument begins, or one ends and another begins.
bool IsWholeWithHighBytes(Bytes message, std::size_t start, std::size_t size) {
    const std::size_t end = start + size + 1;
    if (end >= message.size() || message[end] != EndOfSysex) {
        return false;
    }
    bool isSumNeeded = false;
    for (std::size_t at = start; at + 1 < end; ++at) {
        const bool ends = message[at] == EndOfSysex, begins = message[at] == StartOfSysex;
        if ((ends && message[at + 1] == StartOfSysex) || (begins && message[at + 1] == Yamaha)) {
            return false;
        }
        isSumNeeded |= ends || begins;
    }
    return !isSumNeeded ||
           ChecksumFault(message.subspan(start, size), message[end - 1]) != DumpFault::Checksum;
}

// As many bytes more than there should be are taken for a part of the data.
constexpr std::size_t MostExcess = 8;

// The data from `start`, of which there should be `expected` bytes. `plain`: how many bytes below
// 80 there are.
BulkData JudgeBulk(Bytes message, std::size_t start, std::size_t expected, std::size_t plain) {
    const std::size_t end = start + plain; // of the plain bytes
    const bool hasEnd = end < message.size() && message[end] == EndOfSysex;
    if (hasEnd && plain == expected + 1) {
        return {expected, end + 1,
                ChecksumFault(message.subspan(start, expected), message[end - 1])};
    }
    if (plain <= expected && IsWholeWithHighBytes(message, start, expected)) {
        const auto data = message.subspan(start, expected);
        return {expected, start + expected + 2,
                ChecksumFault(data, message[start + expected]) |
                    (plain < expected ? std::uint32_t{DumpFault::HighBytes} : 0)};
    }
    if (hasEnd && plain == expected) { // no checksum at all
        return {expected, end + 1, DumpFault::Checksum};
    }
    if (plain <= expected) {
        // What is left in front of an end may have a checksum of its own.
        const bool hasSum = hasEnd && plain > 0 &&
                            SysexChecksum(message.subspan(start, plain - 1)) == message[end - 1];
        return {plain - hasSum, end + hasEnd,
                DumpFault::Cut | (hasEnd ? 0u : DumpFault::NoEnd) |
                    (plain == expected ? std::uint32_t{DumpFault::Checksum} : 0)};
    }
    if (hasEnd && plain - expected - 1 <= MostExcess) {
        // The sum stands behind the data or in front of the end.
        const std::uint8_t right = SysexChecksum(message.subspan(start, expected));
        const bool isRight = message[start + expected] == right || message[end - 1] == right;
        return {expected, end + 1, DumpFault::TooLong | (isRight ? 0u : DumpFault::Checksum)};
    }
    // All is there and no end where it should be: a byte that is the sum, or the only one left, is
    // taken for it.
    const std::uint32_t fault =
        ChecksumFault(message.subspan(start, expected), message[start + expected]);
    const bool hasSum = fault == 0 || plain == expected + 1;
    return {expected, start + expected + hasSum,
            DumpFault::NoEnd | (hasSum ? fault : std::uint32_t{DumpFault::Checksum})};
}

// ---- the formats

struct BulkFormat {
    std::uint8_t format;
    DumpKind kind;
    std::size_t size; // bytes of data
    std::size_t voices;
    const char *detail;
};
constexpr BulkFormat BulkFormats[] = {
    {0x00, DumpKind::Dx7Voice, 155, 1, ""},
    {0x01, DumpKind::Dx7Function, 94, 0, "of a TX7 voice"},
    {0x02, DumpKind::Dx7Function, 4096, 0, "of 64 TX7 voices"},
    {0x03, DumpKind::FourOperatorVoice, 93, 1, ""},
    {0x04, DumpKind::FourOperatorBank, 4096, 32, ""},
    {0x05, DumpKind::Dx7Supplement, 49, 0, "of a voice"},
    {0x06, DumpKind::Dx7Supplement, 1120, 0, "of a bank"},
    {0x09, DumpKind::Dx7Bank, 4096, 32, ""},
};

constexpr std::uint8_t NamedFormat = 0x7E; // its data begin with what they are
constexpr std::uint8_t ModelFormat = 0x7F; // the reface DX and others of its time
constexpr std::size_t NameOfDataSize = 10;

struct NamedData {
    std::string_view name; // or its start
    DumpKind kind;
    const char *detail;
};
constexpr NamedData NamedDatas[] = {
    {"LM  8973PE", DumpKind::Dx7Performances, "one"},
    {"LM  8973PM", DumpKind::Dx7Performances, ""},
    {"LM  8973S", DumpKind::Dx7System, ""},
    {"LM  8952PE", DumpKind::Dx7Performances, "of a TX802, one"},
    {"LM  8952PM", DumpKind::Dx7Performances, "of a TX802"},
    {"LM  8952S", DumpKind::Dx7System, "of a TX802"},
    {"LM  MCRY", DumpKind::Dx7Function, "microtuning"},
    {"LM  FKSY", DumpKind::Dx7Supplement, "fractional scaling"},
    {"LM  8976AE", DumpKind::FourOperatorOther, "supplement of a voice"},
    {"LM  8023AE", DumpKind::FourOperatorOther, "supplement of a voice"},
    {"LM  8036AE", DumpKind::FourOperatorOther, "supplement of a voice"},
    {"LM  8073AE", DumpKind::FourOperatorOther, "supplement of a voice"},
    {"LM  8976PE", DumpKind::FourOperatorOther, "performance"},
    {"LM  8976PM", DumpKind::FourOperatorOther, "performances"},
    {"LM  8976S", DumpKind::FourOperatorOther, "system set-up"},
    {"LM  8023S", DumpKind::FourOperatorOther, "system set-up"},
    {"LM  8036", DumpKind::FourOperatorOther, "YS data"},
    {"LM  8073", DumpKind::FourOperatorOther, "V50 data"},
    {"LM  MCRT", DumpKind::FourOperatorOther, "microtuning"},
};

DriverId FamilyOfKind(DumpKind kind) {
    switch (kind) {
    case DumpKind::Dx7Bank:
    case DumpKind::Dx7Voice:
    case DumpKind::Dx7Headerless:
    case DumpKind::Dx7HeaderlessVoices:
    case DumpKind::Dx7Function:
    case DumpKind::Dx7Supplement:
    case DumpKind::Dx7Performances:
    case DumpKind::Dx7System:
    case DumpKind::Dx7ParameterChanges:
        return Dx7DriverId;
    case DumpKind::RefaceVoices:
    case DumpKind::RefaceBankFile:
    case DumpKind::RefaceVoiceFile:
    case DumpKind::RefaceOther:
        return RefaceDriverId;
    default:
        return NoDriverId;
    }
}

DumpMessage MessageOf(DumpKind kind, int channel, const char *detail) {
    DumpMessage message;
    message.kind = kind;
    message.family = FamilyOfKind(kind);
    message.channel = channel;
    message.detail = detail;
    return message;
}

// The bytes of data that a single voice should have: 155, or the 156 of our own files.
std::size_t SizeOfSingle(Bytes message, std::size_t plain) {
    constexpr std::size_t single = 155, stored = 156;
    if (plain == stored + 1 || IsWholeWithHighBytes(message, BulkHeader, stored)) {
        return stored;
    }
    // Without an end the sum tells.
    const auto holds = [&](std::size_t size) {
        return SysexChecksum(message.subspan(BulkHeader, size)) == message[BulkHeader + size];
    };
    return plain > stored + 1 && !holds(single) && holds(stored) ? stored : single;
}

// A dump of 32 voices may hold more.
std::size_t SizeOfBank(Bytes message, std::size_t plain, std::size_t bank) {
    const std::size_t end = BulkHeader + plain;
    const bool hasEnd = end < message.size() && message[end] == EndOfSysex;
    return hasEnd && plain > bank + 1 && plain % Dx7PackedVoiceSize == 1 ? plain - 1 : bank;
}

std::optional<DumpMessage> ReadBulk(Bytes bytes, const BulkFormat &format, MessagePlace place) {
    const std::size_t plain = CountDataBytes(bytes.subspan(BulkHeader));
    const std::size_t count = CountAt(bytes, CountPlace);
    std::size_t size = format.size;
    DumpMessage message = MessageOf(format.kind, ChannelOf(bytes), format.detail);
    message.data = BulkHeader;
    if (format.kind == DumpKind::Dx7Voice) {
        size = SizeOfSingle(bytes, plain);
        message.form = size == format.size ? VoiceForm::Dx7Single : VoiceForm::Dx7Stored;
    } else if (format.kind == DumpKind::Dx7Bank) {
        size = SizeOfBank(bytes, plain, format.size);
    }
    const BulkData data = JudgeBulk(bytes, BulkHeader, size, plain);
    message.length = data.length;
    message.faults = data.faults;
    // More voices than a count of 14 bits can say are said to be those of a bank.
    constexpr std::size_t largestCount = 0x3FFF;
    const bool isLonger = format.kind == DumpKind::Dx7Bank && size <= largestCount;
    if (count != (isLonger ? size : format.size)) {
        message.faults |= DumpFault::ByteCount;
    }
    // A bank that says how few voices it has, and has them.
    constexpr std::uint32_t ofShorter = DumpFault::Cut | DumpFault::ByteCount;
    if ((message.faults & ~std::uint32_t{DumpFault::HighBytes}) == ofShorter &&
        count == data.size) {
        message.faults &= ~ofShorter;
    }
    if (format.voices > 0) {
        const std::size_t one = format.voices == 1 ? size : format.size / format.voices;
        (HasVoices(format.kind) ? message.voices : message.otherVoices) = data.size / one;
    }
    // Amid other bytes a header alone may be chance: its count is right, or what follows is.
    constexpr std::uint32_t ofChance = DumpFault::Cut | DumpFault::NoEnd;
    const std::uint32_t chance =
        format.kind == DumpKind::Dx7Bank ? ofChance : ofChance | DumpFault::Checksum;
    if (place == MessagePlace::Amid && count != format.size && (data.faults & chance) != 0) {
        return std::nullopt;
    }
    if (format.kind == DumpKind::Dx7Bank || format.kind == DumpKind::Dx7Voice) {
        if (message.channel != 1) {
            message.faults |= DumpFault::Channel;
        }
        if (!AreInRange(message.form, bytes.subspan(BulkHeader), message.voices)) {
            message.faults |= DumpFault::OutOfRange;
        }
    }
    return message;
}

// Whether data are several blocks, each with a count, a checksum and, as it seems, a name of its
// own: count, the name and what it names, sum.
bool AreBlocks(Bytes blocks) {
    while (!blocks.empty()) {
        constexpr std::size_t others = 3; // count and sum
        const std::size_t count = blocks.size() < others ? 0 : CountAt(blocks, 0);
        if (count < NameOfDataSize || count + others > blocks.size()) {
            return false;
        }
        blocks = blocks.subspan(count + others);
    }
    return true;
}

std::optional<DumpMessage> ReadNamed(Bytes bytes, MessagePlace place) {
    const std::size_t plain = CountDataBytes(bytes.subspan(BulkHeader));
    const std::size_t count = CountAt(bytes, CountPlace);
    if (plain < NameOfDataSize || (place == MessagePlace::Amid && count + 1 != plain)) {
        return std::nullopt;
    }
    const std::string_view name(reinterpret_cast<const char *>(&bytes[BulkHeader]), NameOfDataSize);
    const auto found = std::ranges::find_if(
        NamedDatas, [name](const NamedData &data) { return name.starts_with(data.name); });
    const bool isKnown = found != std::end(NamedDatas);
    DumpMessage message =
        isKnown ? MessageOf(found->kind, ChannelOf(bytes), found->detail)
                : MessageOf(DumpKind::OtherMessage, ChannelOf(bytes), "manufacturer 43");
    const std::size_t end = BulkHeader + plain;
    const bool hasEnd = end < bytes.size() && bytes[end] == EndOfSysex;
    if (hasEnd && plain > count + 1) {
        // Which of the bytes the sums are of is known of one block alone.
        message.length = end + 1;
        if (!AreBlocks(bytes.subspan(CountPlace, plain + BulkHeader - CountPlace))) {
            message.faults = isKnown ? std::uint32_t{DumpFault::ByteCount} : 0;
        }
        return message;
    }
    const BulkData data = JudgeBulk(bytes, BulkHeader, count, plain);
    message.length = data.length;
    // Of what nobody knows here no more is known than where it ends.
    message.faults = isKnown ? data.faults : data.faults & std::uint32_t{DumpFault::NoEnd};
    return message;
}

// ---- the reface DX

constexpr std::uint8_t RefaceGroup = 0x1C;
constexpr std::uint8_t RefaceModel = 0x05;

struct RefaceBlock {
    RefacePart part = RefacePart::None;
    std::size_t size = 0; // bytes of data
};

RefaceBlock RefaceBlockAt(Bytes address) {
    if (address[2] != 0) {
        return {};
    }
    switch (address[0]) {
    case 0x0E:
        return address[1] == 0x0F ? RefaceBlock{RefacePart::Header, 0} : RefaceBlock{};
    case 0x0F:
        return address[1] == 0x0F ? RefaceBlock{RefacePart::Footer, 0} : RefaceBlock{};
    case 0x30:
        return address[1] == 0 ? RefaceBlock{RefacePart::Common, RefaceCommonSize} : RefaceBlock{};
    case 0x31:
        return address[1] < RefaceOperatorCount
                   ? RefaceBlock{RefacePart::Operator, RefaceOperatorSize}
                   : RefaceBlock{};
    default:
        return {};
    }
}

std::optional<DumpMessage> ReadReface(Bytes bytes, MessagePlace place) {
    const std::size_t plain = CountDataBytes(bytes.subspan(RefaceHeader));
    if (plain < RefaceAddress) {
        return std::nullopt;
    }
    const std::size_t count = CountAt(bytes, RefaceHeader - 2);
    const Bytes address = bytes.subspan(RefaceHeader + 1, RefaceAddress - 1);
    const RefaceBlock block = RefaceBlockAt(address);
    DumpMessage message = MessageOf(DumpKind::RefaceOther, ChannelOf(bytes), "settings");
    std::size_t expected = count;
    if (block.part != RefacePart::None) {
        message = MessageOf(DumpKind::RefaceVoices, ChannelOf(bytes), "");
        message.part = block.part;
        message.operatorNumber = address[1];
        message.data = RefaceHeader + RefaceAddress;
        expected = RefaceAddress + block.size;
    }
    const BulkData data = JudgeBulk(bytes, RefaceHeader, expected, plain);
    message.length = data.length;
    message.faults = data.faults;
    if (count != expected) {
        message.faults |= DumpFault::ByteCount;
    }
    if (place == MessagePlace::Amid && message.faults != 0 && block.part == RefacePart::None) {
        return std::nullopt;
    }
    message.isWholePart = data.size == expected;
    return message;
}

bool IsReface(Bytes bytes, std::size_t modelPlace) {
    return bytes.size() > modelPlace + RefaceAddress && bytes[FormatPlace] == ModelFormat &&
           bytes[FormatPlace + 1] == RefaceGroup && bytes[modelPlace] == RefaceModel;
}

// ---- short ones

enum : std::uint8_t { KindBulk = 0x00, KindChange = 0x10, KindRequest = 0x20, KindFb01 = 0x70 };
constexpr std::uint8_t OfFb01 = KindFb01 | 0x05;

// A parameter change or a request; nothing without its end.
std::optional<DumpMessage> ReadShort(Bytes bytes) {
    const std::size_t length = 1 + CountDataBytes(bytes.subspan(1)) + 1;
    if (length > LongestChange || length > bytes.size() || bytes[length - 1] != EndOfSysex) {
        return std::nullopt;
    }
    constexpr std::size_t ModelPlace = 5;
    constexpr std::size_t LeastChange = 7;
    constexpr std::uint8_t FunctionOfTx7 = 0x11;
    const bool isChange = (bytes[KindPlace] & 0xF0) == KindChange;
    const int channel = ChannelOf(bytes);
    DumpMessage message;
    if (IsReface(bytes, ModelPlace)) {
        message =
            MessageOf(DumpKind::RefaceOther, channel, isChange ? "parameter changes" : "requests");
    } else if (!isChange) {
        message = MessageOf(DumpKind::OtherMessage, channel, "requests");
    } else if (length < LeastChange) {
        return std::nullopt;
    } else {
        switch (bytes[FormatPlace] >> 2) { // the group of parameters
        case 0:
        case 2:
        case 6:
            message = MessageOf(DumpKind::Dx7ParameterChanges, channel, "");
            break;
        case 4: // of which the TX7 has one for its functions
            message = bytes[FormatPlace] == FunctionOfTx7
                          ? MessageOf(DumpKind::Dx7ParameterChanges, channel, "")
                          : MessageOf(DumpKind::FourOperatorOther, channel, "parameter changes");
            break;
        default:
            message = MessageOf(DumpKind::OtherMessage, channel, "manufacturer 43");
            break;
        }
    }
    message.length = length;
    return message;
}

// ---- the FB-01

// F0 43 75 0n, then 00 00 and a number for a bank, or 08 and on, 00 00 for the voice of an
// instrument; data of four bits a byte in blocks of a count, data and a sum. Nothing for others.
std::optional<DumpMessage> ReadFb01(Bytes bytes) {
    constexpr std::size_t address = 4, behindAddress = 7;
    constexpr std::size_t nameBlock = 2 + 64 + 1, voiceBlock = 2 + 128 + 1;
    constexpr std::uint8_t firstInstrument = 0x08, behindInstruments = 0x10;
    const std::size_t end = 1 + CountDataBytes(bytes.subspan(1));
    if (end < behindAddress || end >= bytes.size() || bytes[end] != EndOfSysex) {
        return std::nullopt;
    }
    const std::size_t size = end - behindAddress;
    const bool isVoice = bytes[address] >= firstInstrument && bytes[address] < behindInstruments &&
                         size == voiceBlock;
    const bool isBank = bytes[address] == 0 && bytes[address + 1] == 0 && size > nameBlock &&
                        (size - nameBlock) % voiceBlock == 0;
    const DumpKind kind = isVoice  ? DumpKind::FourOperatorVoice
                          : isBank ? DumpKind::FourOperatorBank
                                   : DumpKind::FourOperatorOther;
    DumpMessage message = MessageOf(kind, (bytes[FormatPlace] & 0x0F) + 1, "FB-01");
    message.otherVoices = isVoice ? 1 : isBank ? (size - nameBlock) / voiceBlock : 0;
    message.length = end + 1;
    return message;
}

// ---- any other message

// The number of a maker is not 0; one that begins with 0 has two bytes more.
bool HasMaker(Bytes bytes) {
    return bytes[1] != 0 || (bytes.size() > 3 && (bytes[2] != 0 || bytes[3] != 0));
}

std::string MakerText(Bytes bytes) {
    if (bytes[1] == 0) {
        return FormatText("manufacturer 00 %02X %02X", bytes[2] & 0x7Fu, bytes[3] & 0x7Fu);
    }
    return FormatText("manufacturer %02X", bytes[1]);
}

std::optional<DumpMessage> ReadOther(Bytes bytes, bool isAll, MessagePlace place) {
    const std::size_t plain = CountDataBytes(bytes.subspan(1));
    const std::size_t end = 1 + plain;
    const bool hasEnd = end < bytes.size() && bytes[end] == EndOfSysex;
    const bool goesOn = end == bytes.size() && !isAll;
    const bool isLong = end >= LeastAmid;
    // Amid other bytes it is one where another one follows, or nothing.
    const bool isFollowed = end + 1 < bytes.size() ? bytes[end + 1] == StartOfSysex : isAll;
    if (plain == 0 || !HasMaker(bytes) || (!hasEnd && !isLong) ||
        (place == MessagePlace::Amid && !(hasEnd && isLong && isFollowed))) {
        return std::nullopt;
    }
    DumpMessage message;
    message.detail = MakerText(bytes);
    message.length = end + hasEnd;
    message.goesOn = goesOn;
    if (!hasEnd && !goesOn) {
        message.faults = DumpFault::NoEnd;
    }
    return message;
}

std::optional<DumpMessage> ReadKnown(Bytes bytes, MessagePlace place) {
    if (bytes.size() < LeastKnown || bytes[1] != Yamaha ||
        CountDataBytes(bytes.subspan(1, FormatPlace)) < FormatPlace) {
        return std::nullopt;
    }
    switch (bytes[KindPlace] & 0xF0) {
    case KindBulk:
        break;
    case KindChange:
    case KindRequest:
        return place == MessagePlace::Clean ? ReadShort(bytes) : std::nullopt;
    case KindFb01:
        return bytes[KindPlace] == OfFb01 ? ReadFb01(bytes) : std::nullopt;
    default:
        return std::nullopt;
    }
    if (IsReface(bytes, RefaceHeader)) {
        return ReadReface(bytes, place);
    }
    if (bytes.size() < BulkHeader || CountDataBytes(bytes.subspan(CountPlace, 2)) < 2) {
        return std::nullopt;
    }
    if (bytes[FormatPlace] == NamedFormat) {
        return ReadNamed(bytes, place);
    }
    const auto format = std::ranges::find(BulkFormats, bytes[FormatPlace], &BulkFormat::format);
    return format == std::end(BulkFormats) ? std::nullopt : ReadBulk(bytes, *format, place);
}

// ---- a message with real-time bytes

// The message if it is one, and as it should be, without real-time bytes; `plain` is what it is
// with them, which may have bit 7 set in data.
std::optional<DumpMessage> ReadWithRealTime(Bytes bytes, MessagePlace place,
                                            const std::optional<DumpMessage> &plain) {
    const std::size_t first = 1 + CountDataBytes(bytes.subspan(1));
    if (first >= bytes.size() || !IsRealTime(bytes[first])) {
        return std::nullopt;
    }
    std::vector<std::uint8_t> message(bytes.begin(),
                                      bytes.begin() + static_cast<std::ptrdiff_t>(first));
    std::size_t end = first;
    while (end < bytes.size() && message.back() != EndOfSysex) {
        const std::uint8_t byte = bytes[end++];
        if (!IsRealTime(byte)) {
            if (byte >= FirstStatus && byte != EndOfSysex) {
                return std::nullopt;
            }
            message.push_back(byte);
        }
    }
    auto known = ReadKnown(message, place);
    constexpr std::uint32_t ofOthers =
        DumpFault::Cut | DumpFault::NoEnd | DumpFault::HighBytes | DumpFault::TooLong;
    if (!known || known->length != message.size() || (known->faults & ofOthers) != 0) {
        return std::nullopt;
    }
    constexpr std::uint32_t ofSum = DumpFault::Checksum | DumpFault::ChecksumBit7;
    const bool isPlain = plain && plain->kind == known->kind &&
                         (plain->faults & (DumpFault::Cut | DumpFault::NoEnd)) == 0;
    if (isPlain && ((plain->faults & DumpFault::Checksum) == 0 || (known->faults & ofSum) != 0)) {
        return std::nullopt;
    }
    known->length = end;
    known->faults |= DumpFault::RealTime;
    known->withoutRealTime = std::move(message);
    return known;
}

// ---- a message as an event of a MIDI file has it

// How many bytes of length stand behind F0 of an FM instrument's message that is whole; 0 where
// none do.
std::size_t LengthBytesAt(Bytes bytes) {
    constexpr std::size_t most = 3, goesOn = 0x80;
    std::size_t length = 0;
    for (std::size_t count = 1; count <= most && count + 1 < bytes.size(); ++count) {
        length = length << 7 | (bytes[count] & 0x7Fu);
        if (bytes[count] < goesOn) {
            const bool isWhole = count + length < bytes.size() && length > LeastKnown;
            return isWhole && bytes[count + 1] == Yamaha && bytes[count + length] == EndOfSysex
                       ? count
                       : 0;
        }
    }
    return 0;
}

std::optional<DumpMessage> ReadEvent(Bytes bytes) {
    const std::size_t lengthBytes = LengthBytesAt(bytes);
    if (lengthBytes == 0) {
        return std::nullopt;
    }
    // The last of them stands where F0 does, which nobody looks at.
    auto message = ReadKnown(bytes.subspan(lengthBytes), MessagePlace::Amid);
    if (message) {
        message->length += lengthBytes;
        message->data += lengthBytes;
        message->faults |= DumpFault::InMidiFile;
    }
    return message;
}

} // namespace

std::size_t CountDataBytes(std::span<const std::uint8_t> bytes) {
    constexpr std::uint64_t highBits = 0x8080808080808080;
    std::size_t at = 0;
    for (std::uint64_t word; at + sizeof word <= bytes.size(); at += sizeof word) {
        std::memcpy(&word, &bytes[at], sizeof word);
        if (word & highBits) {
            break;
        }
    }
    while (at < bytes.size() && bytes[at] < FirstStatus) {
        ++at;
    }
    return at;
}

std::optional<DumpMessage> MessageAt(std::span<const std::uint8_t> bytes, bool isAll,
                                     MessagePlace place) {
    if (bytes.size() > DumpLookAhead) {
        bytes = bytes.first(DumpLookAhead);
        isAll = false;
    }
    const bool isOurs = bytes.size() > 1 && bytes[1] == Yamaha;
    auto known = ReadKnown(bytes, place);
    if (isOurs && (!known || known->faults != 0)) {
        if (auto message = ReadWithRealTime(bytes, place, known)) {
            return message;
        }
    }
    if (known) {
        return known;
    }
    if (auto event = ReadEvent(bytes)) {
        return event;
    }
    return bytes.size() > 1 ? ReadOther(bytes, isAll, place) : std::nullopt;
}

} // namespace tonewright
