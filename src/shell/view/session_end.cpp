// Hears of the end of the session and of signals.
#include "shell/view/session_end.h"

#include "shell/end_signals.h"
#include "shell/save_at_end.h"
#include "shell/view/main_window.h"

#include <QGuiApplication>
#include <QSocketNotifier>

namespace tonewright {

void FollowSessionEnd(MainWindow &window) {
    QObject::connect(qGuiApp, &QGuiApplication::commitDataRequest, &window, SaveWhatChanged);
    QObject::connect(qGuiApp, &QGuiApplication::saveStateRequest, &window, SaveWhatChanged);
    const int requests = CatchEndSignals();
    if (requests < 0) {
        return;
    }
    auto *notifier = new QSocketNotifier(requests, QSocketNotifier::Read, &window);
    QObject::connect(notifier, &QSocketNotifier::activated, &window, [&window, notifier] {
        notifier->setEnabled(false);
        window.EndAtOnce();
        ReleaseEndSignals(); // what is still to be left may take its time; another one ends that
    });
}

} // namespace tonewright
