// How long the sheet of a voice's editor takes on a screen of 3840 by 2160 pixels at scale 2: until
// its first picture stands, from page to page, and to be painted anew.
#include "bench_bank.h"
#include "core/current.h"
#include "drivers/dx7/view/voice_editor.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/view/voice_editor.h"
#include "drivers/reface_dx/voice_codec.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QScreen>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>
#include <string>

namespace tonewright {
namespace {

using EditVoiceOperation = int (*)(QWidget *window, VoiceObject &voice, MidiPorts ports, int index);

VoiceObject BenchDx7Voice() {
    DecodeDx7Bank(MainList, MakeBenchBank());
    return *ListVoice(MainList, 0);
}

// Opens the sheet over `voice`, calls `use` when it has been painted, and closes it.
void WithSheet(EditVoiceOperation edit, VoiceObject voice,
               const std::function<void(QDialog &box)> &use) {
    struct FirstPicture : QObject {
        const std::function<void(QDialog &)> &use;
        bool isPainted = false;
        explicit FirstPicture(const std::function<void(QDialog &)> &use) : use(use) {
            QApplication::instance()->installEventFilter(this);
        }
        bool eventFilter(QObject *watched, QEvent *event) override {
            auto *box = qobject_cast<QDialog *>(watched);
            if (box && !isPainted && event->type() == QEvent::Paint) {
                isPainted = true;
                QTimer::singleShot(0, box, [this, box] {
                    use(*box);
                    box->done(0);
                });
            }
            return false;
        }
    } filter(use);
    edit(nullptr, voice, {}, 0);
}

void OpenSheet(benchmark::State &state, EditVoiceOperation edit, const VoiceObject &voice) {
    for (auto _ : state) {
        WithSheet(edit, voice, [](QDialog &) {});
    }
}

// Between the voice's page and that of an operator, both of which have been made.
void ChangePage(benchmark::State &state, EditVoiceOperation edit, const VoiceObject &voice) {
    WithSheet(edit, voice, [&state](QDialog &box) {
        auto *tabs = box.findChild<QTabWidget *>();
        const auto change = [&] {
            tabs->setCurrentIndex(1 - tabs->currentIndex());
            box.repaint();
        };
        change();
        for (auto _ : state) {
            change();
        }
    });
}

void RepaintSheet(benchmark::State &state, EditVoiceOperation edit, const VoiceObject &voice) {
    WithSheet(edit, voice, [&state](QDialog &box) {
        for (auto _ : state) {
            box.repaint();
        }
    });
}

void Register(const char *family, EditVoiceOperation edit, const VoiceObject &voice) {
    const auto add = [=](const char *name, auto *measure) {
        benchmark::RegisterBenchmark((std::string(name) + "/" + family).c_str(), measure, edit,
                                     voice)
            ->Unit(benchmark::kMillisecond);
    };
    add("OpenSheet", OpenSheet);
    add("ChangePage", ChangePage);
    add("RepaintSheet", RepaintSheet);
}

constexpr const char *Screen = R"({"screens": [{"name": "4K", "x": 0, "y": 0,
    "width": 3840, "height": 2160, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";

} // namespace
} // namespace tonewright

int main(int argc, char **argv) {
    using namespace tonewright;
    const QTemporaryDir folder;
    QFile screen(folder.filePath("screen.json"));
    if (!screen.open(QFile::WriteOnly) || screen.write(Screen) < 0) {
        return 1;
    }
    screen.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screen.fileName().toLocal8Bit());
    qputenv("QT_SCALE_FACTOR", "2");
    QApplication application(argc, argv);
    if (application.primaryScreen()->size() != QSize(1920, 1080)) {
        return 1;
    }
    Register("DX7", Dx7EditVoice, BenchDx7Voice());
    Register("reface DX", RefaceEditVoice, MakeRefaceVoiceObject());
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
