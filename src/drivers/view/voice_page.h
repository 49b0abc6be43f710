// The controls of one page of the editor's sheet, made of a dialog template and filled by the rows.
#pragma once

#include "drivers/view/algorithm_list.h"
#include "drivers/voice_sheet.h"

#include <QScrollArea>

#include <vector>

class QCheckBox;
class QLabel;
class QLineEdit;
class QScrollBar;

namespace tonewright {

class UpDown;

// How a family's pages look.
struct VoicePagesLook {
    const VoiceParameters &family;
    void (*makeVoicePage)(QWidget *page); // put the template's controls on a page
    void (*makeOperatorPage)(QWidget *page);
    AlgorithmLook algorithms;
};

// A page, empty until it is made. What is around it may be smaller than its controls need; then it
// scrolls.
class VoicePageView : public QScrollArea {
public:
    // `look` and `sheet` outlive the page; `wanted` is the size that it asks for.
    VoicePageView(const VoicePagesLook &look, VoiceSheet &sheet, int page, QSize wanted);

    // Makes the controls, which show nothing yet, once.
    void Make();
    bool IsMade() const { return widget() != nullptr; }
    // What the template's controls say.
    PageControls Controls() const;

    // Shows what the sheet holds: all of the page, one row, the copy's algorithm.
    void ShowAll();
    void ShowRow(std::size_t row);
    void ShowAlgorithm();

    void FocusFirstControl();
    // The last one that the Tab key reaches; nullptr when there is none.
    QWidget *LastControl() const;

    QSize sizeHint() const override { return wanted; }
    // The room that the controls of a page need in a font, found out on one that is never shown.
    static QSize SizeOf(const VoicePagesLook &look, int page, int itemIndex, const QFont &font);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // The controls of a row; nullptr where the template has none.
    struct RowControls {
        QLabel *label = nullptr;
        QLineEdit *edit = nullptr;
        QComboBox *list = nullptr;
        QCheckBox *check = nullptr;
        UpDown *arrows = nullptr;
        QScrollBar *bar = nullptr;
    };

    static QWidget *MakeContents(const VoicePagesLook &look, int page, int itemIndex);
    void ConnectRow(std::size_t row);
    // Whether what the controls tell comes from the user, on the page that the sheet shows.
    bool TakesCommands() const;
    void FillRow(std::size_t row);
    static bool HasFocus(const RowControls &row);
    // Page Up or Page Down in the edit of a row with a bar moves that.
    bool TakesPageKey(std::size_t row, const QKeyEvent &key);

    const VoicePagesLook &look;
    VoiceSheet &sheet;
    const int page;
    const QSize wanted;
    std::vector<RowControls> controls; // as the page's rows
    bool isFilling = false;            // what the controls tell is no command
};

} // namespace tonewright
