// What the catalogue window does.
#include "database/database_window.h"

#include "common/desktop.h"
#include "core/dispatch.h"

#include <utility>

namespace tonewright {
namespace {

int RowsOfBank(int driverIndex) {
    const SynthDriver *row = DriverOfId(DriverIdAt(driverIndex));
    return row && row->DatabaseInfo ? row->DatabaseInfo(DatabaseInfoVoicesPerBank).number : 0;
}

} // namespace

DatabaseViews TheDatabaseViews;

int RunDatabaseWindow(QWidget *owner, VoiceList &list, int target, int driverIndex) {
    if (!TheDatabaseViews.ShowBox) {
        return 0;
    }
    DatabaseWindow state{.driverIndex = driverIndex};
    const int result = TheDatabaseViews.ShowBox(owner, state);
    const bool isPlaced = result && !state.chosen.bytes.empty() &&
                          target < RowsOfBank(driverIndex) &&
                          ListSetVoice(list, target, std::move(state.chosen));
    if (isPlaced) {
        if (TheDatabaseViews.RepaintVoices) {
            TheDatabaseViews.RepaintVoices();
        }
        PlayEventSound(DefaultEventSound);
    }
    return result;
}

} // namespace tonewright
