#include <random>
#include <vector>

#include "editor/editor_test.h"
#include "editor/window/editor_painter.h"
#include "support/temp_dir.h"

namespace {

class EditorPicture : public EditorTest {
 protected:
  std::string status() const { return rowText(0); }
};

TEST_F(EditorPicture, TheStatusLineTellsNamePlaceFlagsAndCharacter) {
  open("ab\ncd");
  EXPECT_EQ(status(),
            "Edit: /home/me/notes               U    Line 1     Col 1     97 x61     UTF-8   ");
  EXPECT_EQ(attrs(-1, 0, 2), "30 30");
  EXPECT_EQ(attrAt(79, 0), Status);
  press({Key::Down, Key::End});
  EXPECT_EQ(status(),
            "Edit: /home/me/notes               U    Line 2     Col 3    EOL         UTF-8   ");
}

TEST_F(EditorPicture, TheFlagsStandInTheirOrder) {
  GlobalOptions::AutoIndent = true;
  open("ab");
  type("x");
  press({Key::ctrl('q')});
  EXPECT_EQ(status().substr(34, 6), " UI*\" ");
  press({Key::Left, Key::alt('i'), Key::alt('u')});
  EXPECT_EQ(status().substr(34, 6), "   *  ");
}

TEST_F(EditorPicture, ALongNameIsCutInTheMiddle) {
  open("", L"/home/someone/projects/commander/source/main.cpp");
  EXPECT_EQ(status().substr(0, 34), "Edit: /home/...der/source/main.cpp");
}

TEST_F(EditorPicture, TheColumnIsThatOnTheScreen) {
  open("\tx");
  press({Key::Right});
  EXPECT_EQ(status().substr(51, 8), "Col 9   ");
}

TEST_F(EditorPicture, TheNumberOfARawByteIsItsOwn) {
  open("\xFE");
  EXPECT_EQ(status().substr(60, 11), "254 xFE    ");
  EXPECT_EQ(row(0), "þ") << "and it shows as that character";
}

TEST_F(EditorPicture, InACodePageTheNumberIsThatOfThePage) {
  open("\x84", L"notes", {TextFormat::CodePage, 850});
  EXPECT_EQ(row(0), "ä");
  EXPECT_EQ(status().substr(60, 18), "132 x84     CP850 ");
}

TEST_F(EditorPicture, LongNumbersAreCutAtTheEdge) {
  std::string text(10'000'000, '\n');
  open(text);
  press({Key::CtrlPageDown});
  EXPECT_EQ(status().substr(40, 22), "Line 10000001 Col 1   ");
  EXPECT_EQ(status().size(), 80u);
}

TEST_F(EditorPicture, TheKeyBarShowsTheKeysOfTheEditor) {
  open("");
  EXPECT_EQ(rowText(24),
            "1Help   2Save   3SaveAs 4Cut    5Copy   6Paste  7Search 8Rplace         10Quit  ");
}

class EditorWide : public EditorPicture {
 protected:
  void SetUp() override {
    EditorPicture::SetUp();
    console->setGeometry(132, 50, Estring(), 0);
  }
  void TearDown() override {
    EditorPicture::TearDown();
    console->setGeometry(80, 25, Estring(), 0);
  }
};

TEST_F(EditorWide, ALargerScreenShowsMoreOfTheNameAndOfTheText) {
  const std::string path = "/home/" + std::string(60, 'd') + "/file.cpp";
  open(numbered(200), fromUtf8(path.c_str()).data());
  EXPECT_EQ(status().substr(0, 86), "Edit: " + path + std::string(5, ' '));
  EXPECT_EQ(status().substr(86), " U    Line 1     Col 1     49 x31     UTF-8   ");
  EXPECT_EQ(row(47), "48");
  EXPECT_EQ(rowText(49).substr(0, 20), "1Help        2Save  ");
  press({Key::PageDown});
  EXPECT_EQ(row(0), "47") << "46 lines further";
  press({Key::CtrlPageDown});
  EXPECT_EQ(row(47), "200");
}

TEST_F(EditorPicture, TextAndPaddingHaveTheColourOfTheFileViewer) {
  open("ab");
  EXPECT_EQ(attrs(0, 0, 4), "1B 1B 1B 1B");
  EXPECT_EQ(attrAt(79, 1), Plain);
  EXPECT_EQ(attrAt(40, 23), Plain) << "below the text, too";
}

TEST_F(EditorPicture, ControlCharactersHaveTheirPictures) {
  open("\x01\x07\x08\x1b|\x7f");
  EXPECT_EQ(row(0), "☺  ←|⌂");
}

TEST_F(EditorPicture, TabsReachToTheNextStop) {
  open("\ta\tb\nabcdefgh\tc");
  EXPECT_EQ(row(0), "        a       b");
  EXPECT_EQ(row(1), "abcdefgh        c");
  press({Key::alt('4')});
  EXPECT_EQ(GlobalOptions::TabWidth, 4);
  EXPECT_EQ(row(0), "    a   b");
  press({Key::alt('1')});
  EXPECT_EQ(row(0), " a b");
  press({Key::alt('8')});
  EXPECT_EQ(row(0), "        a       b");
}

TEST_F(EditorPicture, AViewMovedSidewaysMayBeginInsideATab) {
  open("aaaa\tb" + std::string(80, 'c'));
  press({Key::End});
  EXPECT_EQ(editor().view.left, 12);
  EXPECT_EQ(row(0).substr(0, 4), "cccc");
  press({Key::Home, Key::End, Key::Left, Key::Left, Key::Left});
  EXPECT_EQ(row(0).size(), 77u);
}

TEST_F(EditorPicture, CtrlLPaintsEverythingAnew) {
  open("abc");
  console->fillCell(0, 0, 80 * 25, Cell{L'#', 7});
  press({Key::ctrl('l')});
  EXPECT_EQ(row(0), "abc");
  EXPECT_EQ(rowText(24).substr(0, 5), "1Help");
}

TEST_F(EditorPicture, EditedRowsShowWhatTheTextIs) {
  open(numbered(40));
  press({Key::Enter});
  EXPECT_EQ(row(0), "");
  EXPECT_EQ(row(1), "1");
  EXPECT_EQ(row(22), "22");
  press({Key::Backspace});
  EXPECT_EQ(row(0), "1");
  EXPECT_EQ(row(22), "23");
}

// ---- colours

class EditorColours : public EditorPicture {
 protected:
  void SetUp() override {
    EditorPicture::SetUp();
    setenv("HOME", home_.path().c_str(), 1);
    setenv("TD_SHARE", home_.path().c_str(), 1);
    home_.makeDir(".tdx");
    home_.write(".tdx/syntax.ini",
                "[Colour Classes]\n"
                "Comment: bright red\n"
                "Word: bright green\n"
                "[Test:*.test]\n"
                "words:Word:if then\n"
                "blockcomment:Comment:/*:*/\n");
  }
  void openColoured(const std::string& text) {
    open(text, L"x.test");
    editor().painter().syntax().load(editor().file.name, editor().document);
    editor().redraw();
    runQueued();
  }
  static constexpr unsigned char Comment = 0x1C, Word = 0x1A;

 private:
  TempDir home_;
};

TEST_F(EditorColours, TheRowsHaveTheColoursOfTheFilesLanguage) {
  openColoured("x if /* a\nb */ if");
  EXPECT_EQ(attrs(0, 0, 9), "1B 1B 1A 1A 1B 1C 1C 1C 1C");
  EXPECT_EQ(attrs(1, 0, 7), "1C 1C 1C 1C 1B 1A 1A");
}

TEST_F(EditorColours, AnEditRecoloursTheRowsBelow) {
  openColoured("a\nif\n*/ if");
  EXPECT_EQ(attrAt(0, 2), Word);
  type("/*");
  EXPECT_EQ(attrAt(0, 2), Comment);
  EXPECT_EQ(attrAt(3, 3), Word);
  press({Key::Backspace});
  EXPECT_EQ(attrAt(0, 2), Word);
}

TEST_F(EditorColours, ScrollingKeepsWhatIsOpenAboveTheView) {
  openColoured("/*\n" + numbered(60));
  for (int i = 0; i < 25; ++i) {
    press({Key::CtrlDown});
    ASSERT_EQ(attrAt(0, 1), Comment) << i;
  }
  for (int i = 0; i < 25; ++i) {
    press({Key::CtrlUp});
    ASSERT_EQ(attrAt(0, 1), Comment) << i;
  }
  press({Key::PageDown, Key::CtrlPageDown});
  EXPECT_EQ(attrAt(0, 1), Comment);
}

TEST_F(EditorColours, WhatOpenedAThousandLinesAboveTheViewIsSeenAndNotFurtherUp) {
  openColoured("/*" + std::string(3000, '\n') + "x");
  const auto commentAt = [this](int64_t line) {
    press({Key::CtrlPageUp});
    editor().scrollTo(line);
    goTo(line, 0);
    type("x");
    return attrAt(0, 1) == Comment;
  };
  EXPECT_TRUE(commentAt(1000));
  EXPECT_FALSE(commentAt(1001));
}

TEST_F(EditorColours, WhatOpenedTwoMebibytesAboveTheViewIsNotSeen) {
  const auto commentBehind = [this](size_t bytes) {
    openColoured("/*\n" + std::string(bytes, 'x') + "\nend" + std::string(50, '\n') + "end");
    press({Key::CtrlPageDown});
    editor().scrollTo(2);
    goTo(2, 0);
    return attrAt(0, 1) == Comment;
  };
  EXPECT_TRUE(commentBehind((2 << 20) - 10));
  EXPECT_FALSE(commentBehind(2 << 20));
}

TEST_F(EditorColours, AltHSwitchesTheColoursOffAndReadsThemAnew) {
  openColoured("if\n/* x");
  press({Key::alt('h')});
  EXPECT_EQ(attrAt(0, 1), Plain);
  EXPECT_EQ(attrAt(0, 2), Plain);
  press({Key::alt('h')});
  EXPECT_EQ(attrAt(0, 1), Word);
  EXPECT_EQ(attrAt(0, 2), Comment);
}

TEST_F(EditorColours, TheSelectionCoversThem) {
  openColoured("if x");
  press({{Key::ShiftRight, Shift}});
  EXPECT_EQ(attrs(0, 0, 2), "30 1A");
}

// Which rows are painted is told by each command; painting all of them must change nothing.
TEST_F(EditorColours, AfterEveryCommandTheScreenIsWhatAFullRepaintMakesOfIt) {
  const unsigned seed = std::random_device{}();
  std::mt19937 random(seed);
  const auto below = [&random](size_t count) { return random() % count; };
  std::string text;
  for (int i = 0; i < 70; ++i) {
    const char* const pieces[] = {"/*", "*/", "if ", "\t", "then", "abc ", "       ", "x"};
    for (size_t n = below(14); n > 0; --n) text += pieces[below(std::size(pieces))];
    text += "\n";
  }
  openColoured(text);
  std::vector<HeldKey> keys = {Key::Tab};
  for (const wchar_t typed : std::wstring_view(L"x*/ ")) keys.emplace_back(typed);
  for (const auto room : {moveCommands, typeCommands, deleteCommands, markCommands, undoCommands,
                          editOptionCommands}) {
    for (const EditCommand& command : room()) {
      for (const Key::Code code : command.codes) {
        keys.push_back({code, command.traits.modifiers | (code.has(Key::ShiftedKey) ? Shift : 0)});
      }
    }
  }
  for (int step = 0; step < 3000; ++step) {
    const HeldKey key = keys[below(keys.size())];
    press({key});
    const std::vector<Cell> seen = console->getCells(0, 0, 80, 25);
    editor().redraw();
    runQueued();
    ASSERT_EQ(seen, console->getCells(0, 0, 80, 25))
        << "seed " << seed << ", step " << step << ", key " << std::hex << key.key.value();
  }
}

TEST_F(EditorColours, AreThoseOfTheFirstCharactersOfALongLine) {
  openColoured(std::string(65534, ' ') + "if if\n/*");
  goTo(0, 65534);
  press({Key::End});
  const int x = static_cast<int>(65534 - editor().view.left);
  EXPECT_EQ(attrs(0, x, 5), "1A 1A 1B 1B 1B");
  EXPECT_EQ(rowText(x, 1, 5), "if if");
}

TEST_F(EditorColours, ATabBehindTheColouredPartStandsAtItsColumn) {
  open(std::string(65537, 'x') + "\tend");
  press({Key::End});
  const int x = static_cast<int>(65544 - editor().view.left);
  EXPECT_EQ(rowText(x - 8, 1, 11), "x       end");
}

}  // namespace
