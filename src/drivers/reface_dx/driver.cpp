// The row of the reface DX in the driver table.
#include "drivers/reface_dx/driver.h"

#include "core/undo_level.h"

namespace tonewright {

const SynthDriver RefaceDxDriver = {
    .id = RefaceDxDriverId,
    .name = "Yamaha reface DX",
    .bankExtension = "srx",
    .voiceExtension = "sr1",
    .extraExtension = "crg",
    .bankFilter = "srx files\0*.srx\0All files\0*.*\0",
    .voiceFilter = "sr1 files\0*.sr1\0All files\0*.*\0",
    .extraFilter = "crg files\0*.crg\0All files\0*.*\0",
    .defaultDocumentName = "Untitled.srx",
    .flags = DriverFlagAutodetect | DriverFlagUnused | DriverFlagConfigure | DriverFlagDownload |
             DriverFlagFind,
    .documentPicture = 8501,
    .FindSynth = nullptr,
    .OpenBank = nullptr,
    .SaveBank = nullptr,
    .DrawVoiceItem = nullptr,
    .MakeItemFonts = MakeItemFonts,
    .UploadBank = nullptr,
    .DownloadBank = nullptr,
    .UploadVoice = nullptr,
    .reserved = nullptr,
    .ImportVoice = nullptr,
    .ExportVoice = nullptr,
    .EditVoice = nullptr,
    .VoiceName = nullptr,
    .PrintVoice = nullptr,
    .ConfigureSynth = nullptr,
    .AutoConfigure = nullptr,
    .MakeUndoLevel = MakeUndoLevel,
    .DatabaseAddVoice = nullptr,
    .DatabaseOpen = nullptr,
    .DatabaseClose = nullptr,
    .DatabaseReadRecord = nullptr,
    .DatabaseWriteRecord = nullptr,
    .DatabasePath = nullptr,
    .DatabaseInfo = nullptr,
};

} // namespace tonewright
