// Takes the name of a new catalogue.
#include "database/view/new_database_box.h"

#include "common/view/box_controls.h"
#include "common/view/centre_window.h"
#include "common/view/filtered_edit.h"
#include "common/view/fonts.h"
#include "database/database_names.h"
#include "ui_NewDatabaseBox.h"

#include <QDialog>

namespace tonewright {
namespace {

constexpr const char *HelpTopic = "DATABASE";

bool TakesCharacter(char32_t character) {
    return MayStandInDatabaseName(character,
                                  QChar::isLetter(character) || QChar::isDigit(character));
}

class NewDatabaseDialog : public QDialog {
public:
    NewDatabaseDialog(QWidget *owner, const std::vector<std::string> &existing,
                      const std::string &start)
        : QDialog(owner ? owner->window() : nullptr) {
        ui.setupUi(this);
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
        setFont(DialogFont());
        QComboBox &names = *ui.control_65;
        QStringList texts; // of the names, as the line shows them
        for (const std::string &name : existing) {
            const QString text = QString::fromStdString(name);
            names.addItem(text);
            texts.append(text.left(DatabaseNameLimit));
            shown.push_back(text.toStdString());
        }
        auto *edit = new FilteredEdit({.takes = TakesCharacter, .takesWhole = texts});
        names.setLineEdit(edit);
        names.setCompleter(nullptr); // it would write an existing name while a new one is typed
        edit->setMaxLength(DatabaseNameLimit);
        edit->setText(QString::fromStdString(start));
        connect(edit, &QLineEdit::textChanged, this, [this] { FollowName(); });
        SetUpBoxControls(*this, HelpTopic);
        names.setFocus();
        edit->selectAll();
        FollowName();
        adjustSize();
        CentreWindow(*this);
    }

    std::string Name() const { return ui.control_65->currentText().toStdString(); }

private:
    void FollowName() { ui.control_1->setEnabled(IsNewDatabaseName(Name(), shown)); }

    Ui::NewDatabaseBox ui;
    std::vector<std::string> shown; // the names there are; what is not UTF-8 in them is replaced
};

} // namespace

std::optional<std::string> RunNewDatabaseBox(QWidget *owner,
                                             const std::vector<std::string> &existing,
                                             const std::string &start) {
    NewDatabaseDialog box(owner, existing, start);
    return box.exec() == QDialog::Accepted ? std::optional(box.Name()) : std::nullopt;
}

} // namespace tonewright
