#pragma once

#include <atomic>
#include <cstring>

#include "foundation/system.h"

// Nothing stops what looks at this.
inline bool never() {
  return false;
}

// Counts the reads of a scope, also those of a thread that reads ahead, and makes one of them fail.
class ReadHook {
 public:
  // `failing` counts from 1; 0 is none.
  explicit ReadHook(int failing = 0, int error = 0) : failing_(failing), error_(error) {
    System::setHook(onCall, this);
  }
  ~ReadHook() { System::setHook(nullptr, nullptr); }
  ReadHook(const ReadHook&) = delete;
  ReadHook& operator=(const ReadHook&) = delete;

  int reads() const { return reads_; }

 private:
  static int onCall(const char* call, const char*, void* context) {
    auto* hook = static_cast<ReadHook*>(context);
    if (strcmp(call, "readAt") != 0) return 0;
    return ++hook->reads_ == hook->failing_ ? hook->error_ : 0;
  }

  const int failing_;
  const int error_;
  std::atomic<int> reads_{0};
};
