#include <filesystem>
#include <thread>

#include "foundation/data_paths.h"
#include "options/options.h"
#include "tools/help.h"
#include "tools/help_screen.h"
#include "tools/tools_test.h"

namespace {

constexpr int TextRow = 3, TextRows = 18, LeftFrame = 3, RightFrame = 76;

std::string line(int number) {
  return "line " + std::to_string(number) + ".";
}

std::vector<Westring> numbered(int count) {
  std::vector<Westring> lines;
  for (int i = 1; i <= count; ++i) lines.push_back(fromUtf8(line(i).c_str()));
  return lines;
}

// A window of 18 rows over a text of 100 lines. A key is followed by a look at the rows.
class HelpWindowTest : public ConsoleTest {
 protected:
  // Takes the keys one by one in a window over `lines`; the first text row after each.
  std::vector<std::string> tops(const std::vector<Key::Code>& keys, int lines = 100) {
    std::vector<std::string> result;
    Watching screen(numbered(lines), [&] { result.push_back(firstRow()); });
    for (Key::Code key : keys) queueKey(key);
    queueKey(Key::Esc);
    screen.run();
    return result;
  }
  std::string firstRow() const {
    const std::string text = rowText(LeftFrame + 1, TextRow, 12);
    return text.substr(0, text.find('.') + 1);
  }
  std::string marks() const {
    return rowText(RightFrame, TextRow, 1) + rowText(RightFrame, TextRow + TextRows - 1, 1);
  }

  // Tells before each wait.
  class Watching : public HelpScreen {
   public:
    Watching(std::vector<Westring> lines, std::function<void()> look, CClock& clock = systemClock())
        : HelpScreen(std::move(lines), nullptr, clock), look_(std::move(look)) {}

   protected:
    void draw() override {
      HelpScreen::draw();
      look_();
    }

   private:
    std::function<void()> look_;
  };

  using Texts = std::vector<std::string>;
};

TEST_F(HelpWindowTest, TheWindowStandsCentredWithItsTitles) {
  console->fillBlank(0, 0, 80, 25, 7);
  std::string shown;
  Watching screen(numbered(30), [&] { shown = screenText(); });
  queueKey(Key::Esc);
  screen.run();
  expectGoldenText("help_window", shown);
}

TEST_F(HelpWindowTest, ItLeavesFiveRowsOfScreensOfEverySize) {
  const struct {
    int columns, rows, left;
  } sizes[] = {{80, 25, 3}, {100, 33, 13}, {132, 50, 29}, {80, 250, 3}};
  for (const auto& size : sizes) {
    console->setGeometry(size.columns, size.rows, Estring(), 0);
    const int frame = size.rows - 4, textRows = size.rows - 7;
    std::string top, last, foot;
    Watching screen(numbered(300), [&] {
      top = rowText(size.left, 2, 9);
      last = rowText(size.left + 1, frame - 1, 10);
      foot = rowText(size.left, frame, 2) + rowText(size.left + 72, frame, 2);
    });
    queueKey(Key::Esc);
    screen.run();
    EXPECT_EQ(top, "╔═══ Help") << size.rows;
    EXPECT_TRUE(last.starts_with(line(textRows) + ' ')) << last;
    EXPECT_EQ(foot, "╚══╝") << size.rows;
  }
}

TEST_F(HelpWindowTest, ArrowsScrollByALineAndStayWithinTheText) {
  EXPECT_EQ(tops({Key::Up, Key::Down, Key::Down, Key::Up}),
            (Texts{line(1), line(1), line(2), line(3), line(2)}));
}

TEST_F(HelpWindowTest, PagesAreAsHighAsTheWindow) {
  EXPECT_EQ(tops({Key::PageDown, Key::PageDown, Key::PageUp}),
            (Texts{line(1), line(19), line(37), line(19)}));
}

TEST_F(HelpWindowTest, HomeAndEndGoToTheEnds) {
  EXPECT_EQ(tops({Key::End, Key::PageDown, Key::Down, Key::Home}),
            (Texts{line(1), line(83), line(83), line(83), line(1)}));
}

TEST_F(HelpWindowTest, AShortTextDoesNotScroll) {
  EXPECT_EQ(tops({Key::Down, Key::PageDown, Key::End}, TextRows),
            (Texts{line(1), line(1), line(1), line(1)}));
}

TEST_F(HelpWindowTest, TheFrameTellsWhereMoreLinesAre) {
  Texts seen;
  Watching screen(numbered(100), [&] { seen.push_back(marks()); });
  for (Key::Code key : {Key::Down, Key::End, Key::Esc}) queueKey(key);
  screen.run();
  EXPECT_EQ(seen, (Texts{"║▼", "▲▼", "▲║"}));
}

TEST_F(HelpWindowTest, TheWheelScrolls) {
  Texts seen;
  Watching screen(numbered(100), [&] { seen.push_back(firstRow()); });
  for (int direction : {-1, -1, 1}) queueWheel(direction);
  queueKey(Key::Esc);
  screen.run();
  EXPECT_EQ(seen, (Texts{line(1), line(4), line(7), line(4)}));
}

TEST_F(HelpWindowTest, APressBesideTheWindowLeaves) {
  for (const auto& [x, y] : {std::pair{2, 10}, {77, 10}, {40, 1}, {40, 22}}) {
    Watching screen(numbered(100), [] {});
    queueMouse(EventKind::Press, x, y);
    screen.run();
    EXPECT_EQ(console->eventCount(), 0);
  }
}

TEST_F(HelpWindowTest, APressInTheTopOrBottomThirdScrollsAndTheRightButtonPages) {
  const struct {
    int y, button;
    std::string top;
  } rows[] = {{2, 1, line(36)},  {8, 1, line(36)},  {9, 1, line(37)},
              {15, 1, line(37)}, {16, 1, line(38)}, {21, 1, line(38)},
              {3, 2, line(19)},  {20, 2, line(55)}, {12, 2, line(37)}};
  for (const auto& row : rows) {
    std::string top;
    Watching screen(numbered(100), [&] { top = firstRow(); });
    queueKey(Key::PageDown);
    queueKey(Key::PageDown);
    queueMouse(EventKind::Press, 40, row.y, row.button);
    queueMouse(EventKind::Release, 40, row.y, row.button);
    queueKey(Key::Esc);
    screen.run();
    EXPECT_EQ(top, row.top) << row.y;
  }
}

TEST_F(HelpWindowTest, AButtonHeldScrollsUntilSomethingElseComes) {
  GlobalOptions::ScrollDelay = 1;
  int looks = 0;
  std::string top;
  Watching screen(numbered(1000), [&] {
    top = firstRow();
    if (++looks == 6) queueKey(Key::Esc);
  });
  queueMouse(EventKind::Press, 40, 20);
  screen.run();
  EXPECT_GE(looks, 6);
  EXPECT_NE(top, line(2));
}

// The help of a file, as keys reach it.
class HelpTest : public ConsoleTest {
 protected:
  void SetUp() override {
    ConsoleTest::SetUp();
    setenv("TD_SHARE", share.path().c_str(), 1);
    setProgramPath(L"/usr/bin/td");
    setConfigurationFile(L"");
  }
  static std::string record(int number, const std::string& text) {
    const auto size = static_cast<char>(text.size() + 5);
    return std::string{static_cast<char>(number & 255), static_cast<char>(number >> 8), size, 0} +
           text + '\0';
  }
  void write(const std::string& name, const std::string& topic) {
    share.write(name, record(1, topic) + record(0, "the index") + record(30000, "nothing"));
  }
  // What shows once `text` does, and then after each key; Esc at the end as often as told.
  std::string shownBy(HelpTopic topic, const std::vector<Key::Code>& keys = {}) {
    for (Key::Code key : keys) queueKey(key);
    std::string shown;
    std::thread user([&] {
      waitUntil([&] { return console->events().isAwaited(); });
      shown = screenText();
      for (int i = 0; i < 2; ++i) queueKey(Key::Esc);
    });
    static_cast<HelpWindow&>(help).show(topic);
    user.join();
    drainEvents();
    return shown;
  }
  static bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
  }

  TempDir share;
  HelpOfFile help;
};

TEST_F(HelpTest, ATopicOfTheLoadedFileIsShownAndGoesWithoutATrace) {
  write("td.tdh", "the panels");
  loadHelp();
  const std::string before = screenText();
  EXPECT_TRUE(contains(shownBy(HelpTopic::Panels), "the panels"));
  EXPECT_EQ(screenText(), before);
}

TEST_F(HelpTest, F1OpensTheIndexAboveATopicAndDoesNothingInTheIndex) {
  write("td.tdh", "the panels");
  loadHelp();
  EXPECT_TRUE(contains(shownBy(HelpTopic::Panels, {Key::F1}), "the index"));
  // The second F1 opens no window of its own: one Esc each leads back to the topic.
  const std::string back = shownBy(HelpTopic::Panels, {Key::F1, Key::F1, Key::Esc});
  EXPECT_TRUE(contains(back, "the panels"));
}

TEST_F(HelpTest, ATopicThatIsNotThereShowsTheEndRecord) {
  write("td.tdh", "the panels");
  loadHelp();
  EXPECT_TRUE(contains(shownBy(HelpTopic::Editor), "nothing"));
}

TEST_F(HelpTest, WithoutAFileItSaysSo) {
  loadHelp();
  const std::string shown = shownBy(HelpTopic::Panels);
  EXPECT_TRUE(contains(shown, "Help not loaded"));
}

TEST_F(HelpTest, AFileOfAnotherConfigurationsNameComesBeforeTheCommonOne) {
  write("td.tdh", "the common one");
  setConfigurationFile(L"/somewhere/my.ini");
  loadHelp();
  EXPECT_TRUE(contains(shownBy(HelpTopic::Panels), "the common one"));
  write("my.tdh", "the other one");
  loadHelp();
  EXPECT_TRUE(contains(shownBy(HelpTopic::Panels), "the other one"));
  setConfigurationFile(L"");
}

TEST_F(HelpTest, AFileThatIsTooLargeOrNoFileIsNotLoaded) {
  share.write("td.tdh", std::string(HelpFile::LargestFile + 1, 'x'));
  loadHelp();
  EXPECT_TRUE(contains(shownBy(HelpTopic::Panels), "Help not loaded"));
  std::filesystem::remove(share.path("td.tdh"));
  share.makeDir("td.tdh");
  loadHelp();
  EXPECT_TRUE(contains(shownBy(HelpTopic::Panels), "Help not loaded"));
}

}  // namespace
