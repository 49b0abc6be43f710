// What the extras ask of the program's main list, filled in by the shell, by the command-line
// program (not at all) and by tests. An empty member does nothing and answers no.
#pragma once

#include "core/voice_object.h"
#include "extras/dump_voice.h"

#include <functional>
#include <span>
#include <string>

class QWidget;

namespace tonewright {

struct ListAccess {
    // Does the work, which may ask, show a box or change the list, once no command of the program,
    // no transfer and no box runs; nothing else starts meanwhile. Returns at once.
    std::function<void(std::function<void()> work)> Post;
    // Rows of the main list.
    std::function<int()> RowCount;
    // The selected row of the main list; -1: none.
    std::function<int()> SelectedRow;
    // Puts voices of one family into the list, from the row on downward: a level of undo, changed,
    // selected is the row behind the last one. Voices behind the last row are left out. Where the
    // list is of the other family, or empty, the user is asked whether a new bank shall hold them
    // (NewBank, with `source`), and where Undo cannot keep it, whether to go on. How many were put;
    // -1: the user did not want it.
    std::function<int(QWidget *owner, int row, std::span<const KeptVoice> voices,
                      const std::string &source)>
        PutVoices;
    // Replaces the list by these voices of one family, filled up to a bank by initial voices: a
    // question about unsaved changes, a level of undo (without one, a question), changed. The
    // document takes the family's default name, so that a save asks for one; `source`, where the
    // voices come from, stands in the status bar as long as the list is this one, and becomes no
    // path. Undo brings document and family back. False: the user wanted to stay, or an error was
    // shown.
    std::function<bool(QWidget *owner, std::span<const KeptVoice> voices,
                       const std::string &source)>
        NewBank;
    // Plays a voice in the Audition box of the family. False: it could not be played.
    std::function<bool(QWidget *owner, const KeptVoice &voice)> Audition;
};
extern ListAccess TheListAccess;

// Asks about bytes above 7F, as a damaged file may have them, before voices are put into the list
// or made a bank. False: the user does not want them. True without a question where there are none.
bool MayTakeHighBytes(QWidget *owner, std::span<const KeptVoice> voices);

} // namespace tonewright
