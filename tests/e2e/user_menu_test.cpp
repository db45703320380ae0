#include "e2e/program_test.h"

namespace {

class Menu : public ProgramTest {};

constexpr char Entries[] =
    "c: Copy beside\n  cp !f !x.copy\nm: More\n{\nl: List of the tagged\n  ls !t >> listed\n"
    "s: Into sub\n  touch sub/made\n  cd sub\n}\n";

TEST_F(Menu, F2RunsTheCommandsOfTheMenuInTheDirectory) {
  left().write("td.mnu", Entries);
  left().write("file.txt", "text");
  start();
  moveTo("file.txt");
  press(XK_F2);
  expectText("Copy beside");
  press(XK_c);
  expectSoon("the copy", [this] { return left().read("file.copy") == "text"; });
  expectText("file.copy");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Menu, ASubmenuWorksOnTaggedFilesAndChangesTheDirectory) {
  left().write("td.mnu", Entries);
  left().write("one", "");
  left().write("other", "");
  left().makeDir("sub");
  start();
  moveTo("one");
  press(XK_Insert);
  press(XK_Insert);
  press(XK_F2);
  press(XK_m);
  expectText("List of the tagged");
  press(XK_l);
  expectSoon("the list", [this] { return left().read("listed") == "one\nother\n"; });
  expectText("listed");
  press(XK_F2);
  press(XK_m);
  expectText("Into sub");
  press(XK_s);
  expectSoon("the path of sub", [this] { return row(23).find("/sub>") != std::string::npos; });
  expectText("made");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Menu, ShiftF2OpensTheMainOne) {
  home().makeDir(".tdx");
  home().write(".tdx/td.mnu", "t: Touch a file\n  touch touched\n");
  left().write("td.mnu", Entries);
  start();
  press(XK_F2, {XK_Shift_L});
  expectText("Touch a file");
  press(XK_Return);
  expectSoon("the file", [this] { return left().exists("touched"); });
  expectText("touched");
  EXPECT_EQ(quit(), 0);
}

}  // namespace
