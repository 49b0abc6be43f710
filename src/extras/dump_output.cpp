// Tells what is found.
#include "extras/dump_output.h"

#include "common/text.h"

#include <algorithm>

namespace tonewright {
namespace {

// Kinds of which there may be thousands one behind the other, about which there is as much to say
// as about one.
bool IsToldAtOnce(DumpKind kind) {
    switch (kind) {
    case DumpKind::Dx7Headerless:
    case DumpKind::Dx7HeaderlessVoices:
    case DumpKind::Dx7ParameterChanges:
    case DumpKind::FourOperatorOther:
    case DumpKind::RefaceOther:
    case DumpKind::OtherMessage:
    case DumpKind::Unknown:
        return true;
    default:
        return false;
    }
}

bool IsHeaderless(DumpKind kind) {
    return kind == DumpKind::Dx7Headerless || kind == DumpKind::Dx7HeaderlessVoices;
}

bool BelongTogether(const FoundDump &one, const FoundDump &next) {
    return one.kind == next.kind && IsToldAtOnce(one.kind) && one.channel == next.channel &&
           one.detail == next.detail && (IsHeaderless(one.kind) || one.faults == next.faults);
}

} // namespace

void BeginDump(DumpOutput &output, DumpKind kind) {
    if (output.last && !(output.last->kind == kind && IsToldAtOnce(kind))) {
        EndDumps(output);
    }
}

void PutVoice(DumpOutput &output, const DumpVoice &voice, std::uint64_t offset) {
    const FoundVoice found = {voice, output.place++, offset};
    if (output.visitor.voice && !output.ended) {
        output.ended = !output.visitor.voice(found);
    }
}

void PutDump(DumpOutput &output, FoundDump dump) {
    dump.faults |= output.faults;
    ++output.dumps;
    if (output.last && BelongTogether(*output.last, dump)) {
        FoundDump &last = *output.last;
        last.length = dump.offset + dump.length - last.offset;
        last.voices += dump.voices;
        last.otherVoices += dump.otherVoices;
        last.faults |= dump.faults;
        last.confidence = std::min(last.confidence, dump.confidence);
        ++output.messages;
        return;
    }
    EndDumps(output);
    output.last = std::move(dump);
    output.messages = 1;
}

void EndDumps(DumpOutput &output) {
    if (!output.last) {
        return;
    }
    FoundDump dump = std::move(*output.last);
    output.last.reset();
    if (output.messages > 1 && dump.kind != DumpKind::Unknown && !IsHeaderless(dump.kind)) {
        dump.detail += FormatText("%s%llu messages", dump.detail.empty() ? "" : ", ",
                                  static_cast<unsigned long long>(output.messages));
    }
    if (output.visitor.dump && !output.ended) {
        output.ended = !output.visitor.dump(dump);
    }
}

} // namespace tonewright
