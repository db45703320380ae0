#pragma once

#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "foundation/system.h"

// Makes one system call of a scope fail, and counts them. Calls are numbered from 1.
class FaultHook {
 public:
  // Counts only.
  FaultHook() { System::setHook(onCall, this); }
  // Makes the call `number` fail.
  FaultHook(int number, int error) : number_(number), error_(error) {
    System::setHook(onCall, this);
  }
  // Makes every call of this name fail.
  FaultHook(const char* name, int error) : name_(name), error_(error) {
    System::setHook(onCall, this);
  }
  ~FaultHook() { System::setHook(nullptr, nullptr); }
  FaultHook(const FaultHook&) = delete;
  FaultHook& operator=(const FaultHook&) = delete;

  int calls() const { return static_cast<int>(log_.size()); }
  int calls(const char* name) const {
    int result = 0;
    for (const std::string& call : log_) result += call == name;
    return result;
  }
  bool hit() const { return hit_; }
  const std::string& hitCall() const { return hitCall_; }

 private:
  static int onCall(const char* call, const char*, void* context) {
    auto* hook = static_cast<FaultHook*>(context);
    hook->log_.push_back(call);
    const bool wanted =
        hook->name_ ? strcmp(hook->name_, call) == 0 : hook->calls() == hook->number_;
    if (!wanted || hook->error_ == 0) return 0;
    hook->hit_ = true;
    hook->hitCall_ = call;
    return hook->error_;
  }

  int number_ = 0;
  const char* name_ = nullptr;
  int error_ = 0;
  bool hit_ = false;
  std::string hitCall_;
  std::vector<std::string> log_;
};
