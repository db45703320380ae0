#include "fileops/transfer_faults.h"

// The same for deleting: nothing else is touched, and what is told is true.

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
  static Outcome operate(const TempDir& place, ScriptedUi& screen, Fault& fault) {
    RunningOperation operation(screen);
    screen.treeAnswers = {TreeAnswer::Yes, TreeAnswer::Yes};
    System::setPlaceHook(Fault::onCall, &fault);
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
      Fault fault{number, error};
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
      Fault fault{number, 0, Fault::Reach::Kill};
      ScriptedUi screen;
      static_cast<void>(operate(place, screen, fault));
      return 0;
    });
    EXPECT_EQ(place.read("outside/precious"), "precious");
    for (const auto& [path, what] : contents(place.path())) {
      EXPECT_TRUE(path.starts_with("tree") || path.starts_with("outside")) << path;
    }
    if (HasFailure() || status != Fault::Killed) break;
  }
}
