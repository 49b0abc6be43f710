// Paints the startup picture with its caption.
#include "shell/view/startup_window.h"

#include "common/strings.h"
#include "common/view/centre_window.h"
#include "common/view/fonts.h"
#include "common/view/pictures.h"
#include "shell/view/program_texts.h"

#include <QCloseEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QWidget>

#include <utility>

namespace tonewright {
namespace {

constexpr std::uint32_t StartupPicture = 9003;
constexpr QSize SizeWithoutPicture{640, 400};
constexpr int BorderWidth = 1; // pixels
constexpr int ShowTime = 8000; // milliseconds
constexpr int CaptionFontHeight = 16;
constexpr int CaptionFontWeight = 700;
// The caption's rectangle, in pixels from the right and the bottom edge of the window.
constexpr int CaptionLeft = 342, CaptionRight = 12, CaptionTop = 58, CaptionBottom = 8;

QString Caption() {
    return ProgramNameAndVersion() + "\n" + ProgramLicence + "\n" +
           "This window can be disabled in Setup.";
}

class StartupWindow : public QWidget {
public:
    explicit StartupWindow(std::function<void()> whenClosed)
        : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                               Qt::WindowDoesNotAcceptFocus),
          closed(std::move(whenClosed)) {
        setObjectName("TonewrightStartupScreen");
        setAttribute(Qt::WA_OpaquePaintEvent);
        setAttribute(Qt::WA_ShowWithoutActivating);
        setCursor(Qt::WaitCursor);
        setWindowTitle(LoadProgramString(109));
        pictureSize = PictureSize(StartupPicture);
        if (pictureSize.isEmpty()) {
            pictureSize = SizeWithoutPicture;
        }
        constexpr int Extra = 2 * BorderWidth + 2;
        setFixedSize(pictureSize + QSize(Extra, Extra));
        CentreWindow(*this);
        QTimer::singleShot(ShowTime, Qt::PreciseTimer, this, &QWidget::close);
    }

protected:
    // A message that stands meanwhile must not be covered, nor could a click reach this window.
    bool event(QEvent *event) override {
        if (event->type() == QEvent::WindowBlocked) {
            hide();
        } else if (event->type() == QEvent::WindowUnblocked && closed) {
            show();
        }
        return QWidget::event(event);
    }

    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::black);
        const QPoint corner((width() - pictureSize.width()) / 2,
                            (height() - pictureSize.height()) / 2);
        painter.drawPixmap(corner, PictureOf(StartupPicture, pictureSize, devicePixelRatioF()));

        const QRect caption(QPoint(width() - CaptionLeft, height() - CaptionTop),
                            QPoint(width() - CaptionRight - 1, height() - CaptionBottom - 1));
        painter.setFont(FontOfHeight("Arial", CaptionFontHeight, CaptionFontWeight));
        painter.setPen(Qt::black);
        for (int y = -1; y <= 1; ++y) {
            for (int x = -1; x <= 1; ++x) {
                if (x != 0 || y != 0) {
                    DrawCaption(painter, caption.translated(x, y));
                }
            }
        }
        painter.setPen(Qt::white);
        DrawCaption(painter, caption);
    }

    void mouseReleaseEvent(QMouseEvent *) override { close(); }

    void closeEvent(QCloseEvent *event) override {
        event->accept();
        if (const auto call = std::exchange(closed, nullptr)) {
            call();
        }
    }

private:
    static void DrawCaption(QPainter &painter, const QRect &rectangle) {
        painter.drawText(rectangle, Qt::AlignRight | Qt::AlignTop | Qt::TextWordWrap, Caption());
    }

    std::function<void()> closed;
    QSize pictureSize;
};

} // namespace

std::unique_ptr<QWidget> ShowStartupWindowBox(std::function<void()> closed) {
    auto window = std::make_unique<StartupWindow>(std::move(closed));
    window->show();
    window->raise();
    return window;
}

} // namespace tonewright
