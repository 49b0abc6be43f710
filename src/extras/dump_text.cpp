// What was found, in words.
#include "extras/dump_reader.h"

#include "common/text.h"

namespace tonewright {
namespace {

const char *NameOfKind(const FoundDump &dump) {
    switch (dump.kind) {
    case DumpKind::Dx7Bank:
        return "DX7 bank";
    case DumpKind::Dx7Voice:
        return "DX7 voice";
    case DumpKind::Dx7Headerless:
        return "DX7 bank without its header";
    case DumpKind::Dx7HeaderlessVoices:
        return "DX7 voices without their headers";
    case DumpKind::RefaceVoices:
        return dump.voices == 1 ? "reface DX voice" : "reface DX voices";
    case DumpKind::RefaceBankFile:
        return "reface DX bank";
    case DumpKind::RefaceVoiceFile:
        return "reface DX single-voice file";
    case DumpKind::Catalogue:
        return "catalogue";
    case DumpKind::Dx7Function:
        return "DX7 function data";
    case DumpKind::Dx7Supplement:
        return "DX7II supplement";
    case DumpKind::Dx7Performances:
        return "DX7II performances";
    case DumpKind::Dx7System:
        return "DX7II set-up";
    case DumpKind::Dx7ParameterChanges:
        return "DX7 parameter changes";
    case DumpKind::FourOperatorBank:
        return "four-operator bank";
    case DumpKind::FourOperatorVoice:
        return "four-operator voice";
    case DumpKind::FourOperatorOther:
        return "four-operator data";
    case DumpKind::RefaceOther:
        return "reface DX data";
    case DumpKind::OtherMessage:
        return "other message";
    case DumpKind::Unknown:
        break;
    }
    return "unknown data";
}

struct FaultText {
    std::uint32_t fault;
    const char *text;
};
constexpr FaultText FaultTexts[] = {
    {DumpFault::Channel, "for channel %d"},
    {DumpFault::Checksum, "wrong checksum"},
    {DumpFault::ChecksumBit7, "bit 7 set in the checksum"},
    {DumpFault::ByteCount, "wrong byte count"},
    {DumpFault::NoEnd, "no end byte"},
    {DumpFault::Cut, "cut short"},
    {DumpFault::TooLong, "more bytes than its data have"},
    {DumpFault::RealTime, "real-time bytes within"},
    {DumpFault::HighBytes, "bytes above 7F"},
    {DumpFault::NoHeader, "no header"},
    {DumpFault::OutOfRange, "values out of range"},
    {DumpFault::MissingBlocks, "parts of a voice missing"},
    {DumpFault::InMidiFile, "in a MIDI file"},
    {DumpFault::InHexText, "written in hexadecimal"},
};

} // namespace

std::string TextOfDump(const FoundDump &dump) {
    std::string text = NameOfKind(dump);
    const bool isCounted = HasVoices(dump.kind) || dump.kind == DumpKind::FourOperatorBank;
    const bool isPlainVoice = dump.voices == 1 && (dump.kind == DumpKind::Dx7Voice ||
                                                   dump.kind == DumpKind::RefaceVoices ||
                                                   dump.kind == DumpKind::RefaceVoiceFile);
    if (isCounted && !isPlainVoice) {
        const std::uint64_t voices = dump.voices + dump.otherVoices;
        text += FormatText(", %llu voice%s", static_cast<unsigned long long>(voices),
                           voices == 1 ? "" : "s");
    }
    if (!dump.detail.empty()) {
        text += ": " + dump.detail;
    }
    return text;
}

std::string TextOfFaults(const FoundDump &dump) {
    std::string text;
    for (const auto &[fault, words] : FaultTexts) {
        if (dump.faults & fault) {
            text += text.empty() ? "" : ", ";
            text += fault == DumpFault::Channel ? FormatText(words, dump.channel) : words;
        }
    }
    return text;
}

} // namespace tonewright
