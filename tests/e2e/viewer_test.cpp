// The viewer in the whole program: from the panels, alone, by mouse, with a file that changes.

#include <fstream>

#include "console/console.h"
#include "e2e/program_test.h"
#include "options/colours.h"

namespace {

class Viewer : public ProgramTest {
 protected:
  static std::string numbered(int lines) {
    std::string result;
    for (int i = 1; i <= lines; ++i) result += "line " + std::to_string(i) + ".\n";
    return result;
  }
  void expectTop(const std::string& text) {
    expectSoon("the top row " + text, [this, text] { return row(1).starts_with(text + ' '); });
  }
  void view(const std::string& name) {
    moveTo(name);
    press(XK_F3);
    expectSoon("the viewer", [this] { return row(0).starts_with("View: "); });
  }
  void expectPanels() {
    expectSoon("the panels", [this] { return row(24).find("2Menu") != std::string::npos; });
  }
};

TEST_F(Viewer, F3ShowsTheFileAndEscTheUnchangedPanels) {
  left().write("file.txt", numbered(100));
  start();
  moveTo("file.txt");
  const std::string before = screen();
  view("file.txt");
  expectTop("line 1.");
  // The X server hears of it after the cells have changed.
  expectSoon("the title of the file",
             [] { return XKeys::get().windowTitle(console->windowId()) == "TD/X: file.txt"; });
  press(XK_Next);
  expectTop("line 23.");
  press(XK_End);
  expectSoon("the end", [this] { return row(23).starts_with("line 100."); });
  press(XK_Home);
  expectTop("line 1.");
  press(XK_Escape);
  expectSoon("the panels as they were", [this, before] { return screen() == before; });
  expectSoon("the title of the panels", [this] {
    return XKeys::get().windowTitle(console->windowId()) == "TD/X: " + left().path();
  });
  EXPECT_EQ(quit(), 0);
}

TEST_F(Viewer, TheFileIsFoundWhereItWasLeftAndFilesFollowEachOther) {
  left().write("a.txt", numbered(100));
  left().write("b.txt", "the second file\n");
  start();
  view("a.txt");
  press(XK_Next);
  expectTop("line 23.");
  press(XK_Down, {XK_Alt_L});
  expectText("the second file");
  press(XK_Up, {XK_Alt_L});
  expectTop("line 23.");
  press(XK_Up, {XK_Alt_L});
  expectText("No more files");
  expectTop("line 23.");
  press(XK_Down, {XK_Alt_L});
  expectText("the second file");
  press(XK_F10);
  expectCursorOn("b.txt");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Viewer, ATextIsSearchedThereAndBack) {
  left().write("file.txt", numbered(300));
  start();
  view("file.txt");
  type("/");
  expectText("Search for:");
  type("25");
  press(XK_Return);
  expectSoon("the first hit", [this] { return row(5).starts_with("line 25."); });
  EXPECT_EQ(attrAt(5, 5), colourOf(Colour::Highlight));
  EXPECT_EQ(attrAt(7, 5), colourOf(Colour::FileViewer));
  press(XK_F7, {XK_Shift_L});
  expectSoon("the next hit", [this] { return row(5).starts_with("line 125."); });
  press(XK_F7, {XK_Alt_L});
  expectSoon("the hit before", [this] { return row(5).starts_with("line 25."); });
  press(XK_F7, {XK_Alt_L});
  expectText("String not found");
  press(XK_Return);
  expectNoText("String not found");
  press(XK_Escape);
  expectPanels();
  EXPECT_EQ(quit(), 0);
}

TEST_F(Viewer, HexWrappingLinesAndOffsets) {
  left().write("file.txt", std::string(200, 'x') + "\n" + numbered(100));
  start();
  view("file.txt");
  expectSoon("a line in three rows",
             [this] { return row(3).starts_with(std::string(40, 'x') + ' '); });
  press(XK_F2);
  expectSoon("a cut line", [this] { return row(2).starts_with("line 1."); });
  press(XK_F4);
  expectSoon("bytes", [this] { return row(1).starts_with("00000000 78 78 78 78 "); });
  press(XK_o, {XK_Alt_L});
  expectText("Offset to go to: 0x");
  type("c9");
  press(XK_Return);
  expectSoon("the offset", [this] { return row(1).starts_with("000000C9 6C 69 6E 65 "); });
  press(XK_F4);
  expectTop("line 1.");
  press(XK_l, {XK_Alt_L});
  expectText("Line to go to:");
  type("50");
  press(XK_Return);
  expectTop("line 49.");
  press(XK_F10);
  expectPanels();
  EXPECT_EQ(quit(), 0);
}

TEST_F(Viewer, ALogIsFollowedWhileItGrowsIsCutOffAndIsReplaced) {
  left().write("log", numbered(100));
  const auto append = [this](const std::string& text) {
    std::ofstream(left().path("log"), std::ios::app) << text;
  };
  start();
  view("log");
  press(XK_f, {XK_Alt_L});
  expectSoon("the end", [this] { return row(23).starts_with("line 100."); });
  expectText("Follow Mode ON - ESC to cancel");
  append("what came\n");
  expectSoon("news", [this] { return row(23).starts_with("what came "); });
  std::filesystem::resize_file(left().path("log"), 0);
  EXPECT_TRUE(waitUntil([&] {
    append("begun again\n");
    return shows("begun again");
  }));
  std::filesystem::rename(left().path("log"), left().path("log.1"));
  left().write("log", "another file\n");
  expectText("File was replaced - ESC to cancel");
  press(XK_Escape);
  expectText("7Search");
  press(XK_Escape);
  expectPanels();
  EXPECT_EQ(quit(), 0);
}

TEST_F(Viewer, TheMouseScrollsTurnsPagesAndPressesKeys) {
  left().write("file.txt", numbered(1000));
  start();
  view("file.txt");
  keys().wheel(40, 12, -1);
  expectTop("line 4.");
  keys().click(40, 3, 1);
  expectTop("line 3.");
  keys().click(40, 20, 3);
  expectTop("line 25.");
  keys().moveTo(40, 20);
  keys().buttonDown(1);
  expectTop("line 35.");
  keys().buttonUp(1);
  keys().click(27, 24, 1);
  expectSoon("bytes", [this] { return row(24).find("4ASCII") != std::string::npos; });
  keys().click(75, 24, 1);
  expectPanels();
  EXPECT_EQ(quit(), 0);
}

TEST_F(Viewer, ShiftF4EditsTheFileAtTheTopLine) {
  left().write("file.txt", numbered(100));
  start();
  view("file.txt");
  press(XK_Next);
  expectTop("line 23.");
  press(XK_F4, {XK_Shift_L});
  expectSoon("the editor", [this] { return !row(0).starts_with("View: "); });
  expectTop("line 23.");
  type("new ");
  expectTop("new line 23.");
  press(XK_F2);
  expectSoon("the file", [this] {
    return left().read("file.txt").find("\nnew line 23.\n") != std::string::npos;
  });
  press(XK_Escape);
  expectPanels();
  EXPECT_EQ(quit(), 0);
}

TEST_F(Viewer, AfterAnEditTheFileIsShownFromTheTopLineOfTheEditor) {
  left().write("file.txt", numbered(300));
  start();
  view("file.txt");
  press(XK_F4, {XK_Alt_L});
  expectSoon("the editor", [this] { return !row(0).starts_with("View: "); });
  press(XK_Next);
  press(XK_Next);
  expectTop("line 43.");
  press(XK_Escape);
  expectPanels();
  press(XK_F3);
  expectSoon("the viewer", [this] { return row(0).starts_with("View: "); });
  expectTop("line 43.");
  press(XK_Escape);
  expectPanels();
  EXPECT_EQ(quit(), 0);
}

TEST_F(Viewer, AloneItEndsTheProgram) {
  left().write("file.txt", "alone\n");
  startAlone({"-v", left().path("file.txt")}, "alone");
  press(XK_F10);
  EXPECT_EQ(waitForEnd(), 0);
}

TEST_F(Viewer, TheWindowsCloseButtonLeavesTheViewer) {
  left().write("file.txt", numbered(3));
  start();
  view("file.txt");
  keys().closeWindow(console->windowId());
  expectPanels();
  EXPECT_EQ(quit(), 0);
}

}  // namespace
