#include <gtest/gtest.h>

// For the test programs that need nothing before their tests; one with a main of its own doesn't
// take this one out of the library.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
