// Any bytes as a file in which dumps are looked for: what is told lies within the file, in its
// order and without a gap where nothing else holds the bytes, and every voice can be looked at.
#include "extras/dump_reader.h"
#include "extras/voice_identity.h"
#include "support/fuzz_support.h"

using namespace tonewright;

namespace {

void LookAtVoice(const DumpVoice &voice) {
    Demand(voice.bytes.size() == SizeOfForm(voice.form), "a voice has the bytes of its form");
    Demand(NameOfVoice(voice).size() <= 10, "a name has ten letters at most");
    Demand(AlgorithmOfVoice(voice) > 0, "algorithms count from 1");
    Demand(HighBytesOf(voice) <= voice.bytes.size(), "there are no more bytes than these");
    const VoiceObject block = VoiceObjectOf(voice);
    Demand(PayloadOf(block) && HeaderOf(block)->driverId == FamilyOfForm(voice.form),
           "a voice becomes a block of its family");
    const KeptVoice kept = KeepVoice(voice);
    Demand(IdentityOf(kept.Voice()) == IdentityOf(voice), "a copy is the same voice");
    if (voice.form != VoiceForm::Reface) {
        const auto packed = PackedBytesOf(voice);
        Demand(IdentityOf({VoiceForm::Dx7Packed, packed}) == IdentityOf(voice),
               "a voice is the same in a bank");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    constexpr std::uint32_t inOtherForm = DumpFault::InMidiFile | DumpFault::InHexText;
    std::uint64_t voices = 0, ofDumps = 0, end = 0;
    bool isPlain = true;
    DumpVisitor visitor;
    visitor.voice = [&](const FoundVoice &found) {
        Demand(found.place == voices++, "voices are counted");
        Demand(found.offset < size, "a voice begins within the file");
        LookAtVoice(found.voice);
        return true;
    };
    visitor.dump = [&](const FoundDump &dump) {
        isPlain &= (dump.faults & inOtherForm) == 0;
        // In a text several may stand in one line that "*" stands for.
        const std::uint64_t shared = dump.faults & DumpFault::InHexText ? 2 : 0;
        Demand(dump.length > 0 && dump.offset + shared >= end && dump.offset + dump.length <= size,
               "dumps lie within the file, in their order");
        Demand(!isPlain || dump.offset == end || dump.kind != DumpKind::Unknown,
               "nothing is left out in front of what is unknown");
        end = dump.offset + dump.length;
        ofDumps += HasVoices(dump.kind) ? dump.voices : 0;
        Demand(ofDumps == voices, "the voices of a dump come before it");
        Demand(dump.channel >= 0 && dump.channel <= 16, "there are 16 channels");
        Demand(dump.confidence > 0 && dump.confidence <= 100, "there are 100 per cent");
        Demand(!TextOfDump(dump).empty(), "whatever is found has words");
        Demand(TextOfFaults(dump).empty() == (dump.faults == 0), "so has what is wrong");
        return true;
    };
    Demand(ReadDumps({data, size}, visitor) == DumpRead::Done, "memory can be read");
    return 0;
}
