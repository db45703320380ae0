#include <gtest/gtest.h>

#include <clocale>

#include "support/test_end.h"

// For the test programs that need nothing before their tests; one with a main of its own doesn't
// take this one out of the library. The locale is the same on every machine, so that cases, spaces
// and the texts of errors come out alike.
int main(int argc, char** argv) {
  setlocale(LC_ALL, "C.UTF-8");
  testing::InitGoogleTest(&argc, argv);
  const int result = RUN_ALL_TESTS();
  runTestEnd();
  return result;
}
