#include "foundation/clock.h"

#include <chrono>

namespace {

class SystemClock : public CClock {
 public:
  int64_t nanoseconds() const override {
    using namespace std::chrono;
    return duration_cast<std::chrono::nanoseconds>(steady_clock::now().time_since_epoch()).count();
  }
  int wait(EventSem& event, uint32_t ms) override { return event.wait(ms); }
};

}  // namespace

CClock& systemClock() {
  static SystemClock clock;
  return clock;
}
