// For the test programs whose driver table is the real one, which nothing changes.
#include "support/reset_program.h"

namespace tonewright {

void RestoreDriverRows() {}

} // namespace tonewright
