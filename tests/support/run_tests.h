// What the main()s of the test programs share.
#pragma once

namespace tonewright {

// Runs the tests that the command line asks for, all in this process, each on a program that
// ResetProgram has put back to its start. 0 when all passed.
//
// They run in a random order, whose seed is printed; --gtest_random_seed=N, or GTEST_RANDOM_SEED in
// the environment, gives it again, --gtest_shuffle=0 runs them as they are written. A test that
// takes more than 60 s, or more than TEST_LIMIT in the environment says, ends the program with its
// name; TEST_LIMIT=0 lets it take its time, for a debugger. Where TEST_COUNTS names a file, a line
// on how many tests ran is added to it. Settings for all users of the machine count for no test,
// nor for a program that one runs.
int RunTests(int *argc, char **argv);

} // namespace tonewright
