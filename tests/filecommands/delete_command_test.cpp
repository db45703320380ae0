#include "filecommands/archive_actions.h"
#include "filecommands/command_test.h"
#include "filecommands/confirmations.h"
#include "language/environment.h"

namespace {

class DeleteCommandTest : public CommandTest {
 protected:
  void deleteWith(const std::vector<Step>& steps) {
    play(steps, [&] { deleteCommand(left()); });
  }
  void byName(const std::vector<Step>& steps) {
    play(steps, [&] { deleteByNameCommand(left()); });
  }
  void makeTree() {
    for (const char* name : {"left/tree", "left/tree/sub", "outside"}) dir.makeDir(name);
    file("left/tree/a");
    file("left/tree/sub/b");
    file("outside/precious");
  }
};

constexpr char Wish[] = "Do you wish to delete";

}  // namespace

TEST_F(DeleteCommandTest, OneFileIsAskedAboutAndGoes) {
  file("left/some file");
  show("some file");
  for (const Key::Code key : {Key::Esc, Key::F10}) {
    deleteWith({{Wish, {key}}});
    EXPECT_TRUE(dir.exists("left/some file"));
  }
  deleteWith({{Wish, {Key::Right, Key::Enter}}});
  EXPECT_TRUE(dir.exists("left/some file")) << "Cancel";
  deleteWith({{Wish, {Key::Enter}, "delete_one"}});
  EXPECT_FALSE(dir.exists("left/some file"));
  EXPECT_EQ(entryNamed(left(), "some file"), nullptr) << "read again";
  EXPECT_EQ(screenText(), before_);
}

TEST_F(DeleteCommandTest, ALongNameIsCutAndTheWindowGrows) {
  const std::string name = "/a/" + std::string(200, 'n');
  file("left/x");
  show("x");
  play({{"nnnn", {Key::Esc}, "delete_long_name"}},
       [&] { askDelete(decodeFileName(name.c_str()), UndeleteBox::Hidden); });
}

TEST_F(DeleteCommandTest, TaggedFilesAreAskedAboutTwice) {
  for (const char* name : {"left/a", "left/b", "left/c"}) file(name);
  show("c");
  tag("a");
  deleteWith({{"You have selected 1 file ", {Key::Esc}}});
  tag("b");
  deleteWith({{"You have selected 2 files", {Key::Esc}, "delete_tagged"}});
  deleteWith({{"You have selected 2 files", {Key::Enter}},
              {"You are deleting 2 selected files from", {Key::Esc}, "delete_tagged_again"}});
  EXPECT_TRUE(dir.exists("left/a"));
  deleteWith({{"You have selected 2 files", {Key::Enter}},
              {"You are deleting 2 selected files from", {Key::Enter}}});
  EXPECT_EQ(contents(dir.path("left")).size(), 1U);
}

TEST_F(DeleteCommandTest, TheQuestionsHaveTheirColours) {
  file("left/a");
  show("a");
  tag("a");
  const int messages = colourOf(Colour::Messages);
  const int errors = colourOf(Colour::Errors);
  EXPECT_NE(messages, errors);
  std::vector<int> seen;
  const auto corner = [&] { return attrAt(40, rowWith("You ")); };
  {
    Beside user([&] {
      waitToShow("You have selected");
      seen.push_back(corner());
      queueKey(Key::Enter);
      waitToShow("You are deleting");
      seen.push_back(corner());
      queueKey(Key::Esc);
    });
    deleteCommand(left());
  }
  EXPECT_EQ(seen, (std::vector<int>{messages, errors}));
}

TEST_F(DeleteCommandTest, TheFirstBitTurnsTheFirstQuestionsOff) {
  file("left/a");
  GlobalOptions::Confirmations = ConfirmationOff::Delete;
  show("a");
  run([&] { deleteCommand(left()); });
  EXPECT_FALSE(dir.exists("left/a"));
  for (const char* name : {"left/a", "left/b"}) file(name);
  show("a");
  tag("a");
  tag("b");
  deleteWith({{"You are deleting 2 selected files from", {Key::Enter}}});
  EXPECT_FALSE(dir.exists("left/b"));
}

TEST_F(DeleteCommandTest, TheSecondBitTurnsTheSecondQuestionOff) {
  file("left/a");
  GlobalOptions::Confirmations = ConfirmationOff::DeleteTagged;
  show("a");
  tag("a");
  deleteWith({{"You have selected 1 file", {Key::Enter}}});
  EXPECT_FALSE(dir.exists("left/a"));
}

TEST_F(DeleteCommandTest, OnTwoDotsWithNothingTaggedNoQuestionAppears) {
  show("..");
  run([&] { deleteCommand(left()); });
  EXPECT_EQ(screenText(), before_);
}

TEST_F(DeleteCommandTest, AFullDirectoryNeedsTheWordInAnyCase) {
  makeTree();
  for (const auto& [word, goes] :
       {std::pair("ye", false), {"yess", false}, {"no", false}, {"", false}, {"yes", true}}) {
    show("tree");
    deleteWith(
        {{Wish, {Key::Enter}}, {"Type \"YES\"", {Key::Enter}, goes ? "tree_typed" : "", word}});
    EXPECT_EQ(dir.exists("left/tree"), !goes) << word;
  }
  makeTree();
  show("tree");
  deleteWith({{Wish, {Key::Enter}}, {"Type \"YES\"", {Key::Esc}, "", "YES"}});
  EXPECT_TRUE(dir.exists("left/tree"));
  deleteWith({{Wish, {Key::Enter}}, {"Type \"YES\"", {Key::F10}, "", "YES"}});
  EXPECT_TRUE(dir.exists("left/tree"));
  deleteWith({{Wish, {Key::Enter}}, {"Type \"YES\"", {Key::Enter}, "", "YeS"}});
  EXPECT_FALSE(dir.exists("left/tree"));
}

TEST_F(DeleteCommandTest, WithTheFifthBitTheTreeQuestionHasButtonsAndTheFocusOnCancel) {
  GlobalOptions::Confirmations = ConfirmationOff::TypedYes | ConfirmationOff::Delete;
  makeTree();
  show("tree");
  deleteWith({{"Delete tree?", {Key::Enter}, "tree_buttons"}});
  EXPECT_TRUE(dir.exists("left/tree")) << "Enter is Cancel here";
  deleteWith({{"Delete tree?", {Key::Left, Key::Enter}}});
  EXPECT_FALSE(dir.exists("left/tree"));
}

TEST_F(DeleteCommandTest, AllAtTheTreeQuestionTakesTheOtherTreesToo) {
  GlobalOptions::Confirmations =
      ConfirmationOff::TypedYes | ConfirmationOff::Delete | ConfirmationOff::DeleteTagged;
  for (const char* name : {"left/t1", "left/t2", "left/t3"}) {
    dir.makeDir(name);
    file(std::string(name) + "/f");
  }
  show("t1");
  for (const char* name : {"t1", "t2"}) tag(name);
  deleteWith({{"Delete tree?", {Key::Right, Key::Enter}}});
  EXPECT_EQ(contents(dir.path("left")).size(), 2U);
  show("t3");
  deleteWith({{"Delete tree?", {Key::Enter}}});
  EXPECT_TRUE(dir.exists("left/t3")) << "the answer ended with its command";
}

TEST_F(DeleteCommandTest, ALinkToADirectoryGoesAndItsTargetStays) {
  makeTree();
  dir.link("../outside", "left/door");
  GlobalOptions::Confirmations = ConfirmationOff::Delete | ConfirmationOff::DeleteTagged;
  show("door");
  run([&] { deleteCommand(left()); });
  EXPECT_FALSE(dir.exists("left/door"));
  dir.link("../outside", "left/door");
  show("door");
  tag("door");
  run([&] { deleteCommand(left()); });
  EXPECT_FALSE(dir.exists("left/door"));
  EXPECT_TRUE(dir.exists("outside/precious"));
}

TEST_F(DeleteCommandTest, TagsOfWhatStayedSurviveAndThoseOfDeletedNamesGo) {
  GlobalOptions::Confirmations = ConfirmationOff::Delete | ConfirmationOff::DeleteTagged;
  dir.makeDir("left/full");
  file("left/full/x");
  for (const char* name : {"left/a", "left/z"}) file(name);
  show("a");
  for (const char* name : {"full", "a", "z"}) tag(name);
  deleteWith({{"Delete tree?", {Key::Esc}}});
  EXPECT_EQ(taggedNames(left()), (Texts{"full", "a", "z"})) << "directories come first";
  changeTag(left(), *entryNamed(left(), "full"), TagMode::Untag);
  run([&] { deleteCommand(left()); });
  EXPECT_EQ(left().taggedCount, 0);
  EXPECT_FALSE(dir.exists("left/a"));
}

TEST_F(DeleteCommandTest, EscInTheQueueStopsBeforeTheNextEntry) {
  GlobalOptions::Confirmations = ConfirmationOff::Delete | ConfirmationOff::DeleteTagged;
  for (const char* name : {"left/a", "left/b"}) file(name);
  show("a");
  for (const char* name : {"a", "b"}) tag(name);
  queueKey(Key::Esc);
  deleteCommand(left());
  EXPECT_EQ(contents(dir.path("left")).size(), 2U);
}

TEST_F(DeleteCommandTest, TheTreeIsToldAndSavedWhenADirectoryWasHandled) {
  GlobalOptions::Confirmations = ConfirmationOff::Delete;
  dir.makeDir("left/d");
  file("left/f");
  TreeLog log;
  show("f");
  run([&] { deleteCommand(left()); });
  EXPECT_TRUE(log.calls.empty());
  show("d");
  run([&] { deleteCommand(left()); });
  EXPECT_EQ(log.calls, (Texts{"removed " + dir.path("left/d"), "save"}));
}

TEST_F(DeleteCommandTest, AnArchivePanelIsHandedOver) {
  struct Removals : ArchiveActions {
    void remove(Panel&) override { ++count; }
    int count = 0;
  } removals;
  archiveActions().connect(removals);
  file("left/a");
  show("a");
  left().archive =
      std::make_unique<FakeArchive>(left().path, std::vector<std::string>{"a"}, nullptr);
  deleteWith({{Wish, {Key::Enter}}});
  archiveActions().disconnect();
  EXPECT_EQ(removals.count, 1);
  EXPECT_TRUE(dir.exists("left/a"));
  left().archive.reset();
}

TEST_F(DeleteCommandTest, ThePanelsPathInDeldirAddsTheCheckBox) {
  file("left/a");
  show("a");
  const std::string start = dir.path().substr(0, 3);
  sessionEnvironment().set("DELDIR", ("C:\\;" + start).c_str());
  deleteWith({{"No Undelete", {Key::Tab, Key::Space, Key::Esc}, "delete_with_box"}});
  EXPECT_TRUE(noUndelete());
  EXPECT_EQ(undeleteBoxFor(L"/xy/z"), UndeleteBox::Hidden);
  sessionEnvironment().set("DELDIR", nullptr);
  EXPECT_EQ(undeleteBoxFor(left().path), UndeleteBox::Hidden);
  noUndelete() = false;
}

TEST_F(DeleteCommandTest, TheErrorBoxOfAFileIsRedAndLeavesIt) {
  GlobalOptions::Confirmations = ConfirmationOff::Delete;
  file("left/a");
  show("a");
  dir.write("left/b", "x");
  std::filesystem::remove(dir.path("left/a"));
  deleteWith({{"File not found", {Key::Enter}, "delete_error"}});
}

TEST_F(DeleteCommandTest, ByNameStartsWithTheCursorsNameAndReturnsAfterAMistake) {
  file("left/a");
  file("left/b");
  show("a");
  byName({{"Delete the file:", {Key::Enter}, "by_name", "12:30"},
          {"Invalid Path", {Key::Enter}},
          {"Delete the file:", {Key::Home}},
          {"12:30", {Key::CtrlEnd}},
          {"12:30", {Key::Esc}}});
  EXPECT_TRUE(dir.exists("left/a"));
  byName({{"Delete the file:", {Key::Enter}, "", "missing"},
          {"File not found", {Key::Enter}},
          {"Delete the file:", {Key::Esc}}});
  byName({{"Delete the file:", {Key::Enter}}, {Wish, {Key::Enter}, "by_name_question"}});
  EXPECT_FALSE(dir.exists("left/a"));
  EXPECT_TRUE(dir.exists("left/b"));
}

TEST_F(DeleteCommandTest, ByNameTakesNoForAnAnswer) {
  file("left/a");
  show("a");
  for (const Key::Code key : {Key::Esc, Key::F10}) {
    byName({{"Delete the file:", {Key::Enter}}, {Wish, {key}}});
    EXPECT_TRUE(dir.exists("left/a"));
  }
}

TEST_F(DeleteCommandTest, ByNameTakesALinkToADirectoryAsALink) {
  makeTree();
  dir.link("../outside", "left/door");
  GlobalOptions::Confirmations = ConfirmationOff::Delete | ConfirmationOff::DeleteTree;
  show("door");
  byName({{"Delete the file:", {Key::Enter}}});
  EXPECT_FALSE(dir.exists("left/door"));
  EXPECT_TRUE(dir.exists("outside/precious"));
}

TEST_F(DeleteCommandTest, ByNameRemovesADirectoryAndSavesTheTree) {
  dir.makeDir("left/d");
  GlobalOptions::Confirmations = ConfirmationOff::Delete;
  show("d");
  TreeLog log;
  byName({{"Delete the file:", {Key::Enter}}});
  EXPECT_EQ(log.calls, (Texts{"removed " + dir.path("left/d"), "save"}));
}

TEST_F(DeleteCommandTest, ByNameOnTwoDotsStartsEmpty) {
  show("..");
  byName({{"Delete the file:", {Key::Esc}, "by_name_empty"}});
}

TEST_F(DeleteCommandTest, ByNameWithNothingTypedNeverMeansThePanelsOwnDirectory) {
  GlobalOptions::Confirmations =
      ConfirmationOff::Delete | ConfirmationOff::DeleteTree | ConfirmationOff::TypedYes;
  show("..");
  for (const char* typed : {"", "  "}) byName({{"Delete the file:", {Key::Enter}, "", typed}});
  EXPECT_TRUE(dir.exists("left"));
}

TEST_F(DeleteCommandTest, ByNameTakesANameOfBlanks) {
  GlobalOptions::Confirmations = ConfirmationOff::Delete;
  file("left/  ");
  show("  ");
  byName({{"Delete the file:", {Key::Enter}}});
  EXPECT_FALSE(dir.exists("left/  "));
  EXPECT_TRUE(dir.exists("left"));
}

TEST(ConfirmationsTest, EachBitHasItsTextInTheOrderOfTheBits) {
  const Texts texts = {"Delete File/Empty Directory", "Delete Tagged Files",
                       "Delete Non-empty Directory", "Quit TD/X",
                       "\"YES\" prompt for Non-Empty Directory"};
  ASSERT_EQ(std::size(Confirmations), texts.size());
  for (size_t i = 0; i < texts.size(); ++i) {
    EXPECT_EQ(Confirmations[i].text, texts[i]);
    EXPECT_EQ(Confirmations[i].bit, 1 << i);
  }
}
