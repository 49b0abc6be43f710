// The row of the reface DX in the driver table.
#include "drivers/reface_dx/driver.h"

#include "core/undo_level.h"
#include "drivers/reface_dx/files.h"
#include "drivers/reface_dx/find.h"
#include "drivers/reface_dx/transfer.h"
#include "drivers/reface_dx/view/voice_view.h"
#include "drivers/reface_dx/voice_codec.h"

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
    .FindSynth = RefaceDxFindSynth,
    .OpenBank = RefaceOpenBank,
    .SaveBank = RefaceSaveBank,
    .DrawVoiceItem = RefaceDrawVoiceItem,
    .MakeItemFonts = MakeItemFonts,
    .UploadBank = RefaceUploadBank,
    .DownloadBank = RefaceDownloadBank,
    .UploadVoice = RefaceUploadVoice,
    .reserved = nullptr,
    .ImportVoice = RefaceImportVoice,
    .ExportVoice = RefaceExportVoice,
    .EditVoice = nullptr,
    .VoiceName = RefaceVoiceName,
    .PrintVoice = RefacePrintVoice,
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
