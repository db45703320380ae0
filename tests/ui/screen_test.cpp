#include "ui/screen.h"

#include <thread>

#include "support/end_request.h"
#include "ui/alert.h"
#include "ui/ui_test.h"
#include "ui/win.h"

namespace {

class ScreenTest : public UiTest {};

constexpr int LeftByUser = 7;

// A page of text over the whole screen: Up and Down scroll it, Esc asks whether it may go, and
// Cancel means to stay.
class Page : public Screen {
 public:
  Page() : window_(0, 0, console->columns() - 1, console->rows() - 1, 0x1F, NoFrame) {}

  int wait = NoLimit;
  int top = 0;
  int draws = 0;
  int timeOuts = 0;
  int shift = 0;
  MouseMessage lastMouse;
  bool runHelp = false;
  std::vector<std::string> events;

 protected:
  void draw() override {
    ++draws;
    for (int row = 0; row < window_.innerHeight(); ++row) {
      window_.put(0, row, (L"line " + Westring(std::to_string(top + row).c_str())).data());
      window_.clearToEndOfLine();
    }
  }
  void onKey(Key::Code key, int) override {
    if (key == Key::Down) ++top;
    if (key == Key::F1 && runHelp) {
      Page help;
      help.run();
      for (const std::string& event : help.events) events.push_back("help " + event);
    }
    if (key == Key::Esc && alert("Leave?", L"", AlertButtons::OkCancel) == Answer::Yes) {
      leave(LeftByUser);
    }
  }
  void onMouse(const MouseMessage& mouse) override { lastMouse = mouse; }
  void onShift(int shiftState) override { shift = shiftState; }
  void onTimeOut() override {
    if (++timeOuts == 2) leave();
  }
  void onEnd() override { events.push_back("saved"); }
  int waitMs() const override { return wait; }

 private:
  Win window_;
};

TEST_F(ScreenTest, DrawsBeforeEachWaitAndTakesKeysUntilItIsLeft) {
  const std::vector<Cell> before = screen();
  {
    Page page;
    std::wstring seen;
    std::thread user([&] {
      queueKeys({Key::Down, Key::Down});
      waitUntil([&] { return (seen = textAt(0, 0, 7)) == L"line 2 "; });
      queueKeys({Key::Esc, Key::Enter});
    });
    EXPECT_EQ(page.run(), LeftByUser);
    user.join();
    EXPECT_EQ(seen, L"line 2 ");
    EXPECT_EQ(page.draws, 3) << "at the start and after each key that left it running";
  }
  EXPECT_EQ(screen(), before);
}

TEST_F(ScreenTest, TheMouseAndTheModifiersComeToTheirOwnPlaces) {
  Page page;
  queueMouse(EventKind::Press, 3, 4, 2);
  queueKey(Key::ShiftChanged, ShiftState::Ctrl);
  queueKeys({Key::Esc, Key::Enter});
  page.run();
  EXPECT_EQ(page.lastMouse.kind, MouseKind::RightPress);
  EXPECT_EQ(page.lastMouse.x, 3);
  EXPECT_EQ(page.shift, ShiftState::Ctrl);
}

TEST_F(ScreenTest, AWaitMayHaveALimit) {
  Page page;
  page.wait = 1;
  EXPECT_EQ(page.run(), 0);
  EXPECT_EQ(page.timeOuts, 2);
}

TEST_F(ScreenTest, EscMayMeanToStay) {
  Page page;
  queueKeys({Key::Esc, Key::Esc, Key::Down, Key::Esc, Key::Enter});
  EXPECT_EQ(page.run(), LeftByUser);
  EXPECT_EQ(page.top, 1);
}

TEST_F(ScreenTest, TheEndOfTheProgramLeavesAlsoWhereEscMeansToStay) {
  Page page;
  EndWatcher watcher([] { console->events().wake(); });
  std::thread user([&] {
    queueKey(Key::Esc);
    waitUntil([] { return textAt(0, 0, 80 * 25).find(L"Leave?") != std::wstring::npos; });
    requestEnd();
  });
  EXPECT_EQ(page.run(), Screen::ProgramEnds);
  user.join();
  forgetEndRequest();
  EXPECT_EQ(page.events, std::vector<std::string>{"saved"});
}

TEST_F(ScreenTest, EachOfNestedScreensPutsItsWorkAsideFromTheInside) {
  Page page;
  page.runHelp = true;
  EndWatcher watcher([] { console->events().wake(); });
  std::thread user([&] {
    queueKeys({Key::Down, Key::F1});
    waitUntil([] { return textAt(0, 0, 7) == L"line 0 " && console->eventCount() == 0; });
    requestEnd();
  });
  EXPECT_EQ(page.run(), Screen::ProgramEnds);
  user.join();
  forgetEndRequest();
  EXPECT_EQ(page.events, (std::vector<std::string>{"help saved", "saved"}));
}

}  // namespace
