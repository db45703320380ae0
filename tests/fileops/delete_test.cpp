#include <sys/resource.h>

#include "fileops/fileops_test.h"
#include "support/deep_tree.h"
#include "support/fault_hook.h"

namespace {

class Delete : public FileOpsTest {
 protected:
  void makeTree() {
    for (const char* name : {"tree", "tree/sub", "tree/sub/deep", "tree/empty", "outside"}) {
      dir.makeDir(name);
    }
    dir.write("tree/a", "a");
    dir.write("tree/sub/b.txt", "b");
    dir.write("tree/sub/deep/c.txt", "c");
    dir.write("outside/precious", "precious");
  }
  // A file in a directory from which an ordinary user can't remove it.
  void makeLocked(mode_t mode) {
    dir.openToAll();
    dir.makeDir("locked");
    for (const char* name : {"locked/f", "locked/g"}) {
      dir.write(name, "x");
      dir.chmod(name, mode);
    }
    dir.chmod("locked", 0555);
  }
};

constexpr char FileQuestion[] = "File is Read Only, Delete anyway?";
constexpr char DirectoryQuestion[] = "Directory is Read Only, Delete anyway?";

}  // namespace

TEST_F(Delete, AFileGoesAndTheWindowWithIt) {
  dir.write("a", "x");
  EXPECT_EQ(remove("a"), Outcome::Done);
  EXPECT_FALSE(dir.exists("a"));
  EXPECT_EQ(ui.deleted, Texts{dir.path("a")});
  EXPECT_EQ(ui.deleteUses[0], DeleteWindowUse::Open);
  EXPECT_EQ(ui.windowsClosed, 1);
}

TEST_F(Delete, ManyKeepTheWindowAndQuietOpensNone) {
  for (const char* name : {"a", "b"}) dir.write(name, "x");
  EXPECT_EQ(remove("a", DeleteMode::OneOfMany), Outcome::Done);
  EXPECT_EQ(remove("b", DeleteMode::Quiet), Outcome::Done);
  EXPECT_EQ(ui.windowsClosed, 0);
  EXPECT_EQ(ui.deleteUses, (std::vector{DeleteWindowUse::Open, DeleteWindowUse::IfOpen}));
}

TEST_F(Delete, AMissingFileIsToldUnlessForced) {
  ui.answers = {Answer::Yes, Answer::Cancel};
  EXPECT_EQ(remove("missing"), Outcome::Failed);
  EXPECT_EQ(remove("missing"), Outcome::Cancelled);
  EXPECT_EQ(asked(), Texts(2, "File not found"));
  EXPECT_EQ(remove("missing", DeleteMode::Forced), Outcome::LeftInPlace);
  EXPECT_EQ(ui.questions.size(), 2U);
}

TEST_F(Delete, AFileInThePlaceOfADirectoryIsPathNotFound) {
  dir.write("file", "x");
  ui.answers = {Answer::Yes};
  EXPECT_EQ(remove("file/inside"), Outcome::Failed);
  EXPECT_EQ(asked(), Texts{"Path not found"});
}

TEST_F(Delete, ForcedChangesNoStandingAnswer) {
  dir.write("a", "x");
  for (const auto answer : {StandingAnswer::Ask, StandingAnswer::None, StandingAnswer::All}) {
    answers.readOnly = answer;
    EXPECT_EQ(remove("a", DeleteMode::Forced),
              answer == StandingAnswer::Ask ? Outcome::Done : Outcome::LeftInPlace);
    EXPECT_EQ(answers.readOnly, answer);
  }
}

TEST_F(Delete, ADescriptionGoesWithItsFile) {
  dir.write("descript.ion", "a about a\r\nb about b\r\n");
  dir.write("a", "x");
  EXPECT_EQ(remove("a"), Outcome::Done);
  EXPECT_EQ(dir.read("descript.ion"), "b about b\r\n");
  dir.makeDir("b");
  EXPECT_EQ(removeDir("b"), Outcome::Done);
  EXPECT_FALSE(dir.exists("descript.ion"));
}

TEST_F(Delete, ARefusedFileThatIsntReadOnlyIsAccessDenied) {
  makeLocked(0644);
  EXPECT_EQ(runAsUser([&] {
              ui.answers = {Answer::Retry, Answer::Skip, Answer::Cancel};
              EXPECT_EQ(remove("locked/f"), Outcome::Failed);
              EXPECT_EQ(remove("locked/f"), Outcome::Cancelled);
              EXPECT_EQ(asked(), Texts(3, "Access Denied"));
            }),
            0);
}

TEST_F(Delete, AReadOnlyFileIsAskedAboutWithAllAnswers) {
  makeLocked(0444);
  EXPECT_EQ(runAsUser([&] {
              ui.answers = {Answer::Skip, Answer::Cancel, Answer::Yes, Answer::All};
              EXPECT_EQ(remove("locked/f"), Outcome::LeftInPlace);
              EXPECT_EQ(remove("locked/f"), Outcome::Cancelled);
              EXPECT_EQ(remove("locked/f"), Outcome::LeftInPlace) << "the directory decides";
              EXPECT_EQ(remove("locked/f"), Outcome::LeftInPlace);
              EXPECT_EQ(answers.readOnly, StandingAnswer::Ask)
                  << "a second failure takes the answer back";
              EXPECT_EQ(asked(), Texts(4, FileQuestion));
              EXPECT_EQ(ui.questions[0].buttons, AlertButtons::OverwriteOne);
              EXPECT_EQ(ui.questions[0].colour, AlertColour::Error);
              EXPECT_EQ(ui.questions[0].caption, dir.path("locked/f"));
            }),
            0);
}

TEST_F(Delete, NoneLeavesAllLaterReadOnlyFilesUnasked) {
  makeLocked(0444);
  EXPECT_EQ(runAsUser([&] {
              ui.answers = {Answer::None};
              EXPECT_EQ(remove("locked/f"), Outcome::LeftInPlace);
              EXPECT_EQ(remove("locked/g"), Outcome::LeftInPlace);
              EXPECT_EQ(ui.questions.size(), 1U);
            }),
            0);
}

TEST_F(Delete, AfterGoOnTheSecondTryDecides) {
  dir.write("a", "x");
  dir.chmod("a", 0444);
  struct FirstFails {
    int seen = 0;
    static int onCall(const char* call, const char*, void* context) {
      auto* self = static_cast<FirstFails*>(context);
      return std::string(call) == "unlinkAt" && ++self->seen == 1 ? EACCES : 0;
    }
  };
  FirstFails first;
  System::setHook(FirstFails::onCall, &first);
  ui.answers = {Answer::Yes};
  EXPECT_EQ(remove("a"), Outcome::Done);
  System::setHook(nullptr, nullptr);
  EXPECT_FALSE(dir.exists("a"));
}

TEST_F(Delete, AnotherErrorIsToldAndRetryGoesRoundAgain) {
  dir.write("a", "x");
  const FaultHook faults("unlinkAt", EBUSY);
  ui.answers = {Answer::Retry, Answer::Retry, Answer::Skip};
  EXPECT_EQ(remove("a"), Outcome::Failed);
  EXPECT_EQ(asked(), Texts(3, "Device or resource busy (16)"));
}

TEST_F(Delete, AnEmptyDirectoryGoesWithoutAQuestionAndTheTreesAreTold) {
  dir.makeDir("empty");
  EXPECT_EQ(removeDir("empty"), Outcome::Done);
  EXPECT_EQ(ui.gone, Texts{dir.path("empty")});
}

TEST_F(Delete, TheParentIsNeverRemoved) {
  RunningOperation operation(ui);
  EXPECT_EQ(removeDirectory(operation, L".."), Outcome::LeftInPlace);
}

TEST_F(Delete, AFullDirectoryIsAskedAboutAndRefusalEndsTheCommand) {
  makeTree();
  ui.treeAnswers = {TreeAnswer::No, TreeAnswer::Yes};
  EXPECT_EQ(removeDir("tree"), Outcome::Cancelled);
  EXPECT_TRUE(dir.exists("tree/sub/deep/c.txt"));
  EXPECT_EQ(removeDir("tree"), Outcome::Done);
  EXPECT_EQ(ui.treeQuestions, Texts(2, dir.path("tree")));
  EXPECT_FALSE(dir.exists("tree"));
  EXPECT_EQ(ui.gone.size(), 4U);
  EXPECT_EQ(ui.gone.back(), dir.path("tree"));
  EXPECT_EQ(ui.windowsClosed, 1);
}

TEST_F(Delete, AllAtTheTreeQuestionHoldsForTheRest) {
  makeTree();
  dir.makeDir("second");
  dir.write("second/x", "x");
  ui.treeAnswers = {TreeAnswer::All};
  EXPECT_EQ(removeDir("tree"), Outcome::Done);
  EXPECT_EQ(removeDir("second"), Outcome::Done);
  EXPECT_EQ(ui.treeQuestions.size(), 1U);
}

TEST_F(Delete, WithTheConfirmationOffATreeGoesAndReadOnlyQuestionsStillCome) {
  GlobalOptions::Confirmations = ConfirmationOff::DeleteTree;
  makeLocked(0444);
  EXPECT_EQ(runAsUser([&] {
              ui.answers = {Answer::Skip, Answer::Skip};
              EXPECT_EQ(removeDir("locked"), Outcome::LeftInPlace);
              EXPECT_EQ(asked(), Texts(2, FileQuestion));
              EXPECT_TRUE(ui.treeQuestions.empty());
            }),
            0);
  makeTree();
  EXPECT_EQ(removeDir("tree"), Outcome::Done);
}

TEST_F(Delete, LinksGoAndWhatTheyLeadToStaysAtEveryDepth) {
  makeTree();
  dir.link("../outside", "tree/todir");
  dir.link("../../outside", "tree/sub/todir");
  dir.link("../outside/precious", "tree/tofile");
  dir.link("nowhere", "tree/sub/dangling");
  ui.treeAnswers = {TreeAnswer::Yes};
  EXPECT_EQ(removeDir("tree"), Outcome::Done);
  EXPECT_FALSE(dir.exists("tree"));
  EXPECT_EQ(dir.read("outside/precious"), "precious");
  dir.link("outside", "door");
  EXPECT_EQ(remove("door"), Outcome::Done);
  EXPECT_EQ(dir.read("outside/precious"), "precious");
}

TEST_F(Delete, ALinkGivenAsADirectoryIsNotEntered) {
  makeTree();
  dir.link("outside", "door");
  ui.answers = {Answer::Yes};
  EXPECT_EQ(removeDir("door"), Outcome::Failed);
  EXPECT_EQ(asked(), Texts{"Directory does not exist, cannot delete"});
  EXPECT_EQ(dir.read("outside/precious"), "precious");
}

TEST_F(Delete, ADirectoryThatIsSwappedForALinkMeanwhileIsNotEntered) {
  makeTree();
  struct Swap {
    const TempDir& dir;
    static int onCall(const char* call, const char* path, void* context) {
      auto* self = static_cast<Swap*>(context);
      if (std::string(call) != "openAt" || std::string(path) != "sub") return 0;
      std::filesystem::rename(self->dir.path("tree/sub"), self->dir.path("moved"));
      self->dir.link("../outside", "tree/sub");
      return 0;
    }
  };
  Swap swap{dir};
  ui.treeAnswers = {TreeAnswer::Yes};
  System::setHook(Swap::onCall, &swap);
  EXPECT_EQ(removeDir("tree"), Outcome::Done);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(dir.read("outside/precious"), "precious");
  EXPECT_EQ(dir.read("moved/b.txt"), "b");
}

TEST_F(Delete, APatternTakesOnlyWhatFitsAndFullDirectoriesStayUnasked) {
  makeTree();
  ui.treeAnswers = {TreeAnswer::Yes};
  EXPECT_EQ(removeDir("tree", L"*.txt"), Outcome::LeftInPlace);
  EXPECT_EQ(contents(dir.path("tree")).size(), 1U) << "emptied directories go as well";
  EXPECT_TRUE(dir.exists("tree/a"));
  EXPECT_EQ(ui.treeQuestions.size(), 1U);
}

TEST_F(Delete, EscStopsTheTreeBeforeTheNextName) {
  makeTree();
  for (int i = 0; i < 20; ++i) dir.write("tree/f" + std::to_string(i), "x");
  ui.treeAnswers = {TreeAnswer::Yes};
  ui.escapeAtLook = 5;
  EXPECT_EQ(removeDir("tree"), Outcome::Cancelled);
  EXPECT_TRUE(dir.exists("tree"));
  EXPECT_GE(contents(dir.path("tree")).size(), 20U);
}

TEST_F(Delete, BreakStopsTheTree) {
  makeTree();
  ui.treeAnswers = {TreeAnswer::Yes};
  const BreakScope armed;
  requestBreak();
  EXPECT_EQ(removeDir("tree"), Outcome::Cancelled);
  EXPECT_EQ(contents(dir.path("tree")).size(), 6U);
}

TEST_F(Delete, AFileThatFailsIsPassedOverAndItsDirectoryStays) {
  makeTree();
  struct Busy {
    static int onCall(const char* call, const char* path, void*) {
      return std::string(call) == "unlinkAt" && std::string(path) == "b.txt" ? EBUSY : 0;
    }
  };
  ui.treeAnswers = {TreeAnswer::Yes};
  ui.answers = {Answer::Skip};
  System::setHook(Busy::onCall, nullptr);
  EXPECT_EQ(removeDir("tree"), Outcome::LeftInPlace);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(contents(dir.path("tree")).size(), 2U);
  EXPECT_EQ(ui.questions[0].caption, dir.path("tree/sub/b.txt"));
}

TEST_F(Delete, AnUnreadableDirectoryGoesWhenItIsEmptyAndIsToldOtherwise) {
  dir.openToAll();
  EXPECT_EQ(runAsUser([&] {
              dir.makeDir("mine");
              dir.makeDir("mine/empty");
              dir.makeDir("mine/full");
              dir.write("mine/full/x", "x");
              dir.chmod("mine/empty", 0000);
              dir.chmod("mine/full", 0000);
              ui.treeAnswers = {TreeAnswer::Yes};
              ui.answers = {Answer::Skip};
              EXPECT_EQ(removeDir("mine"), Outcome::LeftInPlace);
              EXPECT_EQ(asked(), Texts{"Access Denied"});
              EXPECT_FALSE(dir.exists("mine/empty"));
              EXPECT_TRUE(dir.exists("mine/full"));
            }),
            0);
}

TEST_F(Delete, AFullDirectoryIsAskedAboutAlsoWhereItMayNotGoItself) {
  dir.openToAll();
  dir.makeDir("locked");
  dir.makeDir("locked/d");
  dir.write("locked/d/x", "x");
  ASSERT_EQ(chmod(dir.path("locked/d").c_str(), 0777), 0);
  dir.chmod("locked", 0555);
  EXPECT_EQ(runAsUser([&] {
              ui.treeAnswers = {TreeAnswer::No, TreeAnswer::Yes};
              EXPECT_EQ(removeDir("locked/d"), Outcome::Cancelled);
              EXPECT_TRUE(dir.exists("locked/d/x"));
              ui.answers = {Answer::Skip};
              EXPECT_EQ(removeDir("locked/d"), Outcome::Failed);
              EXPECT_FALSE(dir.exists("locked/d/x"));
              EXPECT_TRUE(dir.exists("locked/d"));
              EXPECT_EQ(ui.treeQuestions.size(), 2U);
              EXPECT_EQ(asked(), Texts{"Access Denied"});
            }),
            0);
}

TEST_F(Delete, AReadOnlyDirectoryIsAskedAboutAndNoneAsksAgain) {
  dir.openToAll();
  dir.makeDir("locked");
  dir.makeDir("locked/d");
  dir.chmod("locked/d", 0555);
  dir.chmod("locked", 0555);
  EXPECT_EQ(runAsUser([&] {
              ui.answers = {Answer::None, Answer::None, Answer::Skip};
              EXPECT_EQ(removeDir("locked/d"), Outcome::LeftInPlace);
              EXPECT_EQ(asked(), Texts(3, DirectoryQuestion));
              ui.answers = {Answer::Cancel};
              EXPECT_EQ(removeDir("locked/d"), Outcome::Cancelled);
              ui.answers = {Answer::All};
              EXPECT_EQ(removeDir("locked/d"), Outcome::LeftInPlace);
              EXPECT_EQ(answers.readOnly, StandingAnswer::Ask);
              EXPECT_EQ(ui.questions[0].colour, AlertColour::Error);
            }),
            0);
}

TEST_F(Delete, ARefusedDirectoryThatIsntReadOnlyIsAccessDenied) {
  dir.openToAll();
  dir.makeDir("locked");
  dir.makeDir("locked/d");
  dir.chmod("locked", 0555);
  EXPECT_EQ(runAsUser([&] {
              ui.answers = {Answer::Skip};
              EXPECT_EQ(removeDir("locked/d"), Outcome::Failed);
              EXPECT_EQ(asked(), Texts{"Access Denied"});
            }),
            0);
}

TEST_F(Delete, ADirectoryThatIsNoneOrMissingIsTold) {
  dir.write("file", "x");
  ui.answers = {Answer::Yes, Answer::Yes};
  EXPECT_EQ(removeDir("file"), Outcome::Failed);
  EXPECT_EQ(removeDir("missing"), Outcome::Failed);
  EXPECT_EQ(asked(), (Texts{"Directory does not exist, cannot delete", "File not found"}));
  EXPECT_EQ(ui.questions[0].buttons, AlertButtons::Ok);
  EXPECT_TRUE(dir.exists("file"));
}

TEST_F(Delete, NamesOfDotsAreRealNames) {
  for (const char* name : {"a", "a/b", "a/b/c"}) dir.makeDir(name);
  dir.write("a/keep", "x");
  dir.write("a/b/c/...", "x");
  EXPECT_EQ(remove("a/b/c/..."), Outcome::Done);
  dir.makeDir("a/b/c/...");
  EXPECT_EQ(removeDir("a/b/c/..."), Outcome::Done);
  EXPECT_TRUE(dir.exists("a/b/c"));
  EXPECT_EQ(dir.read("a/keep"), "x");
}

TEST_F(Delete, AThousandLevelsGoWithFewDescriptors) {
  makeDeepTree(dir.path("deep"), 1000, std::string(100, 'n'));
  EXPECT_EQ(runInChild([&] {
              const rlimit limit{100, 100};
              setrlimit(RLIMIT_NOFILE, &limit);
              ui.treeAnswers = {TreeAnswer::Yes};
              EXPECT_EQ(removeDir("deep"), Outcome::Done);
            }),
            0);
  EXPECT_FALSE(dir.exists("deep"));
}

TEST_F(Delete, ATreeCostsOneCallForEachFile) {
  makeTree();
  for (int i = 0; i < 500; ++i) dir.write("tree/f" + std::to_string(i), "x");
  ui.treeAnswers = {TreeAnswer::Yes};
  const FaultHook calls;
  EXPECT_EQ(removeDir("tree"), Outcome::Done);
  EXPECT_EQ(calls.calls("unlinkAt"), 503 + 4 + 1) << "files, directories and the first try";
  EXPECT_EQ(calls.calls("statAt") + calls.calls("lstat"), 0);
}

TEST_F(Delete, WhatIsLeftInADirectoryKeepsItsLines) {
  makeTree();
  dir.write("tree/descript.ion", "a about a\r\nsub about sub\r\n");
  ui.treeAnswers = {TreeAnswer::Yes};
  EXPECT_EQ(removeDir("tree", L"a"), Outcome::LeftInPlace);
  EXPECT_EQ(dir.read("tree/descript.ion"), "sub about sub\r\n");
}

TEST_F(Delete, AQuietCleanUpLeavesTheStandingAnswersAlone) {
  makeTree();
  answers.readOnly = StandingAnswer::All;
  // The copy can't get its name and is cleaned up, where nothing may be removed.
  struct Refused {
    int unlinks = 0;
    static int onCall(const char* call, const char* path, void* context) {
      const std::string name = call;
      const bool unlink = name == "unlinkAt";
      static_cast<Refused*>(context)->unlinks += unlink;
      const bool inTheMaking = std::string(path).find(".td-") != std::string::npos;
      return unlink || (name.starts_with("rename") && inTheMaking) ? EACCES : 0;
    }
  };
  Refused refused;
  ui.rule = [](const auto&) { return Answer::Skip; };
  System::setHook(Refused::onCall, &refused);
  EXPECT_NE(copy("tree", "new"), Outcome::Done);
  System::setHook(nullptr, nullptr);
  EXPECT_GE(refused.unlinks, 3) << "the clean-up was tried";
  EXPECT_FALSE(dir.exists("new"));
  EXPECT_EQ(answers.readOnly, StandingAnswer::All);
}

TEST_F(Delete, WhatStaysOfATreeKeepsItsLines) {
  makeTree();
  dir.write("tree/descript.ion", "a about a\r\nsub about sub\r\n");
  dir.write("tree/sub/descript.ion", "b.txt about b\r\n");
  struct Busy {
    static int onCall(const char* call, const char* path, void*) {
      return std::string(call) == "unlinkAt" && std::string(path) == "b.txt" ? EBUSY : 0;
    }
  };
  ui.treeAnswers = {TreeAnswer::Yes, TreeAnswer::Yes};
  ui.answers = {Answer::Skip};
  System::setHook(Busy::onCall, nullptr);
  EXPECT_EQ(removeDir("tree"), Outcome::LeftInPlace);
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(dir.read("tree/descript.ion"), "sub about sub\r\n");
  EXPECT_EQ(dir.read("tree/sub/descript.ion"), "b.txt about b\r\n");
  EXPECT_EQ(removeDir("tree"), Outcome::Done);
  EXPECT_FALSE(dir.exists("tree"));
}
