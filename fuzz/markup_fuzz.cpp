// Any bytes as the title of a control: what is found lies inside of the title and keeps within
// its limits, and as the value of an item it is found again.
#include "shell/markup.h"
#include "support/fuzz_support.h"

#include <algorithm>
#include <string>
#include <string_view>

using namespace tonewright;

namespace {

constexpr std::string_view Keys[] = {
    "type",       "res",         "variable",     "fontface",       "fontsize",
    "fontweight", "fontital",    "checkedvalue", "uncheckedvalue", "checkedstring",
    "subclass",   "screensaver", "text"};

void DemandSoundValues(std::string_view title) {
    for (const std::string_view key : Keys) {
        const auto value = MarkupFind(title, key);
        const auto text = MarkupText(title, key);
        std::uint32_t number = 12345;
        Demand(MarkupNumber(title, key, number) == value.has_value(), "a number where a value is");
        Demand(text.has_value() == value.has_value(), "a text where a value is");
        if (!value) {
            Demand(number == 12345, "a number that is not there stays");
            continue;
        }
        const std::size_t at = static_cast<std::size_t>(value->data() - title.data());
        Demand(at <= title.size() && value->size() <= title.size() - at, "a part of the title");
        Demand(value->find(';') == value->npos, "a value ends at the semicolon");
        Demand(value->empty() || (value->front() != ' ' && value->front() != '='),
               "blanks and equal signs in front of a value are passed over");
        Demand(at + value->size() == title.size() || title[at + value->size()] == ';',
               "a value goes up to the semicolon or the end");
        Demand(text->size() <= MarkupTextLimit && value->starts_with(*text), "a cut value");
    }
}

void DemandSoundRecord(std::string_view title) {
    const ControlRecord record = ReadControlRecord(title);
    Demand(record.fontHeight >= 4 && record.fontHeight <= 128, "the height of a font");
    Demand(record.fontWeight >= 0 && record.fontWeight <= 1000, "the weight of a font");
    for (const std::string *text : {&record.variable, &record.fontFace, &record.checkedString,
                                    &record.subclass, &record.screenSaver}) {
        Demand(text->size() <= MarkupTextLimit, "a text of at most 260 bytes");
    }
    const bool isReplaced = MarkupOfTitle(title) != title;
    Demand(isReplaced || record.text.size() <= title.size(), "no text out of nothing");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view title(reinterpret_cast<const char *>(data), size);
    DemandSoundValues(title);
    DemandSoundRecord(title);
    // As the value of an item it is found again.
    std::string value(title.substr(0, MarkupTextLimit));
    std::erase(value, ';');
    value.erase(0, value.find_first_not_of("= "));
    const std::string made = "type=static;"
                             "TEXT= = " +
                             value + ";res=1";
    Demand(MarkupFind(made, "text") == std::string_view(value), "what is written is found");
    return 0;
}
