#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "foundation/threads.h"
#include "viewer/file_bytes.h"

// The blocks of a file one after the other, in either direction, while a thread reads some ahead.
// For walks over much of a file: the blocks that FileBytes keeps stay as they are. The file must be
// neither closed nor refreshed meanwhile. Application thread.
class BlockScan {
 public:
  enum class Direction { Forward, Backward };
  static constexpr int BlocksAhead = 3;

  // Blocks are those of `limits.scanned`, within parts of `limits.searched`; the first is that of
  // the byte at `from`, or of the last one. Bytes at and behind `end` don't come.
  BlockScan(const FileBytes& bytes, const ViewLimits& limits, int64_t from, int64_t end,
            Direction direction);
  ~BlockScan();
  BlockScan(const BlockScan&) = delete;
  BlockScan& operator=(const BlockScan&) = delete;

  // Null behind the last one. Good until the next call. The thread starts with the second block:
  // who finds what they want in the first one doesn't wait for more to be read.
  const FileBlock* next();

 private:
  static void entry(void* self);
  void readAhead();
  bool readInto(FileBlock& block);
  const FileBlock* readNext();
  bool isWorthAThread() const;
  FileBlock& placeOf(int64_t number) {
    return blocks_[static_cast<size_t>(number) % blocks_.size()];
  }

  const FileBytes& bytes_;
  const int64_t blockSize_;
  const int64_t alone_;
  const int64_t end_;
  const Direction direction_;
  // The thread's once it runs, the caller's before and without one.
  int64_t base_;  // of the block that is read next
  bool ended_ = false;
  // Blocks go round. So many were read, and so many were given to the caller, who has the last one
  // still.
  std::array<FileBlock, BlocksAhead + 1> blocks_;
  std::atomic<int64_t> filled_{0};
  std::atomic<int64_t> given_{0};
  std::atomic<bool> all_{false};  // no block comes behind the filled ones
  std::atomic<bool> stop_{false};
  EventSem hasFilled_;
  EventSem hasGiven_;
  ThreadHandle thread_;
};
