// What the catalogues of the DX7 family are like.
#pragma once

#include "database/database_record.h"

namespace tonewright {

extern const DatabaseFamily Dx7Database;

} // namespace tonewright
