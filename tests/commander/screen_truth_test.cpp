// What stands on the screen is what drawing everything anew would give, whatever was done before.

#include <random>

#include "commander/command.h"
#include "commander/help_probe.h"
#include "commander/main_loop_test.h"
#include "panels/commands/selection.h"
#include "panels/picture/panel_draw.h"

namespace {

class ScreenTruth : public MainLoopTest {
 protected:
  void SetUp() override {
    MainLoopTest::SetUp();
    for (const char* name : {"adir", "bdir", ".hidden dir", "a directory with a long name"}) {
      leftDir.makeDir(name);
    }
    for (int i = 0; i < 70; ++i) leftDir.write("file" + std::to_string(100 + i), "12345");
    leftDir.write("long name that fits nowhere at all, not even in wide panels.text", "");
    leftDir.write("adir/inner", "");
    for (int i = 0; i < 5; ++i) rightDir.write("other" + std::to_string(i), "");
    openPanels();
  }

  // Runs what is queued. Then the cursor's bar is off: nothing may be left that a redraw changes.
  // The rows that differ; an INFO panel's change with the machine.
  std::string differences() {
    std::string result;
    const HelpProbe help([&](HelpTopic) {
      const std::vector<Cell> before = panelCells();
      for (Panel& panel : panelPair().side) drawPanel(panel);
      const std::vector<Cell> after = panelCells();
      for (size_t i = 0; i < before.size(); ++i) {
        if (before[i].ch == after[i].ch && before[i].attr == after[i].attr) continue;
        const int y = static_cast<int>(i) / panelPair().screenColumns;
        const int x = static_cast<int>(i) % panelPair().screenColumns;
        result += "(" + std::to_string(x) + "," + std::to_string(y) + ") ";
        if (result.size() > 100) break;
      }
      loop.leaving = true;
    });
    queueKey(Key::F1);
    loop.leaving = false;
    runMainLoop(loop);
    return result;
  }

 private:
  std::vector<Cell> panelCells() const {
    std::vector<Cell> cells;
    for (int y = 0; y < panelPair().panelRows + 4; ++y) {
      for (int x = 0; x < panelPair().screenColumns; ++x) {
        const Panel& panel = panelPair().side[x / panelPair().panelWidth()];
        const bool changing = panel.type == PanelType::Info && y > 1 && y < 12;
        cells.push_back(changing ? Cell{} : cellAt(x, y));
      }
    }
    return cells;
  }
};

TEST_F(ScreenTruth, AScrolledNameIsWholeAgainWhenTheCursorHasLeftIt) {
  queueKey(Key::End);
  for (int i = 0; i < 5; ++i) queueKey(Key::Right);
  screenAfterQueued();
  drawCursor(0, CursorBar::On);
  EXPECT_TRUE(shows("║name th►.text")) << screenText();
  queueKey(Key::Up);
  EXPECT_EQ(differences(), "");
  EXPECT_TRUE(shows("║long na►.text")) << screenText();
}

TEST_F(ScreenTruth, AltArrowsTakeTheBarAlong) {
  changeTag(left(), *entryNamed(left(), "file102"), TagMode::Tag);
  queueKey(Key::AltDown);
  EXPECT_EQ(differences(), "");
  EXPECT_EQ(currentName(left()), "file102");
  queueKey(Key::Down);
  queueKey(Key::AltUp);
  EXPECT_EQ(differences(), "");
  EXPECT_EQ(currentName(left()), "file102");
}

TEST_F(ScreenTruth, AStepOfTheSearchTakesTheBarAlong) {
  GlobalOptions::StickyAlt = false;
  queueKey(Key::alt('f'), Alt);
  queueKey(Key::AltDown);
  EXPECT_EQ(differences(), "");
  EXPECT_EQ(currentName(left()), "file101");
}

// Whoever uses the program without a plan.
class ScreenTruthWalk : public ScreenTruth, public testing::WithParamInterface<unsigned> {
 protected:
  // The cursor stands in the list and, where that shows, on the page; the counters of tags are
  // those of the list.
  static void expectSound(const Panel& panel) {
    int tags = 0;
    int64_t size = 0;
    for (const entry* item : panel.entries) {
      if (!item->tagged) continue;
      ++tags;
      size += static_cast<int64_t>(item->size);
    }
    EXPECT_EQ(panel.taggedCount, tags);
    EXPECT_EQ(panel.taggedSize, size);
    EXPECT_GE(panel.top, 0);
    EXPECT_GE(panel.cursor, 0);
    if (!panel.showing || !panel.isFiles()) return;  // comes into the list when it is read
    EXPECT_LT(panel.cursor, panel.pageSize);
    EXPECT_LT(panel.currentIndex(), std::max(panel.count(), 1));
  }
  // What lies above the test's directories is not the same on each machine.
  bool wouldLeave() const {
    const Panel& panel = panelPair().active();
    const std::string path = bytes(panel.path);
    return currentName(panel) == ".." && (path == leftDir.path() || path == rightDir.path());
  }
};

// clang-format off
constexpr Key::Code WalkKeys[] = {
    Key::Up, Key::Down, Key::Left, Key::Right, Key::PageUp, Key::PageDown, Key::Home, Key::End,
    Key::Insert, Key::AltUp, Key::AltDown, Key::GrayStar, Key::CtrlGrayPlus, Key::Tab,
    Key::CtrlGrayMinus, Key::Enter, Key::AltBackspace, Key::Esc, Key::AltGrayPlus, Key::CtrlF1,
    Key::CtrlF2, Key::CtrlF3, Key::CtrlF8, Key::CtrlF6, Key::ctrl('l'), Key::ctrl('o'),
    Key::ctrl('p'), Key::ctrl('u'), Key::ctrl('h'), Key::ctrl('r'), Key::alt('f'), Key::alt('o'), Key::alt('a'),
    Key::alt('l'), Key::ShiftAltF1, Key::ShiftAltF2, Key::ShiftAltF3, Key::ShiftAltF4, Key::ShiftAltF5,
    MenuCode::ThousandSeparator, MenuCode::FullScreen, Key::CtrlUnderscore};
// clang-format on

TEST_P(ScreenTruthWalk, AnyKeysAndClicksLeaveATrueScreen) {
  constexpr int steps = 400;
  GlobalOptions::StickyAlt = GetParam() % 2 == 0;
  std::mt19937 random(GetParam());
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  std::string done;
  for (int step = 0; step < steps; ++step) {
    const int kind = below(6);
    if (kind == 0) {
      const int x = below(80), y = 1 + below(19), button = 1 + below(2);
      queueMouse(EventKind::Press, x, y, button);
      if (below(2) != 0) queueMouse(EventKind::Drag, x, 1 + below(19), button);
      queueMouse(EventKind::Release, x, y, button);
      done += " click" + std::to_string(button) + "@" + std::to_string(x) + "," + std::to_string(y);
    } else if (kind == 1 && below(3) == 0) {
      queueWheel(below(2) != 0 ? 1 : -1);
      done += " wheel";
    } else {
      const Key::Code key = WalkKeys[below(static_cast<int>(std::size(WalkKeys)))];
      if (key == Key::Enter && wouldLeave()) continue;
      queueKey(key, key >= Key::alt('e') && key <= Key::alt('l') ? Alt : 0);
      char text[16];
      snprintf(text, sizeof text, " %X", static_cast<unsigned>(key.value()));
      done += text;
    }
    const std::string wrong = differences();
    for (const Panel& panel : panelPair().side) expectSound(panel);
    ASSERT_EQ(HasFailure() ? "unsound" : wrong, "")
        << "step " << step << " after"
        << done.substr(done.size() - std::min<size_t>(done.size(), 80));
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ScreenTruthWalk, testing::Range(1u, 5u));

}  // namespace
