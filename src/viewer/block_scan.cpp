#include "viewer/block_scan.h"

#include <algorithm>

BlockScan::BlockScan(const FileBytes& bytes, const ViewLimits& limits, int64_t from, int64_t end,
                     Direction direction)
    : bytes_(bytes),
      blockSize_(std::min(limits.scanned, limits.searched)),
      alone_(limits.alone),
      end_(std::min(end, bytes.size())),
      direction_(direction) {
  if (direction == Direction::Backward) from = std::min(from, end_ - 1);
  base_ = std::max<int64_t>(from, 0) / blockSize_ * blockSize_;
  ended_ = end_ <= 0 || from < 0;
}

BlockScan::~BlockScan() {
  stop_ = true;
  hasGiven_.post();
  joinThread(thread_);
}

const FileBlock* BlockScan::next() {
  if (!thread_.running && isWorthAThread()) thread_ = startThread(entry, this);
  if (!thread_.running) return readNext();
  const int64_t wanted = given_;
  while (filled_ == wanted) {
    if (all_ && filled_ == wanted) return nullptr;
    hasFilled_.wait(WaitForever);
    hasFilled_.reset();
  }
  given_ = wanted + 1;  // from here on the one that was given before is free
  hasGiven_.post();
  return &placeOf(wanted);
}

// Neither the first block is, which is given at once, nor little that is left behind it.
bool BlockScan::isWorthAThread() const {
  const int64_t left = direction_ == Direction::Forward ? end_ - base_ : base_ + blockSize_;
  return given_ > 0 && !ended_ && left > alone_;
}

// Without a thread each block is read when it is asked for.
const FileBlock* BlockScan::readNext() {
  FileBlock& block = placeOf(given_);
  if (!readInto(block)) return nullptr;
  filled_ = ++given_;
  return &block;
}

// Reads the next block; false behind the last one.
bool BlockScan::readInto(FileBlock& block) {
  if (ended_ || base_ < 0 || base_ >= end_) return false;
  if (!block.bytes) {
    block.bytes = std::make_unique_for_overwrite<char[]>(static_cast<size_t>(blockSize_));
  }
  const int64_t wanted = std::min(blockSize_, end_ - base_);
  bytes_.readBlock(block, base_, wanted);
  if (direction_ == Direction::Backward) {
    base_ -= blockSize_;
    return true;
  }
  base_ += blockSize_;
  ended_ = block.length < wanted;
  return block.length > 0;
}

void BlockScan::entry(void* self) {
  static_cast<BlockScan*>(self)->readAhead();
}

void BlockScan::readAhead() {
  while (!stop_) {
    if (filled_ - given_ >= BlocksAhead) {
      hasGiven_.wait(WaitForever);
      hasGiven_.reset();
      continue;
    }
    if (!readInto(placeOf(filled_))) break;
    ++filled_;
    hasFilled_.post();
  }
  all_ = true;
  hasFilled_.post();
}
