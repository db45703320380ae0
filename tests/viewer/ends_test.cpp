// Help, repainting, and what ends a view or a search early.

#include <filesystem>

#include "foundation/break_state.h"
#include "options/colours.h"
#include "support/end_request.h"
#include "support/fault_hook.h"
#include "ui/help_window.h"
#include "viewer/read_hook.h"
#include "viewer/viewer_test.h"

namespace {

class ViewerEnds : public ViewerTest {
 protected:
  // A file of this many bytes that takes no room.
  void makeSparse(int64_t size) const {
    dir.write("file", "text\n");
    std::filesystem::resize_file(dir.path("file"), static_cast<uintmax_t>(size));
  }
  // What is in the first row after a search that goes on until `user`, beside it, ends it.
  template <class User>
  std::string topAfterLongSearch(User user) {
    makeSparse(int64_t{1} << 40);
    searchValues().text = L"nowhere";
    std::thread beside([&] {
      user();
      queueKey(Key::F10);
    });
    queueKey(Key::ShiftF7);
    Recorder viewer(dir.wide("file"));
    viewer.view(AnyPosition);
    beside.join();
    return viewer.shots.back().row(1);
  }
};

TEST_F(ViewerEnds, F1ShowsTheTopicOfTheViewer) {
  struct Help : HelpWindow {
    void show(HelpTopic topic) override { topics.push_back(topic); }
    std::vector<HelpTopic> topics;
  } help;
  helpWindow().connect(help);
  view("text", {Key::F1});
  helpWindow().disconnect();
  EXPECT_EQ(help.topics, std::vector<HelpTopic>{HelpTopic::Viewer});
}

TEST_F(ViewerEnds, CtrlLPaintsEveryCellAgain) {
  dir.write("file", "text");
  struct Counting : Recorder {
    using Recorder::Recorder;
    void draw() override {
      Recorder::draw();
      console->completePainting();
      paints.push_back(console->paintCount());
    }
    std::vector<unsigned long> paints;
  };
  for (Key::Code key : {Key::Code('x'), Key::ctrl('l'), Key::F10}) queueKey(key);
  Counting viewer(dir.wide("file"));
  viewer.view(AnyPosition);
  ASSERT_EQ(viewer.paints.size(), 3u);
  EXPECT_EQ(viewer.paints[1], viewer.paints[0]) << "a key that means nothing";
  EXPECT_GT(viewer.paints[2], viewer.paints[1]);
}

TEST_F(ViewerEnds, TheEndOfTheProgramLeavesTheViewerAndItsPlaceIsKept) {
  dir.write("file", numbered(1000));
  EndWatcher watcher([] { console->events().wake(); });
  std::thread user([&] {
    queueKey(Key::PageDown);
    EXPECT_TRUE(waitUntil([&] { return rowText(1).starts_with("23 "); }));
    requestEnd();
  });
  Recorder viewer(dir.wide("file"));
  EXPECT_EQ(viewer.view(AnyPosition), Key::Esc);
  user.join();
  forgetEndRequest();
  EXPECT_GT(fileStatusStore().find(dir.wide("file"))->viewerPosition, 0);
}

TEST_F(ViewerEnds, TheEndOfTheProgramLeavesFollowModeToo) {
  dir.write("file", "text");
  queueKey(Key::alt('f'));
  EndWatcher watcher([] { console->events().wake(); });
  std::thread user([&] {
    EXPECT_TRUE(waitUntil([&] { return rowText(24).find("Follow Mode") != std::string::npos; }));
    requestEnd();
  });
  Recorder viewer(dir.wide("file"));
  EXPECT_EQ(viewer.view(AnyPosition), Key::Esc);
  user.join();
  forgetEndRequest();
}

TEST_F(ViewerEnds, EscStopsASearchWithoutAMessage) {
  makeSparse(int64_t{1} << 40);
  searchValues().text = L"nowhere";
  const auto shots = viewAgain({Key::ShiftF7, Key::Esc});
  ASSERT_EQ(shots.size(), 2u) << "Esc was taken by the search, F10 left";
  EXPECT_EQ(shots[1].row(1), "text");
}

TEST_F(ViewerEnds, BreakStopsASearchToo) {
  const std::string top = topAfterLongSearch([] {
    EXPECT_TRUE(waitUntil([] { return breakState == BreakState::Armed; }));
    requestBreak();
    EXPECT_TRUE(waitUntil([] { return breakState == BreakState::Idle; }));
  });
  EXPECT_EQ(top, "text");
  EXPECT_EQ(breakState, BreakState::Idle);
}

TEST_F(ViewerEnds, EscStopsTheCountForALineAndTheViewStays) {
  makeSparse(int64_t{1} << 40);
  queueKey(Key::alt('l'));
  queueText("99999999");
  const auto shots = viewAgain({Key::Enter, Key::Esc});
  ASSERT_EQ(shots.size(), 2u);
  EXPECT_EQ(shots[1].row(1), "text");
}

TEST_F(ViewerEnds, ALongSearchSaysSo) {
  const std::string top = topAfterLongSearch([this] {
    EXPECT_TRUE(waitUntil([&] { return screenText().find("Searching...") != std::string::npos; }));
    queueKey(Key::Esc);
  });
  EXPECT_EQ(top, "text");
}

TEST_F(ViewerEnds, RowsThatCannotBeReadShowWhy) {
  dir.write("file", numbered(100));
  ReadHook hook(1, EIO);
  const auto shots = viewAgain({Key::F4});
  for (const Shot& shot : shots) {
    EXPECT_EQ(shot.row(1), "Input/output error (5)");
    EXPECT_EQ(shot.at(0, 1).attr, colourOf(Colour::Errors));
  }
}

TEST_F(ViewerEnds, WhicheverCallOfTheSystemFailsTheViewerCanBeUsedAndLeft) {
  dir.write("file", numbered(1000));
  setenv("TD_SHARE", dir.path().c_str(), 1);
  dir.write("syntax.ini", "[Test:*]\nnumber:white\n");
  int failed = 0;
  for (int number = 1;; ++number) {
    for (Key::Code key : {Key::End, Key::F4, Key::Home, Key::F4, Key::Esc, Key::Esc}) queueKey(key);
    bool hit = false;
    {
      FaultHook hook(number, EIO);
      Recorder viewer(dir.wide("file"));
      if (viewer.openResult() == 0) viewer.view(AnyPosition);
      EXPECT_TRUE(viewer.openResult() == 0 || viewer.openResult() == EIO) << hook.hitCall();
      hit = hook.hit();
    }
    drainEvents();
    fileStatusStore().clear();
    if (!hit) break;
    ++failed;
    ASSERT_LT(number, 1000);
  }
  EXPECT_GT(failed, 5);
}

}  // namespace
