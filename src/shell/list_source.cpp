// Keeps what was replaced by lists from elsewhere.
#include "shell/list_source.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

struct ListFromElsewhere {
    int origin = NoListOrigin; // of the list; levels of undo with a lower one are of those before
    std::string source;
    ReplacedDocument document;
};

// Oldest first. Origins rise.
std::vector<ListFromElsewhere> Lists;

} // namespace

void KeepListSource(const std::string &source, ReplacedDocument document, int oldestOrigin) {
    std::erase_if(Lists, [oldestOrigin](const ListFromElsewhere &list) {
        return list.origin < oldestOrigin;
    });
    Lists.push_back({.origin = MainListOrigin, .source = source, .document = std::move(document)});
}

std::string SourceOfList() {
    const auto list = std::ranges::find(Lists, MainListOrigin, &ListFromElsewhere::origin);
    return list == Lists.end() ? "" : list->source;
}

std::optional<ReplacedDocument> TakeReplacedDocument() {
    std::optional<ReplacedDocument> first;
    while (!Lists.empty() && MainListOrigin < Lists.back().origin) {
        first = std::move(Lists.back().document);
        Lists.pop_back();
    }
    return first;
}

void ForgetListSources() {
    Lists.clear();
}

} // namespace tonewright
