// What careful mode (the setting CarefulMode) decides within the commands, so that no bank is lost
// without words. Each decision is one function, which a command asks at one place; while the mode
// is off it answers that the command goes its plain way. What the mode decides below the shell
// stands in one function of that layer each; ARCHITECTURE.md lists them all.
#pragma once

#include <cstdint>
#include <span>
#include <string>

class QWidget;

namespace tonewright {

// Save and Save as: true, after saying why, when the list does not hold a whole bank of the current
// family. With the voices of another family it asks whether to select that one for them instead;
// with voices that did not arrive in a download, whether to save the others.
bool CarefulRefusesToSave(QWidget *window);
// Upload: the same, without a question, and of voices with bytes that no message can carry; `row`:
// the voice that is to be sent, NoRow for all.
bool CarefulRefusesToUpload(QWidget *window, int row);
// Export: the same of the one voice that is to be written.
bool CarefulRefusesToExport(QWidget *window, int row);

// Add to the catalogue: the same of the voice in a row, without a message.
bool CarefulRefusesToAdd(int row);

enum class SaveWay {
    Replace, // write to the document's path, as ever
    SaveAs,  // ask for a name
    Stay,    // the user has thought better of it
};
// Save: asks when the document's path stands for other voices than those that the list came from,
// or the list has more voices than a bank.
SaveWay CarefulSaveWay(QWidget *window);
// Save as: the same when a chosen path has no extension of the family's banks, or the list
// more voices than a bank.
SaveWay CarefulSaveAsWay(QWidget *window, const std::string &path);

// The question about unsaved changes: whether the command goes on when the save before it failed.
bool CarefulGoesOnUnsaved();
// The same question is not worth asking of a list without voices.
bool CarefulHasNothingToSave();

// Upload: false when the user wants to keep what is in the memory of the instrument.
bool CarefulMayReplaceMemory(QWidget *window);

// Find, after a search in vain: while the list holds voices the instrument that was current before
// stays so, since without one they could not be saved. Says so.
void CarefulKeepInstrument(QWidget *window, std::uint32_t former);

// Download: true, after saying why, when it could not begin.
bool CarefulRefusesToDownload(QWidget *window);
// The same when it has not begun all the same: the level of undo that was made for it goes.
void CarefulTakeBackDownload(QWidget *window);
// True, after saying which, when not all of its voices have arrived. They are a list of their own.
bool CarefulMissesVoices(QWidget *window);

// Configure synthesizer: true, after saying why, when the ports do not open.
bool CarefulRefusesToConfigure(QWidget *window);

// The row that was clicked is to be forgotten: the context menu was closed without a choice, or the
// left button pressed in the list.
void CarefulForgetClickedRow();

// Import: whether a cancelled dialog marks the document as changed, and makes a level of undo.
bool CarefulMarksCancelledImport();

// Open: whether the levels of undo stay until a document has been opened.
bool CarefulKeepsUndoUntilOpened();
// Open that stays behind the question about unsaved changes: the next one asks for its path.
void CarefulForgetPath(std::string &path);

// ---- messages of failure: `text`, with file and reason behind it in careful mode

std::string CarefulReadFailure(std::string text, const std::string &path);
// Of a single-voice file.
std::string CarefulImportFailure(std::string text, const std::string &path);
// `reason`: errno as the writing left it.
std::string CarefulWriteFailure(std::string text, const std::string &path, int reason);
// With the reason why a transfer with the current instrument did not begin. An empty `text`, as of
// the upload of a whole bank, gives no message without careful mode.
std::string CarefulUploadFailure(std::string text);

// A voice that was not added to the catalogue.
struct FailedAdd {
    int row;
    int reason; // errno as the adding left it; of no account where the voice itself is at fault
};
// Why they were not, and what has become of the others when the whole list was to be added.
std::string CarefulAddFailure(std::string text, std::span<const FailedAdd> failed, bool ofAll);

} // namespace tonewright
