#pragma once

#include <atomic>
#include <cstdint>

#include "foundation/westring.h"

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

// The two rows of the progress window that change while bytes move.

// Filled cells of a bar of `width` cells; 0 when the total is unknown.
int filledCells(int width, int64_t done, int64_t total);
Westring progressBar(int width, int filled);

// "Time: 0:05  BPS:    1234  ETA: 0:10" after `elapsed` seconds.
Westring progressStatistics(double elapsed, int64_t done, int64_t total);

// The size of the progress window's interior for what it has to show.
int progressWidth(const Westring& source, const Westring& target, const Westring& count);
// A path as the window shows it: shortened in the middle for a copy, its end for a move.
enum class PathCut { Middle, Front };
Westring progressPath(const Westring& path, PathCut cut);
Westring progressCount(int index, int count);  // "(3 of 7)"; empty for one item
