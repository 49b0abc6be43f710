// Doubles the toolkit's placeholder, which stands for itself then.
#include "common/view/window_title.h"

namespace tonewright {

QString WindowTitleOf(QString text) {
    return text.replace("[*]", "[*][*]");
}

} // namespace tonewright
