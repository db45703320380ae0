// Histories that outlive the program, and their windows.

#include "console/console.h"
#include "e2e/program_test.h"
#include "support/as_user.h"

namespace {

class Histories : public ProgramTest {
 protected:
  static constexpr char Name[] = ".tdx/td.hst";

  void writeHistory(const std::string& text) {
    home().makeDir(".tdx");
    home().write(Name, text);
  }
  std::string history() const { return home().read(Name); }
  void expectPrompt(const std::string& path) {
    expectSoon("the prompt " + path, [this, path] {
      return row(0, 23, static_cast<int>(path.size()) + 1) == path + ">";
    });
  }
};

TEST_F(Histories, ACommandAndAFieldAreInTheFileAtOnce) {
  left().makeDir("sub");
  start();
  type("cd sub");
  press(XK_Return);
  expectPrompt(left().path("sub"));
  EXPECT_EQ(history(), "cd sub\r\n");
  EXPECT_EQ(home().mode(Name), 0600u);
  press(XK_KP_Add);
  expectText("*");
  press(XK_Return);
  expectSoon("the field's entry", [this] { return history() == "cd sub\r\n4\x19*\r\n"; });
  EXPECT_EQ(quit(), 0);
}

TEST_F(Histories, WhatWasTypedIsThereAtTheNextStart) {
  left().makeDir("sub");
  EXPECT_EQ(runInChild([this] {
              start();
              type("cd sub");
              press(XK_Return);
              expectPrompt(left().path("sub"));
              EXPECT_EQ(quit(), 0);
            }),
            0);
  EXPECT_EQ(runInChild([this] {
              start();
              press(XK_e, {XK_Control_L});
              expectText(left().path() + ">cd sub");
              press(XK_Return);
              expectPrompt(left().path("sub"));
              EXPECT_EQ(quit(), 0);
            }),
            0);
  EXPECT_EQ(history(), "cd sub\r\ncd sub\r\n");
}

TEST_F(Histories, CommandsOfEarlierRunsAreChosenFromTheWindow) {
  left().makeDir("one");
  left().makeDir("two");
  writeHistory("cd one\r\ncd two\r\n");
  start();
  press(XK_F8, {XK_Alt_L});
  expectText(" History ");
  expectText("cd one");
  press(XK_Up);
  press(XK_Return);
  expectPrompt(left().path("one"));
  EXPECT_TRUE(waitUntil([this] { return history().ends_with("cd two\r\ncd one\r\n"); }));
  press(XK_F8, {XK_Alt_L});
  expectText(" History ");
  press(XK_Return, {XK_Control_L});
  expectNoText(" History ");
  expectPrompt(left().path("one"));
  expectText(left().path("one") + ">cd one");
  press(XK_Escape);
  EXPECT_EQ(quit(), 0);
}

TEST_F(Histories, AnOldFileThatIsTooLongShrinksAtTheStart) {
  std::string lines;
  for (int i = 0; i < 700; ++i) lines += "command " + std::to_string(i) + "\r\n";
  writeHistory(lines + "7\x19*.c\r\n");
  start();
  EXPECT_TRUE(history().starts_with("command 200\r\n"));
  EXPECT_TRUE(history().ends_with("command 699\r\n7\x19*.c\r\n"));
  press(XK_e, {XK_Control_L});
  expectText(">command 699");
  press(XK_Escape);
  EXPECT_EQ(quit(), 0);
}

TEST_F(Histories, DirectoriesThatWereLeftAreChosenFromTheirWindow) {
  left().makeDir("sub");
  start();
  for (const char* line : {"cd sub", "cd /usr"}) {
    type(line);
    press(XK_Return);
  }
  expectPrompt("/usr");
  press(XK_F8, {XK_Alt_L, XK_Shift_L});
  expectText(" Directory History ");
  press(XK_Return);
  expectPrompt(left().path("sub"));
  press(XK_backslash, {XK_Alt_L});
  expectText(" Directory History ");
  press(XK_Return);
  expectPrompt("/usr");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Histories, ADirectoryOfTheHistoryBecomesADestination) {
  left().write("file", "text");
  start();
  type("cd " + right().path());
  press(XK_Return);
  expectPrompt(right().path());
  type("cd " + left().path());
  press(XK_Return);
  expectPrompt(left().path());
  moveTo("file");
  press(XK_F5);
  expectText("Dir Hist");
  press(XK_backslash, {XK_Alt_L});
  expectText(" Directory History ");
  press(XK_Return);
  expectNoText(" Directory History ");
  press(XK_Return);
  expectSoon("the copy", [this] { return right().exists("file"); });
  EXPECT_EQ(quit(), 0);
}

TEST_F(Histories, StoredPathsAreChosenFromTheirWindow) {
  start();
  press(XK_F5, {XK_Alt_L});
  expectText(" Stored Paths ");
  press(XK_Down);
  press(XK_Insert);
  expectText("1 - " + left().path());
  press(XK_Escape);
  expectNoText(" Stored Paths ");
  press(XK_Tab);
  press(XK_F5, {XK_Alt_L});
  expectText(" Stored Paths ");
  type("1");
  expectNoText(" Stored Paths ");
  expectPrompt(left().path());
  EXPECT_EQ(quit(), 0);
}

}  // namespace
