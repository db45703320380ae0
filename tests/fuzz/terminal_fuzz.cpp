#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "console/console.h"
#include "support/test_end.h"
#include "support/x_display.h"
#include "terminal/ansi_emulator.h"
#include "terminal/utf8_tail.h"

namespace {
constexpr int Columns = 20, Rows = 6;

void startConsole() {
  XDisplay::name();
  static char program[] = "fuzz";
  static char* arguments[] = {program, nullptr};
  int count = 1;
  char** values = arguments;
  if (!initToolkit(&count, &values)) abort();
  static CConsole* screen = new CConsole;
  screen->setGeometry(Columns, Rows, "", 0);
  atTestEnd([] {
    delete screen;
    endToolkit();
  });
}

struct Screen {
  std::vector<Cell> cells;
  CursorPos cursor;
};

// What the pieces `text` up to `cut` and the rest make of a blank screen.
Screen screenOf(std::string_view text, size_t cut) {
  static ChildInput input(-1);
  console->fillBlank(0, 0, Columns, Rows, 7);
  console->setCursorPos(0, 0);
  CAnsiTerminalEmulator emulator(*console, input, "/dev/null");
  emulator.write(text.substr(0, cut));
  emulator.write(text.substr(cut));
  return {console->getCells(0, 0, Columns, Rows), console->getCursorPos()};
}

bool canBeShown(wchar_t ch) {
  return ch >= 32 && (ch < 127 || ch > 159) && ch != 0x2028 && ch != 0x2029 && ch <= 0x10FFFF;
}
}  // namespace

// Whatever a command writes: the cursor stays in the grid, every cell can be drawn, and it makes no
// difference in which pieces the bytes came.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const bool started = (startConsole(), true);
  if (!started) abort();
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const Screen whole = screenOf(text, size);
  if (whole.cursor.x < 0 || whole.cursor.x >= Columns) abort();
  if (whole.cursor.y < 0 || whole.cursor.y >= Rows) abort();
  for (const Cell& cell : whole.cells) {
    if (!canBeShown(cell.ch)) abort();
  }
  // Longer sequences are dropped where they are cut.
  if (size > CAnsiTerminalEmulator::LongestPending) return 0;
  const size_t middle = size / 2;
  const Screen pieces = screenOf(text, middle - unfinishedUtf8(text.substr(0, middle)));
  if (pieces.cells != whole.cells || pieces.cursor.x != whole.cursor.x) abort();
  return pieces.cursor.y == whole.cursor.y ? 0 : (abort(), 0);
}
