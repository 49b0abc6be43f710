// Shows how the built-in instruments are heard, and takes the choices back.
#include "shell/view/instruments_box.h"

#include "common/audio_devices.h"
#include "common/view/box_controls.h"
#include "common/view/centre_window.h"
#include "common/view/fonts.h"
#include "common/view/up_down.h"
#include "midi/instrument_settings.h"
#include "midi/midi_start.h"
#include "shell/instruments_flow.h"
#include "ui_InstrumentsBox.h"

#include <QDialog>
#include <QTimer>

#include <optional>

namespace tonewright {
namespace {

constexpr const char *HelpTopic = "EXTRAS_BUILTININSTRUMENTS";
constexpr std::uint32_t PolyphonyControl = 106;
constexpr int LookMilliseconds = 50;
constexpr int LooksForADot = 8;
constexpr int MostDots = 3;
constexpr int LooksForAnAnswer = 5000 / LookMilliseconds; // a card that hangs holds up the search
constexpr int VisibleDeviceCharacters = 40;

class InstrumentsDialog : public QDialog {
public:
    explicit InstrumentsDialog(QWidget *owner)
        : QDialog(owner ? owner->window() : nullptr), choice(CurrentInstrumentsChoice()) {
        ui.setupUi(this);
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
        setFont(DialogFont());
        ui.control_101->setChecked(choice.wanted);
        ui.control_102->setMinimumContentsLength(VisibleDeviceCharacters);
        ShowDevices({}, false);
        SetUpVolume();
        for (const int frames : BufferRows(choice.buffer)) {
            ui.control_105->addItem(QString::fromStdString(BufferText(frames)), frames);
        }
        ui.control_105->setCurrentIndex(ui.control_105->findData(choice.buffer));
        ui.control_106->setText(QString::number(choice.polyphony));
        if (const std::optional<SpinRange> range = SpinRangeOf(this, PolyphonyControl)) {
            StepNumberIn(ui.control_106, ui.control_10106, *range);
        }
        SetUpBoxControls(*this, HelpTopic);
        BeginSearch();
        adjustSize();
        CentreWindow(*this);
    }

    void accept() override {
        choice.wanted = ui.control_101->isChecked();
        choice.device = ChosenDevice();
        choice.volume = ui.control_104->value();
        choice.buffer = ui.control_105->currentData().toInt();
        choice.polyphony = ClampedDlgInt(this, PolyphonyControl);
        QDialog::accept();
    }

    const InstrumentsChoice &Choice() const { return choice; }

private:
    std::string ChosenDevice() const {
        return ui.control_102->currentData().toString().toStdString();
    }

    void ShowDevices(const std::vector<AudioDevice> &devices, bool searched) {
        const std::string chosen = ui.control_102->count() == 0 ? choice.device : ChosenDevice();
        ui.control_102->clear();
        for (const DeviceRow &row : DeviceRows(devices, chosen, searched)) {
            ui.control_102->addItem(QString::fromStdString(row.text),
                                    QString::fromStdString(row.name));
        }
        ui.control_102->setCurrentIndex(ui.control_102->findData(QString::fromStdString(chosen)));
    }

    void SetUpVolume() {
        ui.control_104->setRange(0, HighestInstrumentVolume);
        ui.control_104->setPageStep(HighestInstrumentVolume / 10);
        const auto show = [this](int value) { ui.control_12104->setText(QString::number(value)); };
        connect(ui.control_104, &QSlider::valueChanged, this, show);
        ui.control_104->setValue(choice.volume);
        show(choice.volume);
        ui.control_12104->setMinimumWidth(
            fontMetrics().horizontalAdvance(QString::number(HighestInstrumentVolume)));
    }

    void BeginSearch() {
        if (!InstrumentSoundAllowed()) {
            ui.control_103->setText("No sound: TONEWRIGHT_SOUND=0 keeps the instruments silent.");
            return;
        }
        search = SearchAudioDevices();
        connect(&look, &QTimer::timeout, this, [this] { Look(); });
        look.start(LookMilliseconds);
        ui.control_103->setText("Looking for sound devices");
    }

    void Look() {
        const auto found = TakeFoundDevices(*search);
        if (!found) {
            const int dots = ++looks / LooksForADot % (MostDots + 1);
            ui.control_103->setText(looks < LooksForAnAnswer
                                        ? "Looking for sound devices" + QString(dots, '.')
                                        : "No sound: the sound system does not answer.");
            return;
        }
        look.stop();
        ShowDevices(found->devices, true);
        if (found->devices.empty()) {
            ui.control_103->setText("No sound: " + QString::fromStdString(found->why) + ".");
        } else {
            ui.control_103->clear();
        }
    }

    Ui::InstrumentsBox ui;
    InstrumentsChoice choice;
    std::shared_ptr<AudioDeviceSearch> search;
    QTimer look; // for what the search has found
    int looks = 0;
};

} // namespace

void ShowInstrumentsBox(QWidget *owner) {
    std::optional<InstrumentsChoice> choice;
    {
        InstrumentsDialog box(owner);
        if (box.exec() == QDialog::Accepted) {
            choice = box.Choice();
        }
    }
    if (choice) {
        AcceptInstrumentsChoice(*choice);
    }
}

} // namespace tonewright
