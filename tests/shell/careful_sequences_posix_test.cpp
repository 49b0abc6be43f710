// Commands in random order, against a model of what the user has seen: in careful mode no bank on
// disk is ever replaced by voices that were not seen in the list under its name, unless the user
// chose so in that very step, and no catalogue loses a record. The seed is the one that the test
// program prints.
#include "shell_fixture.h"

#include "common/text.h"
#include "database/database_window.h"
#include "shell/list_origin.h"
#include "shell/synth_selection.h"
#include "support/builtin_midi.h"
#include "support/posix_limits.h"
#include "support/reface_bytes.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <set>

namespace tonewright {
namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;
using Disk = std::map<std::string, Bytes>; // by path

constexpr int Sequences = 100;
constexpr int StepsOfSequence = 40;

constexpr std::size_t Dx7BlockSize = 52 + 156;
constexpr std::size_t Dx7NameInBlock = 52 + 145;
constexpr std::size_t RefaceNameInBlock = 52;

constexpr std::size_t Dx7NameInFile(std::size_t voice) {
    return 6 + 128 * voice + 118;
}

// Ten characters that no other voice has.
std::string NewName() {
    static int last = 0;
    return FormatText("%010d", ++last);
}

void PutNewName(Bytes &bytes, std::size_t place) {
    std::ranges::copy(NewName(), bytes.begin() + static_cast<std::ptrdiff_t>(place));
}

Bytes NewDx7Bank() {
    Bytes file = TestBank();
    for (std::size_t voice = 0; voice < 32; ++voice) {
        PutNewName(file, Dx7NameInFile(voice));
    }
    FixTestChecksum(file);
    return file;
}

Bytes NewRefaceBank(int voices = 32) {
    Bytes file = TestRefaceBank(voices);
    for (std::size_t voice = 0; voice < static_cast<std::size_t>(voices); ++voice) {
        PutNewName(file, 160 + 202 * voice + RefaceNameInBlock);
    }
    return file;
}

// The blocks of the list, one behind the other, as many as files and levels of undo keep.
Bytes BlocksOfList() {
    Bytes blocks;
    for (int row = 0; row < std::min(32, ListCount(MainList)); ++row) {
        const Bytes &block = MainList.items[static_cast<std::size_t>(row)].bytes;
        blocks.insert(blocks.end(), block.begin(), block.end());
    }
    return blocks;
}

// Whether a file is a bank of these voices, by its bytes and theirs alone.
bool IsBankOf(const Bytes &file, const Bytes &blocks) {
    if (file.size() == 160 + 32 * 202) {
        return blocks.size() == 32 * 202 && blocks[16] == 'x' &&
               std::equal(file.begin() + 160, file.end(), blocks.begin());
    }
    if (file.size() != 4104 || blocks.size() != 32 * Dx7BlockSize) {
        return false;
    }
    for (std::size_t voice = 0; voice < 32; ++voice) {
        const auto name =
            blocks.begin() + static_cast<std::ptrdiff_t>(voice * Dx7BlockSize + Dx7NameInBlock);
        if (!std::equal(name, name + 10,
                        file.begin() + static_cast<std::ptrdiff_t>(Dx7NameInFile(voice)))) {
            return false;
        }
    }
    return true;
}

// The records of a catalogue, or the whole file when it is none.
Bytes RecordsOf(const Bytes &file) {
    const std::string magic = "TnwrTWdb";
    return file.size() >= 152 && std::equal(magic.begin(), magic.end(), file.begin())
               ? Bytes(file.begin() + 152, file.end())
               : file;
}

class CarefulSequences : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        formerFolder = fs::current_path();
        fs::current_path(home.path);
        fs::create_directory(CatalogueFolder());
        RememberFileHistoryCount = 0;
        SelectKeyboardAutodetect = 1;
        TheDatabaseViews.ShowBox = [this](QWidget *, DatabaseWindow &window) {
            OpenDatabaseWindow(window, nullptr);
            ListSelect(window.records, Any(4));
            const auto result = AcceptDatabaseWindow(window);
            CloseDatabaseWindow(window);
            return result.value_or(0);
        };
        TheDesktop.RunMessage = [this](MessageRequest &request) { Answer(request); };
        TheDesktop.ChooseSaveFile = [this](QWidget *, const std::string &, std::uint32_t) {
            return ChooseName();
        };
        TheDesktop.ChooseImportFile = [this](QWidget *, const std::string &, std::uint32_t) {
            return Any(2) ? std::optional(home.File("voice.sy1")) : std::nullopt;
        };
        TheShellWindow.ShowSelectSynthBox = [this] {
            SynthSelection selection = OpenSynthSelection(CurrentSelectParams());
            selection.synths.selected = Any(static_cast<int>(selection.synths.items.size()));
            return Any(4) ? AcceptSynthSelection(selection, CurrentSelectParams()) : 0;
        };
    }
    void TearDown() override {
        fs::current_path(formerFolder);
        ShellTest::TearDown();
    }

    // What can be lost, with the steps that led to it for the first time.
    using Losses = std::map<std::string, std::string>;

    // Ends when so many of them were found.
    Losses RunSequences(std::size_t enough) {
        const int seed = testing::UnitTest::GetInstance()->random_seed();
        for (int sequence = 0; sequence < Sequences && losses.size() < enough; ++sequence) {
            steps = FormatText("seed %d, sequence %d:\n", seed, sequence);
            chance.seed(static_cast<unsigned>(seed * 1000 + sequence));
            Begin();
            for (int step = 0; step < StepsOfSequence; ++step) {
                Step();
            }
        }
        return losses;
    }

private:
    int Any(int count) { return std::uniform_int_distribution<int>(0, count - 1)(chance); }
    // Of one that holds something.
    template <typename Container> auto AnyOf(const Container &items) {
        return *std::next(std::begin(items), Any(static_cast<int>(std::size(items))));
    }

    // ---- what the user answers

    void Answer(MessageRequest &request) {
        constexpr int answers[] = {ResultYes, ResultNo, ResultCancel};
        request.result = answers[Any((request.flags & MessageFlagButton3) ? 3 : 2)];
        if (request.text == SaveQuestion && request.result == ResultYes) {
            toBeSaved = BlocksOfList();
        }
        if (request.button2 == "Replace" && request.result == ResultNo) {
            chosen = CurrentDocumentPath;
        }
        // The voices that a bank has no room for are given up, unless another name was chosen.
        if (request.text.ends_with("save the others?") && request.result == ResultYes &&
            chosen.empty()) {
            chosen = CurrentDocumentPath;
        }
    }
    std::optional<std::string> ChooseName() {
        if (Any(4) == 0) {
            return std::nullopt;
        }
        chosen = home.File(FormatText("chosen %d.%s", Any(4), BankExtension(CurrentDriverId)));
        return chosen;
    }

    // ---- the steps

    struct Action {
        const char *name;
        void (CarefulSequences::*run)();
    };
    void Step() {
        static constexpr Action actions[] = {
            {"open a DX7 bank", &CarefulSequences::OpenDx7},
            {"open a reface DX bank", &CarefulSequences::OpenReface},
            {"open any file", &CarefulSequences::OpenAny},
            {"open a bad file", &CarefulSequences::OpenBad},
            {"open a longer file", &CarefulSequences::OpenLonger},
            {"download", &CarefulSequences::Download},
            {"undo", &CarefulSequences::Undo},
            {"undo", &CarefulSequences::Undo},
            {"select", &CarefulSequences::Select},
            {"find", &CarefulSequences::Find},
            {"save", &CarefulSequences::Save},
            {"save", &CarefulSequences::Save},
            {"save", &CarefulSequences::Save},
            {"save as", &CarefulSequences::SaveAs},
            {"clear", &CarefulSequences::Clear},
            {"exit", &CarefulSequences::Exit},
            {"rename", &CarefulSequences::Rename},
            {"move", &CarefulSequences::Move},
            {"import", &CarefulSequences::Import},
            {"add to the catalogue", &CarefulSequences::AddToCatalogue},
            {"add on a full disk", &CarefulSequences::AddOnFullDisk},
            {"insert from the catalogue", &CarefulSequences::InsertFromCatalogue},
            {"another file as the catalogue", &CarefulSequences::PutNoCatalogue},
            {"another program writes", &CarefulSequences::WriteByAnother},
        };
        const Action action = AnyOf(actions);
        chosen.clear();
        toBeSaved.clear();
        opened.clear();
        isOpen = isNew = isUndone = false;
        before = ReadDisk(home.path);
        cataloguesBefore = ReadDisk(CatalogueFolder());
        listBefore = BlocksOfList();
        documentBefore = CurrentDocumentPath;
        closes = 0;
        (this->*action.run)();
        steps += FormatText("  %s -> %s, %d voices\n", action.name,
                            FileNameOfPath(CurrentDocumentPath.c_str()), ListCount(MainList));
        LookForLosses();
        FollowList();
        if (closes > 0) {
            StartAgain();
        }
    }

    // A file of somebody else's.
    std::string Put(const std::string &name, const Bytes &bytes) {
        const std::string path = home.Write(name, bytes);
        before[path] = bytes;
        known.erase(path);
        return path;
    }
    std::string PutIfMissing(const std::string &name, const Bytes &bytes) {
        return home.Holds(name) ? home.File(name) : Put(name, bytes);
    }
    void Open(const std::string &path) {
        isOpen = true;
        PendingOpenPath = path;
        if (RunUserCommand(CommandOpen)) {
            opened = path;
            isNew = true;
        }
        PendingOpenPath.clear();
    }
    void OpenDx7() { Open(PutIfMissing(FormatText("dx %d.syx", Any(3)), NewDx7Bank())); }
    void OpenReface() { Open(PutIfMissing(FormatText("reface %d.srx", Any(3)), NewRefaceBank())); }
    void OpenAny() {
        if (!before.empty()) {
            Open(AnyOf(before).first);
        }
    }
    void OpenBad() {
        Bytes cut = NewRefaceBank();
        cut.resize(cut.size() - 202);
        const Bytes text = {'n', 'o', ' ', 'b', 'a', 'n', 'k'};
        switch (Any(4)) {
        case 0:
            return Open(home.File("missing.syx"));
        case 1:
            return Open(Put("text.srx", text));
        case 2:
            return Open(Put("text.syx", text));
        default:
            return Open(Put("cut.srx", cut));
        }
    }
    void OpenLonger() {
        Bytes file = NewDx7Bank();
        const Bytes second = NewDx7Bank();
        file.insert(file.end(), second.begin(), second.end());
        Open(Any(2) ? Put("two banks.syx", file) : Put("33 voices.srx", NewRefaceBank(33)));
    }
    void Download() { isNew = RunUserCommand(CommandDownload) != 0; }
    void Undo() { isUndone = RunUserCommand(CommandUndo) != 0; }
    void Select() { RunUserCommand(CommandSelectSynth); }
    void Find() {
        SelectKeyboardMidiIn = SelectKeyboardMidiOut = Any(2) ? "DX7" : "no such port";
        RunUserCommand(CommandFind);
    }
    void Save() { RunUserCommand(CommandSave); }
    void SaveAs() { RunUserCommand(CommandSaveAs); }
    void Clear() { RunCommand(CommandClear); }
    void Exit() { RunUserCommand(CommandExit); }
    void Rename() {
        UndoPush(nullptr, MainList);
        const bool isChanged = ListWriteVoice(MainList, Any(32), [](VoiceObject &voice) {
            PutNewName(voice.bytes,
                       voice.bytes.size() == Dx7BlockSize ? Dx7NameInBlock : RefaceNameInBlock);
        });
        if (isChanged) {
            MainListChanged(0);
        }
    }
    void Move() {
        const int row = Any(31);
        if (row + 1 < ListCount(MainList)) {
            MainListState.clickedIndex = row;
            RunCommand(CommandMoveDown);
        }
    }
    void Import() {
        const int row = Any(32);
        if (row < ListCount(MainList)) {
            MainListState.clickedIndex = row;
            RunCommand(CommandImport);
        }
    }
    void AddToCatalogue() {
        MainListState.clickedIndex = ListCount(MainList) > 0 ? Any(ListCount(MainList)) : NoRow;
        desktop.shiftDown = Any(3) == 0;
        RunUserCommand(CommandAddToDatabase);
    }
    void AddOnFullDisk() {
        const auto path = CatalogueFolder() / ("Voices." + Extension());
        const std::uintmax_t size = fs::exists(path) ? fs::file_size(path) : 0;
        const FileSizeLimit limited(size + static_cast<rlim_t>(Any(446)));
        AddToCatalogue();
    }
    void InsertFromCatalogue() {
        const int row = Any(32);
        if (row < ListCount(MainList)) {
            MainListState.clickedIndex = row;
            RunUserCommand(CommandInsertFromDatabase);
        }
    }
    // Where there is no catalogue; the next time it is taken away again.
    void PutNoCatalogue() {
        const std::string path = (CatalogueFolder() / ("Voices." + Extension())).string();
        const Bytes text = {'n', 'o', ' ', 'd', 'a', 't', 'a'};
        const auto there = cataloguesBefore.find(path);
        if (there == cataloguesBefore.end()) {
            WriteTestFile(path, text);
            cataloguesBefore[path] = text;
        } else if (there->second == text) {
            fs::remove(path);
            cataloguesBefore.erase(there);
        }
    }
    void WriteByAnother() {
        if (before.empty()) {
            return;
        }
        const std::string name = fs::path(AnyOf(before).first).filename().string();
        Put(name, name.ends_with(".srx") ? NewRefaceBank() : NewDx7Bank());
    }

    // ---- the model

    // Lists that are one in the eyes of the user have a number in common: all that edits make of
    // one that was read or downloaded. Undo brings a content back with the numbers that it had.
    using Numbers = std::set<int>;

    void Begin() {
        for (const auto &folder : {home.path, CatalogueFolder()}) {
            for (const auto &[path, bytes] : ReadDisk(folder)) {
                fs::remove(path);
            }
        }
        home.Write("voice.sy1", TestVoiceFile());
        home.Write("Untitled.Twl", NewDx7Bank());
        CurrentDriverId = Dx7DriverId;
        StartAgain();
    }
    void StartAgain() {
        UndoEnd();
        UndoInit(nullptr);
        ListReset(MainList);
        MainListState = {};
        CurrentDocumentPath = "Untitled.Twl";
        TheDocumentFile = {};
        RefreshCommands();
        known.clear();
        numbersOf.clear();
        now.clear();
    }
    fs::path CatalogueFolder() const { return home.path / "My Tonewright 17 Documents"; }
    // Of the catalogues of the current family.
    static std::string Extension() {
        return CurrentDriverId == RefaceDriverId ? "srx_db" : "syx_db";
    }
    // All banks of a folder, or all catalogues, by their paths.
    static Disk ReadDisk(const fs::path &folder) {
        Disk disk;
        for (const auto &entry : fs::directory_iterator(folder)) {
            const std::string path = entry.path().string();
            if (entry.is_regular_file() && !path.ends_with(".sy1")) {
                Bytes &bytes = disk[path];
                bytes.resize(entry.file_size());
                std::ifstream(path, std::ios::binary)
                    .read(reinterpret_cast<char *>(bytes.data()),
                          static_cast<std::streamsize>(bytes.size()));
            }
        }
        return disk;
    }

    static bool HaveCommon(const Numbers &a, const Numbers &b) {
        return std::ranges::any_of(a, [&b](int number) { return b.contains(number); });
    }
    void LookForLosses() {
        const Bytes written = toBeSaved.empty() ? BlocksOfList() : toBeSaved;
        const Numbers &numbers = numbersOf[written];
        const Disk disk = ReadDisk(home.path);
        bool isSomewhere = toBeSaved.empty();
        for (const auto &[path, bytes] : disk) {
            const auto former = before.find(path);
            const bool isListed = IsBankOf(bytes, written);
            isSomewhere = isSomewhere || isListed;
            if (former != before.end() && former->second == bytes) {
                continue;
            }
            if (!isListed) {
                Tell("other voices than those of the list");
            } else if (former != before.end() && path != chosen &&
                       !HaveCommon(known[path], numbers)) {
                Tell("a bank that was not seen");
            }
        }
        for (const auto &[path, bytes] : before) {
            if (!disk.contains(path)) {
                Tell("a bank that is gone");
            }
        }
        const Disk catalogues = ReadDisk(CatalogueFolder());
        for (const auto &[path, bytes] : cataloguesBefore) {
            const auto there = catalogues.find(path);
            const Bytes records = RecordsOf(bytes);
            const Bytes now = there == catalogues.end() ? Bytes() : RecordsOf(there->second);
            if (!std::equal(records.begin(), records.end(), now.begin(),
                            now.begin() + std::min(std::ssize(records), std::ssize(now)))) {
                Tell(records == bytes ? "a file in the place of a catalogue"
                                      : "records of a catalogue");
            }
        }
        const bool hasGoneOn = closes > 0 || BlocksOfList() != toBeSaved;
        if (!isSomewhere && hasGoneOn) {
            Tell("a list that was to be saved");
        }
        for (const std::string &path : {documentBefore, chosen}) {
            const auto there = disk.find(path);
            if (there != disk.end() && IsBankOf(there->second, written)) {
                known[path] = numbers;
            }
        }
    }
    void FollowList() {
        static int lastNumber = 0;
        const Bytes blocks = BlocksOfList();
        if (isNew || blocks.empty() || (isOpen && blocks != listBefore)) {
            now = {++lastNumber};
        } else if (isUndone) {
            now = numbersOf[blocks];
        }
        numbersOf[blocks].insert(now.begin(), now.end());
        if (!opened.empty()) {
            const auto size = fs::file_size(opened);
            known[opened] = size <= 4104 || size == 160 + 32 * 202 ? now : Numbers();
        }
    }
    void Tell(const std::string &loss) { losses.try_emplace(loss, steps); }

    fs::path formerFolder;
    BuiltinMidi midi;
    std::mt19937 chance;
    std::string steps;
    Losses losses;

    // Of the step.
    Disk before, cataloguesBefore;
    Bytes listBefore;
    std::string documentBefore;
    std::string chosen; // the path whose bank the user gave up
    Bytes toBeSaved;    // the list as it was when the user wished to have it saved
    std::string opened;
    bool isOpen = false, isNew = false, isUndone = false;

    std::map<std::string, Numbers> known; // of the list that a file was seen as, by its path
    std::map<Bytes, Numbers> numbersOf;
    Numbers now; // of the list
};

TEST_F(CarefulSequences, LoseNothingInCarefulMode) {
    CarefulMode = 1;
    for (const auto &[loss, way] : RunSequences(1)) {
        ADD_FAILURE() << "lost: " << loss << "\n" << way;
    }
}

// The test would see what is lost.
TEST_F(CarefulSequences, LoseAllThatIsLookedForWithTheModeOff) {
    const std::set<std::string> kinds = {"other voices than those of the list",
                                         "a bank that was not seen",
                                         "a bank that is gone",
                                         "a list that was to be saved",
                                         "records of a catalogue",
                                         "a file in the place of a catalogue"};
    const Losses losses = RunSequences(kinds.size());
    for (const std::string &kind : kinds) {
        EXPECT_TRUE(losses.contains(kind)) << kind;
    }
}

} // namespace
} // namespace tonewright
