#include "terminal/session_pump.h"

#include <poll.h>

#include <array>
#include <optional>
#include <vector>

#include "console/input.h"

namespace {

constexpr int RoundMs = 100;         // the longest wait of one round
constexpr int64_t MsNs = 1'000'000;  // nanoseconds in a millisecond
constexpr int64_t QuietNs = RoundMs * MsNs;
constexpr int64_t StopNs = 1000 * MsNs;      // how long stopped processes are looked for
constexpr int64_t PatienceNs = 2000 * MsNs;  // from the hang-up to the kill
constexpr size_t BufferSize = 64 * 1024;

class SessionPump {
 public:
  SessionPump(ChildProcess& child, PseudoTerminal& terminal, ChildInput& input,
              SessionScreen& screen)
      : child_(child),
        terminal_(terminal),
        input_(input),
        screen_(screen),
        size_(screen.size()),
        buffer_(BufferSize),
        lastOutput_(now()) {}

  SessionEnd run() {
    do {
      oneRound();
      continueWhatStopped();
      endWhenAsked();
      followSize();
    } while (!child_.reap());
    drain();
    return hungUp_ ? SessionEnd::HungUp : SessionEnd::Own;
  }

 private:
  enum Place { Output, End, Wake, Places };

  static int64_t now() { return systemClock().nanoseconds(); }

  void oneRound() {
    std::array<pollfd, Places> places{};
    const bool keysWait = input_.waiting();
    places[Output] = {terminal_.master(), static_cast<short>(keysWait ? POLLIN | POLLOUT : POLLIN),
                      0};
    places[End] = {child_.endDescriptor(), POLLIN, 0};
    places[Wake] = {input_.wakeDescriptor(), POLLIN, 0};
    if (poll(places.data(), places.size(), RoundMs) < 0) return;
    if (places[Wake].revents != 0) input_.clearWake();
    if ((places[Output].revents & POLLOUT) != 0) input_.writeWaiting();
    if ((places[Output].revents & POLLIN) != 0) readBuffer();
    if (now() - lastOutput_ >= QuietNs) screen_.showHeldBack();
  }

  // As much as is there, up to the buffer's size.
  void readBuffer() {
    size_t filled = 0;
    while (filled < buffer_.size()) {
      const ssize_t got =
          System::read(terminal_.master(), buffer_.data() + filled, buffer_.size() - filled);
      if (got <= 0) break;
      filled += static_cast<size_t>(got);
    }
    if (filled == 0) return;
    screen_.write({buffer_.data(), filled});
    lastOutput_ = now();
  }

  // For a while after the stop key, since it takes its time to be seen.
  void continueWhatStopped() {
    if (input_.takeStopKey()) {
      nextLook_ = now() + QuietNs;
      lastLook_ = now() + StopNs;
    }
    if (nextLook_ > lastLook_ || now() < nextLook_) return;
    child_.continueStopped();
    nextLook_ = now() + QuietNs;
  }

  void endWhenAsked() {
    if (!hungUp_) {
      if (!input_.endAsked() && !screen_.endAsked() && !programEnds()) return;
      child_.askToEnd(screen_.endSignal());
      hungUp_ = now();
    } else if (now() - *hungUp_ >= PatienceNs) {
      child_.kill();
    }
  }

  void followSize() {
    const GridSize size = screen_.size();
    if (size.columns == size_.columns && size.rows == size_.rows) return;
    size_ = size;
    terminal_.setSize(size);
  }

  // Once: whoever still writes in the background could keep this going for ever. The buffer holds
  // more than a terminal keeps.
  void drain() {
    readBuffer();
    screen_.showHeldBack();
  }

  ChildProcess& child_;
  PseudoTerminal& terminal_;
  ChildInput& input_;
  SessionScreen& screen_;
  GridSize size_;
  std::vector<char> buffer_;
  int64_t lastOutput_;
  std::optional<int64_t> hungUp_;
  int64_t nextLook_ = 1, lastLook_ = 0;  // for stopped processes; none when the next is behind
};

}  // namespace

SessionEnd pumpSession(ChildProcess& child, PseudoTerminal& terminal, ChildInput& input,
                       SessionScreen& screen) {
  return SessionPump(child, terminal, input, screen).run();
}
