// Shows the settings of a reface DX and takes them back.
#include "drivers/reface_dx/view/settings_box.h"

#include "common/view/box_controls.h"
#include "common/view/centre_window.h"
#include "common/view/dialog_controls.h"
#include "common/view/drop_down.h"
#include "common/view/fonts.h"
#include "common/view/up_down.h"
#include "drivers/reface_dx/configure.h"
#include "ui_REFACEDX_ConfigBox.h"

#include <QDialog>

#include <algorithm>
#include <optional>

namespace tonewright {
namespace {

constexpr const char *HelpTopic = "CONFIGURE";

class SettingsDialog : public QDialog {
public:
    SettingsDialog(QWidget *owner, SynthConfigBlock &block)
        : QDialog(owner ? owner->window() : nullptr), block(block) {
        ui.setupUi(this);
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
        setFont(DialogFont());
        for (const RefaceSettingRow &row : RefaceSettingRows) {
            SetUp(row);
        }
        ShowSettings();
        SetUpBoxControls(*this, HelpTopic);
        connect(ui.control_112, &QPushButton::clicked, this,
                [this] { SaveRefaceSettings(this, this->block, [this] { Collect(); }); });
        connect(ui.control_113, &QPushButton::clicked, this, [this] {
            if (OpenRefaceSettings(this, this->block)) {
                ShowSettings();
            }
        });
        adjustSize();
        CentreWindow(*this);
    }

    void accept() override {
        Collect();
        QDialog::accept();
    }

private:
    void SetUp(const RefaceSettingRow &row) {
        if (auto *list = ControlOf<QComboBox>(this, row.control)) {
            FillComboFromList(list, row.items);
            TakeWheelWithFocusOnly(list);
            LeaveReturnToBox(list);
        }
        auto *edit = ControlOf<QLineEdit>(this, row.control);
        auto *arrows = ControlOf<UpDown>(this, row.control + UpDownOffset);
        if (!edit || !arrows) {
            return;
        }
        QString name = row.label;
        arrows->setAccessibleName(name.remove(':'));
        if (const std::optional<SpinRange> range = SpinRangeOf(this, row.control)) {
            StepNumberIn(edit, arrows, *range);
        } else {
            arrows->FollowEdit(edit);
            arrows->stepped = [edit](int step) {
                edit->setText(
                    QString::fromStdString(StepMasterTune(edit->text().toStdString(), step)));
                edit->selectAll();
            };
        }
    }

    // What a control holds; one that is missing holds nothing.
    RefaceControl Read(const RefaceSettingRow &row) const {
        RefaceControl control;
        if (const auto *list = ControlOf<QComboBox>(this, row.control)) {
            control.item = list->currentIndex();
        } else if (const auto *box = ControlOf<QCheckBox>(this, row.control)) {
            control.checked = box->isChecked();
        } else if (const auto *edit = ControlOf<QLineEdit>(this, row.control)) {
            control.number = ClampedDlgInt(this, row.control);
            control.text = edit->text().toStdString();
        }
        return control;
    }
    RefaceControls ReadAll() const {
        RefaceControls controls;
        std::ranges::transform(RefaceSettingRows, controls.begin(),
                               [this](const RefaceSettingRow &row) { return Read(row); });
        return controls;
    }

    void Write(const RefaceSettingRow &row, const RefaceControl &control) {
        if (auto *list = ControlOf<QComboBox>(this, row.control)) {
            list->setCurrentIndex(control.item);
        } else if (auto *box = ControlOf<QCheckBox>(this, row.control)) {
            box->setChecked(control.checked);
        } else if (auto *edit = ControlOf<QLineEdit>(this, row.control)) {
            edit->setText(row.kind == RefaceSettingKind::MasterTune
                              ? QString::fromStdString(control.text)
                              : QString::number(control.number));
        }
    }
    void ShowSettings() {
        RefaceControls controls = ReadAll();
        ShowRefaceSettings(controls, block.system);
        for (std::size_t n = 0; n < RefaceSettingCount; ++n) {
            Write(RefaceSettingRows[n], controls[n]);
        }
    }

    void Collect() { CollectRefaceSettings(ReadAll(), block.system); }

    Ui::REFACEDX_ConfigBox ui;
    SynthConfigBlock &block;
};

} // namespace

bool RunRefaceSettingsBox(QWidget *owner, SynthConfigBlock &block) {
    SettingsDialog box(owner, block);
    return box.exec() == QDialog::Accepted;
}

int RefaceConfigureSynth(QWidget *window, MidiPorts ports) {
    return ConfigureReface(window, ports, RunRefaceSettingsBox);
}

} // namespace tonewright
