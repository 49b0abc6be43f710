// The archive window over archives of 128,000 voices and of ten times that: its start, until it can
// be seen and until it shows the voices, and a key in the search field, until the rows are painted.
#include "common/folders.h"
#include "extras/archive_store.h"
#include "extras/view/archive_window.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTableView>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace tonewright {
namespace {

constexpr std::size_t VoicesOfAFile = 32;
constexpr int FilesOfAFolder = 100;

constexpr const char *Words[] = {"BRASS", "STRING", "PIANO",  "BASS", "ORGAN",  "BELL",  "FLUTE",
                                 "PAD",   "LEAD",   "GUITAR", "HARP", "MARIMB", "VOICE", "SYN"};

std::uint64_t NextRandom(std::uint64_t &state) {
    state = state * 6364136223846793005u + 1442695040888963407u;
    return state >> 33;
}

void Check(bool fine, const ArchiveError &error) {
    if (!fine || error) {
        throw std::runtime_error(error.text);
    }
}

ArchivePlace MakePlace(std::uint64_t &random) {
    const std::uint64_t number = NextRandom(random); // hardly a voice stands there twice
    char name[11];
    std::snprintf(name, sizeof name, "%-6s%4u", Words[number % std::size(Words)],
                  static_cast<unsigned>(number / std::size(Words) % 10'000));
    ArchivePlace place = {.identity = (number + 1) * 0x9E3779B97F4A7C15u, .name = {}};
    std::copy_n(name, place.name.size(), reinterpret_cast<char *>(place.name.data()));
    place.family = number % 10 == 0 ? ArchiveFamilyReface : ArchiveFamilyDx7;
    place.algorithm =
        static_cast<std::uint8_t>(1 + number / 7 % (place.family == ArchiveFamilyReface ? 12 : 32));
    return place;
}

// An archive of so many files, in a home of its own.
struct BenchArchive {
    explicit BenchArchive(int files) {
        PlatformFolders.applicationData = home.path().toStdString() + "/";
        MakeProgramFolders();
        ArchiveError error;
        const ArchiveStorePointer store = OpenArchive(ArchivePath(), ArchiveUse::Write, error);
        Check(store != nullptr && LockArchive(*store, {}, error), error);
        Check(BeginArchiveBatch(*store, error), error);
        ArchiveFolder root = {.path = "/home/me/Voices", .root = true}, folder;
        Check(PutArchiveFolder(*store, root, error), error);
        std::uint64_t random = 1;
        for (int number = 0; number < files; ++number) {
            if (number % FilesOfAFolder == 0) {
                folder = {.path =
                              root.path + "/Collection " + std::to_string(number / FilesOfAFolder)};
                Check(PutArchiveFolder(*store, folder, error), error);
            }
            ArchiveFile file = {.folder = folder.id,
                                .name = "bank " + std::to_string(number) + ".syx",
                                .size = 4104,
                                .voices = VoicesOfAFile};
            Check(PutArchiveFile(*store, file, error), error);
            std::array<ArchivePlace, VoicesOfAFile> places;
            std::ranges::generate(places, [&] { return MakePlace(random); });
            Check(PutArchiveVoices(*store, file.id, 0, places,
                                   std::array<VoiceFeatures, VoicesOfAFile>(), error),
                  error);
        }
        Check(EndArchiveBatch(*store, error), error);
        UnlockArchive(*store);
    }

    QTemporaryDir home;
};

void UseArchive(int files) {
    static std::map<int, std::unique_ptr<BenchArchive>> archives;
    auto &archive = archives[files];
    if (!archive) {
        archive = std::make_unique<BenchArchive>(files);
    }
    PlatformFolders.applicationData = archive->home.path().toStdString() + "/";
}

QWidget &Window() {
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->objectName() == "ArchiveWindow") {
            return *window;
        }
    }
    throw std::runtime_error("no window");
}

QTableView &Rows() {
    return *Window().findChild<QTableView *>("voices");
}

void OpenAndPaint() {
    ShowArchiveWindow();
    QApplication::processEvents();
    Window().repaint();
}

void WaitForRows() {
    while (Rows().model()->rowCount() == 0) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

// Until it can be seen and used.
void Open(benchmark::State &state) {
    UseArchive(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        OpenAndPaint();
        state.PauseTiming();
        WaitForRows();
        DropArchiveWindow();
        state.ResumeTiming();
    }
}

// Until it shows the voices.
void OpenAndLoad(benchmark::State &state) {
    UseArchive(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        OpenAndPaint();
        WaitForRows();
        QApplication::processEvents();
        state.PauseTiming();
        DropArchiveWindow();
        state.ResumeTiming();
    }
}

void Press(QWidget &field, int key, const QString &text) {
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier, text);
        QApplication::sendEvent(&field, &event);
    }
}

// From a key to the painted rows: each letter of a word, and the way back. The slowest key is told
// as well, since it is that one that a user waits for; both in the processor's time, which other
// work on the machine changes least.
void PressKeys(benchmark::State &state) {
    UseArchive(static_cast<int>(state.range(0)));
    OpenAndPaint();
    WaitForRows();
    QApplication::processEvents();
    auto &field = *Window().findChild<QLineEdit *>("search");
    double slowest = 0, sum = 0;
    int keys = 0;
    const auto press = [&](int key, const QString &text) {
        const std::clock_t begin = std::clock();
        Press(field, key, text);
        Rows().viewport()->repaint();
        Window().repaint();
        const double milliseconds =
            static_cast<double>(std::clock() - begin) * 1000 / CLOCKS_PER_SEC;
        slowest = std::max(slowest, milliseconds);
        sum += milliseconds;
        ++keys;
    };
    for (auto _ : state) {
        for (const char *word : {"brass 12", "an 3", "e"}) {
            for (const char *letter = word; *letter; ++letter) {
                press(0, QString(QChar(*letter)));
            }
            while (!field.text().isEmpty()) {
                press(Qt::Key_Backspace, {});
            }
        }
    }
    state.counters["key_ms"] = sum / keys;
    state.counters["slowest_key_ms"] = slowest;
    DropArchiveWindow();
}

// A click on each header, and a second one.
void Sort(benchmark::State &state) {
    UseArchive(static_cast<int>(state.range(0)));
    OpenAndPaint();
    WaitForRows();
    QApplication::processEvents();
    for (auto _ : state) {
        for (int key = Qt::Key_1; key <= Qt::Key_6; ++key) {
            for (int time = 0; time < 2; ++time) {
                QKeyEvent event(QEvent::KeyPress, key, Qt::ControlModifier);
                QApplication::sendEvent(&Rows(), &event);
                Rows().viewport()->repaint();
            }
        }
    }
    DropArchiveWindow();
}

BENCHMARK(Open)->Arg(4000)->Arg(40000)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime();
BENCHMARK(OpenAndLoad)
    ->Arg(4000)
    ->Arg(40000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5)
    ->UseRealTime();
BENCHMARK(PressKeys)->Arg(4000)->Arg(40000)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(Sort)->Arg(4000)->Arg(40000)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
} // namespace tonewright

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    application.setQuitOnLastWindowClosed(false);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
