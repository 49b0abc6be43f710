// The row of the reface DX in the driver table.
#include "core/undo_level.h"
#include "database/database_slots.h"
#include "drivers/reface_dx/configure.h"
#include "drivers/reface_dx/database.h"
#include "drivers/reface_dx/file_formats.h"
#include "drivers/reface_dx/files.h"
#include "drivers/reface_dx/find.h"
#include "drivers/reface_dx/memory.h"
#include "drivers/reface_dx/transfer.h"
#include "drivers/reface_dx/view/settings_box.h"
#include "drivers/reface_dx/view/voice_editor.h"
#include "drivers/reface_dx/view/voice_view.h"
#include "drivers/reface_dx/voice_codec.h"
#include "drivers/reface_dx/voice_parameters.h"

namespace tonewright {

extern constinit const SynthDriver RefaceDriver = {
    .id = RefaceDriverId,
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
    .bankRows = RefaceVoicesPerBank,
    .nameSize = RefaceNameSize,
    .bankFormat = &RefaceBankFormat,
    .voiceFormat = &RefaceVoiceFormat,
    .memories = RefaceMemories,
    .FindSynth = RefaceFindSynth,
    .OpenBank = RefaceOpenBank,
    .SaveBank = RefaceSaveBank,
    .DrawVoiceItem = VIEW_OPERATION(RefaceDrawVoiceItem),
    .MakeItemFonts = MakeItemFonts,
    .UploadBank = RefaceUploadBank,
    .DownloadBank = RefaceDownloadBank,
    .UploadVoice = RefaceUploadVoice,
    .ImportVoice = RefaceImportVoice,
    .ExportVoice = RefaceExportVoice,
    .parameters = &RefaceParameters,
    .EditVoice = VIEW_OPERATION(RefaceEditVoice),
    .VoiceName = RefaceVoiceName,
    .VoiceAlgorithm = RefaceVoiceAlgorithm,
    .PrintVoice = VIEW_OPERATION(RefacePrintVoice),
    .settings = &RefaceSettings,
    .ConfigureSynth = VIEW_OPERATION(RefaceConfigureSynth),
    .AutoConfigure = RefaceAutoConfigure,
    .MakeUndoLevel = MakeUndoLevel,
    .database = &RefaceDatabase,
    .DatabaseAddVoice = DatabaseSlots<RefaceDatabase>::AddVoice,
    .DatabaseOpen = DatabaseSlots<RefaceDatabase>::Open,
    .DatabaseClose = CloseDatabase,
    .DatabaseReadRecord = ReadDatabaseRecord,
    .DatabaseWriteRecord = WriteDatabaseRecord,
    .DatabasePath = DatabaseSlots<RefaceDatabase>::Path,
    .DatabaseInfo = DatabaseSlots<RefaceDatabase>::Info,
};

} // namespace tonewright
