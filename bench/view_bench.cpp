// How long painting takes: an algorithm at the size of a list item, and the whole list.
#include "bench_bank.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "drivers/dx7/files.h"
#include "drivers/dx7/view/algorithm_view.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>

namespace tonewright {
namespace {

constexpr int ListWidth = 800; // pixels, about the list's on a screen of 1920 by 1080
constexpr int ItemHeight = 48;

void DrawAlgorithm(benchmark::State &state) {
    QImage image(ListWidth, ItemHeight, QImage::Format_RGB32);
    QPainter painter(&image);
    int algorithm = 0;
    for (auto _ : state) {
        DrawDx7Algorithm(painter, {280, 4, ListWidth - 24, ItemHeight - 4}, algorithm, Qt::black,
                         Qt::white, 2, ShowAlgorithmNumber);
        algorithm = (algorithm + 1) % 32;
    }
}
BENCHMARK(DrawAlgorithm)->Unit(benchmark::kMicrosecond);

void RepaintList(benchmark::State &state) {
    CurrentDriverId = Dx7DriverId;
    DecodeDx7Bank(MainList, MakeBenchBank());
    QImage image(ListWidth, ItemHeight * Dx7VoicesPerBank, QImage::Format_RGB32);
    for (auto _ : state) {
        QPainter painter(&image);
        painter.fillRect(image.rect(), Qt::white);
        for (int row = 0; row < ListCount(MainList); ++row) {
            const int top = row * ItemHeight;
            const DrawItem item{.painter = &painter,
                                .rectangle = {0, top, ListWidth, top + ItemHeight},
                                .itemIndex = row,
                                .selected = row == MainList.selection};
            DrawVoiceObject(item, *ListVoice(MainList, row), MainItemFonts);
        }
    }
}
BENCHMARK(RepaintList)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tonewright

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
