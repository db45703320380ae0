#include "terminal/child_input.h"

#include <sys/eventfd.h>

namespace {
constexpr int64_t TwiceNs = 1'000'000'000;
constexpr char StopByte = 26;  // Ctrl-Z
}  // namespace

ChildInput::ChildInput(int master, CClock& clock)
    : master_(master),
      clock_(clock),
      wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      lastBreak_(clock.nanoseconds() - 2 * TwiceNs) {}

ChildInput::Put ChildInput::put(std::string_view bytes) {
  const std::lock_guard guard(lock_);
  if (bytes.size() > MostWaiting - waiting_.size()) return Put::Refused;
  if (bytes.find(StopByte) != std::string_view::npos) stopKey_ = true;
  bytes.remove_prefix(waiting_.empty() ? write(bytes) : 0);
  if (bytes.empty()) return Put::Taken;
  waiting_ += bytes;
  wake();
  return Put::Taken;
}

void ChildInput::breakPressed() {
  const int64_t now = clock_.nanoseconds();
  if (now - lastBreak_.exchange(now) <= TwiceNs) askForEnd();
}

void ChildInput::closePressed() {
  closeAsked_.store(true, std::memory_order_relaxed);
  askForEnd();
}

void ChildInput::askForEnd() {
  endAsked_.store(true, std::memory_order_relaxed);
  wake();
}

void ChildInput::clearWake() {
  uint64_t count = 0;
  System::read(wake_.get(), &count, sizeof count);
}

bool ChildInput::waiting() const {
  const std::lock_guard guard(lock_);
  return !waiting_.empty();
}

void ChildInput::writeWaiting() {
  const std::lock_guard guard(lock_);
  waiting_.erase(0, write(waiting_));
}

size_t ChildInput::write(std::string_view bytes) const {
  size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t written = System::write(master_, bytes.data() + done, bytes.size() - done);
    if (written <= 0) break;
    done += static_cast<size_t>(written);
  }
  return done;
}

void ChildInput::wake() const {
  const uint64_t one = 1;
  System::write(wake_.get(), &one, sizeof one);
}
