#pragma once

#include <memory>

#include "foundation/file.h"
#include "foundation/threads.h"

// Random byte access with four cached 16384-byte blocks and a thread that fetches the next one
// ahead, in either direction. byteAt, readAt and readNext belong to one thread; the prefetch thread
// shares the descriptor under `lock_`.
class ReadAheadFile : public File {
 public:
  static constexpr int BlockSize = 16384;
  static constexpr int BlockCount = 4;

  enum class Growing { No, Yes };

  ReadAheadFile();
  ~ReadAheadFile() override;
  int open(const Westring& name, Growing growing);  // 0 or errno
  int close() override;

  int byteAt(int64_t position);  // the byte, or -1 past the end
  int readAt(int64_t position, void* buffer, size_t bytes);
  int readNext(void* buffer, size_t bytes);  // at linePos, which advances on success
  int readLineNext(char* buffer, int size);
  int64_t linePos() const { return linePos_; }
  void setLinePos(int64_t position) { linePos_ = position; }
  int64_t size() const { return size_; }
  int64_t prefetchPosition();  // -1 for none; for tests

 private:
  void moveToFront(int place);
  void takeBlock(int64_t base);
  int loadBlock(int64_t base, std::unique_ptr<char[]>& block, int64_t& length,
                int64_t previousBase);
  int64_t nextToFetch(int64_t base, int64_t previousBase) const;
  int readAt(int64_t position, void* buffer, size_t bytes, size_t& got);
  static void prefetchEntry(void* self);
  void prefetchLoop();

  bool growing_ = false;
  int64_t size_ = 0;
  std::unique_ptr<char[]> blocks_[BlockCount];  // most recently used first
  int64_t blockBase_[BlockCount] = {};
  int64_t blockLength_[BlockCount] = {};
  int blockCount_ = 0;
  int64_t prefetchPos_ = -1;
  std::unique_ptr<char[]> prefetchBuffer_;
  int64_t prefetchLength_ = 0;
  EventSem prefetchEvent_;
  std::atomic<bool> stop_{false};
  MutexSem lock_;
  ThreadHandle thread_;
  int64_t linePos_ = 0;
  int openStatus_ = 0;
};
