#include "support/wait_until.h"

#include <chrono>
#include <thread>

bool waitUntil(const std::function<bool()>& predicate, int timeoutMs) {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
  while (!predicate()) {
    if (Clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}
