#include <gtest/gtest.h>

#include <clocale>
#include <utility>
#include <vector>

#include "support/test_end.h"

namespace {
std::vector<std::function<void()>>& endActions() {
  static std::vector<std::function<void()>> actions;
  return actions;
}
}  // namespace

void atTestEnd(std::function<void()> action) {
  endActions().push_back(std::move(action));
}

// The locale is the same on every machine, so that cases, spaces and the texts of errors come out alike.
int main(int argc, char** argv) {
  setlocale(LC_ALL, "C.UTF-8");
  testing::InitGoogleTest(&argc, argv);
  const int result = RUN_ALL_TESTS();
  while (!endActions().empty()) {
    const auto action = std::move(endActions().back());
    endActions().pop_back();
    action();
  }
  return result;
}
