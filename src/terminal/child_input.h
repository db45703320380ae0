#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

#include "foundation/clock.h"
#include "foundation/system.h"

// The way from the keyboard to a command that runs: bytes for its terminal, and that it has to end.
// The toolkit thread puts things in and never waits: what the terminal doesn't take stays here in
// its order until the pump can write it.
class ChildInput {
 public:
  static constexpr size_t MostWaiting = 1 << 20;  // bytes

  // The master is borrowed and must not block.
  explicit ChildInput(int master, CClock& clock = systemClock());

  // ---- any thread

  // Takes all of it, or nothing when too much is waiting already: then the caller beeps.
  enum class [[nodiscard]] Put{Taken, Refused};
  Put put(std::string_view bytes);
  // Pressed twice within a second it asks for the end of the command.
  void breakPressed();
  void closePressed();  // of the window: asks for the end of the command, and is kept for later

  // ---- the pump

  int wakeDescriptor() const { return wake_.get(); }  // readable when there is something new
  void clearWake();
  bool waiting() const;
  void writeWaiting();  // what the terminal takes now
  bool endAsked() const { return endAsked_.load(std::memory_order_relaxed); }
  bool closeAsked() const { return closeAsked_.load(std::memory_order_relaxed); }
  bool takeStopKey() { return stopKey_.exchange(false); }  // put since the last call

 private:
  size_t write(std::string_view bytes) const;  // how many the terminal took
  void askForEnd();
  void wake() const;

  int master_;
  CClock& clock_;
  Descriptor wake_;
  mutable std::mutex lock_;  // guards waiting_; nothing else is locked under it
  std::string waiting_;
  std::atomic<int64_t> lastBreak_;
  std::atomic<bool> endAsked_{false};
  std::atomic<bool> closeAsked_{false};
  std::atomic<bool> stopKey_{false};
};
