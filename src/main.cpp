// Tonewright, the window program.
#include "shell/view/application.h"

int main(int argc, char **argv) {
    return tonewright::RunApplication(argc, argv);
}
