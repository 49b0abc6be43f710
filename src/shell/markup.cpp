// Reads the mark-up of a title.
#include "shell/markup.h"

#include "common/strings.h"
#include "common/text.h"

#include <algorithm>

namespace tonewright {
namespace {

constexpr int SmallestFont = 4, LargestFont = 128; // pixels
constexpr int LightestFont = 0, HeaviestFont = 1000;
constexpr std::string_view NumberedTextMark = "~!!~";
constexpr std::size_t ShortestNumberedText = 2; // bytes

struct KindRow {
    std::string_view word;
    ControlKind kind;
};
constexpr KindRow Kinds[] = {
    {"alphagraphic", ControlKind::AlphaGraphic}, {"static", ControlKind::Static},
    {"checkbox", ControlKind::CheckBox},         {"radiobutton", ControlKind::RadioButton},
    {"listbox", ControlKind::ListBox},
};

ControlKind KindOf(std::string_view word) {
    const auto row = std::ranges::find_if(
        Kinds, [&](const KindRow &kind) { return EqualNoCase(kind.word, word); });
    return row == std::end(Kinds) ? ControlKind::None : row->kind;
}

bool IsBlankOrControl(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte <= 0x20 || byte == 0x7F;
}

bool BeginAlike(std::string_view a, std::string_view b) {
    const std::size_t shorter = std::min(a.size(), b.size());
    return EqualNoCase(a.substr(0, shorter), b.substr(0, shorter));
}

// A number of a font, which may be negative, within its range.
int LimitedOf(std::uint32_t number, int lowest, int highest) {
    return std::clamp(static_cast<int>(number), lowest, highest);
}

} // namespace

std::optional<std::string_view> MarkupFind(std::string_view markup, std::string_view key) {
    while (!markup.empty()) {
        const std::size_t end = markup.find(';');
        std::string_view item = markup.substr(0, end);
        markup.remove_prefix(end == markup.npos ? markup.size() : end + 1);
        while (!item.empty() && IsBlankOrControl(item.front())) {
            item.remove_prefix(1);
        }
        const std::size_t equals = item.find('=');
        if (equals == item.npos || !BeginAlike(item.substr(0, equals), key)) {
            continue;
        }
        item.remove_prefix(std::min(item.find_first_not_of("= ", equals), item.size()));
        return item;
    }
    return std::nullopt;
}

std::optional<std::string> MarkupText(std::string_view markup, std::string_view key) {
    const auto value = MarkupFind(markup, key);
    return value ? std::optional<std::string>(CutText(*value, MarkupTextLimit)) : std::nullopt;
}

bool MarkupNumber(std::string_view markup, std::string_view key, std::uint32_t &number) {
    const auto value = MarkupFind(markup, key);
    if (value) {
        number = ReadInteger(value->substr(0, MarkupTextLimit));
    }
    return value.has_value();
}

std::string MarkupOfTitle(std::string_view title) {
    if (const std::size_t mark = title.find(NumberedTextMark); mark != title.npos) {
        const std::uint32_t number = ReadInteger(title.substr(mark + NumberedTextMark.size()));
        const bool isPositive = static_cast<std::int32_t>(number) >= 1; // "-5" is none
        std::string text = isPositive ? LoadProgramString(number) : "";
        if (text.size() >= ShortestNumberedText) {
            return text;
        }
    }
    return std::string(title);
}

ControlRecord ReadControlRecord(std::string_view title) {
    const std::string markup = MarkupOfTitle(title);
    ControlRecord record;
    const auto text = [&](const char *key) { return MarkupText(markup, key).value_or(""); };
    const auto number = [&](const char *key, std::uint32_t fallback) {
        MarkupNumber(markup, key, fallback);
        return fallback;
    };
    record.kind = KindOf(text("type"));
    record.picture = number("res", record.picture);
    record.variable = text("variable");
    record.fontFace = text("fontface");
    record.fontHeight = LimitedOf(number("fontsize", static_cast<unsigned>(record.fontHeight)),
                                  SmallestFont, LargestFont);
    record.fontWeight = LimitedOf(number("fontweight", static_cast<unsigned>(record.fontWeight)),
                                  LightestFont, HeaviestFont);
    record.italic = number("fontital", 0) != 0;
    record.checkedValue = number("checkedvalue", record.checkedValue);
    record.uncheckedValue = number("uncheckedvalue", record.uncheckedValue);
    record.checkedString = text("checkedstring");
    record.subclass = text("subclass");
    record.screenSaver = text("screensaver");
    const auto shown = MarkupFind(markup, "text"); // of any length
    record.text = shown ? *shown : record.kind == ControlKind::None ? std::string_view(markup) : "";
    return record;
}

} // namespace tonewright
