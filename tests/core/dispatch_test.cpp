// Finding the row of an operation, over a table of two rows whose operations record their calls.
#include "core/dispatch.h"

#include "common/folders.h"
#include "common/settings.h"
#include "core/current.h"
#include "driver_rows.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <utility>

namespace tonewright {
namespace {

VoiceObject VoiceOf(DriverId id, const std::string &text) {
    return MakeVoiceObject(id, std::vector<std::uint8_t>(text.begin(), text.end()));
}

DrawItem ItemAt(int index) {
    DrawItem item;
    item.itemIndex = index;
    return item;
}

VoiceObject WithWrongMagic(VoiceObject voice) {
    voice.bytes[0] ^= 1;
    return voice;
}

using Strings = std::vector<std::string>;

class Dispatch : public testing::Test {
protected:
    void SetUp() override {
        RestoreDriverRows();
        CurrentDriverId = FirstDriverId;
        MidiInPort = 11;
        MidiOutPort = 12;
        SynthFirmware = 7;
        CreateBackups = 1;
        OpenPath.clear();
        OpenExportPath = folder.Folder();
        OpenImportPath = "/imports/";
        SelectKeyboardAutodetect = 1;
    }

    TempFolder folder;
    ScriptedDesktop desktop;
    VoiceList list;
};

// The name of the last good voice outlives a test; so this one comes first.
TEST(DispatchNames, ABlockThatIsNoVoiceIsUnknownBeforeThereWasAGoodOne) {
    EXPECT_STREQ(VoiceObjectName(VoiceObject{}), "Unknown Voice");
    EXPECT_STREQ(VoiceObjectName(WithWrongMagic(VoiceOf(FirstDriverId, "ORGAN"))), "Unknown Voice");
    EXPECT_STREQ(VoiceObjectName(VoiceOf(MakeDriverId("none"), "ORGAN")), "Unknown Voice");
}

TEST_F(Dispatch, ARowIndexOutsideTheTableHasNoIdAndNoCapability) {
    EXPECT_EQ(DriverIdAt(0), FirstDriverId);
    EXPECT_EQ(DriverIdAt(1), SecondDriverId);
    for (const int index : {-1, 2, 1000, -1000}) {
        EXPECT_EQ(DriverIdAt(index), NoDriverId) << index;
        EXPECT_FALSE(DriverCanConfigure(index)) << index;
        EXPECT_FALSE(DriverCanUpload(index)) << index;
        EXPECT_FALSE(DriverCanDownload(index)) << index;
        EXPECT_FALSE(DriverCanFind(index)) << index;
    }
}

TEST_F(Dispatch, EachCapabilityIsItsOwnBit) {
    const auto capabilities = [](std::uint32_t flags) {
        FirstRow.flags = flags;
        return std::vector<bool>{DriverCanUpload(0), DriverCanConfigure(0), DriverCanDownload(0),
                                 DriverCanFind(0)};
    };
    EXPECT_EQ(capabilities(0), (std::vector{false, false, false, false}));
    EXPECT_EQ(capabilities(0x01), (std::vector{false, false, false, false}));
    EXPECT_EQ(capabilities(0x02), (std::vector{true, false, false, false}));
    EXPECT_EQ(capabilities(0x04), (std::vector{false, false, false, false}));
    EXPECT_EQ(capabilities(0x08), (std::vector{false, true, false, false}));
    EXPECT_EQ(capabilities(0x10), (std::vector{false, false, true, false}));
    EXPECT_EQ(capabilities(0x20), (std::vector{false, false, false, true}));
}

TEST_F(Dispatch, ARowIsFoundByTheWholeId) {
    EXPECT_EQ(DriverIndexOfId(FirstDriverId), 0);
    EXPECT_EQ(DriverIndexOfId(SecondDriverId), 1);
    EXPECT_EQ(DriverIndexOfId(NoDriverId), -1);
    EXPECT_EQ(DriverIndexOfId(FirstDriverId ^ 0x01000000), -1);
    EXPECT_EQ(DriverIndexOfId(0), -1);
    EXPECT_EQ(DriverOfId(SecondDriverId), &SecondRow);
    EXPECT_EQ(DriverOfId(NoDriverId), nullptr);
}

TEST_F(Dispatch, ARowIsFoundByItsWholeNameInAnyCase) {
    EXPECT_EQ(DriverIndexOfName("FIRST instrument, AND more"), 0);
    EXPECT_EQ(DriverIndexOfName("second instrument"), 1);
    EXPECT_EQ(DriverIndexOfName("Second"), -1);
    EXPECT_EQ(DriverIndexOfName("Second Instrument "), -1);
    EXPECT_EQ(DriverIndexOfName(""), -1);
}

TEST_F(Dispatch, NoDriverIsCurrentAtStart) {
    CurrentDriverId = NoDriverId;
    EXPECT_EQ(CurrentDriver(), nullptr);
    CurrentDriverId = SecondDriverId;
    EXPECT_EQ(CurrentDriver(), &SecondRow);
}

TEST_F(Dispatch, ACapitalExtensionOpensThroughItsRowWhileTheOtherDriverIsCurrent) {
    CurrentDriverId = SecondDriverId;
    std::int64_t time = 0;
    EXPECT_EQ(OpenDocument(nullptr, list, "/music/BRASS.SYX", &CurrentDriverId, &time), 1);
    EXPECT_EQ(CurrentDriverId, FirstDriverId);
    EXPECT_EQ(time, 1234);
    EXPECT_EQ(Calls, Strings{"first OpenBank /music/BRASS.SYX"});
}

TEST_F(Dispatch, OnlyTheBankExtensionsOpen) {
    ListAdd(list);
    ListSetVoice(list, 0, VoiceOf(FirstDriverId, "KEPT"));
    for (const char *path : {"/music/a.sy1", "/music/a.TwcDx7", "/music/a.sr1", "/music/a.crg",
                             "/music/a.txt", "/music/a", "/music/syx", "/music/a.sy", "/music/a.",
                             "/music/a.syxx", "/music/a.syx.bak", "/music.syx/a", ""}) {
        DriverId driver = NoDriverId;
        std::int64_t time = 55;
        EXPECT_EQ(OpenDocument(nullptr, list, path, &driver, &time), 0) << path;
        EXPECT_EQ(driver, NoDriverId) << path;
        EXPECT_EQ(time, 55) << path;
    }
    EXPECT_EQ(ListCount(list), 1);
    EXPECT_EQ(*ListVoice(list, 0), VoiceOf(FirstDriverId, "KEPT"));
    EXPECT_EQ(Calls, Strings{});
}

TEST_F(Dispatch, ARowWithoutOpenBankOpensNothing) {
    FirstRow.OpenBank = nullptr;
    DriverId driver = NoDriverId;
    std::int64_t time = 0;
    EXPECT_EQ(OpenDocument(nullptr, list, "a.syx", &driver, &time), 0);
    EXPECT_EQ(driver, NoDriverId);
    // A row of the same extension further down is looked at all the same.
    SecondRow.bankExtension = "SyX";
    EXPECT_EQ(OpenDocument(nullptr, list, "a.syx", &driver, &time), 1);
    EXPECT_EQ(driver, SecondDriverId);
}

TEST_F(Dispatch, TheDriverFollowsTheFileEvenIfItCannotBeRead) {
    Answer = 0;
    std::int64_t time = 0;
    EXPECT_EQ(OpenDocument(nullptr, list, "a.srx", &CurrentDriverId, &time), 0);
    EXPECT_EQ(CurrentDriverId, SecondDriverId);
}

TEST_F(Dispatch, TheCurrentRowGetsThePortsOfItsInstrument) {
    CurrentDriverId = SecondDriverId;
    ListAdd(list);
    VoiceObject voice = VoiceOf(FirstDriverId, "X");
    EXPECT_EQ(SaveDocument(nullptr, list, "b.srx"), 1);
    EXPECT_EQ(DownloadCurrent(nullptr, list), 1);
    EXPECT_EQ(UploadCurrent(nullptr, list), 1);
    EXPECT_EQ(EditOneVoice(nullptr, voice, 6), 1);
    EXPECT_EQ(ConfigureCurrent(nullptr), 1);
    EXPECT_EQ(AutoConfigureCurrent(nullptr), 1);
    EXPECT_EQ(Calls, (Strings{"second SaveBank 1 b.srx", "second DownloadBank 11 12",
                              "second UploadBank 11 12", "second EditVoice 11 12 6",
                              "second ConfigureSynth 11 12", "second AutoConfigure 12"}));
    EXPECT_EQ(voice.bytes.back(), 99);
    Answer = 0;
    EXPECT_EQ(SaveDocument(nullptr, list, "b.srx"), 0);
    EXPECT_EQ(EditOneVoice(nullptr, voice, 6), 0);
}

TEST_F(Dispatch, WithoutACurrentDriverEveryOperationFailsInSilence) {
    CurrentDriverId = NoDriverId;
    VoiceObject voice = VoiceOf(FirstDriverId, "X");
    EXPECT_EQ(SaveDocument(nullptr, list, "b.srx"), 0);
    EXPECT_EQ(DownloadCurrent(nullptr, list), 0);
    EXPECT_EQ(UploadCurrent(nullptr, list), 0);
    EXPECT_EQ(ImportOneVoice(nullptr, list, 0, "a.sy1", nullptr), 0);
    EXPECT_EQ(EditOneVoice(nullptr, voice, 0), 0);
    EXPECT_EQ(ConfigureCurrent(nullptr), 0);
    EXPECT_EQ(AutoConfigureCurrent(nullptr), 0);
    EXPECT_EQ(Calls, Strings{});
}

TEST_F(Dispatch, AnEmptyOperationFailsInSilence) {
    FirstRow = {};
    FirstRow.id = FirstDriverId;
    VoiceObject voice = VoiceOf(FirstDriverId, "X");
    ItemFonts fonts;
    EXPECT_EQ(SaveDocument(nullptr, list, "b.syx"), 0);
    EXPECT_EQ(DownloadCurrent(nullptr, list), 0);
    EXPECT_EQ(UploadCurrent(nullptr, list), 0);
    EXPECT_EQ(UploadOneVoice(nullptr, list, &voice, FirstDriverId, {1, 2}, 0, 1), 0);
    EXPECT_EQ(ImportOneVoice(nullptr, list, 0, "a.sy1", nullptr), 0);
    EXPECT_EQ(EditOneVoice(nullptr, voice, 0), 0);
    EXPECT_EQ(ConfigureCurrent(nullptr), 0);
    EXPECT_EQ(AutoConfigureCurrent(nullptr), 0);
    EXPECT_EQ(SelectItemFonts(fonts, FirstDriverId), 0);
    EXPECT_EQ(DrawVoiceObject({}, voice, fonts), 0);
}

TEST_F(Dispatch, OneVoiceIsUploadedByTheDriverThatIsNamedNotByTheCurrentOne) {
    const VoiceObject voice = VoiceOf(SecondDriverId, "X");
    EXPECT_EQ(UploadOneVoice(nullptr, list, &voice, SecondDriverId, {3, 4}, 9, 1), 1);
    EXPECT_EQ(UploadOneVoice(nullptr, list, nullptr, SecondDriverId, {3, 4}, 9, 0), 1);
    EXPECT_EQ(UploadOneVoice(nullptr, list, &voice, NoDriverId, {3, 4}, 9, 1), 0);
    EXPECT_EQ(Calls,
              (Strings{"second UploadVoice voice 3 4 9 1", "second UploadVoice item 3 4 9 0"}));
}

TEST_F(Dispatch, ImportingAGivenPathAsksNothingAndKeepsTheFolders) {
    EXPECT_EQ(ImportOneVoice(nullptr, list, 3, "/elsewhere/a.sy1", nullptr), 1);
    VoiceObject out;
    EXPECT_EQ(ImportOneVoice(nullptr, list, 4, "/elsewhere/b.sy1", &out), 1);
    EXPECT_EQ(ImportVoiceFrom(nullptr, list, 5, "/elsewhere/c.sy1", &out), 1);
    EXPECT_EQ(Calls, (Strings{"first ImportVoice 3 /elsewhere/a.sy1 item",
                              "first ImportVoice 4 /elsewhere/b.sy1 out",
                              "first ImportVoice 5 /elsewhere/c.sy1 out"}));
    EXPECT_EQ(OpenExportPath, folder.Folder());
    EXPECT_EQ(OpenImportPath, "/imports/");
}

TEST_F(Dispatch, ImportReadsAndWritesTheExportFolderAndLeavesTheImportFolder) {
    const std::string start = OpenExportPath;
    const std::string chosen = folder.File("voices/lead.sy1");
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Import,
                                      .answer = chosen,
                                      .start = start,
                                      .driverId = FirstDriverId});
    EXPECT_EQ(ImportOneVoice(nullptr, list, 3, nullptr, nullptr), 1);
    EXPECT_EQ(Calls, Strings{"first ImportVoice 3 " + chosen + " item"});
    EXPECT_EQ(OpenExportPath, (folder.path / "voices" / "").string());
    EXPECT_EQ(OpenImportPath, "/imports/");
}

TEST_F(Dispatch, TheFolderOfAFailedImportIsKeptToo) {
    Answer = 0;
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Import,
                                      .answer = folder.File("voices/lead.sy1")});
    EXPECT_EQ(ImportOneVoice(nullptr, list, 3, nullptr, nullptr), 0);
    EXPECT_EQ(OpenExportPath, (folder.path / "voices" / "").string());
}

TEST_F(Dispatch, APathOfMoreThan260BytesReachesNoOperationThatWritesOrImports) {
    const std::string longest = "/" + std::string(129, 'a') + "/" + std::string(129, 'b');
    const std::string longer = longest + "c";
    ListSetVoice(list, ListAdd(list), VoiceOf(FirstDriverId, "LEAD"));
    for (const std::string &path : {longest, longer}) {
        Calls.clear();
        const int taken = path == longest;
        errno = 0;
        EXPECT_EQ(SaveDocument(nullptr, list, path.c_str()), taken);
        EXPECT_EQ(errno == ENAMETOOLONG, !taken);
        errno = 0;
        EXPECT_EQ(ExportVoiceTo(nullptr, list, 0, path.c_str()), taken);
        EXPECT_EQ(errno == ENAMETOOLONG, !taken);
        EXPECT_EQ(ImportOneVoice(nullptr, list, 0, path.c_str(), nullptr), taken);
        EXPECT_EQ(Calls.size(), taken ? 3u : 0u);
    }
}

TEST_F(Dispatch, ACancelledImportIsASuccessThatChangesNothing) {
    Answer = 0;
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Import, .answer = std::nullopt});
    EXPECT_EQ(ImportOneVoice(nullptr, list, 3, nullptr, nullptr), 1);
    EXPECT_EQ(Calls, Strings{});
    EXPECT_EQ(OpenExportPath, folder.Folder());
}

// Exports row 0, which holds `voice`, and answers the dialog with `answer`; gives what the dialog
// proposed.
class DispatchExport : public Dispatch {
protected:
    void PutVoice(const std::string &name) {
        ListReset(list);
        ListSetVoice(list, ListAdd(list), VoiceOf(FirstDriverId, name));
    }
    void ExpectDialog(std::optional<std::string> answer, const std::string &proposal) {
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Export,
                                          .answer = std::move(answer),
                                          .start = proposal,
                                          .driverId = CurrentDriverId});
    }
};

TEST_F(DispatchExport, TheVoicesNameInTheExportFolderIsProposed) {
    PutVoice("LEAD");
    const std::string chosen = folder.File("new/lead.sy1");
    ExpectDialog(chosen, OpenExportPath + "first_LEAD.sy1"); // ":" is no character of a file name
    EXPECT_EQ(ExportOneVoice(nullptr, list, 0), 1);
    EXPECT_EQ(Calls, Strings{"first ExportVoice item " + chosen + " 0 7"});
    EXPECT_EQ(OpenExportPath, (folder.path / "new" / "").string());
    EXPECT_EQ(OpenImportPath, "/imports/");
}

TEST_F(DispatchExport, CharactersThatNoFileNameHoldsBecomeUnderscores) {
    FirstRow.VoiceName = [](std::string &name, const VoiceObject &) {
        name = "A/B:C\\*?\"<>|\x01\x7F";
        return static_cast<int>(name.size());
    };
    PutVoice("");
    ExpectDialog(std::nullopt, OpenExportPath + "A_B_C_________.sy1");
    EXPECT_EQ(ExportOneVoice(nullptr, list, 0), 1);
}

TEST_F(DispatchExport, BytesAboveTheAsciiRangeOfANameAreProposedAsUtf8) {
    FirstRow.VoiceName = [](std::string &name, const VoiceObject &) {
        name = "\xC9T\xC9 \xFF";
        return static_cast<int>(name.size());
    };
    PutVoice("");
    ExpectDialog(std::nullopt, OpenExportPath + "\xC3\x89T\xC3\x89 \xC3\xBF.sy1");
    EXPECT_EQ(ExportOneVoice(nullptr, list, 0), 1);
}

TEST_F(DispatchExport, AProposalBeyond260BytesIsCut) {
    PutVoice("LEAD");
    OpenExportPath = "/" + std::string(250, 'f') + "/";
    ExpectDialog(std::nullopt, OpenExportPath + "first_LE");
    EXPECT_EQ(ExportOneVoice(nullptr, list, 0), 1);
}

TEST_F(DispatchExport, ARowWithoutAVoiceExtensionProposesTheFallback) {
    FirstRow.voiceExtension = "";
    PutVoice("LEAD");
    ExpectDialog(std::nullopt, OpenExportPath + "first_LEAD.Twl");
    EXPECT_EQ(ExportOneVoice(nullptr, list, 0), 1);
}

TEST_F(DispatchExport, WithoutADriverTheFallbackIsProposedAndTheExportFails) {
    PutVoice("LEAD");
    CurrentDriverId = NoDriverId;
    ExpectDialog(folder.File("a.Twl"), OpenExportPath + "first_LEAD.Twl");
    EXPECT_EQ(ExportOneVoice(nullptr, list, 0), 0);
    EXPECT_FALSE(folder.Holds("a.Twl"));
}

TEST_F(DispatchExport, ARowWithoutAVoiceProposesTheNameOfTheLastGoodVoice) {
    EXPECT_STREQ(VoiceObjectName(VoiceOf(SecondDriverId, "PAD")), "second:PAD");
    ListAdd(list);
    ExpectDialog(std::nullopt, OpenExportPath + "second_PAD.sy1");
    EXPECT_EQ(ExportOneVoice(nullptr, list, 0), 1);
}

TEST_F(DispatchExport, ACancelledExportIsASuccessThatChangesNothing) {
    Answer = 0;
    PutVoice("LEAD");
    folder.WriteText("first_LEAD.sy1", "kept");
    ExpectDialog(std::nullopt, OpenExportPath + "first_LEAD.sy1");
    EXPECT_EQ(ExportOneVoice(nullptr, list, 0), 1);
    EXPECT_EQ(Calls, Strings{});
    EXPECT_EQ(OpenExportPath, folder.Folder());
    EXPECT_FALSE(folder.Holds("Backup of first_LEAD.sy1"));
}

TEST_F(DispatchExport, AnExistingFileIsCopiedToABackupBesideItFirst) {
    PutVoice("LEAD");
    const std::string chosen = folder.WriteText("lead.sy1", "former");
    folder.WriteText("Backup of lead.sy1", "the backup before, which is longer");
    ExpectDialog(chosen, OpenExportPath + "first_LEAD.sy1");
    EXPECT_EQ(ExportOneVoice(nullptr, list, 0), 1);
    EXPECT_EQ(ReadTestText(folder.File("Backup of lead.sy1")), "former");
    EXPECT_EQ(Calls.size(), 1u);
}

TEST_F(DispatchExport, NoBackupIsMadeWhenTheyAreOffOrThereIsNoFile) {
    PutVoice("LEAD");
    ExpectDialog(folder.File("new.sy1"), OpenExportPath + "first_LEAD.sy1");
    EXPECT_EQ(ExportOneVoice(nullptr, list, 0), 1);
    EXPECT_FALSE(folder.Holds("Backup of new.sy1"));
    CreateBackups = 0;
    ExpectDialog(folder.WriteText("old.sy1", "former"), OpenExportPath + "first_LEAD.sy1");
    EXPECT_EQ(ExportOneVoice(nullptr, list, 0), 1);
    EXPECT_FALSE(folder.Holds("Backup of old.sy1"));
    EXPECT_EQ(Calls.size(), 2u);
}

TEST_F(DispatchExport, ToAGivenPathAsksNothingAndBacksTheFormerFileUp) {
    const std::string before = OpenExportPath;
    PutVoice("LEAD");
    CreateBackups = 1;
    const std::string path = folder.WriteText("lead.sy1", "former");
    EXPECT_EQ(ExportVoiceTo(nullptr, list, 0, path.c_str()), 1);
    EXPECT_EQ(Calls, Strings{"first ExportVoice item " + path + " 0 7"});
    EXPECT_EQ(ReadTestText(folder.File("Backup of lead.sy1")), "former");
    EXPECT_EQ(OpenExportPath, before);
}

class DispatchFailedBackup : public DispatchExport {
protected:
    // A folder stands where the backup would go.
    void SetUp() override {
        DispatchExport::SetUp();
        PutVoice("LEAD");
        chosen = folder.WriteText("lead.sy1", "former");
        std::filesystem::create_directory(folder.path / "Backup of lead.sy1");
        ExpectDialog(chosen, OpenExportPath + "first_LEAD.sy1");
    }
    void ExpectQuestion(int answer) {
        desktop.ExpectYesNo("Warning: there has been an error creating a backup for your file.\r\n"
                            "\r\nClick on Yes to proceed, or click on No to abort this save.",
                            answer);
    }
    std::string chosen;
};

TEST_F(DispatchFailedBackup, YesExportsWithoutIt) {
    ExpectQuestion(ResultYes);
    EXPECT_EQ(ExportOneVoice(nullptr, list, 0), 1);
    EXPECT_EQ(Calls.size(), 1u);
}

TEST_F(DispatchFailedBackup, NoStopsTheExport) {
    ExpectQuestion(ResultNo);
    EXPECT_EQ(ExportOneVoice(nullptr, list, 0), 0);
    EXPECT_EQ(Calls, Strings{});
    EXPECT_EQ(ReadTestText(chosen), "former");
}

TEST_F(Dispatch, AVoiceOfTheOtherFamilyIsDrawnByItsOwnRow) {
    const ItemFonts fonts = {.title = {}, .label = {}, .itemHeight = 48};
    EXPECT_EQ(DrawVoiceObject(ItemAt(2), VoiceOf(SecondDriverId, "abc"), fonts), 0);
    EXPECT_EQ(DrawVoiceObject(ItemAt(5), VoiceOf(FirstDriverId, "a"), fonts), 0);
    EXPECT_EQ(Calls, (Strings{"second DrawVoiceItem 2 48 55 1", "first DrawVoiceItem 5 48 53 0"}));
}

TEST_F(Dispatch, WhatIsNoVoiceIsDrawnAsNothing) {
    EXPECT_EQ(DrawVoiceObject({}, VoiceObject{}, {}), 0);
    EXPECT_EQ(DrawVoiceObject({}, WithWrongMagic(VoiceOf(FirstDriverId, "a")), {}), 0);
    EXPECT_EQ(DrawVoiceObject({}, VoiceOf(MakeDriverId("none"), "a"), {}), 0);
    VoiceObject tooShort = VoiceOf(FirstDriverId, "abc");
    tooShort.bytes.pop_back();
    EXPECT_EQ(DrawVoiceObject({}, tooShort, {}), 0);
    EXPECT_EQ(Calls, Strings{});
}

TEST_F(Dispatch, AVoiceOfTheOtherFamilyIsNamedByItsOwnRow) {
    EXPECT_STREQ(VoiceObjectName(VoiceOf(SecondDriverId, "PAD")), "second:PAD");
    EXPECT_STREQ(VoiceObjectName(VoiceOf(FirstDriverId, "LEAD")), "first:LEAD");
}

TEST_F(Dispatch, AVoiceIsSaidInWordsByItsPlaceNameAndAlgorithm) {
    const auto words = [](const std::string &name, int row) {
        const VoiceObject voice = VoiceOf(FirstDriverId, name);
        return VoiceInWords(&voice, row);
    };
    EXPECT_EQ(words("LEAD", 0), "Voice 1, first:LEAD");
    FirstRow.VoiceAlgorithm = [](const VoiceObject &) { return 22; };
    EXPECT_EQ(words("LEAD", 31), "Voice 32, first:LEAD, algorithm 22");
    FirstRow.VoiceName = [](std::string &name, const VoiceObject &voice) {
        const auto payload = PayloadOf(voice)->payload;
        name.assign(payload.begin(), payload.end());
        return static_cast<int>(name.size());
    };
    EXPECT_EQ(words("  BRASS \x01\x7F\x80  1 ", 2), "Voice 3, BRASS 1, algorithm 22");
    EXPECT_EQ(words("B&\xC4", 2), "Voice 3, B&\xC3\x84, algorithm 22");
    EXPECT_EQ(words(" ", 2), "Voice 3, no name, algorithm 22");
    EXPECT_EQ(words("", 2), "Voice 3, no name, algorithm 22");
    FirstRow.VoiceAlgorithm = [](const VoiceObject &) { return 0; };
    EXPECT_EQ(words("LEAD", 2), "Voice 3, LEAD");
}

TEST_F(Dispatch, ARowWithoutAVoiceIsSaidToBeEmptyAndNoNameIsKept) {
    EXPECT_STREQ(VoiceObjectName(VoiceOf(FirstDriverId, "PAD")), "first:PAD");
    EXPECT_EQ(VoiceInWords(nullptr, 4), "Voice 5, empty");
    const VoiceObject none = WithWrongMagic(VoiceOf(FirstDriverId, "ORGAN"));
    EXPECT_EQ(VoiceInWords(&none, 4), "Voice 5, empty");
    const VoiceObject foreign = VoiceOf(MakeDriverId("none"), "ORGAN");
    EXPECT_EQ(VoiceInWords(&foreign, 4), "Voice 5, no name");
    const VoiceObject other = VoiceOf(FirstDriverId, "LEAD");
    VoiceInWords(&other, 4);
    EXPECT_STREQ(VoiceObjectName(none), "first:PAD");
}

TEST_F(Dispatch, AWrongMagicAfterAGoodVoiceGivesTheGoodVoicesName) {
    const char *name = VoiceObjectName(VoiceOf(FirstDriverId, "LEAD"));
    EXPECT_STREQ(VoiceObjectName(WithWrongMagic(VoiceOf(FirstDriverId, "PAD"))), "first:LEAD");
    EXPECT_STREQ(VoiceObjectName(VoiceObject{}), "first:LEAD");
    VoiceObject tooShort = VoiceOf(FirstDriverId, "PAD");
    tooShort.bytes.pop_back();
    EXPECT_STREQ(VoiceObjectName(tooShort), "first:LEAD");
    EXPECT_STREQ(VoiceObjectName(VoiceOf(MakeDriverId("none"), "PAD")), "first:LEAD");
    SecondRow.VoiceName = nullptr;
    EXPECT_STREQ(VoiceObjectName(VoiceOf(SecondDriverId, "PAD")), "first:LEAD");
    EXPECT_STREQ(name, "first:LEAD");
}

TEST_F(Dispatch, AnEmptyNameIsUnknown) {
    FirstRow.VoiceName = [](std::string &name, const VoiceObject &) {
        name.clear();
        return 0;
    };
    EXPECT_STREQ(VoiceObjectName(VoiceOf(FirstDriverId, "LEAD")), "Unknown Voice");
}

TEST_F(Dispatch, SelectingFontsClearsTheRecordFirst) {
    ItemFonts fonts = {
        .title = {.family = "old", .height = 1, .weight = 1}, .label = {}, .itemHeight = 3};
    EXPECT_EQ(SelectItemFonts(fonts, SecondDriverId), 1);
    EXPECT_EQ(Calls, Strings{"second MakeItemFonts empty"});
    EXPECT_EQ(fonts.itemHeight, 60);
    EXPECT_EQ(fonts.title.family, "");
    EXPECT_EQ(SelectItemFonts(fonts, NoDriverId), 0);
    EXPECT_EQ(fonts, ItemFonts{});
}

TEST_F(Dispatch, TheSharedFontsOfTheList) {
    ItemFonts fonts;
    EXPECT_EQ(MakeItemFonts(fonts), 1);
    EXPECT_EQ(fonts.title,
              (FontDescription{.family = "TIMES NEW ROMAN", .height = 28, .weight = 700}));
    EXPECT_EQ(fonts.label, (FontDescription{.family = "ARIAL", .height = 14, .weight = 500}));
    EXPECT_EQ(fonts.itemHeight, 48);
}

TEST_F(Dispatch, ASearchStartsWithNothingFoundAndTheFirmwareThatIsKnown) {
    MidiInPort = 8;
    MidiOutPort = 9;
    SelectKeyboardMidiIn = "in";
    SelectKeyboardMidiOut = "out";
    EXPECT_EQ(FindCurrentSynth(nullptr), 1);
    EXPECT_EQ(Calls, Strings{"first FindSynth 1 -1 -1 7 in out 1"});
    EXPECT_EQ(CurrentDriverId, FirstDriverId);
    EXPECT_EQ(MidiInPort, 4);
    EXPECT_EQ(MidiOutPort, 5);
    EXPECT_EQ(SynthFirmware, 0x01000200u);
}

TEST_F(Dispatch, AFailedSearchLeavesNoDriverCurrent) {
    Answer = 0;
    SelectKeyboardMidiIn = "a";
    SelectKeyboardMidiOut = "b";
    SelectKeyboardAutodetect = 0;
    EXPECT_EQ(FindCurrentSynth(nullptr), 0);
    EXPECT_EQ(Calls, Strings{"first FindSynth 1 -1 -1 7 a b 0"});
    EXPECT_EQ(CurrentDriverId, NoDriverId);
    EXPECT_EQ(MidiInPort, -1);
    EXPECT_EQ(MidiOutPort, -1);
    EXPECT_EQ(SynthFirmware, 7u);
}

TEST_F(Dispatch, AFailedSearchKeepsThePortThatItFound) {
    FirstRow.FindSynth = [](QWidget *, FoundSynth &found, const PortNames &, bool) {
        found.ports.in = 6;
        return 0;
    };
    EXPECT_EQ(FindCurrentSynth(nullptr), 0);
    EXPECT_EQ(CurrentDriverId, NoDriverId);
    EXPECT_EQ(MidiInPort, 6);
    EXPECT_EQ(MidiOutPort, -1);
}

TEST_F(Dispatch, ASuccessfulSearchKeepsTheCurrentDriver) {
    CurrentDriverId = SecondDriverId;
    EXPECT_EQ(FindCurrentSynth(nullptr), 1);
    EXPECT_EQ(CurrentDriverId, SecondDriverId);
    EXPECT_EQ(MidiInPort, 4);
}

TEST_F(Dispatch, NothingIsCurrentAsLongAsTheSearchLasts) {
    static DriverId driver;
    static MidiPorts ports;
    FirstRow.FindSynth = [](QWidget *, FoundSynth &found, const PortNames &, bool) {
        driver = CurrentDriverId;
        ports = CurrentMidiPorts();
        found.driver = FirstDriverId;
        return 1;
    };
    EXPECT_EQ(FindCurrentSynth(nullptr), 1);
    EXPECT_EQ(driver, NoDriverId);
    EXPECT_EQ(ports, (MidiPorts{-1, -1}));
    EXPECT_EQ(CurrentDriverId, FirstDriverId);
}

TEST_F(Dispatch, ASearchByOtherNamesLeavesThoseOfTheSettings) {
    SelectKeyboardMidiIn = "in";
    SelectKeyboardMidiOut = "out";
    EXPECT_EQ(FindCurrentSynth(nullptr, {"other in", "other out"}, false), 1);
    EXPECT_EQ(Calls, Strings{"first FindSynth 1 -1 -1 7 other in other out 0"});
    EXPECT_EQ(SelectKeyboardMidiIn, "in");
    EXPECT_EQ(SelectKeyboardMidiOut, "out");
    EXPECT_EQ(SelectKeyboardAutodetect, 1u);
}

TEST_F(Dispatch, ASearchOfARowThatCannotSearchFindsNothing) {
    FirstRow.FindSynth = nullptr;
    EXPECT_EQ(FindCurrentSynth(nullptr), 0);
    EXPECT_EQ(CurrentDriverId, NoDriverId);
    EXPECT_EQ(MidiInPort, -1);
    EXPECT_EQ(MidiOutPort, -1);
    EXPECT_EQ(SynthFirmware, 7u);
}

TEST_F(Dispatch, TheTitleTellsTheFourDigitsOfTheVersion) {
    EXPECT_STREQ(SynthTitle(SecondDriverId, 0x01020304), "Second Instrument version 12.34");
    EXPECT_STREQ(SynthTitle(SecondDriverId, 0x00000001), "Second Instrument version 00.01");
    EXPECT_STREQ(SynthTitle(SecondDriverId, 0xFF0A0000), "Second Instrument version 25510.00");
    EXPECT_STREQ(SynthTitle(FirstDriverId, 0), "First Instrument, and more");
}

TEST_F(Dispatch, AnUnknownInstrumentHasATitleOfItsOwn) {
    EXPECT_STREQ(SynthTitle(NoDriverId, 0), "Unknown or unrecognized synthesizer");
    EXPECT_STREQ(SynthTitle(NoDriverId, 0x01020304), "Unknown or unrecognized synthesizer");
    FirstRow.name = "";
    EXPECT_STREQ(SynthTitle(FirstDriverId, 0), "Unknown or unrecognized synthesizer");
}

TEST_F(Dispatch, ANameGetsTheExtensionUnlessItEndsInOneOfSomeDriver) {
    for (const char *path : {"/a/bank.syx", "/a/BANK.SyX", "/a/x.sy1", "/a/x.SR1", "/a/x.srx",
                             "/a/x.v1.2.syx", "/a/x.y.crg", "/a/.syx"}) {
        EXPECT_EQ(WithProgramExtension(path, "syx"), path);
    }
    EXPECT_EQ(WithProgramExtension("/a/My Bank v1.2", "syx"), "/a/My Bank v1.2.syx");
    EXPECT_EQ(WithProgramExtension("/a/bank", "srx"), "/a/bank.srx");
    EXPECT_EQ(WithProgramExtension("/a/bank.", "syx"), "/a/bank.syx");
    EXPECT_EQ(WithProgramExtension("/a/bank.syx.old", "syx"), "/a/bank.syx.old.syx");
    EXPECT_EQ(WithProgramExtension("/a.syx/bank", "syx"), "/a.syx/bank.syx");
    EXPECT_EQ(WithProgramExtension("/a/.hidden", "syx"), "/a/.hidden.syx");
    FirstRow.extraExtension = nullptr;
    SecondRow.extraExtension = "";
    EXPECT_EQ(WithProgramExtension("/a/x.crg", "syx"), "/a/x.crg.syx");
}

TEST_F(Dispatch, ATitleHoldsAtMost260Bytes) {
    const std::string name(300, 'n');
    FirstRow.name = name.c_str();
    EXPECT_EQ(std::strlen(SynthTitle(FirstDriverId, 0)), 260u);
    EXPECT_EQ(std::strlen(SynthTitle(FirstDriverId, 0x01020304)), 260u);
}

TEST_F(Dispatch, TextsThatARowLeavesEmptyFallBack) {
    EXPECT_STREQ(BankExtension(SecondDriverId), "srx");
    EXPECT_STREQ(VoiceExtension(SecondDriverId), "sr1");
    EXPECT_STREQ(DefaultDocumentName(), "Untitled.syx");
    SecondRow.extraExtension = "crg";
    EXPECT_STREQ(ExtraExtension(SecondDriverId), "crg");
    FirstRow.bankExtension = FirstRow.voiceExtension = FirstRow.extraExtension = "";
    FirstRow.defaultDocumentName = "";
    EXPECT_STREQ(BankExtension(FirstDriverId), "Twl");
    EXPECT_STREQ(VoiceExtension(FirstDriverId), "Twl");
    EXPECT_STREQ(ExtraExtension(FirstDriverId), "Twl");
    EXPECT_STREQ(DefaultDocumentName(), "Untitled.Twl");
    FirstRow.bankExtension = FirstRow.voiceExtension = FirstRow.extraExtension = nullptr;
    FirstRow.defaultDocumentName = nullptr;
    EXPECT_STREQ(BankExtension(FirstDriverId), "Twl");
    EXPECT_STREQ(VoiceExtension(FirstDriverId), "Twl");
    EXPECT_STREQ(ExtraExtension(FirstDriverId), "Twl");
    EXPECT_STREQ(DefaultDocumentName(), "Untitled.Twl");
    CurrentDriverId = NoDriverId;
    EXPECT_STREQ(BankExtension(NoDriverId), "Twl");
    EXPECT_STREQ(VoiceExtension(NoDriverId), "Twl");
    EXPECT_STREQ(ExtraExtension(NoDriverId), "Twl");
    EXPECT_STREQ(ExtraExtension(0), "Twl");
    EXPECT_STREQ(DefaultDocumentName(), "Untitled.Twl");
}

TEST_F(Dispatch, TheOpenFolderIsTheFolderOfAPathWithItsSeparator) {
    EXPECT_EQ(SetOpenFolder(folder.File("bank.syx").c_str()), 1);
    EXPECT_EQ(OpenPath, folder.Folder());
    EXPECT_EQ(SetOpenFolder(folder.Folder().c_str()), 1);
    EXPECT_EQ(OpenPath, folder.Folder());
    EXPECT_EQ(SetOpenFolder("bank.syx"), 1);
    EXPECT_EQ(OpenPath, "");
}

TEST_F(Dispatch, TheExportFolderIsThatOfAPathThatIsNotTooLong) {
    EXPECT_TRUE(SetExportFolder(folder.File("voice.sy1")));
    EXPECT_EQ(OpenExportPath, folder.Folder());
    EXPECT_FALSE(SetExportFolder("/" + std::string(256, 'b') + "/c.s"));
    EXPECT_EQ(errno, ENAMETOOLONG);
    EXPECT_EQ(OpenExportPath, folder.Folder());
    EXPECT_TRUE(SetExportFolder("/" + std::string(256, 'b') + "/c."));
    EXPECT_EQ(OpenExportPath, "/" + std::string(256, 'b') + "/");
}

TEST_F(Dispatch, TheOpenFolderIsHandedOutCutTo260Bytes) {
    std::string kept = "old";
    OpenPath = "/somewhere/";
    EXPECT_EQ(GetOpenFolder(kept), 1);
    EXPECT_EQ(kept, "/somewhere/");
    OpenPath = std::string(300, 'a');
    EXPECT_EQ(GetOpenFolder(kept), 1);
    EXPECT_EQ(kept, std::string(260, 'a'));
    SetOpenFolder(("/" + std::string(300, 'b') + "/c.syx").c_str());
    EXPECT_EQ(OpenPath.size(), 260u);
}

} // namespace
} // namespace tonewright
