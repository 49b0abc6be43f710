// The commands that print into a PDF: the voices of a bank, and a catalogue. Like the picture they
// are part of tonewright-picture only.
#include "cli/bank_document.h"
#include "cli/choices.h"
#include "cli/cli_commands.h"
#include "cli/database_choice.h"
#include "cli/offscreen_toolkit.h"
#include "cli/terminal_desktop.h"
#include "cli/text_output.h"
#include "common/text.h"
#include "common/utf8_path.h"
#include "common/whole_file.h"
#include "core/current.h"
#include "database/print_report.h"
#include "database/record_reader.h"
#include "database/record_sort.h"
#include "database/view/print_painter.h"

#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <optional>
#include <utility>

#include <QGuiApplication>

namespace tonewright {
namespace {

QPageSize::PageSizeId PageOf(const Choice &paper) {
    return paper.value == PaperLetter ? QPageSize::Letter : QPageSize::A4;
}

// Where a call prints to.
struct PdfOrder {
    const char *path = nullptr;
    QPageSize::PageSizeId paper = PageOf(Papers[0]);
};

// Nothing after telling why the call is wrong.
std::optional<PdfOrder> ReadPdfOrder(const CliCall &call, const char *path) {
    PdfOrder order{.path = path};
    if (!EqualNoCase(ExtensionOfPath(path), "pdf")) {
        TellError(path, "the extension of the file to write must be \"pdf\"");
        return std::nullopt;
    }
    if (const char *name = call[CliOption::Paper]) {
        const Choice *paper = ChoiceOfName(Papers, name);
        if (!paper) {
            TellError(name, "not a size of paper: " + InWords(Papers, "and") + " are");
            return std::nullopt;
        }
        order.paper = PageOf(*paper);
    }
    return order;
}

// The present time, or the one that SOURCE_DATE_EPOCH in the environment tells in its stead, so
// that what is printed can be held against what was printed before.
std::int64_t TimeOfPrinting() {
    if (const char *text = std::getenv("SOURCE_DATE_EPOCH")) {
        const std::string_view digits(text);
        std::int64_t seconds = 0;
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), seconds);
        if (error == std::errc() && end == digits.data() + digits.size()) {
            return seconds;
        }
    }
    return static_cast<std::int64_t>(std::time(nullptr));
}

int WritePdf(const PdfOrder &order, const std::string &title,
             const std::function<int(const PrintDevice &device)> &report) {
    UseOffscreenToolkit();
    char name[] = "tonewright-cli";
    char *arguments[] = {name, nullptr};
    int count = 1;
    const QGuiApplication application(count, arguments);
    const QByteArray pdf = PrintToPdf(order.paper, QString::fromStdString(title), report);
    if (pdf.isEmpty()) {
        return TellFailure(order.path, "there is no page to print");
    }
    errno = 0;
    if (!WriteFileWhole(AbsolutePath(order.path).c_str(),
                        std::string_view(pdf.data(), static_cast<std::size_t>(pdf.size())))) {
        return TellFailure(order.path, WithSystemReason("could not be written", errno));
    }
    return ExitDone;
}

// The records in the order of `mode`, or else of the file. Nothing after telling why they are not
// read.
std::optional<RecordList> ReadRecordList(const ChosenDatabase &chosen,
                                         std::optional<std::uint32_t> mode) {
    const auto database = OpenChosenDatabase(chosen);
    if (!database) {
        return std::nullopt;
    }
    std::vector<DatabaseRecord> records;
    const bool isRead =
        ReadLoadedRecords(*database, [&](std::uint32_t, std::span<const std::uint8_t> bytes) {
            records.push_back({{bytes.begin(), bytes.end()}});
        });
    if (!isRead) {
        TellError(chosen.path, WithSystemReason("not readable", errno));
        return std::nullopt;
    }
    if (mode) {
        SortRecords(records, *mode);
    }
    RecordList list;
    list.sorted = false;
    RecordListFill(list, std::move(records));
    return list;
}

} // namespace

int CliPrint(const CliCall &call) {
    const auto order = ReadPdfOrder(call, call.words[1]);
    if (!order) {
        return ExitWrongCall;
    }
    UseTerminalDesktop(call);
    if (!OpenBankDocument(call.words[0])) {
        return ExitFailed;
    }
    return WritePdf(*order, FileNameOfPath(CurrentDocumentPath.c_str()),
                    [](const PrintDevice &device) {
                        return PrintVoiceListReport(device, MainList, CurrentDocumentPath.c_str(),
                                                    TimeOfPrinting());
                    });
}

int CliDbPrint(const CliCall &call) {
    std::optional<std::uint32_t> mode;
    const auto order = ReadPdfOrder(call, call.words[0]);
    const auto chosen = order && ReadSortMode(call, mode) ? ChooseDatabase(call) : std::nullopt;
    if (!chosen) {
        return ExitWrongCall;
    }
    const auto list = ReadRecordList(*chosen, mode);
    if (!list) {
        return ExitFailed;
    }
    if (ListCount(*list) == 0) {
        return TellFailure(chosen->path, "not printed: there are no records in it");
    }
    const std::string file = FileNameOfPath(chosen->path.c_str());
    const std::string heading =
        DatabaseHeading(file.substr(0, file.rfind('.')), chosen->family->name);
    return WritePdf(*order, heading, [&](const PrintDevice &device) {
        return PrintDatabaseReport(device, *list, heading);
    });
}

} // namespace tonewright
