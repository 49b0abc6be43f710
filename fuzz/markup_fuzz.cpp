// Any bytes as the title of a control: each key finds the first item that begins alike, what is
// found keeps within its limits and is found again as the value of an item, and a control stores
// what it shows the next time.
#include "shell/markup.h"
#include "shell/wizard.h"
#include "support/fuzz_support.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

using namespace tonewright;

namespace {

constexpr std::string_view Keys[] = {
    "type",       "res",         "variable",     "fontface",       "fontsize",
    "fontweight", "fontital",    "checkedvalue", "uncheckedvalue", "checkedstring",
    "subclass",   "screensaver", "text"};

struct Item {
    std::string_view key, value;
};

// The items of a title, by another way than the program's: one character after another.
std::vector<Item> ItemsOf(std::string_view title) {
    std::vector<Item> items;
    std::size_t start = 0, equals = title.npos;
    for (std::size_t at = 0; at <= title.size(); ++at) {
        if (at == title.size() || title[at] == ';') {
            if (equals != title.npos) {
                std::size_t value = equals;
                while (value < at && (title[value] == '=' || title[value] == ' ')) {
                    ++value;
                }
                items.push_back(
                    {title.substr(start, equals - start), title.substr(value, at - value)});
            }
            start = at + 1;
            equals = title.npos;
        } else if (at == start && equals == title.npos &&
                   (static_cast<unsigned char>(title[at]) <= ' ' || title[at] == 0x7F)) {
            ++start;
        } else if (title[at] == '=' && equals == title.npos) {
            equals = at;
        }
    }
    return items;
}

char Small(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + 32) : character;
}

bool BeginAlike(std::string_view a, std::string_view b) {
    for (std::size_t at = 0; at < a.size() && at < b.size(); ++at) {
        if (Small(a[at]) != Small(b[at])) {
            return false;
        }
    }
    return true;
}

// Texts and numbers are asked for by one key alone, since they look for it once more.
void DemandSoundValues(std::string_view title) {
    const std::vector<Item> items = ItemsOf(title);
    for (const std::string_view key : Keys) {
        const auto value = MarkupFind(title, key);
        const auto item =
            std::ranges::find_if(items, [&](const Item &one) { return BeginAlike(one.key, key); });
        Demand(value.has_value() == (item != items.end()), "an item that begins alike");
        if (value) {
            Demand(value->data() == item->value.data() && value->size() == item->value.size(),
                   "the value of the first item that begins alike");
        }
    }
    const std::string_view key = Keys[title.size() % std::size(Keys)];
    const auto value = MarkupFind(title, key);
    const auto text = MarkupText(title, key);
    std::uint32_t number = 12345;
    Demand(MarkupNumber(title, key, number) == value.has_value(), "a number where a value is");
    Demand(text.has_value() == value.has_value(), "a text where a value is");
    Demand(value || number == 12345, "a number that is not there stays");
    Demand(!value || (text->size() <= MarkupTextLimit && value->starts_with(*text)), "a cut value");
}

// Their names are short, so that garbage comes upon them.
std::uint32_t Number;
std::string Text;
const ConfigKey Rows[] = {
    SettingRow("N", &Number, 0, SettingInteger, {}),
    SettingRow("T", &Text, "", SettingText, {}),
};

// What a control stores it shows the next time.
void DemandSoundSettings(const ControlRecord &record) {
    Number = 12345;
    Text = "before";
    const bool isBound = IsChecked(record, Rows).has_value();
    StoreChecked(record, true, Rows);
    if (isBound && record.screenSaver.empty()) {
        Demand(IsChecked(record, Rows) == true, "what is checked comes back checked");
    } else if (!isBound) {
        Demand(Number == 12345 && Text == "before", "what is bound to nothing stores nothing");
    }
    StoreSelected(record, 3, "three", Rows);
    Demand(SelectedIndex(record, Rows).value_or(3) == 3, "an index that comes back");
    Demand(SelectedText(record, Rows).value_or("three") == "three", "a text that comes back");
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
    DemandSoundSettings(record);
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
