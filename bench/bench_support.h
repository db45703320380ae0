#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

// Milliseconds of the middle run of `runs`.
template <class Work>
double medianMs(int runs, Work work) {
  std::vector<double> times;
  for (int i = 0; i < runs; ++i) {
    auto start = std::chrono::steady_clock::now();
    work();
    std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
    times.push_back(taken.count());
  }
  std::nth_element(times.begin(), times.begin() + runs / 2, times.end());
  return times[runs / 2];
}
