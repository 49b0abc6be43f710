// What holds for every row of the driver table. What a row leaves out is not asked of it, except of
// the families that are to have everything; it runs over the list of families of each program that
// it is part of.
#include "common/folders.h"
#include "common/settings.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "core/synth_settings.h"
#include "core/undo_level.h"
#include "drivers/family_facts.h"
#include "midi/instruments/builtin_instruments.h"
#include "support/builtin_midi.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>

#include <set>

namespace tonewright {

#define FAMILY(name) extern const FamilyFacts name##Facts;
#include "drivers/families.inc"
#undef FAMILY

namespace {

constexpr const FamilyFacts *Families[] = {
#define FAMILY(name) &name##Facts,
#include "drivers/families.inc"
#undef FAMILY
};

using Strings = std::vector<std::string>;

const FamilyFacts &FactsOf(const SynthDriver &driver) {
    for (const FamilyFacts *facts : Families) {
        if (facts->id == driver.id) {
            return *facts;
        }
    }
    ADD_FAILURE() << driver.name << " has no facts";
    return *Families[0];
}

// The rows that have all of these operations.
template <typename... Operations>
std::vector<const SynthDriver *> DriversWith(Operations... operations) {
    std::vector<const SynthDriver *> drivers;
    for (const SynthDriver *driver : SynthDrivers) {
        if (((driver->*operations) && ...)) {
            drivers.push_back(driver);
        }
    }
    return drivers;
}

// Those among them whose instrument is built in.
template <typename... Operations>
std::vector<const SynthDriver *> PlayedDriversWith(Operations... operations) {
    auto drivers = DriversWith(operations...);
    std::erase_if(drivers, [](const SynthDriver *driver) { return !FactsOf(*driver).instrument; });
    return drivers;
}

// The texts of a filter up to its closing zero byte; fails when it does not end within 200 bytes.
Strings TextsOf(const char *filter) {
    Strings texts;
    const char *place = filter;
    while (*place != 0 && place - filter < 200) {
        texts.emplace_back(place);
        place += texts.back().size() + 1;
    }
    EXPECT_EQ(*place, 0) << "the filter is not closed";
    return texts;
}

Strings FilterFor(const std::string &extension) {
    return extension.empty() ? Strings()
                             : Strings{extension + " files", "*." + extension, "All files", "*.*"};
}

TEST(DriverTable, HoldsTheRowsOfAllFamiliesInTheirOrder) {
    ASSERT_EQ(SynthDrivers.size(), std::size(Families));
    for (std::size_t row = 0; row < SynthDrivers.size(); ++row) {
        const SynthDriver &driver = *SynthDrivers[row];
        const FamilyFacts &expected = *Families[row];
        EXPECT_EQ(driver.id, expected.id);
        EXPECT_STREQ(driver.name, expected.name);
        EXPECT_STREQ(driver.bankExtension, expected.bank);
        EXPECT_STREQ(driver.voiceExtension, expected.voice);
        EXPECT_STREQ(driver.extraExtension, expected.extra);
        EXPECT_STREQ(driver.defaultDocumentName, expected.document);
        EXPECT_EQ(driver.flags, expected.flags);
        EXPECT_EQ(driver.documentPicture, expected.picture);
        EXPECT_EQ(driver.bankRows, expected.bankRows);
    }
}

TEST(DriverTable, EveryIdReadsAsItsFourCharactersFromItsLowByteUp) {
    const auto text = [](DriverId id) {
        std::string characters;
        for (int shift = 0; shift < 32; shift += 8) {
            characters += static_cast<char>(id >> shift & 0xFF);
        }
        return characters;
    };
    for (const SynthDriver *driver : SynthDrivers) {
        EXPECT_EQ(text(driver->id), FactsOf(*driver).idText);
    }
}

TEST(DriverTable, FiltersAreTwoPairsOfTheRowsExtensionAndAllFiles) {
    for (const SynthDriver *driver : SynthDrivers) {
        EXPECT_EQ(TextsOf(driver->bankFilter), FilterFor(driver->bankExtension));
        EXPECT_EQ(TextsOf(driver->voiceFilter), FilterFor(driver->voiceExtension));
        EXPECT_EQ(TextsOf(driver->extraFilter), FilterFor(driver->extraExtension));
    }
}

TEST(DriverTable, NoTwoRowsShareAnIdANameOrAnExtension) {
    Strings texts;
    std::set<DriverId> ids = {NoDriverId};
    for (const SynthDriver *driver : SynthDrivers) {
        EXPECT_TRUE(ids.insert(driver->id).second) << driver->name;
        for (const char *text : {driver->name, driver->bankExtension, driver->voiceExtension,
                                 driver->extraExtension, driver->defaultDocumentName}) {
            if (*text == 0) {
                continue;
            }
            for (const std::string &other : texts) {
                EXPECT_FALSE(EqualNoCase(text, other)) << text;
            }
            texts.push_back(text);
        }
    }
}

TEST(DriverTable, DefaultDocumentsHaveTheRowsBankExtension) {
    for (const SynthDriver *driver : SynthDrivers) {
        EXPECT_EQ(ExtensionOfPath(driver->defaultDocumentName), driver->bankExtension);
    }
}

TEST(DriverTable, CapabilitiesAreTheBitsOfTheRow) {
    for (int index = 0; DriverIdAt(index) != NoDriverId; ++index) {
        const std::uint32_t flags = FactsOf(*SynthDrivers[index]).flags;
        EXPECT_EQ(DriverCanUpload(index), (flags & 0x02) != 0);
        EXPECT_EQ(DriverCanConfigure(index), (flags & 0x08) != 0);
        EXPECT_EQ(DriverCanDownload(index), (flags & 0x10) != 0);
        EXPECT_EQ(DriverCanFind(index), (flags & 0x20) != 0);
    }
}

TEST(DriverTable, SharedOperationsAreTheSame) {
    for (const SynthDriver *driver : DriversWith(&SynthDriver::MakeItemFonts)) {
        EXPECT_EQ(driver->MakeItemFonts, &MakeItemFonts);
    }
    for (const SynthDriver *driver : DriversWith(&SynthDriver::MakeUndoLevel)) {
        EXPECT_EQ(driver->MakeUndoLevel, &MakeUndoLevel);
    }
    for (const SynthDriver *driver : SynthDrivers) {
        if (driver->DatabaseOpen) {
            EXPECT_EQ(driver->DatabaseClose, SynthDrivers[0]->DatabaseClose);
        }
    }
}

TEST(DriverTable, OperationsThatStayEmpty) {
    for (int index = 0; DriverIdAt(index) != NoDriverId; ++index) {
        const SynthDriver &driver = *SynthDrivers[index];
        EXPECT_EQ(driver.reserved, nullptr);
        if (!DriverCanConfigure(index)) {
            EXPECT_EQ(driver.ConfigureSynth, nullptr) << driver.name;
            EXPECT_EQ(driver.AutoConfigure, nullptr) << driver.name;
            EXPECT_EQ(driver.settings, nullptr) << driver.name;
        }
    }
}

TEST(DriverTable, SettingsHaveNamesOfTheirOwnAndAllOperations) {
    for (const SynthDriver *driver : SynthDrivers) {
        if (!driver->settings) {
            continue;
        }
        const SynthSettings &settings = *driver->settings;
        std::set<std::string> names;
        for (const char *name : settings.names) {
            EXPECT_TRUE(names.insert(name).second) << name;
            EXPECT_EQ(std::string_view(name).find_first_of(" =_-"), std::string_view::npos) << name;
        }
        EXPECT_LE(settings.writtenSize, settings.size) << driver->name;
        EXPECT_TRUE(settings.Text && settings.Store && settings.Read && settings.Write &&
                    settings.ReadFile && settings.WriteFile)
            << driver->name;
        std::vector<std::uint8_t> bytes(settings.size);
        for (std::size_t n = 0; n < names.size(); ++n) {
            EXPECT_NE(settings.Text(n, bytes), "") << settings.names[n];
            EXPECT_NE(settings.Store(n, "no such value", bytes), "") << settings.names[n];
        }
        EXPECT_EQ(bytes, std::vector<std::uint8_t>(settings.size));
    }
}

TEST(DriverTable, AWholeFamilyHasTheOperationsOfFilesListAndInstrument) {
    for (const SynthDriver *driver : SynthDrivers) {
        if (!FactsOf(*driver).isWhole) {
            continue;
        }
        EXPECT_TRUE(FactsOf(*driver).instrument) << driver->name;
        EXPECT_NE(driver->bankFormat, nullptr) << driver->name;
        EXPECT_NE(driver->voiceFormat, nullptr) << driver->name;
        EXPECT_NE(driver->MakeItemFonts, nullptr) << driver->name;
        EXPECT_NE(driver->MakeUndoLevel, nullptr) << driver->name;
        for (const char *text : {driver->bankExtension, driver->voiceExtension,
                                 driver->extraExtension, driver->defaultDocumentName}) {
            EXPECT_STRNE(text, "") << driver->name;
        }
        EXPECT_NE(driver->FindSynth, nullptr) << driver->name;
        EXPECT_NE(driver->OpenBank, nullptr) << driver->name;
        EXPECT_NE(driver->SaveBank, nullptr) << driver->name;
        EXPECT_NE(driver->DrawVoiceItem, nullptr) << driver->name;
        EXPECT_NE(driver->UploadBank, nullptr) << driver->name; // offered to the user or not
        EXPECT_NE(driver->UploadVoice, nullptr) << driver->name;
        EXPECT_NE(driver->ImportVoice, nullptr) << driver->name;
        EXPECT_NE(driver->ExportVoice, nullptr) << driver->name;
        EXPECT_NE(driver->VoiceName, nullptr) << driver->name;
        EXPECT_NE(driver->VoiceAlgorithm, nullptr) << driver->name;
        EXPECT_NE(driver->PrintVoice, nullptr) << driver->name;
    }
}

// A voice of the row's family: its name blank, and zeros in its further data.
VoiceObject BlankVoice(const SynthDriver &driver) {
    const FamilyFacts &facts = FactsOf(driver);
    std::vector<std::uint8_t> payload(facts.payloadSize, facts.filler);
    std::fill_n(payload.begin() + static_cast<std::ptrdiff_t>(facts.namePlace), driver.nameSize,
                std::uint8_t{' '});
    const std::vector<std::uint8_t> extra(facts.extraSize);
    return MakeVoiceObject(driver.id, payload, extra);
}

TEST(DriverTable, EveryRowSaysWhatItsFilesAndBanksHold) {
    for (const SynthDriver *driver : DriversWith(&SynthDriver::bankFormat)) {
        EXPECT_EQ(driver->bankFormat->driver, driver->id);
        EXPECT_EQ(driver->bankFormat->kind, VoiceFileKind::Bank) << driver->name;
        EXPECT_EQ(driver->bankFormat->voicesWritten, driver->bankRows) << driver->name;
    }
    for (const SynthDriver *driver : DriversWith(&SynthDriver::voiceFormat)) {
        EXPECT_EQ(driver->voiceFormat->driver, driver->id);
        EXPECT_EQ(driver->voiceFormat->kind, VoiceFileKind::SingleVoice) << driver->name;
        EXPECT_EQ(driver->voiceFormat->voicesWritten, 1) << driver->name;
    }
    for (const SynthDriver *driver : DriversWith(&SynthDriver::VoiceName)) {
        VoiceObject voice = BlankVoice(*driver);
        const std::size_t place = FactsOf(*driver).namePlace;
        std::ranges::fill(MutablePayloadOf(voice).subspan(place), std::uint8_t{'N'});
        std::string name;
        driver->VoiceName(name, voice);
        EXPECT_EQ(name.size(), driver->nameSize) << driver->name;
    }
}

TEST(DriverTable, AVoicesNameIsReadWhateverItsDriverIdAndNotOutOfAPayloadThatIsTooShort) {
    for (const SynthDriver *driver : DriversWith(&SynthDriver::VoiceName)) {
        const FamilyFacts &facts = FactsOf(*driver);
        std::vector<std::uint8_t> payload(facts.payloadSize, facts.filler);
        payload[facts.namePlace] = 'N';
        std::string name;
        EXPECT_EQ(driver->VoiceName(name, MakeVoiceObject(NoDriverId, payload)), 1) << driver->name;
        EXPECT_EQ(name, "N") << driver->name;
        payload.pop_back();
        EXPECT_EQ(driver->VoiceName(name, MakeVoiceObject(driver->id, payload)), 0) << driver->name;
        EXPECT_EQ(name, "N") << driver->name;
    }
}

TEST(DriverTable, EveryRowHasTheTransfersThatItsCapabilitiesPromise) {
    for (int index = 0; DriverIdAt(index) != NoDriverId; ++index) {
        const SynthDriver &driver = *SynthDrivers[index];
        EXPECT_EQ(driver.DownloadBank != nullptr, DriverCanDownload(index)) << driver.name;
        EXPECT_TRUE(driver.UploadBank || !DriverCanUpload(index)) << driver.name;
        EXPECT_TRUE(driver.FindSynth || !DriverCanFind(index)) << driver.name;
    }
}

// The behaviour of the rows on banks of blank voices that the rows save themselves.
class DriverFiles : public testing::Test {
protected:
    void SetUp() override { CreateBackups = 0; }

    std::string BankPath(const SynthDriver &driver) const {
        return folder.File(std::string("bank.") + driver.bankExtension);
    }
    std::string VoicePath(const SynthDriver &driver) const {
        return folder.File(std::string("voice.") + driver.voiceExtension);
    }
    void FillList(const SynthDriver &driver) {
        ListReset(list);
        for (int row = 0; row < driver.bankRows; ++row) {
            ListSetVoice(list, ListAdd(list), BlankVoice(driver));
        }
        ASSERT_EQ(driver.SaveBank(nullptr, list, BankPath(driver).c_str()), 1) << driver.name;
        DriverId id = NoDriverId;
        std::int64_t time = 0;
        ASSERT_EQ(OpenDocument(nullptr, list, BankPath(driver).c_str(), &id, &time), 1)
            << driver.name;
        EXPECT_EQ(id, driver.id);
        EXPECT_GT(time, 1'600'000'000);
    }

    TempFolder folder;
    ScriptedDesktop desktop;
    VoiceList list;
};

TEST_F(DriverFiles, ABankHasTheVoicesOfItsDriverAndItsFirstRowIsSelected) {
    for (const SynthDriver *driver : DriversWith(&SynthDriver::OpenBank, &SynthDriver::SaveBank)) {
        FillList(*driver);
        ASSERT_EQ(ListCount(list), driver->bankRows) << driver->name;
        EXPECT_EQ(list.selection, 0);
        EXPECT_TRUE(list.enabled);
        EXPECT_TRUE(list.redraw);
        EXPECT_EQ(list.itemHeight, 48);
        EXPECT_EQ(MainItemFonts.itemHeight, 48);
        for (int row = 0; row < driver->bankRows; ++row) {
            const VoiceObject *voice = ListVoice(list, row);
            ASSERT_NE(voice, nullptr);
            EXPECT_TRUE(PayloadOf(*voice));
            EXPECT_EQ(HeaderOf(*voice)->payloadOffset, 52u);
            EXPECT_EQ(HeaderOf(*voice)->driverId, driver->id);
            EXPECT_EQ(std::vector(voice->bytes.begin() + 20, voice->bytes.begin() + 52),
                      std::vector<std::uint8_t>(32));
        }
        const std::size_t size = list.items[0].bytes.size();
        const FamilyFacts &facts = FactsOf(*driver);
        EXPECT_EQ(size, 52 + facts.payloadSize + facts.extraSize) << driver->name;
        if (driver->MakeUndoLevel) {
            EXPECT_EQ(driver->MakeUndoLevel(nullptr, list).size(),
                      36 + static_cast<std::size_t>(driver->bankRows) * size)
                << driver->name;
        }
    }
}

TEST_F(DriverFiles, AMissingFileFailsWithoutAQuestionAndLeavesTheList) {
    for (const SynthDriver *driver :
         DriversWith(&SynthDriver::OpenBank, &SynthDriver::SaveBank, &SynthDriver::ImportVoice)) {
        FillList(*driver);
        const auto before = list.items;
        std::int64_t time = 0;
        VoiceObject out;
        const std::string bank = folder.File("missing." + std::string(driver->bankExtension));
        const std::string voice = folder.File("missing." + std::string(driver->voiceExtension));
        EXPECT_EQ(driver->OpenBank(nullptr, list, bank.c_str(), &time), 0) << driver->name;
        EXPECT_EQ(driver->ImportVoice(nullptr, list, 0, voice.c_str(), nullptr), 0);
        EXPECT_EQ(driver->ImportVoice(nullptr, list, 0, voice.c_str(), &out), 0);
        EXPECT_EQ(out, VoiceObject{});
        EXPECT_EQ(list.items, before) << driver->name;
    }
}

TEST_F(DriverFiles, AnEmptyFileAndAFolderFailLikewise) {
    for (const SynthDriver *driver :
         DriversWith(&SynthDriver::OpenBank, &SynthDriver::SaveBank, &SynthDriver::ImportVoice)) {
        FillList(*driver);
        const auto before = list.items;
        std::int64_t time = 0;
        folder.WriteText("empty", "");
        std::filesystem::create_directory(folder.path / "folder");
        for (const char *name : {"empty", "folder"}) {
            EXPECT_EQ(driver->OpenBank(nullptr, list, folder.File(name).c_str(), &time), 0);
            EXPECT_EQ(driver->ImportVoice(nullptr, list, 0, folder.File(name).c_str(), nullptr), 0);
        }
        EXPECT_EQ(list.items, before) << driver->name;
    }
}

TEST_F(DriverFiles, AFolderThatDoesNotExistTakesNoFile) {
    for (const SynthDriver *driver :
         DriversWith(&SynthDriver::OpenBank, &SynthDriver::SaveBank, &SynthDriver::ExportVoice)) {
        FillList(*driver);
        const std::string path = folder.File("gone/file");
        EXPECT_EQ(driver->SaveBank(nullptr, list, path.c_str()), 0) << driver->name;
        EXPECT_EQ(driver->ExportVoice(nullptr, list, nullptr, path.c_str(), 0, 0), 0);
        EXPECT_FALSE(folder.Holds("gone"));
    }
}

TEST_F(DriverFiles, AnExportedVoiceImportsIntoItsOwnRowOnly) {
    for (const SynthDriver *driver :
         DriversWith(&SynthDriver::OpenBank, &SynthDriver::SaveBank, &SynthDriver::ImportVoice,
                     &SynthDriver::ExportVoice)) {
        FillList(*driver);
        const auto before = list.items;
        const std::string path = VoicePath(*driver);
        ASSERT_EQ(driver->ExportVoice(nullptr, list, nullptr, path.c_str(), 4, 0), 1);
        MutablePayloadOf(list.items[7])[0] ^= 1;
        EXPECT_EQ(driver->ImportVoice(nullptr, list, 7, path.c_str(), nullptr), 1);
        EXPECT_EQ(list.items, before) << driver->name;
        VoiceObject out;
        EXPECT_EQ(driver->ImportVoice(nullptr, list, 7, path.c_str(), &out), 1);
        EXPECT_EQ(out, before[4]) << driver->name;
        EXPECT_EQ(list.items, before);
        for (const SynthDriver *other : SynthDrivers) {
            if (other != driver && other->ImportVoice) {
                EXPECT_EQ(other->ImportVoice(nullptr, list, 7, path.c_str(), &out), 0);
            }
        }
    }
}

TEST_F(DriverFiles, ARowWithoutAVoiceIsNeitherExportedNorFilled) {
    for (const SynthDriver *driver :
         DriversWith(&SynthDriver::OpenBank, &SynthDriver::SaveBank, &SynthDriver::ImportVoice,
                     &SynthDriver::ExportVoice)) {
        FillList(*driver);
        const std::string path = VoicePath(*driver);
        ASSERT_EQ(driver->ExportVoice(nullptr, list, nullptr, path.c_str(), 0, 0), 1);
        ListTakeVoice(list, 3);
        EXPECT_EQ(driver->ImportVoice(nullptr, list, 3, path.c_str(), nullptr), 0) << driver->name;
        EXPECT_EQ(ListVoice(list, 3), nullptr);
        std::filesystem::remove(path);
        EXPECT_EQ(driver->ExportVoice(nullptr, list, nullptr, path.c_str(), 3, 0), 0);
        EXPECT_EQ(driver->ExportVoice(nullptr, list, nullptr, path.c_str(), driver->bankRows, 0),
                  0);
        EXPECT_FALSE(std::filesystem::exists(path)) << driver->name;
    }
}

TEST_F(DriverFiles, AVoiceImportedPastTheEndGoesNowhere) {
    for (const SynthDriver *driver :
         DriversWith(&SynthDriver::OpenBank, &SynthDriver::SaveBank, &SynthDriver::ImportVoice,
                     &SynthDriver::ExportVoice)) {
        FillList(*driver);
        const auto before = list.items;
        const std::string path = VoicePath(*driver);
        ASSERT_EQ(driver->ExportVoice(nullptr, list, nullptr, path.c_str(), 0, 0), 1);
        const int result =
            driver->ImportVoice(nullptr, list, driver->bankRows, path.c_str(), nullptr);
        EXPECT_TRUE(result == 1 || !FactsOf(*driver).isWhole) << driver->name;
        EXPECT_EQ(list.items, before) << driver->name;
    }
}

TEST_F(DriverFiles, AFileThatExistsIsBackedUpWhenBackupsAreOn) {
    for (const SynthDriver *driver : DriversWith(&SynthDriver::OpenBank, &SynthDriver::SaveBank)) {
        FillList(*driver);
        CreateBackups = 1;
        const std::string name = std::string("old.") + driver->bankExtension;
        folder.WriteText(name, "former");
        EXPECT_EQ(driver->SaveBank(nullptr, list, folder.File(name).c_str()), 1);
        EXPECT_EQ(ReadTestText(folder.File("Backup of " + name)), "former") << driver->name;
        CreateBackups = 0;
    }
}

TEST_F(DriverFiles, ANameOfBlanksIsOneBlank) {
    for (const SynthDriver *driver :
         DriversWith(&SynthDriver::OpenBank, &SynthDriver::SaveBank, &SynthDriver::VoiceName)) {
        FillList(*driver);
        std::string name = "former";
        const int length = driver->VoiceName(name, list.items[0]);
        EXPECT_EQ(length, 1) << driver->name;
        EXPECT_EQ(name, " ") << driver->name;
        EXPECT_STREQ(VoiceObjectName(list.items[0]), " ");
    }
}

TEST_F(DriverFiles, TheAlgorithmOfAVoiceIsThatOfItsFile) {
    for (const SynthDriver *driver : DriversWith(&SynthDriver::OpenBank, &SynthDriver::SaveBank,
                                                 &SynthDriver::VoiceAlgorithm)) {
        FillList(*driver);
        const std::string path = folder.File(std::string("bank.") + driver->bankExtension);
        ASSERT_EQ(driver->SaveBank(nullptr, list, path.c_str()), 1) << driver->name;
        const auto bytes = ReadTestFile(path);
        EXPECT_EQ(driver->VoiceAlgorithm(list.items[0]),
                  driver->bankFormat->voice(bytes, 0).algorithm)
            << driver->name;
        EXPECT_GT(driver->VoiceAlgorithm(list.items[0]), 0) << driver->name;
        VoiceObject cut = MakeVoiceObject(driver->id, std::vector<std::uint8_t>(3));
        EXPECT_EQ(driver->VoiceAlgorithm(cut), 0) << driver->name;
        cut.bytes.clear();
        EXPECT_EQ(driver->VoiceAlgorithm(cut), 0) << driver->name;
    }
}

TEST_F(DriverFiles, TheWaitCursorIsOnWhileAFileIsReadOrWritten) {
    for (const SynthDriver *driver : DriversWith(&SynthDriver::OpenBank, &SynthDriver::SaveBank)) {
        const int before = desktop.waitsBegun;
        FillList(*driver);
        EXPECT_GE(desktop.waitsBegun, before + 2) << driver->name;
        EXPECT_EQ(desktop.waitDepth, 0) << driver->name;
    }
}

// The behaviour of the rows towards their instruments, which are the built-in ones.
class DriverTransfers : public testing::Test {
protected:
    void SetUp() override {
        SysexWait = 1500;
        CurrentMidiChannel = 1;
        TheDesktop.RunMessage = [this](MessageRequest &request) {
            messages.push_back(request.text);
            EXPECT_EQ(desktop.busyBoxesOpen, 0) << "the box hides the message";
            request.result = ResultYes;
        };
    }
    void TearDown() override { ExpectNothingOpen("the end"); }

    BuiltinMidi midi;

    static BuiltinInstrument InstrumentOf(const SynthDriver &driver) {
        return *FactsOf(driver).instrument;
    }
    static const char *PortOf(const SynthDriver &driver) { return FactsOf(driver).port; }
    static MidiPorts PortsOf(const SynthDriver &driver) {
        const int input = 2 * static_cast<int>(InstrumentOf(driver));
        return {input, input + 1};
    }

    // A voice "NAME" of the row's family.
    static VoiceObject NamedVoice(const SynthDriver &driver) {
        VoiceObject voice = BlankVoice(driver);
        const std::size_t place = FactsOf(driver).namePlace;
        std::ranges::copy(std::string("NAME"), MutablePayloadOf(voice).begin() + place);
        return voice;
    }
    void FillList(const SynthDriver &driver) {
        CurrentDriverId = driver.id;
        ListReset(list);
        for (int row = 0; row < driver.bankRows; ++row) {
            ListSetVoice(list, ListAdd(list), NamedVoice(driver));
        }
        ListSelect(list, 3);
        ListEnable(list, true);
    }
    int UploadVoice(const SynthDriver &driver, const VoiceObject *voice, int row,
                    std::uint8_t flags) {
        return driver.UploadVoice(nullptr, list, voice, PortsOf(driver), row, flags);
    }
    void ExpectNothingOpen(const char *where) {
        EXPECT_EQ(OpenBuiltinStreams(), 0) << where;
        EXPECT_FALSE(BuiltinClockRuns()) << where;
        EXPECT_EQ(desktop.busyBoxesOpen, 0) << where;
    }

    ScriptedDesktop desktop;
    Strings messages;
    VoiceList list;
};

TEST_F(DriverTransfers, PortsAreFoundByTheirNames) {
    for (const SynthDriver *driver : PlayedDriversWith(&SynthDriver::FindSynth)) {
        FoundSynth found{.driver = NoDriverId, .ports = {}, .firmware = 0x11};
        const char *port = PortOf(*driver);
        EXPECT_NE(driver->FindSynth(nullptr, found, {port, port}, false), 0);
        EXPECT_EQ(found.driver, driver->id);
        EXPECT_EQ(found.ports, PortsOf(*driver)) << driver->name;
        EXPECT_EQ(found.firmware, 0x11u) << driver->name;
        ExpectNothingOpen(driver->name);
    }
}

TEST_F(DriverTransfers, PortsThatAreMissingAreNotFound) {
    for (const SynthDriver *driver : PlayedDriversWith(&SynthDriver::FindSynth)) {
        FoundSynth found;
        const char *port = PortOf(*driver);
        EXPECT_EQ(driver->FindSynth(nullptr, found, {"none", port}, false), 0);
        EXPECT_EQ(driver->FindSynth(nullptr, found, {port, "none"}, false), 0);
        EXPECT_EQ(found.driver, NoDriverId) << driver->name;
        ExpectNothingOpen(driver->name);
    }
}

TEST_F(DriverTransfers, AnOutputThatDoesNotOpenFailsInSilenceAndLeavesTheList) {
    for (const SynthDriver *driver :
         PlayedDriversWith(&SynthDriver::UploadVoice, &SynthDriver::UploadBank)) {
        FillList(*driver);
        const auto before = list.items;
        FaultsOf(InstrumentOf(*driver)).outputDoesNotOpen = true;
        const MidiPorts ports = PortsOf(*driver);
        EXPECT_EQ(UploadVoice(*driver, nullptr, 0, 1), 0) << driver->name;
        EXPECT_EQ(driver->UploadBank(nullptr, list, ports), 0) << driver->name;
        EXPECT_EQ(driver->UploadBank(nullptr, list, {}), 0) << driver->name;
        if (driver->DownloadBank) {
            EXPECT_EQ(driver->DownloadBank(nullptr, list, ports), 0) << driver->name;
            EXPECT_EQ(driver->DownloadBank(nullptr, list, {}), 0) << driver->name;
        }
        EXPECT_EQ(list.items, before) << driver->name;
        EXPECT_EQ(list.selection, 3) << driver->name;
        EXPECT_TRUE(list.enabled && list.redraw) << driver->name;
        ExpectNothingOpen(driver->name);
    }
    EXPECT_EQ(messages, Strings{});
    EXPECT_EQ(desktop.busyBoxesShown, 0);
    EXPECT_TRUE(desktop.statusTexts.empty());
    EXPECT_TRUE(desktop.progress.empty());
}

TEST_F(DriverTransfers, AVoiceIsHeardByItsInstrumentWithoutAQuestion) {
    for (const SynthDriver *driver : PlayedDriversWith(&SynthDriver::UploadVoice)) {
        FillList(*driver);
        const auto before = list.items;
        const VoiceObject voice = BlankVoice(*driver);
        EXPECT_EQ(UploadVoice(*driver, &voice, 0, 0), 1) << driver->name;
        const auto &heard = EditBufferOf(InstrumentOf(*driver));
        const auto sent = std::span(voice.bytes).subspan(52, heard.size());
        EXPECT_TRUE(std::ranges::equal(heard, sent)) << driver->name;
        EXPECT_EQ(UploadVoice(*driver, nullptr, 7, 0), 1) << driver->name;
        const auto row = std::span(before[7].bytes).subspan(52, heard.size());
        EXPECT_TRUE(std::ranges::equal(EditBufferOf(InstrumentOf(*driver)), row)) << driver->name;
        EXPECT_EQ(list.items, before) << driver->name;
        EXPECT_EQ(list.selection, 3) << driver->name;
        EXPECT_TRUE(list.enabled && list.redraw) << driver->name;
        ExpectNothingOpen(driver->name);
    }
    EXPECT_EQ(messages, Strings{});
}

TEST_F(DriverTransfers, ThePromptInTheEndNamesTheVoiceAndAsksToStoreIt) {
    for (const SynthDriver *driver : PlayedDriversWith(&SynthDriver::UploadVoice)) {
        FillList(*driver);
        messages.clear();
        EXPECT_EQ(UploadVoice(*driver, nullptr, 0, 1), 1) << driver->name;
        ASSERT_FALSE(messages.empty()) << driver->name;
        EXPECT_TRUE(messages.back().starts_with("NAME has been uploaded to your ")) << driver->name;
        ListTakeVoice(list, 0);
        EXPECT_EQ(UploadVoice(*driver, nullptr, 0, 1), 1) << driver->name;
        EXPECT_TRUE(messages.back().starts_with(" has been uploaded to your ")) << driver->name;
    }
}

TEST_F(DriverTransfers, BlocksThatHoldNoVoiceOfTheFamilyHarmNothing) {
    for (const SynthDriver *driver :
         PlayedDriversWith(&SynthDriver::UploadVoice, &SynthDriver::UploadBank)) {
        VoiceObject cut = BlankVoice(*driver), wrongMagic = cut, lying = cut, emptyParts = cut;
        cut.bytes.pop_back();
        wrongMagic.bytes[0] ^= 1;
        std::fill_n(lying.bytes.begin() + 4, 12, std::uint8_t{0xFF});  // offset and sizes
        std::fill_n(emptyParts.bytes.begin() + 8, 8, std::uint8_t{0}); // sizes
        const SynthDriver &other = *SynthDrivers[driver == SynthDrivers[0] ? 1 : 0];
        ListReset(list);
        for (const VoiceObject &voice : {cut, wrongMagic, lying, emptyParts, BlankVoice(other)}) {
            EXPECT_EQ(UploadVoice(*driver, &voice, 0, 0), 1) << driver->name;
            ListSetVoice(list, ListAdd(list), voice);
        }
        const MidiPorts ports = PortsOf(*driver);
        EXPECT_EQ(driver->UploadBank(nullptr, list, ports), 1) << driver->name;
        ListReset(list);
        EXPECT_EQ(driver->UploadBank(nullptr, list, ports), 1) << driver->name;
        ExpectNothingOpen(driver->name);
    }
    EXPECT_EQ(messages, Strings{});
}

TEST_F(DriverTransfers, ADownloadGivesABankOfItsDriver) {
    int downloads = 0;
    for (const SynthDriver *driver : PlayedDriversWith(&SynthDriver::DownloadBank)) {
        FillList(*driver);
        EXPECT_EQ(driver->DownloadBank(nullptr, list, PortsOf(*driver)), 1);
        ++downloads;
        ASSERT_EQ(ListCount(list), driver->bankRows) << driver->name;
        EXPECT_EQ(list.selection, 0);
        EXPECT_EQ(list.itemHeight, 48);
        EXPECT_TRUE(list.enabled && list.redraw) << driver->name;
        const std::size_t size = BlankVoice(*driver).bytes.size();
        for (const VoiceObject &voice : list.items) {
            ASSERT_TRUE(PayloadOf(voice)) << driver->name;
            EXPECT_EQ(HeaderOf(voice)->driverId, driver->id);
            EXPECT_EQ(voice.bytes.size(), size);
        }
        if (driver->MakeUndoLevel) {
            EXPECT_EQ(driver->MakeUndoLevel(nullptr, list).size(),
                      36 + static_cast<std::size_t>(driver->bankRows) * size);
        }
        EXPECT_EQ(desktop.statusTexts.back(), SynthTitle(driver->id, SynthFirmware));
        EXPECT_EQ(desktop.progress.back(), (std::pair{0, 1}));
        ExpectNothingOpen(driver->name);
    }
    EXPECT_EQ(desktop.busyBoxesShown, downloads);
}

TEST(DriverTitles, EveryRowHasATitleWithAndWithoutAVersion) {
    for (const SynthDriver *driver : SynthDrivers) {
        const std::string name = FactsOf(*driver).name;
        EXPECT_EQ(SynthTitle(driver->id, 0), name);
        EXPECT_EQ(SynthTitle(driver->id, 0x01000302), name + " version 10.32");
    }
}

} // namespace
} // namespace tonewright
