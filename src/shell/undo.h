// The undo store of the voice list: snapshots of the whole list, newest last.
#pragma once

#include "core/voice_list.h"

class QWidget;

namespace tonewright {

// Makes the store for MaxUndoLevel levels; a later change of the setting waits for the next start.
// 1, or 0 after a message when MaxUndoLevel lies outside 1 to 65,536: then there is no undo.
int UndoInit(QWidget *window);
// Frees everything. Returns 1.
int UndoEnd();
// Takes a snapshot of the list. 1 if a level was made, also 1 (without one) for an empty list, else
// 0 after a message. When the store is full the oldest level gives way.
int UndoPush(QWidget *window, const VoiceList &list);
// Undoes the last UndoPush, after which nothing else has happened to the store: its level goes, and
// the one that gave way for it is back.
void UndoTakeBack();
// Puts the newest level back into the list. 1, or 0 after a message.
int UndoPop(QWidget *window, VoiceList &list);
// Drops all levels. 1 if there is a store.
int UndoClear();
bool UndoAvailable();
// Number of levels in the store.
int UndoCount();
// MainListOrigin of the oldest level; without a level, the present one.
int UndoOldestOrigin();

} // namespace tonewright
