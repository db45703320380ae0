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

  // Blocks begin at multiples of `blockSize`; the first is that of the byte at `from`, or of the
  // last one. Bytes at and behind `end` don't come.
  BlockScan(const FileBytes& bytes, int64_t blockSize, int64_t from, int64_t end,
            Direction direction);
  ~BlockScan();
  BlockScan(const BlockScan&) = delete;
  BlockScan& operator=(const BlockScan&) = delete;

  // Null behind the last one. Good until the next call.
  const FileBlock* next();

 private:
  static void entry(void* self);
  void readAhead();
  bool readInto(FileBlock& block);
  FileBlock& placeOf(int64_t number) {
    return blocks_[static_cast<size_t>(number) % blocks_.size()];
  }

  const FileBytes& bytes_;
  const int64_t blockSize_;
  const int64_t end_;
  const Direction direction_;
  int64_t base_;        // of the block that is read next; the reader's
  bool ended_ = false;  // the reader's
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
