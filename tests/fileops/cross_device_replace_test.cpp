#include "fileops/fileops_test.h"
#include "fileops/other_device.h"

// A directory that is moved over a file on another device: until it stands there whole, the file
// stays, and so does everything of the source.

namespace {

class CrossDeviceReplace : public FileOpsTest {
 protected:
  void SetUp() override {
    FileOpsTest::SetUp();
    for (const char* name : {"src", "src/sub", "src/empty", "to", "outside"}) dir.makeDir(name);
    dir.write("src/a", "content a");
    dir.write("src/sub/b", "content b");
    dir.link("../outside", "src/sub/link");
    ASSERT_EQ(mkfifo(dir.path("src/pipe").c_str(), 0640), 0);
    ASSERT_EQ(link(dir.path("src/a").c_str(), dir.path("src/twin").c_str()), 0);
    dir.write("outside/precious", "precious");
    dir.write("to/src", "a file");
    answers.overwrite = OverwriteMode::All;
  }
  using Contents = std::map<std::string, std::string>;

  Outcome moveOver(System::Hook next = nullptr, void* context = nullptr) {
    const OtherDevice other(next, context);
    return move("src", "to/src");
  }
  // Everything is where it was; nothing is left over.
  void expectUntouched(const Contents& before) { EXPECT_EQ(contents(dir.path()), before); }
};

}  // namespace

TEST_F(CrossDeviceReplace, TheWholeDirectoryTakesTheFilesPlace) {
  dir.chmod("src/sub", 0750);
  const auto before = snapshot(dir.path("src"));
  ui.onLook = [&] {
    if (ui.looks > 1) return;
    EXPECT_EQ(dir.read("to/src"), "a file");
  };
  EXPECT_EQ(moveOver(), Outcome::Done);
  EXPECT_EQ(snapshot(dir.path("to/src")), before);
  EXPECT_FALSE(dir.exists("src"));
  EXPECT_EQ(dir.read("outside/precious"), "precious");
  expectNoLeftovers();
}

TEST_F(CrossDeviceReplace, TheQuestionComesFirstAndNoChangesNothing) {
  const auto before = contents(dir.path());
  answers = {};
  ui.answers = {Answer::Skip, Answer::Cancel, Answer::Yes};
  EXPECT_EQ(moveOver(), Outcome::LeftInPlace);
  EXPECT_EQ(moveOver(), Outcome::Cancelled);
  expectUntouched(before);
  EXPECT_EQ(moveOver(), Outcome::Done);
  EXPECT_EQ(asked(), Texts(3, ExistsQuestion));
}

TEST_F(CrossDeviceReplace, AFullDiskLeavesTheFileAndAllOfTheSource) {
  struct Full {
    int left;
    static int onCall(const char* call, const char*, void* context) {
      auto* self = static_cast<Full*>(context);
      return std::string(call) == "write" && self->left-- <= 0 ? ENOSPC : 0;
    }
  };
  const auto before = contents(dir.path());
  for (const int answer : {Answer::Skip, Answer::Cancel}) {
    for (const int writes : {0, 1, 2}) {
      Full full{writes};
      ui.rule = [answer](const auto&) { return answer; };
      EXPECT_NE(moveOver(Full::onCall, &full), Outcome::Done) << writes;
      EXPECT_EQ(ui.questions.back().text, "No room for");
      expectUntouched(before);
    }
  }
}

TEST_F(CrossDeviceReplace, EscAtAnyMomentLeavesTheFileOrTheWholeDirectory) {
  const auto before = contents(dir.path());
  const auto tree = contents(dir.path("src"));
  bool untouched = false;
  bool stopped = false;
  for (int look = 1;; ++look) {
    ui.looks = 0;
    ui.escapeAtLook = look;
    const Outcome outcome = moveOver();
    if (outcome == Outcome::Done) break;
    ASSERT_EQ(outcome, Outcome::Cancelled) << look;
    if (S_ISREG(statusOf(dir.path("to/src")).st_mode)) {
      untouched = true;
      expectUntouched(before);
      if (HasFailure()) return;
      continue;
    }
    stopped = true;
    EXPECT_EQ(contents(dir.path("to/src")), tree) << look;
    expectNoLeftovers();
    std::filesystem::remove_all(dir.path("src"));
    ASSERT_EQ(rename(dir.path("to/src").c_str(), dir.path("src").c_str()), 0);
    dir.write("to/src", "a file");
  }
  EXPECT_TRUE(untouched);
  EXPECT_TRUE(stopped) << "also while the source is removed";
  EXPECT_EQ(contents(dir.path("to/src")), tree);
  EXPECT_FALSE(dir.exists("src"));
}

TEST_F(CrossDeviceReplace, AMemberThatCantBeReadKeepsBothSides) {
  struct Unreadable {
    static int onCall(const char* call, const char* path, void*) {
      return std::string(call) == "openAt" && std::string(path) == "b" ? EACCES : 0;
    }
  };
  const auto before = contents(dir.path());
  ui.answers = {Answer::Skip};
  EXPECT_EQ(moveOver(Unreadable::onCall), Outcome::LeftInPlace);
  EXPECT_EQ(asked(), Texts{"Access Denied"});
  expectUntouched(before);
}

TEST_F(CrossDeviceReplace, WhatChangesOrAppearsInTheSourceMeanwhileIsKept) {
  struct AtTheEnd {
    static int onCall(const char* call, const char*, void* context) {
      if (std::string(call) != "renameExchange") return 0;
      auto* dir = static_cast<TempDir*>(context);
      dir->write("src/sub/b", "content b and more");
      dir->write("src/appeared", "new");
      std::filesystem::remove(dir->path("src/sub/link"));
      dir->link("elsewhere", "src/sub/link");
      return 0;
    }
  };
  EXPECT_EQ(moveOver(AtTheEnd::onCall, &dir), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("to/src/sub/b"), "content b");
  EXPECT_EQ(contents(dir.path("src")), (Contents{{"appeared", "file new"},
                                                 {"sub", "directory"},
                                                 {"sub/b", "file content b and more"},
                                                 {"sub/link", "link elsewhere"}}));
  expectNoLeftovers();
}

TEST_F(CrossDeviceReplace, ASourceThatCantBeRemovedStaysAndIsTold) {
  struct Protected {
    static int onCall(const char* call, const char* path, void*) {
      return std::string(call) == "unlinkAt" && std::string(path) == "b" ? EPERM : 0;
    }
  };
  ui.answers = {Answer::Skip};
  EXPECT_EQ(moveOver(Protected::onCall), Outcome::LeftInPlace);
  EXPECT_EQ(ui.questions[0].caption, dir.path("src/sub/b"));
  EXPECT_EQ(contents(dir.path("src")),
            (Contents{{"sub", "directory"}, {"sub/b", "file content b"}}));
  EXPECT_EQ(dir.read("to/src/sub/b"), "content b");
}

TEST_F(CrossDeviceReplace, InsideAMergeTheSameHolds) {
  std::filesystem::remove(dir.path("to/src"));
  dir.makeDir("to/src");
  dir.write("to/src/sub", "a file");
  struct Full {
    static int onCall(const char* call, const char* path, void*) {
      return std::string(call) == "openAt" && std::string(path) == "b" ? EIO : 0;
    }
  };
  ui.answers = {Answer::Skip};
  EXPECT_EQ(moveOver(Full::onCall), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("to/src/sub"), "a file");
  EXPECT_EQ(contents(dir.path("src")), (Contents{{"sub", "directory"},
                                                 {"sub/b", "file content b"},
                                                 {"sub/link", "link ../outside"}}));
  EXPECT_EQ(moveOver(), Outcome::Done);
  EXPECT_EQ(dir.read("to/src/sub/b"), "content b");
  EXPECT_EQ(dir.read("to/src/a"), "content a");
  EXPECT_FALSE(dir.exists("src"));
  expectNoLeftovers();
}

TEST_F(CrossDeviceReplace, DescriptionsGoAlongOnceAndNoneIsLost) {
  const std::string inside = "a about a\r\nsub about sub\r\nnobody orphan\r\n";
  dir.write("src/descript.ion", inside);
  dir.write("descript.ion", "src the directory\r\n");
  dir.write("to/descript.ion", "src the file\r\nother stays\r\n");
  struct Unreadable {
    static int onCall(const char* call, const char* path, void*) {
      return std::string(call) == "openAt" && std::string(path) == "b" ? EACCES : 0;
    }
  };
  const auto before = contents(dir.path());
  ui.answers = {Answer::Skip};
  EXPECT_EQ(moveOver(Unreadable::onCall), Outcome::LeftInPlace);
  expectUntouched(before);
  EXPECT_EQ(moveOver(), Outcome::Done);
  EXPECT_FALSE(dir.exists("src"));
  EXPECT_FALSE(dir.exists("descript.ion"));
  EXPECT_EQ(dir.read("to/descript.ion"), "other stays\r\nsrc the directory\r\n");
  std::string lines = dir.read("to/src/descript.ion");
  EXPECT_EQ(lines.size(), inside.size()) << lines;
  for (const char* line : {"a about a\r\n", "sub about sub\r\n", "nobody orphan\r\n"}) {
    EXPECT_NE(lines.find(line), std::string::npos) << line;
  }
}

TEST_F(CrossDeviceReplace, TheFileGoesAlsoWhereNamesCantBeExchanged) {
  const auto before = contents(dir.path("src"));
  // What stands aside for a moment is no item.
  struct Chain {
    static int onCall(const System::Call& call, void*) {
      if (std::string(call.name) == "renameExchange") return EINVAL;
      const bool item = std::string(call.path).ends_with("/src") &&
                        std::string(call.target).find(".td-") == std::string::npos;
      return item && std::string(call.name).starts_with("rename") ? EXDEV : 0;
    }
  };
  System::setPlaceHook(Chain::onCall, nullptr);
  EXPECT_EQ(move("src", "to/src"), Outcome::Done);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(contents(dir.path("to/src")), before);
  EXPECT_FALSE(dir.exists("src"));
  expectNoLeftovers();
}
