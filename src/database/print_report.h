// The run of a printed report: its jobs, copies and pages. What they are printed on is a record of
// functions; database/view/print_painter makes one of the toolkit's devices.
#pragma once

#include "core/voice_list.h"
#include "database/page_layout.h"
#include "database/record_list.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tonewright {

// Where pages go. Lengths are device units.
struct PrintDevice {
    int width = 0, height = 0; // of the printable area
    int copies = 1;            // that the user wants, each of which is a document of its own
    bool isFile = false;       // a second document would take the place of the first one

    std::function<int(const FontDescription &font)> LineHeight; // ascent plus descent
    std::function<bool()> StartDocument; // with its first page; false: there is no document
    std::function<bool()> NextPage;      // of the document; false: it has ended before
    std::function<void()> EndDocument;
    std::function<void(const PrintedPage &page)> DrawPage;
    // Through the row of the current driver.
    std::function<void(const VoiceObject &voice, const PrintCell &cell)> DrawVoice;
};

// Each copy of the voices is a document of one page, and each that comes after another one stands
// lower by a line of the title. The result is the number of pages that were printed, in both
// reports; a copy whose document cannot be started is passed over.
int PrintVoiceListReport(const PrintDevice &device, const VoiceList &list, const char *documentPath,
                         std::int64_t time);
// The records in the order of the list, on as many pages as they need. The first document holds all
// of them: whatever copies are asked for, none is left for a second one. A page that cannot be
// started ends the report.
int PrintDatabaseReport(const PrintDevice &device, const RecordList &list,
                        const std::string &heading);

// The printer to offer: the system's default one if its name has fewer than 32 bytes; else
// `setting`, the setting DefaultPrinterName, up to its first comma and at most 32 bytes of it; else
// the first of `printers`. Empty: none.
std::string PrinterToOffer(const std::string &setting, const std::vector<std::string> &printers,
                           const std::string &systemDefault);

// The paths of the files that are proposed, in the folder OpenExportPath: the name of the document,
// or that of the catalogue, as its heading has it, with "pdf" as
// extension.
std::string ProposedVoiceListFile(const char *documentPath);
std::string ProposedDatabaseFile(const std::string &heading);

} // namespace tonewright
