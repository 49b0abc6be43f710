// The choice of the printer, and what stands on the screen while it prints.
#include "database/view/print_reports.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "common/text.h"
#include "common/view/text_line.h"
#include "database/print_report.h"
#include "database/view/print_painter.h"

#include <algorithm>
#include <ctime>
#include <functional>
#include <utility>
#include <vector>

#include <QLineEdit>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>

namespace tonewright {
namespace {

constexpr int WidestFile = 480; // pixels of the field of the path, which shows its end

// A report, and what it is called.
struct Report {
    std::string name;         // in the box, and of the job
    std::string proposedFile; // path of the PDF, if that is what the user chooses
    std::function<void(const PrintDevice &device)> print;
};

std::string OfferedPrinter() {
    std::vector<std::string> printers;
    for (const QString &name : QPrinterInfo::availablePrinterNames()) {
        printers.push_back(name.toStdString());
    }
    return PrinterToOffer(DefaultPrinterName, printers,
                          QPrinterInfo::defaultPrinterName().toStdString());
}

void SetUpPrinter(QPrinter &printer, const Report &report) {
    const QString name = QString::fromStdString(OfferedPrinter());
    if (!QPrinterInfo::printerInfo(name).isNull()) {
        printer.setPrinterName(name);
    }
    printer.setPageOrientation(QPageLayout::Portrait);
    printer.setDocName(QString::fromStdString(report.name));
    printer.setCreator(QStringLiteral("Tonewright"));
}

// False when the user cancels.
bool AskForPrinter(QWidget *owner, QPrinter &printer, const Report &report) {
    QPrintDialog dialog(&printer, owner);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange, false); // the last way to print a part
    // A platform's own dialog has neither of these.
    if (auto *file = dialog.findChild<QLineEdit *>("filename")) {
        const QString path = QString::fromStdString(report.proposedFile);
        file->setText(path);
        const int frame = file->sizeHint().height(); // what it needs beside the text
        file->setMinimumWidth(std::min(WidestFile, TextLineWidth(path, file->font()) + frame));
    }
    return dialog.exec() == QDialog::Accepted;
}

int Print(QWidget *owner, const Report &report) {
    QPrinter printer(QPrinter::HighResolution);
    SetUpPrinter(printer, report);
    if (!AskForPrinter(owner, printer, report)) {
        return 1;
    }
    const int copies = printer.copyCount();
    printer.setCopyCount(1);

    const WaitCursor wait;
    ShowBusyBox(owner, "Printing " + report.name);
    {
        QPainter painter;
        PrintDevice device = DeviceOn(printer, painter);
        device.copies = copies;
        device.isFile = !printer.outputFileName().isEmpty();
        report.print(device);
    }
    CloseBusyBox();
    return 1;
}

} // namespace

int PrintVoiceList(QWidget *owner, const VoiceList &list, const char *documentPath) {
    const std::string path = documentPath; // which may change while the dialog stands
    return Print(owner, {.name = FileNameOfPath(path.c_str()),
                         .proposedFile = ProposedVoiceListFile(path.c_str()),
                         .print = [&](const PrintDevice &device) {
                             PrintVoiceListReport(device, list, path.c_str(), std::time(nullptr));
                         }});
}

int PrintDatabase(QWidget *owner, const RecordList &list, const std::string &heading) {
    return Print(owner, {.name = heading,
                         .proposedFile = ProposedDatabaseFile(heading),
                         .print = [&](const PrintDevice &device) {
                             PrintDatabaseReport(device, list, heading);
                         }});
}

} // namespace tonewright
