// Starts another program on Windows, where each takes its command line apart in its own way.
#include "shell/view/start_program.h"

#include <QProcess>

namespace tonewright {

bool StartProgram(const QString &program, const QString &argument) {
    QProcess process;
    process.setProgram(program);
    process.setNativeArguments(argument);
    return process.startDetached();
}

} // namespace tonewright
