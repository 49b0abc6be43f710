// Takes the name of a colour, and that of a table.
#include "shell/view/colour_table_boxes.h"

#include "common/view/box_controls.h"
#include "common/view/centre_window.h"
#include "common/view/filtered_edit.h"
#include "common/view/fonts.h"
#include "ui_COMMONAddColourBox.h"
#include "ui_COMMONOpenColourTableBox.h"

#include <QComboBox>
#include <QDialog>

#include <array>

namespace tonewright {
namespace {

constexpr int NameWidth = 280; // pixels
constexpr int LargestPart = 255;

void SetUpWindow(QDialog &box) {
    box.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    box.setFont(DialogFont());
}

class AddColourBox : public QDialog {
public:
    AddColourBox(QWidget *owner, const ColourFields &fields) : QDialog(owner) {
        ui.setupUi(this);
        SetUpWindow(*this);
        name = new FilteredEdit({.takes = MayStandInColourName}, this);
        name->setObjectName("control_101");
        name->setMaxLength(ColourNameLimit);
        name->setMinimumWidth(NameWidth);
        ui.label_101->setBuddy(name);
        ui.name->addWidget(name);
        setTabOrder(name, ui.control_706);
        values = {ui.control_706, ui.control_707, ui.control_708};
        for (std::size_t i = 0; i < values.size(); ++i) {
            values[i]->setText(QString::fromStdString(fields[i]));
            TakeNumbersUpTo(values[i], LargestPart);
            connect(values[i], &QLineEdit::textChanged, this, [this] { FollowTexts(); });
        }
        connect(name, &QLineEdit::textChanged, this, [this] { FollowTexts(); });
        SetUpBoxControls(*this, ColourHelpTopic);
        name->setFocus();
        FollowTexts();
        adjustSize();
        CentreWindow(*this);
    }

    NamedColour Colour() const {
        return {.name = name->text().toStdString(), .colour = ColourOfFields(Fields())};
    }

private:
    ColourFields Fields() const {
        return {values[0]->text().toStdString(), values[1]->text().toStdString(),
                values[2]->text().toStdString()};
    }
    void FollowTexts() {
        ui.control_1->setEnabled(IsWholeColour(name->text().toStdString(), Fields()));
    }

    Ui::COMMONAddColourBox ui;
    FilteredEdit *name = nullptr; // a child
    std::array<QLineEdit *, 3> values{};
};

class ColourTableBox : public QDialog {
public:
    explicit ColourTableBox(QWidget *owner) : QDialog(owner) {
        ui.setupUi(this);
        SetUpWindow(*this);
        QComboBox &names = *ui.control_101;
        names.setMinimumWidth(NameWidth);
        for (const std::string &name : ColourTableNames()) {
            const QString text = QString::fromStdString(name);
            if (text.toStdString() == name) { // or what is chosen would be another name
                names.addItem(text);
            }
        }
        names.setCompleter(nullptr); // it would write an existing name while a new one is typed
        names.setEditText(QString::fromStdString(ColourTableName()));
        connect(&names, &QComboBox::editTextChanged, this, [this] { FollowText(); });
        SetUpBoxControls(*this, ColourHelpTopic);
        names.setFocus();
        names.lineEdit()->selectAll();
        FollowText();
        adjustSize();
        CentreWindow(*this);
    }

    std::string Name() const { return ui.control_101->currentText().toStdString(); }

private:
    void FollowText() { ui.control_1->setEnabled(IsColourTableName(Name())); }

    Ui::COMMONOpenColourTableBox ui;
};

} // namespace

std::optional<NamedColour> RunAddColourBox(QWidget *owner, const ColourFields &fields) {
    AddColourBox box(owner, fields);
    return box.exec() == QDialog::Accepted ? std::optional(box.Colour()) : std::nullopt;
}

std::optional<std::string> RunColourTableBox(QWidget *owner) {
    ColourTableBox box(owner);
    return box.exec() == QDialog::Accepted ? std::optional(box.Name()) : std::nullopt;
}

} // namespace tonewright
