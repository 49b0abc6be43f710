// Lists the MIDI devices.
#include "shell/view/midi_devices_box.h"

#include "common/view/box_controls.h"
#include "common/view/centre_window.h"
#include "common/view/fonts.h"
#include "shell/midi_devices.h"
#include "ui_MIDIMONSelectDeviceBox.h"

#include <QDialog>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>

namespace tonewright {
namespace {

constexpr const char *HelpTopic = "COMMUNICATING";
constexpr int ItemHeight = 18;
constexpr int TextInset = 4; // pixels

// Rows in black on white, the selected one as well: there is nothing to choose.
class DeviceRowPainter : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override {
        painter->save();
        painter->fillRect(option.rect, Qt::white);
        painter->setPen(Qt::black);
        painter->setFont(option.font);
        const QRect area = option.rect.adjusted(TextInset, 0, 0, 0);
        const QString text =
            option.fontMetrics.elidedText(index.data().toString(), Qt::ElideRight, area.width());
        painter->drawText(area, Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip, text);
        painter->restore();
    }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const override {
        const int cell = option.fontMetrics.ascent() + option.fontMetrics.descent();
        return {1, std::max(ItemHeight, cell)};
    }
};

class MidiDevicesDialog : public QDialog {
public:
    explicit MidiDevicesDialog(QWidget *owner) : QDialog(owner ? owner->window() : nullptr) {
        ui.setupUi(this);
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
        setFont(DialogFont());
        SetUpBoxControls(*this, HelpTopic);
        QPalette colours = ui.control_101->palette();
        colours.setColor(QPalette::Base, Qt::white);
        ui.control_101->setPalette(colours);
        ui.control_101->setItemDelegate(new DeviceRowPainter(ui.control_101)); // its child
        for (const std::string &row : MidiDeviceRows()) {
            ui.control_101->addItem(QString::fromStdString(row));
        }
        ui.control_101->setCurrentRow(0);
        // The command of "Close", once the double click is over.
        connect(ui.control_101, &QListWidget::itemDoubleClicked, this, &QDialog::accept,
                Qt::QueuedConnection);
        adjustSize();
        CentreWindow(*this);
    }

private:
    Ui::MIDIMONSelectDeviceBox ui;
};

} // namespace

void ShowMidiDevices(QWidget *owner) {
    MidiDevicesDialog box(owner);
    box.exec();
}

} // namespace tonewright
