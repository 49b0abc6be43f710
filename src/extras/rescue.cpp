// Composes documents of the voices of a file, bank after bank as they are found.
#include "extras/rescue.h"

#include "core/dispatch.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "extras/document_bytes.h"

#include <algorithm>
#include <cerrno>
#include <deque>
#include <utility>

namespace tonewright {
namespace {

// A voice that waits for its document.
struct WaitingVoice {
    KeptVoice voice;
    std::uint64_t place = 0;  // among the voices of the file
    std::uint64_t offset = 0; // in the file
    std::uint64_t dump = 0;   // of the dumps with voices
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

// Voices that wait for their dump to be told; of a dump with more, documents are made before.
constexpr std::size_t MostUntold = 32 * 1024;
static_assert(MostUntold % BankVoices == 0);

struct Rescue {
    const RescueVisitor &visit;
    std::vector<WaitingVoice> untold = {}; // of the dump that is being read
    std::uint64_t told = 0;                // of this dump, voices that no longer wait for it
    // One run: its dumps as far as voices wait, and the voices, at most a bank.
    std::deque<FoundDump> dumps = {};
    std::uint64_t firstDump = 0; // number of the first of `dumps`
    std::vector<WaitingVoice> waiting = {};
    bool isFirst = true; // no document of the run has been made yet
    bool isWanted = true;
};

const FoundDump &DumpOf(const Rescue &rescue, const WaitingVoice &voice) {
    return rescue.dumps[static_cast<std::size_t>(voice.dump - rescue.firstDump)];
}

// Makes the document of some of the voices that wait.
void MakeDocument(Rescue &rescue, Voices voices, bool asBank) {
    if (!rescue.isWanted) {
        return;
    }
    const WaitingVoice &first = voices.front();
    const DriverId family = FamilyOfForm(first.voice.form);
    const SynthDriver *driver = DriverOfId(family);
    RescuedDocument document = {.dump = DumpOf(rescue, first),
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

Way WayOfWaiting(const Rescue &rescue) {
    const WaitingVoice &first = rescue.waiting.front();
    return WayOf(DumpOf(rescue, first).kind, first.voice);
}

// Nothing waits any more; the last dump alone may go on.
void ForgetWaiting(Rescue &rescue) {
    rescue.waiting.clear();
    while (rescue.dumps.size() > 1) {
        rescue.dumps.pop_front();
        ++rescue.firstDump;
    }
}

// As many wait as a bank has.
void MakeWholeBank(Rescue &rescue) {
    if (WayOfWaiting(rescue) == Way::Singles &&
        std::ranges::any_of(rescue.waiting, LosesLevelInBank, &WaitingVoice::voice)) {
        MakeSingles(rescue);
    } else {
        MakeDocument(rescue, rescue.waiting, true);
    }
    ForgetWaiting(rescue);
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
    ForgetWaiting(rescue);
    rescue.isFirst = true;
}

// The voices that wait for their dump go into its run.
void TakeUntold(Rescue &rescue) {
    const std::uint64_t dump = rescue.firstDump + rescue.dumps.size() - 1;
    for (WaitingVoice &voice : rescue.untold) {
        // A bank's voices are of one form, whatever the file says.
        if (!rescue.waiting.empty() &&
            FamilyOfForm(rescue.waiting.back().voice.form) != FamilyOfForm(voice.voice.form)) {
            EndRun(rescue);
        }
        voice.dump = dump;
        rescue.waiting.push_back(std::move(voice));
        if (rescue.waiting.size() == BankVoices) {
            MakeWholeBank(rescue);
        }
    }
    rescue.untold.clear();
}

void BeginRun(Rescue &rescue, const FoundDump &dump) {
    if (!rescue.dumps.empty() && !GoesOn(rescue.dumps.back().kind, dump.kind)) {
        EndRun(rescue);
    }
    rescue.dumps.push_back(dump);
}

// What is known of a dump before it is told.
FoundDump UntoldDump(const Rescue &rescue) {
    const WaitingVoice &first = rescue.untold.front();
    constexpr DumpKind kinds[] = {DumpKind::Dx7Headerless, DumpKind::Dx7HeaderlessVoices,
                                  DumpKind::Catalogue, DumpKind::RefaceVoices};
    return {.kind = kinds[static_cast<std::size_t>(first.voice.form)],
            .offset = first.offset,
            .family = FamilyOfForm(first.voice.form),
            .voices = rescue.told + rescue.untold.size(),
            .detail = "the rest not read yet"};
}

bool TakeVoice(Rescue &rescue, const FoundVoice &found) {
    rescue.untold.push_back(
        {.voice = KeepVoice(found.voice), .place = found.place, .offset = found.offset, .dump = 0});
    if (rescue.untold.size() == MostUntold) {
        if (rescue.told == 0) {
            BeginRun(rescue, UntoldDump(rescue));
        }
        rescue.told += rescue.untold.size();
        TakeUntold(rescue);
    }
    return rescue.isWanted;
}

bool EndDump(Rescue &rescue, const FoundDump &dump) {
    if (rescue.told != 0) {
        rescue.dumps.back() = dump; // now it is known
    } else if (!rescue.untold.empty()) {
        BeginRun(rescue, dump);
    }
    TakeUntold(rescue);
    rescue.told = 0;
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

DumpRead RescueDocuments(const char *path, const RescueVisitor &visit,
                         const std::function<void(const FoundDump &)> &left) {
    Rescue rescue{.visit = visit};
    const DumpRead read = ReadDumps(
        path, {.voice = [&rescue](const FoundVoice &voice) { return TakeVoice(rescue, voice); },
               .dump =
                   [&](const FoundDump &dump) {
                       if (left && dump.voices == 0) {
                           left(dump);
                       }
                       return EndDump(rescue, dump);
                   },
               .bytes = {}});
    const int reason = errno;
    EndRun(rescue);
    errno = reason;
    return read;
}

} // namespace tonewright
