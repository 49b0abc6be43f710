// Shows the report about machine and program in two columns.
#include "shell/view/system_information_box.h"

#include "common/desktop.h"
#include "common/view/centre_window.h"
#include "common/view/fonts.h"
#include "shell/system_information.h"
#include "ui_SystemInformationBox.h"

#include <QDialog>
#include <QGuiApplication>
#include <QPainter>
#include <QPointingDevice>
#include <QScreen>
#include <QStyledItemDelegate>

#include <algorithm>

namespace tonewright {
namespace {

constexpr int TextInset = 4;     // pixels
constexpr int ColumnGap = 12;    // pixels, at least
constexpr int WidestLabel = 40;  // average characters that the column of labels takes
constexpr int TabStop = 90;      // quarters of the average width of a character
constexpr int ButtonHeight = 30; // pixels

DisplayFacts ReadDisplayFacts() {
    DisplayFacts facts;
    facts.monitors = static_cast<int>(QGuiApplication::screens().size());
    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        const QSize pixels = screen->size() * screen->devicePixelRatio();
        facts.screenWidth = pixels.width();
        facts.screenHeight = pixels.height();
        facts.bitsPerPixel = screen->depth();
    }
    const QPointingDevice *mouse = QPointingDevice::primaryPointingDevice();
    if (mouse && mouse->type() == QInputDevice::DeviceType::Mouse) {
        facts.mouseWheel = mouse->hasCapability(QInputDevice::Capability::Scroll);
    }
    return facts;
}

// Paints label and value, which a tab separates, the values below each other.
class TwoColumnPainter : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    // Keeps room for the label of a line; one that is very long, with the place of a volume in it,
    // moves its own value only.
    void TakeLine(const QString &line, const QFontMetrics &metrics) {
        valueLeft = std::max(valueLeft, TextInset + metrics.averageCharWidth() * TabStop / 4);
        const int behind = BehindLabel(line, metrics);
        if (behind <= metrics.averageCharWidth() * WidestLabel) {
            valueLeft = std::max(valueLeft, behind);
        }
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override {
        const bool isSelected = option.state.testFlag(QStyle::State_Selected);
        const QPalette::ColorGroup group =
            option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
        const auto colour = [&](QPalette::ColorRole plain, QPalette::ColorRole selected) {
            return option.palette.color(group, isSelected ? selected : plain);
        };
        painter->save();
        painter->fillRect(option.rect, colour(QPalette::Base, QPalette::Highlight));
        painter->setPen(colour(QPalette::Text, QPalette::HighlightedText));
        painter->setFont(option.font);
        const QString line = index.data().toString();
        constexpr int InOneLine = Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip;
        painter->drawText(option.rect.adjusted(TextInset, 0, 0, 0), InOneLine, LabelOf(line));
        painter->drawText(option.rect.adjusted(ValueLeft(line, option.fontMetrics), 0, 0, 0),
                          InOneLine, ValueOf(line));
        painter->restore();
    }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override {
        const QString line = index.data().toString();
        const int value = option.fontMetrics.horizontalAdvance(ValueOf(line));
        return {ValueLeft(line, option.fontMetrics) + value + TextInset,
                option.fontMetrics.height() + 2};
    }

private:
    static QString LabelOf(const QString &line) { return line.section('\t', 0, 0); }
    static QString ValueOf(const QString &line) { return line.section('\t', 1); }
    static int BehindLabel(const QString &line, const QFontMetrics &metrics) {
        return TextInset + metrics.horizontalAdvance(LabelOf(line)) + ColumnGap;
    }
    int ValueLeft(const QString &line, const QFontMetrics &metrics) const {
        return std::max(valueLeft, BehindLabel(line, metrics));
    }

    int valueLeft = 0; // of most values, pixels from the left edge of a row
};

class SystemInformationDialog : public QDialog {
public:
    SystemInformationDialog(QWidget *owner, const SystemFacts &facts)
        : QDialog(owner ? owner->window() : nullptr) {
        ui.setupUi(this);
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
        setFont(DialogFont());
        columns = new TwoColumnPainter(ui.control_61); // its child
        ui.control_61->setItemDelegate(columns);
        AddLines(SystemLines(facts));
        ui.control_61->setCurrentRow(0);
        AddFolderButtons();
        connect(ui.control_1, &QPushButton::clicked, this, [this] { Dismiss(); });
        ui.control_1->setFocus();
        // The program's own lines come when the box stands.
        QMetaObject::invokeMethod(
            this, [this] { AddLines(ProgramLines()); }, Qt::QueuedConnection);
        adjustSize();
        CentreWindow(*this);
    }

private:
    void AddLines(const std::vector<std::string> &added) {
        for (const std::string &line : added) {
            const QString text = QString::fromStdString(line);
            columns->TakeLine(text, ui.control_61->fontMetrics());
            auto *item = new QListWidgetItem(text, ui.control_61); // the list's own
            item->setData(Qt::AccessibleTextRole, QString(text).replace('\t', ' '));
        }
        lines.insert(lines.end(), added.begin(), added.end());
    }

    void AddFolderButtons() {
        QWidget *before = ui.control_61; // in the order of the tab key
        for (const ReportFolder &row : ReportFolders()) {
            auto *button = new QPushButton(row.caption, this);
            button->setMinimumHeight(ButtonHeight);
            connect(button, &QPushButton::clicked, this, [row] {
                ShowInExplorer(row.folder, row.file.empty() ? nullptr : row.file.c_str());
            });
            ui.rows->addWidget(button);
            setTabOrder(before, button);
            before = button;
        }
        setTabOrder(before, ui.control_1);
    }

    void Dismiss() {
        if (ControlKeyDown()) {
            PutClipboardText(ReportText(lines));
        }
        accept();
    }

    Ui::SystemInformationBox ui;
    TwoColumnPainter *columns = nullptr;
    std::vector<std::string> lines;
};

} // namespace

void ShowSystemInformation(QWidget *owner, SystemFacts facts) {
    facts.display = ReadDisplayFacts();
    SystemInformationDialog box(owner, facts);
    box.exec();
}

} // namespace tonewright
