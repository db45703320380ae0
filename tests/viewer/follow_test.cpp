// Follow mode: a file that grows, is cut off, or replaced.

#include <filesystem>
#include <fstream>

#include "options/colours.h"
#include "viewer/viewer_test.h"

namespace {

class ViewerFollow : public ViewerTest {
 protected:
  void append(const std::string& text) const {
    std::ofstream(dir.path("file"), std::ios::binary | std::ios::app) << text;
  }
  bool rowShows(int y, const std::string& text) const {
    const std::string row = rowText(y);
    return row.substr(0, row.find(' ')) == text;
  }
  void expectRow(int y, const std::string& text) const {
    EXPECT_TRUE(waitUntil([&] { return rowShows(y, text); })) << text << "\n" << screenText();
  }
  void expectBottom(const std::string& text) const {
    EXPECT_TRUE(waitUntil([&] { return rowText(24).find(text) != std::string::npos; }))
        << rowText(24);
  }
  static constexpr char On[] = "Follow Mode ON - ESC to cancel";

  // What the user does while the file is viewed.
  void viewBeside(const std::function<void()>& user) {
    std::thread thread([&] {
      user();
      queueKey(Key::F10);
    });
    Recorder viewer(dir.wide("file"));
    viewer.view(AnyPosition);
    thread.join();
    shots = viewer.shots;
  }

  // Follow mode, and what happens after each of its looks at the file, counted from 1.
  void afterEachLook(const std::function<void(int look)>& then) {
    struct Looking : Recorder {
      Looking(const Westring& path, const std::function<void(int)>& next)
          : Recorder(path), then(next) {}
      void onTimeOut() override {
        Recorder::onTimeOut();
        then(++looks);
      }
      const std::function<void(int)>& then;
      int looks = 0;
    };
    queueKey(Key::alt('f'));
    Looking viewer(dir.wide("file"), then);
    viewer.view(AnyPosition);
    shots = viewer.shots;
  }

  std::vector<Shot> shots;
};

TEST_F(ViewerFollow, AWindowOverTheKeyBarTellsOfIt) {
  const auto pictures = view(numbered(5), {Key::alt('f'), Key::alt('f'), Key::Esc});
  const std::string row = pictures[1].text(0, 24, 80);
  EXPECT_EQ(row, std::string(25, ' ') + On + std::string(25, ' '));
  EXPECT_EQ(pictures[1].at(0, 24).attr, colourOf(Colour::Messages));
  EXPECT_EQ(pictures[2].text(0, 24, 80), row) << "not for a second time";
  EXPECT_EQ(pictures[3].label(10), "10Quit") << "Esc leaves follow mode, not the viewer";
}

TEST_F(ViewerFollow, TheKeyBarChangesUnderTheWindow) {
  const auto pictures = view("text", {Key::alt('f'), Key::F4, Key::Esc});
  EXPECT_NE(pictures[2].row(24).find(On), std::string::npos);
  EXPECT_EQ(pictures[3].label(4), "4ASCII");
}

TEST_F(ViewerFollow, TheEndIsShownAndWhatComesBehindIt) {
  dir.write("file", numbered(100));
  viewBeside([&] {
    queueKey(Key::alt('f'));
    expectRow(23, "100");
    append("new\n");
    expectRow(23, "new");
    append("newer\n");
    expectRow(23, "newer");
    queueKey(Key::Esc);
  });
}

TEST_F(ViewerFollow, AFileThatFitsOnTheScreenIsFollowedToo) {
  dir.write("file", "");
  viewBeside([&] {
    queueKey(Key::alt('f'));
    expectBottom(On);
    append("1\n");
    expectRow(1, "1");
    append(numbered(50));
    expectRow(23, "50");
  });
}

TEST_F(ViewerFollow, TheUserMayLookAroundWhileNothingComes) {
  dir.write("file", numbered(100));
  viewBeside([&] {
    queueKey(Key::alt('f'));
    expectRow(23, "100");
    queueKey(Key::Home);
    expectRow(1, "1");
    append("new\n");
    expectRow(23, "new");
  });
}

TEST_F(ViewerFollow, OfAFileCutOffTheOldPlaceShowsUntilAKeyComes) {
  dir.write("file", numbered(1000));
  afterEachLook([&](int look) {
    if (look == 1) std::filesystem::resize_file(dir.path("file"), 20);
    if (look != 3) return;
    EXPECT_TRUE(rowShows(23, "1000"));
    queueKey(Key::Up);
    queueKey(Key::F10);
  });
  EXPECT_EQ(shots.back().page(),
            (std::vector<std::string>{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}));
}

TEST_F(ViewerFollow, AfterALogWasCutOffItsNewEndIsFollowed) {
  dir.write("file", numbered(1000));
  viewBeside([&] {
    queueKey(Key::alt('f'));
    expectRow(23, "1000");
    std::filesystem::resize_file(dir.path("file"), 0);
    append("begin\n");
    // The look may have come between the two.
    EXPECT_TRUE(waitUntil([&] {
      if (rowShows(1, "begin") || rowShows(23, "more")) return true;
      append("more\n");
      return false;
    })) << screenText();
  });
}

TEST_F(ViewerFollow, TheWindowTellsThatTheFileWasReplaced) {
  dir.write("file", numbered(5));
  viewBeside([&] {
    queueKey(Key::alt('f'));
    expectBottom(On);
    dir.write("other", "other\n");
    std::filesystem::rename(dir.path("other"), dir.path("file"));
    expectBottom("File was replaced - ESC to cancel");
    queueKey(Key::Esc);
    expectBottom("10Quit");
    EXPECT_TRUE(rowShows(1, "1")) << "the file that was opened";
  });
}

TEST_F(ViewerFollow, NothingIsDrawnWhileNothingComes) {
  dir.write("file", numbered(100));
  unsigned long paints = 0;
  afterEachLook([&](int look) {
    if (look == 2) paints = console->paintCount();  // what the first one brought is drawn
    if (look != 5) return;
    EXPECT_EQ(console->paintCount(), paints);
    queueKey(Key::F10);
  });
}

}  // namespace
