// Jobs, copies and pages of the printed reports.
#include "database/print_report.h"

#include "common/settings.h"
#include "common/text.h"
#include "core/dispatch.h"

#include <algorithm>

namespace tonewright {
namespace {

constexpr int MostCopies = 9999;
constexpr std::size_t PrinterNameSize = 32; // with a zero byte behind the system's name

int CopiesOn(const PrintDevice &device) {
    return device.isFile ? 1 : std::clamp(device.copies, 1, MostCopies);
}

} // namespace

int PrintVoiceListReport(const PrintDevice &device, const VoiceList &list, const char *documentPath,
                         std::int64_t time) {
    const PageMetrics metrics = MetricsOfPage(device.width, device.height);
    const int titleHeight = device.LineHeight(FontsOfVoiceList(metrics).title);
    const SynthDriver *driver = CurrentDriver();
    const std::string title = VoiceListTitle(documentPath, driver ? driver->name : "");
    int top = 0, pages = 0;
    for (int copy = 0; copy < CopiesOn(device); ++copy) {
        if (!device.StartDocument()) {
            continue;
        }
        device.DrawPage(VoiceListPage(metrics, top, titleHeight, title, time));
        top += titleHeight; // stays so for the next copy
        for (int index = 0; index < ListCount(list); ++index) {
            if (const VoiceObject *voice = ListVoice(list, index)) {
                device.DrawVoice(*voice, VoiceListCell(metrics, top, index, ListCount(list)));
            }
        }
        device.EndDocument();
        ++pages;
    }
    return pages;
}

int PrintDatabaseReport(const PrintDevice &device, const RecordList &list,
                        const std::string &heading) {
    const PageMetrics metrics = MetricsOfPage(device.width, device.height);
    const DatabaseFonts fonts = FontsOfDatabase(metrics);
    const DatabaseLineHeights heights = {.heading = device.LineHeight(fonts.heading),
                                         .item = device.LineHeight(fonts.item),
                                         .footer = device.LineHeight(fonts.footer)};
    int row = 0, pages = 0;
    for (int copy = 0; copy < CopiesOn(device) && ListHasRow(list, row); ++copy) {
        if (!device.StartDocument()) {
            continue;
        }
        bool hasPage = true;
        while (hasPage) {
            device.DrawPage(DatabasePage(metrics, heights, list, row, heading, pages + 1));
            ++pages;
            hasPage = ListHasRow(list, row) && device.NextPage();
        }
        device.EndDocument();
        break; // the rest of the rows, if there is one, has no page to stand on
    }
    return pages;
}

std::string PrinterToOffer(const std::string &setting, const std::vector<std::string> &printers,
                           const std::string &systemDefault) {
    if (!systemDefault.empty() && systemDefault.size() < PrinterNameSize) {
        return systemDefault;
    }
    const std::string name(CutText(setting.substr(0, setting.find(',')), PrinterNameSize));
    return !name.empty() || printers.empty() ? name : printers.front();
}

std::string ProposedVoiceListFile(const char *documentPath) {
    return OpenExportPath + ReplaceExtension(FileNameOfPath(documentPath), "pdf");
}

std::string ProposedDatabaseFile(const std::string &heading) {
    return OpenExportPath + heading.substr(0, heading.rfind(" for ")) + ".pdf";
}

} // namespace tonewright
