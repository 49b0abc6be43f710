// Starts another program on POSIX systems.
#include "shell/view/start_program.h"

#include <QProcess>

namespace tonewright {

bool StartProgram(const QString &program, const QString &argument) {
    return QProcess::startDetached(program, {argument});
}

} // namespace tonewright
