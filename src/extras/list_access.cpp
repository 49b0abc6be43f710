// The record through which the extras reach the main list.
#include "extras/list_access.h"

namespace tonewright {

ListAccess TheListAccess;

} // namespace tonewright
