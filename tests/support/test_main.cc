// main() of the tests without windows.
#include "support/run_tests.h"

int main(int argc, char **argv) {
    return tonewright::RunTests(&argc, argv);
}
