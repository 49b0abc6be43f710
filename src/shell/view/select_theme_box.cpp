// Shows themes by their previews.
#include "shell/view/select_theme_box.h"

#include "common/text.h"
#include "common/theme_files.h"
#include "common/view/box_controls.h"
#include "common/view/centre_window.h"
#include "common/view/fonts.h"
#include "common/view/list_box_view.h"
#include "common/view/system_colours.h"
#include "common/view/theme.h"
#include "common/view/theme_library.h"
#include "shell/show_document.h"
#include "ui_SelectThemeBox.h"

#include <QDialog>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <vector>

namespace tonewright {
namespace {

constexpr ReferenceTopic HelpTopic = "THEME";
constexpr QSize BoxSize{405, 544};      // pixels
constexpr int RowMargin = 10;           // above, between and below preview and name
constexpr int PreviewHeightOfNone = 12; // where there is no theme
constexpr int PreviewPlace = 4;         // from the left and the top of a row
constexpr int NameGap = 3;              // between preview and name
constexpr int LineWidth = 2;            // along the top of a row

struct ThemeRow {
    std::string path;
    QString name;
    ThemeBitmap preview;
    QSize size;            // of what is shown of the preview, in device-independent pixels
    QImage image = {};     // that, made when it is painted first
    double imageScale = 0; // of the screen for which it is made
};

// What is shown of the preview of a row on a screen of a scale.
const QImage &ImageOf(ThemeRow &row, double scale) {
    if (row.imageScale != scale) {
        const QImage whole = ImageOfThemeBitmap(row.preview, scale);
        const QSize shown = (QSizeF(row.size) * whole.devicePixelRatio()).toSize();
        row.image = whole.copy(QRect(QPoint(), shown.boundedTo(whole.size())));
        row.imageScale = scale;
    }
    return row.image;
}

std::vector<ThemeRow> ReadThemes() {
    std::vector<ThemeRow> rows;
    for (const std::string &path : ThemeFiles()) {
        // Whether it is the theme that draws is told by its file, not by its name, which another
        // one may have been chosen over, or which a second file has: a second beginning and end
        // would take the theme away from under the program.
        std::optional<ThemeBitmap> preview =
            ThemeIsLoadedFrom(path) ? ThemeGetBitmap(THEME_BITMAP_PREVIEW) : ThemePreviewOf(path);
        if (preview) {
            const QSizeF size = SizeOfThemeBitmap(*preview);
            rows.push_back(
                {.path = path,
                 .name = QString::fromStdString(ThemeDisplayName(FileNameOfPath(path.c_str()))),
                 .preview = std::move(*preview),
                 .size = QSize(qCeil(size.width()), qCeil(size.height()))
                             .boundedTo(LargestShownBitmap)});
        }
    }
    return rows;
}

class SelectThemeDialog : public QDialog {
public:
    SelectThemeDialog(QWidget *owner, std::string &theme)
        : QDialog(owner ? owner->window() : nullptr), theme(theme), rows(ReadThemes()) {
        ui.setupUi(this);
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
        setFont(DialogFont());
        MakeList();
        connect(ui.control_1, &QPushButton::clicked, this, &QDialog::accept);
        connect(ui.control_2, &QPushButton::clicked, this, &QDialog::reject);
        connect(ui.control_102, &QPushButton::clicked, this, [this] { Configure(); });
        resize(sizeHint().expandedTo(BoxSize));
        CentreWindow(*this);
    }

    ~SelectThemeDialog() override { delete view; } // before the list that it shows

    // Without a theme to choose the box closes as by Cancel.
    void accept() override {
        if (!ListHasRow(list, list.selection)) {
            reject();
            return;
        }
        theme = ThemeSettingName(FileNameOf(list.selection));
        QDialog::accept();
    }

protected:
    void keyPressEvent(QKeyEvent *event) override {
        if (event->key() == Qt::Key_F1) {
            ShowHelpTopic(this, HelpTopic);
            return;
        }
        QDialog::keyPressEvent(event);
    }

private:
    std::string FileNameOf(int row) const {
        return FileNameOfPath(rows[static_cast<std::size_t>(row)].path.c_str());
    }
    QString NameOf(int row) const { return rows[static_cast<std::size_t>(row)].name; }

    void MakeList() {
        int height = rows.empty() ? PreviewHeightOfNone : 0, width = 0;
        for (const ThemeRow &row : rows) {
            height = std::max(height, row.size.height());
            width = std::max({width, row.size.width(), fontMetrics().horizontalAdvance(row.name)});
        }
        ListBoxFill(list, static_cast<int>(rows.size()));
        ListSetItemHeight(list, fontMetrics().height() + RowMargin + height);
        view = new ListBoxView(
            list,
            {.name = [this](int row) { return NameOf(row); },
             .words = [this](int row) { return NameOf(row); },
             .paint = [this](const ListRowPainting &painting) { PaintRow(painting); },
             .doubleClick = [this](int) { accept(); }},
            this);
        view->setObjectName("control_101");
        view->setAccessibleName("Themes");
        view->setMinimumWidth(std::min(width, LargestShownBitmap.width()) + 2 * PreviewPlace +
                              2 * view->frameWidth() +
                              view->verticalScrollBar()->sizeHint().width());
        ui.place_101->addWidget(view);
        const std::string current = ThemeDiskName(theme);
        for (int row = 0; row < ListCount(list) && list.selection == NoRow; ++row) {
            if (FileNameOf(row) == current) {
                ListSelect(list, row);
            }
        }
        LeaveReturnToBox(view);
        view->setFocus();
    }

    void PaintRow(const ListRowPainting &painting) {
        const auto &[painter, area, number, selected] = painting;
        ThemeRow &row = rows[static_cast<std::size_t>(number)];
        painter.fillRect(area, selected ? QColor(Qt::darkGray) : QColor(Qt::white));
        if (!selected) {
            painter.setPen(SystemColourOf(SystemColour::ButtonFace));
            painter.drawRect(area.adjusted(0, 0, -1, -1));
        }
        painter.fillRect(QRect(area.topLeft(), QSize(area.width(), LineWidth)), Qt::black);
        painter.drawImage(area.topLeft() + QPoint(PreviewPlace, PreviewPlace),
                          ImageOf(row, devicePixelRatioF()));
        painter.setPen(selected ? Qt::white : Qt::black);
        const int below = PreviewPlace + row.size.height() + NameGap;
        painter.drawText(area.adjusted(PreviewPlace, below, -PreviewPlace, 0),
                         Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, row.name);
    }

    void Configure() {
        if (ListHasRow(list, list.selection)) {
            // Of two files of one name that which would be loaded.
            ConfigureTheme(FindThemeFile(ThemeSettingName(FileNameOf(list.selection))), this);
        }
    }

    Ui::SelectThemeBox ui;
    std::string &theme;
    std::vector<ThemeRow> rows;
    ListBox list;
    ListBoxView *view = nullptr; // a child
};

} // namespace

bool SelectThemeBox(QWidget *owner, std::string &theme) {
    SelectThemeDialog box(owner, theme);
    return box.exec() == QDialog::Accepted;
}

} // namespace tonewright
