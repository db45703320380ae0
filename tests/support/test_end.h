#pragma once

#include <functional>

// Runs `action` after the last test of the process, the latest registered first.
void atTestEnd(std::function<void()> action);
// For main, behind the last test.
void runTestEnd();
