#include "support/test_end.h"

#include <utility>
#include <vector>

namespace {
std::vector<std::function<void()>>& endActions() {
  static std::vector<std::function<void()>> actions;
  return actions;
}
}  // namespace

void atTestEnd(std::function<void()> action) {
  endActions().push_back(std::move(action));
}

void runTestEnd() {
  while (!endActions().empty()) {
    const auto action = std::move(endActions().back());
    endActions().pop_back();
    action();
  }
}
