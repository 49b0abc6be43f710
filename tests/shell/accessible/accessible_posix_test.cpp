// What those hear who do not see the window: the real program on a desktop of its own, asked over
// the bus of the screen readers.
#include "accessible_bus_posix.h"
#include "support/bank_bytes.h"
#include "support/family_names.h"
#include "support/paths.h"
#include "support/reface_bytes.h"
#include "support/run_program.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <algorithm>
#include <filesystem>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;
using namespace std::chrono_literals;

// A machine that has much else to do gets all the time that it needs.
constexpr auto LongTime = 60s;

bool IsTextWithFocus(const AccessibleNode &node) {
    return node.role == Role::Text && node.Has(State::Focused);
}

class AccessibleProgram : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(MakeDesktop());
        Open("first.syx", TestBank(), {std::string("SelectKeyboardName = ") + Dx7Name});
    }

    void MakeDesktop() {
        ASSERT_TRUE(bus.Start()) << "no X server, or no bus";
        program.emplace(bus.display);
    }
    // Starts the program on a file of that name and waits until its voices are in the list.
    void Open(const std::string &name, const Bytes &content, const Strings &settings) {
        bank = program->home.Write(name, content);
        Strings environment = bus.Environment();
        environment.push_back("TONEWRIGHT_INSTRUMENTS=1");
        program->Start({bank}, settings, environment);
        ASSERT_TRUE(Becomes([&] { return program->Stands(name); }, LongTime));
        ASSERT_TRUE(Becomes(
            [&] {
                application = bus.Application("Tonewright");
                return application && Rows().size() == 32;
            },
            LongTime));
    }

    AccessibleNode Tree() const { return bus.Tree(*application); }
    // The list and its rows; nothing while there is no list.
    AccessibleNode List() const {
        const AccessibleNode tree = Tree();
        const AccessibleNode *list = tree.Find(Role::List, "Voices");
        return list ? *list : AccessibleNode{};
    }
    std::vector<AccessibleNode> Rows() const { return List().children; }
    // The rows that are selected.
    std::vector<int> Selected() const {
        std::vector<int> rows;
        const auto all = Rows();
        for (std::size_t row = 0; row < all.size(); ++row) {
            if (all[row].Has(State::Selected)) {
                rows.push_back(static_cast<int>(row));
            }
        }
        return rows;
    }
    bool BecomesSelected(int row) const {
        return Becomes([&] { return Selected() == std::vector{row}; }, LongTime);
    }
    // A dialog whose title begins so, once it stands and is at rest.
    std::optional<AccessibleNode> Dialog(const QString &title) const {
        std::optional<AccessibleNode> dialog;
        Becomes(
            [&] {
                const AccessibleNode tree = Tree();
                const auto found = tree.FindAll([&](const AccessibleNode &node) {
                    return node.role == Role::Dialog && node.name.startsWith(title);
                });
                const bool stands =
                    !found.empty() && dialog && found.front()->Text() == dialog->Text();
                dialog = found.empty() ? std::nullopt : std::optional(*found.front());
                return stands;
            },
            LongTime);
        return dialog;
    }
    bool NoDialogStands() const {
        return Becomes([&] { return !Tree().Find(Role::Dialog); }, LongTime);
    }
    void ChooseEntry(const QString &name) const {
        const AccessibleNode tree = Tree();
        const AccessibleNode *entry = tree.Find(Role::MenuItem, name);
        ASSERT_NE(entry, nullptr) << name.toStdString();
        EXPECT_TRUE(bus.Act(entry->at, "Press"));
    }
    // A click of the mouse into the middle of a thing, or more of them.
    void Click(const Accessible &at, int times = 1) const {
        const ScreenPlace place = bus.PlaceOf(at);
        ASSERT_GT(place.width, 0);
        EXPECT_TRUE(bus.display.Tool({"mousemove", std::to_string(place.x + place.width / 2),
                                      std::to_string(place.y + place.height / 2), "click",
                                      "--delay", "20", "--repeat", std::to_string(times), "1"}));
    }
    // Clicks into the box of a number and types another one.
    void TypeInto(const AccessibleNode &dialog, const QString &name, const char *text) const {
        const AccessibleNode *edit = dialog.Find(Role::Text, name);
        ASSERT_NE(edit, nullptr) << name.toStdString() << "\n" << dialog.Text();
        Click(edit->at);
        ASSERT_TRUE(Becomes([&] { return bus.Node(edit->at).Has(State::Focused); }, LongTime));
        EXPECT_TRUE(bus.display.Tool({"key", "ctrl+a", "type", "--delay", "5", text}));
    }
    void ClickButton(const AccessibleNode &dialog, const QString &name) const {
        const AccessibleNode *button = dialog.Find(Role::PushButton, name);
        ASSERT_NE(button, nullptr) << name.toStdString() << "\n" << dialog.Text();
        Click(button->at);
    }
    // Saves the bank until its file is whole and another one than `before`.
    bool SaveAsAnother(const Bytes &before) const {
        return Becomes(
            [&] {
                const bool isPressed = program->Press({"ctrl+s"});
                const Bytes now = ReadTestFile(bank);
                return isPressed && now.size() == before.size() && now != before;
            },
            LongTime);
    }
    // What `show` says of a voice of the bank, from 1.
    std::string Shown(int place) const {
        const ProgramResult result =
            RunProgram({"/usr/bin/env", "HOME=" + program->home.path.string(),
                        "XDG_CONFIG_HOME=" + program->home.File(".config"), CliProgram(), "show",
                        bank, std::to_string(place)});
        EXPECT_EQ(result.exitStatus, 0) << result.errors;
        return result.output;
    }
    // Whether the bus has told that of a thing since the events were cleared.
    bool IsTold(const QString &kind, const QString &detail, int number, const Accessible &source) {
        return Becomes(
            [&] {
                bus.Hear();
                return std::ranges::any_of(bus.events, [&](const AccessibleBus::Event &event) {
                    return event.kind == kind && event.detail == detail && event.number == number &&
                           event.source == source;
                });
            },
            LongTime);
    }

    // Everything that can be operated has a name of its own, or a label beside it.
    void ExpectNamesOf(const AccessibleNode &root) const {
        for (const AccessibleNode *node :
             root.FindAll([](const AccessibleNode &) { return true; })) {
            EXPECT_FALSE(node->name.contains('&')) << node->name.toStdString();
            EXPECT_FALSE(node->description.contains('&')) << node->description.toStdString();
            switch (node->role) {
            case Role::CheckBox:
            case Role::ListItem:
            case Role::MenuItem:
            case Role::PageTab:
            case Role::PushButton:
            case Role::ScrollBar:
            case Role::Text:
                EXPECT_NE(node->name, "") << root.Text();
                break;
            case Role::ComboBox: // whose name is what is chosen in it
                EXPECT_TRUE(bus.IsLabelled(node->at)) << root.Text();
                break;
            default:
                break;
            }
        }
    }

    int argumentCount = 0;
    QCoreApplication events{argumentCount, nullptr};
    AccessibleBus bus;
    std::optional<ProgramOnDisplay> program;
    std::string bank; // path of the document
    std::optional<Accessible> application;
};

TEST_F(AccessibleProgram, AWindowWithItsBarsEntriesAndButtonsByName) {
    const AccessibleNode tree = Tree();
    EXPECT_EQ(tree.role, Role::Application);
    ASSERT_EQ(tree.children.size(), 1u);
    const AccessibleNode &window = tree.children.front();
    EXPECT_EQ(window.role, Role::Frame);
    EXPECT_EQ(window.name, "Tonewright [ first.syx ]");
    ExpectNamesOf(tree);
    EXPECT_NE(tree.Find(Role::StatusBar, Dx7Name), nullptr) << tree.Text();
    EXPECT_NE(tree.Find(Role::MenuItem, "Configure synthesizer"), nullptr) << tree.Text();
    const AccessibleNode *bar = tree.Find(Role::ToolBar, "Tool bar");
    ASSERT_NE(bar, nullptr) << tree.Text();
    std::vector<QString> tools;
    for (const AccessibleNode &tool : bar->children) {
        EXPECT_EQ(tool.role, Role::PushButton) << tool.Text();
        tools.push_back(tool.name);
    }
    EXPECT_EQ(tools, (std::vector<QString>{"Open", "Save", "Upload current voices",
                                           "Download current voices", "Undo", "Manual", "Settings",
                                           "Exit"}));
    EXPECT_EQ(bar->children.front().description, "Loads a document from disk");
    EXPECT_FALSE(bar->children[4].Has(State::Enabled)) << "there is nothing to undo";
}

TEST_F(AccessibleProgram, TheRowsOfTheListByPlaceNameAndAlgorithm) {
    const AccessibleNode list = List();
    EXPECT_TRUE(list.Has(State::Enabled));
    ASSERT_EQ(list.children.size(), 32u);
    for (int row = 0; row < 32; ++row) {
        const AccessibleNode &item = list.children[static_cast<std::size_t>(row)];
        EXPECT_EQ(item.role, Role::ListItem);
        EXPECT_EQ(item.name.toStdString(), "Voice " + std::to_string(row + 1) + ", " +
                                               TestVoiceName(row) + ", algorithm " +
                                               std::to_string(row + 1));
        EXPECT_EQ(item.Has(State::Selected), row == 0) << row;
        EXPECT_EQ(item.Has(State::Focused), row == 0) << row;
    }
}

TEST_F(AccessibleProgram, SelectionAndFocusAreToldAsTheyMove) {
    ASSERT_TRUE(Becomes([&] { return program->Press({"Home"}); }, LongTime));
    ASSERT_TRUE(BecomesSelected(0));
    const auto rows = Rows();
    bus.Hear();
    bus.events.clear();
    ASSERT_TRUE(program->Press({"Down"}));
    EXPECT_TRUE(IsTold("StateChanged", "selected", 0, rows[0].at));
    EXPECT_TRUE(IsTold("StateChanged", "selected", 1, rows[1].at));
    EXPECT_TRUE(IsTold("StateChanged", "focused", 1, rows[1].at));
    EXPECT_TRUE(BecomesSelected(1));
    EXPECT_TRUE(Rows()[1].Has(State::Focused));

    // A reader selects as the user does.
    EXPECT_TRUE(bus.SelectRow(List().at, 20));
    EXPECT_TRUE(BecomesSelected(20));
    ASSERT_TRUE(program->Press({"Up"}));
    EXPECT_TRUE(BecomesSelected(19));

    // A row that gets another voice has another name.
    bus.Hear();
    bus.events.clear();
    ASSERT_TRUE(program->Press({"ctrl+c", "Home"}));
    ASSERT_TRUE(BecomesSelected(0));
    EXPECT_TRUE(Becomes(
        [&] {
            return program->Press({"ctrl+v"}) &&
                   Becomes([&] { return Rows()[0].name == "Voice 1, VOICE 20, algorithm 20"; }, 2s);
        },
        LongTime));
    EXPECT_TRUE(IsTold("PropertyChange", "accessible-name", 0, Rows()[0].at));
}

TEST_F(AccessibleProgram, EveryControlOfADialogHasALabel) {
    const std::pair<const char *, const char *> dialogs[] = {
        {"Select synthesizer", "Select Synthesizer"},
        {"MIDI devices", "MIDI Devices"},
        {"Settings", "Settings"},
        {"About", "About Tonewright"},
    };
    for (const auto &[entry, title] : dialogs) {
        ChooseEntry(entry);
        const auto dialog = Dialog(title);
        ASSERT_TRUE(dialog) << title;
        ExpectNamesOf(*dialog);
        const auto last = dialog->FindAll([](const AccessibleNode &node) {
            return node.role == Role::PushButton &&
                   (node.name == "Cancel" || node.name == "Close" || node.name == "Dismiss");
        });
        ASSERT_FALSE(last.empty()) << dialog->Text();
        EXPECT_TRUE(bus.Act(last.back()->at, "Press"));
        ASSERT_TRUE(NoDialogStands()) << title;
    }
}

TEST_F(AccessibleProgram, TheKeysOfTheAuditionBoxAreButtonsThatCanBePressed) {
    const ScreenPlace row = bus.PlaceOf(Rows()[2].at);
    ASSERT_GT(row.width, 0);
    ASSERT_TRUE(bus.display.Tool({"mousemove", std::to_string(row.x + row.width / 2),
                                  std::to_string(row.y + row.height / 2), "click", "2"}));
    const auto box = Dialog("Audition VOICE 03");
    ASSERT_TRUE(box);
    ExpectNamesOf(*box);
    const AccessibleNode *keyboard = box->Find(Role::Panel, "Keyboard");
    ASSERT_NE(keyboard, nullptr) << box->Text();
    ASSERT_EQ(keyboard->children.size(), 24u);
    for (const AccessibleNode &key : keyboard->children) {
        EXPECT_EQ(key.role, Role::PushButton) << key.Text();
    }
    EXPECT_EQ(keyboard->children[0].name, "C3");
    EXPECT_EQ(keyboard->children[1].name, "C sharp 3");
    EXPECT_EQ(keyboard->children[23].name, "B4");

    const Accessible key = keyboard->children[1].at;
    EXPECT_EQ(bus.Actions(key), QStringList{"Press"});
    EXPECT_FALSE(bus.Node(key).Has(State::Pressed));
    // It is down for a second, which a loaded machine may miss.
    EXPECT_TRUE(Becomes(
        [&] {
            return bus.Act(key, "Press") &&
                   Becomes([&] { return bus.Node(key).Has(State::Pressed); }, 1s);
        },
        LongTime));
    EXPECT_TRUE(Becomes([&] { return !bus.Node(key).Has(State::Pressed); }, LongTime));
}

TEST_F(AccessibleProgram, AVoiceIsEditedInASheetWhoseControlsHaveNames) {
    const Bytes before = ReadTestFile(bank);
    Click(Rows()[2].at, 2);
    auto sheet = Dialog("Edit Voice");
    ASSERT_TRUE(sheet);
    ExpectNamesOf(*sheet);
    EXPECT_NE(sheet->Find(Role::Graphic, "Algorithm 3"), nullptr) << sheet->Text();
    EXPECT_NE(sheet->Find(Role::Text, "Name:"), nullptr) << sheet->Text();
    EXPECT_NE(sheet->Find(Role::ScrollBar, "LFO speed"), nullptr) << sheet->Text();
    EXPECT_NE(sheet->Find(Role::CheckBox, "Oscillator sync"), nullptr) << sheet->Text();
    EXPECT_NE(sheet->Find(Role::PageTab, "Operator 6"), nullptr) << sheet->Text();
    TypeInto(*sheet, "LFO speed:", "57");

    const AccessibleNode *tab = sheet->Find(Role::PageTab, "Operator 2");
    ASSERT_NE(tab, nullptr) << sheet->Text();
    Click(tab->at);
    ASSERT_TRUE(Becomes(
        [&] {
            sheet = Dialog("Edit Voice");
            return sheet && sheet->Find(Role::Text, "Frequency:");
        },
        LongTime));
    ExpectNamesOf(*sheet);
    TypeInto(*sheet, "Frequency:", "3.50");
    ClickButton(*sheet, "OK");
    ASSERT_TRUE(NoDialogStands());
    EXPECT_EQ(ReadTestFile(bank), before) << "nothing is saved yet";
    ASSERT_TRUE(SaveAsAnother(before));
    const std::string after = Shown(3);
    EXPECT_NE(after.find("\nlfoSpeed\t57\n"), std::string::npos) << after;
    EXPECT_NE(after.find("\noperator2.frequency\t3.50\n"), std::string::npos) << after;
}

TEST_F(AccessibleProgram, ReturnInAValueDropsTheEditsAndInCarefulModeKeepsThem) {
    const Bytes before = ReadTestFile(bank);
    const auto editAndPressReturn = [&] {
        Click(Rows()[2].at, 2);
        const auto sheet = Dialog("Edit Voice");
        ASSERT_TRUE(sheet);
        TypeInto(*sheet, "LFO speed:", "57");
        EXPECT_TRUE(bus.display.Tool({"key", "Return"}));
        ASSERT_TRUE(NoDialogStands());
    };
    ASSERT_NO_FATAL_FAILURE(editAndPressReturn());
    EXPECT_TRUE(program->Press({"ctrl+s"}));
    ChooseEntry("Careful mode");
    EXPECT_EQ(ReadTestFile(bank), before);

    ASSERT_NO_FATAL_FAILURE(editAndPressReturn());
    EXPECT_EQ(ReadTestFile(bank), before);
    ASSERT_TRUE(SaveAsAnother(before));
    EXPECT_NE(Shown(3).find("\nlfoSpeed\t57\n"), std::string::npos);
}

class AccessibleReface : public AccessibleProgram {
protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(MakeDesktop());
        const std::string folder = program->home.File("Documents/My Tonewright 17 Documents");
        std::filesystem::create_directories(folder);
        WriteTestText(folder + "/AutoConfig.crg",
                      ";Quillbrook Tonewright - reface DX "
                      "configuration\nTranspose:70\nTempo1:99\nSpeaker:1\n");
        Open("first.srx", TestRefaceBank(),
             {std::string("SelectKeyboardName = ") + RefaceName, "SelectKeyboardAutodetect = 1"});
    }
    std::optional<AccessibleNode> OpenSettings() const {
        ChooseEntry("Configure synthesizer");
        return Dialog("Configure DX Reface");
    }
};

TEST_F(AccessibleReface, KeepsTheSettingsOfAStartAndThoseOfTheBox) {
    auto box = OpenSettings();
    ASSERT_TRUE(box);
    ExpectNamesOf(*box);
    TypeInto(*box, "LCD Contrast:", "21");
    ClickButton(*box, "OK");
    ASSERT_TRUE(NoDialogStands());

    box = OpenSettings();
    ASSERT_TRUE(box);
    ClickButton(*box, "Save As...");
    const std::string kept = program->home.File("kept.crg");
    ASSERT_TRUE(Becomes([&] { return !Tree().FindAll(IsTextWithFocus).empty(); }, LongTime))
        << "a dialog that asks for a name";
    EXPECT_TRUE(bus.display.Tool({"key", "ctrl+a", "type", "--delay", "5", kept}));
    EXPECT_TRUE(bus.display.Tool({"key", "Return"}));
    std::string text;
    ASSERT_TRUE(Becomes(
        [&] {
            text = program->home.Holds("kept.crg") ? ReadTestText(kept) : "";
            return text.ends_with("\nMIDICtrl:0\n");
        },
        LongTime))
        << text;
    for (const char *line : {"\nTranspose:70\n", "\nTempo1:99\n", "\nSpeaker:1\n",
                             "\nLocalCtrl:0\n", "\nLCDConstrast:21\n"}) {
        EXPECT_NE(text.find(line), std::string::npos) << line << " in\n" << text;
    }
}

} // namespace
} // namespace tonewright
