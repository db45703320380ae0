#include "filecommands/link_command.h"

#include <unistd.h>

#include "filecommands/command_test.h"
#include "filecommands/history_windows.h"
#include "filecommands/object_command.h"
#include "history/history_store.h"
#include "support/fault_hook.h"

namespace {

class LinkCommandTest : public CommandTest {
 protected:
  void makeLinks(const std::vector<Step>& steps) {
    play(steps, [&] { linkCommand(left()); });
  }
  std::string target(const std::string& name) const {
    char text[4096];
    const ssize_t length = readlink(dir.path(name).c_str(), text, sizeof text);
    return length < 0 ? "no link" : std::string(text, static_cast<size_t>(length));
  }
  static Step dialog(std::vector<Key::Code> keys, const std::string& golden = "") {
    return {"Make symbolic link", std::move(keys), golden};
  }
  static Step place(const std::string& text) {
    return {"Make symbolic link", {Key::Enter}, "", text};
  }
};

}  // namespace

TEST_F(LinkCommandTest, OneLinkGoesToTheOtherPanelWithTheWholePathAsItsTarget) {
  file("left/some file");
  show("some file");
  makeLinks({dialog({Key::Enter}, "link_one")});
  EXPECT_EQ(target("right/some file"), dir.path("left/some file"));
  EXPECT_NE(entryNamed(right(), "some file"), nullptr) << "both panels were read again";
  EXPECT_EQ(screenText(), before_);
}

TEST_F(LinkCommandTest, ALinkIsMadeAlsoWhenItsTargetIsGone) {
  file("left/a");
  show("a");
  ASSERT_EQ(unlink(dir.path("left/a").c_str()), 0);
  makeLinks({dialog({Key::Enter})});
  EXPECT_EQ(target("right/a"), dir.path("left/a"));
}

TEST_F(LinkCommandTest, TaggedFilesGoToADirectoryAndLoseTheirTags) {
  for (const char* name : {"left/a", "left/b", "left/c"}) file(name);
  show("a");
  for (const char* name : {"a", "b"}) tag(name);
  makeLinks({dialog({Key::Enter}, "link_tagged")});
  EXPECT_EQ(target("right/a"), dir.path("left/a"));
  EXPECT_EQ(target("right/b"), dir.path("left/b"));
  EXPECT_FALSE(dir.exists("right/c"));
  EXPECT_TRUE(taggedNames(left()).empty());
  restoreSelection(left());
  EXPECT_EQ(taggedNames(left()), (Texts{"a", "b"}));
}

TEST_F(LinkCommandTest, TaggedFilesNeedADirectoryAndTheDialogStays) {
  file("left/a");
  file("right/file");
  show("a");
  tag("a");
  makeLinks({{"Make symbolic link to 1 file in", {Key::Enter}, "", dir.path("right/file")},
             {"Destination must be a valid directory", {Key::Enter}},
             dialog({Key::Esc})});
  EXPECT_TRUE(isTagged("a"));
}

TEST_F(LinkCommandTest, WhatIsThereIsNeverReplaced) {
  file("left/a");
  file("right/a", "precious");
  show("a");
  makeLinks({dialog({Key::Enter}),
             {"File exists (17)", {Key::Code(Answer::Retry)}},
             {"File exists (17)", {Key::Code(Answer::Skip)}}});
  EXPECT_EQ(dir.read("right/a"), "precious");
}

TEST_F(LinkCommandTest, OneThatWasSkippedKeepsItsTagAndEscEndsAll) {
  for (const char* name : {"left/a", "left/b", "left/c", "right/a", "right/b"}) file(name);
  show("a");
  for (const char* name : {"a", "b", "c"}) tag(name);
  makeLinks({dialog({Key::Enter}),
             {"File exists (17)", {Key::Code(Answer::Skip)}},
             {"File exists (17)", {Key::Esc}}});
  EXPECT_FALSE(dir.exists("right/c"));
  EXPECT_EQ(taggedNames(left()), (Texts{"a", "b", "c"}));
}

TEST_F(LinkCommandTest, ARelativeTextStartsInThePanelsDirectory) {
  file("left/a");
  show("a");
  makeLinks({place("beside")});
  EXPECT_EQ(target("left/beside"), dir.path("left/a"));
}

TEST_F(LinkCommandTest, AnExistingDirectoryGetsTheName) {
  file("left/a");
  dir.makeDir("left/sub");
  show("a");
  makeLinks({place("sub")});
  EXPECT_EQ(target("left/sub/a"), dir.path("left/a"));
  ASSERT_EQ(unlink(dir.path("left/sub/a").c_str()), 0);
  makeLinks({place("sub/")});
  EXPECT_EQ(target("left/sub/a"), dir.path("left/a"));
}

TEST_F(LinkCommandTest, AnEmptyTextIsToldAndTheDialogStays) {
  file("left/a");
  show("a");
  makeLinks({place(" "), {"Invalid path", {Key::Enter}}, dialog({Key::Esc})});
  EXPECT_FALSE(dir.exists("right/a"));
}

TEST_F(LinkCommandTest, TheTextIsKeptInTheHistoryOfDestinations) {
  file("left/a");
  show("a");
  makeLinks({place("beside")});
  FnStringStore& history = *fieldHistory(FieldHistory::Destination);
  EXPECT_EQ(bytes(*history.peek(history.count() - 1)), "beside");
}

TEST_F(LinkCommandTest, TheKeysSwitchBetweenTheNameAndTheOtherDirectory) {
  file("left/a");
  show("a");
  makeLinks({dialog({Key::F5, Key::End}), {"Make symbolic link", {Key::Enter}, "", "2"}});
  EXPECT_EQ(target("left/a2"), dir.path("left/a"));
}

TEST_F(LinkCommandTest, NothingHappensOnTheParent) {
  show("");
  run([&] { linkCommand(left()); });
}

TEST_F(LinkCommandTest, TheDialogFitsALargeScreen) {
  console->setGeometry(132, 50, Estring(), 0);
  fetchScreenSize();
  file("left/a name that is much longer than the line above the field may be.txt");
  show("a name that is much longer than the line above the field may be.txt");
  makeLinks({dialog({Key::Esc}, "link_large")});
}

// ---- objects

TEST_F(LinkCommandTest, AnObjectOfOneFileHasATitle) {
  file("left/a");
  show("a");
  play({{"Make an object for", {Key::Enter}, "object_one", "a title"}},
       [&] { objectCommand(left()); });
  EXPECT_EQ(contents(dir.path("left")).size(), 1U);
}

TEST_F(LinkCommandTest, AnObjectOfADirectoryHasNone) {
  dir.makeDir("left/d");
  show("d");
  play({{"Make an object for", {Key::Esc}, "object_directory"}}, [&] { objectCommand(left()); });
}

TEST_F(LinkCommandTest, ObjectsOfTaggedFilesTakeTheTags) {
  for (const char* name : {"left/a", "left/b"}) file(name);
  show("a");
  for (const char* name : {"a", "b"}) tag(name);
  play({{"Make 2 objects", {Key::Esc}, "object_tagged"}}, [&] { objectCommand(left()); });
  EXPECT_EQ(left().taggedCount, 2);
  play({{"Make 2 objects", {Key::Enter}}}, [&] { objectCommand(left()); });
  EXPECT_EQ(left().taggedCount, 0);
}
