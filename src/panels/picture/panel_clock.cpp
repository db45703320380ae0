#include "panels/picture/panel_clock.h"

#include "console/console.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/model/panel_pair.h"
#include "panels/picture/entry_text.h"

namespace {

constexpr int MsInSecond = 1000;
constexpr int MsInMinute = 60 * MsInSecond;
constexpr int NsInMs = 1000000;
constexpr int SecondsInMinute = 60;

timespec presentTime() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return now;
}

}  // namespace

int clockColumn() {
  return 2 * panelPair().panelWidth() - ClockWidth;
}

void drawClock() {
  drawClock(timeToDos(presentTime().tv_sec));
}

void drawClock(DosTime moment) {
  if (!console || !GlobalOptions::Clock) return;
  console->writeWide(clockColumn(), 0, timeText(moment.time).data(), colourOf(Colour::Clock));
}

int msToNextMinute() {
  return msToNextMinute(presentTime());
}

int msToNextMinute(const timespec& now) {
  const auto second = static_cast<int>(now.tv_sec % SecondsInMinute);
  return MsInMinute - second * MsInSecond - static_cast<int>(now.tv_nsec / NsInMs);
}
