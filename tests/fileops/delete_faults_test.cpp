#include "fileops/transfer_faults.h"

// The same for deleting: nothing else is touched, what is told is true, and what stays keeps its
// description.

namespace {

struct DeleteScenario {
  const char* name;
  const char* item;
  const wchar_t* pattern;  // null: the item is a file

  friend void PrintTo(const DeleteScenario& scenario, std::ostream* out) { *out << scenario.name; }
};

const DeleteScenario DeleteScenarios[] = {{"WholeTree", "tree", L"*"},
                                          {"FilesOfATree", "tree", L"*.txt"},
                                          {"OneFile", "tree/sub/b.txt", nullptr}};

// What stands where, and the line about it beside it.
const struct {
  const char* path;
  const char* file;
  const char* line;
} Lines[] = {{"tree", "descript.ion", "tree about tree\r\n"},
             {"tree/a.txt", "tree/descript.ion", "a.txt about a\r\n"},
             {"tree/sub", "tree/descript.ion", "sub about sub\r\n"},
             {"tree/sub/b.txt", "tree/sub/descript.ion", "b.txt about b\r\n"},
             {"tree/sub/deep", "tree/sub/descript.ion", "deep about deep\r\n"},
             {"tree/sub/z", "tree/sub/descript.ion", "z about z\r\n"}};

class DeleteFaults : public InMemory, public testing::WithParamInterface<DeleteScenario> {
 protected:
  static void build(const TempDir& place) {
    for (const char* name : {"tree", "tree/sub", "tree/sub/deep", "outside"}) place.makeDir(name);
    for (const char* name : {"tree/a.txt", "tree/sub/b.txt", "tree/sub/z", "tree/sub/deep/c.txt"}) {
      place.write(name, name);
    }
    std::map<std::string, std::string> descriptions;
    for (const auto& line : Lines) descriptions[line.file] += line.line;
    for (const auto& [file, lines] : descriptions) place.write(file, lines);
    place.link("../outside", "tree/link");
    place.write("outside/precious", "precious");
  }

  static Outcome operate(const TempDir& place, ScriptedUi& screen, Fault& fault) {
    const DeleteScenario& scenario = GetParam();
    RunningOperation operation(screen, ConfirmationOff::DeleteTree);
    System::setPlaceHook(Fault::onCall, &fault);
    const Outcome outcome =
        scenario.pattern ? removeDirectory(operation, place.wide(scenario.item), scenario.pattern)
                         : deleteFile(operation, place.wide(scenario.item), DeleteMode::One);
    operation.descriptions.flush();
    System::setHook(nullptr, nullptr);
    return outcome;
  }

  // How often the calls of an undisturbed run can be made to fail.
  static int countCalls() {
    const TempDir place;
    build(place);
    Fault none;
    ScriptedUi screen;
    static_cast<void>(operate(place, screen, none));
    EXPECT_GT(none.seen, 3);
    return none.seen;
  }

  void playAndLook(Fault fault, int answer, const std::string& below = "") {
    const TempDir place;
    build(place);
    if (!below.empty()) fault.directory = place.path(below);
    const Contents before = contents(place.path());
    ScriptedUi screen;
    screen.rule = [answer](const auto& question) {
      return question.buttons == AlertButtons::Ok ? Answer::Yes : answer;
    };
    const Outcome outcome = operate(place, screen, fault);
    const std::string where = fault.call + ", call " + std::to_string(fault.number) + ", error " +
                              std::to_string(fault.error) + " " + below;
    expectInvariants(place, before, fault, where);
    if (std::wstring(GetParam().pattern ? GetParam().pattern : L"*") == L"*") {
      EXPECT_EQ(outcome == Outcome::Done, !place.exists(GetParam().item)) << where;
    }
    if (!screen.questions.empty() && screen.rule(screen.questions[0]) == Answer::Cancel) {
      EXPECT_EQ(outcome, Outcome::Cancelled) << where;
    }
  }

  void expectInvariants(const TempDir& place, const Contents& before, const Fault& fault,
                        const std::string& where) {
    const Contents after = contents(place.path());
    for (const auto& [path, what] : after) {
      if (path.find(".td-") != std::string::npos) {
        EXPECT_TRUE(fault.reach == Fault::Reach::Kill ||
                    fault.refused({"unlink", "unlinkAt"}, place.path(path)))
            << where << ": left over " << path;
      } else if (!path.ends_with("descript.ion")) {
        ASSERT_TRUE(before.contains(path)) << where << ": new is " << path;
        EXPECT_EQ(what, before.at(path)) << where << ": " << path;
      }
    }
    for (const auto& [path, what] : before) {
      if (!path.starts_with(GetParam().item) && !path.ends_with("descript.ion")) {
        EXPECT_TRUE(after.contains(path)) << where << ": lost " << path;
      }
    }
    for (const auto& line : Lines) {
      if (!after.contains(line.path)) continue;
      EXPECT_NE(place.read(line.file).find(line.line), std::string::npos)
          << where << ": lost the line about " << line.path;
    }
  }
};

std::string nameOfDelete(const testing::TestParamInfo<DeleteScenario>& info) {
  return info.param.name;
}

}  // namespace

TEST_P(DeleteFaults, EveryCallFailingInTurnTouchesNothingElseAndTellsTheTruth) {
  const int calls = countCalls();
  for (const int error : {EIO, EACCES, EBUSY}) {
    for (const int answer : {Answer::Skip, Answer::Cancel}) {
      for (int number = 1; number <= calls && !HasFailure(); ++number) {
        playAndLook({number, error}, answer);
      }
    }
  }
}

TEST_P(DeleteFaults, CallsThatFailForEverTouchNothingElseAndTellTheTruth) {
  const int calls = countCalls();
  for (const int error : {EIO, EACCES, EROFS}) {
    for (const int answer : {Answer::Skip, Answer::Cancel}) {
      for (int number = 1; number <= calls && !HasFailure(); ++number) {
        playAndLook({number, error, Fault::Reach::SameName}, answer);
      }
    }
  }
}

TEST_P(DeleteFaults, ADirectoryThatFailsForEverCostsNothingElse) {
  const int calls = countCalls();
  for (const char* below : {"tree", "tree/sub", "tree/sub/deep"}) {
    for (int number = 1; number <= calls && !HasFailure(); ++number) {
      playAndLook({number, EIO, Fault::Reach::Below}, Answer::Skip, below);
    }
  }
}

TEST_P(DeleteFaults, KilledAnywhereNothingElseIsTouched) {
  const int calls = countCalls();
  for (int number = 1; number <= calls && !HasFailure(); ++number) {
    const TempDir place;
    build(place);
    const Contents before = contents(place.path());
    Fault fault{number, 0, Fault::Reach::Kill};
    const int status = runInChild([&] {
      ScriptedUi screen;
      static_cast<void>(operate(place, screen, fault));
      return 0;
    });
    ASSERT_EQ(status, Fault::Killed) << number;
    expectInvariants(place, before, fault, "killed at call " + std::to_string(number));
  }
}

INSTANTIATE_TEST_SUITE_P(, DeleteFaults, testing::ValuesIn(DeleteScenarios), nameOfDelete);
