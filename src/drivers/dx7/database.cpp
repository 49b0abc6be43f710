// What the catalogues of the DX7 family are like: a record holds the unpacked voice.
#include "drivers/dx7/database.h"

#include "drivers/dx7/voice_codec.h"

namespace tonewright {

const DatabaseFamily Dx7Database = {.id = Dx7DriverId,
                                    .bankExtension = "syx",
                                    .extension = "syx_db",
                                    .backupExtension = ".syx_db_backup",
                                    .voicesPerBank = Dx7VoicesPerBank,
                                    .payloadSize = Dx7VoiceSize,
                                    .extraSize = 0,
                                    .nameOffset = Dx7Voice::name,
                                    .nameSize = Dx7NameSize};

} // namespace tonewright
