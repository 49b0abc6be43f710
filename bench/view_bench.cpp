// How long painting takes: an algorithm at the size of a list item, anew and kept, and the whole
// list; what a list box costs that shows 32 rows or 120,000; and printing a bank and a catalogue.
#include "bench_bank.h"
#include "common/view/list_box_view.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "database/database_window.h"
#include "database/view/print_painter.h"
#include "database/view/record_list_view.h"
#include "drivers/dx7/files.h"
#include "drivers/dx7/view/algorithm_view.h"
#include "drivers/reface_dx/voice_codec.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

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

void DrawKeptAlgorithm(benchmark::State &state) {
    QImage image(ListWidth, ItemHeight, QImage::Format_RGB32);
    QPainter painter(&image);
    int algorithm = 0;
    for (auto _ : state) {
        DrawKeptDx7Algorithm(painter, {280, 4, ListWidth - 24, ItemHeight - 4}, algorithm,
                             Qt::black, Qt::white, 2, ShowAlgorithmNumber);
        algorithm = (algorithm + 1) % 32;
    }
}
BENCHMARK(DrawKeptAlgorithm)->Unit(benchmark::kMicrosecond);

// Paints the rows of the main list, as many as a bank has.
void RepaintMainList(benchmark::State &state) {
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

void RepaintList(benchmark::State &state) {
    CurrentDriverId = Dx7DriverId;
    DecodeDx7Bank(MainList, MakeBenchBank());
    RepaintMainList(state);
}
BENCHMARK(RepaintList)->Unit(benchmark::kMillisecond);

void RepaintRefaceList(benchmark::State &state) {
    CurrentDriverId = RefaceDriverId;
    ListReset(MainList);
    SelectListFonts(MainList, CurrentDriverId);
    for (int row = 0; row < RefaceVoicesPerBank; ++row) {
        VoiceObject voice = MakeRefaceVoiceObject();
        const auto common = MutableRefaceVoiceOf(voice)->common;
        std::ranges::copy(std::string_view("VOICE 01"), common.begin());
        common[RefaceVoice::algorithm] = static_cast<std::uint8_t>(row % 12);
        ListSetVoice(MainList, ListAdd(MainList), std::move(voice));
    }
    RepaintMainList(state);
}
BENCHMARK(RepaintRefaceList)->Unit(benchmark::kMillisecond);

// A list box of plain rows, which are named by their number.
constexpr int PlainRowHeight = 20;
QString PlainName(int row) {
    return QStringLiteral("row %1").arg(row, 6, 10, QLatin1Char('0'));
}
struct PlainList {
    explicit PlainList(int rows)
        : view(box,
               {.name = PlainName,
                .paint =
                    [](const ListRowPainting &painting) {
                        painting.painter.drawText(painting.area, PlainName(painting.row));
                    }},
               nullptr) {
        ListSetItemHeight(box, PlainRowHeight);
        view.resize(ListWidth, view.HeightForWholeRows(32 * PlainRowHeight + 2));
        view.show();
        QApplication::processEvents(); // what is not exposed is not painted
        ListBoxFill(box, rows);
    }
    ListBox box;
    ListBoxView view;
};

void FillListBox(benchmark::State &state) {
    const int rows = static_cast<int>(state.range(0));
    PlainList list(rows);
    for (auto _ : state) {
        ListBoxFill(list.box, rows);
    }
}
BENCHMARK(FillListBox)->Arg(32)->Arg(120000)->Unit(benchmark::kMicrosecond);

void InsertAndDeleteARow(benchmark::State &state) {
    PlainList list(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        ListBoxInsert(list.box, 16);
        ListBoxDelete(list.box, 16);
    }
}
BENCHMARK(InsertAndDeleteARow)->Arg(32)->Arg(120000)->Unit(benchmark::kMicrosecond);

void RepaintListBox(benchmark::State &state) {
    PlainList list(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        list.view.viewport()->repaint();
    }
}
BENCHMARK(RepaintListBox)->Arg(32)->Arg(120000)->Unit(benchmark::kMicrosecond);

// The rows of the catalogue window, as many as it shows at first.
void RepaintRecords(benchmark::State &state) {
    constexpr int Rows = 22;
    DatabaseWindow window;
    RecordListView view(window, {}, nullptr);
    std::vector<DatabaseRecord> records(static_cast<std::size_t>(state.range(0)));
    for (std::size_t i = 0; i < records.size(); ++i) {
        records[i].bytes.resize(DatabasePayloadOffset);
        WriteLittle32(records[i].bytes, 0, DatabaseRecordMagic);
        SetRecordName(records[i], "Voice " + std::to_string(i));
        SetRecordSource(records[i], "Bank " + std::to_string(i / 32) + ".syx");
        SetRecordDate(records[i], static_cast<std::uint32_t>(i * 20000));
    }
    RecordListFill(window.records, std::move(records));
    view.resize(RecordRowWidth, view.HeightForWholeRows(Rows * window.records.itemHeight + 4));
    view.show();
    QApplication::processEvents();
    for (auto _ : state) {
        view.viewport()->repaint();
    }
}
BENCHMARK(RepaintRecords)->Arg(32)->Arg(120000)->Unit(benchmark::kMicrosecond);

void JumpToTheEndAndBack(benchmark::State &state) {
    PlainList list(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        for (const ListKey key : {ListKey::End, ListKey::Home}) {
            ListSelect(list.box, ListRowOfKey(list.box, key));
            list.view.viewport()->repaint();
        }
    }
}
BENCHMARK(JumpToTheEndAndBack)->Arg(32)->Arg(120000)->Unit(benchmark::kMicrosecond);

// The name of the last row, letter by letter: the last letter has to look at every name.
void TypeTheLastName(benchmark::State &state) {
    const int rows = static_cast<int>(state.range(0));
    PlainList list(rows);
    const QString name = PlainName(rows - 1);
    for (auto _ : state) {
        ListSelect(list.box, NoRow);
        list.view.keyboardSearch(name);
    }
}
BENCHMARK(TypeTheLastName)->Arg(32)->Arg(120000)->Unit(benchmark::kMicrosecond);

// ---- printed pages, as a PDF in memory

void PrintBank(benchmark::State &state) {
    CurrentDriverId = Dx7DriverId;
    DecodeDx7Bank(MainList, MakeBenchBank());
    for (auto _ : state) {
        benchmark::DoNotOptimize(PrintToPdf(QPageSize::A4, "", [](const PrintDevice &device) {
            return PrintVoiceListReport(device, MainList, "bank.syx", 0);
        }));
    }
}
BENCHMARK(PrintBank)->Unit(benchmark::kMillisecond);

// Records of one catalogue, all of another name, source and date.
RecordList RecordsToPrint(int count) {
    std::vector<DatabaseRecord> records;
    for (int index = 0; index < count; ++index) {
        DatabaseRecord record{std::vector<std::uint8_t>(446)};
        const std::string name = "Voice " + std::to_string(index);
        const std::string source = "Collection of bank " + std::to_string(index / 32) + ".syx";
        WriteLittle32(record.bytes, 0, DatabaseRecordMagic);
        WriteLittle32(record.bytes, 8, static_cast<std::uint32_t>(1'000'000'000 + 1000 * index));
        std::copy(name.begin(), name.end(), record.bytes.begin() + 28);
        std::copy(source.begin(), source.end(), record.bytes.begin() + 93);
        WriteLittle32(record.bytes, 158, static_cast<std::uint32_t>(index % 32));
        records.push_back(std::move(record));
    }
    RecordList list;
    list.sorted = false;
    RecordListFill(list, std::move(records));
    return list;
}

void PrintCatalogue(benchmark::State &state) {
    const RecordList list = RecordsToPrint(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(PrintToPdf(QPageSize::A4, "", [&list](const PrintDevice &device) {
            return PrintDatabaseReport(device, list, "Voices for DX7");
        }));
    }
}
BENCHMARK(PrintCatalogue)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(PrintCatalogue)->Arg(120'000)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tonewright

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
