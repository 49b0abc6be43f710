// Tonewright, the window program.
#include "common/platform.h"
#include "shell/view/application.h"

int main(int argc, char **argv) {
    tonewright::PlatformLetLongWritesFail();
    return tonewright::RunApplication(argc, argv);
}
