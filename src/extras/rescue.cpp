// Composes documents of the voices of a file, bank after bank as they are found.
#include "extras/rescue.h"

#include "core/dispatch.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "extras/document_bytes.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace tonewright {
namespace {

// A voice that waits for its document.
struct WaitingVoice {
    KeptVoice voice;
    std::uint64_t place = 0; // in the file
    std::size_t dump = 0;    // of the dumps with voices
};
using Voices = std::span<const WaitingVoice>;

// ---- what becomes of the dumps

// How the voices of a kind become documents.
enum class Way {
    Bank,    // each dump is a bank, filled up
    Run,     // a bank for each 32, the last one filled up; one voice alone is a single voice
    Singles, // a bank for each whole 32, single voices else
};

Way WayOf(DumpKind kind, const KeptVoice &voice) {
    switch (kind) {
    case DumpKind::Dx7Bank:
    case DumpKind::RefaceBankFile:
        return Way::Bank;
    default:
        return voice.form == VoiceForm::Reface || voice.form == VoiceForm::Dx7Packed ? Way::Run
                                                                                     : Way::Singles;
    }
}

// Whether voices of this dump go on where those of the one before end: dumps of single voices do,
// one behind the other.
bool GoesOn(DumpKind former, DumpKind next) {
    return former == next && (next == DumpKind::Dx7Voice || next == DumpKind::RefaceVoices);
}

constexpr std::size_t BankVoices = 32;
static_assert(BankVoices == Dx7VoicesPerBank && BankVoices == RefaceVoicesPerBank);

struct Rescue {
    const RescueVisitor &visit;
    std::vector<FoundDump> dumps = {};      // those with voices
    std::size_t dump = 0;                   // of these, the one that is being read
    std::vector<WaitingVoice> waiting = {}; // of one run, at most a bank
    bool isFirst = true;                    // no document of the run has been made yet
    bool isWanted = true;
};

// Makes the document of some of the voices that wait.
void MakeDocument(Rescue &rescue, Voices voices, bool asBank) {
    if (!rescue.isWanted) {
        return;
    }
    const WaitingVoice &first = voices.front();
    const DriverId family = FamilyOfForm(first.voice.form);
    const SynthDriver *driver = DriverOfId(family);
    RescuedDocument document = {.dump = rescue.dumps[first.dump],
                                .family = family,
                                .extension =
                                    asBank ? driver->bankExtension : driver->voiceExtension,
                                .firstPlace = first.place,
                                .voices = static_cast<int>(voices.size()),
                                .highByteVoices = 0,
                                .bytes = {}};
    for (const WaitingVoice &waiting : voices) {
        document.highByteVoices += HighBytesOf(waiting.voice.Voice()) != 0;
    }
    std::vector<KeptVoice> kept;
    for (const WaitingVoice &waiting : voices) {
        kept.push_back(waiting.voice);
    }
    document.bytes = asBank ? BankBytesOf(kept) : VoiceFileBytesOf(kept.front());
    rescue.isFirst = false;
    rescue.isWanted = rescue.visit(document);
}

void MakeSingles(Rescue &rescue) {
    for (const WaitingVoice &voice : rescue.waiting) {
        MakeDocument(rescue, {&voice, 1}, false);
    }
}

DumpKind KindOf(const Rescue &rescue, const WaitingVoice &voice) {
    return rescue.dumps[voice.dump].kind;
}

Way WayOfWaiting(const Rescue &rescue) {
    const WaitingVoice &first = rescue.waiting.front();
    return WayOf(KindOf(rescue, first), first.voice);
}

// As many wait as a bank has.
void MakeWholeBank(Rescue &rescue) {
    if (WayOfWaiting(rescue) == Way::Singles &&
        std::ranges::any_of(rescue.waiting, LosesLevelInBank, &WaitingVoice::voice)) {
        MakeSingles(rescue);
    } else {
        MakeDocument(rescue, rescue.waiting, true);
    }
    rescue.waiting.clear();
}

void EndRun(Rescue &rescue) {
    if (!rescue.waiting.empty()) {
        const Way way = WayOfWaiting(rescue);
        if (way == Way::Singles) {
            MakeSingles(rescue);
        } else {
            const bool isAlone = rescue.isFirst && rescue.waiting.size() == 1;
            MakeDocument(rescue, rescue.waiting, way == Way::Bank || !isAlone);
        }
    }
    rescue.waiting.clear();
    rescue.isFirst = true;
}

bool TakeVoice(Rescue &rescue, const FoundVoice &found) {
    if (rescue.dump < rescue.dumps.size()) { // else the file has grown meanwhile
        rescue.waiting.push_back(
            {.voice = KeepVoice(found.voice), .place = found.place, .dump = rescue.dump});
    }
    if (rescue.waiting.size() == BankVoices) {
        MakeWholeBank(rescue);
    }
    return rescue.isWanted;
}

bool EndDump(Rescue &rescue, const FoundDump &dump) {
    if (dump.voices != 0 && rescue.dump < rescue.dumps.size()) {
        ++rescue.dump;
        const bool isLast = rescue.dump == rescue.dumps.size();
        if (isLast || !GoesOn(dump.kind, rescue.dumps[rescue.dump].kind)) {
            EndRun(rescue);
        }
    }
    return rescue.isWanted;
}

} // namespace

bool IsSoundDump(const FoundDump &dump) {
    constexpr std::uint32_t nothingWrong = DumpFault::InMidiFile | DumpFault::InHexText;
    return dump.kind != DumpKind::Unknown && (dump.faults & ~nothingWrong) == 0;
}

std::string RemarksOfDump(const FoundDump &dump) {
    std::string text = TextOfFaults(dump);
    if (dump.confidence < 100) {
        text += (text.empty() ? "" : ", ") + std::to_string(dump.confidence) + "% sure";
    }
    return text;
}

DumpRead RescueDocuments(const char *path, const RescueVisitor &visit) {
    Rescue rescue{.visit = visit};
    // First what there is, then the voices, of which a bank at most is in memory at one time.
    DumpVisitor looks;
    looks.dump = [&rescue](const FoundDump &dump) {
        if (dump.voices != 0) {
            rescue.dumps.push_back(dump);
        }
        return true;
    };
    const DumpRead look = ReadDumps(path, looks);
    if (rescue.dumps.empty()) {
        return look; // else what stands in front of a place that cannot be read is whole
    }
    const DumpRead read = ReadDumps(
        path, {.voice = [&rescue](const FoundVoice &voice) { return TakeVoice(rescue, voice); },
               .dump = [&rescue](const FoundDump &dump) { return EndDump(rescue, dump); },
               .bytes = {}});
    const int reason = errno;
    EndRun(rescue); // of a file that has become shorter meanwhile
    errno = reason;
    return read;
}

} // namespace tonewright
