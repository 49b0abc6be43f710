// Any sequence of what a user does in the editor of a voice, beside a plain model of it: bytes and
// the texts, choices and checks of the pages, by tables of its own. What both hold is compared
// after each step.
//
// The bytes of the input choose the family, the settings, the voice and the controls that are
// missing, then the steps with what the user types.
#pragma once

#include "common/desktop.h"
#include "common/settings.h"
#include "common/text.h"
#include "drivers/dx7/voice_parameters.h"
#include "drivers/frequency.h"
#include "drivers/reface_dx/voice_parameters.h"
#include "drivers/voice_sheet.h"
#include "sheet_controls.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace tonewright::sheet_model {

using Bytes = std::vector<std::uint8_t>;

// ---- the controls, by hand

enum class Kind { Name, Number, Frequency, List, Check, Bit };
enum class When { AtOnce, Left, Never };

struct Control {
    std::uint32_t number;
    Kind kind;
    When when;
    int offset; // in the block that the page shows; of a bit in the whole voice
    int minimum = 0, maximum = 0;
    int bias = 0;
    bool hasBar = false;
    std::uint32_t gate = 0, secondGate = 0;
};

inline constexpr When Once = When::AtOnce, Later = When::Left;

inline const std::vector<Control> Dx7VoiceControls = {
    {101, Kind::Name, Once, 145},
    {102, Kind::Number, Once, 144, -24, 24, 24},
    {104, Kind::Number, Once, 135, 0, 7, 0, true},
    {105, Kind::Number, When::Never, 0, -24, 24},
    {106, Kind::List, Once, 134, 0, 31},
    {107, Kind::List, Once, 142, 0, 5},
    {108, Kind::Number, Once, 137, 0, 99, 0, true},
    {109, Kind::Number, Once, 138, 0, 99, 0, true},
    {110, Kind::Number, Once, 139, 0, 99, 0, true},
    {111, Kind::Number, Once, 126, 0, 99, 0, true},
    {112, Kind::Number, Once, 127, 0, 99, 0, true},
    {113, Kind::Number, Once, 128, 0, 99, 0, true},
    {114, Kind::Number, Once, 129, 0, 99, 0, true},
    {115, Kind::Number, Once, 130, 0, 99, 0, true},
    {116, Kind::Number, Once, 131, 0, 99, 0, true},
    {117, Kind::Number, Once, 132, 0, 99, 0, true},
    {118, Kind::Number, Once, 133, 0, 99, 0, true},
    {120, Kind::Check, Once, 136},
    {121, Kind::Number, Once, 143, 0, 7, 0, true},
    {122, Kind::Number, Once, 140, 0, 99, 0, true},
    {123, Kind::Check, Once, 141},
};
inline const std::vector<Control> Dx7OperatorControls = {
    {101, Kind::Name, When::Never, 0},
    {201, Kind::Bit, Later, 155},
    {202, Kind::Number, Later, 0, 0, 99, 0, true, 201},
    {203, Kind::Number, Later, 1, 0, 99, 0, true, 201},
    {204, Kind::Number, Later, 2, 0, 99, 0, true, 201},
    {205, Kind::Number, Later, 3, 0, 99, 0, true, 201},
    {206, Kind::Number, Later, 4, 0, 99, 0, true, 201},
    {207, Kind::Number, Later, 5, 0, 99, 0, true, 201},
    {208, Kind::Number, Later, 6, 0, 99, 0, true, 201},
    {209, Kind::Number, Later, 7, 0, 99, 0, true, 201},
    {210, Kind::Number, Later, 13, 0, 99, 0, true, 201},
    {211, Kind::Number, Later, 9, 0, 99, 0, true, 201},
    {212, Kind::Number, Later, 10, 0, 99, 0, true, 201},
    {213, Kind::List, Later, 11, 0, 3, 0, false, 201},
    {214, Kind::List, Later, 12, 0, 3, 0, false, 201},
    {215, Kind::Number, Later, 8, 0, 127, 0, true, 201},
    {216, Kind::Number, Later, 14, 0, 3, 0, false, 201}, // no page has it
    {219, Kind::Number, Later, 15, 0, 99, 0, true, 201},
    {220, Kind::Number, Later, 16, 0, 99, 0, true, 201},
    {221, Kind::Check, Later, 17, 0, 1, 0, false, 201},
    {223, Kind::Frequency, Later, 18, 0, 3199, 0, false, 201},
    {224, Kind::Number, Later, 20, -7, 7, 7, false, 201},
};
inline const std::vector<Control> RefaceVoiceControls = {
    {101, Kind::Name, Once, 0},
    {102, Kind::Number, Later, 12, -24, 24, 40},
    {103, Kind::List, Later, 13, 0, 2},
    {104, Kind::Number, Once, 14, 0, 127, 0, true},
    {105, Kind::Number, Later, 15, -24, 24, 40},
    {106, Kind::List, Once, 16, 0, 11},
    {107, Kind::List, Later, 17, 0, 6},
    {108, Kind::Number, Once, 18, 0, 127, 0, true},
    {109, Kind::Number, Once, 19, 0, 127, 0, true},
    {110, Kind::Number, Once, 20, 0, 127, 0, true},
    {111, Kind::Number, Once, 21, 0, 127, 0, true},
    {112, Kind::Number, Once, 22, 0, 127, 0, true},
    {113, Kind::Number, Once, 23, 0, 127, 0, true},
    {114, Kind::Number, Once, 24, 0, 127, 0, true},
    {115, Kind::Number, Once, 25, 0, 127, 0, true},
    {116, Kind::Number, Once, 26, 0, 127, 0, true},
    {117, Kind::Number, Once, 27, 0, 127, 0, true},
    {118, Kind::Number, Once, 28, 0, 127, 0, true},
    {119, Kind::List, Later, 29, 0, 7},
    {120, Kind::Number, Once, 30, 0, 127, 0, true},
    {121, Kind::Number, Once, 31, 0, 127, 0, true},
    {122, Kind::List, Later, 32, 0, 7},
    {123, Kind::Number, Once, 33, 0, 127, 0, true},
    {124, Kind::Number, Once, 34, 0, 127, 0, true},
};
inline const std::vector<Control> RefaceOperatorControls = {
    {101, Kind::Name, When::Never, 0},
    {201, Kind::Check, Later, 0},
    {202, Kind::Number, Later, 1, 0, 127, 0, true, 201, 217},
    {203, Kind::Number, Later, 2, 0, 127, 0, true, 201, 217},
    {204, Kind::Number, Later, 3, 0, 127, 0, true, 201, 217},
    {205, Kind::Number, Later, 4, 0, 127, 0, true, 201, 217},
    {206, Kind::Number, Later, 5, 0, 127, 0, true, 201, 217},
    {207, Kind::Number, Later, 6, 0, 127, 0, true, 201, 217},
    {208, Kind::Number, Later, 7, 0, 127, 0, true, 201, 217},
    {209, Kind::Number, Later, 8, 0, 127, 0, true, 201, 217},
    {210, Kind::Number, Later, 9, 0, 127, 0, true, 201},
    {211, Kind::Number, Later, 10, 0, 127, 0, true, 201},
    {212, Kind::Number, Later, 11, 0, 127, 0, true, 201},
    {213, Kind::List, Later, 12, 0, 3, 0, false, 201},
    {214, Kind::List, Later, 13, 0, 3, 0, false, 201},
    {215, Kind::Number, Later, 14, 0, 127, 0, true, 201},
    {216, Kind::Check, Later, 15, 0, 1, 0, false, 201},
    {217, Kind::Check, Later, 16, 0, 1, 0, false, 201},
    {218, Kind::Number, Later, 17, 0, 127, 0, true, 201},
    {219, Kind::Number, Later, 18, 0, 127, 0, true, 201},
    {220, Kind::Number, Later, 19, 0, 127, 0, true, 201},
    {221, Kind::List, Later, 20, 0, 1, 0, false, 201},
    {222, Kind::List, Later, 21, 0, 1, 0, false, 201},
    {223, Kind::Frequency, Later, 22, 0, 3199, 0, false, 201},
    {224, Kind::Number, Later, 24, -64, 63, 64, false, 201},
};

struct Family {
    const VoiceParameters *parameters;
    DriverId id;
    std::size_t payloadSize, extraSize;
    int pages;
    int nameOffset, algorithmOffset;
    int firstBlock, blockSize, lastBlock; // of the operators that have pages of their own
    const std::vector<Control> *voiceControls, *operatorControls;
};
inline const Family Families[] = {
    {&Dx7Parameters, MakeDriverId("y7XD"), 156, 0, 7, 145, 134, 0, 21, 4, &Dx7VoiceControls,
     &Dx7OperatorControls},
    {&RefaceParameters, MakeDriverId("xdFR"), 38, 112, 5, 0, 16, 38, 28, 3, &RefaceVoiceControls,
     &RefaceOperatorControls},
};

// ---- the model

struct Cell {
    bool exists = false;
    std::string text;
    int selection = -1;
    bool checked = false;
    int bar = 0;
    bool enabled = true;
};

struct Model {
    const Family &family;
    Bytes bytes;
    const Bytes original;
    std::uint32_t missing; // a control that no page has; 0: none
    int active = -1;
    bool isTouched = false;
    bool accepted = false;
    int algorithmsShown = 0;
    std::vector<std::vector<Cell>> pages;

    Model(const Family &of, Bytes voice, std::uint32_t without)
        : family(of), bytes(voice), original(std::move(voice)), missing(without),
          pages(static_cast<std::size_t>(of.pages)) {}

    const std::vector<Control> &Controls(int page) const {
        return page == 0 ? *family.voiceControls : *family.operatorControls;
    }
    std::vector<Cell> &Cells(int page) { return pages[static_cast<std::size_t>(page)]; }

    std::uint8_t &Byte(int page, const Control &control, int further = 0) {
        int at = 52 + control.offset + further;
        if (page > 0 && control.kind != Kind::Bit) {
            at += family.firstBlock + std::min(page - 1, family.lastBlock) * family.blockSize;
        }
        return bytes[static_cast<std::size_t>(at)];
    }
    std::uint8_t Bit(int page) const {
        return static_cast<std::uint8_t>(0x20 >> std::min(page - 1, family.lastBlock));
    }
    std::string Name() const {
        const auto begin = bytes.begin() + 52 + family.nameOffset;
        std::string name(begin, begin + 10);
        while (name.size() > 1 && static_cast<unsigned char>(name.back()) <= 0x20) {
            name.pop_back();
        }
        name = name.c_str(); // a zero byte ends it
        return Latin1ToUtf8(name);
    }
    static int Number(const Control &control, const Cell &cell) {
        return ClampedInteger(cell.text.c_str(),
                              {.minimum = control.minimum, .maximum = control.maximum});
    }

    void Fill(int page) {
        for (const Control &control : Controls(page)) {
            Cell cell;
            cell.exists = control.number != missing &&
                          !(family.id == MakeDriverId("y7XD") && page > 0 && control.number == 216);
            if (!cell.exists || (control.when == When::Never && control.kind != Kind::Name)) {
                Cells(page).push_back(cell);
                continue;
            }
            const int stored = Byte(page, control);
            switch (control.kind) {
            case Kind::Name:
                cell.text = Name();
                cell.enabled = page == 0;
                break;
            case Kind::Number:
                cell.text = std::to_string(stored - control.bias);
                cell.bar = control.hasBar ? std::min(stored, control.maximum) : 0;
                break;
            case Kind::Frequency: {
                const int sum = stored * 100 + Byte(page, control, 1);
                cell.text = std::to_string(sum / 100) + "." + std::to_string(sum / 10 % 10) +
                            std::to_string(sum % 10);
                break;
            }
            case Kind::List:
                cell.selection = stored <= control.maximum ? stored : -1;
                break;
            case Kind::Check:
                cell.checked = stored != 0;
                break;
            case Kind::Bit:
                cell.checked = (stored & Bit(page)) != 0;
                break;
            }
            Cells(page).push_back(cell);
        }
        Enable(page);
    }
    bool IsChecked(int page, std::uint32_t number) {
        const auto &controls = Controls(page);
        for (std::size_t i = 0; i < controls.size(); ++i) {
            if (controls[i].number == number) {
                return Cells(page)[i].checked;
            }
        }
        return false;
    }
    void Enable(int page) {
        const auto &controls = Controls(page);
        for (std::size_t i = 0; i < controls.size(); ++i) {
            if (controls[i].gate) {
                Cells(page)[i].enabled =
                    IsChecked(page, controls[i].gate) &&
                    (!controls[i].secondGate || IsChecked(page, controls[i].secondGate));
            }
        }
    }

    void StoreName(const std::string &text) {
        const std::string name = Utf8ToLatin1(text);
        for (std::size_t i = 0; i < 10; ++i) {
            bytes[static_cast<std::size_t>(52 + family.nameOffset) + i] =
                i < name.size() ? static_cast<std::uint8_t>(name[i]) : 0;
        }
    }
    void Store(int page, std::size_t index) {
        const Control &control = Controls(page)[index];
        const Cell &cell = Cells(page)[index];
        std::uint8_t &byte = Byte(page, control);
        const int former = bytes[static_cast<std::size_t>(52 + family.algorithmOffset)];
        switch (control.kind) {
        case Kind::Name:
            StoreName(cell.text.c_str());
            break;
        case Kind::Number:
            byte =
                static_cast<std::uint8_t>((cell.exists ? Number(control, cell) : 0) + control.bias);
            break;
        case Kind::Frequency: {
            const int hundredths = cell.exists ? ReadFrequency(cell.text.c_str()) : 0;
            byte = static_cast<std::uint8_t>(hundredths / 100);
            Byte(page, control, 1) = static_cast<std::uint8_t>(hundredths % 100);
            break;
        }
        case Kind::List:
            byte = static_cast<std::uint8_t>(
                cell.selection < 0 ? 0 : std::min(cell.selection, control.maximum));
            break;
        case Kind::Check:
            byte = cell.checked ? 1 : 0;
            break;
        case Kind::Bit:
            byte = static_cast<std::uint8_t>(cell.checked ? byte | Bit(page) : byte & ~Bit(page));
            break;
        }
        if (bytes[static_cast<std::size_t>(52 + family.algorithmOffset)] != former) {
            ++algorithmsShown;
        }
    }
    void Collect() {
        if (active < 0) {
            return;
        }
        const auto &controls = Controls(active);
        for (std::size_t i = 0; i < controls.size(); ++i) {
            if (controls[i].when == When::Never) {
                continue;
            }
            Store(active, i);
            if (controls[i].kind == Kind::Name && bytes[52 + family.nameOffset] == 0) {
                StoreName("Untitled");
            }
        }
    }
    void Show(int page) {
        if (page == active) {
            return;
        }
        Collect();
        active = page;
        if (Cells(page).empty()) {
            Fill(page);
        }
        if (page > 0 && Cells(page).front().exists) {
            Cells(page).front().text = Name();
        }
    }
    // A command of a control: stored at once where that is its time, and its bar follows.
    void Command(std::size_t index) {
        const Control &control = Controls(active)[index];
        Cell &cell = Cells(active)[index];
        if (control.when == When::AtOnce) {
            Store(active, index);
        }
        if (control.hasBar) {
            cell.bar = Number(control, cell);
        }
    }
    Cell *Usable(std::size_t index) {
        Cell &cell = Cells(active)[index];
        return cell.exists && cell.enabled ? &cell : nullptr;
    }
    void Type(std::size_t index, const std::string &text) {
        const Kind kind = Controls(active)[index].kind;
        Cell *cell = Usable(index);
        if (cell && (kind == Kind::Name || kind == Kind::Number || kind == Kind::Frequency)) {
            isTouched = isTouched || cell->text != text;
            cell->text = text;
            Command(index);
        }
    }
    void Select(std::size_t index, int selection) {
        Cell *cell = Usable(index);
        if (cell && Controls(active)[index].kind == Kind::List) {
            isTouched = isTouched || cell->selection != selection;
            cell->selection = selection;
            Command(index);
        }
    }
    void Check(std::size_t index, bool checked) {
        const Kind kind = Controls(active)[index].kind;
        Cell *cell = Usable(index);
        if (cell && (kind == Kind::Check || kind == Kind::Bit)) {
            isTouched = isTouched || cell->checked != checked;
            cell->checked = checked;
            Command(index);
            Enable(active);
        }
    }
    void Write(std::size_t index, const std::string &text) {
        Cell &cell = Cells(active)[index];
        if (cell.text != text) {
            isTouched = true;
            cell.text = text;
            Command(index);
        }
    }
    void Step(std::size_t index, int step) {
        const Control &control = Controls(active)[index];
        const Cell *cell = Usable(index);
        if (cell && control.kind == Kind::Frequency) {
            Write(index, StepFrequency(cell->text.c_str(), step));
        } else if (cell && control.kind == Kind::Number) {
            const int number = Number(control, *cell) + step;
            Write(index, std::to_string(std::clamp(number, control.minimum, control.maximum)));
        }
    }
    void Scroll(std::size_t index, ScrollAction action, int thumb) {
        const Control &control = Controls(active)[index];
        Cell *cell = Usable(index);
        if (!cell || !control.hasBar) {
            return;
        }
        const int former = cell->bar;
        const int page = control.maximum / 8;
        const int to = action == ScrollAction::LineBack      ? former - 1
                       : action == ScrollAction::LineForward ? former + 1
                       : action == ScrollAction::PageBack    ? former - page
                       : action == ScrollAction::PageForward ? former + page
                       : action == ScrollAction::Thumb       ? thumb
                       : action == ScrollAction::Top         ? 0
                                                             : control.maximum;
        cell->bar = std::clamp(to, 0, control.maximum);
        if (cell->bar != former) {
            Write(index, std::to_string(cell->bar));
        }
    }
    void Focus(std::size_t index) {
        if (Usable(index) && Controls(active)[index].kind != Kind::Name) {
            Command(index);
        }
    }
    // What OK would make of the voice now.
    Bytes Accepted() const {
        Model trial = *this;
        trial.Collect();
        return trial.bytes;
    }
};

// ---- sequences

struct Sequence {
    std::span<const std::uint8_t> input;
    std::function<void(bool holds, const char *what)> demand;
    std::size_t at = 0;

    Sequence(std::span<const std::uint8_t> bytes, std::function<void(bool, const char *)> demands)
        : input(bytes), demand(std::move(demands)) {}

    unsigned Next() { return at < input.size() ? input[at++] : 0; }

    std::string NextText() {
        static const std::string texts[] = {"",           "-",
                                            "nan",        "inf",
                                            "1e999",      "0",
                                            "7",          "99",
                                            "100",        "127",
                                            "-24",        "-25",
                                            "24",         "1.15",
                                            "31.99",      "40",
                                            "1,5",        " 12",
                                            "0x1f",       "Pad No",
                                            "Ab\xC3\xA9", "\xE2\x82\xAC uro",
                                            "4294967297", "-99999999999999999999999999"};
        const unsigned choice = Next();
        if (choice < 160) {
            return texts[choice % std::size(texts)];
        }
        if (choice == 160) {
            return std::string(3000, '9');
        }
        std::string text;
        for (unsigned length = choice % 13; length > 0; --length) {
            text += static_cast<char>(Next());
        }
        return text;
    }

    // A whole voice: the bytes of the input and, behind them, pseudo-random ones.
    Bytes NextVoice(const Family &family) {
        Bytes voice;
        for (std::size_t i = Next() % 40 + family.payloadSize + family.extraSize; i > 0; --i) {
            voice.push_back(static_cast<std::uint8_t>(i * 37));
        }
        const unsigned given = Next();
        for (unsigned i = 0; i < given % 64; ++i) {
            voice[(given + i * 7) % voice.size()] = static_cast<std::uint8_t>(Next());
        }
        const std::span<const std::uint8_t> all(voice);
        VoiceObject object = MakeVoiceObject(family.id, all.first(family.payloadSize),
                                             all.subspan(family.payloadSize, family.extraSize));
        // Bytes behind the voice.
        object.bytes.insert(object.bytes.end(),
                            voice.begin() +
                                static_cast<std::ptrdiff_t>(family.payloadSize + family.extraSize),
                            voice.end());
        return object.bytes;
    }

    // The rows of the program that the controls of the voice's page and of an operator's are.
    std::array<std::vector<std::size_t>, 2> rowsOf;

    void FindRows(const Family &family) {
        for (const int page : {0, 1}) {
            const auto rows = RowsOf(*family.parameters, page);
            const auto &controls = page == 0 ? *family.voiceControls : *family.operatorControls;
            demand(rows.size() == controls.size(), "a page has the model's controls");
            auto &found = rowsOf[static_cast<std::size_t>(page)];
            for (const Control &control : controls) {
                const auto row = std::ranges::find(rows, control.number, &VoiceParameter::control);
                demand(row != rows.end(), "every control has its row");
                found.push_back(static_cast<std::size_t>(row - rows.begin()));
            }
        }
    }
    std::size_t RowOf(int page, std::size_t index) const {
        return rowsOf[page == 0 ? 0 : 1][index];
    }

    void Compare(const VoiceSheet &sheet, Model &model) {
        demand(sheet.copy.bytes == model.bytes, "the voice is the model's");
        demand(sheet.accepted == model.accepted, "it is accepted when the model is");
        demand(sheet.activePage == model.active, "the page is the model's");
        demand(sheet.isTouched == model.isTouched, "the user has changed what the model says");
        if (model.active < 0) {
            return;
        }
        demand(VoiceEditPage == static_cast<std::uint32_t>(std::min(model.active, 5)),
               "the setting follows the page");
        const auto &controls = model.Controls(model.active);
        for (std::size_t i = 0; i < controls.size(); ++i) {
            const Cell &cell = model.Cells(model.active)[i];
            const RowState &state =
                sheet.pages[static_cast<std::size_t>(model.active)].rows[RowOf(model.active, i)];
            demand(state.exists == cell.exists, "a control exists when the model's does");
            demand(state.text == cell.text, "a text is the model's");
            demand(state.selection == cell.selection, "a choice is the model's");
            demand(state.checked == cell.checked, "a check is the model's");
            demand(state.bar == cell.bar, "a bar stands where the model's does");
            demand(state.enabled == cell.enabled, "a control is enabled when the model's is");
        }
    }

    void CompareCollected(const VoiceSheet &sheet, const Model &model) {
        VoiceSheet twice = sheet;
        twice.showAlgorithm = nullptr;
        CollectPage(twice, twice.activePage);
        demand(twice.copy.bytes == model.Accepted(), "what OK would keep is the model's");
        CollectPage(twice, twice.activePage);
        demand(twice.copy.bytes == model.Accepted(), "a second collection changes nothing");
    }

    // One sheet, from its beginning to its end; the number of steps.
    int RunSheet(const Family &family, Bytes &voice) {
        Model model(family, voice, Next() % 4 == 0 ? 101 + Next() % 124 : 0);
        auto begun = BeginVoiceSheet(nullptr, *family.parameters, VoiceObject{voice},
                                     {.in = 1, .out = 2}, 3);
        demand(begun.has_value(), "a whole voice has a sheet");
        if (!begun) {
            return 0;
        }
        VoiceSheet &sheet = *begun;
        int played = 0, algorithmsShown = 0;
        sheet.isShown = true;
        sheet.showAlgorithm = [&] { ++algorithmsShown; };
        sheet.showRow = [&](int page, std::size_t row) {
            demand(page == model.active && row < RowsOf(*family.parameters, page).size(),
                   "a row of the shown page is shown");
        };
        sheet.audition = [&](const VoiceObject &further) {
            ++played;
            const std::size_t size = 52 + family.payloadSize + family.extraSize;
            demand(std::ranges::equal(further.bytes, std::span(model.bytes).first(size)),
                   "what is played is the voice as it stands");
        };

        const auto show = [&](int page) {
            PageControls controls = ControlsOfRows(RowsOf(*family.parameters, page));
            controls.has = [has = controls.has, &model](std::uint32_t control) {
                return control != model.missing && has(control);
            };
            model.Show(page);
            ShowPage(sheet, page, controls);
        };
        show(StartPage(sheet));
        Compare(sheet, model);

        int steps = 0;
        bool isOpen = true;
        while (isOpen && at < input.size()) {
            ++steps;
            const unsigned step = Next();
            const auto &controls = model.Controls(model.active);
            const std::size_t index = Next() % controls.size();
            const std::size_t row = RowOf(model.active, index);
            switch (step % 16) {
            case 0:
            case 1:
                show(static_cast<int>(Next()) % family.pages);
                break;
            case 2:
            case 3:
            case 4: {
                const std::string text = NextText();
                model.Type(index, text);
                TypeInRow(sheet, row, text);
                break;
            }
            case 5:
            case 6: {
                const int selection = static_cast<int>(Next() % 40) - 1;
                model.Select(index, selection);
                SelectInRow(sheet, row, selection);
                break;
            }
            case 7:
            case 8: {
                const bool checked = Next() % 2 != 0;
                model.Check(index, checked);
                CheckRow(sheet, row, checked);
                break;
            }
            case 9:
            case 10: {
                const int by = Next() % 2 != 0 ? 1 : -1;
                model.Step(index, by);
                StepRow(sheet, row, by);
                break;
            }
            case 11:
            case 12: {
                const auto action = static_cast<ScrollAction>(Next() % 7);
                const int thumb = static_cast<int>(Next()) - 20;
                model.Scroll(index, action, thumb);
                ScrollRow(sheet, row, action, thumb);
                break;
            }
            case 13:
                model.Focus(index);
                RowCommand(sheet, row);
                break;
            case 14: { // while the window does not stand nothing is a command
                sheet.isShown = false;
                TypeInRow(sheet, row, NextText());
                SelectInRow(sheet, row, 1);
                CheckRow(sheet, row, true);
                StepRow(sheet, row, 1);
                ScrollRow(sheet, row, ScrollAction::Bottom, 0);
                RowCommand(sheet, row);
                sheet.isShown = true;
                break;
            }
            default:
                isOpen = !Button(sheet, model, played, controls[index].number);
            }
            Compare(sheet, model);
            if (steps % 8 == 0) {
                CompareCollected(sheet, model);
            }
            demand(algorithmsShown == model.algorithmsShown, "each new algorithm is shown");
        }

        const Bytes result = model.accepted ? model.bytes : voice;
        VoiceObject ended{voice};
        demand(EndVoiceSheet(sheet, ended) == (model.accepted ? 1 : 0),
               "the result is the model's");
        demand(ended.bytes == result, "the voice is changed when the sheet was accepted");
        for (std::size_t i = 52 + family.payloadSize + family.extraSize; i < voice.size(); ++i) {
            demand(ended.bytes[i] == voice[i], "bytes behind the voice stay");
        }
        demand(std::ranges::equal(std::span(ended.bytes).first(52), std::span(voice).first(52)),
               "the header stays");
        voice = ended.bytes;
        return steps;
    }

    // True when the sheet closes.
    bool Button(VoiceSheet &sheet, Model &model, int &played, std::uint32_t focused) {
        const int formerlyPlayed = played;
        switch (Next() % 5) {
        case 0:
            model.Collect();
            model.accepted = true;
            demand(PressSheetButton(sheet, nullptr, 1, 1), "OK closes");
            return true;
        case 1:
            model.Collect();
            model.accepted = CarefulMode != 0;
            demand(PressSheetButton(sheet, nullptr, 1, focused), "Return closes");
            return true;
        case 2: {
            const bool drops = Next() % 2 != 0;
            int asked = 0;
            TheDesktop.RunMessage = [&](MessageRequest &request) {
                ++asked;
                request.result = drops ? ResultNo : ResultCancel;
            };
            const bool asks =
                CarefulMode != 0 && model.isTouched && model.Accepted() != model.original;
            const bool closes = PressSheetButton(sheet, nullptr, 2, 2);
            demand(asked == (asks ? 1 : 0), "careful mode asks about edits, and nothing else does");
            demand(closes == (!asks || drops), "Cancel closes unless the user would rather go on");
            TheDesktop.RunMessage = nullptr;
            return closes;
        }
        case 3:
            demand(!PressSheetButton(sheet, nullptr, 9, 9), "Help keeps the sheet open");
            return false;
        default:
            model.Collect();
            demand(!PressSheetButton(sheet, nullptr, 12321, 12321),
                   "Audition keeps the sheet open");
            demand(played == formerlyPlayed + 1, "Audition plays once");
            return false;
        }
    }

    // Sheets over one voice until the input ends; the number of steps.
    int Run() {
        const Family &family = Families[Next() % 2];
        CarefulMode = Next() % 4 == 0 ? 1 : 0;
        VoiceEditPage = Next() % 10;
        Bytes voice = NextVoice(family);
        FindRows(family);
        int steps = 0;
        do {
            steps += RunSheet(family, voice);
        } while (at < input.size());
        return steps;
    }
};

} // namespace tonewright::sheet_model
