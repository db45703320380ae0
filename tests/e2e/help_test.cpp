// The help as it comes with the program: each screen has its topic behind F1.

#include "e2e/help_test.h"

namespace {

class Help : public HelpTest {};

TEST_F(Help, F1OnThePanelsTellsAboutThemAndAgainListsAllTopics) {
  start();
  press(XK_F1);
  expectText("║ Panels  ");
  press(XK_F1);
  expectText("║ Index  ");
  press(XK_Escape);
  expectText("║ Panels  ");
  press(XK_Escape);
  expectNoText("Esc to Exit");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Help, F1InAMenuTellsAboutIt) {
  start();
  press(XK_F9);
  expectText("Files    Commands");
  for (const char* title : {"Left and Right menus", "Files menu", "Commands menu", "Options menu",
                            "Left and Right menus"}) {
    expectHelp(title);
    press(XK_Right);
  }
  press(XK_Down);
  expectText("Brief       AlSh-F1");
  expectHelp("Left and Right menus");
  press(XK_Escape);
  press(XK_Escape);
  EXPECT_EQ(quit(), 0);
}

TEST_F(Help, F1InTheViewerTellsAboutIt) {
  left().write("file.txt", "text\n");
  start();
  moveTo("file.txt");
  press(XK_F3);
  expectText("View: ");
  expectHelp("Viewer");
  press(XK_Escape);
  EXPECT_EQ(quit(), 0);
}

TEST_F(Help, F1InTheEditorTellsAboutWhatIsEdited) {
  left().write("file.txt", "text\n");
  left().write("td.mnu", "a: A\n  true\n");
  start();
  for (const auto& [name, title] :
       {std::pair{"file.txt", "Editor"}, {"td.mnu", "Menu files and macros"}}) {
    moveTo(name);
    press(XK_F4);
    expectText("Edit: ");
    expectHelp(title);
    press(XK_Escape);
    expectText("2Menu");
  }
  EXPECT_EQ(quit(), 0);
}

TEST_F(Help, F1InTheEditorOnTheConfigurationTellsAboutIt) {
  home().makeDir(".tdx");
  home().write(".tdx/td.ini", "[General Options]\n");
  start();
  press(XK_F9);
  expectText("Files    Commands");
  type("c");
  expectText("Edit Associations");
  type("a");
  expectText("Edit: ");
  expectHelp("td.ini");
  press(XK_Escape);
  EXPECT_EQ(quit(), 0);
}

TEST_F(Help, F1InTheHistoryTellsAboutIt) {
  start();
  type("true");
  press(XK_Return);
  press(XK_F8, {XK_Alt_L});
  expectText(" History ");
  expectHelp("History");
  press(XK_Escape);
  EXPECT_EQ(quit(), 0);
}

TEST_F(Help, F1InADialogTellsAboutTheCommandThatHasOpenedIt) {
  left().write("file.txt", "text\n");
  start();
  moveTo("file.txt");
  const struct {
    unsigned long key;
    std::vector<unsigned long> modifiers;
    std::string text, title;
  } rows[] = {{XK_F5, {}, "Copy \"file.txt\" to", "Files menu"},
              {XK_F7, {}, "Create the directory", "Files menu"},
              {XK_F8, {}, "Do you wish to delete", "Files menu"},
              {XK_KP_Add, {}, "Select the files", "Panels"},
              {XK_F5, {XK_Alt_L}, "Stored Paths", "History"},
              {XK_a, {XK_Control_L}, "File  Attributes", "Files menu"},
              {XK_F10, {}, "Are you sure", "Commands menu"}};
  for (const auto& row : rows) {
    press(row.key, row.modifiers);
    expectText(row.text);
    expectHelp(row.title);
    press(XK_Escape);
    expectNoText(row.text);
  }
  EXPECT_EQ(quit(), 0);
}

TEST_F(Help, F1InFileFindAndInCompareTellsAboutThem) {
  start();
  press(XK_F7, {XK_Alt_L});
  expectText("File(s) to find:");
  expectHelp("File Find");
  press(XK_Escape);
  press(XK_k, {XK_Control_L});
  expectText("Directory Compare");
  expectHelp("Compare");
  press(XK_Escape);
  EXPECT_EQ(quit(), 0);
}

TEST_F(Help, F1InTheDialogsOfTheOptionsTellsAboutThem) {
  start();
  for (const auto& [letter, title] :
       {std::pair{"c", "Configuration"}, {"n", "Confirmations"}, {"o", "Options menu"}}) {
    press(XK_F9);
    expectText("Files    Commands");
    type("o");
    expectText("Path Prompt");
    type(letter);
    expectNoText("Path Prompt");
    expectHelp(title);
    press(XK_Escape);
    expectText("1Help");
  }
  EXPECT_EQ(quit(), 0);
}

TEST_F(Help, F1InTheTreeTellsAboutItAlsoAboveADialog) {
  left().write("file.txt", "text\n");
  home().makeDir(".tdx");
  home().write(".tdx/tdtree.dat", std::string(8, '\0') + "0/\n1tmp\n");
  start();
  press(XK_F10, {XK_Alt_L});
  expectText("Directory Tree");
  expectHelp("Commands menu");
  press(XK_Escape);
  expectNoText("Directory Tree");
  moveTo("file.txt");
  press(XK_F5);
  expectText("Copy \"file.txt\" to");
  press(XK_F10);
  expectText("Directory Tree");
  expectHelp("Commands menu");
  press(XK_Escape);
  press(XK_Escape);
  EXPECT_EQ(quit(), 0);
}

TEST_F(Help, AFileOfAnotherConfigurationsNameMayBeMissing) {
  home().write("my.ini", "");
  startPlain({home().path("my.ini"), "-l", left().path(), "-r", right().path()});
  expectHelp("Panels");
  EXPECT_EQ(quit(), 0);
}

}  // namespace
