#pragma once

#include <functional>

inline constexpr int PatienceMs = 10000;  // for what comes soon or never

// Looks at `predicate` until it holds. False when it didn't within the time.
bool waitUntil(const std::function<bool()>& predicate, int timeoutMs = PatienceMs);
