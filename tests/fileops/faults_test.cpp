#include "fileops/transfer_faults.h"

// Every system call of an operation fails in turn, or the process is killed there; afterwards no
// byte may be missing.

namespace {

class Faults : public TransferFaults {};

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
        const std::string where = "call " + std::to_string(number) + " fails with " +
                                  std::to_string(error) + ", " + rule.name;
        playAndLook({number, error}, rule.answer, where);
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
    Fault fault{number, ENOSPC};
    ScriptedUi screen;
    screen.rule = [](const auto& question) {
      return question.buttons == AlertButtons::RetrySkip ? Answer::Retry : Answer::Yes;
    };
    const Outcome outcome = operate(place, screen, fault);
    const std::string where = "call " + std::to_string(number) + " (" + fault.call + ")";
    expectInvariants(place, before, outcome, fault, Leftovers::WhereRefused, where);
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
    Fault fault{number, 0, Fault::Reach::Kill};
    const int status = runInChild([&] {
      ScriptedUi screen;
      static_cast<void>(operate(place, screen, fault));
      return 0;
    });
    ASSERT_EQ(status, Fault::Killed) << number;
    expectInvariants(place, before, Outcome::LeftInPlace, fault, Leftovers::Allowed,
                     "killed at call " + std::to_string(number));
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(, Faults, testing::ValuesIn(Scenarios), nameOf);
