// What is known of each kind of dump.
#include "extras/found_dump.h"

namespace tonewright {

bool HasVoices(DumpKind kind) {
    switch (kind) {
    case DumpKind::Dx7Bank:
    case DumpKind::Dx7Voice:
    case DumpKind::Dx7Headerless:
    case DumpKind::Dx7HeaderlessVoices:
    case DumpKind::RefaceVoices:
    case DumpKind::RefaceBankFile:
    case DumpKind::RefaceVoiceFile:
    case DumpKind::Catalogue:
        return true;
    default:
        return false;
    }
}

} // namespace tonewright
