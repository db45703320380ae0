#pragma once

#include <atomic>
#include <cstdint>

// What the thread that repaints the progress shares with the one that copies.
struct ProgressRecord {
  std::atomic<int64_t> done{0};   // bytes
  std::atomic<int64_t> total{0};  // bytes; 0 when unknown
  std::atomic<double> start{0};   // seconds of the real-time clock; 0 shows no statistics
  std::atomic<bool> dirty{false};

  void advance(int64_t bytes) {
    done.fetch_add(bytes, std::memory_order_relaxed);
    dirty.store(true, std::memory_order_relaxed);
  }
};
