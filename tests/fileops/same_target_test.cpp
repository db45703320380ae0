#include "fileops/fileops_test.h"
#include "fileops/other_device.h"
#include "support/fault_hook.h"

// Items of one command that get one target name: what the command has made itself is never
// overwritten unasked.

namespace {

class SameTarget : public FileOpsTest {
 protected:
  void SetUp() override {
    FileOpsTest::SetUp();
    for (const char* name : {"one", "two", "to"}) dir.makeDir(name);
    dir.write("one/a", "first");
    dir.write("two/a", "second");
    setTime(dir.path("one/a"), 1500000000);
    setTime(dir.path("two/a"), 1600000000);
  }

  // Both as one command; the outcomes.
  std::pair<Outcome, Outcome> both(TransferKind kind, const std::string& first,
                                   const std::string& second, const std::string& target) {
    return both(kind, {first, target}, {second, target});
  }
  using Pair = std::pair<std::string, std::string>;
  std::pair<Outcome, Outcome> both(TransferKind kind, const Pair& first, const Pair& second) {
    RunningOperation operation(ui);
    operation.answers = answers;
    operation.foldNames = foldNames;
    Transfer transfer(operation, kind);
    const Outcome one = transfer.run(dir.path(first.first), dir.path(first.second), 1, 2);
    const Outcome two = transfer.run(dir.path(second.first), dir.path(second.second), 2, 2);
    operation.descriptions.flush();
    return {one, two};
  }

  bool foldNames = false;
};

constexpr OverwriteMode Modes[] = {OverwriteMode::Ask, OverwriteMode::All, OverwriteMode::None,
                                   OverwriteMode::AllOlder};

}  // namespace

TEST_F(SameTarget, TheSecondCopyAsksWhateverWasAnsweredBefore) {
  for (const OverwriteMode mode : Modes) {
    std::filesystem::remove(dir.path("to/x"));
    answers.overwrite = mode;
    ui.answers = {Answer::Skip};
    ui.questions.clear();
    EXPECT_EQ(both(TransferKind::Copy, "one/a", "two/a", "to/x"),
              std::pair(Outcome::Done, Outcome::LeftInPlace));
    EXPECT_EQ(asked(), Texts{ExistsQuestion}) << static_cast<int>(mode);
    EXPECT_EQ(ui.questions[0].buttons, AlertButtons::OverwriteMany);
    EXPECT_EQ(dir.read("to/x"), "first");
  }
}

TEST_F(SameTarget, TheSecondMoveAsksWhateverWasAnsweredBefore) {
  for (const bool otherDevice : {false, true}) {
    for (const OverwriteMode mode : Modes) {
      std::filesystem::remove(dir.path("to/x"));
      dir.write("one/a", "first");
      answers.overwrite = mode;
      ui.answers = {Answer::Skip};
      ui.questions.clear();
      std::unique_ptr<OtherDevice> other;
      if (otherDevice) other = std::make_unique<OtherDevice>();
      EXPECT_EQ(both(TransferKind::Move, "one/a", "two/a", "to/x"),
                std::pair(Outcome::Done, Outcome::LeftInPlace));
      EXPECT_EQ(asked(), Texts{ExistsQuestion}) << static_cast<int>(mode);
      EXPECT_EQ(dir.read("to/x"), "first");
      EXPECT_EQ(dir.read("two/a"), "second");
      EXPECT_FALSE(dir.exists("one/a"));
    }
  }
}

TEST_F(SameTarget, EachAnswerMeansWhatItSays) {
  const struct {
    int answer;
    Outcome outcome;
    const char* content;
  } rows[] = {{Answer::Yes, Outcome::Done, "second"},
              {Answer::All, Outcome::Done, "second"},
              {Answer::AllOlder, Outcome::Done, "second"},
              {Answer::None, Outcome::LeftInPlace, "first"},
              {Answer::Cancel, Outcome::Cancelled, "first"}};
  for (const auto& row : rows) {
    std::filesystem::remove(dir.path("to/x"));
    answers.overwrite = OverwriteMode::All;
    ui.answers = {row.answer};
    EXPECT_EQ(both(TransferKind::Copy, "one/a", "two/a", "to/x"),
              std::pair(Outcome::Done, row.outcome));
    EXPECT_EQ(dir.read("to/x"), row.content) << row.answer;
  }
}

TEST_F(SameTarget, WhatWasThereBeforeIsReplacedOnceUnasked) {
  dir.write("to/x", "old");
  answers.overwrite = OverwriteMode::All;
  ui.answers = {Answer::Skip};
  for (const TransferKind kind : {TransferKind::Copy, TransferKind::Move}) {
    EXPECT_EQ(both(kind, "one/a", "two/a", "to/x"), std::pair(Outcome::Done, Outcome::LeftInPlace));
    EXPECT_EQ(dir.read("to/x"), "first");
    ui.answers = {Answer::Skip};
  }
  EXPECT_EQ(asked(), Texts(2, ExistsQuestion));
}

TEST_F(SameTarget, DirectoriesStillMergeButTheirMembersAsk) {
  for (const TransferKind kind : {TransferKind::Copy, TransferKind::Move}) {
    for (const char* name : {"one", "two", "one/sub", "two/sub"}) dir.makeDir(name);
    dir.write("one/a", "first");
    dir.write("two/a", "second");
    dir.write("one/sub/b", "first b");
    dir.write("two/sub/b", "second b");
    dir.write("two/sub/only", "only");
    answers.overwrite = OverwriteMode::All;
    ui.answers = {Answer::Skip, Answer::Skip};
    ui.questions.clear();
    EXPECT_EQ(both(kind, "one", "two", "to/tree"), std::pair(Outcome::Done, Outcome::LeftInPlace));
    EXPECT_EQ(asked(), Texts(2, ExistsQuestion));
    EXPECT_EQ(dir.read("to/tree/a"), "first");
    EXPECT_EQ(dir.read("to/tree/sub/b"), "first b");
    EXPECT_EQ(dir.read("to/tree/sub/only"), "only");
    EXPECT_EQ(dir.read("two/sub/b"), "second b");
    std::filesystem::remove_all(dir.path("to/tree"));
  }
}

TEST_F(SameTarget, MembersThatWereMergedIntoAnOldDirectoryAskAsWell) {
  for (const char* name : {"to/tree", "to/tree/sub", "one/sub", "two/sub"}) dir.makeDir(name);
  for (const char* name : {"to/tree/sub/b", "one/sub/b", "two/sub/b"}) dir.write(name, name);
  answers.overwrite = OverwriteMode::All;
  ui.answers = {Answer::Skip, Answer::Skip};
  EXPECT_EQ(both(TransferKind::Copy, "one", "two", "to/tree"),
            std::pair(Outcome::Done, Outcome::LeftInPlace));
  EXPECT_EQ(asked(), Texts(2, ExistsQuestion));
  EXPECT_EQ(dir.read("to/tree/sub/b"), "one/sub/b");
}

TEST_F(SameTarget, ItIsKnownThroughAnotherPathToo) {
  dir.link("to", "door");
  answers.overwrite = OverwriteMode::All;
  ui.answers = {Answer::Skip};
  EXPECT_EQ(both(TransferKind::Copy, {"one/a", "to/x"}, {"two/a", "door/x"}),
            std::pair(Outcome::Done, Outcome::LeftInPlace));
  EXPECT_EQ(asked(), Texts{ExistsQuestion});
  EXPECT_EQ(dir.read("to/x"), "first");
}

TEST_F(SameTarget, ADirectoryDoesntReplaceTheFileThatWasJustMadeUnasked) {
  answers.overwrite = OverwriteMode::All;
  for (const TransferKind kind : {TransferKind::Copy, TransferKind::Move}) {
    ui.answers = {Answer::Skip};
    ui.questions.clear();
    EXPECT_EQ(both(kind, "one/a", "two", "to/x"), std::pair(Outcome::Done, Outcome::LeftInPlace));
    EXPECT_EQ(asked(), Texts{ExistsQuestion});
    EXPECT_EQ(dir.read("to/x"), "first");
    std::filesystem::remove(dir.path("to/x"));
  }
}

TEST_F(SameTarget, NamesThatFoldToOneAskAlsoInADirectoryOfTheCommandsOwn) {
  foldNames = true;
  dir.write("one/A", "capital");
  answers.overwrite = OverwriteMode::All;
  ui.answers = {Answer::Skip};
  EXPECT_EQ(both(TransferKind::Copy, {"one", "to/one"}, {"two", "to/two"}),
            std::pair(Outcome::LeftInPlace, Outcome::Done));
  EXPECT_EQ(asked(), Texts{ExistsQuestion});
}

TEST_F(SameTarget, AnotherCommandKnowsNothingOfIt) {
  answers.overwrite = OverwriteMode::All;
  EXPECT_EQ(copy("one/a", "to/x"), Outcome::Done);
  EXPECT_EQ(copy("two/a", "to/x"), Outcome::Done);
  EXPECT_EQ(dir.read("to/x"), "second");
}

TEST_F(SameTarget, KnowingItCostsNothingInAFreshTreeAndOneLookElsewhere) {
  constexpr int Files = 100;
  for (int i = 0; i < Files; ++i) dir.write("one/f" + std::to_string(i), "text");
  const auto looks = [&](const char* target) {
    const FaultHook calls;
    EXPECT_EQ(copy("one", target), Outcome::Done);
    return calls.calls("statAt");
  };
  EXPECT_LT(looks("to/fresh"), 10);
  dir.makeDir("to/old");
  EXPECT_LT(looks("to/old"), 5 * Files);
}
