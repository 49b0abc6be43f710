// Keeps fields, pictures and list of the colour box in step. The toolkit's own colour dialog has
// neither these fields nor a place for them.
#include "shell/view/colour_box.h"

#include "common/view/box_controls.h"
#include "common/view/centre_window.h"
#include "common/view/dialog_controls.h"
#include "common/view/fonts.h"
#include "common/view/list_box_view.h"
#include "common/view/text_line.h"
#include "shell/colour_selection.h"
#include "shell/view/colour_table_boxes.h"
#include "ui_COMMONColourSelectBox.h"
#include "ui_COMMONColourSelectBox_S.h"

#include <QComboBox>
#include <QDialog>
#include <QFontDatabase>
#include <QLabel>
#include <QPainter>
#include <QTimer>
#include <QWheelEvent>

#include <array>
#include <utility>

namespace tonewright {
namespace {

constexpr int ClickMilliseconds = 50; // from a click into the pictures to number, sample and name
constexpr int NameMilliseconds = 100; // from a new colour in the fields to sample and name

constexpr std::uint32_t HexLabelOffset =
    15000;                        // number of the label behind a field minus the field's
constexpr int HexLabelColumn = 4; // of the fields
constexpr const char *WidestHexLabel = "DDH";

// Pixels.
constexpr int ListWidth = 220;
constexpr int FewestRows = 14;
constexpr int RowMargin = 4; // around the swatch of a row, and above and below its name
constexpr int SwatchWidth = 36;
constexpr QRgb SelectedGround = 0xFFC8C8C8;

void DrawRow(const ListRowPainting &row, const NamedColour &item) {
    if (row.selected) {
        row.painter.fillRect(row.area, QColor(SelectedGround));
    }
    const QRect inside = row.area.adjusted(RowMargin, RowMargin / 2, -RowMargin, -RowMargin / 2);
    QRect swatch = inside;
    swatch.setWidth(SwatchWidth);
    DrawColourSample(row.painter, swatch, item.colour);
    row.painter.setPen(Qt::black); // on white or grey, whatever the colours of the desktop
    DrawTextLine(row.painter, inside.adjusted(SwatchWidth + 2 * RowMargin, 0, 0, 0),
                 QString::fromStdString(item.name));
}

class ColourBox : public QDialog {
public:
    ColourBox(QWidget *owner, std::vector<ColourOption> &options)
        : QDialog(owner ? owner->window() : nullptr), options(options) {
        ui.setupUi(this);
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
        setFont(DialogFont());
        BeginColourSelection(selection);
        MakeList();
        MakeOptions();
        MakeFields();
        MakePictures();
        ConnectButtons();
        SetUpBoxControls(*this, ColourHelpTopic);
        SendWheelToList();
        ShowColour(options[current].colour);
        FollowColour();
        list->setFocus();
        adjustSize();
        CentreWindow(*this);
    }
    ~ColourBox() override {
        EndColourSelection(parentWidget(), selection);
        delete list; // before the rows that it shows
    }

    void accept() override {
        options[current].colour = Colour();
        QDialog::accept();
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() != QEvent::Wheel) {
            return QDialog::eventFilter(watched, event);
        }
        ListScrollByWheel(selection.table, static_cast<QWheelEvent *>(event)->angleDelta().y());
        return true;
    }
    void wheelEvent(QWheelEvent *event) override { eventFilter(this, event); }
    // Now the list knows how many rows it shows.
    void showEvent(QShowEvent *event) override {
        QDialog::showEvent(event);
        ListShowRow(selection.table, selection.table.selection);
    }

private:
    void MakeList() {
        ListSetItemHeight(selection.table, fontMetrics().height() + 2 * RowMargin);
        const auto name = [this](int row) {
            return QString::fromStdString(selection.table.items[row].name);
        };
        list = new ListBoxView(selection.table,
                               {.name = name,
                                .words = name,
                                .paint =
                                    [this](const ListRowPainting &row) {
                                        DrawRow(row, selection.table.items[row.row]);
                                    },
                                .touched = [this] { TakeNewSelection(); },
                                .clickedAgain = [this] { TakeSelection(); },
                                .doubleClick = [this](int) { ui.control_1->click(); }},
                               this);
        list->setObjectName(ControlName(108));
        list->setAccessibleName("Named colors");
        list->setMinimumSize(ListWidth,
                             FewestRows * selection.table.itemHeight + 2 * list->frameWidth());
        LeaveReturnToBox(list);
        ui.names->insertWidget(0, list, 1);
        setTabOrder(ui.control_9, list); // from the last control to the first one
    }

    void MakeOptions() {
        if (options.size() < 2) {
            return;
        }
        auto *row = new QWidget(this);
        Ui::COMMONColourSelectBox_S optionsUi;
        optionsUi.setupUi(row);
        for (const ColourOption &option : options) {
            optionsUi.control_112->addItem(QString::fromStdString(option.name));
        }
        connect(optionsUi.control_112, &QComboBox::currentIndexChanged, this, [this](int index) {
            options[std::exchange(current, index)].colour = Colour();
            ShowColour(options[current].colour);
            FollowColour();
        });
        LeaveReturnToBox(optionsUi.control_112);
        ui.names->insertWidget(0, row);
        setTabOrder(ui.control_9, optionsUi.control_112);
    }

    void MakeFields() {
        parts = {ui.control_706, ui.control_707, ui.control_708};
        placeFields = {ui.control_703, ui.control_704, ui.control_705};
        UpDown *const arrows[] = {ui.control_204, ui.control_205, ui.control_206,
                                  ui.control_201, ui.control_202, ui.control_203};
        QLineEdit *const edits[] = {parts[0],       parts[1],       parts[2],
                                    placeFields[0], placeFields[1], placeFields[2]};
        for (std::size_t i = 0; i < std::size(edits); ++i) {
            SpinRange range;
            ScanSpinRange(arrows[i]->RangeText().c_str(), range);
            StepNumberIn(edits[i], arrows[i], range);
            TakeNumbersUpTo(edits[i], range.maximum);
        }
        for (std::size_t i = 0; i < parts.size(); ++i) {
            auto *label = new QLabel(this);
            const QString number = parts[i]->objectName().section('_', 1);
            label->setObjectName(ControlName(number.toUInt() + HexLabelOffset));
            label->setMinimumWidth(label->fontMetrics().horizontalAdvance(WidestHexLabel));
            ui.fields->addWidget(label, static_cast<int>(i), HexLabelColumn);
            hexLabels[i] = label;
            connect(parts[i], &QLineEdit::textChanged, this, [this] { FollowParts(); });
            connect(placeFields[i], &QLineEdit::textChanged, this, [this] { FollowPlaceFields(); });
        }
        QFont fixedPitch = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        fixedPitch.setPixelSize(QFontInfo(font()).pixelSize());
        ui.control_102->setFont(fixedPitch);
        connect(ui.control_102, &QLineEdit::textEdited, this, [this] { FollowHex(); });
        connect(ui.control_102, &QLineEdit::editingFinished, this, [this] { ShowHex(); });
    }

    void MakePictures() {
        for (ColourPicker *picture : Pictures()) {
            picture->chosen = [this, picture] { TakePlace(picture->place); };
            picture->released = [this](bool beside) {
                if (beside && clickTimer.isActive()) {
                    clickTimer.stop();
                    FollowColour();
                }
            };
        }
        clickTimer.setObjectName("timer_18");
        clickTimer.setInterval(ClickMilliseconds);
        nameTimer.setObjectName("timer_17");
        nameTimer.setInterval(NameMilliseconds);
        for (QTimer *timer : {&clickTimer, &nameTimer}) {
            timer->setTimerType(Qt::PreciseTimer);
            timer->setSingleShot(true);
        }
        connect(&clickTimer, &QTimer::timeout, this, [this] {
            if (CursorIsInPictures()) {
                FollowColour();
            }
        });
        connect(&nameTimer, &QTimer::timeout, this, [this] { FollowSampleAndName(); });
    }

    void ConnectButtons() {
        connect(ui.control_109, &QPushButton::clicked, this, [this] { Add(); });
        connect(ui.control_110, &QPushButton::clicked, this, [this] {
            if (DeleteColour(this, selection)) {
                taken = selection.table.selection;
                ShowName();
            }
        });
        connect(ui.control_101, &QPushButton::clicked, this, [this] {
            const auto name = RunColourTableBox(this);
            if (name && OpenColourTable(this, selection, *name)) {
                FollowSampleAndName();
            }
        });
    }

    void SendWheelToList() {
        for (QWidget *control : findChildren<QWidget *>()) {
            if (control != list && !list->isAncestorOf(control)) {
                control->installEventFilter(this);
            }
        }
    }

    std::array<ColourPicker *, 2> Pictures() { return {ui.control_710, ui.control_702}; }

    ColourFields Fields() const {
        return {parts[0]->text().toStdString(), parts[1]->text().toStdString(),
                parts[2]->text().toStdString()};
    }
    std::uint32_t Colour() const { return ColourOfFields(Fields()); }

    // Puts a colour into the fields of its parts.
    void SetParts(std::uint32_t colour) {
        isSetting = true;
        const ColourParts values = PartsOf(colour);
        const unsigned numbers[] = {values.red, values.green, values.blue};
        for (std::size_t i = 0; i < parts.size(); ++i) {
            parts[i]->setText(QString::number(numbers[i]));
        }
        isSetting = false;
        ShowHexLabels();
    }
    // Puts a place into the pictures and, unless the user writes there, the fields of it.
    void SetPlace(ColourPlace place, bool fieldsToo) {
        for (ColourPicker *picture : Pictures()) {
            picture->SetPlace(place);
        }
        if (!fieldsToo) {
            return;
        }
        isSetting = true;
        const int numbers[] = {place.hue, place.saturation, place.luminance};
        for (std::size_t i = 0; i < placeFields.size(); ++i) {
            placeFields[i]->setText(QString::number(numbers[i]));
        }
        isSetting = false;
    }
    // Puts a colour into all fields and pictures.
    void ShowColour(std::uint32_t colour) {
        SetParts(colour);
        SetPlace(PlaceOfColour(colour), true);
    }

    void ShowHexLabels() {
        const ColourParts values = PartsOf(Colour());
        const unsigned numbers[] = {values.red, values.green, values.blue};
        for (std::size_t i = 0; i < hexLabels.size(); ++i) {
            hexLabels[i]->setText(QString::fromStdString(HexOfPart(numbers[i])));
        }
    }
    void ShowHex() { ui.control_102->setText(QString::fromStdString(HexOfColour(Colour()))); }
    void ShowName() {
        ui.control_104->ShowName(QString::fromStdString(NameOfColour(selection, Colour())));
    }

    // Brings number, sample, list and name into line with the fields.
    void FollowColour() {
        ShowHex();
        FollowSampleAndName();
    }
    void FollowSampleAndName() {
        ui.control_709->ShowColour(Colour());
        SelectColour(selection, Colour());
        taken = selection.table.selection;
        ShowName();
    }

    // The user has written red, green or blue.
    void FollowParts() {
        if (!isSetting) {
            ShowHexLabels();
            SetPlace(PlaceOfColour(Colour()), true);
            FollowColour();
        }
    }
    // The user has written hue, saturation or luminance.
    void FollowPlaceFields() {
        if (!isSetting) {
            const ColourPlace place{.hue = placeFields[0]->text().toInt(),
                                    .saturation = placeFields[1]->text().toInt(),
                                    .luminance = placeFields[2]->text().toInt()};
            SetPlace(place, false);
            SetParts(ColourAt(place));
            FollowColour();
        }
    }
    // The user has written a number.
    void FollowHex() {
        const auto colour = ReadHexColour(ui.control_102->text().toStdString());
        if (colour && *colour != Colour()) {
            ShowColour(*colour);
            nameTimer.start();
        }
    }
    // The user has chosen a place in one of the pictures.
    void TakePlace(ColourPlace place) {
        SetPlace(place, true);
        SetParts(ColourAt(place));
        if (!clickTimer.isActive()) { // or a mouse that moves on would hold it up
            clickTimer.start();
        }
    }
    bool CursorIsInPictures() {
        for (const ColourPicker *picture : Pictures()) {
            if (picture->IsHeld() ||
                picture->rect().contains(picture->mapFromGlobal(QCursor::pos()))) {
                return true;
            }
        }
        return false;
    }

    void TakeNewSelection() {
        if (selection.table.selection != taken) {
            TakeSelection();
        }
    }
    // The user has chosen the selected row.
    void TakeSelection() {
        taken = selection.table.selection;
        ShowColour(selection.table.items[taken].colour);
        ShowHex();
        nameTimer.start();
    }

    void Add() {
        if (!MayAddColour(this, selection, Colour())) {
            return;
        }
        if (const auto colour = RunAddColourBox(this, Fields())) {
            AddColour(this, selection, *colour);
            ShowColour(colour->colour);
            FollowColour();
        }
    }

    Ui::COMMONColourSelectBox ui;
    std::vector<ColourOption> &options;
    int current = 0; // the option that is shown
    ColourSelection selection;
    ListBoxView *list = nullptr;              // a child
    int taken = NoRow;                        // the selected row that fields and list agree on
    std::array<QLineEdit *, 3> parts{};       // red, green, blue
    std::array<QLineEdit *, 3> placeFields{}; // hue, saturation, luminance
    std::array<QLabel *, 3> hexLabels{};
    bool isSetting = false; // fields are being set, not written by the user
    QTimer clickTimer{this}, nameTimer{this};
};

} // namespace

std::optional<std::uint32_t> ChooseColour(QWidget *owner, std::uint32_t colour) {
    std::vector<ColourOption> options = {{.name = {}, .colour = colour}};
    return ChooseColours(owner, options) ? std::optional(options[0].colour) : std::nullopt;
}

bool ChooseColours(QWidget *owner, std::vector<ColourOption> &options) {
    if (options.empty()) {
        return false;
    }
    std::vector<ColourOption> chosen = options;
    ColourBox box(owner, chosen);
    if (box.exec() != QDialog::Accepted) {
        return false;
    }
    options = std::move(chosen);
    return true;
}

} // namespace tonewright
