// What careful mode (the setting CarefulMode) decides in the catalogue window, so that no edit of a
// record is lost without words. Each decision is one function, which the window asks at one place;
// while the mode is off it answers that the window goes its plain way.
#pragma once

#include <cstdint>
#include <string>

class QWidget;

namespace tonewright {

// What becomes of the edits of the records that are shown.
enum class EditsWay {
    Drop,  // they are lost, or there are none
    Store, // they are written to their catalogue before
    Stay,  // what would have lost them does not happen
};
// The records of another catalogue, `next`, or none are to be shown instead. Asks whether to save
// the edits of `current`; they stay without a question when both are the same.
EditsWay CarefulEditsWay(QWidget *window, std::uint32_t changed, const std::string &current,
                         const std::string &next);

// The question whether to delete a catalogue: `text`, and that its edits are lost with it.
std::string CarefulDeleteQuestion(std::string text, std::uint32_t changed);

// The records of another catalogue, or none, are shown now: `changed` and undo tell of them alone.
void CarefulBeginRecords(std::uint32_t &changed);

// OK: whether the window stays open because its records could not be stored.
bool CarefulStaysAfterFailure();

// The message of a failed store: `text`, with file and reason behind it, but for an empty path;
// `family`: its name; `reason`: errno as the store left it.
std::string CarefulStoreFailure(std::string text, const std::string &path,
                                const std::string &family, int reason);

} // namespace tonewright
