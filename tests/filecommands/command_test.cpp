#include "filecommands/command_test.h"

#include <regex>

void CommandTest::SetUp() {
  setenv("TZ", "UTC", 1);
  timeZoneChanged();
  PanelScreenTest::SetUp();
  dir.makeDir("left");
  dir.makeDir("right");
  left().path = dir.wide("left");
  right().path = dir.wide("right");
  for (int y = 0; y < console->rows(); ++y) console->fillCell(0, y, console->columns(), Cell{});
}

void CommandTest::TearDown() {
  PanelScreenTest::TearDown();
  unsetenv("TZ");
  timeZoneChanged();
}

std::string CommandTest::file(const std::string& name, const std::string& content) {
  dir.write(name, content);
  setTime(dir.path(name), 1600000000);
  return dir.path(name);
}

void CommandTest::show(const std::string& cursor) {
  panelRefresh();
  if (!cursor.empty()) {
    selectName(left(), decodeFileName(cursor.c_str()).data());
    ASSERT_EQ(currentName(left()), cursor);
  }
}

void CommandTest::tag(const std::string& name) {
  ASSERT_NE(entryNamed(left(), name), nullptr) << name;
  ASSERT_TRUE(changeTag(left(), *entryNamed(left(), name), TagMode::Tag));
}

std::string CommandTest::maskedScreen() const {
  std::string text = screenText();
  const std::string mask = dir.path().substr(0, dir.path().size() - 6) + "XXXXXX";
  for (size_t at = 0; (at = text.find(dir.path(), at)) != std::string::npos;) {
    text.replace(at, mask.size(), mask);
  }
  // Bar and statistics depend on the moment.
  text = std::regex_replace(text, std::regex("Time: +[0-9]+:[0-9]+  BPS: .{7}  ETA: [0-9]+:[0-9]+"),
                            std::string(35, ' '));
  return std::regex_replace(text, std::regex("█|░"), " ");
}

// The text that was waited for may be there before the rest of its box. A screen that is to be
// another one than before is taken when it had all the time to become so.
void CommandTest::expectCompleted(const std::string& golden, std::source_location where) {
  std::string shown;
  const std::string expected = readFile(goldenPath(where.file_name(), golden));
  waitUntil([&] { return (shown = maskedScreen()) == expected; });
  expectGoldenText(golden, shown, where);
}

void CommandTest::play(const std::vector<Step>& steps, const std::function<void()>& command,
                       std::source_location where) {
  std::atomic<bool> ended{false};
  before_ = screenText();
  std::thread user([&] {
    for (const Step& step : steps) {
      const bool seen = waitUntil([&] { return ended || shows(step.text); });
      EXPECT_TRUE(seen && !ended) << "never on the screen: " << step.text << "\n" << screenText();
      if (!seen || ended) break;
      if (!step.golden.empty()) expectCompleted(step.golden, where);
      if (const char* pictures = getenv("TD_PICTURES"); pictures && !step.golden.empty()) {
        console->savePicture((std::string(pictures) + "/" + step.golden + ".png").c_str());
      }
      queueText(step.typed);
      for (const Key::Code key : step.keys) queueKey(key);
      if (step.then) step.then();
    }
    // Whatever else is asked would keep the test waiting for ever.
    waitUntil([&] { return ended.load(); }, steps.empty() ? 2000 : PatienceMs);
    while (!ended) {
      ADD_FAILURE() << "still asking:\n" << screenText();
      queueKey(Key::Esc);
      waitUntil([&] { return ended.load(); }, 500);
    }
  });
  command();
  ended = true;
  user.join();
  // A thread may have had news for a dialog that was left.
  while (const auto event = console->events().get(0)) EXPECT_EQ(event->kind, EventKind::Wake);
}
