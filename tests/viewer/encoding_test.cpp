// What the keys for encodings show.

#include "editor/text/code_page_list.h"
#include "options/options.h"
#include "viewer/viewer_test.h"

namespace {

class ViewerEncoding : public ViewerTest {
 protected:
  void SetUp() override {
    ViewerTest::SetUp();
    codePageList().restart();
  }
  static std::string format(const Shot& shot) {
    std::string text = shot.text(65, 0, 8);
    return text.substr(0, text.find(' '));
  }
};

TEST_F(ViewerEncoding, EachFormatIsFoundAndNamed) {
  EXPECT_EQ(format(last("plain\n")), "UTF-8");
  EXPECT_EQ(format(last("\xC3\xA4\n")), "UTF-8");
  EXPECT_EQ(format(last("\xE4\n")), "CP850");
  const Shot wide = last(std::string("\xFF\xFEh\0i\0\n\0y\0", 10));
  EXPECT_EQ(format(wide), "UTF-16");
  EXPECT_EQ(wide.page(), (std::vector<std::string>{"hi", "y"}));
  EXPECT_EQ(format(last(std::string("\0\0\xFE\xFF\0\0\0h", 8))), "UTF-32");
}

TEST_F(ViewerEncoding, AltTStepsThroughThePagesOfACodePageFileOnly) {
  GlobalOptions::TranslateCP = "437,1252";
  const auto shots = view("\xE4\n", {Key::alt('t'), Key::alt('t'), Key::alt('t'), Key::alt('t')});
  const char* names[] = {"CP850", "CP437", "CP1252", "CP850", "CP437"};
  const char* texts[] = {"\u00F5", "\u03A3", "\u00E4", "\u00F5", "\u03A3"};
  for (size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(format(shots[i]), names[i]);
    EXPECT_EQ(shots[i].row(1), texts[i]);
  }
  EXPECT_EQ(format(last("\xC3\xA4\n", {Key::alt('t')})), "UTF-8");
}

TEST_F(ViewerEncoding, AltCAsksForTheListAndTakesItsFirstPage) {
  GlobalOptions::TranslateCP = "437";
  queueKey(Key::alt('c'));
  queueText("1252,437");
  queueKey(Key::Enter);
  queueKey(Key::alt('t'));
  const auto shots = view("\xC3\xA4\n");
  EXPECT_EQ(format(shots[1]), "CP1252");
  EXPECT_EQ(shots[1].row(1), "\u00C3\u00A4");
  EXPECT_EQ(format(shots[2]), "CP437");
  EXPECT_STREQ(GlobalOptions::TranslateCP.data(), "1252,437");
}

TEST_F(ViewerEncoding, EscInTheDialogForTheListKeepsAll) {
  GlobalOptions::TranslateCP = "437";
  queueKey(Key::alt('c'));
  queueText("1252");
  queueKey(Key::Esc);
  EXPECT_EQ(format(last("\xC3\xA4\n")), "UTF-8");
  EXPECT_STREQ(GlobalOptions::TranslateCP.data(), "437");
}

TEST_F(ViewerEncoding, AnUnknownPageIsToldAndIsTheDefaultOne) {
  GlobalOptions::TranslateCP = "99999,437";
  dir.write("file", "\xE4\n");
  std::string shown;
  std::thread user([&] {
    waitUntil([&] { return (shown = screenText()).find("code page") != std::string::npos; });
    for (Key::Code key : {Key::Enter, Key::alt('t'), Key::F10}) queueKey(key);
  });
  queueKey(Key::alt('t'));
  Recorder viewer(dir.wide("file"));
  viewer.view(AnyPosition);
  user.join();
  EXPECT_NE(shown.find("Invalid code page"), std::string::npos);
  EXPECT_EQ(format(viewer.shots[1]), "CP850");
  EXPECT_EQ(format(viewer.shots[2]), "CP437") << "the next use goes on";
}

TEST_F(ViewerEncoding, AltESelectsAFormatAndTheTopStays) {
  queueKey(Key::PageDown);
  queueKey(Key::alt('e'));
  queueKey(Key::alt('c'));  // Code Page
  queueKey(Key::Enter);
  const auto shots = view(numbered(100) + "\xC3\xA4\n" + numbered(10));
  EXPECT_EQ(format(shots[1]), "UTF-8");
  EXPECT_EQ(format(shots[2]), "CP850");
  EXPECT_EQ(shots[2].row(1), "23");
}

TEST_F(ViewerEncoding, AFormatWithWiderUnitsBeginsAtAWholeUnit) {
  queueKey(Key::Down);
  queueKey(Key::alt('e'));
  queueKey(Key::alt('6'));  // UTF-16
  queueKey(Key::Enter);
  const auto shots = view("a\n" + std::string("b\0\n\0c\0", 6));
  EXPECT_EQ(format(shots[2]), "UTF-16");
}

TEST_F(ViewerEncoding, BytesThatAreNoCharactersShowAsLatin1) {
  const Shot shot = last("\xC3\xA4 \xFC!\n" + std::string(40000, ' ') + "\n", {});
  EXPECT_EQ(format(shot), "CP850");
  std::string late = std::string(40000, 'x') + "\n\xFC\n";
  GlobalOptions::ViewerWrap = false;
  EXPECT_EQ(last(late, {Key::End}).row(2), "\u00FC") << "in a UTF-8 file, late";
}

TEST_F(ViewerEncoding, ANulIsABlankAndControlCharactersHaveTheirPictures) {
  const Shot shot =
      last(std::string("a\0b\x07\x08"
                       "c\x01\x1B\x7F\n",
                       10));
  EXPECT_EQ(shot.row(1), "a b  c\u263A\u2190\u2302");
}

}  // namespace
