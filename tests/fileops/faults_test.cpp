#include <functional>

#include "fileops/fileops_test.h"
#include "fileops/other_device.h"

// Every system call of an operation fails in turn, or the process is killed there; afterwards no
// byte may be missing.

namespace {

using Contents = std::map<std::string, std::string>;

constexpr int Killed = 77;

// Lets the call `number` fail or end the process, and notes which one it was.
struct NthCall {
  int number = 0;
  int error = 0;  // 0 kills
  int seen = 0;
  std::string call = {};

  static int onCall(const char* name, const char*, void* context) {
    auto* self = static_cast<NthCall*>(context);
    if (++self->seen != self->number) return 0;
    self->call = name;
    if (self->error == 0) _exit(Killed);
    return self->error;
  }
};

bool isLeftover(const std::string& path) {
  return path.find(".td-") != std::string::npos;
}

// What a scenario starts from and what may be found afterwards.
struct Scenario {
  const char* name;
  TransferKind kind;
  bool otherDevice;
  OverwriteMode mode;
  const char* source;
  const char* target;

  friend void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.name; }
};

// Thousands of small directories are made; in memory, where the system has such a place, that is
// quick.
class InMemory : public FileOpsTest {
 protected:
  void SetUp() override {
    FileOpsTest::SetUp();
    if (access(Memory, W_OK) == 0) setenv("TMPDIR", Memory, 1);
  }
  void TearDown() override { unsetenv("TMPDIR"); }

 private:
  static constexpr char Memory[] = "/dev/shm";
};

class Faults : public InMemory, public testing::WithParamInterface<Scenario> {
 protected:
  static void build(const TempDir& place) {
    for (const char* name :
         {"src", "src/sub", "src/sub/deep", "dst", "dst/tree", "dst/tree/sub", "outside"}) {
      place.makeDir(name);
    }
    place.write("src/a", "source a");
    place.write("src/sub/b", "source b");
    place.write("src/sub/deep/c", std::string(300000, 'c'));
    place.link("../outside/precious", "src/sub/link");
    place.write("src/sub/descript.ion", "b about b\r\nnobody orphan\r\n");
    place.write("dst/file", "old file");
    place.write("dst/tree/sub/b", "old b");
    place.write("dst/tree/other", "other");
    place.write("dst/tree/sub/descript.ion", "b old line\r\n");
    place.write("outside/precious", "precious");
  }

  Outcome operate(const TempDir& place, ScriptedUi& screen, System::Hook hook, void* context) {
    const Scenario& scenario = GetParam();
    RunningOperation operation(screen);
    operation.answers.overwrite = scenario.mode;
    std::unique_ptr<OtherDevice> other;
    if (scenario.otherDevice) {
      other = std::make_unique<OtherDevice>(hook, context);
    } else {
      System::setHook(hook, context);
    }
    const Outcome outcome =
        Transfer(operation, scenario.kind)
            .run(place.path(scenario.source), place.path(scenario.target), 1, 1);
    operation.descriptions.flush();
    other.reset();
    System::setHook(nullptr, nullptr);
    return outcome;
  }

  // The number of calls that an undisturbed run makes.
  int countCalls() {
    const TempDir place;
    build(place);
    NthCall count;
    ScriptedUi screen;
    EXPECT_EQ(operate(place, screen, NthCall::onCall, &count), Outcome::Done);
    return count.seen;
  }

  void expectInvariants(const TempDir& place, const Contents& before, Outcome outcome,
                        bool leftoversAllowed, const std::string& where) {
    const Scenario& scenario = GetParam();
    const Contents after = contents(place.path());
    const std::string source = scenario.source;
    const std::string target = scenario.target;
    for (const auto& [path, what] : after) {
      if (isLeftover(path)) {
        EXPECT_TRUE(leftoversAllowed) << where << ": left over " << path;
      }
    }
    EXPECT_EQ(after.at("outside/precious"), "file precious") << where;
    for (const auto& [path, what] : before) {
      const bool description = path.ends_with("descript.ion");
      const bool ofSource = path == source || path.starts_with(source + "/");
      if (ofSource && !description) {
        const std::string counterpart = target + path.substr(source.size());
        expectOneWhole(after, path, counterpart, what, outcome, where);
      } else if (!ofSource && !description && path != target) {
        expectOldOrNew(after, before, path, what, where);
      } else if (!ofSource && path == target && !description) {
        EXPECT_TRUE(after.contains(path)) << where << ": lost " << path;
      }
    }
    expectLines(after, where);
  }

 private:
  void expectOneWhole(const Contents& after, const std::string& path,
                      const std::string& counterpart, const std::string& what, Outcome outcome,
                      const std::string& where) {
    const auto here = after.find(path);
    const auto there = after.find(counterpart);
    const bool copy = GetParam().kind == TransferKind::Copy;
    if (copy) {
      ASSERT_TRUE(here != after.end()) << where << ": the source " << path << " is gone";
    }
    // Killed between exchanging the names of a directory and an old file and removing that file.
    const bool exchanged = !copy && path == GetParam().source && there != after.end() &&
                           there->second == what && here != after.end() &&
                           here->second == "file old file";
    if (here != after.end() && !exchanged) {
      EXPECT_EQ(here->second, what) << where << ": the source " << path << " changed";
    } else {
      ASSERT_TRUE(there != after.end()) << where << ": " << path << " is nowhere";
      EXPECT_EQ(there->second, what) << where;
    }
    // A link is followed by a copy, so only the sides of files are compared.
    if (outcome == Outcome::Done && what.starts_with("file ")) {
      ASSERT_TRUE(there != after.end()) << where << ": no target " << counterpart;
      EXPECT_EQ(there->second, what) << where;
    }
  }

  // Something of the target's side: as it was, or what the source has for it.
  void expectOldOrNew(const Contents& after, const Contents& before, const std::string& path,
                      const std::string& what, const std::string& where) {
    const std::string source = GetParam().source;
    const std::string target = GetParam().target;
    const auto now = after.find(path);
    ASSERT_TRUE(now != after.end()) << where << ": lost " << path;
    if (now->second == what) return;
    ASSERT_TRUE(path.starts_with(target + "/")) << where << ": touched " << path;
    EXPECT_EQ(now->second, before.at(source + path.substr(target.size()))) << where << ": " << path;
  }

  // A text of a description stands in one of the files.
  void expectLines(const Contents& after, const std::string& where) {
    std::string all;
    for (const auto& [path, what] : after) {
      if (path.ends_with("descript.ion") || isLeftover(path)) all += what;
    }
    EXPECT_NE(all.find("about b"), std::string::npos) << where;
    EXPECT_NE(all.find("orphan"), std::string::npos) << where;
  }
};

std::string nameOf(const testing::TestParamInfo<Scenario>& info) {
  return info.param.name;
}

constexpr Scenario Scenarios[] = {
    {"CopyOfAFile", TransferKind::Copy, false, OverwriteMode::Ask, "src/a", "dst/new"},
    {"CopyOverAFile", TransferKind::Copy, false, OverwriteMode::All, "src/a", "dst/file"},
    {"CopyOfATree", TransferKind::Copy, false, OverwriteMode::Ask, "src", "dst/new"},
    {"CopyMergingTrees", TransferKind::Copy, false, OverwriteMode::All, "src", "dst/tree"},
    {"CopyOfATreeOverAFile", TransferKind::Copy, false, OverwriteMode::All, "src", "dst/file"},
    {"MoveOfAFile", TransferKind::Move, false, OverwriteMode::Ask, "src/a", "dst/new"},
    {"MoveOverAFile", TransferKind::Move, false, OverwriteMode::All, "src/a", "dst/file"},
    {"MoveOfATree", TransferKind::Move, false, OverwriteMode::Ask, "src", "dst/new"},
    {"MoveMergingTrees", TransferKind::Move, false, OverwriteMode::All, "src", "dst/tree"},
    {"MoveOfATreeOverAFile", TransferKind::Move, false, OverwriteMode::All, "src", "dst/file"},
    {"MoveOfAFileToAnotherDevice", TransferKind::Move, true, OverwriteMode::Ask, "src/a",
     "dst/new"},
    {"MoveOverAFileOnAnotherDevice", TransferKind::Move, true, OverwriteMode::All, "src/a",
     "dst/file"},
    {"MoveOfATreeToAnotherDevice", TransferKind::Move, true, OverwriteMode::Ask, "src", "dst/new"},
    {"MoveMergingTreesOnAnotherDevice", TransferKind::Move, true, OverwriteMode::All, "src",
     "dst/tree"},
};

}  // namespace

TEST_P(Faults, EveryCallFailingInTurnLosesNothing) {
  const int calls = countCalls();
  const struct {
    const char* name;
    int answer;
  } rules[] = {{"skip", Answer::Skip}, {"cancel", Answer::Cancel}};
  for (const int error : {EIO, ENOSPC, EACCES}) {
    for (const auto& rule : rules) {
      for (int number = 1; number <= calls; ++number) {
        const TempDir place;
        build(place);
        const Contents before = contents(place.path());
        NthCall fault{number, error};
        ScriptedUi screen;
        screen.rule = [&rule](const auto& question) {
          return question.buttons == AlertButtons::OkCancel && rule.answer == Answer::Skip
                     ? Answer::Yes
                     : rule.answer;
        };
        const Outcome outcome = operate(place, screen, NthCall::onCall, &fault);
        const std::string where = "call " + std::to_string(number) + " (" + fault.call +
                                  ") fails with " + std::to_string(error) + ", " + rule.name;
        // What may not be removed can't be cleaned up.
        const bool cleanUpFailed =
            fault.call == "unlinkAt" || fault.call == "renameNoReplace" || fault.call == "unlink";
        expectInvariants(place, before, outcome, cleanUpFailed, where);
        if (HasFailure()) return;
      }
    }
  }
}

TEST_P(Faults, AfterARetryEverythingIsDone) {
  const int calls = countCalls();
  for (int number = 1; number <= calls; ++number) {
    const TempDir place;
    build(place);
    const Contents before = contents(place.path());
    NthCall fault{number, ENOSPC};
    ScriptedUi screen;
    screen.rule = [](const auto& question) {
      return question.buttons == AlertButtons::RetrySkip ? Answer::Retry : Answer::Yes;
    };
    const Outcome outcome = operate(place, screen, NthCall::onCall, &fault);
    const std::string where = "call " + std::to_string(number) + " (" + fault.call + ")";
    expectInvariants(place, before, outcome, fault.call == "unlinkAt" || fault.call == "unlink",
                     where);
    if (!screen.questions.empty()) {
      EXPECT_EQ(outcome, Outcome::Done) << where;
    }
    if (HasFailure()) return;
  }
}

TEST_P(Faults, KilledAtEveryCallOneSideIsWhole) {
  const int calls = countCalls();
  for (int number = 1; number <= calls; ++number) {
    const TempDir place;
    build(place);
    const Contents before = contents(place.path());
    const int status = runInChild([&] {
      NthCall fault{number, 0};
      ScriptedUi screen;
      static_cast<void>(operate(place, screen, NthCall::onCall, &fault));
      return 0;
    });
    ASSERT_EQ(status, Killed) << number;
    expectInvariants(place, before, Outcome::LeftInPlace, true,
                     "killed at call " + std::to_string(number));
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(, Faults, testing::ValuesIn(Scenarios), nameOf);

namespace {

class DeleteFaults : public InMemory {
 protected:
  static void build(const TempDir& place) {
    for (const char* name : {"tree", "tree/sub", "tree/sub/deep", "outside"}) place.makeDir(name);
    place.write("tree/a", "a");
    place.write("tree/sub/b", "b");
    place.write("tree/sub/deep/c", "c");
    place.write("tree/sub/descript.ion", "b about b\r\n");
    place.link("../outside", "tree/link");
    place.write("outside/precious", "precious");
  }
  static Outcome operate(const TempDir& place, ScriptedUi& screen, NthCall& fault) {
    RunningOperation operation(screen);
    screen.treeAnswers = {TreeAnswer::Yes, TreeAnswer::Yes};
    System::setHook(NthCall::onCall, &fault);
    const Outcome outcome = removeDirectory(operation, place.wide("tree"));
    operation.descriptions.flush();
    System::setHook(nullptr, nullptr);
    return outcome;
  }
};

}  // namespace

TEST_F(DeleteFaults, EveryCallFailingInTurnTouchesNothingElseAndTellsTheTruth) {
  for (const int error : {EIO, EACCES, EBUSY}) {
    for (int number = 1;; ++number) {
      const TempDir place;
      build(place);
      NthCall fault{number, error};
      ScriptedUi screen;
      screen.rule = [](const auto&) { return Answer::Skip; };
      const Outcome outcome = operate(place, screen, fault);
      const std::string where = fault.call + " " + std::to_string(number);
      EXPECT_EQ(place.read("outside/precious"), "precious") << where;
      EXPECT_EQ(outcome == Outcome::Done, !place.exists("tree")) << where;
      if (HasFailure() || fault.seen < number) break;
    }
  }
}

TEST_F(DeleteFaults, KilledAnywhereNothingElseIsTouched) {
  for (int number = 1;; ++number) {
    const TempDir place;
    build(place);
    const int status = runInChild([&] {
      NthCall fault{number, 0};
      ScriptedUi screen;
      static_cast<void>(operate(place, screen, fault));
      return 0;
    });
    EXPECT_EQ(place.read("outside/precious"), "precious");
    for (const auto& [path, what] : contents(place.path())) {
      EXPECT_TRUE(path.starts_with("tree") || path.starts_with("outside")) << path;
    }
    if (HasFailure() || status != Killed) break;
  }
}
