// The main list as the extras reach it (extras/list_access.h): voices that they have found go into
// it by the ways of the other commands, with a level of undo and the question about unsaved
// changes.
#pragma once

namespace tonewright {

// Fills in TheListAccess.
void UseMainList();

} // namespace tonewright
