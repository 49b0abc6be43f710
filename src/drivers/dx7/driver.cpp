// The row of the DX7, TX7 and Volca FM family in the driver table.
#include "core/undo_level.h"
#include "database/database_slots.h"
#include "drivers/dx7/database.h"
#include "drivers/dx7/file_formats.h"
#include "drivers/dx7/files.h"
#include "drivers/dx7/find.h"
#include "drivers/dx7/memory.h"
#include "drivers/dx7/transfer.h"
#include "drivers/dx7/view/voice_editor.h"
#include "drivers/dx7/view/voice_view.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/dx7/voice_parameters.h"

namespace tonewright {

extern constinit const SynthDriver Dx7Driver = {
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
    .bankRows = Dx7VoicesPerBank,
    .nameSize = Dx7NameSize,
    .bankFormat = &Dx7BankFormat,
    .voiceFormat = &Dx7VoiceFormat,
    .memories = Dx7Memories,
    .FindSynth = Dx7FindSynth,
    .OpenBank = Dx7OpenBank,
    .SaveBank = Dx7SaveBank,
    .DrawVoiceItem = VIEW_OPERATION(Dx7DrawVoiceItem),
    .MakeItemFonts = MakeItemFonts,
    .UploadBank = Dx7UploadBank,
    .UploadVoice = Dx7UploadVoice,
    .ImportVoice = Dx7ImportVoice,
    .ExportVoice = Dx7ExportVoice,
    .parameters = &Dx7Parameters,
    .EditVoice = VIEW_OPERATION(Dx7EditVoice),
    .VoiceName = Dx7VoiceName,
    .VoiceAlgorithm = Dx7VoiceAlgorithm,
    .PrintVoice = VIEW_OPERATION(Dx7PrintVoice),
    .MakeUndoLevel = MakeUndoLevel,
    .database = &Dx7Database,
    .DatabaseAddVoice = DatabaseSlots<Dx7Database>::AddVoice,
    .DatabaseOpen = DatabaseSlots<Dx7Database>::Open,
    .DatabaseClose = CloseDatabase,
    .DatabaseReadRecord = ReadDatabaseRecord,
    .DatabaseWriteRecord = WriteDatabaseRecord,
    .DatabasePath = DatabaseSlots<Dx7Database>::Path,
    .DatabaseInfo = DatabaseSlots<Dx7Database>::Info,
};

} // namespace tonewright
