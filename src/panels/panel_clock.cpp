#include "panels/panel_clock.h"

#include "console/console.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/entry_text.h"
#include "panels/panel_draw.h"
#include "panels/panel_window.h"

namespace {

constexpr int MsInSecond = 1000;
constexpr int MsInMinute = 60 * MsInSecond;
constexpr int NsInMs = 1000000;
constexpr int SecondsInMinute = 60;

int clockColumn() {
  return 2 * panelPair().panelWidth() - ClockWidth;
}

timespec presentTime() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return now;
}

}  // namespace

void drawClock() {
  drawClock(timeToDos(presentTime().tv_sec));
}

void drawClock(DosTime moment) {
  if (!console || !GlobalOptions::Clock) return;
  console->writeWide(clockColumn(), 0, timeText(moment.time).data(), colourOf(Colour::Clock));
}

void removeClock() {
  if (!console || GlobalOptions::Clock) return;
  Panel& right = panelPair().side[1];
  if (isDrawable(right)) return drawTitle(right, panelPair().activeSide == 1);
  console->fillBlank(clockColumn(), 0, ClockWidth, 1, console->defaultAttr());
}

int msToNextMinute() {
  return msToNextMinute(presentTime());
}

int msToNextMinute(const timespec& now) {
  const auto second = static_cast<int>(now.tv_sec % SecondsInMinute);
  return MsInMinute - second * MsInSecond - static_cast<int>(now.tv_nsec / NsInMs);
}
