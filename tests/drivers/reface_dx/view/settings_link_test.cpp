// The box "Configure DX Reface" over a link to a scripted instrument: what goes out, byte by byte.
#include "../transfer_fixture.h"
#include "drivers/reface_dx/view/settings_box.h"
#include "support/modal_box.h"
#include "support/program_texts.h"
#include "support/temp_folder.h"

#include <QDialog>
#include <QPushButton>
#include <QTest>

namespace tonewright {
namespace {

const Calls LinkClosed = {"Pt_Stop()", "Pm_Close(1)", "Pm_Close(0)"};

struct SettingsOverALink : RefaceTransferTest {
    TempFolder folder;
    QDialog *box = nullptr;

    // Opens the box and hands it to `use`, which closes it. What went out behind the request.
    Traffic Configure(const std::function<void()> &use) {
        int result = 0;
        WithModalBox(
            [&] {
                result = RefaceConfigureSynth(nullptr, {in, out});
            },
            [&](QDialog &opened) {
                box = &opened;
                EXPECT_EQ(traffic, (Traffic{"> " + SystemRequest, "< " + SettingsDump}));
                traffic.clear();
                use();
            });
        EXPECT_EQ(result, 1);
        EXPECT_EQ(Calls(midi.calls.end() - 3, midi.calls.end()), LinkClosed);
        return traffic;
    }
    void Click(int button) const {
        QTest::mouseClick(box->findChild<QPushButton *>(QString("control_%1").arg(button)),
                          Qt::LeftButton);
    }
    void Open(const std::string &lines) {
        desktop.Expect(
            ExpectedFileDialog{.kind = FileDialogKind::Extra,
                               .answer = folder.WriteText("mine.crg", CrgFirstLine + lines)});
        Click(113);
    }
};

TEST_F(SettingsOverALink, OkAfterOpenSendsWhatTheBoxShows) {
    const Traffic sent = Configure([this] {
        Open("TransCh:127\nRcvCh:16\nMasterTune1:4\nLocalCtrl:0\nTranspose:70\nTempo1:100\n"
             "LCDConstrast:5\nSustain:0\nSpeaker:0\n");
        Click(1);
    });
    // The four switches were on before, and no file turns one off.
    EXPECT_EQ(sent, (Traffic{
                        "> F0 43 10 7F 1C 05 00 00 00 7F F7",
                        "> F0 43 10 7F 1C 05 00 00 01 10 F7",
                        "> F0 43 10 7F 1C 05 00 00 02 00 04 00 00 F7",
                        "> F0 43 10 7F 1C 05 00 00 06 01 F7",
                        "> F0 43 10 7F 1C 05 00 00 07 46 F7",
                        "> F0 43 10 7F 1C 05 00 00 08 00 64 F7",
                        "> F0 43 10 7F 1C 05 00 00 0A 05 F7",
                        "> F0 43 10 7F 1C 05 00 00 0B 00 F7",
                        "> F0 43 10 7F 1C 05 00 00 0C 01 F7",
                        "> F0 43 10 7F 1C 05 00 00 0D 01 F7",
                        "> F0 43 10 7F 1C 05 00 00 0E 01 F7",
                    }));
}

TEST_F(SettingsOverALink, OkAfterOpenLimitsBytesAbove127ToWhatTheControlsTell) {
    const Traffic sent = Configure([this] {
        Open("TransCh:200\nRcvCh:247\nTranspose:247\nTempo0:128\nTempo1:247\nLCDConstrast:255\n"
             "Sustain:247\n");
        Click(1);
    });
    ASSERT_EQ(sent.size(), 11u);
    EXPECT_EQ(sent[0], "> F0 43 10 7F 1C 05 00 00 00 00 F7"); // no item
    EXPECT_EQ(sent[1], "> F0 43 10 7F 1C 05 00 00 01 00 F7");
    EXPECT_EQ(sent[4], "> F0 43 10 7F 1C 05 00 00 07 4C F7");    // 12 semitones
    EXPECT_EQ(sent[5], "> F0 43 10 7F 1C 05 00 00 08 00 77 F7"); // 119 beats
    EXPECT_EQ(sent[6], "> F0 43 10 7F 1C 05 00 00 0A 3F F7");
    EXPECT_EQ(sent[7], "> F0 43 10 7F 1C 05 00 00 0B 00 F7");
}

TEST_F(SettingsOverALink, EscAndReturnOnCancelCloseItAndSendNothing) {
    for (const auto &[control, key] :
         {std::pair{"control_106", Qt::Key_Escape}, std::pair{"control_2", Qt::Key_Return}}) {
        EXPECT_EQ(Configure([&, control = control, key = key] {
                      QTest::keyClick(box->findChild<QWidget *>(control), key);
                      EXPECT_FALSE(box->isVisible());
                  }),
                  Traffic{});
    }
}

} // namespace
} // namespace tonewright
