#include "editor/file_edit_test.h"
#include "support/as_user.h"

namespace {

// Edits by somebody whom the rights of files stop.
class OrdinaryUserTest : public FileEditTest {
 protected:
  void SetUp() override {
    FileEditTest::SetUp();
    ASSERT_TRUE(giveToUser(dir.path()) && giveToUser(userFiles.path()));
  }
  std::string ownFile(const std::string& name, mode_t mode) const {
    const std::string made = file(name, "one");
    EXPECT_TRUE(giveToUser(made));
    dir.chmod(name, mode);
    return made;
  }
  void save(FileEdit& edit, Key::Code answer, const std::vector<Reply>& more = {}) {
    std::vector<Reply> replies = {{"File is Read Only, override?", {answer}}};
    replies.insert(replies.end(), more.begin(), more.end());
    answering(replies, [&] { edit.key(Key::F2); });
  }
};

}  // namespace

TEST_F(OrdinaryUserTest, AnOwnReadOnlyFileIsSavedWhenThatIsWantedAndStaysReadOnly) {
  const std::string name = ownFile("a.txt", 0440);
  const EffectiveUser user;
  FileEdit edit(name);
  EXPECT_TRUE(edit.editor.file.isReadOnly);
  edit.typeText("x");
  save(edit, Key::Esc);
  EXPECT_EQ(readFile(name), "one");
  EXPECT_TRUE(edit.editor.isModified);
  for (const char* saved : {"xone", "xyone"}) {
    save(edit, Key::Enter);
    EXPECT_EQ(readFile(name), saved);
    EXPECT_EQ(dir.mode("a.txt"), 0440U);
    EXPECT_FALSE(edit.editor.isModified);
    edit.typeText("y");
  }
  EXPECT_EQ(dir.names(), std::vector<std::string>{"a.txt"});
}

TEST_F(OrdinaryUserTest, AReadOnlyFileOfTwoNamesIsUnlockedAndLockedAgain) {
  const std::string name = ownFile("a.txt", 0444);
  ASSERT_EQ(link(name.c_str(), path("hard").c_str()), 0);
  const EffectiveUser user;
  FileEdit edit(name);
  edit.typeText("x");
  save(edit, Key::Enter);
  EXPECT_EQ(readFile(path("hard")), "xone");
  EXPECT_EQ(dir.mode("a.txt"), 0444U);
  EXPECT_EQ(dir.names(), (std::vector<std::string>{"a.txt", "hard"}));
}

TEST_F(OrdinaryUserTest, InADirectoryWithoutRightsAReadOnlyFileIsOverwritten) {
  const std::string name = ownFile("a.txt", 0444);
  ::chmod(dir.path().c_str(), 0555);
  {
    const EffectiveUser user;
    FileEdit edit(name);
    edit.typeText("x");
    save(edit, Key::Enter);
    EXPECT_EQ(readFile(name), "xone");
    EXPECT_EQ(dir.mode("a.txt"), 0444U);
  }
  EXPECT_EQ(dir.names(), std::vector<std::string>{"a.txt"});
  EXPECT_TRUE(contents(userFiles.path("edit")).empty());
}

TEST_F(OrdinaryUserTest, AReadOnlyFileOfSomebodyElseStaysAsItIs) {
  if (!isRoot()) GTEST_SKIP() << "only root has files of others";
  const std::string name = file("a.txt", "one");
  ASSERT_EQ(chown(name.c_str(), 1, 1), 0);
  dir.chmod("a.txt", 0444);
  const EffectiveUser user;
  FileEdit edit(name);
  EXPECT_TRUE(edit.editor.file.isReadOnly);
  edit.typeText("x");
  save(edit, Key::Enter,
       {{"Error clearing Read Only flag: Operation not permitted", {Key::Enter}}});
  EXPECT_EQ(readFile(name), "one");
  EXPECT_EQ(dir.mode("a.txt"), 0444U);
  EXPECT_EQ(statusOf(name).st_uid, 1U);
  EXPECT_TRUE(edit.editor.isModified);
  EXPECT_EQ(dir.names(), std::vector<std::string>{"a.txt"});
}

TEST_F(OrdinaryUserTest, SaveAsOntoAReadOnlyFileIsRefused) {
  const std::string name = ownFile("a.txt", 0644);
  const std::string other = ownFile("b", 0444);
  const EffectiveUser user;
  FileEdit edit(name);
  edit.typeText("x");
  answering({{" Save As ", {'b', Key::Enter}},
             {"File already exists, Overwrite?", {Key::Enter}},
             {"Unable to open: Permission denied", {Key::Enter}},
             {" Save As ", {Key::Esc}}},
            [&] { edit.key(Key::F3); });
  EXPECT_EQ(readFile(other), "one");
  EXPECT_EQ(readFile(name), "one");
  EXPECT_EQ(dir.mode("b"), 0444U);
  EXPECT_TRUE(edit.editor.isModified);
  EXPECT_EQ(std::string(toUtf8(edit.editor.file.name).data()), name);
}

TEST_F(OrdinaryUserTest, AFileThatMayNotBeReadSaysSo) {
  const std::string name = ownFile("a.txt", 0);
  const EffectiveUser user;
  bool loaded = true;
  answering({{"Permission denied", {Key::Enter}}}, [&] { loaded = FileEdit(name).loaded; });
  EXPECT_FALSE(loaded);
}
