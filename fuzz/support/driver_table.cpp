// The driver table of the fuzzers: both rows with the operations that need no window.
#include "core/synth_driver.h"
#include "core/undo_level.h"
#include "drivers/dx7/files.h"
#include "drivers/dx7/find.h"
#include "drivers/dx7/transfer.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/files.h"
#include "drivers/reface_dx/find.h"
#include "drivers/reface_dx/transfer.h"
#include "drivers/reface_dx/voice_codec.h"

namespace tonewright {

namespace {

const SynthDriver WindowlessDx7Driver = {
    .id = Dx7DriverId,
    .name = "Yamaha DX7, TX7, Korg Volca FM",
    .bankExtension = "syx",
    .voiceExtension = "sy1",
    .defaultDocumentName = "Untitled.syx",
    .flags = DriverFlagUpload,
    .FindSynth = Dx7FindSynth,
    .OpenBank = Dx7OpenBank,
    .SaveBank = Dx7SaveBank,
    .MakeItemFonts = MakeItemFonts,
    .UploadBank = Dx7UploadBank,
    .UploadVoice = Dx7UploadVoice,
    .ImportVoice = Dx7ImportVoice,
    .ExportVoice = Dx7ExportVoice,
    .VoiceName = Dx7VoiceName,
    .MakeUndoLevel = MakeUndoLevel,
};

const SynthDriver WindowlessRefaceDxDriver = {
    .id = RefaceDxDriverId,
    .name = "Yamaha reface DX",
    .bankExtension = "srx",
    .voiceExtension = "sr1",
    .defaultDocumentName = "Untitled.srx",
    .flags = DriverFlagAutodetect | DriverFlagUnused | DriverFlagConfigure | DriverFlagDownload |
             DriverFlagFind,
    .FindSynth = RefaceDxFindSynth,
    .OpenBank = RefaceOpenBank,
    .SaveBank = RefaceSaveBank,
    .MakeItemFonts = MakeItemFonts,
    .UploadBank = RefaceUploadBank,
    .DownloadBank = RefaceDownloadBank,
    .UploadVoice = RefaceUploadVoice,
    .ImportVoice = RefaceImportVoice,
    .ExportVoice = RefaceExportVoice,
    .VoiceName = RefaceVoiceName,
    .MakeUndoLevel = MakeUndoLevel,
};

} // namespace

const std::array<const SynthDriver *, SynthDriverCount> SynthDrivers = {&WindowlessDx7Driver,
                                                                        &WindowlessRefaceDxDriver};

} // namespace tonewright
