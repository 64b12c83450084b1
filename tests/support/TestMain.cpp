// The main of every GoogleTest executable: the tests run against a
// configuration folder of their own, so nothing they store reaches the
// user's settings or the working folder, and it is gone when they end.

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/TestSupport.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const TestFolder config;
    setenv("XDG_CONFIG_HOME", config.Path().c_str(), 1);
    return RUN_ALL_TESTS();
}
