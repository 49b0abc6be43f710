// What the catalogues of the reface DX are like.
#pragma once

#include "database/database_record.h"

namespace tonewright {

extern const DatabaseFamily RefaceDatabase;

} // namespace tonewright
