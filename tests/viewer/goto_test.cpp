// Going to an offset, to a line, to what is searched.

#include "options/colours.h"
#include "options/options.h"
#include "viewer/viewer_test.h"

namespace {

class ViewerGoto : public ViewerTest {
 protected:
  static bool isMarked(const Shot& shot, int x, int y) {
    return shot.at(x, y).attr == colourOf(Colour::Highlight);
  }
  // Presses the key, types the text into the dialog that comes up, and Enter.
  void queueAnswer(Key::Code key, const std::string& text) {
    queueKey(key);
    queueText(text);
    queueKey(Key::Enter);
  }
  // The text of the box that comes up for the keys that were queued; it is left with Enter.
  std::string boxOf(const std::string& part) {
    std::string shown;
    std::thread user([&] {
      EXPECT_TRUE(waitUntil([&] { return (shown = screenText()).find(part) != std::string::npos; }))
          << part;
      queueKey(Key::Enter);
      queueKey(Key::F10);
    });
    Recorder viewer(dir.wide("file"));
    viewer.view(AnyPosition);
    user.join();
    shots = viewer.shots;
    return shown;
  }
  std::vector<Shot> shots;
};

TEST_F(ViewerGoto, AnOffsetIsShownInItsLineAsAHit) {
  queueAnswer(Key::alt('o'), "2b");  // 43: the second digit of line 18
  const Shot shot = last(numbered(1000));
  EXPECT_EQ(shot.row(1), "18");
  EXPECT_FALSE(isMarked(shot, 0, 1));
  EXPECT_TRUE(isMarked(shot, 1, 1));
}

TEST_F(ViewerGoto, InHexTheRowsBeginAtTheOffsetItself) {
  queueKey(Key::F4);
  queueAnswer(Key::alt('o'), "2Bxyz");
  const Shot shot = last(numbered(1000));
  EXPECT_EQ(shot.text(0, 1, 9), "0000002B ");
  EXPECT_TRUE(isMarked(shot, 64, 1));
  EXPECT_FALSE(isMarked(shot, 65, 1));
  EXPECT_FALSE(isMarked(shot, 9, 1));
}

TEST_F(ViewerGoto, AnOffsetBehindTheEndTellsTheSizeAndTheViewStays) {
  dir.write("file", "0123456789");
  queueAnswer(Key::alt('o'), "a");
  EXPECT_NE(boxOf("Only").find("Only 10 bytes in this file"), std::string::npos);
  EXPECT_FALSE(isMarked(shots.back(), 0, 1));
}

TEST_F(ViewerGoto, AnOffsetBeyondAllNumbersIsBehindTheEnd) {
  dir.write("file", "0123456789");
  queueAnswer(Key::alt('o'), "FFFFFFFFFFFFFFFF");
  EXPECT_NE(boxOf("Only").find("Only 10 bytes in this file"), std::string::npos);
}

TEST_F(ViewerGoto, EscInTheDialogChangesNothing) {
  queueKey(Key::alt('o'));
  queueText("2c");
  queueKey(Key::Esc);
  const Shot shot = last(numbered(1000));
  EXPECT_EQ(shot.row(1), "1");
}

}  // namespace
