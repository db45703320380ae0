#include "support/console_test.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "foundation/break_state.h"
#include "foundation/utf8.h"
#include "options/colours.h"
#include "options/options.h"
#include "support/files.h"
#include "support/test_end.h"
#include "support/x_display.h"
#include "support/x_keys.h"

namespace {
constexpr int NeutralKey = 255;  // a hardware key code that no digit has

void createConsole(bool ownDisplay) {
  if (console) return;
  if (ownDisplay) {
    XDisplay::ownName();
  } else {
    XDisplay::name();
  }
  static char program[] = "td";
  static char* arguments[] = {program, nullptr};
  int count = 1;
  char** values = arguments;
  setenv("LC_ALL", "C.UTF-8", 1);  // what the toolkit sets when it begins
  ASSERT_TRUE(initToolkit(&count, &values)) << "no display " << getenv("DISPLAY");
  auto* screen = new CConsole();
  atTestEnd([screen] {
    delete screen;
    endToolkit();
  });
}

bool isTyped(Key::Code key, int state) {
  return state == 0 && key.isText() && key != Key::CtrlBackspace;
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::string differenceOf(const std::string& expected, const std::string& actual) {
  const auto a = linesOf(expected);
  const auto b = linesOf(actual);
  std::string result;
  for (size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
    const std::string& left = i < a.size() ? a[i] : "<no line>";
    const std::string& right = i < b.size() ? b[i] : "<no line>";
    if (left == right) continue;
    result += "row " + std::to_string(i) + "\n  -|" + left + "|\n  +|" + right + "|\n";
  }
  return result;
}
}  // namespace

void ConsoleTest::SetUp() {
  createConsole(needsOwnDisplay());
  ASSERT_NE(console, nullptr);
  breakState = BreakState::Idle;
  GlobalOptions::setDefaultOptions();
  defaultColours();
  textState = TextState{};
  console->setGeometry(80, 25, Estring("DejaVu Sans Mono"), 12);
  console->setCursorSize(0);
  console->setCursorPos(0, 0);
  console->setDefaultAttr(7);
  console->setCodePage(850);
  drainEvents();
  // The modifiers of an earlier test are let go.
  queueKey(Key::ShiftChanged, 0);
  getKey(nullptr, 0);
}

void ConsoleTest::TearDown() {
  if (!HasFailure() || !console) return;
  std::cout << "screen:\n" << screenText();
  const auto* info = testing::UnitTest::GetInstance()->current_test_info();
  mkdir("failed_screens", 0777);
  std::string name = std::string(info->test_suite_name()) + "." + info->name() + ".png";
  std::replace(name.begin(), name.end(), '/', '_');
  const std::string file = "failed_screens/" + name;
  if (console->savePicture(file.c_str()) == 0) {
    std::cout << "picture: " << std::filesystem::absolute(file).string() << "\n";
  }
}

std::string ConsoleTest::rowText(int x, int y, int w) const {
  std::wstring text;
  for (const Cell& cell : console->getCells(x, y, w, 1)) text += cell.ch == 0 ? L'\x2302' : cell.ch;
  return toDisplayUtf8(text.c_str()).data();
}

std::string ConsoleTest::rowText(int y) const {
  return rowText(0, y, console->columns());
}

std::string ConsoleTest::screenText() const {
  std::string result;
  for (int y = 0; y < console->rows(); ++y) {
    std::string row = rowText(y);
    row.erase(row.find_last_not_of(' ') + 1);
    result += row + "\n";
  }
  return result;
}

Cell ConsoleTest::cellAt(int x, int y) const {
  return console->getCells(x, y, 1, 1).front();
}

void ConsoleTest::queueKey(Key::Code key, int state) {
  TEvent event;
  event.key = key;
  event.state = state;
  event.hwCode = isTyped(key, state) ? 0 : NeutralKey;
  console->events().put(event);
}

void ConsoleTest::queueText(const std::string& text) {
  const Westring wide = fromUtf8(text.c_str());
  for (const wchar_t* p = wide.data(); *p != 0; ++p) queueKey(*p);
}

void ConsoleTest::queueMouse(EventKind kind, int x, int y, int button, int state) {
  TEvent event;
  event.kind = kind;
  event.button = button;
  event.state = state;
  event.x = x;
  event.y = y;
  console->events().put(event);
}

void ConsoleTest::queueWheel(int direction, int state) {
  TEvent event;
  event.kind = EventKind::Wheel;
  event.wheel = direction;
  event.state = state;
  console->events().put(event);
}

void ConsoleTest::drainEvents() {
  TEvent event;
  while (console->readEvent(event, 0)) {
  }
}

void ConsoleTest::expectGoldenText(const std::string& name, const std::string& actual,
                                   std::source_location where) {
  namespace fs = std::filesystem;
  const fs::path file = goldenPath(where.file_name(), name);
  const char* update = getenv("TD_UPDATE_GOLDEN");
  if (update && std::string(update) == "1") {
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << actual;
    std::cout << "written: " << file.string() << "\n";
    return;
  }
  std::ifstream in(file, std::ios::binary);
  EXPECT_TRUE(in) << "no golden screen " << file.string();
  std::ostringstream expected;
  expected << in.rdbuf();
  EXPECT_EQ(expected.str() == actual, true) << "the screen differs from " << file.string() << "\n"
                                            << differenceOf(expected.str(), actual);
}

void ConsoleTest::expectGolden(const std::string& name, std::source_location where) {
  expectGoldenText(name, screenText(), where);
}

std::vector<uint32_t> ConsoleTest::cellPixels(const Picture& picture, int x, int y) const {
  std::vector<uint32_t> result;
  const int w = console->cellWidth(), h = console->cellHeight();
  for (int row = y * h; row < (y + 1) * h; ++row) {
    for (int column = x * w; column < (x + 1) * w; ++column) {
      result.push_back(picture.at(column, row));
    }
  }
  return result;
}

void RealKeysTest::SetUp() {
  ConsoleTest::SetUp();
  ASSERT_TRUE(XKeys::get().waitForFocus(console->windowId())) << "the window has no focus";
}

Key::Code RealKeysTest::waitKey(MouseMessage* mouse, int timeoutMs) {
  Key::Code key = Key::ShiftChanged;
  waitUntil(
      [&] {
        key = getKey(mouse, 100);
        return key != Key::ShiftChanged && key != Key::NoKey;
      },
      timeoutMs);
  return key == Key::ShiftChanged ? Key::NoKey : key;
}
