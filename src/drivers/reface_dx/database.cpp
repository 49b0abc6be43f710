// What the catalogues of the reface DX are like: a record holds the common block and, as further
// data, the four operators.
#include "drivers/reface_dx/database.h"

#include "drivers/reface_dx/voice_codec.h"

namespace tonewright {

const DatabaseFamily RefaceDatabase = {.id = RefaceDriverId,
                                       .bankExtension = "srx",
                                       .extension = "srx_db",
                                       .backupExtension = ".srx_db_backup",
                                       .voicesPerBank = RefaceVoicesPerBank,
                                       .payloadSize = RefaceCommonSize,
                                       .extraSize = RefaceOperatorsSize,
                                       .nameOffset = RefaceVoice::name,
                                       .nameSize = RefaceNameSize};

} // namespace tonewright
