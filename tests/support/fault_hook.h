#pragma once

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <string>
#include <vector>

#include "foundation/system.h"

// Makes one system call of a scope fail, and counts them. Calls are numbered from 1, in the order
// in which the threads of the program make them.
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

  int calls() const {
    const std::lock_guard lock(mutex_);
    return static_cast<int>(log_.size());
  }
  int calls(const char* name) const {
    const std::lock_guard lock(mutex_);
    int result = 0;
    for (const std::string& call : log_) result += call == name;
    return result;
  }
  bool hit() const { return !hitCall().empty(); }
  std::string hitCall() const {
    const std::lock_guard lock(mutex_);
    return hitCall_;
  }

 private:
  static int onCall(const char* call, const char*, void* context) {
    auto* hook = static_cast<FaultHook*>(context);
    const std::lock_guard lock(hook->mutex_);
    hook->log_.push_back(call);
    const bool wanted = hook->name_ ? strcmp(hook->name_, call) == 0
                                    : static_cast<int>(hook->log_.size()) == hook->number_;
    if (!wanted || hook->error_ == 0) return 0;
    hook->hitCall_ = call;
    return hook->error_;
  }

  int number_ = 0;
  const char* name_ = nullptr;
  int error_ = 0;
  mutable std::mutex mutex_;
  std::string hitCall_;
  std::vector<std::string> log_;
};

// What goes wrong with the system's calls, for loops that let each call of an operation be the one.
// `onCall` is the hook, with the Fault as its context. Calls are numbered from 1.
struct Fault {
  enum class Reach {
    Once,      // the call `number` fails
    SameName,  // and from then on every call of its name
    Below,     // from the call `number` on every call on `directory` or something below it
    Kill       // the process ends at the call `number`, with the status Killed
  };
  static constexpr int Killed = 77;

  struct Refusal {
    std::string call;
    std::string path;  // absolute
  };

  int number = 0;  // 0: nothing fails, calls are only counted
  int error = 0;
  Reach reach = Reach::Once;
  std::string directory = {};  // absolute

  int seen = 0;
  std::string call = {};               // the name of the call `number`
  std::vector<Refusal> refusals = {};  // in their order

  static int onCall(const System::Call& call, void* context) {
    return static_cast<Fault*>(context)->decide(call);
  }

  // True when a call of one of these names was refused for `path` or something below it.
  bool refused(const std::vector<std::string>& calls, const std::string& path) const {
    for (const Refusal& refusal : refusals) {
      for (const std::string& name : calls) {
        if (refusal.call == name && isWithin(refusal.path, path)) return true;
      }
    }
    return false;
  }

  static bool isWithin(const std::string& path, const std::string& directory) {
    return path == directory || path.starts_with(directory + "/");
  }

 private:
  int decide(const System::Call& next) {
    ++seen;
    if (seen == number) call = next.name;
    if (!isReached(next)) return 0;
    if (reach == Reach::Kill) _exit(Killed);
    refusals.push_back({next.name, placeOf(next.directory, next.path)});
    return error;
  }

  bool isReached(const System::Call& next) const {
    if (number == 0 || seen < number) return false;
    switch (reach) {
      case Reach::SameName:
        return call == next.name;
      case Reach::Below:
        return isWithin(placeOf(next.directory, next.path), directory) ||
               isWithin(placeOf(next.targetDirectory, next.target), directory);
      default:
        return seen == number;
    }
  }

  // Empty when the call has no place.
  static std::string placeOf(int descriptor, const char* path) {
    if (descriptor == AT_FDCWD || *path == '/') {
      return *path ? std::filesystem::absolute(path).lexically_normal().string() : "";
    }
    char base[PATH_MAX];
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = ::readlink(link.c_str(), base, sizeof base);
    if (length < 0) return "";
    const std::filesystem::path place(std::string(base, static_cast<size_t>(length)));
    return *path ? (place / path).lexically_normal().string() : place.string();
  }
};
