// Shows the choices of a synthesizer and takes them back.
#include "shell/view/select_synth_box.h"

#include "common/view/box_controls.h"
#include "common/view/centre_window.h"
#include "common/view/fonts.h"
#include "common/view/up_down.h"
#include "ui_SelectKeyboardBox.h"

#include <QDialog>

#include <optional>

namespace tonewright {
namespace {

constexpr const char *HelpTopic = "SELECT";
constexpr std::uint32_t MidiChannelControl = 105;

void FillCombo(QComboBox &combo, const ItemChoice &choice) {
    for (const std::string &item : choice.items) {
        combo.addItem(QString::fromStdString(item));
    }
    combo.setCurrentIndex(choice.selected);
}

class SelectSynthDialog : public QDialog {
public:
    SelectSynthDialog(QWidget *owner, const SelectParams &params)
        : QDialog(owner ? owner->window() : nullptr), params(params),
          selection(OpenSynthSelection(params)) {
        ui.setupUi(this);
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
        setFont(DialogFont());
        FillCombo(*ui.control_101, selection.synths);
        FillCombo(*ui.control_104, selection.inputs);
        FillCombo(*ui.control_103, selection.outputs);
        ui.control_102->setChecked(selection.detect);
        ui.control_102->setEnabled(selection.detectEnabled);
        ui.control_105->setText(QString::number(selection.midiChannel));
        if (const std::optional<SpinRange> range = SpinRangeOf(this, MidiChannelControl)) {
            StepNumberIn(ui.control_105, ui.control_10105, *range);
        }
        connect(ui.control_101, &QComboBox::activated, this, [this](int item) {
            selection.synths.selected = item;
            SynthChosen(selection);
            ui.control_102->setEnabled(selection.detectEnabled);
        });
        SetUpBoxControls(*this, HelpTopic);
        adjustSize();
        CentreWindow(*this);
    }

    void accept() override {
        selection.synths.selected = ui.control_101->currentIndex();
        selection.inputs.selected = ui.control_104->currentIndex();
        selection.outputs.selected = ui.control_103->currentIndex();
        selection.detect = ui.control_102->isChecked();
        selection.midiChannel = ClampedDlgInt(this, MidiChannelControl);
        if (AcceptSynthSelection(selection, params)) {
            QDialog::accept();
        }
    }

private:
    Ui::SelectKeyboardBox ui;
    const SelectParams params;
    SynthSelection selection;
};

} // namespace

int SelectSynthesizer(QWidget *owner, const SelectParams &params) {
    SelectSynthDialog box(owner, params);
    return box.exec() == QDialog::Accepted ? 1 : 0;
}

} // namespace tonewright
