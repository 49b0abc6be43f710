// The row of the DX7, TX7 and Volca FM family in the driver table.
#include "drivers/dx7/driver.h"

#include "core/undo_level.h"
#include "drivers/dx7/files.h"
#include "drivers/dx7/find.h"
#include "drivers/dx7/transfer.h"
#include "drivers/dx7/view/voice_view.h"
#include "drivers/dx7/voice_codec.h"

namespace tonewright {

const SynthDriver Dx7Driver = {
    .id = Dx7DriverId,
    .name = "Yamaha DX7, TX7, Korg Volca FM",
    .bankExtension = "syx",
    .voiceExtension = "sy1",
    .extraExtension = "TwcDx7",
    .bankFilter = "syx files\0*.syx\0All files\0*.*\0",
    .voiceFilter = "sy1 files\0*.sy1\0All files\0*.*\0",
    .extraFilter = "TwcDx7 files\0*.TwcDx7\0All files\0*.*\0",
    .defaultDocumentName = "Untitled.syx",
    .flags = DriverFlagUpload,
    .documentPicture = 8502,
    .FindSynth = Dx7FindSynth,
    .OpenBank = Dx7OpenBank,
    .SaveBank = Dx7SaveBank,
    .DrawVoiceItem = Dx7DrawVoiceItem,
    .MakeItemFonts = MakeItemFonts,
    .UploadBank = Dx7UploadBank,
    .DownloadBank = nullptr,
    .UploadVoice = Dx7UploadVoice,
    .reserved = nullptr,
    .ImportVoice = Dx7ImportVoice,
    .ExportVoice = Dx7ExportVoice,
    .EditVoice = nullptr,
    .VoiceName = Dx7VoiceName,
    .PrintVoice = Dx7PrintVoice,
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
