#include "foundation/read_ahead_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "foundation/status.h"
#include "foundation/system.h"

namespace {

constexpr int64_t Nothing = -1;
constexpr int FillByte = 0xFF;  // what a block that can't be read holds

// Reads up to `bytes` at `position`, whole unless the file ends. The count, or -1 with errno.
int64_t readFully(int fd, int64_t position, char* target, size_t bytes) {
  size_t done = 0;
  while (done < bytes) {
    const ssize_t count =
        System::readAt(fd, target + done, bytes - done, position + static_cast<int64_t>(done));
    if (count < 0) return -1;
    if (count == 0) break;
    done += static_cast<size_t>(count);
  }
  return static_cast<int64_t>(done);
}

}  // namespace

ReadAheadFile::ReadAheadFile() = default;

ReadAheadFile::~ReadAheadFile() {
  ReadAheadFile::close();
}

int ReadAheadFile::open(const Westring& name, Growing growing) {
  growing_ = growing == Growing::Yes;
  openStatus_ = File::open(name, OpenFlag::Read);  // closes what was open, through close below
  if (openStatus_) return openStatus_;
  size_ = fileSize();
  linePos_ = 0;
  if (!prefetchBuffer_) prefetchBuffer_ = std::make_unique<char[]>(BlockSize);
  stop_ = false;
  prefetchEvent_.reset();
  thread_ = startThread(prefetchEntry, this);  // without a thread every block is read directly
  return openStatus_;
}

int ReadAheadFile::close() {
  stop_ = true;
  {
    const MutexLock lock(lock_);
    prefetchPos_ = Nothing;
  }
  prefetchEvent_.post();
  joinThread(thread_);
  for (auto& block : blocks_) block.reset();
  blockCount_ = 0;
  prefetchLength_ = 0;
  size_ = 0;
  return File::close();
}

int ReadAheadFile::byteAt(int64_t position) {
  if (position < 0 || !isOpen()) return Nothing;
  const int64_t base = position - position % BlockSize;
  const int64_t offset = position - base;
  int place = 0;
  while (place < blockCount_ && blockBase_[place] != base) ++place;
  const bool hit = place < blockCount_;
  const int64_t previousBase = blockCount_ > 0 ? blockBase_[0] : Nothing;
  if (hit) {
    moveToFront(place);
  } else {
    takeBlock(base);
  }
  // A block that was read short helps again once the file is known, or allowed, to be longer.
  const bool stale = offset >= blockLength_[0] && (growing_ || position < size_);
  if (!hit || stale) loadBlock(base, blocks_[0], blockLength_[0], previousBase);
  if (offset >= blockLength_[0]) return Nothing;
  return static_cast<unsigned char>(blocks_[0][static_cast<size_t>(offset)]);
}

void ReadAheadFile::moveToFront(int place) {
  std::rotate(blocks_, blocks_ + place, blocks_ + place + 1);
  std::rotate(blockBase_, blockBase_ + place, blockBase_ + place + 1);
  std::rotate(blockLength_, blockLength_ + place, blockLength_ + place + 1);
}

// The first place becomes an array for the block at `base`: a new one while there are few, else the
// one that was used longest ago.
void ReadAheadFile::takeBlock(int64_t base) {
  if (blockCount_ < BlockCount) blocks_[blockCount_++] = std::make_unique<char[]>(BlockSize);
  moveToFront(blockCount_ - 1);
  blockBase_[0] = base;
  blockLength_[0] = 0;
}

int ReadAheadFile::loadBlock(int64_t base, std::unique_ptr<char[]>& block, int64_t& length,
                             int64_t previousBase) {
  {
    const MutexLock lock(lock_);
    const bool fetched = status_ == 0 && prefetchPos_ == base && prefetchLength_ > 0;
    // A growing file may have got longer since a short block was fetched.
    if (fetched && !(growing_ && prefetchLength_ < BlockSize)) {
      std::swap(block, prefetchBuffer_);
      length = prefetchLength_;
    } else {
      status_ = 0;
      length = readFully(descriptor(), base, block.get(), BlockSize);
      if (length < 0) {
        status_ = errno;
        memset(block.get(), FillByte, BlockSize);
        length = std::clamp<int64_t>(size_ - base, 0, BlockSize);
        prefetchPos_ = Nothing;
        return status_;
      }
    }
    size_ = std::max(size_, base + length);
    prefetchLength_ = 0;
    prefetchPos_ = length < BlockSize ? Nothing : nextToFetch(base, previousBase);
    if (prefetchPos_ == Nothing) return 0;
  }
  prefetchEvent_.post();
  return 0;
}

int64_t ReadAheadFile::nextToFetch(int64_t base, int64_t previousBase) const {
  if (blockCount_ == 1 || previousBase == base - BlockSize) return base + BlockSize;
  if (previousBase == base + BlockSize && base >= BlockSize) return base - BlockSize;
  return Nothing;
}

int ReadAheadFile::readAt(int64_t position, void* buffer, size_t bytes) {
  size_t got;
  return readAt(position, buffer, bytes, got);
}

int ReadAheadFile::readAt(int64_t position, void* buffer, size_t bytes, size_t& got) {
  const MutexLock lock(lock_);
  got = 0;
  if (!isOpen()) return status_ = EBADF;
  if (position < 0) return status_ = EINVAL;
  status_ = 0;
  const int64_t count = readFully(descriptor(), position, static_cast<char*>(buffer), bytes);
  if (count < 0) return status_ = errno;
  got = static_cast<size_t>(count);
  if (got == 0 && bytes > 0) status_ = Status::EndOfFile;
  return status_;
}

int ReadAheadFile::readNext(void* buffer, size_t bytes) {
  size_t got;
  const int result = readAt(linePos_, buffer, bytes, got);
  if (result == 0) linePos_ += static_cast<int64_t>(got);
  return result;
}

int ReadAheadFile::readLineNext(char* buffer, int size) {
  if (size < 1) return status_ = EINVAL;
  size_t got;
  const int result = readAt(linePos_, buffer, static_cast<size_t>(size - 1), got);
  int length = 0;
  const int available = static_cast<int>(got);
  while (length < available && buffer[length] != '\n' && buffer[length] != 0) ++length;
  linePos_ += length < available ? length + 1 : length;  // the line's end is used up, too
  while (length > 0 && buffer[length - 1] == '\r') --length;
  buffer[length] = 0;
  return result;
}

int64_t ReadAheadFile::prefetchPosition() {
  const MutexLock lock(lock_);
  return prefetchPos_;
}

void ReadAheadFile::prefetchEntry(void* self) {
  static_cast<ReadAheadFile*>(self)->prefetchLoop();
}

void ReadAheadFile::prefetchLoop() {
  for (;;) {
    prefetchEvent_.wait(WaitForever);
    // Reset before looking: a post that comes from here on makes another round.
    prefetchEvent_.reset();
    if (stop_) return;
    const MutexLock lock(lock_);
    if (prefetchPos_ == Nothing || prefetchLength_ > 0) continue;
    const int64_t length = readFully(descriptor(), prefetchPos_, prefetchBuffer_.get(), BlockSize);
    prefetchLength_ = std::max<int64_t>(length, 0);
  }
}
