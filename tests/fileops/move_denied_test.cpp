#include "fileops/fileops_test.h"
#include "support/fault_hook.h"

// A move that the system refuses costs neither side, whoever it is that refuses: the directory that
// something is moved out of, the moved directory itself, or the directory it should go to.

namespace {

constexpr char Denied[] = "Access Denied";
constexpr char ReadOnlyQuestion[] = "File is Read Only, Delete anyway?";

class MoveDenied : public FileOpsTest {
 protected:
  void SetUp() override {
    FileOpsTest::SetUp();
    for (const char* name : {"src", "src/tree", "to"}) dir.makeDir(name);
    for (const char* name : {"src/a", "src/b", "src/tree/inside"}) {
      dir.write(name, std::string("new ") + name);
    }
    dir.openToAll();
    for (const char* name : {"src", "src/tree", "to"}) dir.chmod(name, 0777);
  }

  // An old file in the way, that anybody may write.
  void makeOld(const std::string& name) {
    dir.write(name, "old " + name);
    dir.chmod(name, 0666);
  }

  // Runs `check` as a user who passes no check of permissions, and expects the disk to be as it
  // was.
  template <class Check>
  void expectNothingLost(Check check) {
    const auto before = snapshot(dir.path());
    EXPECT_EQ(runAsUser(check), 0);
    EXPECT_EQ(snapshot(dir.path()), before);
  }
};

}  // namespace

TEST_F(MoveDenied, OutOfADirectoryThatMayNotBeWrittenTheOldTargetStays) {
  makeOld("to/a");
  dir.chmod("src", 0555);
  expectNothingLost([&] {
    ui.answers = {Answer::Yes, Answer::Retry, Answer::Skip, Answer::Yes, Answer::Cancel};
    EXPECT_EQ(move("src/a", "to/a"), Outcome::Failed);
    EXPECT_EQ(move("src/a", "to/a"), Outcome::Cancelled);
    EXPECT_EQ(asked(), (Texts{ExistsQuestion, Denied, Denied, ExistsQuestion, Denied}));
    EXPECT_EQ(ui.questions[1].caption, dir.path("src/a"));
  });
}

TEST_F(MoveDenied, WithAllEveryTargetStays) {
  for (const char* name : {"to/a", "to/b"}) makeOld(name);
  dir.chmod("src", 0555);
  expectNothingLost([&] {
    ui.answers = {Answer::All, Answer::Skip, Answer::Skip};
    EXPECT_EQ(move("src/a", "to/a"), Outcome::Failed);
    EXPECT_EQ(move("src/b", "to/b"), Outcome::Failed);
    EXPECT_EQ(asked(), (Texts{ExistsQuestion, Denied, Denied}));
  });
}

TEST_F(MoveDenied, InsideAMergeTheOldMembersStay) {
  dir.makeDir("to/tree");
  dir.chmod("to/tree", 0777);
  makeOld("to/tree/inside");
  dir.chmod("src/tree", 0555);
  expectNothingLost([&] {
    ui.answers = {Answer::Yes, Answer::Skip};
    EXPECT_EQ(move("src/tree", "to/tree"), Outcome::LeftInPlace);
    EXPECT_EQ(asked(), (Texts{ExistsQuestion, Denied}));
    EXPECT_EQ(ui.questions[1].caption, dir.path("src/tree/inside"));
  });
}

TEST_F(MoveDenied, ADirectoryDoesntCostTheFileThatItCantReplace) {
  makeOld("to/tree");
  dir.chmod("src", 0555);
  for (const int exchange : {0, EINVAL}) {
    expectNothingLost([&] {
      const FaultHook faults("renameExchange", exchange);
      ui.answers = {Answer::Yes, Answer::Skip};
      EXPECT_EQ(move("src/tree", "to/tree"), Outcome::Failed) << exchange;
      EXPECT_EQ(asked(), (Texts{ExistsQuestion, Denied}));
      EXPECT_EQ(ui.questions[1].caption, dir.path("src/tree"));
    });
  }
}

TEST_F(MoveDenied, ADirectoryThatItselfMayNotBeWrittenDoesntCostTheFile) {
  makeOld("to/tree");
  dir.chmod("src/tree", 0555);
  ASSERT_TRUE(!isRoot() || chown(dir.path("src/tree").c_str(), OrdinaryUser, OrdinaryUser) == 0);
  for (const int exchange : {0, EINVAL}) {
    expectNothingLost([&] {
      const FaultHook faults("renameExchange", exchange);
      ui.answers = {Answer::All, Answer::Skip};
      EXPECT_EQ(move("src/tree", "to/tree"), Outcome::Failed) << exchange;
      EXPECT_EQ(asked(), (Texts{ExistsQuestion, Denied}));
      EXPECT_EQ(ui.questions[1].caption, dir.path("src/tree"));
    });
  }
}

TEST_F(MoveDenied, AReadOnlyTargetStaysAsWell) {
  makeOld("to/a");
  dir.chmod("to/a", 0444);
  dir.chmod("src", 0555);
  expectNothingLost([&] {
    answers.overwrite = OverwriteMode::All;
    ui.answers = {Answer::Skip};
    EXPECT_EQ(move("src/a", "to/a"), Outcome::Failed);
    EXPECT_EQ(asked(), Texts{Denied}) << "it isn't the target that refuses";
  });
}

TEST_F(MoveDenied, WhereTheTargetsDirectoryRefusesAReadOnlyTargetIsAskedAbout) {
  makeOld("to/a");
  dir.chmod("to/a", 0444);
  dir.chmod("to", 0555);
  const struct {
    int answer;
    Outcome outcome;
    StandingAnswer standing;
  } rows[] = {{Answer::Yes, Outcome::LeftInPlace, StandingAnswer::Ask},
              {Answer::All, Outcome::LeftInPlace, StandingAnswer::Ask},
              {Answer::Skip, Outcome::LeftInPlace, StandingAnswer::Ask},
              {Answer::None, Outcome::LeftInPlace, StandingAnswer::None},
              {Answer::Cancel, Outcome::Cancelled, StandingAnswer::Ask}};
  for (const auto& row : rows) {
    expectNothingLost([&] {
      answers.overwrite = OverwriteMode::All;
      ui.answers = {row.answer};
      EXPECT_EQ(move("src/a", "to/a"), row.outcome) << row.answer;
      EXPECT_EQ(asked(), Texts{ReadOnlyQuestion});
      EXPECT_EQ(ui.questions[0].caption, dir.path("to/a"));
      EXPECT_EQ(answers.readOnly, row.standing) << row.answer;
    });
  }
}

TEST_F(MoveDenied, WhereTheTargetsDirectoryRefusesAPlainTargetIsNamedInTheBox) {
  makeOld("to/a");
  dir.chmod("to", 0555);
  expectNothingLost([&] {
    answers.overwrite = OverwriteMode::All;
    ui.answers = {Answer::Skip};
    EXPECT_EQ(move("src/a", "to/a"), Outcome::Failed);
    EXPECT_EQ(asked(), Texts{Denied});
    EXPECT_EQ(ui.questions[0].caption, dir.path("to/a"));
  });
}

// Some servers let names be removed from a directory that takes no new ones.
TEST_F(MoveDenied, NothingIsRemovedToMakeRoomForWhatIsRefused) {
  makeOld("to/a");
  for (const char* call : {"renameAt", "renameNoReplace"}) {
    const auto before = snapshot(dir.path());
    const FaultHook faults(call, EACCES);
    answers.overwrite = OverwriteMode::All;
    ui.answers = {Answer::Skip};
    EXPECT_EQ(move("src/a", "to/a"), Outcome::Failed) << call;
    EXPECT_EQ(asked(), Texts{Denied});
    EXPECT_EQ(snapshot(dir.path()), before) << call;
    ui.questions.clear();
  }
}
