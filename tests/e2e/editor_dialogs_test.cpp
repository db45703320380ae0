// What the editor asks, in the whole program: searching, saving, encodings, a file that others
// change, changes that an earlier edit has left.

#include <filesystem>

#include "e2e/program_test.h"
#include "support/files.h"

namespace {

class EditorDialogs : public ProgramTest {
 protected:
  void edit(const std::string& name, const std::string& content) {
    left().write(name, content);
    start();
    open(name);
  }
  void open(const std::string& name) {
    moveTo(name);
    press(XK_F4);
    expectSoon("the editor", [this] { return row(0).starts_with("Edit: "); });
  }
  void expectPanels() {
    expectSoon("the panels", [this] { return row(24).find("2Menu") != std::string::npos; });
  }
  void leave() {
    press(XK_Escape);
    expectPanels();
    EXPECT_EQ(quit(), 0);
  }
  void expectFile(const std::string& name, const std::string& content) {
    expectSoon("the file " + name, [this, name, content] { return left().read(name) == content; });
  }
  std::string journals() const { return home().path(".tdx/edit"); }
};

TEST_F(EditorDialogs, ATextIsSearchedForwardAndBackward) {
  edit("a.txt", "one two\ntwo three\n");
  press(XK_F7);
  expectText("Search for:");
  type("two");
  press(XK_Return);
  expectText("Line 1     Col 5 ");
  press(XK_F7, {XK_Shift_L});
  expectText("Line 2     Col 1 ");
  press(XK_F7, {XK_Alt_L});
  expectText("Line 1     Col 5 ");
  press(XK_F7);
  expectText("Search for:");
  type("nowhere");
  press(XK_Return);
  expectText("String not found");
  press(XK_Return);
  expectNoText("String not found");
  leave();
}

TEST_F(EditorDialogs, HitsAreReplacedOneByOneAndAll) {
  edit("a.txt", "a b a b a\na\n");
  press(XK_F8);
  expectText("Replace with:");
  type("a");
  press(XK_p, {XK_Alt_L});
  type("xyz");
  press(XK_Return);
  expectText("String Found");
  type("s");
  expectText("Col 5 ");
  type("r");
  expectText("a b xyz b a");
  expectText("String Found");
  type("a");
  expectText("3 replacements");
  press(XK_Return);
  expectNoText("replacements");
  press(XK_F2);
  expectFile("a.txt", "a b xyz b xyz\nxyz\n");
  leave();
}

TEST_F(EditorDialogs, ALineIsGoneToByItsNumber) {
  std::string text;
  for (int i = 1; i <= 200; ++i) text += "line " + std::to_string(i) + "\n";
  edit("a.txt", text);
  press(XK_l, {XK_Alt_L});
  expectText("1-201");
  type("100");
  press(XK_Return);
  expectText("Line 100 ");
  expectSoon("five lines above it", [this] { return row(1).starts_with("line 95 "); });
  leave();
}

TEST_F(EditorDialogs, SaveAsAnotherNameAndFormat) {
  edit("a.txt", "one\n");
  type("x");
  press(XK_F3);
  expectText(" Save As ");
  type("b.txt");
  press(XK_6, {XK_Alt_L});
  press(XK_Return);
  expectText("b.txt");
  expectText("UTF-16");
  expectFile("b.txt", std::string("\xFF\xFEx\0o\0n\0e\0\n\0", 12));
  EXPECT_EQ(left().read("a.txt"), "one\n");
  leave();
}

TEST_F(EditorDialogs, AnotherEncodingIsChosen) {
  edit("a.txt",
       "Gr\xC3\xBC\xC3\x9F"
       "e\n");
  press(XK_e, {XK_Alt_L});
  expectText("Select File Encoding");
  press(XK_c, {XK_Alt_L});
  press(XK_Return);
  expectText("CP850");
  expectSoon("two characters for each", [this] {
    return !shows(
        "Gr\xC3\xBC\xC3\x9F"
        "e");
  });
  leave();
}

TEST_F(EditorDialogs, AFileThatAnotherProgramHasChangedIsNotOverwrittenUnasked) {
  edit("a.txt", "one\n");
  type("x");
  expectText("xone");
  left().write("a.txt", "theirs, longer\n");
  press(XK_F2);
  expectText("The file was changed by another program. Overwrite?");
  press(XK_Escape);
  expectNoText("another program");
  EXPECT_EQ(left().read("a.txt"), "theirs, longer\n");
  press(XK_F2);
  expectText("The file was changed by another program. Overwrite?");
  press(XK_Return);
  expectFile("a.txt", "xone\n");
  leave();
}

TEST_F(EditorDialogs, ChangesThatAnEarlierEditHasLeftAreRestored) {
  namespace fs = std::filesystem;
  edit("a.txt", "one\n");
  type("lost ");
  press(XK_Escape);
  // Before a question stands, all that was typed is in the journal.
  expectText("There are unsaved changes");
  const fs::path journal = fs::directory_iterator(journals())->path();
  fs::copy_file(journal, home().path("kept"));
  type("d");
  expectPanels();
  EXPECT_FALSE(fs::exists(journal));
  fs::copy_file(home().path("kept"), journal);
  fs::permissions(journal, fs::perms::owner_read | fs::perms::owner_write);
  press(XK_F4);
  expectText("Unsaved changes of an earlier edit were found");
  type("r");
  expectText("lost one");
  press(XK_F10, {XK_Shift_L});
  expectPanels();
  EXPECT_EQ(left().read("a.txt"), "lost one\n");
  EXPECT_TRUE(fs::is_empty(journals()));
  EXPECT_EQ(quit(), 0);
}

TEST_F(EditorDialogs, TheEndOfTheProgramKeepsUnsavedChanges) {
  edit("a.txt", "one\n");
  type("x");
  expectText("xone");
  kill(getpid(), SIGTERM);
  EXPECT_EQ(waitForEnd(), 0);
  EXPECT_EQ(left().read("a.txt"), "one\n");
  EXPECT_FALSE(std::filesystem::is_empty(journals()));
}

}  // namespace
