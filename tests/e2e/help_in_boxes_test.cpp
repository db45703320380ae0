// F1 in every dialog and box tells about the command that has opened it.

#include "archive/sample_archives.h"
#include "e2e/help_test.h"

namespace {

class HelpInBoxes : public HelpTest {
 protected:
  struct Box {
    unsigned long key;
    std::vector<unsigned long> modifiers;
    std::string text;  // that the box shows
    std::string title;
  };
  // Each box is opened, asked for help and left by Esc.
  void expectHelpIn(const std::vector<Box>& boxes) {
    for (const Box& box : boxes) {
      press(box.key, box.modifiers);
      expectText(box.text);
      expectHelp(box.title);
      press(XK_Escape);
      expectNoText(box.text);
    }
  }
};

const Modifiers Plain{};

TEST_F(HelpInBoxes, OfFileCommands) {
  left().write("file.txt", "text\n");
  start();
  moveTo("file.txt");
  const std::string files = "Files menu";
  expectHelpIn({{XK_F5, Shift, "Copy \"file.txt\" to", files},
                {XK_F6, Plain, "Move/Rename \"file.txt\" to", files},
                {XK_F6, Shift, "Move/Rename \"file.txt\" to", files},
                {XK_F8, Shift, "Delete the file:", files},
                {XK_c, Ctrl, "Change case of", files},
                {XK_F5, CtrlShift, "Make symbolic link to", files},
                {XK_F6, Alt, "Make an object for", files},
                {XK_F3, Shift, "View the file:", "Viewer"},
                {XK_F4, Shift, "Edit the file:", "Editor"}});
  EXPECT_EQ(quit(), 0);
}

TEST_F(HelpInBoxes, OfMenuItemsWithoutAKey) {
  left().write("file.txt", "text\n");
  start();
  moveTo("file.txt");
  const struct {
    const char *menu, *open, *item, *text, *title;
  } items[] = {{"f", "Make Directory     F7", "t", "Change date of", "Files menu"},
               {"l", "Brief-Wide  AlSh-F4", "l", "Filter for left panel", "Panels"}};
  for (const auto& item : items) {
    press(XK_F9);
    expectText("Files    Commands");
    type(item.menu);
    expectText(item.open);
    type(item.item);
    expectText(item.text);
    expectHelp(item.title);
    press(XK_Escape);
    expectNoText(item.text);
  }
  EXPECT_EQ(quit(), 0);
}

TEST_F(HelpInBoxes, OfListsToChooseFrom) {
  home().makeDir(".tdx");
  home().write(".tdx/td.mnu", "a: An entry\n  true\n");
  start();
  type("cd /usr");  // what was left is in the history
  press(XK_Return);
  expectHelpIn({{XK_F2, Shift, "An entry", "Menu files and macros"},
                {XK_F8, ShiftAlt, "Directory History", "History"}});
  EXPECT_EQ(quit(), 0);
}

TEST_F(HelpInBoxes, OfArchives) {
  left().write("files.zip", zipArchive({{"member.txt", "text"}}));
  start();
  moveTo("files.zip");
  const std::string files = "Files menu";
  expectHelpIn({{XK_F7, Shift, "Compress Files", files}});
  press(XK_Return);
  expectText("files.zip>");
  moveTo("member.txt");
  expectHelpIn({{XK_F5, Plain, "Extract \"member.txt\" to", files},
                {XK_F6, Plain, "Extract and Move \"member.txt\" to", files},
                {XK_F8, Plain, "Do you wish to delete", files}});
  EXPECT_EQ(quit(), 0);
}

TEST_F(HelpInBoxes, OfWhatWentWrong) {
  left().write("file.txt", "text\n");
  start();
  moveTo("file.txt");
  press(XK_F7);
  expectText("Create the directory");
  type("file.txt");
  press(XK_Return);
  expectText("File exists");
  expectHelp("Files menu");
  press(XK_Escape);
  expectNoText("File exists");
  press(XK_Escape);
  EXPECT_EQ(quit(), 0);
}

TEST_F(HelpInBoxes, OfAMessageThatComesBeforeTheFirstKey) {
  startPlain({"-l", home().path("not there"), "-r", right().path()}, FirstScreen::Box);
  expectHelp("Panels");
  press(XK_Escape);
  expectNoText("OK");
  EXPECT_EQ(quit(), 0);
}

TEST_F(HelpInBoxes, OfTheListOfFoundFiles) {
  home().write(".tdx/td.ini", "[General Options]\nFFRootSearch=off\n");
  left().write("file.txt", "a text\n");
  start();
  press(XK_F7, Alt);
  expectText("File(s) to find:");
  type("*.txt");
  press(XK_t, Alt);
  type("text");
  press(XK_Tab);
  press(XK_space);  // not from the root
  press(XK_Return);
  expectText("Search Complete: 1 match uses 7 bytes");
  expectHelpIn({{XK_r, Ctrl, "Replace with:", "File Find"},
                {XK_F5, Plain, "Copy ", "File Find"},
                {XK_F8, Plain, "Do you wish to delete", "File Find"}});
  press(XK_Escape);
  EXPECT_EQ(quit(), 0);
}

std::vector<std::string> alone(const char* option, const std::string& path) {
  return {option, path};
}

TEST_F(HelpInBoxes, OfTheViewerWithoutPanels) {
  left().write("file.txt", "some text\n");
  startAlone(alone("-v", left().path("file.txt")), "some text");
  expectHelp("Viewer");
  expectHelpIn({{XK_F7, Plain, "Search for:", "Viewer"},
                {XK_l, Alt, "Line to go to:", "Viewer"},
                {XK_o, Alt, "Offset to go to:", "Viewer"},
                {XK_e, Alt, "Select File Encoding", "Viewer"},
                {XK_c, Alt, "Code Page List:", "Viewer"}});
  press(XK_F7);
  expectText("Search for:");
  type("nowhere");
  press(XK_Return);
  expectText("String not found");
  expectHelp("Viewer");
  press(XK_Escape);
  expectNoText("String not found");
  press(XK_Escape);
  EXPECT_EQ(waitForEnd(), 0);
}

TEST_F(HelpInBoxes, OfTheEditorWithoutPanels) {
  left().write("file.txt", "some text\n");
  startAlone(alone("-e", left().path("file.txt")), "some text");
  expectHelp("Editor");
  expectHelpIn({{XK_F7, Plain, "Search for:", "Editor"},
                {XK_F8, Plain, "Replace with:", "Editor"},
                {XK_l, Alt, "Line to go to:", "Editor"},
                {XK_F3, Plain, " Save As ", "Editor"},
                {XK_e, Alt, "Select File Encoding", "Editor"},
                {XK_c, Alt, "Code Page List:", "Editor"}});
  type("x");
  expectText("xsome text");
  press(XK_Escape);
  expectText("There are unsaved changes");
  expectHelp("Editor");
  type("d");
  EXPECT_EQ(waitForEnd(), 0);
}

TEST_F(HelpInBoxes, OfAFileThatIsNotThereYet) {
  startAlone(alone("-e", left().path("new.mnu")), "File does not exist, Create?");
  expectHelp("Menu files and macros");
  press(XK_Escape);
  EXPECT_EQ(waitForEnd(), 0);
}

TEST_F(HelpInBoxes, OfTheEditorThatTheViewerHasOpened) {
  left().write("file.txt", "some text\n");
  start();
  moveTo("file.txt");
  press(XK_F3);
  expectText("View: ");
  press(XK_F4, Shift);
  expectText("Edit: ");
  expectHelpIn({{XK_F7, Plain, "Search for:", "Editor"}});
  press(XK_Escape);
  expectText("2Menu");
  EXPECT_EQ(quit(), 0);
}

}  // namespace
